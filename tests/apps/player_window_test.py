#!/usr/bin/env python3
"""The player's real window on a screen in memory, driven with a real mouse: player_window_test.py SERVER PLAYER.

Needs Debian's xvfb and xdotool; without them it is skipped (exit status 77).
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent / "camera_server"))
from camera_server import TIMEOUT, Server, end_with_parent  # noqa: E402

PLAYER = sys.argv.pop(1)
PATIENCE = 5
SKIPPED = 77
# Where the middle of the button for full screen lies in a window of 640 × 618 pixels.
FULL_SCREEN = 224, 537


def wait_for(what, get, act=lambda: None):
    """Waits until `get` gives something. What `act` does first is done again every few seconds, as a person would who
    sees nothing happen: a window may not have been ready for it."""
    for _ in range(2 * TIMEOUT // PATIENCE):
        act()
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if result := get():
                return result
            time.sleep(0.1)
    raise AssertionError(f"waited in vain for {what}")


class PlayerWindowTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        # The toolkit's pooled threads may still hold something at the process's end.
        self.environment = {**os.environ, "QT_QPA_PLATFORM": "xcb", "ORBELCAST_PASSWORD": "secret", "LANG": "C.UTF-8",
                            "ASAN_OPTIONS": "detect_leaks=0", "HOME": folder.name, "XDG_CONFIG_HOME": folder.name,
                            "XDG_RUNTIME_DIR": folder.name}
        screen = self.start("Xvfb", "-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten", "tcp")
        self.environment["DISPLAY"] = f":{screen.stdout.readline().strip()}"
        self.server = Server()
        self.addCleanup(self.server.end)
        self.player = self.start(PLAYER, f"127.0.0.1:{self.server.port}", "--user", "ann", "--size", "640x618")
        self.window = wait_for("the window", lambda: self.windows("Orbelcast"))[-1]

    def start(self, *command):
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                   env=self.environment, preexec_fn=end_with_parent)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *map(str, words)], env=self.environment, text=True, capture_output=True,
                              timeout=TIMEOUT).stdout.split()

    def windows(self, name="."):
        return self.xdotool("search", "--onlyvisible", "--name", name)

    def whole_screen(self):
        return [each for each in self.windows() if "1280x900" in self.xdotool("getwindowgeometry", each)]

    def click(self, window, place):
        self.xdotool("mousemove", "--window", window, *place, "click", 1)

    def pictures(self):
        return sum("/live/1/ann:***?live-special" in line for line, _ in self.server.asked())

    def test_a_person_sees_the_first_camera_and_fills_the_screen_with_it_again_and_again(self):
        wait_for("the first camera", self.pictures)
        for _ in range(2):
            full = wait_for("full screen", self.whole_screen, lambda: self.click(self.window, FULL_SCREEN))[-1]
            before = self.pictures()
            wait_for("its stream", lambda: self.pictures() > before + 2)  # more than what was under way
            wait_for("its end", lambda: full not in self.windows(), lambda: self.click(full, (640, 300)))
        self.xdotool("windowfocus", self.window, "key", "ctrl+q")
        output, _ = self.player.communicate(timeout=TIMEOUT)
        self.assertEqual(self.player.returncode, 0, output)
        self.assertNotIn("secret", output)


if __name__ == "__main__":
    if not (shutil.which("Xvfb") and shutil.which("xdotool")):
        print("Xvfb or xdotool is not installed")
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)
