#!/usr/bin/env python3
"""Differential test: `hueshelf check --colors CODE... --json` against checkref.py.

Random but repeatable palettes (fixed seed) of 0 to 12 colours, built to reach every branch of the
check, are compared field by field; issue ids, which hold random ids, by shape and by a
consistent mapping of colours to ids.
"""

import functools
import math
import os
import random
import re
import sys

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import checkref  # noqa: E402
import colorref  # noqa: E402
import refdriver  # noqa: E402
from differential import code_of, hue_grid_colour, rgb_of_hsl  # noqa: E402

UUID = "[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"
ISSUE_ID_SHAPES = {prefix: re.compile("^%s-%s$" % (prefix, "-".join(["(%s)" % UUID] * count)))
                   for prefix, count in (("read", 1), ("dupe", 2), ("look", 2))}

# Limits of the bands, the role lists, the look-alike exemptions, the fix search and the scheme
# rules; colours exactly on them (or an ulp off) are where a misread "<" or "<=" shows.
LIGHTNESS_LIMITS = (0.03, 0.15, 0.2, 0.25, 0.4, 0.5, 0.6, 0.65, 0.85, 0.97)
SATURATION_LIMITS = (0.1, 0.25, 0.3, 0.5, 0.6)

# Palettes found by trial on which the fix search of some look-alike pair finds no move.
NO_MOVE_PALETTES = (
    ("#867B04", "#9EA405", "#C2C006", "#E0CA07", "#E7F710", "#F8F72E", "#633BFF"),
    ("#4D040C", "#6A0612", "#860821", "#A30927", "#BF0B11", "#DC0D17", "#F11544", "#F3325D",
     "#F54E75", "#F66B74", "#3A3AFF"),
    ("#061015", "#102932", "#19384F", "#225D6D", "#2B608A", "#3476A7", "#3FA8C3", "#5C9FCC",
     "#79B1D5", "#97C2DE"),
    ("#484500", "#5A6100", "#6F7B00", "#959100", "#9AAF00", "#A4C901", "#BAE201", "#F2FC01",
     "#FEF818", "#E6FE32", "#3A7EFF"),
)
JUNK = ("#FFF", "nope", "rgb(1,2)", "#12345G", "hsl(1, 2, 3)", "")


def random_rgb(rng):
    return tuple(rng.randrange(256) for _ in range(3))


def grey(rng):
    roll = rng.random()
    if roll < 0.7:
        value = rng.choice((0, 255, 128, 127, 102, 153, 51, 10, 245, 247, 8)) if roll < 0.3 \
            else rng.randrange(256)
        return (value, value, value)
    # Nearly grey: a saturation just under or over the 0.1 of the look-alike and scheme rules.
    return rgb_of_hsl(rng.uniform(0, 360), rng.choice((0.05, 0.09, 0.1, 0.11, 0.15)),
                      rng.uniform(0.1, 0.9))


def near_duplicate(rng, base):
    """A colour at a Manhattan distance from `base` at, under or just over the limit of 15."""
    distance = rng.choice((0, 1, 5, 10, 13, 14, 14, 15, 15, 16, 20))
    for _ in range(200):
        channels, left = list(base), distance
        for index in rng.sample(range(3), 3):
            step, sign = rng.randint(0, left), rng.choice((-1, 1))
            if not 0 <= channels[index] + sign * step <= 255:
                sign = -sign
            if 0 <= channels[index] + sign * step <= 255:
                channels[index] += sign * step
                left -= step
        if left == 0:
            break
    return tuple(channels)


def look_alike_partner(rng, base, vision):
    """A colour that collapses onto `base` under `vision` but is no near-duplicate, or None."""
    target = checkref.simulated_rgb(code_of(base), vision)
    spread = rng.choice((40, 70, 110))
    for _ in range(300):
        candidate = tuple(min(255, max(0, c + rng.randint(-spread, spread))) for c in base)
        if checkref.manhattan(candidate, base) < 15:
            continue
        simulated = checkref.simulated_rgb(code_of(candidate), vision)
        if checkref.euclidean(simulated, target) < rng.choice((30.0, 30.0, 34.0)):
            return candidate
    return None


