"""Motion-JPEG cameras: the stream viewer `VideoServerPush` and the player `UserControl1`.

    import orbelcast

    viewer = orbelcast.VideoServerPush(FrameRate=10)
    viewer.Connect("http://127.0.0.1:8080/live/1")
    for frame in viewer.frames(seconds=5):
        print(frame.time, len(frame.jpeg), frame.array.shape)

Members, events and arguments have the interface's names. What is Python's own is in small letters.
"""

from . import _dialogs
from ._control import Control, Ref, run
from ._dialogs import answer
from ._frames import Frame, Frames, NotConnected, Picture
from ._native import load_library, unload_library
from .controls import UserControl1, VideoServerPush

__all__ = ["Control", "Frame", "Frames", "NotConnected", "Picture", "Ref", "UserControl1", "VideoServerPush", "answer",
           "connected", "load_library", "run", "unload_library"]


async def connected(viewer: VideoServerPush) -> None:
    """Waits inside asyncio until the `Connect` that was called has its answer. NotConnected where it failed, where none
    is under way (an address that does not begin with http://), or where the viewer was closed meanwhile.

    With AutoReconnect it waits until the camera answers; `asyncio.wait_for` bounds that.
    """
    from . import _waiting
    await _waiting.connected(viewer)
