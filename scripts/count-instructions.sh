#!/bin/sh
# Prints the instructions per call of each benchmark case and of its floor, and their ratio. They do
# not depend on the load of the machine. Needs what scripts/build-bench.sh builds.
set -eu
cd "$(dirname "$0")/.."
dumps=$(mktemp -d)
trap 'rm -rf "$dumps"' EXIT

# The math library has versions for several CPUs, with different numbers of instructions: all
# machines are held to the same one.
GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-FMA,-FMA4 \
    valgrind --quiet --tool=callgrind --collect-atstart=no --combine-dumps=yes \
    --callgrind-out-file="$dumps/out" build/bench/bench/zoomoverride_count 2> "$dumps/log" || {
    cat "$dumps/log" >&2
    exit 1
}

# A dump begins with its name, "<case> <calls> <module|floor>", and ends with its total.
sed -n 's/^desc: Trigger: Client Request: //p; s/^totals: //p' "$dumps/out" |
    awk '
        BEGIN { printf "# %-32s %9s %9s %6s\n", "case", "module", "floor", "ratio" }
        NF == 3 { name = $1; calls = $2; side = $3 }
        NF == 1 && side != "" {
            count[side] = $1 / calls
            if (side == "floor")
                printf "%-34s %9.1f %9.1f %6.2f\n", name, count["module"], count["floor"],
                       count["module"] / count["floor"]
            side = ""
        }'
