"""The first picture in Python: first.py ADDRESS FILE"""
import sys

import orbelcast

viewer = orbelcast.VideoServerPush()
viewer.Connect(sys.argv[1], OnlyOnce=True)  # one picture, no stream
viewer.SaveImage(sys.argv[2])
