#!/usr/bin/env python3
"""Differential test: `hueshelf scheme` and `hueshelf dark` against generatorref.py.

On random but repeatable inputs (fixed seed): `scheme CODE [--style S] --json` of starting colours
drawn towards the boundaries of the derivation, and `dark [PALETTE] --json` of palettes of 0 to 12
colours (unreadable codes, whites, blacks, inverted lightness at the 0.55 split or at 0.5)
written into private homes, whose preferences file must stay untouched.
"""

import json
import os
import random
import sys

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import colorref  # noqa: E402
import generatorref  # noqa: E402
import refdriver  # noqa: E402
from refdriver import hue_grid_colour, nudged, pasted, random_hsl, rgb_of_hsl  # noqa: E402

# Every run of `dark` reads the whole file, so a few smaller homes keep each run cheap.
PALETTES_PER_HOME = 60
# Hues at which the derivation's offsets wrap past 0 or 360 degrees, and hue limits of the names
# that the scheme's colours land near.
WRAP_HUES = (0, 15, 30, 180, 330, 345)
NAME_HUES = (10, 20, 35, 45, 55, 70, 85, 105, 145, 165, 185, 205, 250, 270, 290, 320, 350)
JUNK_CODES = ("nope", "#FFF", "#12345", "#12345G", "rgb(1,2)", "hsl(1, 2, 3)", "#abcdefff",
              "0x336699", "", " ", "#1234567", "##abcdef", "# 123456", "#12 3456")
ODD_NAMES = ("", "  ", "Ink", "ink", "Ünïcode ✨", "Name \"quoted\"", "back\\slash", "tab\there",
             "line\nbreak", "日本の色", " padded ", "Blue", "Blue 2", "#FFFFFF", "🎨")


def at_hue(rng, hue):
    """Bytes of exactly the hue `hue` where the byte grid allows, at a random spread and level."""
    for _ in range(10 if hue == int(hue) else 0):
        spread = rng.randint(1, 255)
        low = rng.randint(0, 255 - spread)
        rgb = hue_grid_colour(int(hue), low + spread, low)
        if rgb:
            return rgb
    return nudged(rng, random_hsl(rng, (0.05, 1.0), (0.05, 0.95), (hue, hue)))


def lightness_total(rng, total):
    """Bytes whose max + min is `total` (lightness total / 510), any hue and saturation."""
    spread = rng.randint(0, min(total, 510 - total))
    spread += (total + spread) % 2 * (-1 if spread > 0 else 1)
    high = (total + spread) // 2
    return tuple(rng.sample((high, total - high, rng.randint(total - high, high)), 3))


def scheme_start(rng):
    """A starting colour as bytes, drawn towards the boundaries of the derivation."""
    roll = rng.random()
    if roll < 0.25:
        return tuple(rng.randrange(256) for _ in range(3))
    if roll < 0.33:
        return (rng.choice((0, 255, 1, 254, 127, 128, rng.randrange(256))),) * 3
    if roll < 0.43:  # saturated: s * 1.1 at 1 or above from s = 1/1.1 up
        s = rng.choice((1.0, 1.0, 0.95, 1 / 1.1, 0.905, 0.915, rng.uniform(0.85, 1.0)))
        return nudged(rng, random_hsl(rng, (s, s), (0.05, 0.95)))
    if roll < 0.63:
        hue = (rng.choice(WRAP_HUES) + rng.choice((0, 0, 0, -0.3, 0.3, -1, 1, -3, 3))) % 360
        return at_hue(rng, hue if rng.random() < 0.5 else hue + 0.5)
    if roll < 0.72:  # lightness at the "Accent" floor of 0.4 (max + min around 204)
        return lightness_total(rng, rng.choice((203, 204, 205, rng.randint(150, 260))))
    if roll < 0.8:  # saturation at the neutral "Accent" floor: s * 0.7 against 0.3
        s = rng.choice((3 / 7, 0.42, 0.44, rng.uniform(0.35, 0.5)))
        return nudged(rng, random_hsl(rng, (s, s), (0.1, 0.9)))
    if roll < 0.88:  # near black and near white, where the roles are furthest from the start
        low = rng.choice((0, 235))
        return tuple(rng.randint(low, low + 20) for _ in range(3))
    if roll < 0.95:
        # Light, vivid yellows and greens: "Header" and "Text" keep little contrast on the light
        # backgrounds of their own hue and need the lightness search.
        return random_hsl(rng, (0.6, 1.0), (0.3, 0.8), (40, 200))
    return at_hue(rng, rng.choice(NAME_HUES))


