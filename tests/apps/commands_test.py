#!/usr/bin/env python3
"""The command line against the camera server: commands_test.py SERVER_PROGRAM CLASS ORBELCAST [PLAYER]

One file, of which the build makes a test for each class.
"""

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
from camera_server import TIMEOUT, Server, end_with_parent, is_whole  # noqa: E402

CLASS, ORBELCAST, *PLAYER = sys.argv[1:]
PICTURES = HERE.parent / "scripts/pictures"
EXAMPLES = HERE.parent.parent / "examples/scripts"
ENVIRONMENT = {name: value for name, value in os.environ.items() if not name.startswith("ORBELCAST_")}
LOGIN = dict(ORBELCAST_USER="ann", ORBELCAST_PASSWORD="s3cret")


def orbelcast(*words, program=ORBELCAST, preexec_fn=None, stdout=subprocess.PIPE, **environment):
    done = subprocess.run([program, *map(str, words)], stdout=stdout, stderr=subprocess.PIPE, text=True,
                          timeout=TIMEOUT, stdin=subprocess.DEVNULL, env={**ENVIRONMENT, **environment},
                          preexec_fn=preexec_fn)
    done.stdout = done.stdout or ""
    assert "s3cret" not in done.stdout + done.stderr, done
    return done


def probe(clip):
    """The facts of the clip's first stream, every frame decoded. Fails where the reader complains of anything."""
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

    def started(self, *options):
        """The HOST:PORT of a camera server of the test's own."""
        server = Server(*options)
        self.addCleanup(server.end)
        return self.address(server)

    def silent(self):
        """The HOST:PORT of a server that accepts and never says a word."""
        listener = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(listener.close)
        return "127.0.0.1:%d" % listener.getsockname()[1]

    def file(self, name, text, mode=0o600):
        file = self.folder / name
        file.write_text(text)
        file.chmod(mode)
        return file

    def left(self):
        return sorted(file.name for file in self.folder.iterdir())


class Info(Commands):
    def test_people_read_a_table_and_programs_json(self):
        done = orbelcast("info", self.address(self.server))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for line in ("Name        House", "  1   Lamp  on", f"  2   Gate  2  {self.live(2)}"):
            self.assertIn(line + "\n", done.stdout)
        told = json.loads(orbelcast("info", "http://" + self.address(self.server), "--json").stdout)
        self.assertEqual(told["cameras"][0], {"device": "1", "name": "Yard", "live_base": self.live(1)})
        self.assertEqual((told["outputs"], told["inputs"], told["alerts"]),
                         ([{"name": "Lamp", "on": True}], [{"name": "Door", "on": False}], [{"name": "Fire"}]))

    def test_what_is_longer_than_is_read_is_told(self):
        text = self.file("text", "RDXVIEWER\r\nCAM:1\tYard\tnowhere\r\n" + "ALT:1\tFire\r\n" * 60_000)
        server = self.started("--info-text", str(text))
        for command in ("info", "doctor"):
            done = orbelcast(command, server)
            self.assertIn("were left out", done.stdout + done.stderr)

    def test_a_password_in_an_address_is_printed_by_nothing(self):
        for login in ("ann:s3cret", "ann:%733cret/?x", "x?user=ann&pwd=s3cret"):
            for command, *words in (("watch", "--once"), ("doctor", "--json"),
                                    ("mosaic", "--output", self.folder / "a.png")):
                done = orbelcast(command, f"http://{self.dead}/live/1/{login}", *words)
                self.assertEqual(done.returncode, 1)
                self.assertIn("***", done.stdout + done.stderr)
                self.assertNotIn("%733cret", done.stdout + done.stderr)


class ServerCommands(Commands):
    def test_outputs_alerts_and_messages(self):
        server = self.started("--output", "Lamp=on", "--alert", "Fire")
        for words, printed in ((["output"], "1  Lamp  on"), (["output", "lamp", "off"], "1  Lamp  off"),
                               (["output", "1"], "1  Lamp  off"), (["alert", "Fire"], "1  Fire  active"),
                               (["message", "a & b"], "")):
            done = orbelcast(words[0], server, *words[1:])
            self.assertEqual((done.returncode, done.stdout.strip(), done.stderr), (0, printed, ""))
        self.assertIn(",Message,a & b\n", orbelcast("log", server, "-").stdout)
        self.assertIn("there are Lamp", orbelcast("output", server, "Siren", "on").stderr)
        self.assertEqual(orbelcast("message", self.address(self.guarded), "x").returncode, 1)


