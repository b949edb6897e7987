"""How many bytes things take."""
from report import number, table, yes

# What it is, as the program calls it; how many there are; and the largest number of bytes that is wanted.
KINDS = [
    ("a number in an array", "ints", 1000000, 16),
    ("a text of ten characters in an array", "texts", 200000, None),
    ("an entry of a map, with a key of six characters", "entries", 200000, None),
    ("a call in a parsed function", "statements", 2000, None),
    ("while all functions of W9 are loaded, at the peak", "loading", 2000, None),
]


def bytes_each(runner, peer, kind, size):
    script = runner.functions(peer.extension, size) if kind in ("statements", "loading") else peer.script
    command = [str(peer.program), str(script), "memory:" + kind, str(size)]
    things, used = map(int, runner.words(runner.start(peer, command))[2:4])
    return used / things


def shown(runner, peer):
    rows = []
    for what, kind, size, limit in KINDS:
        found = bytes_each(runner, peer, kind, size)
        rows.append([what, number(found)] + ([str(limit), yes(found <= limit)] if limit else ["", ""]))
    return table(["thing", "bytes", "at most", "reached"], rows)
