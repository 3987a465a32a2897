#!/usr/bin/env bash
# faults.sh PROGRAMS [COUNT]: lets every system call of a headless session, and of a change of the user's settings,
# fail once, and lets each be the last one, after which the process is killed; COUNT of these points, chosen at random
# by the seed in TARVIK_SEED (printed), or all. After each: the old settings are there or the new ones, whole; no other
# file holds the password; nothing hung or crashed; and the next session, or change, is as it should be. A call is
# counted within its thread. Exit code 1 with findings, 77 where strace is missing or may not trace.
set -euo pipefail

programs=$(realpath "$1")
count=${2:-all}
limit=10 # seconds for one run, and again for its end by SIGTERM
sleep 5 &
timeout 1 strace -o /dev/null -p $! 2>/dev/null || [ $? -eq 124 ] ||
  { echo "skipped: strace is not installed or may not attach here"; exit 77; }

work=$(mktemp -d)
gateway=
finish() {
  [ -z "$gateway" ] || kill "$gateway" 2>/dev/null || true
  wait
  rm -rf "$work"
}
trap finish EXIT
export programs work limit

# write_settings FILE PASSWORD
write_settings() {
  printf '%s' "<tarvikclient><sslcertignoredomains><domains>$authority</domains></sslcertignoredomains>" \
    "<proxy><credentials><login>alice</login><password>$2</password></credentials></proxy></tarvikclient>" >"$1"
}

start_gateway() {
  echo '[{"code":"8","reason":"1"}]' >"$work/script" # the module asks for the session's end at once
  : >"$work/urls"
  "$programs/tarvik-devgateway" --port 0 --poll-script "$work/script" >"$work/urls" 2>"$work/gateway.log" &
  gateway=$!
  until [ "$(wc -l <"$work/urls")" -ge 5 ]; do
    kill -0 "$gateway" 2>/dev/null || { cat "$work/gateway.log"; return 1; }
    sleep 0.1
  done
  url=$(sed -n 's/^plugindll //p' "$work/urls")
  authority=$(sed -n 's|^portal https://\(.*\)/$|\1|p' "$work/urls")
  export url authority
}

# Both replace the shell, in the directory where all their files are. What they print goes to the file "output".
run_session() { HOME=$PWD exec "$@" "$programs/tarvikclient-cli" "$url" >output 2>&1; }
run_save() { exec "$@" "$programs/savesettings" "$PWD/.Tarvik/tarvikclient.xml" new-secret >output 2>&1; }

# fault_of CALL: how it fails when the machine is at its limits. brk() tells by the break that it leaves.
fault_of() {
  local error
  case $1 in
    brk) echo retval=0 && return ;;
    *) error=$(error_of "$1") && echo "error=$error" ;;
  esac
}

error_of() {
  case $1 in
    open | openat | socket* | pipe* | dup* | memfd_create | fcntl) echo EMFILE ;;
    write* | pwrite* | mkdir* | ftruncate | fsync | fdatasync) echo ENOSPC ;;
    mmap | mprotect | munmap | mremap | madvise) echo ENOMEM ;;
    clone*) echo EAGAIN ;;
    connect) echo ECONNREFUSED ;;
    send* | recv* | getpeername | getsockname | getsockopt | setsockopt) echo ECONNRESET ;;
    poll | ppoll) echo EINTR ;;
    *) echo EIO ;;
  esac
}

# await PID PATTERN: a line of the process's status.
await() {
  until grep -qE "$2" "/proc/$1/status" 2>/dev/null; do
    kill -0 "$1" 2>/dev/null || return 0
    sleep 0.01
  done
}

# guard PID: a session may stay up, where it is the module that failed, but not longer than it is asked to.
guard() {
  local never
  exec {never}<> <(:) # nothing ever comes here: reading from it is a sleep that ends with this shell
  read -r -t "$limit" -u "$never" || true
  kill -TERM "$1" || return 0
  read -r -t "$limit" -u "$never" || true
  echo hung >hung
  kill -KILL "$1"
}

# traced STRACE-ARGUMENT...: runs $what with strace attached before its main(): what the dynamic linker did until then
# is not tried, and is not counted. Returns the program's exit code.
traced() {
  local program tracer watch code=0
  LD_PRELOAD=$programs/stopped.so "run_$what" &
  program=$!
  await "$program" '^State:.*stopped'
  strace -f -q -o trace "$@" -p "$program" &
  tracer=$!
  await "$program" '^TracerPid:.*[1-9]'
  kill -CONT "$program"
  guard "$program" 2>/dev/null &
  watch=$!
  wait "$program" || code=$?
  kill "$watch" 2>/dev/null || true
  wait "$tracer" || true
  return "$code"
}

