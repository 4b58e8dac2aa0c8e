#!/usr/bin/env python3
"""Differential test: the real `hueshelf` binary against the reference model in colorref.py.

Random but repeatable inputs (fixed seed) go through `hueshelf color`, `contrast`, `shades` and
`simulate` with --json; every field of the output is compared with the reference, strings and doubles
exactly. Prints "N passed, M failed" and the first mismatches; exits 1 on any mismatch.
"""

import argparse
import concurrent.futures
import json
import math
import os
import random
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import colorref  # noqa: E402

DEFAULT_SEED = 20240611
COLOR_BATCH = 250
BLANKS = (" ", "  ", "\t", "\n", "\r\n", " \n\t", "\v", "\f")
INNER_SPACE = ("", "", "", " ", "  ", "\t", "\n", " \t ")

# Every limit of the automatic names, of the name modifiers, of the light/dark background split
# and of the shade ladder: colours at and around them are where a misread "<" or "<=" shows.
LIGHTNESS_LIMITS = sorted(
    {0.97, 0.93, 0.88, 0.06, 0.12, 0.25, 0.55, 0.8, 0.6, 0.85, 0.75, 0.82, 0.7, 0.9, 0.2, 0.5,
     0.15, 0.35, 0.3, 0.45, 0.65, 0.95, 0.72, 0.48, 0.38, 0.28, 0.18, 0.10}
)
SATURATION_LIMITS = sorted({0.5, 0.25, 0.15, 0.08, 0.4, 0.55, 0.35, 0.2, 0.8, 0.7, 0.6, 0.65})
HUE_LIMITS = sorted(
    {0, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 70, 85, 90, 105, 110, 120, 130, 145, 150,
     160, 165, 170, 175, 180, 185, 190, 200, 205, 210, 230, 240, 250, 270, 280, 290, 300, 320,
     340, 350, 360}
)


# --- input generation ---------------------------------------------------------------------------


def random_case(rng, text):
    mode = rng.randrange(3)
    if mode == 0:
        return text.upper()
    if mode == 1:
        return text.lower()
    return "".join(ch.upper() if rng.random() < 0.5 else ch.lower() for ch in text)


def surround(rng, text):
    if rng.random() < 0.4:
        text = "".join(rng.choice(BLANKS) for _ in range(rng.randint(1, 2))) + text
    if rng.random() < 0.4:
        text = text + "".join(rng.choice(BLANKS) for _ in range(rng.randint(1, 2)))
    return text


def hex_text(rng, six_digits):
    """A 6-digit code as a person might paste it: any case, '#'s in odd places, blanks around."""
    text = random_case(rng, six_digits)
    roll = rng.random()
    if roll < 0.35:
        text = "#" + text
    elif roll < 0.45:
        text = "##" + text
    elif roll < 0.6:
        for _ in range(rng.randint(1, 3)):
            at = rng.randint(0, len(text))
            text = text[:at] + "#" + text[at:]
    return surround(rng, text)


def random_six(rng):
    return "%06x" % rng.randrange(1 << 24)


def gen_hex(rng):
    return hex_text(rng, random_six(rng))


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


def alpha_text(rng):
    if rng.random() < 0.6:
        return ""
    sp = rng.choice(INNER_SPACE)
    value = rng.choice(("0.5", "1", "0", ".", "1.2.3", ".75", "100"))
    return sp + "," + rng.choice(INNER_SPACE) + value


def gen_rgb(rng):
    sp = lambda: rng.choice(INNER_SPACE)  # noqa: E731
    values = []
    for _ in range(3):
        roll = rng.random()
        if roll < 0.6:
            values.append(str(rng.randint(0, 255)))
        elif roll < 0.9:
            values.append(str(rng.randint(0, 999)))
        else:
            values.append("%03d" % rng.randint(0, 99))
    text = (random_case(rng, rng.choice(("rgb", "rgba"))) + sp() + "(" + sp() + values[0] + sp()
            + "," + sp() + values[1] + sp() + "," + sp() + values[2] + alpha_text(rng) + sp() + ")")
    roll = rng.random()
    if roll < 0.05:
        text = text.replace(values[1], "1" + values[1].rjust(3, "0"), 1)  # four digits
    elif roll < 0.08:
        text = text.replace("(", "(-", 1)
    elif roll < 0.1:
        text = text[:-1]
    elif roll < 0.12:
        text = "#" + text
    elif roll < 0.14:
        text = text.replace(",", " ")
    return surround(rng, text)


