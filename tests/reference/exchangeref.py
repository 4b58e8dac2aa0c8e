"""Reference model of HueShelf's palette link and palette file, written from the description of
both formats apart from the C++ sources, and of what importing does to the store. A palette is
{"name", "colors": [{"name", "hex", "dividerBefore", "dividerLabel"}]}; a refused link raises
LinkError. Lengths count user-perceived characters, the grapheme clusters of regex's \\X.
"""

import hashlib
import json
import unicodedata

import regex

import colorref

LINK_LIMIT, MAX_LINK_COLORS, MAX_LINK_PALETTE_NAME, MAX_LINK_COLOR_NAME = 2000, 40, 60, 40
FILE_SIZE_LIMIT, MAX_FILE_PALETTE_NAME, MAX_FILE_ENTRIES = 1048576, 100, 200
MAX_FILE_COLOR_NAME, MAX_FILE_LABEL = 100, 40

# What the share action says for each refusal; every other case has the generic text.
SHARE_MESSAGES = {
    "tooManyColors": "Links hold up to 40 colors",
    "paletteNameTooLong": "The palette name is too long for a link (60 characters max)",
    "colorNameTooLong": "A color name is too long for a link (40 characters max)",
}
SHARE_FALLBACK = "Couldn't make a link for this palette"

TOO_LARGE = "File is too large. Maximum size is 1 MB."
NOT_A_PALETTE_FILE = "That isn't a HueShelf palette file."
NAME_TOO_LONG = "Palette name is too long. Maximum 100 characters."
TOO_MANY_COLORS = "Palette has too many colors. Maximum 200."
NO_COLORS = "That file has no colors HueShelf can read."
ALREADY_HAVE = "You already have this palette."

# Unicode White_Space: what "white space and line ends" means to a trimmer that knows Unicode.
# str.strip() would also take U+001C..U+001F, which aren't white space.
WHITE_SPACE = "\t\n\v\f\r \x85\xa0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007" \
    "\u2008\u2009\u200a\u2028\u2029\u202f\u205f\u3000"
CLUSTER = regex.compile(r"\X", regex.DOTALL)


class LinkError(Exception):
    def __init__(self, case):
        super().__init__(case)
        self.case = case


def length(text):
    return len(CLUSTER.findall(text))


def prefix_of(text, count):
    return "".join(CLUSTER.findall(text)[:count])


def percent_encode(text):
    """Letters, marks, digits and -_.!~*'() stay raw; everything else is escaped as UTF-8."""
    return "".join(ch if unicodedata.category(ch)[0] in "LMN" or ch in "-_.!~*'()"
                   else "".join("%%%02X" % b for b in ch.encode("utf-8")) for ch in text)


def percent_decode(text):
    """The decoded text, or None for a "%" without two hex digits or bytes that aren't UTF-8."""
    first, *escaped = text.split("%")
    out = first.encode("utf-8")
    for part in escaped:
        if not colorref.is_hex(part[:2], (2,)):
            return None
        out += bytes([int(part[:2], 16)]) + part[2:].encode("utf-8")
    try:
        return out.decode("utf-8")
    except UnicodeDecodeError:
        return None


def normalize_link_hex(text):
    rest = colorref.without_hash(text)
    return "#" + rest.upper() if colorref.is_hex(rest) else None


def link_color(name, hex_code, divider=False, label=""):
    return {"name": name, "hex": hex_code, "dividerBefore": divider, "dividerLabel": label}


def validate(name, colors):
    if not colors:
        raise LinkError("malformed")
    if len(colors) > MAX_LINK_COLORS:
        raise LinkError("tooManyColors")
    if name == "":
        raise LinkError("emptyName")
    if length(name) > MAX_LINK_PALETTE_NAME:
        raise LinkError("paletteNameTooLong")
    for color in colors:
        if color["name"] == "":
            raise LinkError("emptyName")
        # The label is checked whatever dividerBefore says.
        if max(length(color["name"]), length(color["dividerLabel"])) > MAX_LINK_COLOR_NAME:
            raise LinkError("colorNameTooLong")


def assemble(name, colors):
    """The link as the encoder lays it out, without checks, each code as given less one "#"."""
    fields = []
    for color in colors:
        head = ""
        if color["dividerBefore"]:
            label = color["dividerLabel"]
            head = "|" + percent_encode(label) + "|" if label else "|"
        fields.append(head + percent_encode(color["name"]) + ":" + colorref.without_hash(
            color["hex"]))
    return "https://hueshelf.app/p/#1;" + percent_encode(name) + ";" + ",".join(fields)


def encode(name, colors):
    validate(name, colors)
    if any(normalize_link_hex(color["hex"]) is None for color in colors):
        raise LinkError("badHex")
    text = assemble(name, [dict(c, hex=normalize_link_hex(c["hex"])) for c in colors])
    if length(text) > LINK_LIMIT:
        raise LinkError("tooLong")
    return text


def encode_template(template):
    """What the share action makes of a stored palette: the label only behind a divider."""
    return encode(template["name"], [
        link_color(item["name"], item["hex"], item["dividerBefore"],
                   item["dividerLabel"] if item["dividerBefore"] else "")
        for item in template["colors"]])


