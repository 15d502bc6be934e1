#!/usr/bin/env bash
# Checks the whole tree's format and style: lint.sh BUILD_FOLDER, a configured one.
set -euo pipefail
build=$(realpath "${1:?usage: lint.sh BUILD_FOLDER}")
cd "$(dirname "$0")/.."

mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.h' '*.c' '*.cpp')
clang-format --dry-run -Werror "${files[@]}"

# clang-tidy does not know every option of g++.
database=$(mktemp -d)
trap 'rm -rf "$database"' EXIT
sed -E 's/-fno-(tree-loop-distribute-patterns|gnu-unique)//g' "$build/compile_commands.json" \
    >"$database/compile_commands.json"

# Only files that this build compiles; clang-tidy needs their options.
mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep '\.cpp$' | while read -r file; do
    if grep -q "\"$PWD/$file\"" "$database/compile_commands.json"; then echo "$file"; fi
done)
printf '%s\0' "${sources[@]}" |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$database" 2> >(grep -v 'warnings generated' >&2)
echo "${#files[@]} files formatted, ${#sources[@]} files clean"
