# SPDX-License-Identifier: MIT
"""More than can be drawn, the end in the middle of it, and for long."""
import itertools
import threading
import time

from live_server import Clients, personal


def test_what_cannot_be_drawn_is_told_to_come_again(serve, numbers):
    server = serve("--workers", 1, "--queue", 4, "--time-limit", 30)
    before = server.resident_bytes()
    answers = Clients(server, 64, lambda: personal(next(numbers))).run(8)
    statuses = {status for status, _, _ in answers}
    assert statuses == {200, 429}
    assert all(int(headers["Retry-After"]) >= 1 for status, _, headers in answers if status == 429)
    drawn = sum(status == 200 for status, _, _ in answers)
    assert server.metric("tavrin_pictures_drawn_total") == drawn
    assert server.metric('tavrin_http_requests_total{route="widget",status="429"}') == len(answers) - drawn
    assert server.resident_bytes() - before < 256 << 20
    print(f"{drawn} drawn, {len(answers) - drawn} told to come again, "
          f"{before >> 20} to {server.resident_bytes() >> 20} MiB")


def test_what_was_taken_is_answered_when_it_ends(serve, numbers):
    server = serve("--queue", 1000, "--time-limit", 30)
    with Clients(server, 16, lambda: personal(next(numbers))) as clients:
        time.sleep(3)
        status = server.end()
    assert status == 0
    answered = [answer for answer in clients.answers if answer[0] is not None]
    # Whoever was refused with 503 was told so; nobody lost an answer that had begun: the log has no more than came.
    assert {status for status, _, _ in answered} <= {200, 503}
    logged = sum(entry["status"] == 200 for entry in server.log)
    assert logged == sum(status == 200 for status, _, _ in answered) > 20
    print(f"{logged} pictures were answered, all that were taken")


def test_signals_do_not_wait_for_idle_connections(serve):
    server = serve()
    connections = [server.connect() for _ in range(20)]
    for connection in connections:
        connection.connect()
    begun = time.monotonic()
    assert server.end() == 0
    assert time.monotonic() - begun < 3


def test_one_picture_is_drawn_once_however_many_ask(serve):
    server = serve("--workers", 2)
    path = personal(1) + "&date=2026-11-21T08:05:00Z&scale=8"
    together = threading.Barrier(12)
    bodies = []

    def ask():
        together.wait()
        bodies.append(server.ask(path).body)

    threads = [threading.Thread(target=ask) for _ in range(12)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(bodies) == 12 and len(set(bodies)) == 1
    assert server.metric("tavrin_pictures_drawn_total") == 1


def test_memory_stays(serve, request):
    """Under load of known and new pictures the memory in the end is that at first, within 5 %."""
    seconds = request.config.getoption("--soak")
    server = serve("--cache", "8MiB", "--time-limit", 30)
    numbers = itertools.count()

    def next_path():
        number = next(numbers)
        # Small pictures, so that there are many.
        return personal(number if number % 3 else number % 30) + "&scale=1"

    part = max(min(seconds / 10, 60), 2)
    with Clients(server, 8, next_path) as clients:
        fill_up(clients)
        first = mean_memory(server, part)
        time.sleep(max(seconds - 2 * part, 0))
        last = mean_memory(server, part)
    assert {status for status, _, _ in clients.answers} == {200}
    print(f"{len(clients.answers)} pictures, {first / 2**20:.1f} MiB at first, {last / 2**20:.1f} MiB in the end")
    assert last < first * 1.05


def fill_up(clients, enough=40_000, patience=60):
    """Until what threads keep of shaped texts and drawn glyphs is as much as it gets."""
    end = time.monotonic() + patience
    while len(clients.answers) < enough and time.monotonic() < end:
        time.sleep(0.5)


def mean_memory(server, seconds):
    samples = []
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        samples.append(server.resident_bytes())
        time.sleep(0.2)
    return sum(samples) / len(samples)
