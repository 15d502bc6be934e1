#!/usr/bin/env bash
# Installs every package that building, running and testing Tovik needs on Debian 12, and those
# named: install-deps.sh [PACKAGE...]. It asks nothing, uses sudo when it is not run by root, and does
# nothing when all packages are installed.
set -euo pipefail

packages=(
    # building
    g++ cmake ninja-build pkg-config libgtk-3-dev libwebkit2gtk-4.1-dev
    # running without a display
    xvfb xauth xdotool imagemagick xdg-utils
    # testing
    libgtest-dev libgmock-dev openbox x11-utils clang-format clang-tidy python3 openssl
    clang libclang-rt-14-dev lld gcovr valgrind
    chromium node-typescript dbus at-spi2-core gir1.2-atspi-2.0 python3-gi
    # checking the documents
    codespell doxygen mandoc
    # measuring
    libbenchmark-dev gnuplot-nox
    "$@"
)

missing=()
for package in "${packages[@]}"; do
    state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
