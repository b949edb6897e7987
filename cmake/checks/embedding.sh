#!/usr/bin/env bash
# embedding.sh WAY BUILD: embeds the engine in the project of tests/embedding, in one of the ways that a user has, and
# runs what comes of it. `tree` takes the installed tree by CMake and by pkg-config, `sources` add_subdirectory and
# FetchContent, `packages` the Debian packages.
set -euo pipefail
way=$1
build=$2
sources=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
project=$sources/tests/embedding
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

expect() {
    local given
    given=$("$@")
    [[ $given == "42 is the answer" ]] || { echo "$*: gave '$given'" >&2; exit 1; }
}

# Without the optimiser: what is asked is whether it builds and runs.
with_cmake() {
    local name=$1
    shift
    cmake -S "$project" -B "$work/$name" -G Ninja -DCMAKE_BUILD_TYPE=Debug "$@" >"$work/log" 2>&1 &&
        cmake --build "$work/$name" >>"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
    expect "$work/$name/embedding"
}

# Uses an installed tree both ways.
link() {
    local tree=$1
    with_cmake package -DEMBED=package "-DCMAKE_PREFIX_PATH=$tree"
    local found
    found=$(dirname "$(find "$tree" -name qxscript.pc)")
    # shellcheck disable=SC2046
    c++ "$project/main.cpp" -o "$work/plain" $(PKG_CONFIG_PATH=$found pkg-config --cflags --libs qxscript)
    expect env "LD_LIBRARY_PATH=$(dirname "$found")" "$work/plain"
}

# The same, and the command line in it.
use() {
    local tree=$1
    link "$tree"
    [[ $("$tree/bin/qxscript" eval 'strlen("four")') == 4 ]]
    groff -man -Tutf8 -ww "$tree/share/man/man1/qxscript.1" >"$work/man" 2>"$work/log"
    [[ -s $work/man && ! -s $work/log ]] || { cat "$work/log" >&2; exit 1; }
}

case $way in
tree)
    cmake --install "$build" --prefix "$work/first" >/dev/null
    mv "$work/first" "$work/moved"
    use "$work/moved"
    ;;
sources)
    with_cmake subdirectory -DEMBED=subdirectory "-DQXSCRIPT_SOURCE=$sources" -DCMAKE_BUILD_TYPE=
    grep -q '^CMAKE_BUILD_TYPE:[A-Z]*=$' "$work/subdirectory/CMakeCache.txt" # is the project's own
    cmake --install "$work/subdirectory" --prefix "$work/nothing" >/dev/null
    [[ ! -e $work/nothing ]]
    with_cmake fetch -DEMBED=fetch "-DQXSCRIPT_SOURCE=$sources" -DQXSCRIPT_STATIC=ON -DQXSCRIPT_INSTALL=ON
    cmake --install "$work/fetch" --prefix "$work/static" >/dev/null
    link "$work/static"
    ;;
packages)
    (cd "$build" && cpack -G DEB -B "$work/packages" >"$work/log" 2>&1) || { cat "$work/log" >&2; exit 1; }
    for package in libqxscript0 libqxscript-dev qxscript; do
        dpkg -x "$work/packages/$package"_*.deb "$work/root"
    done
    dpkg -f "$work/packages"/qxscript_*.deb Depends | grep -q libqxscript0
    dpkg -f "$work/packages"/libqxscript-dev_*.deb Depends | grep -q libqxscript0
    dpkg -f "$work/packages"/libqxscript0_*.deb Depends | grep -q libc6
    use "$(dirname "$(find "$work/root" -type d -name bin)")"
    ;;
esac
