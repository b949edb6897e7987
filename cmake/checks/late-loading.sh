#!/usr/bin/env bash
# late-loading.sh PROGRAM PLUGIN LIBRARY...: the program, which links none of the libraries, opens them and then the
# plug-in, and both libraries together take few of the bytes that the loader keeps for variables of threads.
set -euo pipefail
program=$1 plugin=$2
shift 2

total=0
for library in "$@"; do
    size=$(readelf -lW "$library" | awk '$1 == "TLS" { print $6 }')
    total=$((total + ${size:-0}))
done
echo "variables of threads: $total bytes"
((total < 128))

given=$("$program" "$@" "$plugin")
[[ $given == "42 and 42" ]] || { echo "gave '$given'" >&2; exit 1; }
