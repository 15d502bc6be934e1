#!/usr/bin/env bash
# Has Tovik survive one fault after another; a line for each. Takes about five minutes.
# Beside those of test_faults.py: bad options, result files, displays and libraries, a plug-in that
# crashes, a large command line, and the unit tests of scripts and openers that are not there.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset dev >/dev/null
cmake --build --preset dev >/dev/null
build/dev/tests/util-test --gtest_brief=1 --gtest_filter='Desktop.*'
cd tests/e2e
FAULTS=all exec python3 -B -m unittest -v test_faults test_bridge.Crash \
    test_answers.Answers.test_bad_option_values_are_survived \
    test_answers.Answers.test_result_file_that_cannot_be_written_is_passed_over \
    test_run.Run.test_entry_admin_splits_its_command_line \
    test_run.Run.test_host_says_what_it_cannot_do
