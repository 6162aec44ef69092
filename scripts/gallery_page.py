# SPDX-License-Identifier: MIT
"""The page of all examples, made by demo.py: pictures, document, model and view tree side by side.

It needs nothing but the pictures beside it, and everything that comes from an example is escaped.
"""
import html
import json
import pathlib
import re

STYLE = pathlib.Path(__file__).with_suffix(".css")
TOKEN = re.compile(r'("(?:[^"\\]|\\.)*")(\s*:)?|(-?\d[\d.eE+-]*|\btrue\b|\bfalse\b|\bnull\b)')


def escape(text):
    return html.escape(str(text), quote=True)


def highlighted(text):
    """JSON as HTML, with its keys, texts and other scalars marked."""
    out, end = [], 0
    for token in TOKEN.finditer(text):
        out.append(escape(text[end : token.start()]))
        string, colon, scalar = token.groups()
        tag = "u" if scalar else "b" if colon else "i"
        out.append(f"<{tag}>{escape(scalar or string)}</{tag}>{colon or ''}")
        end = token.end()
    return "".join(out) + escape(text[end:])


def pretty(value, indent=0, width=100):
    """JSON in which what fits on a line stands on one."""
    line = json.dumps(value, ensure_ascii=False)
    if not isinstance(value, (dict, list)) or len(line) + indent <= width:
        return line
    inner = "\n" + " " * (indent + 2)
    if isinstance(value, list):
        begin, parts, end = "[", [pretty(item, indent + 2, width) for item in value], "]"
    else:
        parts = [f"{json.dumps(key, ensure_ascii=False)}: {pretty(item, indent + 2, width)}"
                 for key, item in value.items()]
        begin, end = "{", "}"
    return begin + inner + ("," + inner).join(parts) + "\n" + " " * indent + end


def figure(example, picture, appearance):
    file, (width, height) = escape(picture[appearance]), picture["size"]
    alt = escape(f"{example['name']}, {picture['family']}, {appearance}")
    return (f'<figure><a href="{file}"><img src="{file}" srcset="{file} 3x" width="{width:g}" height="{height:g}" '
            f'alt="{alt}" class="{escape(picture["family"])}" loading="lazy"></a>'
            f'<figcaption>{escape(picture["family"])}</figcaption></figure>')


def stage(example, appearance):
    figures = "\n".join(figure(example, picture, appearance) for picture in example["pictures"])
    return f'<div class="stage {appearance}">\n{figures}\n</div>'


def pane(example, title, text):
    label = escape(f"{title} of {example['name']}")
    return (f'<div><h3>{escape(title)}</h3>'
            f'<pre tabindex="0" role="region" aria-label="{label}">{highlighted(text)}</pre></div>')


def targets(example):
    if not example["targets"]:
        return ""
    rows = "\n".join(
        f"<tr><td>{escape(target['kind'])}</td><td>{escape(target['destination'])}</td>"
        f"<td>{escape(', '.join(f'{number:g}' for number in target['frame']))}</td></tr>"
        for target in example["targets"])
    return (f"<table><caption>Tap targets in {escape(example['targets_family'])}</caption>"
            f'<tr><th scope="col">Kind</th><th scope="col">Opens</th><th scope="col">x, y, width, height</th></tr>\n'
            f"{rows}</table>")


def section(example):
    name = escape(example["name"])
    return "\n".join([
        f'<section id="{name}" aria-labelledby="{name}-title">',
        f'<h2 id="{name}-title">{name}</h2>',
        f'<p class="options"><code>{escape(example["settings"].strip())}</code></p>',
        '<div class="stages">', stage(example, "light"), stage(example, "dark"), "</div>",
        '<div class="panes">',
        pane(example, "Document", example["document"]),
        pane(example, "Model", example["model"] or "none"),
        pane(example, "View tree", pretty(example["tree"])),
        "</div>", targets(example), "</section>"])


def page(examples):
    names = [escape(example["name"]) for example in examples]
    links = "\n".join(f'<li><a href="#{name}">{name}</a></li>' for name in names)
    pictures = 2 * sum(len(example["pictures"]) for example in examples)
    return f"""<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Tavrin: the examples</title>
<style>
{STYLE.read_text()}</style>
</head>
<body>
<header>
<h1>Tavrin: the examples</h1>
<p>{len(examples)} documents, {pictures} pictures: each document in every widget family it is meant for, light and dark.</p>
</header>
<nav aria-label="Examples"><ul>
{links}
</ul></nav>
<main>
{chr(10).join(section(example) for example in examples)}
</main>
</body>
</html>
"""
