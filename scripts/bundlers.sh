#!/usr/bin/env bash
# Builds the Vite template as it is and with React, Vue and Svelte, which it installs from the npm
# registry, and shows each by file://, by -root, as a product and from the development server. Prints
# one line for each when pictures and answers are the same; the pictures are in build/bundlers.
set -euo pipefail
cd "$(dirname "$0")/.."

npm=()
command -v npm >/dev/null || npm=(npm)
scripts/install-deps.sh test "${npm[@]}"
cmake --preset dev >/dev/null
cmake --build --preset dev >/dev/null
TOVIK_BUILD=$PWD/build/dev exec python3 -B scripts/bundlers.py
