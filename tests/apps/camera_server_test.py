#!/usr/bin/env python3
"""Tests of the camera server, as its clients see it: camera_server_test.py SERVER_PROGRAM"""

import base64
import ctypes
import hashlib
import http.client
import os
import re
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.request

PROGRAM = sys.argv.pop(1)
TIMEOUT = 10


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
        """Returns the exit status and how many seconds the end took."""
        start = time.monotonic()
        self.process.send_signal(how)
        try:
            status = self.process.wait(TIMEOUT)
        finally:
            self.process.kill()  # nothing where it has ended
            self.process.stdout.close()
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


class Pictures(unittest.TestCase):
    def test_sizes_and_qualities(self):
        with Server("--size", "320x240", "--quality", "70") as server:
            def size(target):
                status, _, body = server.get(target)
                self.assertEqual(status, 200)
                self.assertTrue(is_whole(body))
                return jpeg_size(body)

            self.assertEqual(size("/live/1"), (320, 240))
            self.assertEqual(size("/live/2?live-special0160x0120020"), (160, 120))
            self.assertEqual(size("/live/1/me:secret?live-special1280x0720080"), (1280, 720))
            self.assertEqual(size("/live/1/me:pass?word?live-special0176x0144020"), (176, 144))
            self.assertEqual(size("/live/3?width=200&height=90&quality=50"), (200, 90))
            self.assertEqual(size("/live/3?height=100"), (320, 100))
            # What is beyond the bounds gets the nearest, what cannot be read the default.
            self.assertEqual(size("/live/1?live-special0000x9999090"), (16, 2160))
            self.assertEqual(size("/live/1?live-special64x48"), (320, 240))
            self.assertEqual(size("/live/1?width=99999999999&height=-3"), (320, 240))

            tables = [quantizer(server.get("/live/1?live-special0320x0240%03d" % quality)[2]) for quality in (20, 70, 90)]
            self.assertEqual(tables, sorted(tables, reverse=True))
            self.assertEqual(len(set(tables)), 3)
            self.assertEqual(quantizer(server.get("/live/1")[2]), tables[1])

    def test_cameras_differ_and_move(self):
        with Server("--cameras", "2") as server:
            first = server.get("/live/1")[2]
            self.assertNotEqual(first, server.get("/live/2")[2])
            time.sleep(0.12)
            self.assertNotEqual(first, server.get("/live/1")[2])
            for target in ("/live/3", "/live/0", "/live/", "/live/x", "/live/99999999999999999999"):
                self.assertEqual(server.get(target)[0], 506, target)
            self.assertEqual(server.get("/else")[0], 404)

    def test_headers(self):
        with Server("--name", "Yard", "--vigilbox-info", "1 fine", "--plugins", "none", "--recording", "yes") as server:
            _, headers, body = server.get("/live/1")
            self.assertEqual(headers["Server"], "Orbelcast-Camera-Server/1.0")
            self.assertRegex(headers["Date"], r"^\w{3}, \d\d \w{3} \d{4} \d\d:\d\d:\d\d GMT$")
            code = time.mktime(time.strptime(headers["RC_TCR"], "%Y%m%d%H%M%S"))
            self.assertLess(abs(code - time.time()), 5)
            self.assertEqual(len(headers["RC_TCR"]), 14)
            self.assertEqual(headers["Recording"], "Yes")
            self.assertEqual(headers["HolmvaneStatus"], "Yard: 1 viewer")
            self.assertEqual(headers["VigilboxInfo"], "1 fine")
            self.assertEqual(headers["PlugIns"], "none")
            self.assertEqual(headers["Cache-Control"], "no-store")
            self.assertEqual(headers["Content-Type"], "image/jpeg")
            self.assertEqual(int(headers["Content-Length"]), len(body))
            page = server.get("/")[2].decode()
            self.assertIn("/live/1", page)
            self.assertIn("Yard", page)
        with Server("--recording", "no") as server:
            _, headers, _ = server.get("/live/1")
            self.assertEqual(headers["Recording"], "No")
            self.assertIsNone(headers["VigilboxInfo"])
            with server.open(GET) as one, server.open(GET) as two:
                one.recv(1)
                two.recv(1)
                self.assertEqual(server.get("/live/1")[1]["HolmvaneStatus"], "Camera 1: 3 viewers")

    def test_one_picture_a_tenth_of_a_second(self):
        with Server() as server:
            pictures = {server.get("/live/1")[2] for _ in range(30)}
            self.assertLess(len(pictures), 30)

    def test_folder_in_turn(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, content in (("b.JPEG", b"second"), ("a.jpg", b"first"), ("c.txt", b"none")):
                with open(os.path.join(folder, name), "wb") as file:
                    file.write(content)
            with Server("--folder", folder) as server:
                self.assertEqual([server.get("/live/1")[2] for _ in range(3)], [b"first", b"second", b"first"])
                self.assertEqual(server.get("/live/2")[2], b"second")
                os.remove(os.path.join(folder, "b.JPEG"))
                self.assertEqual(server.get("/live/1")[0], 500)
                self.assertEqual(server.get("/live/1")[2], b"first")


class Authentication(unittest.TestCase):
    USERS = ("--user", "ann", "--password", "se cret:", "--user", "bob", "--password", "")

    def test_basic(self):
        with Server("--auth", "basic", *self.USERS) as server:
            def status(login):
                header = "Basic " + base64.b64encode(login.encode()).decode()
                return server.get("/live/1", {"Authorization": header})[0]

            code, headers, _ = server.get("/live/1")
            self.assertEqual(code, 401)
            self.assertTrue(headers["WWW-Authenticate"].startswith('Basic realm="'))
            self.assertEqual(status("ann:se cret:"), 200)
            self.assertEqual(status("bob:"), 200)
            for wrong in ("ann:", "ann:se cret", "bob:se cret:", "ann", "", ":"):
                self.assertEqual(status(wrong), 401, wrong)
            for wrong in ("Basic", "Basic ", "Basic =", "Basic ====", "Basic %%%%", "Bearer YW5u"):
                self.assertEqual(server.get("/live/1", {"Authorization": wrong})[0], 401, wrong)
            self.assertEqual(server.get("/")[0], 401)
            # The login of a live address counts as well; it goes out as typed.
            request = "GET /live/1/%s?live-special0160x0120050 HTTP/1.1\r\nConnection: close\r\n\r\n"
            self.assertIn("200 OK", split(server.raw(request % "ann:se cret:"))[0])
            self.assertIn("401 ", split(server.raw(request % "ann:wrong"))[0])

    def test_digest(self):
        def challenge_of(headers):
            return dict(re.findall(r'(\w+)="?([^",]+)"?', headers["WWW-Authenticate"]))

        def md5(text):
            return hashlib.md5(text.encode()).hexdigest()

        def credentials(challenge, count, uri, password="se cret:", user="ann", nonce=None):
            nonce = nonce or challenge["nonce"]
            counter = "%08x" % count
            first = md5("%s:%s:%s" % (user, challenge["realm"], password))
            answer = md5(":".join((first, nonce, counter, "abc", "auth", md5("GET:" + uri))))
            return {"Authorization": 'Digest username="%s", realm="%s", nonce="%s", uri="%s", algorithm=MD5, '
                    'qop=auth, nc=%s, cnonce="abc", response="%s"'
                    % (user, challenge["realm"], nonce, uri, counter, answer)}

        with Server("--auth", "digest", *self.USERS) as server:
            code, headers, _ = server.get("/live/1")
            self.assertEqual(code, 401)
            challenge = challenge_of(headers)
            self.assertEqual((challenge["qop"], challenge["algorithm"]), ("auth", "MD5"))
            uri = "/live/1?live-special0160x0120050"
            self.assertEqual(server.get(uri, credentials(challenge, 1, uri))[0], 200)
            self.assertEqual(server.get(uri, credentials(challenge, 3, uri))[0], 200)
            self.assertEqual(server.get(uri, credentials(challenge, 2, uri))[0], 200)  # overtaken on the way
            self.assertEqual(server.get(uri, credentials(challenge, 900, uri))[0], 200)

            code, headers, _ = server.get(uri, credentials(challenge, 3, uri))  # a count that served already
            self.assertEqual((code, challenge_of(headers).get("stale")), (401, "true"))
            forged = "%016x" % int(time.time() * 1e6) + "0" * 32
            code, headers, _ = server.get(uri, credentials(challenge, 1, uri, nonce=forged))
            self.assertEqual((code, challenge_of(headers).get("stale")), (401, "true"))
            code, headers, _ = server.get(uri, credentials(challenge, 901, uri, password="wrong"))
            self.assertEqual((code, challenge_of(headers).get("stale")), (401, None))
            self.assertEqual(server.get(uri, credentials(challenge, 902, uri, user="eve"))[0], 401)
            self.assertEqual(server.get("/live/2", credentials(challenge, 903, uri))[0], 400)
            for wrong in ("Digest", "Digest ,,,", 'Digest username="', 'Digest nc=00000001, qop=auth, cnonce="\\'):
                self.assertEqual(server.get(uri, {"Authorization": wrong})[0], 401, wrong)
            # A client that we did not write.
            passwords = urllib.request.HTTPPasswordMgrWithDefaultRealm()
            passwords.add_password(None, "http://127.0.0.1:%d/" % server.port, "ann", "se cret:")
            opener = urllib.request.build_opener(urllib.request.HTTPDigestAuthHandler(passwords))
            with opener.open("http://127.0.0.1:%d/live/1" % server.port, timeout=TIMEOUT) as answer:
                self.assertTrue(is_whole(answer.read()))


class Faults(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server("--cameras", "2", "--fault", "2=status:503")
        cls.addClassCleanup(cls.server.end)

    def seen(self, fault):
        self.server.fault(1, fault)
        return split(self.server.raw(GET.replace("Host", "Connection: close\r\nHost")))

    def test_planning(self):
        self.assertEqual(self.server.get("/live/2")[0], 503)
        self.server.fault("all", "none")
        self.assertEqual([self.server.get("/live/%d" % camera)[0] for camera in (1, 2)], [200, 200])
        self.server.fault(1, "status:418@3")
        self.assertEqual([self.server.get("/live/1")[0] for _ in range(6)], [200, 200, 418, 200, 200, 418])
        self.server.fault(1, "status:404*2")
        self.assertEqual([self.server.get("/live/1")[0] for _ in range(3)], [404, 404, 200])
        self.server.fault(2, "cut:7*5")
        self.server.raw(GET.replace("live/1", "live/2"))
        self.assertEqual(self.server.get("/control/fault")[2].split(), [b"1=none", b"2=cut:7*4"])
        for query in ("camera=3&fault=none", "camera=1&fault=bogus", "camera=1&fault=status", "camera=1&fault=reset:1",
                      "camera=1&fault=reset@0", "camera=1", "fault=none", "camera=1&fault=status:200*2@3"):
            self.assertEqual(self.server.get("/control/fault?" + query)[0], 400, query)
        self.server.fault(2, "none")

    def test_wrong_content(self):
        head, body = self.seen("jpegcut")
        self.assertEqual(length_in(head), len(body))
        self.assertTrue(body.startswith(b"\xff\xd8") and not is_whole(body))
        self.assertEqual(len(self.seen("jpegcut:300")[1]), 300)
        head, body = self.seen("junkbody")
        self.assertIn("200 OK", head)
        self.assertEqual(length_in(head), len(body))
        self.assertNotIn(b"\xff\xd8", body)
        self.assertEqual(jpeg_size(self.seen("huge")[1]), (65535, 65535))
        head, body = self.seen("headers:5000")
        self.assertEqual(head.count("\r\nX-Filler-"), 5000)
        self.assertTrue(is_whole(body))

    def test_cut_off(self):
        head, body = self.seen("cut")
        self.assertEqual(len(body), length_in(head) // 2)
        self.assertEqual(len(self.seen("cut:10")[1]), 10)
        self.server.fault(1, "reset")
        with self.assertRaises(ConnectionResetError):
            self.server.raw(GET)
        self.server.fault(1, "garbage")
        garbage = self.server.raw(GET)
        self.assertEqual(len(garbage), 512)
        self.assertNotIn(b"HTTP", garbage)

    def test_late_or_never(self):
        self.server.fault(1, "delay:300")
        start = time.monotonic()
        self.assertTrue(is_whole(self.server.get("/live/1")[2]))
        self.assertGreaterEqual(time.monotonic() - start, 0.3)
        self.server.fault(1, "never")
        with self.server.open(GET) as link:
            link.settimeout(0.3)
            with self.assertRaises(TimeoutError):
                link.recv(1)
        self.server.fault(1, "trickle:50")
        with self.server.open(GET) as link:
            answer = b""
            start = time.monotonic()
            while time.monotonic() - start < 0.6:
                answer += link.recv(4096)
            head, body = split(answer)
            self.assertGreater(length_in(head), 1000)
            self.assertTrue(2 <= len(body) <= 13, body)
            self.assertEqual(body[:2], b"\xff\xd8")

    def test_endless(self):
        for fault, mark in (("endless", ""), ("endless-chunked", "Transfer-Encoding: chunked")):
            self.server.fault(1, fault)
            with self.server.open(GET) as link:
                count, start = 0, b""
                while count < 8 * 1024 * 1024:
                    piece = link.recv(65536)
                    self.assertTrue(piece, "it ended")
                    start = start or piece
                    count += len(piece)
            head, _ = split(start)
            self.assertNotIn("Content-Length", head)
            self.assertIn(mark, head)


class Http(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server()
        cls.addClassCleanup(cls.server.end)

    def test_keep_alive(self):
        connection = self.server.connect()
        sockets = set()
        for _ in range(5):
            connection.request("GET", "/live/1")
            self.assertTrue(is_whole(connection.getresponse().read()))
            sockets.add(id(connection.sock))
        self.assertEqual(len(sockets), 1)
        connection.close()
        # Requests that share a packet are answered in their order.
        last = GET.replace("live/1", "live/77").replace("Host", "Connection: close\r\nHost")
        answer = self.server.raw(GET + GET + last)
        self.assertEqual(re.findall(rb"HTTP/1\.1 (\d+)", answer), [b"200", b"200", b"506"])
        self.assertIn(b"Connection: close", self.server.raw("GET /live/1 HTTP/1.0\r\n\r\n"))

    def test_targets_as_viewers_send_them(self):
        for target in ("/live/1/a b:c d?live-special0160x0120050", "http://host:1/live/1?live-special0160x0120050"):
            answer = self.server.raw("GET %s HTTP/1.1\r\nConnection: close\r\n\r\n" % target)
            self.assertEqual(jpeg_size(split(answer)[1]), (160, 120))

    def test_methods(self):
        status, headers, body = self.server.get("/live/1", method="HEAD")
        self.assertEqual((status, body), (200, b""))
        self.assertGreater(int(headers["Content-Length"]), 1000)
        status, headers, _ = self.server.get("/live/1", method="POST")
        self.assertEqual((status, headers["Allow"]), (405, "GET, HEAD"))
        # A body is read and not mistaken for the next request.
        answer = self.server.raw("POST / HTTP/1.1\r\nContent-Length: %d\r\n\r\n" % len(GET) + GET +
                                 "GET /live/99 HTTP/1.0\r\n\r\n")
        self.assertEqual(re.findall(rb"HTTP/1\.1 (\d+)", answer), [b"405", b"506"])

    def test_bad_requests(self):
        for request, status in (("hello\r\n\r\n", 400), ("GET /live/1\r\n\r\n", 400), ("GET x HTTP/1.1\r\n\r\n", 400),
                                ("GET / HTTP/2.0\r\n\r\n", 505), ("GET /\x01 HTTP/1.1\r\n\r\n", 400),
                                ("GET / HTTP/1.1\r\nno colon\r\n\r\n", 400), ("\x00\xff\r\n\r\n", 400),
                                ("GET / HTTP/1.1\r\nContent-Length: -1\r\n\r\n", 400),
                                ("GET / HTTP/1.1\r\nContent-Length: 99999999999999999999\r\n\r\n", 413),
                                ("GET / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n", 501),
                                ("GET / HTTP/1.1\r\n" + "A: b\r\n" * 101 + "\r\n", 431),
                                ("GET /" + "x" * 70000, 431)):
            head, _ = split(self.server.raw(request))
            self.assertTrue(head.startswith("HTTP/1.1 %d " % status), (request[:40], head[:40]))


class Crowds(unittest.TestCase):
    def test_slow_clients_slow_nobody(self):
        with Server("--cameras", "5", "--fault", "1=trickle:1000", "--fault", "2=never", "--fault", "3=endless") as server:
            def median_time():
                times = []
                connection = server.connect()
                for _ in range(25):
                    start = time.monotonic()
                    connection.request("GET", "/live/5")
                    connection.getresponse().read()
                    times.append(time.monotonic() - start)
                    time.sleep(0.01)
                connection.close()
                return sorted(times)[len(times) // 2]

            alone = median_time()
            # Two that get a byte a second, two without answer, two that read nothing of a body without end, two that
            # never finish their request.
            slow = [server.open(GET.replace("live/1", "live/%d" % camera)) for camera in (1, 1, 2, 2, 3, 3)]
            slow += [server.open("GET /live/5 HT") for _ in range(2)]
            time.sleep(0.2)
            beside = median_time()
            self.assertLess(beside, alone * 5 + 0.03)
            status, seconds = server.end()
            self.assertEqual(status, 0)
            self.assertLess(seconds, 2)
            for link in slow:
                link.close()

    def test_many_clients_at_once(self):
        with Server() as server:
            def watch(results):
                results.append(all(is_whole(server.get("/live/%d" % (i % 4 + 1))[2]) for i in range(10)))

            results = []
            threads = [threading.Thread(target=watch, args=(results,)) for _ in range(16)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            self.assertEqual(results, [True] * 16)

    def test_too_many_clients(self):
        with Server() as server:
            links = [server.open(b"") for _ in range(256)]
            self.assertIn("503", split(server.raw(GET))[0])
            for link in links:
                link.close()
            deadline = time.monotonic() + TIMEOUT
            while server.get("/live/1")[0] != 200 and time.monotonic() < deadline:
                time.sleep(0.05)
            self.assertEqual(server.get("/live/1")[0], 200)


class Program(unittest.TestCase):
    def test_clean_end(self):
        for how in (signal.SIGTERM, signal.SIGINT):
            server = Server()
            with server.open(GET) as link:
                link.recv(1)
                self.assertEqual(server.end(how)[0], 0)

    def test_exit_status_tells(self):
        def run(*options):
            result = subprocess.run([PROGRAM, *options], capture_output=True, text=True, timeout=TIMEOUT)
            return result.returncode, result.stdout, result.stderr

        status, help_text, _ = run("--help")
        self.assertEqual(status, 0)
        self.assertIn("--fault", help_text)
        with Server() as server:
            status, output, message = run("--port", str(server.port))
            self.assertEqual((status, output), (1, ""))
            self.assertIn("Address already in use", message)
        self.assertEqual(run("--port", "0", "--listen", "nowhere")[0], 1)
        for options in (("--fault", "1=bogus"), ("--auth", "basic"), ("--size", "1x1"), ("--name", "a\r\nb"),
                        ("--recording", "maybe"), ("--auth", "digest", "--user", "a"), ("word",)):
            status, output, message = run(*options)
            self.assertEqual((status, output), (2, ""), options)
            self.assertIn("orbelcast-camera-server: ", message)


if __name__ == "__main__":
    unittest.main(verbosity=1)
