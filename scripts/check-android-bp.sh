#!/bin/sh
# Holds Android.bp to the format of bpfmt and its lists of sources to those of the CMake build, and asks Soong, as
# Debian packages it, whether it builds and installs what a device is to get.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-test.txt \
    scripts/packages-android-bp.txt)

differences=$(bpfmt -d Android.bp)
if [ -n "$differences" ]; then
    echo "$differences"
    echo "Android.bp: bpfmt -w Android.bp formats it"
    exit 1
fi

# CMake writes down what it builds when it is asked to.
query=build/release/.cmake/api/v1/query
mkdir -p "$query"
touch "$query/codemodel-v2"
cmake --preset release >/dev/null
python3 scripts/compare-android-bp.py Android.bp build/release

echo "Android.bp: asking Soong"
cd tests/device
GO111MODULE=off GOPATH=/usr/share/gocode GOCACHE=$OLDPWD/build/go go test -vet=off -count=1 .
