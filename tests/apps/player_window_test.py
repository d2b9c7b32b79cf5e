#!/usr/bin/env python3
"""The player's real window on a screen in memory, driven with real keys and mouse: player_window_test.py PLAYER SERVER.

Needs Debian's xvfb and xdotool; without them it is skipped (exit status 77).
"""

import ctypes
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.request

PLAYER, SERVER = sys.argv[1:]
TIMEOUT = 60
PATIENCE = 5
SKIPPED = 77
# Where the middle of a control lies in a window of 640 × 618 pixels.
CAMERAS, MONTH, SEARCH, SNAPSHOT, FULL_SCREEN = (320, 10), (370, 512), (482, 512), (192, 537), (224, 537)


def end_with_parent():
    """What was started does not outlive a test that was killed."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


def poll(get, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if result := get():
            return result
        time.sleep(0.1)
    return None


def wait_for(what, get, act=None):
    """Waits until `get` gives something. What `act` does first is done again every few seconds, as a person would who
    sees nothing happen: a window may not have been ready for it."""
    for _ in range(TIMEOUT // PATIENCE):
        if act:
            act()
        if result := poll(get, PATIENCE):
            return result
    raise AssertionError(f"waited in vain for {what}")


class PlayerWindowTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        screen = self.start(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten", "tcp"], {})
        places = {name: str(self.folder) for name in ("HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR")}
        self.environment = {**places, "DISPLAY": f":{screen.stdout.readline().strip()}", "QT_QPA_PLATFORM": "xcb",
                            "ORBELCAST_PASSWORD": "secret", "LANG": "C.UTF-8",
                            # The toolkit's pooled threads may still hold something at the process's end.
                            "ASAN_OPTIONS": "detect_leaks=0"}
        server = self.start([SERVER, "--port", "0"], {})
        self.address = re.search(r"http://(\S+)/", server.stdout.readline())[1]
        self.player = self.start([PLAYER, self.address, "--user", "ann", "--size", "640x618"], self.environment)
        self.window = self.window_named("Orbelcast")

    def start(self, command, environment):
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                   env={**os.environ, **environment}, preexec_fn=end_with_parent)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def xdotool(self, *words):
        result = subprocess.run(["xdotool", *map(str, words)], env={**os.environ, **self.environment}, text=True,
                                capture_output=True, timeout=TIMEOUT)
        return result.stdout.split()

    def window_named(self, name):
        return wait_for(name, lambda: self.windows(name))[-1]

    def click(self, place, window=None):
        self.xdotool("mousemove", "--window", window or self.window, *place, "click", 1)

    def press(self, *keys, window=None):
        self.xdotool("windowfocus", window or self.window, "key", *keys)

    def asked(self, part, act=None):
        def look():
            with urllib.request.urlopen(f"http://{self.address}/control/requests") as answer:
                return part in answer.read().decode()
        wait_for(part, look, act)

    def windows(self, name="."):
        return self.xdotool("search", "--onlyvisible", "--name", name)

    def choose_the_second_camera(self):
        self.click(CAMERAS)
        poll(lambda: len(self.xdotool("search", "--onlyvisible", "--class", "player")) > 1, 1)  # the open list
        self.press("Home", "Down", "Return")

    def search_for_july(self):
        self.click(MONTH)
        self.press("ctrl+a", "7")
        self.click(SEARCH)

    def save_as(self, name):
        dialog = self.window_named("Choose the filename")
        self.press("ctrl+a", window=dialog)
        self.xdotool("type", str(name))
        self.press("Return", window=dialog)

    def test_a_person_chooses_a_camera_searches_the_archive_and_takes_a_snapshot(self):
        self.asked("/live/1/ann:***?live-special")  # the first camera is shown at once
        self.asked("/live/2/ann:***?live-special", self.choose_the_second_camera)
        self.asked("&Month=07&Year=", self.search_for_july)

        name = self.folder / "picture.jpg"
        wait_for("the dialog", lambda: self.windows("Choose the filename"), lambda: self.click(SNAPSHOT))
        wait_for("the question", lambda: self.windows("AVI Maker"), lambda: self.save_as(name))
        self.press("alt+y", window=self.window_named("AVI Maker"))
        wait_for("the picture", name.exists)
        self.assertEqual(name.read_bytes()[:2], b"\xff\xd8")

        def whole_screen():
            return [each for each in self.windows() if "1280x900" in self.xdotool("getwindowgeometry", each)]
        full = wait_for("full screen", whole_screen, lambda: self.click(FULL_SCREEN))[-1]
        wait_for("its end", lambda: full not in self.windows(), lambda: self.click((640, 300), full))

        self.press("ctrl+q")
        output, _ = self.player.communicate(timeout=TIMEOUT)
        self.assertEqual(self.player.returncode, 0, output)
        self.assertNotIn("secret", output)


if __name__ == "__main__":
    if not (shutil.which("Xvfb") and shutil.which("xdotool")):
        print("Xvfb or xdotool is not installed")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1], verbosity=2)
