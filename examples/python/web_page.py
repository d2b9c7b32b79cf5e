"""A web page with the camera's newest picture: web_page.py ADDRESS [PORT]"""

import asyncio
import sys

import orbelcast

PAGE = b"""<!doctype html><title>Camera</title><img id=camera src=picture.jpg>
<script>camera.onload = () => setTimeout(() => camera.src = "picture.jpg?" + Date.now(), 100)</script>"""
newest = b""


async def answer(reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
    target = (await reader.readline()).split(b" ")[1:2]
    kind, body = (b"image/jpeg", newest) if target and target[0].startswith(b"/picture") else (b"text/html", PAGE)
    writer.write(b"HTTP/1.0 200 OK\r\nContent-Type: %s\r\nContent-Length: %d\r\n\r\n%s" % (kind, len(body), body))
    await writer.drain()
    writer.close()


async def main(address: str, port: int) -> None:
    global newest
    server = await asyncio.start_server(answer, "127.0.0.1", port)
    print(f"http://127.0.0.1:{server.sockets[0].getsockname()[1]}/", flush=True)
    with orbelcast.VideoServerPush(FrameRate=10, AutoReconnect=True) as viewer:
        viewer.Connect(address)
        await orbelcast.connected(viewer)
        async for frame in viewer.frames():
            newest = frame.jpeg


asyncio.run(main(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 8000))
