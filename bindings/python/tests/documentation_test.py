# SPDX-License-Identifier: MIT
"""What documentation shows is so."""
import doctest
import pathlib
import re
import shutil

import pytest
import tavrin
import tavrin.arrow
import tavrin.shards

TOP = pathlib.Path(__file__).resolve().parents[3]
BLOCK = re.compile(r"^```(\w+)(?: (\S+))?\n(.*?)^```$", re.M | re.S)

MODULES = [tavrin, tavrin.arrow, tavrin.shards]


def examples():
    """The examples of the modules, and of all that they show."""
    for module in MODULES:
        finder = doctest.DocTestFinder(recurse=False)
        yield from finder.find(module, module.__name__, module=False)
        finder = doctest.DocTestFinder()
        for name in module.__all__:
            value = getattr(module, name)
            if callable(value):
                yield from finder.find(value, f"{module.__name__}.{name}", module=False, globs=dict(vars(module)))


@pytest.mark.parametrize("example", [test for test in examples() if test.examples], ids=lambda test: test.name)
def test_docstrings_do_what_they_say(example):
    report = []
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS)
    runner.run(example, out=report.append)
    assert not runner.failures, "".join(report)


def test_there_are_examples():
    shown = {test.name for test in examples() if test.examples}
    assert shown >= {"tavrin", "tavrin.Document", "tavrin.Document.widget", "tavrin.Widget.encode", "tavrin.check",
                     "tavrin.arrow", "tavrin.arrow.addresses", "tavrin.shards"}


@pytest.mark.parametrize("module", MODULES, ids=lambda module: module.__name__)
def test_all_that_is_public_has_a_docstring(module):
    for name in module.__all__:
        value = getattr(module, name)
        if not isinstance(value, str):
            assert value.__doc__, name
        for member, function in vars(value).items() if isinstance(value, type) else ():
            if not member.startswith("_") and callable(function):
                assert function.__doc__, f"{name}.{member}"


@pytest.mark.parametrize("page", ["docs/guide.md", "bindings/python/README.md"])
def test_the_code_of_pages_runs(tmp_path, monkeypatch, page):
    """Blocks that name a file are that file; those of Python run one after the other."""
    monkeypatch.chdir(tmp_path)
    shutil.copy(TOP / "examples/photo/pictures/4270d7c", "lake.jpg")
    names = {"__name__": page}
    ran = 0
    for language, name, text in BLOCK.findall((TOP / page).read_text(encoding="utf-8")):
        if name:
            pathlib.Path(name).write_text(text, encoding="utf-8")
        if language == "python":
            exec(compile(text, page, "exec"), names)
            ran += 1
    assert ran
