#!/bin/sh
# Holds all sources to .clang-format.
set -eu
cd "$(dirname "$0")/.."
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror
