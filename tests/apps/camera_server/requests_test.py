#!/usr/bin/env python3
"""Requests as bytes and what is kept of them, many clients, the program itself: requests_test.py SERVER_PROGRAM"""

import json
import os
import re
import signal
import statistics
import subprocess
import tempfile
import time
import timeit
import unittest

from camera_server import GET, PROGRAM, Server, TIMEOUT, jpeg_size, split

LOGIN = "/$openlogin/a b/p\xe9/ss?w/srv_vigilbox$message?msg=x y&Send=Send+Message"


class Http(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server()
        cls.addClassCleanup(cls.server.end)

    def test_keep_alive(self):
        # Requests that share a packet are answered in their order.
        last = GET.replace("live/1", "live/77").replace("Host", "Connection: close\r\nHost")
        answer = self.server.raw(GET + GET + last)
        self.assertEqual(re.findall(rb"HTTP/1\.1 (\d+)", answer), [b"200", b"200", b"506"])
        self.assertIn(b"Connection: close", self.server.raw("GET /live/1 HTTP/1.0\r\n\r\n"))

    def test_targets_as_viewers_send_them(self):
        for target in ("/live/1/a b:c d?live-special0160x0120050", "http://host:1/live/1?live-special0160x0120050"):
            self.assertEqual(jpeg_size(split(self.server.raw("GET %s HTTP/1.0\r\n\r\n" % target))[1]), (160, 120))

    def test_bad_requests(self):
        for request, status in (("hello\r\n\r\n", 400), ("GET x HTTP/1.1\r\n\r\n", 400), ("\x00\xff\r\n\r\n", 400),
                                ("GET / HTTP/2.0\r\n\r\n", 505), ("GET /\x01 HTTP/1.1\r\n\r\n", 400),
                                ("GET / HTTP/1.1\r\nContent-Length: 99999999999999999999\r\n\r\n", 413),
                                ("GET / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n", 501),
                                ("GET /" + "x" * 70000, 431), ("PUT / HTTP/1.0\r\n\r\n", 405)):
            head, _ = split(self.server.raw(request))
            self.assertTrue(head.startswith("HTTP/1.1 %d " % status), (request[:40], head[:40]))


class Log(unittest.TestCase):
    def test_bytes_as_they_came(self):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "requests")
            with Server("--log-passwords", "--log", file) as server:
                server.raw("GET %s HTTP/1.0\r\nHost: h\r\nAuthorization:  Basic YTpi\r\n\r\n" % LOGIN)
                server.raw("no request\xff\r\nat all\r\n\r\n")
                asked = [("GET %s HTTP/1.0" % LOGIN, ["Host: h", "Authorization:  Basic YTpi"]),
                         ("no request\xff", ["at all"])]
                with open(file) as log:
                    entries = [json.loads(line) for line in log]
                self.assertEqual([(entry["request"], entry["headers"]) for entry in entries], asked)
                self.assertEqual([entry["connection"] for entry in entries], [1, 2])
                self.assertEqual([server.asked("yes"), server.asked()], [asked, []])

    def test_passwords_are_masked(self):
        with Server("--auth", "basic", "--user", "ann", "--password", "s3cret") as server:
            def shown(target, header="X: y"):
                server.raw("GET %s HTTP/1.0\r\n%s\r\n\r\n" % (target, header))
                line, headers = server.asked("yes")[0]
                return line[len("GET "):-len(" HTTP/1.0")], headers[0]

            self.assertEqual(shown(LOGIN)[0], "/$openlogin/a b/***/srv_vigilbox$message?msg=x y&Send=Send+Message")
            self.assertEqual(shown("/", "authorization:  Basic c2VjcmV0")[1], "authorization:  Basic ***")
            self.assertEqual(shown("/s3%63ret", "Referer: http://h/s3cret"), ("/***", "Referer: http://h/***"))

    def test_memory_is_bounded(self):
        with Server() as server:
            server.raw("GET /1 HTTP/1.1\r\n\r\n" * 5 + "GET /x HTTP/1.1\r\n\r\n" * 995 + "GET /last HTTP/1.0\r\n\r\n")
            lines = [line for line, _ in server.asked("yes")]
            self.assertEqual((len(lines), lines[3], lines[4]), (1000, "GET /1 HTTP/1.1", "GET /x HTTP/1.1"))
            for _ in range(80):
                server.raw("GET /%s HTTP/1.0\r\n\r\n" % ("x" * 60000))
            self.assertLess(len(server.asked()), 75)


class Crowds(unittest.TestCase):
    def test_slow_clients_slow_nobody(self):
        with Server("--fault", "1=trickle", "--fault", "2=never", "--fault", "3=endless") as server:
            def median_time():
                return statistics.median(timeit.repeat(lambda: server.get("/live/4"), number=1, repeat=25))

            alone = median_time()
            # Two that get a byte a second, two without answer, two that read nothing of a body without end, two that
            # never finish their request.
            slow = [server.open(GET.replace("live/1", "live/%d" % camera)) for camera in (1, 1, 2, 2, 3, 3)]
            slow += [server.open("GET /live/4 HT") for _ in range(2)]
            time.sleep(0.2)
            self.assertLess(median_time(), alone * 5 + 0.03)
            self.assertLess(server.end(signal.SIGINT), 2)
            for link in slow:
                link.close()

    def test_too_many_clients(self):
        with Server() as server:
            links = [server.open(b"") for _ in range(256)]
            self.assertIn("503", split(server.raw(GET))[0])
            for link in links:
                link.close()
            deadline = time.monotonic() + TIMEOUT
            while server.get("/live/1")[0] != 200:
                self.assertLess(time.monotonic(), deadline)


class Program(unittest.TestCase):
    def test_exit_status_tells(self):
        with Server() as server:
            for options, status in ((("--help",), 0), (("--port", str(server.port)), 1), (("--listen", "nowhere"), 1),
                                    (("--fault", "1=bogus"), 2), (("--name", "a\r\nb"), 2), (("word",), 2)):
                result = subprocess.run([PROGRAM, *options], capture_output=True, text=True, timeout=TIMEOUT)
                output, message = (result.stdout, result.stderr) if status else (result.stderr, result.stdout)
                self.assertEqual((result.returncode, output), (status, ""), options)
                self.assertIn("orbelcast-camera-server", message)


if __name__ == "__main__":
    unittest.main(verbosity=1)
