#!/bin/sh
# Writes the report that moves.mjs moves through: moves.sh ZOOMREPLAY FOLDER
set -eu
make="$(cd "$(dirname "$0")" && pwd)/movesScenario.mjs"
mkdir -p "$2"
cd "$2"
node "$make" > before.jsonl
"$1" before.jsonl -o expected.jsonl
node "$make" now > scenario.jsonl
status=0
"$1" scenario.jsonl -o results.jsonl --compare expected.jsonl --report report.html 2> messages || status=$?
[ "$status" -eq 1 ] # one request differs
