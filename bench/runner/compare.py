#!/usr/bin/env python3
"""Runs our workloads beside those of other languages and prints what each takes.

BUILD holds bin/qxworkloads and the peers' programs in peers/; a peer without a program is left out. Every checksum is
compared with what it has to be, and a wrong one ends the run. docs/performance.md tells what is measured and why.
"""
import argparse
import sys
import tempfile
from pathlib import Path

import comparison
import growth
import instructions
import memory
import peers
import report
import threads
from workloads import WORKLOADS

SECTIONS = ("comparison", "threads", "growth", "memory", "instructions")


def names(text):
    return text.split(",")


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path, metavar="BUILD")
    parser.add_argument("--rounds", type=int, default=15, help="how often everything runs (15)")
    parser.add_argument("--only", type=names, metavar="NAME,...", help="some workloads: W1,W4")
    parser.add_argument("--peers", type=names, metavar="NAME,...", help="some peers: lua54,tcl; qxscript always runs")
    parser.add_argument("--sections", type=names, metavar="NAME,...", default=SECTIONS,
                        help="some tables, of " + ", ".join(SECTIONS))
    parser.add_argument("--seconds", type=float, default=0.25, help="how long a run may take; slow ones do less (0.25)")
    parser.add_argument("--quick", action="store_true", help="try everything out, with a little work: checksums count")
    parser.add_argument("--page", metavar="FILE", help="write the tables into this page too")
    options = parser.parse_args()
    if options.page and (options.only or options.peers or options.quick):
        parser.error("a page takes all workloads and all peers")
    if options.quick:
        options.rounds, options.seconds = 1, 0
    return options


def chosen(known, wanted, what):
    if wanted is None:
        return known
    unknown = set(wanted) - {one.name for one in known}
    if unknown:
        sys.exit("no such %s: %s" % (what, ", ".join(sorted(unknown))))
    return [one for one in known if one.name in wanted]


def measured(runner, programs, workloads, options):
    """The tables, by section."""
    ours = programs[0]
    own = [workload for workload in workloads if workload.name in ours.workloads]
    rounds, seconds = options.rounds, options.seconds
    if "comparison" in options.sections:
        figures = comparison.measure(runner, programs, workloads, rounds, seconds)
        yield "comparison", comparison.beside_the_yardstick(figures, own)
        yield "peers", comparison.beside_all(figures, programs, workloads)
    if "threads" in options.sections:
        yield "threads", threads.shown(runner, ours, own, rounds, seconds)
    if "growth" in options.sections:
        yield "growth", growth.shown(runner, ours, own, min(rounds, 5), seconds)
    if "memory" in options.sections:
        yield "memory", memory.shown(runner, ours)
    if "instructions" in options.sections:
        counted = [peer for peer in programs if peer.name in (peers.OURS, peers.YARDSTICK)]
        yield "instructions", instructions.shown(runner, counted, own)


def main():
    options = arguments()
    wanted = options.peers and options.peers + [peers.OURS]
    programs = [peer for peer in chosen(peers.known_peers(options.build), wanted, "peer") if peer.is_built()]
    if not programs or programs[0].name != peers.OURS:
        sys.exit("there is no qxworkloads in %s" % options.build)
    workloads = chosen(WORKLOADS, options.only, "workload")
    with tempfile.TemporaryDirectory() as folder:
        for section, table in measured(peers.Runner(folder), programs, workloads, options):
            print(table, flush=True)
            if options.page:
                report.put(options.page, section, table)


if __name__ == "__main__":
    main()
