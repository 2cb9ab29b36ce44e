#!/usr/bin/env python3
"""Writes scenarios of random calls, the same ones for the same seed on every machine.

Files named one-* use a single sensor and stream, so that no table has an order to differ in: their log
lines are comparable between standard libraries. Those named many-* use several; in them every stream has
a port of its own, since two crops of one port overwrite each other in the order of a table.
"""

import json
import pathlib
import random
import sys

ODD_FLOATS = [0.0, -0.0, 1.0, -1.0, 1e-30, 1e-45, 3.4e38, -3.4e38, 0.1, 16777217.0, "nan", "inf", "-inf"]
ODD_INTS = [0, 1, -1, 2, 3, 7, 65535, 65536, 2**31 - 1, -(2**31), 2**30, 46341]
SIZES = [[1536, 864], [2304, 1296], [4608, 2592], [640, 480], [3280, 2464], [4056, 3040], [2028, 1520],
         [1, 1], [1333, 999]]


class Scenario:
    def __init__(self, seed, single):
        self.random = random.Random(seed)
        self.lines = []
        self.sensors = [0] if single else self.random.sample([0, 1, 2, 3, 7, 255], self.random.randint(2, 4))
        self.streams = {}
        for index in range(1 if single else self.random.randint(2, 6)):
            sensor = self.random.choice(self.sensors)
            self.streams[f"0x{(0x7001 + index) << 40 | sensor << 32 | index:x}"] = sensor
        # One fault at most: with two it would depend on a table's order which one is met.
        self.fault = self.random.choice([None] * 6 + ["lost sensor", "lost mode", "lost matrix", "lost stream"])

    def add(self, op, **fields):
        self.lines.append(json.dumps({"op": op, **fields}))

    def chance(self, probability):
        return self.random.random() < probability

    def number(self):
        kind = self.random.random()
        if kind < 0.06:
            return self.random.choice(ODD_FLOATS)
        if kind < 0.3:
            return self.random.choice([1, 1.5, 2, 3, 4, 8])
        return round(self.random.uniform(0.5, 10), self.random.randint(1, 6))

    def integer(self, low, high):
        return self.random.choice(ODD_INTS) if self.chance(0.03) else self.random.randint(low, high)

    def rect(self):
        return [self.integer(-400, 4000), self.integer(-400, 3000), self.integer(1, 5000), self.integer(1, 4000)]

    def rect_f(self):
        return [value if self.chance(0.4) else round(value + self.random.random(), 4) for value in self.rect()]

    def platform(self):
        if self.chance(0.5):
            self.add("property", name="vendor.debug.camera.zoomOverride.log", value=self.random.randint(0, 3))
        self.add("logger", detailsLevel=self.random.choice([3, 5, 5]))
        for sensor in self.sensors:
            modes = {}
            for mode in range(3):
                size = self.random.choice(SIZES)
                modes[mode] = {"size": size}
                if self.fault == "lost matrix" and sensor == self.sensors[0]:
                    continue
                if self.chance(0.5):
                    factor = self.random.choice([1, 2, 3])
                    modes[mode]["window"] = [self.random.randint(0, 999), self.random.randint(0, 999),
                                             size[0] * factor, size[1] * factor + self.random.choice([0, 1])]
                else:
                    modes[mode]["matrix"] = [self.number(), self.integer(-900, 900),
                                             self.number(), self.integer(-900, 900)]
            self.add("sensor", id=sensor, modes=modes)

    def configure(self):
        infos = {}
        for sensor in self.sensors:
            infos[sensor] = {"degreeH": self.random.choice([66, 66, 102, 30, self.number(), 90.5]),
                             "degreeV": self.random.choice([41, 67, 22.25, self.number()]),
                             "activeArray": [self.random.choice([0, 0, 8, 101])] * 2 + self.random.choice(SIZES)}
        for op in ("configSensorInfo", "SensorCropMapper.config"):
            self.add(op, sensorIds=self.sensors, sensorInfos=infos)
        self.add("configFspInfo", fspPorts={s: self.random.choice([0x7001, 0x7003]) for s in self.sensors})
        self.add("configSensorBehaviorInfo", portSizes={
            s: {p: self.random.choice(SIZES) for p in (1, 2, 3) if self.chance(0.7)} for s in self.sensors})

    def deposit(self, request):
        if request > 1 and self.chance(0.2):
            self.add("setRunTimeCropNeedData", requestNo=request, notice="repeating")
            return
        modes = {s: -1 if self.chance(0.1) else self.random.randint(0, 2) for s in self.sensors}
        if self.chance(0.05) and self.fault == "lost mode":
            modes[self.sensors[0]] = 9
        if self.chance(0.2) and self.fault == "lost sensor":
            del modes[self.sensors[-1]]
        streams = {stream: self.random.choice(SIZES) for stream in self.streams}
        if self.chance(0.2) and self.fault == "lost stream":
            del streams[next(iter(streams))]
        # A stream follows one of its own sensor, and never one that itself follows.
        leaders = [s for i, s in enumerate(self.streams) if i % 2 == 0]
        constraints = {}
        for index, (stream, sensor) in enumerate(self.streams.items()):
            choice = [s for s in leaders if self.streams[s] == sensor]
            if index % 2 and choice and self.chance(0.6):
                constraints[stream] = self.random.choice(choice)
        self.add("setRunTimeCropNeedData", requestNo=request, sensorModes=modes, streamSizes=streams,
                 constraintStreams=constraints)

    def store(self, mode, request):
        if mode == "InstantRequest":
            crops = []
            for number in range(len(self.streams)):
                if self.chance(0.8):
                    crops += [number] + self.rect()
            metadata = {"zoomRatio": self.number()}
            if crops or self.chance(0.5):
                metadata["customStreamCrops"] = crops[:len(crops) - self.random.choice([0, 0, 0, 1])]
            ids = dict(enumerate(self.streams))
            self.add("storeOverrideSetting", metadata=metadata, streamIdMap=ids)
        elif mode == "ByRequest":
            if request > 1 and self.chance(0.2):
                self.add("storeOverrideSetting", requestNo=request + 2, notice="repeating", setting=None)
                return
            crops = {s: self.rect_f() for s in self.sensors}
            extra = {s: self.rect_f() for s in self.sensors if self.chance(0.6)}
            self.add("storeOverrideSetting", requestNo=request + 2, setting={
                "overrideValid": self.chance(0.9), "requestNo": request + self.random.randint(0, 3),
                "zoomRatio": self.number(), "overrideRect": self.rect(), "previewAaCrops": crops,
                "extraAaCrops": extra})
        else:
            self.add("publish", zoomRatio=self.number(), enable=self.chance(0.85))

    def query(self, mode, request):
        for _ in range(self.random.randint(1, 2)):
            fields = {"requestNo": request, "zoomRatio": self.number(), "sensorId": self.random.choice(self.sensors)}
            self.add("getP1CropSetting", **fields)
            if mode != "InstantRequest":
                self.add("getP2CropSetting", **fields, manual=self.chance(0.3))
        if self.chance(0.3):
            self.add("correctTgCropRegion", sensorId=self.sensors[0], sensorMode=self.random.randint(0, 2),
                     crop=self.rect(), checkMinSize=self.chance(0.5), minSize=self.random.choice(SIZES))

    def build(self):
        self.platform()
        for mode in self.random.sample(["InstantRequest", "ByRequest", "ExternalAPI"], 2):
            self.add("initialize", mode=mode)
            self.configure()
            for request in range(1, self.random.randint(4, 12)):
                self.deposit(request)
                if request == 1 or self.chance(0.7):
                    self.store(mode, request)
                self.query(mode, request)
                if self.chance(0.8):
                    self.add("onRequestDone", requestNo=request)
        for _ in range(4):
            self.add("SensorCropMapper.getSensorCrop", zoomRatio=self.number(), enable=True)
        return "\n".join(self.lines) + "\n"


def main():
    folder, count = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    for seed in range(count):
        single = seed % 2 == 0
        name = f"{'one' if single else 'many'}-{seed:04}.jsonl"
        (folder / name).write_text(Scenario(seed, single).build())


if __name__ == "__main__":
    main()
