#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Installs the packages in an empty Debian 12 and uses them: package_test.py PACKAGES PROGRAM SCRATCH

There the wheel and the npm package must draw with nothing but an interpreter and fonts, and without fonts name the
packages that have them. The installed program must draw every example to the bytes that PROGRAM draws here, and a
program in C must build against the installed library and draw. Lintian must find no errors in the packages. Where nobody may make an empty
Debian (it takes root, and Debian's packages from the network) only Lintian looks, and a word says so.
"""
import hashlib
import os
import pathlib
import shutil
import subprocess
import sys
import tarfile
import zipfile

TOP = pathlib.Path(__file__).resolve().parent.parent
RELEASE = "bookworm"
ENVIRONMENT = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND": "noninteractive", "HOME": "/root"}
MOMENT = ["--date", "2026-11-21T08:05:00Z", "--time-zone", "UTC"]


def run(*command, **more):
    return subprocess.run([str(word) for word in command], check=True, **more)


class NoDebian(Exception):
    """Why no empty Debian can be made here."""


class Root:
    """A folder that holds an empty Debian, in which commands run."""

    def __init__(self, scratch):
        self.path = scratch / RELEASE
        base = scratch / f"{RELEASE}.tar"
        if not base.exists():
            shutil.rmtree(self.path, ignore_errors=True)
            done = subprocess.run(["debootstrap", "--variant=minbase", RELEASE, self.path], capture_output=True,
                                  encoding="utf-8")
            if done.returncode != 0:
                raise NoDebian(f"debootstrap says {done.stdout.splitlines()[-1:] or done.stderr}")
            run("tar", "--create", "--file", f"{base}.part", "--directory", self.path, ".")
            pathlib.Path(f"{base}.part").rename(base)
        shutil.rmtree(self.path, ignore_errors=True)
        self.path.mkdir(parents=True)
        run("tar", "--extract", "--file", base, "--directory", self.path)

    def run(self, *command, **more):
        return run("chroot", self.path, *command, env=ENVIRONMENT, **more)

    def install(self, *packages):
        done = subprocess.run(
            ["chroot", self.path, "apt-get", "install", "--yes", "--quiet", "--option", "Acquire::Retries=3", *packages],
            env=ENVIRONMENT, capture_output=True, encoding="utf-8")
        if done.returncode != 0:
            sys.exit(f"cannot install {' '.join(packages)}:\n{done.stdout}{done.stderr}")


PYTHON = """
import sys
sys.path.insert(0, "/tavrin/wheel")
import tavrin
with open("/tavrin/examples/agenda/model.json") as model:
    widget = tavrin.Document.open("/tavrin/examples/agenda/document.json").widget(
        model.read(), date="{date}", time_zone="{zone}", fetch="none")
try:
    sys.stdout.buffer.write(widget.encode())
except tavrin.TavrinError as error:
    sys.exit(error.message)
"""
NODE = """
import fs from "node:fs";
import {{ Document }} from "/tavrin/package/index.js";
const document = await Document.open("/tavrin/examples/agenda/document.json");
const model = fs.readFileSync("/tavrin/examples/agenda/model.json", "utf8");
const widget = await document.widget(model, {{ date: "{date}", timeZone: "{zone}", fetch: "none" }});
process.stdout.write(await widget.encode());
"""


def try_wheel_and_npm(root, here, packages, expected):
    """What they carry and what they ask for."""
    def drawn(interpreter, name, program, **more):
        (here / name).write_text(program.format(date=MOMENT[1], zone=MOMENT[3]))
        return root.run(interpreter, f"/tavrin/{name}", stdout=subprocess.PIPE, **more).stdout

    with zipfile.ZipFile(next(packages.glob("tavrin-*.whl"))) as archive:
        archive.extractall(here / "wheel")
    with tarfile.open(next(packages.glob("tavrin-[0-9.]*.tgz"))) as archive:
        archive.extractall(here, filter="data")
    root.install("python3-minimal", "libpython3-stdlib", "tzdata")
    try:
        drawn("python3", "draw.py", PYTHON, stderr=subprocess.PIPE)
        sys.exit("without fonts the wheel draws all the same")
    except subprocess.CalledProcessError as error:
        if b"fonts-inter" not in error.stderr:
            sys.exit(f"without fonts the wheel does not say which it needs: {error.stderr.decode()}")
    root.install("fonts-inter", "fonts-noto-color-emoji")
    if drawn("python3", "draw.py", PYTHON) != expected:
        sys.exit("the wheel draws agenda otherwise")
    root.install("nodejs")
    if drawn("node", "draw.mjs", NODE) != expected:
        sys.exit("the npm package draws agenda otherwise")


def picture(run_program, folder):
    """The picture of an example, drawn in its folder by a program that takes words."""
    model = ["--model", f"{folder}/model.json"]
    return run_program("render", f"{folder}/document.json", *model, *MOMENT, "--fetch", "none", "-o", "-",
                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout  # pictures that may not be fetched


def missing_for_debian():
    if os.geteuid() != 0:
        return "it takes root"
    lacking = [command for command in ("debootstrap", "chroot", "tar") if not shutil.which(command)]
    return f"{', '.join(lacking)} is not installed" if lacking else None


def main():
    packages, program, scratch = (pathlib.Path(word).resolve() for word in sys.argv[1:4])
    debs = sorted(packages.glob("*.deb"))
    if len(debs) != 3:
        sys.exit(f"there should be three Debian packages in {packages}, not {len(debs)}")
    run("lintian", "--fail-on", "error", *debs)
    if reason := missing_for_debian():
        print(f"No empty Debian was made: {reason}.")
        return
    scratch.mkdir(parents=True, exist_ok=True)
    try:
        root = Root(scratch)
    except NoDebian as reason:
        print(f"No empty Debian was made: {reason}.")
        return
    root.run("apt-get", "update", "--quiet", stdout=subprocess.DEVNULL)  # the base may be an old one
    here = root.path / "tavrin"
    here.mkdir()
    for deb in debs:
        shutil.copy(deb, here)
    shutil.copytree(TOP / "examples", here / "examples")
    shutil.copy(TOP / "bindings" / "c" / "tests" / "host.c", here)

    agenda = picture(lambda *words, **more: run(program, *words, **more), TOP / "examples" / "agenda")
    try_wheel_and_npm(root, here, packages, agenda)

    root.install(*[f"/tavrin/{deb.name}" for deb in debs if deb.name.startswith("tavrin_")])
    drawn = 0
    for folder in sorted(path.parent for path in (TOP / "examples").glob("*/document.json")):
        theirs = picture(lambda *words, **more: root.run("tavrin", *words, **more), f"/tavrin/examples/{folder.name}")
        ours = picture(lambda *words, **more: run(program, *words, **more), folder)
        if hashlib.sha256(theirs).digest() != hashlib.sha256(ours).digest():
            sys.exit(f"the installed program draws {folder.name} otherwise")
        drawn += 1
    root.run("tavrin", "check", "/tavrin/examples/agenda/document.json", "--model",
             "/tavrin/examples/agenda/model.json", "--fetch", "none")

    root.install(*[f"/tavrin/{deb.name}" for deb in debs], "gcc", "libc6-dev", "pkg-config")
    root.run("sh", "-c", "cc -std=c99 -Wall -Wextra -pedantic -Werror /tavrin/host.c"
                         " $(pkg-config --cflags --libs tavrin-c) -o /tavrin/host")
    root.run("/tavrin/host", "draw", "/tavrin/examples/agenda/document.json", "/tavrin/examples/agenda/model.json",
             "png", "/tavrin/agenda.png", "date", MOMENT[1], "time_zone", MOMENT[3])
    if (here / "agenda.png").read_bytes() != agenda:
        sys.exit("a program in C draws agenda otherwise")
    shutil.rmtree(root.path)
    print(f"In an empty Debian the packages draw {drawn} examples, and one from C, Python and Node, with the bytes of"
          f" {program.name}.")


if __name__ == "__main__":
    main()
