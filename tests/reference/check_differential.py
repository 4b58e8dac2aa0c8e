#!/usr/bin/env python3
"""Differential test: `hueshelf check --colors CODE... --json` against the model in checkref.py.

Random but repeatable palettes (fixed seed) of 0 to 12 colours, built to reach every branch of the
check: near-duplicates at and around the distance limit, look-alike pairs for each vision type,
dark and light text pairs around the two contrast levels, mid-tones, greys, colours at the ends of
the lightness range where the fix search stops, and hue layouts for each kind of scheme. Every
field of the output is compared with the model, strings and doubles exactly; issue ids, which
hold the colours' random ids, are compared by shape and by a consistent mapping of colours to ids.
Prints "N passed, M failed" and the first mismatches; exits 1 on any mismatch.
"""

import argparse
import concurrent.futures
import functools
import math
import os
import random
import re
import sys
import tempfile

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import checkref  # noqa: E402
import colorref  # noqa: E402
from differential import Tally, compare, run  # noqa: E402

DEFAULT_SEED = 20240612
UUID = "[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"
ISSUE_ID_SHAPES = {
    "read": re.compile("^read-(%s)$" % UUID),
    "dupe": re.compile("^dupe-(%s)-(%s)$" % (UUID, UUID)),
    "look": re.compile("^look-(%s)-(%s)$" % (UUID, UUID)),
}


# --- palette generation -------------------------------------------------------------------------


def clamp_byte(value):
    return min(255, max(0, value))


def code_of(rgb):
    return "#%02X%02X%02X" % rgb


def random_rgb(rng):
    return tuple(rng.randrange(256) for _ in range(3))


def rgb_of_hsl(h, s, l):
    return colorref.hex_to_rgb(colorref.hsl_to_hex(h % 360.0, s, l))


def grey(rng):
    roll = rng.random()
    if roll < 0.3:
        value = rng.choice((0, 255, 128, 127, 102, 153, 51, 10, 245, 247, 8))
        return (value, value, value)
    if roll < 0.7:
        value = rng.randrange(256)
        return (value, value, value)
    # Nearly grey: a saturation just under or over the 0.1 of the look-alike and scheme rules.
    return rgb_of_hsl(rng.uniform(0, 360), rng.choice((0.05, 0.09, 0.1, 0.11, 0.15)),
                      rng.uniform(0.1, 0.9))


def near_duplicate(rng, base):
    """A colour at a Manhattan distance from `base` at, under or just over the limit of 15."""
    distance = rng.choice((0, 1, 5, 10, 13, 14, 14, 15, 15, 16, 20))
    channels = list(base)
    for _ in range(200):
        channels = list(base)
        left = distance
        for index in rng.sample(range(3), 3):
            step = rng.randint(0, left)
            sign = rng.choice((-1, 1))
            if not 0 <= channels[index] + sign * step <= 255:
                sign = -sign
            if 0 <= channels[index] + sign * step <= 255:
                channels[index] += sign * step
                left -= step
        if left == 0:
            break
    return tuple(channels)


def look_alike_partner(rng, base, vision):
    """A colour that collapses onto `base` under `vision` but is no near-duplicate of it, found by
    trial; None if the trials found none."""
    target = checkref.simulated_rgb(code_of(base), vision)
    spread = rng.choice((40, 70, 110))
    for _ in range(300):
        candidate = tuple(clamp_byte(c + rng.randint(-spread, spread)) for c in base)
        if sum(abs(a - b) for a, b in zip(candidate, base)) < 15:
            continue
        simulated = checkref.simulated_rgb(code_of(candidate), vision)
        if checkref.euclidean(simulated, target) < rng.choice((30.0, 30.0, 34.0)):
            return candidate
    return None


def colour_with_ratio(rng, other, low, high):
    """A colour whose contrast against `other` lies between low and high, found by trial."""
    other_luminance = checkref.luminance_of(code_of(other))
    for _ in range(400):
        candidate = rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.random())
        ratio = colorref.contrast_ratio(checkref.luminance_of(code_of(candidate)), other_luminance)
        if low <= ratio < high:
            return candidate
    return None


