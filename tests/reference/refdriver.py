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
    if not result.stderr.strip() or result.stderr.count("\n") != 1 \
            or not result.stderr.endswith("\n"):
        mismatches.append(("stderr", "one line", result.stderr))
    return mismatches


def json_output(result, kind=dict, status=0):
    """A mismatch when the run didn't end with `status` and a JSON value of `kind`."""
    if result.status == status and not result.parse_error and isinstance(result.parsed, kind):
        return []
    return [("run", "status %d and JSON %s" % (status, kind.__name__), "status %d %s %r %r" % (
        result.status, result.parse_error or "", result.stdout[:300], result.stderr[:300]))]


def compared(label, result, expected, kind=dict):
    """(label, mismatches) of a run whose JSON must equal `expected`."""
    return label, json_output(result, kind) or compare(expected, result.parsed)


def checked(binary, env, arguments, expected, label=None):
    """[(label, mismatches)] of a run: the model's JSON, or a one-line refusal where it has none."""
    label = label or " ".join(repr(a) if " " in a or not a else a for a in arguments)
    result = run(binary, arguments, env)
    if expected is None:
        return [(label, one_line_failure(result))]
    return [compared(label, result, expected, type(expected))]


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
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=home,
               XDG_CONFIG_HOME=os.path.join(home, "config"),
               XDG_DATA_HOME=os.path.join(home, "data"), XDG_RUNTIME_DIR=home)
    env.pop("XCTestConfigurationFilePath", None)  # an isolated run wouldn't use the home
    return env


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
