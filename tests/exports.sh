#!/usr/bin/env bash
# exports.sh LIBRARY HOST: the library exports just the documented names, and both are hardened.
set -euo pipefail

fail() {
    echo "$1"
    exit 1
}

expected="EntryAdmin Main P_Available P_EnumProperty P_Finalize P_GetProperty P_Initialize P_Invoke \
P_SetProperty webkit_web_extension_initialize"
exported=$(nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort | xargs)
[ "$exported" = "$expected" ] || fail "$1 exports $exported"
# The engine counts a text's bytes in 32 bits there; a text long enough to show it needs gigabytes.
! nm -D "$1" | grep JSStringGetMaximumUTF8CStringSize || fail "$1 trusts a size of 32 bits"
for file in "$1" "$2"; do
    headers=$(readelf -dlW "$file")
    grep -q GNU_RELRO <<<"$headers" || fail "$file: no RELRO"
    grep -qE 'BIND_NOW|Flags: NOW' <<<"$headers" || fail "$file: not bound at start"
    grep -qE 'GNU_STACK.* RW ' <<<"$headers" || fail "$file: executable stack"
    grep -q __stack_chk_fail <<<"$(nm -D "$file")" || fail "$file: no stack protector"
    [[ $(uname -m) = x86_64 ]] || continue
    code=$(objdump -d --no-show-raw-insn "$file")
    # The start files have marks of their own.
    grep -iA1 '<main>:' <<<"$code" | grep -q endbr64 || fail "$file: no marks for indirect jumps"
    [ "$file" = "$2" ] || grep -A1 'sub  *$0x1000,%rsp' <<<"$code" | grep -q '[bq]  *$0x0,(%rsp)' ||
        fail "$file: large stack frames are not probed"
done
