#!/usr/bin/env bash
# Tests what needs neither GTK nor the engine for three processors, by each compiler, with char signed
# and unsigned, and prints a line for each processor and compiler: architectures.sh [LINE...], such as
# arm64-g++; all lines unless told. The fuzz seeds are among the tests. Programs for arm64 are run by
# qemu, which says nothing about their speed. It needs a machine that runs programs for amd64 and i386
# itself. What the commands printed is kept in build/architectures.
set -euo pipefail
cd "$(dirname "$0")/.."
logs=$PWD/build/architectures

# choose LINE: sets the compilers and their options for a line.
choose() {
    local triplet loader
    case $1 in
    amd64-*) triplet=x86_64-linux-gnu loader= ;;
    arm64-*) triplet=aarch64-linux-gnu loader=ld-linux-aarch64.so.1 ;;
    i386-*) triplet=i686-linux-gnu loader=ld-linux.so.2 ;;
    esac
    case $1 in
    *-g++) export CC=$triplet-gcc CXX=$triplet-g++ ;;
    *) export CC="clang --target=$triplet" CXX="clang++ --target=$triplet" ;;
    esac
    # A program finds the C library of its processor where the cross compiler has it. The older tags
    # of a search path reach the libraries of libraries too.
    local own=/usr/$triplet/lib
    export LDFLAGS=${loader:+-Wl,--dynamic-linker=$own/$loader,--disable-new-dtags,-rpath,$own}
}

# made SOURCE BUILD LOG [OPTION...]: configures and builds; prints the first error.
made() {
    { cmake -G Ninja -S "$1" -B "$2" -DCMAKE_BUILD_TYPE=RelWithDebInfo "${@:4}" &&
        cmake --build "$2"; } >"$3" 2>&1 && return
    printf 'FAILED: not built: '
    grep -m 1 -E 'error:|CMake Error|not found' "$3" || echo "see $3"
    return 1
}

# try LINE: prints the outcome; fails when a test does.
try() {
    local log=$logs/$1 sign outcome=holds seen=''
    choose "$1"
    made /usr/src/googletest "$log-googletest" "$log.googletest" \
        -DCMAKE_INSTALL_PREFIX="$log-installed" || return
    cmake --install "$log-googletest" >>"$log.googletest"
    export CMAKE_PREFIX_PATH=$log-installed
    for sign in signed unsigned; do
        CXXFLAGS=-f$sign-char made "$PWD" "$log-$sign" "$log.$sign" \
            -DTOVIK_ENGINE=OFF -DCMAKE_COMPILE_WARNING_AS_ERROR=ON || return
        ctest --test-dir "$log-$sign" --output-on-failure -j2 >>"$log.$sign" 2>&1 || outcome=FAILED
        seen+=$(awk -v sign="$sign" '/tests failed out of/ {total = $NF}
            /\*\*\*(Failed|Timeout|Exception|Not Run)/ {failed = failed " " $4}
            END {print ", char " sign ": " total + 0 " tests" (failed ? ", failed:" failed : "")}' \
            "$log.$sign")
    done
    echo "$outcome$seen, ${CXX%% *} $("${CXX%% *}" -dumpversion)"
    [ "$outcome" = holds ]
}

if [ "${1:-}" = --under-qemu ]; then
    mount -t binfmt_misc none /proc/sys/fs/binfmt_misc
    cat /usr/lib/binfmt.d/qemu-aarch64.conf >/proc/sys/fs/binfmt_misc/register
    try "$2"
    exit
fi

[ $# -gt 0 ] || set -- {amd64,arm64,i386}-{g++,clang++}
for line in "$@"; do
    [[ $line =~ ^(amd64|arm64|i386)-(g|clang)\+\+$ ]] || {
        echo "architectures.sh: $line is no line; name a processor and a compiler: arm64-g++" >&2
        exit 2
    }
done
scripts/install-deps.sh run googletest clang \
    g++-aarch64-linux-gnu g++-i686-linux-gnu qemu-user-static

mkdir -p "$logs"
failed=0
for line in "$@"; do
    printf '%-14s ' "$line"
    # The kernel starts qemu for a program of arm64, and for those that tests start. It is told so for
    # these processes alone, unless the machine is set up that way, or has a kernel before 6.7.
    if [[ $line != arm64-* ]] || [ -e /proc/sys/fs/binfmt_misc/qemu-aarch64 ]; then
        try "$line" || failed=1
    elif unshare --user --map-root-user --mount \
        mount -t binfmt_misc none /proc/sys/fs/binfmt_misc 2>/dev/null; then
        unshare --user --map-root-user --mount scripts/architectures.sh --under-qemu "$line" ||
            failed=1
    else
        echo 'not tried: this kernel starts qemu only where the machine is set up for it (binfmt_misc)'
        failed=1
    fi
done
exit $failed
