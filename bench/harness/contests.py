"""What is measured beside what: the contests, their contestants and the targets."""

import hashlib
import json
import os
import shutil
import sqlite3
import subprocess
import sys
from contextlib import AbstractContextManager, nullcontext
from dataclasses import dataclass, field
from pathlib import Path
from typing import Callable

from harness.jobs import OUTPUT, Failed, Job, product_database, product_home
from harness.servers import (DELAY_EACH_WAY, InboxServers, MailServers, OutgoingServer, copied,
                             with_attachments)

PRODUCT = "ostrix"
GET_EMAILS, READ_LOG, IMPORT = "Command2", "Command10", "Import"  # what is pressed
SLOW_LINE = f"{2 * DELAY_EACH_WAY} ms"


@dataclass
class Contestant:
    """One way to do the work."""

    name: str
    program: str  # what must be there: a path, or a command of the system
    prepare: Callable[[Path], Job]
    # What the run left behind; every contestant of a contest must leave the same.
    outcome: Callable[[Path], object]
    slow: bool = False
    most_runs: int = sys.maxsize
    # Bytes that came over the line for each byte of the rows that were made of them.
    traffic: Callable[[Path], float] | None = None

    def is_there(self) -> bool:
        return shutil.which(self.program) is not None


@dataclass
class Target:
    """The product's median, at most `limit` times that of another contestant."""

    against: str
    limit: float


@dataclass
class Contest:
    name: str
    title: str
    contestants: list
    truth: str  # the contestant whose outcome is right, where it is not known beforehand
    targets: list
    files: list  # read once before, so that every contestant finds them in memory
    warm_up: bool = False  # one more run each, first, that does not count
    servers: AbstractContextManager = field(default_factory=nullcontext)  # run meanwhile
    messages: int = 0
    least_rate: float = 0  # of the product, in messages a second
    most_traffic: float = 0  # of the product
    most_seconds: float = 0  # of the product
    right: object = None  # what everybody must leave, where it is known beforehand


class Programs:
    """Where the built programs and the inputs lie."""

    def __init__(self, build: Path, inputs: Path, facts: dict):
        self.build, self.inputs, self.facts = build, inputs, facts

    def bench(self, name: str) -> str:
        return str(self.build / "bench" / f"bench_{name}")


def sql(database: Path, query: str) -> list:
    connection = sqlite3.connect(database)
    try:
        return connection.execute(query).fetchall()
    finally:
        connection.close()


# Retrieval ---------------------------------------------------------------------------------------

def retrieval(programs: Programs, kind: str, count: int) -> Contest:
    inbox = programs.inputs / f"{kind}-{count}"
    contestants = [product_retrieval(programs, inbox), gmime_loop(programs, inbox)]
    if kind == "maildir":
        contestants += [mu(inbox, count), notmuch(inbox, count)]
    return Contest(f"retrieval-{kind}-{count}", f"retrieval, {kind}, {count:,} messages",
                   contestants, "GMime loop", [Target("GMime loop", 1.6)], [inbox])


def product_retrieval(programs: Programs, inbox: Path) -> Contestant:
    def prepare(folder: Path) -> Job:
        env = product_home(folder, programs.inputs / "empty.mdb", mail=inbox)
        return Job([programs.bench("press"), GET_EMAILS], env)

    def outcome(folder: Path):
        database = product_database(folder)
        (work,), (master,) = sql(database, "select count(*) from system union all"
                                           " select count(*) from master")
        if work != master:
            raise Failed(f"{work} rows in the work table, {master} in the master list")
        return work

    return Contestant(PRODUCT, programs.bench("press"), prepare, outcome)


def gmime_loop(programs: Programs, inbox: Path) -> Contestant:
    def prepare(folder: Path) -> Job:
        shutil.copyfile(programs.inputs / "empty.mdb", folder / "loop.mdb")
        return Job([programs.bench("gmime_loop"), folder / "loop.mdb", inbox])

    def outcome(folder: Path):
        return sql(folder / "loop.mdb", "select count(*) from system")[0][0]

    return Contestant("GMime loop", programs.bench("gmime_loop"), prepare, outcome)


