"""Reference model of HueShelf's scheme generator and dark version, written from the description
of both apart from the C++ sources, on top of colorref.py and checkref.py's unique names.
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


def wrapped_hue(h):
    while h < 0.0:
        h += 360.0
    while h >= 360.0:
        h -= 360.0
    return h


def reads_on(foreground, background):
    return colorref.contrast_ratio(colorref.relative_luminance(foreground),
                                   colorref.relative_luminance(background)) >= READABLE_RATIO


def moved_to_read(colors, foreground, background):
    """Moves an unreadable foreground where the lightness search finds a colour."""
    fg_hex, bg_hex = colors[foreground]["hex"], colors[background]["hex"]
    if not reads_on(fg_hex, bg_hex):
        adjusted = colorref.adjusted_for_contrast(fg_hex, bg_hex, READABLE_RATIO)
        if adjusted is not None:
            colors[foreground]["hex"] = adjusted


def scheme_colors(primary_hex, h, s, l, style):
    """The six roles of `style`, names empty; "Primary" is the starting code itself."""
    if style == "neutral":
        accent = (wrapped_hue(h + 180.0), max(s * 0.7, 0.3), max(l, 0.4))
        background, surface, text = (h, 0.05, 0.97), (h, 0.04, 0.93), (h, 0.1, 0.15)
    else:  # warm turns the hue one way, cool the other, with paler grounds
        turn, warm = (1.0, True) if style == "warm" else (-1.0, False)
        accent = (wrapped_hue(h + 30.0 * turn), s, max(l, 0.4))
        background = (wrapped_hue(h + 15.0 * turn), 0.15 if warm else 0.12, 0.97)
        surface = (wrapped_hue(h + 15.0 * turn), 0.12 if warm else 0.1, 0.93)
        text = (h, min(s * 0.8, 1.0), 0.15)
    hexes = [primary_hex] + [colorref.hsl_to_hex(*hsl) for hsl in (
        (h, min(s * 1.1, 1.0), 0.25), accent, background, surface, text)]
    return [{"role": role, "hex": code, "name": ""} for role, code in zip(ROLES, hexes)]


def scheme_command(code, style="warm"):
    """JSON of `scheme CODE --style STYLE --json`, or None when CODE isn't a colour."""
    primary = colorref.parse_color_code(code)
    if primary is None:
        return None
    colors = scheme_colors(primary, *colorref.hex_to_hsl(primary), style)
    for foreground, background in CONTRAST_PAIRS:
        moved_to_read(colors, foreground, background)
    names = []
    for color in colors:
        color["name"] = unique_name(colorref.color_name(color["hex"]), names)
        names.append(color["name"])
    return {"colors": colors, "allReadable": all(reads_on(colors[fg]["hex"], colors[bg]["hex"])
                                                 for fg, bg in CONTRAST_PAIRS)}


def inverted(hex_code):
    """The code with its lightness inverted within floor and ceiling; an unreadable one as is."""
    hsl = colorref.hex_to_hsl(hex_code)
    if hsl is None:
        return hex_code
    h, s, l = hsl
    return colorref.hsl_to_hex(h, s, max(min(1.0 - l, LIGHTNESS_CEILING), LIGHTNESS_FLOOR))


def dark_version(colors):
    """Inverts every colour, then moves every dark colour against every light one in turn, from
    its latest value. Which colours are dark and which light is settled before anything moves."""
    colors = [dict(color, hex=inverted(color["hex"])) for color in colors]
    hsls = [colorref.hex_to_hsl(color["hex"]) for color in colors]
    dark = [i for i, hsl in enumerate(hsls) if hsl is not None and hsl[2] < DARK_SPLIT]
    light = [i for i, hsl in enumerate(hsls) if hsl is not None and hsl[2] >= DARK_SPLIT]
    for d in dark:
        for t in light:
            moved_to_read(colors, d, t)
    return colors


def dark_command(colors):
    """JSON value of `hueshelf dark PALETTE --json` for the palette's stored colours."""
    return {"colors": [{"name": c["name"], "hex": c["hex"]} for c in dark_version(colors)]}
