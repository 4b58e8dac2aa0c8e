"""Reference model of HueShelf's palette link and palette file, written apart from the C++ sources.

exchange_differential.py holds the real binary against this second reading of the two formats:
the link codec (encode, decode and the limit check they share, with its percent-encoding and the
repair of an escaped leading pipe), the palette file reader with its messages in their order, the
writer's object, and what importing does to the store (the identity search, unique names, the
content hash of the new record).

Palettes of a link are dicts {"name", "colors": [{"name", "hex", "dividerBefore",
"dividerLabel"}]}, the shape `hueshelf link --decode --json` prints. A refused link raises
LinkError, whose `case` is the error's name.
"""

import hashlib
import json
import unicodedata

try:
    import regex as _regex
except ImportError:  # pragma: no cover - depends on the machine
    _regex = None

import colorref

LINK_HOST = "hueshelf.app"
LINK_LIMIT = 2000
MAX_LINK_COLORS = 40
MAX_LINK_PALETTE_NAME = 60
MAX_LINK_COLOR_NAME = 40

FILE_SIZE_LIMIT = 1048576
MAX_FILE_PALETTE_NAME = 100
MAX_FILE_ENTRIES = 200
MAX_FILE_COLOR_NAME = 100
MAX_FILE_LABEL = 40

LINK_ERROR_CASES = ("empty", "tooLong", "unknownVersion", "malformed", "badHex", "tooManyColors",
                    "paletteNameTooLong", "colorNameTooLong", "emptyName")

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

HEX_DIGITS = "0123456789abcdefABCDEF"
# The nine characters kept raw beside letters, marks and digits.
UNRESERVED_EXTRA = "-_.!~*'()"

# Unicode White_Space: what "white space and line ends" means to a trimmer that knows Unicode.
# Python's str.strip() would also take U+001C..U+001F, which aren't white space.
WHITE_SPACE = frozenset(
    "\t\n\v\f\r \x85\xa0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009"
    "\u200a\u2028\u2029\u202f\u205f\u3000")


class LinkError(Exception):
    def __init__(self, case):
        super().__init__(case)
        assert case in LINK_ERROR_CASES, case
        self.case = case


# --- user-perceived characters ------------------------------------------------------------------


def _in(cp, ranges):
    return any(low <= cp <= high for low, high in ranges)


# A fair approximation of Extended_Pictographic: the emoji blocks and the older symbols that
# emoji sequences are built on.
_PICTOGRAPHIC = ((0x00A9, 0x00A9), (0x00AE, 0x00AE), (0x203C, 0x203C), (0x2049, 0x2049),
                 (0x2122, 0x2122), (0x2139, 0x2139), (0x2194, 0x2199), (0x21A9, 0x21AA),
                 (0x231A, 0x231B), (0x2328, 0x2328), (0x2388, 0x2388), (0x23CF, 0x23CF),
                 (0x23E9, 0x23F3), (0x23F8, 0x23FA), (0x24C2, 0x24C2), (0x25AA, 0x25AB),
                 (0x25B6, 0x25B6), (0x25C0, 0x25C0), (0x25FB, 0x25FE), (0x2600, 0x27BF),
                 (0x2934, 0x2935), (0x2B05, 0x2B07), (0x2B1B, 0x2B1C), (0x2B50, 0x2B50),
                 (0x2B55, 0x2B55), (0x3030, 0x3030), (0x303D, 0x303D), (0x3297, 0x3297),
                 (0x3299, 0x3299), (0x1F000, 0x1F0FF), (0x1F10D, 0x1F10F), (0x1F12F, 0x1F12F),
                 (0x1F16C, 0x1F171), (0x1F17E, 0x1F17F), (0x1F18E, 0x1F18E),
                 (0x1F191, 0x1F19A), (0x1F1AD, 0x1F1E5), (0x1F201, 0x1F20F),
                 (0x1F21A, 0x1F21A), (0x1F22F, 0x1F22F), (0x1F232, 0x1F23A),
                 (0x1F23C, 0x1F23F), (0x1F249, 0x1F3FA), (0x1F400, 0x1F53D),
                 (0x1F546, 0x1F64F), (0x1F680, 0x1F6FF), (0x1F774, 0x1F77F),
                 (0x1F7D5, 0x1F7FF), (0x1F80C, 0x1F80F), (0x1F848, 0x1F84F),
                 (0x1F85A, 0x1F85F), (0x1F888, 0x1F88F), (0x1F8AE, 0x1F8FF),
                 (0x1F90C, 0x1F93A), (0x1F93C, 0x1F945), (0x1F947, 0x1FAFF),
                 (0x1FC00, 0x1FFFD))


