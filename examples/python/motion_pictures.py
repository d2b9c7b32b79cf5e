"""Saves a picture whenever something moves: motion_pictures.py ADDRESS FOLDER [SECONDS]"""

import pathlib
import sys

import orbelcast

address, folder = sys.argv[1], pathlib.Path(sys.argv[2])
seconds = float(sys.argv[3]) if len(sys.argv) > 3 else None
folder.mkdir(parents=True, exist_ok=True)
viewer = orbelcast.VideoServerPush(FrameRate=10, MotionDetector=True, MotionByZones=True, MotionSensivity=90)
moved = []


@viewer.on("MotionDetected")
def motion(X1: int, Y1: int, X2: int, Y2: int) -> None:
    moved.append((X1, Y1, X2, Y2))


viewer.Connect(address)
for frame in viewer.frames(seconds=seconds):
    if moved:
        name = folder / f"{frame.number:06}.jpg"
        name.write_bytes(frame.jpeg)
        print(name, *moved[-1])
        moved.clear()
