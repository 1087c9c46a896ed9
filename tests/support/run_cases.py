# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs a program of GoogleTest cases: all in one process, and each that failed once more.

run_cases.py [--limit SECONDS] [--show-all] [--moments] [--behind] [--machine FILE]
             [--filter FILTER] PROGRAM

A case that crashes the program, or has not ended within the limit, fails by its name, and a new
process goes on with the cases behind it. A failed case gets a second try, alone in a process, and
up to three more while the machine stalls, for then the failure says little about the program. Each
waits a while for the machine to be calm. All programs of tests that are given the same FILE share
the machine; further tries have it alone. Where the cases measure moments, one that failed each try
on a machine that stood still for as long as the sound lasts that waits was not measured: it counts
as skipped. Cases that only compute may stay behind all others: they take what time of the processors
is left, and so share the machine even with one that has it alone, but in their further tries.
Nothing of that is hidden: a failure is printed where it happens, and every further try is told.
The variable LANTERN_CASES holds a filter of GoogleTest, too: only cases that fit both are run.
"""

import argparse
import contextlib
import fcntl
import os
import pathlib
import re
import selectors
import signal
import subprocess
import sys
import threading
import time

MOST_SECOND_TRIES = 12  # more failures than this have a cause other than chance
TRIES = ("second", "third", "fourth", "fifth")  # those behind the second: after a stall
LONGEST_ALONE = 600.0  # seconds: then the machine goes on to those who wait for it
LONGEST_RETRIED = 60.0  # seconds: a case that takes longer has its own answer to a stall
STALL_SECONDS = 0.02  # of the fifty milliseconds between a player and the ear
GAP_SECONDS = 0.05  # a stall that leaves no sound for the ear: moments can't be measured then
MUCH_STALLED = 0.02  # of a program's time: most cases that measure moments may be spoiled
CALM_SECONDS = 0.5  # without a stall
LONGEST_WAIT = 10.0  # seconds, for the machine to be calm
SLEEP_SECONDS = 0.001
MOST_WATCHED = 8  # watching more would itself load the machine
MOST_ENDS = 5  # after so many crashes and hangs the program is given up
SLOW_SECONDS = 2.0  # a case that takes longer is shown
CASES = "LANTERN_CASES"
BEHIND = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "behind"

RUN = re.compile(r"\[ RUN      \] (\S+)$")
END = re.compile(r"\[(       OK |  FAILED  |  SKIPPED )\] (\S+?)(?:,? .*)?$")
ALL_RAN = re.compile(r"^\[==========\] (\d+) tests? from \d+ test suites? ran\.")
MARKS = {"OK": "passed", "FAILED": "FAILED", "SKIPPED": "skipped"}


def say(*lines):
    # Names and failures may hold any bytes.
    sys.stdout.buffer.write(("\n".join(lines) + "\n").encode("utf-8", "surrogateescape"))
    sys.stdout.buffer.flush()


class Machine:
    """What programs of tests share, and one that wants it alone waits for."""

    def __init__(self, path):
        self.path = path

    def shared(self):
        return self.held(fcntl.LOCK_SH)

    def alone(self):
        return self.held(fcntl.LOCK_EX)

    @contextlib.contextmanager
    def held(self, how):
        if self.path is None:
            yield
            return
        with open(self.path, "a") as machine:
            # Whoever waits for the machine is at its door, so that those behind don't overtake.
            with open(self.path + ".door", "a") as door:
                fcntl.flock(door, how)
                fcntl.flock(machine, how)
            yield


class StallWatch:
    """Whether a processor kept a thread that asked for a moment's sleep waiting far longer."""

    def __enter__(self):
        self.still = {}  # seconds, of each processor that stalled
        self.longest = 0.0  # of its stalls, in seconds
        self.since = time.monotonic()
        self.over = threading.Event()
        self.threads = [threading.Thread(target=self.watch, args=(processor,))
                        for processor in sorted(os.sched_getaffinity(0))[:MOST_WATCHED]]
        for thread in self.threads:
            thread.start()
        return self

    def __exit__(self, *_):
        self.over.set()
        for thread in self.threads:
            thread.join()
        self.seconds = time.monotonic() - self.since

    @property
    def stalled(self):
        return bool(self.still)

    @property
    def share(self):
        """Of the watched time, what the processor that stalled most stood still."""
        return max(self.still.values(), default=0.0) / self.seconds

    def watch(self, processor):
        os.sched_setaffinity(threading.get_native_id(), {processor})
        while not self.over.is_set():
            before = time.monotonic()
            time.sleep(SLEEP_SECONDS)
            length = time.monotonic() - before
            if length > STALL_SECONDS:
                self.still[processor] = self.still.get(processor, 0.0) + length
                self.longest = max(self.longest, length)


