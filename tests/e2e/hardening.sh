#!/usr/bin/env bash
# hardening.sh BUILD KIND: every program and module of the build tree has what it was to be compiled and linked with.
# KIND is "optimised"; exit code 77 for other builds, and on other processors.
set -euo pipefail
build=$1
[ "$2" = optimised ] || { echo "not an optimised build without sanitizers"; exit 77; }
[ "$(uname -m)" = x86_64 ] || { echo "written for x86-64"; exit 77; }
export LC_ALL=C
code=0

# expect FILE WHAT PATTERN: a line on standard input matches.
expect() {
  grep -qE "$3" && return
  echo "$1: no $2"
  code=1
}

check() {
  local file=$1 header segments dynamic symbols
  header=$(readelf -hW "$file")
  segments=$(readelf -lW "$file")
  dynamic=$(readelf -dW "$file")
  symbols=$(readelf -W --dyn-syms "$file")
  expect "$file" "position-independent code" 'Type: +DYN' <<<"$header"
  expect "$file" "read-only relocations" 'GNU_RELRO' <<<"$segments"
  expect "$file" "immediate binding" 'BIND_NOW|FLAGS_1.* NOW' <<<"$dynamic"
  expect "$file" "stack that is not executable" 'GNU_STACK .* RW +0x' <<<"$segments"
  expect "$file" "stack protector" '__stack_chk_fail' <<<"$symbols"
  # A module in C++ may call nothing that can be fortified.
  case $file in
    */bin/tarvikclient* | */tests/modules/*)
      expect "$file" "fortified calls" ' __(v?[fs]n?printf|syslog|mem[a-z]+|str[a-z]+)_chk' <<<"$symbols" ;;
  esac
  # The note says so only where the toolchain's own start files do, and they have three of these at most.
  [ "$(grep -oaP '\xf3\x0f\x1e\xfa' "$file" | wc -l)" -gt 3 ] || {
    echo "$file: no landing points for indirect branches"
    code=1
  }
  if [ -n "$protected_start" ]; then
    readelf -nW "$file" 2>/dev/null | expect "$file" "control-flow protection" 'IBT.*SHSTK'
  fi
}

protected_start=$(readelf -nW "$(cc -print-file-name=crti.o)" 2>/dev/null | grep -E 'IBT.*SHSTK' || true)
files=0
# Of the tests' modules those that do enough for every mark to show.
for file in "$build"/bin/* "$build"/modules/*.so "$build"/tests/modules/test_{plugin,hostchecker}.so; do
  [[ $file != */bin/*.so ]] && head -c 4 "$file" | grep -qa ELF || continue
  files=$((files + 1))
  check "$file"
done
[ "$files" -gt 5 ] || { echo "only $files programs and modules in $build"; code=1; }
exit $code
