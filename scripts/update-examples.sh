#!/bin/sh
# Writes the results in examples/expected anew, when a change of them is meant; git diff shows what changed.
# Numbers of source lines are written as N: they move with every edit.
set -eu
cd "$(dirname "$0")/.."

cmake --preset release >/dev/null
cmake --build --preset release --target zoomreplay
for scenario in examples/*.jsonl; do
    expected=examples/expected/${scenario##*/}
    build/release/tools/zoomreplay/zoomreplay "$scenario" -o "$expected" 2>/dev/null || [ $? -eq 3 ]
    sed -i -E 's/(\{#|\.cpp:)[0-9]+/\1N/g' "$expected"
done
