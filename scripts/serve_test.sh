#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Tests the running server with what build/serve holds: serve_test.sh [PYTEST-ARGS], such as --soak 600 --fuzz 300.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/python_setup.sh build/serve tests/serve/live/requirements.txt
build/serve/bin/pytest -p no:cacheprovider tests/serve/live "$@"
