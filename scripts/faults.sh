#!/usr/bin/env bash
# Has Tovik survive one fault after another; a line for each. Takes about five minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset dev >/dev/null
cmake --build --preset dev >/dev/null
cd tests/e2e
PYTHONDONTWRITEBYTECODE=1 exec python3 test_faults.py
