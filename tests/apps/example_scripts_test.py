#!/usr/bin/env python3
"""The example scripts against the camera server, in seconds: example_scripts_test.py SERVER ORBELCAST."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent / "camera_server"))
from camera_server import TIMEOUT, Server  # noqa: E402

ORBELCAST = sys.argv[1]
SCRIPTS = pathlib.Path(__file__).parent.parent.parent / "examples/scripts"
# A login that a shell and a script's line could both trip over.
USER, PASSWORD = "ann", 'a "b" \\c $HOME'


class ExampleScriptsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        server = Server("--auth", "basic", "--user", USER, "--password", PASSWORD)
        self.addCleanup(server.end)
        self.server = f"127.0.0.1:{server.port}"

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
