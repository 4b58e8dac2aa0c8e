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

BATCH = 250
BLANKS = (" ", "  ", "\t", "\n", "\r\n", " \n\t", "\v", "\f")
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


def random_case(rng, text):
    mode = rng.randrange(3)
    return text.upper() if mode == 0 else text.lower() if mode == 1 else "".join(
        ch.upper() if rng.random() < 0.5 else ch.lower() for ch in text)


def surround(rng, text):
    for before in (True, False):
        if rng.random() < 0.4:
            blanks = "".join(rng.choice(BLANKS) for _ in range(rng.randint(1, 2)))
            text = blanks + text if before else text + blanks
    return text


def hex_text(rng, six_digits):
    """A 6-digit code as a person might paste it: any case, '#'s in odd places, blanks around."""
    text = random_case(rng, six_digits)
    roll = rng.random()
    if roll < 0.45:
        text = ("#" if roll < 0.35 else "##") + text
    elif roll < 0.6:
        for _ in range(rng.randint(1, 3)):
            at = rng.randint(0, len(text))
            text = text[:at] + "#" + text[at:]
    return surround(rng, text)


def random_six(rng):
    return "%06x" % rng.randrange(1 << 24)


def decimal_text(rng, low, high):
    roll = rng.random()
    if roll < 0.4:
        return str(rng.randint(int(low), int(high)))
    if roll < 0.8:
        return "%.*f" % (rng.randint(1, 4), rng.uniform(low, high))
    if roll < 0.85:
        return "%d." % rng.randint(int(low), int(high))
    if roll < 0.9:
        return ".%d" % rng.randint(0, 99)
    if roll < 0.95:
        return rng.choice(("1.2.3", ".", "..5", "0.0.1", "100.5.5"))
    return rng.choice(("0", "00", "100", "360", "720", "999.999", "0.5"))


def functional(rng, names, values, tail, mangles):
    """A pasted rgb() or hsl() text, now and then damaged by one of `mangles`."""
    sp = lambda: rng.choice(INNER_SPACE)  # noqa: E731
    text = random_case(rng, rng.choice(names)) + sp() + "(" + sp() + values[0] + sp() + "," + \
        sp() + values[1] + tail + sp() + "," + sp() + values[2] + tail
    if rng.random() >= 0.6:  # an alpha value
        space = sp()
        alpha = rng.choice(("0.5", "1", "0", ".", "1.2.3", ".75", "100"))
        text += space + "," + sp() + alpha
    text += sp() + ")"
    roll = rng.random()
    for limit, mangle in mangles:
        if roll < limit:
            text = mangle(text)
            break
    return surround(rng, text)


def gen_rgb(rng):
    values = [str(rng.randint(0, 255)) if roll < 0.6 else str(rng.randint(0, 999)) if roll < 0.9
              else "%03d" % rng.randint(0, 99) for roll in (rng.random() for _ in range(3))]
    return functional(rng, ("rgb", "rgba"), values, "", (
        (0.05, lambda t: t.replace(values[1], "1" + values[1].rjust(3, "0"), 1)),  # four digits
        (0.08, lambda t: t.replace("(", "(-", 1)), (0.1, lambda t: t[:-1]),
        (0.12, lambda t: "#" + t), (0.14, lambda t: t.replace(",", " "))))


def gen_hsl(rng):
    values = [decimal_text(rng, 0, 1000), decimal_text(rng, 0, 150), decimal_text(rng, 0, 150)]
    return functional(rng, ("hsl", "hsla"), values, "%", (
        (0.04, lambda t: t.replace("%", "", 1)), (0.07, lambda t: t.replace("%", " %", 1)),
        (0.09, lambda t: t + "#"), (0.11, lambda t: t.replace("(", "(-", 1))))


