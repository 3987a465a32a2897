#!/usr/bin/env bash
# check-format.sh [--fix]: whether every source is as clang-format writes it, and every test named in small letters and
# underscores; --fix writes it so, but for the names.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing clang-format

mode=(--dry-run --Werror)
[ "${1:-}" != --fix ] || mode=(-i)
cd "$project"
if git grep -nE '^(TYPED_)?TEST(_[FP])?\(\w+, \w*[A-Z]' -- 'tests/*.cpp'; then
  echo "^ these tests are not named as the others are" >&2
  exit 1
fi
git ls-files -z -- '*.cpp' '*.h' '*.c' '*.mm' | xargs -0 -r clang-format "${mode[@]}"
