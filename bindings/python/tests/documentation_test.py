# SPDX-License-Identifier: MIT
"""What documentation shows is so."""
import doctest
import json
import pathlib
import re
import shutil
from datetime import datetime, timezone

import pyarrow
import pyarrow.parquet
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


def of_guide():
    shutil.copy(TOP / "examples/photo/pictures/4270d7c", "lake.jpg")
    return {}


def of_readme():
    shutil.copy(TOP / "examples/agenda/document.json", "agenda.json")
    model = (TOP / "examples/agenda/model.json").read_text(encoding="utf-8")
    return {
        "people": [json.loads(model) | {"id": name} for name in ("ana", "ben")],
        "batch": pyarrow.record_batch({"model": [model], "family": ["systemLarge"]}),
        "text": pathlib.Path("agenda.json").read_text(encoding="utf-8"),
    }


def of_night():
    """Pictures as a night leaves them."""
    title = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.title}}"}}}'
    batch = pyarrow.record_batch({"id": ["ana", "ben"], "model": ['{"title": "Ana"}', "{}"]})
    drawn = tavrin.arrow.render(batch, document=title, date="2026-11-21T03:00:00Z")
    pathlib.Path("pictures").mkdir()
    pyarrow.parquet.write_table(pyarrow.Table.from_batches([drawn]), "pictures/people.parquet")
    return {}


PAGES = [
    ("docs/guide.md", of_guide, ["hello.png", "thumbnail.png", "saturday.png", "shards/manifest.json"], ""),
    ("bindings/python/README.md", dict, ["Ana.png", "Ben.png"], ""),
    ("README.md", of_readme, ["ana.png", "ben.png"], ""),
    ("docs/serving.md", lambda: {"tavrin": tavrin, "key": "secret", "datetime": datetime, "timezone": timezone}, [], ""),
    ("examples/nightly/README.md", of_night, [], r"2 rows\nben key path not found in model: \[.title.\]\n"),
]


@pytest.mark.parametrize(("page", "given", "made", "said"), PAGES, ids=[page for page, *_ in PAGES])
def test_the_code_of_pages_runs(tmp_path, monkeypatch, capsys, page, given, made, said):
    """Blocks that name a file are that file; those of Python run one after the other, with the names that are given."""
    monkeypatch.chdir(tmp_path)
    names = {"__name__": page, **given()}
    ran = 0
    for language, name, text in BLOCK.findall((TOP / page).read_text(encoding="utf-8")):
        if name:
            pathlib.Path(name).write_text(text, encoding="utf-8")
        if language == "python":
            exec(compile(text, page, "exec"), names)
            ran += 1
    assert ran
    for file in made:
        assert pathlib.Path(file).stat().st_size > 0
    assert re.search(said, capsys.readouterr().out)
