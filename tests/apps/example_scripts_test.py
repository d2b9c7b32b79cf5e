#!/usr/bin/env python3
"""The example scripts against the camera server, in seconds: example_scripts_test.py ORBELCAST SERVER."""

import ctypes
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import unittest

ORBELCAST, SERVER = sys.argv[1:]
SCRIPTS = pathlib.Path(__file__).parent.parent.parent / "examples/scripts"
TIMEOUT = 60
# A login that a shell and a script's line could both trip over.
USER, PASSWORD = "ann", 'a "b" \\c $HOME'


def end_with_parent():
    """A server does not outlive a test that was killed."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


class ExampleScriptsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        server = subprocess.Popen([SERVER, "--port", "0", "--auth", "basic", "--user", USER, "--password", PASSWORD],
                                  stdout=subprocess.PIPE, text=True, preexec_fn=end_with_parent)
        self.addCleanup(server.communicate)
        self.addCleanup(server.kill)
        self.server = re.search(r"http://(\S+)/", server.stdout.readline())[1]

    def run_script(self, name, *words):
        """The files that it says it saved."""
        environment = {**os.environ, "ORBELCAST": ORBELCAST, "ORBELCAST_USER": USER, "ORBELCAST_PASSWORD": PASSWORD,
                       "ORBELCAST_REGISTRY": str(self.folder / "registry.json"),
                       "ORBELCAST_MODULE_FOLDER": str(self.folder / "module")}
        done = subprocess.run([SCRIPTS / name, *map(str, words)], capture_output=True, text=True, timeout=TIMEOUT,
                              env=environment)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return [pathlib.Path(line) for line in done.stdout.splitlines()]

    def test_takes_a_picture_every_second(self):
        files = self.run_script("picture-every-minute.sh", f"http://{self.server}/live/1", self.folder / "out", 1, 2)
        self.assertEqual(sorted(files), sorted((self.folder / "out").iterdir()))
        self.assertEqual(len(files), 2)
        for file in files:
            picture = file.read_bytes()
            self.assertEqual((picture[:2], picture[-2:]), (b"\xff\xd8", b"\xff\xd9"))

    def test_records_a_clip_when_something_moves(self):
        files = self.run_script("clip-on-motion.sh", self.server, 1, self.folder / "out", 2, 1)
        self.assertEqual(len(files), 1)
        clip = files[0].read_bytes()
        self.assertEqual((clip[:4], clip[8:12]), (b"RIFF", b"AVI "))
        self.assertGreaterEqual(clip.count(b"\xff\xd8\xff"), 2, "pictures of the clip")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
