"""Reference model of HueShelf's colour arithmetic, written apart from the C++ sources.

It exists so that differential.py can hold the real binary against a second, independent reading
of the colour rules. Only the standard library is used; every function mirrors one operation of
ColorUtils and keeps its order of floating-point operations, so that results compare bit for bit.

Absent values are None.
"""

import math
import re

# Trimming "whitespace and newlines": only ASCII behaviour matters to the program, so the set is
# the ASCII whitespace: blank, tab, line feed, vertical tab, form feed and carriage return.
# str.strip() with no argument is deliberately not used: it also strips U+001C..U+001F (which no
# platform trimmer counts as whitespace) and the non-ASCII spaces, which the program never promises
# anything about. The differential generator therefore only surrounds codes with ASCII blanks.
ASCII_WHITESPACE = " \t\n\v\f\r"

HEX_UPPER = "0123456789ABCDEF"
HEX_ANY = "0123456789abcdefABCDEF"

# Verbatim patterns. re.ASCII keeps \d and \s (and case folding) to ASCII, as the program's
# engine without Unicode properties does. "$" would also match before a final newline, but the
# text they see is trimmed and never ends in one.
RGB_PATTERN = re.compile(
    r"^rgba?\s*\(\s*(\d{1,3})\s*,\s*(\d{1,3})\s*,\s*(\d{1,3})(?:\s*,\s*[\d.]+)?\s*\)$",
    re.IGNORECASE | re.ASCII,
)
HSL_PATTERN = re.compile(
    r"^hsla?\s*\(\s*([\d.]+)\s*,\s*([\d.]+)%\s*,\s*([\d.]+)%(?:\s*,\s*[\d.]+)?\s*\)$",
    re.IGNORECASE | re.ASCII,
)
SLUG_RUN = re.compile(r"[^a-z0-9]+")


def trimmed(text):
    return text.strip(ASCII_WHITESPACE)


def round_half_away(value):
    """C's round(): halves go away from zero. Python's round() would round halves to even."""
    magnitude = abs(value)
    whole = math.floor(magnitude)
    # magnitude - whole is exact for every double below 2**52, so the half test is exact too.
    if magnitude - whole >= 0.5:
        whole += 1
    return int(whole) if value >= 0 else -int(whole)


def format_channels(r, g, b):
    # "%02X" of an int; out-of-range channels cannot arise from in-range s and l.
    return "#%02X%02X%02X" % (r & 0xFFFFFFFF, g & 0xFFFFFFFF, b & 0xFFFFFFFF)


# --- readers ------------------------------------------------------------------------------------


def normalized_digits(text):
    body = trimmed(text).upper()
    if body.startswith("#"):
        body = body[1:]
    if len(body) == 6 and all(ch in HEX_UPPER for ch in body):
        return body
    return None


def canonical_hex(text):
    body = trimmed(text)
    if body.startswith("#"):
        body = body[1:]
    if len(body) in (3, 6) and all(ch in HEX_ANY for ch in body):
        if len(body) == 3:
            body = "".join(ch * 2 for ch in body)
        return "#" + body.upper()
    return text


def parse_decimal_or_zero(text):
    try:
        return float(text)
    except ValueError:
        return 0.0


def parse_color_code(text):
    stripped = trimmed(text)
    candidate = trimmed(stripped.replace("#", ""))
    if len(candidate) == 6 and all(ch in HEX_ANY for ch in candidate):
        return "#" + candidate.upper()

    # The expressions see the trimmed text with its "#" characters still in place: the deletion
    # belongs to the hex step only.
    match = RGB_PATTERN.search(stripped)
    if match:
        channels = [min(max(int(group), 0), 255) for group in match.groups()]
        return format_channels(*channels)

    match = HSL_PATTERN.search(stripped)
    if match:
        h, s, l = (parse_decimal_or_zero(group) for group in match.groups())
        h = math.fmod(h, 360.0)
        if h < 0:
            h += 360.0
        s = min(max(s, 0.0), 100.0) / 100.0
        l = min(max(l, 0.0), 100.0) / 100.0
        return hsl_to_hex(h, s, l)
    return None


