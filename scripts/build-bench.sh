#!/bin/sh
# Installs what is missing and builds the benchmarks, optimised and by GCC, into build/bench: all, or the
# targets that the arguments name.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-bench.txt) >&2
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=g++ \
    -DZOOMOVERRIDE_BUILD_BENCHMARKS=ON -DZOOMOVERRIDE_BUILD_TESTS=OFF >&2
cmake --build build/bench ${1:+--target "$@"} >&2
