#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs every fuzz target, so that all together take about SECONDS: fuzz.sh BUILD_DIR SECONDS
# Inputs that are found are kept in BUILD_DIR/corpus; a crash leaves its input in BUILD_DIR and ends the run with an error.
set -euo pipefail

build=$(cd "$1" && pwd)
seconds=$2
top=$(cd "$(dirname "$0")/.." && pwd)
jobs=$(nproc)
shopt -s nullglob

targets=()
for program in "$build"/fuzz/fuzz_*; do
    [ ! -f "$program" ] || [ ! -x "$program" ] || targets+=("${program##*/fuzz_}")
done
[ ${#targets[@]} -gt 0 ] || { echo "fuzz: there are no targets" >&2; exit 1; }
rounds=$(((${#targets[@]} + jobs - 1) / jobs))
"$top/scripts/fuzz_seeds.py" "$build/seeds"

fuzz_one() {
    local name=$1 found=$build/corpus/$1 log=$build/fuzz_$1.log
    local arguments=(-max_total_time="$each" -timeout=10 -rss_limit_mb=2048 -artifact_prefix="$build/fuzz_$name-")
    mkdir -p "$found"
    local corpora=("$found")
    [ ! -d "$top/fuzz/corpus/$name" ] || corpora+=("$top/fuzz/corpus/$name")
    case $name in
        decode_*) arguments+=(-dict="$top/fuzz/pictures.dict") ;;
        animate | diagnose | explain | load_view | write_document)
            arguments+=(-dict="$build/seeds/documents.dict")
            corpora+=("$build/seeds/documents")
            ;;
    esac
    # Cairo 1.16 does not free all that it allocates for a document and its fonts.
    [ "$name" != write_document ] || export ASAN_OPTIONS=detect_leaks=0
    if "$build/fuzz/fuzz_$name" "${arguments[@]}" "${corpora[@]}" >"$log" 2>&1; then
        echo "fuzz_$name: $(tail -n 1 "$log")"
    else
        echo "fuzz_$name failed; the end of $log:" >&2
        tail -n 40 "$log" >&2
        return 1
    fi
}
export -f fuzz_one
export build top each=$((seconds / rounds > 0 ? seconds / rounds : 1))
printf '%s\n' "${targets[@]}" | xargs -P "$jobs" -I{} bash -c 'fuzz_one {}'