def hex_to_rgb(text):
    digits = normalized_digits(text)
    if digits is None:
        return None
    value = int(digits, 16)
    return ((value >> 16) & 0xFF, (value >> 8) & 0xFF, value & 0xFF)


# --- HSL ----------------------------------------------------------------------------------------


def hex_to_hsl(text):
    rgb = hex_to_rgb(text)
    if rgb is None:
        return None
    return bytes_to_hsl(*rgb)


def bytes_to_hsl(red, green, blue):
    r, g, b = red / 255.0, green / 255.0, blue / 255.0
    high = max(r, g, b)
    low = min(r, g, b)
    l = (high + low) * 0.5
    if high == low:
        return (0.0, 0.0, l)
    d = high - low
    s = d / (2.0 - high - low) if l > 0.5 else d / (high + low)
    if high == r:
        hue = (g - b) / d
        if g < b:
            hue += 6.0
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
    if 0 <= h < 60:
        parts = (c, x, 0.0)
    elif 60 <= h < 120:
        parts = (x, c, 0.0)
    elif 120 <= h < 180:
        parts = (0.0, c, x)
    elif 180 <= h < 240:
        parts = (0.0, x, c)
    elif 240 <= h < 300:
        parts = (x, 0.0, c)
    else:
        parts = (c, 0.0, x)
    return format_channels(*(round_half_away((m + value) * 255.0) for value in parts))


# --- luminance and contrast ---------------------------------------------------------------------


def relative_luminance(text):
    rgb = hex_to_rgb(text)
    if rgb is None:
        return None

    def linear(byte):
        v = byte / 255.0
        return v / 12.92 if v <= 0.03928 else ((v + 0.055) / 1.055) ** 2.4

    r, g, b = (linear(channel) for channel in rgb)
    return 0.2126 * r + 0.7152 * g + 0.0722 * b


def contrast_ratio(first, second):
    return (max(first, second) + 0.05) / (min(first, second) + 0.05)


READABLE, LOW_CONTRAST, POOR = "readable", "lowContrast", "poor"


def contrast_level(a, b):
    la = relative_luminance(a)
    lb = relative_luminance(b)
    if la is None or lb is None:
        return POOR
    ratio = contrast_ratio(la, lb)
    if ratio >= 4.5:
        return READABLE
    if ratio >= 3.0:
        return LOW_CONTRAST
    return POOR


def adjusted_for_contrast(hex_code, background, target):
    hsl = hex_to_hsl(hex_code)
    background_hsl = hex_to_hsl(background)
    background_luminance = relative_luminance(background)
    if hsl is None or background_hsl is None:
        return None
    h, s, l = hsl
    light = background_hsl[2] > 0.5

    def ratio_at(lightness):
        return contrast_ratio(relative_luminance(hsl_to_hex(h, s, lightness)), background_luminance)

    if light:
        high, low, extreme = l, 0.0, 0.0
    else:
        high, low, extreme = 1.0, l, 1.0
    if not ratio_at(extreme) >= target:
        if light:
            high, low, extreme = 1.0, l, 1.0
        else:
            high, low, extreme = l, 0.0, 0.0
        if ratio_at(extreme) < target:
            return None

    best = low if light else high
    for _ in range(20):
        mid = (high + low) * 0.5
        if ratio_at(mid) >= target:
            best = mid
            if light:
                low = mid
            else:
                high = mid
        elif light:
            high = mid
        else:
            low = mid
    return hsl_to_hex(h, s, best)


# --- copy formats -------------------------------------------------------------------------------

COPY_FORMATS = ("hex", "hex-no-hash", "rgb", "hsl", "css-var", "tailwind")


def css_variable_slug(name):
    slug = SLUG_RUN.sub("-", name.lower()).strip("-")
    return slug if slug else "color"


