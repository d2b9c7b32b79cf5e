#!/usr/bin/env python3
"""Requests as bytes, many clients, the program itself: program_test.py SERVER_PROGRAM"""

import re
import signal
import subprocess
import time
import unittest

from camera_server import GET, PROGRAM, Server, TIMEOUT, is_whole, jpeg_size, split


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
