#!/usr/bin/env python3
"""smtp_server.py FOLDER [--tls CERTIFICATE KEY | --starttls CERTIFICATE KEY] [--sign-on] [--size BYTES]
               [--pipelining]

A mail server for a test, on a free port of 127.0.0.1, which it prints. Each message that it takes is
FOLDER/N.eml with its envelope in FOLDER/N.json. It hears one line after the other, however many come at
once; with --pipelining it says so (RFC 2920). Recipients that begin with "bad" are refused, with "later"
refused for the moment, with "second" refused for the moment the first time. It ends when its input ends.
"""
import argparse
import asyncio
import json
import logging
import os
import ssl
import sys

from aiosmtpd.smtp import SMTP, AuthResult, LoginPassword

logging.disable(logging.WARNING)  # of the library, about what a test asks for

arguments = argparse.ArgumentParser()
arguments.add_argument("folder")
arguments.add_argument("--tls", nargs=2)
arguments.add_argument("--starttls", nargs=2)
arguments.add_argument("--sign-on", action="store_true")
arguments.add_argument("--size", type=int, default=30_000_000)
arguments.add_argument("--pipelining", action="store_true")
options = arguments.parse_args()


class Handler:
    taken = 0
    seen = set()

    async def handle_EHLO(self, server, session, envelope, hostname, responses):
        session.host_name = hostname
        more = ["250-PIPELINING"] if options.pipelining else []
        return responses[:-1] + more + responses[-1:]

    async def handle_RCPT(self, server, session, envelope, address, _options):
        if address.startswith("bad"):
            return f"550 5.1.1 <{address}>: no such user"
        if address.startswith("later"):
            return "450 4.2.1 try later"
        if address.startswith("second") and address not in Handler.seen:
            Handler.seen.add(address)
            return "450 4.2.0 greylisted"
        envelope.rcpt_tos.append(address)
        return "250 2.1.5 ok"

    async def handle_DATA(self, server, session, envelope):
        if b"\r\nSubject: refuse this" in envelope.original_content:
            return "554 5.7.1 not wanted"
        Handler.taken += 1
        base = os.path.join(options.folder, str(Handler.taken))
        with open(base + ".eml", "wb") as file:
            file.write(envelope.original_content)
        with open(base + ".json", "w") as file:
            json.dump({"from": envelope.mail_from, "to": envelope.rcpt_tos, "options": envelope.mail_options,
                       "host": session.host_name, "signed_on": bool(session.authenticated),
                       "encrypted": session.ssl is not None or bool(options.tls)}, file)
        return "250 2.0.0 queued"


def sign_on(server, session, envelope, mechanism, data):
    is_right = isinstance(data, LoginPassword) and (data.login, data.password) == (b"ann", "s3crét".encode())
    return AuthResult(success=is_right, handled=False)


def context(files):
    tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    tls.load_cert_chain(*files)
    return tls


def protocol():
    starttls = {"tls_context": context(options.starttls), "require_starttls": True} if options.starttls else {}
    return SMTP(Handler(), hostname="localhost", enable_SMTPUTF8=True, data_size_limit=options.size,
                authenticator=sign_on, auth_required=options.sign_on,
                auth_require_tls=bool(options.starttls), **starttls)


async def main():
    tls = context(options.tls) if options.tls else None
    server = await asyncio.get_running_loop().create_server(protocol, "127.0.0.1", 0, ssl=tls)
    print(server.sockets[0].getsockname()[1], flush=True)
    await asyncio.get_running_loop().run_in_executor(None, sys.stdin.read)
    os._exit(0)


asyncio.run(main())
