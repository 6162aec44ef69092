#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws one scene by turns with Tavrin, Takumi and Satori, and compares them: compare.py BUILD OUT

What comes of it: a table on standard output, and in the folder OUT the same as Markdown and as JSON, the pictures, and
one with the pictures below each other. The machine's speed varies, so everybody has a turn in every round; a ratio to
Takumi is that of one round, and what is reported are medians of all rounds.
"""
import datetime
import json
import operator
import os
import pathlib
import statistics
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
TOP = HERE.parent.parent
REFERENCE = "takumi"
NAMES = {"tavrin": "Tavrin", "next": "Tavrin, next picture", "small": "Tavrin, small PNG", "takumi": "Takumi", "satori": "Satori, resvg"}
PICTURES = {"tavrin": 10, "next": 20, "small": 5, "takumi": 10, "satori": 3}  # drawn in one turn
DRAWN_ONCE = [name for name in NAMES if name != "next"]  # a next picture follows another in one process
WARM_UP_TURNS = 5
ROUNDS = 25


class Drawer:
    """A warm process that draws as many pictures as it is asked for, on the cores that are given."""

    def __init__(self, name, command, cores):
        self.name = name
        self.process = subprocess.Popen(["taskset", "-c", ",".join(map(str, cores)), *command], text=True, bufsize=1,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def draw(self):
        """Milliseconds for a picture, on the clock and of the processor."""
        self.process.stdin.write(f"{PICTURES[self.name]}\n")
        answer = json.loads(self.process.stdout.readline())
        return statistics.median(answer["clock"]), statistics.median(answer["processor"])

    def end(self):
        self.process.stdin.close()
        if self.process.wait() != 0:
            sys.exit(f"{self.name} failed")


def by_turns(measures):
    """What each function returned in each round, as a list for each of the figures it returns."""
    rounds = [{name: measure() for name, measure in measures.items()} for _ in range(ROUNDS)]
    return {name: list(zip(*(values[name] for values in rounds))) for name in measures}


def warm(commands, cores):
    """Milliseconds for a picture in each round, on the clock and of the processor."""
    drawers = [Drawer(name, command, cores) for name, command in commands.items()]
    for drawer in drawers:
        for _ in range(WARM_UP_TURNS):
            drawer.draw()
    times = by_turns({drawer.name: drawer.draw for drawer in drawers})
    for drawer in drawers:
        drawer.end()
    return times


def process_cost(command):
    """Milliseconds and MiB of one process from its start to its end."""
    start = datetime.datetime.now()
    _, status, usage = os.wait4(os.posix_spawnp(command[0], command, os.environ), 0)
    if status != 0:
        sys.exit(f"{' '.join(command)} failed")
    return (datetime.datetime.now() - start).total_seconds() * 1000, usage.ru_maxrss / 1024


def figures(columns):
    """The median of each column, and that of its ratios to the reference."""
    return {name: {"value": statistics.median(values),
                   "ratio": statistics.median(map(operator.truediv, values, columns[REFERENCE]))}
            for name, values in columns.items()}


def rows(names, unit, measured):
    return {name: (unit, figures({who: lists[i] for who, lists in measured.items()})) for i, name in enumerate(names)}


def measure(build, out):
    picture = {name: str(out / f"{name}.png") for name in DRAWN_ONCE}
    render = [str(build / "tavrin"), "render", str(HERE / "document.json"), "--model", str(HERE / "model.json"),
              "--image-cache-dir", str(TOP / "examples/weather/pictures"), "--offline", "--background", "none"]
    once = {"tavrin": [*render, "-o", picture["tavrin"]],
            "small": [*render, "--compression", "small", "-o", picture["small"]]}
    bench = str(build / "bench/tavrin_peer_bench")
    serving = {"tavrin": [bench], "next": [bench, "next"], "small": [bench, "small"]}
    for peer in ("takumi", "satori"):
        serving[peer] = ["node", str(HERE / "draw.mjs"), peer]
        once[peer] = [*serving[peer], picture[peer]]

    cores = sorted(os.sched_getaffinity(0))
    results = rows(["warm picture, 1 core", "its processor time"], "ms", warm(serving, cores[-1:]))
    if len(cores) > 1:
        results |= rows(["warm picture, 2 cores"], "ms", warm(serving, cores[-2:]))
    together = subprocess.check_output(["node", HERE / "in_process.mjs", str(ROUNDS)])
    results |= rows(["in one Node process"], "ms", json.loads(together))
    costs = by_turns({name: lambda command=command: process_cost(command) for name, command in once.items()})
    results |= rows(["whole process"], "ms", costs)
    results |= rows(["its peak memory"], "MiB", {name: lists[1:] for name, lists in costs.items()})
    return results | rows(["PNG"], "kB", {name: [[os.path.getsize(file) / 1000]] for name, file in picture.items()})


def table(results):
    lines = ["| " + " | ".join(["", *NAMES.values()]) + " |", "| --- " * (len(NAMES) + 1) + "|"]
    for row, (unit, columns) in results.items():
        cells = [f"{columns[name]['value']:.3g} {unit} ({columns[name]['ratio']:.2f})" if name in columns else ""
                 for name in NAMES]
        lines.append("| " + " | ".join([row, *cells]) + " |")
    return "\n".join(lines) + "\n"


def main():
    build, out = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    out.mkdir(parents=True, exist_ok=True)
    results = measure(build, out)
    text = f"{datetime.date.today()}; in brackets: the ratio to Takumi\n\n{table(results)}"
    (out / "results.md").write_text(text)
    plain = {row: {"unit": unit, **columns} for row, (unit, columns) in results.items()}
    (out / "results.json").write_text(json.dumps(plain, indent=2) + "\n")
    print(text)
    # In a process of its own, since a child's peak memory counts what its parent had when it was started.
    subprocess.run([HERE / "side_by_side.py", out, *DRAWN_ONCE], check=True)


if __name__ == "__main__":
    main()
