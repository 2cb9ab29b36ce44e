#!/bin/sh
# Writes the report of tour.jsonl, its results and its printed steps: tour.sh ZOOMREPLAY FOLDER
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
fatal "$1" why tour.jsonl 0-99 > steps.txt 2>> messages
