#!/usr/bin/env bash
# Shows a dialog in each kind of desktop session that runs without a screen, and prints one line for
# each: the window's size and place, where the session tells them, and that the answer arrived.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/display.sh
scripts/install-deps.sh test weston xwayland sway wtype picom x11-xserver-utils locales \
    bubblewrap xdg-dbus-proxy
output=$(cmake --preset release 2>&1 && cmake --build --preset release --target demo caller 2>&1) || {
    echo "$output" >&2
    exit 1
}
tovik=$PWD/build/release/demo/bin/tovik
caller=$PWD/build/release/examples/caller/caller
page=file://$(sed 's/%/%25/g; s/#/%23/g; s/?/%3F/g' <<<"$PWD/examples/form/index.html")

scratch=$(mktemp -d)
started=()
trap 'kill "${started[@]}" 2>/dev/null || true; rm -rf "$scratch"' EXIT
export XDG_RUNTIME_DIR=$scratch HOME=$scratch DBUS_SESSION_BUS_ADDRESS=disabled:
unset WAYLAND_DISPLAY GDK_BACKEND

start() {
    "$@" >/dev/null 2>&1 &
    started+=($!)
}

# screen [SIZExDEPTH]: another X server, without a window manager.
screen() {
    start_display -screen 0 "${1:-1280x1024x24}"
    started+=("$display_process")
}

window_manager() {
    start openbox
    until xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; do kill -0 "${started[-1]}"; done
}

report() { # report TEXT SEEN EXPECTED
    [[ $2 =~ ^$3$ ]] && printf 'ok      %-42s %s\n' "$1" "$2" && return
    printf 'FAILED  %-42s %s, and not %s\n' "$1" "$2" "$3"
    exit 1
}

# place WINDOW: its size and place, as the X server sees them.
place() {
    xwininfo -id "$1" | awk '/Absolute/ {at = at " " $NF} /Width|Height/ {by = by $NF " "}
        END {print by "at" at}'
}

# try TEXT EXPECTED COMMAND...: compares the window's size and place, as the X server sees them, and
# the answer.
try() {
    local text=$1 expected=$2 window='' seen dialog
    shift 2
    timeout 100 "$@" >"$scratch/answer" 2>/dev/null &
    dialog=$!
    until window=$(xdotool search --onlyvisible --class tovik 2>/dev/null); do
        kill -0 "$dialog" 2>/dev/null || report "$text" 'no window' "$expected"
    done
    seen=$(place "$window")
    type_answer "$dialog"
    wait "$dialog" || true # the answer tells
    answered "$scratch/answer" || seen="no answer"
    report "$text" "$seen" "$expected"
}

placed=("$tovik" --print -url "$page" -size 0x0190012C -position 0x00320050)
screen
try 'X11, no window manager, no compositor' '400 270 at 50 80' "${placed[@]}"
try 'GDK_SCALE=2' '800 540 at 100 160' env GDK_SCALE=2 "${placed[@]}"
try 'software rendering asked for' '400 270 at 50 80' env LIBGL_ALWAYS_SOFTWARE=1 "${placed[@]}"
try 'no session bus named' '400 270 at 50 80' env -u DBUS_SESSION_BUS_ADDRESS "${placed[@]}"
try 'a session bus' '400 270 at 50 80' dbus-run-session -- "${placed[@]}"
try 'the sandbox of the engine forced' '400 270 at 50 80' env WEBKIT_FORCE_SANDBOX=1 "${placed[@]}"
localedef -i he_IL -f UTF-8 "$scratch/he_IL.UTF-8"
try 'a locale written from right to left' '400 270 at 50 80' \
    env LOCPATH="$scratch" LC_ALL=he_IL.UTF-8 "${placed[@]}"
window_manager
try 'X11, window manager' '400 270 at 5[0-9] (9|10)[0-9]' "${placed[@]}"
start picom --backend xrender
try 'X11, window manager, compositor' '400 270 at 5[0-9] (9|10)[0-9]' "${placed[@]}"

screen 800x600x8
try 'X11, 8 bit, no compositor' '400 270 at 50 80' "${placed[@]}"

