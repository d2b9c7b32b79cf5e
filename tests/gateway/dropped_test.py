#!/usr/bin/env python3
"""Pages that go at every point of a session leave nothing behind: dropped_test.py SERVER_PROGRAM ORBELCAST

DROPPED_SESSIONS is their number, 96 where it is not set. A sanitizer's program tells of leaks when the gateway ends.
"""

import concurrent.futures
import contextlib
import os
import pathlib
import socket
import struct
import time
import unittest

# In this order: it takes the second program's name.
from serve import ORBELCAST, TIMEOUT, Gateway, Page, Refused, frame, upgrade
from camera_server import Server

SESSIONS = int(os.environ.get("DROPPED_SESSIONS", "96"))
SANITIZED = b"__asan_init" in pathlib.Path(ORBELCAST).read_bytes()
AT_A_TIME = 8
MOST = 64
PLAYER = ["create c UserControl1", "place c 12000 9000", "show c"]
VIEWER = ["create c VideoServerPush", "place c 9600 7200", "show c"]


class Dropped(unittest.TestCase):
    def drop_before_the_session(self, asked):
        """A connection that got as far as these bytes."""
        link = self.gateway.connect()
        link.sendall(asked)
        return link

    def drop_in(self, *lines, half=b"", until=(), then=()):
        """A session that was sent these lines, has seen those keys, and has half a line to come."""
        page = self.open_page(time.monotonic() + TIMEOUT)
        page.send(*lines)
        for key, value in until:
            page.until(key, value)
        page.send(*then)
        page.link.sendall(half)
        return page.link

    def test_sessions_dropped_at_every_point(self):
        # A sanitizer keeps what was freed for a while; here it is to go at once.
        os.environ["ASAN_OPTIONS"] = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"
        with Server("--cameras", "2", "--output", "Lamp=on") as camera, socket.socket() as silent:
            silent.bind(("127.0.0.1", 0))
            silent.listen()
            never = silent.getsockname()[1]
            with Gateway("--allow", f"127.0.0.1:{camera.port}", f"127.0.0.1:{never}", "--sessions", str(MOST)) as self.gateway:
                self.drop_all(self.points(f"http://127.0.0.1:{camera.port}/live/1", camera.port, never))
                # No camera is asked for a page that has gone.
                end = time.monotonic() + TIMEOUT
                while camera.asked(clear="yes"):
                    self.assertLess(time.monotonic(), end)
                    time.sleep(0.3)

    def points(self, live, port, never):
        own = f"127.0.0.1:{self.gateway.port}"
        asked = upgrade(own, "http://" + own)
        connect = f"call c Connect {live}"
        load = f"load c Server=127.0.0.1 Port={port} Start=Yes Device=1 ExtendedControls=Yes"
        picture = ("type", "image/jpeg")
        playing = ("event", "Connected")
        return [
            lambda: self.drop_before_the_session(b""),
            lambda: self.drop_before_the_session(asked[:50]),
            lambda: self.drop_before_the_session(asked),
            lambda: self.drop_in(),
            lambda: self.drop_in(half=frame(VIEWER[0])[:9]),
            lambda: self.drop_in(VIEWER[0], until=[("done", 1)]),
            lambda: self.drop_in(*PLAYER),
            lambda: self.drop_in(*VIEWER, connect),
            lambda: self.drop_in(*VIEWER, connect, until=[picture]),
            lambda: self.drop_in(*VIEWER, connect, until=[picture], then=["painted c.VideoStream"] * 2),
            # A handler waits for a camera that never answers.
            lambda: self.drop_in(*VIEWER, f"call c Connect http://127.0.0.1:{never}/live/1", until=[("event", "Status")]),
            lambda: self.drop_in(*PLAYER, load),
            lambda: self.drop_in(*PLAYER, f"load c Server=127.0.0.1 Port={never} Start=Yes", until=[("done", 3)]),
            lambda: self.drop_in(*PLAYER, load, until=[playing], then=["click c Player(13)"]),
            lambda: self.drop_in(*PLAYER, load, until=[playing], then=["click c Player(13)", "answer x y"]),
            lambda: self.drop_in(*PLAYER, load, until=[playing], then=["click c Player(14)", "click c Player(9)"]),
        ]

    def drop_all(self, points):
        def drop(count):
            link = points[count % len(points)]()
            if count // len(points) % 2:  # a reset, not an end
                link.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            link.close()

        memory = []
        for half in (range(SESSIONS // 2), range(SESSIONS // 2, SESSIONS)):
            with concurrent.futures.ThreadPoolExecutor(AT_A_TIME) as threads:
                list(threads.map(drop, half))
            self.until_quiet()
            memory.append(self.gateway.memory())
        print(f"{SESSIONS} sessions; memory in KiB after the first half and the second:", *memory)
        # The allocator comes to its level after some two thousand sessions; from there on nothing may be added. That of a
        # sanitizer has no level; what it tells at the end counts.
        if not SANITIZED:
            self.assertLess(memory[1] - memory[0], 48 * 1024)

    def until_quiet(self):
        """Half of the sessions that may be open: those that went count while their controls wait for a camera."""
        end = time.monotonic() + TIMEOUT
        with contextlib.ExitStack() as pages:
            for _ in range(MOST // 2):
                pages.enter_context(self.open_page(end)).send(VIEWER[0])

    def open_page(self, end):
        """A session, as soon as one of those that went is told to have gone."""
        while True:
            try:
                return Page(self.gateway)
            except Refused:
                self.assertLess(time.monotonic(), end)
                time.sleep(0.05)


if __name__ == "__main__":
    unittest.main(verbosity=0)