def gen_junk(rng):
    roll = rng.randrange(10)
    if roll < 3:
        digits = (3, 8, 5)[roll]
        return hex_text(rng, "%0*x" % (digits, rng.randrange(1 << (4 * digits))))
    if roll == 3:
        six, at = random_six(rng), rng.randint(1, 5)
        return six[:at] + rng.choice((" ", "g", "x", "\t", "-")) + six[at:]
    if roll == 4:
        return rng.choice(("", " ", "\n", "#", "######", "# # #", "\t#\t"))
    if roll == 5:
        return rng.choice(("red", "blue", "transparent", "hello", "color", "rgb", "hsl()",
                           "0x336699", "#gg00aa", "rgb(1,2)", "rgb(1,2,3,4,5)", "hsl(1,2,3)",
                           "rgb(1.5, 2, 3)", "rgb(1%, 2%, 3%)", "hsl(10deg, 5%, 5%)",
                           "cmyk(0,0,0,0)"))
    if roll == 6:
        return "rgb(" + ",".join(str(rng.randint(0, 99999)) for _ in range(3)) + ")"
    if roll == 7:
        six = random_six(rng)
        return six[:3] + "\n" + six[3:]
    if roll == 8:
        return hex_text(rng, random_six(rng)) + rng.choice(("ff", "0", ";", ")"))
    return rng.choice(("rgb (10,20,30)x", "xrgb(1,2,3)", "hsl(1, 2%, 3%) hsl(1, 2%, 3%)",
                       "rgba(1,2,3,)", "hsla(1, 2%, 3%, -1)"))


def within_an_ulp(value, limits):
    return any(v in limits for v in (value, math.nextafter(value, math.inf),
                                     math.nextafter(value, -math.inf)))


def exact_pairs_of_limits():
    """(max, min) bytes whose lightness or saturation is a limit within the last bit."""
    lightness, saturation = [], []
    lightness_limits, saturation_limits = set(LIGHTNESS_LIMITS), set(SATURATION_LIMITS)
    for high in range(256):
        for low in range(high):
            _, s, l = colorref.bytes_to_hsl(high, low, low)
            if within_an_ulp(l, lightness_limits):
                lightness.append((high, low))
            if within_an_ulp(s, saturation_limits):
                saturation.append((high, low))
    return lightness, saturation


def six_of(rgb):
    return "%02x%02x%02x" % tuple(rgb)


def code_of(rgb):
    return "#%02X%02X%02X" % tuple(rgb)


def rgb_of_hsl(h, s, l):
    return colorref.hex_to_rgb(colorref.hsl_to_hex(h % 360.0, min(1.0, max(0.0, s)),
                                                   min(1.0, max(0.0, l))))


def colour_from_extremes(rng, high, low):
    channels = [high, low, rng.randint(low, high)]
    rng.shuffle(channels)
    return six_of(channels)


def in_sector(sector, high, mid, low):
    """Red, green and blue for a sector of the hue hexagon (0 for 0 to 60 degrees, and so on)."""
    return ((high, mid, low), (mid, high, low), (low, high, mid), (low, mid, high),
            (mid, low, high), (high, low, mid))[sector]


def place_hue(rng, hue, high, low):
    """Bytes of the hue `hue` where the byte grid allows, now and then one step off."""
    sixth = (hue % 360) / 60.0
    sector = int(sixth)
    fraction = (sixth - sector) if sector % 2 == 0 else (1.0 - (sixth - sector))
    mid = low + int(round(fraction * (high - low))) + rng.choice((0, 0, 0, -1, 1))
    return six_of(in_sector(sector, high, min(high, max(low, mid)), low))


def hue_grid_colour(hue, high, low):
    """Bytes of exactly the whole-degree hue `hue`, or None where the grid doesn't allow it."""
    sector, within_sector = divmod(hue % 360, 60)
    offset, rest = divmod((within_sector if sector % 2 == 0 else 60 - within_sector)
                          * (high - low), 60)
    return None if rest else in_sector(sector, high, low + offset, low)


def name_flips(h, s, l, axes=(0, 1, 2)):
    """The name changes that one step of the last bit on h, s or l would cause."""
    name = colorref.color_name_of_hsl(h, s, l)
    flips = []
    for axis in axes:
        for direction in (-math.inf, math.inf):
            moved = [h, s, l]
            moved[axis] = math.nextafter(moved[axis], direction)
            other = colorref.color_name_of_hsl(*moved)
            if other != name:
                flips.append((axis, direction > 0, name, other))
    return flips


