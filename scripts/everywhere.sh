#!/usr/bin/env bash
# Carries out README's two commands in clean roots of other releases, as their users do, and prints a
# line for each: everywhere.sh [LINE...], such as trixie-g++; all lines unless told. Tries the last
# commit. What the commands printed is kept in build/everywhere. It needs root, a mirror of Debian
# among the sources of apt, 6 GB, and half an hour and more for each line.
set -euo pipefail
cd "$(dirname "$0")/.."
logs=$PWD/build/everywhere

# in_root COMMAND...: carries it out in the clean root, in the source tree once that exists.
in_root() {
    chroot "$root" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin "CC=$c" "CXX=$compiler" \
        sh -c 'cd /root/tovik && exec "$@"' sh "$@" </dev/null
}

# Ends what the commands have left running in the clean root, which could not be removed otherwise.
end_processes() {
    local left
    while left=$(find /proc/[0-9]*/root -maxdepth 0 -lname "$root" 2>/dev/null | cut -d/ -f3) &&
        [ -n "$left" ]; do
        xargs kill -KILL <<<"$left" 2>/dev/null || true
    done
}

# What both runs of ctest say: how many tests, and which failed.
tested() {
    awk '/tests failed out of/ {total = total (total ? " and " : "") $NF}
        /\*\*\*Skipped/ {++skipped}
        /\*\*\*(Failed|Timeout|Exception|Not Run)/ {failed = failed " " $4}
        END {if (!total) {print "no test ran"; exit}
            print total " tests, " skipped + 0 " skipped, failed:" (failed ? failed : " none")}' "$1"
}

try() {
    local versions run=ok test=ok
    git clone -q . "$root/root/tovik"
    [ "$compiler" = g++ ] || in_root scripts/install-deps.sh run clang >"$log.run" 2>&1
    in_root scripts/run.sh >>"$log.run" 2>&1 && grep -q '^answer: TOKEN-' "$log.run" || run=FAILED
    in_root scripts/test.sh >"$log.test" 2>&1 || test=FAILED
    versions=$(in_root pkgconf --modversion webkit2gtk-4.1 gtk+-3.0 2>/dev/null | xargs printf '%s, GTK %s')
    printf 'run.sh %s; test.sh %s, %s; WebKitGTK %s, %s %s\n' "$run" "$test" \
        "$(tested "$log.test")" "$versions" "$compiler" "$(in_root "$compiler" -dumpversion 2>/dev/null)" >"$log"
    end_processes
}

if [ "${1:-}" = --in-root ]; then
    root=$2 compiler=${3#*-} log=$logs/$3
    c=${compiler/g++/gcc} c=${c/clang++/clang}
    try
    exit
fi

[ $# -gt 0 ] || set -- {bookworm,trixie,testing}-{g++,clang++}
for line in "$@"; do
    [[ $line =~ ^[a-z]+-(g|clang)\+\+$ ]] || {
        echo "everywhere.sh: $line is no line; name a release and a compiler: trixie-g++" >&2
        exit 2
    }
done
scripts/install-deps.sh package
# The mirror that this machine uses. One that is kept for long has expired dates, which apt is then
# told to accept.
mirror=$(apt-get indextargets --format '$(RELEASE) $(REPO_URI)' |
    awk -v release="$(. /etc/os-release && echo "$VERSION_CODENAME")" '$1 == release {print $2; exit}')
eval "$(apt-config shell valid_until Acquire::Check-Valid-Until)"

mkdir -p "$logs"
failed=0
for line in "$@"; do
    printf '%-18s ' "$line"
    rm -f "$logs/$line"*
    mmdebstrap --quiet --variant=apt --aptopt="Acquire::Check-Valid-Until \"${valid_until:-true}\"" \
        --customize-hook="$(printf '%q --in-root "$1" %q' "$PWD/scripts/everywhere.sh" "$line")" \
        "${line%%-*}" /dev/null "$mirror" >"$logs/$line.root" 2>&1 ||
        echo "no clean root: $(grep '^E: ' "$logs/$line.root" | head -n 1)" >>"$logs/$line"
    cat "$logs/$line"
    ! grep -qE 'FAILED|^no clean root' "$logs/$line" || failed=1
done
exit $failed
