#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes build/python, a folder of Python packages with what the Python door is built and tested with; quick where it is
# there. PYTHON is the interpreter, by default python3.
set -euo pipefail
cd "$(dirname "$0")/.."

place=build/python
python=${PYTHON:-python3}
made_of="$("$python" -VV; cat bindings/python/requirements.txt)"
if [ ! -f "$place/made-of" ] || [ "$(cat "$place/made-of")" != "$made_of" ]; then
    "$python" -m venv --clear "$place"
    "$place/bin/pip" install --quiet --disable-pip-version-check --require-hashes --only-binary :all: \
        --requirement bindings/python/requirements.txt
    printf '%s\n' "$made_of" >"$place/made-of"
fi
