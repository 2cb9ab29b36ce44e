#!/bin/sh
# Holds the documents: links within the tree lead to a file, and the manual page and the API reference are
# built without a warning.
set -eu
cd "$(dirname "$0")/.."

broken=$(git ls-files '*.md' | while read -r page; do
    grep -oE '\]\([^)#]+' "$page" | cut -c3- | grep -vE '^[a-z]+:' | while read -r link; do
        [ -e "$(dirname "$page")/$link" ] || echo "$page: $link does not exist"
    done
done)
[ -z "$broken" ] || { echo "$broken"; exit 1; }

scripts/docs.sh
mandoc -Tlint -W warning docs/*.1
