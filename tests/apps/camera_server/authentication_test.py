#!/usr/bin/env python3
"""Who is let in: authentication_test.py SERVER_PROGRAM"""

import base64
import hashlib
import re
import time
import unittest
import urllib.request

from camera_server import Server, TIMEOUT, is_whole, split


class Authentication(unittest.TestCase):
    USERS = ("--user", "ann", "--password", "se cret:", "--user", "bob", "--password", "")

    def test_basic(self):
        with Server("--auth", "basic", *self.USERS) as server:
            def status(login):
                header = "Basic " + base64.b64encode(login.encode()).decode()
                return server.get("/live/1", {"Authorization": header})[0]

            code, headers, _ = server.get("/live/1")
            self.assertEqual(code, 401)
            self.assertTrue(headers["WWW-Authenticate"].startswith('Basic realm="'))
            self.assertEqual(status("ann:se cret:"), 200)
            self.assertEqual(status("bob:"), 200)
            for wrong in ("ann:", "ann:se cret", "bob:se cret:", "ann", "", ":"):
                self.assertEqual(status(wrong), 401, wrong)
            for wrong in ("Basic", "Basic ", "Basic =", "Basic ====", "Basic %%%%", "Bearer YW5u"):
                self.assertEqual(server.get("/live/1", {"Authorization": wrong})[0], 401, wrong)
            self.assertEqual(server.get("/")[0], 401)
            # The login of a live address counts as well; it goes out as typed.
            request = "GET /live/1/%s?live-special0160x0120050 HTTP/1.1\r\nConnection: close\r\n\r\n"
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
            self.assertEqual((challenge["qop"], challenge["algorithm"]), ("auth", "MD5"))
            uri = "/live/1?live-special0160x0120050"
            self.assertEqual(server.get(uri, credentials(challenge, 1, uri))[0], 200)
            self.assertEqual(server.get(uri, credentials(challenge, 3, uri))[0], 200)
            self.assertEqual(server.get(uri, credentials(challenge, 2, uri))[0], 200)  # overtaken on the way
            self.assertEqual(server.get(uri, credentials(challenge, 900, uri))[0], 200)

            code, headers, _ = server.get(uri, credentials(challenge, 3, uri))  # a count that served already
            self.assertEqual((code, challenge_of(headers).get("stale")), (401, "true"))
            forged = "%016x" % int(time.time() * 1e6) + "0" * 32
            code, headers, _ = server.get(uri, credentials(challenge, 1, uri, nonce=forged))
            self.assertEqual((code, challenge_of(headers).get("stale")), (401, "true"))
            code, headers, _ = server.get(uri, credentials(challenge, 901, uri, password="wrong"))
            self.assertEqual((code, challenge_of(headers).get("stale")), (401, None))
            self.assertEqual(server.get(uri, credentials(challenge, 902, uri, user="eve"))[0], 401)
            self.assertEqual(server.get("/live/2", credentials(challenge, 903, uri))[0], 400)
            for wrong in ("Digest", "Digest ,,,", 'Digest username="', 'Digest nc=00000001, qop=auth, cnonce="\\'):
                self.assertEqual(server.get(uri, {"Authorization": wrong})[0], 401, wrong)
            # A client that we did not write.
            passwords = urllib.request.HTTPPasswordMgrWithDefaultRealm()
            passwords.add_password(None, "http://127.0.0.1:%d/" % server.port, "ann", "se cret:")
            opener = urllib.request.build_opener(urllib.request.HTTPDigestAuthHandler(passwords))
            with opener.open("http://127.0.0.1:%d/live/1" % server.port, timeout=TIMEOUT) as answer:
                self.assertTrue(is_whole(answer.read()))


if __name__ == "__main__":
    unittest.main(verbosity=1)