screen
window_manager
xrandr --setmonitor left 640/169x1024/271+0+0 screen >/dev/null
xrandr --setmonitor right 640/169x1024/271+640+0 none
xrandr --listmonitors | grep -q '^Monitors: 2$'
try 'two monitors, in the middle of the first' '400 270 at 1[12][0-9] 3[0-9][0-9]' \
    "$tovik" --print -url "$page" -size 0x0190012C

start weston --backend=headless-backend.so --xwayland --socket=wayland --idle-time=0 \
    --log="$scratch/weston"
until screen=$(grep -oP 'xserver listening on display \K.*' "$scratch/weston" 2>/dev/null); do
    kill -0 "${started[-1]}"
done
answer=$(env -u DISPLAY WAYLAND_DISPLAY=wayland GDK_BACKEND=wayland \
    "$tovik" --print --parent wayland:x 'demo://dialog?auto' 2>"$scratch/errors") || answer='no answer'
report 'Wayland, headless' "$answer" 'TOKEN-[0-9A-F]+'
report 'Wayland, no windows of others' "$(grep -o 'the dialog has no parent' "$scratch/errors")" \
    'the dialog has no parent'

# Weston gives a window of Xwayland no keyboard where it has no screen.
export DISPLAY=$screen
start env GDK_BACKEND=x11 "${placed[@]}"
until window=$(xdotool search --onlyvisible --class tovik 2>/dev/null); do kill -0 "${started[-1]}"; done
seen=$(place "$window")
answer=$(GDK_BACKEND=x11 "$tovik" --print 'demo://dialog?auto' 2>/dev/null) || answer='no answer'
report Xwayland "$answer, $seen" 'TOKEN-[0-9A-F]+, 400 270 at [0-9]+ [0-9]+'

# Of the compositors that run without a screen Sway has xdg-foreign. It refuses to run as root.
sway=$scratch/sway
user=()
mkdir "$sway"
echo 'for_window [app_id="caller"] fullscreen enable' >"$sway/config"
if [ "$(id -u)" -eq 0 ]; then
    user=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
    chmod 711 "$scratch"
    chown nobody "$sway"
fi
export XDG_RUNTIME_DIR=$sway SWAYSOCK=$sway/ipc WAYLAND_DISPLAY=wayland-1 GDK_BACKEND=wayland
start env -u DISPLAY -u WAYLAND_DISPLAY WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 \
    WLR_RENDERER=pixman "${user[@]}" sway -c "$sway/config"
until [ -S "$sway/ipc" ]; do kill -0 "${started[-1]}"; done
start "$caller" "$tovik" -url "$page"

# visible NAME: whether the window of this name is shown. In front of a window in full screen Sway
# shows only dialogs of that one.
visible() {
    swaymsg -t get_tree | tr -d ' \n' | grep -oE '"name":"[^"]*"|"visible":[a-z]+' |
        grep -A1 -x "\"name\":\"$1\"" | grep -q true
}

seen='not visible'
end=$((SECONDS + 60))
while [ "$seen" != visible ] && [ $SECONDS -lt $end ]; do
    wtype -s 1000 -d 300 ' s' -s 800 # a program that has just been given a keyboard is slow to see keys
    ! visible Tovik || seen=visible
done
report 'Wayland, above a window in full screen' "$seen" visible

# Weston knows whole scales alone.
swaymsg -q 'output * scale 1.5; workspace 2; for_window [app_id="tovik"] floating enable'
"${placed[@]}" >"$scratch/answer" 2>/dev/null &
dialog=$!
started+=("$dialog")
geometry='"geometry":{"x":0,"y":0,"width":400,"height":270}'
until swaymsg -t get_tree | tr -d ' \n' | grep -qF "$geometry"; do kill -0 "$dialog"; done
seen='400 270'
while kill -0 "$dialog" 2>/dev/null; do wtype -s 500 -d 100 Ada -k Return || true; done
answered "$scratch/answer" || seen='no answer'
report 'Wayland, a scale of 1.5' "$seen" '400 270'
