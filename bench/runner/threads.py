"""How much more two threads do than one, when both run the same function; and two processes, which share nothing but
the machine."""
import statistics

from comparison import fitting_size
from report import number, table, yes

TARGET = 1.9
QUIET = 1.8  # where two processes do less than this, other programs had a part of the machine
TOGETHER = ("W1", "W2", "W4", "W6")
LONG = 1e8  # nanoseconds; in shorter runs it counts that threads do not start at once


def gains(runner, peer, workload, size):
    """How much more two threads did than one, and two processes."""

    def start(name):
        command = runner.command(peer, workload, size)
        command[command.index(workload.name)] = name
        return runner.start(peer, command)

    def wall(started):
        return runner.times(started, workload.checksum(size))[0]

    one = wall(start(workload.name))
    threads = wall(start(workload.name + "x2"))
    processes = [start(workload.name), start(workload.name)]
    return 2 * one / threads, 2 * one / statistics.mean([wall(process) for process in processes])


def shown(runner, peer, workloads, rounds, seconds):
    rows = []
    for workload in workloads:
        if workload.name not in TOGETHER:
            continue
        size = fitting_size(workload, seconds, lambda n: runner.time(peer, workload, n))
        while runner.time(peer, workload, size) < LONG:
            size *= 2
        measured = [gains(runner, peer, workload, size) for _ in range(rounds)]
        quiet = [gain for gain in measured if gain[1] >= QUIET]
        threads, processes = map(statistics.median, zip(*(quiet or measured)))
        verdict = yes(threads >= TARGET) if quiet else "busy"
        rows.append([workload.name, number(threads), number(processes), str(len(quiet)), verdict])
    return table(["workload", "two threads", "two processes", "quiet rounds", "at least %s" % TARGET], rows)