def gen_hsl(rng):
    sp = lambda: rng.choice(INNER_SPACE)  # noqa: E731
    h = decimal_text(rng, 0, 1000)
    s = decimal_text(rng, 0, 150)
    l = decimal_text(rng, 0, 150)
    text = (random_case(rng, rng.choice(("hsl", "hsla"))) + sp() + "(" + sp() + h + sp() + ","
            + sp() + s + "%" + sp() + "," + sp() + l + "%" + alpha_text(rng) + sp() + ")")
    roll = rng.random()
    if roll < 0.04:
        text = text.replace("%", "", 1)
    elif roll < 0.07:
        text = text.replace("%", " %", 1)
    elif roll < 0.09:
        text = text + "#"
    elif roll < 0.11:
        text = text.replace("(", "(-", 1)
    return surround(rng, text)


def gen_junk(rng):
    roll = rng.randrange(10)
    if roll == 0:
        return hex_text(rng, "%03x" % rng.randrange(1 << 12))
    if roll == 1:
        return hex_text(rng, "%08x" % rng.randrange(1 << 32))
    if roll == 2:
        return hex_text(rng, "%05x" % rng.randrange(1 << 20))
    if roll == 3:
        six = random_six(rng)
        at = rng.randint(1, 5)
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
    return (value in limits or math.nextafter(value, math.inf) in limits
            or math.nextafter(value, -math.inf) in limits)


def exact_pairs_of_limits():
    """(max, min) byte pairs whose lightness or saturation equals one of the limits, or misses it
    by the last bit, in double arithmetic; a middle channel anywhere between them keeps both
    values."""
    lightness, saturation = [], []
    lightness_limits = set(LIGHTNESS_LIMITS)
    saturation_limits = set(SATURATION_LIMITS)
    for high in range(256):
        for low in range(high):
            _, s, l = colorref.bytes_to_hsl(high, low, low)
            if within_an_ulp(l, lightness_limits):
                lightness.append((high, low))
            if within_an_ulp(s, saturation_limits):
                saturation.append((high, low))
    return lightness, saturation


def colour_from_extremes(rng, high, low):
    mid = rng.randint(low, high)
    channels = [high, low, mid]
    rng.shuffle(channels)
    return "%02x%02x%02x" % tuple(channels)


def in_sector(sector, high, mid, low):
    """Red, green and blue for a sector of the hue hexagon (0 for 0 to 60 degrees, and so on)."""
    return (
        (high, mid, low),
        (mid, high, low),
        (low, high, mid),
        (low, mid, high),
        (mid, low, high),
        (high, low, mid),
    )[sector]


def place_hue(rng, hue, high, low):
    """Bytes between `low` and `high` whose hue is `hue` degrees, exactly where the byte grid
    allows it, now and then one step off."""
    sixth = (hue % 360) / 60.0
    sector = int(sixth)
    # Offset of the middle channel above the minimum, per sector of the hue hexagon.
    fraction = (sixth - sector) if sector % 2 == 0 else (1.0 - (sixth - sector))
    mid = low + int(round(fraction * (high - low))) + rng.choice((0, 0, 0, -1, 1))
    mid = min(high, max(low, mid))
    return "%02x%02x%02x" % in_sector(sector, high, mid, low)


def colour_at_hue(rng, hue):
    spread = 12 * rng.randint(1, 21) if rng.random() < 0.7 else rng.randint(1, 255)
    low = rng.randint(0, 255 - spread)
    return place_hue(rng, hue, low + spread, low)


