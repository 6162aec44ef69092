#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes a folder of Python packages, quick where it is there: python_setup.sh [FOLDER REQUIREMENTS], by default
# build/python with what the Python door is built and tested with. PYTHON is the interpreter, by default python3.
set -euo pipefail
cd "$(dirname "$0")/.."

place=${1:-build/python}
requirements=${2:-bindings/python/requirements.txt}
python=${PYTHON:-python3}
made_of="$("$python" -VV; cat "$requirements")"
if [ ! -f "$place/made-of" ] || [ "$(cat "$place/made-of")" != "$made_of" ]; then
    "$python" -m venv --clear "$place"
    "$place/bin/pip" install --quiet --disable-pip-version-check --require-hashes --only-binary :all: \
        --requirement "$requirements"
    printf '%s\n' "$made_of" >"$place/made-of"
fi
