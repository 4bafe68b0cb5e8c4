"""The plain way to send one message to many: Python's own client, one envelope, an answer waited for after
each recipient. The first one is in the message's header, the others are blind copies."""

import base64
import smtplib
import ssl
import sys
from email.message import EmailMessage
from email.policy import SMTP

USER, PASSWORD = "ann", "s3crét"


def main():
    port, authority, count = int(sys.argv[1]), sys.argv[2], int(sys.argv[3])
    recipients = [f"n{number}@example.org" for number in range(count)]
    message = EmailMessage()
    message["From"], message["To"], message["Subject"] = "ann@example.org", recipients[0], "News"
    message.set_content("A line of a letter, of which there are some more in it.\n" * 40)
    with smtplib.SMTP_SSL("localhost", port, context=ssl.create_default_context(cafile=authority)) as server:
        server.ehlo()
        # Its login() knows ASCII alone.
        server.docmd("AUTH PLAIN", base64.b64encode(f"\0{USER}\0{PASSWORD}".encode()).decode())
        server.sendmail("ann@example.org", recipients, message.as_bytes(policy=SMTP))


main()
