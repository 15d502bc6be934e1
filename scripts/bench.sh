#!/usr/bin/env bash
# Builds the release with its benchmarks and measures it: scripts/bench.sh [--rounds N] [SECTION...]
# Without a section it measures all, and writes the table and the plots to docs/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/progress.sh

scripts/install-deps.sh bench
begin_progress building
output=$(cmake --preset bench 2>&1 && cmake --build --preset bench --target bench 2>&1) || {
    echo "$output" >&2
    exit 1
}
end_progress
exec python3 -B bench/driver/run.py build/bench "$@"