def nudged(rng, six):
    channels = [int(six[i:i + 2], 16) for i in (0, 2, 4)]
    for _ in range(rng.randint(0, 2)):
        i = rng.randrange(3)
        channels[i] = min(255, max(0, channels[i] + rng.choice((-1, 1))))
    return "%02x%02x%02x" % tuple(channels)


def near_limit_hsl(rng):
    """A point near the limits of the name tables on one, two or all three axes at once."""
    h = rng.uniform(0, 360)
    s = rng.random()
    l = rng.random()
    while True:
        near = [rng.random() < 0.6 for _ in range(3)]
        if any(near):
            break
    if near[0]:
        h = rng.choice(HUE_LIMITS) + rng.choice((0, 0, -0.5, 0.5, -1, 1, -0.2, 0.2))
        h = math.fmod(h + 360.0, 360.0)
    if near[1]:
        s = rng.choice(SATURATION_LIMITS) + rng.choice((0, 0, -0.004, 0.004, -0.01, 0.01))
        s = min(1.0, max(0.0, s))
    if near[2]:
        l = rng.choice(LIGHTNESS_LIMITS) + rng.choice((0, 0, -0.002, 0.002, -0.004, 0.004))
        l = min(1.0, max(0.0, l))
    return h, s, l


def corner_colour(rng):
    """Bytes near a hue limit, a saturation limit and a lightness limit all at once, with the
    hue exact where the byte grid allows, so that neighbouring rows of the name table meet."""
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


def hue_grid_colour(hue, high, low):
    """Bytes between `low` and `high` with the hue `hue` in exact arithmetic, or None when the
    middle channel would fall between two bytes."""
    sector, within_sector = divmod(hue % 360, 60)  # the limits are whole degrees
    sixtieths = within_sector if sector % 2 == 0 else 60 - within_sector
    offset, rest = divmod(sixtieths * (high - low), 60)
    if rest:
        return None
    mid = low + offset
    return in_sector(sector, high, mid, low)


def name_flips(h, s, l, axes=(0, 1, 2)):
    """The name changes that one step of the last bit on h, s or l would cause."""
    name = colorref.color_name_of_hsl(h, s, l)
    flips = []
    for axis in axes:
        value = (h, s, l)[axis]
        for direction in (-math.inf, math.inf):
            moved = [h, s, l]
            moved[axis] = math.nextafter(value, direction)
            other = colorref.color_name_of_hsl(*moved)
            if other != name:
                flips.append((axis, direction > 0, name, other))
    return flips


def limit_witnesses(rng, pairs, per_flip=2):
    """Colours that sit exactly on a limit of the name tables, so that "<" read as "<=" (or the
    other way round) anywhere in the tables changes their name. Each distinct change is
    represented by a few colours."""
    # Colours whose hue is a limit exactly; only their hue sits on a limit.
    on_hue = set()
    for hue in HUE_LIMITS:
        if hue % 60 == 0:
            continue
        sector, within_sector = divmod(hue, 60)
        sixtieths = within_sector if sector % 2 == 0 else 60 - within_sector
        step = 60 // math.gcd(sixtieths, 60)  # the smallest spread with a whole middle byte
        for spread in range(step, 256, step):
            for low in range(256 - spread):
                rgb = hue_grid_colour(hue, low + spread, low)
                if colorref.bytes_to_hsl(*rgb)[0] == hue:
                    on_hue.add(rgb)
    # Exact lightness and saturation pairs at every hue limit (the multiples of 60 included,
    # which every pair reaches exactly), and the greys.
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
        options = by_flip[flip]
        chosen.update(rng.sample(options, min(per_flip, len(options))))
    return ["%02x%02x%02x" % rgb for rgb in sorted(chosen)], len(by_flip)


def sweep_codes(rng, pairs):
    """Every grey, every byte pair that lands exactly on a lightness or saturation limit, and the
    colours on the limits of the name tables."""
    lightness_pairs, saturation_pairs = pairs
    codes = [hex_text(rng, "%02x%02x%02x" % (grey, grey, grey)) for grey in range(256)]
    codes += [hex_text(rng, colour_from_extremes(rng, high, low))
              for high, low in lightness_pairs + saturation_pairs]
    witnesses, flips = limit_witnesses(rng, pairs)
    codes += [hex_text(rng, six) for six in witnesses]
    return codes, flips