class Log(Commands):
    def test_the_whole_log_becomes_a_file_or_leaves_it_as_it_was(self):
        file = self.folder / "log.csv"
        done = orbelcast("log", self.address(self.guarded), file, **LOGIN)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))
        self.assertTrue(file.read_bytes().startswith(b"Date,Time,Address,User,Event,Detail\r\n"))
        file.write_text("old")
        for server, why in ((self.dead, "orbelcast doctor"), (self.address(self.guarded), "another user name or password")):
            for command, words in (("log", [file]), ("info", ["--json"])):
                done = orbelcast(command, server, *words, "--user", "nobody")
                self.assertEqual(done.returncode, 1)
                self.assertIn(why, done.stderr)
        self.assertEqual(file.read_text(), "old")


class Snapshot(Commands):
    def test_success_is_byte_for_byte_what_the_server_sent(self):
        file = self.file("now.jpg", "x" * 5000)
        (self.folder / "link.jpg").symlink_to(file)
        self.assertEqual(orbelcast("snapshot", self.live(2), self.folder / "link.jpg").returncode, 0)
        self.assertEqual(file.read_bytes(), (PICTURES / "2_moved.jpg").read_bytes())
        self.assertEqual(self.left(), ["link.jpg", "now.jpg"])

    def test_failure_says_what_to_do_and_leaves_everything_as_it_was(self):
        file = self.file("now.jpg", "old")
        for url, name, status, why in (
                (self.live(99), file, 1, "has no such camera; 'orbelcast info'"),
                (self.live(1), self.folder / "no/now.jpg", 2, "there is no folder")):
            done = orbelcast("snapshot", url, name)
            self.assertEqual(done.returncode, status, done)
            self.assertIn(why, done.stderr)
        self.assertEqual((self.left(), file.read_text()), (["now.jpg"], "old"))

    def test_each_failure_has_a_kind_and_a_text_of_its_own(self):
        for url, kind, why in ((f"http://{self.dead}/", "unreachable", "nobody takes a connection"),
                               (f"http://{self.silent()}/", "timed-out", "gave up after 0.3 s"),
                               (f"http://{self.address(self.server)}/", "no-picture", "not of a page"),
                               (self.live(99), "status", "has no such camera"),
                               (self.address(self.guarded), "login", "asks for a user name"),
                               (self.live(1, self.guarded) + " --user x --password y", "login", "not accept this login")):
            done = orbelcast("snapshot", *url.split(), self.folder / "a.jpg", "--json", "--timeout", "0.3")
            error = json.loads(done.stdout)["error"]
            self.assertEqual((done.returncode, error["kind"], done.stderr), (1, kind, f"orbelcast: {error['text']}\n"))
            self.assertIn(why, error["text"])
        self.assertEqual(orbelcast("snapshot", self.live(99), "-s", self.folder / "a.jpg").stderr, "")

    def test_a_series_the_archive_and_a_camera_of_a_server(self):
        server = self.started()
        done = orbelcast("snapshot", server, "--device", "2", "--every", "0.2", "-n", "2", "-o", self.folder / "%Y.jpg")
        [name] = self.left()
        self.assertEqual(done.stdout, f"{self.folder / name}\n" * 2)
        self.assertRegex(name, r"^\d{4}\.jpg$")
        done = orbelcast("snapshot", server, "--at", "2026-11-24 13:00", self.folder / name, "--json")
        self.assertEqual(list(json.loads(done.stdout))[-1], "taken")

    def test_a_dash_is_standard_output(self):
        def printed(*words):
            return subprocess.run([ORBELCAST, *words], capture_output=True, timeout=60, check=True).stdout

        self.assertEqual(printed("snapshot", self.live(2), "-"), (PICTURES / "2_moved.jpg").read_bytes())
        self.assertTrue(printed("watch", self.live(2), "--once", "--picture", "-").startswith(b"\x89PNG"))
        self.assertEqual(orbelcast("snapshot", self.live(2), "-", "--json").returncode, 2)


