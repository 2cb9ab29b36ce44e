#!/bin/sh
# Replays all examples under valgrind, then lets a million requests pass with eight in flight: nothing
# leaks, nothing is read before it is written, and memory stays flat.
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
