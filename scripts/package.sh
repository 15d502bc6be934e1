#!/usr/bin/env bash
# Makes the Debian packages and tries them: builds, checks, installs into a clean root, shows a
# dialog there, packages a product by the guide's recipe, purges, and shows that product. Without
# root, which the clean root needs, it only builds and checks, and fails. Prints one line for each
# step; the packages are in build/package.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/display.sh
. scripts/progress.sh
packages=$PWD/build/package changelog=$PWD/packaging/debian/changelog

# step TEXT COMMAND...: carries out one step; its output is shown when it fails.
step() {
    local text=$1 start=$SECONDS status
    shift
    begin_progress "$text"
    set +e # not "if": within a condition the command would go on after a failure
    (set -e && "$@") >"$log" 2>&1
    status=$?
    set -e
    end_progress
    if [ $status -ne 0 ]; then
        cat "$log"
        printf 'FAILED  %s\n' "$text"
        [ -z "${root:-}" ] || release_root
        exit 1
    fi
    printf 'ok  %4d s  %s\n' $((SECONDS - start)) "$text"
}

# Waits until no process of a failed step uses the clean root: mmdebstrap tries to unmount it only
# once, and would otherwise leave it mounted.
release_root() {
    local end=$((SECONDS + 60))
    until umount "$root/proc" 2>/dev/null || [ $SECONDS -ge $end ]; do :; done
}

build() {
    umask 022 # CPack gives it to directories and to the packages' parts
    rm -f build/package/*.deb
    cmake --preset package
    cmake --build --preset package --target all reference
    (cd build/package && SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -l "$changelog" -S Timestamp) cpack)
}

# In a directory of another name and length, under another umask and in another language.
build_again() {
    local again=$scratch/again/some-where-else
    mkdir -p "$again"
    git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$again"
    (cd "$again" && umask 077 && export LC_ALL=C TZ=Asia/Tokyo && build)
    for package in "$packages"/*.deb; do
        cmp "$package" "$again/build/package/${package##*/}"
    done
    rm -r "$scratch/again"
}

check() {
    lintian --fail-on error,warning --allow-root "$packages"/*.deb
    dpkg-deb -f "$packages"/tovik_*.deb Depends | grep 'libwebkit2gtk-4.1-0 (>= ' # computed
}

# The rest happens in the clean root, which mmdebstrap makes and removes.

install_packages() {
    cp "$packages"/*.deb "$root"
    chroot "$root" sh -c 'apt-get install -y --no-install-recommends ./*.deb && rm ./*.deb'
    chroot "$root" tovik --version
}

# show_dialog BRAND WORD...: shows a dialog by the program of this brand, and answers it.
show_dialog() {
    local brand=$1
    start_display
    trap 'kill "$display_process"' EXIT
    mkdir -p "$root/tmp/.X11-unix" "$root/tmp/home"
    ln "/tmp/.X11-unix/X${DISPLAY#:}" "$root/tmp/.X11-unix/"
    chroot "$root" env -u XAUTHORITY HOME=/tmp/home DBUS_SESSION_BUS_ADDRESS=disabled: \
        timeout 100 "$@" --print >"$scratch/answer" &
    local dialog=$!
    type_answer "$dialog" "$brand"
    wait "$dialog"
    # The engine's processes end a little later; the root cannot be removed before.
    local end=$((SECONDS + 60))
    while find /proc/[0-9]*/root -maxdepth 0 -lname "$root" 2>/dev/null | grep -q .; do
        [ $SECONDS -lt $end ]
    done
    rm -r "$root/tmp/home" "$root/tmp/.X11-unix"
    answered "$scratch/answer"
}

examine() {
    local printed
    printed=$(chroot "$root" env -u XAUTHORITY tovik-doctor -url about:blank) || true
    grep 'OK    library: /usr/lib/.*/tovik/lib/libtovikgui.so' <<<"$printed"
    cp "$packages/examples/demo-plugin/libtovik.so" "$root/demo.so"
    chroot "$root" tovik-plugin-check /demo.so
    rm "$root/demo.so"
}

# The recipe of the guide, with the plug-in of the template and the page of an example.
package_product() {
    local work=$root/work
    chroot "$root" apt-get install -y --no-install-recommends dpkg-dev
    mkdir "$work"
    g++ -shared -fPIC -Wl,-Bsymbolic -Isdk/include sdk/templates/plugin/plugin.cpp -o "$work/libtovik.so"
    cp -r "$root/usr/share/doc/tovik/examples/form" "$work/pages"
    sed -n '/^# make-package.sh/,/^```/{/^```/d;p}' docs/integration.md >"$work/make-package.sh"
    chroot "$root" sh -c 'cd /work && bash make-package.sh 1.0 && apt-get install -y ./ab.deb && rm -r /work'
}

# purge PATTERN PACKAGE...: removes the packages with what nothing else depends on; no file of this name
# may be left.
purge() {
    local left
    chroot "$root" apt-get purge --autoremove -y "${@:2}"
    left=$(find "$root" -xdev -path "$root/proc" -prune -o -iname "$1" -print)
    echo "left after the purge: $left"
    [ -z "$left" ]
}

scratch=$(mktemp -d)
log=$scratch/log
trap 'rm -r "$scratch"' EXIT
if [ "${1:-}" = --in-root ]; then
    root=$2 SECONDS=$((EPOCHSECONDS - $3)) progress=$4
    end_progress
    printf 'ok  %4d s  a clean root has been made\n' "$SECONDS"
    step 'both packages install with what they depend on' install_packages
    step 'a dialog runs and prints its answer' \
        show_dialog tovik -url file:///usr/share/doc/tovik/examples/form/index.html
    step 'doctor and plug-in check speak' examine
    step 'a product is packaged as the guide says' package_product
    step 'nothing is left after a purge' purge '*tovik*' tovik tovik-dev
    step 'the product of the package runs without Tovik' show_dialog ab
    step 'nothing is left of the product' purge 'libabgui*' ab
else
    step 'all that building and trying needs is there' scripts/install-deps.sh package
    step 'packages are built' build
    step 'lintian finds no error or warning' check
    step 'built in another directory, they are the same bytes' build_again
    if [ "$(id -u)" -ne 0 ]; then
        echo 'package.sh: the packages are in build/package, and not tried: that needs root' >&2
        exit 1
    fi
    begin_progress 'a clean root is made'
    # On the file system of the display's socket, which gets a second name in the clean root.
    TMPDIR=/tmp mmdebstrap --quiet --variant=apt \
        --customize-hook="$(printf '%q --in-root "$1" %q %q' "$PWD/scripts/package.sh" "$EPOCHSECONDS" "$progress")" \
        "$(. /etc/os-release && echo "$VERSION_CODENAME")" /dev/null
fi