def limit_witnesses(rng, pairs, per_flip=2):
    """Colours exactly on a limit of the name tables, so that "<" read as "<=" (or the other way
    round) anywhere in the tables changes their name; a few colours for each distinct change."""
    on_hue = set()  # colours whose hue is a limit exactly
    for hue in HUE_LIMITS:
        if hue % 60:
            sector, within_sector = divmod(hue, 60)
            sixtieths = within_sector if sector % 2 == 0 else 60 - within_sector
            step = 60 // math.gcd(sixtieths, 60)  # the smallest spread with a whole middle byte
            for spread in range(step, 256, step):
                for low in range(256 - spread):
                    rgb = hue_grid_colour(hue, low + spread, low)
                    if colorref.bytes_to_hsl(*rgb)[0] == hue:
                        on_hue.add(rgb)
    # Exact lightness and saturation pairs at every hue limit, and the greys.
    on_any = set((grey, grey, grey) for grey in range(256))
    for high, low in pairs[0] + pairs[1]:
        for hue in HUE_LIMITS:
            rgb = hue_grid_colour(hue, high, low)
            if rgb is not None:
                on_any.add(rgb)
    by_flip = {}
    for group, axes in ((on_hue - on_any, (0,)), (on_any, (0, 1, 2))):
        for rgb in sorted(group):
            for flip in name_flips(*colorref.bytes_to_hsl(*rgb), axes=axes):
                by_flip.setdefault(flip, []).append(rgb)
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
        h = math.fmod(rng.choice(HUE_LIMITS) + rng.choice((0, 0, -0.5, 0.5, -1, 1, -0.2, 0.2))
                      + 360.0, 360.0)
    if near[1]:
        s = min(1.0, max(0.0, rng.choice(SATURATION_LIMITS)
                         + rng.choice((0, 0, -0.004, 0.004, -0.01, 0.01))))
    if near[2]:
        l = min(1.0, max(0.0, rng.choice(LIGHTNESS_LIMITS)
                         + rng.choice((0, 0, -0.002, 0.002, -0.004, 0.004))))
    return h, s, l


def corner_colour(rng):
    """Bytes near a hue, a saturation and a lightness limit at once, where table rows meet."""
    hue = rng.choice(HUE_LIMITS)
    lightness = rng.choice(LIGHTNESS_LIMITS) + rng.choice((0, 0, -0.002, 0.002))
    saturation = rng.choice(SATURATION_LIMITS) + rng.choice((0, 0, -0.004, 0.004))
    total = min(509, max(1, int(round(510 * lightness)) + rng.choice((0, 0, -1, 1))))
    room = min(total, 510 - total)
    spread = saturation * (total if total <= 255 else 510 - total)
    if rng.random() < 0.5:
        spread = 4 * round(spread / 4)  # quarter steps put 15, 45, ... degrees on the grid
    spread = int(min(room, max(1, round(spread))))
    if (total + spread) % 2:
        spread = spread - 1 if spread > 1 else spread + 1
    if spread > room:
        spread -= 2
    high = (total + spread) // 2
    return place_hue(rng, hue, high, high - spread)


def gen_boundary(rng, pairs):
    roll = rng.random()
    if roll < 0.15:
        return hex_text(rng, "%02x" % rng.randrange(256) * 3)
    if roll < 0.45:
        return hex_text(rng, colour_from_extremes(rng, *rng.choice(pairs[roll >= 0.3])))
    if roll < 0.55:
        hue = rng.choice(HUE_LIMITS)
        spread = 12 * rng.randint(1, 21) if rng.random() < 0.7 else rng.randint(1, 255)
        low = rng.randint(0, 255 - spread)
        return hex_text(rng, place_hue(rng, hue, low + spread, low))
    if roll < 0.75:
        return hex_text(rng, corner_colour(rng))
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
    return "hsl(%s, %s%%, %s%%)" % (repr(h), repr(s * 100), repr(l * 100))


def gen_code(rng, pairs):
    roll = rng.random()
    return hex_text(rng, random_six(rng)) if roll < 0.3 else gen_rgb(rng) if roll < 0.45 else \
        gen_hsl(rng) if roll < 0.62 else gen_junk(rng) if roll < 0.72 else gen_boundary(rng, pairs)


def gen_valid_colour(rng, pairs):
    """A colour argument for contrast and shades; mostly readable, seldom junk."""
    roll = rng.random()
    return gen_junk(rng) if roll < 0.02 else "#" + random_six(rng).upper() if roll < 0.45 else \
        gen_rgb(rng) if roll < 0.55 else gen_hsl(rng) if roll < 0.65 else gen_boundary(rng, pairs)


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


def gen_simulate_code(rng, pairs):
    roll = rng.random()
    if roll < 0.55:
        return "#" + random_six(rng).upper()
    if roll < 0.8:
        return gen_code(rng, pairs)
    if roll < 0.9:  # near-blacks and near-whites, where the linear toe and the clamping sit
        low = rng.random() < 0.5
        return "#" + "".join("%02X" % (rng.randint(0, 24) if low else rng.randint(230, 255))
                             for _ in range(3))
    return gen_junk(rng)


