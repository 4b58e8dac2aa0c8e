#!/usr/bin/env python3
"""Differential test: `hueshelf color`, `contrast`, `shades` and `simulate` against colorref.py.

Random but repeatable inputs (fixed seed), sweeps of greys, of colours exactly on the limits of
the name tables and of single channels go through the commands with --json; every field of the
output is compared with the model, strings and doubles exactly.
"""

import math
import os
import random
import sys

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import colorref  # noqa: E402
import refdriver  # noqa: E402
from refdriver import code_of, hex_text, hue_grid_colour, random_case, six_of, surround  # noqa

BATCH = 250
INNER_SPACE = ("", "", "", " ", "  ", "\t", "\n", " \t ")

# Every limit of the automatic names, of the name modifiers, of the light/dark background split
# and of the shade ladder: colours at and around them are where a misread "<" or "<=" shows.
LIGHTNESS_LIMITS = sorted({0.97, 0.93, 0.88, 0.06, 0.12, 0.25, 0.55, 0.8, 0.6, 0.85, 0.75, 0.82,
                           0.7, 0.9, 0.2, 0.5, 0.15, 0.35, 0.3, 0.45, 0.65, 0.95, 0.72, 0.48, 0.38,
                           0.28, 0.18, 0.10})
SATURATION_LIMITS = sorted({0.5, 0.25, 0.15, 0.08, 0.4, 0.55, 0.35, 0.2, 0.8, 0.7, 0.6, 0.65})
HUE_LIMITS = sorted({0, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 70, 85, 90, 105, 110, 120,
                     130, 145, 150, 160, 165, 170, 175, 180, 185, 190, 200, 205, 210, 230, 240,
                     250, 270, 280, 290, 300, 320, 340, 350, 360})
JUNK = ("", " ", "#", "######", "# # #", "red", "transparent", "0x336699", "#gg00aa", "rgb(1,2)",
        "rgb(1,2,3,4,5)", "hsl(1,2,3)", "rgb(1.5, 2, 3)", "rgb(1%, 2%, 3%)", "hsl(10deg, 5%, 5%)",
        "rgb (10,20,30)x", "xrgb(1,2,3)", "hsl(1, 2%, 3%) hsl(1, 2%, 3%)", "rgba(1,2,3,)",
        "hsla(1, 2%, 3%, -1)")


def decimal_text(rng, low, high):
    roll, whole = rng.random(), rng.randint(low, high)
    return str(whole) if roll < 0.4 else "%.*f" % (rng.randint(1, 4), rng.uniform(low, high)) \
        if roll < 0.8 else "%d." % whole if roll < 0.85 else ".%d" % rng.randint(0, 99) \
        if roll < 0.9 else rng.choice(("1.2.3", ".", "..5", "100.5.5", "00", "360", "720"))


def functional(rng, names, values, tail, mangles):
    """A pasted rgb() or hsl() text, now and then damaged by one of `mangles`."""
    sp = lambda: rng.choice(INNER_SPACE)  # noqa: E731
    text = random_case(rng, rng.choice(names)) + sp() + "(" + sp() + (
        sp() + "," + sp()).join(value + (tail if i else "") for i, value in enumerate(values))
    if rng.random() >= 0.6:  # an alpha value
        text += sp() + "," + sp() + rng.choice(("0.5", "1", "0", ".", "1.2.3", ".75", "100"))
    text += sp() + ")"
    roll = rng.random()
    mangle = next((mangle for limit, mangle in mangles if roll < limit), None)
    return surround(rng, mangle(text) if mangle else text)


def gen_rgb(rng):
    values = [str(rng.randint(0, 255)) if roll < 0.6 else str(rng.randint(0, 999)) if roll < 0.9
              else "%03d" % rng.randint(0, 99) for roll in (rng.random() for _ in range(3))]
    return functional(rng, ("rgb", "rgba"), values, "", (
        (0.05, lambda t: t.replace(values[1], "1" + values[1].rjust(3, "0"), 1)),  # four digits
        (0.08, lambda t: t.replace("(", "(-", 1)), (0.1, lambda t: t[:-1]),
        (0.12, lambda t: "#" + t), (0.14, lambda t: t.replace(",", " "))))


