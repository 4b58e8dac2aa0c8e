"""What the differential scripts share: running the binary, comparing its JSON with a model's,
private homes with a preferences file, and the report.

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
            note = ""
            if is_number(actual) and expected != 0:
                note = " (%+.0f ulp)" % ((float(actual) - expected) / math.ulp(expected))
            out.append((path + note, expected, actual))
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


def upper_uuid(rng):
    return str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper()


def home_env(home):
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=home,
               XDG_CONFIG_HOME=os.path.join(home, "config"),
               XDG_DATA_HOME=os.path.join(home, "data"), XDG_RUNTIME_DIR=home)
    env.pop("XCTestConfigurationFilePath", None)  # an isolated run wouldn't use the home
    return env


def write_preferences(home, palettes, active_id):
    """Writes the palettes as the program stores them; returns the file's path and bytes."""
    os.makedirs(os.path.join(home, "config", "hueshelf"), exist_ok=True)
    path = os.path.join(home, "config", "hueshelf", "io.hueshelf.Hueshelf.json")
    data = (json.dumps({"colorTemplates": palettes, "activeTemplateId": active_id,
                        "colorLastModified": 1700000000000.0, "schemaVersion": 2},
                       indent=4, ensure_ascii=False) + "\n").encode("utf-8")
    with open(path, "wb") as stream:
        stream.write(data)
    return path, data


def verify_store(binary, env, palettes, active_id, cwd=None):
    """Mismatches between the palettes and what `palettes --json` says the program holds."""
    result = run(binary, ["palettes", "--json"], env, cwd)
    if json_output(result, list) or len(result.parsed) != len(palettes):
        return json_output(result, list) or [("palettes", len(palettes), result.parsed)]
    mismatches = []
    for index, (palette, got) in enumerate(zip(palettes, result.parsed)):
        want = {"id": palette["id"], "name": palette["name"], "colorCount": len(palette["colors"]),
                "isActive": palette["id"] == active_id}
        want.update((key, palette[key]) for key in ("isLocked", "revision", "updatedAt")
                    if key in palette)
        got = {key: got.get(key) for key in want} if isinstance(got, dict) else got
        compare(want, got, "[%d]" % index, mismatches)
    return mismatches


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
    passed, reports = 0, []
    with tempfile.TemporaryDirectory(prefix="hueshelf-reference-") as root:
        with concurrent.futures.ThreadPoolExecutor(max_workers=max(1, options.jobs)) as pool:
            summary, futures = body(options, root, pool)
            for future in futures:
                for label, mismatches in future.result():
                    passed += not mismatches
                    reports += [(label, mismatches)] if mismatches else []
    # Hand-made and short inputs first: they are the readable reproductions.
    reports.sort(key=lambda report: (not report[0].startswith("fixed"), len(report[0])))
    for label, mismatches in reports[:options.show]:
        print("MISMATCH %s" % label)
        for path, want, got in mismatches[:6]:
            print("    %-24s expected %.700r" % (path or "(value)", want))
            print("    %-24s actual   %.700r" % ("", got))
    if len(reports) > options.show:
        print("... and %d more mismatching cases" % (len(reports) - options.show))
    print("seed %d: %s" % (options.seed, summary))
    print("%d passed, %d failed" % (passed, len(reports)))
    return 1 if reports else 0
