#!/bin/bash
# Holds the sources to .clang-tidy. Most checks take the sources of a target in batches that are compiled as
# one, since nearly all their time goes to the headers that the sources share. Those that look into the main
# file only take it alone. What is not built by default (the benchmarks) is left out.
set -eu -o pipefail
cd "$(dirname "$0")/.."

cmake --preset release-clang >/dev/null
cmake --preset release-clang -B build/tidy -DZOOMOVERRIDE_COVERAGE=ON -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_UNITY_BUILD_BATCH_SIZE=16 >/dev/null

tidy() {
    clang-tidy --quiet "$@" 2>&1 | sed '/ warnings\? generated\.$/d'
}

checkBatch() {
    tidy -p build/tidy --checks='-clang-analyzer-*,-misc-unused-using-decls,-bugprone-suspicious-include' "$1"
}

checkAlone() {
    local checks='-*,misc-unused-using-decls'
    [[ $1 == tests/* ]] || checks+=',clang-analyzer-*'  # see tests/.clang-tidy
    tidy -p build/release-clang --checks="$checks" "$1"
}
export -f tidy checkBatch checkAlone
export SHELLOPTS

{
    sed -n 's/^ *"file": "\(.*unity_[0-9]*_cxx\.cxx\)",\{0,1\}$/checkBatch \1/p' build/tidy/compile_commands.json
    git ls-files '*.cpp' ':!bench/' | sed 's/^/checkAlone /'
} | xargs -L 1 -P "$(nproc)" bash -c '"$0" "$1"'
