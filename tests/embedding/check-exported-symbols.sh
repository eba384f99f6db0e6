#!/usr/bin/env bash
# Compares what a shared library exports with a checked-in list, so that nothing becomes part of
# the library's interface, or leaves it, unnoticed.
# Usage: check-exported-symbols.sh library list [--update]
set -euo pipefail
export LC_ALL=C
library=$1
list=$2

# The project's names are compared one by one. Names of other owners may only be weak: the
# templates of Qt, Boost and the standard library that the exported classes use are instantiated in
# every library that uses them and are visible with those types (vague linkage).
own='^(vtable for |typeinfo for |typeinfo name for |VTT for |(non-)?virtual thunk to |guard variable for )?(GW|mbservice)::'
exported=$(mktemp)
trap 'rm -f "$exported"' EXIT
nm -D --defined-only "$library" | sed -E 's/^[0-9a-f]* +//' |
    # Bookkeeping of the linker and of the address sanitizer.
    grep -vE '^. (_init|_fini|__bss_start|_edata|_end|__odr_asan.*|__(start|stop)_asan_globals)$' |
    c++filt >"$exported"

foreign=$(grep -E '^[^VWu] ' "$exported" | cut -c3- | grep -vE "$own" || true)
if [ -n "$foreign" ]; then
    echo "exported, but not of the project's namespaces:"
    echo "$foreign"
    exit 1
fi
names=$(cut -c3- "$exported" | grep -E "$own" | sort -u)
if [ "${3:-}" = --update ]; then
    echo "$names" >"$list"
    exit 0
fi
if ! diff --label "$list" --label "$library" -u "$list" <(echo "$names"); then
    echo "The exported names changed. If that is meant: $0 $library $list --update"
    exit 1
fi