def gen_boundary(rng, pairs):
    lightness_pairs, saturation_pairs = pairs
    roll = rng.random()
    if roll < 0.15:
        grey = rng.randrange(256)
        return hex_text(rng, "%02x%02x%02x" % (grey, grey, grey))
    if roll < 0.3:
        return hex_text(rng, colour_from_extremes(rng, *rng.choice(lightness_pairs)))
    if roll < 0.45:
        return hex_text(rng, colour_from_extremes(rng, *rng.choice(saturation_pairs)))
    if roll < 0.55:
        return hex_text(rng, colour_at_hue(rng, rng.choice(HUE_LIMITS)))
    if roll < 0.75:
        return hex_text(rng, corner_colour(rng))
    h, s, l = near_limit_hsl(rng)
    if roll < 0.92:
        return hex_text(rng, nudged(rng, colorref.hsl_to_hex(h, s, l)[1:]))
    # The same neighbourhood reached through the pasted HSL form, with exact-half channels at
    # 10%, 30%, 50%, 70% and 90% lightness now and then.
    if rng.random() < 0.3:
        l = rng.choice((0.1, 0.3, 0.5, 0.7, 0.9))
    return "hsl(%s, %s%%, %s%%)" % (repr(h), repr(s * 100), repr(l * 100))


def gen_code(rng, exact_pairs):
    roll = rng.random()
    if roll < 0.3:
        return gen_hex(rng)
    if roll < 0.45:
        return gen_rgb(rng)
    if roll < 0.62:
        return gen_hsl(rng)
    if roll < 0.72:
        return gen_junk(rng)
    return gen_boundary(rng, exact_pairs)


def gen_valid_colour(rng, exact_pairs):
    """A colour argument for contrast and shades; mostly readable, seldom junk."""
    roll = rng.random()
    if roll < 0.02:
        return gen_junk(rng)
    if roll < 0.45:
        return "#" + random_six(rng).upper()
    if roll < 0.55:
        return gen_rgb(rng)
    if roll < 0.65:
        return gen_hsl(rng)
    return gen_boundary(rng, exact_pairs)


def gen_background(rng, exact_pairs, half_pairs):
    roll = rng.random()
    if roll < 0.15:
        # Lightness exactly 0.5 counts as a dark background; these are at it or an ulp off.
        return "#" + colour_from_extremes(rng, *rng.choice(half_pairs)).upper()
    if roll < 0.25:
        return rng.choice(("#FFFFFF", "#000000", "#808080", "#7F7F7F", "#FF0000", "#0000FF"))
    return gen_valid_colour(rng, exact_pairs)


def gen_target(rng, foreground, background):
    roll = rng.random()
    fg = colorref.parse_color_code(foreground)
    bg = colorref.parse_color_code(background)
    if roll < 0.15 and fg is not None and bg is not None:
        # Byte colours never meet 4.5 or 3.0 exactly, but a target can be met exactly: the ratio
        # of the search's extremes or of its first midpoints makes "reaches the target" an
        # equality, where ">=" and ">" part ways.
        h, s, l = colorref.hex_to_hsl(fg)
        lightness = rng.choice((0.0, 1.0, l, l * 0.5, (1.0 + l) * 0.5))
        ratio = colorref.contrast_ratio(
            colorref.relative_luminance(colorref.hsl_to_hex(h, s, lightness)),
            colorref.relative_luminance(bg))
        return repr(ratio)
    if roll < 0.35:
        return None
    if roll < 0.45:
        return "3"
    if roll < 0.6:
        return "7"
    if roll < 0.65:
        return "4.5"
    if roll < 0.75:
        return str(rng.randint(1, 21))
    return repr(rng.uniform(1, 21))


# --- running the binary -------------------------------------------------------------------------


class DuplicateKey(ValueError):
    pass


