#!/usr/bin/env python3
"""Runs the benches and prints their medians as ratios to the virtual call of the same run.

usage: ratios.py PROGRAM [--page FILE] [ARG...]

With --page the table in FILE between its two marks is replaced. Further arguments go to the benchmark program.
"""
import json
import re
import subprocess
import sys

import report

YARDSTICK = "yardstick/virtual call"
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def run(program, arguments):
    arguments = [
        "--benchmark_repetitions=9",
        "--benchmark_min_time=0.05",
        "--benchmark_enable_random_interleaving=true",
        "--benchmark_report_aggregates_only=true",
    ] + [
        argument + "|" + YARDSTICK if argument.startswith("--benchmark_filter=") else argument
        for argument in arguments
    ]
    out = subprocess.run(
        [program, "--benchmark_format=json"] + arguments, stdout=subprocess.PIPE, check=True
    ).stdout
    return json.loads(out)["benchmarks"]


def aggregate(results, name):
    return {r["run_name"]: r for r in results if r.get("aggregate_name") == name}


def table(results):
    failed = [r["name"] for r in results if r.get("error_occurred")]
    if failed:
        sys.exit("failed: " + ", ".join(failed))
    medians, spreads = aggregate(results, "median"), aggregate(results, "cv")

    # Processor time per iteration of a thread: on a busy machine it tells what wall time cannot.
    def nanoseconds(r):
        return r["cpu_time"] * NANOSECONDS[r["time_unit"]]

    unit = nanoseconds(medians[YARDSTICK])
    rows = []
    for name, median in sorted(medians.items()):
        if name == YARDSTICK:
            continue
        # The library's own marks for threads and measured time are of no use to a reader.
        shown = re.sub(r"/threads:1$", "", name).replace("/threads:2", ", on each of 2 threads")
        shown = re.sub(r"/(\d+)$", r": \1", shown)
        speed = median.get("bytes_per_second")
        rows.append(
            [
                shown,
                "{:,.0f}".format(nanoseconds(median) / unit),
                "%.0f%%" % (spreads[name]["cpu_time"] * 100),
                "%.1f" % (speed / 1e6) if speed else "",
            ]
        )
    return "One virtual call took %.2f ns.\n\n" % unit + report.table(
        ["bench", "virtual calls", "spread", "MB/s"], rows
    )


def main():
    arguments = sys.argv[1:]
    if not arguments:
        sys.exit(__doc__)
    program, page = arguments.pop(0), None
    if arguments[:1] == ["--page"]:
        page = arguments[1]
        arguments = arguments[2:]
    text = table(run(program, arguments))
    print(text, end="")
    if page:
        report.put(page, "ratios", text)


if __name__ == "__main__":
    main()
