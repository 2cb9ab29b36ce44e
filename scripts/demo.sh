#!/bin/sh
# Installs what is missing, builds the library and zoomreplay, and replays an example of each mode, as
# a table and as a report for a browser.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt)

cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=g++ \
    -DCMAKE_UNITY_BUILD=ON -DZOOMOVERRIDE_BUILD_TESTS=OFF
cmake --build build/demo

reports=build/demo/reports
mkdir -p "$reports"

replay() {
    echo
    echo "== $1: the first lines of $2"
    sed -n '/^\/\//!q; s/^\/\/ \{0,1\}/   /p' "$2"
    report="$reports/$(basename "$2" .jsonl).html"
    build/demo/tools/zoomreplay/zoomreplay "$2" --report "$report"
    echo "The same to look at, in a browser: $PWD/$report"
}

replay "Instant request" examples/instant-pinch-zoom.jsonl
replay "By request" examples/by-request-settings.jsonl
replay "External API" examples/external-zoom-ramp.jsonl
