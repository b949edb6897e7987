"""The comparison: every workload of every program, in turn, and the tables of what they took."""
import statistics
import sys

from peers import OURS, YARDSTICK
from report import number, table, yes
from workloads import WORKLOADS

TOLERANCE = 1.15  # how far beyond its target a ratio may be on a machine that others use too


class Figure:
    """What one program took for one workload, in nanoseconds of processor an iteration."""

    def __init__(self, times):
        self.median = statistics.median(times)
        self.fastest = min(times)

    def __str__(self):
        return "%s (%s)" % (number(self.median), number(self.fastest))


def fitting_size(workload, seconds, time):
    """The largest size, by fourths, that takes no longer than that; a small one for no time at all. `time` runs a size
    and gives nanoseconds."""
    if not seconds:
        return workload.small
    if not workload.scaled:
        return workload.size
    sizes = [workload.size]
    while workload.quarter(sizes[-1]) > 0 and len(sizes) < 8:
        sizes.append(workload.quarter(sizes[-1]))
    for size in reversed(sizes):
        if size == workload.size or 4 * time(size) > seconds * 1e9:
            return size


def wanted_runs(programs, workloads):
    """What was chosen, and what it is compared with."""
    compared = {workload.beside for workload in workloads}
    return [
        (workload, peer)
        for workload in WORKLOADS
        for peer in programs
        if workload.name in peer.workloads
        and (workload in workloads or workload.name in compared and peer.name == YARDSTICK)
    ]


def measure(runner, programs, workloads, rounds, seconds):
    """The figures by names of workload and program."""
    runs = wanted_runs(programs, workloads)
    sizes = {
        (workload, peer): fitting_size(workload, seconds, lambda size: runner.time(peer, workload, size))
        for workload, peer in runs
    }
    times = {run: [] for run in runs}
    for done in range(rounds):
        print("round %d of %d" % (done + 1, rounds), file=sys.stderr)
        # All programs of a workload run one after the other: what else the machine does changes slowly.
        for workload, peer in runs:
            size = sizes[workload, peer]
            time = runner.time(peer, workload, size)
            times[workload, peer].append(time / workload.iterations(size))
    return {(workload.name, peer.name): Figure(times[workload, peer]) for workload, peer in runs}


def beside_the_yardstick(figures, workloads):
    rows = []
    for workload in workloads:
        ours, theirs = figures.get((workload.name, OURS)), figures.get((workload.beside, YARDSTICK))
        if not ours or not theirs:
            continue
        ratio, target = ours.median / theirs.median, workload.target
        rows.append(
            ["%s: %s" % (workload.name, workload.what), str(ours), str(theirs), number(ratio)]
            + [number(ours.fastest / theirs.fastest)]
            + ([number(target), yes(ratio <= target * TOLERANCE)] if target else ["", ""])
        )
    return table(["workload", "qxScript", "Lua 5.4", "ratio", "ratio of the fastest", "target", "reached"], rows)


def beside_all(figures, programs, workloads):
    rows = [
        [workload.name] + [str(figures.get((workload.name, peer.name), "")) for peer in programs]
        for workload in workloads
    ]
    return table(["workload"] + [peer.title for peer in programs], rows)
