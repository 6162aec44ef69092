#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes a wheel and an npm package that carry the libraries which a plain Debian 12 lacks: package_doors.py OUT

It runs in build/python, which scripts/python_setup.sh makes, and takes the addon that `npm install` in bindings/node built.
What the wheel has to carry auditwheel decides; the addon carries the same libraries, since it is linked as the wheel's
module is.
"""
import base64
import hashlib
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile

import auditwheel.main
import auditwheel.policy
from auditwheel.libc import Libc

TOP = pathlib.Path(__file__).resolve().parent.parent
PLATFORM = "manylinux_2_36_x86_64"  # Debian 12's libc
NODE = TOP / "bindings" / "node"
# What wheels may take for granted on desktops, and a plain Debian has not.
LACKING = re.compile(r"lib(glib|gobject|gthread|X|ICE|SM|GL|expat|nsl|atomic)")
CARRIED = re.compile(r"tavrin\.libs/lib")  # of a wheel's files


def run(*command, **more):
    return subprocess.run([str(word) for word in command], check=True, encoding="utf-8", **more)


def wheel(out, scratch):
    """The wheel with its libraries, and the notices of these in it."""
    run(sys.executable, "-m", "pip", "wheel", "--quiet", "--disable-pip-version-check", "--no-deps",
        "--no-build-isolation", "--wheel-dir", scratch, TOP / "bindings" / "python")
    made = next(scratch.glob("tavrin-*.whl"))
    policies = json.loads(auditwheel.policy._POLICY_JSON_MAP[Libc.GLIBC].read_text())
    for policy in policies:
        policy["lib_whitelist"] = [name for name in policy["lib_whitelist"] if not LACKING.match(name)]
    (scratch / "policies.json").write_text(json.dumps(policies))
    auditwheel.policy._POLICY_JSON_MAP[Libc.GLIBC] = scratch / "policies.json"
    sys.argv = ["auditwheel", "repair", "--strip", "--only-plat", "--plat", PLATFORM, "--wheel-dir", str(out), str(made)]
    if code := auditwheel.main.main():
        sys.exit(code)
    repaired = next(out.glob(f"tavrin-*{PLATFORM}.whl"))
    with zipfile.ZipFile(repaired) as archive:
        libraries = [pathlib.Path(name).name for name in archive.namelist() if CARRIED.match(name)]
        info = next(name.rpartition("/")[0] for name in archive.namelist() if name.endswith(".dist-info/WHEEL"))
    notices = notices_of(libraries)
    add_to_wheel(repaired, f"{info}/licenses/LICENSES.txt", notices.encode())
    return repaired, notices


def own_name(library):
    """libcairo.so.2.11600.0 of libcairo-207b61c5.so.2.11600.0, as auditwheel calls it."""
    return re.sub(r"-[0-9a-f]{8}(?=\.)", "", library, count=1)


def notices_of(libraries):
    """This project's licence, and those of the Debian packages that the libraries come from."""
    packages = set()
    for library in libraries:
        found = run("dpkg-query", "--search", f"*/{own_name(library)}", stdout=subprocess.PIPE).stdout
        packages.add(found.split(":")[0])
    texts = [(TOP / "LICENSE").read_text()]
    for package in sorted(packages):
        texts.append(f"---- {package}\n\n{pathlib.Path(f'/usr/share/doc/{package}/copyright').read_text()}")
    return "\n".join(texts)


def add_to_wheel(path, name, data):
    """Adds a file to a wheel, and to the list of files in it."""
    with zipfile.ZipFile(path) as archive:
        entries = [(entry, archive.read(entry)) for entry in archive.infolist()]
    digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for entry, content in entries:
            if entry.filename.endswith(".dist-info/RECORD"):
                content = f"{name},sha256={digest},{len(data)}\n".encode() + content
            archive.writestr(entry, content, zipfile.ZIP_DEFLATED)
        archive.writestr(name, data)


def needed(library):
    return run("patchelf", "--print-needed", library, stdout=subprocess.PIPE).stdout.split()


def npm_package(out, scratch, made_wheel, notices):
    """The addon beside the wheel's libraries, which go by the names that auditwheel gave them."""
    folder = scratch / "node"
    shutil.copytree(NODE, folder, ignore=shutil.ignore_patterns("node_modules", "build", "test", "measure", "source"))
    place = folder / "prebuilt" / "linux-x64"
    place.mkdir(parents=True)
    addon = place / "tavrin.node"
    shutil.copy(NODE / "build" / "Release" / "tavrin.node", addon)
    with zipfile.ZipFile(made_wheel) as archive:
        for name in archive.namelist():
            if CARRIED.match(name):
                (place / pathlib.Path(name).name).write_bytes(archive.read(name))
    run("strip", "--strip-unneeded", addon)
    for library in needed(addon):
        for file in place.glob("lib*"):
            if f"{own_name(file.name)}.".startswith(f"{library}."):
                run("patchelf", "--replace-needed", library, file.name, addon)
    run("patchelf", "--set-rpath", "$ORIGIN", addon)
    package = json.loads((folder / "package.json").read_text())
    package.pop("devDependencies")
    package["scripts"] = {"install": package["scripts"]["install"]}
    package["files"] = [*package["files"], "LICENSES.txt"]
    (folder / "package.json").write_text(json.dumps(package, indent=2) + "\n")
    (folder / "LICENSES.txt").write_text(notices)
    run("npm", "pack", "--silent", "--pack-destination", out.resolve(), cwd=folder, stdout=subprocess.DEVNULL)


def main():
    out = pathlib.Path(sys.argv[1])
    out.mkdir(parents=True, exist_ok=True)
    for old in [*out.glob("tavrin-*.whl"), *out.glob("tavrin-*.tgz")]:
        old.unlink()
    with tempfile.TemporaryDirectory() as scratch:
        npm_package(out, pathlib.Path(scratch), *wheel(out, pathlib.Path(scratch)))


if __name__ == "__main__":
    main()
