#!/usr/bin/env bash
# Makes the report of the orders. usage: run.sh QXSCRIPT
set -euo pipefail

qxscript=$(realpath "${1:?usage: run.sh QXSCRIPT}")
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")

# The report is a new file, so it is made in a copy.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$here" "$work/batch"
cd "$work/batch"
export LC_ALL=C

# Shows a file of the default code page; the day of the report is not always the same.
show() {
    printf '\n%s:\n' "$1"
    iconv -f WINDOWS-1252 -t UTF-8 "$1" | sed "s/^Orders on .*/Orders on TODAY/"
}

echo "$ qxscript run batch report orders 'the report.txt'"
"$qxscript" run batch report orders 'the report.txt' 2>&1
show 'the report.txt'
show 'the report.sorted.txt'