def text_pair(rng):
    """A dark colour and a light one whose contrast sits around 3.0 or 4.5."""
    light = rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.uniform(0.6, 1.0))
    low, high = rng.choice(((2.5, 3.0), (2.9, 3.1), (3.0, 4.5), (4.3, 4.7), (4.5, 6.0), (1.0, 2.0)))
    for _ in range(20):
        dark = colour_with_ratio(rng, light, low, high)
        if dark is not None and checkref.hsl_of(code_of(dark))[2] < 0.4:
            return [dark, light]
    return [rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.uniform(0.0, 0.4)), light]


def lightness_edge(rng):
    """Colours where the fix search runs out of room, and the limits of the lightness bands."""
    l = rng.choice((0.02, 0.03, 0.035, 0.04, 0.05, 0.19, 0.2, 0.21, 0.39, 0.4, 0.41, 0.59, 0.6,
                    0.61, 0.85, 0.86, 0.95, 0.96, 0.965, 0.97, 0.98))
    l += rng.choice((0.0, 0.0, -0.002, 0.002))
    return rgb_of_hsl(rng.uniform(0, 360), rng.uniform(0.1, 1.0), min(1.0, max(0.0, l)))


def hue_family(rng, palette):
    """A colour at a scheme-like hue distance from one already in the palette."""
    if palette:
        base_hue = checkref.hsl_of(code_of(rng.choice(palette)))[0]
    else:
        base_hue = rng.uniform(0, 360)
    offset = rng.choice((0, 10, 25, 30, 35, 55, 60, 65, 90, 100, 120, 140, 150, 160, 175, 180))
    offset += rng.choice((0.0, 0.0, -2.0, 2.0, rng.uniform(-5, 5)))
    return rgb_of_hsl(base_hue + rng.choice((-1, 1)) * offset, rng.uniform(0.15, 1.0),
                      rng.uniform(0.15, 0.85))


def vivid(rng):
    return rgb_of_hsl(rng.uniform(0, 360), rng.uniform(0.5, 1.0), rng.uniform(0.25, 0.65))


def mid_tone(rng):
    return rgb_of_hsl(rng.uniform(0, 360), rng.random(), rng.uniform(0.4, 0.6))


def lightness_ladder(rng):
    """Steps of one hue, now and then with a bright blue, a light colour with little luminance
    that no dark colour reads on. Every lightness change of a look-alike pair here runs into
    another step or into a readability issue, so the fix search finds nothing now and then."""
    h = rng.uniform(0, 360)
    s = rng.uniform(0.2, 1.0)
    start = rng.uniform(0.03, 0.3)
    step = rng.uniform(0.03, 0.08)
    ladder = [rgb_of_hsl(h + rng.uniform(-8, 8), s, min(0.99, start + i * step))
              for i in range(rng.randint(4, 10))]
    if rng.random() < 0.7:
        ladder.append(rgb_of_hsl(rng.uniform(200, 260), 1.0, rng.uniform(0.6, 0.65)))
    return ladder


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


# Limits of the bands, the role lists, the look-alike exemptions, the fix search and the scheme
# rules; colours exactly on them (or an ulp off) are where a misread "<" or "<=" shows.
LIGHTNESS_LIMITS = (0.03, 0.15, 0.2, 0.25, 0.4, 0.5, 0.6, 0.65, 0.85, 0.97)
SATURATION_LIMITS = (0.1, 0.25, 0.3, 0.5, 0.6)


@functools.lru_cache(maxsize=None)
def limit_pairs():
    """(max, min) bytes whose lightness or saturation sits on one of the limits within an ulp."""
    near = set()
    for limit in LIGHTNESS_LIMITS + SATURATION_LIMITS:
        near.update((limit, math.nextafter(limit, 0.0), math.nextafter(limit, 2.0)))
    pairs = []
    for high in range(256):
        for low in range(high + 1):
            _, s, l = colorref.bytes_to_hsl(high, low, low)
            if l in near or s in near:
                pairs.append((high, low))
    return pairs


def on_a_limit(rng):
    high, low = rng.choice(limit_pairs())
    channels = [high, low, rng.randint(low, high)]
    rng.shuffle(channels)
    return tuple(channels)


