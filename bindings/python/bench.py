#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the package: what a call costs, what threads and batches gain, whether memory stays: bench.py [PICTURES]

PICTURES are drawn to see what memory does, by default 100,000. Times that are compared are measured by turns.
"""
import collections
import pathlib
import resource
import statistics
import sys
import threading
import time

sys.path.pop(0)  # where the sources of the package are, which is installed elsewhere
import pyarrow

import tavrin
import tavrin.arrow

EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples/agenda"
OPTIONS = {"date": "2026-11-21T08:05:00Z", "time_zone": "UTC", "rounded": True}


def models(count):
    """As many models, no two of them alike."""
    text = (EXAMPLE / "model.json").read_text()
    assert "Market with Ana" in text
    return (text.replace("Market with Ana", f"Market {number}") for number in range(count))


def seconds(work, times):
    begin = time.perf_counter()
    for _ in range(times):
        work()
    return (time.perf_counter() - begin) / times


def calls(document):
    model = (EXAMPLE / "model.json").read_text()
    widget = document.widget(model, **OPTIONS)
    text = (EXAMPLE / "document.json").read_text()
    other = iter(models(10**9))
    rows = {
        "Document(text)": lambda: tavrin.Document(text),
        "document.widget(model, …)": lambda: document.widget(model, **OPTIONS),
        'widget.encode("png"), the same again': lambda: widget.encode("png"),
        "another model, encoded": lambda: document.widget(next(other), **OPTIONS).encode("png"),
        "widget.pixels()": widget.pixels,
        "widget.tree()": widget.tree,
    }
    for name, work in rows.items():
        work()
        print(f"{name:40} {min(seconds(work, 50) for _ in range(5)) * 1e6:8.0f} µs")


def drawn_by(count, document, pictures):
    """How long warm threads take for so many pictures, each an equal part."""
    ready = threading.Barrier(count + 1)

    def draw():
        for number, model in enumerate(models(pictures // count + 20)):
            if number == 20:
                ready.wait()
            document.widget(model, **OPTIONS).encode("png", compression="small")

    threads = [threading.Thread(target=draw) for _ in range(count)]
    for thread in threads:
        thread.start()
    ready.wait()
    begin = time.perf_counter()
    for thread in threads:
        thread.join()
    return time.perf_counter() - begin


def gain(document):
    ratios = [drawn_by(1, document, 200) / drawn_by(2, document, 200) for _ in range(7)]
    print(f"two threads draw {statistics.median(ratios):.2f} times as much as one "
          f"({min(ratios):.2f} to {max(ratios):.2f} in seven runs)")


def batches(document):
    """The rows of a batch against the same models in a loop, which throws its pictures away or makes a column of them."""
    text = (EXAMPLE / "document.json").read_text()
    rows = list(models(1000))
    batch = pyarrow.record_batch({"model": rows})

    def pictures():
        return (document.widget(model, **OPTIONS).encode("png") for model in rows)

    ways = {
        "a loop": lambda: collections.deque(pictures(), maxlen=0),
        "a loop that keeps its pictures": lambda: pyarrow.array(pictures(), pyarrow.binary()),
        "a batch": lambda: tavrin.arrow.render(batch, document=text, **OPTIONS),
    }
    times = [{name: seconds(way, 1) for name, way in ways.items()} for _ in range(8)][1:]
    print(f"a batch draws {len(rows) / min(time['a batch'] for time in times):.0f} rows a second")
    for name in list(ways)[:-1]:
        ratios = [time[name] / time["a batch"] for time in times]
        print(f"that is {statistics.median(ratios):.2f} times as many as {name} "
              f"({min(ratios):.2f} to {max(ratios):.2f} in seven runs)")


def resident():
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * resource.getpagesize() / 2**20


def memory(document, pictures):
    for number, model in enumerate(models(pictures + 1)):
        widget = document.widget(model, size=(120, 60), scale=1, **OPTIONS)
        widget.encode(("png", "svg", "pdf")[number % 3])
        widget.pixels()
        if number in (pictures // 100, pictures // 10, pictures // 2, pictures):
            print(f"after {number:7} pictures {resident():6.1f} MiB")


def main():
    document = tavrin.Document.open(EXAMPLE / "document.json")
    calls(document)
    gain(document)
    batches(document)
    memory(document, int(sys.argv[1]) if len(sys.argv) > 1 else 100_000)


if __name__ == "__main__":
    main()
