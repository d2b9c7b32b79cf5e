#!/usr/bin/env python3
"""Gateways behind HAProxy before a camera behind Varnish, with the configuration of packaging/scale/: what the camera is
asked, what pages get, and what becomes of the pages of a gateway that dies.

Usage: bench/scale.py BIN_FOLDER [--smoke] [--sessions COUNT]

The sessions show one camera at 10 pictures a second through HAProxy and two gateways. Printed are, first with the camera
asked directly and then through Varnish, the pictures that pages got and the requests that the camera got. Then one gateway is
killed, and started again, and the other one ended: how many sessions lost their connection, and how long it took until
they had a picture again. Before that it tries what the cache must keep apart. Needs varnishd, haproxy and the C compiler
that varnishd calls. --smoke takes 8 sessions and short times: that it works, not what comes out.
"""
import argparse
import asyncio
import contextlib
import http.client
import os
import pathlib
import random
import shutil
import signal
import socket
import statistics
import subprocess
import tempfile
import time

from pages import PageSession, start

SCALE = pathlib.Path(__file__).parent.parent / "packaging/scale"
READY_SECONDS = 30


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wait_for(port):
    end = time.monotonic() + READY_SECONDS
    while time.monotonic() < end:
        with contextlib.suppress(OSError), socket.create_connection(("127.0.0.1", port), 1):
            return
        time.sleep(0.05)
    raise SystemExit(f"nothing answers at port {port}")


class Servers:
    """All of them, ended with the run."""

    def __init__(self, folder, work):
        self.folder, self.work, self.kept = folder, work, contextlib.ExitStack()
        self.log = work / "requests"
        self.camera_port = self.keep(*start(folder / "orbelcast-camera-server", "--port", "0", "--cameras", "2",
                                            "--vigilbox-info", "1 text", "--log", self.log))
        self.cache_port, self.pages_port = free_port(), free_port()
        self.start_cache()
        self.ports = [0, 0]
        self.gateways = [self.start_gateway(0), self.start_gateway(1)]
        environment = os.environ | {"ORBELCAST_PAGES": f"127.0.0.1:{self.pages_port}"} | {
            f"ORBELCAST_GATEWAY_{name}": f"127.0.0.1:{port}" for name, port in zip("AB", self.ports)}
        self.run(["haproxy", "-db", "-f", str(SCALE / "haproxy.cfg")], env=environment)
        wait_for(self.pages_port)

    def keep(self, process, port):
        self.kept.callback(process.wait)
        self.kept.callback(process.terminate)
        return port

    def run(self, command, **options):
        with open(self.work / pathlib.Path(command[0]).name, "w") as output:
            self.keep(subprocess.Popen(command, stdout=output, stderr=subprocess.STDOUT, **options), 0)

    def start_cache(self):
        """The configuration, with this camera in the place of the one that it names."""
        cameras = (SCALE / "cameras.vcl").read_text().replace("192.0.2.10", "127.0.0.1").replace(
            '"8080"', f'"{self.camera_port}"')
        (self.work / "cameras.vcl").write_text(cameras)
        shutil.copy(SCALE / "orbelcast.vcl", self.work)
        program = shutil.which("varnishd") or "/usr/sbin/varnishd"
        self.run([program, "-F", "-j", "none", "-n", str(self.work / "cache"), "-a", f"127.0.0.1:{self.cache_port}",
                  "-T", "none", "-s", "default,64m", "-p", f"vcl_path={self.work}", "-f", str(self.work / "orbelcast.vcl")])
        wait_for(self.cache_port)

    def start_gateway(self, index):
        gateway, self.ports[index] = start(self.folder / "orbelcast", "serve", "--port", str(self.ports[index]),
                                           "--sessions", "1024", "--allow", f"127.0.0.1:{self.cache_port}",
                                           f"127.0.0.1:{self.camera_port}")
        self.keep(gateway, 0)
        return gateway

    def asked(self):
        """Requests that the camera got so far."""
        return self.log.read_text().count("\n")

    def wait_until_shared(self, name):
        """HAProxy sends a new browser to that gateway, which has no sessions yet."""
        end = time.monotonic() + READY_SECONDS
        while time.monotonic() < end:
            if f"={name};" in (self.get("/orbelcast.js", self.pages_port)[1]["Set-Cookie"] or ""):
                return
            time.sleep(0.1)
        raise SystemExit(f"HAProxy does not use gateway {name} again")

    def get(self, target, port=0, **headers):
        link = http.client.HTTPConnection("127.0.0.1", port or self.cache_port, timeout=READY_SECONDS)
        with contextlib.closing(link):
            link.request("GET", target, headers=headers)
            answer = link.getresponse()
            return answer.status, answer.headers, answer.read()


def check_cache(servers):
    """Checks what the cache shares, what it keeps apart, and the headers that it passes on."""
    def requests(*questions):
        before = servers.asked()
        for target, headers in questions:
            assert servers.get(target, **headers)[0] == 200, target
        return servers.asked() - before

    ann, bob = ({"Authorization": f"Basic {each}"} for each in ("YW5uOnNlY3JldA==", "Ym9iOnNlY3JldA=="))
    digest = {"Authorization": 'Digest username="ann", nonce="1"'}
    archive = "/$openlogin/ann/secret/srv_vigilbox$img?Device=1&Day=0&Month=0&Year=0&Hour=0&Minute=0&Second=0&T=0&Quality="
    rounds = 20
    shared = requests(*[("/live/1", {})] * rounds)
    assert shared < rounds, shared
    apart = 0
    for _ in range(10):
        time.sleep(0.1)  # until nothing is kept
        apart += requests(("/live/1", ann), ("/live/1", bob))
    assert apart == 20, apart
    assert requests(*[(archive, {})] * rounds) == rounds
    assert requests(*[("/live/1", digest)] * rounds) == rounds
    status, headers, body = servers.get("/live/1", **ann)
    assert headers["VigilboxInfo"] == "1 text" and len(headers["RC_TCR"]) == 14 and headers["Cache-Control"] == "no-store"
    assert body.startswith(b"\xff\xd8") and servers.get("/live/9")[0] == 506
    print(f"cache: {rounds} requests one after another for a live picture are {shared} at the camera; logins, Digest, "
          "archive and errors are kept apart", flush=True)


