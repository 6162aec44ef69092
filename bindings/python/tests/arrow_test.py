# SPDX-License-Identifier: MIT
"""Rows of record batches are drawn as single calls and the program draw them."""
import base64
import concurrent.futures
import hashlib
import json
import random
import signal
import time
from datetime import datetime, timezone
from zoneinfo import ZoneInfo

import pyarrow as pa
import pytest
import tavrin
import tavrin.arrow
from tavrin import _tavrin

DATE = {"date": "2026-11-21T08:05:00Z"}
FONTS = "/usr/share/fonts/opentype/inter"
HAND = """{"version": "1.1", "nodes": {"main": {"type": "color", "value": "#FF0000", "modifiers": [
    {"type": "frame", "width": 8, "height": 80}, {"type": "clockHandRotationEffect", "period": 43200}]}}}"""
COUNTDOWN = """{"version": "1.0", "nodes": {"main": {"type": "timer", "timestamp": "{{initServerParam.end}}"}}}"""


def texts(count):
    """As many models, no two of them alike; the first is shorter than the others."""
    return ['{"title":""}', *(json.dumps({"title": f"Market {number} é"}) for number in range(1, count))]


def single(text, model, **options):
    return tavrin.Document(text).widget(model, **{"time_zone": "UTC"} | options).encode()


def pictures(batch):
    return batch["picture"].to_pylist()


def answers(program, lines):
    """What the program answers to requests of one line each."""
    run = program.run("render", "--jsonl", "--time-zone", "UTC", "--fetch", "public",
                      input="".join(json.dumps(line) + "\n" for line in lines).encode())
    parsed = [json.loads(line) for line in run.stdout.splitlines()]
    assert len(parsed) == len(lines), run.stderr
    return parsed


def test_rows_are_single_calls_and_the_program_s(program, agenda):
    document, model, _ = agenda
    looks = [{"family": "systemSmall", "appearance": "dark"}, {"scale": 2.0, "rounded": True}, {"family": "systemLarge"}]
    looks = [look | {"date": f"2026-11-2{number}T08:05:00Z"} for number, look in enumerate(looks)] * 5
    models = [model.replace("Market with Ana", f"Market {number}") for number in range(len(looks))]
    names = ("family", "appearance", "scale", "rounded", "date")
    batch = pa.record_batch({"model": models} | {name: [look.get(name) for look in looks] for name in names})
    drawn = tavrin.arrow.render(batch, document=document, **{f"{name}_column": name for name in names})
    assert drawn["error"].null_count == len(looks)
    lines = [{"document": document, "model": model, "options": look} for model, look in zip(models, looks)]
    for row, line, answer in zip(drawn.to_pylist(), lines, answers(program, lines)):
        assert row["picture"] == single(document, line["model"], **line["options"])
        assert row["picture"] == base64.b64decode(answer["picture"])
        assert (row["width"], row["height"]) == (answer["width"], answer["height"])


def dictionary(values, type=pa.string(), index=pa.int32()):
    return pa.array(values, type).dictionary_encode().cast(pa.dictionary(index, type))


# Layout: an array of texts, some null.
LAYOUTS = {
    **{str(type): lambda values, type=type: pa.array(values, type)
       for type in (pa.string(), pa.large_string(), pa.binary(), pa.large_binary(), pa.string_view(), pa.binary_view())},
    "slice": lambda values: pa.array(["junk", None, *values, "junk"]).slice(2, len(values)),
    "slice of large": lambda values: pa.array([*["junk"] * 9, *values], pa.large_string()).slice(9),
    "slice of views": lambda values: pa.array([*["junk"] * 9, *values], pa.string_view()).slice(9),
    "dictionary": dictionary,
    "dictionary of bytes": lambda values: dictionary(values, pa.large_binary(), pa.uint8()),
    "slice of a dictionary": lambda values: dictionary(["junk", *values], index=pa.int64()).slice(1),
    "dictionary with a slice of values": lambda values: pa.DictionaryArray.from_arrays(
        pa.array(range(len(values)), pa.int16()), pa.array(["junk", *values]).slice(1)),
}


