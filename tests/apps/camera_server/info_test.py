#!/usr/bin/env python3
"""The information text and the relay lookup: info_test.py SERVER_PROGRAM"""

import base64
import unittest

from camera_server import Server, split

INFO = "/secure/srv_vigilbox$rdxviewer"
LOOKUP = "/cgi-bin/relaypost.exe?op=rdxviewer&account="


def lines_of(server, headers=None):
    status, _, body = server.get(INFO, headers)
    assert status == 200, status
    return body.decode().split("\r\n")


def values(lines, key):
    return [line[len(key):] for line in lines if line.startswith(key)]


class Information(unittest.TestCase):
    def test_what_it_says_unasked(self):
        with Server() as server:
            lines = lines_of(server)
            self.assertEqual((lines[0], lines[-1]), ("RDXVIEWER", ""))
            self.assertEqual(lines.count(""), 1)
            for key, count in (("CAM:", 4), ("ALT:", 3), ("HWI:", 2), ("HWO:", 3)):
                items = [value.split("\t") for value in values(lines, key)]
                self.assertEqual([item[0] for item in items], [str(i + 1) for i in range(count)], key)
                self.assertEqual({len(item) for item in items}, {3}, key)
            for flag in ("AES:1", "CST:1", "ADM:1"):
                self.assertIn(flag, lines)
            for key in ("SNM:", "SVR:", "SYN:", "CPU:", "RAM:", "AME:", "CPN:", "CPS:", "UPS:"):
                self.assertTrue(values(lines, key)[0], key)
            _, headers, _ = server.get(INFO)
            for name in ("GPS-Lat", "GPS-Lon", "GPS-Alt", "Server", "Date"):
                self.assertTrue(headers[name], name)
            self.assertEqual(headers["RC_QUERY"], "2")

    def test_live_base_is_where_the_client_came(self):
        with Server() as server:
            own = "127.0.0.1:%d" % server.port
            for host, authority in (("cams.example:81", "cams.example:81"), ("[::1]:9", "[::1]:9"), ("a\tb", own),
                                    ("evil/x?", own), ("x" * 262, own), ("a@b", own), ("", own)):
                base = values(lines_of(server, {"Host": host}), "CAM:")[0].split("\t")[2]
                self.assertEqual(base, "http://%s/live/1" % authority, host[:20])
            answer = server.raw("GET %s HTTP/1.0\r\n\r\n" % INFO)  # without any
            self.assertIn(b"http://%s/live/1\r\n" % own.encode(), answer)
            # The address serves that camera.
            self.assertEqual(server.get("/live/1/ann:secret?live-special0160x0120020")[0], 200)

    def test_credentials(self):
        encoded = base64.b64encode(b"ann:se cret").decode()
        for scheme in ("basic", "digest"):  # Basic opens it whatever the scheme of the pictures
            with Server("--auth", scheme, "--user", "ann", "--password", "se cret") as server:
                def status(header):
                    answer = server.raw("GET %s HTTP/1.1\r\nConnection: close\r\n%s\r\n" % (INFO, header))
                    return split(answer)[0].split(" ")[1]

                self.assertEqual(status("Authorization:  Basic %s\r\n" % encoded), "200")
                self.assertEqual(status("Authorization: Basic %s\r\n" % encoded), "200")
                self.assertEqual(status(""), "401")
                self.assertEqual(status("Authorization:  Basic %s\r\n" % base64.b64encode(b"ann:x").decode()), "401")
                self.assertIn("Basic", server.get(INFO)[1]["WWW-Authenticate"])


class RelayLookup(unittest.TestCase):
    def test_accounts(self):
        with Server("--account", "here", "--account", "there=cam.example:8081", "--account", "bare=10.0.0.9") as server:
            def answer(account, host="relay.example"):
                status, _, body = server.get(LOOKUP + account, {"Host": host})
                return status, body

            self.assertEqual(answer("here"), (200, b"http://relay.example/\r\n"))
            self.assertEqual(answer("there"), (200, b"http://cam.example:8081/\r\n"))
            self.assertEqual(answer("bare"), (200, b"http://10.0.0.9/\r\n"))
            for account in ("nobody", "", "here/"):
                self.assertEqual(answer(account)[0], 404, account)
            self.assertEqual(server.get("/cgi-bin/relaypost.exe?op=other&account=here")[0], 400)
        with Server("--auth", "basic", "--user", "a", "--password", "b") as server:  # needs no login
            own = "http://127.0.0.1:%d/\r\n" % server.port
            self.assertEqual(server.get(LOOKUP + "demo")[2].decode(), own)


if __name__ == "__main__":
    unittest.main(verbosity=1)
