"""Reference model of HueShelf's colour arithmetic, written from the description of the colour
rules apart from the C++ sources. It keeps the program's order of floating-point operations, so
that results compare bit for bit. Absent values are None.
"""

import math
import re

# Trimming "whitespace and newlines" concerns ASCII only; str.strip() would also take U+001C to
# U+001F and the non-ASCII spaces, about which the program promises nothing.
ASCII_WHITESPACE = " \t\n\v\f\r"
HEX_ANY = "0123456789abcdefABCDEF"

# re.ASCII keeps \d, \s and case folding to ASCII, as the program's engine does.
RGB_PATTERN = re.compile(
    r"^rgba?\s*\(\s*(\d{1,3})\s*,\s*(\d{1,3})\s*,\s*(\d{1,3})(?:\s*,\s*[\d.]+)?\s*\)$",
    re.IGNORECASE | re.ASCII)
HSL_PATTERN = re.compile(
    r"^hsla?\s*\(\s*([\d.]+)\s*,\s*([\d.]+)%\s*,\s*([\d.]+)%(?:\s*,\s*[\d.]+)?\s*\)$",
    re.IGNORECASE | re.ASCII)


def trimmed(text):
    return text.strip(ASCII_WHITESPACE)


def round_half_away(value):
    """C's round(): halves go away from zero, where Python's round() goes to even."""
    whole = math.floor(abs(value))
    if abs(value) - whole >= 0.5:  # exact for every double below 2**52
        whole += 1
    return int(whole) if value >= 0 else -int(whole)


def format_channels(r, g, b):
    return "#%02X%02X%02X" % (r & 0xFFFFFFFF, g & 0xFFFFFFFF, b & 0xFFFFFFFF)


def is_hex(text, lengths=(6,)):
    return len(text) in lengths and all(ch in HEX_ANY for ch in text)


def without_hash(text):
    return text[1:] if text.startswith("#") else text


def normalized_digits(text):
    body = without_hash(trimmed(text).upper())
    return body if is_hex(body) else None


def canonical_hex(text):
    body = without_hash(trimmed(text))
    if not is_hex(body, (3, 6)):
        return text
    return "#" + (body if len(body) == 6 else "".join(ch * 2 for ch in body)).upper()


def decimal_or_zero(text):
    try:
        return float(text)
    except ValueError:
        return 0.0


def parse_color_code(text):
    stripped = trimmed(text)
    candidate = trimmed(stripped.replace("#", ""))
    if is_hex(candidate):
        return "#" + candidate.upper()
    # The expressions see the trimmed text with its "#" still in place.
    match = RGB_PATTERN.search(stripped)
    if match:
        return format_channels(*(min(max(int(group), 0), 255) for group in match.groups()))
    match = HSL_PATTERN.search(stripped)
    if match:
        h, s, l = (decimal_or_zero(group) for group in match.groups())
        h = math.fmod(h, 360.0)
        if h < 0:
            h += 360.0
        return hsl_to_hex(h, min(max(s, 0.0), 100.0) / 100.0, min(max(l, 0.0), 100.0) / 100.0)
    return None


def hex_to_rgb(text):
    digits = normalized_digits(text)
    return None if digits is None else tuple(int(digits[i:i + 2], 16) for i in (0, 2, 4))


def hex_to_hsl(text):
    rgb = hex_to_rgb(text)
    return None if rgb is None else bytes_to_hsl(*rgb)


def bytes_to_hsl(red, green, blue):
    r, g, b = red / 255.0, green / 255.0, blue / 255.0
    high, low = max(r, g, b), min(r, g, b)
    l = (high + low) * 0.5
    if high == low:
        return (0.0, 0.0, l)
    d = high - low
    s = d / (2.0 - high - low) if l > 0.5 else d / (high + low)
    if high == r:
        hue = (g - b) / d + (6.0 if g < b else 0.0)
    elif high == g:
        hue = (b - r) / d + 2.0
    else:
        hue = (r - g) / d + 4.0
    return (hue / 6.0 * 360.0, s, l)


