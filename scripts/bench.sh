#!/bin/sh
# Installs what is missing, builds the benchmarks and prints, for each case, the time of one call of
# the module, that of its floor, their ratio, the spread of the ratio over the repetitions, and the
# heap allocations of both. Arguments go to the benchmark program, for instance
# --benchmark_filter=P2. Another load on the machine disturbs the times more than the ratios.
set -eu
cd "$(dirname "$0")/.."

scripts/build-bench.sh

build/bench/bench/zoomoverride_bench --benchmark_min_time=0.2 --benchmark_repetitions=5 \
    --benchmark_report_aggregates_only=true --benchmark_format=csv "$@" |
    awk -F, '
        { gsub(/"/, "") }
        $1 == "name" {
            for (i = 1; i <= NF; i++) column[$i] = i
            printf "%-34s %10s %10s %7s %7s %7s %7s\n", "case", "module ns", "floor ns", "ratio",
                   "spread", "allocs", "floor"
        }
        /_median/ {
            name = $1
            sub(/_median$/, "", name)
            if (name ~ /threads:/) {
                sub(/\/real_time/, "", name)
                printf "%-34s %10.0f calls a second, all threads\n", name,
                       $column["items_per_second"]
                next
            }
            sub(/\/manual_time/, "", name)
            module = $column["module_ns"]; floor = $column["floor_ns"]; ratio = $column["ratio"]
            allocs = $column["allocs"]; floorAllocs = $column["floor_allocs"]
        }
        /manual_time_cv/ {
            printf "%-34s %10.1f %10.1f %7.2f %6.1f%% %7.1f %7.1f\n", name, module, floor, ratio,
                   100 * $column["ratio"], allocs, floorAllocs
        }'
