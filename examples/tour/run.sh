#!/usr/bin/env bash
# A walk through what scripts can do. usage: run.sh QXSCRIPT
set -euo pipefail

qxscript=$(realpath "${1:?usage: run.sh QXSCRIPT}")
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")

# The walk makes files, so it takes place in a copy.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$here" "$work/scripts"
cd "$work"

# Language files are looked for beside the program, so it comes along with them.
cp "$qxscript" "$work/qxscript"
cp -r "$here/lang" "$work/lang"
qxscript=$work/qxscript
language=C

say() {
    printf '\n%s\n' "$*"
}

# Shows a command and runs it; what it reports comes out with the rest.
try() {
    local word line='$ qxscript'
    for word in "$@"; do
        [[ $word == *[^[:alnum:]./]* ]] && word="'$word'"
        line+=" $word"
    done
    echo "$line"
    env LC_ALL="$language" "$qxscript" "$@" 2>&1
}

# The same for a command that fails on purpose.
fail() {
    if try "$@"; then
        echo "this should have failed" >&2
        exit 1
    fi
}

echo "A tour of the script files in examples/tour."

say "A file holds functions. Their parameters may have defaults."
try functions scripts/tour.qxscr
try run scripts/tour greet you
try run scripts/tour greet

say "Variables, and references to them."
try run scripts/tour variables
try run scripts/tour references
try eval '{ createvar(a, "12"); return(isoftype<int>(a)); }'

say "Blocks have names of their own, and a block can be run as a function."
try run scripts/tour blocks

say "Functions call each other. Variables are their own, globals are shared."
try run scripts/tour globals

say "Calls cross files and directories."
try run scripts/tour travel "there and back"

say "A file can be scrambled, and is called as before."
try scramble scripts/lib/secret.qxscr scripts/lib/secret.qxsscr
rm scripts/lib/secret.qxscr
try run scripts/tour secret

say "A failure tells its whole way, outermost first."
fail run scripts/tour stumble

say "All together: an invoice, with loops, arrays, a map, texts and messages."
try run scripts/invoice print "Ms Miller" "pen:3 paper book ink:2"

say "The same for a reader of German, with LC_ALL=de."
language=de try run scripts/invoice print "Frau Müller" "pen:3 paper book ink:2"

say "Files can be checked without running anything."
try check scripts/tour.qxscr scripts/lib/words.qxscr
fail check scripts/broken.qxscr

say "Each statement tells what it does, and how it fails."
try statements strsplit
