#!/usr/bin/env python3
"""The command line against the camera server: commands_test.py SERVER_PROGRAM ORBELCAST"""

import json
import os
import pathlib
import re
import resource
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

HERE = pathlib.Path(__file__).parent
sys.path.insert(0, str(HERE / "camera_server"))
from camera_server import TIMEOUT, Server, end_with_parent  # noqa: E402

ORBELCAST = sys.argv.pop(1)
PICTURES = HERE.parent / "scripts/pictures"
LOGIN = dict(ORBELCAST_USER="ann", ORBELCAST_PASSWORD="s3cret")


def orbelcast(*words, preexec_fn=None, **environment):
    done = subprocess.run([ORBELCAST, *map(str, words)], capture_output=True, text=True, timeout=TIMEOUT,
                          env={**os.environ, **environment}, preexec_fn=preexec_fn)
    assert "s3cret" not in done.stdout + done.stderr, done
    return done


def probe(clip):
    """What the clip's first stream is, every frame decoded. Fails where the reader complains of anything."""
    shown = "stream=codec_name,width,height,avg_frame_rate,nb_read_frames"
    done = subprocess.run(["ffprobe", "-v", "error", "-count_frames", "-show_entries", shown, "-of", "json", clip],
                          capture_output=True, text=True, timeout=TIMEOUT)
    assert (done.returncode, done.stderr) == (0, ""), done.stderr
    stream = json.loads(done.stdout)["streams"][0]
    return stream | {"nb_read_frames": int(stream["nb_read_frames"])}


def pixel(picture, x, y):
    """Red, green and blue, and what lies behind it, as ImageMagick writes them."""
    done = subprocess.run(["convert", picture, "-format", f"%[pixel:p{{{x},{y}}}]", "info:"], capture_output=True,
                          text=True, timeout=TIMEOUT, check=True)
    return done.stdout


class Commands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server("--folder", str(PICTURES), "--cameras", "2", "--name", "Yard", "--name", "Gate",
                            "--system-name", "House", "--alert", "Fire", "--input", "Door", "--output", "Lamp=on",
                            "--info", "SVR=2.1", "--flags", "ADM")
        cls.addClassCleanup(cls.server.end)
        cls.guarded = Server("--auth", "basic", "--user", "ann", "--password", "s3cret")
        cls.addClassCleanup(cls.guarded.end)
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            cls.dead = "127.0.0.1:%d" % free.getsockname()[1]

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def address(self, server):
        return f"127.0.0.1:{server.port}"

    def live(self, camera, server=None):
        return f"http://{self.address(server or self.server)}/live/{camera}"

    def silent(self):
        """The HOST:PORT of a server that accepts and never says a word."""
        listener = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(listener.close)
        return "127.0.0.1:%d" % listener.getsockname()[1]

    def left(self):
        return sorted(file.name for file in self.folder.iterdir())


class Info(Commands):
    def test_a_person_reads_a_table(self):
        done = orbelcast("info", self.address(self.server))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for line in ("Name        House", "Version     2.1", "Flags       ADM", "  1   Fire", "  1   Lamp  on",
                     "  1   Door  off", f"  2   Gate  2  {self.live(2)}"):
            self.assertIn(line + "\n", done.stdout)

    def test_a_program_reads_json(self):
        done = orbelcast("info", "http://" + self.address(self.server), "--json")
        told = json.loads(done.stdout)
        self.assertEqual((done.returncode, told["status"], told["camera_server"], told["name"], told["relay"]),
                         (0, 200, True, "House", None))
        self.assertEqual(told["cameras"][0], {"device": "1", "name": "Yard", "live_base": self.live(1)})
        self.assertEqual((told["outputs"], told["inputs"], told["alerts"]),
                         ([{"name": "Lamp", "on": True}], [{"name": "Door", "on": False}], [{"name": "Fire"}]))

    def test_what_gives_no_information_says_why(self):
        for server, why in ((self.dead, "does not answer"), (self.address(self.guarded), "another user name or password")):
            done = orbelcast("info", server, "--json", ORBELCAST_USER="ann", ORBELCAST_PASSWORD="wrong")
            self.assertEqual(done.returncode, 1)
            self.assertIn(why, done.stderr)
            self.assertEqual(json.loads(done.stdout)["cameras"], [])
        self.assertEqual(orbelcast("info", self.address(self.guarded), **LOGIN).returncode, 0)

    def test_what_is_longer_than_is_read_is_told(self):
        text = self.folder / "text"
        text.write_text("RDXVIEWER\r\nCAM:1\tYard\tnowhere\r\n" + "ALT:1\tFire\r\n" * 60_000)
        server = Server("--info-text", str(text))
        self.addCleanup(server.end)
        for command in ("info", "doctor"):
            done = orbelcast(command, self.address(server))
            self.assertIn("were left out", done.stdout + done.stderr)


    def test_a_password_in_an_address_is_printed_by_nothing(self):
        for login in ("ann:s3cret", "ann:%733cret/?x", "x?user=ann&pwd=s3cret"):
            for words in (["watch", f"http://{self.dead}/live/1/{login}", "--once"],
                          ["doctor", f"{self.dead}/live/1/{login}", "--json"],
                          ["mosaic", f"http://{self.dead}/live/1/{login}", "--output", self.folder / "a.png"]):
                done = orbelcast(*words)
                self.assertEqual(done.returncode, 1)
                self.assertIn("***", done.stdout + done.stderr)
                self.assertNotIn("%733cret", done.stdout + done.stderr)


