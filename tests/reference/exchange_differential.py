#!/usr/bin/env python3
"""Differential test: palette links and palette files of `hueshelf` against exchangeref.py.

On random but repeatable inputs (fixed seed): `link --decode TEXT --json` of encoded palettes (of
many scripts, at and around each limit) and of mangled links; `link PALETTE` and `export PALETTE
[-o FILE]` of palettes stored in private homes; `import` of palette files (keys in any order,
short codes, dividers, bad entries, damaged files, 200 and 201 entries, 1 MB and a byte more) and
links, with `show --json` of the new record and its content hash, and the whole list at the end.
"""

import datetime
import json
import os
import random
import re
import sys

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import exchangeref as ref  # noqa: E402
import refdriver  # noqa: E402
from refdriver import item, record  # noqa: E402

PALETTES_PER_HOME = 30
FILES_PER_HOME = 25
P = "https://hueshelf.app/p/#1;"
UUID_TEXT = re.compile(r"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$")
ESCAPE = re.compile(r"%[0-9A-F]{2}")

# Atoms are whole user-perceived characters, so names of an exact length can be built from them.
ASCII_ATOMS = list("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789")
SEPARATORS = list(";,:|#%/ ?&=+\"<>\\@$^`[]{}")
LETTERS = list("éüßñÅøçÆαβγΩжЯשب日本色한글ŁőĦ") + ["٣", "Ⅻ", "½", "𝐀", "𝒜", "𠀀"]
MARKED = ["e\u0301", "a\u0308\u0301", "c\u0327", "o\u0303\u0304\u0306", "x" + "\u0301" * 9,
          "\u1100\u1161\u11a8", "\r\n"]
EMOJI = ["🎨", "👍🏽", "👨\u200d👩\u200d👧", "🇫🇷", "❤\ufe0f", "1\ufe0f\u20e3",
         "🏳\ufe0f\u200d🌈", "✨", "🟦"]
SYMBOLS = ["€", "©", "✓", "→", "\u00a0", "\u3000", "\t", "\n", "\u200b", "¿"]
STYLES = {"ascii": (ASCII_ATOMS,), "emoji": (EMOJI,), "raw": (LETTERS, MARKED, ASCII_ATOMS),
          "mixed": (ASCII_ATOMS, ASCII_ATOMS, LETTERS, MARKED, EMOJI, SEPARATORS,
                    list("-_.!~*'()")),
          "escapes": (SEPARATORS, EMOJI, SYMBOLS, ASCII_ATOMS)}
BAD_LINK_CODES = ("#FFF", "GG0000", "#1234567", "", "##FF0000", "FF 000", "ＦＦ0000", "%23FF0000",
                  "0xFF00", "FF0000#", " #AABBCC", "rgb(1, 2, 3)")


def atom(rng, style):
    return rng.choice(rng.choice(STYLES[style]))


def text_of_length(rng, count, style=None):
    """A text of exactly `count` user-perceived characters."""
    style = style or rng.choice(("ascii", "mixed", "mixed", "escapes", "raw", "emoji"))
    text = "".join([atom(rng, style) for _ in range(count)])
    if ref.length(text) != count:
        # Neighbours that fuse (two flags, say) would change the count; plain letters won't.
        text = "".join(rng.choice(ASCII_ATOMS) for _ in range(count))
    return text


def name_length(rng, limit):
    return rng.choice((1, 1, 2, 3, 5, 8, 12, rng.randint(1, limit), limit - 1, limit, limit,
                       limit + 1))


def random_six(rng):
    return "%06X" % rng.randrange(1 << 24)


def link_code(rng):
    if rng.random() < 0.04:
        return rng.choice(BAD_LINK_CODES)
    return "#" * (rng.random() < 0.7) + refdriver.random_case(rng, random_six(rng))


