# What bash offers for the last word of a command line.
set -eu
source "$1"

# offers <expected words> <command line>...
offers() {
    local expected=$1
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    _zoomreplay
    if [ "${COMPREPLY[*]}" != "$expected" ]; then
        echo "$*: offers ${COMPREPLY[*]}, expected $expected"
        exit 1
    fi
}

compopt() {
    told=$*
}

cd "$(mktemp -d)"
touch pinch.jsonl important.txt

offers "import-rig import-watch important.txt" zoomreplay imp
offers "--report --requests" zoomreplay pinch.jsonl -o new.jsonl --re
offers "--mode" zoomreplay new --m
offers "ByRequest" zoomreplay new --mode By
offers "pinch.jsonl" zoomreplay pinch
offers "pinch.jsonl" zoomreplay pinch.jsonl -o pin
offers "pinch.jsonl" zoomreplay pinch.jsonl --report pin
offers "pinch.jsonl" zoomreplay why pin
offers "--jobs --junit" zoomreplay run pinch.jsonl --j
for number in "pinch.jsonl --requests" "pinch.jsonl --limit" "why pinch.jsonl 1 --sensor" "why pinch.jsonl 1 --port"; do
    offers "" zoomreplay $number p
done
[ "$told" = "-o filenames" ]  # folders end with a slash, and blanks are quoted