class Log(Commands):
    def test_the_whole_log_becomes_a_file(self):
        file = self.folder / "log.csv"
        done = orbelcast("log", self.address(self.guarded), file, **LOGIN)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))
        self.assertTrue(file.read_bytes().startswith(b"Date,Time,Address,User,Event,Detail\r\n"))
        file.write_text("old")
        for server, why in ((self.dead, "does not answer"), (self.address(self.guarded), "another user name or password")):
            done = orbelcast("log", server, file, "--user", "nobody")
            self.assertEqual(done.returncode, 1)
            self.assertIn(why, done.stderr)
        self.assertEqual(file.read_text(), "old")


class Snapshot(Commands):
    def test_success_is_byte_for_byte_what_the_server_sent(self):
        file = self.folder / "now.jpg"
        file.write_bytes(b"x" * 5000)
        (self.folder / "link.jpg").symlink_to(file)
        self.assertEqual(orbelcast("snapshot", self.live(2), self.folder / "link.jpg").returncode, 0)
        self.assertEqual(file.read_bytes(), (PICTURES / "2_moved.jpg").read_bytes())
        self.assertEqual(self.left(), ["link.jpg", "now.jpg"])

    def test_failure_is_told_and_leaves_everything_as_it_was(self):
        file = self.folder / "now.jpg"
        file.write_text("old")
        os.mkfifo(self.folder / "pipe.jpg")
        for url, name, status in ((f"http://{self.dead}/", file, 1), (self.live(99), file, 1),
                                  (self.live(1, self.guarded), file, 1), (self.live(1), self.folder / "no/now.jpg", 2),
                                  (self.live(1), self.folder, 2), (self.live(1), self.folder / "pipe.jpg", 2)):
            done = orbelcast("snapshot", url, name)
            self.assertEqual(done.returncode, status, done)
            self.assertIn("orbelcast: ", done.stderr)
        self.assertEqual((self.left(), file.read_text()), (["now.jpg", "pipe.jpg"], "old"))


class Mosaic(Commands):
    def test_a_grid_becomes_a_file(self):
        for name in ("grid.png", "grid.bmp"):
            grid = self.folder / name
            done = orbelcast("mosaic", self.live(1), self.live(1, self.guarded) + "/ann:s3cret", self.live(2),
                             f"http://{self.dead}/live/1", "--size", "320x240", "--output", grid)
            self.assertEqual(done.returncode, 0, done)
            self.assertEqual(done.stderr, f"orbelcast: no picture from http://{self.dead}/live/1\n")
            self.assertEqual(json.loads(done.stdout)["event"], "StreamInfo")
            tiles = [pixel(grid, x, y) for x, y in ((10, 10), (170, 10), (10, 130), (170, 130))]
            # The two grey ones were stretched, the dead one is black.
            self.assertRegex(" ".join(tiles), r"^(srgba?\(99,99,99(,1)?\)) srgba?\(.* \1 srgba?\(0,0,0(,1)?\)$")
            self.assertNotIn(tiles[1], (tiles[0], tiles[3]))

    def test_without_any_picture_it_fails(self):
        done = orbelcast("mosaic", self.live(1, self.guarded) + "/ann:s3cret2", "--output", self.folder / "grid.png")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no picture from " + self.live(1, self.guarded), done.stderr)
        done = orbelcast("mosaic", self.live(1), "--output", self.folder / "no/grid.png")
        self.assertEqual((done.returncode, self.left()[:1]), (2, ["grid.png"]))


