#!/usr/bin/env python3
"""Differential test: `hueshelf scheme` and `hueshelf dark` against the model in generatorref.py.

Scheme: random but repeatable starting colours (fixed seed), as hex with or without "#", rgb()
and hsl(), with the boundaries of the derivation among them: greys, black, white, saturations
whose 1.1 times reach 1, hues where the added or subtracted degrees wrap past 0 or 360, the
lightness floor of "Accent" and the saturation floor of the neutral "Accent"; each in all three
styles. Every field of `scheme CODE --style S --json` is compared exactly.

Dark: random palettes of 0 to 12 colours, with unreadable codes, codes in odd but readable forms,
whites, blacks, colours whose inverted lightness sits at the 0.55 split or at 0.5, and locked
colours, are written into the preferences file of a private home, read back through
`palettes --json`, and `dark PALETTE --json` (by id, by name, or the active one) is compared
exactly with the model. The preferences file must come out of the runs untouched.

Prints "N passed, M failed" and the first mismatches; exits 1 on any mismatch.
"""

import argparse
import concurrent.futures
import json
import os
import random
import sys
import tempfile
import uuid

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import colorref  # noqa: E402
import generatorref  # noqa: E402
from differential import Tally, compare, hex_text, place_hue, run  # noqa: E402

DEFAULT_SEED = 20240613
PREFERENCES_NAME = "io.hueshelf.Hueshelf.json"
# Palettes per preferences file: every run of `dark` reads the whole file, so a few smaller
# homes keep each run cheap.
PALETTES_PER_HOME = 60

# Hues at which the derivation's offsets wrap past 0 or 360 degrees (warm +30 and +15, cool -30
# and -15, neutral +180), and the hue limits of the names that the scheme's colours land near.
WRAP_HUES = (0, 15, 30, 180, 330, 345)
NAME_HUES = (10, 20, 35, 45, 55, 70, 85, 105, 145, 165, 185, 205, 250, 270, 290, 320, 350)

JUNK_CODES = ("nope", "#FFF", "#12345", "#12345G", "rgb(1,2)", "hsl(1, 2, 3)", "#abcdefff",
              "blue", "0x336699")


# --- scheme inputs ------------------------------------------------------------------------------


def code_of(rgb):
    return "#%02X%02X%02X" % tuple(rgb)


def rgb_of_hsl(h, s, l):
    return colorref.hex_to_rgb(colorref.hsl_to_hex(h % 360.0, min(1.0, max(0.0, s)),
                                                   min(1.0, max(0.0, l))))


def nudged(rng, rgb, most=1):
    channels = list(rgb)
    for _ in range(rng.randint(0, 2)):
        i = rng.randrange(3)
        channels[i] = min(255, max(0, channels[i] + rng.randint(-most, most)))
    return tuple(channels)


def at_hue(rng, hue):
    """Bytes with the hue `hue` where the byte grid allows, at a random spread and level."""
    spread = rng.randint(1, 255)
    low = rng.randint(0, 255 - spread)
    six = place_hue(rng, hue, low + spread, low)
    return colorref.hex_to_rgb(six)


