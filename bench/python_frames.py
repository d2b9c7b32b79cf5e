#!/usr/bin/python3
"""CPU of a frame handed to a Python program, beside a C++ host of the same library and OpenCV's own capture.

Usage: bench/python_frames.py BIN_FOLDER [--smoke]

Prints the microseconds of CPU a frame, a median of runs that take turns, and the ratio to the C++ host that does the
same: a frame as bytes, and as an array of pixels. 640 x 480 pictures from the camera server, whose own CPU is not counted.
With OpenCV for Python installed the frames of a stream, 10 a second, are taken by cv2.VideoCapture and by this package.
"""
import os
import pathlib
import re
import statistics
import subprocess
import sys

ROOT = pathlib.Path(__file__).parent.parent
BIN = pathlib.Path(sys.argv[1])
SMOKE = "--smoke" in sys.argv
LIBRARY = BIN.parent / "lib/liborbelcast.so"
ROUNDS, SECONDS = (1, 0.5) if SMOKE else (5, 5)

OURS = """
import sys, time, numpy, orbelcast
viewer = orbelcast.VideoServerPush(FrameRate={rate})
viewer.Connect(sys.argv[1])
count, sum, start = 0, 0, time.process_time()
for frame in viewer.frames(seconds=float(sys.argv[2])):
    count += 1
    {look}
print(1e6 * (time.process_time() - start) / count)
"""
BYTES = "jpeg = frame.jpeg; sum += jpeg[0] + jpeg[len(jpeg) // 2]"
ARRAY = "array = frame.array; sum += int(array[0, 0, 0]) + int(array[-1, -1, 2])"

CAPTURED = """
import sys, time, cv2
cv2.setNumThreads(1)
capture = cv2.VideoCapture(sys.argv[1])
count, start, end = 0, time.process_time(), time.monotonic() + float(sys.argv[2])
while time.monotonic() < end:
    good, array = capture.read()
    count += good
print(1e6 * (time.process_time() - start) / count)
"""


def printed(*command):
    run = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=True,
                         env={**os.environ, "ORBELCAST_LIBRARY": str(LIBRARY), "PYTHONPATH": str(ROOT / "python")})
    return float(run.stdout)


def python(program, *arguments):
    return lambda: printed(sys.executable, "-c", program, *arguments)


def compare(title, unit, ways):
    """The ways take turns; the first is what the others are compared to."""
    results = {name: [] for name in ways}
    for _ in range(ROUNDS):
        for name, measure in ways.items():
            results[name].append(measure())
    medians = {name: statistics.median(found) for name, found in results.items()}
    first = next(iter(medians.values()))
    for name, median in medians.items():
        print(f"{title:8} {name:24} {median:9.0f} {unit} {median / first:6.2f}")


def main():
    server = subprocess.Popen([BIN / "orbelcast-camera-server", "--port", "0"], stdout=subprocess.PIPE, text=True)
    try:
        root = re.search(r"http://\S+/", server.stdout.readline())[0]
        for title, kind, look in (("bytes", "bytes", BYTES), ("array", "pixels", ARRAY)):
            compare(title, "us a frame", {
                "C++": lambda kind=kind: printed(BIN / "host_frames", LIBRARY, root + "live/1", SECONDS, kind),
                "Python": python(OURS.format(look=look, rate=30), root + "live/1", SECONDS)})
        ways = {"orbelcast": python(OURS.format(look=ARRAY, rate=10), root + "stream/1", SECONDS)}
        if subprocess.run([sys.executable, "-c", "import cv2"], capture_output=True).returncode == 0:
            ways["cv2.VideoCapture"] = python(CAPTURED, root + "stream/1", SECONDS)
        else:
            print("cv2.VideoCapture is left out: python3-opencv is not installed")
        compare("stream", "us a frame", ways)
    finally:
        server.kill()
        server.wait()


if __name__ == "__main__":
    main()
