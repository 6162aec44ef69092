# SPDX-License-Identifier: MIT
"""What browsers, Node and curl make of the answers."""
import functools
import http.server
import json
import shutil
import subprocess
import threading

import pytest
from live_server import personal

WEATHER = "/v1/widgets/weather.png"


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, timeout=60).stdout.decode()


def test_a_picture_is_asked_for_again(serve):
    server = serve()
    first = server.ask(WEATHER)
    assert first.status == 200
    assert first.body.startswith(b"\x89PNG")
    again = server.ask(WEATHER, headers={"If-None-Match": first.headers["ETag"]})
    assert (again.status, again.body) == (304, b"")
    assert again.headers["ETag"] == first.headers["ETag"]
    assert server.ask(personal(1)).headers["ETag"] != first.headers["ETag"]
    head = server.ask(WEATHER, method="HEAD")
    assert (head.status, head.body) == (200, b"")
    assert int(head.headers["Content-Length"]) == len(first.body)


def test_curl_keeps_what_it_has(serve, tmp_path):
    server = serve()
    ask = functools.partial(run, "curl", "--silent", "--etag-save", tmp_path / "tag", "--etag-compare",
                            tmp_path / "tag", "--output", tmp_path / "picture", "--write-out", "%{http_code}",
                            server.address + WEATHER)
    assert [ask(), ask()] == ["200", "304"]


def test_node_fetches(serve):
    server = serve("--cors", "https://example.com")
    script = """
        const first = await fetch(process.argv[1]);
        const { length } = Buffer.from(await first.arrayBuffer());
        const again = await fetch(process.argv[1], { headers: { 'if-none-match': first.headers.get('etag') } });
        console.log(JSON.stringify([first.status, length > 1000, first.headers.get('content-type'),
          first.headers.get('access-control-allow-origin'), again.status]));"""
    said = json.loads(run("node", "--input-type=module", "--eval", script, server.address + WEATHER))
    assert said == [200, True, "image/png", "https://example.com", 304]


@pytest.mark.skipif(not shutil.which("chromium"), reason="there is no Chromium")
def test_a_page_shows_it(serve, tmp_path):
    server = serve()
    (tmp_path / "index.html").write_text(
        f'<img src="{server.address}{WEATHER}" onload="document.title = naturalWidth" onerror="document.title = -1">')
    handler = functools.partial(http.server.SimpleHTTPRequestHandler, directory=tmp_path)
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as pages:
        threading.Thread(target=pages.serve_forever, daemon=True).start()
        page = run("chromium", "--headless", "--no-sandbox", "--disable-gpu", f"--user-data-dir={tmp_path / 'browser'}",
                   "--virtual-time-budget=5000", "--dump-dom", f"http://127.0.0.1:{pages.server_port}/")
        pages.shutdown()
    assert "<title>1014</title>" in page  # 338 points at 3 pixels each
