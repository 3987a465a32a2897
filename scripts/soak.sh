#!/usr/bin/env bash
# soak.sh [--short]: the attacks on the client in their full counts, an hour and more; --short: about half a minute of each,
# without those that the suite does anyway. Fuzzes every target, lets every system call of a session and of a save fail
# and be the last one, races the client's interface under ThreadSanitizer, ends sessions at random moments, and attacks
# the programs with all tables. Prints a table of what was tried and found, for docs/security.md; the rest goes to
# build/soak/. TARVIK_SEED repeats a run. Exit code 1 with findings.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

mode=full
case ${1:-} in
  "") seconds=600 faults=all rounds=10000 ends=1000 ;;
  --short) mode=short seconds=8 faults=150 rounds=400 ends=80 ;;
  *) echo "usage: soak.sh [--short]" >&2; exit 64 ;;
esac
export TARVIK_SEED=${TARVIK_SEED:-$(date +%j%H%M)}
say "TARVIK_SEED=$TARVIK_SEED"

install_missing "${packages[@]}" "${display_packages[@]}" strace
build release
build tsan
logs=$project/build/soak
rm -rf "$logs"
mkdir -p "$logs"
code=0

# part NAME COMMAND...: runs it, and keeps what it prints. What fails, or cannot be done here (77), is shown.
part() {
  local name=$1 ended=0
  shift
  say "$name"
  "$@" >"$logs/$name" 2>&1 || ended=$?
  [ "$ended" -eq 0 ] || tail -n 60 "$logs/$name" >&2
  [ "$ended" -eq 0 ] || [ "$ended" -eq 77 ] || code=1
}
# row WHAT COUNT FINDINGS COMMAND
row() { printf '| %s | %s | %s | `%s` |\n' "$@"; }
# result NAME: 0, or 1 where a test program ended at a finding.
result() { if grep -q 'PASSED' "$logs/$1" && ! grep -q 'FAILED' "$logs/$1"; then echo 0; else echo 1; fi; }

tsan=$project/build/tsan/bin
release=$project/build/release/bin
part fuzz "$project/scripts/fuzz.sh" "$seconds"
part faults "$project/tests/attacks/faults.sh" "$release" "$faults"
part races env TARVIK_ROUNDS="$rounds" "$tsan/race_tests"
part ends env TARVIK_ENDS="$ends" "$release/attack_tests" --gtest_filter='EndsAttack.*'
[ "$mode" = short ] || part attacks "$release/attack_tests" --gtest_filter='-EndsAttack.*' # the suite has done so

printf '| what | tried | findings | command |\n|---|---|---|---|\n'
while read -r target inputs _ findings _; do
  row "fuzzed: $target" "$inputs inputs" "$findings" "scripts/fuzz.sh $seconds"
done < <(grep -E ' inputs +[01] findings$' "$logs/fuzz")
row "system calls that fail or are the last" \
  "$(sed -n 's/^faults: \(.* points, .* reached\),.*/\1/p' "$logs/faults")" \
  "$(sed -n 's/^faults: .* \([0-9]*\) findings;.*/\1/p' "$logs/faults")" "tests/attacks/faults.sh build/release/bin"
row "start, stop, cancel, restart, query under ThreadSanitizer" "$(sed -n 's/^rounds: //p' "$logs/races") rounds" \
  "$(result races)" "TARVIK_ROUNDS=$rounds build/tsan/bin/race_tests"
row "ends at random moments" "$(sed -n 's/^ends: //p' "$logs/ends") ends" "$(result ends)" \
  "TARVIK_ENDS=$ends build/release/bin/attack_tests --gtest_filter='EndsAttack.*'"
[ "$mode" = short ] || row "attacks by tables" "$(awk '/^sessions: / { all += $2 } END { print all + 0 }' "$logs/attacks") sessions" "$(result attacks)" \
  "build/release/bin/attack_tests"
exit "$code"