@pytest.mark.parametrize("layout", LAYOUTS.values(), ids=LAYOUTS.keys())
def test_texts_lie_as_they_like(title, layout):
    values = texts(20)
    values[3] = values[11] = None
    expected = [value and single(title, value, size=(60, 30), scale=1, **DATE) for value in values]
    array = layout(values)
    array.validate(full=True)
    assert array.to_pylist() in (values, [value and value.encode() for value in values])
    drawn = tavrin.arrow.render(pa.record_batch({"model": array}), document=title, size=(60, 30), scale=1, **DATE)
    assert pictures(drawn) == expected
    drawn = tavrin.arrow.render(pa.record_batch({"document": layout([title] * 20), "model": array}),
                                document_column="document", size=(60, 30), scale=1, **DATE)
    assert pictures(drawn) == expected


def test_a_slice_of_a_batch_is_drawn_alone(title):
    batch = pa.record_batch({"model": texts(30), "family": ["systemSmall", "systemMedium", None] * 10,
                             "rounded": [True, None, False] * 10, "scale": pa.array([1, 2, None] * 10, pa.int8())})
    options = {"document": title, "family_column": "family", "rounded_column": "rounded", "scale_column": "scale"} | DATE
    whole = tavrin.arrow.render(batch, **options)
    for begin, count in ((0, 1), (7, 11), (29, 1), (5, 0), (30, 0)):
        part = tavrin.arrow.render(batch.slice(begin, count), **options)
        assert part.equals(whole.slice(begin, count)), (begin, count)


def test_no_rows_are_no_rows(title):
    drawn = tavrin.arrow.render(pa.record_batch({"model": pa.array([], pa.string())}), document=title, hashes=True, **DATE)
    drawn.validate(full=True)
    assert drawn.num_rows == 0
    assert [str(field.type) for field in drawn.schema][1:] == [
        "binary", "string", "int32", "int32", "timestamp[us, tz=UTC]",
        "struct<type: string, kind: string, message: string, path: list<item: string>, line: int32, column: int32>"]


def test_rows_may_have_no_models(hello, title):
    batch = pa.record_batch({"model": pa.nulls(2), "document": [hello, title]})
    drawn = tavrin.arrow.render(batch, document_column="document", model=None, **DATE)
    assert pictures(drawn) == [single(hello, None, **DATE), single(title, None, **DATE)]
    drawn = tavrin.arrow.render(batch, document_column="document", **DATE)
    assert [error["message"] for error in drawn["error"].to_pylist()] == ["model takes a JSON text, not null"] * 2


# Option: what a column has, and what single calls take for it.
COLUMNS = {
    "family": [(pa.array(["systemSmall"]), "systemSmall"), (dictionary(["systemLarge"]), "systemLarge")],
    "size": [(pa.array(["100x50"]), (100, 50)), (pa.array([[100, 50.5]]), (100, 50.5)),
             (pa.array([[100, 50]], pa.list_(pa.int16(), 2)), (100, 50)),
             (pa.array([[1, 2, 3], [100, 50]], pa.large_list(pa.float32())).slice(1), (100, 50))],
    "screen": [(pa.array(["430x932"]), (430, 932))],
    "scale": [(pa.array([2], type), 2) for type in (pa.int8(), pa.uint8(), pa.int16(), pa.uint16(), pa.int32(), pa.uint32(),
                                                    pa.int64(), pa.uint64(), pa.float32(), pa.float64())]
             + [(pa.array([1.5]), 1.5), (dictionary([2], pa.int64()), 2)],
    "appearance": [(pa.array(["dark"], pa.string_view()), "dark")],
    "time_zone": [(pa.array(["Asia/Tokyo"], pa.large_string()), ZoneInfo("Asia/Tokyo"))],
    "background": [(pa.array(["#FF9500"]), "#FF9500")],
    "rounded": [(pa.array([True]), True), (pa.array([False, False, True]).slice(2), True)],
    "image_cache_dir": [(pa.array(["pictures"]), "pictures")],
    "max_image_size": [(pa.array([(10, 10)]), "10x10")],
    "fetch": [(pa.array(["none"]), "none")],
    "font_dir": [(pa.array([FONTS]), FONTS)],
    "format": [(pa.array([format]), format) for format in ("svg", "webp", "jpeg")],
    "compression": [(pa.array(["small"]), "small")],
    "quality": [(pa.array([5], pa.uint8()), 5)],
    "budget": [(pa.array(["strangers"]), "strangers")],
    "budget_steps": [(pa.array([10**6]), 10**6)],
    "budget_pixels": [(pa.array([2**63], pa.uint64()), 2**63)],
    "budget_bytes": [(pa.array([1e9]), 10**9)],
    "budget_seconds": [(pa.array([60.5]), 60.5)],
}