def _break_class(ch):
    cp = ord(ch)
    if ch == "\r":
        return "CR"
    if ch == "\n":
        return "LF"
    if cp == 0x200D:
        return "ZWJ"
    if 0x1F1E6 <= cp <= 0x1F1FF:
        return "RI"
    if 0x1F3FB <= cp <= 0x1F3FF or 0xFE00 <= cp <= 0xFE0F or 0xE0020 <= cp <= 0xE007F \
            or cp == 0x200C:
        return "Extend"
    if 0x1100 <= cp <= 0x115F or 0xA960 <= cp <= 0xA97C:
        return "L"
    if 0x1160 <= cp <= 0x11A7 or 0xD7B0 <= cp <= 0xD7C6:
        return "V"
    if 0x11A8 <= cp <= 0x11FF or 0xD7CB <= cp <= 0xD7FB:
        return "T"
    if 0xAC00 <= cp <= 0xD7A3:
        return "LV" if (cp - 0xAC00) % 28 == 0 else "LVT"
    category = unicodedata.category(ch)
    if category in ("Mn", "Me"):
        return "Extend"
    if category == "Mc":
        return "SpacingMark"
    if category in ("Cc", "Zl", "Zp", "Cf"):
        return "Control"
    if _in(cp, _PICTOGRAPHIC):
        return "Pict"
    return "Any"


def approximate_clusters(text):
    """Extended grapheme clusters by the boundary rules, with approximate properties (no
    Prepend, no Indic conjuncts). Exact for the alphabets the differential test draws from."""
    clusters = []
    previous = None
    # GB11 state: an Extended_Pictographic, Extend* seen in the current cluster; then a ZWJ.
    pict_run = False
    ri_count = 0
    for ch in text:
        kind = _break_class(ch)
        if previous is None:
            join = False
        elif previous == "CR" and kind == "LF":
            join = True
        elif previous in ("Control", "CR", "LF") or kind in ("Control", "CR", "LF"):
            join = False
        elif previous == "L" and kind in ("L", "V", "LV", "LVT"):
            join = True
        elif previous in ("LV", "V") and kind in ("V", "T"):
            join = True
        elif previous in ("LVT", "T") and kind == "T":
            join = True
        elif kind in ("Extend", "ZWJ", "SpacingMark"):
            join = True
        elif previous == "ZWJ" and kind == "Pict" and pict_run:
            join = True
        elif previous == "RI" and kind == "RI" and ri_count % 2 == 1:
            join = True
        else:
            join = False
        if join:
            clusters[-1] += ch
        else:
            clusters.append(ch)
            pict_run = False
            ri_count = 0
        if kind == "Pict":
            pict_run = True
        elif kind not in ("Extend", "ZWJ"):
            pict_run = False
        ri_count = ri_count + 1 if kind == "RI" else 0
        previous = kind
    return clusters


if _regex is not None:
    _CLUSTER = _regex.compile(r"\X", _regex.DOTALL)

    def clusters(text):
        return _CLUSTER.findall(text)
else:  # pragma: no cover - depends on the machine
    clusters = approximate_clusters

EXACT_CLUSTERS = _regex is not None


def length(text):
    """User-perceived characters."""
    return len(clusters(text))


def prefix_of(text, count):
    return "".join(clusters(text)[:count])


