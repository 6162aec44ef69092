#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Python package, with what it is tested with, in build/python, and tests it: python_door.sh [PYTEST-ARGS]
# PYTHON is the interpreter, by default python3. The library that it links is the one in build/release.
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
"$place/bin/pip" install --quiet --disable-pip-version-check --no-build-isolation --no-deps ./bindings/python
"$place/bin/pytest" bindings/python/tests "$@"
