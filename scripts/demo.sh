#!/usr/bin/env bash
# Renders every example, examples/NAME/document.json, to out/NAME.png and, as it looks in the dark appearance, to
# out/NAME-dark.png: demo.sh PROGRAM
# Beside a document may stand model.json, and options.txt with one line of command-line options, as they are given in
# that folder.
set -euo pipefail

program=$(realpath "$1")
top=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$top/out"

for document in "$top"/examples/*/document.json; do
    folder=$(dirname "$document")
    cd "$folder"
    options=()
    [ ! -f options.txt ] || read -ra options <options.txt || true
    [ ! -f model.json ] || options+=(--model model.json)
    for picture in out/$(basename "$folder").png out/$(basename "$folder")-dark.png; do
        appearance=light
        [[ $picture != *-dark.png ]] || appearance=dark
        "$program" render document.json -o "$top/$picture" --rounded --appearance "$appearance" "${options[@]}"
        echo "$picture"
    done
done
