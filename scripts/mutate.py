#!/usr/bin/env python3
"""Puts small faults into the module, one at a time, and counts how many the module's tests catch.

    scripts/mutate.py [--sample N] [--seed S] [--file PATTERN] [--again]

Works on a copy of the tree under build/mutation. Prints the faults that survive, and fails if there are any:
each is a hole in the tests, or a change that nobody can observe and that belongs into
scripts/mutate-unnoticed.txt with the reason. That file holds, under comments, lines of the form
"<file>: <line> => <faulty line>", and those are not tried. --again tries what survived the last run only.
"""

import argparse
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "build/mutation/tree"
BUILD = ROOT / "build/mutation/build"
SURVIVORS = ROOT / "build/mutation/survivors.txt"
UNNOTICED = ROOT / "scripts/mutate-unnoticed.txt"
MODULE = "feature/common/zoomoverride"

# Operators with spaces around: those inside of template arguments have none.
SWAPS = [(" < ", " <= "), (" > ", " >= "), (" <= ", " < "), (" >= ", " > "), (" == ", " != "), (" != ", " == "),
         (" && ", " || "), (" || ", " && "), (" + ", " - "), (" - ", " + "), (" * ", " / "), (" / ", " * "),
         ("true", "false"), ("false", "true"), ("(!", "("), ("::max()", "::min()"), ("::min()", "::max()"),
         ("std::greater", "std::greater_equal"), ("std::less", "std::less_equal"), (".w", ".h"), (".x", ".y"),
         (".h", ".w"), (".y", ".x"), ("wrapAdd(", "wrapSub("), ("wrapSub(", "wrapAdd("),
         ("truncateToInt32(", "roundToInt32("), ("roundToInt32(", "truncateToInt32(")]
NUMBER = re.compile(r"(?<![\w.])(\d+)(?=[UF]?\b(?![.\w]))|(?<![\w.])(\d+\.\d+)(?=F?\b)")
CONDITION = re.compile(r"(?<=\bif \()[\w.>()-]+(?=\) \{)")
STATEMENT = re.compile(r"^\s+(?!return|throw|auto|static|using|typedef|case|break|continue|const|float|bool|MRect)"
                       r"[\w.:*>\[\]-]+(\(.*\)| [-+*/]?= .*|\+\+);$")


def faults_of(line):
    """The line with one fault each, and what the fault is."""
    if "ZLOG" in line or line.endswith("\\") or "constexpr char" in line:
        return
    if re.match(r"\s*(//|#|\*|using |namespace |template|\[\[gnu::format)", line):
        return
    code = line.split("//")[0]
    for old, new in SWAPS:
        for match in re.finditer(re.escape(old), code):
            if old in (".w", ".h", ".x", ".y") and re.match(r"\w", code[match.end():] + " "):
                continue
            yield code[:match.start()] + new + code[match.end():], f"{old.strip()} becomes {new.strip()}"
    for match in CONDITION.finditer(code):
        yield code[:match.start()] + "!" + code[match.start():], "condition negated"
    for match in NUMBER.finditer(code):
        number = match.group()
        other = str(int(number) + 1) if number.isdigit() else str(float(number) + 1)
        yield code[:match.start()] + other + code[match.end():], f"{number} becomes {other}"
    if STATEMENT.match(code):
        yield "", "statement dropped"


def all_faults(only):
    # Headers last: they rebuild the tests as well.
    for path in sorted((ROOT / MODULE).rglob("*.[ch]*"), key=lambda path: (path.suffix, path.name)):
        if not path.match(only):
            continue
        previous = ""
        for number, line in enumerate(path.read_text().splitlines()):
            for faulty, what in faults_of(line):
                yield key_of(path.name, previous, line, faulty), path.name, number, line, faulty, what
            previous = line


def key_of(name, previous, line, faulty):
    """What a fault is called in the lists: it stays valid when lines move. A bare return needs the line before."""
    where = f"{previous.strip()} " if re.fullmatch(r"\s*return \w+;", line) else ""
    return f"{name}: {where}{line.strip()} => {faulty.strip()}".strip()


