#!/usr/bin/env python3
"""Live pictures and those of the archive: pictures_test.py SERVER_PROGRAM"""

import time
import unittest

from camera_server import Server, is_whole, jpeg_size

CODE = "?live-special0160x0120050"
DAY = 24 * 3600
NOTHING = ("0",) * 6


class Live(unittest.TestCase):
    def test_sizes_and_qualities(self):
        with Server("--size", "320x240", "--quality", "70") as server:
            def picture(target):
                status, _, body = server.get(target)
                self.assertEqual((status, is_whole(body)), (200, True), target)
                return body

            for target, size in (("/live/2?live-special0160x0120020", (160, 120)),
                                 ("/live/1/me:secret?live-special1280x0720080", (1280, 720)),
                                 ("/live/1/me:pass?word?live-special0176x0144020", (176, 144)),
                                 ("/live/3?width=200&height=90&quality=50", (200, 90)),
                                 # A value beyond the bounds gets the nearest, one that cannot be read the default.
                                 ("/live/3?height=100", (320, 100)), ("/live/1?live-special0000x9999090", (16, 2160)),
                                 ("/live/1?width=99999999999&height=-3", (320, 240))):
                self.assertEqual(jpeg_size(picture(target)), size, target)
            low, high = (len(picture("/live/1?live-special0320x0240%03d" % quality)) for quality in (20, 90))
            self.assertLess(low * 1.5, high)

    def test_cameras_differ_and_move(self):
        with Server("--cameras", "2") as server:
            first = server.get("/live/1")[2]
            self.assertNotEqual(first, server.get("/live/2")[2])
            time.sleep(0.12)
            self.assertNotEqual(first, server.get("/live/1")[2])
            for camera in ("3", "0", "", "x", "99999999999999999999"):
                self.assertEqual(server.get("/live/" + camera)[0], 506, camera)

    def test_page_with_and_without_a_gateway(self):
        name = ("--cameras", "1", "--name", 'A"<b>')
        with Server(*name) as plain, Server(*name, "--gateway", "http://gate:8091") as server:
            self.assertIn(b'<img src="/live/1?', plain.get("/")[2])
            self.assertNotIn(b"video-server-push url", plain.get("/")[2])
            for host, url in (("yard:81", "yard:81"), ('"><script>', "127.0.0.1:%d" % server.port)):
                page = server.get("/", {"Host": host})[2].decode()
                self.assertIn('<script type="module" src="http://gate:8091/orbelcast.js"></script>', page)
                self.assertIn('<video-server-push url="http://%s/live/1" ' % url, page)
                self.assertNotIn("<b>", page)
                self.assertNotIn("<img", page)


def query(flag, moment=NOTHING, device="1", login="ann/pw"):
    """A player's request: two question marks, the picture code behind "Quality="."""
    time_items = "Year=%s&Month=%s&Day=%s&Hour=%s&Minute=%s&Second=%s" % tuple(moment)
    return "/$openlogin/%s/srv_vigilbox$img?Device=%s&%s&%s=0&Quality=%s" % (login, device, time_items, flag, CODE)


def seconds(code):
    return int(time.mktime(time.strptime(code, "%Y%m%d%H%M%S")))


class Archive(unittest.TestCase):
    def setUp(self):
        self.server = Server("--archive-hours", "48")  # so that yesterday's noon is in it at any time of day
        self.addCleanup(self.server.end)

    def move(self, *arguments, **options):
        """The time of the picture that is shown then, in seconds since 1970."""
        status, headers, body = self.server.get(query(*arguments, **options))
        self.assertEqual((status, is_whole(body)), (200, True), body[:80])
        return seconds(headers["RC_TCR"])

    def at(self, ago):
        return time.strftime("%Y %m %d %H %M %S", time.localtime(time.time() - ago)).split()

    def assert_ago(self, code, ago):
        self.assertLess(abs(time.time() - ago - code), 3)

    def test_ends_and_steps(self):
        last = self.move("B")
        self.assert_ago(last, 0)
        self.assertEqual([self.move(flag) - last for flag in "RRRF"], [-1, -2, -3, -2])
        self.assert_ago(self.move("T"), 2 * DAY)
        self.assert_ago(self.move("R"), 2 * DAY)  # it stays at the end

    def test_position(self):
        typed = self.at(3 * 3600)
        wanted = seconds("".join(typed))
        self.assertEqual([self.move("P", typed), self.move("F")], [wanted, wanted + 1])
        # Before and after what there is: the nearest.
        self.assert_ago(self.move("P", self.at(3 * DAY)), 2 * DAY)
        self.assert_ago(self.move("P", ["9999"] + ["99"] * 5), 0)
        self.assert_ago(self.move("P", ("1", "1", "1", "0", "0", "0")), 2 * DAY)


if __name__ == "__main__":
    unittest.main(verbosity=1)
