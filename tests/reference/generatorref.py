"""Reference model of HueShelf's scheme generator and dark version, written apart from the C++
sources.

generator_differential.py holds `hueshelf scheme CODE --json` and `hueshelf dark PALETTE --json`
against it. It builds on the colour arithmetic of colorref.py (readers, HSL, contrast, the
lightness search, automatic names) and on the name de-duplication of checkref.py, and, like
them, keeps the program's order of floating-point operations so that hexes compare exactly.

A scheme colour is a dict with "role", "hex" and "name"; a palette colour is a dict with at
least "name" and "hex" (the other fields of a stored colour pass through unchanged).
"""

import colorref
from checkref import unique_name

READABLE_RATIO = 4.5

STYLES = ("warm", "cool", "neutral")
ROLES = ("Primary", "Header", "Accent", "Background", "Surface", "Text")
PRIMARY, HEADER, ACCENT, BACKGROUND, SURFACE, TEXT = range(6)
# Foreground on background, in the order the contrast pass takes them: each of "Text" and
# "Header" meets the second background in the state the first left it in.
CONTRAST_PAIRS = ((TEXT, BACKGROUND), (TEXT, SURFACE), (HEADER, BACKGROUND), (HEADER, SURFACE))

# A dark colour of the dark version is one below this lightness, a light one at it or above.
DARK_SPLIT = 0.55
LIGHTNESS_FLOOR = 0.04
LIGHTNESS_CEILING = 0.96


# --- shared -------------------------------------------------------------------------------------


def wrapped_hue(h):
    """Hue arithmetic wraps into 0 to 360 by repeated adding or subtracting of 360."""
    while h < 0.0:
        h += 360.0
    while h >= 360.0:
        h -= 360.0
    return h


def ratio_of(first_hex, second_hex):
    """Contrast ratio of two codes, or None when either can't be read."""
    first = colorref.relative_luminance(first_hex)
    second = colorref.relative_luminance(second_hex)
    if first is None or second is None:
        return None
    return colorref.contrast_ratio(first, second)


def reads_on(foreground, background):
    ratio = ratio_of(foreground, background)
    return ratio is not None and ratio >= READABLE_RATIO


# --- scheme generator ---------------------------------------------------------------------------


def scheme_colors(primary_hex, h, s, l, style):
    """The six roles of `style` for a starting colour of HSL (h, s, l), names still empty.
    "Primary" is the starting text itself."""
    header = (h, min(s * 1.1, 1.0), 0.25)
    if style == "warm":
        accent = (wrapped_hue(h + 30.0), s, max(l, 0.4))
        background = (wrapped_hue(h + 15.0), 0.15, 0.97)
        surface = (wrapped_hue(h + 15.0), 0.12, 0.93)
        text = (h, min(s * 0.8, 1.0), 0.15)
    elif style == "cool":
        accent = (wrapped_hue(h - 30.0), s, max(l, 0.4))
        background = (wrapped_hue(h - 15.0), 0.12, 0.97)
        surface = (wrapped_hue(h - 15.0), 0.1, 0.93)
        text = (h, min(s * 0.8, 1.0), 0.15)
    elif style == "neutral":
        accent = (wrapped_hue(h + 180.0), max(s * 0.7, 0.3), max(l, 0.4))
        background = (h, 0.05, 0.97)
        surface = (h, 0.04, 0.93)
        text = (h, 0.1, 0.15)
    else:
        raise ValueError(style)
    hexes = [primary_hex] + [colorref.hsl_to_hex(*arguments)
                             for arguments in (header, accent, background, surface, text)]
    return [{"role": role, "hex": code, "name": ""} for role, code in zip(ROLES, hexes)]


def contrast_pass(colors):
    """Moves each pair's foreground, in pair order, until it reads on the background, where the
    lightness search finds a colour; the colours are changed in place."""
    for foreground, background in CONTRAST_PAIRS:
        fg_hex = colors[foreground]["hex"]
        bg_hex = colors[background]["hex"]
        if reads_on(fg_hex, bg_hex):
            continue
        adjusted = colorref.adjusted_for_contrast(fg_hex, bg_hex, READABLE_RATIO)
        if adjusted is not None:
            colors[foreground]["hex"] = adjusted


def generate(primary_hex, style):
    """(colours, allReadable) of the generator for a starting code and style, or None when the
    code can't be read (the preview keeps what it had)."""
    hsl = colorref.hex_to_hsl(primary_hex)
    if hsl is None:
        return None
    colors = scheme_colors(primary_hex, *hsl, style)
    contrast_pass(colors)
    names = []
    for color in colors:
        color["name"] = unique_name(colorref.color_name(color["hex"]), names)
        names.append(color["name"])
    all_readable = all(reads_on(colors[fg]["hex"], colors[bg]["hex"])
                       for fg, bg in CONTRAST_PAIRS)
    return colors, all_readable


def scheme_command(code, style="warm"):
    """JSON value of `hueshelf scheme CODE --style STYLE --json`, or None when CODE isn't a
    colour. The command reads CODE as a pasted code; "Primary" is its canonical form."""
    primary = colorref.parse_color_code(code)
    if primary is None:
        return None
    colors, all_readable = generate(primary, style)
    return {"colors": colors, "allReadable": all_readable}


# --- dark version -------------------------------------------------------------------------------


def lightness_of(hex_code):
    hsl = colorref.hex_to_hsl(hex_code)
    return None if hsl is None else hsl[2]


def dark_contrast_pass(colors):
    """Moves every dark colour against every light one in turn, from its latest value. Which
    colours are dark and which light is settled once, before anything moves."""
    colors = [dict(color) for color in colors]
    lightness = [lightness_of(color["hex"]) for color in colors]
    dark = [i for i, l in enumerate(lightness) if l is not None and l < DARK_SPLIT]
    light = [i for i, l in enumerate(lightness) if l is not None and l >= DARK_SPLIT]
    if not dark:
        return colors
    for d in dark:
        for t in light:
            if reads_on(colors[d]["hex"], colors[t]["hex"]):
                continue
            adjusted = colorref.adjusted_for_contrast(colors[d]["hex"], colors[t]["hex"],
                                                      READABLE_RATIO)
            if adjusted is not None:
                colors[d]["hex"] = adjusted
    return colors


def inverted(hex_code):
    """The code with its lightness inverted within the floor and ceiling; an unreadable code as
    it was."""
    hsl = colorref.hex_to_hsl(hex_code)
    if hsl is None:
        return hex_code
    h, s, l = hsl
    return colorref.hsl_to_hex(h, s, max(min(1.0 - l, LIGHTNESS_CEILING), LIGHTNESS_FLOOR))


def dark_version(colors):
    return dark_contrast_pass([dict(color, hex=inverted(color["hex"])) for color in colors])


def dark_command(colors):
    """JSON value of `hueshelf dark PALETTE --json` for the palette's stored colours."""
    return {"colors": [{"name": color["name"], "hex": color["hex"]}
                       for color in dark_version(colors)]}
