# SPDX-License-Identifier: MIT
import itertools
import pathlib

import pytest
from live_server import TOP, LiveServer, widget_folder


def pytest_addoption(parser):
    parser.addoption("--program", type=pathlib.Path, default=TOP / "build/release/tavrin", help="the program to test")
    parser.addoption("--soak", type=float, default=20, help="how many seconds the server is under load for its memory")
    parser.addoption("--fuzz", type=int, default=30, help="how many seconds requests are made up for")


@pytest.fixture
def program(request):
    return request.config.getoption("--program")


@pytest.fixture
def folder(tmp_path):
    return widget_folder(tmp_path / "widgets")


@pytest.fixture
def serve(program, folder):
    """Starts servers with options; all end with the test."""
    running = []

    def start(*words):
        running.append(LiveServer(program, folder, *words))
        return running[-1]

    yield start
    for server in running:
        server.__exit__()


@pytest.fixture
def numbers():
    return itertools.count()
