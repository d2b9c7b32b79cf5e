#!/usr/bin/env python3
"""The command line as a new user meets it: command_line_test.py ORBELCAST SERVER [PLAYER]."""

import ctypes
import json
import os
import pathlib
import pty
import re
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import unittest
import urllib.request

ORBELCAST, SERVER, *PLAYER = sys.argv[1:]
TIMEOUT = 60
ENVIRONMENT = {name: value for name, value in os.environ.items() if not name.startswith("ORBELCAST_")}
STEPS = ["name", "connection", "credentials", "information", "picture", "size", "rate", "time code"]


def end_with_parent():
    """A server does not outlive a test that was killed."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


def run(*words, program=ORBELCAST, **environment):
    return subprocess.run([program, *map(str, words)], capture_output=True, text=True, timeout=TIMEOUT,
                          stdin=subprocess.DEVNULL, env={**ENVIRONMENT, **environment})


def on_a_terminal(*words, **environment):
    """What the command prints where standard output is a terminal."""
    try:
        ours, theirs = pty.openpty()
    except OSError as error:
        raise unittest.SkipTest(f"there is no terminal here: {error}") from error
    with subprocess.Popen([ORBELCAST, *words], stdout=theirs, env={**ENVIRONMENT, **environment}) as process:
        process.wait(TIMEOUT)
        os.close(theirs)
        text = b""
        try:
            while piece := os.read(ours, 65536):
                text += piece
        except OSError:  # how a terminal says that its other side is closed
            pass
        os.close(ours)
    return text.decode()


def unused_port():
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        return taken.getsockname()[1]


class CommandLineTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def server(self, *options):
        """Starts a camera server and gives its HOST:PORT."""
        process = subprocess.Popen([SERVER, "--port", "0", *map(str, options)], stdout=subprocess.PIPE, text=True,
                                   preexec_fn=end_with_parent, env=ENVIRONMENT)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return re.search(r"http://(\S+)/", process.stdout.readline())[1]

    def file(self, name, text, mode=0o600):
        file = self.folder / name
        file.write_text(text)
        file.chmod(mode)
        return file

    def guarded(self):
        login = self.file("login", "# the yard\nuser = ann\npassword = \" two words \"\n")
        return self.server("--auth", "basic", "--credentials", login), login

    def examine(self, *words, **environment):
        """The doctor's exit status, and its steps by name."""
        done = run("doctor", *words, "--json", "--seconds", "0.5", **environment)
        self.assertEqual(done.stderr, "")
        told = json.loads(done.stdout)
        self.assertEqual(told["works"], done.returncode == 0)
        steps = {step["step"]: step for step in told["steps"]}
        self.assertEqual([name for name in steps if name != "relay"], STEPS)
        return done.returncode, steps

    def fails_at(self, step, *words, **environment):
        """The failed step, which tells what to do; those before it work, and those behind it were not looked at."""
        status, steps = self.examine(*words, **environment)
        self.assertEqual(status, 1)
        results = [each["result"] for each in steps.values()]
        place = list(steps).index(step)
        self.assertEqual(results[place], "failed", steps)
        self.assertNotIn("failed", results[:place])
        self.assertEqual(set(results[place + 1:]) - {"skipped"}, set())
        self.assertTrue(steps[step]["advice"])
        return steps[step]

    # ---- doctor ---------------------------------------------------------------------------------------------------

    def test_doctor_finds_that_all_works(self):
        server = self.server()
        status, steps = self.examine(f"http://{server}/", "--device", "2")
        self.assertEqual(status, 0)
        self.assertEqual({step["result"] for step in steps.values()}, {"ok"})
        self.assertEqual(steps["information"]["cameras"], 4)
        self.assertIn("Mill Lane", steps["picture"]["found"])
        self.assertEqual((steps["size"]["width"], steps["size"]["height"]), (640, 480))
        self.assertGreater(steps["rate"]["pictures_a_second"], 3)
        self.assertLess(abs(steps["time code"]["seconds_ahead"]), 30)

        for people in (run("doctor", server), run("doctor", f"{server}/live/3")):
            self.assertEqual((people.returncode, people.stderr), (0, ""))
            self.assertIn("Everything works.", people.stdout)
            self.assertNotIn("\033", people.stdout)
        relay = run("doctor", "relay.test/demo", ORBELCAST_RELAY_HOST="relay.test", ORBELCAST_RELAY_LOOKUP_HOST=server)
        self.assertIn(f"the account's server is {server}", relay.stdout)

    def test_doctor_says_where_it_fails_and_what_to_do(self):
        guarded, login = self.guarded()
        self.assertIn("none was given", self.fails_at("credentials", guarded)["found"])
        wrong = self.fails_at("credentials", guarded, "--user", "ann", ORBELCAST_PASSWORD="hush")
        self.assertIn("'ann'", wrong["found"])
        self.assertNotIn("hush", str(wrong))
        self.assertEqual(self.examine(guarded, "--credentials", login)[0], 0)

        self.fails_at("name", "no-such-host.invalid")
        self.assertIn("nothing listens", self.fails_at("connection", f"127.0.0.1:{unused_port()}")["found"])
        with socket.create_server(("127.0.0.1", 0)) as silent:  # accepts, and never says a word
            self.fails_at("information", f"127.0.0.1:{silent.getsockname()[1]}", "--timeout", "0.2")
        with urllib.request.urlopen(f"http://{self.server()}/live/1") as answer:
            picture = answer.read()
        for body, step, words in ((b"hello", "information", "not as a camera server"),
                                  (b"RDXVIEWER\r\n", "information", "0 cameras")):
            self.assertIn(words, self.fails_at(step, self.any_web_server(body))["found"])
        self.assertIn("no JPEG", self.fails_at("picture", self.any_web_server(b"hello") + "/photo.jpg")["found"])
        status, steps = self.examine(self.any_web_server(picture) + "/photo.jpg")
        self.assertEqual((status, steps["time code"]["result"]), (0, "note"))

        broken = self.server("--fault", "1=status:503")
        self.assertIn("503", self.fails_at("picture", broken)["found"])
        self.assertIn("1, 2, 3, 4", self.fails_at("information", broken, "--device", "9")["advice"])
        self.fails_at("picture", self.server("--fault", "1=never"), "--timeout", "0.3")

    def any_web_server(self, body):
        """Answers every request with `body`; gives its HOST:PORT."""
        listener = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(listener.close)

        def serve():
            while True:
                try:
                    link = listener.accept()[0]
                except OSError:
                    return
                with link:
                    link.settimeout(TIMEOUT)
                    if link.recv(65536):
                        link.sendall(b"HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: %d\r\n\r\n" % len(body) +
                                     body)

        threading.Thread(target=serve, daemon=True).start()
        self.addCleanup(listener.shutdown, socket.SHUT_RDWR)
        return "127.0.0.1:%d" % listener.getsockname()[1]

    def test_colours_are_for_terminals_alone(self):
        closed = f"127.0.0.1:{unused_port()}"
        self.assertIn("\033[", on_a_terminal("doctor", closed, TERM="xterm", NO_COLOR=""))
        self.assertNotIn("\033[", on_a_terminal("doctor", closed, TERM="xterm", NO_COLOR="1"))
        self.assertNotIn("\033[", on_a_terminal("doctor", closed, TERM="dumb"))

    # ---- credentials ----------------------------------------------------------------------------------------------

    def test_every_command_takes_credentials_from_a_file(self):
        server, login = self.guarded()
        camera = f"http://{server}/live/1"
        commands = {"info": (server,), "watch": (camera, "--once"), "snapshot": (camera, self.folder / "a.jpg"),
                    "record": (camera, self.folder / "a.avi", "--frames", "2"),
                    "mosaic": (camera, "--output", self.folder / "a.png"), "doctor": (server, "--seconds", "0.2")}
        for command, words in commands.items():
            with self.subTest(command=command):
                self.assertEqual(run(command, *words).returncode, 1, "without credentials")
                done = run(command, *words, "--credentials", login)
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                done = run(command, *words, "--overwrite" if command == "record" else "--user=ann",
                           ORBELCAST_USER="ann", ORBELCAST_PASSWORD=" two words ")
                self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_which_credentials_win_and_what_is_wrong_with_a_file(self):
        server, login = self.guarded()
        other = {"ORBELCAST_USER": "eve", "ORBELCAST_PASSWORD": "other"}
        self.assertEqual(run("info", server, "--credentials", login, **other).returncode, 0, "the file wins over these")
        self.assertEqual(run("info", server, "--credentials", login, "--user", "eve").returncode, 1, "the option wins")
        only_user = self.file("only-user", "user = ann")
        mixed = run("info", server, "--credentials", only_user, ORBELCAST_PASSWORD=" two words ")
        self.assertEqual(mixed.returncode, 1, "a password from elsewhere is not sent with the file's user")

        done = run("info", server, "--credentials", self.file("open", login.read_text(), 0o644))
        self.assertEqual(done.returncode, 0)
        self.assertIn("warning", done.stderr)
        self.assertIn("chmod 600", done.stderr)
        for text, complaint in (("ann secret", "line 1"), ("\nuser = ann\npasswort = secret", "line 3"),
                                ("password = secret", "names no user"), ("user = a\x01b", "control character"),
                                ("#" * 100_000, "too large")):
            done = run("info", server, "--credentials", self.file("bad", text))
            self.assertEqual(done.returncode, 2)
            self.assertIn(complaint, done.stderr)
            self.assertNotIn("secret", done.stderr)
        for missing in (self.folder, self.folder / "none"):
            self.assertIn("cannot read", run("info", server, "--credentials", missing).stderr)

    # ---- a new user -----------------------------------------------------------------------------------------------

    def test_a_wrong_command_line_says_what_to_do(self):
        dead = f"127.0.0.1:{unused_port()}"
        cases = [
            ((), 2, "name a command"),
            (("wathc",), 2, "there is no such command"),
            (("watch",), 2, "URL is required"),
            (("watch", "http://a/", "--sise", "1x1"), 2, "unknown option: --sise"),
            (("watch", "127.0.0.1:8080/live/1"), 2, "did you mean http://127.0.0.1:8080/live/1?"),
            (("watch", "127.0.0.1/live/1/ann:secret"), 2, "did you mean http://127.0.0.1/live/1/ann:***?"),
            (("snapshot", "https://a/b", "c.jpg"), 2, "not https"),
            (("info", "https://a"), 2, "leave https:// out"),
            (("snapshot", "http://a/b", "/no/such/folder/c.jpg"), 2, "there is no folder /no/such/folder"),
            (("snapshot", "http://a/b", self.folder), 2, "it is a folder"),
            (("record", "http://a/b", "c.mp4"), 2, "must end in .avi"),
            (("mosaic", "http://a/b"), 2, "say where the grid goes"),
            (("info", dead), 1, "orbelcast doctor"),
            (("snapshot", f"http://{dead}/live/1", self.folder / "none.jpg"), 1, "orbelcast doctor"),
            (("script", "/no/such/file"), 2, "cannot read /no/such/file"),
        ]
        for words, status, part in cases:
            with self.subTest(words=words):
                done = run(*words)
                self.assertEqual(done.returncode, status, done)
                self.assertIn(part, done.stderr)
                self.assertTrue(done.stderr.startswith("orbelcast: "), done.stderr)
                self.assertNotIn("secret", done.stderr)
                if status == 2 and words and words[0] != "script":
                    self.assertIn("--help'.\n", done.stderr)
        self.assertFalse((self.folder / "none.jpg").exists())

    def test_output_that_cannot_be_written_is_told(self):
        server = self.server()
        camera = f"http://{server}/live/1"
        for words in (("info", server), ("doctor", server, "--seconds", "0.1"), ("watch", camera),
                      ("snapshot", camera, self.folder / "a.jpg", "--json"), ("--version",),
                      ("record", camera, self.folder / "a.avi", "--frames", "1"),
                      ("mosaic", camera, "--output", self.folder / "a.png"), ("script", self.file("s", "print x\n"))):
            with self.subTest(words=words), open("/dev/full", "w") as full:
                done = subprocess.run([ORBELCAST, *map(str, words)], stdout=full, stderr=subprocess.PIPE, text=True,
                                      timeout=TIMEOUT, env=ENVIRONMENT)
                self.assertNotEqual(done.returncode, 0)
                self.assertIn("cannot write to standard output", done.stderr)
        with subprocess.Popen([ORBELCAST, "watch", camera], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              text=True, env=ENVIRONMENT) as watch:
            watch.stdout.readline()
            watch.stdout.close()
            self.assertIn("cannot write to standard output", watch.stderr.read())
            self.assertNotEqual(watch.wait(TIMEOUT), 0)

    @unittest.skipUnless(PLAYER, "the player is not built")
    def test_the_player_tells_of_a_device_that_is_not_there(self):
        def play(*words):
            # No look for leaks: the toolkit's pooled threads may still hold something at the process's end.
            return run(*words, program=PLAYER[0], QT_QPA_PLATFORM="offscreen", HOME=str(self.folder),
                       XDG_CONFIG_HOME=str(self.folder), XDG_RUNTIME_DIR=str(self.folder),
                       ORBELCAST_REGISTRY=str(self.folder / "registry"), ASAN_OPTIONS="detect_leaks=0")

        no_display = run("127.0.0.1:1", program=PLAYER[0], DISPLAY="", WAYLAND_DISPLAY="", QT_QPA_PLATFORM="")
        self.assertEqual(no_display.returncode, 1)
        self.assertIn("there is no display", no_display.stderr)

        with subprocess.Popen([PLAYER[0], f"http://{self.server()}/live/1", "--time-first-picture"], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, preexec_fn=end_with_parent,
                              env={**ENVIRONMENT, "QT_QPA_PLATFORM": "offscreen", "ASAN_OPTIONS": "detect_leaks=0"}) as shown:
            self.assertIn("first picture", shown.stdout.readline())
            shown.send_signal(signal.SIGTERM)
            self.assertEqual(shown.wait(TIMEOUT), 0, "it ends orderly")

        done = subprocess.run(["bash", "-c", 'ulimit -n 32; exec "$0" 127.0.0.1:1', PLAYER[0]], capture_output=True,
                              text=True, timeout=TIMEOUT, env={**ENVIRONMENT, "QT_QPA_PLATFORM": "offscreen"})
        self.assertEqual(done.returncode, 1)
        self.assertIn("ulimit -n", done.stderr)

        server, login = self.guarded()
        unknown = play(server, "--credentials", login, "--device", "garden", "--quit-after", "1")
        self.assertEqual(unknown.returncode, 0)
        self.assertIn("there is no camera 'garden'", unknown.stderr)
        known = play(server, "--credentials", login, "--device", "2", "--quit-after", "1")
        self.assertEqual((known.returncode, known.stderr), (0, ""))
        for words, part in (((), "is required"), (("ftp://a",), "a camera server is HOST or HOST:PORT"),
                            (("a", "--sise", "secret"), "unknown option: --sise"),
                            (("a", "--quit-after", "1", "--screenshot", "/no/a.png"), "there is no folder /no")):
            done = play(*words)
            self.assertEqual(done.returncode, 2)
            self.assertIn(part, done.stderr)
            self.assertIn("See 'orbelcast-player --help'.", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
