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
import peers
from workloads import WORKLOADS


def names(text):
    return text.split(",")


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path, metavar="BUILD")
    parser.add_argument("--rounds", type=int, default=15, help="how often everything runs (15)")
    parser.add_argument("--only", type=names, metavar="NAME,...", help="some workloads: W1,W4")
    parser.add_argument("--peers", type=names, metavar="NAME,...", help="some peers: lua54,tcl; qxscript always runs")
    parser.add_argument("--seconds", type=float, default=0.25, help="how long a run may take; slow ones do less (0.25)")
    return parser.parse_args()


def chosen(known, wanted, what):
    if wanted is None:
        return known
    unknown = set(wanted) - {one.name for one in known}
    if unknown:
        sys.exit("no such %s: %s" % (what, ", ".join(sorted(unknown))))
    return [one for one in known if one.name in wanted]


def main():
    options = arguments()
    wanted = options.peers and options.peers + [peers.OURS]
    programs = [peer for peer in chosen(peers.known_peers(options.build), wanted, "peer") if peer.is_built()]
    workloads = chosen(WORKLOADS, options.only, "workload")
    with tempfile.TemporaryDirectory() as folder:
        runner = peers.Runner(folder)
        figures = comparison.measure(runner, programs, workloads, options.rounds, options.seconds)
        print(comparison.tables(figures, programs, workloads))


if __name__ == "__main__":
    main()