def formatted_code(hex_code, copy_format, name):
    c = canonical_hex(hex_code)
    if copy_format == "hex":
        return c
    if copy_format == "hex-no-hash":
        return c[1:]
    if copy_format == "rgb":
        rgb = hex_to_rgb(c)
        if rgb is None:
            return c
        return "rgb(%d, %d, %d)" % rgb
    if copy_format == "hsl":
        hsl = hex_to_hsl(c)
        if hsl is None:
            return c
        h, s, l = hsl
        return "hsl(%d, %d%%, %d%%)" % (
            round_half_away(h),
            round_half_away(s * 100),
            round_half_away(l * 100),
        )
    if copy_format == "css-var":
        return "--" + css_variable_slug(name) + ": " + c
    if copy_format == "tailwind":
        return "bg-[" + c + "]"
    raise ValueError(copy_format)


# --- automatic names ----------------------------------------------------------------------------


def within(value, low, high):
    return low <= value < high


def hue_name(h, s, l):
    while h < 0:
        h += 360
    while h >= 360:
        h -= 360
    if h >= 350 or h < 10:
        return "Rose" if l >= 0.65 and s < 0.5 else "Red"
    if within(h, 10, 20):
        return "Red" if s >= 0.6 else "Coral"
    if within(h, 20, 35):
        return "Coral"
    if within(h, 35, 45):
        return "Orange"
    if within(h, 45, 55):
        return "Gold"
    if within(h, 55, 70):
        return "Yellow"
    if within(h, 70, 85):
        return "Lime" if s >= 0.5 else "Yellow"
    if within(h, 85, 105):
        return "Lime"
    if within(h, 105, 145):
        return "Forest" if l < 0.35 else "Green"
    if within(h, 145, 165):
        return "Teal"
    if within(h, 165, 185):
        return "Cyan"
    if within(h, 185, 205):
        return "Sky"
    if within(h, 205, 250):
        return "Blue"
    if within(h, 250, 270):
        return "Indigo"
    if within(h, 270, 290):
        return "Purple"
    if within(h, 290, 320):
        return "Orchid" if l >= 0.6 else "Magenta"
    if within(h, 320, 350):
        return "Pink"
    return "Color"


MODIFIERS = (
    ("Bright ", "Bright ", "Light ", "Light ", "Light ", "Pale ", "Pale "),
    ("Vivid ", "Bright ", "Bright ", "Bright ", "Soft ", "Soft ", "Muted "),
    ("Bold ", "Rich ", "Rich ", "Rich ", "Dusty ", "Dusty ", "Muted "),
    ("Deep ", "Deep ", "Deep ", "Dark ", "Dark ", "Muted ", "Muted "),
    ("Deep ", "Deep ", "Deep ", "Deep ", "Dark ", "Dark ", "Dark "),
)
MODIFIER_LIGHTNESS = (0.8, 0.65, 0.45, 0.3)
MODIFIER_SATURATION = (0.7, 0.65, 0.6, 0.5, 0.35, 0.25)


def name_modifier(s, l):
    row = next((i for i, limit in enumerate(MODIFIER_LIGHTNESS) if l >= limit), 4)
    column = next((i for i, limit in enumerate(MODIFIER_SATURATION) if s >= limit), 6)
    return MODIFIERS[row][column]


def color_name(hex_code):
    hsl = hex_to_hsl(hex_code)
    if hsl is None:
        return "New Color"
    return color_name_of_hsl(*hsl)


