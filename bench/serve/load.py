#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""One scene over HTTP, by `tavrin serve` and by a Node server that draws it with Takumi: load.py PROGRAM [SECONDS]

wrk asks both by turns, over 16 connections: for one picture again and again, which either has finished once, and for
pictures that all differ in one text, as for as many people. Prints requests a second and how long they took.
"""
import json
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "tests/serve/live"))
from live_server import MODEL, LiveServer, model_member, widget_folder  # noqa: E402

CONNECTIONS = 16
ROUNDS = 3
MARK = "NUMBER"
DATE = "date=2026-11-21T08:05:00Z"
WIDGET = f"/v1/widgets/weather.png?{DATE}&background=none"


class Peer:
    """The Node server, until the block ends."""

    def __enter__(self):
        self.process = subprocess.Popen(["node", HERE / "peer.mjs"], stdout=subprocess.PIPE, encoding="utf-8")
        self.port = int(self.process.stdout.readline())
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(10)


def wrk(port, path, seconds, script=()):
    done = subprocess.run(
        ["wrk", "--threads", "1", "--connections", str(CONNECTIONS), "--duration", f"{seconds}s", "--timeout", "10s",
         "--latency", *(["--script", HERE / "personal.lua"] if script else []), f"http://127.0.0.1:{port}{path}",
         *(["--", *script] if script else [])], check=True, capture_output=True, encoding="utf-8").stdout
    if "Non-2xx" in done or "Socket errors" in done:
        sys.exit(f"not every request was answered with a picture:\n{done}")
    unit = {"us": 1e-3, "ms": 1, "s": 1e3}
    latency = {share: float(number) * unit[of]
               for share, number, of in re.findall(r"^\s+(50|99)%\s+([\d.]+)(us|ms|s)$", done, re.MULTILINE)}
    return float(re.search(r"Requests/sec:\s+([\d.]+)", done)[1]), latency["50"], latency["99"]


def main():
    program = sys.argv[1]
    seconds = int(sys.argv[2]) if len(sys.argv) > 2 else 10
    before, behind = json.dumps(MODEL | {"condition": f"Partly Cloudy, wind {MARK} km/h"}).split(MARK)
    ours = {"one picture": (f"{WIDGET}&{model_member(MODEL)}", ()),
            "a picture for each": (WIDGET, (f"{WIDGET}&model=", before, behind, "base64"))}
    theirs = {"one picture": ("/", ()),
              "a picture for each": ("/", ("/?condition=Partly%20Cloudy%2C%20wind%20", "", "%20km%2Fh", "plain"))}
    with tempfile.TemporaryDirectory() as folder, Peer() as peer, \
            LiveServer(program, widget_folder(pathlib.Path(folder) / "widgets"), "--queue", 256) as server:
        found = {}
        for turn in range(-1, ROUNDS):
            for name, port, asked in (("Tavrin", server.port, ours), ("Takumi in Node", peer.port, theirs)):
                for what, (path, script) in asked.items():
                    measured = wrk(port, path, seconds if turn >= 0 else 2, script)
                    if turn >= 0:  # the first one warms up
                        found.setdefault((what, name), []).append(measured)
        print(f"{CONNECTIONS} connections, the median of {ROUNDS} rounds of {seconds} s, taken by turns\n")
        print(f"| {'':18} | {'':14} | requests/s |  p50 ms |  p99 ms |")
        print("| --- | --- | --- | --- | --- |")
        for (what, name), rounds in sorted(found.items()):
            rate, p50, p99 = (sorted(column)[len(rounds) // 2] for column in zip(*rounds))
            print(f"| {what:18} | {name:14} | {rate:10.0f} | {p50:7.2f} | {p99:7.2f} |")


if __name__ == "__main__":
    main()
