#!/usr/bin/python3
"""A mail server on the loopback device for the tests: smtp-server.py FOLDER [FAULT...]

Writes FOLDER/port with its port. Each connection's commands go to FOLDER/commands, one a line ("+" before those that came
encrypted); each mail that was accepted to FOLDER/N.eml, its envelope to FOLDER/N.envelope (sender, then recipients, one a
line), N counting from 1. With a "--" the rest of the command line is run, with the port in MAIL_PORT, and the server
ends with it.

Faults: tls (encrypted from the first byte), starttls, login (user anna, password "öffne dich!"), cert=NAME (NAME.pem of
FOLDER, good at first), refuse=ADDRESS, limit=BYTES, utf8, old (TLS 1.1), drop=greeting|data|dot, stall=greeting|mail|dot,
once (the fault happens to the first connection only).
"""
import asyncio
import logging
import os
import ssl
import subprocess
import sys
import warnings

from aiosmtpd.smtp import SMTP, AuthResult, Envelope, LoginPassword, Session

logging.disable(logging.CRITICAL)
warnings.simplefilter("ignore")

folder = sys.argv[1]
words = sys.argv[2:]
command = []
if "--" in words:
    command = words[words.index("--") + 1:]
    words = words[:words.index("--")]
faults = dict(word.partition("=")[::2] for word in words)
connections = 0
os.makedirs(folder, exist_ok=True)
mails = 0


def note(line):
    with open(os.path.join(folder, "commands"), "a", encoding="utf-8", errors="surrogateescape") as file:
        file.write(line + "\n")


def fault(name, value):
    return faults.get(name) == value and not ("once" in faults and connections > 1)


def authenticate(server, session, envelope, mechanism, data):
    good = isinstance(data, LoginPassword) and data.login == b"anna" and data.password == "öffne dich!".encode()
    return AuthResult(success=good, handled=good)


class Handler:
    async def handle_RCPT(self, server, session, envelope, address, options):
        if address in ("", "<>"):
            return "501 bad recipient address syntax"  # as common servers do
        if address in faults.get("refuse", "-").split(","):
            return "550 no such user here"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        if fault("drop", "dot"):
            server.transport.abort()
            return "421 gone"
        if fault("stall", "dot"):
            await asyncio.sleep(1000)
        global mails
        mails += 1
        with open(os.path.join(folder, f"{mails}.eml"), "wb") as file:
            file.write(envelope.original_content)
        with open(os.path.join(folder, f"{mails}.envelope"), "w", encoding="utf-8") as file:
            for address in [envelope.mail_from, *envelope.rcpt_tos]:
                file.write(address.replace("\r", "?").replace("\n", "?") + "\n")
        return "250 taken"


class Server(SMTP):
    async def _handle_client(self):
        global connections
        if self._tls_protocol is None:
            connections += 1
            note("connection")
        if fault("drop", "greeting"):
            self.transport.abort()
            return
        if fault("stall", "greeting"):
            await asyncio.sleep(1000)
        read = self._reader.readuntil

        async def noted(end=b"\n"):
            line = await read(end)
            if not getattr(self, "in_data", False):
                encrypted = self.transport.get_extra_info("sslcontext") is not None
                note(("+" if encrypted else "") + line.decode("utf-8", "surrogateescape").rstrip("\r\n"))
            return line

        self._reader.readuntil = noted
        await super()._handle_client()

    async def smtp_MAIL(self, arg):
        if fault("stall", "mail"):
            await asyncio.sleep(1000)
        await super().smtp_MAIL(arg)

    async def smtp_DATA(self, arg):
        if fault("drop", "data"):
            await self.push("354 go on")
            await self._reader.readexactly(20000)
            self.transport.abort()
            return
        self.in_data = True
        await super().smtp_DATA(arg)
        self.in_data = False


def context():
    made = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    pem = os.path.join(folder, faults.get("cert", "good") + ".pem")
    if "old" in faults:
        made.minimum_version = made.maximum_version = ssl.TLSVersion.TLSv1_1
        made.set_ciphers("ALL:@SECLEVEL=0")
    made.load_cert_chain(pem)
    return made


async def main():
    loop = asyncio.get_running_loop()
    starttls = context() if "starttls" in faults else None
    server = await loop.create_server(
        lambda: Server(
            Handler(),
            hostname="mail.test",
            loop=loop,
            data_size_limit=int(faults.get("limit", 100_000_000)),
            enable_SMTPUTF8="utf8" in faults,
            tls_context=starttls,
            require_starttls=starttls is not None,
            authenticator=authenticate if "login" in faults else None,
            auth_required="login" in faults,
            auth_require_tls="tls" not in faults,
        ),
        "127.0.0.1",
        0,
        ssl=context() if "tls" in faults else None,
    )
    port = server.sockets[0].getsockname()[1]
    with open(os.path.join(folder, "port.new"), "w", encoding="ascii") as file:
        file.write(str(port))
    os.rename(os.path.join(folder, "port.new"), os.path.join(folder, "port"))
    if command:
        process = await asyncio.create_subprocess_exec(*command, env={**os.environ, "MAIL_PORT": str(port)})
        sys.exit(await process.wait())
    await server.serve_forever()


asyncio.run(main())
