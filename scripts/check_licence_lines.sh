#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Every source names its licence; prints those that do not.
set -euo pipefail
cd "$(dirname "$0")/.."

unnamed=$(git ls-files '*.h' '*.cpp' '*.ts' '*.mjs' '*.py' '*.sh' '*.cmake' '*CMakeLists.txt' Makefile |
    xargs grep --files-without-match 'SPDX-License-Identifier: MIT' || true)
[ -z "$unnamed" ] || { printf 'No line "SPDX-License-Identifier: MIT" in\n%s\n' "$unnamed" >&2; exit 1; }
