#!/usr/bin/env python3
"""Replays scenarios with the recorder in front of the module, and then what it recorded.

The answers must be those of a replay without the recorder, both times. With a small file the record has
several parts, each replays by itself, and what is new in them one after the other are the last answers.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

GOES_ON = "// The record goes on here.\n"


def replay(zoomreplay, scenario, **environment):
    run = subprocess.run([zoomreplay, scenario, "-o", "-"], text=True, capture_output=True,
                         env=os.environ | environment)
    assert run.returncode in (0, 3), f"{scenario}: {run.stderr}"
    return run.stdout.splitlines()


def of_manager(results):
    """The answers alone: a record has other line numbers, and no lines of the mapper."""
    return [re.sub(r'^{"line": \d+, ', "", line) for line in results if '"op": "SensorCropMapper' not in line]


def new_answers(zoomreplay, part):
    head = part.read_text().split(GOES_ON)[0].count("\n") + 1
    results = replay(zoomreplay, part)
    return of_manager(line for line in results if int(re.match(r'{"line": (\d+)', line)[1]) > head)


def check(zoomreplay, recorder, scenario, limit):
    """How many parts the record has."""
    plain = replay(zoomreplay, scenario)
    with tempfile.TemporaryDirectory() as folder:
        record = pathlib.Path(folder, "record.jsonl")
        recorded = replay(zoomreplay, scenario, LD_PRELOAD=recorder, ZOOMOVERRIDE_RECORD=str(record),
                          ZOOMOVERRIDE_RECORD_BYTES=str(limit),
                          # The sanitizer's runtime comes with zoomreplay, after what is preloaded.
                          ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0")
        assert recorded == plain, f"{scenario}: other answers with the recorder"

        if not of_manager(plain):
            return 0
        parts = [part for age in ("3", "2", "1") if (part := pathlib.Path(f"{record}.{age}")).exists()] + [record]
        answers = [answer for part in parts for answer in new_answers(zoomreplay, part)]
        expected = of_manager(plain)[-len(answers):]
        for number, (answer, wanted) in enumerate(zip(answers, expected, strict=True)):
            assert answer == wanted, f"{scenario}, limit {limit}, answer {number}:\n  {answer}\nexpected:\n  {wanted}"
        assert len(parts) > 3 or answers == of_manager(plain), f"{scenario}: the record is not whole"
        return len(parts)


def main():
    zoomreplay, recorder, *scenarios = sys.argv[1:]
    assert scenarios
    for scenario in scenarios:
        check(zoomreplay, recorder, scenario, 1 << 20)
    parts = [check(zoomreplay, recorder, scenario, 12000) for scenario in scenarios]
    assert max(parts) == 4, f"no record is longer than its limit: {parts}"


if __name__ == "__main__":
    main()
