#!/usr/bin/env bash
# Fuzzes all targets with libFuzzer, two at a time: fuzz.sh [SECONDS], 60 in all unless told. Fails
# on a crash and on an input that needs more than a second; the input is kept in build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/progress.sh
seconds=${1:-60}

scripts/install-deps.sh test
begin_progress 'building the fuzzers'
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzzers >/dev/null
end_progress
cd build/fuzz

rm -rf seeds && mkdir seeds
number=0
while IFS= read -r seed; do
    printf '%b' "${seed//%/\\x25}" >"seeds/$((number += 1))"
done <../../tests/fuzz/seeds.txt

mapfile -t targets <fuzz-targets
export each=$((seconds * 2 / ${#targets[@]}))
begin_progress "fuzzing ${#targets[@]} targets, $each s each, two at a time"
printf '%s\n' "${targets[@]}" | xargs -P 2 -I TARGET bash -c '
    mkdir -p corpus/TARGET
    tests/fuzz-TARGET corpus/TARGET seeds -max_total_time=$each -timeout=1 -max_len=4096 \
        -print_final_stats=1 -artifact_prefix=TARGET- >TARGET.log 2>&1 || touch TARGET.failed'
end_progress

failed=0
total=0
for target in "${targets[@]}"; do
    inputs=$(awk '/number_of_executed_units/ {print $2}' "$target.log")
    slowest=$(awk '/slowest_unit_time_sec/ {print $2}' "$target.log")
    if [ -e "$target.failed" ]; then
        rm "$target.failed"
        failed=$((failed + 1))
        tail -n 30 "$target.log"
    fi
    echo "$target: ${inputs:-0} inputs, slowest ${slowest:-unknown} s"
    total=$((total + ${inputs:-0}))
done
echo "$total inputs in all, $failed targets failed"
[ "$failed" -eq 0 ]