def gen_hsl(rng):
    values = [decimal_text(rng, 0, 1000), decimal_text(rng, 0, 150), decimal_text(rng, 0, 150)]
    # Here the tail is "%" on saturation and lightness; the hue has none.
    return functional(rng, ("hsl", "hsla"), values, "%", (
        (0.04, lambda t: t.replace("%", "", 1)), (0.07, lambda t: t.replace("%", " %", 1)),
        (0.09, lambda t: t + "#"), (0.11, lambda t: t.replace("(", "(-", 1))))


def gen_junk(rng):
    roll, six = rng.randrange(6), "%06x" % rng.randrange(1 << 24)
    if roll < 3:
        digits = (3, 8, 5)[roll]
        return hex_text(rng, "%0*x" % (digits, rng.randrange(1 << (4 * digits))))
    if roll == 3:
        at = rng.randint(1, 5)
        return six[:at] + rng.choice((" ", "g", "\n", "\t", "-")) + six[at:]
    if roll == 4:
        return hex_text(rng, six) + rng.choice(("ff", "0", ";", ")"))
    return rng.choice(JUNK + ("rgb(%d,%d,%d)" % tuple(rng.randint(0, 99999) for _ in "rgb"),))


def within_an_ulp(value, limits):
    return any(v in limits for v in (value, math.nextafter(value, 2), math.nextafter(value, -1)))


def exact_pairs_of_limits():
    """(max, min) bytes whose lightness or saturation is a limit within the last bit."""
    pairs = ([], [])
    for high in range(256):
        for low in range(high):
            _, s, l = colorref.bytes_to_hsl(high, low, low)
            for axis, value, limits in ((0, l, LIGHTNESS_LIMITS), (1, s, SATURATION_LIMITS)):
                if within_an_ulp(value, limits):
                    pairs[axis].append((high, low))
    return pairs


def colour_from_extremes(rng, high, low):
    channels = [high, low, rng.randint(low, high)]
    rng.shuffle(channels)
    return six_of(channels)


def limit_witnesses(rng, pairs, per_flip=2):
    """Colours exactly on a limit of the name tables, so that "<" read as "<=" (or the other way
    round) anywhere in the tables changes their name; a few colours for each distinct change of
    name that one step of the last bit on h, s or l would cause."""
    on_hue = {rgb for hue in HUE_LIMITS if hue % 60 for spread in range(1, 256)
              for low in range(256 - spread)
              for rgb in [hue_grid_colour(hue, low + spread, low)]
              if rgb and colorref.bytes_to_hsl(*rgb)[0] == hue}
    on_any = {(grey,) * 3 for grey in range(256)} | {
        rgb for high, low in pairs[0] + pairs[1] for hue in HUE_LIMITS
        for rgb in [hue_grid_colour(hue, high, low)] if rgb}
    by_flip = {}
    for group, axes in ((on_hue - on_any, (0,)), (on_any, (0, 1, 2))):
        for rgb in sorted(group):
            hsl = colorref.bytes_to_hsl(*rgb)
            name = colorref.color_name_of_hsl(*hsl)
            for axis in axes:
                for direction in (-math.inf, math.inf):
                    moved = list(hsl)
                    moved[axis] = math.nextafter(moved[axis], direction)
                    other = colorref.color_name_of_hsl(*moved)
                    if other != name:
                        by_flip.setdefault((axis, direction, name, other), []).append(rgb)
    chosen = set()
    for flip in sorted(by_flip):
        chosen.update(rng.sample(by_flip[flip], min(per_flip, len(by_flip[flip]))))
    return [six_of(rgb) for rgb in sorted(chosen)], len(by_flip)


