#!/bin/sh
# Builds a program against the package as a plain makefile does: SOURCE PROGRAM COMPILER [FLAG...]
set -eu
source=$1
program=$2
shift 2

flags=$(pkg-config --cflags --libs zoomoverride-host)
# shellcheck disable=SC2086 # one flag a word
"$@" -std=c++20 "$source" -o "$program" $flags "-Wl,-rpath,$(pkg-config --variable=libdir zoomoverride)"
