#!/usr/bin/env python3
"""The page elements in a browser, through the gateway: web_test.py SERVER_PROGRAM ORBELCAST"""

import base64
import contextlib
import http.server
import pathlib
import sys
import threading
import time
import unittest

from pages import PLAYER, VIEWER, Gateway, Page, Server, free_port, identity
from player_cases import PlayerPage  # noqa: F401

FIRST_PICTURE = pathlib.Path(__file__).resolve().parents[2] / "examples/first_picture/page.html"


@contextlib.contextmanager
def redirecting_to(address):
    """The port of a server that answers each request with a redirect."""
    class Redirect(http.server.BaseHTTPRequestHandler):
        def do_GET(self):
            self.send_response(302)
            self.send_header("Location", address)
            self.send_header("Content-Length", "0")
            self.end_headers()

        def log_message(self, *_):
            pass

    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), Redirect) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield server.server_port
        server.shutdown()


class ViewerPage(Page):
    def test_viewer(self):
        example = FIRST_PICTURE.read_text().replace("<video-server-push", "<video-server-push id=v")
        self.open(example.replace("http://127.0.0.1:8080/live/1", self.live()))
        self.until("shows('v', 'VideoStream')")
        with self.photographed() as (jpeg, camera, gateway):
            self.open(VIEWER.format(url=self.live(server=camera)), gateway)
            self.assertGreater(self.told("StreamInfo")[2]["BytesPerSecond"], 1000)
            taken = self.promised("{ const bytes = await it('v').GetPictureArray(); "
                                  "return btoa(String.fromCharCode(...bytes)); }")
            self.assertEqual(base64.b64decode(taken), jpeg)
            self.assertEqual(self.promised("{ const it = await window.v.GetPicture(); return [it.width, it.height]; }"),
                             [320, 240])
            self.promised("it('v').SaveImage('now.jpg')")
            self.assertEqual(self.downloaded("now.jpg"), jpeg)
        self.open(VIEWER.format(url=self.live()))
        self.moving()
        # Properties: what a write became, and what another member changes.
        self.js("it('v').FrameRate = 77; it('v').MotionArea_x2 = 40")
        self.until("it('v').FrameRate === 30 && it('v').MotionArea_x2 === 40")
        self.assertEqual(self.js("return it('v').URL"), self.live())
        self.assertIn("error", self.promised("it('v').callMethod('NoSuch', [])"))
        # The newest undertaking holds; its promise resolves when it is over.
        self.promised("it('v').Connect(arguments[0])", self.live(2))
        self.assertEqual(self.js("return it('v').URL"), self.live(2))
        self.promised("it('v').Disconnect()")
        self.told("Disconnected")

    def test_attributes_that_come_late_and_motion(self):
        self.open('<video-server-push id="v"></video-server-push>')
        self.promised("it('v').ready")
        # An address that is withdrawn before anything came of it, and another one.
        self.js("it('v').setAttribute('url', ''); it('v').setAttribute('url', arguments[0])", self.live())
        self.moving()
        self.js("it('v').setAttribute('framerate', '3')")
        self.until("it('v').FrameRate === 3")
        self.js("it('v').setAttribute('framerate', '25'); for (const it of ['motionarea_x2', 'motionarea_y2', "
                "'motionsensivity']) window.v.setAttribute(it, '100'); it('v').toggleAttribute('motiondetector', true)")
        box = self.told("MotionDetected")[2]
        self.assertTrue(all(0 <= box[each] <= 100 for each in ("X1", "Y1", "X2", "Y2")), box)
        self.assertLessEqual(box["Y1"], box["Y2"])
        self.js("it('v').removeAttribute('motiondetector')")
        self.until("it('v').MotionDetector === false")
        self.js("it('v').removeAttribute('url')")
        self.told("Disconnected")
        # A value that a script set before the element was one is the element's, so is an address before its session opens.
        self.js("const early = document.createElement('div').attachShadow({mode: 'open'}).appendChild("
                "new Document().createElementNS('http://www.w3.org/1999/xhtml', 'video-server-push'));"
                "early.FrameRate = 7; early.id = 'late'; early.setAttribute('url', ''); early.setAttribute('url', "
                "arguments[0]); document.body.append(early)", self.live(2))
        self.moving("late")
        self.assertEqual(self.js("return it('late').FrameRate"), 7)

    def test_two_pages_at_one_gateway(self):
        self.open(VIEWER.format(url=self.live()))
        self.moving()
        first = self.browser.current_window_handle
        self.browser.switch_to.new_window("tab")
        self.open(VIEWER.format(url=self.live(2)))
        self.moving()
        self.assertEqual(self.js("return it('v').URL"), self.live(2))
        self.browser.close()
        self.browser.switch_to.window(first)
        self.moving()
        self.assertEqual(self.js("return it('v').URL"), self.live())

    def test_members_are_those_of_the_interface(self):
        self.open(VIEWER.format(url="") + PLAYER.format(port=self.camera.port))
        missing = self.promised(
            "{ const {interfaces} = await import('/interface.js'); const missing = [];"
            "for (const {element, properties, methods} of Object.values(interfaces))"
            "  for (const name of [...Object.keys(properties), ...Object.keys(methods)])"
            "    if (!(name in document.createElement(element))) missing.push(name);"
            "return missing.concat(Object.keys(interfaces.VideoServerPush.events).length === 16 ? [] : ['events']); }")
        self.assertEqual(missing, [])

    def test_out_of_sight_gets_no_pictures(self):
        self.open('<div id="space"></div>' + VIEWER.format(url=self.live()))
        self.js("it('space').style.height = '3000px'")
        self.told("StreamInfo")
        time.sleep(0.5)
        before = self.js("return shows('v', 'VideoStream')")
        self.js("events.length = 0")
        self.told("StreamInfo")
        self.assertEqual(self.js("return shows('v', 'VideoStream')"), before)
        self.js("it('v').scrollIntoView()")
        self.moving()
        # Moved in the page it goes on; its session is the same.
        self.js("events.length = 0; const box = document.createElement('div'); document.body.append(box); box.append(it('v'))")
        self.moving()
        self.assertNotIn("Connected", self.js("return events.map(([, name]) => name)"))

    # ---- What goes wrong ----

    def test_camera_and_gateway_die_and_return(self):
        port = free_port()
        camera = Server("--cameras", "1")
        with Gateway("--allow", f"127.0.0.1:{camera.port}", port=port) as gateway:
            self.open(VIEWER.format(url=self.live(server=camera)), gateway)
            self.moving()
        self.told("gatewaylost")
        self.until("!it('v').shadowRoot.querySelector('.notice').hidden")
        with Gateway("--allow", f"127.0.0.1:{camera.port}", port=port):
            self.moving()
            camera.fault(1, "status:503")
            self.told("ConnectionBroken")
            camera.fault(1, "none")
            self.moving()
        camera.end()

    def test_wrong_login_over_https(self):
        certificate, key = identity(self.downloads, "own")
        with Server("--auth", "basic", "--user", "ann", "--password", "secret") as camera, \
                Gateway("--allow", f"127.0.0.1:{camera.port}", "--certificate", certificate, "--key", key) as gateway:
            self.assertRegex(gateway.address, "^https:")
            self.open(VIEWER.format(url=""), gateway)
            self.js("it('v').Username = 'ann'; it('v').Password = 'wrong'; it('v').Connect(arguments[0])",
                    self.live(server=camera))
            self.told("ConnectionFailed")
            self.js("it('v').Password = 'secret'; it('v').Connect(arguments[0])", self.live(server=camera))
            self.moving()

    # ---- Attacks ----

    def test_only_named_servers_are_asked(self):
        with Server("--cameras", "1") as other:
            self.open(VIEWER.format(url=self.live(server=other)))
            self.told("ConnectionFailed")
            # Nor where a named one leads to it.
            with redirecting_to(self.live(server=other)) as port, Gateway("--allow", f"127.0.0.1:{port}") as gateway:
                self.open(VIEWER.format(url=f"http://127.0.0.1:{port}/live/1"), gateway)
                self.told("ConnectionFailed")
            self.assertEqual([line for line, _ in other.asked() if "/live/" in line], [])

    def test_who_gets_a_session(self):
        own = f"127.0.0.1:{self.gateway.port}"
        self.assertEqual(self.gateway.open_session(Origin=f"http://{own}", Host=own), 101)
        for origin, host in (("http://evil.example", own), ("", own), ("null", own),
                             # A name of somebody else's that leads here.
                             (f"http://evil.example:{self.gateway.port}", f"evil.example:{self.gateway.port}")):
            self.assertEqual(self.gateway.open_session(Origin=origin, Host=host), 403, origin)
        for target in ("/../etc/passwd", "/%2e%2e/etc/passwd", "//etc/passwd", "/session/x"):
            self.assertEqual(self.gateway.get(target)[0], 404)
        self.assertIn("default-src 'none'", self.gateway.get("/")[1]["Content-Security-Policy"])


if __name__ == "__main__":
    with Page.equipped():
        program = unittest.main(exit=False)
    sys.exit(not program.result.wasSuccessful())
