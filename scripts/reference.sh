#!/usr/bin/env bash
# Makes the reference of all functions and types, a folder of HTML pages: reference.sh FOLDER
# Fails when a declaration in a header has no doc comment, or one that names no such parameter.
set -euo pipefail
folder=$(realpath -m "${1:?usage: reference.sh FOLDER}")
cd "$(dirname "$0")/.."

mkdir -p "$(dirname "$folder")"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
(cat docs/Doxyfile && echo "OUTPUT_DIRECTORY = \"$scratch\"") | doxygen -
# The pages do without scripts, which would bring a licence of their own into a package.
sed -i '/<script.*<\/script>/d' "$scratch"/html/*.html
rm "$scratch"/html/*.js
rm -rf "$folder"
mv "$scratch/html" "$folder"
