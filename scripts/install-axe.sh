#!/bin/sh
# Installs axe-core for the tests of the report, where npm is there and can fetch it. Without it one test is skipped.
set -eu
cd "$(dirname "$0")/../tests/report"

[ ! -e node_modules/axe-core/axe.min.js ] || exit 0
if ! command -v npm > /dev/null || ! npm ci --no-audit --no-fund > /dev/null 2>&1; then
    echo "axe-core is not installed: report.axe is skipped"
fi
