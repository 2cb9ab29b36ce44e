#!/bin/sh
# Installs what is missing, builds everything and passes the tests. An argument names another preset
# of CMakePresets.json than "release"; "asan" and "tsan" want Clang, see packages-checks.txt. Further
# arguments go to CMake, such as -DCMAKE_UNITY_BUILD=ON, which builds in half the time.
set -eu
cd "$(dirname "$0")/.."

preset=${1:-release}
[ $# -eq 0 ] || shift
# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-test.txt \
    scripts/packages-report-test.txt)
scripts/install-axe.sh

cmake --preset "$preset" "$@"
cmake --build --preset "$preset"
ctest --preset "$preset"
