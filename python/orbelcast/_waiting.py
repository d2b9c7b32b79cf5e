"""The library's loop inside asyncio's: what it waits for is watched there, and handled when it is there."""

from __future__ import annotations

import asyncio
from ctypes import byref, c_int64, c_uint32
from typing import Any, Callable, List, Optional

from . import _native as native
from ._control import living
from ._frames import NotConnected, Viewer


class _Bridge:
    """The descriptors and the next time of the library's loop, watched by one asyncio loop."""

    def __init__(self, loop: asyncio.AbstractEventLoop) -> None:
        self.loop = loop
        self._watched: List[int] = []
        self._timer: Optional[asyncio.Handle] = None
        self._posted = False
        self._waits = (native.LoopDescriptor * 64)()

    def handle(self) -> None:
        """Handles what is due."""
        controls = living()
        if controls:
            try:
                native.handle_next(controls[0]._services, 0)
            finally:
                self.watch()
            native.state.raise_pending()

    def watch_soon(self) -> None:
        """Something may have changed: looks once for all that this turn of asyncio does."""
        if not self._posted and not self.loop.is_closed():
            self._posted = True
            self.loop.call_soon(self.watch)

    def watch(self) -> None:
        """Watches what the library waits for just now.

        Each descriptor is watched anew: it may have been closed and opened under the same number.
        """
        self._posted = False
        for descriptor in self._watched:
            self.loop.remove_reader(descriptor)
            self.loop.remove_writer(descriptor)
        self._watched.clear()
        if self._timer is not None:
            self._timer.cancel()
            self._timer = None
        controls = living()
        if not controls:
            return
        count, nanoseconds = c_uint32(), c_int64()
        while True:
            native.check(native.get_waits(controls[0]._loop, self._waits, len(self._waits), byref(count),
                                          byref(nanoseconds)), "the loop")
            if count.value <= len(self._waits):
                break
            self._waits = (native.LoopDescriptor * count.value)()
        for wait in self._waits[:count.value]:
            self._watched.append(wait.descriptor)
            if wait.readable:
                self.loop.add_reader(wait.descriptor, self.handle)
            if wait.writable:
                self.loop.add_writer(wait.descriptor, self.handle)
        if nanoseconds.value >= 0:
            self._timer = self.loop.call_later(nanoseconds.value / 1e9, self.handle)


_bridge: Optional[_Bridge] = None


def changed() -> None:
    """Called after each call of a control: inside a running asyncio loop that loop runs the library's from now on."""
    global _bridge
    loop = asyncio._get_running_loop()
    if loop is None:
        return
    if _bridge is None or _bridge.loop is not loop:
        _bridge = _Bridge(loop)
    _bridge.watch_soon()


async def told(viewer: Viewer, until: Callable[[], Any], seconds: Optional[float] = None) -> None:
    """Waits until something that the viewer is told makes `until()` true, or the time has passed."""
    changed()
    event = asyncio.Event()
    viewer._wakers += (event.set,)
    try:
        while not until():
            event.clear()
            await asyncio.wait_for(event.wait(), seconds)
    except asyncio.TimeoutError:
        pass
    finally:
        viewer._wakers = tuple(each for each in viewer._wakers if each != event.set)


async def connected(viewer: Viewer) -> None:
    """Waits until the `Connect` that was called has its answer. NotConnected where it failed, where none is under way (an
    address that does not begin with http://), or where the viewer was closed meanwhile.

    With AutoReconnect it waits until the camera answers; `asyncio.wait_for` bounds that.
    """
    await told(viewer, lambda: viewer._stream != "connecting" or not viewer._finalizer.alive)
    if viewer._stream != "connected" or not viewer._finalizer.alive:
        raise NotConnected("the camera did not answer" if viewer._stream == "failed" else "the viewer is not connected")
