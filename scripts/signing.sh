#!/usr/bin/env bash
# Builds the example of signing, and signs with a new token: signing.sh [DOCUMENT]; run.sh calls it.
# The token is a SoftHSM in a temporary folder, with an RSA and an EC key. Without a display a virtual
# one is started, where the PIN is typed and a screenshot is kept. Prints the signature in base64, and
# what openssl says of it.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
document=
if [ $# -gt 0 ]; then
    document=$(realpath -- "$1")
    if [ ! -f "$document" ] || [ ! -r "$document" ]; then
        echo "signing.sh: $document is no file that can be read; name another document" >&2
        exit 1
    fi
fi
screenshot=$root/build/release/signing/screenshot.png
pin=2468

"$root/scripts/install-deps.sh" signing
(cd "$root" && cmake --preset release && cmake --build --preset release --target signing) >&2

folder=$(mktemp -d)
display_process='' tovik=''
trap 'kill $tovik $display_process 2>/dev/null || true; rm -rf "$folder"' EXIT
document=${document:-$folder/contract.txt}
cd "$folder"
[ $# -gt 0 ] || printf 'We sell our bicycle to Zoë for 120 euros.\n' >"$document"

# The token. The library of SoftHSM is in a folder of its own on every distribution.
mkdir tokens
printf 'directories.tokendir = %s/tokens\nlog.level = ERROR\n' "$folder" >softhsm.conf
export SOFTHSM2_CONF=$folder/softhsm.conf
softhsm2-util --init-token --free --label 'Signature card' --so-pin 12345678 --pin $pin >/dev/null
openssl genpkey -quiet -algorithm RSA -pkeyopt rsa_keygen_bits:2048 -out rsa.pem
openssl genpkey -quiet -algorithm EC -pkeyopt ec_paramgen_curve:P-256 -out ec.pem
number=0
for key in rsa ec; do
    number=$((number + 1))
    openssl pkey -in $key.pem -pubout -out $key.pub
    softhsm2-util --import $key.pem --token 'Signature card' --label "Zoë Miller" --id 0$number \
        --pin $pin >/dev/null
done

# A product like the one of the build, but with a configuration that names the module.
cp -r "$root/build/release/signing" product
printf 'module = %s\n' "$(find -L /usr/lib* -name libsofthsm2.so -print -quit)" >product/lib/tovik.conf

# Takes a picture; fails if it shows no page yet, but a window of one colour.
take_picture() {
    import -silent -window root picture.png && [ "$(identify -format %k picture.png)" -gt 16 ]
}

# type_pin PROCESS: types the PIN into the page and takes a picture, until the process has ended. The
# field accepts no keys before the page is ready, so they are typed again after a second; a part of
# this PIN is too short for the form. A dialog that shows a problem instead is closed after 30 seconds.
type_pin() {
    local end=$((SECONDS + 30))
    while kill -0 "$1"; do
        [ $SECONDS -lt $((end + 10)) ] || kill "$1" # a window without a page
        timeout 1 tail --pid="$1" -f /dev/null && break
        take_picture || continue
        xdotool search --onlyvisible --class tovik windowfocus key ctrl+a type --delay 20 $pin || continue
        ! take_picture || mv picture.png "$screenshot"
        xdotool key Return
        [ $SECONDS -lt $end ] || xdotool key Escape
    done 2>/dev/null
    echo "screenshot: $screenshot"
}

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    . "$root/scripts/display.sh"
    start_display -screen 0 520x760x24
    # Nobody needs assistive technology on a display without a person.
    export DBUS_SESSION_BUS_ADDRESS=disabled:
fi
# Each byte is encoded, because a path may hold any character.
query=$(printf %s "$document" | od -An -v -tx1 | tr -d '\n' | tr ' ' %)
product/bin/tovik --print "signing://dialog?document=$query" >answer &
tovik=$!
if [ -n "$display_process" ]; then
    type_pin $tovik
else
    echo "The PIN is $pin."
fi
wait $tovik || true
tovik=
answer=$(<answer)
[[ $answer != CKR_* ]] || { echo "not signed: $answer"; exit 1; }

printf 'signature: %s\n' "$answer"
base64 -d answer >signature
for key in rsa ec; do # whichever was chosen
    verified=$(openssl dgst -sha256 -verify $key.pub -signature signature "$document" 2>/dev/null) || continue
    echo "$verified"
    exit
done
echo 'the signature is of neither key' >&2
exit 1
