#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing of the named lists: setup.sh [program] [tests] [checks]. Silent and quick when nothing is;
# else says first what it fetches. Of a package marked "command" its command will do, wherever it comes from.
set -euo pipefail
cd "$(dirname "$0")/packages"

lists=$(sed 's/#.*//' "${@/%/.txt}")
mapfile -t wanted < <(awk 'NF { print $1 }' <<<"$lists")
mapfile -t by_command < <(awk '$2 == "command" { print $1, $3 }' <<<"$lists")
installed=$(dpkg-query --show --showformat '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)

for line in "${by_command[@]}"; do
    read -r package command <<<"$line"
    if command -v "$command" >/dev/null; then installed+=$'\n'"installed $package"; fi
done

missing=()
for package in "${wanted[@]}"; do
    grep --quiet --line-regexp --fixed-strings "installed $package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: run as root, or install sudo" >&2; exit 1; }
    as_root=(sudo)
fi
"${as_root[@]}" apt-get update
install=(apt-get install --yes --no-install-recommends "${missing[@]}")
echo "Installing ${missing[*]}"
"${install[@]}" --print-uris | awk '/^.[a-z]+:/ { files += 1; bytes += $3 }
    END { printf "With what they need: %d packages, %.0f MB to fetch\n", files, bytes / 1e6 }'
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive "${install[@]}"