def exact_hue(rng):
    """A colour whose hue is a whole multiple of 15 degrees exactly, so that the scheme rules'
    distances of 30, 60, 90, 140, 150 and 180 are met exactly; None if the trials found none."""
    for _ in range(50):
        hue = 15 * rng.randrange(24)
        high = rng.randint(1, 255)
        low = rng.randint(0, high - 1)
        sector, within = divmod(hue, 60)
        sixtieths = within if sector % 2 == 0 else 60 - within
        offset, rest = divmod(sixtieths * (high - low), 60)
        if rest:
            continue
        mid = low + offset
        rgb = ((high, mid, low), (mid, high, low), (low, high, mid), (low, mid, high),
               (mid, low, high), (high, low, mid))[sector]
        if checkref.hsl_of(code_of(rgb))[0] == hue:
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
                if not palette:
                    palette.append(base)
                palette.append(partner)
        elif roll < 0.64:
            palette.extend(text_pair(rng))
        elif roll < 0.72:
            palette.append(mid_tone(rng))
        elif roll < 0.8:
            palette.append(lightness_edge(rng))
        elif roll < 0.86:
            palette.append(hue_family(rng, palette))
        elif roll < 0.9:
            palette.append(on_a_limit(rng))
        elif roll < 0.95:
            colour = exact_hue(rng)
            if colour is not None:
                palette.append(colour)
        else:
            palette.append(vivid(rng))
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
    if roll < 0.9:
        return "rgb(%d, %d, %d)" % rgb
    if roll < 0.97:
        return " %s " % code_of(rgb)
    # The pasted HSL form; it names a nearby colour, read back by the same rules.
    h, s, l = checkref.hsl_of(code_of(rgb))
    return "hsl(%.1f, %.1f%%, %.1f%%)" % (h, s * 100, l * 100)


JUNK = ("#FFF", "nope", "rgb(1,2)", "#12345G", "hsl(1, 2, 3)", "")


# --- comparison ---------------------------------------------------------------------------------


def colour_indexes(issue_id):
    """The kind prefix and colour indexes of one of the model's issue ids ("look-1-4")."""
    prefix, *indexes = issue_id.split("-")
    return prefix, [int(index) for index in indexes]


def map_issue_ids(expected_issues, actual_issues, out):
    """Replaces the binary's issue ids by the model's when each has the right shape and the
    colours' ids map one to one onto their indexes; records a mismatch otherwise."""
    if not isinstance(actual_issues, list) or len(actual_issues) != len(expected_issues):
        return
    uuid_of_index, index_of_uuid = {}, {}
    for position, (want, got) in enumerate(zip(expected_issues, actual_issues)):
        if not isinstance(got, dict) or not isinstance(got.get("id"), str):
            continue
        prefix, indexes = colour_indexes(want["id"])
        match = ISSUE_ID_SHAPES[prefix].match(got["id"])
        if match is None:
            out.append((".issues[%d].id (shape)" % position, want["id"], got["id"]))
            continue
        consistent = True
        for index, uuid in zip(indexes, match.groups()):
            if uuid_of_index.setdefault(index, uuid) != uuid:
                consistent = False
            if index_of_uuid.setdefault(uuid, index) != index:
                consistent = False
        if not consistent:
            out.append((".issues[%d].id (same colour, same id)" % position, want["id"],
                        got["id"]))
            continue
        got["id"] = want["id"]


def check_case(binary, env, arguments, strict):
    label = "check --colors %s%s" % (" ".join(repr(a) for a in arguments),
                                     " --strict" if strict else "")
    command = ["check", "--colors"] + arguments + ["--json"] + (["--strict"] if strict else [])
    status, parsed, parse_error, stdout, stderr = run(binary, command, env)
    mismatches = []
    if not arguments:
        # "CODE..." is one or more: an empty list is a usage error, with the usage on stderr.
        if status != 2:
            mismatches.append(("exit status", 2, status))
        if "Usage" not in stderr:
            mismatches.append(("stderr", "the usage", stderr))
        return label, mismatches, None
    expected = checkref.check_command(arguments)
    if expected is None:
        if status != 1:
            mismatches.append(("exit status", 1, status))
        if not stderr.strip() or not stderr.endswith("\n") or stderr.count("\n") != 1:
            mismatches.append(("stderr", "one line", stderr))
        return label, mismatches, expected
    expected_status = 1 if strict and expected["issues"] else 0
    if status != expected_status or parse_error or not isinstance(parsed, dict):
        mismatches.append(("run", "status %d and a JSON object" % expected_status,
                           "status %d %s %r %r" % (status, parse_error or "", stdout[:300],
                                                   stderr[:300])))
        return label, mismatches, expected
    # A list of colours has no palette name of its own to show.
    name = parsed.pop("name", "(missing)")
    if name is not None:
        mismatches.append((".name", None, name))
    map_issue_ids(expected["issues"], parsed.get("issues"), mismatches)
    compare(expected, parsed, "", mismatches)
    return label, mismatches, expected


