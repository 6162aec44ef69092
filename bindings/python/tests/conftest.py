# SPDX-License-Identifier: MIT
"""What tests share: the program to compare with, and examples."""
import os
import pathlib
import subprocess
import sys

import pytest

TOP = pathlib.Path(__file__).resolve().parents[3]
HELLO = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}'
TITLE = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.title}}"}}}'


class Program:
    """The program `tavrin`, which the package draws the same as."""

    def __init__(self, path):
        self.path = path

    def run(self, *words, folder=".", input=None):
        return subprocess.run([self.path, *words], cwd=folder, capture_output=True, input=input, check=False)

    def output(self, *words, folder="."):
        run = self.run(*words, folder=folder)
        assert run.returncode == 0, run.stderr.decode()
        return run.stdout


@pytest.fixture(scope="session")
def program():
    path = pathlib.Path(os.environ.get("TAVRIN_PROGRAM", TOP / "build/release/tavrin")).resolve()
    assert path.exists(), f"there is no {path}: `make build` makes it"
    return Program(path)


@pytest.fixture
def hello():
    return HELLO


@pytest.fixture
def title():
    return TITLE


@pytest.fixture(scope="session")
def agenda():
    """The text of a document and of its model, and options with which it always is the same picture."""
    folder = TOP / "examples/agenda"
    options = {"date": "2026-11-21T08:05:00Z", "time_zone": "UTC"}
    return (folder / "document.json").read_text(), (folder / "model.json").read_text(), options


@pytest.fixture
def script(tmp_path):
    """Runs Python in a process of its own and gives what it prints."""
    head = f"""
import os, resource, signal, sys, threading, time
import tavrin
HELLO = {HELLO!r}

def used():
    with open("/proc/self/statm") as file:
        return int(file.read().split()[0]) * resource.getpagesize()

def resident():
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * resource.getpagesize()
"""

    def run(text, *words):
        file = tmp_path / "script.py"
        file.write_text(head + text)
        finished = subprocess.run([sys.executable, "-W", "error", file, *words], capture_output=True, encoding="utf-8",
                                  timeout=120, check=False)
        assert finished.returncode == 0, finished.stderr
        return finished.stdout

    return run
