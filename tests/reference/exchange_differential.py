#!/usr/bin/env python3
"""Differential test: palette links and palette files of `hueshelf` against exchangeref.py.

Four parts, on random but repeatable inputs (fixed seed):

- Encoded palettes. Random palettes (names and labels of every script the pools hold, at and
  around each limit; codes in any case, with or without "#", some unreadable) are laid out by the
  model's encoder, refused ones included, and `link --decode TEXT --json` must give the model's
  decoding: the same palette, or the same error case.
- Mangled links. Links cut short, with extra ";", escaped pipes at the head of a field or inside a
  label, broken escapes, lower-case escapes and codes, other versions, 41 colours, 61-character
  names, raw emoji, texts of exactly 2000 and 2001 characters, the app's own scheme, bare payloads.
- Stored palettes. Palettes written into the preferences file of a private home: `link PALETTE`
  must print the model's link exactly (or refuse with the model's case and message), and
  `export PALETTE` must print the writer's object, keys sorted, which reads back (with the
  model's reader) as the model's own export reads back.
- Imported files. Palette files written here (keys in any order, extra keys, short codes, blanks,
  dividers, bad entries, 200 and 201 entries, exactly 1048576 bytes and one more) and some links
  go through `import` in private homes: the message, then `show --json` (names, codes, dividers,
  isAutoNamed, the new record's fields and content hash), and at the end of each home the whole
  list through `palettes --json`. A file imported again is already there.

Prints "N passed, M failed" and the first mismatches; exits 1 on any mismatch.
"""

import argparse
import concurrent.futures
import datetime
import json
import os
import random
import re
import subprocess
import sys
import tempfile
import uuid

sys.dont_write_bytecode = True  # runs from the source tree; leave no cache there
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import exchangeref as ref  # noqa: E402
from differential import Tally, compare, no_duplicates, run  # noqa: E402
from generator_differential import home_env, write_preferences  # noqa: E402

DEFAULT_SEED = 20240701
PALETTES_PER_HOME = 30
FILES_PER_HOME = 25

# --- characters ---------------------------------------------------------------------------------

# Atoms are whole user-perceived characters, so names of an exact length can be built from them.
ASCII_ATOMS = list("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789")
SAFE_PUNCTUATION = list("-_.!~*'()")
SEPARATORS = list(";,:|#%/ ?&=+\"<>\\@$^`[]{}")
LETTERS = list("éüßñÅøçÆαβγΩжЯשب日本色한글ŁőĦ") + ["٣", "Ⅻ", "½", "𝐀", "𝒜", "𠀀"]
MARKED = ["e\u0301", "a\u0308\u0301", "c\u0327", "o\u0303\u0304\u0306", "n\u0303",
          "x" + "\u0301" * 9, "\u1100\u1161\u11a8"]
EMOJI = ["🎨", "👍🏽", "👨\u200d👩\u200d👧", "🇫🇷", "❤\ufe0f", "1\ufe0f\u20e3",
         "🏳\ufe0f\u200d🌈", "✨", "🟦"]
SYMBOLS = ["€", "©", "✓", "→", "\u00a0", "\u3000", "\t", "\n", "\r\n", "\u200b", "¿"]

STYLES = {
    "ascii": (ASCII_ATOMS, ),
    "mixed": (ASCII_ATOMS, ASCII_ATOMS, LETTERS, MARKED, EMOJI, SEPARATORS, SAFE_PUNCTUATION),
    "escapes": (SEPARATORS, EMOJI, SYMBOLS, ASCII_ATOMS),
    "raw": (LETTERS, MARKED, ASCII_ATOMS),
    "emoji": (EMOJI, ),
}


def atom(rng, style):
    return rng.choice(rng.choice(STYLES[style]))


def text_of_length(rng, count, style=None):
    """A text of exactly `count` user-perceived characters."""
    style = style or rng.choice(("ascii", "mixed", "mixed", "escapes", "raw", "emoji"))
    atoms = [atom(rng, style) for _ in range(count)]
    text = "".join(atoms)
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
    six = random_six(rng)
    roll = rng.random()
    if roll < 0.04:
        return rng.choice(("#FFF", "GG0000", "#1234567", "", "##FF0000", "#12345", "FF 000",
                           "ＦＦ0000", "#ff00zz"))
    if roll < 0.25:
        six = six.lower()
    elif roll < 0.32:
        six = "".join(c.lower() if rng.random() < 0.5 else c for c in six)
    return ("#" + six) if rng.random() < 0.7 else six


# --- part 1: encoded palettes -------------------------------------------------------------------


def random_link_palette(rng):
    roll = rng.random()
    if roll < 0.03:
        count = 0
    elif roll < 0.08:
        count = rng.choice((39, 40, 40, 41))
    else:
        count = rng.choice((1, 1, 2, 3, 4, 5, 6, 8, 10, 12, rng.randint(1, 20)))
    name = "" if rng.random() < 0.03 else text_of_length(rng, name_length(rng, 60))
    colors = []
    for _ in range(count):
        color_name = "" if rng.random() < 0.01 else text_of_length(rng, name_length(rng, 40))
        divider = rng.random() < 0.25
        label = ""
        if rng.random() < (0.6 if divider else 0.05):
            # A label without a divider is still checked, but isn't written.
            label = text_of_length(rng, name_length(rng, 40))
        colors.append(ref.link_color(color_name, link_code(rng), divider, label))
    if count >= 39:
        # Long lists only stay under the length limit with short plain names.
        for color in colors:
            if rng.random() < 0.9:
                color["name"] = text_of_length(rng, rng.randint(1, 6), "ascii")
                color["dividerLabel"] = "" if not color["dividerBefore"] else color["dividerLabel"]
    return name, colors


def link_text_of(name, colors):
    """The encoder's link, or the same layout without the checks for a refused palette."""
    try:
        return ref.encode(name, colors), None
    except ref.LinkError as error:
        return ref.assemble(name, colors), error.case


def written_palette(name, colors):
    """What a decoder must return for an encoded palette: codes canonical, and a label only
    where a divider stands."""
    return {"name": name, "colors": [
        ref.link_color(c["name"], ref.normalize_link_hex(c["hex"]), c["dividerBefore"],
                       c["dividerLabel"] if c["dividerBefore"] else "") for c in colors]}


def check_decode(binary, env, text, label, round_trip=None):
    """`round_trip` is the palette an accepted encoding was made of: the model's own decoder must
    give it back before the binary is held against it."""
    expected, case = ref.decode_case(text)
    # The one palette the format can't carry back: a colour name that begins with "|" and has
    # no divider is written "%7C...", and the repair of escaped pipes reads that as a divider.
    if round_trip is not None and any(
            not c["dividerBefore"] and c["name"].startswith("|") for c in round_trip["colors"]):
        round_trip = None
    if round_trip is not None and expected != round_trip:
        return label, [("the model's round trip", round_trip, expected or case)], case
    status, parsed, parse_error, stdout, stderr = run(binary, ["link", "--decode", text, "--json"],
                                                      env)
    mismatches = []
    if case is not None:
        if status != 1:
            mismatches.append(("exit status", 1, status))
        if stderr.count("\n") != 1 or not stderr.endswith("\n"):
            mismatches.append(("stderr", "one line", stderr))
        got = stderr.split(":", 1)[0] if ":" in stderr else stderr
        if got != case:
            mismatches.append(("error case", case, stderr.rstrip("\n")))
        return label, mismatches, case
    if status != 0 or parse_error or not isinstance(parsed, dict):
        return label, [("run", "status 0 and a JSON object", "status %d %s %r %r" % (
            status, parse_error or "", stdout[:300], stderr[:300]))], None
    compare(expected, parsed, "", mismatches)
    return label, mismatches, None