def no_duplicates(pairs):
    result = {}
    for key, value in pairs:
        if key in result:
            raise DuplicateKey("duplicate key %r" % key)
        result[key] = value
    return result


def run(binary, arguments, env):
    completed = subprocess.run([binary] + arguments, capture_output=True, env=env, timeout=60)
    stdout = completed.stdout.decode("utf-8", errors="replace")
    stderr = completed.stderr.decode("utf-8", errors="replace")
    parsed, parse_error = None, None
    if stdout.strip():
        try:
            parsed = json.loads(stdout, object_pairs_hook=no_duplicates)
        except ValueError as error:
            parse_error = str(error)
    return completed.returncode, parsed, parse_error, stdout, stderr


# --- comparison ---------------------------------------------------------------------------------


def is_number(value):
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def compare(expected, actual, path, out):
    if isinstance(expected, bool) or expected is None or isinstance(expected, str):
        if type(actual) is not type(expected) or actual != expected:
            out.append((path, expected, actual))
    elif isinstance(expected, int):
        # Bytes and labels must come out as JSON integers.
        if not isinstance(actual, int) or isinstance(actual, bool) or actual != expected:
            out.append((path, expected, actual))
    elif isinstance(expected, float):
        # A double with no fraction may print without one, so any JSON number is accepted as
        # long as its value is the same double.
        if not is_number(actual) or float(actual) != expected:
            note = ""
            if is_number(actual) and expected != 0:
                note = " (%+.0f ulp)" % ((float(actual) - expected) / math.ulp(expected))
            out.append((path + note, expected, actual))
    elif isinstance(expected, list):
        if not isinstance(actual, list) or len(actual) != len(expected):
            out.append((path, expected, actual))
            return
        for index, (want, got) in enumerate(zip(expected, actual)):
            compare(want, got, "%s[%d]" % (path, index), out)
    elif isinstance(expected, dict):
        if not isinstance(actual, dict) or set(actual) != set(expected):
            out.append((path + " (keys)", sorted(expected),
                        sorted(actual) if isinstance(actual, dict) else actual))
            return
        for key in expected:
            compare(expected[key], actual[key], "%s.%s" % (path, key), out)
    else:
        raise TypeError(type(expected))


class Tally:
    def __init__(self):
        self.passed = 0
        self.failed = 0
        self.reports = []

    def record(self, label, mismatches):
        if not mismatches:
            self.passed += 1
            return
        self.failed += 1
        self.reports.append((label, mismatches))


# --- the four commands --------------------------------------------------------------------------


def check_color_batch(binary, env, codes):
    expected, expected_status = colorref.color_command(codes)
    status, parsed, parse_error, stdout, _ = run(binary, ["color", "--json"] + codes, env)
    results = []
    if parse_error or not isinstance(parsed, list) or len(parsed) != len(codes):
        problem = parse_error or "expected an array of %d, got %r" % (len(codes), stdout[:200])
        for code in codes:
            results.append(("color %r" % code, [("output", "array element", problem)]))
        return results
    for code, want, got in zip(codes, expected, parsed):
        mismatches = []
        compare(want, got, "", mismatches)
        results.append(("color %r" % code, mismatches))
    status_mismatch = []
    if status != expected_status:
        status_mismatch.append(("exit status", expected_status, status))
    results.append(("color exit status of a batch of %d" % len(codes), status_mismatch))
    return results


def check_simulate_batch(binary, env, codes):
    expected, expected_status = colorref.simulate_command(codes)
    status, parsed, parse_error, stdout, stderr = run(binary, ["simulate", "--json"] + codes, env)
    if parse_error or not isinstance(parsed, list) or len(parsed) != len(codes):
        problem = parse_error or "expected an array of %d, got %r" % (len(codes), stdout[:200])
        return [("simulate %r" % code, [("output", "array element", problem)]) for code in codes]
    results = []
    for code, want, got in zip(codes, expected, parsed):
        mismatches = []
        compare(want, got, "", mismatches)
        results.append(("simulate %r" % code, mismatches))
    status_mismatch = []
    if status != expected_status:
        status_mismatch.append(("exit status", expected_status, status))
    elif status == 1 and (not stderr.endswith("\n") or stderr.count("\n") != 1):
        status_mismatch.append(("stderr", "one line", stderr))
    results.append(("simulate exit status of a batch of %d" % len(codes), status_mismatch))
    return results


