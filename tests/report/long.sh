#!/bin/sh
# Writes the report of 50000 requests that long.mjs looks at: long.sh ZOOMREPLAY FOLDER
set -eu
make="$(cd "$(dirname "$0")" && pwd)/longScenario.mjs"
mkdir -p "$2"
cd "$2"
node "$make" 50000 0 25000 > before.jsonl
"$1" before.jsonl -o expected.jsonl
node "$make" 50000 31000 25000 > scenario.jsonl
status=0
"$1" scenario.jsonl -o results.jsonl --compare expected.jsonl --report report.html || status=$?
[ "$status" -eq 1 ] # one request differs
