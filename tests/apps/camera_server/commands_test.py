#!/usr/bin/env python3
"""A player's commands and what it is told: outputs, alerts, messages, the activity log, the information, the relay lookup.
commands_test.py SERVER_PROGRAM"""

import re
import unittest

from camera_server import INFO, Server, command

LOOKUP = "/cgi-bin/relaypost.exe?op=rdxviewer&account="


def values(server, key, headers=None):
    """Of the information's lines that begin with `key`, the fields behind it."""
    lines = server.get(INFO, headers)[2].decode().split("\r\n")
    return [line[len(key):].split("\t") for line in lines if line.startswith(key)]


def states(server, key):
    return [value[2] for value in values(server, key)]


def log(server):
    """The activity log's lines without date and time; the lines of this program's own look at the server left out."""
    lines = command(server, "activitylogfile")[1].split("\r\n")
    assert (lines[0], lines[-1]) == ("Date,Time,Address,User,Event,Detail", ""), lines
    entries = [re.fullmatch(r"\d{4}-\d\d-\d\d,\d\d:\d\d:\d\d,127\.0\.0\.1,(.*)", line)[1] for line in lines[1:-1]]
    return [entry for entry in entries if entry != ",Login,"]


class Switches(unittest.TestCase):
    def test_outputs_and_alerts(self):
        with Server() as server:
            self.assertEqual(states(server, "HWO:"), ["1", "0", "0"])
            self.assertEqual([command(server, "output=" + text)[0] for text in ("3+1", "1+0")], [200, 200])
            self.assertEqual(states(server, "HWO:"), ["0", "0", "1"])
            for wrong, status in (("0+1", 404), ("99999999999999999999+1", 404), ("2", 400), ("2 +1", 404)):
                self.assertEqual(command(server, "output=" + wrong)[0], status, wrong)
            self.assertEqual(states(server, "HWO:"), ["0", "0", "1"])
            self.assertEqual(log(server)[1:4],
                             ["ann,Output,Siren: on", "ann,Output,Porch light: off", "ann,Output,there is none '0'"])

            self.assertEqual(command(server, "activatealert=2")[0], 200)
            self.assertEqual(states(server, "ALT:"), ["0", "1", "0"])
            self.assertEqual(command(server, "activatealert=4")[0], 404)
            self.assertIn("ann,Alert,Burglar", log(server))

    def test_steering_is_asked_for_by_the_machines_own_name(self):
        with Server() as server:
            for host, status in (("localhost:1", 200), ("[::1]", 200), ("127.evil.example", 403), ("a.org:80", 403)):
                self.assertEqual(server.get("/control/input", {"Host": host})[0], status, host)


class Log(unittest.TestCase):
    def test_what_is_recorded(self):
        with Server("--auth", "basic", "--user", "ann", "--password", "secret") as server:
            for _ in range(3):  # a stream is one event
                server.get("/live/1/ann:secret?live-special0160x0120020")
            for target in ("/live/2/ann:secret", "/live/1/ann:wrong", "/live/1/ann:wrong"):
                server.get(target)
            server.get(INFO, {"Authorization": "Basic YW5uOndyb25n"})
            server.get(INFO)  # nobody tried anything
            for move in "TFFRF":
                command(server, "img?Device=2&%s=0" % move)
            self.assertEqual(log(server), [
                "ann,Live,Lime Street", "ann,Live,Mill Lane", "ann,Refused,live picture (2 times)",
                "ann,Refused,information", "ann,Login,", "ann,Archive,Mill Lane: first picture",
                "ann,Archive,Mill Lane: play", "ann,Archive,Mill Lane: play backwards", "ann,Archive,Mill Lane: play"])

    def test_length_is_bounded(self):
        with Server() as server:
            request = "GET /$openlogin/a,b%s/p/srv_vigilbox$message?msg=%d HTTP/1.1\r\n\r\n"
            server.raw("".join(request % ("c" * 100, i) for i in range(1100)) + "GET / HTTP/1.0\r\n\r\n")
            lines = log(server)
            self.assertEqual(len(lines), 1000)
            self.assertEqual(lines[-2], "a;b%s...,Message,1099" % ("c" * 61))


class Addresses(unittest.TestCase):
    def test_live_base_is_where_the_client_came(self):
        with Server() as server:
            own = "127.0.0.1:%d" % server.port
            for host, authority in (("cams.example:81", "cams.example:81"), ("[::1]:9", "[::1]:9"), ("a\tb", own),
                                    ("evil/x?", own), ("x" * 262, own), ("a@b", own), ("", own)):
                base = values(server, "CAM:", {"Host": host})[0][2]
                self.assertEqual(base, "http://%s/live/1" % authority, host[:20])

    def test_relay_lookup(self):
        # It needs no login.
        with Server("--account", "here", "--account", "there=cam.example:8081", "--auth", "basic", "--user", "a",
                    "--password", "b") as server:
            for account, answer in (("here", (200, b"http://relay.example/\r\n")), ("nobody", (404, None)),
                                    ("there", (200, b"http://cam.example:8081/\r\n")), ("here/", (404, None))):
                status, _, body = server.get(LOOKUP + account, {"Host": "relay.example"})
                self.assertEqual((status, body if status == 200 else None), answer, account)


if __name__ == "__main__":
    unittest.main(verbosity=1)