def mu(inbox: Path, count: int) -> Contestant:
    def prepare(folder: Path) -> Job:
        subprocess.run(["mu", "init", "--quiet", f"--muhome={folder}/mu", f"--maildir={inbox}"],
                       check=True, stdout=subprocess.DEVNULL)
        return Job(["mu", "index", "--quiet", f"--muhome={folder}/mu"])

    def outcome(folder: Path):
        found = subprocess.run(["mu", "find", f"--muhome={folder}/mu", "--fields=i", ""],
                               check=True, capture_output=True)
        return found.stdout.count(b"\n")

    return Contestant("mu", "mu", prepare, outcome, slow=count >= 50_000)


def notmuch(inbox: Path, count: int) -> Contestant:
    def environment(folder: Path) -> dict:
        return {"NOTMUCH_CONFIG": str(folder / "notmuch.conf"), "HOME": str(folder)}

    def prepare(folder: Path) -> Job:
        (folder / "index").mkdir()
        (folder / "notmuch.conf").write_text(
            f"[database]\npath={folder}/index\nmail_root={inbox}\n"
            "[user]\nname=Bench\nprimary_email=bench@example.org\n"
            "[maildir]\nsynchronize_flags=false\n")
        return Job(["notmuch", "new", "--quiet"], environment(folder))

    def outcome(folder: Path):
        counted = subprocess.run(["notmuch", "count", "*"], check=True, capture_output=True,
                                 env={**os.environ, **environment(folder)})
        return int(counted.stdout)

    return Contestant("notmuch", "notmuch", prepare, outcome, slow=count >= 50_000)


# Servers' inboxes --------------------------------------------------------------------------------

def server_inbox(programs: Programs, protocol: str, count: int, slow_line: bool,
                 least_rate: float, with_peer: bool) -> Contest:
    maildir = programs.inputs / f"maildir-{programs.facts['messages'][0]}"
    servers = InboxServers(copied(maildir, count), slow_line)
    line = SLOW_LINE if slow_line else "loopback"
    contestants = [product_inbox(programs, protocol, servers)]
    if with_peer:
        contestants.append(plain_client(programs, protocol, servers))
    return Contest(f"servers-{protocol}-{count}-{line}",
                   f"{protocol.upper()}, {line}, {count:,} messages", contestants, PRODUCT, [], [],
                   warm_up=not slow_line, servers=servers, messages=count, least_rate=least_rate)


def attachments_inbox(programs: Programs) -> Contest:
    count = min(500, programs.facts["messages"][0])
    servers = InboxServers(with_attachments(count), False)
    return Contest("servers-attachments", f"IMAP, loopback, {count:,} messages with attachments",
                   [product_inbox(programs, "imap", servers),
                    plain_client(programs, "imap", servers)],
                   PRODUCT, [], [], warm_up=True, servers=servers, messages=count, most_traffic=2)


def product_inbox(programs: Programs, protocol: str, servers: InboxServers) -> Contestant:
    def prepare(folder: Path) -> Job:
        return Job([programs.bench("read_inbox"), protocol, servers.port(protocol),
                    servers.authority, folder / "traffic.json"])

    def traffic(folder: Path) -> float:
        report = json.loads((folder / "traffic.json").read_text())
        return report["received"] / report["rows"]

    return Contestant(PRODUCT, programs.bench("read_inbox"), prepare, printed_number,
                      traffic=traffic)


def plain_client(programs: Programs, protocol: str, servers: InboxServers) -> Contestant:
    client = Path(__file__).parents[1] / "peers/plain_client.py"

    def prepare(folder: Path) -> Job:
        return Job([sys.executable, client, protocol, servers.port(protocol), servers.authority])

    return Contestant("plain client", sys.executable, prepare, printed_number, slow=True)


def printed_number(folder: Path) -> int:
    return int((folder / OUTPUT).read_text())


def server_inboxes(programs: Programs) -> list:
    """The plain client takes 40 ms and more a message over the slow line: there it meets fewer."""
    most = programs.facts["messages"][0] // 2
    few = min(500, most)
    contests = []
    for protocol, slow_rate in (("imap", 3_500), ("pop3", 1_000)):
        contests += [server_inbox(programs, protocol, most, False, 8_000, True),
                     server_inbox(programs, protocol, most, True, slow_rate, False),
                     server_inbox(programs, protocol, few, True, 0, True)]
    return contests + [attachments_inbox(programs)]


# Sending -----------------------------------------------------------------------------------------

