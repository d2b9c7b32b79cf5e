#!/usr/bin/env python3
"""The whole viewer, as a program on a screen in memory, beside common players of the same pictures.

Usage: bench/viewer.py BIN_FOLDER [--smoke] [MEASUREMENT...]

  first    milliseconds from Connect to the first picture on the screen
  steady   CPU seconds for 1,000 pictures: the difference of a run of 12 seconds and one of 2; the start alone; memory
  hidden   CPU of the viewer in a window that is covered or minimized, in that of one that is shown
  lag      age of the picture on the screen, from the time at which the camera took it until it is painted, in the first
           and the last ten seconds of a minute, while something else wants each processor

Without a name all of them, in this order. 640 x 480 pictures, 25 a second, from one camera, whose own CPU is not counted,
as the screen's is not. A player or a program that is not installed is left out, which is said. --smoke runs each for a
moment, without the other players: that it works, not what comes out.
"""
import argparse
import contextlib
import mmap
import os
import pathlib
import re
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import time

RATE = 25
PICTURES = 128
SIZE = (640, 480)
SCREEN = (1280, 1024)
OURS = "orbelcast"

# The number in a picture, as NumberedFrames draws it.
SQUARE, SQUARES = 16, 11


class Times:
    """How long and how often things are measured."""

    def __init__(self, smoke):
        self.peers = not smoke
        self.short, self.long = (0.3, 0.6) if smoke else (2, 12)
        self.rounds = 1 if smoke else 3
        self.state = 0.3 if smoke else 4
        self.lag = 1 if smoke else 60
        self.settle = 0.3 if smoke else 1.5


@contextlib.contextmanager
def running(command, **options):
    process = subprocess.Popen([str(word) for word in command], stderr=subprocess.DEVNULL, **options)
    try:
        yield process
    finally:
        process.terminate()
        process.wait()


