#!/usr/bin/env bash
# Photographs every tab and box of the built program at 96, 120, 144 and 192 pixels per inch into docs/screenshots:
#
#     scripts/screenshots.sh [FOLDER]       after scripts/setup.sh
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/wine-prefix.sh base
if scripts/wine-prefix.sh has32; then architecture=x86; else architecture=x64; fi
scripts/build.sh "$architecture"
python3 tests/fixtures/make.py build/fixtures
python3 tests/e2e/photographs.py "$architecture" "${1:-docs/screenshots}"
du -ch "${1:-docs/screenshots}"/*.png | tail -n 1