def near_limit_hsl(rng):
    """A point near the limits of the name tables on one, two or all three axes at once."""
    h, s, l = rng.uniform(0, 360), rng.random(), rng.random()
    near = [False] * 3
    while not any(near):
        near = [rng.random() < 0.6 for _ in range(3)]
    if near[0]:
        h = (rng.choice(HUE_LIMITS) + rng.choice((0, 0, -0.5, 0.5, -1, 1, -0.2, 0.2))) % 360.0
    if near[1]:
        s = rng.choice(SATURATION_LIMITS) + rng.choice((0, 0, -0.004, 0.004, -0.01, 0.01))
    if near[2]:
        l = rng.choice(LIGHTNESS_LIMITS) + rng.choice((0, 0, -0.002, 0.002, -0.004, 0.004))
    return h, min(1.0, max(0.0, s)), min(1.0, max(0.0, l))


def gen_boundary(rng, pairs):
    roll = rng.random()
    if roll < 0.15:
        return hex_text(rng, "%02x" % rng.randrange(256) * 3)
    if roll < 0.45:
        return hex_text(rng, colour_from_extremes(rng, *rng.choice(pairs[roll >= 0.3])))
    h, s, l = near_limit_hsl(rng)
    if roll < 0.92:
        channels = list(colorref.hex_to_rgb(colorref.hsl_to_hex(h, s, l)))
        for _ in range(rng.randint(0, 2)):
            i = rng.randrange(3)
            channels[i] = min(255, max(0, channels[i] + rng.choice((-1, 1))))
        return hex_text(rng, six_of(channels))
    # The pasted HSL form, with exact-half channels at 10% to 90% lightness now and then.
    if rng.random() < 0.3:
        l = rng.choice((0.1, 0.3, 0.5, 0.7, 0.9))
    return "hsl(%r, %r%%, %r%%)" % (h, s * 100, l * 100)


def gen_code(rng, pairs, junk=0.1):
    """A colour argument; for contrast and shades mostly readable (seldom junk)."""
    roll = rng.random()
    return gen_junk(rng) if roll < junk else hex_text(rng, "%06x" % rng.randrange(1 << 24)) \
        if roll < 0.4 else gen_rgb(rng) if roll < 0.52 else gen_hsl(rng) if roll < 0.65 \
        else gen_boundary(rng, pairs)


def gen_target(rng, foreground, background):
    roll = rng.random()
    fg, bg = colorref.parse_color_code(foreground), colorref.parse_color_code(background)
    if roll < 0.15 and fg is not None and bg is not None:
        # Byte colours never meet 4.5 or 3.0 exactly, but a target can be met exactly: the ratio
        # at the search's extremes or first midpoints makes "reaches the target" an equality.
        h, s, l = colorref.hex_to_hsl(fg)
        lightness = rng.choice((0.0, 1.0, l, l * 0.5, (1.0 + l) * 0.5))
        return repr(colorref.contrast_ratio(
            colorref.relative_luminance(colorref.hsl_to_hex(h, s, lightness)),
            colorref.relative_luminance(bg)))
    if roll < 0.65:
        return None if roll < 0.35 else "3" if roll < 0.45 else "7" if roll < 0.6 else "4.5"
    return str(rng.randint(1, 21)) if roll < 0.75 else repr(rng.uniform(1, 21))


def simulation_inputs(rng, pairs, count):
    """Random codes, near-blacks and near-whites (where the linear toe and the clamping sit),
    every level of each channel and grey, and secondaries that push products out of range."""
    codes = []
    for _ in range(count):
        roll = rng.random()
        codes.append("#%06X" % rng.randrange(1 << 24) if roll < 0.55 else gen_code(rng, pairs)
                     if roll < 0.8 else code_of(rng.randint(*rng.choice(((0, 24), (230, 255))))
                                                for _ in "rgb") if roll < 0.9 else gen_junk(rng))
    codes += [form % ((level,) * form.count("%")) for level in range(256) for form in (
        "#%02X0000", "#00%02X00", "#0000%02X", "#%02X%02X%02X")]
    return codes + [form % level for level in range(0, 256, 5) for form in (
        "#FF%02X00", "#00FF%02X", "#%02X00FF", "#%02XFFFF", "#FF%02XFF", "#FFFF%02X")]