def simulation_sweep():
    """Every level of each single channel and every grey: the linear toe (bytes up to 10), the
    curve above it, and the products that go negative or past 1 and must be clamped."""
    codes = []
    for level in range(256):
        codes += ["#%02X0000" % level, "#00%02X00" % level, "#0000%02X" % level,
                  "#%02X%02X%02X" % (level, level, level)]
    # Secondaries and their complements at full strength push two products out of range at once.
    for level in range(0, 256, 5):
        codes += ["#FF%02X00" % level, "#00FF%02X" % level, "#%02X00FF" % level,
                  "#%02XFFFF" % level, "#FF%02XFF" % level, "#FFFF%02X" % level]
    return codes


def gen_simulate_code(rng, exact_pairs):
    roll = rng.random()
    if roll < 0.55:
        return "#" + random_six(rng).upper()
    if roll < 0.8:
        return gen_code(rng, exact_pairs)
    if roll < 0.9:
        # Near-blacks and near-whites, where the linear toe and the clamping at 1 sit.
        low = rng.random() < 0.5
        return "#" + "".join("%02X" % (rng.randint(0, 24) if low else rng.randint(230, 255))
                             for _ in range(3))
    return gen_junk(rng)


def check_failure(label, status, stderr):
    mismatches = []
    if status != 1:
        mismatches.append(("exit status", 1, status))
    # One line on stderr, whatever control characters the argument held.
    if not stderr.strip() or not stderr.endswith("\n") or stderr.count("\n") != 1:
        mismatches.append(("stderr", "one line", stderr))
    return [(label, mismatches)]


def run_problem(status, parse_error, stderr):
    return "status %d %s %r" % (status, parse_error or "", stderr)


def check_contrast(binary, env, foreground, background, target):
    arguments = ["contrast", "--json", foreground, background]
    if target is not None:
        arguments += ["--target", target]
    expected = colorref.contrast_command(
        foreground, background, 4.5 if target is None else float(target))
    label = "contrast %r %r target %s" % (foreground, background, target)
    status, parsed, parse_error, stdout, stderr = run(binary, arguments, env)
    if expected is None:
        return check_failure(label, status, stderr)
    if status != 0 or parse_error:
        return [(label, [("run", "status 0 and JSON", run_problem(status, parse_error, stderr))])]
    mismatches = []
    compare(expected, parsed, "", mismatches)
    return [(label, mismatches)]


def check_shades(binary, env, code):
    expected = colorref.shades_command(code)
    label = "shades %r" % code
    status, parsed, parse_error, stdout, stderr = run(binary, ["shades", "--json", code], env)
    if expected is None:
        return check_failure(label, status, stderr)
    if status != 0 or parse_error:
        return [(label, [("run", "status 0 and JSON", run_problem(status, parse_error, stderr))])]
    mismatches = []
    compare(expected, parsed, "", mismatches)
    return [(label, mismatches)]


# --- the reference against the description's own examples --------------------------------------

