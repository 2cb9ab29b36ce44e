#!/bin/bash
# Builds the libraries and tests of Android.bp as a device's build does, and runs the tests.
#
#     scripts/check-device.sh
#         with what Debian has: an old libc++ held to C++17, lld as strict as a device's build has it,
#         sanitizers that end the process at an overflow; compiles for 32-bit ARM, too
#     scripts/check-device.sh --sysroot DIR [--root DIR] [--target aarch64-linux-android30]
#         with headers and libraries of your own, such as an NDK's sysroot, and the compiler $CXX (with
#         $CXXFLAGS and $LDFLAGS); runs the tests in the files of a system, such as an unpacked image
set -eu
cd "$(dirname "$0")/.."

work=build/device
sysroot=""
root=""
target=aarch64-linux-android30
while [ $# -gt 0 ]; do
    case $1 in
        --sysroot) sysroot=$2 ;;
        --root) root=$2 ;;
        --target) target=$2 ;;
        *) sed -n '2,/^set/s/^# \{0,1\}//p' "$0"; exit 2 ;;
    esac
    shift 2
done
if [ -n "$root" ] && [ -z "$sysroot" ]; then
    echo "--root: what runs there is built by --sysroot"
    exit 2
fi

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-device.txt)

compiler="$(command -v ccache || true) ${CXX:-clang++}"
overflow="-fsanitize=signed-integer-overflow,unsigned-integer-overflow -fsanitize-trap=all"
strict="-fuse-ld=lld -Wl,--no-undefined-version,--fatal-warnings,-z,defs"
tests=libcam.zoomoverridemgr_tests

# Devices have version 8000 up to Android 14. The oldest of Debian is 13, which differs little from that once it
# is held to C++17. Only one version can be installed, so it is unpacked.
unpackLibcxx() {
    [ ! -d "$work/libc++/usr" ] || return 0
    local packages=(libc++{,abi}-13-dev libc++{,abi}1-13 libunwind-13{,-dev}) sudo="" package
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    rm -rf "$work/libc++"
    mkdir -p "$work/libc++/packages"
    (
        cd "$work/libc++/packages"
        apt-get -q download "${packages[@]}" 2>/dev/null || {
            $sudo apt-get -q update
            apt-get -q download "${packages[@]}"
        }
        for package in *.deb; do
            dpkg-deb -x "$package" ../unpacked
        done
    )
    mv "$work/libc++/unpacked/usr" "$work/libc++/usr"
}

build() {
    python3 scripts/device-build.py "$@"
    ninja --quiet -k 0 -f "$1/build.ninja"
}

runTests() {
    local status=0
    "$@" --gtest_brief=1 2>"$work/tests.log" || status=$?
    [ "$status" -ne 0 ] || return 0
    tail -20 "$work/tests.log"
    echo "tests: end with status $status; 132 is an illegal instruction, the sanitizers' answer to an overflow"
    exit 1
}

checkWithDebian() {
    unpackLibcxx
    local libcxx=$PWD/$work/libc++/usr/lib/llvm-13 liblog
    liblog=$(dpkg -L "android-liblog:$(dpkg --print-architecture)" | sed -n 's|/liblog.so$||p')
    # char8_t's strings are the library of C++20, too.
    local flags="-nostdinc++ -isystem $libcxx/include/c++/v1 -D_LIBCPP_STD_VER=17 -fno-char8_t"
    flags+=" -isystem /usr/include/android"

    build "$work/host" --cxx "$compiler" --flags "$flags $overflow" --link-flags "$strict -stdlib=libc++ \
        -L$libcxx/lib -Wl,-rpath,$libcxx/lib -lc++abi -L$liblog -Wl,-rpath,$liblog -llog"
    echo "libraries and tests: built and linked"
    checkSymbols
    runTests "$work/host/$tests"

    build "$work/arm" --check-only --cxx "$compiler" \
        --flags "--target=armv7a-linux-gnueabihf $flags -isystem /usr/arm-linux-gnueabihf/include"
    echo "libraries: compile for 32-bit ARM"
}

# The device's own libraries are left out: what the libraries ask of them, the linker has found.
checkSymbols() {
    local unknown
    unknown=$(comm -13 <({ grep -v '^#' tests/device/symbols-api30.txt
                           nm -D --defined-only "$work/host/libplatform.so" | awk '{ print $3 }'; } | sort -u) \
        <(nm -D --undefined-only "$work"/host/libcam.*.so | awk '$1 == "U" { sub(/@.*/, "", $2); print $2 }' | sort -u))
    [ -z "$unknown" ] || {
        echo "asked of a device's system, but not in tests/device/symbols-api30.txt:"
        echo "$unknown" | while read -r symbol; do echo "    $symbol $(c++filt "$symbol")"; done
        exit 1
    }
    echo "libraries: ask a device's system for nothing that it does not have"
}

checkWithSysroot() {
    build "$work/$target" --cxx "$compiler" \
        --flags "--target=$target --sysroot=$sysroot $overflow ${CXXFLAGS:-}" \
        --link-flags "--target=$target --sysroot=$sysroot $strict -static-libstdc++ ${LDFLAGS:-} -llog"
    echo "libraries and tests: built and linked for $target in $work/$target"
    [ -n "$root" ] || return 0

    local cpu=${target%%-*}
    case $cpu in
        arm*) cpu=arm ;;
        i?86) cpu=i386 ;;
    esac
    scripts/install-packages.sh qemu-user
    runTests "qemu-$cpu" -L "$root" "$work/$target/$tests"
}

if [ -n "$sysroot" ]; then
    checkWithSysroot
else
    checkWithDebian
fi
