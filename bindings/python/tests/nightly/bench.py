#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures drawing on Ray and Spark on this machine: bench.py [ROWS [ENGINE...]]

ROWS, by default 100,000, at least 4,000, are drawn by each ENGINE (ray, spark): the agenda, medium, three pixels for each point, the
texts of its events another for every row. What single processes draw is measured first, and once more in the end.
"""
import functools
import multiprocessing
import pathlib
import re
import statistics
import sys
import tempfile
import threading
import time

import engines
import pyarrow
import pyarrow.dataset
import pyarrow.parquet

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[4] / "examples/nightly"))
import make_models

DOCUMENT = (pathlib.Path(make_models.__file__).parents[1] / "agenda/document.json").read_text()
DRAWING = {"document": DOCUMENT, "date": "2026-11-21T03:00:00Z", "time_zone": "UTC", "rounded": True}
WARM = 256


def rows_in_a_loop(rows, **options):
    """Rows that one process draws in a second, each by a call, and the bytes of a picture."""
    import tavrin

    document = tavrin.Document(DOCUMENT)
    asked = {name: value for name, value in DRAWING.items() if name != "document"} | options
    models = make_models.people(0, rows + WARM)["model"].to_pylist()
    count = 0
    for number, model in enumerate(models):
        if number == WARM:
            begin = time.perf_counter()
        count += len(document.widget(model, **asked).encode())
    return rows / (time.perf_counter() - begin), count / len(models)


def rows_in_batches(ready, rows):
    """The same by `tavrin.arrow.render`, from the moment at which all processes are ready."""
    import tavrin.arrow

    [batch] = make_models.people(0, rows + WARM).combine_chunks().to_batches()
    tavrin.arrow.render(batch.slice(rows), **DRAWING)
    ready.wait()
    begin = time.perf_counter()
    for start in range(0, rows, WARM):
        tavrin.arrow.render(batch.slice(start, min(WARM, rows - start)), **DRAWING)
    return rows / (time.perf_counter() - begin)


def fresh(count, work, *arguments):
    """What new processes give that do the same at the same time."""
    with multiprocessing.get_context("spawn").Pool(count) as pool:
        return pool.starmap(work, [arguments] * count, chunksize=1)


class Resident(threading.Thread):
    """What memory of their own workers have, again and again."""

    def __init__(self, engine):
        super().__init__(daemon=True)
        self.engine, self.ended, self.samples = engine, threading.Event(), {}
        self.start()

    def run(self):
        while not self.ended.wait(0.2):
            for worker in self.engine.workers():
                try:
                    status = pathlib.Path(f"/proc/{worker}/status").read_text()
                except (FileNotFoundError, ProcessLookupError):
                    continue
                if found := re.search(r"RssAnon:\s+(\d+) kB", status):
                    self.samples.setdefault(worker, []).append((time.monotonic(), int(found[1]) / 1024))

    def tenths(self, begin):
        """The most that each worker had in the first and in the last tenth of the time from a moment on."""
        self.ended.set()
        self.join()
        for seen in self.samples.values():
            samples = [memory for moment, memory in seen if moment >= begin]
            if len(samples) >= 50:
                tenth = len(samples) // 10
                yield max(samples[:tenth]), max(samples[-tenth:])


def ready_made(batches, picture):
    """Rows with a picture that is not drawn: what is left is what the engine costs."""
    for batch in batches:
        for start in range(0, batch.num_rows, 256):
            piece = batch.slice(start, 256)
            yield piece.append_column("picture", pyarrow.array([picture] * piece.num_rows, pyarrow.binary()))


def rate(finished):
    """Rows in a second from the first finished batch on; what is finished is moments and rows."""
    (first, before), *rest = finished
    return sum(rows for _, rows in rest) / (rest[-1][0] - first)


def measure(kind, folder, rows, single, picture):
    begin = time.monotonic()
    engine = kind()
    try:
        started = time.monotonic() - begin
        resident = Resident(engine)
        finished = list(engine.finished(engine.render(engine.read(folder), **DRAWING)))
        print(f"{kind.name}: started in {started:.1f} s, first batch {finished[0][0] - begin - started:.1f} s later")
        drawn = rate(finished)
        assert sum(count for _, count in finished) == rows
        print(f"{kind.name}: {drawn:.0f} rows/s, {drawn / single / engines.WORKERS:.2f} of {engines.WORKERS} single loops")
        for first, last in resident.tenths(finished[0][0]):
            print(f"{kind.name}: a worker's memory {first:.1f} MiB, in the end {last:.1f} MiB ({last / first - 1:+.1%})")
        moved = rate(list(engine.finished(engine.map(engine.read(folder), functools.partial(ready_made, picture=picture)))))
        print(f"{kind.name}: {engines.WORKERS / moved * 1e6:.0f} µs of a core for a row and a ready picture that is not drawn")
        out = engine.folder / "shards"
        begin = time.monotonic()
        writing = threading.Thread(target=engine.each, args=(functools.partial(write_shards, out=out),
                                                             sorted(folder.glob("*.parquet"))))
        writing.start()
        engines.wait_for("a shard", lambda: next(out.glob("*/*-*.tar"), None), 600)
        print(f"{kind.name}: the first shard of 1000 rows after {time.monotonic() - begin:.1f} s")
        writing.join()
        shards = [file.stat().st_size for file in out.glob("*/*-*.tar")]
        print(f"{kind.name}: {len(shards)} shards, {sum(shards) / rows:.0f} bytes a row, in {time.monotonic() - begin:.1f} s")
    finally:
        engine.stop()


def write_shards(file, out):
    import tavrin.shards

    tavrin.shards.write(pyarrow.parquet.ParquetFile(file).iter_batches(), out / file.stem, rows=1000, **DRAWING)


def main():
    sys.stdout.reconfigure(line_buffering=True)
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 100_000
    if rows < 4000:
        sys.exit("bench.py: fewer than 4000 rows are drawn before there is anything to measure")
    names = sys.argv[2:] or ["ray", "spark"]
    manager = multiprocessing.Manager()
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        size = max(1000, min(10_000, rows // 8))
        for first in range(0, rows, size):
            pyarrow.parquet.write_table(make_models.people(first, min(size, rows - first)), folder / f"{first:09}.parquet")
        few = min(rows, 5000)
        single, size = fresh(1, rows_in_a_loop, few)[0]
        print(f"one process, a call for each row: {single:.0f} rows/s, {size:.0f} bytes a picture")
        for compression in ("balanced", "small"):
            slower, less = fresh(1, functools.partial(rows_in_a_loop, compression=compression), max(few // 10, 100))[0]
            print(f"  compression={compression}: {slower:.0f} rows/s, {less:.0f} bytes a picture")
        for count in (1, engines.WORKERS):
            together = sum(fresh(count, rows_in_batches, manager.Barrier(count), few))
            print(f"{count} by batches: {together:.0f} rows/s, {together / single / count:.2f} of {count} single loops")
        for kind in (engines.Ray, engines.Spark):
            if kind.name in names:
                measure(kind, folder, rows, single, b"\x89PNG".ljust(round(size), b"x"))
        again, _ = fresh(1, rows_in_a_loop, few)[0]
        print(f"one process again: {again:.0f} rows/s")


if __name__ == "__main__":
    main()
