#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes docs/reference: make_reference.py PROGRAM [--check]

A page for each node and modifier, made of what `tavrin schema` says and of the document in docs/reference/documents,
which the program draws, and a table of the widget families' sizes. --check writes nothing and fails where pages or
pictures are not what would be written.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

from png_suite import reference as pixels

TOP = pathlib.Path(__file__).resolve().parent.parent
REFERENCE = TOP / "docs/reference"
OPTIONS = ["--family", "systemSmall", "--scale", "2", "--rounded", "--background", "F2F2F7"]
# What makes the pictures the same everywhere and at any time.
SETTINGS = ["--date", "2026-03-01T09:41:00Z", "--time-zone", "UTC", "--compression", "small", "--offline"]
PICTURES = ["--image-cache-dir", str(TOP / "examples/photo/pictures")]

NAMES = {"text": "text", "number": "number", "boolean": "boolean", "string": "text", "integer": "whole number"}
LINKS = {
    "node": "[node](README.md#nodes)",
    "modifier": "[modifier](README.md#modifiers)",
    "nodes.color": "[color](color.md)",
}
# Of nodes that do not lie in the middle of their room: a document and what its picture shows.
ROOMS = {
    "progressView": [
        ("progressView-ring", "A ring takes all the room that it is given, and lies at its top leading corner, as large as "
         "fits. So a text on top of\nit is in the middle only where the room is as wide as high: give the ring a `frame` "
         "of equal sides."),
        ("progressView-bar", "A bar takes all the room, too, and lies across the middle of its height. A `frame` with a "
         "`height` leaves the rest to\nothers."),
    ],
    "timer": [
        ("timer-room", "A timer is one line high and takes all the width that it is given; its digits begin at the leading "
         "edge. A `frame` with\na `width` of what the digits need leaves the rest to others, and can be centred."),
    ],
}
COLUMNS = 6  # of the index
GENERATED = "<!-- Made by scripts/make_reference.py of the records' notes; change those. -->\n\n"


def definition(reference):
    return reference.removeprefix("#/$defs/")


def words(values):
    return " ".join(f"`{value}`" for value in values)


def plain(value):
    """What a value takes that is read as it is."""
    if "enum" in value:
        return words(value["enum"])
    if "$ref" in value:
        name = definition(value["$ref"])
        return LINKS.get(name, f"[{name}](#{name.lower()})")
    return NAMES[value["type"]]


def takes(value):
    """What a key takes, in words. Scalars take expressions, too, where nothing else is said."""
    if "items" in value:
        items = plain(value["items"]).replace("]", "s]", 1)
        return f"list of {items}" + (", no expression" if "enum" in value["items"] else "")
    if "anyOf" in value:
        return plain(value["anyOf"][0])
    if "$ref" in value:
        name = definition(value["$ref"])
        return NAMES[name] if name in NAMES else plain(value)
    if "additionalProperties" in value:
        return "names, each with a " + plain(value["additionalProperties"])
    if isinstance(value.get("type"), list):
        return NAMES[value["type"][0]]
    return plain(value) + ", no expression"


def row(key, value, is_required):
    text, _, absent = value["description"].partition(" Left out: ")
    if is_required:
        absent = "*required*"
    elif "default" in value:
        absent = f"`{json.dumps(value['default'])}`"
    else:
        absent = absent.removesuffix(".")
    examples = "".join(f" `{json.dumps(example, ensure_ascii=False)}`" for example in value.get("examples", []))
    return f"| `{key}` | {takes(value)} | {absent} | {text} |{examples} |\n"


def table(record):
    keys = {key: value for key, value in record["properties"].items() if key not in ("type", "$schema")}
    if not keys:
        return "It has no keys besides `type`.\n"
    head = "| key | takes | when left out | meaning | such as |\n| --- | --- | --- | --- | --- |\n"
    required = record.get("required", [])
    return head + "".join(row(key, value, key in required) for key, value in keys.items())


def parts(schema, record):
    """The tables of records that stand in no page of their own."""
    names = [definition(reference) for value in record["properties"].values()
             for reference in [one.get("$ref", "") for one in value.get("anyOf", [])]]
    return "".join(f"\n## {name}\n\n{schema['$defs'][name]['$comment']}\n\n{table(schema['$defs'][name])}"
                   for name in names if name.startswith("progress"))


def rooms(tag):
    """How a node lies in a room that is larger than what it shows."""
    shown = "".join(f'{words}\n\n<img src="pictures/{name}.png" width="158" height="158" alt="The room of {tag}, '
                    f'with a border">\n\n' for name, words in ROOMS.get(tag, []))
    return f"\n## In its room\n\n{shown.rstrip()}\n" if shown else ""


def page(schema, folder, tag):
    record = schema["$defs"][f"{folder}.{tag}"]
    document = (REFERENCE / f"documents/{tag}.json").read_text(encoding="utf-8")
    return (f"# {tag}\n\n{GENERATED}{record['properties']['type']['description']}\n\n"
            f'<img src="pictures/{tag}.png" width="158" height="158" alt="{tag}">\n\n'
            f"```json\n{document}```\n\n## Keys\n\n{table(record)}{parts(schema, record)}{rooms(tag)}")


