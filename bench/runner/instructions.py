"""How many instructions an iteration takes, counted by valgrind: a figure that no other program disturbs."""
import os
import re
import subprocess
import sys

from report import number, table

# Ticks come every few milliseconds, and valgrind makes a run fifty times as long.
ENVIRONMENT = {**os.environ, "QX_TICKS": "still"}
VALGRIND = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null"]


def count(runner, peer, workload, size):
    command = VALGRIND + runner.command(peer, workload, size)
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=ENVIRONMENT)
    counted = re.search(r"Collected : (\d+)", done.stderr)
    if done.returncode != 0 or not counted:
        sys.exit(done.stderr + "failed: " + " ".join(command))
    return int(counted[1])


def each(runner, peer, workload):
    """The difference of two sizes leaves out the start and the loading."""
    large, small = workload.small, workload.quarter(workload.small)
    more = count(runner, peer, workload, large) - count(runner, peer, workload, small)
    return more / (workload.iterations(large) - workload.iterations(small))


def shown(runner, programs, workloads):
    rows = [
        [workload.name]
        + [number(each(runner, peer, workload)) if workload.name in peer.workloads else "" for peer in programs]
        for workload in workloads
    ]
    return table(["workload"] + [peer.title for peer in programs], rows)
