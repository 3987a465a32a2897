#!/usr/bin/env bash
# fuzz.sh [SECONDS]: installs what is missing, builds the fuzz targets and runs each for so long (60 seconds unless
# said otherwise), as many at a time as there are processors, beginning with its corpus and with the dictionary of its
# name where there is one. Prints a line for each target: its inputs and its findings, 0 or 1. A target ends at the
# first input that breaks it, which is left in build/fuzz/NAME-*: mend the fault and move the input to
# fuzz/corpus/NAME/. Exit code 1 when there was one.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

seconds=${1:-60}
install_missing "${packages[@]}" clang-16 libclang-rt-16-dev
build fuzz
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# fuzz NAME: fails when an input broke the target.
fuzz() {
  local name=$1 code=0
  local dictionary=$project/fuzz/dictionaries/$name.dict options=()
  [ ! -e "$dictionary" ] || options=(-dict="$dictionary")
  mkdir "$work/$name"
  "$project/build/fuzz/bin/fuzz_$name" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 \
    -print_final_stats=1 -artifact_prefix="$project/build/fuzz/$name-" "${options[@]}" \
    "$work/$name" "$project/fuzz/corpus/$name" >"$work/$name.log" 2>&1 || code=1
  [ "$code" -eq 0 ] || tail -n 40 "$work/$name.log" >&2
  printf '%-12s %10s inputs %3s findings\n' "$name" \
    "$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/$name.log")" "$code"
  return "$code"
}

export seconds project work
export -f fuzz
find "$project/fuzz" -maxdepth 1 -name '*_fuzzer.cpp' -printf '%f\n' | sed 's/_fuzzer\.cpp$//' | sort |
  xargs -P "$(nproc)" -I{} bash -c 'set -euo pipefail; fuzz {}' || exit 1