# --- part 2: mangled links ----------------------------------------------------------------------

ESCAPE = re.compile(r"%[0-9A-F]{2}")


def base_link(rng, divider_share=0.3):
    """A link the model accepts, with dividers and escapes in it."""
    while True:
        count = rng.randint(1, 8)
        colors = []
        for _ in range(count):
            divider = rng.random() < divider_share
            label = text_of_length(rng, rng.randint(1, 10)) if divider and rng.random() < 0.6 \
                else ""
            colors.append(ref.link_color(text_of_length(rng, rng.randint(1, 12)),
                                         link_code(rng), divider, label))
        name = text_of_length(rng, rng.randint(1, 15))
        try:
            return ref.encode(name, colors), name, colors
        except ref.LinkError:
            continue


def mangle(rng, text):
    """One hand-made kind of damage; returns (what was done, text)."""
    start = text.find("#") + 1
    head, payload = text[:start], text[start:]
    fields = payload.split(";")
    color_fields = fields[2].split(",") if len(fields) == 3 else []
    kind = rng.randrange(24)
    if kind == 0:
        return "cut short", text[:rng.randint(1, len(text) - 1)]
    if kind == 1:
        at = rng.randint(0, len(text))
        return "extra ;", text[:at] + ";" + text[at:]
    if kind == 2:
        # An escaped pipe at the head of a divider field: the whole field is repaired.
        dividers = [i for i, f in enumerate(color_fields) if f.startswith("|")]
        if dividers:
            i = rng.choice(dividers)
            field = color_fields[i]
            color_fields[i] = "".join(rng.choice(("%7c", "%7C")) if ch == "|" else ch
                                      for ch in field)
            return "escaped pipes", head + ";".join(fields[:2] + [",".join(color_fields)])
        i = rng.randrange(len(color_fields))
        color_fields[i] = rng.choice(("%7c", "%7C", "%7C%7C", "%7cLab%7C")) + color_fields[i]
        return "escaped pipe at a head", head + ";".join(fields[:2] + [",".join(color_fields)])
    if kind == 3:
        # An escaped pipe behind the head stays part of a label or name.
        i = rng.randrange(len(color_fields))
        field = color_fields[i]
        at = rng.randint(1, max(1, field.find(":")))
        color_fields[i] = field[:at] + rng.choice(("%7C", "%7c")) + field[at:]
        return "escaped pipe inside", head + ";".join(fields[:2] + [",".join(color_fields)])
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
        i = rng.randrange(len(color_fields))
        f = color_fields[i]
        color_fields[i] = f[:-6] + f[-6:].lower()
        return "lower-case code", head + ";".join(fields[:2] + [",".join(color_fields)])
    if kind == 7:
        version = rng.choice(("2", "01", " 1", "1.0", "", "v1", "١", "1 "))
        return "version %r" % version, head + ";".join([version] + fields[1:])
    if kind == 8:
        extra = rng.choice((";", ";x", ";;"))
        return "version 2 with more fields", head + "2;" + ";".join(fields[1:]) + extra
    if kind == 9:
        more = color_fields * (41 // len(color_fields) + 1)
        count = rng.choice((40, 41, 41, 45))
        return "%d colours" % count, head + ";".join(fields[:2] + [",".join(more[:count])])
    if kind == 10:
        n = rng.choice((60, 61, 61, 62))
        long_name = text_of_length(rng, n, rng.choice(("ascii", "raw", "emoji")))
        return "%d-character name" % n, head + ";".join(
            [fields[0], ref.percent_encode(long_name)] + fields[2:])
    if kind == 11:
        n = rng.choice((40, 41))
        long_text = ref.percent_encode(
            text_of_length(rng, n, rng.choice(("ascii", "raw", "emoji", "mixed"))))
        i = rng.randrange(len(color_fields))
        f = color_fields[i]
        if rng.random() < 0.5:
            color_fields[i] = f[:f.rfind("|") + 1] + long_text + f[f.rfind(":"):]
            what = "colour name"
        else:
            color_fields[i] = "|" + long_text + "|" + f[f.rfind("|") + 1:]
            what = "label"
        return "%d-character %s" % (n, what), head + ";".join(
            fields[:2] + [",".join(color_fields)])
    if kind == 12:
        # Raw, unescaped emoji and marks where the encoder would have escaped them.
        raw = text_of_length(rng, rng.randint(1, 8), rng.choice(("emoji", "raw")))
        return "raw emoji name", head + ";".join([fields[0], raw] + fields[2:])
    if kind == 13:
        return "app scheme", "hueshelf://import#" + payload
    if kind == 14:
        return "bare payload", payload
    if kind == 15:
        return "trailing comma", text + rng.choice((",", ",,", ",:", ", "))
    if kind == 16:
        i = rng.randrange(len(color_fields))
        f = color_fields[i]
        color_fields[i] = rng.choice(("", ":", "|", "||", "|:", "%7C", "a:b:FF0000",
                                      "||Sky:87CEEB", "|Sky:87CEEB", "Sky:87CEEB|",
                                      "|a|b|Name:FF0000", "%7c%7cSky:87CEEB", "Na|me:FF0000",
                                      "|%20|Sky:87CEEB", "|%|Sky:87CEEB", ":FF0000",
                                      "|%7Cb|Name:FF0000", "%7C:FF0000", "|:FF0000",
                                      "%00:FF0000", "|Lab|:FF0000"))
        return "hand field", head + ";".join(fields[:2] + [",".join(color_fields)])
    if kind == 17:
        i = rng.randrange(len(color_fields))
        f = color_fields[i]
        code = rng.choice(("#FF0000", "%23FF0000", "FFF", "FF00000", "FF000", "##FF0000",
                           "FF 000", "0xFF00", "abcdef", "ABCDEG", "ＦＦ0000", "FF0000#"))
        color_fields[i] = f[:f.rfind(":") + 1] + code
        return "odd code", head + ";".join(fields[:2] + [",".join(color_fields)])
    if kind == 18:
        return "blank around", rng.choice((" ", "\n", "\t")) + text + rng.choice((" ", "\n", ""))
    if kind == 19:
        # More "#" before the payload: only the first counts.
        return "more #", rng.choice(("a#b", "##", "#x#", "https://hueshelf.app/p/#")) + text
    if kind == 20:
        return "query", text.replace("/p/#", "/p/?v=2#", 1)
    if kind == 21:
        return "empty fields", rng.choice(("", ";", ";;", "#", "#;;", "1;;", "1;x;", ";x;A:FF0000",
                                           "#1;x;A:FF0000", "1;x;A:FF0000", "1;%;A:FF0000",
                                           "1;%20;A:FF0000", "1;x;,", "x", "1", "1;x"))
    if kind == 22:
        # Palette names with separators that only an escape keeps apart.
        return "name with raw separators", head + ";".join(
            [fields[0], rng.choice(("a,b", "a:b", "a|b", "a#b", "a b", "%3B", "a%2Cb", "é",
                                    "e\u0301"))] + fields[2:])
    return "upper-case host", text.replace("https://hueshelf.app", "HTTPS://HueShelf.App", 1)


def padded_link(rng, target, style):
    """A link of exactly `target` characters, or None: 40 colours, half of them behind labelled
    dividers, whose names and labels are filled with atoms of the style and then plain letters."""
    colors = [ref.link_color(rng.choice(ASCII_ATOMS), random_six(rng), divider,
                             rng.choice(ASCII_ATOMS) if divider else "")
              for divider in (rng.random() < 0.5 for _ in range(40))]
    palette = {"name": rng.choice(ASCII_ATOMS)}
    slots = [(palette, "name", 60)] + [(c, "name", 40) for c in colors] + \
        [(c, "dividerLabel", 40) for c in colors if c["dividerBefore"]]
    size = ref.length(ref.assemble(palette["name"], colors))
    # Each atom adds the characters of its escaped form; plain letters add one each.
    for _ in range(3000):
        room = [slot for slot in slots if ref.length(slot[0][slot[1]]) < slot[2]]
        if not room:
            return None
        holder, key, _ = rng.choice(room)
        piece = atom(rng, style) if target - size > 12 else rng.choice(ASCII_ATOMS)
        grows = ref.length(ref.percent_encode(piece))
        if size + grows > target:
            continue
        holder[key] += piece
        size += grows
        if size == target:
            break
    text = ref.assemble(palette["name"], colors)
    return text if ref.length(text) == target else None


def make_link_cases(rng, count):
    cases = []
    for _ in range(count // 2):
        name, colors = random_link_palette(rng)
        text, refusal = link_text_of(name, colors)
        cases.append(("encoded palette (%s)" % (refusal or "accepted"), text,
                      None if refusal else written_palette(name, colors)))
    for _ in range(count - count // 2):
        what, mangled = mangle(rng, base_link(rng)[0])
        cases.append(("mangled: " + what, mangled, None))
    # Exactly at the length limit and one past it, with letters that are one character each,
    # with escapes, and with raw marks and letters beyond the first plane (many code points or
    # code units per character).
    for style in ("ascii", "escapes", "raw", "raw"):
        for target in (2000, 2001):
            text = padded_link(rng, target, style)
            if text is not None:
                cases.append(("%d characters, %s" % (target, style), text, None))
                cases.append(("%d characters without the scheme" % (target - 21), text[21:],
                              None))
    for text in FIXED_LINKS:
        cases.append(("fixed", text, None))
    # An argument starting with "-" would be read as an option.
    return [case for case in cases if not case[1].startswith("-")]


P = "https://hueshelf.app/p/#1;"
FIXED_LINKS = (
    P + "Brand;Primary:FF0000,|Soft|Sky:87CEEB",
    "/p/#1;Brand;Primary:FF0000,|Soft|Sky:87CEEB",
    P + "X;a%3Ab:FF0000",
    P + "X;a:b:FF0000",
    P + "X;%7cSoft%7cSky:87CEEB",
    P + "X;%7CSoft%7CSky:87CEEB",
    P + "X;|a%7Cb|Name:FF0000",
    P + "X;||Sky:87CEEB",
    P + "X;|Sky:87CEEB",
    P + "X;A:000000,",
    P + "X;A:ff00aa",
    P + "X;A:#ff00aa",
    P + "X;A:%23FF00AA",
    "hueshelf://import#1;X;A:#FF00AA",
    "2;X;A:000000",
    "https://hueshelf.app/p/#2;X;A:000000",
    "https://hueshelf.app/p/#2;X;A:000000;",
    "",
    "#",
    "1;X;A:000000",
    P + "%F0%9F%8E%A8;A:000000",
    P + "🎨;🎨:000000",
    P + "X;%ED%A0%80:000000",
    P + "X;%C0%80:000000",
    P + "X;%00:000000",
    P + "X;%c3%a9:000000",
    P + "X;%:000000",
    P + "X;%2:000000",
    P + ";A:000000",
    P + "%20;%20:000000",
    P + "X;",
    P + "X;|:000000",
    P + "X;|%7C|A:000000",
    P + "X;A%7CB:000000",
    P + "X;%7cA%7cB%7cC:000000",
    P + "X;%7C:000000",
    P + "X;A:FFF",
    P + "X;A:ＦＦ0000",
    P + "X;\r\n:000000",
    P + "e" + "\u0301" * 200 + ";A:000000",
    P + "e\u0301" * 60 + ";A:000000",
    P + "e\u0301" * 61 + ";A:000000",
    P + "X;" + "🇫🇷" * 40 + ":000000",
    P + "X;" + "🇫🇷" * 41 + ":000000",
    P + "X;" + "👨\u200d👩\u200d👧" * 40 + ":000000",
    P + "X;" + "%F0%9F%91%A8%E2%80%8D%F0%9F%91%A9%E2%80%8D%F0%9F%91%A7" * 40 + ":000000",
    P + "X;" + "%F0%9F%91%A8%E2%80%8D%F0%9F%91%A9%E2%80%8D%F0%9F%91%A7" * 41 + ":000000",
    P + "X;|" + "a" * 41 + "|A:000000",
    P + "X;|" + "a" * 40 + "|A:000000",
    P + "\r\n" * 60 + ";A:000000",
    P + "\r\n" * 61 + ";A:000000",
    P + "𝐀" * 60 + ";A:000000",
    P + "𝐀" * 61 + ";A:000000",
    P + "X;" + ",".join("C%d:000000" % i for i in range(40)),
    P + "X;" + ",".join("C%d:000000" % i for i in range(41)),
    P + "X;" + ",".join("C%d:GGGGGG" % i for i in range(41)),
    P + "a" * 61 + ";" + ",".join(":000000" for _ in range(41)),
    P + "a" * 61 + ";A:000000",
    P + ";" + ",".join("C:000000" for _ in range(41)),
    "x" * 1974 + "#1;X;A:000000",
    "x" * 1988 + "#1;X;A:000000",
    "x" * 1987 + "#1;X;A:000000",
    "\u0301" * 2100 + "#1;X;A:000000",
    "e\u0301" * 1987 + "#1;X;A:000000",
    "e\u0301" * 1988 + "#1;X;A:000000",
    # A flag right behind a pictograph is still one character: its two regional indicators
    # pair up whatever stands before them.
    P + "X;" + "🎨🇫🇷" * 20 + ":000000",
    P + "X;" + "%F0%9F%8E%A8%F0%9F%87%AB%F0%9F%87%B7" * 20 + ":000000",
    P + "✨🇫🇷" * 30 + ";A:000000",
    P + "X;|" + "©🇫🇷" * 20 + "|A:000000",
    P + "X;" + "🇫🇷🎨" * 20 + ":000000",
)


# --- part 3: stored palettes --------------------------------------------------------------------


def upper_uuid(rng):
    return str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper()


def stored_code(rng):
    six = random_six(rng)
    roll = rng.random()
    if roll < 0.06:
        return rng.choice(("#FFF", "nope", "", "#12345", " #AABBCC", "#AABBCC ", "aabbcc",
                           "#abcdefff", "rgb(1, 2, 3)"))
    if roll < 0.2:
        return "#" + six.lower()
    if roll < 0.26:
        return six
    return "#" + six


def stored_palette(rng, number):
    roll = rng.random()
    if roll < 0.05:
        count = 0
    elif roll < 0.12:
        count = rng.choice((40, 41))
    else:
        count = rng.choice((1, 2, 3, 4, 5, 6, 8, 10, rng.randint(1, 16)))
    colours = []
    for _ in range(count):
        divider = rng.random() < 0.2
        # A stale label behind no divider must not reach the link, nor the file.
        label = text_of_length(rng, name_length(rng, 40)) if rng.random() < 0.4 else ""
        colours.append({
            "id": upper_uuid(rng),
            "name": "" if rng.random() < 0.02 else text_of_length(
                rng, name_length(rng, 40) if count < 40 else rng.randint(1, 5)),
            "hex": stored_code(rng),
            "isAutoNamed": rng.random() < 0.4,
            "isLocked": rng.random() < 0.2,
            "dividerBefore": divider,
            "dividerLabel": label,
        })
    name = text_of_length(rng, rng.choice((1, 2, 4, 7, 10, 15, 20, 30, 59, 60, 61, 101)))
    if rng.random() < 0.03:
        name = ""
    # The number keeps names apart, so a name addresses one palette.
    name = name + " #%d" % number if rng.random() < 0.7 and ref.length(name) < 50 else name
    stamp = 1700000000000.0 + rng.randrange(10 ** 9)
    record = {
        "id": upper_uuid(rng),
        "name": name,
        "colors": colours,
        "createdAt": stamp,
        "updatedAt": stamp + rng.randrange(10 ** 6),
        "revision": rng.randint(1, 30),
        "isLocked": rng.random() < 0.2,
    }
    record["contentHash"] = ref.content_hash(record["name"], colours)
    return record


def padded_stored_palette(rng, number, target):
    """A stored palette whose link has exactly `target` characters."""
    for _ in range(20):
        text = padded_link(rng, target, rng.choice(("ascii", "raw", "escapes")))
        if text is None:
            continue
        # The payload alone is far below the limit, so it decodes whatever the link's length.
        palette, _ = ref.decode_case(text[text.find("#") + 1:])
        if palette is None:
            continue
        colours = [{"id": upper_uuid(rng), "name": c["name"], "hex": c["hex"],
                    "isAutoNamed": False, "isLocked": False, "dividerBefore": c["dividerBefore"],
                    "dividerLabel": c["dividerLabel"]} for c in palette["colors"]]
        stamp = 1700000000000.0 + number
        return {"id": upper_uuid(rng), "name": palette["name"], "colors": colours,
                "createdAt": stamp, "updatedAt": stamp, "revision": 1, "isLocked": False,
                "contentHash": ref.content_hash(palette["name"], colours)}
    return None


def key_order(text):
    """Every object's keys in written order, depth first."""
    orders = []

    def hook(pairs):
        orders.append([key for key, _ in pairs])
        return no_duplicates(pairs)
    json.loads(text, object_pairs_hook=hook)
    return orders


EXPORTED_AT = re.compile(r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")


def check_export_text(palette, stdout, label):
    mismatches = []
    try:
        parsed = json.loads(stdout, object_pairs_hook=no_duplicates)
        orders = key_order(stdout)
    except ValueError as error:
        return [("export", "a JSON document", "%s %r" % (error, stdout[:300]))]
    if not isinstance(parsed, dict):
        return [("export", "a JSON object", stdout[:300])]
    stamp = parsed.get("exportedAt")
    if not isinstance(stamp, str) or not EXPORTED_AT.match(stamp):
        mismatches.append(("exportedAt", "ISO 8601, UTC, whole seconds", stamp))
    else:
        moment = datetime.datetime.strptime(stamp, "%Y-%m-%dT%H:%M:%SZ").replace(
            tzinfo=datetime.timezone.utc)
        late = abs((datetime.datetime.now(datetime.timezone.utc) - moment).total_seconds())
        if late > 300:
            mismatches.append(("exportedAt", "the present time", stamp))
    expected = ref.export_dictionary(palette["name"], palette["colors"],
                                     stamp if isinstance(stamp, str) else "")
    compare(expected, parsed, "", mismatches)
    for order in orders:
        if order != sorted(order):
            mismatches.append(("key order", sorted(order), order))
            break
    if "\n" not in stdout.strip() or "\n " not in stdout:
        mismatches.append(("layout", "pretty-printed", stdout[:200]))
    # Read back, the file must hold what the model's own export holds.
    want = ref.parse_palette_file(json.dumps(expected, ensure_ascii=False).encode("utf-8"))
    got = ref.parse_palette_file(stdout.encode("utf-8"))
    compare(want, got, "(read back)", mismatches)
    return mismatches


def check_stored(binary, env, palette, address, work):
    argument = [palette[address]] if address != "active" else []
    label = "stored palette %s (%s)" % (json.dumps(palette["name"], ensure_ascii=False)[:80],
                                        address)
    results = []
    # The link.
    try:
        expected, case = ref.encode_template(palette), None
    except ref.LinkError as error:
        expected, case = None, error.case
    status, _, _, stdout, stderr = run(binary, ["link"] + argument, env)
    mismatches = []
    if case is None:
        if status != 0 or stdout.rstrip("\n") != expected:
            mismatches.append(("link", expected, "status %d %r %r" % (status, stdout, stderr)))
    else:
        want = "%s: %s" % (case, ref.share_message(case))
        if status != 1 or stderr.rstrip("\n") != want or stderr.count("\n") != 1:
            mismatches.append(("link refusal", want, "status %d %r" % (status, stderr)))
    results.append(("link of " + label, mismatches, "link: " + (case or "printed")))
    # The file, to stdout or to a file.
    to_file = address == "id" and palette["id"][0] in "0123"
    arguments = ["export"] + argument
    if to_file:
        path = os.path.join(work, palette["id"] + ".hueshelf")
        arguments += ["-o", path]
    status, _, _, stdout, stderr = run(binary, arguments, env)
    if to_file and status == 0:
        try:
            with open(path, "r", encoding="utf-8") as stream:
                stdout = stream.read()
        except OSError as error:
            stdout = "unreadable: %s" % error
    if status != 0:
        results.append(("export of " + label, [("export", "status 0", "status %d %r" % (
            status, stderr))], None))
    else:
        results.append(("export of " + label + (" -o" if to_file else ""),
                        check_export_text(palette, stdout, label),
                        "export" + (" -o" if to_file else "")))
    return results


def verify_store(binary, env, palettes, active_id):
    status, parsed, parse_error, stdout, stderr = run(binary, ["palettes", "--json"], env)
    if status != 0 or parse_error or not isinstance(parsed, list):
        return [("palettes --json", "status 0 and a JSON array",
                 "status %d %s %r %r" % (status, parse_error or "", stdout[:300], stderr[:300]))]
    got = [(p.get("id"), p.get("name"), p.get("colorCount"), p.get("isActive")) for p in parsed]
    want = [(p["id"], p["name"], len(p["colors"]), p["id"] == active_id) for p in palettes]
    mismatches = []
    if got != want:
        mismatches.append(("palettes", want, got))
    return mismatches


def run_stored_home(binary, root, number, palettes, rng):
    home = os.path.join(root, "stored-%d" % number)
    active = rng.choice(palettes)
    write_preferences(home, palettes, active["id"])
    env = home_env(home)
    results = []
    store = verify_store(binary, env, palettes, active["id"])
    results.append(("palettes --json of stored home %d" % number, store, None))
    if store:
        return results
    names = [p["name"] for p in palettes]
    for palette in palettes:
        name = palette["name"]
        by_name = names.count(name) == 1 and name and not name.startswith("-") \
            and rng.random() < 0.4
        results += check_stored(binary, env, palette, "name" if by_name else "id", home)
    results += check_stored(binary, env, active, "active", home)
    return results


def make_stored_homes(rng, count):
    palettes = [stored_palette(rng, number) for number in range(count)]
    for target in (2000, 2001, 2000, 2001):
        padded = padded_stored_palette(rng, len(palettes), target)
        if padded is not None:
            palettes.append(padded)
    rng.shuffle(palettes)
    return [palettes[i:i + PALETTES_PER_HOME] for i in range(0, len(palettes), PALETTES_PER_HOME)]


# --- part 4: imported files ---------------------------------------------------------------------

FILE_BAD_CODES = ("#ABCD", "", "GGG", "#12345", "##ABC", "#1234567", "ab", "0xABC", "# ABC",
                  "#AB C", "rgb(1,2,3)", "#ＡＢＣ")
ODD_FILE_NAMES = ("", " ", "   ", "\t\n", " padded \n", "\u00a0Nb\u00a0", "\u3000Wide\u3000",
                  "\u2028Line\u2029", "\x1fUnit\x1f", "Sky", "Sky", "Deep Sky", "日本の色",
                  "e\u0301" * 100, "e\u0301" * 101, "👨\u200d👩\u200d👧" * 101, "a" * 100 + " ",
                  " " + "b" * 101, "x" * 99 + "🇫🇷🇩🇪")
ODD_LABELS = ("", " ", "Brand", " padded ", "e\u0301" * 40, "e\u0301" * 41, "🎨" * 41,
              "a" * 40, "a" * 45, "\t")


def file_code(rng):
    roll = rng.random()
    if roll < 0.12:
        return rng.choice(FILE_BAD_CODES)
    if roll < 0.3:
        three = "%03x" % rng.randrange(4096)
        three = three.upper() if rng.random() < 0.5 else three
        code = ("#" + three) if rng.random() < 0.7 else three
    else:
        six = random_six(rng)
        six = six.lower() if rng.random() < 0.3 else six
        code = ("#" + six) if rng.random() < 0.8 else six
    if rng.random() < 0.15:
        code = rng.choice((" ", "\n", "\t", "\r\n", "\u00a0", "  ")) + code \
            + rng.choice(("", " ", "\n", "\u3000"))
    return code


def file_entry(rng):
    entry = {}
    roll = rng.random()
    if roll < 0.04:
        pass
    elif roll < 0.08:
        entry["hex"] = rng.choice((123456, None, True, ["#FFFFFF"], {"v": "#FFFFFF"}))
    else:
        entry["hex"] = file_code(rng)
    roll = rng.random()
    if roll < 0.12:
        pass
    elif roll < 0.17:
        entry["name"] = rng.choice((None, 7, False, ["n"], {}))
    elif roll < 0.35:
        entry["name"] = rng.choice(ODD_FILE_NAMES)
    else:
        entry["name"] = text_of_length(rng, rng.choice((1, 3, 8, 20, 99, 100, 101)))
    roll = rng.random()
    if roll < 0.2:
        entry["dividerBefore"] = True
    elif roll < 0.3:
        entry["dividerBefore"] = rng.choice((False, 1, "true", None, 0, [True]))
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
    if isinstance(obj, list):
        return [shuffled(rng, value) for value in obj]
    return obj


def serialise(rng, document):
    style = rng.randrange(4)
    ascii_only = rng.random() < 0.3
    if style == 0:
        text = json.dumps(document, ensure_ascii=ascii_only)
    elif style == 1:
        text = json.dumps(document, ensure_ascii=ascii_only, indent=rng.choice((1, 2, 4, "\t")))
    elif style == 2:
        text = json.dumps(document, ensure_ascii=ascii_only, separators=(",", ":"))
    else:
        text = "\n  " + json.dumps(document, ensure_ascii=ascii_only, indent=2) + "\n\n"
    return text.encode("utf-8")


def random_file_document(rng, number):
    roll = rng.random()
    if roll < 0.03:
        count = 0
    elif roll < 0.07:
        count = rng.choice((199, 200, 200, 201))
    else:
        count = rng.choice((1, 1, 2, 3, 4, 5, 6, 8, 12))
    entries = [file_entry(rng) for _ in range(count)]
    if count >= 199 and rng.random() < 0.6:
        # All but one unreadable: the refusal counts entries, not colours.
        for entry in entries:
            entry["hex"] = rng.choice(FILE_BAD_CODES)
        entries[rng.randrange(count)]["hex"] = "#%s" % random_six(rng)
    roll = rng.random()
    if roll < 0.03:
        name = rng.choice((None, 5, ["X"], {"n": 1}))
    elif roll < 0.12:
        name = rng.choice(ODD_FILE_NAMES)
    else:
        name = text_of_length(rng, rng.choice((1, 3, 6, 12, 30, 99, 100, 100, 101))) + \
            ("" if rng.random() < 0.5 else " %d" % number)
        if ref.length(name) > 101:
            name = ref.prefix_of(name, rng.choice((100, 101)))
    document = {"name": name, "colors": entries}
    if rng.random() < 0.03:
        del document["name"]
    if rng.random() < 0.02:
        del document["colors"]
    if rng.random() < 0.5:
        document["version"] = rng.choice(("2.0", "1.0", "99", 2, None))
    if rng.random() < 0.5:
        document["exportedAt"] = rng.choice(("2026-01-31T09:30:00Z", "yesterday", 0))
    if rng.random() < 0.1:
        document[rng.choice(("id", "isLocked", "createdAt", "extra"))] = rng.choice((True, 1, "x"))
    if rng.random() < 0.03 and entries:
        # One entry that isn't an object fails the whole file.
        entries.insert(rng.randrange(len(entries) + 1), rng.choice((1, "x", None, [], True)))
    if rng.random() < 0.02:
        document["colors"] = rng.choice(({"0": {"hex": "#FFFFFF"}}, "#FFFFFF", None, 3))
    return shuffled(rng, document)


FIXED_FILES = (
    b'{"name":"X","colors":[]}',
    b'{"name":"X","colors":[1]}',
    b'{"name":"X","colors":[{"hex":" #abc "}]}',
    b'{"name":"X","colors":[{"hex":"#ABCD"},{"hex":"abc","name":"  "}]}',
    b'{"name":"","colors":[{"hex":"#000000","name":"Ink"}]}',
    b'{"name":"X","colors":[{"hex":"#000000","dividerLabel":"Lost"}]}',
    b'{"name":"X","colors":[{"hex":"#000000","dividerBefore":1,"dividerLabel":"L"}]}',
    b'{"name":"X","colors":[{"hex":"#000000","dividerBefore":true,"dividerLabel":7}]}',
    b'[{"name":"X","colors":[{"hex":"#000000"}]}]',
    b'"X"',
    b'null',
    b'',
    b'   ',
    b'{"name":"X","colors":[{"hex":"#000000"}]',
    b'{"name":"X","colors":[{"hex":"#000000"},]}',
    b"{'name':'X','colors':[{'hex':'#000000'}]}",
    b'{"name":"X","colors":[{"hex":"#000000"}]} x',
    b'{"name":"X","colors":[{"hex":"#000000"}]}\n',
    b'{"name":"X\\u00e9\\ud83c\\udfa8","colors":[{"hex":"#000000","name":"\\n\\tTab\\t"}]}',
    b'{"name":"X","colors":{"hex":"#000000"}}',
    b'{"name":7,"colors":[{"hex":"#000000"}]}',
    b'{"colors":[{"hex":"#000000"}]}',
    b'{"name":"X"}',
    b'{"name":"X","colors":[{"hex":"#000000"}],"version":"3.0"}',
    b'\xff\xfe{}',
    b'{"name":"\xc3","colors":[{"hex":"#000000"}]}',
    b'{"name":"X","colors":[{"hex":"#000000","name":"a\\u0000b"}]}',
    b'{"name":"X","colors":[{"hex":"#GGGGGG"}]}',
    json.dumps({"name": "🎨🇫🇷" * 50, "colors": [{"hex": "#000000"}]}).encode(),
    json.dumps({"name": "F", "colors": [{"hex": "#000000", "name": "✨🇫🇷" * 60,
                                         "dividerBefore": True,
                                         "dividerLabel": "🎨🇫🇷" * 30}]}).encode(),
)


def sized_file(rng, size, where):
    """A valid palette file of exactly `size` bytes, padded with blanks or inside a string."""
    document = {"name": "Big %d" % size, "colors": [{"hex": "#%s" % random_six(rng),
                                                      "name": "Only"}]}
    base = json.dumps(document).encode("utf-8")
    if where == "blanks":
        return base[:-1] + b" " * (size - len(base)) + b"}"
    filler_overhead = len(json.dumps(dict(document, pad="")).encode("utf-8"))
    document["pad"] = "p" * (size - filler_overhead)
    data = json.dumps(document).encode("utf-8")
    assert len(data) == size
    return data


def make_files(rng, count):
    files = [("random file", serialise(rng, random_file_document(rng, n))) for n in range(count)]
    files += [("fixed file", data) for data in FIXED_FILES]
    for size in (1048576, 1048577):
        files.append(("%d bytes, padded with blanks" % size, sized_file(rng, size, "blanks")))
        files.append(("%d bytes, padded in a string" % size, sized_file(rng, size, "string")))
    files.append(("200 entries, 199 unreadable", json.dumps(
        {"name": "Two hundred", "colors": [{"hex": "nope"}] * 199 + [{"hex": "#102030"}]})
        .encode()))
    files.append(("201 entries, 200 unreadable", json.dumps(
        {"name": "Too many", "colors": [{"hex": "nope"}] * 200 + [{"hex": "#102030"}]})
        .encode()))
    files.append(("201 entries, 200 without a code", json.dumps(
        {"name": "Too many", "colors": [{"name": "n"}] * 200 + [{"hex": "#102030"}]})
        .encode()))
    rng.shuffle(files)
    return files


def seed_palette(rng, name, colours):
    items = [{"id": upper_uuid(rng), "name": n, "hex": h, "isAutoNamed": False,
              "isLocked": False, "dividerBefore": d, "dividerLabel": l}
             for n, h, d, l in colours]
    stamp = 1700000000000.0
    return {"id": upper_uuid(rng), "name": name, "colors": items, "createdAt": stamp,
            "updatedAt": stamp, "revision": 3, "isLocked": False,
            "contentHash": ref.content_hash(name, items)}


def seed_palettes(rng):
    """What each import home starts with: names that files reuse, and one palette that a fixed
    file equals (codes written differently, a lock and ids that don't count)."""
    seeds = [
        seed_palette(rng, "Sky", [("Blue", "#87CEEB", False, "")]),
        seed_palette(rng, "X", [("Gray", "#aabbcc", False, ""), ("Ink", "#000000", True, "")]),
        seed_palette(rng, "Brand", [("Primary", "#FF0000", False, ""),
                                    ("Sky", "#87CEEB", True, "Soft")]),
    ]
    seeds[2]["colors"][0]["isLocked"] = True
    seeds[2]["contentHash"] = ref.content_hash("Brand", seeds[2]["colors"])
    return seeds


SAME_AS_SEED = b'{"name":"Brand","colors":[{"hex":"f00","name":"Primary"},' \
    b'{"hex":"#87ceeb","name":"Sky","dividerBefore":true,"dividerLabel":"Soft"}]}'

UUID_TEXT = re.compile(r"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$")


def check_new_record(record, name, colours):
    """Mismatches between `show --json` of a palette just made and what the model made."""
    mismatches = []
    if not isinstance(record, dict):
        return [("show --json", "an object", record)]
    if record.get("name") != name:
        mismatches.append((".name", name, record.get("name")))
    got = record.get("colors")
    want = [{"name": c["name"], "hex": c["hex"], "isAutoNamed": c["isAutoNamed"],
             "isLocked": False, "dividerBefore": c["dividerBefore"],
             "dividerLabel": c["dividerLabel"]} for c in colours]
    if not isinstance(got, list) or len(got) != len(want):
        mismatches.append((".colors", want, got))
        return mismatches
    for index, (w, g) in enumerate(zip(want, got)):
        if not isinstance(g, dict):
            mismatches.append((".colors[%d]" % index, w, g))
            continue
        compare(w, {key: g.get(key) for key in w}, ".colors[%d]" % index, mismatches)
        if not isinstance(g.get("id"), str) or not UUID_TEXT.match(g["id"]):
            mismatches.append((".colors[%d].id" % index, "an upper-case UUID", g.get("id")))
    ids = [g.get("id") for g in got if isinstance(g, dict)]
    if len(set(ids)) != len(ids):
        mismatches.append((".colors ids", "unique", ids))
    if record.get("revision") != 1:
        mismatches.append((".revision", 1, record.get("revision")))
    if record.get("isLocked") is not False:
        mismatches.append((".isLocked", False, record.get("isLocked")))
    if "updatedByDeviceId" in record:
        mismatches.append((".updatedByDeviceId", "absent", record["updatedByDeviceId"]))
    if record.get("createdAt") != record.get("updatedAt") or not isinstance(
            record.get("createdAt"), (int, float)):
        mismatches.append((".createdAt/.updatedAt", "equal times",
                           (record.get("createdAt"), record.get("updatedAt"))))
    if not isinstance(record.get("id"), str) or not UUID_TEXT.match(record["id"]):
        mismatches.append((".id", "an upper-case UUID", record.get("id")))
    if not mismatches:
        want_hash = ref.content_hash(name, got)
        if record.get("contentHash") != want_hash:
            mismatches.append((".contentHash", want_hash, record.get("contentHash")))
    return mismatches


def import_one(binary, env, cwd, argument, parsed_or_error, model, active):
    """Runs `import`, checks the message and `show --json`, and updates the model. Returns
    (mismatches, new active id, what happened). `parsed_or_error` is (name, colours, None) or
    (None, None, message); a message of None means "one line, any words"."""
    name, colours, error = parsed_or_error
    status, stdout, stderr = run_in(binary, ["import", argument], env, cwd)
    mismatches = []
    if name is None:
        if status != 1:
            mismatches.append(("exit status", 1, status))
        if stderr.count("\n") != 1 or not stderr.endswith("\n"):
            mismatches.append(("stderr", "one line", stderr))
        elif error is not None and stderr.rstrip("\n") != error:
            mismatches.append(("message", error, stderr.rstrip("\n")))
        if stdout:
            mismatches.append(("stdout", "", stdout))
        return mismatches, active, "refused: %s" % (error or "link")
    found = ref.find_identical_palette(name, colours, model)
    if found is not None:
        message = ref.ALREADY_HAVE
        final_name = model[found]["name"]
    else:
        final_name = ref.unique_palette_name(name, [p["name"] for p in model])
        message = 'Imported "%s"' % final_name
    if status != 0 or stdout[:-1] != message or not stdout.endswith("\n"):
        mismatches.append(("import", message, "status %d %r %r" % (status, stdout, stderr)))
        return mismatches, active, None
    status, record, parse_error, stdout, stderr = run_env_cwd(binary, ["show", "--json"], env, cwd)
    if status != 0 or parse_error:
        mismatches.append(("show --json", "status 0 and JSON", "status %d %s %r" % (
            status, parse_error or "", stderr)))
        return mismatches, active, None
    if found is not None:
        if not isinstance(record, dict) or record.get("id") != model[found]["id"]:
            mismatches.append(("active palette", model[found]["id"],
                               record.get("id") if isinstance(record, dict) else record))
        return mismatches, model[found]["id"], "already there"
    mismatches += check_new_record(record, final_name, colours)
    if mismatches:
        return mismatches, active, None
    model.append({"id": record["id"], "name": final_name, "colors": record["colors"]})
    return mismatches, record["id"], "imported" + (" under a new name" if final_name != name
                                                   else "")


def store_as_read(binary, env, cwd):
    """The program's own list of palettes (id, name, colours) and its active id, or None: after
    a mismatch the model starts again from what the program holds, so that one fault isn't
    reported again by every later step of the home."""
    status, listed, _, _, _ = run_env_cwd(binary, ["palettes", "--json"], env, cwd)
    if status != 0 or not isinstance(listed, list):
        return None
    model, active = [], None
    for entry in listed:
        status, record, _, _, _ = run_env_cwd(binary, ["show", entry["id"], "--json"], env, cwd)
        if status != 0 or not isinstance(record, dict):
            return None
        model.append({"id": record["id"], "name": record["name"], "colors": record["colors"]})
        if entry.get("isActive"):
            active = entry["id"]
    return model, active


def run_in(binary, arguments, env, cwd):
    completed = subprocess.run([binary] + arguments, capture_output=True, env=env, cwd=cwd,
                               timeout=60)
    return (completed.returncode, completed.stdout.decode("utf-8", errors="replace"),
            completed.stderr.decode("utf-8", errors="replace"))


def run_env_cwd(binary, arguments, env, cwd):
    status, stdout, stderr = run_in(binary, arguments, env, cwd)
    parsed, parse_error = None, None
    if stdout.strip():
        try:
            parsed = json.loads(stdout, object_pairs_hook=no_duplicates)
        except ValueError as error:
            parse_error = str(error)
    return status, parsed, parse_error, stdout, stderr


def describe_file(data):
    if len(data) > 400:
        return "%d bytes beginning %r" % (len(data), data[:160])
    return repr(data)


def run_import_home(binary, root, number, files, links, rng):
    home = os.path.join(root, "import-%d" % number)
    work = os.path.join(home, "files")
    os.makedirs(work, exist_ok=True)
    seeds = seed_palettes(rng)
    write_preferences(home, seeds, seeds[0]["id"])
    env = home_env(home)
    results = []
    store = verify_store(binary, env, seeds, seeds[0]["id"])
    results.append(("palettes --json of import home %d" % number, store, None))
    if store:
        return results
    model = [{"id": s["id"], "name": s["name"], "colors": s["colors"]} for s in seeds]
    active = seeds[0]["id"]
    steps = [("file", label, data) for label, data in files] + \
        [("link", label, text) for label, text in links]
    rng.shuffle(steps)
    for index, (kind, label, content) in enumerate(steps):
        if kind == "file":
            extension = rng.choice((".hueshelf", ".hueshelf", ".hueshelf", ".HueShelf"))
            path = os.path.join(work, "palette-%d%s" % (index, extension))
            with open(path, "wb") as stream:
                stream.write(content)
            result = ref.parse_palette_file(content)
            expected = (result["name"], result["colors"], None) if result["errorMessage"] is None \
                else (None, None, result["errorMessage"])
            argument, shown = path, "%s %s" % (label, describe_file(content))
        else:
            palette, case = ref.decode_case(content)
            expected = (None, None, None) if palette is None else (
                palette["name"], [dict(c, isAutoNamed=False) for c in palette["colors"]], None)
            argument, shown = content, "%s %r" % (label, content)
        tries = 2 if expected[0] is not None and rng.random() < 0.3 else 1
        for attempt in range(tries):
            mismatches, active, outcome = import_one(binary, env, work, argument, expected,
                                                     model, active)
            results.append(("import %s%s (home %d)" % (shown, " again" if attempt else "",
                                                      number), mismatches,
                            "import %s: %s" % (kind, outcome)))
            if mismatches:
                held = store_as_read(binary, env, work)
                if held is None:
                    return results
                model[:], active = held
                break
    results.append(("palettes --json after the imports of home %d" % number,
                    verify_store(binary, env, model, active), None))
    return results


def make_import_homes(rng, file_count, link_count):
    files = make_files(rng, file_count)
    files.append(("the same as a stored palette", SAME_AS_SEED))
    links = []
    for _ in range(link_count):
        if rng.random() < 0.8:
            text, _, _ = base_link(rng)
            if rng.random() < 0.3:
                text = "hueshelf://import#" + text.split("#", 1)[1]
        else:
            _, text = mangle(rng, base_link(rng)[0])
        if not text.startswith("-"):
            links.append(("link", text))
    links.append(("link equal to a stored palette",
                  P + "Brand;Primary:FF0000,|Soft|Sky:87CEEB"))
    links.append(("link named like a stored palette", P + "Sky;Blue:87CEEB,Navy:000080"))
    homes = max(1, (len(files) + FILES_PER_HOME - 1) // FILES_PER_HOME)
    groups = [([], []) for _ in range(homes)]
    for i, item in enumerate(files):
        groups[i % homes][0].append(item)
    for i, item in enumerate(links):
        groups[i % homes][1].append(item)
    return groups


# --- the model against the rules' own examples ---------------------------------------------------


def decoded(text):
    palette, case = ref.decode_case(text)
    return palette if palette is not None else case


def read(data):
    result = ref.parse_palette_file(data)
    return result["errorMessage"] or [(c["name"], c["hex"], c["isAutoNamed"], c["dividerBefore"],
                                       c["dividerLabel"]) for c in result["colors"]]


C = ref.link_color
SELF_EXAMPLES = (
    ("the described link", lambda: ref.encode("Brand", [C("Primary", "#FF0000"),
                                                        C("Sky", "87ceeb", True, "Soft")]),
     P + "Brand;Primary:FF0000,|Soft|Sky:87CEEB"),
    ("a:b round-trips escaped", lambda: ref.encode("X", [C("a:b", "#000000")]),
     P + "X;a%3Ab:000000"),
    ("a raw a:b:FF0000 field", lambda: decoded(P + "X;a:b:FF0000"), "malformed"),
    ("%7c at a head", lambda: decoded(P + "X;%7cSoft%7cSky:87CEEB"),
     decoded(P + "X;|Soft|Sky:87CEEB")),
    ("%7C inside a label", lambda: decoded(P + "X;|a%7Cb|Name:FF0000")["colors"][0]
     ["dividerLabel"], "a|b"),
    ("two pipes", lambda: decoded(P + "X;||Sky:87CEEB"), "malformed"),
    ("one pipe", lambda: decoded(P + "X;|Sky:87CEEB")["colors"][0],
     C("Sky", "#87CEEB", True, "")),
    ("trailing comma", lambda: decoded(P + "X;A:000000,"), "malformed"),
    ("lower-case code", lambda: decoded(P + "X;A:abcdef")["colors"][0]["hex"], "#ABCDEF"),
    ("version 2, three fields", lambda: decoded("2;X;A:000000"), "unknownVersion"),
    ("version 2, four fields", lambda: decoded("2;X;A:000000;"), "malformed"),
    ("41 colours", lambda: decoded("1;X;" + ",".join(["A:000000"] * 41)), "tooManyColors"),
    ("61-character name", lambda: decoded("1;" + "a" * 61 + ";A:000000"), "paletteNameTooLong"),
    ("a label too long without a divider", lambda: ref.encode("X", [C("A", "#000000", False,
                                                                      "a" * 41)]),
     None),
    ("a stale label isn't shared", lambda: ref.encode_template(
        {"name": "X", "colors": [{"name": "A", "hex": "#000000", "dividerBefore": False,
                                  "dividerLabel": "a" * 41}]}), P + "X;A:000000"),
    ("three digits refused in a link", lambda: decoded("1;X;A:FFF"), "badHex"),
    ("emoji family is one character", lambda: ref.length("👨\u200d👩\u200d👧"), 1),
    ("flags pair up", lambda: ref.length("🇫🇷🇩🇪🇫"), 3),
    ("CR LF is one character", lambda: ref.length("a\r\nb"), 3),
    ("raw letters and marks, escaped symbols", lambda: ref.percent_encode("é e\u0301€𝐀!"),
     "é%20e\u0301%E2%82%AC𝐀!"),
    ("empty file list", lambda: read(b'{"name":"X","colors":[]}'), ref.NO_COLORS),
    ("a number in the list", lambda: read(b'{"name":"X","colors":[1]}'), ref.NOT_A_PALETTE_FILE),
    ("short code with blanks", lambda: read(b'{"name":"X","colors":[{"hex":" #abc "}]}')[0][1],
     "#AABBCC"),
    ("four digits skipped", lambda: read(b'{"name":"X","colors":[{"hex":"#ABCD"}]}'),
     ref.NO_COLORS),
    ("blank name generated", lambda: read(
        b'{"name":"X","colors":[{"hex":"#000000","name":"   "}]}')[0][2], True),
    ("label without divider dropped", lambda: read(
        b'{"name":"X","colors":[{"hex":"#000000","dividerLabel":"L"}]}')[0][3:], (False, "")),
    ("1 is no divider", lambda: read(
        b'{"name":"X","colors":[{"hex":"#000000","dividerBefore":1}]}')[0][3], False),
    ("201 entries refused", lambda: read(json.dumps(
        {"name": "X", "colors": [{"hex": "x"}] * 200 + [{"hex": "#000000"}]}).encode()),
     ref.TOO_MANY_COLORS),
    ("101-character name refused", lambda: read(json.dumps(
        {"name": "a" * 101, "colors": [{"hex": "#000000"}]}).encode()), ref.NAME_TOO_LONG),
    ("one byte too many", lambda: read(b" " * 1048577), ref.TOO_LARGE),
    ("unique names", lambda: ref.unique_palette_name("A", ["A", "A (1)", "a (2)"]), "A (2)"),
    ("white space isn't U+001F", lambda: ref.trim_white("\x1f a \u3000"), "\x1f a"),
)


def check_model():
    wrong = []
    for what, compute, expected in SELF_EXAMPLES:
        try:
            actual = compute()
        except ref.LinkError as error:
            actual = error.case
        except (IndexError, KeyError, TypeError) as error:
            actual = "%s: %s" % (type(error).__name__, error)
        if expected is None:
            if actual != "colorNameTooLong":
                wrong.append("%s: the model gives %r" % (what, actual))
            continue
        if actual != expected:
            wrong.append("%s: the model gives %r, the rules say %r" % (what, actual, expected))
    if ref.EXACT_CLUSTERS:
        # The fallback counter must agree with the real one on everything the pools make.
        rng = random.Random(1)
        for _ in range(300):
            text = "".join(atom(rng, rng.choice(list(STYLES))) for _ in range(rng.randint(1, 30)))
            if ref.length(text) != len(ref.approximate_clusters(text)):
                wrong.append("character counters disagree on %r" % text)
                break
    return wrong


# --- main ---------------------------------------------------------------------------------------


def report(tally, show):
    # Hand-made and short inputs first: they are the readable reproductions.
    for label, mismatches in sorted(tally.reports,
                                    key=lambda r: (not r[0].startswith("fixed"), len(r[0])))[:show]:
        print("MISMATCH %s" % label)
        for path, want, got in mismatches[:6]:
            print("    %-22s expected %s" % (path or "(value)", short(want)))
            print("    %-22s actual   %s" % ("", short(got)))
    if len(tally.reports) > show:
        print("... and %d more mismatching cases" % (len(tally.reports) - show))


def short(value):
    text = repr(value)
    return text if len(text) <= 700 else text[:700] + "..."


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--binary", required=True, help="path of the hueshelf executable")
    parser.add_argument("--seed", type=int, default=DEFAULT_SEED)
    parser.add_argument("--count", type=int, default=400,
                        help="random cases: link texts; stored palettes and files are a fraction")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    parser.add_argument("--show", type=int, default=15, help="mismatches to print")
    options = parser.parse_args()
    # Imports run inside their homes' folders.
    options.binary = os.path.abspath(options.binary)

    wrong = check_model()
    if wrong:
        print("The reference model contradicts the rules' own examples:")
        print("\n".join("    " + line for line in wrong))
        print("0 passed, %d failed" % len(wrong))
        return 1

    link_cases = make_link_cases(random.Random(options.seed), options.count)
    stored_homes = make_stored_homes(random.Random(options.seed + 1), max(4, options.count // 5))
    import_homes = make_import_homes(random.Random(options.seed + 2),
                                     max(4, options.count * 3 // 10), max(2, options.count // 20))
    coverage = {}
    tally = Tally()
    with tempfile.TemporaryDirectory(prefix="hueshelf-exchange-differential-") as root:
        empty_home = os.path.join(root, "links")
        os.makedirs(empty_home)
        env = home_env(empty_home)
        with concurrent.futures.ThreadPoolExecutor(max_workers=max(1, options.jobs)) as pool:
            decodes = [pool.submit(check_decode, options.binary, env, text,
                                   "%s: link --decode %r" % (label, text), round_trip)
                       for label, text, round_trip in link_cases]
            homes = [pool.submit(run_stored_home, options.binary, root, n, palettes,
                                 random.Random(options.seed + 10 + n))
                     for n, palettes in enumerate(stored_homes)]
            homes += [pool.submit(run_import_home, options.binary, root, n, files, links,
                                  random.Random(options.seed + 100 + n))
                      for n, (files, links) in enumerate(import_homes)]
            for future in decodes:
                label, mismatches, case = future.result()
                tally.record(label, mismatches)
                key = "decode: " + (case or "accepted")
                coverage[key] = coverage.get(key, 0) + 1
            for future in homes:
                for label, mismatches, key in future.result():
                    tally.record(label, mismatches)
                    if key:
                        coverage[key] = coverage.get(key, 0) + 1
    report(tally, options.show)
    print("seed %d: %d link texts, %d stored palettes in %d homes, %d imports in %d homes"
          % (options.seed, len(link_cases), sum(len(h) for h in stored_homes), len(stored_homes),
             sum(len(f) + len(l) for f, l in import_homes), len(import_homes)))
    print("covered: " + ", ".join("%s %d" % item for item in sorted(coverage.items())))
    print("%d passed, %d failed" % (tally.passed, tally.failed))
    return 1 if tally.failed else 0


if __name__ == "__main__":
    sys.exit(main())
