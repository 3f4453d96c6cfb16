#!/usr/bin/env python3
"""Runs the benchmark program and prints its figures as one table; see scripts/bench.

json-c seeds its hash once per process, and times drift with the machine. So a ratio is taken
inside each process, between cases that ran interleaved, and the table has the median over the
processes, with the quartiles as its spread.
"""
import argparse
import glob
import json
import os
import re
import statistics
import subprocess
import sys
import tempfile

import plots

# What hearth aims at, per row: the ratio of times to the floor, of instructions, and instructions.
AIMS = {
    "read7": (1.4, 1.5, None),
    "read2": (1.4, 1.5, None),
    "write7": (1.5, None, None),
    "create4": (1.15, None, None),
    "find1m": (1.05, None, None),
    "copy20k": (1.05, None, None),
    "lock": (1.6, None, None),
    "load20k": (1.0, None, None),
    "load1m": (1.0, None, None),
    "save20k": (1.05, None, None),
    "save1m": (1.05, None, None),
    "change": (1.1, None, None),
    "exact_int": (1.1, None, None),
    "exact_text": (1.1, None, None),
    "login100": (1.05, None, None),
    "logline": (1.2, None, None),
    "filtered_inside": (None, None, 10),
    "filtered_outside": (None, None, 45),
    "validate_parsed": (1.12, None, None),
    "validate_ready": (3.5, None, None),
}
REFERENCES = ("floor", "off")  # the way that the others of its row are divided by


def environment(folder, **more):
    return {**os.environ, "TMPDIR": folder, **more}


def time_once(program, wanted, folder):
    """One process: the median time in ns of each case."""
    out = os.path.join(folder, "times.json")
    subprocess.run(
        [program, f"--benchmark_filter={wanted}", "--benchmark_repetitions=3",
         "--benchmark_min_time=0.02", "--benchmark_enable_random_interleaving=true",
         "--benchmark_out_format=json", f"--benchmark_out={out}"],
        check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=environment(folder))
    times = {}
    with open(out) as file:
        for run in json.load(file)["benchmarks"]:
            if run["run_type"] == "iteration":
                name = run["name"].split("/real_time")[0]
                times.setdefault(name, []).append(run["real_time"])
    return {name: statistics.median(runs) for name, runs in times.items()}


def count_once(program, wanted, folder):
    """One process under callgrind: the instructions of one operation of each case."""
    out = os.path.join(folder, "counts")
    subprocess.run(
        ["valgrind", "--tool=callgrind", "--collect-atstart=no", f"--callgrind-out-file={out}",
         program],
        check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        env=environment(folder, HEARTH_BENCH_COUNT=wanted))
    counts = {}
    for path in sorted(glob.glob(out + ".*"), key=lambda path: int(path.rsplit(".", 1)[1])):
        with open(path) as file:
            text = file.read()
        os.unlink(path)
        trigger = re.search(r"^desc: Trigger: Client Request: (\S+) (\d+)$", text, re.M)
        total = re.search(r"^totals: (\d+)$", text, re.M)
        if trigger and total:
            counts[trigger[1]] = int(total[1]) / int(trigger[2])
    return counts


def reference_of(name, figures):
    row = name.split("/")[0]
    return next((f"{row}/{way}" for way in REFERENCES if f"{row}/{way}" in figures), None)


def names_in_order(program):
    listed = subprocess.run([program, "--benchmark_list_tests=true"], check=True, text=True,
                            stdout=subprocess.PIPE).stdout
    return [line.split("/real_time")[0] for line in listed.splitlines()]


def summarize(names, runs):
    """Per case, the median figure, and the median and quartiles of its ratio."""
    summary = {}
    for name in filter(runs[0].__contains__, names):
        figures = [run[name] for run in runs if name in run]
        entry = {"figure": statistics.median(figures)}
        reference = reference_of(name, runs[0])
        if reference not in (None, name):
            ratios = sorted(run[name] / run[reference] for run in runs if name in run)
            entry["ratio"] = statistics.median(ratios)
            entry["low"] = ratios[len(ratios) // 4]
            entry["high"] = ratios[-1 - len(ratios) // 4]
        summary[name] = entry
    return summary


def readable(figure, is_count):
    if is_count:
        return f"{figure:,.0f}"
    for unit, size in (("ms", 1e6), ("us", 1e3)):
        if figure >= size:
            return f"{figure / size:.3g} {unit}"
    return f"{figure:.3g} ns"


def aim_of(name, is_count):
    row, way = name.split("/")
    if way != "hearth" or row not in AIMS:
        return ""
    times, ratio, instructions = AIMS[row]
    if is_count:
        return f"{instructions} instr." if instructions else str(ratio or "")
    return str(times or "")


def print_table(summary, is_count):
    print("| work | way | " + ("instructions" if is_count else "time") + " | ratio | spread | aim |")
    print("|---|---|---:|---:|---|---|")
    for name, entry in summary.items():
        row, way = name.split("/")
        ratio = f"{entry['ratio']:.2f}" if "ratio" in entry else ""
        spread = f"{entry['low']:.2f} - {entry['high']:.2f}" if "ratio" in entry else ""
        print(f"| {row} | {way} | {readable(entry['figure'], is_count)} | {ratio} | {spread} "
              f"| {aim_of(name, is_count)} |")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--instructions", action="store_true")
    parser.add_argument("--plots", action="store_true")
    parser.add_argument("--filter", default="^[^.]*$")
    parser.add_argument("--json")
    parser.add_argument("--processes", type=int)
    options = parser.parse_args()
    wanted = r"^growth\." if options.plots else options.filter
    is_counting = options.instructions or options.plots
    measure = count_once if is_counting else time_once
    processes = options.processes or (1 if options.plots else 3 if is_counting else 7)
    with tempfile.TemporaryDirectory() as folder:
        runs = []
        for process in range(processes):
            print(f"process {process + 1} of {processes}", file=sys.stderr)
            runs.append(measure(options.program, wanted, folder))
    summary = summarize(names_in_order(options.program), runs)
    if options.plots:
        plots.draw(summary, "docs/plots")
    else:
        print_table(summary, options.instructions)
    if options.json:
        with open(options.json, "w") as file:
            json.dump(summary, file, indent=1)


if __name__ == "__main__":
    main()
