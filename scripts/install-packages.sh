#!/bin/sh
# Installs the Debian packages that are missing of those named as arguments, as root or with sudo.
# Asks no server when nothing is missing.
set -eu

missing=""
for package in "$@"; do
    # A package may be there for several architectures.
    dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -qx "install ok installed" ||
        missing="$missing $package"
done
[ -n "$missing" ] || exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
# shellcheck disable=SC2086 # the names are words of their own
$sudo apt-get install -q -y --no-install-recommends $missing
