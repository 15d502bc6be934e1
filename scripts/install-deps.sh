#!/usr/bin/env bash
# Installs the packages that a task needs, and those named: install-deps.sh [TASK [PACKAGE...]]
#   run      building, and showing a dialog
#   signing  scripts/signing.sh
#   test     scripts/test.sh; this is the task unless told
#   bench    scripts/bench.sh
#   package  scripts/package.sh
# It asks nothing, uses sudo when it is not run by root, and does nothing when all are installed. On
# systems without apt it names the packages that are missing, and fails.
set -euo pipefail

# The group that needs it, and the package's name on Debian and Ubuntu, Fedora, Arch and openSUSE; "-"
# where the system has none, or another package brings the tool. Tests pass over what an optional
# package ("?") brings, which not every release has.
table='
build      g++                    gcc-c++                 gcc               gcc-c++
build      cmake                  cmake                   cmake             cmake
build      ninja-build            ninja-build             ninja             ninja
build      pkgconf                pkgconf-pkg-config      pkgconf           pkgconf-pkg-config
build      libgtk-3-dev           gtk3-devel              gtk3              gtk3-devel
build      libwebkit2gtk-4.1-dev  webkit2gtk4.1-devel     webkit2gtk-4.1    webkit2gtk3-devel
display    xvfb                   xorg-x11-server-Xvfb    xorg-server-xvfb  xorg-x11-server-Xvfb
display    xdotool                xdotool                 xdotool           xdotool
display    imagemagick            ImageMagick             imagemagick       ImageMagick
signing    libp11-kit-dev         p11-kit-devel           p11-kit           p11-kit-devel
signing    p11-kit-modules        p11-kit                 -                 p11-kit
signing    softhsm2               softhsm                 softhsm           softhsm
signing    openssl                openssl                 openssl           openssl
reference  doxygen                doxygen                 doxygen           doxygen
measure    libbenchmark-dev       google-benchmark-devel  benchmark         benchmark-devel
measure    python3                python3                 python            python3
test       libgtest-dev           gtest-devel             gtest             gtest
test       libgmock-dev           gmock-devel             -                 gmock
test       git                    git-core                git               git-core
test       make                   make                    make              make
test       procps                 procps-ng               procps-ng         procps
test       clang                  clang                   clang             clang
test       lld                    lld                     lld               lld
test       libclang-rt-dev        compiler-rt             compiler-rt       -
test       ?clang-format-14       -                       -                 -
test       ?clang-tidy-14         -                       -                 -
test       xauth                  xorg-x11-xauth          xorg-xauth        xauth
test       openbox                openbox                 openbox           openbox
test       x11-utils              xprop                   xorg-xprop        xprop
test       -                      xwininfo                xorg-xwininfo     xwininfo
test       -                      xev                     xorg-xev          xev
test       xdg-utils              xdg-utils               xdg-utils         xdg-utils
test       ?chromium              chromium                chromium          chromium
test       nodejs                 nodejs                  nodejs            nodejs
test       node-typescript        nodejs-typescript       typescript        typescript
test       esbuild                golang-github-evanw-esbuild esbuild      esbuild
test       dbus                   dbus-daemon             dbus              dbus-1
test       at-spi2-core           at-spi2-core            at-spi2-core      at-spi2-core
test       gir1.2-atspi-2.0       -                       -                 typelib-1_0-Atspi-2_0
test       python3-gi             python3-gobject         python-gobject    python3-gobject
test       ?codespell             codespell               codespell         codespell
test       ?mandoc                mandoc                  mandoc            mandoc
plots      gnuplot-nox            gnuplot-minimal         gnuplot           gnuplot
package    dpkg-dev               dpkg-dev                dpkg              dpkg
package    file                   file                    file              file
package    lintian                -                       -                 -
package    mmdebstrap             -                       -                 -'

task=${1:-test}
shift || true
case $task in
run | signing)
    groups=build
    [ "$task" = run ] || groups='build|signing'
    [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || groups+='|display'
    ;;
test) groups='build|signing|display|reference|measure|test' ;;
bench) groups='build|display|measure|plots' ;;
package) groups='build|display|reference|package' ;;
*)
    echo 'usage: install-deps.sh [run|signing|test|bench|package [PACKAGE...]]' >&2
    exit 2
    ;;
esac

installed() { [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }
column=2
if ! command -v apt-get >/dev/null; then
    if command -v pacman >/dev/null; then
        column=4
        installed() { pacman -Q "$1" >/dev/null 2>&1; }
    else
        column=3
        ! command -v zypper >/dev/null || column=5
        installed() { rpm -q --whatprovides "$1" >/dev/null 2>&1; }
    fi
fi

missing=()
optional=()
while read -r package; do
    if ! installed "${package#\?}"; then
        case $package in
        \?*) optional+=("${package#\?}") ;;
        *) missing+=("$package") ;;
        esac
    fi
done < <(awk -v groups="^($groups)\$" -v column=$column \
    '$1 ~ groups && $column != "-" {print $column}' <<<"$table"; [ $# -eq 0 ] || printf '%s\n' "$@")

if [ $column -ne 2 ]; then
    [ ${#missing[@]} -eq 0 ] && exit 0
    echo "install-deps.sh: install these packages, then run the command again: ${missing[*]}" >&2
    exit 1
fi

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
updated=
update() {
    [ -n "$updated" ] || "${as_root[@]}" apt-get update -qq
    updated=yes
}

# What no release offers is looked up in the list at hand; without a list that is fetched first.
for package in "${optional[@]}"; do
    [ -n "$(apt-cache policy "$package")" ] || update
    if [[ $(apt-cache policy "$package") == *'Candidate: '[0-9]* ]]; then
        missing+=("$package")
    else
        echo "install-deps.sh: $package is not offered here; checks that need it are passed over" >&2
    fi
done

[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
