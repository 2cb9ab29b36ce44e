#!/usr/bin/env python3
"""Replays scenarios into a trace and holds its events against the scenario and its results.

The reader knows the trace event format only, as a viewer does: what is shown at a time is what the events
up to it say.
"""

import collections
import json
import math
import os
import pathlib
import struct
import subprocess
import sys
import tempfile

STAGES = {"getP1CropSetting": "P1", "getP2CropSetting": "P2", "get3ACropSetting": "3A"}
PORTS = {"0x7001": "R1", "0x7002": "R2", "0x7003": "R3"}
PLATFORM = ("sensor", "property", "logger", "observed")


class Trace:
    def __init__(self, path):
        self.events = json.loads(path.read_text())["traceEvents"]
        self.names = {event["tid"]: event["args"]["name"] for event in self.of("M") if event["name"] == "thread_name"}

    def of(self, *phases):
        return [event for event in self.events if event["ph"] in phases]


def single(value):
    """A float as the library has it."""
    return value if isinstance(value, str) else struct.unpack("f", struct.pack("f", value))[0]


def lines_of(text):
    found = {}
    for number, line in enumerate(text.splitlines(), 1):
        if line.strip() and not line.strip().startswith("//"):
            found[number] = json.loads(line)
    return found


def check_order(trace, scenario):
    """Times never run backwards, in the file and on each track; only an arrow begins in the past. Calls that tell
    their times have them, but for the microsecond that one without a duration takes up."""
    now = 0
    ends = collections.Counter()
    for event in trace.of("X", "B", "E", "b", "e", "C", "i", "f"):
        assert event["ts"] >= now, event
        now = event["ts"]
        if event["ph"] == "X":
            assert event["ts"] >= ends[event["tid"]] - 1e-6, f"overlaps its predecessor: {event}"
            ends[event["tid"]] = event["ts"] + event["dur"]
            assert event["dur"] > 0, f"nobody sees it: {event}"
            line = scenario[event["args"]["line"]]
            assert abs(event["ts"] - line.get("t", event["ts"] * 1000) / 1000) < 2, f"not its time: {event}"
            assert abs(event["dur"] - line.get("dur", event["dur"] * 1000) / 1000) < 0.002, f"not as long: {event}"


def check_calls(trace, scenario, results):
    """Every call once, on the track of its stage, and an instant where something went wrong."""
    slices = trace.of("X")
    shown = [event["args"]["line"] for event in slices]
    assert shown == [number for number, line in scenario.items()
                     if number in results or line["op"] == "publish"], "not every call once"
    instants = {event["args"]["line"]: event["name"] for event in trace.of("i")}
    for event in slices:
        result = results.get(event["args"]["line"])
        if result is None:
            continue
        stage = STAGES.get(result["op"])
        assert trace.names[event["tid"]] == (f"{stage} queries" if stage else "calls"), event
        assert event["name"] == result["op"]
        expected = next((kind for kind in ("exception", "fatal") if kind in result),
                        f"{stage} refused" if stage and not result.get("result", True) else None)
        assert instants.pop(result["line"], None) == expected, event
        if "need" in result:
            assert event["args"]["answer"] == ("override" if result["result"] else "no")
            assert single(event["args"]["asked"]) == single(scenario[result["line"]]["zoomRatio"]), event
            assert event["args"]["override"] == result["need"]["zoomRatio"]
            check_listed(event["args"].get("crops", []), result)
    assert not instants, instants


def crops_of(result):
    """The crops of an answer by the name of their counters."""
    if not result["result"]:
        return {}
    stage, need = STAGES[result["op"]], result["need"]
    crops = {f"sensor {sensor} {stage} {PORTS.get(port, port)}": crop
             for sensor, ports in need.get("tgCrops", {}).items() for port, crop in ports.items()}
    for table, kind in (("streamCrops", ""), ("extraTgCrops", " extra")):
        crops |= {f"sensor {sensor} {stage}{kind}": crop for sensor, crop in need.get(table, {}).items()}
    return crops


def check_listed(listed, result):
    """The arguments have the crops, and before the correction none that is the same."""
    stage = STAGES[result["op"]]
    named = {}
    for crop in listed:
        assert crop.get("beforeCorrection") != crop["crop"]
        kinds = crop["ports"].split() if "ports" in crop else ["extra" if "extra" in crop else ""]
        for kind in kinds:
            named[f"sensor {crop['sensor']} {stage} {kind}".strip()] = crop["crop"]
    assert named == crops_of(result), f"{result['line']}: {named}"


def check_counters(trace, results):
    """At each query the counters of its stage are those of its crops, and 0 for crops that are gone."""
    counters = collections.deque(event for event in trace.of("C") if event["name"] != "observed ratio")
    values = {}
    seen = collections.defaultdict(set)
    for event in trace.of("X"):
        result = results.get(event["args"]["line"], {})
        if "need" not in result:
            continue
        while counters and counters[0]["ts"] < event["ts"] + event["dur"]:
            counter = counters.popleft()
            assert list(counter["args"]) == ["value"], "a chart would show the sum"
            values[counter["name"]] = counter["args"]["value"]
        for name, value in (("asked ratio", event["args"]["asked"]), ("override ratio", event["args"]["override"])):
            assert isinstance(value, str) or values[name] == value, f"{name}: {event}"
        crops = crops_of(result)
        seen[event["name"]] |= set(crops)
        for name in seen[event["name"]]:
            x, y, w, h = crops.get(name, (0, 0, 0, 0))
            assert values[f"{name} width"] == w, f"line {result['line']}: {name}"
            if name in crops:
                centre = (values[f"{name} centre x"], values[f"{name} centre y"])
                assert all(math.isclose(*pair, abs_tol=0.5, rel_tol=1e-6)
                           for pair in zip(centre, (x + w / 2, y + h / 2))), f"line {result['line']}: {name}"
    assert not counters, "counters without a query"