def scheme_start(rng):
    """A starting colour as bytes, drawn towards the boundaries of the derivation."""
    roll = rng.random()
    if roll < 0.25:
        return tuple(rng.randrange(256) for _ in range(3))
    if roll < 0.33:
        grey = rng.choice((0, 255, 1, 254, 127, 128, rng.randrange(256)))
        return (grey, grey, grey)
    if roll < 0.43:
        # Saturated: s * 1.1 at 1 or above from s = 1/1.1 up.
        s = rng.choice((1.0, 1.0, 0.95, 1 / 1.1, 0.905, 0.915, rng.uniform(0.85, 1.0)))
        return nudged(rng, rgb_of_hsl(rng.uniform(0, 360), s, rng.uniform(0.05, 0.95)))
    if roll < 0.63:
        hue = rng.choice(WRAP_HUES) + rng.choice((0, 0, 0, -0.3, 0.3, -1, 1, -3, 3))
        if rng.random() < 0.5:
            return at_hue(rng, hue % 360)
        return nudged(rng, rgb_of_hsl(hue, rng.uniform(0.05, 1.0), rng.uniform(0.05, 0.95)))
    if roll < 0.72:
        # Lightness at the "Accent" floor of 0.4 (max + min around 204).
        return bytes_with_lightness_total(rng, rng.choice((203, 204, 205,
                                                           rng.randint(150, 260))))
    if roll < 0.8:
        # Saturation at the neutral "Accent" floor: s * 0.7 against 0.3.
        s = rng.choice((3 / 7, 0.42, 0.44, rng.uniform(0.35, 0.5)))
        return nudged(rng, rgb_of_hsl(rng.uniform(0, 360), s, rng.uniform(0.1, 0.9)))
    if roll < 0.88:
        # Near black and near white, where the derived roles are furthest from the start.
        if rng.random() < 0.5:
            return tuple(rng.randint(0, 20) for _ in range(3))
        return tuple(rng.randint(235, 255) for _ in range(3))
    if roll < 0.95:
        # Light, vivid yellows and greens: "Header" and "Text" keep little contrast on the light
        # backgrounds of their own hue and need the lightness search.
        return nudged(rng, rgb_of_hsl(rng.uniform(40, 200), rng.uniform(0.6, 1.0),
                                      rng.uniform(0.3, 0.8)))
    return at_hue(rng, rng.choice(NAME_HUES))


def scheme_argument(rng, rgb):
    """The colour as a person might pass it to the command."""
    six = "%02x%02x%02x" % tuple(rgb)
    roll = rng.random()
    if roll < 0.3:
        return code_of(rgb)
    if roll < 0.45:
        return six if rng.random() < 0.5 else six.upper()
    if roll < 0.55:
        return "#" + six
    if roll < 0.65:
        return hex_text(rng, six)
    if roll < 0.82:
        alpha = rng.choice(("", "", ", 0.5", ",1"))
        return "%s(%d, %d, %d%s)" % ("rgba" if alpha else rng.choice(("rgb", "RGB")),
                                     rgb[0], rgb[1], rgb[2], alpha)
    # The pasted HSL form names a nearby colour, read by the same rules.
    h, s, l = colorref.bytes_to_hsl(*rgb)
    if rng.random() < 0.3:
        h += rng.choice((360.0, 720.0))
    precision = rng.choice((0, 1, 3, 17))
    return "hsl(%.*f, %.*f%%, %.*f%%)" % (precision, h, precision, s * 100, precision, l * 100)


def make_scheme_cases(rng, count):
    cases = []
    # Fixed: black, white, a grey and pure primaries in every style, and the default start.
    for code in ("#000000", "#FFFFFF", "#808080", "#FF0000", "#00FF00", "#0000FF", "#FFFF00",
                 "#3B82F6", "#ff0001", "ffffff", "rgb(300, 0, 0)", "hsl(350, 100%, 50%)",
                 "hsl(30, 50%, 50%)", "hsl(180, 40%, 60%)", "hsl(330, 80%, 40%)"):
        for style in generatorref.STYLES:
            cases.append((code, style))
    cases.append(("#3B82F6", None))
    for number in range(count):
        if number % 40 == 17:
            cases.append((rng.choice(JUNK_CODES), rng.choice(generatorref.STYLES + (None,))))
            continue
        code = scheme_argument(rng, scheme_start(rng))
        style = rng.choice(generatorref.STYLES + (None,) if number % 5 == 0
                           else generatorref.STYLES)
        cases.append((code, style))
    return cases


def one_line_failure(status, stderr):
    mismatches = []
    if status != 1:
        mismatches.append(("exit status", 1, status))
    if not stderr.strip() or not stderr.endswith("\n") or stderr.count("\n") != 1:
        mismatches.append(("stderr", "one line", stderr))
    return mismatches


def check_scheme(binary, env, case):
    code, style = case
    arguments = ["scheme", code] + (["--style", style] if style else []) + ["--json"]
    label = "scheme %r%s" % (code, " --style " + style if style else "")
    expected = generatorref.scheme_command(code, style or "warm")
    status, parsed, parse_error, stdout, stderr = run(binary, arguments, env)
    if expected is None:
        return label, one_line_failure(status, stderr), None
    if status != 0 or parse_error or not isinstance(parsed, dict):
        return label, [("run", "status 0 and a JSON object",
                        "status %d %s %r %r" % (status, parse_error or "", stdout[:300],
                                                stderr[:300]))], expected
    mismatches = []
    compare(expected, parsed, "", mismatches)
    return label, mismatches, expected


