#!/usr/bin/env python3
"""The example Qt applications against the camera server, without a screen: qt_hosts_test.py SERVER_PROGRAM PROGRAM...

A program whose name ends in "form" is given a server, the others the address of a camera.
"""

import ctypes
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.request

SERVER, *PROGRAMS = sys.argv[1:]
TIMEOUT = 60


def end_with_parent():
    """What was started does not outlive a test that was killed."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


class QtHostsTest(unittest.TestCase):
    def start(self, *command, **environment):
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                   env={**os.environ, **environment}, preexec_fn=end_with_parent)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def test_each_shows_its_cameras(self):
        for program in PROGRAMS:
            with self.subTest(program=program), tempfile.TemporaryDirectory() as folder:
                server = self.start(SERVER, "--port", "0")
                address = re.search(r"http://(\S+)/", server.stdout.readline())[1]
                form = program.endswith("form")
                arguments = address.split(":") if form else [f"http://{address}/live/1"]
                places = {name: folder for name in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR")}
                host = self.start(program, *arguments, QT_QPA_PLATFORM="offscreen", ORBELCAST_USER="ann", **places)
                if form:
                    # The form names the player's camera, of which it shows one picture to begin with.
                    self.wait_for_pictures(host, address, "/live/1/ann:", 1)
                    self.wait_for_pictures(host, address, "/live/2 ", 2)
                else:
                    self.wait_for_pictures(host, address, "/live/1 ", 2)

    def wait_for_pictures(self, host, address, camera, count):
        end = time.monotonic() + TIMEOUT
        while time.monotonic() < end:
            self.assertIsNone(host.poll(), "it has ended")
            with urllib.request.urlopen(f"http://{address}/control/requests") as answer:
                if answer.read().decode().count(camera) >= count:
                    return
            time.sleep(0.1)
        self.fail(f"{camera} was not asked for")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