# Worked examples from the description of the colour rules. If the model drifts from them, every
# comparison after it is worthless, so they are checked before the binary is run.
# hslToHex(-10, 1, 0.5) is left out: the description calls it #FF0000, but its own formula gives
# x = -1/6 there, a blue channel of round(-42.5) = -43, so the example and the formula disagree.
# No command can reach a negative hue.
DESCRIPTION_EXAMPLES = (
    (colorref.normalized_digits, (" #abcdef\n",), "ABCDEF"),
    (colorref.normalized_digits, ("#abc",), None),
    (colorref.normalized_digits, ("##abcdef",), None),
    (colorref.normalized_digits, ("#abcdefff",), None),
    (colorref.canonical_hex, ("abc",), "#AABBCC"),
    (colorref.canonical_hex, ("  #abc ",), "#AABBCC"),
    (colorref.canonical_hex, (" hello ",), " hello "),
    (colorref.parse_color_code, ("##ff00aa",), "#FF00AA"),
    (colorref.parse_color_code, ("ff#00aa",), "#FF00AA"),
    (colorref.parse_color_code, ("rgb(300, 0, 0)",), "#FF0000"),
    (colorref.parse_color_code, ("rgba(10, 20, 30, 0.5)",), "#0A141E"),
    (colorref.parse_color_code, ("RGB(255,255,255)",), "#FFFFFF"),
    (colorref.parse_color_code, ("hsl(400, 50%, 50%)",), colorref.hsl_to_hex(40.0, 0.5, 0.5)),
    (colorref.parse_color_code, ("#abc",), None),
    (lambda text: colorref.hex_to_hsl(text)[:2], ("#808080",), (0.0, 0.0)),
    (lambda text: colorref.hex_to_hsl(text)[0], ("#FF0000",), 0.0),
    (lambda text: 359 < colorref.hex_to_hsl(text)[0] < 360, ("#FF0001",), True),
    (colorref.hsl_to_hex, (360.0, 1.0, 0.5), "#FF0000"),
    (colorref.contrast_level, ("#FFFFFF", "nope"), colorref.POOR),
    (colorref.formatted_code, ("#3366FF", "hex", ""), "#3366FF"),
    (colorref.formatted_code, ("#3366FF", "hex-no-hash", ""), "3366FF"),
    (colorref.formatted_code, ("#3366FF", "rgb", ""), "rgb(51, 102, 255)"),
    (colorref.formatted_code, ("#3366FF", "hsl", ""), "hsl(225, 100%, 60%)"),
    (colorref.formatted_code, ("#3366FF", "css-var", "Primary Blue"), "--primary-blue: #3366FF"),
    (colorref.formatted_code, ("#3366FF", "tailwind", ""), "bg-[#3366FF]"),
    (colorref.formatted_code, ("#abc", "css-var", "  "), "--color: #AABBCC"),
    (colorref.formatted_code, ("nope", "hex-no-hash", "x"), "ope"),
    (colorref.color_name, ("#FFF",), "New Color"),
    (lambda text: colorref.shade_ladder(text)[-1], ("#000000",),
     {"label": 900, "hex": "#000000", "isBase": True}),
    (colorref.simulated, ("#000000", "protanopia"), "#000000"),
    (colorref.simulated, ("#000000", "deuteranopia"), "#000000"),
    (colorref.simulated, ("#000000", "tritanopia"), "#000000"),
    (colorref.simulated, (" #ff0000\n", "normal"), " #ff0000\n"),
    (colorref.simulated, ("#abc", "tritanopia"), "#abc"),
    (colorref.simulated, ("nope", "protanopia"), "nope"),
    # "Close to white": every channel of white within one step of 255 for all three types.
    (lambda text: all(min(colorref.hex_to_rgb(colorref.simulated(text, t))) >= 254
                      for t in colorref.SIMULATION_TYPES), ("#FFFFFF",), True),
    # A negative product is clamped to 0, not wrapped: pure blue loses all its red.
    (lambda text: all(colorref.hex_to_rgb(colorref.simulated(text, t))[0] == 0
                      for t in colorref.SIMULATION_TYPES), ("#0000FF",), True),
)


def check_reference():
    wrong = []
    for function, arguments, expected in DESCRIPTION_EXAMPLES:
        actual = function(*arguments)
        if actual != expected:
            wrong.append("%s%r gives %r, the description says %r"
                         % (getattr(function, "__name__", "?"), arguments, actual, expected))
    return wrong