def scheme_coverage(case, expected, coverage):
    def bump(key):
        coverage[key] = coverage.get(key, 0) + 1
    if expected is None:
        bump("scheme: not a colour")
        return
    primary = expected["colors"][generatorref.PRIMARY]["hex"]
    h, s, l = colorref.hex_to_hsl(primary)
    style = case[1] or "warm"
    derived = generatorref.scheme_colors(primary, h, s, l, style)
    for role in (generatorref.TEXT, generatorref.HEADER):
        if derived[role]["hex"] != expected["colors"][role]["hex"]:
            bump("scheme: %s moved" % generatorref.ROLES[role])
    if not expected["allReadable"]:
        bump("scheme: not all readable")
    if any(" 2" in color["name"] for color in expected["colors"]):
        bump("scheme: a numbered name")
    if s == 0.0:
        bump("scheme: grey start")
    if s * 1.1 >= 1.0:
        bump("scheme: Header saturation clamped")
    if l < 0.4:
        bump("scheme: Accent lightness floor")
    if style == "neutral" and s * 0.7 < 0.3:
        bump("scheme: neutral Accent saturation floor")
    offsets = {"warm": (30.0, 15.0), "cool": (-30.0, -15.0), "neutral": (180.0,)}[style]
    if any(not 0.0 <= h + offset < 360.0 for offset in offsets):
        bump("scheme: hue wraps")


# --- dark inputs --------------------------------------------------------------------------------

UNREADABLE_HEXES = ("", " ", "#12345", "#1234567", "#FFF", "fff", "nope", "#abcdefff",
                    "rgb(10, 20, 30)", "##abcdef", "#GGGGGG", "# 123456", "#12 3456")
ODD_NAMES = ("", "  ", "Ink", "ink", "Ünïcode ✨", "Name \"quoted\"", "back\\slash", "tab\there",
             "line\nbreak", "日本の色", " padded ", "Blue", "Blue 2", "#FFFFFF", "🎨")


def readable_text(rng, rgb):
    """A readable code as another writer of the file may have left it."""
    six = "%02x%02x%02x" % tuple(rgb)
    roll = rng.random()
    if roll < 0.6:
        return code_of(rgb)
    if roll < 0.75:
        return "#" + six
    if roll < 0.85:
        return six.upper() if rng.random() < 0.5 else six
    return rng.choice((" ", "\n", "\t", "")) + "#" + six + rng.choice((" ", "\n", "\r\n", "\t"))


def bytes_with_lightness_total(rng, total):
    """Bytes whose max + min is `total` (lightness total / 510), any hue and saturation."""
    spread = rng.randint(0, min(total, 510 - total))
    if (total + spread) % 2:
        spread = spread - 1 if spread > 0 else spread + 1
    high = (total + spread) // 2
    low = total - high
    return tuple(rng.sample((high, low, rng.randint(low, high)), 3))


def dark_palette_colour(rng):
    """A stored colour's code, drawn towards the boundaries of the dark version."""
    roll = rng.random()
    if roll < 0.08:
        return rng.choice(UNREADABLE_HEXES)
    if roll < 0.28:
        rgb = tuple(rng.randrange(256) for _ in range(3))
    elif roll < 0.36:
        # Whites and blacks, where the inverted lightness meets the floor or the ceiling.
        rgb = rng.choice(((255, 255, 255), (0, 0, 0), (250, 250, 250), (5, 5, 5), (255, 250, 240),
                          (10, 0, 20), (246, 245, 244), (10, 11, 9)))
    elif roll < 0.5:
        # Originals at max + min around 255 (lightness 0.5, which stays 0.5 and is dark) and
        # around 229 and 280 (inverted to either side of the 0.55 split).
        rgb = bytes_with_lightness_total(rng, rng.choice((255, 255, 254, 256, 229, 230, 228, 231,
                                                          280, 281, 279, 282)))
    elif roll < 0.58:
        # Lightness at the floor and ceiling of the inversion: 0.04 and 0.96.
        rgb = bytes_with_lightness_total(rng, rng.choice((20, 21, 19, 489, 490, 491)))
    elif roll < 0.72:
        # Light pastels: they invert to dark backgrounds.
        rgb = rgb_of_hsl(rng.uniform(0, 360), rng.uniform(0.2, 1.0), rng.uniform(0.7, 0.95))
    elif roll < 0.78:
        # Blues, violets and reds that invert to light colours of little luminance, on which
        # not even black reads: the lightness search turns to the lighter side.
        rgb = rgb_of_hsl(rng.choice((rng.uniform(210, 290), rng.uniform(330, 360))),
                         rng.uniform(0.7, 1.0), rng.uniform(0.36, 0.45))
    elif roll < 0.86:
        # Dark vivid colours: they invert to light text.
        rgb = rgb_of_hsl(rng.uniform(0, 360), rng.uniform(0.4, 1.0), rng.uniform(0.1, 0.35))
    else:
        # Mid-tones, where inverted text and background sit close together.
        rgb = rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.uniform(0.35, 0.65))
    return readable_text(rng, rgb)


