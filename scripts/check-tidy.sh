#!/bin/bash
# Holds the sources to .clang-tidy. Most checks take the sources of a target in batches that are compiled as
# one, since nearly all their time goes to the headers that the sources share. Those that look into the main
# file only take it alone; tests are spared them. What is not built by default (the benchmarks) is left out.
set -eu -o pipefail
cd "$(dirname "$0")/.."

cmake --preset release-clang -B build/tidy/alone >/dev/null
cmake --preset release-clang -B build/tidy/batches -DZOOMOVERRIDE_COVERAGE=ON -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_UNITY_BUILD_BATCH_SIZE=16 >/dev/null

tidy() {
    clang-tidy --quiet "$@" 2>&1 | sed '/ warnings\? generated\.$/d'
}

checkBatch() {
    tidy -p build/tidy/batches "$1" \
        --checks='-clang-analyzer-*,-misc-unused-using-decls,-bugprone-suspicious-include'
}

# In the tools the analyzer would spend most of its time in the standard library behind the JSON library.
checkAlone() {
    local options=()
    if [[ $1 == tools/* ]]; then
        options=(-Xclang -analyzer-config -Xclang c++-stdlib-inlining=false)
    fi
    tidy -p build/tidy/alone "$1" --checks='-*,clang-analyzer-*,misc-unused-using-decls' \
        "${options[@]/#/--extra-arg=}"
}
export -f tidy checkBatch checkAlone
export SHELLOPTS

{
    sed -n 's/^ *"file": "\(.*unity_[0-9]*_cxx\.cxx\)",\{0,1\}$/checkBatch \1/p' \
        build/tidy/batches/compile_commands.json
    git ls-files '*.cpp' ':!bench/' ':!tests/' | sed 's/^/checkAlone /'
} | xargs -L 1 -P "$(nproc)" bash -c '"$0" "$1"'
