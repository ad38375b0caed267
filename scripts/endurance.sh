#!/usr/bin/env bash
# Holds the finished program's handles, GDI and USER objects and private memory after 10,000 refreshes and 1,000
# deletions against those of a tenth of the way:  scripts/endurance.sh [REFRESHES,DELETIONS]
set -euo pipefail
exec "$(dirname "$0")/faults.sh" "--rounds=${1:-10000,1000}"