@pytest.mark.parametrize("name, column, value", [(name, *row) for name, rows in COLUMNS.items() for row in rows])
def test_options_have_columns(title, name, column, value):
    usual = DATE | ({"format": "jpeg"} if name == "quality" else {})
    batch = pa.record_batch({"model": texts(2), "look": pa.concat_arrays([column, pa.nulls(1, column.type)])})
    drawn = tavrin.arrow.render(batch, document=title, **{f"{name}_column": "look"}, **usual)
    assert pictures(drawn) == [single(title, texts(2)[0], **usual | {name: value}), single(title, texts(2)[1], **usual)]
    whole = tavrin.arrow.render(batch, document=title, **{name: value}, **usual)
    assert pictures(whole)[0] == pictures(drawn)[0]


def test_every_option_is_in_the_table():
    names = {"".join("_" + letter.lower() if letter.isupper() else letter for letter in option["name"])
             for option in json.loads(_tavrin.options())}
    assert set(COLUMNS) == names - {"date", "hashes"}


MOMENT = datetime(2026, 11, 21, 8, 5, 0, 250_000, timezone.utc)


@pytest.mark.parametrize("column", [
    pa.array(["2026-11-21T09:05:00.25+01:00"]),
    *(pa.array([MOMENT], pa.timestamp(unit, zone)) for unit in ("ms", "us", "ns") for zone in ("UTC", "Asia/Tokyo")),
], ids=lambda column: str(column.type))
def test_dates_have_columns(column):
    batch = pa.record_batch({"model": ['{"end": "1795248305"}'] * 2,
                             "date": pa.concat_arrays([column, pa.nulls(1, column.type)])})
    drawn = tavrin.arrow.render(batch, document=COUNTDOWN, date_column="date").to_pylist()
    widget = tavrin.Document(COUNTDOWN).widget('{"end": "1795248305"}', date=MOMENT, time_zone="UTC")
    assert drawn[0]["picture"] == widget.encode()
    assert drawn[0]["valid_until"] == widget.valid_until is not None
    assert drawn[1]["error"]["message"] == "date takes a date and time such as 2026-03-01T09:41:00Z, not null"


def test_the_time_zone_is_utc_unless_one_is_named(script):
    batch = pa.record_batch({"zone": ["Asia/Tokyo", None]})
    drawn = tavrin.arrow.render(batch, document=HAND, model=None, time_zone_column="zone", **DATE)
    assert pictures(drawn) == [single(HAND, None, time_zone=zone, **DATE) for zone in ("Asia/Tokyo", "UTC")]
    assert pictures(drawn)[0] != pictures(drawn)[1]
    assert script(f"""
os.environ["TZ"] = "Asia/Tokyo"
import pyarrow, tavrin.arrow
text, options = {HAND!r}, {DATE}
drawn = tavrin.arrow.render(pyarrow.record_batch({{"n": [1]}}), document=text, model=None, **options)["picture"][0].as_py()
print(drawn == tavrin.Document(text).widget(time_zone="UTC", **options).encode(),
      drawn == tavrin.Document(text).widget(**options).encode())
""") == "True False\n"


# What a row has that fails, in the batch's terms and in the program's.
POISON = {
    "no JSON": ({"model": "{"}, {"model": "{"}),
    "a missing path": ({"model": '{"name": 1}'}, {"model": '{"name": 1}'}),
    "a budget passed": ({"steps": 2}, {"options": {"budgetSteps": 2}}),
    "an unknown zone": ({"zone": "Moon/Sea"}, {"options": {"timeZone": "Moon/Sea"}}),
    "a wrong family": ({"family": "systemTiny"}, {"options": {"family": "systemTiny"}}),
    "a wrong type for a property": (
        {"document": '{"version": "1.0", "nodes": {"main": {"type": "text", "content": {}}}}'}, None),
    "a bad document": ({"document": '{"version": "1.0",\n "nodes": {"main": {"type": "txt"}}}'}, None),
    "characters, not bytes": ({"document": '{"é": 1, "version": 5}'}, None),
    "a picture that is too large": ({"scale": 99.0}, {"options": {"scale": 99.0}}),
}


