#!/usr/bin/env python3
"""Moving through the archive by day and time: archive_test.py SERVER_PROGRAM"""

import time
import unittest

from camera_server import Server, is_whole, jpeg_size

CODE = "?live-special0160x0120050"
DAY = 24 * 3600


def query(flag, moment=("0",) * 6, device="1", code=CODE):
    """What a player sends: two question marks, the picture code behind "Quality="."""
    year, month, day, hour, minute, second = moment
    return ("/srv_vigilbox$img?Device=%s&Day=%s&Month=%s&Year=%s&Hour=%s&Minute=%s&Second=%s&%s=0&Quality=%s"
            % (device, day, month, year, hour, minute, second, flag, code))


def seconds(code):
    return int(time.mktime(time.strptime(code, "%Y%m%d%H%M%S")))


class Archive(unittest.TestCase):
    def setUp(self):
        self.server = Server()
        self.addCleanup(self.server.end)

    def move(self, *arguments, login="ann/pw", server=None):
        """The time of the picture that is shown then, in seconds since 1970."""
        status, headers, body = (server or self.server).get("/$openlogin/" + login + query(*arguments))
        self.assertEqual(status, 200, body)
        self.assertTrue(is_whole(body))
        return seconds(headers["RC_TCR"])

    def at(self, ago):
        return time.strftime("%Y %m %d %H %M %S", time.localtime(time.time() - ago)).split()

    def test_ends_and_steps(self):
        last = self.move("B")
        self.assertLess(abs(last - time.time()), 3)
        self.assertEqual([self.move("R") - last for _ in range(3)], [-1, -2, -3])
        self.assertEqual(self.move("F") - last, -2)
        first = self.move("T")
        self.assertLess(abs(first - (time.time() - DAY)), 3)
        self.assertGreater(self.move("F"), first)
        self.move("T")
        self.assertLess(abs(self.move("R") - (time.time() - DAY)), 3)  # it stays at the end
        self.move("B")
        self.assertLess(self.move("F"), time.time() + 1)

    def test_position(self):
        typed = self.at(3 * 3600)
        wanted = seconds("".join(typed))
        self.assertEqual(self.move("P", typed), wanted)
        self.assertEqual(self.move("F"), wanted + 1)
        # Before and after what there is: the nearest.
        self.assertLess(abs(self.move("P", self.at(3 * DAY)) - (time.time() - DAY)), 3)
        self.assertLess(abs(self.move("P", ("9999", "99", "99", "99", "99", "99")) - time.time()), 3)
        self.assertLess(abs(self.move("P", ("1", "1", "1", "0", "0", "0")) - (time.time() - DAY)), 3)

    def test_visitors_and_cameras_have_places_of_their_own(self):
        wanted = self.move("P", self.at(7200))
        self.assertLess(abs(self.move("R", login="bob/pw") - time.time()), 3)  # without a place: from the end
        self.assertLess(abs(self.move("F", ("0",) * 6, "2") - (time.time() - DAY)), 3)  # or from the beginning
        self.assertEqual(self.move("F"), wanted + 1)

    def test_pictures(self):
        server = Server("--archive-hours", "48")  # so that yesterday's noon is in it at any time of day
        self.addCleanup(server.end)

        def picture(hour, code=CODE, device="1"):
            moment = (*self.at(DAY)[:3], hour, "30", "0")
            return server.get("/$openlogin/a/b" + query("P", moment, device, code))

        status, headers, day = picture("12")
        self.assertEqual((status, jpeg_size(day), headers["Content-Type"]), (200, (160, 120), "image/jpeg"))
        self.assertRegex(headers["HolmvaneStatus"], r"^Lime Street: archive of \d{4}-\d\d-\d\d 12:30:00$")
        self.assertEqual(picture("12")[2], day)  # the same picture whenever it is asked for
        self.assertNotEqual(picture("12", device="2")[2], day)
        self.assertEqual(jpeg_size(picture("12", "")[2]), (640, 480))
        self.assertEqual(jpeg_size(picture("12", "?live-special9999x0001999")[2]), (3840, 16))
        for target, status in ((query("P", device="9"), 506), (query("P", device="x"), 506), (query("P", device=""), 506),
                               (query("X"), 400), ("/srv_vigilbox$img?", 400), ("/srv_vigilbox$img?Device=1", 400)):
            self.assertEqual(self.server.get("/$openlogin/a/b" + target)[0], status, target)


if __name__ == "__main__":
    unittest.main(verbosity=1)
