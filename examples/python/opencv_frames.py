"""Shows how many edges OpenCV finds in each frame: opencv_frames.py ADDRESS [SECONDS]"""

import sys

import cv2
import orbelcast

viewer = orbelcast.VideoServerPush(FrameRate=25)
viewer.Connect(sys.argv[1])
for frame in viewer.frames(seconds=float(sys.argv[2]) if len(sys.argv) > 2 else None):
    edges = cv2.Canny(cv2.cvtColor(frame.array, cv2.COLOR_BGR2GRAY), 100, 200)
    print(frame.time, f"{(edges > 0).mean():.1%}")
