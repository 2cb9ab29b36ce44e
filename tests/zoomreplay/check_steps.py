"""Explains every crop of scenarios, examples and generated ones: the steps must end at the library's answers, the
reason must be one for what the library did, and an answer that is said to be kept must be the earlier one.

check_steps.py ZOOMREPLAY GENERATE SCENARIO...: GENERATE writes further scenarios of random calls.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

GENERATED = 60
FATAL = 3  # the library stopped the process: what came before it is explained
FEWEST_CROPS = 1000
QUERY = re.compile(r"^Request \d+, P\d of line (\d+) for .*: (overridden|not overridden)"
                   r"((?:\n  (?!sensor )\S.*)+)", re.MULTILINE)
KEPT = re.compile(r"the answer of line (\d+), kept")
REASON_FOR = re.compile(r"P1 shows the wider|P2 narrows|query is manual|manual query takes|, is not below")


def explain(tool, scenario):
    run = subprocess.run([tool, "why", scenario, "0-4294967295"], capture_output=True, text=True)
    if run.returncode not in (0, FATAL) or "do not end" in run.stdout:
        wrong = [line for line in run.stdout.splitlines() if "do not end" in line]
        sys.exit(f"{scenario}: status {run.returncode}, {len(wrong)} crops unexplained\n{run.stderr}")
    check_reasons(scenario, run.stdout, results_of(tool, scenario))
    return sum(": (" in line for line in run.stdout.splitlines())


def results_of(tool, scenario):
    run = subprocess.run([tool, scenario, "-o", "-"], capture_output=True, text=True)
    return {result["line"]: result for result in map(json.loads, run.stdout.splitlines())}


def check_reasons(scenario, text, results):
    for line, answer, folded in QUERY.findall(text):
        reason = " ".join(folded.split())
        if kept := KEPT.match(reason):
            own, first = (results[int(number)] for number in (line, kept[1]))
            if (own["result"], own["need"]) != (first["result"], first["need"]):
                sys.exit(f"{scenario}:{line}: is not the answer of line {kept[1]}")
        elif bool(REASON_FOR.search(reason)) != (answer == "overridden"):
            sys.exit(f"{scenario}:{line}: {answer}, but {reason}")


def main():
    tool, generate, *scenarios = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, generate, folder, str(GENERATED)], check=True)
        scenarios += sorted(map(str, pathlib.Path(folder).glob("*.jsonl")))
        crops = sum(explain(tool, scenario) for scenario in scenarios)
    if crops < FEWEST_CROPS:
        sys.exit(f"only {crops} crops were explained")


main()
