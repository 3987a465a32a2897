#!/usr/bin/env bash
# check-format.sh [--fix]: whether every source is as clang-format writes it; --fix writes it so.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing clang-format

mode=(--dry-run --Werror)
[ "${1:-}" != --fix ] || mode=(-i)
cd "$project"
git ls-files -z -- '*.cpp' '*.h' '*.c' '*.mm' | xargs -0 -r clang-format "${mode[@]}"