class Mosaic(Commands):
    def test_a_grid_becomes_a_file(self):
        for name in ("grid.png", "grid.bmp"):
            grid = self.folder / name
            done = orbelcast("mosaic", self.live(1), self.live(1, self.guarded) + "/ann:s3cret", self.live(2),
                             f"http://{self.dead}/live/1", "--size", "320x240", "--output", grid)
            self.assertEqual(done.returncode, 0, done)
            self.assertRegex(done.stderr, f"^orbelcast: no picture from http://{self.dead}/live/1: nobody takes .*\n$")
            self.assertEqual(json.loads(done.stdout)["event"], "StreamInfo")
            tiles = [pixel(grid, x, y) for x, y in ((10, 10), (170, 10), (10, 130), (170, 130))]
            # The two grey ones were stretched, the dead one is black.
            self.assertRegex(" ".join(tiles), r"^(srgba?\(99,99,99(,1)?\)) srgba?\(.* \1 srgba?\(0,0,0(,1)?\)$")
            self.assertNotIn(tiles[1], (tiles[0], tiles[3]))


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
        done = orbelcast("record", self.live(1), clip, "--frames", "1", "--json")
        kind = json.loads(done.stdout)["error"]["kind"]
        self.assertEqual((done.returncode, clip.read_bytes(), kind), (2, before, "exists"))
        done = orbelcast("record", f"http://{self.dead}/", clip, "--frames", "1", "--overwrite")
        self.assertEqual((done.returncode, clip.read_bytes(), self.left()), (1, before, ["yard.avi"]))

    def test_the_cameras_own_pictures_are_copied_into_each_container(self):
        pictures = [file.read_bytes() for file in PICTURES.glob("*.jpg")]
        for name, form in (("a.avi", b"RIFF"), ("a.mkv", b"\x1aE\xdf\xa3"), ("-", b"\x1aE\xdf\xa3")):
            done = subprocess.run([ORBELCAST, "record", self.live(1), "-c", "copy", "-n", "4", "-q", "-o", name],
                                  capture_output=True, cwd=self.folder, timeout=TIMEOUT)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            clip = done.stdout if name == "-" else (self.folder / name).read_bytes()
            self.assertEqual((clip[:4], sum(map(clip.count, pictures))), (form, 4), name)
            self.file("clip", "").write_bytes(clip)
            self.assertEqual(probe(self.folder / "clip")["nb_read_frames"], 4)

    def test_a_new_clip_begins_after_so_many_seconds(self):
        done = orbelcast("record", self.live(1), "--segment", "1", "-n", "15", "-o", self.folder / "%H%M%S.mkv", "--json")
        clips = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual([clip["file"] for clip in clips], [str(self.folder / name) for name in self.left()])
        self.assertGreaterEqual(len(clips), 2)
        self.assertEqual(sum(clip["pictures"] for clip in clips), 15)

    def test_it_ends_where_no_picture_comes_and_says_why(self):
        silent = f"http://{self.silent()}/"
        for words, why in ((["record", silent, "--seconds", "0.2"], "gave up after 0.2 s"),
                           (["record", silent, "--timeout", "0.2", "--auto-reconnect"], "gave up after 0.2 s"),
                           (["record", self.live(1, self.guarded)], "asks for a user name and a password")):
            done = orbelcast(*words, self.folder / "none.avi")
            self.assertEqual((done.returncode, self.left()), (1, []))
            self.assertIn(why, done.stderr)

    def test_the_old_clip_stays_until_the_new_one_is_finished(self):
        clip = self.file("yard.avi", "old", 0o640)
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
            time.sleep(0.5)
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


