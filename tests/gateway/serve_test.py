#!/usr/bin/env python3
"""The gateway's command, over the network: serve_test.py SERVER_PROGRAM ORBELCAST"""

import contextlib
import http.server
import os
import pathlib
import shutil
import signal
import socket
import ssl
import subprocess
import tempfile
import threading
import time
import unittest

from serve import ORBELCAST, TIMEOUT, Gateway, Page, basic, identity  # noqa: I001 (takes the second program's name)
from camera_server import Server, is_whole

PASSWORD = "s3cret-Word"


def private_file(folder, name, text):
    path = pathlib.Path(folder) / name
    path.write_text(text)
    path.chmod(0o600)
    return str(path)


class Serve(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.certificate, cls.key = identity(cls.folder, "own")
        cls.other, cls.other_key = identity(cls.folder, "other")

    def test_https_and_its_users(self):
        tls = ssl.create_default_context(cafile=self.certificate)
        served = [shutil.copy(each, each + "-served") for each in (self.certificate, self.key)]
        users = private_file(self.folder, "users", "user = ann\npassword = one\n\n# a guest\npassword = two\nuser = bob\n")
        with Server("--cameras", "1") as camera, \
                Gateway("--allow", f"127.0.0.1:{camera.port}", "--certificate", served[0], "--key", served[1],
                        "--credentials", users, "--allow-origin", "https://a.example", tls=tls) as gateway:
            self.assertRegex(gateway.address, "^https://")
            statuses = [gateway.get("/", **login)[0] for login in (
                {}, basic("ann", "one"), basic("bob", "two"), basic("ann", "two"), basic("ann", "onE"), basic("", ""))]
            self.assertEqual(statuses, [401, 200, 200, 401, 401, 401])
            self.assertEqual([gateway.open_session(Origin="https://a.example", **login)
                              for login in ({}, basic("ann", "one"))], [401, 101])
            # A client that stops in the middle of a handshake, or speaks no TLS, or an old one, holds up nobody.
            links = [socket.create_connection(("127.0.0.1", gateway.port), TIMEOUT) for _ in range(3)]
            links[0].sendall(b"\x16\x03\x01\x02\x00\x01")
            links[1].sendall(b"GET / HTTP/1.1\r\nHost: a\r\n\r\n")
            self.assertNotIn(b"HTTP", links[1].recv(100))
            old = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
            old.check_hostname, old.verify_mode = False, ssl.CERT_NONE
            old.set_ciphers("DEFAULT@SECLEVEL=0")
            old.minimum_version = old.maximum_version = ssl.TLSVersion.TLSv1_1
            with self.assertRaises(ssl.SSLError):
                old.wrap_socket(links[2])
            with Page(gateway, **basic("bob", "two")) as page:
                page.send("create c VideoServerPush", "place c 9600 7200", "show c", "set c FrameRate 30",
                          f"call c Connect http://127.0.0.1:{camera.port}/live/1?width=1600&height=1200&quality=100")
                # Larger than a record of TLS.
                for _ in range(5):
                    line, picture = page.until("type", "image/jpeg")
                    self.assertTrue(is_whole(picture))
                    self.assertGreater(len(picture), 16 * 1024)
                    page.send(f"painted {line['draw']}")
                # A pair that cannot be used changes nothing; a renewed one is for those who come from then on.
                for certificate, key, told in ((self.certificate, self.key, "stays as it was: the key is not that"),
                                               (self.other, self.other_key, "was read again")):
                    for path, renewed in zip(served, (self.other, key)):
                        shutil.copy(renewed, path)
                    gateway.process.send_signal(signal.SIGHUP)
                    self.assertIn(told, gateway.process.stderr.readline())
                    shown = ssl.get_server_certificate(("127.0.0.1", gateway.port))
                    self.assertEqual(shown, pathlib.Path(certificate).read_text())
                page.until("type", "image/jpeg")
            for link in links:
                link.close()

    def test_what_is_refused_at_the_start(self):
        encrypted = str(pathlib.Path(self.folder) / "encrypted.key")
        subprocess.run(["openssl", "pkcs8", "-topk8", "-in", self.key, "-out", encrypted, "-passout", "pass:" + PASSWORD],
                       check=True)
        login = private_file(self.folder, "login", f"user = ann\npassword = {PASSWORD}\n")
        alone = private_file(self.folder, "alone", f"user = ann\nuser = bob\npassword = {PASSWORD}\n")
        servers = private_file(self.folder, "wrong", f"yard = http://ann:{PASSWORD}@a/b\n")
        allow = ["--allow", "camera"]
        for options, status, message in (
                ([], 2, "--allow and --servers"),
                ([*allow, "--certificate", self.certificate], 2, "--key"),
                ([*allow, "--certificate", self.certificate, "--key", self.other_key], 1, "not that of the certificate"),
                ([*allow, "--certificate", self.certificate, "--key", encrypted], 1, "passphrase"),
                ([*allow, "--certificate", self.key, "--key", self.key], 1, "the certificate cannot be used"),
                ([*allow, "--certificate", "/no/such", "--key", self.key], 2, "cannot read /no/such"),
                ([*allow, "--credentials", login, "--listen", "0.0.0.0"], 2, "--behind-proxy"),
                ([*allow, "--credentials", alone], 2, "line 1: each user is to have a password"),
                (["--servers", servers], 2, "line 1: the address is to end with"),
                (["--servers", login], 2, "line 1: expected 'NAME =")):
            done = subprocess.run([ORBELCAST, "serve", "--port", "0", *options], stdin=subprocess.DEVNULL,
                                  capture_output=True, text=True, timeout=TIMEOUT, check=False)
            self.assertEqual((done.returncode, done.stdout), (status, ""), options)
            self.assertIn(message, done.stderr)
            self.assertNotIn(PASSWORD, done.stderr)
        os.chmod(login, 0o644)
        with Gateway(*allow, "--credentials", login, "--listen", "0.0.0.0", "--behind-proxy") as gateway:
            self.assertEqual(gateway.get("/", **basic("ann", PASSWORD))[0], 200)
        self.assertIn("other users of this machine may read", gateway.errors)

    # ---- Named servers ----

    def assert_hidden(self, text, *addresses):
        for secret in (PASSWORD, *addresses):
            at = text.find(secret)
            self.assertEqual(at, -1, text[max(at - 200, 0):at + 200])

    def test_a_named_server_keeps_its_address_and_login(self):
        for scheme in ("basic", "digest"):
            with self.subTest(scheme), Server("--cameras", "2", "--auth", scheme, "--user", "keeper", "--password",
                                              PASSWORD, "--output", "Lamp=off") as camera:
                address = f"127.0.0.1:{camera.port}"
                servers = private_file(self.folder, "servers", f"Yard = http://keeper:{PASSWORD}@{address}\n")
                with Gateway("--servers", servers) as gateway, Page(gateway) as page:
                    self.assertEqual(gateway.get("/gateway.json")[2], b'{"servers":["yard"]}')
                    page.send("create v VideoServerPush", "place v 9600 7200", "show v",
                              "call v Connect http://yard/live/1")
                    self.assertTrue(is_whole(page.until("type", "image/jpeg")[1]))
                    # The player: the server's information, its cameras, the archive, an output and the log.
                    page.send("create p UserControl1", "place p 12000 9000", "show p",
                              "load p Server=yard Port=80 Start=Yes Device=2 ExtendedControls=Yes")
                    page.until("event", "StreamInfo")
                    page.send("painted v.VideoStream")
                    while page.until("draw", "p.VS.VideoStream")[0].get("type") != "image/jpeg":
                        pass
                    page.send("click p Player(0)", "click p Player(11)")
                    page.until("window", "LogForm")
                    page.send("get p.VS URL", "get v URL", "close LogForm")
                    self.assertRegex(page.until("get", "p.VS.URL")[0]["value"], "^http://yard[:/].*img[?]Device")
                    # Its address is none that pages have a login for.
                    page.send("call v Disconnect", f"call v Connect http://{address}/live/1")
                    page.until("event", "ConnectionFailedV2")
                    self.assertTrue(any("archive" in line or "img?Device" in line for line, _ in camera.asked()))
                told = "".join(page.lines).replace(f"http://{address}/live/1", "the page's own words")
                self.assert_hidden(told + gateway.errors, address)

    def test_a_server_that_repeats_what_it_was_asked_tells_nothing(self):
        asked = []

        class Echo(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                asked.append(self.path)
                told = f"{self.path} {self.headers['Authorization']} {self.headers['Host']} http://{self.headers['Host']}/live/1"
                body = f"RDXVIEWER\r\nSNM:{told}\r\nCAM:1\t{told}\t{told}\r\n\r\n".encode()
                self.send_response(302 if "away" in self.path else 200)
                for name in ("Server", "HolmvaneStatus", "VigilboxInfo", "PlugIns", "RC_TCR", "Date"):
                    self.send_header(name, "1 " + told)
                self.send_header("Location", f"http://127.0.0.1:{other.port}/live/1")
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                with contextlib.suppress(BrokenPipeError):  # who follows the redirect does not wait for it
                    self.wfile.write(body)

            def log_message(self, *_):
                pass

        with Server("--cameras", "1") as other, \
                http.server.ThreadingHTTPServer(("127.0.0.1", 0), Echo) as camera:
            threading.Thread(target=camera.serve_forever, daemon=True).start()
            address = f"127.0.0.1:{camera.server_port}"
            servers = private_file(self.folder, "echo", f"yard = http://keeper:{PASSWORD}@{address}\n")
            with Gateway("--servers", servers) as gateway, Page(gateway) as page:
                page.send("create v VideoServerPush", "show v")
                for url in ("http://yard/live/1/:", "http://YARD:81/$openlogin///srv_vigilbox$x", "http://yard/away"):
                    before = len(asked)
                    page.send(f"call v Connect {url}")
                    end = time.monotonic() + TIMEOUT
                    while len(asked) == before and time.monotonic() < end:
                        time.sleep(0.01)
                page.send("create p UserControl1", "show p", "load p Server=yard Start=Yes ExtendedControls=Yes")
                while not page.until("changed", "p.Player(11).Visible")[0]["value"]:
                    pass
                page.send("click p Player(11)")
                while "***" not in "".join(page.lines):
                    page.receive()
                self.assertIn(f"/live/1/keeper:{PASSWORD}", " ".join(asked))
                self.assertIn(f"/$openlogin/keeper/{PASSWORD}/srv_vigilbox$x", " ".join(asked))
                # A host that is no name goes nowhere.
                for url in ("http://yard@evil/", "http://yard.evil/", "http://x:y@yard/", "http://yard:80:80/"):
                    page.send(f"call v Connect {url}")
                    page.until("event", "ConnectionFailedV2")
            # Names in place of addresses, in events and in texts.
            self.assertIn("http://yard/live/1", "".join(page.lines))
            self.assertIn("***", "".join(page.lines))
            self.assert_hidden("".join(page.lines) + gateway.errors, address, "keeper", basic("keeper", PASSWORD)["Authorization"][6:])
            self.assertEqual([line for line, _ in other.asked() if "/live/" in line], [])
            camera.shutdown()


if __name__ == "__main__":
    unittest.main()