def text_pair(rng):
    """A dark colour and a light one whose contrast sits around 3.0 or 4.5, found by trial."""
    light = rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.uniform(0.6, 1.0))
    low, high = rng.choice(((2.5, 3.0), (2.9, 3.1), (3.0, 4.5), (4.3, 4.7), (4.5, 6.0), (1.0, 2.0)))
    light_luminance = checkref.luminance_of(code_of(light))
    for _ in range(20):
        for _ in range(400):
            dark = rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.random())
            ratio = colorref.contrast_ratio(checkref.luminance_of(code_of(dark)), light_luminance)
            if low <= ratio < high:
                break
        else:
            dark = None
        if dark is not None and checkref.hsl_of(code_of(dark))[2] < 0.4:
            return [dark, light]
    return [rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.uniform(0.0, 0.4)), light]


def lightness_ladder(rng):
    """Steps of one hue and now and then a light blue of little luminance, where moves run out."""
    h, s = rng.uniform(0, 360), rng.uniform(0.2, 1.0)
    start, step = rng.uniform(0.03, 0.3), rng.uniform(0.03, 0.08)
    ladder = [rgb_of_hsl(h + rng.uniform(-8, 8), s, min(0.99, start + i * step))
              for i in range(rng.randint(4, 10))]
    if rng.random() < 0.7:
        ladder.append(rgb_of_hsl(rng.uniform(200, 260), 1.0, rng.uniform(0.6, 0.65)))
    return ladder


@functools.lru_cache(maxsize=None)
def limit_pairs():
    """(max, min) bytes whose lightness or saturation sits on one of the limits within an ulp."""
    near = set()
    for limit in LIGHTNESS_LIMITS + SATURATION_LIMITS:
        near.update((limit, math.nextafter(limit, 0.0), math.nextafter(limit, 2.0)))
    return [(high, low) for high in range(256) for low in range(high + 1)
            if not near.isdisjoint(colorref.bytes_to_hsl(high, low, low)[1:])]


def exact_hue(rng):
    """A colour whose hue is exactly a multiple of 15 degrees, as the scheme rules' limits are."""
    for _ in range(50):
        hue = 15 * rng.randrange(24)
        high = rng.randint(1, 255)
        rgb = hue_grid_colour(hue, high, rng.randint(0, high - 1))
        if rgb is not None and checkref.hsl_of(code_of(rgb))[0] == hue:
            return rgb
    return None


def random_palette(rng):
    if rng.random() < 0.08:
        return lightness_ladder(rng)
    size = rng.choice((0, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 8, 9, 10, 11, 12))
    palette = []
    while len(palette) < size:
        roll = rng.random()
        if roll < 0.18 or not palette and roll < 0.4:
            palette.append(random_rgb(rng))
        elif roll < 0.26:
            palette.append(grey(rng))
        elif roll < 0.36:
            palette.append(near_duplicate(rng, rng.choice(palette) if palette else random_rgb(rng)))
        elif roll < 0.54:
            base = rng.choice(palette) if palette else random_rgb(rng)
            partner = look_alike_partner(rng, base, rng.choice(checkref.CHECK_VISION_ORDER))
            if partner is not None:
                palette += [base, partner] if not palette else [partner]
        elif roll < 0.64:
            palette.extend(text_pair(rng))
        elif roll < 0.72:  # mid-tones
            palette.append(rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.uniform(0.4, 0.6)))
        elif roll < 0.8:
            # Where the fix search runs out of room, and the limits of the lightness bands.
            l = rng.choice((0.02, 0.03, 0.035, 0.04, 0.05, 0.19, 0.2, 0.21, 0.39, 0.4, 0.41, 0.59,
                            0.6, 0.61, 0.85, 0.86, 0.95, 0.96, 0.965, 0.97, 0.98))
            l += rng.choice((0.0, 0.0, -0.002, 0.002))
            palette.append(rgb_of_hsl(rng.uniform(0, 360), rng.uniform(0.1, 1.0), l))
        elif roll < 0.86:
            # At a scheme-like hue distance from a colour already in the palette.
            base_hue = checkref.hsl_of(code_of(rng.choice(palette)))[0] if palette else \
                rng.uniform(0, 360)
            offset = rng.choice((0, 10, 25, 30, 35, 55, 60, 65, 90, 100, 120, 140, 150, 160, 175,
                                 180)) + rng.choice((0.0, 0.0, -2.0, 2.0, rng.uniform(-5, 5)))
            palette.append(rgb_of_hsl(base_hue + rng.choice((-1, 1)) * offset,
                                      rng.uniform(0.15, 1.0), rng.uniform(0.15, 0.85)))
        elif roll < 0.9:
            high, low = rng.choice(limit_pairs())
            channels = [high, low, rng.randint(low, high)]
            rng.shuffle(channels)
            palette.append(tuple(channels))
        elif roll < 0.95:
            colour = exact_hue(rng)
            if colour is not None:
                palette.append(colour)
        else:  # vivid
            palette.append(rgb_of_hsl(rng.uniform(0, 360), rng.uniform(0.5, 1.0),
                                      rng.uniform(0.25, 0.65)))
    palette = palette[:size]
    if rng.random() < 0.2:
        rng.shuffle(palette)
    return palette