def hsl_to_hex(h, s, l):
    c = (1.0 - abs(2 * l - 1.0)) * s
    t = h / 60.0
    x = c * (1.0 - abs((t - 2.0 * float(math.trunc(t * 0.5))) - 1.0))
    m = l - c * 0.5
    # One sector per 60 degrees; a hue of 360 or more falls in the last.
    sector = min(int(h // 60), 5) if h >= 0 else 5
    parts = ((c, x, 0.0), (x, c, 0.0), (0.0, c, x), (0.0, x, c), (x, 0.0, c), (c, 0.0, x))[sector]
    return format_channels(*(round_half_away((m + value) * 255.0) for value in parts))


def relative_luminance(text):
    rgb = hex_to_rgb(text)
    if rgb is None:
        return None
    r, g, b = (v / 12.92 if v <= 0.03928 else ((v + 0.055) / 1.055) ** 2.4
               for v in (byte / 255.0 for byte in rgb))
    return 0.2126 * r + 0.7152 * g + 0.0722 * b


def contrast_ratio(first, second):
    return (max(first, second) + 0.05) / (min(first, second) + 0.05)


READABLE, LOW_CONTRAST, POOR = "readable", "lowContrast", "poor"


def contrast_level(ratio):
    return READABLE if ratio >= 4.5 else LOW_CONTRAST if ratio >= 3.0 else POOR


def adjusted_for_contrast(hex_code, background, target):
    hsl, background_hsl = hex_to_hsl(hex_code), hex_to_hsl(background)
    background_luminance = relative_luminance(background)
    if hsl is None or background_hsl is None:
        return None
    h, s, l = hsl

    def ratio_at(lightness):
        return contrast_ratio(relative_luminance(hsl_to_hex(h, s, lightness)), background_luminance)

    # Darker on a light background, lighter on a dark one. When that side can't reach the
    # target, the other side's range is searched, still in the first side's direction.
    light = background_hsl[2] > 0.5
    high, low = (l, 0.0) if light else (1.0, l)
    if not ratio_at(0.0 if light else 1.0) >= target:
        high, low = (1.0, l) if light else (l, 0.0)
        if ratio_at(1.0 if light else 0.0) < target:
            return None
    best = low if light else high
    for _ in range(20):
        mid = (high + low) * 0.5
        reaches = ratio_at(mid) >= target
        best = mid if reaches else best
        # On a light background, up while the target is reached and down otherwise.
        if reaches == light:
            low = mid
        else:
            high = mid
    return hsl_to_hex(h, s, best)


COPY_FORMATS = ("hex", "hex-no-hash", "rgb", "hsl", "css-var", "tailwind")


def formatted_code(hex_code, copy_format, name):
    c = canonical_hex(hex_code)
    if copy_format == "hex-no-hash":
        return c[1:]
    if copy_format == "rgb":
        return "rgb(%d, %d, %d)" % hex_to_rgb(c)
    if copy_format == "hsl":
        h, s, l = hex_to_hsl(c)
        return "hsl(%d, %d%%, %d%%)" % (round_half_away(h), round_half_away(s * 100),
                                         round_half_away(l * 100))
    if copy_format == "css-var":
        slug = re.sub(r"[^a-z0-9]+", "-", name.lower()).strip("-")
        return "--" + (slug or "color") + ": " + c
    if copy_format == "tailwind":
        return "bg-[" + c + "]"
    return c


def within(value, low, high):
    return low <= value < high


# The upper hue limit of each band of hue names (from the one before); a function where the
# saturation or lightness decides.
def _red(s, l):
    return "Rose" if l >= 0.65 and s < 0.5 else "Red"


HUE_BANDS = (
    (10, _red), (20, lambda s, l: "Red" if s >= 0.6 else "Coral"), (35, "Coral"), (45, "Orange"),
    (55, "Gold"), (70, "Yellow"), (85, lambda s, l: "Lime" if s >= 0.5 else "Yellow"),
    (105, "Lime"), (145, lambda s, l: "Forest" if l < 0.35 else "Green"), (165, "Teal"),
    (185, "Cyan"), (205, "Sky"), (250, "Blue"), (270, "Indigo"), (290, "Purple"),
    (320, lambda s, l: "Orchid" if l >= 0.6 else "Magenta"), (350, "Pink"), (360, _red))


def hue_name(h, s, l):
    while h < 0:
        h += 360
    while h >= 360:
        h -= 360
    name = next(name for limit, name in HUE_BANDS if h < limit)
    return name if isinstance(name, str) else name(s, l)


MODIFIERS = (
    ("Bright ", "Bright ", "Light ", "Light ", "Light ", "Pale ", "Pale "),
    ("Vivid ", "Bright ", "Bright ", "Bright ", "Soft ", "Soft ", "Muted "),
    ("Bold ", "Rich ", "Rich ", "Rich ", "Dusty ", "Dusty ", "Muted "),
    ("Deep ", "Deep ", "Deep ", "Dark ", "Dark ", "Muted ", "Muted "),
    ("Deep ", "Deep ", "Deep ", "Deep ", "Dark ", "Dark ", "Dark "),
)
MODIFIER_LIGHTNESS = (0.8, 0.65, 0.45, 0.3)
MODIFIER_SATURATION = (0.7, 0.65, 0.6, 0.5, 0.35, 0.25)

# Named colours in the order they are tried: lightness, hue and saturation ranges, each from
# its low end (included) to its high end (excluded); a hue range whose low end is the higher
# one wraps through 0.
ANY = (0.0, 9.0)
NAMED = (
    ("Salmon", (0.6, 0.85), (0, 25), (0.4, 9)), ("Light Pink", (0.8, 9), (340, 5), (0.5, 9)),
    ("Blush", (0.75, 9), (340, 15), (0.15, 0.55)), ("Peach", (0.82, 9), (15, 30), (0.15, 0.55)),
    ("Salmon", (0.75, 9), (15, 30), (0.15, 0.55)), ("Vanilla", (0.75, 9), (40, 55), (0.15, 0.55)),
    ("Butter", (0.75, 9), (55, 70), (0.15, 0.55)), ("Ivory", (0.93, 9), (40, 70), ANY),
    ("Cream", (0.88, 9), (40, 70), ANY), ("Peach", (0.7, 0.9), (20, 40), (0.35, 9)),
    ("Mint", (0.7, 9), (110, 175), (0.25, 9)), ("Lavender", (0.85, 9), (230, 290), (0.2, 9)),
    ("Teal", (0.2, 0.5), (165, 185), (0.5, 9)), ("Navy", (0.15, 0.35), (210, 250), (0.4, 9)),
    ("Maroon", (0.15, 0.3), (340, 10), (0.4, 9)), ("Olive", (0.2, 0.45), (50, 90), (0.2, 9)),
    ("Brown", (0.2, 0.55), (10, 40), (0.4, 0.8)), ("Tan", (0.5, 0.75), (30, 55), (0.2, 0.5)),
    ("Ruby", (0.35, 0.55), (350, 10), (0.7, 9)), ("Burgundy", (0.2, 0.35), (0, 15), (0.5, 9)),
    ("Plum", (0.25, 0.45), (280, 320), (0.4, 9)), ("Amber", (0.45, 0.65), (35, 50), (0.6, 9)),
    ("Copper", (0.35, 0.55), (15, 35), (0.5, 9)), ("Turquoise", (0.35, 0.55), (150, 170), (0.5, 9)),
    ("Azure", (0.5, 0.7), (190, 210), (0.5, 9)), ("Sapphire", (0.35, 0.55), (210, 240), (0.7, 9)),
    ("Emerald", (0.35, 0.55), (130, 160), (0.6, 9)), ("Sage", (0.35, 0.55), (90, 130), (0.2, 0.5)),
    ("Slate", (0.3, 0.6), (200, 230), (0.08, 0.25)),
)


def in_hue_range(h, low, high):
    return within(h, low, high) if low < high else h >= low or h < high


def color_name(hex_code):
    hsl = hex_to_hsl(hex_code)
    return "New Color" if hsl is None else color_name_of_hsl(*hsl)


def color_name_of_hsl(h, s, l):
    if l >= 0.97:
        return "Ivory" if within(h, 50, 70) and s >= 0.5 else "White"
    if l >= 0.88 and s < 0.25:
        return ("Ivory" if l >= 0.93 else "Cream") if within(h, 30, 70) else "Off White"
    if l <= 0.06:
        return "Black"
    if l <= 0.12:
        return "Charcoal" if s < 0.15 else "Dark " + hue_name(h, s, l)
    if s < 0.08:
        return "Dark Gray" if l < 0.25 else "Gray" if l < 0.55 else "Silver" if l < 0.8 else \
            "Light Gray"
    for name, lightness, hue, saturation in NAMED:
        if within(l, *lightness) and in_hue_range(h, *hue) and within(s, *saturation):
            return name
    row = next((i for i, limit in enumerate(MODIFIER_LIGHTNESS) if l >= limit), 4)
    column = next((i for i, limit in enumerate(MODIFIER_SATURATION) if s >= limit), 6)
    return MODIFIERS[row][column] + hue_name(h, s, l)


SHADE_STEPS = ((50, 0.95), (100, 0.90), (200, 0.82), (300, 0.72), (400, 0.60), (500, 0.48),
               (600, 0.38), (700, 0.28), (800, 0.18), (900, 0.10))


def shade_ladder(hex_code):
    h, s, l = hex_to_hsl(hex_code)
    base = 0
    for index, (_, lightness) in enumerate(SHADE_STEPS):
        if abs(lightness - l) < abs(SHADE_STEPS[base][1] - l):
            base = index
    return [{"label": label, "hex": hex_code if index == base else hsl_to_hex(h, s, lightness),
             "isBase": index == base} for index, (label, lightness) in enumerate(SHADE_STEPS)]


# Rows giving R', G', B' from linear R, G, B, at severity 1.0.
SIMULATION_MATRICES = {
    "protanopia": ((0.152286, 1.052583, -0.204868), (0.114503, 0.786281, 0.099216),
                   (-0.003882, -0.048116, 1.051998)),
    "deuteranopia": ((0.367322, 0.860646, -0.227968), (0.280085, 0.672501, 0.047413),
                     (-0.01182, 0.04294, 0.968881)),
    "tritanopia": ((1.255528, -0.076749, -0.178779), (-0.078411, 0.930809, 0.147602),
                   (0.004733, 0.691367, 0.3039)),
}
SIMULATION_TYPES = tuple(SIMULATION_MATRICES)


def simulated(hex_code, simulation_type):
    """How the colour looks to the type; linearised with sRGB's 0.04045, not WCAG's 0.03928."""
    r, g, b = (v / 12.92 if v <= 0.04045 else ((v + 0.055) / 1.055) ** 2.4
               for v in (byte / 255.0 for byte in hex_to_rgb(hex_code)))
    channels = []
    for row in SIMULATION_MATRICES[simulation_type]:
        x = min(max(row[0] * r + row[1] * g + row[2] * b, 0.0), 1.0)
        encoded = x * 12.92 if x <= 0.0031308 else 1.055 * x ** 0.4166666666666667 - 0.055
        channels.append(round_half_away(encoded * 255.0))
    return format_channels(*channels)


def color_details(code):
    name = color_name(code)
    return {"name": name, "rgb": list(hex_to_rgb(code)), "hsl": list(hex_to_hsl(code)),
            "luminance": relative_luminance(code),
            "formats": {fmt: formatted_code(code, fmt, name) for fmt in COPY_FORMATS}}


def simulation_details(code):
    return {kind: simulated(code, kind) for kind in SIMULATION_TYPES}


def list_command(arguments, details):
    """(JSON, exit status) of `color --json ARGS...` or `simulate --json ARGS...`."""
    codes = [parse_color_code(argument) for argument in arguments]
    return [dict({"input": argument, "hex": code}, **(details(code) if code else {}))
            for argument, code in zip(arguments, codes)], 1 if None in codes else 0


def contrast_command(foreground, background, target=4.5):
    """JSON value of `hueshelf contrast --json`, or None when an argument isn't a colour."""
    fg, bg = parse_color_code(foreground), parse_color_code(background)
    if fg is None or bg is None:
        return None
    ratio = contrast_ratio(relative_luminance(fg), relative_luminance(bg))
    return {"foreground": fg, "background": bg, "ratio": ratio, "level": contrast_level(ratio),
            "adjustedForeground": adjusted_for_contrast(fg, bg, target)}


def shades_command(argument):
    """JSON value of `hueshelf shades --json`, or None when the argument isn't a colour."""
    code = parse_color_code(argument)
    return None if code is None else shade_ladder(code)

