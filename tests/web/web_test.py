#!/usr/bin/env python3
"""The page elements in a browser, through the gateway: web_test.py SERVER_PROGRAM ORBELCAST"""

import base64
import contextlib
import http.client
import http.server
import os
import pathlib
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest

HERE = pathlib.Path(__file__).parent
sys.path.insert(0, str(HERE.parent / "apps/camera_server"))
from camera_server import TIMEOUT, Server, end_with_parent, is_whole  # noqa: E402

from selenium import webdriver  # noqa: E402
from selenium.webdriver.common.by import By  # noqa: E402
from selenium.webdriver.common.keys import Keys  # noqa: E402

ORBELCAST = sys.argv.pop(1)
VIEWER = '<video-server-push id="v" url="{url}" framerate="20"></video-server-push>'
PLAYER = ('<user-control-1 id="p" server="127.0.0.1" port="{port}" device="1" extendedcontrols="Yes">'
          '</user-control-1>')
# What a test's script finds on the page: elements by id, children of a control, and what a canvas shows.
TOOLS = """
const it = (id) => document.getElementById(id);
const child = (id, name) => it(id).shadowRoot.querySelector(`[data-child="${name}"]`);
const shows = (id, name) => {
  const canvas = child(id, name)?.querySelector("canvas");
  if (!canvas?.width) return "";
  const {data} = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
  let sum = 0, lit = 0;
  for (let i = 0; i < data.length; i += 4) { sum = (sum * 31 + data[i] + data[i + 1]) >>> 0; lit += data[i] > 40; }
  return lit > 100 ? String(sum) : "";
};
"""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Gateway:
    """A gateway of the test's own, ended with it."""

    def __init__(self, *options, port=0):
        self.process = subprocess.Popen([ORBELCAST, "serve", "--port", str(port), *options], stdout=subprocess.PIPE,
                                        text=True, preexec_fn=end_with_parent)
        self.address = self.process.stdout.readline().strip()
        self.port = int(self.address.rpartition(":")[2].strip("/"))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        with self.process.stdout:
            status = self.process.wait(TIMEOUT)
        assert status == 0, status

    def get(self, target, **headers):
        link = http.client.HTTPConnection("127.0.0.1", self.port, timeout=TIMEOUT)
        with contextlib.closing(link):
            link.request("GET", target, headers={name.replace("_", "-"): text for name, text in headers.items()})
            answer = link.getresponse()
            return answer.status, answer.headers, answer.read()

    def open_session(self, **headers):
        """The status that a page's connection gets."""
        return self.get("/session", Connection="Upgrade", Upgrade="websocket", Sec_WebSocket_Version="13",
                        Sec_WebSocket_Key="AAAAAAAAAAAAAAAAAAAAAA==", **headers)[0]


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


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.downloads = cls.enterClassContext(tempfile.TemporaryDirectory())
        options = webdriver.ChromeOptions()
        for each in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--window-size=1000,800"):
            options.add_argument(each)
        options.add_experimental_option("prefs", {"download.default_directory": cls.downloads})
        cls.browser = webdriver.Chrome(options=options)
        cls.addClassCleanup(cls.browser.quit)
        cls.browser.set_script_timeout(TIMEOUT)
        cls.camera = cls.enterClassContext(Server("--cameras", "2", "--name", "Yard", "--name", "Gate", "--alert", "Fire",
                                                    "--input", "Door", "--output", "Lamp=on"))
        cls.gateway = cls.enterClassContext(Gateway("--allow", f"127.0.0.1:{cls.camera.port}"))

    def live(self, camera=1, server=None):
        return f"http://127.0.0.1:{(server or self.camera).port}/live/{camera}"

    def open(self, body, gateway=None):
        """A page of the gateway's with that body, on which all that the elements tell is noted."""
        self.browser.get((gateway or self.gateway).address + "gateway.css")
        self.browser.get((gateway or self.gateway).address)
        self.until("customElements.get('user-control-1') && document.querySelector('user-control-1')")
        self.js("document.body.innerHTML = arguments[0]; document.body.style = 'display:block;background:#ccc';"
                "window.events = []; for (const each of document.body.children) for (const name of ['Connected', "
                "'StreamInfo', 'ConnectionFailed', 'ConnectionBroken', 'Status', 'MotionDetected', 'gatewaylost', "
                "'Disconnected']) each.addEventListener(name, (e) => events.push([each.id, name, e.detail]));", body)

    def js(self, script, *words):
        return self.browser.execute_script(TOOLS + script, *words)

    def promised(self, script, *words):
        """What the promise of an expression becomes."""
        return self.browser.execute_async_script(
            TOOLS + f"const done = arguments[arguments.length - 1]; (async () => {script})()"
            ".then(done, (error) => done('error: ' + error.message));", *words)

    def until(self, expression, *words):
        end = time.monotonic() + TIMEOUT
        while time.monotonic() < end:
            if value := self.js(f"return {expression}", *words):
                return value
            time.sleep(0.05)
        shown = self.js("return document.body.innerText + JSON.stringify(window.events ?? [])")
        self.fail(f"never: {expression}; {shown[-600:]}")

    def moving(self, element="v", name="VideoStream"):
        """The canvas shows pictures, one after another."""
        first = self.until("shows(arguments[0], arguments[1])", element, name)
        self.until("![ '', arguments[2] ].includes(shows(arguments[0], arguments[1]))", element, name, first)

    def told(self, name, element="v"):
        return self.until(f"events.find(([id, name]) => id === '{element}' && name === '{name}')")

    def child(self, name, element="p"):
        return self.js("return child(arguments[0], arguments[1])", element, name)

    def press(self, number):
        button = self.until(f"((it) => it && !it.hidden && !it.disabled && it)(child('p', 'Player({number})'))")
        self.js("arguments[0].click()", button)

    def choose(self, name, text):
        self.js("const box = arguments[0]; box.selectedIndex = [...box.options].findIndex((each) => each.text === "
                "arguments[1]); box.dispatchEvent(new Event('change'))",
                self.until(f"((it) => it && [...it.options].some((each) => each.text === '{text}') && it)"
                           f"(child('p', '{name}'))"), text)

    def dialog(self):
        return self.until("[...it('p').shadowRoot.querySelectorAll('dialog')].at(-1)")

    def no_dialog(self):
        self.until("!it('p').shadowRoot.querySelector('dialog')")

    # ---- The viewer ----

    def test_viewer(self):
        example = (HERE.parent.parent / "examples/first_picture/page.html").read_text().replace("<video-server-push", "<video-server-push id=v")
        self.open(example.replace("http://127.0.0.1:8080/live/1", self.live()))
        self.until("shows('v', 'VideoStream')")
        self.open(VIEWER.format(url=self.live()))
        self.moving()
        self.assertGreater(self.told("StreamInfo")[2]["BytesPerSecond"], 1000)
        jpeg = base64.b64decode(self.promised("{ const bytes = await it('v').GetPictureArray(); "
                                              "return btoa(String.fromCharCode(...bytes)); }"))
        self.assertTrue(is_whole(jpeg))
        self.assertEqual(self.promised("{ const it = await window.v.GetPicture(); return [it.width, it.height]; }"), [640, 480])
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
        self.js("events.length = 0")
        self.promised("it('v').SaveImage('now.jpg')")
        self.assertTrue(is_whole(self.downloaded("now.jpg")) or self.downloaded("now.jpg")[:2] == b"BM")

    def downloaded(self, name):
        path = pathlib.Path(self.downloads) / name
        end = time.monotonic() + TIMEOUT
        while not path.exists() and time.monotonic() < end:
            time.sleep(0.05)
        return path.read_bytes()

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

    # ---- The player ----

    def test_player(self):
        self.open(PLAYER.format(port=self.camera.port))
        self.moving("p", "VS.VideoStream")
        self.assertEqual(self.js("return [...child('p', 'CamList').options].map((each) => each.text)"), ["Yard", "Gate"])
        self.choose("CamList", "Gate")
        self.until("it('p').shadowRoot && child('p', 'CamList').selectedIndex === 1")
        self.until(f"{len(self.js('return [...child(arguments[0], arguments[1]).options]', 'p', 'FrameRate'))} > 3")
        self.moving("p", "VS.VideoStream")
        # The archive: its beginning, forward, and live again.
        self.press(0)
        self.until("/^[0-9]{4}$/.test(child('p', 'TCR(0)').value)")
        self.press(2)
        self.press(5)
        self.moving("p", "VS.VideoStream")
        self.check_questions()
        self.check_windows()

    def check_questions(self):
        """The message, and the snapshot, whose bytes are the camera's."""
        self.press(13)
        self.dialog().find_element(By.CSS_SELECTOR, "input").send_keys("Hello", Keys.ENTER)
        self.no_dialog()
        self.until_asked("Hello")
        self.press(10)
        name = self.dialog().find_element(By.CSS_SELECTOR, "input")
        self.assertRegex(name.get_attribute("value"), r"^\d{4}-.*\.jpg$")
        name.clear()
        name.send_keys("shot.jpg", Keys.ENTER)
        # A new name is asked about as well.
        self.until("[...it('p').shadowRoot.querySelectorAll('dialog button')].find((each) => each.value === 'Yes')").click()
        self.assertTrue(is_whole(self.downloaded("shot.jpg")))
        self.no_dialog()

    def until_asked(self, text):
        end = time.monotonic() + TIMEOUT
        while not any(text in line for line, _ in self.camera.asked()):
            self.assertLess(time.monotonic(), end, f"the server was not asked for {text}")
            time.sleep(0.05)

    def check_windows(self):
        """Alerts, outputs, log and full screen open, say what they are, and close."""
        for number, caption, items, button in ((15, "Alerts", "AlertList", "Activate"),
                                               (14, "I/O Control", "OutList", "OutToogleOff")):
            self.press(number)
            self.until(f"child('p', '{items}')?.options.length")
            self.assertEqual(self.dialog().accessible_name, caption)
            self.js("arguments[0].selectedIndex = 0; arguments[0].dispatchEvent(new Event('change'))", self.child(items))
            self.js("arguments[0].click()", self.child(button))
            self.no_dialog()
        self.press(11)
        self.until("child('p', 'Log')?.value.length")
        self.dialog().find_element(By.CSS_SELECTOR, ".close").click()
        self.no_dialog()
        self.press(16)
        self.moving("p", "vs.VideoStream")
        self.dialog().send_keys(Keys.ESCAPE)
        self.no_dialog()

    def test_two_elements_a_clip_several_cameras_and_settings(self):
        self.open(PLAYER.format(port=self.camera.port) + VIEWER.format(url=self.live(2)))
        self.moving("p", "VS.VideoStream")
        self.moving("v")
        self.press(9)
        name = self.dialog().find_element(By.CSS_SELECTOR, "input")
        name.clear()
        name.send_keys("clip.avi", Keys.ENTER)
        self.until("it('p').shadowRoot.querySelector('dialog select')")
        self.dialog().find_element(By.CSS_SELECTOR, "button").click()
        self.until("!child('p', 'Player(8)').hidden")
        self.js("events.length = 0")
        self.told("StreamInfo", "p")
        self.js("events.length = 0")
        self.told("StreamInfo", "p")
        self.press(8)
        self.assertIn("Total frames", self.dialog().text)
        self.dialog().find_element(By.CSS_SELECTOR, "button").click()
        self.assertEqual(self.downloaded("clip.avi")[:4], b"RIFF")
        self.press(17)
        self.until("child('p', 'Cameras')?.options.length === 2")
        self.js("const box = child('p', 'Cameras'); for (const each of box.options) each.selected = true;"
                "box.dispatchEvent(new Event('change')); child('p', 'Go').click()")
        self.no_dialog()
        self.moving("p", "VS.VideoStream")
        # The choice of a rate is there in the next session.
        self.js("const box = child('p', 'FrameRate'); box.selectedIndex = 2; box.dispatchEvent(new Event('change'))")
        self.until("Object.keys(localStorage).length > 0")
        self.open(PLAYER.format(port=self.camera.port))
        self.until("child('p', 'FrameRate')?.selectedIndex === 2")

    def test_names_for_everyone(self):
        self.open(PLAYER.format(port=self.camera.port))
        self.moving("p", "VS.VideoStream")
        controls = self.js("return [...it('p').shadowRoot.querySelectorAll('button, select, input')]"
                           ".filter((each) => each.checkVisibility())")
        self.assertGreater(len(controls), 20)
        self.assertEqual([each.get_attribute("data-child") for each in controls if not each.accessible_name], [])
        # With the keyboard alone: Tab goes on in the toolbar's order, Enter presses, the strip's menu opens.
        self.js("child('p', 'Player(2)').focus()")
        webdriver.ActionChains(self.browser).send_keys(Keys.TAB).perform()
        self.assertEqual(self.js("return it('p').shadowRoot.activeElement.dataset.child"), "Player(5)")
        self.press(6)
        self.until("!child('p', 'VS.StatusDisplay').hidden")
        self.js("child('p', 'VS.StatusDisplay').focus()")
        webdriver.ActionChains(self.browser).send_keys(Keys.ENTER).perform()
        self.until("it('p').shadowRoot.querySelector('.menu [role=menuitemcheckbox]')")

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

    def test_wrong_login(self):
        with Server("--auth", "basic", "--user", "ann", "--password", "secret") as camera, \
                Gateway("--allow", f"127.0.0.1:{camera.port}") as gateway:
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
        with tempfile.NamedTemporaryFile("w") as login:
            login.write("user = ann\npassword = secret\n")
            login.flush()
            os.chmod(login.name, 0o600)
            with Gateway("--allow", "camera", "--credentials", login.name, "--allow-origin", "https://a.example") as gateway:
                right = {"Authorization": "Basic " + base64.b64encode(b"ann:secret").decode()}
                wrong = {"Authorization": "Basic " + base64.b64encode(b"ann:secrex").decode()}
                self.assertEqual([gateway.get("/")[0], gateway.get("/", **wrong)[0], gateway.get("/", **right)[0]],
                                 [401, 401, 200])
                self.assertEqual([gateway.open_session(Origin="https://a.example", **each) for each in ({}, right)],
                                 [401, 101])


    def test_a_page_that_breaks_off_leaves_nothing_behind(self):
        with Gateway("--allow", f"127.0.0.1:{self.camera.port}", "--sessions", "1") as gateway:
            host = f"127.0.0.1:{gateway.port}"
            for _ in range(8):
                with socket.create_connection(("127.0.0.1", gateway.port), TIMEOUT) as link:
                    link.sendall(f"GET /session HTTP/1.1\r\nHost: {host}\r\nOrigin: http://{host}\r\nUpgrade: websocket\r\n"
                                 "Connection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                                 "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n\r\n".encode())
                    # The one session that there may be is free again.
                    self.assertIn(b" 101 ", link.recv(4096))
                    for line in ("create c VideoServerPush", "show c", "set c FrameRate 30",
                                 f"call c Connect {self.live()}", "call c SaveImage x.jpg"):
                        link.sendall(b"\x81" + bytes([0x80 | len(line)]) + bytes(4) + line.encode())
                    link.recv(100_000)
                time.sleep(0.3)
            before = self.cpu_seconds(gateway)
            time.sleep(1)
            self.assertLess(self.cpu_seconds(gateway) - before, 0.2)

    @staticmethod
    def cpu_seconds(gateway):
        fields = pathlib.Path(f"/proc/{gateway.process.pid}/stat").read_text().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


if __name__ == "__main__":
    unittest.main()
