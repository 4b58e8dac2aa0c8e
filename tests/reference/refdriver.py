"""What the differential scripts share: running the binary, comparing its JSON with a model's,
private homes with a preferences file, pasted forms of colour codes, and the report.

A check gives a list of (label, mismatches); a mismatch is (path, expected, actual). A run prints
the first mismatches and "N passed, M failed", and exits 1 on any mismatch.
"""

import argparse
import collections
import concurrent.futures
import json
import math
import os
import subprocess
import tempfile
import uuid

import colorref
import exchangeref

Run = collections.namedtuple("Run", "status parsed parse_error stdout stderr")
BLANKS = (" ", "  ", "\t", "\n", "\r\n", " \n\t", "\v", "\f")


def no_duplicates(pairs):
    if len({key for key, _ in pairs}) != len(pairs):
        raise ValueError("duplicate key in %r" % [key for key, _ in pairs])
    return dict(pairs)


def run(binary, arguments, env, cwd=None):
    done = subprocess.run([binary] + arguments, capture_output=True, env=env, cwd=cwd, timeout=60)
    stdout = done.stdout.decode("utf-8", errors="replace")
    parsed, parse_error = None, None
    if stdout.strip():
        try:
            parsed = json.loads(stdout, object_pairs_hook=no_duplicates)
        except ValueError as error:
            parse_error = str(error)
    return Run(done.returncode, parsed, parse_error, stdout,
               done.stderr.decode("utf-8", errors="replace"))


def is_number(value):
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def compare(expected, actual, path="", out=None):
    """Mismatches between JSON values, exact (a whole double may print as an integer)."""
    out = [] if out is None else out
    if expected is None or isinstance(expected, (bool, int, str)):
        if type(actual) is not type(expected) or actual != expected:
            out.append((path, expected, actual))
    elif isinstance(expected, float):
        if not is_number(actual) or float(actual) != expected:
            ulps = (float(actual) - expected) / math.ulp(expected) if is_number(actual) else 0
            out.append((path + " (%+.0f ulp)" % ulps * bool(ulps), expected, actual))
    elif isinstance(expected, list):
        if not isinstance(actual, list) or len(actual) != len(expected):
            out.append((path, expected, actual))
        else:
            for index, (want, got) in enumerate(zip(expected, actual)):
                compare(want, got, "%s[%d]" % (path, index), out)
    elif not isinstance(actual, dict) or set(actual) != set(expected):
        out.append((path + " (keys)", sorted(expected),
                    sorted(actual) if isinstance(actual, dict) else actual))
    else:
        for key in expected:
            compare(expected[key], actual[key], "%s.%s" % (path, key), out)
    return out


def one_line_failure(result, status=1):
    """A refusal: the exit status and one line on stderr, whatever the argument held."""
    mismatches = [] if result.status == status else [("exit status", status, result.status)]
    if result.stderr.count("\n") != 1 or not result.stderr.strip() \
            or not result.stderr.endswith("\n"):
        mismatches.append(("stderr", "one line", result.stderr))
    return mismatches


def json_output(result, kind=dict, status=0):
    """A mismatch when the run didn't end with `status` and a JSON value of `kind`."""
    if result.status == status and not result.parse_error and isinstance(result.parsed, kind):
        return []
    return [("run", "status %d and JSON %s" % (status, kind.__name__), "status %d %s %r %r" % (
        result.status, result.parse_error or "", result.stdout[:300], result.stderr[:300]))]


def checked(binary, env, arguments, expected, label=None):
    """[(label, mismatches)] of a run: the model's JSON, or a one-line refusal where it has none."""
    label = label or " ".join(repr(a) if " " in a or not a else a for a in arguments)
    result = run(binary, arguments, env)
    if expected is None:
        return [(label, one_line_failure(result))]
    return [(label, json_output(result, type(expected)) or compare(expected, result.parsed))]


def six_of(rgb):
    return "%02x%02x%02x" % tuple(rgb)


def code_of(rgb):
    return "#%02X%02X%02X" % tuple(rgb)


def random_case(rng, text):
    return "".join(ch.upper() if rng.random() < 0.5 else ch.lower() for ch in text) \
        if rng.random() < 0.4 else text.upper() if rng.random() < 0.5 else text.lower()


def surround(rng, text):
    blanks = lambda: "".join(rng.choice(BLANKS) for _ in range(rng.randint(1, 2)))  # noqa: E731
    text = blanks() + text if rng.random() < 0.4 else text
    return text + blanks() if rng.random() < 0.4 else text


def hex_text(rng, six_digits):
    """A 6-digit code as a person might paste it: any case, '#'s in odd places, blanks around."""
    text, roll = random_case(rng, six_digits), rng.random()
    if roll < 0.45:
        text = ("#" if roll < 0.35 else "##") + text
    for _ in range(rng.randint(1, 3) if 0.45 <= roll < 0.6 else 0):
        at = rng.randint(0, len(text))
        text = text[:at] + "#" + text[at:]
    return surround(rng, text)


def upper_uuid(rng):
    return str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper()


def home_env(home):
    os.makedirs(home, exist_ok=True)
    return dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=home, XDG_RUNTIME_DIR=home,
                XDG_CONFIG_HOME=os.path.join(home, "config"),
                XDG_DATA_HOME=os.path.join(home, "data"))


