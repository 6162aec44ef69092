#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Hand every text of a JSON parsing suite to a tavrin program: json_suite.py PROGRAM DIR

Files named y_… are JSON, n_… are not, i_… may be either. Each is tried as a model, where its name says what must
happen, and as a document, which none of them is.
"""
import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys
import tempfile

SECONDS_PER_RUN = 20
DOCUMENT = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "x"}}}'


def error_object(stderr):
    """The error that the last line of stderr holds, or None."""
    try:
        error = json.loads(stderr.decode("utf-8").strip().splitlines()[-1])["error"]
    except (ValueError, IndexError, KeyError, TypeError):
        return None
    return error if isinstance(error, dict) and "type" in error else None


def wrong_with(status, stderr, allowed, kind=None):
    """What is wrong with how a run ended, or None; `kind` is the decoding error that a failure must be."""
    if status < 0:
        return f"ended by signal {-status}"
    if status not in allowed:
        return f"exit status {status}, wanted {' or '.join(map(str, allowed))}: {stderr[:160]!r}"
    if status == 0:
        return None
    error = error_object(stderr)
    if error is None:
        return f"no error object on stderr: {stderr[:160]!r}"
    if kind and (error["type"], error.get("kind")) != ("DecodingError", kind):
        return f"wanted a DecodingError of kind {kind}, got {json.dumps(error)[:160]}"
    return None


def judge_model(name, status, stderr):
    return {
        "y": lambda: wrong_with(status, stderr, [0]),
        "n": lambda: wrong_with(status, stderr, [1], "dataCorrupted"),
        "i": lambda: wrong_with(status, stderr, [0, 1], "dataCorrupted"),
    }[name[0]]()


def judge_document(name, status, stderr):
    return wrong_with(status, stderr, [1], "dataCorrupted" if name[0] == "n" else None)


def run(program, *arguments):
    command = [program, "check", *arguments, "--errors", "json"]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=SECONDS_PER_RUN)
    return done.returncode, done.stderr


def failures_of(program, document, text):
    found = []
    for role, judge, arguments in (("model", judge_model, [document, "--model", text]),
                                   ("document", judge_document, [text])):
        try:
            wrong = judge(text.name, *run(program, *arguments))
        except subprocess.TimeoutExpired:
            wrong = f"no answer in {SECONDS_PER_RUN} s"
        if wrong:
            found.append(f"{text.name} as {role}: {wrong}")
    return found


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program = pathlib.Path(sys.argv[1]).resolve()
    texts = sorted(path for path in pathlib.Path(sys.argv[2]).resolve().glob("*.json") if path.name[:2] in ("y_", "n_", "i_"))
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        document = pathlib.Path(folder) / "document.json"
        document.write_text(DOCUMENT, encoding="utf-8")
        failures = [line for found in pool.map(lambda text: failures_of(program, document, text), texts) for line in found]
    print("\n".join(failures), end="\n" if failures else "")
    print(f"JSON suite: {len(texts)} texts, {len(failures)} failures")
    sys.exit(1 if failures or not texts else 0)


if __name__ == "__main__":
    main()
