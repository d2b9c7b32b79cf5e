"""The common parts of the camera server's tests: a server of their own, requests byte by byte, a look at JPEG bytes."""

import contextlib
import ctypes
import http.client
import json
import pathlib
import re
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time

PROGRAM = sys.argv.pop(1)
PICTURE = pathlib.Path(__file__).parents[2] / "fuzz/corpus/jpeg/420.jpg"
TIMEOUT = 30  # seconds, of what a busy machine may need with a sanitizer's program


def end_with_parent():
    """A server does not outlive a test that was killed."""
    ctypes.CDLL(None).prctl(1, signal.SIGKILL)  # 1: PR_SET_PDEATHSIG


class Server:
    """A server on a free port of 127.0.0.1, ended with the test."""

    def __init__(self, *options):
        self.process = subprocess.Popen([PROGRAM, "--port", "0", *options], stdout=subprocess.PIPE, text=True,
                                        preexec_fn=end_with_parent)
        line = self.process.stdout.readline()
        assert re.fullmatch(r"listening on http://127\.0\.0\.1:\d+/\n", line), line
        self.port = int(line.rpartition(":")[2].strip("/\n"))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()

    def end(self, how=signal.SIGTERM):
        """Returns how many seconds the end took. It is clean: a sanitizer's finding is a status of its own."""
        start = time.monotonic()
        self.process.send_signal(how)
        try:
            assert self.process.wait(TIMEOUT) == 0, "the server ended with status %d" % self.process.returncode
        finally:
            self.process.kill()  # nothing where it has ended
            self.process.stdout.close()
        return time.monotonic() - start

    def get(self, target, headers=None):
        """Status, headers and body of one request."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=TIMEOUT)
        with contextlib.closing(connection):
            connection.request("GET", target, headers=headers or {})
            answer = connection.getresponse()
            return answer.status, answer.headers, answer.read()

    def open(self, request):
        """A socket on which `request` was sent."""
        link = socket.create_connection(("127.0.0.1", self.port), TIMEOUT)
        link.sendall(request if isinstance(request, bytes) else request.encode("latin-1"))
        return link

    def raw(self, request):
        """Every byte that comes back until the server closes."""
        with self.open(request) as link:
            return b"".join(iter(lambda: link.recv(65536), b""))

    def asked(self, clear="no"):
        """The requests that the server remembers, as (request line, header lines)."""
        entries = [json.loads(line) for line in self.get("/control/requests?clear=" + clear)[2].splitlines()]
        return [(entry["request"], entry["headers"]) for entry in entries]

    def fault(self, camera, fault):
        status, _, text = self.get("/control/fault?camera=%s&fault=%s" % (camera, fault))
        assert status == 200, text


class PictureServer(Server):
    """A server whose cameras all show PICTURE."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory()
        shutil.copy(PICTURE, self.folder.name)
        super().__init__("--folder", self.folder.name)

    def end(self):
        with self.folder:
            return super().end()


INFO = "/secure/srv_vigilbox$rdxviewer"
GET = "GET /live/1 HTTP/1.1\r\nHost: x\r\n\r\n"


def split(answer):
    """Head and body of an answer's bytes."""
    head, _, body = answer.partition(b"\r\n\r\n")
    return head.decode("latin-1"), body


def command(server, text, login="ann/secret"):
    """Status and body of a command behind a login base, its bytes sent as they are."""
    head, body = split(server.raw("GET /$openlogin/%s/srv_vigilbox$%s HTTP/1.0\r\n\r\n" % (login, text)))
    return int(head.split(" ")[1]), body.decode("latin-1")


def jpeg_size(jpeg):
    """Width and height of the baseline frame header, which no table before it holds the marker of."""
    at = jpeg.index(b"\xff\xc0")
    return struct.unpack(">HH", jpeg[at + 5:at + 9])[::-1]


def is_whole(jpeg):
    return jpeg[:2] == b"\xff\xd8" and jpeg[-2:] == b"\xff\xd9"
