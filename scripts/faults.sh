#!/usr/bin/env bash
# Runs Tovik into one fault after another and says which were survived, in about five minutes. Names
# such as __main__.Faults.test_read_only_home restrict it to those.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/progress.sh

scripts/install-deps.sh test
begin_progress building
cmake --preset dev >/dev/null
cmake --build --preset dev >/dev/null
end_progress
TOVIK_BUILD=$PWD/build/dev exec python3 -B scripts/faults.py "$@"
