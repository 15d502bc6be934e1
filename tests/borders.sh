#!/usr/bin/env bash
# Has the compiler refuse what a room may not include: borders.sh COMPILER INCLUDE_FOLDER
set -uo pipefail
failed=0

compiles() { # compiles ROOM HEADER
    "$compiler" -std=c++20 -fsyntax-only -I"$roots/$1" -x c++ - <<<"#include \"$2\"" 2>/dev/null
}

expect() { # expect ROOM 'ALLOWED...' 'FORBIDDEN...'
    for header in $2; do compiles "$1" "$header" || { echo "$1 cannot include $header"; failed=1; }; done
    for header in $3; do compiles "$1" "$header" && { echo "$1 can include $header"; failed=1; }; done
}

compiler=$1 roots=$(realpath "$2")
cd / || exit # A quoted name is looked up in the working folder first.
util=util/StringUtil.h process=process/Trace.h plugin=plugin/plugin.h
bridge=bridge/PluginValues.h webapp=webapp/Geometry.h host=host/Graphics.h
expect util "$util" "$process $plugin $bridge $webapp $host"
expect process "$util $process" "$plugin $bridge $webapp $host"
expect plugin "$util $plugin" "$process $bridge $webapp $host"
expect bridge "$util $process $plugin $bridge" "$webapp webapp/ShellState.h $host"
expect webapp "$util $process $plugin $bridge $webapp" "$host"
expect tovik "$host webapp/Options.h" "$util $process $plugin $bridge webapp/ShellState.h"
exit $failed
