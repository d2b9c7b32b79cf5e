"""The package's abilities, in the order of docs/python.md: tour.py ADDRESS"""

import asyncio
import sys

import orbelcast

address = sys.argv[1]

viewer = orbelcast.VideoServerPush(FrameRate=10, MotionDetector=True, MotionByZones=True)


@viewer.on("MotionDetected")
def motion(X1: int, Y1: int, X2: int, Y2: int) -> None:
    print("moved:", X1, Y1, X2, Y2)


viewer.Connect(address)
for frame in viewer.frames(seconds=1):
    print(frame.time, len(frame.jpeg), frame.array.shape)

rate = viewer.let("FrameRate", 40)  # 30: the control corrected it
viewer.close()


async def newest(url: str) -> bytes:
    with orbelcast.VideoServerPush() as viewer:
        viewer.Connect(url)
        await orbelcast.connected(viewer)
        async for frame in viewer.frames(count=1):
            return frame.jpeg
    return b""


async def several() -> None:
    pictures = await asyncio.gather(*[newest(address) for _ in range(3)])
    print([len(picture) for picture in pictures])


asyncio.run(several())


@orbelcast.answer("AskSaveName")
def save_name(title: str, filter: str) -> str:
    return "clip.avi"


@orbelcast.answer("ChooseCompression")
def compression(codecs: "list[str]") -> str:
    return codecs[0]
