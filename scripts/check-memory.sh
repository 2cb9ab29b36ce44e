#!/bin/sh
# Replays all examples under valgrind, then lets a million requests pass with eight in flight, and writes a
# trace of 200,000: nothing leaks, nothing is read before it is written, and memory stays flat.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-test.txt \
    scripts/packages-memory.txt)

cmake --preset release
cmake --build build/release --target zoomreplay soak

for scenario in examples/*.jsonl; do
    status=0
    valgrind --quiet --error-exitcode=99 --leak-check=full --show-leak-kinds=definite,indirect \
        --errors-for-leak-kinds=definite,indirect \
        build/release/tools/zoomreplay/zoomreplay "$scenario" -o - --log >build/release/valgrind.out 2>&1 ||
        status=$?
    # 3: the scenario ends in a fatal condition, as its name says.
    case "$scenario:$status" in
        *:0 | *fatal*:3) echo "clean: $scenario" ;;
        *) cat build/release/valgrind.out; exit 1 ;;
    esac
done
build/release/tests/stress/soak 1000000

awk 'BEGIN {
    print "{\"op\": \"sensor\", \"id\": 0, \"modes\": {\"2\": {\"size\": [1536, 864], \"window\": [768, 432, 3072, 1728]}}}"
    print "{\"op\": \"initialize\", \"mode\": \"InstantRequest\"}"
    for (i = 0; i < 200000; i++) {
        printf "{\"op\": \"setRunTimeCropNeedData\", \"requestNo\": %d, \"sensorModes\": {\"0\": 2}, \"streamSizes\": {\"0x70010000000000\": [640, 360]}}\n", i
        printf "{\"op\": \"storeOverrideSetting\", \"metadata\": {\"zoomRatio\": 2, \"customStreamCrops\": [0, %d, 864, 1536, 864]}, \"streamIdMap\": {\"0\": \"0x70010000000000\"}}\n", 1000 + i % 500
        printf "{\"op\": \"getP1CropSetting\", \"requestNo\": %d, \"zoomRatio\": 3}\n{\"op\": \"onRequestDone\", \"requestNo\": %d}\n", i, i
    }
}' >build/release/long.jsonl
# The records of all requests would take more addresses.
prlimit --as=$((32 << 20)) build/release/tools/zoomreplay/zoomreplay build/release/long.jsonl \
    -o /dev/null --trace /dev/null
echo "flat: a trace of 200,000 requests"
