#!/bin/bash
# Runs each fuzz target for a time, 60 seconds unless an argument gives another number, under the address
# and undefined behaviour sanitizers, as many at a time as there are processors. An input that fails is kept
# in fuzz/regressions, from where ctest replays it for ever after. What the targets learnt is kept in
# build/asan/corpus for the next run.
set -eu
cd "$(dirname "$0")/.."

seconds=${1:-60}
targets=(interface numbers lines scenario phone)
# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-test.txt \
    scripts/packages-fuzz.txt)

cmake --preset asan
cmake --build build/asan --target "${targets[@]/#/fuzz_}"

fuzz() {
    local name=$1 seconds=$2 log=build/asan/fuzz_$1.log
    local folders=("build/asan/corpus/$name" "fuzz/regressions/$name")
    # Scenarios and what phones print are text, and long.
    local length=512
    [ "$name" != lines ] || folders+=(fuzz/seeds/lines)
    [ "$name" != scenario ] || { folders+=(examples); length=8192; }
    [ "$name" != phone ] || { folders+=(tests/import); length=8192; }
    # The library's last words are no news, hence the closed stream.
    "build/asan/fuzz/fuzz_$name" -max_total_time="$seconds" -max_len=$length -len_control=0 -timeout=10 \
        -close_fd_mask=2 -artifact_prefix="fuzz/regressions/$name/" "${folders[@]}" 2>"$log" ||
        { tail -30 "$log"; return 1; }
    sed -nE "s/^#([0-9]+)\s+DONE\s+cov: ([0-9]+) .*/$name: \1 inputs, \2 edges reached/p" "$log"
}
export -f fuzz

mkdir -p "${targets[@]/#/build/asan/corpus/}" "${targets[@]/#/fuzz/regressions/}"
status=0
printf '%s\n' "${targets[@]}" |
    xargs -I NAME -P "$(nproc)" bash -c 'fuzz NAME "$0"' "$seconds" || status=1
rmdir -p --ignore-fail-on-non-empty "${targets[@]/#/fuzz/regressions/}" 2>/dev/null || true
exit $status
