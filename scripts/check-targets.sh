#!/bin/bash
# Builds the library for several compilers, standard libraries, optimisation levels and CPUs, replays the
# examples and generated scenarios with each, and compares the result files to the byte.
#
#     scripts/check-targets.sh           GCC, Clang, libc++ and AArch64, optimised; 200 scenarios
#     scripts/check-targets.sh --full    both compilers at -O0, -O2 and -O3 as well; 600 scenarios
#
# With libc++ the tests of the module and of the platform run as well. The other presets run them with
# libstdc++, whose sizes the description of the binary interface has: that one is not held against libc++.
set -eu
cd "$(dirname "$0")/.."

count=200
targets=(gcc-O2 clang-O2 libc++-O2 aarch64-O2)
if [ "${1:-}" = --full ]; then
    count=600
    targets=({gcc,clang,libc++,aarch64}-O{2,0,3})
fi
reference=${targets[0]}

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
dpkg --print-foreign-architectures | grep -qx arm64 || $sudo dpkg --add-architecture arm64
# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-build.txt scripts/packages-targets.txt)

work=build/targets
mkdir -p "$work"

configure() {
    local target=$1 name=${1%-*} level=${1##*-}
    local options=(-G Ninja -DCMAKE_BUILD_TYPE=None "-DCMAKE_CXX_FLAGS=-$level"
                   -DCMAKE_UNITY_BUILD=ON -DZOOMOVERRIDE_BUILD_TESTS=OFF -DZOOMOVERRIDE_WERROR=ON)
    case $name in
        gcc) options+=(-DCMAKE_CXX_COMPILER=g++) ;;
        clang) options+=(-DCMAKE_CXX_COMPILER=clang++) ;;
        libc++) options+=(-DCMAKE_CXX_COMPILER=clang++ "-DCMAKE_CXX_FLAGS=-$level -stdlib=libc++"
                          -DZOOMOVERRIDE_BUILD_LIVE=OFF) ;; # cpp-httplib is packaged for libstdc++
        aarch64) options+=(--toolchain cmake/toolchains/aarch64-linux-gnu.cmake) ;;
    esac
    cmake -S . -B "$work/$target" "${options[@]}" >"$work/$target.configure.log" ||
        { cat "$work/$target.configure.log"; exit 1; }
}

# Addresses differ from run to run, and compilers count a call over several lines as its first or last.
mask() {
    sed -E 's/((Mapper\(|CropNeedDataPtr:)0x)[0-9a-f]+/\1ADDRESS/g; s/\{#[0-9]+:/{#LINE:/g; s/\.cpp:[0-9]+ /.cpp:LINE /g'
}

# GoogleTest is packaged for libstdc++ only, but with its sources.
runTests() {
    local target=$1 prefix=$PWD/$work/googletest
    cmake -S /usr/src/googletest -B "$work/googletest-build" -G Ninja "-DCMAKE_INSTALL_PREFIX=$prefix" \
        -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_CXX_FLAGS=-stdlib=libc++ &&
        cmake --build "$work/googletest-build" --target install &&
        cmake -B "$work/$target" -DZOOMOVERRIDE_BUILD_TESTS=ON "-DCMAKE_PREFIX_PATH=$prefix" &&
        cmake --build "$work/$target" --target module_tests platform_tests &&
        "$work/$target/tests/module/module_tests" &&
        "$work/$target/tests/platform/platform_tests"
}

replayOne() {
    local target=$1 scenario=$2 name status=0
    name=$(basename "$scenario" .jsonl)
    local tool=("$work/$target/tools/zoomreplay/zoomreplay")
    [ "${target%-*}" != aarch64 ] || tool=(qemu-aarch64 "${tool[@]}")
    "${tool[@]}" "$scenario" -o - 2>/dev/null >"$work/$target/results/$name.raw" || status=$?
    mask <"$work/$target/results/$name.raw" >"$work/$target/results/$name"
    rm "$work/$target/results/$name.raw"
    echo "exit status $status" >>"$work/$target/results/$name"
    "${tool[@]}" "$scenario" -o - --log 2>/dev/null | mask >"$work/$target/logs/$name" || true
}
export -f replayOne mask
export work

# Lines of two sensors come in the order of a table, which the standard library chooses.
compare() {
    local target=$1 failed=0 log
    diff -r "$work/$reference/results" "$work/$target/results" || failed=1
    for log in "$work/$reference"/logs/*; do
        [[ $target == libc++* && $(basename "$log") != one-* ]] && continue
        cmp "$log" "$work/$target/logs/$(basename "$log")" || failed=1
    done
    return $failed
}

rm -rf "$work/scenarios"
python3 tests/targets/generate.py "$work/scenarios" "$count"
failed=0
for target in "${targets[@]}"; do
    configure "$target"
    cmake --build "$work/$target" >"$work/$target.build.log" || { cat "$work/$target.build.log"; exit 1; }
    rm -rf "$work/$target/results" "$work/$target/logs"
    mkdir -p "$work/$target/results" "$work/$target/logs"
    printf '%s\0' examples/*.jsonl "$work"/scenarios/*.jsonl |
        xargs -0 -n 1 -P "$(nproc)" bash -c 'replayOne "$0" "$1"' "$target"
    if compare "$target" >"$work/$target.differences" 2>&1; then
        echo "$target: $(find "$work/$target/results" -type f | wc -l) results are those of $reference"
    else
        echo "$target: results differ from those of $reference:"
        head -20 "$work/$target.differences"
        failed=1
    fi
    [[ $target == libc++* ]] || continue
    if runTests "$target" >"$work/$target.tests.log" 2>&1; then
        echo "$target: $(grep -c '^\[       OK' "$work/$target.tests.log") tests pass"
    else
        echo "$target: the tests fail:"
        tail -50 "$work/$target.tests.log"
        failed=1
    fi
done
exit $failed