def upper_uuid(rng):
    return str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper()


def colour_record(rng, hex_code, names):
    roll = rng.random()
    if roll < 0.6:
        name = colorref.color_name(hex_code)
        if rng.random() < 0.7:
            name = generatorref.unique_name(name, names)
        auto = True
    else:
        name = rng.choice(ODD_NAMES)
        auto = False
    divider = rng.random() < 0.15
    return {
        "id": upper_uuid(rng),
        "name": name,
        "hex": hex_code,
        "isAutoNamed": auto,
        "isLocked": rng.random() < 0.2,
        "dividerBefore": divider,
        "dividerLabel": rng.choice(("", "Brand", "Ünï")) if divider else "",
    }


def random_dark_palette(rng, number):
    size = rng.choice((1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 8, 9, 10, 11, 12))
    colours, names = [], []
    for _ in range(size):
        colour = colour_record(rng, dark_palette_colour(rng), names)
        colours.append(colour)
        names.append(colour["name"])
    if rng.random() < 0.1 and colours:
        # The same colour again, to see the pass move identical backgrounds alike.
        colours.append(dict(colours[rng.randrange(len(colours))], id=upper_uuid(rng)))
        colours = colours[:12]
    stamp = 1700000000000.0 + rng.randrange(10 ** 9) + rng.random()
    record = {
        "id": upper_uuid(rng),
        "name": rng.choice(("Palette", "Brand", "Ünïcode", "Dark", "Ink & Paper")) +
        " %d" % number + rng.choice(("", " (Dark)", " ✨", "  ")),
        "colors": colours,
        "createdAt": stamp,
        "updatedAt": stamp + rng.randrange(10 ** 6),
        "revision": rng.randint(1, 40),
        "isLocked": rng.random() < 0.2,
    }
    if rng.random() < 0.3:
        record["updatedByDeviceId"] = upper_uuid(rng)
    return record


# Palettes for the rules' own edge cases, always in the run.
FIXED_DARK_PALETTES = (
    ("#FFFFFF", "#000000"),
    ("#808080",),
    ("#FFFFFF",),
    ("#000000", "#101010", "#202020"),  # all invert to light: no dark colour
    ("#F0F0F0", "#E0E0FF", "#FFEEDD"),  # all invert to dark: the pass changes nothing
    ("", "#12345", "#3366FF", "nope", "#FFF"),
    ("#FF0000", "#00FF00", "#0000FF", "#FFFF00", "#00FFFF", "#FF00FF", "#FFFFFF", "#000000"),
    ("#FFFFFF", "#FFFFFF", "#F8F8F8", "#3B82F6", "#1E293B", "#FACC15"),
    (),
)


def fixed_dark_palette(rng, number, codes):
    palette = random_dark_palette(rng, number)
    names = []
    palette["colors"] = []
    for code in codes:
        colour = colour_record(rng, code, names)
        palette["colors"].append(colour)
        names.append(colour["name"])
    palette["name"] = "Fixed %d" % number
    return palette


def preferences_object(palettes, active_id):
    return {
        "colorTemplates": palettes,
        "activeTemplateId": active_id,
        "colorLastModified": 1700000000000.0,
        "schemaVersion": 2,
    }


