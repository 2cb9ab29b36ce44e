#!/bin/sh
# Installs what is missing and builds the API reference, the documents with it, for a browser. Fails at
# the first public member without a description.
set -eu
cd "$(dirname "$0")/.."

# shellcheck disable=SC2046 # one package a word
scripts/install-packages.sh $(cat scripts/packages-docs.txt)

mkdir -p build/docs
doxygen docs/Doxyfile
echo "The reference, in a browser: $PWD/build/docs/html/index.html"