class Doctor(Commands):
    def examine(self, *words, **environment):
        """The doctor's exit status, and its steps by name."""
        done = orbelcast("doctor", *words, "--json", "--seconds", "0.5", **environment)
        self.assertEqual(done.stderr, "")
        told = json.loads(done.stdout)
        self.assertEqual(told["works"], done.returncode == 0)
        steps = {step["step"]: step for step in told["steps"]}
        return done.returncode, steps

    def fails_at(self, step, *words, **environment):
        """The failed step, which tells what to do; those before it work, and those behind it were not looked at."""
        status, steps = self.examine(*words, **environment)
        results = [each["result"] for each in steps.values()]
        place = list(steps).index(step)
        self.assertEqual((status, results[place]), (1, "failed"), steps)
        self.assertNotIn("failed", results[:place])
        self.assertEqual(set(results[place + 1:]) - {"skipped"}, set())
        self.assertTrue(steps[step]["advice"])
        return steps[step]

    def test_it_finds_that_all_works(self):
        server = self.started()
        status, steps = self.examine(f"http://{server}/", "--device", "2")
        self.assertEqual((status, {step["result"] for step in steps.values()}), (0, {"ok"}))
        self.assertEqual((steps["information"]["cameras"], steps["size"]["width"], steps["size"]["height"]),
                         (4, 640, 480))
        self.assertEqual(self.examine(f"http://{server}/stream/1")[1]["picture"]["kind"], "stream")

    def test_it_says_where_it_fails_and_what_to_do(self):
        guarded = self.address(self.guarded)
        self.assertIn("none was given", self.fails_at("credentials", guarded)["found"])
        wrong = self.fails_at("credentials", guarded, "--user", "ann", ORBELCAST_PASSWORD="hush")
        self.assertIn("'ann'", wrong["found"])
        self.assertNotIn("hush", str(wrong))
        self.fails_at("name", "no-such-host.invalid")
        self.assertIn("no port 99999", self.fails_at("name", "127.0.0.1:99999")["found"])
        self.assertIn("nothing listens", self.fails_at("connection", self.dead)["found"])
        self.assertIn("0.2 s", self.fails_at("information", self.silent(), "--timeout", "0.2")["found"])
        for text, words in (("hello", "not as a camera server"), ("RDXVIEWER\r\n", "0 cameras")):
            server = self.started("--info-text", str(self.file("text", text)))
            self.assertIn(words, self.fails_at("information", server)["found"])
        self.assertIn("no JPEG", self.fails_at("picture", self.started("--fault", "1=junkbody"))["found"])
        broken = self.started("--fault", "1=status:503")
        self.assertIn("503", self.fails_at("picture", broken)["found"])
        self.assertIn("1, 2, 3, 4", self.fails_at("information", broken, "--device", "9")["advice"])
        self.fails_at("picture", self.started("--fault", "1=never"), "--timeout", "0.3")


class Login(Commands):
    def test_which_credentials_win_and_what_is_wrong_with_a_file(self):
        server = self.address(self.guarded)
        login = self.file("login", "# the yard\nuser = ann\npassword = \"s3cret\"\n")
        other = {"ORBELCAST_USER": "eve", "ORBELCAST_PASSWORD": "other"}
        self.assertEqual(orbelcast("info", server, "--credentials", login, **other).returncode, 0, "the file wins")
        command = [ORBELCAST, "info", server, "--credentials", "-"]
        self.assertEqual(subprocess.run(command, input=login.read_bytes(), capture_output=True).returncode, 0)
        done = orbelcast("watch", self.live(1, self.guarded), "--once", "--credentials", login)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        done = orbelcast("info", server, "--credentials", login, "--user", "eve")
        self.assertEqual(done.returncode, 1, "the option wins")
        only_user = self.file("only-user", "user = ann")
        mixed = orbelcast("info", server, "--credentials", only_user, ORBELCAST_PASSWORD="s3cret")
        self.assertEqual(mixed.returncode, 1, "a password from elsewhere is not sent with the file's user")

        done = orbelcast("info", server, "--credentials", self.file("open", login.read_text(), 0o644))
        self.assertEqual(done.returncode, 0)
        self.assertIn("chmod 600", done.stderr)
        main, terminal = os.openpty()
        with subprocess.Popen([ORBELCAST, "info", server, "--user", "ann"], stdin=terminal, stderr=terminal,
                              stdout=subprocess.DEVNULL, preexec_fn=end_with_parent, env=ENVIRONMENT) as asks:
            shown = os.read(main, 100)
            os.write(main, b"s3cret\n")
            self.assertEqual(asks.wait(TIMEOUT), 0)
        self.assertEqual((shown + os.read(main, 100)).strip(), b"Password of ann:")
        os.close(main), os.close(terminal)

        for text, complaint in (("\nuser = ann\npasswort = s3cret", "line 3"), ("password = s3cret", "names no user"),
                                ("#" * 100_000, "too large")):
            done = orbelcast("info", server, "--credentials", self.file("bad", text))
            self.assertEqual(done.returncode, 2)
            self.assertIn(complaint, done.stderr)


