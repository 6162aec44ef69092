#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes build/nightly, a folder of Python packages with Ray, Spark and what testing on them takes; quick where it is
# there. PYTHON is the interpreter, by default python3.
set -euo pipefail
cd "$(dirname "$0")/.."

place=build/nightly
python=${PYTHON:-python3}
lists=(bindings/python/requirements.txt bindings/python/nightly-requirements.txt)
made_of="$("$python" -VV; cat "${lists[@]}")"
if [ ! -f "$place/made-of" ] || [ "$(cat "$place/made-of")" != "$made_of" ]; then
    "$python" -m venv --clear "$place"
    install=("$place/bin/pip" install --quiet --disable-pip-version-check --require-hashes)
    # Spark comes as sources alone, which setuptools, as it is listed, makes a package of: nothing else is fetched for it.
    "${install[@]}" --only-binary :all: --requirement bindings/python/requirements.txt \
        --requirement <(grep --invert-match '^pyspark==' bindings/python/nightly-requirements.txt)
    "${install[@]}" --no-build-isolation --no-deps \
        --requirement <(grep '^pyspark==' bindings/python/nightly-requirements.txt)
    printf '%s\n' "$made_of" >"$place/made-of"
fi
