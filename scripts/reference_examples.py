# SPDX-License-Identifier: MIT
"""What the pages of the reference show, for make_reference.py: documents, their pictures, the keys that they use."""
import dataclasses
import json
import pathlib
import subprocess
import sys
import tomllib

TOP = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = TOP / "docs/reference/documents"
TABLE = DOCUMENTS / "examples.toml"
OPTIONS = ["--family", "systemSmall", "--scale", "2", "--rounded"]
LOOKS = {"light": ["--background", "F2F2F7"], "dark": ["--appearance", "dark"]}
# What makes the pictures the same everywhere and at any time.
SETTINGS = ["--date", "2026-03-01T09:41:00Z", "--time-zone", "UTC", "--compression", "small", "--offline"]
PICTURES = ["--image-cache-dir", str(TOP / "examples/photo/pictures")]


@dataclasses.dataclass(frozen=True)
class Example:
    """A document of a page. The first has no title, and each node and modifier has one."""

    name: str
    title: str = ""
    words: str = ""
    keys: tuple[str, ...] = ()  # what it is there to show
    appearances: tuple[str, ...] = ("light",)
    warnings: tuple[str, ...] = ()  # the codes of what `tavrin check` warns of

    @property
    def path(self):
        return DOCUMENTS / f"{self.name}.json"

    @property
    def text(self):
        return self.path.read_text(encoding="utf-8")

    def picture(self, appearance):
        return self.name + ("" if appearance == "light" else f"-{appearance}") + ".png"

    @property
    def pictures(self):
        return [self.picture(appearance) for appearance in self.appearances]


def further(tag, topic, title, words, keys=(), appearances=("light",), warnings=()):
    return Example(f"{tag}-{topic}", title, words.strip(), tuple(keys), tuple(appearances), tuple(warnings))


def examples(tags):
    """The examples of each page, by its tag: the document of that name, then those of the table."""
    table = tomllib.loads(TABLE.read_text(encoding="utf-8"))
    unknown = set(table) - set(tags)
    if unknown:
        raise ValueError(f"{TABLE.name} has examples of {', '.join(sorted(unknown))}, for which there is no page")
    return {tag: [Example(tag), *(further(tag, **entry) for entry in table.get(tag, []))] for tag in tags}


def run(command):
    """What a command prints; what it says besides is of interest only where it fails."""
    finished = subprocess.run(command, capture_output=True, text=True, check=False)
    if finished.returncode != 0:
        sys.exit(finished.stderr)
    return finished.stdout


def check(program, shown):
    """Each document must be clean but for the warnings that it is there to show."""
    command = [program, "check", "--size", "158x158", *PICTURES]
    clean = [example.path for example in shown if not example.warnings]
    run([*command, *clean, "--strict"])
    for example in (example for example in shown if example.warnings):
        answer = json.loads(run([*command, example.path, "--format", "json"]))
        codes = {found["code"] for document in answer["documents"] for found in document["diagnostics"]}
        if codes != set(example.warnings):
            raise ValueError(f"{example.path.name}: expected {set(example.warnings)}, found {codes}")


def drawn(program, shown, into):
    """Draws the examples and gives the pictures by their file's name."""
    check(program, shown)
    pictures = {}
    for appearance, look in LOOKS.items():
        seen = [example for example in shown if appearance in example.appearances]
        folder = pathlib.Path(into) / appearance
        folder.mkdir()
        run([program, "render", *(example.path for example in seen), "-o", folder, *OPTIONS, *look, *SETTINGS, *PICTURES])
        for example in seen:
            pictures[example.picture(appearance)] = (folder / f"{example.name}.png").read_bytes()
    return pictures


def definition(reference):
    return reference.removeprefix("#/$defs/")


def references(rule):
    """The definitions that a key's value may be one of."""
    return [definition(one["$ref"]) for one in (rule, *rule.get("anyOf", [])) if "$ref" in one]


