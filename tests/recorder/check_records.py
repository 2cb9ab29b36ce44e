#!/usr/bin/env python3
"""Replays scenarios with the recorder in front of the module, and then what it recorded.

The answers must be those of a replay without the recorder, both times. With calls put in that change nothing
and fill a part, the lines after them are in a later part, which replays by itself and gives the same answers.
"""

import json
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import time

GOES_ON = "// The record goes on here.\n"
OF_PLATFORM = "(sensor|property|publish|logger|observed)$|SensorCropMapper"
NAMES = {"None": 0, "ExternalAPI": 1, "ByRequest": 2, "InstantRequest": 3, "default": 0, "repeating": 1}
EAST = 19800  # seconds of the time zone
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
    assert not any("dur" in call for call in calls if not call["op"].endswith("CropSetting")), calls

    stamps = re.findall(r"^// (\d\d-\d\d \d\d:\d\d):\d\d\.\d{3}$", record.read_text(), re.MULTILINE)
    minutes = [time.strftime("%m-%d %H:%M", time.gmtime(time.time() + EAST - past)) for past in (0, 60)]
    assert stamps[-1] in minutes and len(stamps) <= 3 + (times[-1] - times[0]) / 1e9, stamps


def normal(value):
    """A value as any spelling of it: names as numbers, and without what is left out by default."""
    if isinstance(value, dict):
        fields = {normal(name): normal(field) for name, field in value.items()}
        return {name: field for name, field in fields.items() if field not in (0, {}, [], [0] * 4)}
    if isinstance(value, list):
        return [normal(item) for item in value]
    if isinstance(value, str):
        if re.fullmatch(r"-?(0x[0-9a-fA-F]+|[0-9]+)", value):
            return int(value, 0) % 2**64
        return NAMES.get(value, value)
    return value


def same(a, b):
    """Numbers are the same that are in 32 bits; stream ids have more."""
    if isinstance(a, dict) and isinstance(b, dict):
        return a.keys() == b.keys() and all(same(a[name], b[name]) for name in a)
    if isinstance(a, list) and isinstance(b, list):
        return len(a) == len(b) and all(map(same, a, b))
    if isinstance(a, (int, float)) and isinstance(b, (int, float)):
        is_short = max(abs(a), abs(b)) <= 2**32
        return a == b or is_short and (struct.pack("f", a) == struct.pack("f", b) or (a - b) % 2**32 == 0)
    return a == b


def normal_call(call):
    """A call without what the recorder adds, and with the whole record that a query fills."""
    if "need" in call:
        call["need"] = {"requestNo": -1, "zoomRatio": 1} | call["need"]
    return normal({name: value for name, value in call.items() if name not in ("t", "dur")})


def lines_of(path):
    return [json.loads(line) for line in pathlib.Path(path).read_text().splitlines() if line.startswith("{")]


def properties(path):
    return {line["name"]: line["value"] for line in lines_of(path) if line["op"] == "property"}


def check_calls(record, scenario, count):
    """The record has each call with all that was handed in, also where no answer shows it."""
    def calls(path):
        return [normal_call(line) for line in lines_of(path) if not re.match(OF_PLATFORM, line["op"])]

    recorded = calls(record)
    assert len(recorded) == count, f"{scenario}: {count} calls, {len(recorded)} recorded"
    for number, (call, wanted) in enumerate(zip(recorded, calls(scenario))):
        assert same(call, wanted), f"{scenario}, call {number}:\n  {call}\nexpected:\n  {wanted}"


def check(zoomreplay, recorder, scenario, limit):
    """How many parts the record has."""
    plain = replay(zoomreplay, scenario)
    with tempfile.TemporaryDirectory() as folder:
        record = pathlib.Path(folder, "record.jsonl")
        recorded = replay(zoomreplay, scenario, LD_PRELOAD=recorder, ZOOMOVERRIDE_RECORD=str(record),
                          ZOOMOVERRIDE_RECORD_BYTES=str(limit), TZ="XXX-05:30",
                          # The sanitizer's runtime comes with zoomreplay, after what is preloaded.
                          ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0")
        assert recorded == plain, f"{scenario}: other answers with the recorder"

        if not of_manager(plain):
            return 0
        if limit > SMALL:
            check_times(record)
            check_calls(record, scenario, len(of_manager(plain)))
        parts = [part for age in ("3", "2", "1") if (part := pathlib.Path(f"{record}.{age}")).exists()] + [record]
        unset = {f"vendor.debug.camera.zoomOverride.{name}": 0 for name in ("log", "closeP1Override", "closeP2Override")}
        assert all(properties(part) == unset | properties(scenario) for part in parts), scenario
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
