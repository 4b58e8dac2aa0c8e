"""Reference model of HueShelf's palette check, written apart from the C++ sources.

check_differential.py holds `hueshelf check --colors CODE... --json` against it. It builds on the
colour arithmetic of colorref.py and, like it, keeps the program's order of floating-point
operations wherever a double reaches the output (the lightness change of a move), so that
results compare bit for bit.

A colour here is a dict with "id", "name", "hex" and "isLocked". Ids only have to be unique and
printable: the model gives a palette's colours their index as id, so an issue id comes out as
"read-3" or "look-1-4"; the binary's ids hold random UUIDs in those places.
"""

import functools
import math
import sys

import colorref

# Simulation order of the look-alike pass and of the separation measure of a move.
CHECK_VISION_ORDER = ("deuteranopia", "protanopia", "tritanopia")

# The hyphen in these is U+2011 NON-BREAKING HYPHEN: the words must not break at a line end.
RED_GREEN_VISION = "red\u2011green vision"
BLUE_YELLOW_VISION = "blue\u2011yellow vision"

LOOK_ALIKE_LIMIT = 30.0
SETTLED_SEPARATION = 60.0
NEAR_DUPLICATE_LIMIT = 15
READABLE_RATIO = 4.5
HEADING_RATIO = 3.0