def write_preferences(home, palettes, active_id):
    config = os.path.join(home, "config", "hueshelf")
    os.makedirs(config, exist_ok=True)
    path = os.path.join(config, PREFERENCES_NAME)
    data = json.dumps(preferences_object(palettes, active_id), indent=4, ensure_ascii=False)
    with open(path, "w", encoding="utf-8") as stream:
        stream.write(data + "\n")
    return path


def home_env(home):
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=home,
               XDG_CONFIG_HOME=os.path.join(home, "config"),
               XDG_DATA_HOME=os.path.join(home, "data"), XDG_RUNTIME_DIR=home)
    # A run with this set keeps its store in a directory of its own, not in the home.
    env.pop("XCTestConfigurationFilePath", None)
    return env


def verify_store(binary, env, palettes, active_id):
    """Mismatches between what was written and what `palettes --json` says the program read."""
    status, parsed, parse_error, stdout, stderr = run(binary, ["palettes", "--json"], env)
    if status != 0 or parse_error or not isinstance(parsed, list):
        return [("palettes --json", "status 0 and a JSON array",
                 "status %d %s %r %r" % (status, parse_error or "", stdout[:300], stderr[:300]))]
    expected = [{"id": p["id"], "name": p["name"], "colorCount": len(p["colors"]),
                 "isActive": p["id"] == active_id, "isLocked": p["isLocked"],
                 "revision": p["revision"], "updatedAt": p["updatedAt"]} for p in palettes]
    mismatches = []
    compare(expected, parsed, "", mismatches)
    return mismatches


def check_dark(binary, env, palette, address):
    """`address` is "id", "name" or "active" (no PALETTE argument)."""
    arguments = ["dark"] + ([palette[address]] if address != "active" else []) + ["--json"]
    label = "dark %s of %s" % (address if address != "active" else "(active)",
                               json.dumps([c["hex"] for c in palette["colors"]]))
    expected = generatorref.dark_command(palette["colors"])
    status, parsed, parse_error, stdout, stderr = run(binary, arguments, env)
    if status != 0 or parse_error or not isinstance(parsed, dict):
        return label, [("run", "status 0 and a JSON object",
                        "status %d %s %r %r" % (status, parse_error or "", stdout[:300],
                                                stderr[:300]))], palette
    mismatches = []
    compare(expected, parsed, "", mismatches)
    return label, mismatches, palette


def dark_coverage(palette, coverage):
    def bump(key):
        coverage[key] = coverage.get(key, 0) + 1
    colours = palette["colors"]
    inverted = [dict(c, hex=generatorref.inverted(c["hex"])) for c in colours]
    final = generatorref.dark_contrast_pass(inverted)
    lightness = [generatorref.lightness_of(c["hex"]) for c in inverted]
    dark = [i for i, l in enumerate(lightness) if l is not None and l < generatorref.DARK_SPLIT]
    light = [i for i, l in enumerate(lightness) if l is not None and l >= generatorref.DARK_SPLIT]
    if any(l is None for l in lightness):
        bump("dark: unreadable code kept")
    if not dark:
        bump("dark: no dark colour")
    elif not light:
        bump("dark: no light colour")
    if any(l == 0.5 for l in lightness):
        bump("dark: inverted lightness exactly 0.5")
    if any(l is not None and abs(l - generatorref.DARK_SPLIT) < 0.003 for l in lightness):
        bump("dark: inverted lightness at the split")
    if any(a["hex"] != b["hex"] for a, b in zip(inverted, final)):
        bump("dark: pass moved a colour")
    unfixable = moved_twice = second_direction = False
    for d in dark:
        hex_code, moves = inverted[d]["hex"], 0
        for t in light:
            if generatorref.reads_on(hex_code, inverted[t]["hex"]):
                continue
            black = colorref.hsl_to_hex(0.0, 0.0, 0.0)
            if not generatorref.reads_on(black, inverted[t]["hex"]):
                second_direction = True
            adjusted = colorref.adjusted_for_contrast(hex_code, inverted[t]["hex"], 4.5)
            if adjusted is None:
                unfixable = True
            else:
                moves += 1
                hex_code = adjusted
        moved_twice = moved_twice or moves > 1
    if unfixable:
        bump("dark: a pair with no fix")
    if moved_twice:
        bump("dark: a colour moved twice")
    if second_direction:
        bump("dark: search turned to the lighter side")
    if any(generatorref.lightness_of(final[d]["hex"]) >= generatorref.DARK_SPLIT for d in dark):
        # Lists made afresh after a move would count this colour as light.
        bump("dark: a dark colour ended light")
    if any(not generatorref.reads_on(final[d]["hex"], final[t]["hex"])
           for d in dark for t in light):
        bump("dark: a pair left unreadable")
    if any(c["isLocked"] for c in colours):
        bump("dark: locked colour")


