"""The comparison: every workload of every program, in turn, and the tables of what they took."""
import statistics
import sys

from peers import OURS, YARDSTICK
from workloads import WORKLOADS

TOLERANCE = 1.15  # how far beyond its target a ratio may be on a machine that others use too


class Figure:
    """What one program took for one workload, in nanoseconds an iteration."""

    def __init__(self, size, times):
        self.size = size
        self.median = statistics.median(times)
        self.fastest = min(times)


def fitting_size(runner, peer, workload, seconds):
    """The largest size, by fourths, that takes no longer than that."""
    if not workload.scaled:
        return workload.size
    sizes = [workload.size]
    while workload.quarter(sizes[-1]) > 0 and len(sizes) < 8:
        sizes.append(workload.quarter(sizes[-1]))
    for size in reversed(sizes):
        if size == workload.size or 4 * runner.time(peer, workload, size) > seconds * 1e9:
            return size


def pairs_of(programs, workloads):
    """What is to run: what was chosen, and what it is compared with."""
    wanted = {workload.name for workload in workloads}
    compared = {workload.beside for workload in workloads}
    return [
        (workload, peer)
        for workload in WORKLOADS
        for peer in programs
        if workload.name in peer.workloads
        and (workload.name in wanted or workload.name in compared and peer.name == YARDSTICK)
    ]


def measure(runner, programs, workloads, rounds, seconds):
    """The figures by names of workload and program."""
    pairs = pairs_of(programs, workloads)
    sizes = {(w.name, p.name): fitting_size(runner, p, w, seconds) for w, p in pairs}
    times = {key: [] for key in sizes}
    for number in range(rounds):
        print("round %d of %d" % (number + 1, rounds), file=sys.stderr)
        # Each workload's programs run one after the other, as what else the machine does changes slowly.
        for workload, peer in pairs:
            key = workload.name, peer.name
            times[key].append(runner.time(peer, workload, sizes[key]) / workload.iterations(sizes[key]))
    return {key: Figure(sizes[key], times[key]) for key in sizes}


def table(heads, rows):
    lines = ["| " + " | ".join(heads) + " |", "|---|" + "---:|" * (len(heads) - 1)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def number(value):
    return "{:,.0f}".format(value) if value >= 100 else "%.3g" % value


def shown(figure):
    return "%s (%s)" % (number(figure.median), number(figure.fastest)) if figure else ""


def verdict(ratio, target):
    if target is None:
        return ""
    return "yes" if ratio <= target * TOLERANCE else "no"


def against_yardstick(figures, workloads):
    rows = []
    for workload in workloads:
        ours, theirs = figures.get((workload.name, OURS)), figures.get((workload.beside, YARDSTICK))
        if ours and theirs:
            ratio = ours.median / theirs.median
            rows.append(["%s %s" % (workload.name, workload.what), shown(ours), shown(theirs), number(ratio),
                         number(ours.fastest / theirs.fastest),
                         number(workload.target) if workload.target else "", verdict(ratio, workload.target)])
    return table(["workload", "qxScript", "Lua 5.4", "ratio", "of the fastest", "target", "reached"], rows)


def among_peers(figures, programs, workloads):
    rows = [[workload.name] + [shown(figures.get((workload.name, peer.name))) for peer in programs]
            for workload in workloads]
    return table(["workload"] + [peer.title for peer in programs], rows)


def tables(figures, programs, workloads):
    return against_yardstick(figures, workloads) + "\n" + among_peers(figures, programs, workloads)
