#!/usr/bin/env python3
"""Live pictures and their headers: pictures_test.py SERVER_PROGRAM"""

import os
import tempfile
import time
import unittest

from camera_server import GET, Server, TIMEOUT, is_whole, jpeg_size, quantizer


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
                # The one before counts until the server has seen its connection's end.
                deadline = time.monotonic() + TIMEOUT
                while (status := server.get("/live/1")[1]["HolmvaneStatus"]) != "Lime Street: 3 viewers":
                    self.assertLess(time.monotonic(), deadline, status)

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


if __name__ == "__main__":
    unittest.main(verbosity=1)