def make_dark_homes(rng, count):
    """Lists of (palettes, active id, cases); a case is (palette, address)."""
    palettes = [fixed_dark_palette(rng, number, codes)
                for number, codes in enumerate(FIXED_DARK_PALETTES)]
    palettes += [random_dark_palette(rng, number + len(palettes)) for number in range(count)]
    homes = []
    for start in range(0, len(palettes), PALETTES_PER_HOME):
        group = palettes[start:start + PALETTES_PER_HOME]
        active = rng.choice(group)
        cases = []
        for palette in group:
            cases.append((palette, "name" if rng.random() < 0.3 else "id"))
        cases.append((active, "active"))
        homes.append((group, active["id"], cases))
    return homes


# --- the model against the rules' own examples ---------------------------------------------------


def scheme_of(code, style="warm"):
    return generatorref.scheme_command(code, style)


def role_hsl(code, style, role):
    return colorref.hex_to_hsl(scheme_of(code, style)["colors"][role]["hex"])


def derived(code, style, role):
    primary = colorref.parse_color_code(code)
    return generatorref.scheme_colors(primary, *colorref.hex_to_hsl(primary), style)[role]["hex"]


def dark_hexes(*codes):
    return [c["hex"] for c in generatorref.dark_version([{"name": "", "hex": c} for c in codes])]


SELF_EXAMPLES = (
    ("roles in order", lambda: [c["role"] for c in scheme_of("#3B82F6")["colors"]],
     list(generatorref.ROLES)),
    ("Primary is the canonical code", lambda: scheme_of(" 3b82f6\n")["colors"][0]["hex"],
     "#3B82F6"),
    ("a grey start keeps Header grey", lambda: role_hsl("#808080", "warm", 1)[1], 0.0),
    ("a grey start keeps Text grey", lambda: role_hsl("#808080", "cool", 5)[1], 0.0),
    ("neutral Accent of a grey: hue 180", lambda: derived("#808080", "neutral", 2),
     colorref.hsl_to_hex(180.0, 0.3, colorref.hex_to_hsl("#808080")[2])),
    ("a saturated start: Header saturation 1.0", lambda: derived("#FF0000", "warm", 1),
     colorref.hsl_to_hex(0.0, 1.0, 0.25)),
    ("black: Accent lightness 0.4", lambda: derived("#000000", "warm", 2),
     colorref.hsl_to_hex(30.0, 0.0, 0.4)),
    ("hue 350 under warm: Accent at 20", lambda: round(colorref.hex_to_hsl(
        derived("hsl(350, 100%, 50%)", "warm", 2))[0]), 20),
    # Primary, Header (lightness 0.25) and Accent of a mid grey are all plain greys.
    ("three roles of the same look", lambda: [c["name"] for c in scheme_of("#808080")["colors"]
                                              ][:3], ["Gray", "Gray 2", "Gray 3"]),
    ("not a colour", lambda: scheme_of("#FFF"), None),
    ("white becomes lightness 0.04", lambda: dark_hexes("#FFFFFF"),
     [colorref.hsl_to_hex(0.0, 0.0, 0.04)]),
    ("black becomes lightness 0.96", lambda: dark_hexes("#000000"),
     [colorref.hsl_to_hex(0.0, 0.0, 0.96)]),
    ("lightness 0.5 stays and is dark", lambda: generatorref.lightness_of(
        dark_hexes("#FF0000")[0]), 0.5),
    ("all invert to dark: no move", lambda: dark_hexes("#F0F0F0", "#FFEEDD"),
     [generatorref.inverted("#F0F0F0"), generatorref.inverted("#FFEEDD")]),
    ("one colour: inversion only", lambda: dark_hexes("#3366FF"),
     [generatorref.inverted("#3366FF")]),
    ("an unreadable code stays", lambda: dark_hexes("#12345", "#FFFFFF")[0], "#12345"),
    ("a dark colour is moved until the light one reads on it",
     lambda: generatorref.reads_on(*dark_hexes("#C0C0C0", "#404040")), True),
)


