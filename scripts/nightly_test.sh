#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Python package, with Ray and Spark, in build/nightly, and tests it on these: nightly_test.sh [PYTEST-ARGS]
# The library that it links is the one in build/release.
set -euo pipefail
cd "$(dirname "$0")/.."

place=build/nightly
scripts/nightly_setup.sh
"$place/bin/pip" install --quiet --disable-pip-version-check --no-build-isolation --no-deps ./bindings/python
"$place/bin/pytest" bindings/python/tests/nightly -o filterwarnings=default --disable-warnings "$@"
