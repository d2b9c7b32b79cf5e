#!/usr/bin/env python3
"""Misbehaviour on request: faults_test.py SERVER_PROGRAM"""

import re
import unittest

from camera_server import GET, Server, is_whole, jpeg_size, split


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
