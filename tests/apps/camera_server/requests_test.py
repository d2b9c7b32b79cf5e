#!/usr/bin/env python3
"""Requests as bytes and what is kept of them, misbehaviour on request, many clients:
requests_test.py SERVER_PROGRAM"""

import json
import re
import signal
import tempfile
import time
import unittest

from camera_server import GET, Server, TIMEOUT, is_whole, jpeg_size, split

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
        asked = ("GET %s HTTP/1.0" % LOGIN, ["Host: h", "Authorization:  Basic YTpi"]), ("no request\xff", ["at all"])
        with tempfile.NamedTemporaryFile() as log, Server("--log-passwords", "--log", log.name) as server:
            for line, headers in asked:
                server.raw("\r\n".join([line, *headers]) + "\r\n\r\n")
            entries = list(map(json.loads, log))
            self.assertEqual(tuple((entry["request"], entry["headers"]) for entry in entries), asked)
            self.assertEqual([entry["connection"] for entry in entries], [1, 2])
            self.assertEqual(tuple(server.asked()), asked)

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
            # Two that get a byte a second, two without answer, two that read nothing of a body without end, two that
            # never finish their request.
            slow = [server.open(GET.replace("live/1", "live/%d" % camera)) for camera in (1, 1, 2, 2, 3, 3)]
            slow += [server.open("GET /live/4 HT") for _ in range(2)]
            time.sleep(0.2)
            start = time.monotonic()
            for _ in range(25):
                self.assertEqual(server.get("/live/4")[0], 200)
            self.assertLess(time.monotonic() - start, 5)
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


class Faults(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server("--cameras", "2", "--fault", "2=status:503")
        cls.addClassCleanup(cls.server.end)

    def seen(self, fault):
        """The head, the length that it promises, and the body."""
        self.server.fault(1, fault)
        head, body = split(self.server.raw(GET.replace("Host", "Connection: close\r\nHost")))
        return head, int(re.search(r"Content-Length: (\d+)", head)[1]), body

    def test_planning(self):
        self.assertEqual(self.server.get("/live/2")[0], 503)
        self.server.fault("all", "none")
        self.assertEqual(self.server.get("/live/2")[0], 200)
        self.server.fault(1, "status:418@3")
        self.assertEqual([self.server.get("/live/1")[0] for _ in range(6)], [200, 200, 418, 200, 200, 418])
        self.server.fault(1, "status:404*2")
        self.assertEqual([self.server.get("/live/1")[0] for _ in range(3)], [404, 404, 200])
        self.server.fault(2, "cut:7*5")
        self.server.raw(GET.replace("live/1", "live/2"))
        self.assertEqual(self.server.get("/control/fault")[2],
                         b"1=none\r\n2=cut:7*4\r\ninfo=none\r\ncommand=none\r\nrelay=none\r\n")
        for query in ("camera=3&fault=none", "camera=1&fault=reset:1", "camera=1", "camera=1&fault=status:200*2@3"):
            self.assertEqual(self.server.get("/control/fault?" + query)[0], 400, query)

    def test_each_fault(self):
        _, length, body = self.seen("jpegcut")
        self.assertEqual((length, body[:2], is_whole(body)), (len(body), b"\xff\xd8", False))
        head, length, body = self.seen("junkbody")
        self.assertEqual((head[9:12], length, b"\xff\xd8" in body), ("200", len(body), False))
        self.assertEqual(jpeg_size(self.seen("huge")[2]), (65535, 65535))
        head, _, body = self.seen("headers:5000")
        self.assertEqual((head.count("\r\nX-Filler-"), is_whole(body)), (5000, True))
        _, length, body = self.seen("cut")
        self.assertEqual(len(body), length // 2)
        self.server.fault(1, "reset")
        with self.assertRaises(ConnectionResetError):
            self.server.raw(GET)
        self.server.fault(1, "garbage")
        garbage = self.server.raw(GET)
        self.assertEqual((len(garbage), b"HTTP" in garbage), (512, False))


if __name__ == "__main__":
    unittest.main(verbosity=1)
