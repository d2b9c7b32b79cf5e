// Made by tools/make_reference from the description of the controls' interfaces. Do not change it by hand.

/** Orbelcast stream viewer. */
export class VideoServerPushElement extends HTMLElement {
  /** Pictures asked for a second, 1 to 30; 1 at first. What is beyond becomes the nearest, which the let writes back into `value`. */
  FrameRate: number;
  /** Always empty. */
  readonly Server: string;
  /** Shows the status strip. Connecting, disconnecting and `ShowStatus` show it as well. */
  ShowBandwidth: boolean;
  /** Looks for motion in each frame: in the rectangle `MotionArea_…`, or in zones with `MotionByZones`. */
  MotionDetector: boolean;
  /** The user's name, sent once the server asks for one (Basic or Digest), and from then on at once. */
  Username: string;
  /** The user's password, sent together with the name. */
  Password: string;
  /** Kept for the host; it changes nothing. */
  DirectToDisk: boolean;
  /** The lower edge of the watched rectangle, in hundredths of the picture's height. What lies below it is watched all the same. Any number is stored; with all four edges 0, as they are at first, nothing is watched. */
  MotionArea_Y2: number;
  /** The upper edge of the watched rectangle, in hundredths of the picture's height. */
  MotionArea_y1: number;
  /** The right edge of the watched rectangle, in hundredths of the picture's width. */
  MotionArea_x2: number;
  /** The left edge of the watched rectangle, in hundredths of the picture's width. */
  MotionArea_x1: number;
  /** Write: how small a change counts as motion, in percent (100 takes any, what is beyond counts as 100); the let writes 100 minus it back into `value`. Read: the threshold that it was made into, a difference of grey levels in percent of 256, 0 to 255. */
  MotionSensivity: number;
  /** Shows what the motion detection sees in a corner of the picture, while `MotionDetector` is on. */
  ShowMotion: boolean;
  /** Kept for the host; it changes nothing. */
  AlwaysSmooth: boolean;
  /** When true, `Connect` leaves the last picture on screen while it connects, instead of the test card. */
  DisableTestScreen: boolean;
  /** Watches the zones of `MotionString` instead of the rectangle. Yields. */
  MotionByZones: boolean;
  /** One character a zone, 25 zones in five rows from the top; "0" excludes the zone, anything else, and a text that is too short, includes it. Yields. */
  MotionString: string;
  /** The address of the stream that is connected; empty after `Disconnect`. It may hold a password, as it was given. */
  readonly URL: string;
  /** Retries silently and for ever instead of reporting failures. */
  AutoReconnect: boolean;
  /** Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins with "http://" in any letter case; any other is ignored. `msg` is shown in a box while the first request is under way. Waits for the first answer, 20 seconds for the connection and 60 for the picture at most. What becomes of it is told by `Connected`, or `ConnectionFailed`; a newer `Connect` takes over. */
  Connect(URL: string, OnlyOnce?: boolean, msg?: string): Promise<void>;
  /** Puts the picture that is shown on the clipboard, at the size at which it is shown. */
  ImageOnClipboard(): Promise<void>;
  /** Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte for byte, of a mosaic or the test card a bitmap, whatever the name ends in. A name that cannot be written leaves no file. */
  SaveImage(Filename: string): Promise<void>;
  /** Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are. */
  Disconnect(NoNewStatus?: boolean): Promise<void>;
  /** Lets one more tick fetch its picture, then stops; the last picture stays on screen. */
  StopGettingFrames(): Promise<void>;
  /** Shows `X` on the status line, and the status strip. Yields. */
  ShowStatus(X: string): Promise<void>;
  /** Pauses (false) or resumes (true) the frame loop without touching the connection. */
  ToogleClock(X: boolean): Promise<void>;
  /** Steps one frame with the frame loop switched off. Nothing before the first frame. */
  Pulse(): Promise<void>;
  /** Treats the answer that the request object holds as a frame. */
  RequestEnd(): Promise<void>;
  /** Shows several cameras as a grid, one tile every half second, until the next `Connect`. `inpString` holds the cameras' live addresses, each followed by CR LF; an empty one does nothing. A tile's request blocks the thread until the picture is there, for five seconds at most; a tile without an answer is black. `StreamInfo` (0, 1) is raised once a round. */
  MultiCamView(inpString: string): Promise<void>;
  /** A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first. */
  GetPictureArray(): Promise<Uint8Array>;
  /** The newest picture at its own size, in pixels; nothing where there is none or it cannot be read. */
  GetPicture(): Promise<ImageBitmap | null>;
  /** Draws the newest picture at the top-left corner of the host's surface that `PictureHdc` stands for, stretched to `sX` × `sY` pixels; 0 is the picture's own size. Nothing where there is no such surface or no picture. */
  RenderPicture(PictureHdc: HTMLCanvasElement, sX?: number, sY?: number): Promise<void>;
  /** Resolves when the gateway shows the control. */
  readonly ready: Promise<void>;
  /** Once a clock second while pictures come: bytes received and frames shown since the last time. A second in which less than half a kilobyte came has none. Of a mosaic once a round, as (0, 1). */
  addEventListener(type: "StreamInfo", listener: (event: CustomEvent<{ BytesPerSecond: number; FrameRate: number }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** Motion, with `MotionDetector` on: its bounding box in hundredths of the picture's width and height; X1 is the column of the first sample found, not the leftmost one. */
  addEventListener(type: "MotionDetected", listener: (event: CustomEvent<{ X1: number; Y1: number; X2: number; Y2: number }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** The server has answered with status 200 and the stream runs; for a stream once more with its second new frame. */
  addEventListener(type: "Connected", listener: (event: CustomEvent<{  }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** `Disconnect` has ended the stream, also the one that a failed `Connect` makes. */
  addEventListener(type: "Disconnected", listener: (event: CustomEvent<{  }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** `Connect` got no answer, or another status than 200; the `Status` before it tells which. Not with `AutoReconnect`. */
  addEventListener(type: "ConnectionFailed", listener: (event: CustomEvent<{  }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** The same, right after it: the address that failed, and whether a single picture was asked for. */
  addEventListener(type: "ConnectionFailedV2", listener: (event: CustomEvent<{ xUrl: string; xType: boolean }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** Five frame requests in a row have failed; raised again after each further five. The viewer goes on trying. Not with `AutoReconnect`. */
  addEventListener(type: "ConnectionBroken", listener: (event: CustomEvent<{  }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** The status line's new text, in the language of the text mapper. */
  addEventListener(type: "Status", listener: (event: CustomEvent<{ xDesc: string }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** The first answer's header "VigilboxInfo", whatever the answer's status, where it begins with "1". */
  addEventListener(type: "VigilboxInfo", listener: (event: CustomEvent<{ rX: string }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** Each frame's time, and the first answer's: the parts of the header "RC_TCR" by their position, whatever they hold, and the header as a whole; `xDs` is "00". A frame without that header has this machine's clock. */
  addEventListener(type: "VigilboxTCR", listener: (event: CustomEvent<{ xYear: string; xMonth: string; xDay: string; xHour: string; xMinute: string; xSecond: string; xDs: string; xTCR: string }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** A mouse button was pressed over the picture: 1 left, 2 right, 4 middle. Over the video the left one alone, over the test card any. */
  addEventListener(type: "MouseDown", listener: (event: CustomEvent<{ Button: number }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** Declared; nothing raises it. */
  addEventListener(type: "RCQueryMethod", listener: (event: CustomEvent<{ Rc_Query: string }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** The first answer's header "PlugIns", where there is one. */
  addEventListener(type: "Plugin", listener: (event: CustomEvent<{ Plugin: string }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** Something was dropped on the picture: what it holds by media type, the effect that the source expects (a listener may change it), the buttons and keys held, and the place in twips of the control that was dropped on. */
  addEventListener(type: "OLEDragDrop", listener: (event: CustomEvent<{ Data: Record<string, string>; Effect: number; Button: number; Shift: number; X: number; y: number }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** Right before `MotionDetected`, with the same box. */
  addEventListener(type: "MotionArea", listener: (event: CustomEvent<{ X1: number; Y1: number; X2: number; Y2: number }>) => void, options?: boolean | AddEventListenerOptions): void;
  /** Right after `MotionDetected`: the zone of the first sample found, 1 to 25; −1 where the rectangle is watched. */
  addEventListener(type: "MotionDetectedArea", listener: (event: CustomEvent<{ Area: number }>) => void, options?: boolean | AddEventListenerOptions): void;
  addEventListener(type: string, listener: EventListenerOrEventListenerObject, options?: boolean | AddEventListenerOptions): void;
}

/** Orbelcast player. */
export class UserControl1Element extends HTMLElement {
  /** The name that the server gives itself; its address where it gave none. */
  readonly SystemName: string;
  /** Whether the toolbar has its extended buttons: log, alerts, inputs and outputs, message, several cameras. */
  ShowExtendedFeatures: boolean;
  /** Begins a clip: asks for a file and a compression, then takes a picture at each `StreamInfo` of the viewer. Ends a clip that is being recorded. Where an answer is cancelled, or there is no picture, none begins. */
  AviStart(): Promise<void>;
  /** Ends the clip and tells "Total frames" in a message box: the clip's next position, one more than its pictures. The box is shown where none is being recorded, too. */
  StopAvi(): Promise<void>;
  /** Takes `l` as the camera's live address and `i` as its archive address, each beginning with "http://", and shows the live stream. */
  RefreshURLs(l: string, i: string): Promise<void>;
  /** Whether the children follow the control's size, from the next resize on. */
  DoResize(X: boolean): Promise<void>;
  /** Loads the camera list of a server, a host or host:port; the port that was set before is forgotten. Waits for the answer, at most 10 seconds for the connection and 10 for the answer. A server that does not answer gives an empty list; an empty `xServer` changes nothing but what the host has kept. A newer call takes over: what an older one, or a button of the toolbar, still waits for is not looked at any more. */
  Connect2Server(xServer: string, xUsername: string, xPassword: string): Promise<void>;
  /** Opens the chooser of cameras, a modal window, and shows those that were chosen together. */
  SetMultiCams(): Promise<void>;
  /** Resolves when the gateway shows the control. */
  readonly ready: Promise<void>;
  addEventListener(type: string, listener: EventListenerOrEventListenerObject, options?: boolean | AddEventListenerOptions): void;
}

declare global {
  interface HTMLElementTagNameMap {
    "video-server-push": VideoServerPushElement;
    "user-control-1": UserControl1Element;
  }
}
