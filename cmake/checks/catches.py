#!/usr/bin/env python3
"""catches.py TREE: what the libraries catch without knowing it stands in docs/architecture.md, by file and number.

Prints each file whose number of `catch (...)` is another one, and fails then.
"""
import re
import sys
from collections import Counter
from pathlib import Path

tree = Path(sys.argv[1])
found = Counter()
for path in (tree / "libs").rglob("*"):
    if path.suffix in (".h", ".cpp"):
        number = path.read_text(encoding="utf-8").count("catch (...)")
        if number:
            found[path.name] += number
page = (tree / "docs/architecture.md").read_text(encoding="utf-8")
listed = Counter({name: int(number) for name, number in re.findall(r"^\| `(\w+\.\w+)` \| (\d+) \|", page, re.M)})
wrong = ["%s catches whatever comes %d times, %d are listed" % (name, found[name], listed[name])
         for name in sorted(found | listed) if found[name] != listed[name]]
print("\n".join(wrong) or "every place is listed")
sys.exit(bool(wrong))
