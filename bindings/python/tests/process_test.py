# SPDX-License-Identifier: MIT
"""Threads, forks, memory, and calls that make no sense."""
import concurrent.futures
import copy
import pickle
import random
import threading

import pytest
import tavrin

HEAVY = """{"version": "1.0", "nodes": {"main": {"type": "zstack", "children": [
    {"type": "color", "value": "#102030"}, {"type": "text", "content": "Hello", "fontSize": 400}]}}}"""


def drawn(document, model, options):
    return document.widget(model, **options).encode()


def test_documents_pickle(agenda):
    text, model, options = agenda
    document = tavrin.Document(text, budget="strangers")
    for other in (pickle.loads(pickle.dumps(document)), copy.deepcopy(document)):
        assert isinstance(other, tavrin.Document)
        assert drawn(other, model, options) == drawn(document, model, options)
    with pytest.raises(TypeError):
        pickle.dumps(document.widget(model))


@pytest.mark.parametrize("method", ["spawn", "fork", "forkserver"])
def test_processes_draw_the_same(script, method):
    assert script("""
import concurrent.futures, multiprocessing

def drawn(document):
    return document.widget(date="2026-11-21T08:05:00Z").encode()

if __name__ == "__main__":
    document = tavrin.Document(HELLO)
    expected = drawn(document)  # in use before the fork
    with concurrent.futures.ProcessPoolExecutor(2, multiprocessing.get_context(sys.argv[1])) as pool:
        print(set(pool.map(drawn, [document] * 4)) == {expected})
""", method) == "True\n"


def test_threads_draw_the_same_at_once(agenda):
    text, model, options = agenda
    document = tavrin.Document(text)
    widget = document.widget(model, **options)
    expected = {format: widget.encode(format) for format in ("png", "svg", "pdf")}

    def work(number):
        format = ("png", "svg", "pdf")[number % 3]
        own = document.widget(model, **options).encode(format)
        return own == widget.encode(format) == expected[format] and widget.layout() == document.widget(
            model, **options).layout()

    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        assert all(pool.map(work, range(60)))


CALLS = {
    "Document": lambda document, widget: tavrin.Document(HEAVY + " " * (16 << 20)),
    "widget": lambda document, widget: document.widget('{"a": "' + "b" * (32 << 20) + '"}'),
    "encode": lambda document, widget: widget.encode("png"),
    "pixels": lambda document, widget: widget.pixels(),
    "check": lambda document, widget: tavrin.check(HEAVY + " " * (16 << 20)),
}


@pytest.mark.parametrize("call", CALLS.values(), ids=CALLS.keys())
def test_other_threads_run_meanwhile(call):
    document = tavrin.Document(HEAVY)
    widget = document.widget(size=(2000, 2000), scale=2)
    steps, ready, done = [], threading.Event(), threading.Event()

    def count():
        ready.set()
        while not done.is_set():
            steps.append(None)
            done.wait(0.0001)

    thread = threading.Thread(target=count)
    thread.start()
    ready.wait()
    before = len(steps)
    call(document, widget)
    during = len(steps) - before
    done.set()
    thread.join()
    assert during >= 3


def test_memory_stays_what_it_is(script):
    grown = script("""
document = tavrin.Document(HELLO)

def draw(count):
    for number in range(count):
        widget = document.widget({"n": number}, size=(60, 30), scale=1)
        widget.encode(("png", "svg", "pdf")[number % 3])
        widget.pixels()
        widget.tree(), widget.targets(), widget.valid_until
        try:
            document.widget("{" if number % 2 else None, scale=0)
        except (ValueError, tavrin.Error):
            pass
        if number % 10 == 0:
            tavrin.check(HELLO)
            tavrin.Document(HELLO)

draw(500)
before = resident()
draw(2000)
print(resident() - before)
""")
    assert int(grown) < 3 << 20


