#!/usr/bin/env python3
"""What stands behind a login base: outputs, alerts, messages, the activity log. commands_test.py SERVER_PROGRAM"""

import re
import unittest

from camera_server import Server, split
from info_test import INFO, lines_of, values


def command(server, text, login="ann/secret"):
    """Status and body of a command, its bytes sent as they are."""
    head, body = split(server.raw("GET /$openlogin/%s/srv_vigilbox$%s HTTP/1.1\r\nConnection: close\r\n\r\n"
                                  % (login, text)))
    return int(head.split(" ")[1]), body.decode("latin-1")


def states(server, key):
    return [value.split("\t")[2] for value in values(lines_of(server), key)]


def log(server, login="ann/secret"):
    """The activity log's lines without date and time; the lines of this program's own look at the server left out."""
    status, text = command(server, "activitylogfile", login)
    assert status == 200, text
    lines = text.split("\r\n")
    assert (lines[0], lines[-1]) == ("Date,Time,Address,User,Event,Detail", ""), lines
    entries = [line.split(",", 3) for line in lines[1:-1]]
    for date, time, address, _ in entries:
        assert re.fullmatch(r"\d{4}-\d\d-\d\d", date) and re.fullmatch(r"\d\d:\d\d:\d\d", time), (date, time)
        assert address == "127.0.0.1", address
    return [entry[3] for entry in entries if entry[3] != ",Login,"]


class Switches(unittest.TestCase):
    def test_outputs(self):
        with Server() as server:
            self.assertEqual(states(server, "HWO:"), ["1", "0", "0"])
            self.assertEqual(command(server, "output=3+1")[0], 200)
            self.assertEqual(command(server, "output=1+0")[0], 200)
            self.assertEqual(states(server, "HWO:"), ["0", "0", "1"])
            self.assertIn("Siren</span><b class=\"on\">on", server.get("/")[2].decode())
            for wrong, status in (("0+1", 404), ("4+1", 404), ("99999999999999999999+1", 404), ("-1+1", 404), ("2", 400),
                                  ("2+2", 400), ("+1", 404), ("", 400), ("2 +1", 404)):
                self.assertEqual(command(server, "output=" + wrong)[0], status, wrong)
            self.assertEqual(states(server, "HWO:"), ["0", "0", "1"])
            self.assertEqual(log(server)[:4], ["ann,Login,", "ann,Output,Siren: on", "ann,Output,Porch light: off",
                                               "ann,Output,there is none '0'"])

    def test_steering_is_asked_for_by_the_machines_own_name(self):
        with Server() as server:
            for host, status in (("localhost:1", 200), ("[::1]", 200), ("127.evil.example", 403), ("example.org:80", 403)):
                request = "GET /control/input HTTP/1.1\r\nHost: %s\r\nConnection: close\r\n\r\n" % host
                self.assertIn(b" %d " % status, server.raw(request)[:15])

    def test_alerts(self):
        with Server() as server:
            self.assertEqual(states(server, "ALT:"), ["0", "0", "0"])
            self.assertEqual(command(server, "activatealert=2")[0], 200)
            self.assertEqual(states(server, "ALT:"), ["0", "1", "0"])
            self.assertIn("Burglar</span><b class=\"alarm\">active", server.get("/")[2].decode())
            for wrong in ("0", "4", "", "2x", "-2"):
                self.assertEqual(command(server, "activatealert=" + wrong)[0], 404, wrong)
            self.assertIn("ann,Alert,Burglar", log(server))


class Logins(unittest.TestCase):
    def test_names_and_passwords_of_any_bytes(self):
        users = [("a b", "c?d"), ("j\xf6rg", "x&y=z"), ("x/y", "sl/ash"), ("empty", "")]
        options = [word for name, password in users
                   for word in (b"--user", name.encode("latin-1"), b"--password", password.encode("latin-1"))]
        with Server("--auth", "basic", *options) as server:
            for name, password in users:
                self.assertEqual(command(server, "output=1+1", name + "/" + password)[0], 200, name)
            for wrong in ("a b/c", "a b/c?d/", "j\xf6rg/", "empty/x", "/", "", "a b:c?d", "x/y/sl"):
                self.assertEqual(command(server, "output=1+0", wrong)[0], 401, wrong)
            self.assertEqual(command(server, "img?Device=1&T=0", "empty/x")[0], 401)
            self.assertEqual([server.get("/$openlogin/" + login)[0] for login in ("empty/", "empty/x")], [404, 401])
            text = command(server, "activitylogfile", "empty/")[1]
            self.assertIn(",a b,Refused,command", text)
            for _, password in users[:3]:
                self.assertNotIn(password, text.replace("x/y", ""))


class Log(unittest.TestCase):
    def test_what_is_recorded(self):
        with Server("--auth", "basic", "--user", "ann", "--password", "secret") as server:
            for _ in range(3):  # a stream is one event
                server.get("/live/1/ann:secret?live-special0160x0120020")
            server.get("/live/2/ann:secret")
            server.get("/live/1/ann:wrong")
            server.get("/live/1/ann:wrong")
            server.get(INFO, {"Authorization": "Basic YW5uOndyb25n"})
            server.get(INFO)  # nobody tried anything
            for move in "TFFRF":
                command(server, "img?Device=2&%s=0" % move)
            self.assertEqual(log(server), [
                "ann,Live,Lime Street", "ann,Live,Mill Lane", "ann,Refused,live picture (2 times)",
                "ann,Refused,information", "ann,Login,", "ann,Archive,Mill Lane: first picture",
                "ann,Archive,Mill Lane: play", "ann,Archive,Mill Lane: play backwards", "ann,Archive,Mill Lane: play"])

    def test_messages(self):
        with Server() as server:
            def told(text, end="&Send=Send+Message"):
                self.assertEqual(command(server, "message?msg=" + text + end)[0], 200)
                return log(server)[-1]

            self.assertEqual(told("open the gate, please"), "ann,Message,open the gate, please")
            self.assertEqual(told("a&Send=b & 100%25 j\xf6rg?"), "ann,Message,a&Send=b & 100%25 j\xf6rg?")
            self.assertEqual(told("no end", ""), "ann,Message,no end")
            self.assertEqual(told("x" * 5000), "ann,Message," + "x" * 500 + "...")
            self.assertEqual(command(server, "message?msg=&Send=Send+Message")[0], 400)

    def test_length_is_bounded(self):
        with Server() as server:
            request = "GET /$openlogin/a,b%s/p/srv_vigilbox$message?msg=%d HTTP/1.1\r\n\r\n"
            with server.open("".join(request % ("c" * 100, i) for i in range(1100))) as link:
                link.sendall(b"GET /live/99 HTTP/1.0\r\n\r\n")
                while link.recv(65536):
                    pass
            lines = log(server)
            self.assertEqual(len(lines), 1000)
            self.assertEqual(lines[-2], "a;b%s...,Message,1099" % ("c" * 61))


if __name__ == "__main__":
    unittest.main(verbosity=1)
