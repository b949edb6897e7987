#!/usr/bin/env bash
# header-cost.sh HEADER SECONDS COMPILER [FLAG...]
# Fails unless including HEADER alone costs less than SECONDS of processor time, on a machine where <string> and
# <vector> cost 0.21 s; on a slower one the limit grows with those. The least of several runs in turn counts, so that
# a busy machine does not decide.
set -euo pipefail
export LC_ALL=C

header=$1 limit=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo "#include <$header>" >"$work/header.cpp"
printf '#include <string>\n#include <vector>\n' >"$work/standard.cpp"

TIMEFORMAT='%U %S'
spent() {
    { time "$@" -fsyntax-only 1>&2; } 2>&1 | awk 'END { printf "%.3f", $1 + $2 }'
}
least() {
    awk "BEGIN { print $1 < $2 ? $1 : $2 }"
}

best=1000 standard=1000
for _ in 1 2 3 4 5 6 7 8 9 10; do
    best=$(least "$best" "$(spent "$@" "$work/header.cpp")")
    standard=$(least "$standard" "$(spent "$@" "$work/standard.cpp")")
done
limit=$(awk "BEGIN { print $limit * ($standard > 0.21 ? $standard / 0.21 : 1) }")
echo "#include <$header>: $best s (limit $limit s; <string> and <vector> $standard s)"
awk "BEGIN { exit !($best < $limit) }"
