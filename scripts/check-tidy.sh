#!/bin/sh
# Holds the sources to .clang-tidy. Needs a configured build folder of Clang, build/release-clang; what is
# not built there (the benchmarks) is left out, as its flags are not known.
set -eu
cd "$(dirname "$0")/.."
git ls-files '*.cpp' ':!bench/' | xargs -n 1 -P "$(nproc)" clang-tidy --quiet -p build/release-clang
