#!/bin/sh
# Measures zoomreplay on a scenario of a million lines: 250000 requests of instant-request mode on
# two sensors, a deposit, metadata, a P1 query and a done each, the ratio going up and down.
# Prints the lines per second of processor time and the largest memory, for the table, for the JSON
# results and for the parsing of the lines alone.
set -eu
cd "$(dirname "$0")/.."
scripts/build-bench.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
awk 'BEGIN {
    print "{\"op\": \"sensor\", \"id\": 0, \"modes\": {\"2\": {\"size\": [1536, 864], \"window\": [768, 432, 3072, 1728]}}}"
    print "{\"op\": \"sensor\", \"id\": 1, \"modes\": {\"2\": {\"size\": [1640, 1232], \"window\": [0, 0, 3280, 2464]}}}"
    print "{\"op\": \"initialize\", \"mode\": \"InstantRequest\"}"
    for (i = 0; i < 250000; i++) {
        ratio = 1 + (i % 100) / 100
        printf "{\"op\": \"setRunTimeCropNeedData\", \"requestNo\": %d, \"sensorModes\": {\"0\": 2, \"1\": 2}, \"streamSizes\": {\"0x70010000000000\": [640, 360], \"0x70010100000000\": [640, 480]}}\n", i
        printf "{\"op\": \"storeOverrideSetting\", \"metadata\": {\"zoomRatio\": %.2f, \"customStreamCrops\": [0, 1536, 864, 1536, 864, 1, 640, 480, 2000, 1500]}, \"streamIdMap\": {\"0\": \"0x70010000000000\", \"1\": \"0x70010100000000\"}}\n", ratio
        printf "{\"op\": \"getP1CropSetting\", \"requestNo\": %d, \"zoomRatio\": %.2f, \"sensorId\": 0}\n", i, ratio + 0.1
        printf "{\"op\": \"onRequestDone\", \"requestNo\": %d}\n", i
    }
}' > "$work/million.jsonl"

lines=$(wc -l < "$work/million.jsonl")
# measure LABEL COMMAND...: the command's processor time; what it prints goes into a pipe.
measure() {
    label=$1
    shift
    for _ in 1 2 3; do
        /usr/bin/time -f '%U %S %M' -o "$work/time" "$@" | cat > /dev/null
        cat "$work/time"
    done | sort -n | awk -v label="$label" -v lines="$lines" '
        NR == 2 { printf "%-16s %8.0f lines per CPU second, %5.1f MiB\n", label,
                  lines / ($1 + $2), $3 / 1024 }'
}
echo "$lines lines, $(($(wc -c < "$work/million.jsonl") / 1048576)) MiB; the middle one of three runs"
replay="build/bench/tools/zoomreplay/zoomreplay $work/million.jsonl"
# shellcheck disable=SC2086 # a word each
{
    measure "table" $replay
    measure "JSON to a file" $replay -o "$work/results.jsonl"
    measure "JSON to a pipe" $replay -o -
    measure "JSON to nowhere" $replay -o /dev/null
}
measure "parsing alone" build/bench/bench/parse_lines "$work/million.jsonl"
