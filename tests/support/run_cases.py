# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs a program of GoogleTest cases: all in one process, and each that failed once more.

run_cases.py [--limit SECONDS] [--show-all] [--filter FILTER] PROGRAM

A case that crashes the program, or has not ended within the limit, fails by its name, and a new
process goes on with the cases behind it. A failed case gets a second try, alone in a process.
Nothing of that is hidden: a failure is printed where it happens, and every second try is told.
The variable LANTERN_CASES holds a filter of GoogleTest, too: only cases that fit both are run.
"""

import argparse
import os
import re
import selectors
import signal
import subprocess
import sys
import time

MOST_SECOND_TRIES = 12  # more failures than this have a cause other than chance
MOST_ENDS = 5  # after so many crashes and hangs the program is given up
SLOW_SECONDS = 2.0  # a case that takes longer is shown
CASES = "LANTERN_CASES"

RUN = re.compile(r"\[ RUN      \] (\S+)$")
END = re.compile(r"\[(       OK |  FAILED  |  SKIPPED )\] (\S+?)(?:,? .*)?$")
ALL_RAN = re.compile(r"^\[==========\] (\d+) tests? from \d+ test suites? ran\.")
MARKS = {"OK": "passed", "FAILED": "FAILED", "SKIPPED": "skipped"}


def say(*lines):
    # Names and failures may hold any bytes.
    sys.stdout.buffer.write(("\n".join(lines) + "\n").encode("utf-8", "surrogateescape"))
    sys.stdout.buffer.flush()


class Run:
    """One process of the program. `ended(case, mark, seconds, output)` hears of each case."""

    def __init__(self, program, case_filter, limit, ended):
        self.limit = limit
        self.ended = ended
        self.outcome = {}  # of each case, in order
        self.case = None  # the one that runs now
        self.output = []  # of that case, or of what stands between two
        self.count = None  # of the cases, as the program says at its end
        self.crashed = False  # in a case: there may be more behind it
        self.trouble = None  # what went wrong outside of the cases
        # Killed with its whole session at a hang, and by the kernel should this script go.
        self.process = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", program, "--gtest_color=no",
             "--gtest_filter=" + case_filter],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            start_new_session=True)
        if self.follow():
            self.judge(self.process.wait())
        else:
            self.kill()
            self.fail(f"did not end within {self.limit:g} seconds")

    def follow(self):
        """Takes lines until the program has ended. False if it is over its time."""
        # Not until the end of the pipe: what the program started may hold that for longer.
        end = os.pidfd_open(self.process.pid)
        pipe = self.process.stdout.fileno()
        os.set_blocking(pipe, False)
        rest = b""
        self.since = time.monotonic()
        with selectors.DefaultSelector() as selector:
            selector.register(pipe, selectors.EVENT_READ)
            selector.register(end, selectors.EVENT_READ)
            is_running = True
            while is_running:
                left = self.since + self.limit - time.monotonic()
                ready = {key.fd for key, _ in selector.select(max(left, 0.0))}
                if not ready:
                    break
                is_running = end not in ready
                while data := self.read(pipe):
                    *lines, rest = (rest + data).split(b"\n")
                    for line in lines:
                        self.take(line.decode("utf-8", "surrogateescape"))
                if is_running and pipe in ready and data == b"":
                    selector.unregister(pipe)
        os.close(end)
        if rest:
            self.take(rest.decode("utf-8", "surrogateescape"))
        return not is_running

    @staticmethod
    def read(pipe):
        try:
            return os.read(pipe, 1 << 16)
        except BlockingIOError:
            return None

    def kill(self):
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()

    def take(self, line):
        started = RUN.search(line)
        ended = END.search(line)
        if self.case is None and started:
            self.case = started.group(1)
            self.since = time.monotonic()
            self.output = []
        elif self.case is not None and ended and ended.group(2) == self.case:
            # What the case wrote last without ending the line stands before the mark.
            self.output.append(line if ended.group(1).strip() == "FAILED" else line[:ended.start()])
            self.end_case(ended.group(1).strip())
        else:
            if all_ran := ALL_RAN.search(line):
                self.count = int(all_ran.group(1))
            self.output.append(line)

    def end_case(self, mark):
        now = time.monotonic()
        self.outcome[self.case] = MARKS[mark]
        self.ended(self.case, MARKS[mark], now - self.since, self.output)
        self.case = None
        self.output = []
        self.since = now

    def fail(self, how):
        if self.case is None:
            self.trouble = "outside of its cases the program " + how
            say("    " + self.trouble, *self.output)
        else:
            self.crashed = True
            self.output.append(f"{self.case} {how}")
            self.end_case("FAILED")

    def judge(self, code):
        how = (f"was ended by {signal.Signals(-code).name}" if code < 0
               else f"ended with the exit code {code}")
        # GoogleTest's own code for failed cases is 1.
        told = 1 if "FAILED" in self.outcome.values() else 0
        if self.case is not None or self.count is None or code != told:
            self.fail(how)


class Suite:
    """All cases of a program, in as many processes as they need."""

    def __init__(self, options):
        self.options = options
        self.outcome = {}
        self.trouble = []
        self.second_passes = 0

    def run(self):
        ends = 0
        while True:
            run = Run(self.options.program, self.filter(), self.options.limit, self.show)
            self.outcome |= run.outcome
            if run.trouble:
                self.trouble.append(run.trouble)
            if not run.crashed:
                break
            ends += 1
            if ends == MOST_ENDS:
                self.trouble.append(f"{ends} cases crashed or hung: those behind them did not run")
                break
        self.try_again()
        self.sum_up()

    def filter(self):
        """The cases asked for, less those that ran."""
        if CASES in os.environ:
            fitting = self.names(self.options.filter) & self.names(os.environ[CASES])
            return ":".join(sorted(fitting - self.outcome.keys())) or "-*"
        wanted, _, unwanted = self.options.filter.partition("-")
        return f"{wanted or '*'}-" + ":".join([*unwanted.split(":"), *self.outcome]).lstrip(":")

    def names(self, case_filter):
        told = subprocess.run([self.options.program, "--gtest_list_tests",
                               "--gtest_filter=" + case_filter],
                              capture_output=True, text=True, timeout=60, check=True).stdout
        names = set()
        for line in told.splitlines():
            name = line.partition("#")[0].rstrip()
            if name.startswith("  "):
                names.add(suite + name.strip())
            elif name.endswith("."):
                suite = name
        return names

    def show(self, case, mark, seconds, output):
        line = f"    {mark} {case} ({seconds:.1f} s)"
        if mark != "passed":
            say(line, *filter(None, output))
        elif self.options.show_all or seconds >= SLOW_SECONDS:
            say(line)

    def try_again(self):
        failed = [case for case, mark in self.outcome.items() if mark == "FAILED"]
        if len(failed) > MOST_SECOND_TRIES:
            say(f"    {len(failed)} cases failed: they get no second try")
            return
        for case in failed:
            told = []
            run = Run(self.options.program, case, self.options.limit,
                      lambda *arguments: told.extend(arguments[3]))
            is_good = run.outcome == {case: "passed"} and run.trouble is None
            say(f"    second try of {case}: {'passed' if is_good else 'FAILED'}",
                *([] if is_good else told))
            if is_good:
                self.outcome[case] = "passed"
                self.second_passes += 1

    def sum_up(self):
        counts = {mark: list(self.outcome.values()).count(mark) for mark in MARKS.values()}
        if not self.outcome and CASES not in os.environ:
            self.trouble.append("no case ran")
        for trouble in self.trouble:
            say("    FAILED: " + trouble)
        say(f"    cases: {counts['passed']} passed, {counts['FAILED']} failed, "
            f"{counts['skipped']} skipped")
        self.is_good = counts["FAILED"] == 0 and not self.trouble


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--limit", type=float, default=120.0)
    parser.add_argument("--show-all", action="store_true")
    parser.add_argument("--filter", default="*")
    parser.add_argument("program")
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    suite = Suite(parser.parse_args())
    suite.run()
    sys.exit(0 if suite.is_good else 1)


main()
