# SPDX-License-Identifier: GPL-3.0-or-later
"""Passes on what `ctest --verbose` prints, as it comes, less its account of commands, variables and
what passed. Before the summary it counts the cases of all programs and lists the further tries."""

import re
import signal
import sys

# Lines of ctest that tell a reader nothing, and the same of a test, behind its number.
ABOUT_ITSELF = re.compile(
    r"(Internal ctest changing|UpdateCTestConfiguration|Constructing a list|Done constructing|"
    r"Updating test list|Added \d+ tests to meet|Checking test dependency|test \d+$|$)")
ABOUT_A_TEST = re.compile(
    r"(Test command: |Working Directory: |Test timeout computed to be: |"
    r"Environment variable(s| modifications): *$| [A-Za-z_]+=)")
SUMMARY = re.compile(r"\d+% tests passed")


def main():
    names = {}
    totals = {"passed": 0, "failed": 0, "skipped": 0}
    further_tries = []
    in_list = in_summary = False
    for raw in sys.stdin.buffer:
        line = raw.decode("utf-8", "surrogateescape").rstrip("\r\n")
        if start := re.match(r" +Start +(\d+): (.+)", line):
            names[start.group(1)] = start.group(2)
        if said := re.match(r"(\d+): ?(.*)", line):
            name, text = names.get(said.group(1), said.group(1)), said.group(2)
            if ABOUT_A_TEST.match(text):
                continue
            # The lines of the runner of cases are indented.
            if cases := re.match(r" {4}cases: (.+)", text):
                for count, outcome in re.findall(r"(\d+) (\w+)", cases.group(1)):
                    totals[outcome] += int(count)
            elif again := re.match(r" {4}(\w+) try of (.+)", text):
                further_tries.append(f"    {name}: {again.group(2)} ({again.group(1)} try)")
            elif text.startswith("    not measured: "):
                further_tries.append(f"    {name}: {text.strip()}")
            line = f"{name}: {text.strip() if text.startswith('    ') else text}"
        elif SUMMARY.match(line):
            in_list, in_summary = False, True
            print("\nCases: " + ", ".join(f"{count} {key}" for key, count in totals.items()) + ".")
            if further_tries:
                print("Cases that failed and were run again:", *further_tries, sep="\n")
            print()
        elif line == "The following tests passed:":
            in_list = True
        elif not in_summary and ABOUT_ITSELF.match(line):
            continue
        if not in_list:
            print(line, flush=True)


# Ctrl+C ends ctest, and what it says of that is passed on, too.
signal.signal(signal.SIGINT, signal.SIG_IGN)
sys.stdout.reconfigure(errors="surrogateescape")
main()
