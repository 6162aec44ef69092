# SPDX-License-Identifier: MIT
"""Widgets answer what the program prints, byte for byte."""
import json
import pathlib
import tomllib

import pytest
import tavrin

EXAMPLES = sorted((pathlib.Path(__file__).resolve().parents[3] / "examples").glob("*/document.json"))


def settings_of(folder):
    """The families of an example, and its other settings as Python takes them."""
    settings = tomllib.loads((folder / "widget.toml").read_text())
    options = {name.replace("-", "_"): value for name, value in settings.items() if name != "families"}
    if (folder / "pictures").exists():
        options["image_cache_dir"] = "pictures"
    return settings["families"], options


@pytest.mark.parametrize("document", EXAMPLES, ids=lambda path: path.parent.name)
@pytest.mark.parametrize(
    "format, appearance, rounded",
    [("png", "light", True), ("png", "dark", False), ("svg", "light", False), ("pdf", "dark", True)],
)
def test_examples_are_the_bytes_that_the_program_writes(program, tmp_path, monkeypatch, document, format, appearance,
                                                        rounded):
    folder = document.parent
    monkeypatch.chdir(folder)
    model = folder / "model.json"
    families, options = settings_of(folder)
    for family in families:
        picture = tmp_path / f"{family}.{format}"
        words = ["--family", family, "--appearance", appearance, "--scale", "2", *["--rounded"][:rounded]]
        widget = tavrin.Document.open(document).widget(
            model.read_bytes() if model.exists() else None,
            **options, family=family, appearance=appearance, scale=2, rounded=rounded)
        program.output("render", document, *words, "-o", picture, folder=folder)
        assert widget.encode(format) == picture.read_bytes(), family


@pytest.mark.parametrize("verb", ["tree", "layout", "targets"])
def test_what_a_widget_says_is_what_the_program_prints(program, tmp_path, agenda, verb):
    text, model, options = agenda
    (tmp_path / "document.json").write_text(text)
    (tmp_path / "model.json").write_text(model)
    words = ["--model", "model.json", "--date", options["date"], "--time-zone", options["time_zone"]]
    printed = program.output(verb, "document.json", *words, folder=tmp_path)
    assert getattr(tavrin.Document(text).widget(model, **options), verb)() == json.loads(printed)


@pytest.mark.parametrize("path", [None, "nodes.main"])
def test_explanations_are_the_program_s(program, tmp_path, agenda, path):
    text, model, options = agenda
    (tmp_path / "document.json").write_text(text)
    (tmp_path / "model.json").write_text(model)
    words = ["--model", "model.json", "--date", options["date"], "--time-zone", options["time_zone"]]
    printed = program.output("explain", "document.json", *[path][:path is not None], *words, folder=tmp_path)
    assert tavrin.Document(text).widget(model, **options).explain(path) == printed.decode()


@pytest.mark.parametrize("as_model", [str, str.encode, json.loads, lambda text: [json.loads(text)][0]])
def test_a_model_is_a_text_or_what_json_says(agenda, as_model):
    text, model, options = agenda
    document = tavrin.Document(text.encode())
    expected = tavrin.Document(text).widget(model, **options).encode()
    assert document.widget(as_model(model), **options).encode() == expected


def test_what_encode_is_given_wins(hello):
    widget = tavrin.Document(hello).widget(format="svg", compression="small")
    assert widget.encode().startswith(b"<?xml")
    assert widget.encode("png")[:4] == b"\x89PNG"
    fast = widget.encode("png", compression="fast")
    assert len(widget.encode("png")) < len(fast)
    assert widget.encode(format="png", compression="small") == widget.encode("png")


def test_a_document_opens_from_a_file(tmp_path, hello):
    file = tmp_path / "hello.json"
    file.write_text(hello)
    assert tavrin.Document.open(file).widget().tree() == tavrin.Document(hello).widget().tree()
    assert tavrin.Document.open(str(file)).widget().tree() == tavrin.Document(hello).widget().tree()
    with pytest.raises(FileNotFoundError):
        tavrin.Document.open(tmp_path / "none.json")


def test_notebooks_show_the_picture(hello):
    widget = tavrin.Document(hello).widget(format="pdf")
    assert widget._repr_png_() == widget.encode("png")


def test_what_they_are_called_is_short(hello):
    document = tavrin.Document(hello)
    assert repr(document) == f"<tavrin.Document of {len(hello)} bytes>"
    assert repr(document.widget(family="systemLarge")) == "<tavrin.Widget systemLarge>"
    assert tavrin.Document.__module__ == tavrin.Error.__module__ == tavrin.Pixels.__module__ == "tavrin"


def test_schema_and_version_are_the_program_s(program):
    assert tavrin.schema() == json.loads(program.output("schema"))
    assert tavrin.__version__ in program.output("--version").decode()
