#!/usr/bin/env python3
"""arrows.py TREE: the includes of the libraries point down only. Prints each that does not, and fails then.

docs/architecture.md tells the floors. A header is known by its file name, which occurs once in the tree.
"""
import re
import sys
from pathlib import Path

# From the ground up; a file may include those of its own floor and of all below.
FLOORS = [
    "libs/utils/inc", "libs/utils/internal", "libs/utils/src",
    "libs/script/inc", "libs/script/src/contexts", "libs/script/src/parser", "libs/script/src/statements",
    "libs/script/src/compiled", "libs/script/src/code", "libs/script/src/modules",
    "tools",
]
# The parser makes the one statement that is grammar and not a module's, the block, and gives all their texts.
PARSER = "libs/script/src/parser/qxScriptParser.cpp"
ALLOWED = {(PARSER, "qxScriptBlock.h"), (PARSER, "qxScriptStatementText.h")}
# What hosts see includes nothing that they do not get.
PUBLIC = {"libs/utils/inc", "libs/script/inc", "tools"}
# What a library keeps to itself.
PRIVATE = {"libs/utils/src"}


def floor_of(path):
    return next((floor for floor in FLOORS if path.startswith(floor + "/")), None)


def wrong(tree):
    files = (path for path in tree.glob("[lt]*/**/*") if path.suffix in ("", ".h", ".cpp") and path.is_file())
    paths = [path.relative_to(tree).as_posix() for path in files]
    homes = {path.rsplit("/", 1)[1]: floor_of(path) for path in paths if not path.endswith(".cpp")}
    for path in sorted(paths):
        here = floor_of(path)
        if not here:
            continue
        for name in re.findall(r'^#include ["<](?:.*/)?([\w.]+)[">]', (tree / path).read_text(encoding="utf-8"), re.M):
            there = homes.get(name)
            if not there or there == here or (path, name) in ALLOWED:
                continue
            if here in PUBLIC and there not in PUBLIC:
                yield "%s includes %s, which hosts do not get" % (path, name)
            elif FLOORS.index(there) > FLOORS.index(here):
                yield "%s includes %s, which lies above it in %s" % (path, name, there)
            elif there in PRIVATE:
                yield "%s includes %s, which its library keeps to itself" % (path, name)


if __name__ == "__main__":
    found = list(wrong(Path(sys.argv[1])))
    print("\n".join(found) or "every arrow points down")
    sys.exit(bool(found))