def count_coverage(expected, coverage):
    """Tallies what the model expected, so that a seed that misses a branch shows."""
    def bump(key):
        coverage[key] = coverage.get(key, 0) + 1
    if expected is None:
        bump("no colour or an unreadable one")
        return
    for issue in expected["issues"]:
        bump(issue["kind"] + "/" + (issue.get("level") or issue.get("vision") or "-"))
        if issue["kind"] == "lookAlike":
            bump("lookAlike with a move" if issue["move"] else "lookAlike without a move")
        if issue["fixedHex"] is not None:
            bump("fixedHex")
        elif issue["kind"] == "readability":
            bump("readability without fixedHex")
    bump("scheme " + expected["scheme"])
    for note in expected["harmonyNotes"]:
        bump("note " + note["type"])
    if expected["midToneNotes"]:
        bump("midToneNotes")


def run_case(binary, env, case):
    arguments, strict = case
    return check_case(binary, env, arguments, strict)


# --- the model against the rules' own examples ---------------------------------------------------


def issues_of(*codes):
    return checkref.check_command(list(codes))["issues"]


def kinds_of(*codes):
    return [(i["kind"], i.get("level") or i.get("vision")) for i in issues_of(*codes)]


def scheme_of(*codes):
    result = checkref.check_command(list(codes))
    return result["scheme"], [note["type"] for note in result["harmonyNotes"]]


def roles_of(*codes):
    return [entry["role"] for entry in checkref.check_command(list(codes))["roles"]]


def hue_code(hue, saturation=1.0, lightness=0.5):
    return colorref.hsl_to_hex(hue % 360.0, saturation, lightness)


