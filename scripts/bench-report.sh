#!/bin/sh
# Measures the report of a million lines: 200000 requests of three sensors, a deposit, what the
# customer publishes, a P1 and a P2 query and a done each. The zoom moves and rests, as people zoom.
# Prints memory and time of zoomreplay, the size of the page, and how a browser bears it.
set -eu
cd "$(dirname "$0")/.."
scripts/build-bench.sh
# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-report-test.txt) >&2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
scenario() {
    awk -v requests="$1" -v ports="$2" 'BEGIN {
        for (id = 0; id < 3; id++)
            printf "{\"op\": \"sensor\", \"id\": %d, \"modes\": {\"1\": {\"size\": [4032, 3024], \"window\": [0, 0, 4032, 3024]}, \"2\": {\"size\": [2016, 1512], \"window\": [0, 0, 4032, 3024]}}}\n", id
        print "{\"op\": \"initialize\", \"mode\": \"ExternalAPI\"}"
        array = "\"activeArray\": [0, 0, 4032, 3024]"
        printf "{\"op\": \"configSensorInfo\", \"sensorIds\": [0, 1, 2], \"sensorInfos\": {\"0\": {\"degreeH\": 80, \"degreeV\": 62, %s}, \"1\": {\"degreeH\": 120, \"degreeV\": 94, %s}, \"2\": {\"degreeH\": 40, \"degreeV\": 31, %s}}}\n", array, array, array
        if (ports > 2) print "{\"op\": \"configFspInfo\", \"fspPorts\": {\"0\": \"0x7003\", \"1\": \"0x7003\", \"2\": \"0x7003\"}}"
        printf "{\"op\": \"configSensorBehaviorInfo\", \"portSizes\": {\"0\": {\"1\": [4032, 3024]}, \"1\": {\"1\": [4032, 3024]}, \"2\": {\"1\": [4032, 3024]}}}\n"
        ratio = 1; goal = 3; rest = 0; srand(7)
        for (i = 1; i <= requests; i++) {
            if (rest > 0) rest--
            else {
                ratio += (goal - ratio) * 0.04 + (goal > ratio ? 0.004 : -0.004)
                if ((goal - ratio) ^ 2 < 0.0004) { goal = 0.7 + 5 * rand(); rest = 20 + int(130 * rand()) }
            }
            asker = ratio < 2 ? 0 : 2
            printf "{\"op\": \"setRunTimeCropNeedData\", \"requestNo\": %d, \"sensorModes\": {\"0\": 1, \"1\": %d, \"2\": %d}}\n", i, 1 + int(i / 900) % 2, (ratio > 2 ? 1 : -1)
            printf "{\"op\": \"publish\", \"enable\": true, \"zoomRatio\": %.4f}\n", ratio * (int(i / 300) % 2 ? 0.97 : 1.05)
            printf "{\"op\": \"getP1CropSetting\", \"requestNo\": %d, \"zoomRatio\": %.4f, \"sensorId\": %d}\n", i, ratio, asker
            printf "{\"op\": \"getP2CropSetting\", \"requestNo\": %d, \"zoomRatio\": %.4f, \"sensorId\": %d}\n", i, ratio, asker
            printf "{\"op\": \"onRequestDone\", \"requestNo\": %d}\n", i
        }
    }'
}
report() {
    /usr/bin/time -f '%e %M' -o "$work/time" build/bench/tools/zoomreplay/zoomreplay "$work/$1.jsonl" \
        --report "$work/$1.html" > /dev/null
    awk -v size="$(wc -c < "$work/$1.html")" -v label="$2" '{
        printf "%-32s %.2f MB, written in %.1f s with %.0f MB of memory\n", label, size / 1e6, $1, $2 / 1024 }' "$work/time"
}

scenario 1000 4 > "$work/short.jsonl"
report short "page of 1000 requests"
scenario 200000 2 > "$work/long.jsonl"
report long "page of 200000 requests"
node bench/report.mjs "$work/long.html"
