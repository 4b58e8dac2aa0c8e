"""Reference model of HueShelf's palette check, written from the description of the check apart
from the C++ sources, on top of colorref.py, for `hueshelf check --colors`: a new palette of
readable, unlocked colours {"id", "name", "hex"} whose ids are their indexes.
"""

import functools
import math

import colorref

# Simulation order of the look-alike pass and of the separation measure of a move.
CHECK_VISION_ORDER = ("deuteranopia", "protanopia", "tritanopia")
LOOK_ALIKE_LIMIT, SETTLED_SEPARATION, NEAR_DUPLICATE_LIMIT = 30.0, 60.0, 15
READABLE_RATIO, HEADING_RATIO = 4.5, 3.0

SCHEME_DISPLAY_NAMES = {
    "monochromatic": "Monochromatic palette", "analogous": "Analogous palette",
    "complementary": "Complementary palette", "triadic": "Triadic palette",
    "split": "Split-complementary palette", "neutral": "Mostly neutral palette",
}
HARMONY_MESSAGES = {
    "noConnection": "Your colors don't have an obvious connection to each other. Try picking "
    "colors that sit next to each other or directly across from each other on a color wheel.",
    "energy": "Some of your colors are bold and bright while others are soft and faded. "
    "Palettes tend to look more polished when colors share a similar energy level.",
    "brightness": "Your colors are all about the same brightness. Adding some lighter or darker "
    "shades will help important things stand out.",
    "variety": "Your palette is mostly variations of the same color. Adding one different color "
    "as a pop can make your design more interesting.",
    "allDark": "All your colors are dark. Adding a lighter color would create more contrast and "
    "make the palette more versatile.",
    "allLight": "All your colors are light. Adding a darker color would give you better options "
    "for text and headings.",
}
REPEATABLE_ROLES = frozenset(("Accent", "Cool Accent", "Warm Accent", "Muted", "Subtle",
                              "Secondary", "Background", "Dark Accent"))

# The fix search runs detection up to 180 times per look-alike pair; the colour arithmetic is
# pure, so caching it changes nothing.
hsl_of = functools.lru_cache(maxsize=None)(colorref.hex_to_hsl)
luminance_of = functools.lru_cache(maxsize=None)(colorref.relative_luminance)
rgb_of = functools.lru_cache(maxsize=None)(colorref.hex_to_rgb)


@functools.lru_cache(maxsize=None)
def simulated_rgb(hex_code, vision):
    return colorref.hex_to_rgb(colorref.simulated(hex_code, vision))


def euclidean(first, second):
    return math.sqrt(sum((a - b) * (a - b) for a, b in zip(first, second)))


def manhattan(first, second):
    return sum(abs(a - b) for a, b in zip(first, second))


def unique_name(wanted, existing):
    taken = {name.strip(" \t").lower() for name in existing}
    base = wanted.strip(" \t") or "Color"
    if base.lower() not in taken:
        return base
    n = 2
    while ("%s %d" % (base, n)).lower() in taken:
        n += 1
    return "%s %d" % (base, n)


def colours_of_codes(codes):
    """A new palette, each colour with a unique automatic name among the names before it."""
    colours = []
    for index, code in enumerate(codes):
        name = unique_name(colorref.color_name(code), [c["name"] for c in colours])
        colours.append({"id": index, "name": name, "hex": code})
    return colours


def lightness(colour):
    return hsl_of(colour["hex"])[2]


def best_ratio_on(colour, lights):
    return max(colorref.contrast_ratio(luminance_of(colour["hex"]), luminance_of(light["hex"]))
               for light in lights)


def close_pairs(points, distance, threshold):
    return [(i, j) for i in range(len(points)) for j in range(i + 1, len(points))
            if distance(points[i], points[j]) < threshold]


def make_issue(issue_id, kind, colour, other, text, level=None, vision=None, can_fix=False):
    return {"id": issue_id, "kind": kind, "level": level, "vision": vision, "color": colour,
            "other": other, "canFix": can_fix, "text": text, "move": None}


def pair_issue(prefix, kind, first, second, text, vision=None):
    return make_issue("%s-%s-%s" % (prefix, first["id"], second["id"]), kind, first, second,
                      first["name"] + " and " + second["name"] + text, vision=vision)