def color_name_of_hsl(h, s, l):
    reddish = h < 10 or h >= 340
    if l >= 0.97:
        return "Ivory" if within(h, 50, 70) and s >= 0.5 else "White"
    if l >= 0.88 and s < 0.25:
        if within(h, 30, 70):
            return "Ivory" if l >= 0.93 else "Cream"
        return "Off White"
    if l <= 0.06:
        return "Black"
    if l <= 0.12:
        return "Charcoal" if s < 0.15 else "Dark " + hue_name(h, s, l)
    if s < 0.08:
        if l < 0.25:
            return "Dark Gray"
        if l < 0.55:
            return "Gray"
        if l < 0.8:
            return "Silver"
        return "Light Gray"
    if within(h, 0, 25) and within(l, 0.6, 0.85) and s >= 0.4:
        return "Salmon"
    if l >= 0.8 and (h >= 340 or h < 5) and s >= 0.5:
        return "Light Pink"
    pastel = l >= 0.75 and within(s, 0.15, 0.55)
    if pastel and (h < 15 or h >= 340):
        return "Blush"
    if pastel and within(h, 15, 30):
        return "Peach" if l >= 0.82 else "Salmon"
    if pastel and within(h, 40, 55):
        return "Vanilla"
    if pastel and within(h, 55, 70):
        return "Butter"
    if l >= 0.88 and within(h, 40, 70):
        return "Ivory" if l >= 0.93 else "Cream"
    if within(l, 0.7, 0.9) and within(h, 20, 40) and s >= 0.35:
        return "Peach"
    if l >= 0.7 and within(h, 110, 175) and s >= 0.25:
        return "Mint"
    if l >= 0.85 and within(h, 230, 290) and s >= 0.2:
        return "Lavender"
    if within(l, 0.2, 0.5) and within(h, 165, 185) and s >= 0.5:
        return "Teal"
    if within(l, 0.15, 0.35) and within(h, 210, 250) and s >= 0.4:
        return "Navy"
    if within(l, 0.15, 0.3) and reddish and s >= 0.4:
        return "Maroon"
    if within(l, 0.2, 0.45) and within(h, 50, 90) and s >= 0.2:
        return "Olive"
    if within(l, 0.2, 0.55) and within(h, 10, 40) and within(s, 0.4, 0.8):
        return "Brown"
    if within(l, 0.5, 0.75) and within(h, 30, 55) and within(s, 0.2, 0.5):
        return "Tan"
    if within(l, 0.35, 0.55) and (h < 10 or h >= 350) and s >= 0.7:
        return "Ruby"
    if within(l, 0.2, 0.35) and within(h, 0, 15) and s >= 0.5:
        return "Burgundy"
    if within(l, 0.25, 0.45) and within(h, 280, 320) and s >= 0.4:
        return "Plum"
    if within(l, 0.45, 0.65) and within(h, 35, 50) and s >= 0.6:
        return "Amber"
    if within(l, 0.35, 0.55) and within(h, 15, 35) and s >= 0.5:
        return "Copper"
    if within(l, 0.35, 0.55) and within(h, 150, 170) and s >= 0.5:
        return "Turquoise"
    if within(l, 0.5, 0.7) and within(h, 190, 210) and s >= 0.5:
        return "Azure"
    if within(l, 0.35, 0.55) and within(h, 210, 240) and s >= 0.7:
        return "Sapphire"
    if within(l, 0.35, 0.55) and within(h, 130, 160) and s >= 0.6:
        return "Emerald"
    if within(l, 0.35, 0.55) and within(h, 90, 130) and within(s, 0.2, 0.5):
        return "Sage"
    if within(l, 0.3, 0.6) and within(h, 200, 230) and within(s, 0.08, 0.25):
        return "Slate"
    return name_modifier(s, l) + hue_name(h, s, l)


# --- shade ladder -------------------------------------------------------------------------------

SHADE_STEPS = (
    (50, 0.95),
    (100, 0.90),
    (200, 0.82),
    (300, 0.72),
    (400, 0.60),
    (500, 0.48),
    (600, 0.38),
    (700, 0.28),
    (800, 0.18),
    (900, 0.10),
)


def shade_ladder(hex_code):
    hsl = hex_to_hsl(hex_code)
    if hsl is None:
        return []
    h, s, l = hsl
    base = 0
    for index, (_, lightness) in enumerate(SHADE_STEPS):
        if abs(lightness - l) < abs(SHADE_STEPS[base][1] - l):
            base = index
    return [
        {
            "label": label,
            "hex": hex_code if index == base else hsl_to_hex(h, s, lightness),
            "isBase": index == base,
        }
        for index, (label, lightness) in enumerate(SHADE_STEPS)
    ]


# --- colour vision simulation -------------------------------------------------------------------