def parts(schema, record):
    """The records in a record that are neither nodes nor modifiers, and so stand on its page."""
    names = [name for rule in schema["$defs"][record]["properties"].values() for name in references(rule)]
    return [name for name in names if "." not in name and name not in ("node", "modifier")
            and "properties" in schema["$defs"][name]]


def records(schema, rule, value):
    """The records that a key's value holds, each with its name."""
    if isinstance(value, list):
        return [found for one in value for found in records(schema, rule.get("items", {}), one)]
    if not isinstance(value, dict):
        return []
    names = references(rule)
    return [(f"{name}s.{value['type']}" if name in ("node", "modifier") else name, value) for name in names
            if "properties" in schema["$defs"][name]]


def walk(schema, name, record):
    """A record of a document and those inside, each with its name."""
    yield name, record
    rules = schema["$defs"][name]["properties"]
    for key in record.keys() & rules.keys():
        for inner, value in records(schema, rules[key], record[key]):
            yield from walk(schema, inner, value)


def all_records(schema, document):
    return [found for node in document["nodes"].values() for found in walk(schema, f"nodes.{node['type']}", node)]


def keys_of(schema, example):
    """What an example uses, as pairs of a record's name and a key."""
    return {(name, key) for name, record in all_records(schema, json.loads(example.text)) for key in record}


def misnamed(schema, shown):
    """What an example is there to show but does not use, as pairs of its name and a key."""
    return [(example.name, key) for listed in shown.values() for example in listed for key in example.keys
            if all(key != used for _, used in keys_of(schema, example))]


def wanted(schema, folders):
    """What pages must show: a tag, and the name and a key of a record of its page. What every node has is wanted on the
    page of references alone."""
    nodes = [schema["$defs"][f"nodes.{tag}"]["properties"].keys() for tag in folders["nodes"]]
    common = set.intersection(*map(set, nodes)) - {"type"}
    return [(tag, name, key) for folder, tags in folders.items() for tag in tags
            for name in (f"{folder}.{tag}", *parts(schema, f"{folder}.{tag}"))
            for key in schema["$defs"][name]["properties"] if tag == "node" or key not in common]


def undrawn(schema, folders, shown):
    """The keys that none of their page's examples uses, as pairs of a tag and a key."""
    used = {tag: set().union(*(keys_of(schema, example) for example in listed)) for tag, listed in shown.items()}
    return [(tag, key) for tag, name, key in wanted(schema, folders) if (name, key) not in used[tag]]


def without(schema, example, name, key):
    """The example's document without a key of a record."""
    document = json.loads(example.text)
    for found, record in all_records(schema, document):
        if found == name:
            record.pop(key, None)
    return document


def unseen(program, schema, folders, shown):
    """The keys that change no picture of their page where they are left out, as pairs of a tag and a key. What must
    be there, and what is there to be warned of, is not looked at."""
    trials = [(tag, key, appearance, json.loads(example.text), without(schema, example, name, key))
              for tag, name, key in wanted(schema, folders)
              if key != "type" and key not in schema["$defs"][name].get("required", [])
              for example in shown[tag] if not example.warnings and (name, key) in keys_of(schema, example)
              for appearance in example.appearances]
    lines = [json.dumps({"document": json.dumps(document), "options": {"appearance": appearance}})
             for *_, appearance, with_key, without_key in trials for document in (with_key, without_key)]
    answers = subprocess.run([program, "render", "--jsonl", *OPTIONS, *SETTINGS, *PICTURES], input="\n".join(lines),
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False, text=True).stdout
    pictures = [json.loads(answer).get("picture") for answer in answers.splitlines()]
    seen = {}
    for (tag, key, *_), drawn_with, drawn_without in zip(trials, pictures[::2], pictures[1::2], strict=True):
        seen[tag, key] = seen.get((tag, key), False) or drawn_with != drawn_without
    return [pair for pair, is_seen in seen.items() if not is_seen]
