#!/bin/sh
# Holds the binary interface (slots, records, exported symbols) against its checked-in description and
# says what changed. With --update it takes what is built for the new description.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-test.txt)

cmake --preset release
cmake --build build/release --target abi_description zoomoverridemgr
if [ "${1:-}" = --update ]; then
    build/release/tests/abi/abi_description >tests/abi/abi.txt
    git diff --stat -- tests/abi/abi.txt
fi
ctest --test-dir build/release --output-on-failure -R '^(abi\.layout|exported_symbols)$'
