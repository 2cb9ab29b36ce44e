#!/usr/bin/env python3
"""Runs a program whose threads call the manager at the same time, with the recorder in front of it.

Each call is a line of the record by itself, the calls follow each other, and there are at least so many.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile


def main():
    recorder, least, *program = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        record = pathlib.Path(folder, "record.jsonl")
        subprocess.run(program, check=True, env=os.environ | {
            "LD_PRELOAD": recorder,
            "ZOOMOVERRIDE_RECORD": str(record),
            "ZOOMOVERRIDE_RECORD_BYTES": "1000000",
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"})
        parts = list(pathlib.Path(folder).iterdir())
        calls = 0
        for part in parts:
            lines = part.read_text().split("// The record goes on here.\n")[1].splitlines()
            times = [call["t"] for line in lines if not line.startswith("//") and "t" in (call := json.loads(line))]
            assert times == sorted(times), part
            calls += len(times)
        assert calls >= int(least), calls


if __name__ == "__main__":
    main()