def _decode_color_field(field):
    if field[:3].lower() == "%7c":
        field = field.replace("%7C", "|").replace("%7c", "|")
    divider, label, remainder = False, "", field
    if field.startswith("|"):
        divider = True
        remainder = field[1:]
        if "|" in remainder:
            raw_label, remainder = remainder.split("|", 1)
            label = percent_decode(raw_label)
            if not label:
                raise LinkError("malformed")
    parts = remainder.split(":")
    if len(parts) != 2 or "|" in parts[0]:
        raise LinkError("malformed")
    name = percent_decode(parts[0])
    if name is None:
        raise LinkError("malformed")
    if name == "":
        raise LinkError("emptyName")
    code = normalize_link_hex(parts[1])
    if code is None:
        raise LinkError("badHex")
    return link_color(name, code, divider, label)


def decode(text):
    if text == "":
        raise LinkError("empty")
    if length(text) > LINK_LIMIT:
        raise LinkError("tooLong")
    fields = text[text.find("#") + 1:].split(";")
    if len(fields) != 3:
        raise LinkError("malformed")
    if fields[0] != "1":
        raise LinkError("unknownVersion")
    name = percent_decode(fields[1])
    if name is None:
        raise LinkError("malformed")
    if name == "":
        raise LinkError("emptyName")
    if fields[2] == "":
        raise LinkError("malformed")
    colors = [_decode_color_field(field) for field in fields[2].split(",")]
    validate(name, colors)
    return {"name": name, "colors": colors}


def decode_case(text):
    """(palette, None) or (None, error case)."""
    try:
        return decode(text), None
    except LinkError as error:
        return None, error.case


def trim_white(text):
    return text.strip(WHITE_SPACE)


def normalize_file_hex(text):
    rest = colorref.without_hash(trim_white(text))
    return colorref.canonical_hex(rest) if colorref.is_hex(rest, (3, 6)) else None


def _not_json(word):
    raise ValueError("not JSON: %s" % word)


def _json_value(data):
    """The JSON value of UTF-8, or None; NaN and Infinity aren't JSON. One byte order mark in
    front, as some editors write, is passed over; a second one is text, and not JSON."""
    try:
        text = data.decode("utf-8")
        text = text[1:] if text.startswith("\ufeff") else text
        return json.loads(text, parse_constant=_not_json)
    except (UnicodeDecodeError, ValueError, RecursionError):
        return None


def file_failure(message):
    return {"name": None, "colors": [], "errorMessage": message}


def parse_palette_file(data):
    """Bytes to {"name", "colors", "errorMessage"}."""
    if len(data) > FILE_SIZE_LIMIT:
        return file_failure(TOO_LARGE)
    document = _json_value(data)
    name = document.get("name") if isinstance(document, dict) else None
    entries = document.get("colors") if isinstance(document, dict) else None
    if not isinstance(name, str) or not isinstance(entries, list) \
            or any(not isinstance(entry, dict) for entry in entries):
        return file_failure(NOT_A_PALETTE_FILE)
    if length(name) > MAX_FILE_PALETTE_NAME:
        return file_failure(NAME_TOO_LONG)
    if len(entries) > MAX_FILE_ENTRIES:
        return file_failure(TOO_MANY_COLORS)
    colors = []
    for entry in entries:
        raw_hex = entry.get("hex")
        code = normalize_file_hex(raw_hex) if isinstance(raw_hex, str) else None
        if code is None:
            continue
        raw_name = entry.get("name")
        given = trim_white(raw_name) if isinstance(raw_name, str) else ""
        divider = entry.get("dividerBefore") is True
        raw_label = entry.get("dividerLabel") if divider else None
        colors.append({
            "name": prefix_of(given, MAX_FILE_COLOR_NAME) if given else colorref.color_name(code),
            "hex": code, "isAutoNamed": not given, "dividerBefore": divider,
            "dividerLabel": prefix_of(raw_label, MAX_FILE_LABEL) if isinstance(raw_label, str)
            else ""})
    if not colors:
        return file_failure(NO_COLORS)
    return {"name": name, "colors": colors, "errorMessage": None}


def export_dictionary(name, colors, exported_at):
    """The writer's object; `colors` are stored colour records."""
    written = []
    for item in colors:
        entry = {"hex": item["hex"], "name": item["name"]}
        if item["dividerBefore"]:
            entry["dividerBefore"] = True
            if item["dividerLabel"] != "":
                entry["dividerLabel"] = item["dividerLabel"]
        written.append(entry)
    return {"colors": written, "exportedAt": exported_at, "name": name, "version": "2.0"}


def find_identical_palette(name, colors, templates):
    """Index of the first stored palette equal to the given one, or None."""
    for index, template in enumerate(templates):
        if template["name"] != name or len(template["colors"]) != len(colors):
            continue
        if all(colorref.without_hash(trim_white(a["hex"]).upper())
               == colorref.without_hash(trim_white(b["hex"]).upper())
               and a["name"] == b["name"] and a["dividerBefore"] == b["dividerBefore"]
               and (not a["dividerBefore"] or a["dividerLabel"] == b["dividerLabel"])
               for a, b in zip(template["colors"], colors)):
            return index
    return None


def unique_palette_name(name, existing):
    if name not in existing:
        return name
    number = 1
    while "%s (%d)" % (name, number) in existing:
        number += 1
    return "%s (%d)" % (name, number)


def content_hash(name, colors):
    text = name
    for item in colors:
        text += "|%s:%s:%s:%s:%s" % (item["id"].upper(), item["name"], item["hex"],
                                     "true" if item["isAutoNamed"] else "false",
                                     "true" if item["isLocked"] else "false")
        if item["dividerBefore"]:
            text += "|d:" + item["dividerLabel"] if item["dividerLabel"] else "|d"
    return hashlib.sha256(text.encode("utf-8")).digest()[:8].hex()