def test_bad_rows_have_the_program_s_errors_and_fail_no_other(program, title):
    rows = [{"model": text, "document": title, "scale": 1.0} for text in texts(1000)]
    lines = [{"model": text, "document": title, "options": DATE | {"scale": 1}} for text in texts(1000)]
    bad = {}
    for number, (why, (row, line)) in enumerate(POISON.items()):
        at = 7 + 97 * number
        bad[at] = why
        rows[at] |= row
        line = row if line is None else line
        lines[at] |= line | {"options": lines[at]["options"] | line.get("options", {})}
    schema = pa.schema([("model", pa.string()), ("document", pa.string()), ("steps", pa.int64()), ("zone", pa.string()),
                        ("family", pa.string()), ("scale", pa.float64())])
    batch = pa.RecordBatch.from_pylist(rows, schema)
    options = {"document_column": "document", "budget_steps_column": "steps", "time_zone_column": "zone",
               "family_column": "family", "scale_column": "scale"} | DATE
    drawn = tavrin.arrow.render(batch, **options).to_pylist()
    document = tavrin.Document(title)
    for number, (row, answer) in enumerate(zip(drawn, answers(program, lines))):
        if number not in bad:
            assert row["error"] is None
            assert row["picture"] == base64.b64decode(answer["picture"])
            if number % 50 == 0:
                assert row["picture"] == document.widget(rows[number]["model"], time_zone="UTC", scale=1, **DATE).encode()
            continue
        error, expected = row["error"], answer["error"]
        assert row["picture"] is row["width"] is row["height"] is row["valid_until"] is None
        assert error["type"] == expected["type"], bad[number]
        assert error["kind"] == expected.get("kind"), bad[number]
        assert error["message"] == expected["message"].replace("timeZone", "time_zone"), bad[number]
        path = expected.get("path")
        assert error["path"] == (path and [str(key) for key in path]), bad[number]
        assert (error["line"], error["column"]) == (expected.get("line"), expected.get("column")), bad[number]
    assert {drawn[at]["error"]["type"] for at in bad} == {"DecodingError", "ModelContextError", "TavrinError", "UsageError"}


def test_errors_are_those_of_single_calls(title):
    document = '{"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{"type": 7}]}}}'
    [error] = tavrin.arrow.render(pa.record_batch({"model": ["{}"]}), document=document, **DATE)["error"].to_pylist()
    with pytest.raises(tavrin.Error) as caught:
        tavrin.Document(document)
    assert error == {"type": caught.value.type, "kind": caught.value.kind, "message": caught.value.message,
                     "path": [str(key) for key in caught.value.path], "line": caught.value.line,
                     "column": caught.value.column}
    assert error["path"] == ["nodes", "main", "children", "0", "type"]


def test_rows_that_ask_for_what_does_not_go_together_fail_alone(hello):
    batch = pa.record_batch({"model": ["{}"] * 4, "family": ["systemSmall", None, "systemSmall", "systemLarge"],
                             "size": [None, "20x10", "20x10", None], "pair": [[1, 2], None, [1, 2, 3], [1, None]],
                             "document": [hello, hello, hello, None]})
    drawn = tavrin.arrow.render(batch, document=hello, family_column="family", size_column="size", **DATE)
    assert [error and error["message"] for error in drawn["error"].to_pylist()] == [
        None, None, "size stands instead of family; give one of them", None]
    drawn = tavrin.arrow.render(batch, document_column="document", max_image_size_column="pair", **DATE)
    assert [error and error["message"] for error in drawn["error"].to_pylist()] == [
        None, None, "max_image_size takes a width and a height such as 338x158",
        "max_image_size takes a width and a height such as 338x158"]
    drawn = tavrin.arrow.render(batch, document_column="document", **DATE)
    assert [error and error["message"] for error in drawn["error"].to_pylist()] == [
        None, None, None, "document takes a JSON text, not null"]