def detect(colours):
    issues, pairs = [], set()
    lights = [c for c in colours if lightness(c) >= 0.6]
    if lights:
        lightest = max(lights, key=lightness)  # the first of the lightest
        for dark in (c for c in colours if lightness(c) < 0.4):
            ratio = best_ratio_on(dark, lights)
            if ratio < HEADING_RATIO:
                level, text = colorref.POOR, " is hard to read on "
            elif ratio < READABLE_RATIO:
                level, text = colorref.LOW_CONTRAST, " only works for headings on "
            else:
                continue
            issues.append(make_issue("read-%s" % dark["id"], "readability", dark, lightest,
                                     dark["name"] + text + lightest["name"] + ".", level=level,
                                     can_fix=True))
    for i, j in close_pairs([rgb_of(c["hex"]) for c in colours], manhattan,
                            NEAR_DUPLICATE_LIMIT):
        pairs.add((i, j))
        issues.append(pair_issue("dupe", "nearDuplicate", colours[i], colours[j],
                                 " are almost the same color."))
    for vision in CHECK_VISION_ORDER:
        simulated = [simulated_rgb(c["hex"], vision) for c in colours]
        for i, j in close_pairs(simulated, euclidean, LOOK_ALIKE_LIMIT):
            a, b = hsl_of(colours[i]["hex"]), hsl_of(colours[j]["hex"])
            if (i, j) in pairs or (a[2] >= 0.6 and b[2] >= 0.6) or (a[2] < 0.2 and b[2] < 0.2) \
                    or (a[1] < 0.1 and b[1] < 0.1):
                continue
            pairs.add((i, j))
            # The hyphen is U+2011 NON-BREAKING HYPHEN: the words must not break at a line end.
            words = "blue\u2011yellow" if vision == "tritanopia" else "red\u2011green"
            issues.append(pair_issue("look", "lookAlike", colours[i], colours[j],
                                     " look the same to %s vision." % words, vision))
    return issues


def mid_tone_notes(colours):
    lights = [c for c in colours if lightness(c) >= 0.6]
    notes = []
    for mid in (c for c in colours if lights and 0.4 <= lightness(c) < 0.6):
        ratio = best_ratio_on(mid, lights)
        if ratio < HEADING_RATIO:
            # U+2019 RIGHT SINGLE QUOTATION MARK, the typographic apostrophe.
            notes.append(mid["name"] + " won\u2019t carry even a heading on your light colors. "
                         "Keep it for fills and lines.")
        elif ratio < READABLE_RATIO:
            notes.append(mid["name"] + " works for headings on your light colors, not body text.")
    return notes


def simulated_distance(first_hex, second_hex):
    return min(euclidean(simulated_rgb(first_hex, vision), simulated_rgb(second_hex, vision))
               for vision in CHECK_VISION_ORDER)


def with_hex(colours, colour_id, hex_code):
    return [dict(c, hex=hex_code) if c["id"] == colour_id else c for c in colours]


def find_lightness_move(issue, colours, issues):
    known = {known_issue["id"] for known_issue in issues}
    pair = (issue["color"], issue["other"])
    best, best_steps = None, None
    for place, moved in enumerate(pair):
        h, s, l = hsl_of(moved["hex"])
        for direction in (-1.0, 1.0):
            for n in range(1, 46):
                target = l + direction * n * 0.01
                if not 0.03 < target < 0.97:
                    break
                candidate = colorref.hsl_to_hex(h, s, target)
                if simulated_distance(candidate, pair[1 - place]["hex"]) < SETTLED_SEPARATION:
                    continue
                after = detect(with_hex(colours, moved["id"], candidate))
                if any(new_issue["id"] not in known for new_issue in after):
                    continue
                # The size of a change is its number of 1% steps: as doubles, two changes of
                # five steps can differ in the last bit, and the earlier must keep the tie.
                if best is None or n < best_steps:
                    best_steps = n
                    best = {"colorID": moved["id"], "fromHex": moved["hex"], "toHex": candidate,
                            "lightnessChange": target - l}
                break
    return best


def hue_distance(a, b):
    d = math.fmod(abs(a - b), 360.0)
    return 360.0 - d if d > 180.0 else d


def hue_clusters(hues):
    taken = [False] * len(hues)
    centres = []
    for i, opening in enumerate(hues):
        if taken[i]:
            continue
        members = [opening]
        for j in range(i + 1, len(hues)):
            if not taken[j] and hue_distance(opening, hues[j]) <= 30.0:
                taken[j] = True
                members.append(hues[j])
        total = 0.0  # deliberately the arithmetic mean, not a circular one
        for hue in members:
            total += hue
        centres.append(total / len(members))
    return centres


def scheme_key(hues, spread):
    if spread <= 30.0:
        return "monochromatic"
    if spread <= 60.0:
        return "analogous"
    if len(hues) == 2:
        d = hue_distance(hues[0], hues[1])
        return "complementary" if 150.0 <= d <= 210.0 else "split" if 60.0 <= d <= 150.0 else \
            "none"
    centres = hue_clusters(hues)
    if len(centres) == 2:
        d = hue_distance(centres[0], centres[1])
        return "complementary" if 140.0 <= d <= 220.0 else "split" if d >= 60.0 else "none"
    if len(centres) == 3:
        distances = (hue_distance(centres[0], centres[1]), hue_distance(centres[0], centres[2]),
                     hue_distance(centres[1], centres[2]))
        return "triadic" if all(90.0 <= d <= 150.0 for d in distances) else "none"
    return "none"


