#!/usr/bin/env bash
# Builds Tovik and shows the demo dialog, or any page: run.sh [PAGE-OR-URL [OPTION]...]
# "run.sh signing [DOCUMENT]" shows the example that signs with a token instead (signing.sh).
# Without a display it starts a virtual one; the demo dialog then fills itself in, and a screenshot
# is kept. The last line is "answer: " and the text of the result file.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
demo=$root/build/release/demo
[ "${1:-}" != signing ] || exec "$root/scripts/signing.sh" "${@:2}"

"$root/scripts/install-deps.sh" run
(cd "$root" && cmake --preset release && cmake --build --preset release --target demo) >&2

result=$(mktemp -d)
display_process=
trap '[ -z "$display_process" ] || kill "$display_process"; rm -rf "$result"' EXIT
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    . "$root/scripts/display.sh"
    start_display -screen 0 800x720x24
    # Nobody needs assistive technology on a display without a person.
    export DBUS_SESSION_BUS_ADDRESS=disabled:
fi

# The program's arguments; a page on the disk becomes a URL.
words=("$@")
if [ $# -eq 0 ]; then
    [ -z "$display_process" ] || words=('demo://dialog?auto')
elif [[ $1 == *://* ]]; then
    words=(-url "$@")
else
    # These characters have a meaning of their own in a URL.
    path=$(realpath -- "$1" | sed 's/%/%25/g; s/#/%23/g; s/?/%3F/g')
    words=(-url "file://$path" "${@:2}")
fi

rm -f "$demo/screenshot.png"
"$demo/bin/tovik" "${words[@]}" -store "$result/answer" &
tovik=$!

# Takes pictures of the screen while the window exists, and keeps the last complete one. (Given a
# window that has just been closed, import would wait for a click on another.)
if [ -n "$display_process" ]; then
    while kill -0 "$tovik" 2>/dev/null; do
        if import -silent -window root "$result/picture.png" 2>/dev/null &&
            xdotool search --onlyvisible --pid "$tovik" >/dev/null 2>&1; then
            mv "$result/picture.png" "$demo/screenshot.png"
        fi
    done
    [ ! -e "$demo/screenshot.png" ] || echo "screenshot: $demo/screenshot.png"
fi
wait "$tovik"
echo "answer: $(cat "$result/answer" 2>/dev/null)"