def simulation_sweep():
    """Every level of each channel and grey, and secondaries that push products out of range."""
    codes = [form % ((level,) * form.count("%")) for level in range(256) for form in (
        "#%02X0000", "#00%02X00", "#0000%02X", "#%02X%02X%02X")]
    return codes + [form % level for level in range(0, 256, 5) for form in (
        "#FF%02X00", "#00FF%02X", "#%02X00FF", "#%02XFFFF", "#FF%02XFF", "#FFFF%02X")]


def check_batch(binary, env, command, codes):
    """One run of `color` or `simulate` over a batch: each element, then the exit status."""
    expected, expected_status = colorref.list_command(codes, colorref.color_details if command ==
                                                      "color" else colorref.simulation_details)
    result = refdriver.run(binary, [command, "--json"] + codes, env)
    if refdriver.json_output(result, list, result.status) or len(result.parsed) != len(codes):
        problem = result.parse_error or "expected an array of %d, got %r" % (
            len(codes), result.stdout[:200])
        return [("%s %r" % (command, code), [("output", "array element", problem)])
                for code in codes]
    results = [("%s %r" % (command, code), refdriver.compare(want, got))
               for code, want, got in zip(codes, expected, result.parsed)]
    status = refdriver.one_line_failure(result) if expected_status else \
        [("exit status", 0, result.status)] * (result.status != 0)
    return results + [("%s exit status of a batch of %d" % (command, len(codes)), status)]


def check_single(binary, env, arguments, expected):
    """`contrast` or `shades`: the model's value, or a one-line refusal where it has none."""
    label = " ".join(repr(a) if " " in a or not a else a for a in arguments)
    result = refdriver.run(binary, arguments, env)
    if expected is None:
        return [(label, refdriver.one_line_failure(result))]
    return [refdriver.compared(label, result, expected, type(expected))]


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
    sweep = [hex_text(rng, "%02x" % grey * 3) for grey in range(256)]
    sweep += [hex_text(rng, colour_from_extremes(rng, high, low)) for high, low in
              pairs[0] + pairs[1]]
    witnesses, flips = limit_witnesses(rng, pairs)
    sweep += [hex_text(rng, six) for six in witnesses]
    codes += sweep

    env = refdriver.home_env(root)  # the colour commands touch no store; a private home
    futures = []
    for _ in range(contrast_count):
        foreground = gen_valid_colour(rng, pairs)
        background = foreground
        if rng.random() >= 0.03:
            roll = rng.random()
            if roll < 0.15:  # lightness exactly 0.5 counts as a dark background; these are at it
                background = "#" + colour_from_extremes(rng, *rng.choice(half_pairs)).upper()
            elif roll < 0.25:
                background = rng.choice(("#FFFFFF", "#000000", "#808080", "#7F7F7F", "#FF0000",
                                         "#0000FF"))
            else:
                background = gen_valid_colour(rng, pairs)
        target = gen_target(rng, foreground, background)
        expected = colorref.contrast_command(foreground, background,
                                             4.5 if target is None else float(target))
        futures.append(pool.submit(check_single, options.binary, env, [
            "contrast", "--json", foreground, background] + ["--target", target] * bool(target),
            expected))
    shades = [gen_valid_colour(rng, pairs) for _ in range(shades_count)]
    # A generator of its own, so that adding this command left the other inputs as they were.
    simulate_rng = random.Random(options.seed + 1)
    simulated = [gen_simulate_code(simulate_rng, pairs)
                 for _ in range(max(1, options.count // 3))] + simulation_sweep()

    for command, inputs in (("color", codes), ("simulate", simulated)):
        batches = [inputs[i:i + BATCH] for i in range(0, len(inputs), BATCH)]
        # One batch of readable codes only, so that the exit status 0 path is held too.
        batches.append([code for code in inputs if colorref.parse_color_code(code)][:40])
        futures += [pool.submit(check_batch, options.binary, env, command, batch)
                    for batch in batches]
    futures += [pool.submit(check_single, options.binary, env, ["shades", "--json", code],
                            colorref.shades_command(code)) for code in shades]
    return ("%d color codes (%d of them a sweep of greys, exact limits and %d name changes at a "
            "limit), %d contrast pairs, %d shade ladders, %d simulated codes"
            % (len(codes), len(sweep), flips, contrast_count, len(shades), len(simulated)),
            futures)


if __name__ == "__main__":
    sys.exit(refdriver.main(__doc__, 20240611, 3000, body))