SCHEME_DISPLAY_NAMES = {
    "monochromatic": "Monochromatic palette",
    "analogous": "Analogous palette",
    "complementary": "Complementary palette",
    "triadic": "Triadic palette",
    "split": "Split-complementary palette",
    "neutral": "Mostly neutral palette",
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

ROLE_LISTS = {
    "dark": ("Text Dark", "Heading", "Dark Base"),
    "light": ("Background", "Canvas", "Light Base"),
    "vivid": ("Primary", "Accent", "Highlight", "Secondary"),
    "warm": ("Warm Accent", "Highlight", "Accent"),
    "cool": ("Cool Accent", "Accent", "Secondary"),
    "mutedDark": ("Muted", "Dark Accent", "Subtle"),
    "mutedLight": ("Subtle", "Secondary", "Muted"),
    "mid": ("Secondary", "Dark Accent", "Muted"),
}
REPEATABLE_ROLES = frozenset(("Accent", "Cool Accent", "Warm Accent", "Muted", "Subtle",
                              "Secondary", "Background", "Dark Accent"))


# --- cached colour arithmetic -------------------------------------------------------------------
# The fix search runs detection up to 180 times per look-alike pair; every colour of a palette is
# simulated and parsed again each time. The functions are pure, so caching changes nothing.


@functools.lru_cache(maxsize=None)
def hsl_of(hex_code):
    return colorref.hex_to_hsl(hex_code)


@functools.lru_cache(maxsize=None)
def luminance_of(hex_code):
    return colorref.relative_luminance(hex_code)


@functools.lru_cache(maxsize=None)
def rgb_of(hex_code):
    return colorref.hex_to_rgb(hex_code)


@functools.lru_cache(maxsize=None)
def simulated_rgb(hex_code, vision):
    """Bytes of the simulated colour, or None when the simulated text can't be read."""
    return colorref.hex_to_rgb(colorref.simulated(hex_code, vision))


def euclidean(first, second):
    return math.sqrt(sum((a - b) * (a - b) for a, b in zip(first, second)))


# --- names --------------------------------------------------------------------------------------

BLANKS = " \t"


def unique_name(wanted, existing):
    taken = {name.strip(BLANKS).lower() for name in existing}
    base = wanted.strip(BLANKS)
    if not base:
        base = "Color"
    if base.lower() not in taken:
        return base
    n = 2
    while True:
        candidate = "%s %d" % (base, n)
        if candidate.lower() not in taken:
            return candidate
        n += 1


def colours_of_codes(codes):
    """The colours of a new palette made from canonical codes: each named with the unique
    automatic name among the names before it."""
    colours = []
    for index, code in enumerate(codes):
        name = unique_name(colorref.color_name(code), [c["name"] for c in colours])
        colours.append({"id": index, "name": name, "hex": code, "isLocked": False})
    return colours


# --- bands --------------------------------------------------------------------------------------


def lightness(colour):
    hsl = hsl_of(colour["hex"])
    return None if hsl is None else hsl[2]


def light_colors(colours):
    return [c for c in colours if lightness(c) is not None and lightness(c) >= 0.6]


def dark_colors(colours):
    return [c for c in colours if lightness(c) is None or lightness(c) < 0.4]


def mid_tone_colors(colours):
    return [c for c in colours if lightness(c) is not None and 0.4 <= lightness(c) < 0.6]


def lightest_color(colours):
    best = None
    for colour in light_colors(colours):
        if best is None or lightness(colour) > lightness(best):
            best = colour
    return best


def ratio_between(first, second):
    a = luminance_of(first["hex"])
    b = luminance_of(second["hex"])
    if a is None or b is None:
        return 1.0
    return colorref.contrast_ratio(a, b)


def best_ratio_on(colour, lights):
    return max(ratio_between(colour, light) for light in lights)


# --- detection ----------------------------------------------------------------------------------


def vision_words(vision):
    return BLUE_YELLOW_VISION if vision == "tritanopia" else RED_GREEN_VISION


def make_issue(issue_id, kind, colour, other, can_fix, text, level=None, vision=None):
    return {"id": issue_id, "kind": kind, "level": level, "vision": vision, "color": colour,
            "other": other, "canFix": can_fix, "text": text, "move": None}


def similar_pairs(colours, threshold):
    pairs = []
    for i in range(len(colours)):
        for j in range(i + 1, len(colours)):
            a, b = rgb_of(colours[i]["hex"]), rgb_of(colours[j]["hex"])
            if a is None or b is None:
                continue
            if sum(abs(x - y) for x, y in zip(a, b)) < threshold:
                pairs.append((i, j))
    return pairs


def look_alike_pairs(colours, vision, threshold):
    if len(colours) < 2:
        return []
    simulated = [simulated_rgb(c["hex"], vision) for c in colours]
    pairs = []
    for i in range(len(colours)):
        for j in range(i + 1, len(colours)):
            if simulated[i] is None or simulated[j] is None:
                continue
            if euclidean(simulated[i], simulated[j]) < threshold:
                pairs.append((i, j))
    return pairs


def detect(colours):
    issues = []
    keys = set()

    lights = light_colors(colours)
    if lights:
        lightest = lightest_color(colours)
        for dark in dark_colors(colours):
            ratio = best_ratio_on(dark, lights)
            if ratio >= READABLE_RATIO:
                continue
            if ratio >= HEADING_RATIO:
                level = colorref.LOW_CONTRAST
                text = dark["name"] + " only works for headings on " + lightest["name"] + "."
            else:
                level = colorref.POOR
                text = dark["name"] + " is hard to read on " + lightest["name"] + "."
            issues.append(make_issue("read-%s" % dark["id"], "readability", dark, lightest,
                                     not dark["isLocked"], text, level=level))

    for i, j in similar_pairs(colours, NEAR_DUPLICATE_LIMIT):
        first, second = colours[i], colours[j]
        key = "%s-%s" % (first["id"], second["id"])
        keys.add(key)
        issues.append(make_issue("dupe-" + key, "nearDuplicate", first, second, False,
                                 first["name"] + " and " + second["name"]
                                 + " are almost the same color."))

    for vision in CHECK_VISION_ORDER:
        for i, j in look_alike_pairs(colours, vision, LOOK_ALIKE_LIMIT):
            first, second = colours[i], colours[j]
            key = "%s-%s" % (first["id"], second["id"])
            if key in keys:
                continue
            a, b = hsl_of(first["hex"]), hsl_of(second["hex"])
            if a is not None and b is not None:
                if a[2] >= 0.6 and b[2] >= 0.6:
                    continue
                if a[2] < 0.2 and b[2] < 0.2:
                    continue
                if a[1] < 0.1 and b[1] < 0.1:
                    continue
            keys.add(key)
            issues.append(make_issue("look-" + key, "lookAlike", first, second, False,
                                     first["name"] + " and " + second["name"]
                                     + " look the same to " + vision_words(vision) + ".",
                                     vision=vision))
    return issues


def fix_count_text(count):
    if count == 0:
        return "Nothing to fix"
    if count == 1:
        return "1 thing to fix"
    return "%d things to fix" % count


def mid_tone_notes(colours):
    lights = light_colors(colours)
    mids = mid_tone_colors(colours)
    if not lights or not mids:
        return []
    notes = []
    for mid in mids:
        ratio = best_ratio_on(mid, lights)
        if ratio >= READABLE_RATIO:
            continue
        if ratio >= HEADING_RATIO:
            notes.append(mid["name"] + " works for headings on your light colors, not body text.")
        else:
            # U+2019 RIGHT SINGLE QUOTATION MARK, the typographic apostrophe.
            notes.append(mid["name"] + " won\u2019t carry even a heading on your light colors. "
                         "Keep it for fills and lines.")
    return notes


# --- fixes --------------------------------------------------------------------------------------


def simulated_distance(first_hex, second_hex):
    best = sys.float_info.max
    for vision in CHECK_VISION_ORDER:
        a, b = simulated_rgb(first_hex, vision), simulated_rgb(second_hex, vision)
        distance = sys.float_info.max if a is None or b is None else euclidean(a, b)
        best = min(best, distance)
    return best


def with_hex(colours, colour_id, hex_code):
    return [dict(c, hex=hex_code) if c["id"] == colour_id else c for c in colours]


def find_lightness_move(issue, colours, issues):
    if issue["kind"] != "lookAlike":
        return None
    known = {known_issue["id"] for known_issue in issues}
    pair = (issue["color"], issue["other"])
    best, best_steps = None, None
    for place, moved in enumerate(pair):
        hsl = hsl_of(moved["hex"])
        if moved["isLocked"] or hsl is None:
            continue
        h, s, l = hsl
        partner = pair[1 - place]
        for direction in (-1.0, 1.0):
            for n in range(1, 46):
                target = l + direction * n * 0.01
                if not 0.03 < target < 0.97:
                    break
                candidate = colorref.hsl_to_hex(h, s, target)
                if simulated_distance(candidate, partner["hex"]) < SETTLED_SEPARATION:
                    continue
                after = detect(with_hex(colours, moved["id"], candidate))
                if any(new_issue["id"] not in known for new_issue in after):
                    continue
                move = {"colorID": moved["id"], "name": moved["name"], "fromHex": moved["hex"],
                        "toHex": candidate, "lightnessChange": target - l}
                # The size of a change is its number of 1% steps. Compared as the doubles
                # l + 0.05 - l and l - 0.05 - l, two changes of five steps can differ in the
                # last bit, and the earlier candidate would lose a tie it is meant to keep.
                if best is None or n < best_steps:
                    best, best_steps = move, n
                break
    return best


def issues_with_moves(colours):
    issues = detect(colours)
    settled = []
    for issue in issues:
        if issue["kind"] == "lookAlike":
            move = find_lightness_move(issue, colours, issues)
            issue = dict(issue, move=move, canFix=move is not None)
        settled.append(issue)
    return settled


def fix_target(issue, colours):
    """(colour id, new hex) that applying the issue's fix writes, or None when it changes no
    colour."""
    if not issue["canFix"]:
        return None
    if issue["kind"] == "readability":
        target = colorref.adjusted_for_contrast(issue["color"]["hex"], issue["other"]["hex"],
                                                READABLE_RATIO)
        colour_id = issue["color"]["id"]
    elif issue["kind"] == "lookAlike":
        if issue["move"] is None:
            return None
        target = issue["move"]["toHex"]
        colour_id = issue["move"]["colorID"]
    else:
        return None
    if target is None:
        return None
    current = next((c for c in colours if c["id"] == colour_id), None)
    if current is None or current["isLocked"]:
        return None
    return colour_id, target


def apply_fix(issue, colours):
    target = fix_target(issue, colours)
    if target is None:
        return list(colours)
    return with_hex(colours, *target)


def move_text(move):
    change = move["lightnessChange"]
    return "%s is %d%% %s, same hue." % (move["name"], colorref.round_half_away(abs(change) * 100),
                                         "darker" if change < 0 else "lighter")


# --- colour theory ------------------------------------------------------------------------------


def hue_distance(a, b):
    d = math.fmod(abs(a - b), 360.0)
    return 360.0 - d if d > 180.0 else d


def hue_clusters(hues):
    taken = [False] * len(hues)
    centres = []
    for i, opening in enumerate(hues):
        if taken[i]:
            continue
        taken[i] = True
        members = [opening]
        for j in range(i + 1, len(hues)):
            if not taken[j] and hue_distance(opening, hues[j]) <= 30.0:
                taken[j] = True
                members.append(hues[j])
        # Deliberately the arithmetic mean, not a circular one.
        total = 0.0
        for hue in members:
            total += hue
        centres.append(total / len(members))
    return centres


def analyze_harmony(colours):
    every = [hsl for hsl in (hsl_of(c["hex"]) for c in colours) if hsl is not None]
    if len(every) < 2:
        return "none", []
    chromatic = [hsl for hsl in every if hsl[1] > 0.1]
    if len(chromatic) < 2:
        return "neutral", []
    hues = [hsl[0] for hsl in chromatic]
    spread = 0.0
    for i in range(len(hues)):
        for j in range(i + 1, len(hues)):
            spread = max(spread, hue_distance(hues[i], hues[j]))

    if spread <= 30.0:
        key = "monochromatic"
    elif spread <= 60.0:
        key = "analogous"
    elif len(chromatic) == 2:
        d = hue_distance(hues[0], hues[1])
        if 150.0 <= d <= 210.0:
            key = "complementary"
        elif 60.0 <= d <= 150.0:
            key = "split"
        else:
            key = "none"
    else:
        centres = hue_clusters(hues)
        if len(centres) == 2:
            d = hue_distance(centres[0], centres[1])
            if 140.0 <= d <= 220.0:
                key = "complementary"
            elif d >= 60.0:
                key = "split"
            else:
                key = "none"
        elif len(centres) == 3:
            distances = (hue_distance(centres[0], centres[1]),
                         hue_distance(centres[0], centres[2]),
                         hue_distance(centres[1], centres[2]))
            key = "triadic" if all(90.0 <= d <= 150.0 for d in distances) else "none"
        else:
            key = "none"

    saturations = [hsl[1] for hsl in chromatic]
    lightnesses = [hsl[2] for hsl in chromatic]
    all_dark = all(hsl[2] < 0.4 for hsl in every)
    all_light = all(hsl[2] > 0.6 for hsl in every)
    notes = []
    if key == "none" and spread > 90.0:
        notes.append("noConnection")
    if (max(saturations) - min(saturations) > 0.5 and len(chromatic) != 2
            and any(s > 0.6 for s in saturations) and any(s < 0.3 for s in saturations)):
        notes.append("energy")
    if (max(lightnesses) - min(lightnesses) < 0.2 and len(chromatic) != 2
            and len(chromatic) == len(colours) and not all_dark and not all_light):
        notes.append("brightness")
    if key == "monochromatic" and len(chromatic) >= 4:
        notes.append("variety")
    if all_dark:
        notes.append("allDark")
    elif all_light:
        notes.append("allLight")
    return key, [{"type": note, "message": HARMONY_MESSAGES[note]} for note in notes]


def role_list(h, s, l):
    if l < 0.15:
        return ROLE_LISTS["dark"]
    if l > 0.85:
        return ROLE_LISTS["light"]
    if 0.25 < l < 0.65 and s > 0.5:
        return ROLE_LISTS["vivid"]
    if s > 0.3:
        return ROLE_LISTS["warm"] if h >= 300 or 0 <= h <= 60 else ROLE_LISTS["cool"]
    if s < 0.25:
        return ROLE_LISTS["mutedDark"] if l < 0.5 else ROLE_LISTS["mutedLight"]
    return ROLE_LISTS["mid"]


def role_suggestions(colours):
    taken = set()
    suggestions = []
    for colour in colours:
        hsl = hsl_of(colour["hex"])
        if hsl is None:
            continue
        roles = role_list(*hsl)
        role = next((r for r in roles if r not in taken), None)
        if role is None:
            base = next((r for r in roles if r in REPEATABLE_ROLES), roles[0])
            n = 2
            while "%s %d" % (base, n) in taken:
                n += 1
            role = "%s %d" % (base, n)
        taken.add(role)
        suggestions.append({"colorId": colour["id"], "colorName": colour["name"],
                            "colorHex": colour["hex"], "suggestions": [role]})
    return suggestions


# --- the command --------------------------------------------------------------------------------


def issue_json(issue, colours):
    index = {c["id"]: i for i, c in enumerate(colours)}
    entry = {"id": issue["id"], "kind": issue["kind"]}
    if issue["kind"] == "readability":
        entry["level"] = issue["level"]
    if issue["kind"] == "lookAlike":
        entry["vision"] = issue["vision"]
    entry["color"] = index[issue["color"]["id"]]
    entry["other"] = index[issue["other"]["id"]]
    entry["canFix"] = issue["canFix"]
    entry["text"] = issue["text"]
    move = issue["move"]
    entry["move"] = None if move is None else {
        "color": index[move["colorID"]],
        "fromHex": move["fromHex"],
        "toHex": move["toHex"],
        "lightnessChange": move["lightnessChange"],
    }
    target = fix_target(issue, colours)
    changed = None
    if target is not None:
        before = next(c["hex"] for c in colours if c["id"] == target[0])
        if target[1] != before:
            changed = target[1]
    entry["fixedHex"] = changed
    return entry


def check_colours(colours):
    """The JSON value of the check of a palette's colours, without the palette's name."""
    issues = issues_with_moves(colours)
    scheme, notes = analyze_harmony(colours)
    index = {c["id"]: i for i, c in enumerate(colours)}
    return {
        "colors": [{"name": c["name"], "hex": c["hex"], "isLocked": c["isLocked"]}
                   for c in colours],
        "summary": fix_count_text(len(issues)),
        "issues": [issue_json(issue, colours) for issue in issues],
        "midToneNotes": mid_tone_notes(colours),
        "scheme": scheme,
        "schemeName": SCHEME_DISPLAY_NAMES.get(scheme),
        "harmonyNotes": notes,
        "roles": [{"color": index[s["colorId"]], "role": s["suggestions"][0]}
                  for s in role_suggestions(colours)],
    }


def check_command(arguments):
    """(JSON value without "name", or None when an argument isn't a colour) of
    `hueshelf check --colors ARGS... --json`."""
    codes = [colorref.parse_color_code(argument) for argument in arguments]
    if any(code is None for code in codes):
        return None
    return check_colours(colours_of_codes(codes))
