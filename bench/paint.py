#!/usr/bin/python3
"""The time from a camera's answer to the picture on a page, through a gateway, beside a page that asks the camera itself.

Usage: bench/paint.py BIN_FOLDER [--smoke] [--seconds SECONDS]

A camera of this script's own answers with pictures of 640 x 480 that can be told apart, and notes when. Chromium, without a
screen, shows it twice on one page, 7 pictures a second each: with <video-server-push> through the gateway, and with a script
that gets each picture straight from the camera, which is where the page is from, too. A picture is painted when the frame
after the one in which it was drawn begins. --smoke takes a moment: that it works, not what comes out.
"""
import argparse
import http.server
import pathlib
import re
import socketserver
import statistics
import threading
import time
import urllib.request

from pages import start
from selenium import webdriver

# Not a divisor of the frames a second that a browser paints: else all pictures of a run meet the same part of a frame.
RATE = 7
PAGE = """<!doctype html><meta charset="utf-8"><canvas id="direct" width="640" height="480"></canvas>
<script>
window.painted = [];
const decode = window.createImageBitmap, draw = CanvasRenderingContext2D.prototype.drawImage;
window.createImageBitmap = async (blob) => Object.assign(await decode(blob), {bytes: blob.size});
CanvasRenderingContext2D.prototype.drawImage = function (picture, ...rest) {
  draw.call(this, picture, ...rest);
  const {bytes} = picture;
  if (bytes) requestAnimationFrame(() => requestAnimationFrame(() =>
    painted.push([bytes, this.canvas.id, performance.timeOrigin + performance.now()])));
};
setInterval(async () => {
  const blob = await (await fetch("/direct", {cache: "no-store"})).blob();
  document.getElementById("direct").getContext("2d").drawImage(await createImageBitmap(blob), 0, 0, 640, 480);
}, 1000 / RATE);
</script>
<script type="module" src="http://127.0.0.1:GATEWAY/orbelcast.js"></script>
<video-server-push style="width:640px;height:480px" url="http://127.0.0.1:CAMERA/live/1" framerate="RATE"></video-server-push>
"""


class Camera(socketserver.ThreadingMixIn, http.server.HTTPServer):
    """Answers with one picture, made as long as no other answer is, and notes when."""

    daemon_threads = True

    def __init__(self, jpeg):
        super().__init__(("127.0.0.1", 0), Answer)
        self.jpeg, self.page, self.answered, self.number, self.lock = jpeg, b"", {}, 0, threading.Lock()

    def next_picture(self):
        with self.lock:
            self.number += 1
            comment = bytes(self.number)
        return self.jpeg[:2] + b"\xff\xfe" + (len(comment) + 2).to_bytes(2, "big") + comment + self.jpeg[2:]


class Answer(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        is_page = self.path == "/"
        body = self.server.page if is_page else self.server.next_picture()
        head = (f"HTTP/1.1 200 OK\r\nContent-Type: {'text/html' if is_page else 'image/jpeg'}\r\n"
                f"Content-Length: {len(body)}\r\n\r\n").encode()
        if not is_page:
            self.server.answered[len(body)] = time.time()
        self.connection.sendall(head + body)

    def log_message(self, *_):
        pass


def report(name, times):
    times = sorted(times)
    median, late = statistics.median(times), times[min(len(times) - 1, int(len(times) * 0.99))]
    print(f"{name:18} {len(times):5} pictures: {median:5.1f} ms (median), {late:5.1f} ms (99 of 100)", flush=True)
    return median, late


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--smoke", action="store_true")
    parser.add_argument("--seconds", type=float, default=60)
    options = parser.parse_args()
    seconds = 2 if options.smoke else options.seconds
    drawn, drawn_port = start(options.folder / "orbelcast-camera-server", "--port", "0", "--cameras", "1")
    jpeg = urllib.request.urlopen(f"http://127.0.0.1:{drawn_port}/live/1").read()
    drawn.terminate()
    drawn.wait()
    camera = Camera(jpeg)
    port = camera.server_address[1]
    gateway, gateway_port = start(options.folder / "orbelcast", "serve", "--port", "0", "--allow", f"127.0.0.1:{port}",
                                  "--allow-origin", f"http://127.0.0.1:{port}")
    camera.page = re.sub("GATEWAY|CAMERA|RATE", lambda found: str(
        {"GATEWAY": gateway_port, "CAMERA": port, "RATE": RATE}[found[0]]), PAGE).encode()
    threading.Thread(target=camera.serve_forever, daemon=True).start()
    arguments = webdriver.ChromeOptions()
    for each in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--window-size=1400,900"):
        arguments.add_argument(each)
    browser = webdriver.Chrome(options=arguments)
    try:
        browser.get(f"http://127.0.0.1:{port}/")
        time.sleep(2)
        browser.execute_script("painted.length = 0")
        time.sleep(seconds)
        painted = browser.execute_script("return painted")
    finally:
        browser.quit()
        gateway.terminate()
        gateway.wait()
        camera.shutdown()
    direct, through = ([at - camera.answered[size] * 1000 for size, canvas, at in painted if bool(canvas) == own]
                       for own in (True, False))
    bare = report("straight", direct)
    ours = report("through a gateway", through)
    print(f"ratio: {ours[0] / bare[0]:.2f} (median), {ours[1] / bare[1]:.2f} (99 of 100)")
    assert min(direct + through) > 0 and len(through) > seconds * RATE / 2


if __name__ == "__main__":
    main()
