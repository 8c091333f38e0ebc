#!/usr/bin/env python3
"""A stand-in for a generation service, to try Build-a-Score on this machine without an account. It composes nothing: its
takes are the clip that was sent, plain and with an echo, or clicks and a tone for an intro. It says what it received, and
can fail in every way that a real service may. The protocol is told in docs/generation-service.md."""
import argparse
import array
import http.server
import itertools
import json
import math
import pathlib
import shutil
import socket
import struct
import subprocess
import tempfile
import time
import urllib.parse
import wave

MAX_CLIP = 16 << 20  # bytes
RATE = 48000
TONICS = ["C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"]

# What fails, and how the answer to that request looks instead: (status, body) or a word.
FAILURES = {
    "unauthorised": ("clip", (401, b'{"error":"This key is not known here"}')),
    "broken": ("clip", (500, b"no JSON at all")),
    "html": ("start", (200, b"<html>Please log in</html>")),
    "empty": ("start", (200, b"")),
    "no-task": ("start", (200, b"{}")),
    "redirect": ("start", "redirect"),
    "cut": ("start", "cut"),
    "reset": ("start", "reset"),
    "silent": ("start", "silent"),
    "huge": ("start", "huge"),
    "failed": ("poll", (200, b'{"status":"failed","error":"The clip is too quiet to build on"}')),
    "endless": ("poll", (200, b'{"status":"running"}')),
    "lost-once": ("poll", "lost once"),
    "no-take": ("poll", (200, b'{"status":"done","tracks":[{"id":1}]}')),
    "bad-take": ("take", (200, b"<html>not a sound</html>")),
    "missing-take": ("take", (404, b"")),
}


def masked(value: str) -> str:
    """A header with a key in it, so that a log can be shown to others."""
    scheme, _, key = value.rpartition(" ")
    return f"{scheme} {key[:2]}*** ({len(key)} characters)".lstrip()


def said(text: str) -> None:
    print(f"{time.strftime('%H:%M:%S')}  {text}", flush=True)


def intro(bpm: float, key: str, seconds: float) -> bytes:
    """Clicks on the beats over the tonic, as a WAV file."""
    tonic = TONICS.index(key.rstrip("m")) if key.rstrip("m") in TONICS else 0
    hertz = 261.63 * 2 ** (tonic / 12)
    beat = 60 / bpm
    samples = array.array("h")
    for i in range(int(seconds * RATE)):
        t = i / RATE
        since = t % beat
        tone = 0.25 * math.sin(2 * math.pi * hertz * t) * min(t, 1)
        click = 0.5 * math.exp(-since / 0.01) * math.sin(2 * math.pi * 2000 * since)
        samples.append(int(32767 * (tone + click)))
    with tempfile.NamedTemporaryFile(suffix=".wav") as file:
        with wave.open(file.name, "wb") as out:
            out.setnchannels(1)
            out.setsampwidth(2)
            out.setframerate(RATE)
            out.writeframes(samples.tobytes())
        return pathlib.Path(file.name).read_bytes()


def with_echo(clip: bytes) -> bytes:
    """Through ffmpeg where there is one, else as it is."""
    if not shutil.which("ffmpeg"):
        return clip
    with tempfile.TemporaryDirectory() as folder:
        before, after = pathlib.Path(folder) / "in.m4a", pathlib.Path(folder) / "out.mp3"
        before.write_bytes(clip)
        command = ["ffmpeg", "-v", "error", "-i", before, "-af", "aecho=0.8:0.6:375|750:0.4|0.25", "-b:a", "192k", after]
        done = subprocess.run(command, stdin=subprocess.DEVNULL, check=False)
        return after.read_bytes() if done.returncode == 0 else clip


class Service:
    def __init__(self, options: argparse.Namespace) -> None:
        self.options = options
        self.clips: dict[str, bytes] = {}
        self.tasks: dict[str, tuple[float, list[bytes]]] = {}
        self.numbers = itertools.count(1)
        self.used = 0
        self.lost = False

    def failure(self, step: str):
        wanted = FAILURES.get(self.options.fail)
        if not wanted or wanted[0] != step or (wanted[1] == "lost once" and self.lost):
            return None
        self.lost = True
        return wanted[1]

    def store(self, clip: bytes) -> dict:
        name = f"clip-{next(self.numbers)}"
        self.clips[name] = clip
        if self.options.keep:
            file = pathlib.Path(self.options.keep) / f"{name}.m4a"
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(clip)
            said(f"          kept as {file}")
        return {"url": name, "standIn": True}

    def start(self, request: dict) -> dict:
        task = f"task-{next(self.numbers)}"
        clip = self.clips.get(request.get("clipUrl", ""))
        made = clip or intro(float(request.get("bpm", 120)), str(request.get("key", "C")),
                             min(float(request.get("durationSec", 8)), 60) * 1.5)
        takes = [made, with_echo(made)] * self.options.takes
        self.tasks[task] = (time.monotonic() + self.options.seconds, takes[: self.options.takes])
        self.used += 1
        return {"taskId": task, "used": self.used, "allowance": 100, "standIn": True}

    def poll(self, task: str, base: str) -> dict:
        if task not in self.tasks:
            return {"status": "failed", "error": "No such task"}
        ready, takes = self.tasks[task]
        if time.monotonic() < ready:
            return {"status": "running"}
        return {"status": "done", "tracks": [{"url": f"{base}takes/{task}/{i}"} for i in range(len(takes))]}

    def take(self, path: str) -> bytes | None:
        parts = path.strip("/").split("/")
        if len(parts) != 3 or parts[1] not in self.tasks or not parts[2].isdigit():
            return None
        takes = self.tasks[parts[1]][1]
        return takes[int(parts[2])] if int(parts[2]) < len(takes) else None