# One 3x3 matrix per dichromat type, rows giving R', G', B' from linear R, G, B, at severity 1.0.
SIMULATION_TYPES = ("protanopia", "deuteranopia", "tritanopia")
SIMULATION_MATRICES = {
    "protanopia": (
        (0.152286, 1.052583, -0.204868),
        (0.114503, 0.786281, 0.099216),
        (-0.003882, -0.048116, 1.051998),
    ),
    "deuteranopia": (
        (0.367322, 0.860646, -0.227968),
        (0.280085, 0.672501, 0.047413),
        (-0.01182, 0.04294, 0.968881),
    ),
    "tritanopia": (
        (1.255528, -0.076749, -0.178779),
        (-0.078411, 0.930809, 0.147602),
        (0.004733, 0.691367, 0.3039),
    ),
}


def unit_clamped(value):
    return min(max(value, 0.0), 1.0)


def linear_rgb(text):
    """The three linear channels with the sRGB threshold 0.04045 (not WCAG's 0.03928)."""
    rgb = hex_to_rgb(text)
    if rgb is None:
        return None
    linear = []
    for byte in rgb:
        v = byte / 255.0
        linear.append(v / 12.92 if v <= 0.04045 else ((v + 0.055) / 1.055) ** 2.4)
    return tuple(linear)


def encoded_hex(linear):
    channels = []
    for x in linear:
        x = unit_clamped(x)
        encoded = x * 12.92 if x <= 0.0031308 else 1.055 * x ** 0.4166666666666667 - 0.055
        channels.append(round_half_away(encoded * 255.0))
    return format_channels(*channels)


def simulated(text, simulation_type):
    """How the colour looks to the type, as a canonical code; the text as given for "normal" or
    for text that isn't a colour."""
    if simulation_type == "normal":
        return text
    linear = linear_rgb(text)
    if linear is None:
        return text
    r, g, b = linear
    return encoded_hex(
        tuple(unit_clamped(row[0] * r + row[1] * g + row[2] * b)
              for row in SIMULATION_MATRICES[simulation_type]))


# --- the JSON values of the colour commands -----------------------------------------------------


def color_command_entry(argument):
    """One element of `hueshelf color --json`'s array."""
    code = parse_color_code(argument)
    if code is None:
        return {"input": argument, "hex": None}
    name = color_name(code)
    return {
        "input": argument,
        "hex": code,
        "name": name,
        "rgb": list(hex_to_rgb(code)),
        "hsl": list(hex_to_hsl(code)),
        "luminance": relative_luminance(code),
        "formats": {fmt: formatted_code(code, fmt, name) for fmt in COPY_FORMATS},
    }


def color_command(arguments):
    """(JSON value, exit status) of `hueshelf color --json ARGS...`."""
    entries = [color_command_entry(argument) for argument in arguments]
    status = 1 if any(entry["hex"] is None for entry in entries) else 0
    return entries, status


def contrast_command(foreground, background, target=4.5):
    """JSON value of `hueshelf contrast --json`, or None when an argument isn't a colour."""
    fg = parse_color_code(foreground)
    bg = parse_color_code(background)
    if fg is None or bg is None:
        return None
    return {
        "foreground": fg,
        "background": bg,
        "ratio": contrast_ratio(relative_luminance(fg), relative_luminance(bg)),
        "level": contrast_level(fg, bg),
        "adjustedForeground": adjusted_for_contrast(fg, bg, target),
    }


def shades_command(argument):
    """JSON value of `hueshelf shades --json`, or None when the argument isn't a colour."""
    code = parse_color_code(argument)
    if code is None:
        return None
    return shade_ladder(code)


def simulate_command_entry(argument):
    """One element of `hueshelf simulate --json`'s array."""
    code = parse_color_code(argument)
    if code is None:
        return {"input": argument, "hex": None}
    entry = {"input": argument, "hex": code}
    for simulation_type in SIMULATION_TYPES:
        entry[simulation_type] = simulated(code, simulation_type)
    return entry


def simulate_command(arguments):
    """(JSON value, exit status) of `hueshelf simulate --json ARGS...`."""
    entries = [simulate_command_entry(argument) for argument in arguments]
    status = 1 if any(entry["hex"] is None for entry in entries) else 0
    return entries, status
