#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the program where writing fails, and looks at what it leaves: faults_suite.py PROGRAM [RUNS] [SEED]

Disks are full, files may not grow or not be replaced, descriptors run out, signals come. Each file must then be as it
was or as it is meant to be, those that belong together alike, and nothing else may be left.
"""
import dataclasses
import http.server
import json
import os
import pathlib
import random
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time
import zlib

SPAN = "2026-03-01T09:41:00Z..2026-03-01T09:41:07Z"
NEED_MOUNTS = ["a full disk", "a busy file"]
LIMITS = ["small files", "few descriptors", *NEED_MOUNTS]
SIGNALS = [signal.SIGTERM, signal.SIGINT, signal.SIGHUP]
DISK_BYTES = 256 * 1024


def document(*children):
    main = {"type": "vstack", "children": [*children, {"type": "color", "value": "#0088FF"}]}
    return json.dumps({"version": "1.0", "nodes": {"main": main}})


def text(content):
    return document({"type": "text", "content": content, "fontSize": 30})


def documents(address):
    pictures = [{"type": "webImage", "url": f"{address}/{number}"} for number in range(3)]
    return {
        "a.json": text("Good morning"),
        "b.json": text("Good evening"),
        "clock.json": document({"type": "timer", "timestamp": 1772358016, "fontSize": 30}),
        "pictures.json": document(*pictures),
        "lines.jsonl": "".join(f'{{"id": "{number}"}}\n' for number in range(12)),
    }


def alone(file):
    return file


def with_all(_):
    return "the whole folder"


def with_its_pair(file):
    return file.rpartition(".")[0]


@dataclasses.dataclass
class Case:
    """Something to run in the folder of documents, which writes into "out"."""

    name: str
    words: list
    group_of: callable = alone  # files of one group belong together
    report: tuple = ()  # files that tell, after a run with failures, which others are new; the first one as JSON
    start: dict = dataclasses.field(default_factory=dict)  # what must be there before
    new: dict = None  # what a run without faults leaves
    seconds: float = 0


def cases():
    doubtful = text("Hello").replace("fontSize", "fontsize").encode()
    return [
        Case("a picture", ["render", "a.json", "-o", "out/a.png"]),
        Case("several pictures", ["render", "a.json", "b.json", "clock.json", "-o", "out"]),
        Case("numbered frames", ["render", "clock.json", "--frames", SPAN, "-o", "out/clock-%02d.png"], with_all),
        Case("an animation", ["render", "clock.json", "--frames", SPAN, "-o", "out/clock.webp"]),
        Case("every combination", ["render", "a.json", "b.json", "--scales", "1,2", "-o", "out/"], with_all,
             report=("index.json", "index.html")),
        Case("lines", ["render", "a.json", "--models", "lines.jsonl", "--key", "id", "-o", "out/"],
             report=("index.json",)),
        Case("snapshots", ["snapshot", "a.json", "b.json", "--dir", "out", "--update"], with_its_pair),
        Case("fixes", ["check", "out/x.json", "out/y.json", "--fix"], start={"x.json": doubtful, "y.json": doubtful}),
        Case("downloads", ["fetch", "pictures.json", "--image-cache-dir", "out"]),
    ]


def noise(seed, side=120):
    """A picture that hardly gets smaller."""

    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

    rows = b"".join(b"\0" + random.Random(f"{seed} {y}").randbytes(side) for y in range(side))
    header = struct.pack(">IIBBBBB", side, side, 8, 0, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


class Pictures(http.server.BaseHTTPRequestHandler):
    """Answers each address with a picture of its own."""

    def do_GET(self):
        body = noise(self.path)
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    def handle_error(self, request, client_address):
        """Whoever asked may have been ended."""


def contents(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if not path.is_dir()}


def fill(folder, files):
    for entry in folder.iterdir():
        shutil.rmtree(entry) if entry.is_dir() else entry.unlink()
    for name, data in files.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_bytes(data)


def old_files(case):
    return case.start or {name: random.Random(name).randbytes(len(data)) for name, data in case.new.items()}


def told_in(case, old, new, left):
    """The files that a report of this very run tells of; None where there is no such report."""
    report = left.get(case.report[0]) if case.report else None
    if report is None or report in (old.get(case.report[0]), new[case.report[0]]):
        return None
    return {entry["file"] for entry in json.loads(report)}


def faults_of(case, old, new, left, status, ended_by):
    """What must not be, in words."""
    expected = [0, 1] if ended_by is None else [0, 1, -ended_by]
    if status not in expected:
        yield f"exit status {status}"
    for name in sorted(left.keys() - old.keys() - new.keys()):
        yield f"{name} is left"
    told = told_in(case, old, new, left) if status == 1 else None
    if told is not None:
        for name in sorted(new.keys() - set(case.report)):
            if left.get(name) != (new if name in told else old).get(name):
                yield f"{name} is not what {case.report[0]} tells"
        return
    states = {}
    for name in sorted(old.keys() | new.keys()):
        is_new, is_old = left.get(name) == new.get(name), left.get(name) == old.get(name)
        if not is_new and not is_old:
            yield f"{name} is neither old nor new" if name in left else f"{name} is lost"
        elif is_new != is_old:
            states.setdefault(case.group_of(name), set()).add(is_new)
        if status == 0 and not is_new:
            yield f"{name} is not what success promises"
    for group, seen in states.items():
        if len(seen) > 1:
            yield f"of {group} some files are new and some old"


class Suite:
    def __init__(self, program, seed):
        self.program = program
        self.random = random.Random(seed)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tavrin-faults-"))
        self.out = self.folder / "out"
        self.out.mkdir()
        self.server = Server(("127.0.0.1", 0), Pictures)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        fill(self.out, {})
        for name, data in documents(f"http://127.0.0.1:{self.server.server_port}").items():
            (self.folder / name).write_text(data)
        self.has_small_disk = self.mount()
        self.busy = None

    def close(self):
        self.server.shutdown()
        if self.has_small_disk:
            subprocess.run(["umount", self.out], check=True)
        shutil.rmtree(self.folder)

    def mount(self):
        words = ["mount", "-t", "tmpfs", "-o", f"size={DISK_BYTES}", "tmpfs", self.out]
        return is_alone() and subprocess.run(words, capture_output=True).returncode == 0

    def begin(self, case, limit=None):
        words = [self.program, *case.words]
        if case.words[0] == "render":
            words += ["--size", "120x60", "--time-zone", "UTC"]
            words += [] if "--frames" in words else ["--date", "2026-03-01T09:41:00Z"]
        return subprocess.Popen(words, cwd=self.folder, env={**os.environ, "no_proxy": "*"}, preexec_fn=limit,
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)

    def learn(self, case):
        """What the case leaves when nothing is wrong."""
        fill(self.out, case.start)
        begin = time.monotonic()
        process = self.begin(case)
        said = process.communicate()[1]
        case.seconds = time.monotonic() - begin
        case.new = contents(self.out)
        assert process.returncode == 0 and case.new and case.new != case.start, f"{case.name}: {said}"

    def obstruct(self, fault, case, old):
        """Gets in the way of a process; returns what it is to do before it begins."""
        if fault == "small files":
            most = self.random.randrange(max(map(len, case.new.values())) + 100)
            return lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (most, most))
        if fault == "few descriptors":
            most = self.random.randrange(4, 9)
            return lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))
        if fault == "a full disk":
            disk = os.statvfs(self.out)
            room = self.random.randrange(sum(map(len, case.new.values())) + 2 * disk.f_bsize)
            (self.out / "filler").write_bytes(bytes(max(0, disk.f_bfree * disk.f_bsize - room)))
        elif old:  # nothing takes the name of what is mounted
            self.busy = self.out / self.random.choice(sorted(old))
            subprocess.run(["mount", "--bind", self.busy, self.busy], check=True)
        return None

    def clear_way(self):
        (self.out / "filler").unlink(missing_ok=True)
        if self.busy:
            subprocess.run(["umount", self.busy], check=True)
        self.busy = None

    def interrupt(self, process, case, number):
        """Sends a signal at any moment, or soon after something has changed in a folder."""
        if self.random.random() < 0.5:
            time.sleep(self.random.random() * 1.2 * case.seconds)
        else:
            folders = [self.out, *(path for path in self.out.rglob("*") if path.is_dir())]
            before = [os.stat(folder).st_mtime_ns for folder in folders]
            while process.poll() is None and [os.stat(folder).st_mtime_ns for folder in folders] == before:
                pass
            time.sleep(self.random.random() * 0.002)
        process.send_signal(number)

    def run(self, case, fault):
        """One run; returns its exit status and what is wrong."""
        old = old_files(case) if case.start or self.random.random() < 0.7 else {}
        fill(self.out, old)
        if fault in LIMITS:
            process = self.begin(case, self.obstruct(fault, case, old))
        else:
            process = self.begin(case)
            self.interrupt(process, case, fault)
        try:
            said = process.communicate(timeout=20)[1]
        except subprocess.TimeoutExpired:
            process.kill()
            said = process.communicate()[1]
        self.clear_way()
        wrong = list(faults_of(case, old, case.new, contents(self.out), process.returncode,
                               None if fault in LIMITS else fault))
        if process.returncode == 1 and not said.strip():
            wrong.append("a failure without a word")
        if wrong and said.strip():
            wrong.append(f"it said: {said.strip().splitlines()[0]}")
        return process.returncode, wrong


def is_alone():
    """Whether mounts made here are seen by nobody else."""
    return os.environ.get("TAVRIN_FAULTS_ALONE") == "yes"


def go_alone():
    """Begins again where file systems may be mounted, if there is such a place."""
    words = ["unshare", "--map-root-user", "--mount"]
    if is_alone() or not shutil.which("unshare") or subprocess.run([*words, "true"], capture_output=True).returncode:
        return
    os.environ["TAVRIN_FAULTS_ALONE"] = "yes"
    os.execvp("unshare", [*words, sys.executable, *sys.argv])


def checks_types(program):
    """Whether a sanitizer looks at the types of objects, for which it opens a pipe: without descriptors it sees faults
    where there are none."""
    return b"__ubsan_handle_dynamic_type_cache_miss" in pathlib.Path(program).read_bytes()


def main(program, runs="208", seed="1"):
    go_alone()
    suite = Suite(str(pathlib.Path(program).resolve()), int(seed))
    failures, counts = 0, {}
    try:
        faults = [*LIMITS, *SIGNALS]
        if not suite.has_small_disk:
            faults = [fault for fault in faults if fault not in NEED_MOUNTS]
            print(f"Skipped, since nothing may be mounted here: {', '.join(NEED_MOUNTS)}")
        if checks_types(suite.program):
            faults.remove("few descriptors")
            print("Skipped, since the sanitizer itself needs descriptors: few descriptors")
        known = cases()
        for case in known:
            suite.learn(case)
        for number in range(int(runs)):
            case = known[number % len(known)]
            fault = suite.random.choice(faults)
            status, wrong = suite.run(case, fault)
            name = fault if isinstance(fault, str) else fault.name
            counts.setdefault(name, {}).setdefault(status, 0)
            counts[name][status] += 1
            for sentence in wrong:
                failures += 1
                print(f"run {number}, {case.name}, {name}, status {status}: {sentence}")
    finally:
        suite.close()
    for name, statuses in counts.items():
        print(f"{name}: {', '.join(f'{count} with status {status}' for status, count in sorted(statuses.items()))}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