def random_link_palette(rng, count=None, name_limit=60, color_limit=40):
    roll = rng.random()
    if count is None:
        count = 0 if roll < 0.03 else rng.choice((39, 40, 41, 41)) if roll < 0.1 else \
            rng.choice((1, 1, 2, 3, 4, 5, 6, 8, 10, 12, rng.randint(1, 20)))
    name = "" if rng.random() < 0.03 else text_of_length(rng, name_length(rng, name_limit))
    colors = []
    for _ in range(count):
        # Long lists only stay under the length limit with short plain names.
        short = count >= 39 and rng.random() < 0.9
        color_name = "" if rng.random() < 0.01 else text_of_length(
            rng, rng.randint(1, 6) if short else name_length(rng, color_limit),
            "ascii" if short else None)
        divider = rng.random() < 0.25
        # A label without a divider is still checked, but isn't written (nor exported).
        label = text_of_length(rng, name_length(rng, color_limit)) \
            if rng.random() < (0.6 if divider else 0.15) and not short else ""
        colors.append(ref.link_color(color_name, link_code(rng), divider, label))
    return name, colors


def check_decode(binary, env, label, text, round_trip):
    """`round_trip` is the palette an accepted encoding was made of, or None."""
    expected, case = ref.decode_case(text)
    # The one palette the format can't carry back: a colour name that begins with "|" behind no
    # divider is written "%7C...", which the repair of escaped pipes reads as a divider.
    if round_trip is not None and expected != round_trip and not any(
            not c["dividerBefore"] and c["name"].startswith("|") for c in round_trip["colors"]):
        return [(label, [("the model's round trip", round_trip, expected or case)])]
    result = refdriver.run(binary, ["link", "--decode", text, "--json"], env)
    if case is None:
        return [(label, refdriver.json_output(result)
                 or refdriver.compare(expected, result.parsed))]
    mismatches = refdriver.one_line_failure(result)
    if result.stderr.split(":", 1)[0] != case:
        mismatches.append(("error case", case, result.stderr.rstrip("\n")))
    return [(label, mismatches)]


def base_link(rng):
    """A link the model accepts, with dividers and escapes in it."""
    while True:
        name, colors = random_link_palette(rng, rng.randint(1, 8), 15, 12)
        try:
            return ref.encode(name, colors)
        except ref.LinkError:
            continue


