"""Takes a picture every so many seconds, for a film of them: time_lapse.py ADDRESS FOLDER SECONDS [COUNT]"""

import pathlib
import sys

import orbelcast

address, folder, seconds = sys.argv[1], pathlib.Path(sys.argv[2]), float(sys.argv[3])
count = int(sys.argv[4]) if len(sys.argv) > 4 else 1_000_000
folder.mkdir(parents=True, exist_ok=True)
with orbelcast.VideoServerPush() as viewer:
    for number in range(count):
        viewer.Connect(address, OnlyOnce=True)  # one picture
        if viewer.connected:
            (folder / f"{number:06}.jpg").write_bytes(viewer.GetPictureArray())
        orbelcast.run(seconds)
print(f"ffmpeg -framerate 25 -i {folder}/%06d.jpg film.mp4")