def sending(programs: Programs) -> Contest:
    """One message to everybody. Each recipient must be in an envelope that the server took, once."""
    count = min(1_000, programs.facts["messages"][0] // 10)
    server = OutgoingServer(slow_line=True)
    return Contest(f"servers-smtp-{count}", f"SMTP, {SLOW_LINE}, {count:,} recipients",
                   [product_sending(programs, server, count), plain_sender(server, count)],
                   PRODUCT, [], [], servers=server, most_seconds=2.5,
                   right=told_apart(f"n{i}@example.org" for i in range(count)))


def product_sending(programs: Programs, server: OutgoingServer, count: int) -> Contestant:
    program = programs.bench("send_message")
    return Contestant(PRODUCT, program, lambda folder: sending_job(server, [program], count),
                      lambda folder: told_apart(server.recipients()))


def plain_sender(server: OutgoingServer, count: int) -> Contestant:
    sender = [sys.executable, Path(__file__).parents[1] / "peers/plain_sender.py"]
    return Contestant("plain client", sys.executable,
                      lambda folder: sending_job(server, sender, count),
                      lambda folder: told_apart(server.recipients()), slow=True, most_runs=1)


def sending_job(server: OutgoingServer, command: list, count: int) -> Job:
    server.forget_taken()
    return Job([*command, server.port(), server.authority, count])


def told_apart(recipients) -> tuple:
    recipients = sorted(recipients)
    return len(recipients), hashlib.sha256(repr(recipients).encode()).hexdigest()[:12]


# Replay ------------------------------------------------------------------------------------------

LEFT_OVER = ("select count(*), total(rowid) from system union all"
             " select count(*), total(rowid) from master")


def replay(programs: Programs) -> Contest:
    rows = (sql(programs.inputs / "replay.mdb", f"select count(*) from {table}")[0][0]
            for table in ("master", "system"))
    title = "replay, {:,} lines, {:,} master and {:,} work rows".format(log_lines(programs), *rows)
    return Contest("replay", title,
                   [product_replay(programs), one_pass(programs), shell_replay(programs)],
                   "sqlite3 shell", [Target("sqlite3 shell", 1 / 50), Target("one pass", 5)], [])


def log_lines(programs: Programs) -> int:
    return (programs.inputs / "system.log").read_bytes().count(b"\n")


def product_replay(programs: Programs) -> Contestant:
    def prepare(folder: Path) -> Job:
        env = product_home(folder, programs.inputs / "replay.mdb",
                           batch_log=programs.inputs / "system.log")
        return Job([programs.bench("press"), READ_LOG], env)

    return Contestant(PRODUCT, programs.bench("press"), prepare,
                      lambda folder: sql(product_database(folder), LEFT_OVER))


def one_pass(programs: Programs) -> Contestant:
    def prepare(folder: Path) -> Job:
        shutil.copyfile(programs.inputs / "replay.mdb", folder / "r.mdb")
        return Job([programs.bench("one_pass"), folder / "r.mdb", programs.inputs / "system.log"])

    return Contestant("one pass", programs.bench("one_pass"), prepare,
                      lambda folder: sql(folder / "r.mdb", LEFT_OVER))


def shell_replay(programs: Programs) -> Contestant:
    def prepare(folder: Path) -> Job:
        shutil.copyfile(programs.inputs / "replay.mdb", folder / "r.mdb")
        return Job(["sqlite3", "-bail", folder / "r.mdb"], stdin=programs.inputs / "replay.sql")

    return Contestant("sqlite3 shell", "sqlite3", prepare,
                      lambda folder: sql(folder / "r.mdb", LEFT_OVER), slow=True)


# Import ------------------------------------------------------------------------------------------

IMPORT_FILE = "import.txt"
AT_REST = "import-at-rest"  # what the program takes that starts and ends


def imports(programs: Programs) -> Contest:
    file = programs.inputs / IMPORT_FILE
    return Contest("import", f"import, {file.read_bytes().count(10) - 1:,} addresses",
                   [product_import(programs, file), row_loop(programs, file)],
                   "row loop", [Target("row loop", 1.5)], [file])


def product_import(programs: Programs, file: Path) -> Contestant:
    def prepare(folder: Path) -> Job:
        env = product_home(folder, programs.inputs / "empty.mdb")
        env["BENCH_FILE"] = str(file)
        return Job([programs.bench("press"), IMPORT], env)

    return Contestant(PRODUCT, programs.bench("press"), prepare,
                      lambda folder: stored_in_order(product_database(folder)))


def row_loop(programs: Programs, file: Path) -> Contestant:
    def prepare(folder: Path) -> Job:
        shutil.copyfile(programs.inputs / "empty.mdb", folder / "loop.mdb")
        return Job([programs.bench("row_loop"), folder / "loop.mdb", file])

    return Contestant("row loop", programs.bench("row_loop"), prepare,
                      lambda folder: stored_in_order(folder / "loop.mdb"))


def stored_in_order(database: Path) -> tuple:
    rows = sql(database, "select email from master order by rowid")
    return len(rows), hashlib.sha256(repr(rows).encode()).hexdigest()[:12]


def at_rest(programs: Programs) -> Contest:
    def prepare(folder: Path) -> Job:
        return Job([programs.bench("press")], product_home(folder, programs.inputs / "empty.mdb"))

    program = Contestant(PRODUCT, programs.bench("press"), prepare, lambda folder: "ended")
    return Contest(AT_REST, "start and end, empty list", [program], PRODUCT, [], [])


# Lists -------------------------------------------------------------------------------------------

SEARCH = "select email, name from master where email like '%{}%';"
QUERIES = {
    "search-few": ("search, few hits", SEARCH),
    "search-many": ("search, many hits", SEARCH),
    "count": ("count", "select count(*) from master;"),
    "distinct": ("distinct addresses", "select email from master group by email collate nocase;"),
}


def lists(programs: Programs, query: str) -> Contest:
    title, statement = QUERIES[query]
    needle = programs.facts["needle"] if query == "search-few" else "weber"
    return Contest(f"lists-{query}", f"{title}, {programs.facts['rows']:,} rows",
                   [product_list(programs, query, needle),
                    shell_list(programs, query, statement.format(needle))],
                   "sqlite3 shell", [Target("sqlite3 shell", 1.5)], [], warm_up=True)


def number_of_rows(folder: Path, query: str) -> int:
    """The count that was shown, or how many rows were listed."""
    shown = (folder / OUTPUT).read_text()
    return int(shown) if query == "count" else shown.count("\n")


def product_list(programs: Programs, query: str, needle: str) -> Contestant:
    def prepare(folder: Path) -> Job:
        env = product_home(folder, programs.inputs / "lists.mdb")
        report = folder / "own.json"
        return Job([programs.bench("lists"), report, query, needle], env, own_report=report)

    return Contestant(PRODUCT, programs.bench("lists"), prepare,
                      lambda folder: int((folder / OUTPUT).read_text()))


def shell_list(programs: Programs, query: str, statement: str) -> Contestant:
    def prepare(folder: Path) -> Job:
        shutil.copyfile(programs.inputs / "lists.mdb", folder / "l.mdb")
        return Job(["sqlite3", "-bail", folder / "l.mdb", statement])

    return Contestant("sqlite3 shell", "sqlite3", prepare,
                      lambda folder: number_of_rows(folder, query))


# Start-up ----------------------------------------------------------------------------------------

def start_up(programs: Programs) -> Contest:
    title = f"start-up to the painted window, {programs.facts['rows']:,} rows"
    return Contest("start-up", title,
                   [window(programs, PRODUCT, str(programs.build / "ostrix")),
                    window(programs, "empty window", programs.bench("empty_window"))],
                   "empty window", [Target("empty window", 4)], [], warm_up=True)


def window(programs: Programs, name: str, program: str) -> Contestant:
    def prepare(folder: Path) -> Job:
        env = product_home(folder, programs.inputs / "lists.mdb")
        env["QT_QPA_PLATFORM"] = "xcb"
        report = folder / "own.json"
        return Job([programs.bench("first_paint"), report, program], env, own_report=report)

    return Contestant(name, program, prepare, lambda folder: "painted")


def all_contests(programs: Programs, quick: bool) -> list:
    counts = programs.facts["messages"][:1] if quick else programs.facts["messages"]
    contests = [retrieval(programs, kind, count)
                for count in counts for kind in ("maildir", "mbox")]
    contests += server_inboxes(programs)
    contests.append(sending(programs))
    contests.append(replay(programs))
    contests += [imports(programs), at_rest(programs)]
    contests += [lists(programs, query) for query in QUERIES]
    contests.append(start_up(programs))
    return contests