# --- percent encoding ---------------------------------------------------------------------------


def is_unreserved(ch):
    return unicodedata.category(ch)[0] in "LMN" or ch in UNRESERVED_EXTRA


def percent_encode(text):
    return "".join(ch if is_unreserved(ch) else "".join("%%%02X" % b for b in ch.encode("utf-8"))
                   for ch in text)


def percent_decode(text):
    """The decoded text, or None for a stray "%", a "%" without two hex digits, or bytes that
    aren't UTF-8."""
    out = bytearray()
    i = 0
    while i < len(text):
        ch = text[i]
        if ch == "%":
            pair = text[i + 1:i + 3]
            if len(pair) != 2 or any(c not in HEX_DIGITS for c in pair):
                return None
            out.append(int(pair, 16))
            i += 3
            continue
        out += ch.encode("utf-8")
        i += 1
    try:
        return out.decode("utf-8")
    except UnicodeDecodeError:
        return None


# --- link codes ---------------------------------------------------------------------------------


def normalize_link_hex(text):
    """"#" and six upper-case digits, or None."""
    rest = text[1:] if text.startswith("#") else text
    if len(rest) != 6 or any(c not in HEX_DIGITS for c in rest):
        return None
    return "#" + rest.upper()


def link_color(name, hex_code, divider=False, label=""):
    return {"name": name, "hex": hex_code, "dividerBefore": divider, "dividerLabel": label}


# --- link: validate, encode, decode -------------------------------------------------------------


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
        if length(color["name"]) > MAX_LINK_COLOR_NAME:
            raise LinkError("colorNameTooLong")
        # Checked whatever dividerBefore says.
        if length(color["dividerLabel"]) > MAX_LINK_COLOR_NAME:
            raise LinkError("colorNameTooLong")


def link_prefix(host=LINK_HOST):
    return "https://" + host + "/p/#1;"


def _color_field(color, code_digits):
    if not color["dividerBefore"]:
        head = ""
    elif color["dividerLabel"] == "":
        head = "|"
    else:
        head = "|" + percent_encode(color["dividerLabel"]) + "|"
    return head + percent_encode(color["name"]) + ":" + code_digits


def encode(name, colors, host=LINK_HOST):
    validate(name, colors)
    fields = []
    for color in colors:
        code = normalize_link_hex(color["hex"])
        if code is None:
            raise LinkError("badHex")
        fields.append(_color_field(color, code[1:]))
    text = link_prefix(host) + percent_encode(name) + ";" + ",".join(fields)
    if length(text) > LINK_LIMIT:
        raise LinkError("tooLong")
    return text


def assemble(name, colors, host=LINK_HOST):
    """The link text as the encoder would lay it out, without any check, and with each code
    written as given less one leading "#": raw material for texts the encoder would refuse."""
    fields = [_color_field(c, c["hex"][1:] if c["hex"].startswith("#") else c["hex"])
              for c in colors]
    return link_prefix(host) + percent_encode(name) + ";" + ",".join(fields)


def link_colors_of_template(template):
    """What the share action hands the encoder: the label only behind a divider."""
    return [link_color(item["name"], item["hex"], item["dividerBefore"],
                       item["dividerLabel"] if item["dividerBefore"] else "")
            for item in template["colors"]]


def encode_template(template, host=LINK_HOST):
    return encode(template["name"], link_colors_of_template(template), host)


def share_message(case):
    return SHARE_MESSAGES.get(case, SHARE_FALLBACK)


def _decode_color_field(field):
    if field[:3].lower() == "%7c":
        field = field.replace("%7C", "|").replace("%7c", "|")
    divider, label = False, ""
    remainder = field
    if field.startswith("|"):
        divider = True
        rest = field[1:]
        if "|" in rest:
            raw_label, remainder = rest.split("|", 1)
            label = percent_decode(raw_label)
            if label is None or label == "":
                raise LinkError("malformed")
        else:
            remainder = rest
    parts = remainder.split(":")
    if len(parts) != 2:
        raise LinkError("malformed")
    raw_name, raw_code = parts
    if "|" in raw_name:
        raise LinkError("malformed")
    name = percent_decode(raw_name)
    if name is None:
        raise LinkError("malformed")
    if name == "":
        raise LinkError("emptyName")
    code = normalize_link_hex(raw_code)
    if code is None:
        raise LinkError("badHex")
    return link_color(name, code, divider, label)


