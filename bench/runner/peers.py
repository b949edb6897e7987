"""The programs that are compared, and one run of one of them."""
import os
import subprocess
import sys
from pathlib import Path

BENCH = Path(__file__).resolve().parent.parent
SCRIPTS = BENCH / "peers"
PYTHON = "/usr/bin/python3"  # Debian's, whatever else is in the path

OURS, YARDSTICK = "qxscript", "lua54"


class Peer:
    def __init__(self, name, title, program, script, extension, workloads, environment=None):
        self.name, self.title, self.program = name, title, program
        self.script = script
        self.extension = extension  # of the generated source of W9
        self.workloads = workloads.split()
        self.environment = environment or {}

    def is_built(self):
        return self.program.exists()

    def command(self, workload, script, size):
        return [str(self.program), str(script), workload.name, str(size)]


class CommandLinePython(Peer):
    """Python runs by its command line what takes no host."""

    def command(self, workload, script, size):
        if workload.name in ("W7", "W8"):
            return super().command(workload, script, size)
        return [PYTHON, str(self.script), str(script) if workload.name == "W9" else "-", workload.name, str(size)]


def known_peers(build):
    programs = build / "peers"
    common = "W1 W2 W3 W4 W5 W6 W7 W8 W9"
    lua = SCRIPTS / "lua/bench.lua"
    tcl = SCRIPTS / "tcl/bench.tcl"
    return [
        Peer(OURS, "qxScript", build / "bin/qxworkloads", BENCH / "workloads/workloads.qxscr", "qxscr",
             common + " W1s W2h W8r W8e W9k W9c"),
        Peer(YARDSTICK, "Lua 5.4", programs / "lua54", lua, "lua", common + " W1f W2h W9k"),
        Peer("luajit", "LuaJIT", programs / "luajit", lua, "lua", common + " W1f"),
        Peer("luajit-off", "LuaJIT, interpreted", programs / "luajit", lua, "lua", common + " W1f", {"JOFF": "1"}),
        Peer("luajit-ffi", "LuaJIT, by FFI", programs / "luajit", SCRIPTS / "lua/bench_ffi.lua", "lua", "W7"),
        Peer("tcl", "Tcl 8.6", programs / "tcl", tcl, "tcl", common + " W6d"),
        Peer("jim", "Jim", programs / "jim", tcl, "tcl", common + " W6d"),
        Peer("duktape", "Duktape", programs / "duktape", SCRIPTS / "duktape/bench.js", "js", common),
        Peer("mruby", "mruby", programs / "mruby", SCRIPTS / "mruby/bench.rb", "rb", common + " W1f"),
        CommandLinePython("python", "Python 3", programs / "pyhost", SCRIPTS / "python/bench.py", "py",
                          common + " W1f"),
    ]


class Runner:
    """Runs programs; what is generated for them goes into `folder`."""

    def __init__(self, folder):
        self.folder = Path(folder)

    def functions(self, extension, count):
        path = self.folder / ("w9_%d.%s" % (count, extension))
        if not path.exists():
            with open(path, "w", encoding="utf-8") as out:
                subprocess.run([sys.executable, SCRIPTS / "gen_w9.py", extension, str(count)], stdout=out, check=True)
        return path

    def command(self, peer, workload, size, functions=None):
        """`functions` are those of the file of W9c, which calls `size` of them."""
        script = peer.script
        if workload.name in ("W9", "W9k"):
            script = self.functions(peer.extension, size)
        elif workload.name == "W9c":
            script = self.functions(peer.extension, functions or workload.size)
        return peer.command(workload, script, size)

    def start(self, peer, command):
        return subprocess.Popen(command, stdout=subprocess.PIPE, env={**os.environ, **peer.environment}, text=True)

    def words(self, started):
        """What a program printed, when it has ended."""
        out = started.communicate()[0]
        if started.returncode != 0:
            sys.exit("failed: " + " ".join(started.args))
        return out.split()

    def times(self, started, checksum):
        """Nanoseconds: by the wall, and of processor. A wrong checksum ends the comparison."""
        wall, processor, found = map(int, self.words(started)[3:6])
        if found != checksum:
            sys.exit("the checksum is %d and has to be %d: %s" % (found, checksum, " ".join(started.args)))
        return wall, processor

    def time(self, peer, workload, size, functions=None):
        """Nanoseconds of processor."""
        started = self.start(peer, self.command(peer, workload, size, functions))
        return self.times(started, workload.checksum(size))[1]