def check_batch(binary, env, command, codes):
    """One run of `color` or `simulate` over a batch: each element, then the exit status."""
    expected, expected_status = colorref.list_command(codes, colorref.color_details if command ==
                                                      "color" else colorref.simulation_details)
    result = refdriver.run(binary, [command, "--json"] + codes, env)
    label = "%s of a batch of %d" % (command, len(codes))
    results = [(label, refdriver.json_output(result, list, result.status)
                or refdriver.compare(expected, result.parsed))]
    status = refdriver.one_line_failure(result) if expected_status else \
        [("exit status", 0, result.status)] * (result.status != 0)
    return results + [("%s exit status of a batch of %d" % (command, len(codes)), status)]


def body(options, root, pool):
    rng = random.Random(options.seed)
    pairs = exact_pairs_of_limits()
    half_pairs = [pair for pair in pairs[0]
                  if within_an_ulp(colorref.bytes_to_hsl(pair[0], pair[1], pair[1])[2], {0.5})]
    color_count = max(1, options.count * 7 // 10)
    contrast_count = max(1, options.count * 2 // 10)
    shades_count = max(1, options.count - color_count - contrast_count)

    codes = [gen_code(rng, pairs) for _ in range(color_count)]
    # Every grey, every byte pair exactly on a lightness or saturation limit, and the colours on
    # the limits of the name tables.
    witnesses, flips = limit_witnesses(rng, pairs)
    sweep = [hex_text(rng, six) for six in ["%02x" % grey * 3 for grey in range(256)] + [
        colour_from_extremes(rng, *pair) for pair in pairs[0] + pairs[1]] + witnesses]
    codes += sweep

    env = refdriver.home_env(root)  # the colour commands touch no store; a private home
    futures = []
    for _ in range(contrast_count):
        foreground = background = gen_code(rng, pairs, 0.02)
        roll = rng.random()
        if roll < 0.15:  # lightness exactly 0.5 counts as a dark background; these are at it
            background = "#" + colour_from_extremes(rng, *rng.choice(half_pairs)).upper()
        elif roll < 0.25:
            background = rng.choice(("#FFFFFF", "#000000", "#808080", "#7F7F7F", "#FF0000"))
        elif roll < 0.97:
            background = gen_code(rng, pairs, 0.02)
        target = gen_target(rng, foreground, background)
        futures.append(pool.submit(
            refdriver.checked, options.binary, env,
            ["contrast", "--json", foreground, background] + ["--target", target] * bool(target),
            colorref.contrast_command(foreground, background, float(target or 4.5))))
    shades = [gen_code(rng, pairs, 0.02) for _ in range(shades_count)]
    simulated = simulation_inputs(random.Random(options.seed + 1), pairs,
                                  max(1, options.count // 3))
    for command, inputs in (("color", codes), ("simulate", simulated)):
        batches = [inputs[i:i + BATCH] for i in range(0, len(inputs), BATCH)]
        # One batch of readable codes only, so that the exit status 0 path is held too.
        batches.append([code for code in inputs if colorref.parse_color_code(code)][:40])
        futures += [pool.submit(check_batch, options.binary, env, command, batch)
                    for batch in batches]
    futures += [pool.submit(refdriver.checked, options.binary, env, ["shades", "--json", code],
                            colorref.shades_command(code)) for code in shades]
    return ("%d color codes (%d of them a sweep of greys, exact limits and %d name changes at a "
            "limit), %d contrast pairs, %d shade ladders, %d simulated codes"
            % (len(codes), len(sweep), flips, contrast_count, len(shades), len(simulated)),
            futures)


if __name__ == "__main__":
    sys.exit(refdriver.main(__doc__, 20240611, 3000, body))
