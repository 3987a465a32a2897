#!/usr/bin/env bash
# check-documents.sh: runs the commands of docs/modules.md and of the README as they stand there, in a home directory
# of their own. Of what is in the text, ```sh blocks are run, one after the other, but for the project's own scripts,
# which are checks themselves. Above a block may stand
#   <!-- in the background -->   it serves until the end: it is waited for until it has printed a URL
#   <!-- file PATH -->           the block is what is in a file
# Before that, every test that docs/ name as "Suite.test" must be there.
# Expects the build in build/release, whose key it exchanges and puts back. Exit code 1 at the first command that fails.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# commands DOCUMENT: its blocks as a shell script.
commands() {
  awk '
    /^<!-- / { mark = $0; sub(/^<!-- /, "", mark); sub(/ -->$/, "", mark); next }
    /^```/ && inside {
      if (inside == "file") print "END_OF_FILE"
      if (inside == "background") print ") >\"$HOME/served\" 2>&1 &\ntimeout 30 sh -c '\''until grep -q :// \"$HOME/served\"; do sleep 0.1; done'\''"
      inside = mark = ""
      next
    }
    /^```/ {
      if (mark ~ /^file /) { inside = "file"; sub(/^file /, "", mark); print "mkdir -p \"$(dirname " mark ")\"; cat >" mark " <<\"END_OF_FILE\"" }
      else if (mark == "in the background") { inside = "background"; print "(" }
      else inside = /^```sh$/ ? "run" : "ignored"
      next
    }
    inside == "run" && /^scripts\// { next }
    inside && inside != "ignored" { print; next }
    NF { mark = "" }' "$1"
}

# unknown_tests: those that documents name, wholly or up to a "…" or "*", and that no source has.
unknown_tests() {
  grep -ohE '`[A-Z][A-Za-z]+\.[a-z0-9_]+(`|…|\*)' "$project"/docs/*.md | sort -u | while read -r name; do
    suite=${name%%.*} test=${name#*.}
    case $test in po\` | sig\`) continue ;; esac # names of files
    case $test in *\`) end='\)' ;; *) end= ;; esac
    grep -rqE "TEST(_F|_P)?\\(${suite#?}, ${test%[\`…*]}$end" "$project/tests" || echo "$name"
  done
}
unknown=$(unknown_tests)
[ -z "$unknown" ] || { say "no such tests: $unknown"; exit 1; }

home=$(mktemp -d)
restore() {
  [ -z "$(jobs -p)" ] || kill $(jobs -p) 2>/dev/null || true
  rm -rf "$home"
  # The key lay there.
  cmake --preset release -DTARVIK_PUBLISHER_KEY="$had" >/dev/null
}
cd "$project"
had=$(sed -n 's/^TARVIK_PUBLISHER_KEY:[A-Z]*=//p' build/release/CMakeCache.txt)
trap restore EXIT
for document in docs/modules.md README.md; do
  say "$document"
  commands "$document" >"$home/commands"
  grep -q . "$home/commands"
  (
    export HOME=$home
    trap 'kill $(jobs -p) 2>/dev/null || true' EXIT
    set -x
    . "$home/commands"
  ) >"$home/output" 2>&1 || { cat "$home/output" >&2; say "$document: this failed"; exit 1; }
done
build release -DTARVIK_PUBLISHER_KEY="$had"
