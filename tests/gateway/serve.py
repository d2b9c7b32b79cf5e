"""The common parts of the tests of `orbelcast serve`: a gateway of their own, and a page's connection byte by byte."""

import base64
import contextlib
import http.client
import json
import pathlib
import socket
import struct
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "apps/camera_server"))
from camera_server import TIMEOUT, end_with_parent  # noqa: E402

ORBELCAST = sys.argv.pop(1)


class Gateway:
    """A gateway of the test's own on 127.0.0.1, ended with it."""

    def __init__(self, *options, port=0, tls=None):
        self.tls = tls
        self.process = subprocess.Popen([ORBELCAST, "serve", "--port", str(port), *options], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, preexec_fn=end_with_parent)
        self.address = self.process.stdout.readline().strip()
        self.port = int(self.address.rpartition(":")[2].strip("/"))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        _, self.errors = self.process.communicate(timeout=TIMEOUT)
        assert self.process.returncode == 0, self.errors

    def connect(self):
        link = socket.create_connection(("127.0.0.1", self.port), TIMEOUT)
        return self.tls.wrap_socket(link, server_hostname="127.0.0.1") if self.tls else link

    def get(self, target, **headers):
        link = http.client.HTTPConnection("127.0.0.1", self.port, timeout=TIMEOUT)
        link.sock = self.connect()
        with contextlib.closing(link):
            link.request("GET", target, headers={name.replace("_", "-"): text for name, text in headers.items()})
            answer = link.getresponse()
            return answer.status, answer.headers, answer.read()

    def open_session(self, **headers):
        """The status that a page's connection gets."""
        return self.get("/session", Connection="Upgrade", Upgrade="websocket", Sec_WebSocket_Version="13",
                        Sec_WebSocket_Key="AAAAAAAAAAAAAAAAAAAAAA==", **headers)[0]

    def memory(self):
        """Its resident memory, in KiB."""
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(status.partition("VmRSS:")[2].split()[0])


def identity(folder, name):
    """The paths of a certificate that a gateway signed itself, and of its key."""
    paths = [str(pathlib.Path(folder) / (name + ending)) for ending in (".pem", ".key")]
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                    "-subj", "/CN=gateway", "-addext", "subjectAltName=IP:127.0.0.1", "-days", "2",
                    "-out", paths[0], "-keyout", paths[1]], check=True, stderr=subprocess.DEVNULL)
    return paths


def basic(user, password):
    return {"Authorization": "Basic " + base64.b64encode(f"{user}:{password}".encode()).decode()}


def frame(line):
    """A page's message, its mask being zero."""
    line = line.encode()
    length = bytes([0x80 | len(line)]) if len(line) < 126 else bytes([0xFE]) + struct.pack(">H", len(line))
    return b"\x81" + length + bytes(4) + line


class Refused(Exception):
    """A page got no session."""


class Page:
    """A page's session."""

    def __init__(self, gateway, **headers):
        self.link = gateway.connect()
        self.buffer = b""
        self.lines = []
        self.told = []
        own = f"127.0.0.1:{gateway.port}"
        self.link.sendall(upgrade(own, f"{gateway.address.partition('//')[0]}//{own}", **headers))
        while b"\r\n\r\n" not in self.buffer:
            self.more()
        head, _, self.buffer = self.buffer.partition(b"\r\n\r\n")
        if b" 101 " not in head:
            self.link.close()
            raise Refused(head)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.link.close()

    def more(self):
        received = self.link.recv(65536)
        if not received:
            raise EOFError("the gateway closed the connection")
        self.buffer += received

    def take(self, count):
        while len(self.buffer) < count:
            self.more()
        taken, self.buffer = self.buffer[:count], self.buffer[count:]
        return taken

    def send(self, *lines):
        self.link.sendall(b"".join(map(frame, lines)))

    def receive(self):
        """The next line, and the bytes that are told by it."""
        if not self.told:
            self.told = self.message()
        line, body = self.told.pop(0)
        self.lines.append(line.decode("utf-8", "replace"))
        return json.loads(line) if line.startswith(b"{") else {}, body

    def message(self):
        """The next message: its lines, the last of them with the bytes of a binary one."""
        kind, length = self.take(2)
        if length > 125:
            length = int.from_bytes(self.take(2 if length == 126 else 8), "big")
        body = self.take(length)
        if kind & 0x0F == 2:
            end = 4 + int.from_bytes(body[:4], "little")
            lines, body = body[4:end], body[end:]
        else:
            lines, body = body, b""
        *others, last = lines.split(b"\n")
        return [*((line, b"") for line in others), (last, body)]

    def until(self, key, value=None):
        """The first line from now on that has that key and value, and its bytes."""
        while True:
            line, body = self.receive()
            if key in line and value in (None, line[key]):
                return line, body


def upgrade(host, origin, **headers):
    lines = [f"{name}: {value}" for name, value in headers.items()]
    return "\r\n".join(["GET /session HTTP/1.1", f"Host: {host}", f"Origin: {origin}", "Upgrade: websocket",
                        "Connection: Upgrade", "Sec-WebSocket-Version: 13",
                        "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==", *lines, "", ""]).encode()
