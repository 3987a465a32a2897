#!/usr/bin/env bash
# demo.sh [--headless]: installs what is missing, builds, starts the development gateway and runs the client against
# it, and says what happened. In a window where there is a display; where there is none, on a display of its own, with
# screenshots in demo-output/. --headless: one session of each kind without a screen.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
. "$(dirname "${BASH_SOURCE[0]}")/gateway.sh"

mode=window
case ${1:-} in
  "") [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || mode=screenshots ;;
  --headless) mode=headless ;;
  *) echo "usage: demo.sh [--headless]" >&2; exit 64 ;;
esac

install_missing "${packages[@]}" "${display_packages[@]}"
build release

if [ "$mode" = screenshots ]; then
  TARVIK_TEST_SCREEN=2560x1800 "$project/tests/gui/with_desktop.sh" "$project/scripts/screenshots.sh" "$project/demo-output"
  exit
fi

start_gateway
show() { sed 's/^/    /' "$1"; }

# session PROGRAM KIND MODULE-LOG: fails unless the session ended well and the module was called.
session() {
  local program=$1 kind=$2 module_log=$HOME/.Tarvik/$3 code=0
  local url
  url=$(launch_url "$kind")
  rm -f "$module_log"
  printf '\n%s\n  launch URL: %s\n  %s says:\n' "$kind" "$url" "$program"
  "$bin/$program" "$url" >"$work/lines" || code=$?
  show "$work/lines"
  printf '  exit code %s; the module was asked:\n' "$code"
  [ ! -e "$module_log" ] || show "$module_log"
  [ "$code" -eq 0 ] && [ -s "$module_log" ]
}

printf 'portal: %s\n' "$(launch_url portal)"
if [ "$mode" = window ]; then
  session tarvikclient plugindll Plugin/sample-plugin.log
  exit
fi
session tarvikclient-cli plugindll Plugin/sample-plugin.log
session tarvikclient-cli plugindllnotunnel Plugin/sample-plugin.log
session tarvikclient-cli hostchecker hostchecker/sample-hostchecker.log
printf '\nwhat the gateway was told by the host checker:\n'
grep '^hostcheck ' "$work/gateway.log" | sed 's/^/    /'