class Record(Commands):
    def test_so_many_pictures_become_a_clip(self):
        clip = self.folder / "yard.avi"
        done = orbelcast("record", self.live(1), clip, "--frames", "6", "--frame-rate", "20", "--codec", "motion-jpeg")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertRegex(done.stdout, r"yard\.avi: 0\.\d s, 6 pictures, ")
        stream = probe(clip)
        self.assertEqual([stream[field] for field in ("codec_name", "width", "height", "avg_frame_rate")],
                         ["mjpeg", 100, 80, "20/1"])
        self.assertGreaterEqual(stream["nb_read_frames"], 6)

        # It is not replaced unasked, nor when there is nothing to put in its place.
        before = clip.read_bytes()
        done = orbelcast("record", self.live(1), clip, "--frames", "1")
        self.assertEqual((done.returncode, clip.read_bytes()), (2, before))
        done = orbelcast("record", f"http://{self.dead}/", clip, "--frames", "1", "--overwrite")
        self.assertEqual((done.returncode, clip.read_bytes(), self.left()), (1, before, ["yard.avi"]))

    def test_nothing_is_left_without_a_picture(self):
        for url in (f"http://{self.dead}/", self.live(1, self.guarded)):
            self.assertEqual(orbelcast("record", url, self.folder / "none.avi").returncode, 1)
        self.assertEqual(self.left(), [])

    def test_it_ends_where_no_picture_comes_and_says_why(self):
        silent = f"http://{self.silent()}/"
        for words in (["record", silent, self.folder / "none.avi", "--seconds", "0.2"],
                      ["record", silent, self.folder / "none.avi", "--timeout", "0.2", "--auto-reconnect"],
                      ["watch", silent, "--frames", "2", "--timeout", "0.2", "--events", "none"]):
            done = orbelcast(*words)
            self.assertEqual(done.returncode, 1)
            self.assertIn("gave up after 0.2 s", done.stderr)
        self.assertEqual(self.left(), [])

    def test_the_old_clip_stays_until_the_new_one_is_finished(self):
        clip = self.folder / "yard.avi"
        clip.write_text("old")
        clip.chmod(0o640)
        too_large = ("record", self.live(1), clip, "--overwrite", "--codec", "uncompressed", "--frame-rate", "30")
        done = orbelcast(*too_large, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (300_000, 300_000)))
        self.assertEqual((done.returncode, clip.read_text()), (2, "old"), done)
        new = re.search(r"the new one is (\S+)", done.stderr)[1]
        self.assertGreater(probe(new)["nb_read_frames"], 1)
        self.assertEqual(orbelcast(*too_large, "--frames", "2").returncode, 0)
        self.assertEqual(probe(clip)["nb_read_frames"], 2)
        self.assertEqual(clip.stat().st_mode & 0o777, 0o640)

    def test_a_signal_ends_a_clip_that_plays(self):
        # The mosaic's first camera never answers: that holds up neither the others nor the end.
        for end, words in ((signal.SIGHUP, ["record", self.live(1)]),
                           (signal.SIGINT, ["mosaic", f"http://{self.silent()}/", self.live(2), "--record"])):
            clip = self.folder / (words[0] + ".avi")
            run = subprocess.Popen([ORBELCAST, *words, clip], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   preexec_fn=end_with_parent)
            self.wait_for_bytes(clip, run)
            time.sleep(2.5)
            run.send_signal(end)
            ended = time.monotonic()
            output, messages = run.communicate(timeout=TIMEOUT)
            self.assertLess(time.monotonic() - ended, 3)
            self.assertEqual(run.returncode, 0, messages)
            self.assertRegex(output + messages, words[0] + r"\.avi: [\d.]+ s, \d+ pictures?, ")
            self.assertGreaterEqual(probe(clip)["nb_read_frames"], 1)

    def wait_for_bytes(self, clip, run):
        end = time.monotonic() + TIMEOUT
        while not (clip.exists() and clip.stat().st_size > 0):
            self.assertTrue(run.poll() is None and time.monotonic() < end, "no clip is written")
            time.sleep(0.05)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
