"""Frames of a stream, and pictures as numpy, PIL and notebooks take them."""

from __future__ import annotations

import io
import struct
import time
import zlib
from ctypes import byref, c_int32, c_void_p
from datetime import datetime
from typing import TYPE_CHECKING, Any, AsyncIterator, Iterator, Optional, Tuple

from . import _native as native
from ._control import Control, _look

if TYPE_CHECKING:
    import numpy
    from PIL import Image

_CONNECTED, _DISCONNECTED, _CONNECTION_FAILED, _TIME_CODE = 3, 4, 5, 10


class NotConnected(ConnectionError):
    """The camera did not answer, or the viewer was never told to connect."""


class Picture:
    """A picture of the library's: pixels of four bytes, blue, green, red and 255, row by row from the top."""
    __slots__ = ("_held", "size", "__weakref__")

    def __init__(self, held: native.Held) -> None:
        self._held = held
        width, height = c_int32(), c_int32()
        native.check(native.get_size(held.address, byref(width), byref(height)), "GetSize")
        self.size: Tuple[int, int] = (width.value, height.value)  # width and height, pixels

    @property
    def pixels(self) -> memoryview:
        """The pixels, height × width × 4 bytes: the library's own memory, which the view keeps. Not to be written to."""
        pixels = c_void_p()
        native.check(native.get_pixels(self._held.address, byref(pixels)), "GetPixels")
        width, height = self.size
        memory = native.byte_array(width * height * 4).from_address(pixels.value or 0)
        memory._held = self._held
        return memoryview(memory).cast("B").toreadonly()

    @property
    def array(self) -> "numpy.ndarray[Any, Any]":
        """The picture as OpenCV has it: height × width × 3, uint8, blue first. A view of the library's memory, without a
        copy. ImportError without numpy."""
        import numpy
        width, height = self.size
        return numpy.frombuffer(self.pixels, numpy.uint8).reshape(height, width, 4)[:, :, :3]

    @property
    def image(self) -> "Image.Image":
        """The picture as PIL has it, in RGB: a copy. ImportError without PIL."""
        from PIL import Image
        return Image.frombytes("RGB", self.size, bytes(self.pixels), "raw", "BGRX")

    def _repr_png_(self) -> bytes:
        """The picture as a notebook shows it."""
        width, height = self.size
        rows, pixels = bytearray(), self.pixels
        for row in range(height):
            line = pixels[row * width * 4:(row + 1) * width * 4]
            rgb = bytearray(width * 3)
            rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
            rows += b"\0" + rgb

        def chunk(kind: bytes, data: bytes) -> bytes:
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

        header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
        return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(bytes(rows), 1))
                + chunk(b"IEND", b""))

    def __repr__(self) -> str:
        return f"<orbelcast.Picture {self.size[0]}x{self.size[1]}>"


class Frame:
    """One picture of a stream. Its bytes stay what they are when the next one comes.

    The picture is decoded when it is first looked at: by the library while it is the viewer's newest, and by PIL later.
    """
    __slots__ = ("number", "time_code", "jpeg", "_viewer", "_picture")

    def __init__(self, viewer: "Viewer") -> None:
        self.number = viewer._number  # of the viewer's frames, from 1
        self.time_code = viewer._time_code  # as the server sent it, or this machine's clock
        self.jpeg: bytes = viewer.GetPictureArray()  # type: ignore[attr-defined]  # the server's bytes, as they came
        self._viewer = viewer
        self._picture: Optional[Picture] = None

    @property
    def time(self) -> Optional[datetime]:
        """The time that the time code tells, in the camera's zone; None where it tells none."""
        try:
            return datetime.strptime(self.time_code[:14], "%Y%m%d%H%M%S")
        except ValueError:
            return None

    @property
    def picture(self) -> Optional[Picture]:
        """The decoded picture; None where the bytes are no whole JPEG, and where the viewer has a newer one by now."""
        viewer = self._viewer
        if self._picture is None and viewer._number == self.number and viewer._finalizer.alive:
            self._picture = viewer.GetPicture()  # type: ignore[attr-defined]
        return self._picture

    @property
    def array(self) -> "numpy.ndarray[Any, Any]":
        """The picture as OpenCV has it: height × width × 3, uint8, blue first; see `Picture.array`. ImportError without
        numpy, OSError where the bytes are no JPEG."""
        picture = self.picture
        if picture is not None:
            return picture.array
        import numpy
        return numpy.asarray(self.image)[:, :, ::-1]

    @property
    def image(self) -> "Image.Image":
        """The picture as PIL has it, in RGB. ImportError without PIL, OSError where the bytes are no JPEG."""
        picture = self.picture
        if picture is not None:
            return picture.image
        from PIL import Image
        return Image.open(io.BytesIO(self.jpeg)).convert("RGB")

    def _repr_jpeg_(self) -> bytes:
        """The picture as a notebook shows it."""
        return self.jpeg

    def __repr__(self) -> str:
        return f"<orbelcast.Frame {self.number}, {self.time_code}, {len(self.jpeg)} bytes>"