def test_messages_are_utf_8_whatever_they_quote():
    batch = pa.record_batch({"model": pa.array([b"{}", b'{"\xff'], pa.binary()),
                             "document": pa.array([b'{"version": "\xff", "nodes": {}}', b"{}"], pa.binary())})
    drawn = tavrin.arrow.render(batch, document_column="document", **DATE)
    drawn.validate(full=True)
    assert drawn["error"].null_count == 0


BATCH = {"model": ["{}"], "number": [1], "moment": pa.array([MOMENT], pa.timestamp("us")), "twice": [1], "text": ["a"]}


@pytest.mark.parametrize("error, message, options", [
    (TypeError, "date", {"date": ...}),
    (TypeError, "date takes", {"date": None}),
    (ValueError, "date takes", {"date": "yesterday"}),
    (TypeError, "there is no option 'famly'; did you mean 'family'", {"famly": "systemSmall"}),
    (TypeError, "there is no option 'famly'; did you mean 'family'", {"famly_column": "text"}),
    (TypeError, "family takes", {"family": 5}),
    (ValueError, "family takes", {"family": "systemTiny"}),
    (TypeError, "family_column takes a column of texts, not of int64", {"family_column": "number"}),
    (TypeError, "scale_column takes a column of numbers, not of string", {"scale_column": "text"}),
    (TypeError, "rounded_column takes a column of booleans", {"rounded_column": "number"}),
    (TypeError, "hashes_column takes a column of booleans", {"hashes_column": "number"}),
    (TypeError, "hashes takes true or false", {"hashes": 1}),
    (TypeError, "time zone", {"date_column": "moment", "date": ...}),
    (TypeError, "family_column takes the name of a column, not int", {"family_column": 5}),
    (ValueError, "family_column names 'none'", {"family_column": "none"}),
    (ValueError, "family_column stands instead of family", {"family_column": "text", "family": "systemSmall"}),
    (ValueError, "size stands instead of family", {"size": (1, 1), "family": "systemSmall"}),
    (ValueError, "model names 'other'", {"model": "other"}),
    (TypeError, "model takes a column of texts or bytes, not of int64", {"model": "number"}),
    (TypeError, "document_column takes a column of texts or bytes", {"document_column": "number", "document": ...}),
    (TypeError, "give a document", {"document": ...}),
    (TypeError, "give a document", {"document_column": "text"}),
    (TypeError, "document takes a str or bytes", {"document": 5}),
    (TypeError, "positional", None),
])
def test_what_makes_no_sense_is_refused(hello, error, message, options):
    batch = pa.record_batch(BATCH)
    with pytest.raises(error, match=message):
        if options is None:
            tavrin.arrow.render(batch, hello)
        else:
            asked = {"document": hello} | DATE | options
            tavrin.arrow.render(batch, **{name: value for name, value in asked.items() if value is not ...})


@pytest.mark.parametrize("name", ["picture", "width", "height", "valid_until", "error", "sha256"])
def test_a_column_that_is_there_is_not_added(hello, name):
    batch = pa.record_batch({"model": ["{}"], name: [1]})
    with pytest.raises(ValueError, match=f"the batch has a column '{name}' already"):
        tavrin.arrow.render(batch, document=hello, hashes=True, **DATE)
    if name == "sha256":
        assert "sha256" in tavrin.arrow.render(batch, document=hello, **DATE).schema.names


def test_only_one_column_may_be_meant(hello):
    batch = pa.RecordBatch.from_arrays([pa.array(["{}"])] * 2, names=["model", "model"])
    with pytest.raises(ValueError, match="model names 'model', which several columns"):
        tavrin.arrow.render(batch, document=hello, **DATE)
    assert tavrin.arrow.render(batch, document=hello, model=None, **DATE).num_columns == 7
    with pytest.raises(TypeError, match="batch takes a pyarrow.RecordBatch, not Table"):
        tavrin.arrow.render(pa.table({"model": ["{}"]}), document=hello, **DATE)


def test_a_batch_that_is_not_sound_is_refused(hello):
    offsets = pa.array([0, 1 << 30, 2], pa.int32()).buffers()[1]
    broken = pa.Array.from_buffers(pa.string(), 2, [None, offsets, pa.py_buffer(b"{}")])
    outside = pa.DictionaryArray.from_arrays(pa.array([7]), pa.array(["{}"]), safe=False)
    for column in (broken, outside):
        with pytest.raises(ValueError):
            tavrin.arrow.render(pa.RecordBatch.from_arrays([column], names=["model"]), document=hello, **DATE)


