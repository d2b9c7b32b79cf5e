# Made by tools/make_reference of the interfaces' description.
from typing import Any, Callable, Literal, overload

from ._control import Control, Ref
from ._frames import Picture, Viewer

class VideoServerPush(Viewer):
    """Orbelcast stream viewer"""

    def __init__(self, *, width: int = ..., height: int = ..., FrameRate: int = ..., ShowBandwidth: bool = ..., MotionDetector: bool = ..., Username: str = ..., Password: str = ..., DirectToDisk: bool = ..., MotionArea_Y2: int = ..., MotionArea_y1: int = ..., MotionArea_x2: int = ..., MotionArea_x1: int = ..., MotionSensivity: int = ..., ShowMotion: bool = ..., AlwaysSmooth: bool = ..., DisableTestScreen: bool = ..., MotionByZones: bool = ..., MotionString: str = ..., AutoReconnect: bool = ...) -> None: ...

    @property
    def FrameRate(self) -> int:
        """Pictures asked for a second, 1 to 30; 1 at first. What is beyond becomes the nearest, which the let writes
        back into `value`."""
    @FrameRate.setter
    def FrameRate(self, value: int) -> None: ...

    @property
    def Server(self) -> str:
        """Always empty."""

    @property
    def ShowBandwidth(self) -> bool:
        """Shows the status strip. Connecting, disconnecting and `ShowStatus` show it as well."""
    @ShowBandwidth.setter
    def ShowBandwidth(self, value: bool) -> None: ...

    @property
    def MotionDetector(self) -> bool:
        """Looks for motion in each frame: in the rectangle `MotionArea_…`, or in zones with `MotionByZones`."""
    @MotionDetector.setter
    def MotionDetector(self, value: bool) -> None: ...

    @property
    def Username(self) -> str:
        """The user's name, sent once the server asks for one (Basic or Digest), and from then on at once."""
    @Username.setter
    def Username(self, value: str) -> None: ...

    @property
    def Password(self) -> str:
        """The user's password, sent together with the name."""
    @Password.setter
    def Password(self, value: str) -> None: ...

    @property
    def DirectToDisk(self) -> bool:
        """Kept for the host; it changes nothing."""
    @DirectToDisk.setter
    def DirectToDisk(self, value: bool) -> None: ...

    @property
    def MotionArea_Y2(self) -> int:
        """The lower edge of the watched rectangle, in hundredths of the picture's height. What lies below it is watched
        all the same. Any number is stored; with all four edges 0, as they are at first, nothing is watched."""
    @MotionArea_Y2.setter
    def MotionArea_Y2(self, value: int) -> None: ...

    @property
    def MotionArea_y1(self) -> int:
        """The upper edge of the watched rectangle, in hundredths of the picture's height."""
    @MotionArea_y1.setter
    def MotionArea_y1(self, value: int) -> None: ...

    @property
    def MotionArea_x2(self) -> int:
        """The right edge of the watched rectangle, in hundredths of the picture's width."""
    @MotionArea_x2.setter
    def MotionArea_x2(self, value: int) -> None: ...

    @property
    def MotionArea_x1(self) -> int:
        """The left edge of the watched rectangle, in hundredths of the picture's width."""
    @MotionArea_x1.setter
    def MotionArea_x1(self, value: int) -> None: ...

    @property
    def MotionSensivity(self) -> int:
        """Write: how small a change counts as motion, in percent (100 takes any, what is beyond counts as 100); the let
        writes 100 minus it back into `value`. Read: the threshold that it was made into, a difference of grey levels
        in percent of 256, 0 to 255."""
    @MotionSensivity.setter
    def MotionSensivity(self, value: int) -> None: ...

    @property
    def ShowMotion(self) -> bool:
        """Shows what the motion detection sees in a corner of the picture, while `MotionDetector` is on."""
    @ShowMotion.setter
    def ShowMotion(self, value: bool) -> None: ...

    @property
    def AlwaysSmooth(self) -> bool:
        """Kept for the host; it changes nothing."""
    @AlwaysSmooth.setter
    def AlwaysSmooth(self, value: bool) -> None: ...

    @property
    def DisableTestScreen(self) -> bool:
        """When true, `Connect` leaves the last picture on screen while it connects, instead of the test card."""
    @DisableTestScreen.setter
    def DisableTestScreen(self, value: bool) -> None: ...

    @property
    def MotionByZones(self) -> bool:
        """Watches the zones of `MotionString` instead of the rectangle. Yields."""
    @MotionByZones.setter
    def MotionByZones(self, value: bool) -> None: ...

    @property
    def MotionString(self) -> str:
        """One character a zone, 25 zones in five rows from the top; "0" excludes the zone, anything else, and a text
        that is too short, includes it. Yields."""
    @MotionString.setter
    def MotionString(self, value: str) -> None: ...

    @property
    def URL(self) -> str:
        """The address of the stream that is connected; empty after `Disconnect`. It may hold a password, as it was
        given."""

    @property
    def AutoReconnect(self) -> bool:
        """Retries silently and for ever instead of reporting failures."""
    @AutoReconnect.setter
    def AutoReconnect(self, value: bool) -> None: ...

    def Connect(self, URL: str | Ref[str], OnlyOnce: bool | Ref[bool] | None = ..., msg: str | Ref[str] | None = ...) -> None:
        """Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins with
        "http://" in any letter case; any other is ignored. `msg` is shown in a box while the first request is under
        way. Waits for the first answer, 20 seconds for the connection and 60 for the picture at most. What becomes of
        it is told by `Connected`, or `ConnectionFailed`; a newer `Connect` takes over."""

    def ImageOnClipboard(self) -> None:
        """Puts the picture that is shown on the clipboard, at the size at which it is shown."""

    def SaveImage(self, Filename: str | Ref[str]) -> None:
        """Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte for
        byte, of a mosaic or the test card a bitmap, whatever the name ends in. A name that cannot be written leaves
        no file."""

    def Disconnect(self, NoNewStatus: bool | Ref[bool] | None = ...) -> None:
        """Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are."""

    def StopGettingFrames(self) -> None:
        """Lets one more tick fetch its picture, then stops; the last picture stays on screen."""

    def ShowStatus(self, X: str | Ref[str]) -> None:
        """Shows `X` on the status line, and the status strip. Yields."""

    def ToogleClock(self, X: bool | Ref[bool]) -> None:
        """Pauses (false) or resumes (true) the frame loop without touching the connection."""

    def Pulse(self) -> None:
        """Steps one frame with the frame loop switched off. Nothing before the first frame."""

    def RequestEnd(self) -> None:
        """Treats the answer that the request object holds as a frame."""

    def MultiCamView(self, inpString: str | Ref[str]) -> None:
        """Shows several cameras as a grid, one tile every half second, until the next `Connect`. `inpString` holds the
        cameras' live addresses, each followed by CR LF; an empty one does nothing. A tile's request blocks the thread
        until the picture is there, for five seconds at most; a tile without an answer is black. `StreamInfo` (0, 1)
        is raised once a round."""

    def GetPictureArray(self) -> bytes:
        """A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first."""

    def GetPicture(self) -> Picture | None:
        """The newest picture at its own size, in pixels; nothing where there is none or it cannot be read."""

    def RenderPicture(self, PictureHdc: int | Ref[int], sX: int | Ref[int] | None = ..., sY: int | Ref[int] | None = ...) -> None:
        """Draws the newest picture at the top-left corner of the host's surface that `PictureHdc` stands for, stretched
        to `sX` × `sY` pixels; 0 is the picture's own size. Nothing where there is no such surface or no picture."""

    @overload  # type: ignore[override]
    def on(self, event: Literal["StreamInfo"]) -> Callable[[Callable[[int, int], Any]], Callable[[int, int], Any]]:
        """Once a clock second while pictures come: bytes received and frames shown since the last time. A second in
        which less than half a kilobyte came has none. Of a mosaic once a round, as (0, 1)."""
    @overload
    def on(self, event: Literal["StreamInfo"], handler: Callable[[int, int], Any]) -> Callable[[int, int], Any]: ...

    @overload
    def on(self, event: Literal["MotionDetected"]) -> Callable[[Callable[[int, int, int, int], Any]], Callable[[int, int, int, int], Any]]:
        """Motion, with `MotionDetector` on: its bounding box in hundredths of the picture's width and height; X1 is the
        column of the first sample found, not the leftmost one."""
    @overload
    def on(self, event: Literal["MotionDetected"], handler: Callable[[int, int, int, int], Any]) -> Callable[[int, int, int, int], Any]: ...

    @overload
    def on(self, event: Literal["Connected"]) -> Callable[[Callable[[], Any]], Callable[[], Any]]:
        """The server has answered with status 200 and the stream runs; for a stream once more with its second new frame."""
    @overload
    def on(self, event: Literal["Connected"], handler: Callable[[], Any]) -> Callable[[], Any]: ...

    @overload
    def on(self, event: Literal["Disconnected"]) -> Callable[[Callable[[], Any]], Callable[[], Any]]:
        """`Disconnect` has ended the stream, also the one that a failed `Connect` makes."""
    @overload
    def on(self, event: Literal["Disconnected"], handler: Callable[[], Any]) -> Callable[[], Any]: ...

    @overload
    def on(self, event: Literal["ConnectionFailed"]) -> Callable[[Callable[[], Any]], Callable[[], Any]]:
        """`Connect` got no answer, or another status than 200; the `Status` before it tells which. Not with
        `AutoReconnect`."""
    @overload
    def on(self, event: Literal["ConnectionFailed"], handler: Callable[[], Any]) -> Callable[[], Any]: ...

    @overload
    def on(self, event: Literal["ConnectionFailedV2"]) -> Callable[[Callable[[str, bool], Any]], Callable[[str, bool], Any]]:
        """The same, right after it: the address that failed, and whether a single picture was asked for."""
    @overload
    def on(self, event: Literal["ConnectionFailedV2"], handler: Callable[[str, bool], Any]) -> Callable[[str, bool], Any]: ...

    @overload
    def on(self, event: Literal["ConnectionBroken"]) -> Callable[[Callable[[], Any]], Callable[[], Any]]:
        """Five frame requests in a row have failed; raised again after each further five. The viewer goes on trying. Not
        with `AutoReconnect`."""
    @overload
    def on(self, event: Literal["ConnectionBroken"], handler: Callable[[], Any]) -> Callable[[], Any]: ...

    @overload
    def on(self, event: Literal["Status"]) -> Callable[[Callable[[str], Any]], Callable[[str], Any]]:
        """The status line's new text, in the language of the text mapper."""
    @overload
    def on(self, event: Literal["Status"], handler: Callable[[str], Any]) -> Callable[[str], Any]: ...

    @overload
    def on(self, event: Literal["VigilboxInfo"]) -> Callable[[Callable[[str], Any]], Callable[[str], Any]]:
        """The first answer's header "VigilboxInfo", whatever the answer's status, where it begins with "1"."""
    @overload
    def on(self, event: Literal["VigilboxInfo"], handler: Callable[[str], Any]) -> Callable[[str], Any]: ...

    @overload
    def on(self, event: Literal["VigilboxTCR"]) -> Callable[[Callable[[str, str, str, str, str, str, str, str], Any]], Callable[[str, str, str, str, str, str, str, str], Any]]:
        """Each frame's time, and the first answer's: the parts of the header "RC_TCR" by their position, whatever they
        hold, and the header as a whole; `xDs` is "00". A frame without that header has this machine's clock."""
    @overload
    def on(self, event: Literal["VigilboxTCR"], handler: Callable[[str, str, str, str, str, str, str, str], Any]) -> Callable[[str, str, str, str, str, str, str, str], Any]: ...

    @overload
    def on(self, event: Literal["MouseDown"]) -> Callable[[Callable[[int], Any]], Callable[[int], Any]]:
        """A mouse button was pressed over the picture: 1 left, 2 right, 4 middle. Over the video the left one alone,
        over the test card any."""
    @overload
    def on(self, event: Literal["MouseDown"], handler: Callable[[int], Any]) -> Callable[[int], Any]: ...

    @overload
    def on(self, event: Literal["RCQueryMethod"]) -> Callable[[Callable[[str], Any]], Callable[[str], Any]]:
        """Declared; nothing raises it."""
    @overload
    def on(self, event: Literal["RCQueryMethod"], handler: Callable[[str], Any]) -> Callable[[str], Any]: ...

    @overload
    def on(self, event: Literal["Plugin"]) -> Callable[[Callable[[str], Any]], Callable[[str], Any]]:
        """The first answer's header "PlugIns", where there is one."""
    @overload
    def on(self, event: Literal["Plugin"], handler: Callable[[str], Any]) -> Callable[[str], Any]: ...

    @overload
    def on(self, event: Literal["OLEDragDrop"]) -> Callable[[Callable[[dict[str, bytes], int, int, int, float, float], Any]], Callable[[dict[str, bytes], int, int, int, float, float], Any]]:
        """Something was dropped on the picture: what it holds by media type, the effect that the source expects (a
        listener may change it), the buttons and keys held, and the place in twips of the control that was dropped on."""
    @overload
    def on(self, event: Literal["OLEDragDrop"], handler: Callable[[dict[str, bytes], int, int, int, float, float], Any]) -> Callable[[dict[str, bytes], int, int, int, float, float], Any]: ...

    @overload
    def on(self, event: Literal["MotionArea"]) -> Callable[[Callable[[int, int, int, int], Any]], Callable[[int, int, int, int], Any]]:
        """Right before `MotionDetected`, with the same box."""
    @overload
    def on(self, event: Literal["MotionArea"], handler: Callable[[int, int, int, int], Any]) -> Callable[[int, int, int, int], Any]: ...

    @overload
    def on(self, event: Literal["MotionDetectedArea"]) -> Callable[[Callable[[int], Any]], Callable[[int], Any]]:
        """Right after `MotionDetected`: the zone of the first sample found, 1 to 25; −1 where the rectangle is watched."""
    @overload
    def on(self, event: Literal["MotionDetectedArea"], handler: Callable[[int], Any]) -> Callable[[int], Any]: ...

