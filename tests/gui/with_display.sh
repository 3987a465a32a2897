#!/usr/bin/env bash
# with_display.sh COMMAND...: runs the command on an X display of its own, with nothing of the user's desktop around
# it: no session bus, no accessibility bus, no settings, a home of its own. Its exit code is the command's.
# TARVIK_TEST_SCREEN is the size of the screen, 1280x900 unless it is set.
set -euo pipefail
work=$(mktemp -d)
finish() {
  [ -z "${server:-}" ] || kill "$server" 2>/dev/null || true
  [ -z "${server:-}" ] || wait "$server" 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT
mkfifo "$work/number"
Xvfb -displayfd 3 -screen 0 "${TARVIK_TEST_SCREEN:-1280x900}x24" -wr -nolisten tcp 3>"$work/number" 2>"$work/xvfb.log" &
server=$!
read -r number <"$work/number" || { cat "$work/xvfb.log" >&2; exit 1; }
mkdir -m 0700 "$work/home" "$work/runtime"
export DISPLAY=:$number HOME=$work/home XDG_RUNTIME_DIR=$work/runtime
export GDK_BACKEND=x11 GDK_GL=disable GSETTINGS_BACKEND=memory NO_AT_BRIDGE=1 LC_ALL=C.UTF-8 LANGUAGE=
unset WAYLAND_DISPLAY XAUTHORITY
suppressions=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export LSAN_OPTIONS=suppressions=$suppressions/lsan.supp:print_suppressions=0
export TSAN_OPTIONS=suppressions=$suppressions/tsan.supp
export DBUS_SESSION_BUS_ADDRESS=${TARVIK_TEST_BUS:-disabled:}
"$@" <&0 &
command=$!
trap 'kill "$command"' HUP INT TERM # the display follows, and with it what shows windows
code=0
wait "$command" || code=$?
exit "$code"