def test_columns_stay_where_they_are(title):
    schema = pa.schema([pa.field("id", pa.int64(), metadata={"a": "b"}), ("model", pa.string())], {"c": "d"})
    batch = pa.record_batch([range(50), texts(50)], schema=schema)
    drawn = tavrin.arrow.render(batch, document=title, size=(60, 30), scale=1, **DATE)
    assert drawn.schema.metadata == schema.metadata and drawn.schema.field("id").equals(schema.field("id"), True)
    for name in batch.schema.names:
        places = [buffer and buffer.address for buffer in batch[name].buffers()]
        assert [buffer and buffer.address for buffer in drawn[name].buffers()] == places


def test_hashes_are_those_of_the_pictures(program, title):
    models = [*texts(3), "{"]
    batch = pa.record_batch({"model": models, "hashes": [True, None, False, True]})
    drawn = tavrin.arrow.render(batch, document=title, hashes=True, **DATE)
    assert drawn.schema.names == ["model", "hashes", "picture", "sha256", "width", "height", "valid_until", "error"]
    assert drawn["sha256"].to_pylist() == [picture and hashlib.sha256(picture).hexdigest() for picture in pictures(drawn)]
    lines = [{"document": title, "model": model, "options": DATE | {"hashes": True}} for model in models]
    assert drawn["sha256"].to_pylist() == [answer.get("sha256") for answer in answers(program, lines)]
    some = tavrin.arrow.render(batch, document=title, hashes_column="hashes", **DATE)
    assert some["sha256"].to_pylist() == [drawn["sha256"][0].as_py(), None, None, None]


def test_svgs_are_as_large_as_they_say(hello):
    batch = pa.record_batch({"model": ["{}"]})
    drawn = tavrin.arrow.render(batch, document=hello, format="svg", size=(100.5, 50.4), **DATE)
    assert (drawn["width"][0].as_py(), drawn["height"][0].as_py()) == (101, 50)


def test_a_batch_may_be_drawn_by_threads_and_processes(title, script):
    batches = [pa.record_batch({"model": texts(40)}).slice(number, 30) for number in range(10)]

    def draw(batch):
        return tavrin.arrow.render(batch, document=title, size=(60, 30), scale=1, **DATE)

    expected = [draw(batch) for batch in batches]
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        assert all(one.equals(other) for one, other in zip(expected, pool.map(draw, batches)))
    assert script("""
import pyarrow, tavrin.arrow
batch = pyarrow.record_batch({"model": ["{}"] * 3})
expected = tavrin.arrow.render(batch, document=HELLO, date="2026-11-21T08:05:00Z")
if os.fork() == 0:
    print(tavrin.arrow.render(batch, document=HELLO, date="2026-11-21T08:05:00Z").equals(expected), flush=True)
    os._exit(0)
os.wait()
""") == "True\n"


def test_documents_that_are_many_are_each_decoded(title):
    """More than are kept, by turns."""
    documents = [title.replace('"text"', '"text", "fontSize": ' + str(10 + number)) for number in range(70)] * 2
    batch = pa.record_batch({"model": texts(140), "document": documents})
    drawn = tavrin.arrow.render(batch, document_column="document", size=(60, 30), scale=1, **DATE)
    for number in (0, 69, 70, 139):
        assert pictures(drawn)[number] == single(documents[number], texts(140)[number], size=(60, 30), scale=1, **DATE)


def test_signals_are_heard(title):
    def stop(*_):
        raise InterruptedError

    batch = pa.record_batch({"model": texts(100_000)})
    before = signal.signal(signal.SIGALRM, stop)
    begin = time.monotonic()
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.3)
        with pytest.raises(InterruptedError):
            tavrin.arrow.render(batch, document=title, **DATE)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    assert time.monotonic() - begin < 10