class Screen:
    """An X server without a screen. Its picture is a file in memory: to look at it costs the server nothing."""

    def __init__(self, display, folder):
        self.environment = {**os.environ, "DISPLAY": display, "QT_QPA_PLATFORM": "xcb"}
        with open(pathlib.Path(folder) / "Xvfb_screen0", "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        fields = struct.unpack(">25I", self.memory[:100])
        self.line_bytes, colours = fields[12], fields[19]
        self.pixels = fields[0] + colours * 12

    def call(self, *words):
        return subprocess.run([str(word) for word in words], env=self.environment, capture_output=True, text=True,
                              check=False).stdout

    def number(self, left, top):
        """Of the picture whose top-left corner is there; none where there is no such picture."""
        line = self.pixels + (top + SQUARE // 2) * self.line_bytes + (left + SQUARE // 2) * 4
        levels = [self.memory[line + square * SQUARE * 4 + 1] for square in range(SQUARES)]
        if any(64 < level < 192 for level in levels):
            return None
        white, black, *bits, parity = [level >= 192 for level in levels]
        if not white or black or sum(bits) % 2 != parity:
            return None
        return sum(bit << place for place, bit in enumerate(reversed(bits)))


@contextlib.contextmanager
def screen(*start):
    """A screen, with a program that runs on it all the time (a window manager)."""
    with tempfile.TemporaryDirectory() as folder:
        read_end, write_end = os.pipe()
        with running(["Xvfb", "-displayfd", write_end, "-fbdir", folder, "-screen", "0", f"{SCREEN[0]}x{SCREEN[1]}x24"],
                     pass_fds=[write_end]):
            os.close(write_end)
            with os.fdopen(read_end) as display:
                made = Screen(":" + display.readline().strip(), folder)
            with contextlib.ExitStack() as stack:
                if start:
                    stack.enter_context(running(start, env=made.environment, stdout=subprocess.DEVNULL))
                yield made


class Camera:
    def __init__(self, process):
        port, began = process.stdout.readline().split()
        self.address, self.began = f"http://127.0.0.1:{port}", float(began)


@contextlib.contextmanager
def camera(programs):
    with running([programs / "picture_server", RATE, PICTURES, *SIZE], stdout=subprocess.PIPE, text=True) as process:
        yield Camera(process)


def viewer_command(programs, address, *options):
    return [programs / "orbelcast-player", f"{address}/picture", "--frame-rate", RATE, "--size",
            f"{SIZE[0]}x{SIZE[1]}", *options]


def players(programs, times, address, seconds):
    """Name and command of each that is there, to show pictures for so long at the top-left corner of the screen."""
    watching = viewer_command(programs, address, "--motion-zones", "1" * 25, "--quit-after", seconds)
    # A time-out of this program's own, so that the system accounts for the player's process alone.
    limit = ["timeout", "--signal=INT", seconds]
    stream = f"{address}/stream"
    peers = {
        "gst-launch-1.0": ["-q", "souphttpsrc", f"location={stream}", "!", "multipartdemux", "!", "jpegdec", "!",
                           "videoconvert", "!", "ximagesink", "sync=false"],
        "mpv": ["--really-quiet", "--no-config", "--vo=x11", "--profile=low-latency", "--geometry=0:0", "--no-border",
                "--no-osc", "--demuxer-lavf-format=mpjpeg", stream]}
    there = {name: [*limit, name, *words] for name, words in peers.items() if times.peers and shutil.which(name)}
    return {OURS: watching, **there}


def tell_of_absent_players():
    for name in ("gst-launch-1.0", "mpv"):
        if not shutil.which(name):
            print(f"{name} is not installed and left out (tools/install_packages bench)")


def usage_of(command, environment):
    """CPU seconds and peak memory (MiB) of the command and what it starts."""
    process = subprocess.Popen([str(word) for word in command], env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def cpu_of(pid):
    """CPU seconds of a process so far."""
    tasks = pathlib.Path(f"/proc/{pid}/task").glob("*/schedstat")
    return sum(int(task.read_text().split()[0]) for task in tasks) / 1e9


def first(programs, times):
    with camera(programs) as source, screen() as shown:
        command = viewer_command(programs, source.address, "--time-first-picture", "--quit-after", 1)
        waits = [float(shown.call(*command).split()[-2]) for _ in range(2 * times.rounds - 1)]
    print(f"first picture {statistics.median(waits):.1f} ms after Connect (median of {len(waits)})")


def steady(programs, times):
    tell_of_absent_players()
    slopes, starts, memory = {}, {}, {}
    with camera(programs) as source, screen() as shown:
        for _ in range(times.rounds):
            for name in players(programs, times, source.address, 0):
                short, long = (usage_of(players(programs, times, source.address, seconds)[name], shown.environment)
                               for seconds in (times.short, times.long))
                a_second = (long[0] - short[0]) / (times.long - times.short)
                slopes.setdefault(name, []).append(a_second * 1000 / RATE)
                starts.setdefault(name, []).append(short[0] - a_second * times.short)
                memory.setdefault(name, []).append(long[1])
    ours = statistics.median(slopes[OURS])
    ours_to_start = statistics.median(starts[OURS])
    print(f"{'steady':15} {'CPU s / 1,000':>14} {'orbelcast takes':>16} {'start, CPU s':>13} {'orbelcast takes':>16} "
          f"{'peak MiB':>9}")
    for name, values in slopes.items():
        slope, start = statistics.median(values), statistics.median(starts[name])
        print(f"{name:15} {slope:14.2f} {ours / max(slope, 1e-9):15.2f}x {start:13.2f} "
              f"{ours_to_start / max(start, 1e-9):15.2f}x {statistics.median(memory[name]):9.1f}")


def window_of(shown, process):
    """The viewer's window, once it is there."""
    for _ in range(200):
        words = shown.call("xdotool", "search", "--onlyvisible", "--pid", process.pid).split()
        if words:
            return words[-1]
        time.sleep(0.05)
    sys.exit("viewer.py: the viewer shows no window")


def expect_map_state(shown, window, state):
    """Waits until the window is in that state."""
    for _ in range(100):
        if re.search(r"Map State: (\w+)", shown.call("xwininfo", "-id", window))[1] == state:
            return
        time.sleep(0.05)
    sys.exit(f"viewer.py: the viewer's window is not {state}")


def hidden(programs, times):
    missing = [name for name in ("icewm", "xdotool", "xev") if not shutil.which(name)]
    if missing:
        print(f"hidden is left out: not installed: {', '.join(missing)} (tools/install_packages bench)")
        return
    taken = {"shown": [], "covered": [], "minimized": []}
    with camera(programs) as source, screen("icewm") as shown:
        command = viewer_command(programs, source.address)
        with running(command, env=shown.environment, stdout=subprocess.DEVNULL) as viewer:
            window = window_of(shown, viewer)

            def measure(state):
                time.sleep(times.settle)
                before = cpu_of(viewer.pid)
                time.sleep(times.state)
                taken[state].append((cpu_of(viewer.pid) - before) / times.state)

            cover = ["xev", "-event", "keyboard", "-geometry", f"{SCREEN[0]}x{SCREEN[1]}+0+0"]
            for _ in range(times.rounds):
                expect_map_state(shown, window, "IsViewable")
                measure("shown")
                with running(cover, env=shown.environment, stdout=subprocess.DEVNULL):
                    measure("covered")
                shown.call("xdotool", "windowminimize", window)
                expect_map_state(shown, window, "IsUnMapped")
                measure("minimized")
                shown.call("xdotool", "windowactivate", window)
    whole = statistics.median(taken["shown"])
    for state, values in taken.items():
        value = statistics.median(values)
        print(f"{'hidden':15} {state:10} {value * 1000 / RATE:6.2f} CPU s / 1,000 pictures {value / whole:6.2f} of shown")


def watch_ages(shown, source, seconds):
    """Time and age in seconds of each picture that appears in the top-left corner of the screen."""
    ages, newest, end = [], None, time.monotonic() + seconds
    while (now := time.monotonic()) < end:
        number = shown.number(0, 0)
        if number is not None and (newest is None or number != newest % PICTURES):
            if newest is None:  # the newest one with this number
                taken = int((now - source.began) * RATE)
                newest = taken - (taken - number) % PICTURES
            else:
                newest += (number - newest) % PICTURES
            ages.append((now, now - source.began - newest / RATE))
        time.sleep(0.002)
    return ages


def lag(programs, times):
    tell_of_absent_players()
    with contextlib.suppress(PermissionError):
        os.nice(-10)  # The watch on the screen is not to wait for what is measured.
    hog = [sys.executable, "-c", "import os\nos.nice(10)\nwhile True: pass"]
    part = min(10, times.lag / 3)
    with contextlib.ExitStack() as stack:
        source, shown = stack.enter_context(camera(programs)), stack.enter_context(screen())
        for _ in range(os.cpu_count()):
            stack.enter_context(running(hog))
        for name, command in players(programs, times, source.address, times.lag + times.settle).items():
            with running(command, env=shown.environment, stdout=subprocess.DEVNULL,
                         preexec_fn=lambda: os.nice(10)):
                time.sleep(times.settle)
                ages = watch_ages(shown, source, times.lag)
            if not ages:
                print(f"{'lag':15} {name:15} showed no picture in the corner of the screen")
                continue
            begin, end = ages[0][0], ages[-1][0]
            early = statistics.median(age for at, age in ages if at <= begin + part) * 1000
            late = statistics.median(age for at, age in ages if at >= end - part) * 1000
            print(f"{'lag':15} {name:15} first {early:6.1f} ms, last {late:6.1f} ms, longest "
                  f"{max(age for _, age in ages) * 1000:6.1f} ms; {len(ages) / times.lag / RATE:4.0%} of the pictures")


MEASUREMENTS = {"first": first, "steady": steady, "hidden": hidden, "lag": lag}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=lambda text: pathlib.Path(text).resolve(), metavar="BIN_FOLDER")
    parser.add_argument("measurements", nargs="*", metavar="MEASUREMENT", choices=[[], *MEASUREMENTS])
    parser.add_argument("--smoke", action="store_true")
    options = parser.parse_args()
    for name in options.measurements or MEASUREMENTS:
        MEASUREMENTS[name](options.programs, Times(options.smoke))


main()