class Viewer(Control):
    """A control with a stream."""

    _stream = ""  # connecting, connected, failed, disconnected; empty before the first Connect
    _number = 0
    _time_code = ""
    _watchers = 0
    _wakers: Tuple[Any, ...] = ()

    def _call(self, member: Any, kind: int, values: Any = ()) -> Any:
        if member["name"] in ("Connect", "MultiCamView"):
            url = getattr(values[0], "value", values[0]) if values else ""
            if member["name"] == "MultiCamView" or str(url).lower().startswith("http://"):
                self._stream = "connecting"
        return super()._call(member, kind, values)

    def _note(self, event: int, arguments: native.Arguments) -> None:
        if event == _TIME_CODE:
            self._number += 1
            if self._watchers:
                self._time_code = native.from_variant(arguments.values[7])
        elif event == _CONNECTED:
            self._stream = "connected"
        elif event == _CONNECTION_FAILED:
            self._stream = "failed"
        elif event == _DISCONNECTED:
            self._stream = "disconnected"
        else:
            return
        for wake in self._wakers:
            wake()

    def frames(self, seconds: Optional[float] = None, count: Optional[int] = None) -> "Frames":
        """The frames from now on, each the newest there is: for so many seconds, or so many frames, or until the viewer is
        disconnected or closed. To be used by `for`, which runs the loop, or by `async for` inside asyncio.

        A camera that stops answering gives no frames until it answers again; `seconds` ends that too. NotConnected: the
        viewer was not connected. RuntimeError: `for` in a handler, or inside asyncio.
        """
        return Frames(self, seconds, count)

    @property
    def connected(self) -> bool:
        """Whether the newest `Connect` has its answer, and no `Disconnect` came since."""
        return self._stream == "connected" and self._finalizer.alive

    def close(self) -> None:
        super().close()
        for wake in self._wakers:
            wake()

    def _may_have_frames(self) -> bool:
        return self._finalizer.alive and (self._stream in ("connecting", "connected")
                                          or (self._stream != "" and bool(self.AutoReconnect)))  # type: ignore[attr-defined]


class Frames:
    """An iteration over a viewer's frames; see `frames`."""

    def __init__(self, viewer: Viewer, seconds: Optional[float], count: Optional[int]) -> None:
        self._viewer, self._seconds, self._left = viewer, seconds, count
        self._end: Optional[float] = None
        self._seen = -1

    def _begin(self) -> None:
        self._viewer._alive()
        if not self._viewer._may_have_frames():
            raise NotConnected("the viewer is not connected")
        self._seen = self._viewer._number
        self._end = None if self._seconds is None else time.monotonic() + self._seconds
        self._viewer._watchers += 1

    def _remaining(self) -> Optional[float]:
        return None if self._end is None else self._end - time.monotonic()

    def _over(self) -> bool:
        left = self._remaining()
        return (self._left == 0 or (left is not None and left <= 0) or not self._viewer._may_have_frames())

    def _new(self) -> bool:
        return self._viewer._number != self._seen

    def _take(self) -> Frame:
        self._seen = self._viewer._number
        if self._left is not None:
            self._left -= 1
        return Frame(self._viewer)

    def __iter__(self) -> Iterator[Frame]:
        self._begin()
        try:
            while not self._over():
                if self._new():
                    yield self._take()
                else:
                    _look(self._remaining(), self._viewer)
        finally:
            self._viewer._watchers -= 1

    async def __aiter__(self) -> AsyncIterator[Frame]:
        from . import _waiting
        self._begin()
        try:
            while not self._over():
                if self._new():
                    yield self._take()
                else:
                    await _waiting.told(self._viewer, lambda: self._new() or self._over(), self._remaining())
        finally:
            self._viewer._watchers -= 1
