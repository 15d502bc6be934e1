#!/usr/bin/env bash
# Takes the README's pictures under Xvfb: docs/dialog.png of the demo dialog, docs/signing.png of the
# example that signs.
set -euo pipefail
cd "$(dirname "$0")/.."
unset DISPLAY WAYLAND_DISPLAY
scripts/run.sh
convert build/release/demo/screenshot.png -trim +repage -strip docs/dialog.png
scripts/run.sh signing
convert build/release/signing/screenshot.png -trim +repage -strip docs/signing.png
