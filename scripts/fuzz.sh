#!/usr/bin/env bash
# fuzz.sh [SECONDS]: installs what is missing, builds the fuzz targets and runs each for so long (60 seconds unless
# said otherwise), beginning with its corpus. Ends at the first input that breaks something, and leaves it in build/.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

seconds=${1:-60}
install_missing "${packages[@]}" clang
build fuzz
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for corpus in "$project"/fuzz/corpus/*/; do
  name=$(basename "$corpus")
  mkdir "$work/$name"
  say "fuzz_$name for $seconds seconds"
  "$project/build/fuzz/bin/fuzz_$name" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 \
    -print_final_stats=1 -artifact_prefix="$project/build/fuzz/" "$work/$name" "$corpus" 2>&1 |
    grep -E '^(stat::|==|SUMMARY|#[0-9]+.*DONE)|ERROR|abort'
done
