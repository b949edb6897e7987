#!/usr/bin/env bash
# header-cost.sh HEADER SECONDS COMPILER [FLAG...]
# Fails unless including HEADER alone costs less than SECONDS of processor time. The least of several runs counts,
# so that a busy machine does not decide.
set -euo pipefail
export LC_ALL=C

header=$1 limit=$2
shift 2
source=$(mktemp --suffix=.cpp)
trap 'rm -f "$source"' EXIT
echo "#include <$header>" >"$source"

TIMEFORMAT='%U %S'
best=
for _ in 1 2 3 4 5 6 7 8 9 10; do
    spent=$({ time "$@" -fsyntax-only "$source" 1>&2; } 2>&1 | awk 'END { printf "%.3f", $1 + $2 }')
    if [[ -z $best ]] || awk "BEGIN { exit !($spent < $best) }"; then
        best=$spent
    fi
done
echo "#include <$header>: $best s (limit $limit s)"
awk "BEGIN { exit !($best < $limit) }"
