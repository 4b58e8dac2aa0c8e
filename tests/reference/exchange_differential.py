#!/usr/bin/env python3
"""Differential test: palette links and palette files of `hueshelf` against exchangeref.py.

On random but repeatable inputs (fixed seed): `link --decode TEXT --json` of encoded palettes (of
many scripts, at and around each limit) and of mangled links; `link PALETTE` and `export PALETTE
[-o FILE]` of palettes stored in private homes; `import` of palette files (keys in any order,
short codes, dividers, bad entries, 200 and 201 entries, 1 MB and a byte more) and links, with
`show --json` of the new record and its content hash, and the whole list at the end.
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

PALETTES_PER_HOME = 30
FILES_PER_HOME = 25
P = "https://hueshelf.app/p/#1;"
UUID_TEXT = re.compile(r"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$")
ESCAPE = re.compile(r"%[0-9A-F]{2}")

# Atoms are whole user-perceived characters, so names of an exact length can be built from them.
ASCII_ATOMS = list("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789")
SEPARATORS = list(";,:|#%/ ?&=+\"<>\\@$^`[]{}")
LETTERS = list("éüßñÅøçÆαβγΩжЯשب日本色한글ŁőĦ") + ["٣", "Ⅻ", "½", "𝐀", "𝒜", "𠀀"]
MARKED = ["e\u0301", "a\u0308\u0301", "c\u0327", "o\u0303\u0304\u0306", "n\u0303",
          "x" + "\u0301" * 9, "\u1100\u1161\u11a8"]
EMOJI = ["🎨", "👍🏽", "👨\u200d👩\u200d👧", "🇫🇷", "❤\ufe0f", "1\ufe0f\u20e3",
         "🏳\ufe0f\u200d🌈", "✨", "🟦"]
SYMBOLS = ["€", "©", "✓", "→", "\u00a0", "\u3000", "\t", "\n", "\r\n", "\u200b", "¿"]
STYLES = {
    "ascii": (ASCII_ATOMS,),
    "mixed": (ASCII_ATOMS, ASCII_ATOMS, LETTERS, MARKED, EMOJI, SEPARATORS, list("-_.!~*'()")),
    "escapes": (SEPARATORS, EMOJI, SYMBOLS, ASCII_ATOMS),
    "raw": (LETTERS, MARKED, ASCII_ATOMS),
    "emoji": (EMOJI,),
}


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
    six, roll = random_six(rng), rng.random()
    if roll < 0.04:
        return rng.choice(("#FFF", "GG0000", "#1234567", "", "##FF0000", "#12345", "FF 000",
                           "ＦＦ0000", "#ff00zz"))
    if roll < 0.32:
        six = six.lower() if roll < 0.25 else "".join(
            c.lower() if rng.random() < 0.5 else c for c in six)
    return ("#" + six) if rng.random() < 0.7 else six


def random_link_palette(rng):
    roll = rng.random()
    count = 0 if roll < 0.03 else rng.choice((39, 40, 40, 41)) if roll < 0.08 else \
        rng.choice((1, 1, 2, 3, 4, 5, 6, 8, 10, 12, rng.randint(1, 20)))
    name = "" if rng.random() < 0.03 else text_of_length(rng, name_length(rng, 60))
    colors = []
    for _ in range(count):
        color_name = "" if rng.random() < 0.01 else text_of_length(rng, name_length(rng, 40))
        divider = rng.random() < 0.25
        # A label without a divider is still checked, but isn't written.
        label = text_of_length(rng, name_length(rng, 40)) \
            if rng.random() < (0.6 if divider else 0.05) else ""
        colors.append(ref.link_color(color_name, link_code(rng), divider, label))
    if count >= 39:
        # Long lists only stay under the length limit with short plain names.
        for color in colors:
            if rng.random() < 0.9:
                color["name"] = text_of_length(rng, rng.randint(1, 6), "ascii")
                color["dividerLabel"] = color["dividerLabel"] if color["dividerBefore"] else ""
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
        return [refdriver.compared(label, result, expected)]
    mismatches = refdriver.one_line_failure(result)
    if result.stderr.split(":", 1)[0] != case:
        mismatches.append(("error case", case, result.stderr.rstrip("\n")))
    return [(label, mismatches)]


def base_link(rng):
    """A link the model accepts, with dividers and escapes in it."""
    while True:
        colors = []
        for _ in range(rng.randint(1, 8)):
            divider = rng.random() < 0.3
            label = text_of_length(rng, rng.randint(1, 10)) if divider and rng.random() < 0.6 \
                else ""
            colors.append(ref.link_color(text_of_length(rng, rng.randint(1, 12)),
                                         link_code(rng), divider, label))
        try:
            return ref.encode(text_of_length(rng, rng.randint(1, 15)), colors)
        except ref.LinkError:
            continue


def mangle(rng, text):
    """One hand-made kind of damage; returns (what was done, text)."""
    start = text.find("#") + 1
    head, payload = text[:start], text[start:]
    fields = payload.split(";")
    cf = fields[2].split(",")  # the colour fields

    def rebuilt(name=fields[1], version=fields[0]):
        return head + ";".join([version, name, ",".join(cf)])

    kind = rng.randrange(24)
    if kind == 0:
        return "cut short", text[:rng.randint(1, len(text) - 1)]
    if kind == 1:
        at = rng.randint(0, len(text))
        return "extra ;", text[:at] + ";" + text[at:]
    if kind == 2:
        # An escaped pipe at the head of a divider field: the whole field is repaired.
        dividers = [i for i, f in enumerate(cf) if f.startswith("|")]
        if dividers:
            i = rng.choice(dividers)
            cf[i] = "".join(rng.choice(("%7c", "%7C")) if ch == "|" else ch for ch in cf[i])
            return "escaped pipes", rebuilt()
        i = rng.randrange(len(cf))
        cf[i] = rng.choice(("%7c", "%7C", "%7C%7C", "%7cLab%7C")) + cf[i]
        return "escaped pipe at a head", rebuilt()
    if kind == 3:  # an escaped pipe behind the head stays part of a label or name
        i = rng.randrange(len(cf))
        at = rng.randint(1, max(1, cf[i].find(":")))
        cf[i] = cf[i][:at] + rng.choice(("%7C", "%7c")) + cf[i][at:]
        return "escaped pipe inside", rebuilt()
    if kind == 4:
        escapes = list(ESCAPE.finditer(text))
        broken = rng.choice(("%", "%4", "%G1", "%%", "%4g", "%ZZ", "%C3", "%ED%A0%80", "%C0%80",
                             "%FF", "%E2%82"))
        if escapes and rng.random() < 0.7:
            m = rng.choice(escapes)
            return "broken escape", text[:m.start()] + broken + text[m.end():]
        at = rng.randint(start, len(text))
        return "broken escape", text[:at] + broken + text[at:]
    if kind == 5:
        return "lower-case escapes", ESCAPE.sub(lambda m: m.group(0).lower(), text)
    if kind == 6:
        i = rng.randrange(len(cf))
        cf[i] = cf[i][:-6] + cf[i][-6:].lower()
        return "lower-case code", rebuilt()
    if kind == 7:
        version = rng.choice(("2", "01", " 1", "1.0", "", "v1", "١", "1 "))
        return "version %r" % version, rebuilt(version=version)
    if kind == 8:
        return "version 2 with more fields", rebuilt(version="2") + rng.choice((";", ";x", ";;"))
    if kind == 9:
        count = rng.choice((40, 41, 41, 45))
        cf[:] = (cf * (41 // len(cf) + 1))[:count]
        return "%d colours" % count, rebuilt()
    if kind == 10:
        n = rng.choice((60, 61, 61, 62))
        return "%d-character name" % n, rebuilt(ref.percent_encode(
            text_of_length(rng, n, rng.choice(("ascii", "raw", "emoji")))))
    if kind == 11:
        n = rng.choice((40, 41))
        long_text = ref.percent_encode(
            text_of_length(rng, n, rng.choice(("ascii", "raw", "emoji", "mixed"))))
        i = rng.randrange(len(cf))
        f = cf[i]
        if rng.random() < 0.5:
            cf[i], what = f[:f.rfind("|") + 1] + long_text + f[f.rfind(":"):], "colour name"
        else:
            cf[i], what = "|" + long_text + "|" + f[f.rfind("|") + 1:], "label"
        return "%d-character %s" % (n, what), rebuilt()
    if kind == 12:  # raw, unescaped emoji and marks where the encoder would have escaped them
        return "raw emoji name", rebuilt(text_of_length(rng, rng.randint(1, 8), rng.choice(
            ("emoji", "raw"))))
    if kind in (13, 14):
        return ("app scheme", "hueshelf://import#" + payload) if kind == 13 else \
            ("bare payload", payload)
    if kind == 15:
        return "trailing comma", text + rng.choice((",", ",,", ",:", ", "))
    if kind == 16:
        i = rng.randrange(len(cf))
        cf[i] = rng.choice((
            "", ":", "|", "||", "|:", "%7C", "a:b:FF0000", "||Sky:87CEEB", "|Sky:87CEEB",
            "Sky:87CEEB|", "|a|b|Name:FF0000", "%7c%7cSky:87CEEB", "Na|me:FF0000",
            "|%20|Sky:87CEEB", "|%|Sky:87CEEB", ":FF0000", "|%7Cb|Name:FF0000", "%7C:FF0000",
            "|:FF0000", "%00:FF0000", "|Lab|:FF0000"))
        return "hand field", rebuilt()
    if kind == 17:
        i = rng.randrange(len(cf))
        cf[i] = cf[i][:cf[i].rfind(":") + 1] + rng.choice((
            "#FF0000", "%23FF0000", "FFF", "FF00000", "FF000", "##FF0000", "FF 000", "0xFF00",
            "abcdef", "ABCDEG", "ＦＦ0000", "FF0000#"))
        return "odd code", rebuilt()
    if kind == 18:
        return "blank around", rng.choice((" ", "\n", "\t")) + text + rng.choice((" ", "\n", ""))
    if kind == 19:  # more "#" before the payload: only the first counts
        return "more #", rng.choice(("a#b", "##", "#x#", "https://hueshelf.app/p/#")) + text
    if kind == 20:
        return "query", text.replace("/p/#", "/p/?v=2#", 1)
    if kind == 21:
        return "empty fields", rng.choice((
            "", ";", ";;", "#", "#;;", "1;;", "1;x;", ";x;A:FF0000", "#1;x;A:FF0000",
            "1;x;A:FF0000", "1;%;A:FF0000", "1;%20;A:FF0000", "1;x;,", "x", "1", "1;x"))
    if kind == 22:  # palette names with separators that only an escape keeps apart
        return "name with raw separators", rebuilt(rng.choice((
            "a,b", "a:b", "a|b", "a#b", "a b", "%3B", "a%2Cb", "é", "e\u0301")))
    return "upper-case host", text.replace("https://hueshelf.app", "HTTPS://HueShelf.App", 1)


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
        if not room:
            return None
        holder, key, _ = rng.choice(room)
        piece = atom(rng, style) if target - size > 12 else rng.choice(ASCII_ATOMS)
        grows = ref.length(ref.percent_encode(piece))  # an atom adds its escaped form
        if size + grows > target:
            continue
        holder[key] += piece
        size += grows
        if size == target:
            break
    text = ref.assemble(palette["name"], colors)
    return text if ref.length(text) == target else None


FIXED_LINKS = (
    P + "Brand;Primary:FF0000,|Soft|Sky:87CEEB", "/p/#1;Brand;Primary:FF0000,|Soft|Sky:87CEEB",
    P + "X;a%3Ab:FF0000", P + "X;a:b:FF0000", P + "X;%7cSoft%7cSky:87CEEB",
    P + "X;%7CSoft%7CSky:87CEEB", P + "X;|a%7Cb|Name:FF0000", P + "X;||Sky:87CEEB",
    P + "X;|Sky:87CEEB", P + "X;A:000000,", P + "X;A:ff00aa", P + "X;A:#ff00aa",
    P + "X;A:%23FF00AA", "hueshelf://import#1;X;A:#FF00AA", "2;X;A:000000",
    "https://hueshelf.app/p/#2;X;A:000000", "https://hueshelf.app/p/#2;X;A:000000;", "", "#",
    "1;X;A:000000", P + "%F0%9F%8E%A8;A:000000", P + "🎨;🎨:000000", P + "X;%ED%A0%80:000000",
    P + "X;%C0%80:000000", P + "X;%00:000000", P + "X;%c3%a9:000000", P + "X;%:000000",
    P + "X;%2:000000", P + ";A:000000", P + "%20;%20:000000", P + "X;", P + "X;|:000000",
    P + "X;|%7C|A:000000", P + "X;A%7CB:000000", P + "X;%7cA%7cB%7cC:000000",
    P + "X;%7C:000000", P + "X;A:FFF", P + "X;A:ＦＦ0000", P + "X;\r\n:000000",
    P + "e" + "\u0301" * 200 + ";A:000000", P + "e\u0301" * 60 + ";A:000000",
    P + "e\u0301" * 61 + ";A:000000", P + "X;" + "🇫🇷" * 40 + ":000000",
    P + "X;" + "🇫🇷" * 41 + ":000000", P + "X;" + "👨\u200d👩\u200d👧" * 40 + ":000000",
    P + "X;" + "%F0%9F%91%A8%E2%80%8D%F0%9F%91%A9%E2%80%8D%F0%9F%91%A7" * 40 + ":000000",
    P + "X;" + "%F0%9F%91%A8%E2%80%8D%F0%9F%91%A9%E2%80%8D%F0%9F%91%A7" * 41 + ":000000",
    P + "X;|" + "a" * 41 + "|A:000000", P + "X;|" + "a" * 40 + "|A:000000",
    P + "\r\n" * 60 + ";A:000000", P + "\r\n" * 61 + ";A:000000", P + "𝐀" * 60 + ";A:000000",
    P + "𝐀" * 61 + ";A:000000", P + "X;" + ",".join("C%d:000000" % i for i in range(40)),
    P + "X;" + ",".join("C%d:000000" % i for i in range(41)),
    P + "X;" + ",".join("C%d:GGGGGG" % i for i in range(41)),
    P + "a" * 61 + ";" + ",".join(":000000" for _ in range(41)), P + "a" * 61 + ";A:000000",
    P + ";" + ",".join("C:000000" for _ in range(41)), "x" * 1974 + "#1;X;A:000000",
    "x" * 1988 + "#1;X;A:000000", "x" * 1987 + "#1;X;A:000000",
    "\u0301" * 2100 + "#1;X;A:000000", "e\u0301" * 1987 + "#1;X;A:000000",
    "e\u0301" * 1988 + "#1;X;A:000000",
    # A flag right behind a pictograph is still one character: its two regional indicators
    # pair up whatever stands before them.
    P + "X;" + "🎨🇫🇷" * 20 + ":000000",
    P + "X;" + "%F0%9F%8E%A8%F0%9F%87%AB%F0%9F%87%B7" * 20 + ":000000",
    P + "✨🇫🇷" * 30 + ";A:000000", P + "X;|" + "©🇫🇷" * 20 + "|A:000000",
    P + "X;" + "🇫🇷🎨" * 20 + ":000000",
)


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
            if text is not None:
                cases.append(("%d characters, %s" % (target, style), text, None))
                cases.append(("%d characters without the scheme" % (target - 21), text[21:],
                              None))
    cases += [("fixed", text, None) for text in FIXED_LINKS]
    # An argument starting with "-" would be read as an option.
    return [case for case in cases if not case[1].startswith("-")]


def stored_code(rng):
    six, roll = random_six(rng), rng.random()
    if roll < 0.06:
        return rng.choice(("#FFF", "nope", "", "#12345", " #AABBCC", "#AABBCC ", "aabbcc",
                           "#abcdefff", "rgb(1, 2, 3)"))
    return "#" + six.lower() if roll < 0.2 else six if roll < 0.26 else "#" + six


def record(rng, name, colours, stamp, revision, locked):
    return {"id": refdriver.upper_uuid(rng), "name": name, "colors": colours, "createdAt": stamp,
            "updatedAt": stamp, "revision": revision, "isLocked": locked,
            "contentHash": ref.content_hash(name, colours)}


def stored_palette(rng, number):
    roll = rng.random()
    count = 0 if roll < 0.05 else rng.choice((40, 41)) if roll < 0.12 else \
        rng.choice((1, 2, 3, 4, 5, 6, 8, 10, rng.randint(1, 16)))
    colours = []
    for _ in range(count):
        divider = rng.random() < 0.2
        # A stale label behind no divider must not reach the link, nor the file.
        label = text_of_length(rng, name_length(rng, 40)) if rng.random() < 0.4 else ""
        colours.append({
            "id": refdriver.upper_uuid(rng),
            "name": "" if rng.random() < 0.02 else text_of_length(
                rng, name_length(rng, 40) if count < 40 else rng.randint(1, 5)),
            "hex": stored_code(rng), "isAutoNamed": rng.random() < 0.4,
            "isLocked": rng.random() < 0.2, "dividerBefore": divider, "dividerLabel": label})
    name = text_of_length(rng, rng.choice((1, 2, 4, 7, 10, 15, 20, 30, 59, 60, 61, 101)))
    name = "" if rng.random() < 0.03 else name
    # The number keeps names apart, so a name addresses one palette.
    name = name + " #%d" % number if rng.random() < 0.7 and ref.length(name) < 50 else name
    stamp = 1700000000000.0 + rng.randrange(10 ** 9)
    palette = record(rng, name, colours, stamp, None, None)
    palette.update(updatedAt=stamp + rng.randrange(10 ** 6), revision=rng.randint(1, 30),
                   isLocked=rng.random() < 0.2)
    return palette


def padded_stored_palette(rng, number, target):
    """A stored palette whose link has exactly `target` characters."""
    for _ in range(20):
        text = padded_link(rng, target, rng.choice(("ascii", "raw", "escapes")))
        # The payload alone is far below the limit, so it decodes whatever the link's length.
        palette = None if text is None else ref.decode_case(text[text.find("#") + 1:])[0]
        if palette is not None:
            colours = [{"id": refdriver.upper_uuid(rng), "name": c["name"], "hex": c["hex"],
                        "isAutoNamed": False, "isLocked": False,
                        "dividerBefore": c["dividerBefore"], "dividerLabel": c["dividerLabel"]}
                       for c in palette["colors"]]
            return record(rng, palette["name"], colours, 1700000000000.0 + number, 1, False)
    return None


def check_export_text(palette, stdout):
    try:
        orders = []
        parsed = json.loads(stdout, object_pairs_hook=lambda pairs: orders.append(
            [key for key, _ in pairs]) or refdriver.no_duplicates(pairs))
    except ValueError as error:
        return [("export", "a JSON document", "%s %r" % (error, stdout[:300]))]
    if not isinstance(parsed, dict):
        return [("export", "a JSON object", stdout[:300])]
    mismatches, stamp = [], parsed.get("exportedAt")
    now = datetime.datetime.now(datetime.timezone.utc)
    if not isinstance(stamp, str) or stamp not in {(now - datetime.timedelta(
            seconds=s)).strftime("%Y-%m-%dT%H:%M:%SZ") for s in range(300)}:
        mismatches.append(("exportedAt", "the present time in ISO 8601, UTC, seconds", stamp))
    expected = ref.export_dictionary(palette["name"], palette["colors"],
                                     stamp if isinstance(stamp, str) else "")
    refdriver.compare(expected, parsed, "", mismatches)
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
        want, case, status, out = ref.encode_template(palette), None, 0, "stdout"
    except ref.LinkError as error:
        want, case, status, out = "%s: %s" % (error.case, ref.SHARE_MESSAGES.get(
            error.case, ref.SHARE_FALLBACK)), error.case, 1, "stderr"
    # The link on stdout, or the refusal and its message on stderr, on one line.
    result = refdriver.run(binary, ["link"] + argument, env)
    text = getattr(result, out)
    results = [("link of " + label, [] if result.status == status and text.count("\n") == 1
                and text.rstrip("\n") == want else [("link", want, result)])]
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
    home = os.path.join(root, "stored-%d" % number)
    active = rng.choice(palettes)
    refdriver.write_preferences(home, palettes, active["id"])
    env = refdriver.home_env(home)
    store = refdriver.verify_store(binary, env, palettes, active["id"])
    results = [("palettes --json of stored home %d" % number, store)]
    if store:
        return results
    names = [p["name"] for p in palettes]
    for palette in palettes:
        name = palette["name"]
        by_name = names.count(name) == 1 and name and not name.startswith("-") \
            and rng.random() < 0.4
        results += check_stored(binary, env, palette, "name" if by_name else "id", home)
    return results + check_stored(binary, env, active, "active", home)


def stored_homes(rng, count):
    palettes = [stored_palette(rng, number) for number in range(count)]
    for target in (2000, 2001, 2000, 2001):
        padded = padded_stored_palette(rng, len(palettes), target)
        if padded is not None:
            palettes.append(padded)
    rng.shuffle(palettes)
    return [palettes[i:i + PALETTES_PER_HOME] for i in range(0, len(palettes), PALETTES_PER_HOME)]


FILE_BAD_CODES = ("#ABCD", "", "GGG", "#12345", "##ABC", "#1234567", "ab", "0xABC", "# ABC",
                  "#AB C", "rgb(1,2,3)", "#ＡＢＣ")
ODD_FILE_NAMES = ("", " ", "   ", "\t\n", " padded \n", "\u00a0Nb\u00a0", "\u3000Wide\u3000",
                  "\u2028Line\u2029", "\x1fUnit\x1f", "Sky", "Sky", "Deep Sky", "日本の色",
                  "e\u0301" * 100, "e\u0301" * 101, "👨\u200d👩\u200d👧" * 101, "a" * 100 + " ",
                  " " + "b" * 101, "x" * 99 + "🇫🇷🇩🇪")
ODD_LABELS = ("", " ", "Brand", " padded ", "e\u0301" * 40, "e\u0301" * 41, "🎨" * 41,
              "a" * 40, "a" * 45, "\t")
X = b'{"name":"X","colors":[%s]}'
FIXED_FILES = (
    X % b'', X % b'1', X % b'{"hex":" #abc "}', X % b'{"hex":"#ABCD"},{"hex":"abc","name":"  "}',
    b'{"name":"","colors":[{"hex":"#000000","name":"Ink"}]}',
    X % b'{"hex":"#000000","dividerLabel":"Lost"}',
    X % b'{"hex":"#000000","dividerBefore":1,"dividerLabel":"L"}',
    X % b'{"hex":"#000000","dividerBefore":true,"dividerLabel":7}',
    b'[{"name":"X","colors":[{"hex":"#000000"}]}]', b'"X"', b'null', b'', b'   ',
    b'{"name":"X","colors":[{"hex":"#000000"}]', X % b'{"hex":"#000000"},',
    b"{'name':'X','colors':[{'hex':'#000000'}]}", X % b'{"hex":"#000000"}' + b' x',
    X % b'{"hex":"#000000"}' + b'\n',
    b'{"name":"X\\u00e9\\ud83c\\udfa8","colors":[{"hex":"#000000","name":"\\n\\tTab\\t"}]}',
    b'{"name":"X","colors":{"hex":"#000000"}}', b'{"name":7,"colors":[{"hex":"#000000"}]}',
    b'{"colors":[{"hex":"#000000"}]}', b'{"name":"X"}',
    b'{"name":"X","colors":[{"hex":"#000000"}],"version":"3.0"}', b'\xff\xfe{}',
    b'{"name":"\xc3","colors":[{"hex":"#000000"}]}', X % b'{"hex":"#000000","name":"a\\u0000b"}',
    X % b'{"hex":"#GGGGGG"}',
    json.dumps({"name": "🎨🇫🇷" * 50, "colors": [{"hex": "#000000"}]}).encode(),
    json.dumps({"name": "F", "colors": [{"hex": "#000000", "name": "✨🇫🇷" * 60,
                                         "dividerBefore": True,
                                         "dividerLabel": "🎨🇫🇷" * 30}]}).encode(),
)
SAME_AS_SEED = b'{"name":"Brand","colors":[{"hex":"f00","name":"Primary"},' \
    b'{"hex":"#87ceeb","name":"Sky","dividerBefore":true,"dividerLabel":"Soft"}]}'


def file_code(rng):
    roll = rng.random()
    if roll < 0.12:
        return rng.choice(FILE_BAD_CODES)
    if roll < 0.3:
        code = "%03x" % rng.randrange(4096)
        code = code.upper() if rng.random() < 0.5 else code
        code = ("#" + code) if rng.random() < 0.7 else code
    else:
        code = random_six(rng)
        code = code.lower() if rng.random() < 0.3 else code
        code = ("#" + code) if rng.random() < 0.8 else code
    if rng.random() < 0.15:
        code = rng.choice((" ", "\n", "\t", "\r\n", "\u00a0", "  ")) + code \
            + rng.choice(("", " ", "\n", "\u3000"))
    return code


def file_entry(rng):
    entry = {}
    roll = rng.random()
    if roll >= 0.04:
        entry["hex"] = rng.choice((123456, None, True, ["#FFFFFF"], {"v": "#FFFFFF"})) \
            if roll < 0.08 else file_code(rng)
    roll = rng.random()
    if roll >= 0.12:
        entry["name"] = rng.choice((None, 7, False, ["n"], {})) if roll < 0.17 else \
            rng.choice(ODD_FILE_NAMES) if roll < 0.35 else \
            text_of_length(rng, rng.choice((1, 3, 8, 20, 99, 100, 101)))
    roll = rng.random()
    if roll < 0.3:
        entry["dividerBefore"] = True if roll < 0.2 else rng.choice((False, 1, "true", None, 0,
                                                                     [True]))
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
        items = list(obj.items())
        rng.shuffle(items)
        return {key: shuffled(rng, value) for key, value in items}
    return [shuffled(rng, value) for value in obj] if isinstance(obj, list) else obj


def random_file(rng, number):
    roll = rng.random()
    count = 0 if roll < 0.03 else rng.choice((199, 200, 200, 201)) if roll < 0.07 else \
        rng.choice((1, 1, 2, 3, 4, 5, 6, 8, 12))
    entries = [file_entry(rng) for _ in range(count)]
    if count >= 199 and rng.random() < 0.6:
        # All but one unreadable: the refusal counts entries, not colours.
        for entry in entries:
            entry["hex"] = rng.choice(FILE_BAD_CODES)
        entries[rng.randrange(count)]["hex"] = "#%s" % random_six(rng)
    roll = rng.random()
    if roll < 0.12:
        name = rng.choice((None, 5, ["X"], {"n": 1}) if roll < 0.03 else ODD_FILE_NAMES)
    else:
        name = text_of_length(rng, rng.choice((1, 3, 6, 12, 30, 99, 100, 100, 101))) + \
            ("" if rng.random() < 0.5 else " %d" % number)
        if ref.length(name) > 101:
            name = ref.prefix_of(name, rng.choice((100, 101)))
    document = {"name": name, "colors": entries}
    for key in ("name", "colors"):
        if rng.random() < (0.03 if key == "name" else 0.02):
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
    document = shuffled(rng, document)
    # Written in one of the layouts other programs use.
    style, ascii_only = rng.randrange(4), rng.random() < 0.3
    layout = ({}, {"indent": rng.choice((1, 2, 4, "\t"))} if style == 1 else {},
              {"separators": (",", ":")}, {"indent": 2})[style]
    text = json.dumps(document, ensure_ascii=ascii_only, **layout)
    return (text if style < 3 else "\n  " + text + "\n\n").encode("utf-8")


def sized_file(rng, size, in_string):
    """A valid palette file of exactly `size` bytes, padded with blanks or inside a string."""
    document = {"name": "Big %d" % size, "colors": [{"hex": "#%s" % random_six(rng),
                                                      "name": "Only"}]}
    base = json.dumps(document).encode("utf-8")
    if not in_string:
        return base[:-1] + b" " * (size - len(base)) + b"}"
    document["pad"] = "p" * (size - len(json.dumps(dict(document, pad="")).encode("utf-8")))
    return json.dumps(document).encode("utf-8")


def seed_palettes(rng):
    """Names that files reuse, and a palette that a fixed file equals but for codes and locks."""
    seeds = []
    for name, colours in (("Sky", [("Blue", "#87CEEB", False, "")]),
                          ("X", [("Gray", "#aabbcc", False, ""), ("Ink", "#000000", True, "")]),
                          ("Brand", [("Primary", "#FF0000", False, ""),
                                     ("Sky", "#87CEEB", True, "Soft")])):
        items = [{"id": refdriver.upper_uuid(rng), "name": n, "hex": h, "isAutoNamed": False,
                  "isLocked": name == "Brand" and n == "Primary", "dividerBefore": d,
                  "dividerLabel": l} for n, h, d, l in colours]
        seeds.append(record(rng, name, items, 1700000000000.0, 3, False))
    return seeds


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
    home = os.path.join(root, "import-%d" % number)
    work = os.path.join(home, "files")
    os.makedirs(work)
    seeds = seed_palettes(rng)
    refdriver.write_preferences(home, seeds, seeds[0]["id"])
    env = refdriver.home_env(home)
    store = refdriver.verify_store(binary, env, seeds, seeds[0]["id"])
    results = [("palettes --json of import home %d" % number, store)]
    if store:
        return results
    model = [{key: s[key] for key in ("id", "name", "colors")} for s in seeds]
    active = seeds[0]["id"]
    steps = [("file", label, data) for label, data in files] + \
        [("link", label, text) for label, text in links]
    rng.shuffle(steps)
    for index, (kind, label, content) in enumerate(steps):
        if kind == "file":
            argument = os.path.join(work, "palette-%d%s" % (index, rng.choice(
                (".hueshelf", ".hueshelf", ".hueshelf", ".HueShelf"))))
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
    files += [("fixed file", data) for data in FIXED_FILES]
    for size in (1048576, 1048577):
        files += [("%d bytes, padded with blanks" % size, sized_file(rng, size, False)),
                  ("%d bytes, padded in a string" % size, sized_file(rng, size, True))]
    for entries in ([{"hex": "nope"}] * 199, [{"hex": "nope"}] * 200, [{"name": "n"}] * 200):
        files.append(("%d entries" % (len(entries) + 1), json.dumps(
            {"name": "Many", "colors": entries + [{"hex": "#102030"}]}).encode()))
    rng.shuffle(files)
    files.append(("the same as a stored palette", SAME_AS_SEED))
    links = []
    for _ in range(link_count):
        if rng.random() < 0.8:
            text = base_link(rng)
            if rng.random() < 0.3:
                text = "hueshelf://import#" + text.split("#", 1)[1]
        else:
            text = mangle(rng, base_link(rng))[1]
        if not text.startswith("-"):
            links.append(("link", text))
    links += [("link equal to a stored palette", P + "Brand;Primary:FF0000,|Soft|Sky:87CEEB"),
              ("link named like a stored palette", P + "Sky;Blue:87CEEB,Navy:000080")]
    homes = max(1, (len(files) + FILES_PER_HOME - 1) // FILES_PER_HOME)
    return [(files[n::homes], links[n::homes]) for n in range(homes)]


def body(options, root, pool):
    count = options.count
    links = link_cases(random.Random(options.seed), count)
    stored = stored_homes(random.Random(options.seed + 1), max(4, count // 5))
    imports = import_homes(random.Random(options.seed + 2), max(4, count * 3 // 10),
                           max(2, count // 20))
    env = refdriver.home_env(os.path.join(root, "links"))  # an empty home
    os.makedirs(os.path.join(root, "links"))
    futures = [pool.submit(check_decode, options.binary, env, "%s: link --decode %r" % (
        label, text), text, round_trip) for label, text, round_trip in links]
    futures += [pool.submit(run_stored_home, options.binary, root, n, palettes,
                            random.Random(options.seed + 10 + n))
                for n, palettes in enumerate(stored)]
    futures += [pool.submit(run_import_home, options.binary, root, n, files, home_links,
                            random.Random(options.seed + 100 + n))
                for n, (files, home_links) in enumerate(imports)]
    return ("%d link texts, %d stored palettes in %d homes, %d imports in %d homes" % (
        len(links), sum(map(len, stored)), len(stored),
        sum(len(f) + len(l) for f, l in imports), len(imports)), futures)


if __name__ == "__main__":
    sys.exit(refdriver.main(__doc__, 20240701, 400, body))
