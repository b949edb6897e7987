#!/usr/bin/env bash
# needs-cpp20.sh COMPILER [FLAG...] -- HEADER...
# Each header says first of all that it needs C++20, to a compiler that is told to take an older one.
set -euo pipefail
command=()
while [[ $1 != -- ]]; do
    command+=("$1")
    shift
done
shift
for header in "$@"; do
    said=$("${command[@]}" -std=c++17 -fsyntax-only -x c++ - <<<"#include <$header>" 2>&1) && said="nothing"
    first=$(grep -m 1 -e "error" -e "nothing" <<<"$said")
    [[ $first == *"needs C++20"* ]] || { echo "$header: $first" >&2; exit 1; }
done
