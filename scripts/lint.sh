#!/usr/bin/env bash
# Checks the whole tree's format and style: lint.sh BUILD_FOLDER, a configured one. Each version of
# the tools has its own opinion, so without version 14 of both nothing is checked, with status 77.
set -euo pipefail
build=$(realpath "${1:?usage: lint.sh BUILD_FOLDER}")
cd "$(dirname "$0")/.."

for tool in clang-format-14 clang-tidy-14; do
    command -v $tool >/dev/null || {
        echo "lint.sh: $tool is not installed; format and style are not checked" >&2
        exit 77
    }
done

mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.h' '*.c' '*.cpp')
clang-format-14 --dry-run -Werror "${files[@]}"

# Each source once: clang-tidy examines it for every target that compiles it. It does not know every
# option of g++.
database=$(mktemp -d)
trap 'rm -rf "$database"' EXIT
sed -E 's/-fno-(tree-loop-distribute-patterns|gnu-unique)//g' "$build/compile_commands.json" |
    python3 -c 'import json, sys
units = {unit["file"]: unit for unit in reversed(json.load(sys.stdin))}
json.dump([*units.values()], sys.stdout, indent=0)' >"$database/compile_commands.json"

# Only files that this build compiles; clang-tidy needs their options.
mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep '\.cpp$' | while read -r file; do
    if grep -q "\"$PWD/$file\"" "$database/compile_commands.json"; then echo "$file"; fi
done)
tidy() { # tidy CHECKS: examines the files of standard input
    xargs -r -d '\n' -n 1 -P "$(nproc)" clang-tidy-14 --quiet --checks="$1" -p "$database" \
        2> >(grep -v 'warnings generated' >&2)
}
# Of a test's time the analyser takes three quarters, for the macros of GoogleTest; the sanitizers
# watch what tests do. Benchmarks are not delivered either.
undelivered='^(bench|tests)/'
printf '%s\n' "${sources[@]}" | grep -Ev "$undelivered" | tidy ''
printf '%s\n' "${sources[@]}" | grep -E "$undelivered" | tidy '-clang-analyzer-*'
echo "${#files[@]} files formatted, ${#sources[@]} files clean"
