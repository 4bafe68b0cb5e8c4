"""Where and with what the numbers were measured."""

import os
import platform
import subprocess
from datetime import date
from pathlib import Path

PACKAGES = {"SQLite": "sqlite3", "GMime": "libgmime-3.0-0", "Qt": "libqt6core6",
            "mu": "maildir-utils", "notmuch": "notmuch", "g++": "g++-12", "X server": "xvfb",
            "Dovecot": "dovecot-core"}


def output_of(*command: str) -> str:
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return "none"


def field_of(path: str, name: str) -> str:
    for line in Path(path).read_text().splitlines():
        if line.startswith(name):
            return line.split("=" if "=" in line else ":", 1)[1].strip().strip('"')
    return "unknown"


def revision() -> str:
    folder = str(Path(__file__).parent)
    changed = output_of("git", "-C", folder, "status", "--porcelain", "--untracked-files=no")
    number = output_of("git", "-C", folder, "rev-parse", "--short", "HEAD")
    return number + (" with uncommitted changes" if changed else "")


def describe(facts: dict) -> str:
    memory = int(field_of("/proc/meminfo", "MemTotal").split()[0]) / 1024 / 1024
    versions = ", ".join(
        f"{name} {output_of('dpkg-query', '-W', '-f', '${Version}', package)}"
        for name, package in PACKAGES.items())
    scale = "" if facts["scale"] == 1 else f" Inputs scaled by {facts['scale']}: not comparable."
    return (f"Measured on {date.today()} at revision {revision()}: {os.cpu_count()} cores "
            f"({field_of('/proc/cpuinfo', 'model name')}), {memory:.0f} GB, "
            f"{field_of('/etc/os-release', 'PRETTY_NAME')}, Linux {platform.release()}.{scale}\n"
            f"Versions: {versions}.")