def await_calm():
    until = time.monotonic() + LONGEST_WAIT
    while time.monotonic() < until:
        with StallWatch() as watch:
            time.sleep(CALM_SECONDS)
        if not watch.stalled:
            break


class Run:
    """One process of the program. `ended(case, mark, seconds, output)` hears of each case."""

    def __init__(self, program, case_filter, limit, ended, before=()):
        self.limit = limit
        self.ended = ended
        self.outcome = {}  # of each case, in order
        self.case = None  # the one that runs now
        self.output = []  # of that case, or of what stands between two
        self.count = None  # of the cases, as the program says at its end
        self.crashed = False  # in a case: there may be more behind it
        self.trouble = None  # what went wrong outside of the cases
        # Killed with its whole group at a hang, and by the kernel should this script go. It stays
        # in the session: the kernel may give each of those the same time, whatever is behind.
        self.process = subprocess.Popen(
            [*before, "setpriv", "--pdeathsig", "KILL", program, "--gtest_color=no",
             "--gtest_filter=" + case_filter],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            process_group=0)
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
        self.machine = Machine(options.machine)
        self.outcome = {}
        self.trouble = []

    def run(self):
        shared = contextlib.nullcontext() if self.options.behind else self.machine.shared()
        with shared, StallWatch() as watch:
            self.run_all()
        self.try_again(MOST_SECOND_TRIES if watch.share < MUCH_STALLED else len(self.outcome))
        self.sum_up()

    def run_all(self):
        ends = 0
        before = [BEHIND] if self.options.behind else []
        while True:
            run = Run(self.options.program, self.filter(), self.options.limit, self.show, before)
            self.outcome |= run.outcome
            if run.trouble:
                self.trouble.append(run.trouble)
            if not run.crashed:
                break
            ends += 1
            if ends == MOST_ENDS:
                self.trouble.append(f"{ends} cases crashed or hung: those behind them did not run")
                break

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

    def try_again(self, most):
        failed = [case for case, mark in self.outcome.items() if mark == "FAILED"]
        if len(failed) > most:
            say(f"    {len(failed)} cases failed: they get no second try")
            return
        if not failed:
            return
        with self.machine.alone():
            until = time.monotonic() + LONGEST_ALONE
            for case in failed:
                stalls = []  # the longest of each further try
                for which in TRIES:
                    if not self.try_case(case, which, stalls) or time.monotonic() > until:
                        break
                else:
                    if self.options.moments and min(stalls) >= GAP_SECONDS:
                        say(f"    not measured: {case}, as the machine stood still for "
                            f"{min(stalls) * 1000:.0f} ms or more in each further try")
                        self.outcome[case] = "skipped"

    def try_case(self, case, which, stalls):
        """Once more. True if the machine spoiled this try."""
        await_calm()
        told = []
        with StallWatch() as watch:
            start = time.monotonic()
            run = Run(self.options.program, case, self.options.limit,
                      lambda *arguments: told.extend(arguments[3]))
            seconds = time.monotonic() - start
        stalls.append(watch.longest)
        outcome = run.outcome.get(case)
        if outcome in ("passed", "skipped") and run.trouble is None:
            say(f"    {which} try of {case}: {outcome}", *(told if outcome == "skipped" else ()))
            self.outcome[case] = outcome
            return False
        stalled = ", and the machine stalled" if watch.stalled else ""
        say(f"    {which} try of {case}: FAILED{stalled}", *told)
        return watch.stalled and not run.crashed and seconds < LONGEST_RETRIED

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
    parser.add_argument("--moments", action="store_true")
    parser.add_argument("--behind", action="store_true")
    parser.add_argument("--machine", metavar="FILE")
    parser.add_argument("--filter", default="*")
    parser.add_argument("program")
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    suite = Suite(parser.parse_args())
    suite.run()
    sys.exit(0 if suite.is_good else 1)


main()
