"""Explains every crop of scenarios, examples and generated ones: the steps must end at the library's answers.

check_steps.py ZOOMREPLAY GENERATE SCENARIO...: GENERATE writes further scenarios of random calls.
"""
import pathlib
import subprocess
import sys
import tempfile

GENERATED = 60
FATAL = 3  # the library stopped the process: what came before it is explained
FEWEST_CROPS = 1000


def explain(tool, scenario):
    run = subprocess.run([tool, "why", scenario, "0-4294967295"], capture_output=True, text=True)
    if run.returncode not in (0, FATAL) or "do not end" in run.stdout:
        wrong = [line for line in run.stdout.splitlines() if "do not end" in line]
        sys.exit(f"{scenario}: status {run.returncode}, {len(wrong)} crops unexplained\n{run.stderr}")
    return sum(": (" in line for line in run.stdout.splitlines())


def main():
    tool, generate, *scenarios = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, generate, folder, str(GENERATED)], check=True)
        scenarios += sorted(map(str, pathlib.Path(folder).glob("*.jsonl")))
        crops = sum(explain(tool, scenario) for scenario in scenarios)
    if crops < FEWEST_CROPS:
        sys.exit(f"only {crops} crops were explained")


main()
