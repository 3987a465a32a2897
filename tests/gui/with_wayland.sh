#!/usr/bin/env bash
# with_wayland.sh COMMAND...: runs the command on a Wayland desktop of its own that shows nothing, with a session bus and
# the accessibility bus. Its exit code is the command's; 77 where there is no sway, which refuses to be the
# administrator's: then all of it is run as nobody, where that one may read the program.
set -euo pipefail
command -v sway >/dev/null || { echo "sway is not installed"; exit 77; }
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ "$(id -u)" -eq 0 ]; then
  as_nobody=(setpriv --reuid=65534 --regid=65534 --clear-groups)
  "${as_nobody[@]}" test -x "$1" || { echo "nobody may not run $1"; exit 77; }
  cd /
  exec "${as_nobody[@]}" "$here/${0##*/}" "$@"
fi

work=$(mktemp -d)
server=
finish() {
  [ -z "$server" ] || kill "$server" 2>/dev/null || true
  [ -z "$server" ] || wait "$server" 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT
mkdir -m 0700 "$work/home" "$work/runtime"
export HOME=$work/home XDG_RUNTIME_DIR=$work/runtime GDK_BACKEND=wayland
export GSETTINGS_BACKEND=memory LC_ALL=C.UTF-8 LANGUAGE=
export LSAN_OPTIONS=suppressions=$here/lsan.supp:print_suppressions=0
export TSAN_OPTIONS=suppressions=$here/tsan.supp
unset DISPLAY XAUTHORITY NO_AT_BRIDGE
echo "output HEADLESS-1 resolution 1280x900" >"$work/sway.conf"
WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman sway -c "$work/sway.conf" >"$work/sway.log" 2>&1 &
server=$!
for _ in {1..100}; do
  [ ! -S "$XDG_RUNTIME_DIR/wayland-1" ] || break
  kill -0 "$server" 2>/dev/null || { cat "$work/sway.log" >&2; exit 1; }
  sleep 0.05
done
export WAYLAND_DISPLAY=wayland-1
dbus-run-session -- "$@" 2> >(grep -v '^dbus-daemon' >&2)
