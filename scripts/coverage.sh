#!/usr/bin/env bash
# Runs all tests with line counters in both processes and prints which lines of the library they reach.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh test gcovr
cmake --preset coverage >/dev/null
cmake --build --preset coverage >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --preset coverage
gcovr --root . --filter '(util|plugin|bridge|webapp|host)/' --exclude-throw-branches build/coverage
