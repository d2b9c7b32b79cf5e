"""What the tests of the camera server share: a server of their own, requests byte by byte, a look at JPEG bytes."""

import ctypes
import http.client
import json
import re
import signal
import socket
import struct
import subprocess
import sys
import time

PROGRAM = sys.argv.pop(1)
TIMEOUT = 30  # seconds, of what a busy machine may need with a sanitizer's program


def end_with_parent():
    """A server does not outlive a test that was killed."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


class Server:
    """A server on a free port of 127.0.0.1, ended with the test."""

    def __init__(self, *options):
        self.process = subprocess.Popen([PROGRAM, "--port", "0", *options], stdout=subprocess.PIPE, text=True,
                                        preexec_fn=end_with_parent)
        line = self.process.stdout.readline()
        match = re.fullmatch(r"listening on http://127\.0\.0\.1:(\d+)/\n", line)
        if not match:
            raise AssertionError("the first line was %r" % line)
        self.port = int(match[1])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()

    def end(self, how=signal.SIGTERM):
        """Returns the exit status and how many seconds the end took. A sanitizer's finding is a status of its own."""
        start = time.monotonic()
        self.process.send_signal(how)
        try:
            status = self.process.wait(TIMEOUT)
        finally:
            self.process.kill()  # nothing where it has ended
            self.process.stdout.close()
        assert status == 0, "the server ended with status %d" % status
        return status, time.monotonic() - start

    def connect(self):
        return http.client.HTTPConnection("127.0.0.1", self.port, timeout=TIMEOUT)

    def get(self, target, headers=None, method="GET"):
        """Status, headers and body of one request."""
        connection = self.connect()
        try:
            connection.request(method, target, headers=headers or {})
            answer = connection.getresponse()
            return answer.status, answer.headers, answer.read()
        finally:
            connection.close()

    def open(self, request):
        """A socket on which `request` was sent."""
        link = socket.create_connection(("127.0.0.1", self.port), TIMEOUT)
        link.sendall(request if isinstance(request, bytes) else request.encode("latin-1"))
        return link

    def raw(self, request):
        """Every byte that comes back until the server closes."""
        with self.open(request) as link:
            pieces = []
            while piece := link.recv(65536):
                pieces.append(piece)
            return b"".join(pieces)

    def asked(self, clear=False):
        """The requests that the server remembers, as (request line, header lines)."""
        lines = self.get("/control/requests" + ("?clear=yes" if clear else ""))[2]
        entries = [json.loads(line) for line in lines.splitlines()]
        return [(entry["request"], entry["headers"]) for entry in entries]

    def fault(self, camera, fault):
        status, _, text = self.get("/control/fault?camera=%s&fault=%s" % (camera, fault))
        assert status == 200, text


GET = "GET /live/1 HTTP/1.1\r\nHost: x\r\n\r\n"


def split(answer):
    """Head and body of an answer's bytes."""
    head, _, body = answer.partition(b"\r\n\r\n")
    return head.decode("latin-1"), body


def length_in(head):
    return int(re.search(r"Content-Length: (\d+)", head)[1])


def segments(jpeg):
    """The JPEG's header segments, as code and content, up to the picture's data."""
    assert jpeg[:2] == b"\xff\xd8", "no JPEG"
    at = 2
    while True:
        mark, code, length = struct.unpack(">BBH", jpeg[at:at + 4])
        assert mark == 0xFF
        yield code, jpeg[at + 4:at + 2 + length]
        if code == 0xDA:
            return
        at += 2 + length


def jpeg_size(jpeg):
    content = next(content for code, content in segments(jpeg) if code == 0xC0)
    height, width = struct.unpack(">HH", content[1:5])
    return width, height


def is_whole(jpeg):
    return jpeg[:2] == b"\xff\xd8" and jpeg[-2:] == b"\xff\xd9"


def quantizer(jpeg):
    """The sum of the brightness table: the larger, the lower the quality."""
    return sum(next(content for code, content in segments(jpeg) if code == 0xDB)[1:65])


