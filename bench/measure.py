"""Runs the contests and prints the tables. Started by bench/run, which builds and prepares."""

import argparse
import json
import shutil
import sqlite3
import subprocess
import sys
from pathlib import Path

from harness.contests import IMPORT_FILE, Programs, all_contests
from harness.jobs import Failed, Machine
from harness.machine import describe
from harness.report import Result, costs_table, targets_table

TRIES, SLOW_TRIES = 3, 2  # a noisy run is repeated until so many tries have been made
BEGIN, END = "<!-- measured: begin -->", "<!-- measured: end -->"


class Measurement:
    """All contests, run in rounds so that the contestants alternate."""

    def __init__(self, machine: Machine, scratch: Path, runs: int, slow_runs: int, repeat: bool):
        self._machine, self._scratch = machine, scratch
        self._runs, self._slow_runs, self._repeat = runs, slow_runs, repeat
        self.results = {}

    def hold(self, contest):
        with contest.servers as servers:
            self._machine.groups = servers.groups if servers else []
            self._hold(contest)

    def _hold(self, contest):
        for path in contest.files:
            read_all(path)
        for contestant in contest.contestants:
            there = contestant.is_there()
            self.results[contest.name, contestant.name] = Result([], "" if there else "not there")
        if contest.warm_up:
            self._round(contest, 0)
            for contestant in contest.contestants:
                self.results[contest.name, contestant.name].forget_runs()
        for turn in range(self._runs):
            self._round(contest, turn)
        self._compare_outcomes(contest)

    def _round(self, contest, turn: int):
        for contestant in contest.contestants:
            self._take_turn(contest, contestant, turn)

    def _take_turn(self, contest, contestant, turn: int):
        result = self.results[contest.name, contestant.name]
        runs = min(contestant.most_runs, self._slow_runs if contestant.slow else self._runs)
        if result.trouble or turn >= runs:
            return
        say(f"{contest.title}: {contestant.name}, run {turn + 1}")
        try:
            result.costs.append(self._quiet_run(contestant, result))
        except (Failed, subprocess.SubprocessError, sqlite3.Error, OSError, ValueError) as error:
            result.costs.clear()
            result.trouble = f"failed: {error}".replace("\n", " ")
            say(f"  {result.trouble}")

    def _quiet_run(self, contestant, result: Result):
        tries = 1 if not self._repeat else SLOW_TRIES if contestant.slow else TRIES
        tries = min(tries, contestant.most_runs)
        for left in reversed(range(tries)):
            cost, outcome = self._run_once(contestant)
            if result.outcome is not None and outcome != result.outcome:
                raise Failed(f"left {outcome}, then {result.outcome}")
            result.outcome = outcome
            if contestant.traffic:
                result.traffic.append(contestant.traffic(self._scratch))
            if not cost.noisy or left == 0:
                return cost
        raise AssertionError("at least one try is made")

    def _run_once(self, contestant):
        shutil.rmtree(self._scratch, ignore_errors=True)
        self._scratch.mkdir(parents=True)
        cost = self._machine.run(contestant.prepare(self._scratch), self._scratch)
        return cost, contestant.outcome(self._scratch)

    def _compare_outcomes(self, contest):
        """Who left something else behind than is right, or than the contestant to go by, has not
        done the work."""
        right = contest.right or self.results[contest.name, contest.truth].outcome
        for contestant in contest.contestants:
            result = self.results[contest.name, contestant.name]
            if result.costs and result.outcome != right:
                result.costs.clear()
                result.trouble = f"wrong result: {result.outcome}, right is {right}"
                say(f"{contest.title}: {contestant.name}: {result.trouble}")


def say(text: str):
    print(text, file=sys.stderr, flush=True)


def read_all(path: Path):
    files = [path] if path.is_file() else (f for f in path.rglob("*") if f.is_file())
    for file in files:
        file.read_bytes()


def write_into(readme: Path, text: str):
    before, rest = readme.read_text().split(BEGIN)
    after = rest.split(END)[1]
    readme.write_text(f"{before}{BEGIN}\n{text}\n{END}{after}")


def arguments():
    parser = argparse.ArgumentParser(prog="bench/run", description=__doc__)
    parser.add_argument("--build", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--inputs", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--scratch", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--display-server", type=int, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--runs", type=int)
    parser.add_argument("--slow-runs", type=int)
    parser.add_argument("--only", default="", help="contests whose name starts so")
    parser.add_argument("--write-readme", action="store_true")
    return parser.parse_args()


def main() -> int:
    args = arguments()
    facts = json.loads((args.inputs / "facts.json").read_text())
    programs = Programs(args.build, args.inputs, facts)
    contests = [contest for contest in all_contests(programs, args.quick)
                if contest.name.startswith(args.only)]
    machine = Machine(Path(programs.bench("timed")), [args.display_server])
    runs = args.runs or (1 if args.quick else 5)
    measurement = Measurement(machine, args.scratch, runs, args.slow_runs or min(runs, 3),
                              repeat=not args.quick)
    for contest in contests:
        measurement.hold(contest)
    shutil.rmtree(args.scratch, ignore_errors=True)
    results = measurement.results
    text = "\n\n".join([describe(facts), costs_table(contests, results),
                        targets_table(contests, results, facts["messages"],
                                      (args.inputs / IMPORT_FILE).stat().st_size)])
    print(text)
    if args.write_readme:
        write_into(Path(__file__).parent / "README.md", text)
    return 0 if all(result.costs for result in results.values()) else 1


if __name__ == "__main__":
    sys.exit(main())
