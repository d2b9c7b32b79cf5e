#!/usr/bin/env python3
"""What was asked, byte for byte: requests_test.py SERVER_PROGRAM"""

import json
import os
import tempfile
import unittest

from camera_server import Server

LOGIN = "/$openlogin/a b/p\xe9/ss?w/srv_vigilbox$message?msg=x y&Send=Send+Message"


class Requests(unittest.TestCase):
    def test_bytes_as_they_came(self):
        with Server("--log-passwords") as server:
            server.raw("GET %s HTTP/1.1\r\nHost: h\r\nAuthorization:  Basic YTpi\r\nConnection: close\r\n\r\n" % LOGIN)
            server.raw("no request\xff\r\nat all\r\n\r\n")
            self.assertEqual(server.asked(clear=True), [
                ("GET %s HTTP/1.1" % LOGIN, ["Host: h", "Authorization:  Basic YTpi", "Connection: close"]),
                ("no request\xff", ["at all"])])
            self.assertEqual(server.asked(), [])

    def test_passwords_are_masked(self):
        with Server("--auth", "basic", "--user", "ann", "--password", "s3cret") as server:
            def shown(target, header="X: y"):
                server.raw("GET %s HTTP/1.1\r\n%s\r\nConnection: close\r\n\r\n" % (target, header))
                line, headers = server.asked(clear=True)[0]
                return line[len("GET "):-len(" HTTP/1.1")], headers[0]

            self.assertEqual(shown(LOGIN)[0], "/$openlogin/a b/***/srv_vigilbox$message?msg=x y&Send=Send+Message")
            self.assertEqual(shown("/$openlogin/ann/secret")[0], "/$openlogin/ann/***")
            self.assertEqual(shown("/live/1?live-special0160x0120020")[0], "/live/1?live-special0160x0120020")
            self.assertEqual(shown("/?user=ann&pwd=secret")[0], "/?user=ann&pwd=***")
            self.assertEqual(shown("/", "authorization:  Basic c2VjcmV0")[1], "authorization:  Basic ***")
            self.assertEqual(shown("/", "Authorization:c2VjcmV0")[1], "Authorization:***")
            self.assertEqual(shown("/s3%63ret", "Referer: http://h/s3cret"), ("/***", "Referer: http://h/***"))

    def test_file(self):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "requests")
            with Server("--log", file) as server:
                server.raw("GET /live/99 HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n")
                server.raw("GET /else HTTP/1.0\r\n\r\n")
                with open(file) as log:
                    entries = [json.loads(line) for line in log]
            self.assertEqual([entry["request"] for entry in entries], ["GET /live/99 HTTP/1.1", "GET /else HTTP/1.0"])
            self.assertEqual([entry["connection"] for entry in entries], [1, 2])
            self.assertEqual(entries[0]["client"], "127.0.0.1")
            self.assertRegex(entries[0]["time"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}$")

    def test_memory_is_bounded(self):
        with Server() as server:
            server.raw("GET /first HTTP/1.1\r\n\r\n" * 5 + "GET /x HTTP/1.1\r\n\r\n" * 995 +
                       "GET /last HTTP/1.0\r\n\r\n" * 1)
            lines = [line for line, _ in server.asked(clear=True)]
            self.assertEqual((len(lines), lines[0], lines[3], lines[4]),
                             (1000, "GET /first HTTP/1.1", "GET /first HTTP/1.1", "GET /x HTTP/1.1"))
            for _ in range(80):
                server.raw("GET /%s HTTP/1.0\r\n\r\n" % ("x" * 60000))
            self.assertLess(len(server.asked()), 75)


if __name__ == "__main__":
    unittest.main(verbosity=1)
