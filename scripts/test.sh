#!/usr/bin/env bash
# Builds everything and passes all tests: optimised with the style checks, then once more under
# AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh test
for preset in dev asan; do
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    ctest --preset "$preset"
done