def check_units(folder, work):
    """systemd takes the units, and finds them closed."""
    program = shutil.which("systemd-analyze")
    if not program:
        print("units: there is no systemd-analyze", flush=True)
        return
    for name, instance in (("orbelcast-cache", ""), ("orbelcast-gateway@", "8091")):
        unit = work / f"{name}{instance}.service"
        text = (SCALE / f"{name}.service").read_text()
        unit.write_text(text.replace("/usr/bin/orbelcast", str((folder / "orbelcast").resolve())))
        subprocess.run([program, "verify", "--man=no", unit], check=True)
        subprocess.run([program, "security", "--offline=yes", "--threshold=20", unit], check=True, stdout=subprocess.PIPE)
    print("units: systemd takes them, with an exposure of 2 in 10 at most", flush=True)


class StickingSession(PageSession):
    """A session that opens again after it was lost, as an element does."""

    def __init__(self):
        super().__init__()
        self.losses = 0
        self.lost_at = None
        self.gap = None  # seconds from the loss to the next picture

    async def keep_running(self, port, address):
        while True:
            pictures = self.pictures
            watch = asyncio.create_task(self.note_picture())
            try:
                await self.run(port, address)
            except (OSError, asyncio.IncompleteReadError, asyncio.LimitOverrunError):
                if self.pictures > pictures:
                    self.losses += 1
                    self.lost_at = time.monotonic()
                if self.writer:
                    self.writer.close()
            finally:
                watch.cancel()
            await asyncio.sleep(0.5 * (0.5 + random.random() / 2))

    async def note_picture(self):
        pictures = self.pictures
        while self.pictures == pictures:
            await asyncio.sleep(0.01)
        if self.lost_at is not None:
            self.gap, self.lost_at = time.monotonic() - self.lost_at, None


async def count(servers, sessions, seconds):
    pictures, asked, begun = sum(each.pictures for each in sessions), servers.asked(), time.monotonic()
    await asyncio.sleep(seconds)
    elapsed = time.monotonic() - begun
    return sum(each.pictures for each in sessions) - pictures, servers.asked() - asked, elapsed


@contextlib.asynccontextmanager
async def shown(servers, address, number):
    sessions = [StickingSession() for _ in range(number)]
    tasks = [asyncio.create_task(each.keep_running(servers.pages_port, address)) for each in sessions]
    try:
        await asyncio.sleep(3)
        yield sessions
    finally:
        for task in tasks:
            task.cancel()
        await asyncio.gather(*tasks, return_exceptions=True)
        for session in sessions:
            session.writer.close()
        await asyncio.sleep(0.5)


async def lose(servers, sessions, index, how, seconds):
    """One gateway goes; the sessions that it had are to come back at the other."""
    for each in sessions:
        each.losses, each.gap = 0, None
    servers.gateways[index].send_signal(how)
    pictures = [each.pictures for each in sessions]
    await asyncio.sleep(seconds)
    gaps = [each.gap for each in sessions if each.gap is not None]
    lost = sum(each.losses > 0 for each in sessions)
    back = sum(each.pictures > before for each, before in zip(sessions, pictures))
    assert 0 < lost < len(sessions), f"{lost} of {len(sessions)} sessions were at that gateway"
    assert back == len(sessions) and len(gaps) == lost, f"{back} of {len(sessions)} show pictures"
    print(f"one gateway gets {how.name}: {lost} of {len(sessions)} sessions are lost, all of them show pictures again, "
          f"after {statistics.median(gaps):.2f} s (median) and {max(gaps):.2f} s at most", flush=True)


async def measure(servers, number, seconds):
    for name, port in (("directly", servers.camera_port), ("through Varnish", servers.cache_port)):
        async with shown(servers, f"http://127.0.0.1:{port}/live/1", number) as sessions:
            pictures, asked, elapsed = await count(servers, sessions, seconds)
            print(f"{name}: {number} sessions get {pictures} pictures ({pictures / number / elapsed:.1f} a second each), "
                  f"the camera {asked} requests, {asked / pictures:.3f} a picture", flush=True)
            if name == "directly":
                assert asked > pictures * 0.8
                continue
            assert asked < pictures * 0.6, "the cache shares nothing"
            await lose(servers, sessions, 0, signal.SIGKILL, 4 + seconds / 2)
            servers.gateways[0] = servers.start_gateway(0)
            await asyncio.to_thread(servers.wait_until_shared, "a")
            more = [StickingSession() for _ in range(number // 2)]
            tasks = [asyncio.create_task(each.keep_running(servers.pages_port, f"http://127.0.0.1:{port}/live/1"))
                     for each in more]
            await asyncio.sleep(2)
            sessions += more
            await lose(servers, sessions, 1, signal.SIGTERM, 4 + seconds / 2)
            for task in tasks:
                task.cancel()
            await asyncio.gather(*tasks, return_exceptions=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--smoke", action="store_true")
    parser.add_argument("--sessions", type=int, default=64)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        check_units(options.folder, work)
        servers = Servers(options.folder, work)
        with servers.kept:
            check_cache(servers)
            asyncio.run(measure(servers, 8 if options.smoke else options.sessions, 1 if options.smoke else 15))


if __name__ == "__main__":
    main()
