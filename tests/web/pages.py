"""The common parts of the page elements' tests: one browser with pages of it."""

import base64
import contextlib
import pathlib
import re
import socket
import sys
import tempfile
import time
import unittest

TESTS = pathlib.Path(__file__).parent.parent
sys.path[:0] = [str(TESTS / "apps/camera_server"), str(TESTS / "gateway")]
from camera_server import TIMEOUT, Server  # noqa: E402
from serve import Gateway, identity  # noqa: E402, F401

from selenium import webdriver  # noqa: E402
from selenium.webdriver.common.by import By  # noqa: E402

VIEWER = '<video-server-push id="v" url="{url}" framerate="20"></video-server-push>'
PLAYER = ('<user-control-1 id="p" server="127.0.0.1" port="{port}" device="1" extendedcontrols="Yes">'
          '</user-control-1>')
# The functions for a test's script on the page: elements by id, children of a control, and what a canvas shows.
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


class Page(unittest.TestCase):
    """A page in the one browser of all cases, which `equipped` starts."""

    @classmethod
    @contextlib.contextmanager
    def equipped(cls):
        """The browser, a camera server and a gateway that may ask it, for as long as the cases run."""
        with contextlib.ExitStack() as kept:
            cls.downloads = kept.enter_context(tempfile.TemporaryDirectory())
            options = webdriver.ChromeOptions()
            for each in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--window-size=1000,800"):
                options.add_argument(each)
            options.accept_insecure_certs = True  # a gateway's own
            options.add_experimental_option("prefs", {"download.default_directory": cls.downloads})
            cls.browser = webdriver.Chrome(options=options)
            kept.callback(cls.browser.quit)
            cls.browser.set_script_timeout(TIMEOUT)
            cls.camera = kept.enter_context(Server("--cameras", "2", "--name", "Yard", "--name", "Gate", "--alert", "Fire",
                                                   "--input", "Door", "--output", "Lamp=on"))
            cls.gateway = kept.enter_context(Gateway("--allow", f"127.0.0.1:{cls.camera.port}"))
            yield

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
        """The value that an expression's promise gets."""
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
        """The question or window in front, which has a name for all that is in it."""
        dialog = self.until("[...it('p').shadowRoot.querySelectorAll('dialog')].at(-1)")
        self.assertEqual(self.nameless(), [])
        return dialog

    def no_dialog(self):
        self.until("!it('p').shadowRoot.querySelector('dialog')")

    def answer(self, text):
        """Types an answer into the question."""
        field = self.dialog().find_element(By.CSS_SELECTOR, "input")
        field.clear()
        field.send_keys(text + "\n")

    def nameless(self):
        """The roles in the browser's accessibility tree that have no name, which a screen reader could not tell."""
        nodes = self.browser.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
        told = [(node["role"]["value"], node.get("name", {}).get("value")) for node in nodes if not node["ignored"]]
        return [role for role, name in told if not name and role in (
            "button", "combobox", "listbox", "textbox", "dialog", "image", "img", "menu", "menuitemcheckbox", "option")]

    def asked_for(self, pattern, camera=None):
        """The request line of the camera server's that matches."""
        end = time.monotonic() + TIMEOUT
        while time.monotonic() < end:
            lines = [line for line, _ in (camera or self.camera).asked()]
            if found := next((line for line in lines if re.search(pattern, line)), None):
                return found
            time.sleep(0.05)
        self.fail(f"never asked for {pattern}: {sorted(set(lines))}")

    def downloaded(self, name):
        path = pathlib.Path(self.downloads) / name
        end = time.monotonic() + TIMEOUT
        while not path.exists() and time.monotonic() < end:
            time.sleep(0.05)
        return path.read_bytes()

    @contextlib.contextmanager
    def photographed(self, *options):
        """A camera server whose every picture is the bytes that come with it, and a gateway to it."""
        with tempfile.TemporaryDirectory() as folder:
            jpeg = self.camera.get("/live/1?width=320&height=240")[2]
            (pathlib.Path(folder) / "picture.jpg").write_bytes(jpeg)
            with Server("--cameras", "1", "--folder", folder, *options) as camera, \
                    Gateway("--allow", f"127.0.0.1:{camera.port}") as gateway:
                yield jpeg, camera, gateway
