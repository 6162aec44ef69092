#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What the C library promises to programs that are built with it: abi.sh check|update LIBRARY. It is kept in
# bindings/c/abi.xml; `check` fails where something was taken away or changed, `update` writes what there is now.
set -euo pipefail
kept=$(dirname "$0")/../bindings/c/abi.xml
case $1 in
check) abidiff --no-added-syms --headers-dir2 "$(dirname "$0")/../bindings/c/tavrin" "$kept" "$2" ;;
update)
    abidw --exported-interfaces-only --drop-private-types --headers-dir "$(dirname "$0")/../bindings/c/tavrin" \
        --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed "$2" |
        sed "s#$(cd "$(dirname "$0")/.." && pwd)/##g" >"$kept"
    ;;
*) echo "abi.sh check|update LIBRARY" >&2 && exit 2 ;;
esac
