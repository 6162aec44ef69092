# SPDX-License-Identifier: MIT
"""`check` finds what the program's `check` prints."""
import dataclasses
import json

import pytest
import tavrin

CLIPPED = json.dumps({"version": "1.0", "nodes": {"main": {"type": "text", "content": "A long sentence " * 30}}})
MISSPELT = json.dumps({"version": "1.0", "nodes": {"main": {"type": "text", "content": "a", "fontSzie": 12}}})
TABLE = {
    "nothing": ('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "a"}}}', None),
    "refused": ('{"version": "1.0", "nodes": {"main": {"type": "txt"}}}', None),
    "no JSON": ("{", None),
    "misspelt": (MISSPELT, None),
    "clipped": (CLIPPED, None),
    "its model": ('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a}}"}}}', '{"b": 1}'),
    "a model that is no JSON": (
        '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a}}"}}}', "{"),
}


def camel(name):
    head, *tail = name.split("_")
    return head + "".join(word.capitalize() for word in tail)


def members(value):
    """A dataclass as the program writes it."""
    if dataclasses.is_dataclass(value):
        return {camel(field.name): members(getattr(value, field.name)) for field in dataclasses.fields(value)}
    return [members(element) for element in value] if isinstance(value, list) else value


def as_printed(found):
    """A diagnostic in the program's words."""
    written = members(found)
    edits = [{**edit["range"], "text": edit["text"]} for edit in written.pop("fix")]
    if written["range"] is None:
        del written["range"]
    return {**written, **({"fix": edits} if edits else {})}


@pytest.mark.parametrize("families", [[], ["systemSmall", "systemLarge"]], ids=len)
@pytest.mark.parametrize("text, model", TABLE.values(), ids=TABLE.keys())
def test_it_finds_what_the_program_finds(program, tmp_path, text, model, families):
    (tmp_path / "document.json").write_text(text)
    words = ["--families", ",".join(families)] if families else []
    if model is not None:
        (tmp_path / "model.json").write_text(model)
        words += ["--model", "model.json"]
    run = program.run("check", "document.json", "--format", "json", "--notes", *words, folder=tmp_path)
    [printed] = json.loads(run.stdout)["documents"]
    assert [as_printed(one) for one in tavrin.check(text, model, families)] == printed["diagnostics"]


def test_diagnostics_are_values():
    first, second = (tavrin.check(MISSPELT)[0] for _ in range(2))
    assert first == second and hash(first) == hash(second)
    assert isinstance(first.range, tavrin.Range) and first.path[:2] == ["nodes", "main"]
    with pytest.raises(dataclasses.FrozenInstanceError):
        first.code = "other"


def test_a_fix_mends_the_document():
    text = MISSPELT
    [found] = [one for one in tavrin.check(text) if one.fix]
    for edit in reversed(found.fix):
        text = text[:edit.range.offset] + edit.text + text[edit.range.end_offset:]
    assert not tavrin.check(text)


def test_families_may_come_one_by_one():
    with pytest.raises(ValueError, match="nope"):
        tavrin.check("{}", families=(name for name in ["nope"]))


def test_a_folder_without_fonts_is_an_error_of_the_library():
    for ask in (lambda: tavrin.check("{}", font_dir="/nowhere"),
                lambda: tavrin.Document(TABLE["nothing"][0]).widget(font_dir="/nowhere")):
        with pytest.raises(tavrin.TavrinError, match="/nowhere") as caught:
            ask()
        assert caught.value.kind == "Font"


def test_a_path_to_explain_is_a_text():
    with pytest.raises(TypeError, match="path"):
        tavrin.Document(TABLE["nothing"][0]).widget().explain(5)
