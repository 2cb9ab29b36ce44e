#!/bin/sh
# Holds all sources to .clang-tidy. Needs a configured build folder of Clang: build/release-clang.
set -eu
cd "$(dirname "$0")/.."
git ls-files '*.cpp' | xargs -n 1 -P "$(nproc)" clang-tidy --quiet -p build/release-clang