def analyze_harmony(colours):
    every = [hsl_of(c["hex"]) for c in colours]
    chromatic = [hsl for hsl in every if hsl[1] > 0.1]
    if len(every) < 2 or len(chromatic) < 2:
        return "none" if len(every) < 2 else "neutral", []
    hues = [hsl[0] for hsl in chromatic]
    spread = max(hue_distance(a, b) for i, a in enumerate(hues) for b in hues[i + 1:])
    key = scheme_key(hues, spread)
    saturations = [hsl[1] for hsl in chromatic]
    lightnesses = [hsl[2] for hsl in chromatic]
    all_dark = all(hsl[2] < 0.4 for hsl in every)
    all_light = all(hsl[2] > 0.6 for hsl in every)
    several = len(chromatic) != 2
    notes = [note for note, applies in (
        ("noConnection", key == "none" and spread > 90.0),
        ("energy", several and max(saturations) - min(saturations) > 0.5
         and any(s > 0.6 for s in saturations) and any(s < 0.3 for s in saturations)),
        ("brightness", several and max(lightnesses) - min(lightnesses) < 0.2
         and len(chromatic) == len(colours) and not all_dark and not all_light),
        ("variety", key == "monochromatic" and len(chromatic) >= 4),
        ("allDark", all_dark), ("allLight", all_light and not all_dark)) if applies]
    return key, [{"type": note, "message": HARMONY_MESSAGES[note]} for note in notes]


def role_list(h, s, l):
    if l < 0.15:
        return ("Text Dark", "Heading", "Dark Base")
    if l > 0.85:
        return ("Background", "Canvas", "Light Base")
    if 0.25 < l < 0.65 and s > 0.5:
        return ("Primary", "Accent", "Highlight", "Secondary")
    if s > 0.3:
        return ("Warm Accent", "Highlight", "Accent") if h >= 300 or 0 <= h <= 60 else \
            ("Cool Accent", "Accent", "Secondary")
    if s < 0.25:
        return ("Muted", "Dark Accent", "Subtle") if l < 0.5 else ("Subtle", "Secondary", "Muted")
    return ("Secondary", "Dark Accent", "Muted")


def roles(colours):
    taken, result = set(), []
    for index, colour in enumerate(colours):
        choices = role_list(*hsl_of(colour["hex"]))
        role = next((r for r in choices if r not in taken), None)
        if role is None:
            base = next((r for r in choices if r in REPEATABLE_ROLES), choices[0])
            n = 2
            while "%s %d" % (base, n) in taken:
                n += 1
            role = "%s %d" % (base, n)
        taken.add(role)
        result.append({"color": index, "role": role})
    return result


def fixed_hex(issue, colours):
    """What applying the issue's fix writes, where it changes a colour."""
    if issue["kind"] == "readability":
        target = colorref.adjusted_for_contrast(issue["color"]["hex"], issue["other"]["hex"],
                                                READABLE_RATIO)
        colour_id = issue["color"]["id"]
    elif issue["move"] is not None:
        target, colour_id = issue["move"]["toHex"], issue["move"]["colorID"]
    else:
        return None
    return None if target == colours[colour_id]["hex"] else target


def issue_json(issue, colours):
    entry = {"id": issue["id"], "kind": issue["kind"], "color": issue["color"]["id"],
             "other": issue["other"]["id"], "canFix": issue["canFix"], "text": issue["text"],
             "fixedHex": None if issue["kind"] == "nearDuplicate" else fixed_hex(issue, colours)}
    if issue["kind"] == "readability":
        entry["level"] = issue["level"]
    if issue["kind"] == "lookAlike":
        entry["vision"] = issue["vision"]
    move = issue["move"]
    entry["move"] = None if move is None else {
        "color": move["colorID"], "fromHex": move["fromHex"], "toHex": move["toHex"],
        "lightnessChange": move["lightnessChange"]}
    return entry


def check_command(arguments):
    """JSON of `check --colors ARGS... --json` less "name", or None for a bad argument."""
    codes = [colorref.parse_color_code(argument) for argument in arguments]
    if None in codes:
        return None
    colours = colours_of_codes(codes)
    scheme, notes = analyze_harmony(colours)
    issues = detect(colours)
    for issue in issues:
        if issue["kind"] == "lookAlike":
            issue["move"] = find_lightness_move(issue, colours, issues)
            issue["canFix"] = issue["move"] is not None
    return {
        "colors": [{"name": c["name"], "hex": c["hex"], "isLocked": False} for c in colours],
        "summary": {0: "Nothing to fix", 1: "1 thing to fix"}.get(
            len(issues), "%d things to fix" % len(issues)),
        "issues": [issue_json(issue, colours) for issue in issues],
        "midToneNotes": mid_tone_notes(colours),
        "scheme": scheme,
        "schemeName": SCHEME_DISPLAY_NAMES.get(scheme),
        "harmonyNotes": notes,
        "roles": roles(colours),
    }