def mangle(rng, text):
    """One kind of damage; returns (what was done, text)."""
    start = text.find("#") + 1
    head, payload = text[:start], text[start:]
    fields = payload.split(";")
    cf = fields[2].split(",")  # the colour fields
    i, at = rng.randrange(len(cf)), rng.randint(0, len(text))
    rebuilt = lambda name=fields[1], version=fields[0]: head + ";".join(  # noqa: E731
        [version, name, ",".join(cf)])
    kind = rng.randrange(18)
    if kind == 0:
        return "cut short or an extra ;", text[:at] + ";" * (rng.random() < 0.5) + text[at:] * (
            rng.random() < 0.5)
    if kind == 1:
        # An escaped pipe at the head of a field repairs every pipe in it; behind the head it
        # stays part of a label or name.
        dividers = [i for i, f in enumerate(cf) if f.startswith("|")]
        roll = rng.random()
        if dividers and roll < 0.5:
            i = rng.choice(dividers)
            cf[i] = "".join(rng.choice(("%7c", "%7C")) if ch == "|" else ch for ch in cf[i])
        elif roll < 0.75:
            cf[i] = rng.choice(("%7c", "%7C", "%7C%7C", "%7cLab%7C")) + cf[i]
        else:
            cut = rng.randint(1, max(1, cf[i].find(":")))
            cf[i] = cf[i][:cut] + rng.choice(("%7C", "%7c")) + cf[i][cut:]
        return "escaped pipes", rebuilt()
    if kind == 2:
        escapes = list(ESCAPE.finditer(text))
        broken = rng.choice(("%", "%4", "%G1", "%%", "%4g", "%ZZ", "%C3", "%ED%A0%80", "%C0%80",
                             "%FF", "%E2%82"))
        m = rng.choice(escapes) if escapes and rng.random() < 0.7 else None
        at = max(at, start)
        return "broken escape", text[:m.start()] + broken + text[m.end():] if m else \
            text[:at] + broken + text[at:]
    if kind in (3, 4):
        cf[i] = cf[i][:-6] + (cf[i][-6:].lower() if kind == 3 else rng.choice(BAD_LINK_CODES))
        return "lower-case escapes and odd code", ESCAPE.sub(
            lambda m: m.group(0).lower(), rebuilt())
    if kind in (5, 6):
        version = rng.choice(("2", "01", " 1", "1.0", "", "v1", "١", "1 "))
        return "version %r" % version, rebuilt(version=version) + rng.choice(
            ("", ";", ";x", ";;"))
    if kind in (7, 8):  # raw emoji, marks and separators where the encoder would escape
        return "raw name", rebuilt(text_of_length(rng, rng.randint(1, 8), rng.choice(
            ("emoji", "raw"))) if rng.random() < 0.6 else rng.choice(
            ("a,b", "a:b", "a|b", "a#b", "a b", "%3B", "a%2Cb", "é", "e\u0301")))
    if kind == 9:
        return "elsewhere", rng.choice((
            "hueshelf://import#" + payload, payload, text.replace("/p/#", "/p/?v=2#"),
            text.replace("https://hueshelf.app", "HTTPS://HueShelf.App")))
    if kind == 10:
        cf[i] = rng.choice((
            "", ":", "|", "||", "|:", "%7C", "a:b:FF0000", "||Sky:87CEEB", "|Sky:87CEEB",
            "Sky:87CEEB|", "|a|b|Name:FF0000", "Na|me:FF0000", "|%20|Sky:87CEEB", "|%|Sky:87CEEB",
            ":FF0000", "|%7Cb|Name:FF0000", "%7C:FF0000", "|:FF0000", "%00:FF0000", "|Lab|:FF0000"))
        return "hand field", rebuilt() + rng.choice(("", "", ",", ",,", ",:", ", "))
    if kind in (11, 12):  # blanks around, or more "#" before the payload: the first counts
        return "around", rng.choice((" ", "\n", "\t", "a#b", "##", "#x#", P[:-2])) + text + \
            rng.choice((" ", "\n", ""))
    if kind == 13:
        return "empty fields", rng.choice((
            "", ";", ";;", "#", "#;;", "1;;", "1;x;", ";x;A:FF0000", "#1;x;A:FF0000",
            "1;x;A:FF0000", "1;%;A:FF0000", "1;%20;A:FF0000", "1;x;,", "x", "1", "1;x"))
    # Long clusters at each limit: many code points or code units per user-perceived character,
    # written raw or escaped, in the name, a colour name, a label or before the "#".
    unit = rng.choice(("e\u0301", "\r\n", "𝐀", "🇫🇷", "\u0301", "x",
                       "👨\u200d👩\u200d👧"))
    n = rng.choice((39, 40, 41, 59, 60, 61))
    piece = unit * n if rng.random() < 0.5 else ref.percent_encode(unit * n)
    if kind in (14, 15):
        return "long clusters in the name", rebuilt(piece)
    if kind == 16:
        cf[i] = ("|%s|" % piece if rng.random() < 0.5 else piece) + ":" + cf[i][-6:]
        return "long clusters in a field", rebuilt()
    n = (rng.choice((1999, 2000, 2001)) - 13) // ref.length(unit)
    return "prefix of clusters", unit * n + "#1;X;A:000000"


def padded_link(rng, target, style):
    """A link of exactly `target` characters, or None: 40 colours, half of them behind labelled
    dividers, whose names and labels are filled with atoms of the style, then plain letters."""
    colors = [ref.link_color(rng.choice(ASCII_ATOMS), random_six(rng), divider,
                             rng.choice(ASCII_ATOMS) if divider else "")
              for divider in (rng.random() < 0.5 for _ in range(40))]
    palette = {"name": rng.choice(ASCII_ATOMS)}
    slots = [(palette, "name", 60)] + [(c, "name", 40) for c in colors] + \
        [(c, "dividerLabel", 40) for c in colors if c["dividerBefore"]]
    size = ref.length(ref.assemble(palette["name"], colors))
    for _ in range(3000):
        room = [slot for slot in slots if ref.length(slot[0][slot[1]]) < slot[2]]
        if not room or size == target:
            break
        holder, key, _ = rng.choice(room)
        piece = atom(rng, style) if target - size > 12 else rng.choice(ASCII_ATOMS)
        grows = ref.length(ref.percent_encode(piece))  # an atom adds its escaped form
        if size + grows <= target:
            holder[key] += piece
            size += grows
    text = ref.assemble(palette["name"], colors)
    return text if ref.length(text) == target else None


