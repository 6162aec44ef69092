# SPDX-License-Identifier: MIT
"""Errors have what the program prints of them."""
import json
import pickle

import pytest
import tavrin


def document(main):
    return json.dumps({"version": "1.0", "nodes": {"main": main}})


TABLE = {
    "no JSON": ("{", None, {}),
    "an empty text": ("", None, {}),
    "no main node": ('{"version": "1.0", "nodes": {}}', None, {}),
    "another version": ('{"version": "9.0", "nodes": {}}', None, {}),
    "no version": ('{\n"nodes": {}}', None, {}),
    "an unknown type": (document({"type": "txt"}), None, {}),
    "a missing key": (document({"type": "text"}), None, {}),
    "another type": (document({"type": "text", "content": {}}), None, {}),
    "a null": (document({"type": "text", "content": None}), None, {}),
    "an index in the path": (document({"type": "vstack", "children": [{"type": 7}]}), None, {}),
    "characters, not bytes": ('{"é": 1, "version": 5}', None, {}),
    "a number that is none": (
        document({"type": "text", "content": "a", "modifiers": [{"type": "padding", "length": "wide"}]}), None, {}),
    "a model that is no JSON": (document({"type": "text", "content": "{{initServerParam.a}}"}), '{"a" 1}', {}),
    "an expression that leads nowhere": (document({"type": "text", "content": "{{initServerParam.a}}"}), "{}", {}),
    "an expression inside out": (document({"type": "text", "content": "{{initServerParam.a]b[0}}"}), '{"a": 1}', {}),
    "a picture that is too large": (document({"type": "text", "content": "a"}), None, {"size": "20000x20000"}),
    "a budget that is too small": (document({"type": "text", "content": "a"}), None, {"budget_steps": 2}),
}


@pytest.mark.parametrize("text, model, options", TABLE.values(), ids=TABLE.keys())
def test_errors_are_the_program_s(program, tmp_path, text, model, options):
    (tmp_path / "document.json").write_text(text)
    words = [word for name, value in options.items() for word in ("--" + name.replace("_", "-"), str(value))]
    if model is not None:
        (tmp_path / "model.json").write_text(model)
        words += ["--model", "model.json"]
    run = program.run("render", "document.json", "-o", "out.png", "--errors", "json", *words, folder=tmp_path)
    assert run.returncode == 1
    printed = json.loads(run.stderr)["error"]

    with pytest.raises(tavrin.Error) as caught:
        tavrin.Document(text).widget(model, **options).encode()
    error = caught.value
    file = printed.pop("file", None)
    assert type(error).__name__ == error.type == printed.pop("type")
    assert type(error).__mro__[1] is tavrin.Error
    assert str(error) == error.message == printed.pop("message")
    assert error.path == printed.pop("codingPath", None)
    for member in ("kind", "key", "domain", "code", "line", "column"):
        assert getattr(error, member) == printed.pop(member, None), member
    assert not printed
    if file:
        assert error.role == file.removesuffix(".json")


def test_the_table_has_every_type():
    raised = set()
    for text, model, options in TABLE.values():
        with pytest.raises(tavrin.Error) as caught:
            tavrin.Document(text).widget(model, **options).encode()
        raised.add(type(caught.value))
    assert raised == {tavrin.DecodingError, tavrin.ConversionError, tavrin.ModelContextError, tavrin.TavrinError}


def test_a_traceback_says_where():
    with pytest.raises(tavrin.DecodingError) as caught:
        tavrin.Document('{\n"nodes": 5}')
    assert caught.value.__notes__ == [f"line {caught.value.line}, column {caught.value.column} of the document"]


def test_errors_pickle():
    with pytest.raises(tavrin.Error) as caught:
        tavrin.Document('{\n"nodes": 5}')
    error = caught.value
    copy = pickle.loads(pickle.dumps(error))
    assert type(copy) is type(error) and copy.args == error.args and vars(copy) == vars(error)


def test_explain_refuses_a_path_that_is_not_drawn(hello):
    with pytest.raises(tavrin.TavrinError, match="nothing at nodes.other") as caught:
        tavrin.Document(hello).widget().explain("nodes.other")
    assert caught.value.kind == "Explain"


def test_too_little_memory_is_a_memory_error(script):
    out = script("""
document = tavrin.Document(HELLO)
widget = document.widget(size=(9000, 9000), scale=1)
document.widget().encode()
resource.setrlimit(resource.RLIMIT_AS, (used() + (100 << 20),) * 2)
try:
    widget.pixels()
except MemoryError:
    print("MemoryError")
document.widget().encode()
""")
    assert out == "MemoryError\n"
