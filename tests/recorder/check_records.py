#!/usr/bin/env python3
"""Replays scenarios with the recorder in front of the module, and then what it recorded.

The answers must be those of a replay without the recorder, both times. With calls put in that change nothing
and fill a part, the lines after them are in a later part, which replays by itself and gives the same answers.
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

GOES_ON = "// The record goes on here.\n"
SMALL = 65536  # the least that a record may take, in four parts
FILLING = '{"op": "isPortExist", "sensorId": 0, "port": 1}\n' * 300


def replay(zoomreplay, scenario, **environment):
    run = subprocess.run([zoomreplay, scenario, "-o", "-"], text=True, capture_output=True,
                         env=os.environ | environment)
    assert run.returncode in (0, 3), f"{scenario}: {run.stderr}"
    return run.stdout.splitlines()


def of_manager(results):
    """The answers alone: a record has other line numbers, times, and no lines of the mapper."""
    return [re.sub(r'^{"line": \d+, ("t": \d+, )?("dur": \d+, )?', "", line) for line in results if '"op": "SensorCropMapper' not in line]


def new_answers(zoomreplay, part):
    head = part.read_text().split(GOES_ON)[0].count("\n") + 1
    results = replay(zoomreplay, part)
    return of_manager(line for line in results if int(re.match(r'{"line": (\d+)', line)[1]) > head)


def check_times(record):
    """Each call has the time at which it was made, and nearly each query what it took: one at the end of a page
    of the file does not, nor has the last line."""
    calls = [json.loads(line) for line in record.read_text().splitlines() if not line.startswith("//")]
    times = [call["t"] for call in calls if call["op"] not in ("property", "sensor", "publish")]
    assert times == sorted(times) and 0 <= time.clock_gettime_ns(time.CLOCK_BOOTTIME) - times[-1] < 60e9, times
    durations = [call.get("dur") for call in calls[:-1] if call["op"].endswith("CropSetting")]
    assert durations.count(None) <= 1 + len(durations) / 20, durations
    assert all(0 < duration < 1e9 for duration in durations if duration is not None), durations


def check_needs(record, scenario):
    """What a caller's record holds before a query is in the line, also where no answer shows it."""
    if pathlib.Path(scenario).stem == "many-turns":
        counts = [pathlib.Path(file).read_text().count('"need": {') for file in (scenario, record)]
        assert counts[0] == counts[1] > 0, counts


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
        if limit > SMALL:
            check_times(record)
            check_needs(record, scenario)
        parts = [part for age in ("3", "2", "1") if (part := pathlib.Path(f"{record}.{age}")).exists()] + [record]
        answers = [answer for part in parts for answer in new_answers(zoomreplay, part)]
        expected = of_manager(plain)[-len(answers):]
        for number, (answer, wanted) in enumerate(zip(answers, expected, strict=True)):
            assert answer == wanted, f"{scenario}, limit {limit}, answer {number}:\n  {answer}\nexpected:\n  {wanted}"
        assert len(parts) > 3 or answers == of_manager(plain), f"{scenario}: the record is not whole"
        return len(parts)


def check_from(zoomreplay, recorder, scenario, lines, place):
    """Whether the lines from a place on, at the beginning of a later part, get their answers."""
    with tempfile.NamedTemporaryFile("w", prefix=f"{pathlib.Path(scenario).stem}-{place}-", suffix=".jsonl") as filled:
        filled.write("".join(lines[:place]) + FILLING + "".join(lines[place:]))
        filled.flush()
        return check(zoomreplay, recorder, filled.name, SMALL)


def generated(generator, folder):
    """Scenarios of random calls."""
    subprocess.run([sys.executable, generator, folder, "60"], check=True, capture_output=True)
    return sorted(str(path) for path in pathlib.Path(folder).glob("*.jsonl"))


def main():
    zoomreplay, recorder, generator, turns, *scenarios = sys.argv[1:]
    assert scenarios
    with tempfile.TemporaryDirectory() as folder:
        for scenario in [turns, *scenarios, *generated(generator, folder)]:
            check(zoomreplay, recorder, scenario, 1 << 20)
            lines = pathlib.Path(scenario).read_text().splitlines(keepends=True)
            check_from(zoomreplay, recorder, scenario, lines, len(lines) // 2)
    lines = pathlib.Path(turns).read_text().splitlines(keepends=True)
    parts = [check_from(zoomreplay, recorder, turns, lines, place) for place in range(len(lines))]
    assert min(parts) > 1, "no later part"


if __name__ == "__main__":
    main()
