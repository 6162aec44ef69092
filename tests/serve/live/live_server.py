# SPDX-License-Identifier: MIT
"""A running server, and who asks it. Everything stays on 127.0.0.1."""
import base64
import contextlib
import http.client
import json
import pathlib
import re
import shutil
import signal
import subprocess
import threading
import time

TOP = pathlib.Path(__file__).resolve().parents[3]
MODEL = json.loads((TOP / "bench/peers/model.json").read_text(encoding="utf-8"))
PICTURES = TOP / "examples/weather/pictures"


def widget_folder(place):
    """A folder with the weather, as `weather`."""
    place.mkdir(exist_ok=True)
    shutil.copy(TOP / "bench/peers/document.json", place / "weather.json")
    return place


def model_member(model):
    return "model=" + base64.urlsafe_b64encode(json.dumps(model).encode()).rstrip(b"=").decode()


def personal(number, name="weather.png"):
    """The address of a picture that differs from all others in one text."""
    return f"/v1/widgets/{name}?{model_member(MODEL | {'condition': f'Partly cloudy, wind {number} km/h'})}"


class Answer:
    def __init__(self, response):
        self.status, self.headers, self.body = response.status, response.headers, response.read()

    @property
    def problem(self):
        return json.loads(self.body)


class LiveServer:
    """`tavrin serve` on a port that is free, until the block ends; its lines about requests are kept."""

    def __init__(self, program, folder, *words):
        self.process = subprocess.Popen(
            [program, "serve", folder, "--listen", "127.0.0.1:0", "--image-cache-dir", PICTURES, *map(str, words)],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
        self.log = []
        self.said = self.process.stderr.readline()
        found = re.search(r"http://127\.0\.0\.1:(\d+)", self.said)
        if not found:
            self.process.kill()
            raise RuntimeError(f"the server said {self.said}{self.process.stderr.read()}")
        self.port = int(found[1])
        self.reader = threading.Thread(target=self._read_log, daemon=True)
        self.reader.start()
        threading.Thread(target=self.process.stderr.read, daemon=True).start()

    def _read_log(self):
        for line in self.process.stdout:
            self.log.append(json.loads(line))

    @property
    def address(self):
        return f"http://127.0.0.1:{self.port}"

    def connect(self, timeout=30):
        return http.client.HTTPConnection("127.0.0.1", self.port, timeout=timeout)

    def ask(self, path, method="GET", body=None, headers=None):
        with contextlib.closing(self.connect()) as connection:
            connection.request(method, path, body, headers or {})
            return Answer(connection.getresponse())

    def metric(self, name):
        """The sum of a metric's series; labels may be given as Prometheus writes them."""
        total = 0.0
        for line in self.ask("/metrics").body.decode().splitlines():
            series, _, value = line.rpartition(" ")
            if series == name or series.startswith(name + "{"):
                total += float(value)
        return total

    def resident_bytes(self):
        for line in pathlib.Path(f"/proc/{self.process.pid}/status").read_text().splitlines():
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) * 1024
        raise RuntimeError("the server has no memory")

    def end(self, number=signal.SIGTERM, patience=30):
        """Its exit status after a signal."""
        self.process.send_signal(number)
        status = self.process.wait(patience)
        self.reader.join(patience)
        return status

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


class Clients:
    """Threads that ask for one address after another, each over a connection of its own, until they are stopped."""

    def __init__(self, server, count, next_path):
        self.server, self.next_path = server, next_path
        self.answers = []  # (status, seconds, headers), or (None, seconds, error) of a connection that broke
        self.stopping = threading.Event()
        self.threads = [threading.Thread(target=self._run, daemon=True) for _ in range(count)]

    def _run(self):
        connection = self.server.connect()
        while not self.stopping.is_set():
            begun = time.monotonic()
            try:
                connection.request("GET", self.next_path())
                answer = Answer(connection.getresponse())
                self.answers.append((answer.status, time.monotonic() - begun, answer.headers))
            except (OSError, http.client.HTTPException) as error:
                self.answers.append((None, time.monotonic() - begun, error))
                connection.close()
                time.sleep(0.01)
        connection.close()

    def run(self, seconds):
        with self:
            time.sleep(seconds)
        return self.answers

    def __enter__(self):
        for thread in self.threads:
            thread.start()
        return self

    def __exit__(self, *_):
        self.stopping.set()
        for thread in self.threads:
            thread.join(60)


def percentile(numbers, share):
    ordered = sorted(numbers)
    return ordered[min(int(len(ordered) * share), len(ordered) - 1)]
