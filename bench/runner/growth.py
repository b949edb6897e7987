"""What four times the work takes, as a multiple: about four, unless something is looked through again and again."""
from comparison import fitting_size
from report import number, table, yes

LIMIT = 4.4


def growth(runner, peer, workload, rounds, seconds):
    def time(size):
        return runner.time(peer, workload, size, functions=size)

    large = fitting_size(workload, seconds, time)
    small = workload.quarter(large)
    # The fastest run is the one that nothing disturbed; large and small ones take turns.
    times = [(time(large), time(small)) for _ in range(rounds)]
    fastest_large, fastest_small = map(min, zip(*times))
    return 4 * (fastest_large / workload.iterations(large)) / (fastest_small / workload.iterations(small))


def shown(runner, peer, workloads, rounds, seconds):
    rows = []
    for workload in workloads:
        if workload.name in peer.workloads:
            found = growth(runner, peer, workload, rounds, seconds)
            rows.append([workload.name, number(found), yes(found <= LIMIT)])
    return table(["workload", "growth", "at most %s" % LIMIT], rows)