# --- main ---------------------------------------------------------------------------------------


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--binary", required=True, help="path of the hueshelf executable")
    parser.add_argument("--seed", type=int, default=DEFAULT_SEED)
    parser.add_argument("--count", type=int, default=3000,
                        help="number of random inputs over color, contrast and shades, and a "
                        "third as many for simulate (fixed sweeps of greys, exact-limit colours "
                        "and single channels come on top)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    parser.add_argument("--show", type=int, default=20, help="mismatches to print")
    options = parser.parse_args()

    wrong = check_reference()
    if wrong:
        print("The reference model contradicts the description's examples:")
        print("\n".join("    " + line for line in wrong))
        print("0 passed, %d failed" % len(wrong))
        return 1

    rng = random.Random(options.seed)
    exact_pairs = exact_pairs_of_limits()
    half_pairs = [pair for pair in exact_pairs[0]
                  if within_an_ulp(colorref.bytes_to_hsl(pair[0], pair[1], pair[1])[2], {0.5})]

    color_count = max(1, options.count * 7 // 10)
    contrast_count = max(1, options.count * 2 // 10)
    shades_count = max(1, options.count - color_count - contrast_count)

    codes = [gen_code(rng, exact_pairs) for _ in range(color_count)]
    sweep, flips = sweep_codes(rng, exact_pairs)
    codes += sweep
    batches = [codes[i:i + COLOR_BATCH] for i in range(0, len(codes), COLOR_BATCH)]
    # One batch of readable codes only, so that the exit status 0 path is held too.
    batches.append([code for code in codes if colorref.parse_color_code(code) is not None][:40])

    contrasts = []
    for _ in range(contrast_count):
        foreground = gen_valid_colour(rng, exact_pairs)
        background = (foreground if rng.random() < 0.03
                      else gen_background(rng, exact_pairs, half_pairs))
        contrasts.append((foreground, background, gen_target(rng, foreground, background)))
    shades = [gen_valid_colour(rng, exact_pairs) for _ in range(shades_count)]

    # A generator of its own, so that adding this command left the other inputs as they were.
    simulate_rng = random.Random(options.seed + 1)
    simulate_codes = [gen_simulate_code(simulate_rng, exact_pairs)
                      for _ in range(max(1, options.count // 3))] + simulation_sweep()
    simulate_batches = [simulate_codes[i:i + COLOR_BATCH]
                        for i in range(0, len(simulate_codes), COLOR_BATCH)]
    simulate_batches.append(
        [code for code in simulate_codes if colorref.parse_color_code(code) is not None][:40])

    with tempfile.TemporaryDirectory(prefix="hueshelf-differential-") as home:
        # The colour commands touch no store; a private home makes sure of it.
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=home,
                   XDG_CONFIG_HOME=os.path.join(home, "config"),
                   XDG_DATA_HOME=os.path.join(home, "data"),
                   XDG_RUNTIME_DIR=home)
        with concurrent.futures.ThreadPoolExecutor(max_workers=max(1, options.jobs)) as pool:
            binary = options.binary
            futures = [pool.submit(check_color_batch, binary, env, batch) for batch in batches]
            futures += [pool.submit(check_contrast, binary, env, *pair) for pair in contrasts]
            futures += [pool.submit(check_shades, binary, env, code) for code in shades]
            futures += [pool.submit(check_simulate_batch, binary, env, batch)
                        for batch in simulate_batches]
            tally = Tally()
            for future in futures:
                for label, mismatches in future.result():
                    tally.record(label, mismatches)

    for label, mismatches in tally.reports[:options.show]:
        print("MISMATCH %s" % label)
        for path, want, got in mismatches[:6]:
            print("    %-24s expected %r" % (path or "(value)", want))
            print("    %-24s actual   %r" % ("", got))
    if len(tally.reports) > options.show:
        print("... and %d more mismatching cases" % (len(tally.reports) - options.show))
    print("seed %d: %d color codes (%d of them a sweep of greys, exact limits and %d name changes"
          " at a limit) in %d batches, %d contrast pairs, %d shade ladders, %d simulated codes in"
          " %d batches"
          % (options.seed, len(codes), len(sweep), flips, len(batches), len(contrasts),
             len(shades), len(simulate_codes), len(simulate_batches)))
    print("%d passed, %d failed" % (tally.passed, tally.failed))
    return 1 if tally.failed else 0


if __name__ == "__main__":
    sys.exit(main())
