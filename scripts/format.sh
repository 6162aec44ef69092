#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs clang-format over every source with the given arguments: -i, or --dry-run --Werror
set -euo pipefail

cd "$(dirname "$0")/.."
find tavrin cli bindings tests bench fuzz -name node_modules -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 -n 8 -P "$(nproc)" clang-format "$@"
