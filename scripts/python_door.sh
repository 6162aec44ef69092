#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Python package, with what it is tested with, in build/python, and tests it: python_door.sh [PYTEST-ARGS]
# The library that it links is the one in build/release.
set -euo pipefail
cd "$(dirname "$0")/.."

place=build/python
scripts/python_setup.sh
"$place/bin/pip" install --quiet --disable-pip-version-check --no-build-isolation --no-deps ./bindings/python
"$place/bin/pytest" bindings/python/tests "$@"
