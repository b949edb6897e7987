"""How much more two threads do than one, when both run the same function; and two processes, which share nothing but
the machine."""
import statistics

from comparison import fitting_size
from report import number, table, yes

TARGET = 1.9
TOGETHER = ("W1", "W2", "W4", "W6")


def walls(runner, peer, workload, size):
    """Nanoseconds by the wall: one run, two on threads, two in processes."""

    def start(name):
        command = runner.command(peer, workload, size)
        command[command.index(workload.name)] = name
        return runner.start(peer, command)

    def wall(started):
        return runner.times(started, workload.checksum(size))[0]

    one = wall(start(workload.name))
    threads = wall(start(workload.name + "x2"))
    processes = [start(workload.name), start(workload.name)]
    return one, threads, statistics.mean([wall(process) for process in processes])


def shown(runner, peer, workloads, rounds, seconds):
    rows = []
    for workload in workloads:
        if workload.name not in TOGETHER:
            continue
        size = fitting_size(workload, seconds, lambda n: runner.time(peer, workload, n))
        measured = [walls(runner, peer, workload, size) for _ in range(rounds)]
        one, threads, processes = map(statistics.median, zip(*measured))
        work = 2 * one / threads
        rows.append([workload.name, number(work), number(2 * one / processes), yes(work >= TARGET)])
    return table(["workload", "two threads", "two processes", "at least %s" % TARGET], rows)