@pytest.mark.filterwarnings("ignore:nanobind. attempted to access an uninitialized instance")
@pytest.mark.filterwarnings("ignore::pytest.PytestUnraisableExceptionWarning")
def test_senseless_calls_raise_and_nothing_else():
    """What is raised for what makes no sense is an Exception, and the process goes on."""
    dice = random.Random(20261121)
    text = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a}}"}}}'
    names = [*tavrin.Options.__annotations__, "other", "", "budget_"]
    values = [None, True, -1, 0, 1, 2**63, 2**64, 10**400, 1.5, float("nan"), float("-inf"), "", "x", "1x1", "\0", "\ud800",
              b"", b"\xff", "png", "systemSmall", "light", (), (1, 1), (1, "x"), [1, 2], {}, {"steps": 5}, {1: 2}, object(),
              int, "strangers", text, text.encode(), '{"a": 1}', {"a": "b"}, "é" * 1000, "[" * 5000, {"a": [[]]}, range(3)]
    widget = tavrin.Document(text).widget('{"a": "x"}', size=(20, 20))

    def options():
        return {dice.choice(names): dice.choice(values) for _ in range(dice.randrange(3))} | {"size": (9, 9)}

    calls = [
        lambda: tavrin.Document(dice.choice(values), budget=dice.choice(values)),
        lambda: tavrin.Document(text).widget(dice.choice(values), **options()).encode(),
        lambda: tavrin.Document(text).widget(*dice.choices(values, k=dice.randrange(3))),
        lambda: widget.encode(dice.choice(values), compression=dice.choice(values), quality=dice.choice(values)),
        lambda: widget.explain(dice.choice(values)),
        lambda: tavrin.check(dice.choice(values), dice.choice(values), dice.choice(values), **options()),
        lambda: tavrin.Widget(dice.choice(values)).encode(),
        lambda: tavrin._tavrin.Widget(),
        lambda: tavrin._tavrin.Document.__new__(tavrin._tavrin.Document).text(),
        lambda: tavrin._tavrin.Pixels.__new__(tavrin._tavrin.Pixels).shape,
        lambda: memoryview(tavrin._tavrin.Pixels.__new__(tavrin._tavrin.Pixels)),
        lambda: tavrin._tavrin.open_document(dice.choice(values), dice.choice(values)),
        lambda: tavrin._tavrin.check(*dice.choices(values, k=4)),
    ]
    raised = 0
    for _ in range(1000):
        try:
            dice.choice(calls)()
        except Exception:
            raised += 1
    assert raised > 500
    assert widget.encode()[:4] == b"\x89PNG"


def test_a_fork_before_the_first_use_draws(script):
    assert script("""
if os.fork() == 0:
    print(tavrin.Document(HELLO).widget().encode()[1:4], flush=True)
    os._exit(0)
os.wait()
""") == "b'PNG'\n"


SERVER = """
import http.server

RED = tavrin.Document('{"version": "1.0", "nodes": {"main": {"type": "color", "value": "#FF0000"}}}').widget(
    size=(8, 8), scale=1).encode()

class Pictures(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.send_response(200)
        self.send_header("Content-Length", str(len(RED)))
        self.end_headers()
        self.wfile.write(RED)

    def log_message(self, *_):
        pass

server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pictures)
threading.Thread(target=server.serve_forever, daemon=True).start()

def pixel(name):
    url = f"http://127.0.0.1:{server.server_port}/{name}"
    text = '{"version": "1.0", "nodes": {"main": {"type": "webImage", "url": "%s"}}}' % url
    pixels = tavrin.Document(text).widget(size=(8, 8), scale=1, fetch="all").pixels()
    return bytes(pixels)[4 * 36:4 * 37]
"""


def test_pictures_are_fetched_after_a_fork(script):
    red = "b'\\xff\\x00\\x00\\xff'\n"
    assert script(SERVER + """
print(pixel("parent"), flush=True)
if os.fork() == 0:
    print(pixel("parent"), flush=True)
    print(pixel("child"), flush=True)
    sys.exit()
os.wait()
print(pixel("later"))
""") == red * 4


def test_a_fork_amid_another_thread_s_call_is_refused_clearly(script):
    """Whether a thread is in a call at that moment is luck, which is tried until it is so."""
    assert script("""
widget = tavrin.Document(HELLO).widget(size=(4000, 4000), scale=1)
stopped = threading.Event()

def draw():
    while not stopped.is_set():
        widget.pixels()

def outcome_in_child():
    if child := os.fork():
        return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
    try:
        tavrin.Document(HELLO).widget().encode()
        os._exit(0)
    except tavrin.TavrinError as error:
        os._exit(7 if error.kind == "Program" and "forked while another thread" in str(error) else 8)

thread = threading.Thread(target=draw)
thread.start()
outcomes = set()
while 7 not in outcomes and outcomes <= {0}:
    time.sleep(0.01)
    outcomes.add(outcome_in_child())
stopped.set()
thread.join()
print(7 in outcomes, outcome_in_child())
""") == "True 0\n"
