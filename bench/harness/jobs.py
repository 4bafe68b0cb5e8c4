"""One run of one contestant: made ready in a folder of its own, timed as a whole process."""

import json
import os
import shutil
import signal
import subprocess
import time
from dataclasses import dataclass, field
from pathlib import Path

# A run beside other work does not count: more than 15 % of a core used by others, or 80 % in runs
# that are so long that they cannot wait for a quiet machine. Clock ticks blur short runs.
FOREIGN_SHARE = 0.15
FOREIGN_SHARE_LONG = 0.80
LONG = 8.0  # seconds
TICKS = 0.05  # seconds
OUTPUT, ERRORS = "output.txt", "errors.txt"
PATIENCE = 600  # seconds until a run counts as hanging
CPU_FIELDS = (0, 1, 2, 5, 6, 7)  # of /proc/stat: all but idle and waiting for the disk


class Failed(Exception):
    """A contestant did not do its work."""


@dataclass
class Job:
    """A command that is ready to run."""

    command: list
    env: dict = field(default_factory=dict)
    stdin: Path = Path("/dev/null")
    own_report: Path | None = None  # where the program reports the seconds that count


@dataclass
class Cost:
    """What one run took: seconds that count, peak memory in kB, whether others were busy."""

    seconds: float
    rss_kb: int
    noisy: bool


class Machine:
    """Runs jobs, one at a time, and sees what else the machine is doing."""

    def __init__(self, timed: Path, servers=()):
        self._timed = timed
        self._servers = list(servers)  # processes that work for the job: the X server
        self.groups = []  # process groups that do: mail servers
        self._tick = os.sysconf("SC_CLK_TCK")

    def run(self, job: Job, folder: Path) -> Cost:
        report, log = folder / "timed.json", folder / ERRORS
        command = [self._timed, report, *job.command]
        os.sync()
        busy = self._busy()
        start = time.monotonic()
        run_to_end([str(part) for part in command], job, folder)
        wall = time.monotonic() - start
        costs = read_report(report, log)
        foreign = self._busy() - busy - costs["cpu"]
        own = read_report(job.own_report, log) if job.own_report else costs
        return Cost(own["seconds"], costs["rss_kb"], foreign > allowed_foreign(wall))

    def _busy(self) -> float:
        """Seconds of work on all cores so far, without that of the servers."""
        numbers = Path("/proc/stat").read_text().split("\n", 1)[0].split()[1:]
        ticks = sum(int(numbers[place]) for place in CPU_FIELDS)
        used = sum(self._used(numbers_of(pid)[11:13]) for pid in self._servers)
        return ticks / self._tick - used - self._used_by_groups()

    def _used_by_groups(self) -> float:
        """That of the children that have ended is in their leader's numbers."""
        if not self.groups:
            return 0
        members = [numbers for stat in Path("/proc").glob("[0-9]*/stat")
                   if (numbers := numbers_of(int(stat.parent.name))) and
                   int(numbers[2]) in self.groups]
        return sum(self._used(numbers[11:15]) for numbers in members)

    def _used(self, ticks: list) -> float:
        return sum(map(int, ticks)) / self._tick


def numbers_of(pid: int) -> list:
    """What the system tells of a process, from its state on; nothing when it has ended."""
    try:
        return Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    except OSError:
        return []


def run_to_end(command: list, job: Job, folder: Path):
    with (open(job.stdin, "rb") as stdin, open(folder / OUTPUT, "wb") as output,
          open(folder / ERRORS, "wb") as errors):
        process = subprocess.Popen(command, env={**os.environ, **job.env}, stdin=stdin,
                                   stdout=output, stderr=errors, cwd=folder,
                                   start_new_session=True)
        try:
            process.wait(PATIENCE)
        except BaseException:  # too long, or the person at the keyboard has had enough
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            raise


def allowed_foreign(wall: float) -> float:
    share = FOREIGN_SHARE_LONG if wall > LONG else FOREIGN_SHARE
    return share * wall + TICKS


def read_report(report: Path, log: Path) -> dict:
    try:
        costs = json.loads(report.read_text())
    except OSError:
        costs = {"exit": "no report"}
    if costs.get("exit", 0) != 0:
        said = log.read_text(errors="replace")[-1000:].strip()
        raise Failed(f"exit code {costs['exit']}: {said}")
    return costs


def product_home(folder: Path, database: Path, mail: Path | None = None,
                 batch_log: Path | None = None) -> dict:
    """A home in which the program has been used before; the environment that points there."""
    data, config, runtime = folder / "data/Ostrix", folder / "config/Pendral", folder / "runtime"
    for needed in (data, config, runtime):
        needed.mkdir(parents=True)
    runtime.chmod(0o700)
    shutil.copyfile(database, data / "Ostrix.mdb")
    if batch_log:
        shutil.copyfile(batch_log, data / "system.log")
    (config / "eAPP.ini").write_text("log file=c:\\\\Ostrix\\\\log.log\n"
                                     "Database=C:\\\\Ostrix\\\\Ostrix.mdb\n"
                                     "WarningMessages=1\n")
    return {"HOME": str(folder), "XDG_DATA_HOME": str(folder / "data"),
            "XDG_CONFIG_HOME": str(folder / "config"), "XDG_CACHE_HOME": str(folder / "cache"),
            "XDG_RUNTIME_DIR": str(runtime), "MAIL": str(mail or folder / "no-mail"),
            "QT_QPA_PLATFORM": "offscreen", "QT_QPA_PLATFORMTHEME": "none"}


def product_database(folder: Path) -> Path:
    return folder / "data/Ostrix/Ostrix.mdb"