def test_memory_stays_what_it_is_and_is_given_back(script):
    grown, held = script("""
import pyarrow, tavrin.arrow
from tavrin import _tavrin

def batch(number):
    models = ['{"n": %d}' % (number * 1000 + row) for row in range(100)] + ["{", None]
    return pyarrow.record_batch({"model": models, "scale": [1.0, None] * 51})

def draw(count):
    for number in range(count):
        rows = batch(number)
        drawn = tavrin.arrow.render(rows, document=HELLO, size=(60, 30), scale_column="scale", hashes=True,
                                    date="2026-11-21T08:05:00Z")
        picture = drawn["picture"]
        del drawn  # one column lives on alone
        assert picture.null_count == 2
        asked = (3, HELLO, (rows["model"].slice(0, 3), "string"), {}, {})
        _tavrin.draw_rows(*asked)  # nobody takes it
        pyarrow.DataType._import_from_c_capsule(_tavrin.draw_rows(*asked)[0])  # somebody takes half of it
        try:
            tavrin.arrow.render(rows, document=HELLO, date_column="scale")
        except TypeError:
            pass
        tavrin.arrow.addresses(rows, document=HELLO)

draw(10)
before = resident()
draw(40)
print(resident() - before, pyarrow.total_allocated_bytes())
""").split()
    assert int(grown) < 4 << 20
    assert int(held) == 0


def test_senseless_batches_raise_and_nothing_else(title):
    """What comes of columns of any type in any place is a batch or an Exception, and the process goes on."""
    dice = random.Random(20261122)
    values = [None, True, "systemSmall", "{}", '{"title": "a"}', "1x1", title, "\0", "2026-11-21T08:05:00Z"]
    numbers = [None, 0, 1, 2**40, -1]
    columns = [
        *(layout([value if isinstance(value, str) else None for value in values]) for layout in LAYOUTS.values()),
        *(pa.array([None, 0, 1, 2, 100, 3, 7, None, 1], type) for type in
          (pa.uint8(), pa.int64(), pa.float32(), pa.timestamp("s", "UTC"), pa.timestamp("ns"), pa.date32(), pa.time64("us"),
           pa.duration("s"), pa.decimal128(9, 2), pa.float16(), pa.uint64())),
        pa.array([True, None, False] * 3), pa.nulls(9), pa.array([[], None, [1], [1, 2], [1, None]] + [[3, 4]] * 4),
        pa.array([{"a": 1}] * 9), pa.array([["a"]] * 9), pa.array([[[1, 2]]] * 9), pa.array([(1, 2)] * 9, pa.list_(pa.int8(), 2)),
        pa.array([(1, 2, 3)] * 9, pa.list_(pa.int8(), 3)), pa.array([{}, None, {"a": 1}] * 3, pa.map_(pa.string(), pa.int8())),
        pa.RunEndEncodedArray.from_arrays([9], ["{}"]), dictionary(numbers + numbers[:4], pa.int64()),
        pa.array([(1, 2)] * 9, pa.list_view(pa.int8())), pa.array([b"ab"] * 9, pa.binary(2)),
        pa.UnionArray.from_sparse(pa.array([0] * 9, pa.int8()), [pa.array(["{}"] * 9)]),
    ]
    names = [f"{name}_column" for name in tavrin.Options.__annotations__]
    outcomes = {True: 0, False: 0}
    for _ in range(600):
        batch = pa.RecordBatch.from_arrays([dice.choice(columns) for _ in range(5)], names=[*"abcde"])
        if dice.random() < 0.5:
            batch = batch.slice(dice.randrange(9), dice.randrange(9))
        options = {name: dice.choice("abcde") for name in dice.sample(names, dice.randrange(4))} | {"date": DATE["date"]}
        options |= {"size": (9, 9), "scale": 1} if dice.random() < 0.5 else {}
        texts_of = dice.choice([{"document": title}, {"document_column": "b"}])
        try:
            drawn = tavrin.arrow.render(batch, model=dice.choice("abcde"), **texts_of, **options)
            drawn.validate(full=True)
            outcomes[True] += 1
        except (TypeError, ValueError):
            outcomes[False] += 1
    assert min(outcomes.values()) > 20, outcomes
    for call in [_tavrin.draw_rows, _tavrin.row_pictures] * 100:
        with pytest.raises(Exception):
            call(*dice.choices([None, 1, -1, 3, title, (columns[0], "string"), (1, 2), (), {}, {"a": 1}, b""], k=5))
