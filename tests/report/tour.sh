#!/bin/sh
# Writes the report of tour.jsonl, its results and its printed steps: tour.sh ZOOMREPLAY FOLDER
# The report asks the library for things of its own; results and log are as without one.
set -eu
scenario="$(cd "$(dirname "$0")" && pwd)/tour.jsonl"
mkdir -p "$2"
cd "$2"
cp "$scenario" .
fatal() { # the scenario ends in a fatal condition
    status=0
    "$@" || status=$?
    [ "$status" -eq 3 ]
}
fatal "$1" tour.jsonl -o results.jsonl --log --report report.html 2> messages
fatal "$1" tour.jsonl -o plain.jsonl --log 2> messages
for file in results plain; do # without addresses of objects, which each process has elsewhere
    sed -E 's/0x[0-9a-f]{8,}/0x/g' $file.jsonl > $file.log
done
cmp results.log plain.log
fatal "$1" why tour.jsonl 0-99 > steps.txt 2>> messages
