#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the manual pages from what the program says of itself: make_man.py PROGRAM OUT

OUT gets tavrin.1 and tavrin-VERB.1 for each verb.
"""
import pathlib
import re
import subprocess
import sys

HEADING = re.compile(r"^(\w[\w ]*):$")
ENTRY = re.compile(r"^  (-\S*(?: \S+)?)(?:\s{2,}(.*))?$")
VERB = re.compile(r"^  (\w+)\s{2,}(.*)$")


def escaped(text):
    """Text as troff takes it: hyphens that are typed stay hyphens, and no line begins with a request."""
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq")
    return "\\&" + text if text.startswith((".", "'")) else text


def options(lines):
    """The entries of a list of options: what is typed, then what it does on this or the next lines."""
    entries = []
    for line in lines:
        if match := ENTRY.match(line):
            entries.append([match[1], [match[2]] if match[2] else []])
        elif line.strip() and entries:
            entries[-1][1].append(line.strip())
    for typed, words in entries:
        yield f".TP\n.B {escaped(typed.replace(',', ', '))}\n{escaped(' '.join(words))}"


def verbs(lines):
    for line in lines:
        if match := VERB.match(line):
            yield f".TP\n.BR tavrin\\-{match[1]} (1)\n{escaped(match[2])}"


def plain(lines):
    """Paragraphs, and indented lines as they stand."""
    paragraph = False
    for line in lines:
        if line.startswith("  "):
            yield f".nf\n{escaped(line.strip())}\n.fi"
        elif line.strip():
            yield ("" if paragraph else ".PP\n") + escaped(line.strip())
        paragraph = bool(line.strip()) and not line.startswith("  ")


def sections(text):
    """The summary, the usage, and each heading with its lines; lines under none come under "Description"."""
    lines = text.splitlines()
    summary = lines[0].rstrip(".")
    usage = next(line.removeprefix("Usage: ") for line in lines if line.startswith("Usage: "))
    found, heading = {}, None
    for line in lines[1:]:
        if line.startswith("Usage: "):
            continue
        if match := HEADING.match(line):
            heading = match[1]
        elif heading and line and not line.startswith(" ") and heading != "Description":
            heading = "Description"
        if heading and not HEADING.match(line):
            found.setdefault(heading, []).append(line)
    return summary, usage, found


def page(name, text, version):
    summary, usage, found = sections(text)
    parts = [f'.TH {name.upper()} 1 "" "tavrin {version}" "User Commands"',
             f".SH NAME\n{escaped(name)} \\- {escaped(summary[0].lower() + summary[1:])}",
             f".SH SYNOPSIS\n.B {escaped(usage)}"]
    if "Description" in found:
        parts += [".SH DESCRIPTION", *plain(found.pop("Description"))]
    for heading, lines in found.items():
        write = {"Options": options, "Verbs": verbs}.get(heading, plain)
        parts += [f".SH {heading.upper()}", *write(lines)]
    if name != "tavrin":
        parts.append(".SH SEE ALSO\n.BR tavrin (1)")
    return "\n".join(parts) + "\n"


def main():
    program, out = sys.argv[1], pathlib.Path(sys.argv[2])

    def say(*words):
        return subprocess.run([program, *words], check=True, capture_output=True, encoding="utf-8").stdout

    out.mkdir(parents=True, exist_ok=True)
    version = say("--version").split()[-1]
    overview = say("--help")
    (out / "tavrin.1").write_text(page("tavrin", overview, version))
    for verb in (match[1] for line in sections(overview)[2]["Verbs"] if (match := VERB.match(line))):
        (out / f"tavrin-{verb}.1").write_text(page(f"tavrin-{verb}", say(verb, "--help"), version))


if __name__ == "__main__":
    main()