def decode(text):
    if text == "":
        raise LinkError("empty")
    if length(text) > LINK_LIMIT:
        raise LinkError("tooLong")
    hash_at = text.find("#")
    payload = text if hash_at < 0 else text[hash_at + 1:]
    fields = payload.split(";")
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


# --- palette file -------------------------------------------------------------------------------


def trim_white(text):
    start, end = 0, len(text)
    while start < end and text[start] in WHITE_SPACE:
        start += 1
    while end > start and text[end - 1] in WHITE_SPACE:
        end -= 1
    return text[start:end]


def normalize_file_hex(text):
    rest = trim_white(text)
    if rest.startswith("#"):
        rest = rest[1:]
    if len(rest) not in (3, 6) or any(c not in HEX_DIGITS for c in rest):
        return None
    rest = rest.upper()
    if len(rest) == 3:
        rest = "".join(c * 2 for c in rest)
    return "#" + rest


def _reject_constant(word):
    raise ValueError("not JSON: %s" % word)


def _json_object(data):
    try:
        text = data.decode("utf-8")
        if text.startswith("\ufeff"):
            raise ValueError("byte order mark")
        return json.loads(text, parse_constant=_reject_constant)
    except (UnicodeDecodeError, ValueError, RecursionError):
        return None


def file_failure(message):
    return {"name": None, "colors": [], "errorMessage": message}


def parse_palette_file(data):
    """Bytes to {"name", "colors", "errorMessage"}; colours are {"name", "hex", "isAutoNamed",
    "dividerBefore", "dividerLabel"}."""
    if len(data) > FILE_SIZE_LIMIT:
        return file_failure(TOO_LARGE)
    document = _json_object(data)
    if not isinstance(document, dict):
        return file_failure(NOT_A_PALETTE_FILE)
    name = document.get("name")
    entries = document.get("colors")
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
        if not isinstance(raw_hex, str):
            continue
        code = normalize_file_hex(raw_hex)
        if code is None:
            continue
        raw_name = entry.get("name")
        given = trim_white(raw_name) if isinstance(raw_name, str) else ""
        if given == "":
            color_name, auto = colorref.color_name(code), True
        else:
            color_name, auto = prefix_of(given, MAX_FILE_COLOR_NAME), False
        divider = entry.get("dividerBefore") is True
        label = ""
        if divider:
            raw_label = entry.get("dividerLabel")
            label = prefix_of(raw_label, MAX_FILE_LABEL) if isinstance(raw_label, str) else ""
        colors.append({"name": color_name, "hex": code, "isAutoNamed": auto,
                       "dividerBefore": divider, "dividerLabel": label})
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


# --- what adding a palette does to the store ----------------------------------------------------


def _comparable_code(text):
    code = trim_white(text).upper()
    return code[1:] if code.startswith("#") else code


def find_identical_palette(name, colors, templates):
    """Index of the first stored palette equal to the given one, or None."""
    for index, template in enumerate(templates):
        if template["name"] != name or len(template["colors"]) != len(colors):
            continue
        if all(_comparable_code(a["hex"]) == _comparable_code(b["hex"])
               and a["name"] == b["name"] and a["dividerBefore"] == b["dividerBefore"]
               and (not a["dividerBefore"] or a["dividerLabel"] == b["dividerLabel"])
               for a, b in zip(template["colors"], colors)):
            return index
    return None


def unique_palette_name(name, existing):
    taken = set(existing)
    if name not in taken:
        return name
    number = 1
    while "%s (%d)" % (name, number) in taken:
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