def link_cases(rng, count):
    """(label, text, the palette of an accepted encoding or None)."""
    cases = []
    for _ in range(count // 2):
        name, colors = random_link_palette(rng)
        try:
            text, refusal = ref.encode(name, colors), None
        except ref.LinkError as error:
            text, refusal = ref.assemble(name, colors), error.case
        # What a decoder must return: codes canonical, a label only where a divider stands.
        written = {"name": name, "colors": [ref.link_color(
            c["name"], ref.normalize_link_hex(c["hex"]), c["dividerBefore"],
            c["dividerLabel"] if c["dividerBefore"] else "") for c in colors]}
        cases.append(("encoded palette (%s)" % (refusal or "accepted"), text,
                      None if refusal else written))
    for _ in range(count - count // 2):
        what, mangled = mangle(rng, base_link(rng))
        cases.append(("mangled: " + what, mangled, None))
    # At the length limit and one past it: letters of one character each, escapes, and raw marks
    # and letters beyond the first plane (many code points or code units per character).
    for style in ("ascii", "escapes", "raw", "raw"):
        for target in (2000, 2001):
            text = padded_link(rng, target, style)
            cases += [("%d characters, %s" % (target, style), text, None),
                      ("%d characters without the scheme" % (target - 21), text[21:], None)] \
                if text else []
    cases += [("fixed", text, None) for text in ["", "#"] + [
        P + "X;" + ",".join(["C:000000"] * n) for n in (40, 41)]]
    # An argument starting with "-" would be read as an option.
    return [case for case in cases if not case[1].startswith("-")]


def stored_palette(rng, number):
    roll = rng.random()
    if roll < 0.03 or number < 4:  # a palette whose link has exactly 2000 or 2001 characters
        text = padded_link(rng, 2000 + number % 2, rng.choice(("ascii", "raw", "escapes")))
        # The payload alone is far below the limit, so it decodes whatever the link's length.
        palette = text and ref.decode_case(text[text.find("#") + 1:])[0]
        if palette:
            return record(rng, palette["name"], [item(
                rng, c["name"], c["hex"], c["dividerBefore"], c["dividerLabel"])
                for c in palette["colors"]], 1700000000000.0 + number)
    name, colors = random_link_palette(rng)
    # A stale label behind no divider must not reach the link, nor the file.
    colours = [item(rng, c["name"], c["hex"], c["dividerBefore"], c["dividerLabel"] if c[
        "dividerBefore"] or rng.random() < 0.5 else text_of_length(rng, name_length(rng, 40)),
        rng.random() < 0.4, rng.random() < 0.2) for c in colors]
    # The number keeps names apart, so a name addresses one palette.
    name += " #%d" % number if rng.random() < 0.7 and ref.length(name) < 50 else ""
    stamp = 1700000000000.0 + rng.randrange(10 ** 9)
    return record(rng, name, colours, stamp, updatedAt=stamp + rng.randrange(10 ** 6),
                  revision=rng.randint(1, 30), isLocked=rng.random() < 0.2)


def check_export_text(palette, stdout):
    try:
        orders = []
        parsed = json.loads(stdout, object_pairs_hook=lambda pairs: orders.append(
            [key for key, _ in pairs]) or refdriver.no_duplicates(pairs))
    except ValueError as error:
        return [("export", "a JSON document", "%s %r" % (error, stdout[:300]))]
    stamp = parsed.get("exportedAt") if isinstance(parsed, dict) else None
    now = datetime.datetime.now(datetime.timezone.utc)
    recent = {(now - datetime.timedelta(seconds=s)).strftime("%Y-%m-%dT%H:%M:%SZ")
              for s in range(300)}
    mismatches = [] if isinstance(stamp, str) and stamp in recent else [
        ("exportedAt", "the present time in ISO 8601, UTC, seconds", stamp)]
    refdriver.compare(ref.export_dictionary(palette["name"], palette["colors"], stamp), parsed, "",
                      mismatches)
    mismatches += [("key order", sorted(o), o) for o in orders if o != sorted(o)][:1]
    if "\n" not in stdout.strip() or "\n " not in stdout:
        mismatches.append(("layout", "pretty-printed", stdout[:200]))
    return mismatches


def check_stored(binary, env, palette, address, work):
    """`link` and `export` of a palette named by "id", "name", or "active" (no argument)."""
    argument = [palette[address]] if address != "active" else []
    label = "stored palette %s (%s)" % (json.dumps(palette["name"], ensure_ascii=False)[:80],
                                        address)
    try:
        want, status, out = ref.encode_template(palette), 0, "stdout"
    except ref.LinkError as error:
        want, status, out = "%s: %s" % (error.case, ref.SHARE_MESSAGES.get(
            error.case, ref.SHARE_FALLBACK)), 1, "stderr"
    # The link on stdout, or the refusal and its message on stderr, on one line.
    result = refdriver.run(binary, ["link"] + argument, env)
    text = getattr(result, out)
    results = [("link of " + label, [] if result.status == status and text == want + "\n"
                else [("link", want, result)])]
    # The file, to stdout or to a file.
    to_file = address == "id" and palette["id"][0] in "0123"
    path = os.path.join(work, palette["id"] + ".hueshelf")
    result = refdriver.run(binary, ["export"] + argument + ["-o", path] * to_file, env)
    text = result.stdout
    if to_file and os.path.exists(path):
        with open(path, encoding="utf-8") as stream:
            text = stream.read()
    return results + [("export of " + label + " -o" * to_file, check_export_text(
        palette, text) if result.status == 0 else [("status", 0, result.status)])]


def run_stored_home(binary, root, number, palettes, rng):
    active = rng.choice(palettes)
    env, _, _, store = refdriver.private_home(binary, root, "stored-%d" % number, palettes,
                                              active["id"])
    results = [("palettes --json of stored home %d" % number, store)]
    names = [p["name"] for p in palettes]
    for palette, last in [] if store else [(p, False) for p in palettes] + [(active, True)]:
        name = palette["name"]
        by_name = names.count(name) == 1 and name and not name.startswith("-") \
            and rng.random() < 0.4
        results += check_stored(binary, env, palette, "active" if last else "name" if by_name
                                else "id", os.path.join(root, "stored-%d" % number))
    return results


FILE_BAD_CODES = ("#ABCD", "", "GGG", "#12345", "##ABC", "#1234567", "ab", "0xABC", "# ABC",
                  "#AB C", "rgb(1,2,3)", "#ＡＢＣ")
ODD_FILE_NAMES = ("", " ", "   ", "\t\n", " padded \n", "\u00a0Nb\u00a0", "\u3000Wide\u3000",
                  "\u2028Line\u2029", "\x1fUnit\x1f", "a\x00b", "Sky", "Deep Sky", "日本の色",
                  "e\u0301" * 100, "e\u0301" * 101, "👨\u200d👩\u200d👧" * 101, "a" * 100 + " ",
                  " " + "b" * 101, "x" * 99 + "🇫🇷🇩🇪")
ODD_LABELS = ("", " ", "Brand", " padded ", "e\u0301" * 40, "e\u0301" * 41, "🎨" * 41, "a" * 40,
              "a" * 45, "\t")
ODD_VALUES = (123456, None, True, 7, False, ["#FFFFFF"], {"v": "#FFFFFF"}, "true", 0, 1)


def file_code(rng):
    roll = rng.random()
    if roll < 0.12:
        return rng.choice(FILE_BAD_CODES)
    code = "%03x" % rng.randrange(4096) if roll < 0.3 else random_six(rng)
    code = rng.choice((code.lower(), code.upper()))
    code = ("#" + code) if rng.random() < 0.75 else code
    if rng.random() < 0.15:
        code = rng.choice((" ", "\n", "\t", "\r\n", "\u00a0", "  ")) + code \
            + rng.choice(("", " ", "\n", "\u3000"))
    return code


def file_entry(rng):
    entry = {}
    roll = rng.random()
    if roll >= 0.04:
        entry["hex"] = rng.choice(ODD_VALUES) if roll < 0.08 else file_code(rng)
    roll = rng.random()
    if roll >= 0.12:
        entry["name"] = rng.choice(ODD_VALUES) if roll < 0.17 else \
            rng.choice(ODD_FILE_NAMES) if roll < 0.35 else \
            text_of_length(rng, rng.choice((1, 3, 8, 20, 99, 100, 101)))
    roll = rng.random()
    if roll < 0.3:
        entry["dividerBefore"] = True if roll < 0.2 else rng.choice(ODD_VALUES)
    if rng.random() < (0.6 if entry.get("dividerBefore") is True else 0.1):
        entry["dividerLabel"] = rng.choice(ODD_LABELS) if rng.random() < 0.5 else \
            rng.choice((text_of_length(rng, rng.randint(1, 41)), 5, None, True))
    if rng.random() < 0.15:
        entry[rng.choice(("id", "isLocked", "isAutoNamed", "note", "HEX"))] = \
            rng.choice((True, "x", 3, None, "#000000"))
    return entry


def shuffled(rng, obj):
    """The same JSON value with the keys of every object in a random order."""
    if isinstance(obj, dict):
        return {key: shuffled(rng, obj[key]) for key in rng.sample(list(obj), len(obj))}
    return [shuffled(rng, value) for value in obj] if isinstance(obj, list) else obj


def damaged(rng, text):
    """A file another program (or a broken disk) might leave: not a palette file, or one that
    only just is."""
    at = rng.randrange(len(text))
    return rng.choice((
        text[:at], text + rng.choice((b" x", b"\n", b",", b"}")), b"\xff\xfe" + text,
        b"\xef\xbb\xbf" + text, b"\xef\xbb\xbf\xef\xbb\xbf" + text,
        b"[" + text + b"]", text.replace(b'"', b"'"), text[:at] + b"\xc3" + text[at + 1:],
        rng.choice((b'"X"', b"null", b"", b"   ", b"\xff\xfe{}")),
        text.replace(b'"colors"', b'"colours"'), text.replace(b'"name"', b'"Name"'),
        text.replace(b'"version"', b'"version":"3.0","v"')))


def random_file(rng, number):
    roll = rng.random()
    count = 0 if roll < 0.03 else rng.choice((199, 200, 200, 201)) if roll < 0.07 else \
        rng.choice((1, 1, 2, 3, 4, 5, 6, 8, 12))
    entries = [file_entry(rng) for _ in range(count)]
    if count >= 199 and rng.random() < 0.6:
        # All but one unreadable: the refusal counts entries, not colours.
        for entry in entries:
            entry["hex"] = rng.choice(FILE_BAD_CODES)
        entries[rng.randrange(count)]["hex"] = "#" + random_six(rng)
    roll = rng.random()
    if roll < 0.12:
        name = rng.choice((None, 5, ["X"], {"n": 1}) if roll < 0.03 else ODD_FILE_NAMES)
    else:
        name = text_of_length(rng, rng.choice((1, 3, 6, 12, 30, 99, 100, 100, 101))) + \
            ("" if rng.random() < 0.5 else " %d" % number)
        name = ref.prefix_of(name, rng.choice((100, 101))) if ref.length(name) > 101 else name
    document = {"name": name, "colors": entries}
    for key in ("name", "colors"):
        if rng.random() < 0.025:
            del document[key]
    if rng.random() < 0.5:
        document["version"] = rng.choice(("2.0", "1.0", "99", 2, None))
    if rng.random() < 0.5:
        document["exportedAt"] = rng.choice(("2026-01-31T09:30:00Z", "yesterday", 0))
    if rng.random() < 0.1:
        document[rng.choice(("id", "isLocked", "createdAt", "extra"))] = rng.choice((True, 1, "x"))
    if rng.random() < 0.03 and entries:  # one entry that isn't an object fails the whole file
        entries.insert(rng.randrange(len(entries) + 1), rng.choice((1, "x", None, [], True)))
    if rng.random() < 0.02:
        document["colors"] = rng.choice(({"0": {"hex": "#FFFFFF"}}, "#FFFFFF", None, 3))
    # Written in one of the layouts other programs use.
    style = rng.randrange(4)
    layout = ({}, {"indent": rng.choice((1, 2, 4, "\t"))}, {"separators": (",", ":")},
              {"indent": 2})[style]
    text = json.dumps(shuffled(rng, document), ensure_ascii=rng.random() < 0.3, **layout)
    text = (text if style < 3 else "\n  " + text + "\n\n").encode("utf-8")
    return damaged(rng, text) if rng.random() < 0.08 else text


def sized_file(rng, size, in_string):
    """A valid palette file of exactly `size` bytes, padded with blanks or inside a string."""
    document = {"name": "Big %d" % size, "colors": [{"hex": "#" + random_six(rng),
                                                      "name": "Only"}]}
    base = json.dumps(document).encode("utf-8")
    if not in_string:
        return base[:-1] + b" " * (size - len(base)) + b"}"
    document["pad"] = "p" * (size - len(json.dumps(dict(document, pad="")).encode("utf-8")))
    return json.dumps(document).encode("utf-8")


def check_new_record(record, name, colours):
    """Mismatches between `show --json` of a palette just made and what the model made."""
    got = record.get("colors")
    if not isinstance(got, list) or len(got) != len(colours) or \
            any(not isinstance(g, dict) for g in got):
        return [(".colors", colours, got)]
    # The model's colours, with the new ids the program gave them.
    want = {"name": name, "revision": 1, "isLocked": False, "updatedByDeviceId": None,
            "colors": [dict(c, id=g.get("id"), isLocked=False) for c, g in zip(colours, got)]}
    actual = {key: record.get(key) for key in want}
    actual["colors"] = [{key: g.get(key) for key in w} for w, g in zip(want["colors"], got)]
    mismatches = refdriver.compare(want, actual)
    ids = [g.get("id") for g in got] + [record.get("id")]
    if len(set(ids)) != len(ids) or not all(isinstance(i, str) and UUID_TEXT.match(i)
                                            for i in ids):
        mismatches.append(("ids", "unique upper-case UUIDs", ids))
    stamps = (record.get("createdAt"), record.get("updatedAt"))
    if stamps[0] != stamps[1] or not refdriver.is_number(stamps[0]):
        mismatches.append((".createdAt/.updatedAt", "equal times", stamps))
    if not mismatches and record.get("contentHash") != ref.content_hash(name, got):
        mismatches.append((".contentHash", ref.content_hash(name, got), record.get("contentHash")))
    return mismatches


def import_one(binary, env, cwd, argument, palette, refusal, model, active):
    """Checks `import` and `show --json`; returns the mismatches and the active id. `palette` is
    what the model read, or None with the refusal (None: one line, any words)."""
    result = refdriver.run(binary, ["import", argument], env, cwd)
    if palette is None:
        mismatches = refdriver.one_line_failure(result)
        if refusal is not None and result.stderr != refusal + "\n" or result.stdout:
            mismatches.append(("refusal", refusal, result))
        return mismatches, active
    found = ref.find_identical_palette(palette["name"], palette["colors"], model)
    name = ref.unique_palette_name(palette["name"], [p["name"] for p in model])
    message = ref.ALREADY_HAVE if found is not None else 'Imported "%s"' % name
    if result.status != 0 or result.stdout != message + "\n":
        return [("import", message, result)], active
    shown = refdriver.run(binary, ["show", "--json"], env, cwd)
    if refdriver.json_output(shown, dict):
        return refdriver.json_output(shown, dict), active
    if found is not None:  # the palette already there becomes the active one
        got = shown.parsed.get("id")
        return [] if got == model[found]["id"] else [("active", model[found]["id"], got)], got
    mismatches = check_new_record(shown.parsed, name, palette["colors"])
    if not mismatches:
        model.append({"id": shown.parsed["id"], "name": name, "colors": shown.parsed["colors"]})
    return mismatches, active if mismatches else shown.parsed["id"]


def run_import_home(binary, root, number, files, links, rng):
    # Names that files reuse, and a palette that a file and a link equal but for codes and locks.
    seeds = [record(rng, "Sky", [item(rng, "Blue", "#87CEEB", False, "")], 1700000000000.0),
             record(rng, "Brand", [item(rng, "Primary", "#FF0000", False, "", locked=True),
                                   item(rng, "Sky", "#87CEEB", True, "Soft")], 1700000000000.0)]
    env, _, _, store = refdriver.private_home(binary, root, "import-%d" % number, seeds,
                                              seeds[0]["id"])
    results = [("palettes --json of import home %d" % number, store)]
    if store:
        return results
    work = os.path.join(root, "import-%d" % number, "files")
    os.makedirs(work)
    model = [{key: s[key] for key in ("id", "name", "colors")} for s in seeds]
    active = seeds[0]["id"]
    steps = [("file", label, data) for label, data in files] + \
        [("link", label, text) for label, text in links]
    rng.shuffle(steps)
    for index, (kind, label, content) in enumerate(steps):
        if kind == "file":
            argument = os.path.join(work, "palette-%d%s" % (index, rng.choice(
                (".hueshelf", ".hueshelf", ".HueShelf"))))
            with open(argument, "wb") as stream:
                stream.write(content)
            palette = ref.parse_palette_file(content)
            refusal = palette["errorMessage"]
            palette = None if refusal else palette
        else:
            argument, (palette, refusal) = content, ref.decode_case(content)
            if palette is not None:
                palette["colors"] = [dict(c, isAutoNamed=False) for c in palette["colors"]]
            refusal = None
        shown = "%d bytes beginning %r" % (len(content), content[:160]) if len(content) > 400 \
            else repr(content)
        for attempt in range(2 if palette is not None and rng.random() < 0.3 else 1):
            mismatches, active = import_one(binary, env, work, argument, palette, refusal, model,
                                            active)
            results.append(("import %s %s%s (home %d)" % (label, shown, " again" * attempt,
                                                         number), mismatches))
            if mismatches:  # the model no longer knows what the program holds
                return results
    return results + [("palettes --json after the imports of home %d" % number,
                       refdriver.verify_store(binary, env, model, active))]


def import_homes(rng, file_count, link_count):
    files = [("random file", random_file(rng, n)) for n in range(file_count)]
    files += [("%d bytes, padded %s" % (size, "in a string" if inside else "with blanks"),
               sized_file(rng, size, inside)) for size in (1048576, 1048577)
              for inside in (False, True)]
    for entries in ([{"hex": "nope"}] * 199, [{"hex": "nope"}] * 200, [{"name": "n"}] * 200):
        files.append(("%d entries" % (len(entries) + 1), json.dumps(
            {"name": "Many", "colors": entries + [{"hex": "#102030"}]}).encode()))
    rng.shuffle(files)
    files.append(("the same as a stored palette", b'{"name":"Brand","colors":[{"hex":"f00",'
                  b'"name":"Primary"},{"hex":"#87ceeb","name":"Sky","dividerBefore":true,'
                  b'"dividerLabel":"Soft"}]}'))
    links = []
    for _ in range(link_count):
        text = base_link(rng)
        roll = rng.random()
        text = mangle(rng, text)[1] if roll < 0.2 else "hueshelf://import#" + text.split(
            "#", 1)[1] if roll < 0.44 else text
        links += [("link", text)] if not text.startswith("-") else []
    links += [("link equal to a stored palette", P + "Brand;Primary:FF0000,|Soft|Sky:87CEEB"),
              ("link named like a stored palette", P + "Sky;Blue:87CEEB,Navy:000080")]
    homes = max(1, (len(files) + FILES_PER_HOME - 1) // FILES_PER_HOME)
    return [(files[n::homes], links[n::homes]) for n in range(homes)]


def body(options, root, pool):
    count = options.count
    links = link_cases(random.Random(options.seed), count)
    rng = random.Random(options.seed + 1)
    palettes = [stored_palette(rng, number) for number in range(max(4, count // 5))]
    stored = [palettes[i:i + PALETTES_PER_HOME] for i in range(0, len(palettes),
                                                                PALETTES_PER_HOME)]
    imports = import_homes(random.Random(options.seed + 2), max(4, count * 3 // 10),
                           max(2, count // 20))
    env = refdriver.home_env(os.path.join(root, "links"))  # an empty home
    futures = [pool.submit(check_decode, options.binary, env, "%s: link --decode %r" % (
        label, text), text, round_trip) for label, text, round_trip in links]
    futures += [pool.submit(run_stored_home, options.binary, root, n, palettes,
                            random.Random(options.seed + 10 + n))
                for n, palettes in enumerate(stored)]
    futures += [pool.submit(run_import_home, options.binary, root, n, files, home_links,
                            random.Random(options.seed + 100 + n))
                for n, (files, home_links) in enumerate(imports)]
    return ("%d link texts, %d stored palettes in %d homes, %d imports in %d homes" % (
        len(links), len(palettes), len(stored), sum(len(f) + len(l) for f, l in imports),
        len(imports)), futures)


if __name__ == "__main__":
    sys.exit(refdriver.main(__doc__, 20240701, 400, body))