# points WHAT: a line "WHAT WAY CALL N" for each. What threads are made of does not fail, and without a program there is
# nothing to try.
points() {
  local what=$1
  mkdir -p "$work/$1/.Tarvik"
  write_settings "$work/$1/.Tarvik/tarvikclient.xml" old-secret
  (cd "$work/$1" && traced)
  awk -v what="$1" '
    $2 ~ /^[a-z_0-9]+\(/ { call = substr($2, 1, index($2, "(") - 1); if (++seen[$1, call] > most[call]) ++most[call] }
    END {
      for (call in most)
        for (n = 1; n <= most[call]; ++n) {
          if (call ~ /^(execve|exit|exit_group|rt_sigreturn)$/) continue
          print what, "kill", call, n
          if (call !~ /^(futex|rseq|set_robust_list)$/) print what, "fail", call, n
        }
    }' "$work/$1/trace" | sort
}

finding() { echo "FINDING $point: $* $(grep -m 1 INJECTED trace | cut -c -150)"; }

# A password stands in the settings alone.
check_files() {
  local settings=.Tarvik/tarvikclient.xml others
  cmp -s "$settings" "$work/old.xml" || { [ "$what" = save ] && cmp -s "$settings" "$work/new.xml"; } ||
    finding "the settings are neither the old nor the new ones"
  others=$(grep -rlE 'old-secret|new-secret' --exclude=tarvikclient.xml --exclude=trace . || true)
  [ -z "$others" ] || [ "$1" = killed ] || finding "a password is left in" $others
}

# What cannot go on may end itself, by abort() too; it may not go astray.
check_end() {
  case $1 in
    132 | 135 | 136 | 139) finding "crashed with code $1: $(tail -n 1 output)" ;;
  esac
  [ "$what" != save ] || [ "$1" -ne 0 ] || cmp -s .Tarvik/tarvikclient.xml "$work/new.xml" ||
    finding "success, but the settings are not saved"
}

check_next() {
  local code=0
  ("run_$what" timeout -s KILL "$limit") || code=$?
  [ "$code" -eq 0 ] || finding "the next time ends with code $code: $(tail -n 1 output)"
  if [ "$what" = session ]; then
    [ "$(tail -n 1 output)" = "onStatus 4" ] || finding "the next session says $(tail -n 1 output)"
  else
    cmp -s .Tarvik/tarvikclient.xml "$work/new.xml" || finding "the next change is not saved"
  fi
  check_files whole
}

# attack WHAT WAY CALL N
attack() {
  local point="$*" what=$1 way=$2 call=$3 n=$4 injected code=0 room
  injected=$(fault_of "$call")
  [ "$way" = fail ] || injected=signal=KILL
  room=$(mktemp -d -p "$work") && cd "$room" || return
  mkdir .Tarvik
  cp "$work/old.xml" .Tarvik/tarvikclient.xml
  traced -e trace="$call" -e inject="$call:$injected:when=$n" || code=$?
  [ ! -e hung ] || finding "hung"
  check_end "$code"
  if [ "$way" = kill ]; then check_files killed; else check_files whole; fi
  if grep -qE 'INJECTED|killed by SIGKILL' trace; then echo reached; fi
  check_next
  cd "$work"
  rm -rf "$room"
}

export -f await guard traced run_session run_save fault_of error_of finding check_files check_end check_next attack

start_gateway
write_settings "$work/old.xml" old-secret
{ points session; points save; } >"$work/points"
cp "$work/save/.Tarvik/tarvikclient.xml" "$work/new.xml"
grep -q new-secret "$work/new.xml" # the change is made when nothing fails

seed=${TARVIK_SEED:-$RANDOM}
total=$(wc -l <"$work/points")
[ "$count" != all ] || count=$total
awk -v seed="$seed" 'BEGIN { srand(seed) } { print rand() "\t" $0 }' "$work/points" | sort -n | cut -f 2 |
  sed -n "1,${count}p" >"$work/chosen" # which reads to the end: a pipe that is closed would end the script
xargs -a "$work/chosen" -P "$(nproc)" -L 1 bash -c 'set -uo pipefail; attack "$@"' attack >"$work/results" 2>&1 ||
  { cat "$work/results"; exit 1; }
grep -vx reached "$work/results" || true
findings=$(grep -c ^FINDING "$work/results" || true)
echo "faults: $(wc -l <"$work/chosen") of $total points, $(grep -cx reached "$work/results") reached," \
  "$findings findings; TARVIK_SEED=$seed"
[ "$findings" -eq 0 ]
