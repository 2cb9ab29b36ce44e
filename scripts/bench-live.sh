#!/bin/sh
# Measures a live replay: how long it takes from a line to the picture in a browser without a graphics card, at 60
# requests a second for a minute, and the memory of tool and page after an hour's worth of 30 a second.
set -eu
cd "$(dirname "$0")/.."
scripts/build-bench.sh
# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-report-test.txt) >&2

tool=build/bench/tools/zoomreplay/zoomreplay
node tests/live/browser.mjs "$tool" 60 200 1000
node bench/live-hour.mjs "$tool"
