#!/usr/bin/env python3
"""The whole viewer beside common players: CPU per 1,000 shown pictures, memory, time to the first picture.

Usage: bench/viewer.py BIN_FOLDER [SECONDS]

Runs each in turn, three rounds, under an Xvfb of its own, on the same 640 x 480 pictures at 25 a second from one server,
whose own CPU is not counted. Prints the medians and the ratios to the first peer. A peer that is not installed is left
out. CPU and memory are what the system accounts to the finished process.
"""
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import urllib.request

BENCH = pathlib.Path(__file__).resolve().parent
RATE = 25
ROUNDS = 3


def record_pictures(bin_folder, folder, count=50):
    """Real pictures of the camera server, so that they differ as a camera's do."""
    server = subprocess.Popen([bin_folder / "orbelcast-camera-server", "--port", "0"], stdout=subprocess.PIPE, text=True)
    try:
        address = server.stdout.readline().split()[-1]
        for number in range(count):
            with urllib.request.urlopen(f"{address}live/1?live-special0640x0480080") as answer:
                (folder / f"{number:03}.jpg").write_bytes(answer.read())
            time.sleep(1 / RATE)
    finally:
        server.terminate()
        server.wait()


def players(bin_folder, port, seconds):
    pictures = f"http://127.0.0.1:{port}"
    yield "orbelcast", [
        bin_folder / "orbelcast-player", f"{pictures}/picture", "--frame-rate", str(RATE), "--motion-zones", "1" * 25,
        "--quit-after", str(seconds)]
    if shutil.which("gst-launch-1.0"):
        yield "gst-launch", [
            "timeout", "--signal=INT", str(seconds), "gst-launch-1.0", "-q", "souphttpsrc", f"location={pictures}/stream", "!",
            "multipartdemux", "!", "jpegdec", "!", "videoconvert", "!", "ximagesink", "sync=false"]
    if shutil.which("mpv"):
        yield "mpv", [
            "timeout", str(seconds), "mpv", "--really-quiet", "--no-config", "--vo=x11", "--profile=low-latency",
            "--demuxer-lavf-format=mpjpeg", f"{pictures}/stream"]


def run(command, display):
    """CPU seconds and peak memory (MiB) of the command and what it starts."""
    environment = {**os.environ, "DISPLAY": display, "QT_QPA_PLATFORM": "xcb"}
    process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def first_picture(bin_folder, port, display):
    """Milliseconds from Connect to the first picture on screen, as the viewer's own program tells."""
    environment = {**os.environ, "DISPLAY": display, "QT_QPA_PLATFORM": "xcb"}
    result = subprocess.run(
        [bin_folder / "orbelcast-player", f"http://127.0.0.1:{port}/picture", "--frame-rate", str(RATE), "--time-first-picture",
         "--quit-after", "1"], env=environment, capture_output=True, text=True, check=False)
    return float(result.stdout.split()[-2])


def main():
    bin_folder = pathlib.Path(sys.argv[1]).resolve()
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 10
    read_end, write_end = os.pipe()
    xvfb = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x1024x24"], pass_fds=[write_end],
                            stderr=subprocess.DEVNULL)
    display = ":" + os.fdopen(read_end).readline().strip()
    with tempfile.TemporaryDirectory() as folder:
        record_pictures(bin_folder, pathlib.Path(folder))
        relay = subprocess.Popen([sys.executable, BENCH / "stream_relay.py", folder, str(RATE)], stdout=subprocess.PIPE, text=True)
        try:
            port = int(relay.stdout.readline())
            cpu, memory = {}, {}
            for _ in range(ROUNDS):
                for name, command in players(bin_folder, port, seconds):
                    used, peak = run(command, display)
                    cpu.setdefault(name, []).append(used * 1000 / (RATE * seconds))
                    memory.setdefault(name, []).append(peak)
            ours = statistics.median(cpu["orbelcast"])
            print(f"{'player':12} {'CPU s / 1,000 pictures':>23} {'orbelcast takes':>16} {'peak MiB':>9}")
            for name, values in cpu.items():
                value = statistics.median(values)
                print(f"{name:12} {value:23.2f} {ours / value:15.2f}x {statistics.median(memory[name]):9.1f}")
            waits = [first_picture(bin_folder, port, display) for _ in range(5)]
            print(f"first picture {statistics.median(waits):.1f} ms after Connect (median of {len(waits)})")
        finally:
            relay.terminate()
            relay.wait()
            xvfb.terminate()
            xvfb.wait()


main()
