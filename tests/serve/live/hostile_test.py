# SPDX-License-Identifier: MIT
"""Clients that mean harm, while others' pictures must come as before."""
import contextlib
import re
import resource
import socket
import threading
import time

import pytest
from live_server import Clients, percentile, personal

KNOWN = "/v1/widgets/weather.png?date=2026-11-21T08:05:00Z"
HEAD = b"POST /v1/render HTTP/1.1\r\nHost: a.test\r\nContent-Type: application/json\r\n"


def connected(server):
    return socket.create_connection(("127.0.0.1", server.port), timeout=10)


def drip(server, stopping, count):
    """Connections that send a letter of their head now and then, and so never end it."""
    letters = b"GET /v1/widgets/weather.png HTTP/1.1\r\nHost: a.test\r\nX-Slow: " + b"a" * 1000
    with contextlib.ExitStack() as stack:
        open_ones = [stack.enter_context(connected(server)) for _ in range(count)]
        for letter in letters:
            for connection in open_ones:
                with contextlib.suppress(OSError):  # the server has had enough of it
                    connection.send(bytes([letter]))
            if stopping.wait(0.05):
                return


def leave_bodies(server, stopping, count):
    """Connections that promise a body and send half of it."""
    with contextlib.ExitStack() as stack:
        for _ in range(count):
            connection = stack.enter_context(connected(server))
            connection.sendall(HEAD + b"Content-Length: 1000\r\n\r\n" + b" " * 500)
        stopping.wait()


def talk_rubbish(server, stopping, _):
    """Requests one behind the other, with rubbish between them."""
    rubbish = b"GET /healthz HTTP/1.1\r\nHost: a.test\r\n\r\n" * 20 + bytes(range(256)) * 40
    while not stopping.is_set():
        with contextlib.suppress(OSError), connected(server) as connection:
            connection.sendall(rubbish)
            while connection.recv(65536):
                pass


def hang_up(server, stopping, _):
    """Ask for a picture, and go before it comes."""
    number = 0
    while not stopping.is_set():
        number += 1
        with contextlib.suppress(OSError), connected(server) as connection:
            connection.sendall(f"GET {personal(f'gone {number}')} HTTP/1.1\r\nHost: a.test\r\n\r\n".encode())
        time.sleep(0.01)


def late_share(server, seconds=4):
    """In how many seconds 99 of 100 known pictures come, and that they come."""
    answers = Clients(server, 2, lambda: KNOWN).run(seconds)
    assert {status for status, _, _ in answers} == {200}
    return percentile([taken for _, taken, _ in answers], 0.99)


@pytest.mark.parametrize(("attack", "count"), [(drip, 1000), (leave_bodies, 500), (talk_rubbish, 1), (hang_up, 1)])
def test_others_do_not_notice(serve, attack, count):
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (min(hard, 65536), hard))
    server = serve("--queue", 256)
    server.ask(KNOWN)
    calm = late_share(server)
    stopping = threading.Event()
    attacker = threading.Thread(target=attack, args=(server, stopping, count), daemon=True)
    attacker.start()
    time.sleep(1)
    try:
        attacked = late_share(server)
        memory = server.resident_bytes()
    finally:
        stopping.set()
        attacker.join(30)
        resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
    print(f"{attack.__name__}: p99 {calm * 1000:.1f} ms alone, {attacked * 1000:.1f} ms meanwhile, {memory >> 20} MiB")
    assert attacked < 4 * calm + 0.1  # on a busy machine both are late
    assert memory < 512 << 20
    assert server.ask("/healthz").status == 200


GET = b"GET /healthz HTTP/1.1\r\nHost: a.test\r\n"
SMUGGLED = {
    "a length and chunks": HEAD + b"Content-Length: 4\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
    "two lengths": HEAD + b"Content-Length: 2\r\nContent-Length: 4\r\n\r\n{}{}",
    "two equal lengths": HEAD + b"Content-Length: 2\r\nContent-Length: 2\r\n\r\n{}",
    "a list of lengths": HEAD + b"Content-Length: 2, 2\r\n\r\n{}",
    "a length with a sign": HEAD + b"Content-Length: +2\r\n\r\n{}",
    "a length below zero": HEAD + b"Content-Length: -2\r\n\r\n{}",
    "a hexadecimal length": HEAD + b"Content-Length: 0x2\r\n\r\n{}",
    "a length beyond all numbers": HEAD + b"Content-Length: 99999999999999999999\r\n\r\n{}",
    "a blank before the colon": HEAD + b"Content-Length : 2\r\n\r\n{}",
    "an encoding that is none": HEAD + b"Transfer-Encoding: xchunked\r\n\r\n0\r\n\r\n",
    "an encoding behind another": HEAD + b"Transfer-Encoding: chunked, identity\r\n\r\n0\r\n\r\n",
    "a line folded": GET + b"X-A: b\r\n c\r\n\r\n",
    "lines that end with LF alone": GET.replace(b"\r\n", b"\n") + b"\n",
    "a bare CR in a value": GET + b"X-A: b\rc\r\n\r\n",
    "a NUL in a value": GET + b"X-A: b\x00c\r\n\r\n",
    "two hosts": GET + b"Host: b.test\r\n\r\n",
    "no host": b"GET /healthz HTTP/1.1\r\n\r\n",
    "a blank in the target": b"GET /healthz x HTTP/1.1\r\nHost: a.test\r\n\r\n",
    "a length of chunks that is none": HEAD + b"Transfer-Encoding: chunked\r\n\r\nx\r\n\r\n",
}


@pytest.fixture(scope="module")
def calm_server(request, tmp_path_factory):
    from live_server import LiveServer, widget_folder
    folder = widget_folder(tmp_path_factory.mktemp("folder") / "widgets")
    with LiveServer(request.config.getoption("--program"), folder) as server:
        yield server


@pytest.mark.parametrize("form", SMUGGLED.values(), ids=SMUGGLED)
def test_no_request_hides_in_another(calm_server, form):
    """Such a form is refused and the connection closed, so that nothing behind it is taken for a request."""
    with connected(calm_server) as connection:
        connection.sendall(form + GET + b"\r\n")
        said = b""
        with contextlib.suppress(ConnectionResetError):
            while part := connection.recv(65536):
                said += part
    status = said.split(b" ", 2)[1:2]
    assert status and status[0] in (b"400", b"411", b"413", b"501"), said[:200]
    assert len(re.findall(rb"(?m)^HTTP/1\.1 \d", said)) == 1, said