def pasted(rng, rgb):
    """The colour as a person might pass it: any of the pasted forms that give it exactly."""
    roll = rng.random()
    if roll < 0.55:
        return code_of(rgb)
    if roll < 0.75:
        return ("%02x%02x%02x" % rgb) if rng.random() < 0.5 else "#%02x%02X%02x" % rgb
    if roll < 0.97:
        return "rgb(%d, %d, %d)" % rgb if roll < 0.9 else " %s " % code_of(rgb)
    # The pasted HSL form; it names a nearby colour, read back by the same rules.
    h, s, l = checkref.hsl_of(code_of(rgb))
    return "hsl(%.1f, %.1f%%, %.1f%%)" % (h, s * 100, l * 100)


def map_issue_ids(expected_issues, actual_issues, out):
    """Replaces the binary's ids of the right shape, one to one with the model's, by those."""
    if not isinstance(actual_issues, list) or len(actual_issues) != len(expected_issues):
        return
    uuid_of_index, index_of_uuid = {}, {}
    for position, (want, got) in enumerate(zip(expected_issues, actual_issues)):
        if not isinstance(got, dict) or not isinstance(got.get("id"), str):
            continue
        prefix, *indexes = want["id"].split("-")
        match = ISSUE_ID_SHAPES[prefix].match(got["id"])
        if match is None:
            out.append((".issues[%d].id (shape)" % position, want["id"], got["id"]))
            continue
        pairs = list(zip((int(index) for index in indexes), match.groups()))
        if any(uuid_of_index.setdefault(index, uuid) != uuid
               or index_of_uuid.setdefault(uuid, index) != index for index, uuid in pairs):
            out.append((".issues[%d].id (same colour, same id)" % position, want["id"],
                        got["id"]))
        else:
            got["id"] = want["id"]


def check_case(binary, env, arguments, strict):
    label = "check --colors %s%s" % (" ".join(repr(a) for a in arguments),
                                     " --strict" if strict else "")
    result = refdriver.run(binary, ["check", "--colors"] + arguments + ["--json"]
                           + (["--strict"] if strict else []), env)
    if not arguments:
        # "CODE..." is one or more: an empty list is a usage error, with the usage on stderr.
        mismatches = [] if result.status == 2 else [("exit status", 2, result.status)]
        if "Usage" not in result.stderr:
            mismatches.append(("stderr", "the usage", result.stderr))
        return [(label, mismatches)]
    expected = checkref.check_command(arguments)
    if expected is None:
        return [(label, refdriver.one_line_failure(result))]
    mismatches = refdriver.json_output(result, dict, 1 if strict and expected["issues"] else 0)
    if not mismatches:
        map_issue_ids(expected["issues"], result.parsed.get("issues"), mismatches)
        # A list of colours has no palette name of its own to show.
        refdriver.compare(dict(expected, name=None), result.parsed, "", mismatches)
    return [(label, mismatches)]


def body(options, root, pool):
    rng = random.Random(options.seed)
    cases = []
    for number in range(options.count):
        arguments = [pasted(rng, rgb) for rgb in random_palette(rng)]
        if number % 50 == 7 and arguments:
            arguments[rng.randrange(len(arguments))] = rng.choice(JUNK)
        cases.append((arguments, number % 4 == 3))
    cases += [(list(palette), False) for palette in NO_MOVE_PALETTES]
    # A list of colours touches no palette; a private home makes sure no real store is read.
    env = refdriver.home_env(root)
    return "%d palettes" % len(cases), [pool.submit(check_case, options.binary, env, *case)
                                        for case in cases]


if __name__ == "__main__":
    sys.exit(refdriver.main(__doc__, 20240612, 400, body))