# Each entry: (what it shows, computed value, value the rules give). The pairs of colours were
# found by trial to collapse under the types named.
SELF_EXAMPLES = (
    ("white and black", lambda: kinds_of("#FFFFFF", "#000000"), []),
    ("black on white ratio", lambda: colorref.contrast_ratio(
        checkref.luminance_of("#000000"), checkref.luminance_of("#FFFFFF")), 21.0),
    # Every dark grey reads on white (5.9:1 and more); a grey needs a darker light colour.
    ("dark grey on white", lambda: kinds_of("#FFFFFF", "#636363"), []),
    ("dark green on white, 2.2:1", lambda: issues_of("#FFFFFF", "#00CB00"),
     [{"id": "read-1", "kind": "readability", "level": "poor", "color": 1, "other": 0,
       "canFix": True, "text": "Deep Green is hard to read on White.", "move": None,
       "fixedHex": "#008A00"}]),
    ("dark green on white, 4.26:1", lambda: issues_of("#FFFFFF", "#008F00")[0]["text"],
     "Deep Forest only works for headings on White."),
    ("grey at lightness 0.39 on a light grey, 3.12:1", lambda: kinds_of("#BBBBBB", "#636363"),
     [("readability", "lowContrast")]),
    ("mid-tones only", lambda: kinds_of("#808080", "#FF0000", "#3366CC"), []),
    ("two dark colours, no light one", lambda: kinds_of("#101010", "#202060"), []),
    ("Manhattan distance 14", lambda: kinds_of("#808080", "#808E80"), [("nearDuplicate", None)]),
    ("Manhattan distance 15", lambda: kinds_of("#808080", "#808F80"), []),
    ("collapses under all three: reported once, under the first type",
     lambda: kinds_of("#6133FB", "#5421FF"), [("lookAlike", "deuteranopia")]),
    ("red-green pair", lambda: kinds_of("#554660", "#84224A"), [("lookAlike", "deuteranopia")]),
    ("protanopia only", lambda: kinds_of("#752052", "#B20049"), [("lookAlike", "protanopia")]),
    ("tritanopia only", lambda: kinds_of("#E032CD", "#FF65AE"), [("lookAlike", "tritanopia")]),
    ("look-alike text", lambda: issues_of("#752052", "#B20049")[0]["text"],
     "Deep Pink and Deep Pink 2 look the same to red\u2011green vision."),
    ("tritanopia text", lambda: issues_of("#E032CD", "#FF65AE")[0]["text"].endswith(
        " look the same to blue\u2011yellow vision."), True),
    # 26.0 apart under deuteranopia, 66 apart in bytes; both at lightness 0.6.
    ("both light: no look-alike", lambda: kinds_of("#DCBB56", "#F5AB3D"), []),
    ("one light, one under", lambda: kinds_of("#DCBB56", "#F4AA3A"),
     [("lookAlike", "deuteranopia")]),
    ("fix count 0", lambda: checkref.fix_count_text(0), "Nothing to fix"),
    ("fix count 1", lambda: checkref.fix_count_text(1), "1 thing to fix"),
    ("fix count 2", lambda: checkref.fix_count_text(2), "2 things to fix"),
    ("unique name", lambda: checkref.unique_name("Blue", ["blue", "BLUE 2"]), "Blue 3"),
    ("unique name of blanks", lambda: checkref.unique_name("   ", []), "Color"),
    ("same colour twice", lambda: [c["name"] for c in checkref.colours_of_codes(
        ["#808080", "#808080", "#808080"])], ["Gray", "Gray 2", "Gray 3"]),
    ("empty palette", lambda: scheme_of(), ("none", [])),
    ("one colour", lambda: scheme_of("#FF0000"), ("none", [])),
    ("greys only", lambda: scheme_of("#000000", "#FFFFFF", "#808080"), ("neutral", [])),
    ("175 degrees", lambda: scheme_of(hue_code(10), hue_code(185))[0], "complementary"),
    ("100 degrees", lambda: scheme_of(hue_code(10), hue_code(110))[0], "split"),
    ("65 degrees", lambda: scheme_of(hue_code(0), hue_code(65))[0], "split"),
    ("55 degrees", lambda: scheme_of(hue_code(0), hue_code(55))[0], "analogous"),
    ("30 degrees exactly", lambda: scheme_of("#FF0000", "#C86400")[0], "monochromatic"),
    ("0, 120, 240", lambda: scheme_of("#FF0000", "#00FF00", "#0000FF")[0], "triadic"),
    ("0, 10, 350", lambda: scheme_of(hue_code(0), hue_code(10), hue_code(350))[0],
     "monochromatic"),
    ("clusters with one distance of 151",
     lambda: scheme_of(hue_code(0, 1, 0.3), hue_code(151, 1, 0.5), hue_code(255, 1, 0.7)),
     ("none", ["noConnection"])),
    ("dark colours only", lambda: scheme_of(hue_code(0, 1, 0.2), hue_code(180, 1, 0.2))[1],
     ["allDark"]),
    ("light colours only", lambda: scheme_of(hue_code(0, 1, 0.8), hue_code(180, 1, 0.8))[1],
     ["allLight"]),
    ("four greens", lambda: scheme_of(*[hue_code(h, 0.8, l) for h, l in
                                        ((100, 0.2), (110, 0.5), (120, 0.7), (125, 0.4))]),
     ("monochromatic", ["variety"])),
    ("three greens", lambda: scheme_of(*[hue_code(h, 0.8, l) for h, l in
                                         ((100, 0.2), (110, 0.5), (120, 0.7))]),
     ("monochromatic", [])),
    ("vivid roles", lambda: roles_of(*[hue_code(h, 0.6, 0.5) for h in (0, 100, 200, 250, 300)]),
     ["Primary", "Accent", "Highlight", "Secondary", "Accent 2"]),
    ("near-black roles", lambda: roles_of("#0A0A0A", "#050505", "#101010", "#000000"),
     ["Text Dark", "Heading", "Dark Base", "Text Dark 2"]),
    # Ten steps either way separate the pair; as doubles the lighter change is 0.09999999999999998
    # and the darker one -0.1, and yet the darker one, tried first, stays.
    ("darker wins a tie", lambda: issues_of("#087C2E", "#0F7D1C")[0]["move"],
     {"color": 0, "fromHex": "#087C2E", "toHex": "#054C1C", "lightnessChange": -0.1}),
    # Sixteen steps darker for the first colour or lighter for the second: the first stays.
    ("first colour wins a tie", lambda: issues_of("#B9102D", "#C70040")[0]["move"]["color"], 0),
    ("move text", lambda: checkref.move_text({"name": "Blue", "lightnessChange": -0.05}),
     "Blue is 5% darker, same hue."),
)


