#!/bin/sh
# Holds the instructions per call of each benchmark case to bench/instructions.txt, 5 % up or down.
# A change that is meant: scripts/check-instructions.sh --renew, and commit the table. The table
# holds for GCC and the libraries of Debian 12 on x86-64.
set -eu
cd "$(dirname "$0")/.."
table=bench/instructions.txt

scripts/build-bench.sh zoomoverride_count zoomoverride_bench parse_lines
if [ "${1:-}" = --renew ]; then
    scripts/count-instructions.sh > "$table"
    exit
fi

counts=$(mktemp)
trap 'rm -f "$counts"' EXIT
scripts/count-instructions.sh > "$counts"
awk '
    /^#/ { next }
    FNR == NR { recorded[$1] = $2; next }
    !($1 in recorded) { print $1 ": not in the table"; bad = 1; next }
    {
        change = 100 * ($2 / recorded[$1] - 1)
        if (change > 5 || change < -5) {
            printf "%s: %.1f instructions, %.1f recorded (%+.1f %%)\n", $1, $2, recorded[$1], change
            bad = 1
        }
        delete recorded[$1]
    }
    END {
        for (name in recorded) { print name ": not counted any more"; bad = 1 }
        exit bad
    }' "$table" "$counts"
echo "Instructions: within 5 % of $table"
