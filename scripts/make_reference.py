#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes docs/reference: make_reference.py PROGRAM [--check]

A page for each node and modifier, made of what `tavrin schema` says and of documents in docs/reference/documents, which
the program draws: the one of that name on top, others below as examples.toml lists them. Each key must be in one of
them, and change its picture. The first page has a table of the widget families' sizes. --check writes nothing and fails
where pages or pictures are not what would be written.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

from png_suite import reference as pixels
from reference_examples import (
    DOCUMENTS, LOOKS, OPTIONS, TABLE, definition, drawn, examples, keys_of, misnamed, parts, undrawn, unseen)

REFERENCE = DOCUMENTS.parent
NAMES = {"text": "text", "number": "number", "boolean": "boolean", "string": "text", "integer": "whole number"}
LINKS = {
    "node": "[node](README.md#nodes)",
    "modifier": "[modifier](README.md#modifiers)",
    "nodes.color": "[color](color.md)",
}
COLUMNS = 6  # of the index
GENERATED = "<!-- Made by scripts/make_reference.py of the records' notes; change those. -->\n\n"


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


def row(key, value, is_required, link):
    text, _, absent = value["description"].partition(" Left out: ")
    if is_required:
        absent = "*required*"
    elif "default" in value:
        absent = f"`{json.dumps(value['default'])}`"
    else:
        absent = absent.removesuffix(".")
    samples = "".join(f" `{json.dumps(sample, ensure_ascii=False)}`" for sample in value.get("examples", []))
    return f"| `{key}` | {takes(value)} | {absent} | {text} |{samples}{link} |\n"


def table(record, below=None):
    """The keys of a record, some with a link to what shows them below."""
    keys = {key: value for key, value in record["properties"].items() if key not in ("type", "$schema")}
    if not keys:
        return "It has no keys besides `type`.\n"
    head = "| key | takes | when left out | meaning | such as |\n| --- | --- | --- | --- | --- |\n"
    required = record.get("required", [])
    return head + "".join(row(key, value, key in required, (below or {}).get(key, "")) for key, value in keys.items())


def anchor(title):
    """Where a heading is found."""
    return re.sub(r"[^\w -]", "", title.lower()).replace(" ", "-")


def links(schema, name, shown):
    """Where a key of the record is shown once more, below."""
    found = {}
    for example in shown:
        for key in example.keys:
            if (name, key) in keys_of(schema, example):
                found[key] = found.get(key, "") + f" [{example.title}](#{anchor(example.title)})"
    return found


def figure(example):
    """The pictures of an example and, where keys are to be seen, its document."""
    heading = f"## {example.title}\n\n{example.words}\n\n" if example.title else ""
    alt = f"{example.name.partition('-')[0]}{': ' + example.title if example.title else ''}"
    pictures = "\n".join(f'<img src="pictures/{picture}" width="158" height="158" alt="{alt}">'
                         for picture in example.pictures)
    document = f"\n```json\n{example.text}```\n" if example.keys or not example.title else ""
    return f"{heading}{pictures}\n{document}"


def page(schema, folder, tag, shown):
    name = f"{folder}.{tag}"
    record = schema["$defs"][name]
    inner = "".join(f"\n## {part}\n\n{schema['$defs'][part]['$comment']}\n\n"
                    f"{table(schema['$defs'][part], links(schema, part, shown))}" for part in parts(schema, name))
    return (f"# {tag}\n\n{GENERATED}{record['properties']['type']['description']}\n\n"
            f"{figure(shown[0])}\n## Keys\n\n{table(record, links(schema, name, shown))}{inner}"
            + "".join("\n" + figure(example) for example in shown[1:]))


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
    command = " ".join(["tavrin render documents/text.json -o text.png", *OPTIONS, *LOOKS["light"]])
    return (f"# Reference\n\n{GENERATED}"
            "Each page has the keys of one node or modifier, and documents with their pictures, drawn by\n\n"
            f"    {command}\n\n"
            "Where a key takes a text, a number, a boolean or words, it takes an expression such as\n"
            "`{{initServerParam.title}}` as well, and numbers and booleans also as strings. What does not convert is\n"
            "an error where the key is required and counts as left out where it is not; so does `null`.\n\n"
            f"## Document\n\n{schema['description']}\n\n{table(schema)}\n"
            f"## Widget families\n\n{sizes}\n"
            + "".join(f"## {folder.capitalize()}\n\n{gallery(tags)}\n" for folder, tags in folders.items())
            ).rstrip("\n") + "\n"


def everything(program):
    """All files, the documents that they are made of, and what is wrong with these."""
    schema = json.loads(subprocess.run([program, "schema"], check=True, capture_output=True).stdout)
    folders = {f"{kind}s": schema["$defs"][kind]["properties"]["type"]["enum"] for kind in ("node", "modifier")}
    shown = examples([tag for tags in folders.values() for tag in tags])
    with tempfile.TemporaryDirectory() as folder:
        pictures = drawn(program, [example for listed in shown.values() for example in listed], folder)
    files = {f"pictures/{name}": content for name, content in pictures.items()}
    files["README.md"] = index(schema, folders, families(program)).encode()
    for folder, tags in folders.items():
        files.update({f"{tag}.md": page(schema, folder, tag, shown[tag]).encode() for tag in tags})
    documents = {path.relative_to(REFERENCE).as_posix() for listed in shown.values() for path in
                 [TABLE, *(example.path for example in listed)]}
    wrong = [f"{TABLE.name}: {name} does not use `{key}`" for name, key in misnamed(schema, shown)]
    wrong += [f"{tag}.md: none of its documents uses `{key}`" for tag, key in undrawn(schema, folders, shown)]
    wrong += [f"{tag}.md: without `{key}` its pictures are the same" for tag, key in
              unseen(program, schema, folders, shown)]
    return files, documents, wrong


def same(name, wanted, found):
    return wanted == found or (name.endswith(".png") and pixels(wanted) == pixels(found))


def differences(files, documents):
    """What is missing, left over or not as it would be written."""
    there = {path.relative_to(REFERENCE).as_posix() for path in REFERENCE.rglob("*") if path.is_file()}
    changed = {name for name, wanted in files.items()
               if name in there and not same(name, wanted, (REFERENCE / name).read_bytes())}
    return sorted(changed | (there ^ (set(files) | documents)))


def main():
    program = str(pathlib.Path(sys.argv[1]).resolve())
    files, documents, wrong = everything(program)
    if wrong:
        print(f"docs/reference does not show each key; {TABLE.relative_to(REFERENCE)} lists what it shows:", *wrong,
              sep="\n  ")
    changed = []
    if "--check" in sys.argv[2:]:
        changed = differences(files, documents)
        if changed:
            print("docs/reference is not up to date; `make docs` writes it:", *changed, sep="\n  ")
    else:
        for name, content in files.items():
            path = REFERENCE / name
            path.parent.mkdir(exist_ok=True)
            path.write_bytes(content)
    sys.exit(1 if wrong or changed else 0)


if __name__ == "__main__":
    main()