def structural_checks():
    """Properties every settled move must have, on palettes built for look-alike pairs."""
    wrong = []
    rng = random.Random(7)
    for _ in range(40):
        base = random_rgb(rng)
        partner = look_alike_partner(rng, base, rng.choice(checkref.CHECK_VISION_ORDER))
        if partner is None:
            continue
        codes = [code_of(base), code_of(partner), code_of(rng.choice(((255,) * 3, (0,) * 3)))]
        colours = checkref.colours_of_codes(codes)
        issues = checkref.issues_with_moves(colours)
        known = {issue["id"] for issue in issues}
        for issue in issues:
            move = issue["move"]
            if move is None:
                continue
            after = checkref.apply_fix(issue, colours)
            if any(new["id"] not in known for new in checkref.detect(after)):
                wrong.append("a move on %s makes a new issue" % codes)
            pair = [c["hex"] for c in after if c["id"] in (issue["color"]["id"],
                                                          issue["other"]["id"])]
            if checkref.simulated_distance(*pair) < 60.0:
                wrong.append("a move on %s leaves the pair close" % codes)
            if not 0.0 < abs(move["lightnessChange"]) <= 0.45 + 1e-9:
                wrong.append("a move on %s is out of range" % codes)
    return wrong


def check_model():
    wrong = []
    for what, compute, expected in SELF_EXAMPLES:
        actual = compute()
        if actual != expected:
            wrong.append("%s: the model gives %r, the rules say %r" % (what, actual, expected))
    return wrong + structural_checks()


# --- main ---------------------------------------------------------------------------------------


def make_cases(rng, count):
    cases = []
    for number in range(count):
        palette = random_palette(rng)
        arguments = [pasted(rng, rgb) for rgb in palette]
        if number % 50 == 7 and arguments:
            arguments[rng.randrange(len(arguments))] = rng.choice(JUNK)
        cases.append((arguments, number % 4 == 3))
    cases += [(list(palette), False) for palette in NO_MOVE_PALETTES]
    return cases


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--binary", required=True, help="path of the hueshelf executable")
    parser.add_argument("--seed", type=int, default=DEFAULT_SEED)
    parser.add_argument("--count", type=int, default=400, help="number of random palettes")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    parser.add_argument("--show", type=int, default=10, help="mismatches to print")
    options = parser.parse_args()

    wrong = check_model()
    if wrong:
        print("The reference model contradicts the rules' own examples:")
        print("\n".join("    " + line for line in wrong))
        print("0 passed, %d failed" % len(wrong))
        return 1

    cases = make_cases(random.Random(options.seed), options.count)
    coverage = {}
    with tempfile.TemporaryDirectory(prefix="hueshelf-check-differential-") as home:
        # A colour list touches no palette; a private home makes sure no real store is read.
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=home,
                   XDG_CONFIG_HOME=os.path.join(home, "config"),
                   XDG_DATA_HOME=os.path.join(home, "data"), XDG_RUNTIME_DIR=home)
        with concurrent.futures.ThreadPoolExecutor(max_workers=max(1, options.jobs)) as pool:
            futures = [pool.submit(run_case, options.binary, env, case) for case in cases]
            tally = Tally()
            for future in futures:
                label, mismatches, expected = future.result()
                tally.record(label, mismatches)
                count_coverage(expected, coverage)

    for label, mismatches in tally.reports[:options.show]:
        print("MISMATCH %s" % label)
        for path, want, got in mismatches[:6]:
            print("    %-28s expected %r" % (path or "(value)", want))
            print("    %-28s actual   %r" % ("", got))
    if len(tally.reports) > options.show:
        print("... and %d more mismatching cases" % (len(tally.reports) - options.show))
    print("seed %d: %d palettes" % (options.seed, len(cases)))
    print("covered: " + ", ".join("%s %d" % item for item in sorted(coverage.items())))
    print("%d passed, %d failed" % (tally.passed, tally.failed))
    return 1 if tally.failed else 0


if __name__ == "__main__":
    sys.exit(main())
