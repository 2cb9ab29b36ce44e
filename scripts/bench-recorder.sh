#!/bin/sh
# Measures what the recorder costs: whole requests without it and with it in front of the module, in
# turns, into a record of the default size.
set -eu
cd "$(dirname "$0")/.."
scripts/build-bench.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bench() {
    build/bench/bench/zoomoverride_bench --benchmark_filter='/request/in-flight:8' \
        --benchmark_format=csv 2> "$work/log" | awk -F, -v run="$1" '
        { gsub(/"/, "") }
        $1 == "name" { for (i = 1; i <= NF; i++) if ($i == "module_ns") column = i }
        column && $1 != "name" { split($1, name, "/"); print name[1], run, $column }'
}
for _ in 1 2 3; do
    bench without
    LD_PRELOAD=$PWD/build/bench/tools/recorder/libcam.zoomoverride_recorder.so \
        ZOOMOVERRIDE_RECORD=$work/record.jsonl bench with
done | sort -k1,2 -k3n | awk '
    ++runs[$1, $2] == 2 { ns[$1, $2] = $3; mode[$1] }
    END {
        printf "%-12s %12s %12s %12s\n", "mode", "without, ns", "with, ns", "recording"
        for (m in mode)
            printf "%-12s %12.0f %12.0f %12.0f\n", m, ns[m, "without"], ns[m, "with"],
                   ns[m, "with"] - ns[m, "without"]
    }'