def check_model():
    wrong = []
    for what, compute, expected in SELF_EXAMPLES:
        actual = compute()
        if actual != expected:
            wrong.append("%s: the model gives %r, the rules say %r" % (what, actual, expected))
    return wrong


# --- main ---------------------------------------------------------------------------------------


def report(tally, show):
    for label, mismatches in tally.reports[:show]:
        print("MISMATCH %s" % label)
        for path, want, got in mismatches[:8]:
            print("    %-28s expected %r" % (path or "(value)", want))
            print("    %-28s actual   %r" % ("", got))
    if len(tally.reports) > show:
        print("... and %d more mismatching cases" % (len(tally.reports) - show))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--binary", required=True, help="path of the hueshelf executable")
    parser.add_argument("--seed", type=int, default=DEFAULT_SEED)
    parser.add_argument("--count", type=int, default=1200,
                        help="number of random cases: three fifths schemes, two fifths dark "
                        "palettes (fixed edge cases come on top)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    parser.add_argument("--show", type=int, default=12, help="mismatches to print")
    options = parser.parse_args()

    wrong = check_model()
    if wrong:
        print("The reference model contradicts the rules' own examples:")
        print("\n".join("    " + line for line in wrong))
        print("0 passed, %d failed" % len(wrong))
        return 1

    scheme_cases = make_scheme_cases(random.Random(options.seed), options.count * 3 // 5)
    dark_homes = make_dark_homes(random.Random(options.seed + 1),
                                 max(1, options.count - options.count * 3 // 5))
    coverage = {}
    tally = Tally()
    with tempfile.TemporaryDirectory(prefix="hueshelf-generator-differential-") as root:
        jobs = max(1, options.jobs)
        with concurrent.futures.ThreadPoolExecutor(max_workers=jobs) as pool:
            # Schemes touch no palette; a private, empty home makes sure no real store is read.
            scheme_home = os.path.join(root, "scheme")
            os.makedirs(scheme_home)
            futures = [pool.submit(check_scheme, options.binary, home_env(scheme_home), case)
                       for case in scheme_cases]

            dark_runs, files = [], []
            for number, (palettes, active_id, cases) in enumerate(dark_homes):
                home = os.path.join(root, "dark-%d" % number)
                path = write_preferences(home, palettes, active_id)
                with open(path, "rb") as stream:
                    files.append((path, stream.read()))
                env = home_env(home)
                # Only palettes the program demonstrably read are worth comparing.
                store_mismatches = verify_store(options.binary, env, palettes, active_id)
                tally.record("palettes --json of home %d (%d palettes)" % (number, len(palettes)),
                             store_mismatches)
                if store_mismatches:
                    continue
                dark_runs += [pool.submit(check_dark, options.binary, env, palette, address)
                              for palette, address in cases]

            for future, case in zip(futures, scheme_cases):
                label, mismatches, expected = future.result()
                tally.record(label, mismatches)
                scheme_coverage(case, expected, coverage)
            for future in dark_runs:
                label, mismatches, palette = future.result()
                tally.record(label, mismatches)
                dark_coverage(palette, coverage)

        # Neither command changes a palette: the file is as it was written.
        for path, written in files:
            with open(path, "rb") as stream:
                unchanged = stream.read() == written
            tally.record("preferences file untouched: %s" % os.path.basename(os.path.dirname(
                os.path.dirname(os.path.dirname(path)))),
                [] if unchanged else [("bytes", "as written", "changed")])

    report(tally, options.show)
    print("seed %d: %d schemes, %d dark palettes in %d homes"
          % (options.seed, len(scheme_cases), sum(len(h[2]) for h in dark_homes), len(dark_homes)))
    print("covered: " + ", ".join("%s %d" % item for item in sorted(coverage.items())))
    print("%d passed, %d failed" % (tally.passed, tally.failed))
    return 1 if tally.failed else 0


if __name__ == "__main__":
    sys.exit(main())
