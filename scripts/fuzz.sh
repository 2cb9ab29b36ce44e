#!/bin/bash
# Runs each fuzz target for a time, 20 seconds unless an argument gives another number, under the address
# and undefined behaviour sanitizers. An input that fails is kept in fuzz/regressions, from where ctest
# replays it for ever after. What the targets learnt is kept in build/fuzz/corpus for the next run.
set -eu
cd "$(dirname "$0")/.."

seconds=${1:-20}
# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-test.txt \
    scripts/packages-fuzz.txt)

cmake --preset fuzz
cmake --build --preset fuzz

failed=0
for name in interface numbers scenario; do
    corpus=build/fuzz/corpus/$name
    kept=fuzz/regressions/$name
    mkdir -p "$corpus" "$kept"
    folders=("$corpus" "$kept")
    [ "$name" != scenario ] || folders+=(examples)
    echo "== $name, $seconds seconds"
    # Scenarios are text, and long. The library's last words are no news.
    length=512
    [ "$name" != scenario ] || length=8192
    "build/fuzz/fuzz/fuzz_$name" -max_total_time="$seconds" -max_len=$length -len_control=0 -timeout=10 \
        -close_fd_mask=2 -print_final_stats=1 -artifact_prefix="$kept/" "${folders[@]}" \
        2>"build/fuzz/$name.log" || failed=1
    grep -E 'DONE|stat::(number_of_executed_units|average_exec)|SUMMARY|Test unit written' \
        "build/fuzz/$name.log" || true
    rmdir --ignore-fail-on-non-empty "$kept"
done
exit $failed
