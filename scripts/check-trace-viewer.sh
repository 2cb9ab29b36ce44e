#!/bin/sh
# Opens a trace in a viewer that is not ours, speedscope from the npm registry, in headless Chromium. Without
# npm or its registry there is no viewer, and nothing is checked.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-report-test.txt)
cmake --preset release >/dev/null
cmake --build --preset release --target zoomreplay >/dev/null

folder=$PWD/build/speedscope
version=1.25.0
mkdir -p "$folder"
if [ ! -e "$folder/package/dist/release/index.html" ]; then
    if ! command -v npm >/dev/null || ! (cd "$folder" && npm pack --silent "speedscope@$version" >/dev/null); then
        echo "speedscope cannot be had here: no viewer was tried"
        exit 0
    fi
    tar -C "$folder" -xf "$folder/speedscope-$version.tgz"
fi
build/release/tools/zoomreplay/zoomreplay examples/external-zoom-ramp.jsonl -o "$folder/results.jsonl" \
    --trace "$folder/trace.json"
node tests/trace/viewer.mjs "$folder/package/dist/release" "$folder/trace.json"