class Handler(http.server.BaseHTTPRequestHandler):
    service: Service
    protocol_version = "HTTP/1.1"

    def log_message(self, *_: object) -> None:
        pass

    def tell(self, body: bytes) -> None:
        said(f"{self.command} {self.path}")
        for name, value in self.headers.items():
            secret = name.lower() == self.service.options.header.lower()
            print(f"          {name}: {masked(value) if secret else value}", flush=True)
        if not body:
            return
        is_text = self.headers.get("Content-Type", "").startswith("application/json")
        print(f"          {body.decode('utf-8', 'replace') if is_text else f'{len(body)} bytes of sound'}", flush=True)

    def answer(self, status: int, body: bytes, kind: str = "application/json") -> None:
        said(f"  answers {status}, {body[:300].decode('utf-8', 'replace') if len(body) < 2000 else f'{len(body)} bytes'}")
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def fails(self, step: str) -> bool:
        how = self.service.failure(step)
        if how is None:
            return False
        said(f"  fails on purpose: {self.service.options.fail}")
        self.close_connection = True
        if isinstance(how, tuple):
            self.answer(*how)
        elif how == "redirect":
            self.send_response(302)
            self.send_header("Location", "http://192.0.2.1/elsewhere")
            self.send_header("Content-Length", "0")
            self.end_headers()
        elif how == "cut":
            self.wfile.write(b'HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{"taskId')
        elif how == "silent":
            time.sleep(120)
        elif how == "huge":
            self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Length: 10737418240\r\n\r\n{")
        else:
            self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            self.connection.close()
        return True

    def is_allowed(self) -> bool:
        key = self.service.options.key
        if not key or self.headers.get(self.service.options.header, "").removeprefix("Bearer ") == key:
            return True
        self.close_connection = True
        self.answer(401, b'{"error":"This key is not known here"}')
        return False

    def do_POST(self) -> None:
        length = int(self.headers.get("Content-Length", 0))
        if length > MAX_CLIP:
            self.close_connection = True
            return self.answer(413, b'{"error":"The clip is too large"}')
        body = self.rfile.read(length)
        self.tell(body)
        step = {"/ai/clip": "clip", "/ai/generate": "start"}.get(self.path)
        if not self.is_allowed() or (step and self.fails(step)):
            return None
        if step == "clip":
            return self.answer(200, json.dumps(self.service.store(body)).encode())
        if step == "start":
            return self.answer(200, json.dumps(self.service.start(json.loads(body))).encode())
        return self.answer(404, b'{"error":"No such path"}')

    def do_GET(self) -> None:
        self.tell(b"")
        url = urllib.parse.urlsplit(self.path)
        if url.path.startswith("/takes/"):
            if self.fails("take"):
                return None
            take = self.service.take(url.path)
            return self.answer(404, b"") if take is None else self.answer(200, take, "application/octet-stream")
        if url.path != "/ai/generate":
            return self.answer(404, b'{"error":"No such path"}')
        if not self.is_allowed() or self.fails("poll"):
            return None
        task = urllib.parse.parse_qs(url.query).get("taskId", [""])[0]
        base = f"http://{self.headers.get('Host')}/"
        return self.answer(200, json.dumps(self.service.poll(task, base)).encode())


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--port", type=int, default=8765)
    parser.add_argument("--key", default="", help="the key that requests must carry; without it all are let in")
    parser.add_argument("--header", default="Authorization", help="the header that carries the key")
    parser.add_argument("--takes", type=int, default=2)
    parser.add_argument("--seconds", type=float, default=12, help="how long it pretends to work")
    parser.add_argument("--keep", help="a folder that gets the clips that were sent")
    parser.add_argument("--fail", choices=sorted(FAILURES), help="a way to fail")
    options = parser.parse_args()
    Handler.service = Service(options)
    with http.server.ThreadingHTTPServer(("127.0.0.1", options.port), Handler) as server:
        server.daemon_threads = True
        print(f"A stand-in that composes nothing. Its address for Settings: http://127.0.0.1:{options.port}", flush=True)
        try:
            server.serve_forever()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main()
