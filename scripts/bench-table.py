# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the JSON results of benchmarks as tables: bench-table.py FILE..."""

import json
import pathlib
import sys

# What Google Benchmark writes about every benchmark; the rest are counters of our own.
COMMON_FIELDS = {
    "name", "run_name", "run_type", "family_index", "per_family_instance_index", "repetitions",
    "repetition_index", "threads", "iterations", "real_time", "cpu_time", "time_unit",
    "aggregate_name", "aggregate_unit", "label", "error_occurred", "error_message",
    "items_per_second", "bytes_per_second",
}


def number(value):
    return f"{value:.3g}" if abs(value) < 1000 else f"{value:,.0f}"


def duration(value, unit):
    nanoseconds = value * {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[unit]
    for name, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{number(nanoseconds / size)} {name}"
    return f"{number(nanoseconds)} ns"


def row_of_contest(record):
    unit = record["unit"]
    return [record["name"], f"{number(record['ours'])} {unit}",
            f"{number(record['yardstick'])} {unit}", number(record["ratio"]), record["against"]]


def row_of_benchmark(record):
    counters = [f"{key.replace('_', ' ')}: {number(value)}" for key, value in record.items()
                if key not in COMMON_FIELDS]
    return [record["name"], duration(record["real_time"], record["time_unit"]),
            ", ".join(counters)]


def print_table(heads, rows):
    widths = [max(len(row[i]) for row in [heads, *rows]) for i in range(len(heads))]
    for row in [heads, ["-" * width for width in widths], *rows]:
        print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())


def main(paths):
    for path in map(pathlib.Path, paths):
        records = json.loads(path.read_text())["benchmarks"]
        print(f"\n{path.stem}")
        if records and "ours" in records[0]:
            print_table(["what", "this player", "yardstick", "ratio", "against"],
                        [row_of_contest(record) for record in records])
        else:
            print_table(["what", "time", "ratios and counters"],
                        [row_of_benchmark(record) for record in records])


main(sys.argv[1:])