def gallery(tags):
    cell = '<td align="center"><a href="{0}.md"><img src="pictures/{0}.png" width="120" alt=""><br>{0}</a></td>'
    cells = [cell.format(tag) for tag in tags]
    rows = [cells[at : at + COLUMNS] for at in range(0, len(cells), COLUMNS)]
    return "<table>\n" + "".join("<tr>\n" + "\n".join(cells) + "\n</tr>\n" for cells in rows) + "</table>\n"


def completions(program, option):
    """The words that an option takes."""
    script = subprocess.run([program, "completion", "fish"], check=True, capture_output=True, text=True).stdout
    return re.search(rf" -l {option} -x -a '([^']*)'", script)[1].split()


def family_sizes(program, screen):
    """The size of each widget family that the screen has, by its name."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([program, "render", REFERENCE / "documents/spacer.json", "-o", folder, "--families", "all",
                        "--screen", screen, "--scale", "1"], check=True)
        pictures = json.loads((pathlib.Path(folder) / "index.json").read_text(encoding="utf-8"))
    return {picture["family"]: "x".join(map(str, picture["size"])) for picture in pictures}


def families(program):
    """A table of the widget families' sizes; screens of the same sizes share a row."""
    names = completions(program, "family")
    screens = {}
    for screen in completions(program, "screen"):
        sizes = family_sizes(program, screen)
        screens.setdefault(tuple(sizes.get(name, "–") for name in names), []).append(screen)
    rows = [["screen", *(f"`{name}`" for name in names)], ["---"] * (len(names) + 1),
            *([", ".join(sharing), *sizes] for sizes, sharing in screens.items())]
    return ("What `--family` takes, and the sizes in points that a family has on the screens that `--screen` takes;\n"
            "`systemMedium` and 390x844 where nothing is said. In C++, `tavrin::widgetSize` tells the same.\n\n"
            + "".join(f"| {' | '.join(row)} |\n" for row in rows))


def index(schema, folders, sizes):
    command = " ".join(["tavrin render documents/text.json -o text.png", *OPTIONS])
    return (f"# Reference\n\n{GENERATED}"
            "Each page has the keys of one node or modifier, a document and its picture, drawn by\n\n"
            f"    {command}\n\n"
            "Where a key takes a text, a number, a boolean or words, it takes an expression such as\n"
            "`{{initServerParam.title}}` as well, and numbers and booleans also as strings. What does not convert is\n"
            "an error where the key is required and counts as left out where it is not; so does `null`.\n\n"
            f"## Document\n\n{schema['description']}\n\n{table(schema)}\n"
            f"## Widget families\n\n{sizes}\n"
            + "".join(f"## {folder.capitalize()}\n\n{gallery(tags)}\n" for folder, tags in folders.items())
            ).rstrip("\n") + "\n"


def drawn(program, folders, into):
    """Draws every document, of which each must be clean, and gives the pictures by their file's name."""
    tags = [tag for tags in folders.values() for tag in tags]
    tags += [name for pictures in ROOMS.values() for name, _ in pictures]
    documents = [str(REFERENCE / f"documents/{tag}.json") for tag in tags]
    subprocess.run([program, "check", *documents, "--strict", "--size", "158x158", *PICTURES], check=True)
    subprocess.run([program, "render", *documents, "-o", into, *OPTIONS, *SETTINGS, *PICTURES], check=True)
    return {f"pictures/{tag}.png": (pathlib.Path(into) / f"{tag}.png").read_bytes() for tag in tags}


def everything(program):
    schema = json.loads(subprocess.run([program, "schema"], check=True, capture_output=True).stdout)
    folders = {f"{kind}s": schema["$defs"][kind]["properties"]["type"]["enum"] for kind in ("node", "modifier")}
    with tempfile.TemporaryDirectory() as folder:
        files = drawn(program, folders, folder)
    files["README.md"] = index(schema, folders, families(program)).encode()
    for folder, tags in folders.items():
        files.update({f"{tag}.md": page(schema, folder, tag).encode() for tag in tags})
    return files


def same(name, wanted, found):
    return wanted == found or (name.endswith(".png") and pixels(wanted) == pixels(found))


def differences(files):
    """What is missing, left over or not as it would be written."""
    there = {path.relative_to(REFERENCE).as_posix() for path in REFERENCE.rglob("*") if path.is_file()}
    kept = {name for name in there if not name.startswith("documents/")}
    pages = {f"documents/{pathlib.Path(name).stem}.json" for name in files if name.startswith("pictures/")}
    changed = {name for name, wanted in files.items()
               if name in kept and not same(name, wanted, (REFERENCE / name).read_bytes())}
    return sorted(changed | (kept ^ set(files)) | ((there - kept) ^ pages))


def main():
    program = str(pathlib.Path(sys.argv[1]).resolve())
    files = everything(program)
    if "--check" in sys.argv[2:]:
        changed = differences(files)
        if changed:
            print("docs/reference is not up to date; `make docs` writes it:", *changed, sep="\n  ")
        sys.exit(1 if changed else 0)
    for name, content in files.items():
        path = REFERENCE / name
        path.parent.mkdir(exist_ok=True)
        path.write_bytes(content)


if __name__ == "__main__":
    main()
