#!/usr/bin/env bash
# Installs the packages of debian-packages.txt that are missing; silent and quick when none is. Of a package marked
# "command" its command will do, wherever it comes from.
set -euo pipefail

list=$(dirname "$0")/debian-packages.txt
mapfile -t wanted < <(sed 's/#.*//' "$list" | awk 'NF { print $1 }')
mapfile -t by_command < <(sed 's/#.*//' "$list" | awk '$2 == "command" { print $1, $3 }')
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

echo "Installing ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: run as root, or install sudo" >&2; exit 1; }
    as_root=(sudo)
fi
"${as_root[@]}" apt-get update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends "${missing[@]}"
