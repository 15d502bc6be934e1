#!/usr/bin/env bash
# Has Tovik meet one fault after another and says of each whether it was survived; takes about five
# minutes. With names such as __main__.Faults.test_read_only_home, only those.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset dev >/dev/null
cmake --build --preset dev >/dev/null
TOVIK_BUILD=$PWD/build/dev exec python3 -B scripts/faults.py "$@"
