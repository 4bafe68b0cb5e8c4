"""The plain way to fetch a server's inbox: Python's own clients, one message after the other, whole. Makes
nothing of them. Prints how many there were."""

import imaplib
import poplib
import ssl
import sys

USER, PASSWORD = "user@example.org", 's3cret "word"'


def imap_messages(port: int, trust: ssl.SSLContext):
    with imaplib.IMAP4_SSL("localhost", port, ssl_context=trust) as server:
        server.login(USER, PASSWORD)
        server.select(readonly=True)
        for uid in server.uid("SEARCH", "ALL")[1][0].split():
            yield server.uid("FETCH", uid, "(BODY.PEEK[])")[1][0][1]


def pop3_messages(port: int, trust: ssl.SSLContext):
    poplib._MAXLINE = 1 << 20  # its own limit is lower than lines in mail
    server = poplib.POP3_SSL("localhost", port, context=trust)
    server.user(USER)
    server.pass_(PASSWORD)
    for number in range(1, len(server.list()[1]) + 1):
        yield b"\n".join(server.top(number, 2147483647)[1])
    server.quit()


def main():
    protocol, port, authority = sys.argv[1], int(sys.argv[2]), sys.argv[3]
    messages = {"imap": imap_messages, "pop3": pop3_messages}[protocol]
    trust = ssl.create_default_context(cafile=authority)
    print(sum(1 for message in messages(port, trust) if message))


main()