def keys_in(path):
    lines = path.read_text().splitlines() if path.exists() else []
    return {line.strip() for line in lines if line.strip() and not line.startswith("#")}


def prepare():
    packages = [name for file in ("build", "test", "fuzz")
                for name in (ROOT / f"scripts/packages-{file}.txt").read_text().split()]
    subprocess.run([ROOT / "scripts/install-packages.sh", *packages], check=True)
    for name in subprocess.run(["git", "ls-files"], cwd=ROOT, check=True, capture_output=True,
                               text=True).stdout.splitlines():
        target = TREE / name
        target.parent.mkdir(parents=True, exist_ok=True)
        # What an interrupted run left behind is put back, and gets the time stamp that has it rebuilt.
        if not target.exists() or target.read_bytes() != (ROOT / name).read_bytes():
            shutil.copyfile(ROOT / name, target)
            shutil.copymode(ROOT / name, target)
    # Clang and one source for all of a target's: what builds fastest after a change.
    subprocess.run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                    "-DCMAKE_CXX_COMPILER=clang++", "-DCMAKE_CXX_FLAGS=-w", "-DCMAKE_UNITY_BUILD=ON",
                    "-DCMAKE_UNITY_BUILD_BATCH_SIZE=100"], check=True, stdout=subprocess.DEVNULL)
    if not build() or not passes():
        raise SystemExit("the tests fail without a fault already")


def build():
    return subprocess.run(["cmake", "--build", BUILD, "--parallel", "2", "--target", "module_tests"],
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def passes():
    tests = subprocess.Popen([BUILD / "tests/module/module_tests", "--gtest_fail_fast"], start_new_session=True,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        return tests.wait(timeout=20) == 0
    except subprocess.TimeoutExpired:
        # A death test runs in a process of its own, which would go round a faulty loop for ever.
        os.killpg(tests.pid, signal.SIGKILL)
        tests.wait()
        return False


def judge(name, number, faulty):
    path = TREE / MODULE / name
    text = path.read_text()
    lines = text.splitlines()
    lines[number] = faulty
    path.write_text("\n".join(lines) + "\n")
    try:
        if not build():
            return "does not compile"
        return "survives" if passes() else "caught"
    finally:
        path.write_text(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, help="try this many faults only, chosen at random")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--file", default="*", help="faults in files of this name only, such as 'Tg*.cpp'")
    parser.add_argument("--again", action="store_true", help="try only what survived the last run")
    options = parser.parse_args()

    known = keys_in(UNNOTICED)
    everything = {fault[0] for fault in all_faults("*")}
    for key in sorted(known - everything):
        print(f"in {UNNOTICED.name}, but no fault any more: {key}")
    faults = [fault for fault in all_faults(options.file) if fault[0] not in known]
    print(f"{len(faults)} possible faults, {len(known)} known to go unnoticed", flush=True)
    if options.again:
        last = keys_in(SURVIVORS)
        faults = [fault for fault in faults if fault[0] in last]
    if options.sample:
        random.Random(options.seed).shuffle(faults)
        faults = faults[:options.sample]

    prepare()
    counts = {"caught": 0, "survives": 0, "does not compile": 0}
    with SURVIVORS.open("w") as survivors:
        for key, name, number, line, faulty, what in faults:
            verdict = judge(name, number, faulty)
            counts[verdict] += 1
            if verdict == "survives":
                print(f"survives: {name}:{number + 1}: {what}\n    {line.strip()}\n    {faulty.strip()}", flush=True)
                print(key, file=survivors, flush=True)
            if sum(counts.values()) % 20 == 0:
                print(counts, flush=True)
    judged = counts["caught"] + counts["survives"]
    print(f"{judged} faults, {counts['caught']} caught ({100 * counts['caught'] / max(judged, 1):.1f} %); "
          f"{counts['does not compile']} more did not compile")
    raise SystemExit(1 if counts["survives"] or not known <= everything else 0)


if __name__ == "__main__":
    main()
