#!/usr/bin/env python3
"""Serves pictures to players that want them pushed, and to viewers that ask for each, at the same rate.

Usage: stream_relay.py FOLDER RATE

  /stream    multipart/x-mixed-replace, RATE pictures a second, for players
  otherwise  one picture a request, the next of the folder, for the viewer

Prints its port. Both answer with the same files, so that nobody's decoding is dearer than the other's.
"""
import http.server
import pathlib
import sys
import time


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    pictures = []
    rate = 25.0
    count = 0

    def do_GET(self):  # the name that the library calls
        if self.path == "/stream":
            self.push()
        else:
            self.answer()

    def answer(self):
        Handler.count += 1
        picture = self.pictures[Handler.count % len(self.pictures)]
        head = f"HTTP/1.1 200 OK\r\nContent-Type: image/jpeg\r\nContent-Length: {len(picture)}\r\n\r\n"
        self.wfile.write(head.encode() + picture)

    def push(self):
        self.close_connection = True
        self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Type: multipart/x-mixed-replace; boundary=next\r\n\r\n")
        due = time.monotonic()
        try:
            while True:
                for picture in self.pictures:
                    head = f"--next\r\nContent-Type: image/jpeg\r\nContent-Length: {len(picture)}\r\n\r\n"
                    self.wfile.write(head.encode() + picture + b"\r\n")
                    self.wfile.flush()
                    due += 1 / self.rate
                    time.sleep(max(0.0, due - time.monotonic()))
        except OSError:
            pass

    def log_message(self, *_):
        pass


def main():
    folder, Handler.rate = pathlib.Path(sys.argv[1]), float(sys.argv[2])
    Handler.pictures = [path.read_bytes() for path in sorted(folder.glob("*.jpg"))]
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    print(server.server_port, flush=True)
    server.serve_forever()


main()
