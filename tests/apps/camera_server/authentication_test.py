#!/usr/bin/env python3
"""The clients that are let in: authentication_test.py SERVER_PROGRAM"""

import base64
import hashlib
import re
import time
import unittest

from camera_server import INFO, Server, command, split


def basic(login):
    return {"Authorization": " Basic " + base64.b64encode(login.encode()).decode()}


class Authentication(unittest.TestCase):
    USERS = ("--user", "ann", "--password", "se cret:", "--user", "bob", "--password", "")

    def test_basic(self):
        with Server("--auth", "basic", *self.USERS) as server:
            good = ("ann:se cret:", "bob:")
            for login in (*good, "ann:", "ann:se cret", "bob:se cret:", "ann", "", ":"):
                status = server.get("/live/1", basic(login))[0]
                self.assertEqual(status, 200 if login in good else 401, login)
            self.assertEqual(server.get("/live/1", {"Authorization": "Basic %%%%"})[0], 401)
            status, headers, _ = server.get("/")
            self.assertEqual((status, headers["WWW-Authenticate"][:13]), (401, 'Basic realm="'))
            # The login of a live address counts as well; it goes out as typed.
            request = "GET /live/1/%s?live-special0160x0120050 HTTP/1.0\r\n\r\n"
            self.assertIn("200 OK", split(server.raw(request % "ann:se cret:"))[0])
            self.assertIn("401 ", split(server.raw(request % "ann:wrong"))[0])

    def test_digest(self):
        def challenge_of(headers):
            return dict(re.findall(r'(\w+)="?([^",]+)"?', headers["WWW-Authenticate"]))

        def md5(text):
            return hashlib.md5(text.encode()).hexdigest()

        def credentials(challenge, count, uri, password="se cret:", user="ann", nonce=None):
            nonce = nonce or challenge["nonce"]
            counter = "%08x" % count
            first = md5("%s:%s:%s" % (user, challenge["realm"], password))
            answer = md5(":".join((first, nonce, counter, "abc", "auth", md5("GET:" + uri))))
            return {"Authorization": 'Digest username="%s", realm="%s", nonce="%s", uri="%s", algorithm=MD5, '
                    'qop=auth, nc=%s, cnonce="abc", response="%s"'
                    % (user, challenge["realm"], nonce, uri, counter, answer)}

        with Server("--auth", "digest", *self.USERS) as server:
            code, headers, _ = server.get("/live/1")
            self.assertEqual(code, 401)
            challenge = challenge_of(headers)
            uri = "/live/1?live-special0160x0120050"
            for count in (1, 3, 2, 900):  # the second was overtaken on the way
                self.assertEqual(server.get(uri, credentials(challenge, count, uri))[0], 200)
            forged = "%d" % (time.time() * 1e6) + "0" * 32
            for wrong, stale in ((credentials(challenge, 3, uri), "true"),  # a count that served already
                                 (credentials(challenge, 1, uri, nonce=forged), "true"),
                                 (credentials(challenge, 901, uri, password="wrong"), None),
                                 (credentials(challenge, 902, uri, user="eve"), None)):
                code, headers, _ = server.get(uri, wrong)
                self.assertEqual((code, challenge_of(headers).get("stale")), (401, stale), wrong)
            self.assertEqual(server.get("/live/2", credentials(challenge, 903, uri))[0], 400)
            # Basic opens the information whatever the scheme.
            self.assertEqual([server.get(INFO, basic("ann:" + word))[0] for word in ("se cret:", "x")], [200, 401])
            self.assertEqual(server.get(uri, {"Authorization": 'Digest nc=1, cnonce="\\'})[0], 401)


class LoginBase(unittest.TestCase):
    def test_names_and_passwords_of_any_bytes(self):
        users = [("a b", "c?d"), ("j\xf6rg", "x&y=z"), ("x/y", "sl/ash"), ("empty", "")]
        options = [word for name, password in users
                   for word in (b"--user", name.encode("latin-1"), b"--password", password.encode("latin-1"))]
        with Server("--auth", "basic", *options) as server:
            for name, password in users:
                self.assertEqual(command(server, "output=1+1", name + "/" + password)[0], 200, name)
            for wrong in ("a b/c", "a b/c?d/", "j\xf6rg/", "empty/x", "/", "", "a b:c?d", "x/y/sl"):
                self.assertEqual(command(server, "output=1+0", wrong)[0], 401, wrong)


if __name__ == "__main__":
    unittest.main(verbosity=1)
