#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The Python package under the address sanitizer, with the library that `make asan` has left in build/asan:
# python_asan.sh [PYTEST-ARGS]. Leaks are not looked for: the interpreter keeps much until it ends.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/python_setup.sh
place=$PWD/build/python-asan
flags=$(sed -n 's/^CMAKE_CXX_FLAGS:[^=]*=//p' build/asan/CMakeCache.txt)
CC=clang CXX=clang++ CXXFLAGS="$flags -shared-libasan" build/python/bin/pip install --quiet \
    --disable-pip-version-check --no-build-isolation --no-deps --upgrade --target "$place/packages" \
    --config-settings=cmake.define.TAVRIN_BUILD="$PWD/build/asan" \
    --config-settings=build-dir="$place/module" ./bindings/python
LD_PRELOAD=$(clang -print-file-name="libclang_rt.asan-$(uname -m).so") ASAN_OPTIONS=detect_leaks=0 \
    PYTHONPATH=$place/packages build/python/bin/python -m pytest bindings/python/tests -k senseless "$@"
