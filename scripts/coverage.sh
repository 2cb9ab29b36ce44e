#!/bin/sh
# Prints line and branch coverage of the module by its own tests. Branches that only an exception takes,
# such as a failing allocation, do not count. An argument names a folder for pages to browse.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-test.txt \
    scripts/packages-coverage.txt)

cmake --preset coverage
cmake --build build/coverage --target module_tests
find build/coverage -name '*.gcda' -delete
build/coverage/tests/module/module_tests --gtest_brief=1 >/dev/null 2>build/coverage/tests.log ||
    { tail -50 build/coverage/tests.log; exit 1; }

report() {
    gcovr build/coverage/feature build/coverage/tests/module --root . --filter 'feature/' \
        --exclude-throw-branches --exclude-unreachable-branches "$@"
}
report
report --branches
if [ -n "${1:-}" ]; then
    mkdir -p "$1"
    report --html-details "$1/index.html"
fi
