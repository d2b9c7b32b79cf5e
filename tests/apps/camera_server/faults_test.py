#!/usr/bin/env python3
"""Misbehaviour on request: faults_test.py SERVER_PROGRAM"""

import unittest

from camera_server import GET, Server, is_whole, jpeg_size, length_in, split


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
        self.assertEqual(self.server.get("/control/fault")[2].split(), [b"1=none", b"2=cut:7*4", b"info=none", b"command=none", b"relay=none"])
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


if __name__ == "__main__":
    unittest.main(verbosity=1)
