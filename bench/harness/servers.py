"""Mail servers for the contests that need one, and a line to them that takes its time."""

import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

DELAY_EACH_WAY = 20  # milliseconds
SCRIPTS = Path(__file__).parents[2] / "tests/mail/servers"
DELAY = Path(__file__).parents[1] / "runner/delay.py"
NAMES = ("imap", "imaps", "pop3", "pop3s")  # in the order that the server's script takes their ports


def free_port() -> int:
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


def wait_for(port: int):
    """Returns when somebody listens there."""
    for _ in range(1000):
        try:
            socket.create_connection(("127.0.0.1", port), 1).close()
            return
        except OSError:
            time.sleep(0.01)
    raise OSError(f"nothing listens on port {port}")


class MailServers:
    """Servers that run while they are entered, in a folder of their own."""

    def __init__(self, slow_line: bool):
        self._slow_line, self._processes = slow_line, []

    @property
    def authority(self) -> Path:
        return self._folder / "certificates/ca.pem"

    @property
    def groups(self) -> list:
        """The process groups that work for the clients."""
        return [process.pid for process in self._processes]

    def __enter__(self):
        # Short, for it holds the names of sockets.
        self._folder = Path(tempfile.mkdtemp(prefix="bench-", dir="/tmp"))
        certificates = self._folder / "certificates"
        certificates.mkdir()
        try:
            subprocess.run([SCRIPTS / "make_certificates.sh", certificates], check=True)
            self._start_all(certificates)
        except BaseException:
            self.__exit__()
            raise
        return self

    def _start_all(self, certificates: Path):
        raise NotImplementedError

    def _line_to(self, port: int) -> int:
        """The port of the line that clients are to take to the server at this one."""
        wait_for(port)
        if not self._slow_line:
            return port
        slow = free_port()
        self._start([sys.executable, DELAY, slow, port, DELAY_EACH_WAY])
        wait_for(slow)
        return slow

    def _start(self, command: list, **streams):
        with open(self._folder / "servers.log", "ab") as log:
            self._processes.append(
                subprocess.Popen([str(word) for word in command], start_new_session=True,
                                 **({"stdout": log, "stderr": log} | streams)))

    def __exit__(self, *_):
        for process in self._processes:
            os.killpg(process.pid, signal.SIGKILL)  # a polite end of a server takes two seconds
            process.wait()
        shutil.rmtree(self._folder, ignore_errors=True)


class InboxServers(MailServers):
    """Dovecot. `fill` puts the messages into the Maildir that it is given."""

    def __init__(self, fill, slow_line: bool):
        super().__init__(slow_line)
        self._fill, self._ports = fill, {}

    def port(self, protocol: str) -> str:
        """Where a client finds "imap" or "pop3" under TLS."""
        return str(self._ports[protocol])

    def _start_all(self, certificates: Path):
        mail = self._folder / "mail"
        for name in ("cur", "new", "tmp"):
            (mail / name).mkdir(parents=True)
        self._fill(mail)
        ports = {name: free_port() for name in NAMES}
        self._start([SCRIPTS / "dovecot.sh", self._folder, certificates, "good",
                     *(ports[name] for name in NAMES)])
        self._ports = {name: self._line_to(ports[name + "s"]) for name in ("imap", "pop3")}


class OutgoingServer(MailServers):
    """The tests' server that takes mail, under TLS, for who signs on; it may be told many things at once."""

    def port(self) -> str:
        return str(self._port)

    def forget_taken(self):
        for file in self._taken.iterdir():
            file.unlink()

    def recipients(self) -> list:
        """Who is named in the envelopes of all messages that it has taken since."""
        return [recipient for envelope in self._taken.glob("*.json")
                for recipient in json.loads(envelope.read_text())["to"]]

    def _start_all(self, certificates: Path):
        self._taken = self._folder / "taken"
        self._taken.mkdir()
        # It ends when its input does, and says its port.
        self._start([sys.executable, SCRIPTS / "smtp_server.py", self._taken, "--sign-on", "--pipelining",
                     "--tls", certificates / "good.pem", certificates / "good.key"],
                    stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._port = self._line_to(int(self._processes[-1].stdout.readline()))


def copied(maildir: Path, count: int):
    """Fills a mailbox with the first messages of another one."""
    def fill(mail: Path):
        for file in sorted((maildir / "cur").iterdir())[:count]:
            shutil.copy2(file, mail / "cur" / file.name)
    return fill


def with_attachments(count: int):
    """Fills a mailbox with messages of 3 kB of text that carry 300 kB."""
    line = "A line of a letter, of which there are some more in it.\n"
    attachment = ("QUJDREVGR0hJSktM" * 4 + "\n") * 4_600

    def fill(mail: Path):
        for number in range(count):
            (mail / f"cur/{1_700_000_000 + number}.M1P1.host:2,S").write_text(
                f"From: Ann <ann{number}@example.org>\nSubject: Plans, part {number}\n"
                "Date: Tue, 6 Jan 2026 08:09:10 +0000\nMIME-Version: 1.0\n"
                "Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: text/plain\n\n"
                f"{line * 54}\n--b\nContent-Type: application/pdf; name=plan.pdf\n"
                "Content-Disposition: attachment; filename=plan.pdf\n"
                f"Content-Transfer-Encoding: base64\n\n{attachment}--b--\n")
    return fill