def check_requests(trace, scenario, results):
    """A span for each request in flight, all of one name; it ends where the request is done."""
    begins = {event["id"]: event for event in trace.of("b")}
    ends = {event["id"]: event for event in trace.of("e")}
    assert len(begins) == len(trace.of("b")) and begins.keys() == ends.keys()
    assert {event["name"] for event in (*begins.values(), *ends.values())} <= {"request"}
    expected, flying = [], {}
    for number, line in scenario.items():
        if line["op"] == "setRunTimeCropNeedData" and int(line["requestNo"]) not in flying:
            flying[int(line["requestNo"])] = number
        elif line["op"] == "onRequestDone" and int(line["requestNo"]) in flying and "result" in results[number]:
            expected.append((flying.pop(int(line["requestNo"])), number))
        elif line["op"] == "initialize":
            flying.clear()
    done = [(begins[id]["args"]["line"], end["args"]["line"]) for id, end in ends.items() if end["args"]["done"]]
    assert sorted(done) == sorted(expected), f"{sorted(done)}, not {sorted(expected)}"


def check_sensors(trace, scenario):
    """Each deposit's modes are what the sensors' tracks show from then on."""
    shown, open_modes = {}, collections.Counter()
    slices = {event["args"]["line"]: event for event in trace.of("X")}
    changes = collections.deque(trace.of("B", "E"))
    modes = {}
    for number, line in scenario.items():
        if line["op"] != "setRunTimeCropNeedData" or number not in slices:
            continue
        if line.get("notice") not in ("repeating", 1):
            modes = {sensor: mode for sensor, mode in line.get("sensorModes", {}).items() if mode not in (-1, 4294967295)}
        while changes and changes[0]["ts"] <= slices[number]["ts"]:
            change = changes.popleft()
            sensor = trace.names[change["tid"]].removeprefix("sensor ")
            open_modes[sensor] += 1 if change["ph"] == "B" else -1
            assert open_modes[sensor] in (0, 1), "modes overlap"
            shown[sensor] = change["name"] if change["ph"] == "B" else None
        assert {s: m for s, m in shown.items() if m} == {s: f"mode {m}" for s, m in modes.items()}, f"line {number}"


def check_arrows(trace, scenario):
    """Each arrow leads from a call that hands something over to a later query: the one of its request."""
    starts = {event["id"]: event for event in trace.of("s")}
    ends = {event["id"]: event for event in trace.of("f")}
    assert len(starts) == len(trace.of("s")) and starts.keys() == ends.keys(), "arrows lack an end"
    at = {(event["tid"], event["ts"]): event for event in trace.of("X")}
    deposited = collections.Counter()
    for id, start in starts.items():
        source, query = at[start["tid"], start["ts"]], at[ends[id]["tid"], ends[id]["ts"]]
        assert source["name"] in ("setRunTimeCropNeedData", "storeOverrideSetting", "publish"), source
        assert query["name"] in STAGES and source["args"]["line"] < query["args"]["line"]
        if source["name"] == "setRunTimeCropNeedData":
            assert source["args"]["request"] == query["args"]["request"]
            deposited[query["args"]["line"]] += 1
    assert not deposited or max(deposited.values()) == 1


def check(zoomreplay, path):
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "t.json")
        run = subprocess.run([zoomreplay, path, "-o", "-", "--trace", file], text=True, capture_output=True)
        assert run.returncode in (0, 3), run.stderr
        trace = Trace(file)
    results = {result["line"]: result for result in map(json.loads, run.stdout.splitlines())}
    last = max(results) if run.returncode == 3 else math.inf
    scenario = {number: line for number, line in lines_of(pathlib.Path(path).read_text()).items() if number <= last}
    check_order(trace, scenario)
    check_calls(trace, scenario, results)
    check_counters(trace, results)
    check_requests(trace, scenario, results)
    check_sensors(trace, scenario)
    check_arrows(trace, scenario)
    return collections.Counter(event["ph"] for event in trace.events)


def check_threads(zoomreplay, recorder, stress):
    """The calls of a program's threads stand at the times at which they were made."""
    with tempfile.TemporaryDirectory() as folder:
        record = pathlib.Path(folder, "record.jsonl")
        environment = {"LD_PRELOAD": recorder, "ZOOMOVERRIDE_RECORD": str(record),
                       "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"}
        subprocess.run([stress, "4000"], check=True, capture_output=True, env=os.environ | environment)
        assert "\"dur\": " in record.read_text()
        assert check(zoomreplay, record)["X"] >= 4000


def main():
    zoomreplay, recorder, stress, *paths = sys.argv[1:]
    assert paths
    check_threads(zoomreplay, recorder, stress)
    seen = collections.Counter()
    for path in paths:
        try:
            seen += check(zoomreplay, path)
        except AssertionError as error:
            raise AssertionError(f"{path}: {error}") from error
    assert all(seen[phase] for phase in "XBEbeCisfM"), f"nothing of some kind: {seen}"


if __name__ == "__main__":
    main()
