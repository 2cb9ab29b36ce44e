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

offers "import-rig import-watch" zoomreplay imp
offers "--report --requests" zoomreplay pinch.jsonl -o new.jsonl --re
offers "--mode" zoomreplay new --m
offers "" zoomreplay pinch
