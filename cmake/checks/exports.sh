#!/usr/bin/env bash
# exports.sh compare|write LIBRARY LIST
# The strong symbols that a shared library defines for others, demangled: compared with a list, or written to it.
# Weak symbols are left out: which inline functions and templates leave a copy is the optimiser's choice.
set -euo pipefail
export LC_ALL=C

exported() {
    nm --dynamic --defined-only "$1" | awk '$2 ~ /^[TDBR]$/ { print $3 }' | c++filt | sort -u
}

mode=$1 library=$2 list=$3
case $mode in
write)
    exported "$library" >"$list"
    ;;
compare)
    if ! diff -u --label "$list" --label "$library" "$list" <(exported "$library"); then
        echo "The exported symbols differ from $list. If that is wanted: ./dev exports" >&2
        exit 1
    fi
    ;;
*)
    echo "usage: exports.sh compare|write LIBRARY LIST" >&2
    exit 2
    ;;
esac
