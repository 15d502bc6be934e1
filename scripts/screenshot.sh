#!/usr/bin/env bash
# Takes the README's picture, docs/dialog.png, of the demo dialog under Xvfb.
set -euo pipefail
cd "$(dirname "$0")/.."
env -u DISPLAY -u WAYLAND_DISPLAY scripts/run.sh
convert build/release/demo/screenshot.png -trim +repage -strip docs/dialog.png
