#!/usr/bin/env bash
# Runs the unit tests under valgrind; fails for any error or leak that it reports.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh test valgrind
cmake --preset valgrind >/dev/null
cmake --build --preset valgrind >/dev/null
export LD_LIBRARY_PATH=$PWD/build/valgrind/tests/plugins/default

# A process for each test, as in ctest, so that no test meets libraries that another has loaded.
for program in util plugin bridge webapp; do
    "build/valgrind/tests/$program-test" --gtest_list_tests | awk '/^[^ ]/ {suite = $1} /^ / {print suite $1}' |
        xargs -P "$(nproc)" -I TEST valgrind --quiet --error-exitcode=1 --leak-check=full \
            --errors-for-leak-kinds=definite --child-silent-after-fork=yes \
            "build/valgrind/tests/$program-test" --gtest_brief=1 --gtest_filter=TEST
done
