# SPDX-License-Identifier: MIT
"""A folder of shards, in which every file is whole and a run may go on where another one ended."""
import collections
import fcntl
import hashlib
import io
import json
import os
import pathlib
import tarfile
from collections.abc import Iterable
from typing import Any, Self

from tavrin._shard_rows import Sample

MANIFEST = "manifest.json"
_UNFINISHED = "unfinished.json"  # the manifest of a run that has not come to its end
_MEMBERS = {"name": str, "first": int, "rows": int, "bytes": int, "sha256": str, "errors": dict}


class ShardFolder:
    """What a run finds in a folder and leaves there. One at a time has it.

    1. A shard is written to unfinished.tar, synced and renamed, so that one that has its name is whole.
    2. Then it is entered in unfinished.json, and so is every shard that was found there from an earlier run.
    3. In the end unfinished.json is renamed to manifest.json. A run that finds something missing renames it back.
    """

    def __init__(self, folder: pathlib.Path, recipe: dict[str, Any]) -> None:
        self._folder, self._recipe = folder, recipe
        self._entries: list[dict[str, Any]] = []

    def __enter__(self) -> Self:
        self._folder.mkdir(parents=True, exist_ok=True)
        self._descriptor = os.open(self._folder, os.O_RDONLY | os.O_DIRECTORY)
        try:
            fcntl.flock(self._descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
            self._found = self._read()
        except BlockingIOError as error:
            os.close(self._descriptor)
            raise BlockingIOError(error.errno, "another process is writing shards into it", str(self._folder)) from None
        except BaseException:
            os.close(self._descriptor)
            raise
        return self

    def __exit__(self, *_: object) -> None:
        os.close(self._descriptor)

    def has(self, start: int, name: str) -> bool:
        """Whether a shard is there, from an earlier run."""
        entry = self._found.get(start)
        if entry is None:
            return False
        if entry["name"] != name:
            raise self._foreign(entry)
        file = self._folder / name
        if not file.is_file() or file.stat().st_size != entry["bytes"]:
            return False
        self._entries.append(entry)
        return True

    def add(self, start: int, name: str, samples: Iterable[Sample]) -> None:
        """Writes a shard."""
        manifest = self._folder / MANIFEST
        if manifest.exists():
            os.replace(manifest, self._folder / _UNFINISHED)
        unfinished = self._folder / "unfinished.tar"
        try:
            with open(unfinished, "w+b") as file:
                rows, errors = _write_tar(file, samples)
                file.flush()
                os.fsync(file.fileno())
                file.seek(0)
                sha256 = hashlib.file_digest(file, "sha256").hexdigest()
                size = file.tell()
            os.replace(unfinished, self._folder / name)
        finally:
            unfinished.unlink(missing_ok=True)
        self._entries.append({"name": name, "first": start, "rows": rows, "bytes": size, "sha256": sha256,
                              "errors": errors})
        self._enter()

    def finish(self) -> dict[str, Any]:
        """Writes the manifest, and gives it."""
        firsts = {entry["first"] for entry in self._entries}
        for start, entry in self._found.items():
            if start not in firsts:
                raise self._foreign(entry)
        self._enter()
        os.replace(self._folder / _UNFINISHED, self._folder / MANIFEST)
        os.fsync(self._descriptor)
        return self._manifest(self._entries)

    def _manifest(self, entries: list[dict[str, Any]]) -> dict[str, Any]:
        errors: collections.Counter[str] = collections.Counter()
        for entry in entries:
            errors.update(entry["errors"])
        return {**self._recipe, "rows": sum(entry["rows"] for entry in entries),
                "bytes": sum(entry["bytes"] for entry in entries), "errors": dict(sorted(errors.items())),
                "shards": entries}

    def _enter(self) -> None:
        """Enters the shards of this run, and those of earlier ones that it has not come to."""
        firsts = {entry["first"] for entry in self._entries}
        rest = [entry for start, entry in self._found.items() if start not in firsts]
        new = self._folder / f"{_UNFINISHED}.new"
        with open(new, "w", encoding="utf-8") as file:
            json.dump(self._manifest(self._entries + rest), file, ensure_ascii=False, indent=1)
            file.write("\n")
            file.flush()
            os.fsync(file.fileno())
        os.replace(new, self._folder / _UNFINISHED)
        os.fsync(self._descriptor)

    def _read(self) -> dict[int, dict[str, Any]]:
        """The shards that were entered, by their first rows."""
        for file in (self._folder / MANIFEST, self._folder / _UNFINISHED):
            if file.exists():
                try:
                    entries = json.loads(file.read_bytes())["shards"]
                    if all(isinstance(entry[name], kind) for entry in entries for name, kind in _MEMBERS.items()):
                        return {entry["first"]: entry for entry in entries}
                except (ValueError, KeyError, TypeError):
                    pass
                raise FileExistsError(f"{file} is there, but is no manifest of shards")
        return {}

    def _foreign(self, entry: dict[str, Any]) -> FileExistsError:
        return FileExistsError(f"{self._folder / entry['name']} is there, of other rows or another drawing; write into "
                               "another folder, or empty this one")


def _write_tar(file: io.BufferedRandom, samples: Iterable[Sample]) -> tuple[int, dict[str, int]]:
    """Writes the members, owned by nobody and of no time, and gives how many rows there are, and how many failed by the
    types of their errors."""
    errors: collections.Counter[str] = collections.Counter()
    rows = 0
    with tarfile.open(fileobj=file, mode="w", format=tarfile.PAX_FORMAT) as tar:
        for sample in samples:
            rows += 1
            if sample.error is not None:
                errors[sample.error] += 1
            for suffix, data in ((sample.suffix, sample.picture), ("json", sample.text)):
                if data is not None:
                    member = tarfile.TarInfo(f"{sample.name}.{suffix}")
                    member.size = len(data)
                    tar.addfile(member, io.BytesIO(data))
    return rows, dict(sorted(errors.items()))
