# SPDX-License-Identifier: MIT
"""The pictures that rows show: listed, fetched ahead, and drawn without a network."""
import http.server
import json
import signal
import socket
import threading
import time

import pyarrow as pa
import pytest
import tavrin
import tavrin.arrow

DATE = {"date": "2026-11-21T08:05:00Z"}
PHOTO = """{"version": "1.0", "nodes": {"main": {"type": "zstack", "children": [
    {"type": "webImage", "url": "{{initServerParam.photo}}", "alt": "{{initServerParam.other}}"}]}}}"""
SMALL = {"size": (8, 8), "scale": 1}


@pytest.fixture
def server():
    """Gives pictures on this machine: /red… a red one, /none… nothing, /text… no picture. It counts who asks."""
    red = tavrin.Document('{"version": "1.0", "nodes": {"main": {"type": "color", "value": "#FF0000"}}}').widget(
        size=(8, 8), scale=1).encode()

    class Pictures(http.server.BaseHTTPRequestHandler):
        def do_GET(self):
            self.server.asked.append(self.path)
            body = red if self.path.startswith("/red") else b"no picture"
            self.send_response(404 if self.path.startswith("/none") else 200)
            self.send_header("Content-Length", str(len(body)))
            self.end_headers()
            self.wfile.write(body)

        def log_message(self, *_):
            pass

    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pictures) as running:
        running.asked = []
        running.address = f"http://127.0.0.1:{running.server_port}"
        thread = threading.Thread(target=running.serve_forever)
        thread.start()
        yield running
        running.shutdown()
        thread.join()


def rows(*photos):
    """A row for each pair of addresses, behind one that is bad."""
    return pa.record_batch({"model": ["{", *(json.dumps({"photo": photo, "other": other}) for photo, other in photos)]})


def test_addresses_come_once_and_in_order():
    batch = rows(("https://a.example/1.png", "https://a.example/2.png"), ("https://a.example/1.png", "data:,x"),
                 ("https://ä.example/0.png", "https://a.example/2.png"))
    found = tavrin.arrow.addresses(batch, document=PHOTO)
    assert isinstance(found, pa.StringArray)
    assert found.to_pylist() == ["https://a.example/1.png", "https://a.example/2.png", "data:,x",
                                 "https://xn--4ca.example/0.png"]
    assert tavrin.arrow.addresses(batch, document=PHOTO, image_cache_dir="elsewhere", **DATE).equals(found)
    assert tavrin.arrow.addresses(batch.slice(0, 1), document=PHOTO).equals(pa.array([], pa.string()))


def test_what_is_fetched_ahead_is_drawn_without_a_network(server, tmp_path):
    a, b = f"{server.address}/red/a.png", f"{server.address}/red/b.png"
    batch = rows((a, a), (b, a), (a, b), (f"{server.address}/none", b))
    fetched = tavrin.arrow.prefetch(batch, document=PHOTO, image_cache_dir=tmp_path / "new/pictures", fetch="all")
    assert fetched.to_pydict() == {"address": [a, b, f"{server.address}/none"],
                                   "error": [None, None, "there is no picture (status 404)"]}
    assert sorted(server.asked) == ["/none", "/red/a.png", "/red/b.png"]
    assert len(list((tmp_path / "new/pictures").iterdir())) == 2

    server.asked.clear()
    drawn = tavrin.arrow.render(batch, document=PHOTO, fetch="none", image_cache_dir=tmp_path / "new/pictures",
                                **SMALL, **DATE)
    empty = tavrin.arrow.render(batch, document=PHOTO, fetch="none", **SMALL, **DATE)
    assert server.asked == []
    direct = tavrin.arrow.render(batch, document=PHOTO, fetch="all", **SMALL, **DATE)
    assert server.asked
    assert drawn["picture"].equals(direct["picture"])
    assert empty["picture"][1] != direct["picture"][1]


def test_what_lies_there_is_not_fetched_again(server, tmp_path):
    a, b = f"{server.address}/red/a.png", f"{server.address}/red/b.png"
    options = {"document": PHOTO, "image_cache_dir": str(tmp_path), "fetch": "all"}
    tavrin.arrow.prefetch(rows((a, a)), **options)
    assert tavrin.arrow.prefetch(rows((a, b)), **options).to_pydict() == {"address": [a, b], "error": [None, None]}
    assert server.asked == ["/red/a.png", "/red/b.png"]


def test_only_what_is_allowed_is_fetched(server, tmp_path):
    batch = rows((f"{server.address}/red", f"{server.address}/red"))
    for policy in ({}, {"fetch": "public"}, {"fetch": "none"}):
        [error] = tavrin.arrow.prefetch(batch, document=PHOTO, image_cache_dir=tmp_path, **policy)["error"].to_pylist()
        assert error
    assert server.asked == [] and list(tmp_path.iterdir()) == []


def test_names_that_are_alike_are_told(server, tmp_path):
    a, b = f"{server.address}/red/Ab", f"{server.address}/red/BA"  # whose hashes are one
    fetched = tavrin.arrow.prefetch(rows((a, b)), document=PHOTO, image_cache_dir=tmp_path, fetch="all").to_pydict()
    [name] = [path.name for path in tmp_path.iterdir()]
    assert fetched == {"address": [a, b], "error": [None, f"its name in the folder, {name}, is that of '{a}' too"]}


def test_what_makes_no_sense_is_refused(server, tmp_path):
    batch = rows((f"{server.address}/text", f"{server.address}/text"))
    with pytest.raises(ValueError, match="fetch takes none, public or all, not 'some'"):
        tavrin.arrow.prefetch(batch, document=PHOTO, image_cache_dir=tmp_path, fetch="some")
    with pytest.raises(ValueError, match="image_cache_dir takes the name of a folder"):
        tavrin.arrow.prefetch(batch, document=PHOTO, image_cache_dir="", fetch="all")
    for options in ({}, {"image_cache_dir": 5}, {"image_cache_dir": tmp_path, "fetch_column": "model"}):
        with pytest.raises(TypeError):
            tavrin.arrow.prefetch(batch, document=PHOTO, **options)
    (tmp_path / "file").write_text("")
    with pytest.raises(OSError):
        tavrin.arrow.prefetch(batch, document=PHOTO, image_cache_dir=tmp_path / "file", fetch="all")
    fetched = tavrin.arrow.prefetch(batch, document=PHOTO, image_cache_dir=tmp_path, fetch="all")
    assert fetched["error"].to_pylist() == ["there is no picture (status 200)"]


def test_who_waits_for_a_picture_can_be_interrupted(tmp_path):
    """A server that never answers would else be waited for as long as a download may take, which is a minute."""
    with socket.create_server(("127.0.0.1", 0)) as silent:
        address = f"http://127.0.0.1:{silent.getsockname()[1]}/"
        batch = rows((address, address))

        def interrupt_who_waits():
            with silent.accept()[0]:
                signal.pthread_kill(threading.main_thread().ident, signal.SIGINT)
                interrupted.wait(60)

        interrupted = threading.Event()
        waiting = threading.Thread(target=interrupt_who_waits)
        waiting.start()
        begin = time.monotonic()
        with pytest.raises(KeyboardInterrupt):
            tavrin.arrow.prefetch(batch, document=PHOTO, image_cache_dir=tmp_path, fetch="all")
        interrupted.set()
        waiting.join()
        assert time.monotonic() - begin < 30
