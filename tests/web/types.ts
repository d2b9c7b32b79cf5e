// A page's script, as an author writes it, for the compiler alone. What is marked as an error has to be one.

import { UserControl1Element, VideoServerPushElement } from "../../web/orbelcast.js";

async function watch(canvas: HTMLCanvasElement): Promise<number> {
  const viewer: VideoServerPushElement = document.createElement("video-server-push");
  viewer.FrameRate = 10;
  viewer.MotionDetector = viewer.MotionByZones;
  await viewer.ready;
  await viewer.Connect("http://camera/live/1");
  await viewer.Connect("http://camera/live/1", true, "Please wait");
  viewer.addEventListener("MotionDetected", (event) => viewer.ShowStatus(event.detail.X1.toFixed()));
  viewer.addEventListener("Connected", () => viewer.focus(), { once: true });
  viewer.addEventListener("click", (event) => event.preventDefault());
  viewer.addEventListener("gatewaylost", () => viewer.remove());
  const jpeg: Uint8Array = await viewer.GetPictureArray();
  const picture: ImageBitmap | null = await viewer.GetPicture();
  await viewer.RenderPicture(canvas, 320);
  const player: UserControl1Element | null = document.querySelector("user-control-1");
  await player?.Connect2Server("camera", "", "");
  const name: string | undefined = player?.SystemName;

  // @ts-expect-error: a number
  viewer.FrameRate = "10";
  // @ts-expect-error: read only
  viewer.URL = "http://camera/live/2";
  // @ts-expect-error: an address is needed
  await viewer.Connect();
  // @ts-expect-error: no such member
  viewer.Framerate = 10;
  // @ts-expect-error: there may be none
  const width: number = picture.width;
  // @ts-expect-error: no such argument
  viewer.addEventListener("StreamInfo", (event) => event.detail.Bytes);
  // @ts-expect-error: the viewer has it, the player has not
  player?.SaveImage("now.jpg");
  return jpeg.length + width + (name ?? "").length;
}

void watch(document.createElement("canvas"));