def dark_palette_colour(rng):
    """A stored colour's code, drawn towards the boundaries of the dark version."""
    roll = rng.random()
    if roll < 0.08:
        return rng.choice(JUNK_CODES)
    if roll < 0.28:
        rgb = tuple(rng.randrange(256) for _ in range(3))
    elif roll < 0.36:  # whites and blacks, whose inverted lightness meets the floor or ceiling
        rgb = rng.choice(((255, 255, 255), (0, 0, 0), (250, 250, 250), (5, 5, 5), (255, 250, 240),
                          (10, 0, 20), (246, 245, 244), (10, 11, 9)))
    elif roll < 0.58:
        # Max + min around 255 (lightness 0.5, which stays 0.5 and is dark), around 229 and 280
        # (inverted to either side of the 0.55 split) and at the inversion's floor and ceiling.
        rgb = lightness_total(rng, rng.choice((255, 255, 254, 256, 229, 230, 228, 231, 280, 281,
                                               279, 282, 20, 21, 19, 489, 490, 491)))
    elif roll < 0.72:  # light pastels: they invert to dark backgrounds
        rgb = random_hsl(rng, (0.2, 1.0), (0.7, 0.95))
    elif roll < 0.78:
        # Blues, violets and reds that invert to light colours of little luminance, on which
        # not even black reads: the lightness search turns to the lighter side.
        rgb = rgb_of_hsl(rng.choice((rng.uniform(210, 290), rng.uniform(330, 360))),
                         rng.uniform(0.7, 1.0), rng.uniform(0.36, 0.45))
    else:  # dark vivid colours (they invert to light text) and mid-tones
        rgb = random_hsl(rng, l=(0.1, 0.65))
    # As another writer of the file may have left it.
    six, roll = refdriver.six_of(rgb), rng.random()
    return refdriver.code_of(rgb) if roll < 0.6 else rng.choice(("#" + six, six.upper(), six)) \
        if roll < 0.85 else rng.choice((" ", "\n", "\t", "")) + "#" + six + rng.choice(
            (" ", "\n", "\r\n", "\t"))


def dark_palette(rng, number):
    colours = []
    for _ in range(rng.choice((0, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 8, 9, 10, 11, 12))):
        code, divider, auto = dark_palette_colour(rng), rng.random() < 0.15, rng.random() < 0.6
        name = generatorref.unique_name(colorref.color_name(code), [
            c["name"] for c in colours]) if auto else rng.choice(ODD_NAMES)
        colours.append(refdriver.item(rng, name, code, divider, rng.choice((
            "", "Brand", "Ünï")) if divider else "", auto, rng.random() < 0.2))
    if rng.random() < 0.1 and colours:
        # The same colour again, to see the pass move identical backgrounds alike.
        colours.append(dict(rng.choice(colours), id=refdriver.upper_uuid(rng)))
    stamp = 1700000000000.0 + rng.randrange(10 ** 9) + rng.random()
    name = rng.choice(("Palette", "Ünïcode", "Dark")) + " %d" % number + rng.choice(
        ("", " (Dark)", " ✨", "  "))
    record = refdriver.record(rng, name, colours[:12], stamp, revision=rng.randint(1, 40),
                              updatedAt=stamp + rng.randrange(10 ** 6),
                              isLocked=rng.random() < 0.2)
    if rng.random() < 0.3:
        record["updatedByDeviceId"] = refdriver.upper_uuid(rng)
    return record


def run_dark_home(binary, root, number, palettes, active, cases):
    """Runs `dark` on each case, a palette and its address: "id", "name" or "active" (none)."""
    env, path, written, store = refdriver.private_home(binary, root, "dark-%d" % number, palettes,
                                                       active)
    results = [("palettes --json of home %d (%d palettes)" % (number, len(palettes)), store)]
    for palette, address in [] if store else cases:
        results += refdriver.checked(
            binary, env, ["dark"] + [palette.get(address)] * (address != "active") + ["--json"],
            generatorref.dark_command(palette["colors"]), "dark %s of %s" % (
                address, json.dumps([c["hex"] for c in palette["colors"]])))
    # Neither command changes a palette: the file is as it was written.
    with open(path, "rb") as stream:
        unchanged = stream.read() == written
    return results + [("preferences file untouched: dark-%d" % number,
                       [] if unchanged else [("bytes", "as written", "changed")])]


def body(options, root, pool):
    rng = random.Random(options.seed)
    styles = generatorref.STYLES
    schemes = [(code, style) for code in ("#000000", "#FFFFFF", "#808080", "#FF0000", "#00FF00",
                                          "#0000FF", "#FFFF00", "rgb(300, 0, 0)")
               for style in styles]
    for number in range(options.count * 3 // 5):
        style = rng.choice(styles + (None,) * (number % 5 == 0))
        schemes.append((rng.choice(JUNK_CODES) if number % 40 == 17 else pasted(
            rng, scheme_start(rng)), style))
    env = refdriver.home_env(os.path.join(root, "scheme"))  # schemes touch no palette
    futures = [pool.submit(refdriver.checked, options.binary, env, [
        "scheme", code, "--json"] + ["--style", style] * bool(style),
        generatorref.scheme_command(code, style or "warm")) for code, style in schemes]

    rng = random.Random(options.seed + 1)
    palettes = [dark_palette(rng, number)
                for number in range(max(1, options.count - options.count * 3 // 5))]
    for start in range(0, len(palettes), PALETTES_PER_HOME):
        group = palettes[start:start + PALETTES_PER_HOME]
        active = rng.choice(group)
        cases = [(palette, "name" if rng.random() < 0.3 else "id") for palette in group]
        futures.append(pool.submit(run_dark_home, options.binary, root, start, group,
                                   active["id"], cases + [(active, "active")]))
    return "%d schemes, %d dark palettes" % (len(schemes), len(palettes)), futures


if __name__ == "__main__":
    sys.exit(refdriver.main(__doc__, 20240613, 1200, body))
