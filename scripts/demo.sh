#!/usr/bin/env bash
# Renders every example, examples/NAME/document.json, to out/NAME.png and, as it looks in the dark appearance, to
# out/NAME-dark.png: demo.sh PROGRAM
# Beside a document may stand model.json, and options.txt with one line of command-line options.
set -euo pipefail

program=$1
top=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$top/out"

for document in "$top"/examples/*/document.json; do
    folder=$(dirname "$document")
    options=()
    [ ! -f "$folder/options.txt" ] || read -ra options <"$folder/options.txt" || true
    [ ! -f "$folder/model.json" ] || options+=(--model "$folder/model.json")
    for picture in out/$(basename "$folder").png out/$(basename "$folder")-dark.png; do
        appearance=light
        [[ $picture != *-dark.png ]] || appearance=dark
        "$program" render "$document" -o "$top/$picture" --rounded --appearance "$appearance" "${options[@]}"
        echo "$picture"
    done
done