def private_home(binary, root, name, palettes, active_id):
    """A home holding the palettes as the program stores them: (env, preferences path, its
    bytes, mismatches of the store; only a home the program demonstrably read is worth using)."""
    home = os.path.join(root, name)
    os.makedirs(os.path.join(home, "config", "hueshelf"))
    path = os.path.join(home, "config", "hueshelf", "io.hueshelf.Hueshelf.json")
    data = (json.dumps({"colorTemplates": palettes, "activeTemplateId": active_id,
                        "colorLastModified": 1700000000000.0, "schemaVersion": 2},
                       indent=4, ensure_ascii=False) + "\n").encode("utf-8")
    with open(path, "wb") as stream:
        stream.write(data)
    env = home_env(home)
    return env, path, data, verify_store(binary, env, palettes, active_id)


def verify_store(binary, env, palettes, active_id):
    """Mismatches between the palettes and what `palettes --json` says the program holds."""
    result = run(binary, ["palettes", "--json"], env)
    shown = result.parsed if isinstance(result.parsed, list) else []
    want = [dict({"id": p["id"], "name": p["name"], "colorCount": len(p["colors"]),
                  "isActive": p["id"] == active_id}, **{key: p[key] for key in (
                      "isLocked", "revision", "updatedAt") if key in p}) for p in palettes]
    got = [{key: g.get(key) for key in w} if isinstance(g, dict) else g
           for w, g in zip(want, shown)] + shown[len(want):]
    return json_output(result, list) or compare(want, got)


def main(doc, seed, count, body):
    """Runs `body(options, root, pool)`: a summary line and futures of lists of results."""
    parser = argparse.ArgumentParser(description=doc.splitlines()[0])
    parser.add_argument("--binary", required=True, help="path of the hueshelf executable")
    parser.add_argument("--seed", type=int, default=seed)
    parser.add_argument("--count", type=int, default=count, help="number of random cases")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    parser.add_argument("--show", type=int, default=15, help="mismatches to print")
    options = parser.parse_args()
    options.binary = os.path.abspath(options.binary)
    with tempfile.TemporaryDirectory(prefix="hueshelf-reference-") as root:
        with concurrent.futures.ThreadPoolExecutor(max_workers=max(1, options.jobs)) as pool:
            summary, futures = body(options, root, pool)
            results = [result for future in futures for result in future.result()]
    reports = sorted((r for r in results if r[1]), key=lambda r: len(r[0]))  # short ones first
    for label, mismatches in reports[:options.show]:
        print("MISMATCH %s" % label)
        for path, want, got in mismatches[:6]:
            print("    %-24s expected %.700r\n    %-24s actual   %.700r" % (
                path or "(value)", want, "", got))
    print("seed %d: %s\n%d passed, %d failed" % (options.seed, summary,
                                                 len(results) - len(reports), len(reports)))
    return 1 if reports else 0


# Colours for the generators: bytes of a point in HSL, of an exact hue, pasted as people do.
def rgb_of_hsl(h, s, l):
    return colorref.hex_to_rgb(colorref.hsl_to_hex(h % 360.0, min(1.0, max(0.0, s)),
                                                   min(1.0, max(0.0, l))))


def random_hsl(rng, s=(0.0, 1.0), l=(0.0, 1.0), h=(0.0, 360.0)):
    return rgb_of_hsl(rng.uniform(*h), rng.uniform(*s), rng.uniform(*l))


def nudged(rng, rgb):
    channels = list(rgb)
    for _ in range(rng.randint(0, 2)):
        i = rng.randrange(3)
        channels[i] = min(255, max(0, channels[i] + rng.choice((-1, 1))))
    return tuple(channels)


def hue_grid_colour(hue, high, low):
    """Bytes of exactly the whole-degree hue `hue`, or None where the grid doesn't allow it."""
    sector, within_sector = divmod(hue % 360, 60)
    offset, rest = divmod((within_sector if sector % 2 == 0 else 60 - within_sector)
                          * (high - low), 60)
    mid = low + offset
    return None if rest else ((high, mid, low), (mid, high, low), (low, high, mid),
                              (low, mid, high), (mid, low, high), (high, low, mid))[sector]


def pasted(rng, rgb):
    """The colour as a person might pass it: one of the forms that give it exactly, or now and
    then the HSL form, which names a nearby colour read back by the same rules."""
    six, roll = six_of(rgb), rng.random()
    if roll < 0.7:
        return code_of(rgb) if roll < 0.35 else rng.choice((six, six.upper(), "#" + six)) \
            if roll < 0.55 else hex_text(rng, six)
    if roll < 0.9:
        alpha = rng.choice(("", "", ", 0.5", ",1"))
        return "%s(%d, %d, %d%s)" % ("rgba" if alpha else rng.choice(("rgb", "RGB")), *rgb, alpha)
    h, s, l = colorref.bytes_to_hsl(*rgb)
    h += rng.choice((360.0, 720.0)) if rng.random() < 0.3 else 0.0
    precision = rng.choice((0, 1, 3, 17))
    return "hsl(%.*f, %.*f%%, %.*f%%)" % (precision, h, precision, s * 100, precision, l * 100)


def record(rng, name, colours, stamp, **more):
    """A stored palette record; `colours` are from item()."""
    return dict({"id": upper_uuid(rng), "name": name, "colors": colours, "createdAt": stamp,
                 "updatedAt": stamp, "revision": 1, "isLocked": False,
                 "contentHash": exchangeref.content_hash(name, colours)}, **more)


def item(rng, name, code, divider=False, label="", auto=False, locked=False):
    return {"id": upper_uuid(rng), "name": name, "hex": code, "isAutoNamed": auto,
            "isLocked": locked, "dividerBefore": divider, "dividerLabel": label}
