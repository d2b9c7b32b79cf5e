#!/usr/bin/env python3
"""The cost of a gateway's pages: rate, CPU and memory of a number of sessions, beside bare requests.

Usage: bench/pages.py BIN_FOLDER [SESSIONS...] [--stopped SECONDS] [--smoke]

Each session shows one camera at 10 pictures a second, 640 x 480, and tells each as painted, as an element does. Printed are
the time until all that come at once show a picture, and from then on the pictures a second that each page got, the gateway's
CPU time a picture and its ratio to that of curl, which asks for the same pictures in the same run, and the gateway's memory a
session. Without numbers: 1, 64 and 256. Then pages stop reading for a minute: what they cost meanwhile, beside what they cost
before. --smoke runs two for a moment: that it works, not what comes out.
"""
import argparse
import asyncio
import os
import pathlib
import re
import resource
import subprocess
import time

RATE = 10
BARE_REQUESTS = 2000


def start(*command):
    process = subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE, text=True)
    return process, int(re.search(r":(\d+)/", process.stdout.readline())[1])


def cpu_seconds(process):
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def resident(process):
    return int(re.search(r"VmRSS:\s+(\d+)", pathlib.Path(f"/proc/{process.pid}/status").read_text())[1])


def message(text):
    """A page's line, masked with zeros."""
    data = text.encode()
    length = bytes([0x80 | len(data)]) if len(data) < 126 else bytes([0x80 | 126]) + len(data).to_bytes(2, "big")
    return b"\x81" + length + bytes(4) + data


class PageSession:
    """An element, as far as the gateway sees it."""

    def __init__(self):
        self.pictures = 0
        self.writer = None
        self.reads = True

    async def run(self, gateway, address):
        reader, self.writer = await asyncio.open_connection("127.0.0.1", gateway)
        host = f"127.0.0.1:{gateway}"
        self.writer.write(f"GET /session HTTP/1.1\r\nHost: {host}\r\nOrigin: http://{host}\r\nUpgrade: websocket\r\n"
                          "Connection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                          "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n\r\n".encode())
        await reader.readuntil(b"\r\n\r\n")
        for line in ("create c VideoServerPush", "show c", "place c 9600 7200", f"set c FrameRate {RATE}",
                     f"call c Connect {address}"):
            self.writer.write(message(line))
        while self.reads:
            first, length = await reader.readexactly(2)
            if length >= 126:
                length = int.from_bytes(await reader.readexactly(2 if length == 126 else 8), "big")
            data = await reader.readexactly(length)
            if first & 15 == 2 and b"image/jpeg" in data[:2000]:
                self.pictures += 1
                self.writer.write(message("painted c.VideoStream"))
        await asyncio.Event().wait()


def bare_cpu(address):
    """CPU seconds of one bare request for a picture."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(["curl", "-s", "-o", "/dev/null", f"{address}?[1-{BARE_REQUESTS}]"], check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) / BARE_REQUESTS


async def open_pages(port, address, count):
    """Pages that all show a picture, their tasks, and the seconds that this took."""
    begun = time.monotonic()
    sessions = [PageSession() for _ in range(count)]
    tasks = [asyncio.create_task(each.run(port, address)) for each in sessions]
    while not all(each.pictures for each in sessions):
        await asyncio.sleep(0.01)
        assert time.monotonic() < begun + 60, "a page shows no picture"
    opened = time.monotonic() - begun
    await asyncio.sleep(1)
    return sessions, tasks, opened


async def end(sessions, tasks):
    for task in tasks:
        task.cancel()
    for session in sessions:
        session.writer.close()
    await asyncio.gather(*tasks, return_exceptions=True)
    await asyncio.sleep(1)


async def measure_stopped(gateway, port, address, count, seconds):
    sessions, tasks, _ = await open_pages(port, address, count)
    before = cpu_seconds(gateway)
    await asyncio.sleep(seconds)
    reading, memory = cpu_seconds(gateway) - before, resident(gateway)
    for each in sessions:
        each.reads = False
    before = cpu_seconds(gateway)
    await asyncio.sleep(seconds)
    stopped = cpu_seconds(gateway) - before
    print(f"{count:4} pages that stop reading for {seconds} s: {stopped / max(reading, 0.01):.2f} of the CPU of the same pages "
          f"reading, {(resident(gateway) - memory) / count:.0f} KiB each", flush=True)
    await end(sessions, tasks)


async def measure(gateway, port, address, count, seconds, bare):
    before = resident(gateway)
    sessions, tasks, opened = await open_pages(port, address, count)
    pictures, used, begun = sum(each.pictures for each in sessions), cpu_seconds(gateway), time.monotonic()
    await asyncio.sleep(seconds)
    pictures = sum(each.pictures for each in sessions) - pictures
    elapsed, used = time.monotonic() - begun, cpu_seconds(gateway) - used
    each = used / max(pictures, 1)
    print(f"{count:4} sessions, open after {opened:.2f} s: {pictures / elapsed / count:5.2f} pictures a second each, "
          f"{each * 1e6:4.0f} us of CPU a picture ({each / bare:.2f} of a bare request's), "
          f"{(resident(gateway) - before) / count:5.0f} KiB a session", flush=True)
    await end(sessions, tasks)
    assert pictures > 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--smoke", action="store_true")
    parser.add_argument("--stopped", type=int, default=60, help="seconds for which pages stop reading; 0 leaves it out")
    parser.add_argument("sessions", type=int, nargs="*")
    options = parser.parse_args()
    camera, camera_port = start(options.folder / "orbelcast-camera-server", "--port", "0", "--cameras", "1")
    gateway, port = start(options.folder / "orbelcast", "serve", "--allow", f"127.0.0.1:{camera_port}", "--port", "0",
                          "--sessions", "1024")
    address = f"http://127.0.0.1:{camera_port}/live/1"
    try:
        bare = bare_cpu(address)
        print(f"bare request: {bare * 1e6:.0f} us of CPU", flush=True)
        for count in options.sessions or ([2] if options.smoke else [1, 64, 256]):
            asyncio.run(measure(gateway, port, address, count, 1 if options.smoke else 10, bare))
        if options.stopped > 0:
            asyncio.run(measure_stopped(gateway, port, address, 2 if options.smoke else 16,
                                        1 if options.smoke else options.stopped))
    finally:
        for process in (gateway, camera):
            process.terminate()
            process.wait()


if __name__ == "__main__":
    main()