class UserControl1(Control):
    """Orbelcast player"""

    def __init__(self, *, width: int = ..., height: int = ..., Server: str = ..., Port: str = ..., Username: str = ..., Password: str = ..., LURL: str = ..., IURL: str = ..., Start: str = ..., ExtendedControls: str = ..., Device: str = ..., _ExtentX: str = ..., _ExtentY: str = ..., _Resize: str = ..., ShowExtendedFeatures: bool = ...) -> None: ...

    @property
    def SystemName(self) -> str:
        """The name that the server gives itself; its address where it gave none."""

    @property
    def ShowExtendedFeatures(self) -> bool:
        """Whether the toolbar has its extended buttons: log, alerts, inputs and outputs, message, several cameras."""
    @ShowExtendedFeatures.setter
    def ShowExtendedFeatures(self, value: bool) -> None: ...

    def AviStart(self) -> None:
        """Begins a clip: asks for a file and a compression, then takes a picture at each `StreamInfo` of the viewer.
        Ends a clip that is being recorded. Where an answer is cancelled, or there is no picture, none begins."""

    def StopAvi(self) -> None:
        """Ends the clip and tells "Total frames" in a message box: the clip's next position, one more than its pictures.
        The box is shown where none is being recorded, too."""

    def RefreshURLs(self, l: str | Ref[str], i: str | Ref[str]) -> None:
        """Takes `l` as the camera's live address and `i` as its archive address, each beginning with "http://", and
        shows the live stream."""

    def DoResize(self, X: bool | Ref[bool]) -> None:
        """Whether the children follow the control's size, from the next resize on."""

    def Connect2Server(self, xServer: str | Ref[str], xUsername: str | Ref[str], xPassword: str | Ref[str]) -> None:
        """Loads the camera list of a server, a host or host:port; the port that was set before is forgotten. Waits for
        the answer, at most 10 seconds for the connection and 10 for the answer. A server that does not answer gives
        an empty list; an empty `xServer` changes nothing but what the host has kept. A newer call takes over: what an
        older one, or a button of the toolbar, still waits for is not looked at any more."""

    def SetMultiCams(self) -> None:
        """Opens the chooser of cameras, a modal window, and shows those that were chosen together."""
