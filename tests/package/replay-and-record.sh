#!/bin/sh
# Replays a scenario with the installed recorder in front, and shows the results once the record has given
# the same answers: ZOOMREPLAY RECORDER SCENARIO
set -eu
zoomreplay=$1
recorder=$2
scenario=$3
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT

# A sanitizer's runtime comes with the tool, after what is preloaded.
LD_PRELOAD=$recorder ZOOMOVERRIDE_RECORD=$folder/record.jsonl \
    ASAN_OPTIONS=${ASAN_OPTIONS:-}:verify_asan_link_order=0 "$zoomreplay" "$scenario" -o "$folder/results"
"$zoomreplay" "$folder/record.jsonl" -o "$folder/again"

# The lines of a record have other numbers, and times.
for file in results again; do
    sed 's/^{.*"op"/{"op"/' "$folder/$file" >"$folder/$file.answers"
done
cmp "$folder/results.answers" "$folder/again.answers" >&2
cat "$folder/results"