class ExampleScripts(Commands):
    def saved(self, name, address, *words):
        """The files that the example says it saved."""
        # A login that a shell and a script's line could both trip over.
        user, password = "ann", 'a "b" \\c $HOME'
        server = self.started("--auth", "basic", "--user", user, "--password", password)
        done = orbelcast(address % server, *words, program=EXAMPLES / name, ORBELCAST=ORBELCAST, ORBELCAST_USER=user,
                         ORBELCAST_PASSWORD=password, ORBELCAST_REGISTRY=str(self.folder / "registry.json"),
                         ORBELCAST_MODULE_FOLDER=str(self.folder / "module"))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout.splitlines()

    def test_pictures_at_times_and_a_clip_on_motion(self):
        pictures = self.saved("picture-every-minute.sh", "http://%s/live/1", self.folder / "out", 1, 2)
        self.assertEqual(sorted(pictures), sorted(map(str, (self.folder / "out").iterdir())))
        for file in pictures:
            self.assertTrue(is_whole(pathlib.Path(file).read_bytes()))
        [clip] = self.saved("clip-on-motion.sh", "%s", 1, self.folder / "clips", 2, 1)
        self.assertGreaterEqual(probe(clip)["nb_read_frames"], 2)


class Usage(Commands):
    def test_a_wrong_command_line_says_what_to_do(self):
        for words, part in (((), "name a command"),
                            (("snapshto",), "did you mean snapshot?"),
                            (("watch", "http://a/", "--sise", "s3cret"), "option: --sise; did you mean --size?"),
                            (("snapshot", "a", "--at", "2026-02-30 13:00", "b.jpg"), "give a day and a time"),
                            (("watch", "127.0.0.1/live/1/ann:s3cret"), "did you mean http://127.0.0.1/live/1/ann:***?"),
                            (("record", "http://a/b", "c.mkv", "-c", "huffyuv"), "takes copy alone"),
                            (("record", "http://a/b", "c.mp4"), "must end in .avi")):
            done = orbelcast(*words)
            self.assertEqual(done.returncode, 2)
            self.assertRegex(done.stderr, r"^orbelcast: (.|\n)*--help'\.\n$")
            self.assertIn(part, done.stderr)

    def test_help_fits_a_terminal(self):
        commands = re.findall(r"^  ([a-z]+) ", orbelcast("--help").stdout.partition("Subcommands")[2], re.M)
        self.assertIn("record", commands)
        for command in commands:
            lines = orbelcast(command, "--help").stdout.splitlines() if command != "play" or PLAYER else []
            self.assertEqual([line for line in lines if len(line) > 100], [])

    def test_output_that_cannot_be_written_is_told(self):
        script = self.file("s", "print x\n")
        for words in (("info", self.address(self.server)), ("watch", self.live(1)), ("script", script)):
            with self.subTest(words=words), open("/dev/full", "w") as full:
                done = orbelcast(*words, stdout=full)
                self.assertNotEqual(done.returncode, 0)
                self.assertIn("cannot write to standard output", done.stderr)
        with subprocess.Popen([ORBELCAST, "watch", self.live(1)], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              text=True) as watch:
            watch.stdout.readline()
            watch.stdout.close()
            self.assertIn("cannot write to standard output", watch.stderr.read())
            self.assertNotEqual(watch.wait(TIMEOUT), 0)

    @unittest.skipUnless(PLAYER, "the player is not built")
    def test_the_player_says_what_is_wrong_and_ends_orderly(self):
        # No look for leaks: the toolkit's pooled threads may still hold something at the process's end.
        places = dict.fromkeys(("HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"), str(self.folder))
        places |= {"QT_QPA_PLATFORM": "offscreen", "ORBELCAST_REGISTRY": str(self.folder / "registry"),
                   "ASAN_OPTIONS": "detect_leaks=0"}
        nowhere = places | dict.fromkeys(("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"), "")
        few = lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (32, 32))  # noqa: E731
        for words, status, part, environment, limit in (
                (("127.0.0.1:1",), 1, "there is no display", nowhere, None),
                (("127.0.0.1:1",), 1, "ulimit -n", places, few),
                ((self.address(self.guarded), "--device", "garden", "--quit-after", "1"), 0, "no camera 'garden'",
                 places | LOGIN, None)):
            done = orbelcast(*words, program=PLAYER[0], preexec_fn=limit, **environment)
            self.assertEqual(done.returncode, status, done)
            self.assertIn(part, done.stderr)
        with subprocess.Popen([PLAYER[0], self.live(1), "--time-first-picture"], text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, preexec_fn=end_with_parent, env=ENVIRONMENT | places) as shown:
            self.assertIn("first picture", shown.stdout.readline())
            shown.send_signal(signal.SIGTERM)
            self.assertEqual(shown.wait(TIMEOUT), 0)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], CLASS])
