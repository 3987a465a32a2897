#!/usr/bin/env bash
# demo.sh [--headless]: installs what is missing, builds, starts the development gateway and runs one session of
# each kind against it: what the client says, and what the module was asked to do.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

case ${1:---headless} in
  --headless) ;;
  *) echo "usage: demo.sh [--headless]" >&2; exit 64 ;;
esac

install_missing "${packages[@]}"
build release

bin=$project/build/release/bin
work=$(mktemp -d)
gateway_pid=
finish() {
  if [ -n "$gateway_pid" ]; then
    kill "$gateway_pid" 2>/dev/null || true
    wait "$gateway_pid" || true
  fi
  rm -rf "$work"
}
trap finish EXIT

: >"$work/urls" # before the gateway opens it: the loop below may come first
"$bin/tarvik-devgateway" --port 0 >"$work/urls" 2>"$work/gateway.log" &
gateway_pid=$!
until [ "$(wc -l <"$work/urls")" -ge 5 ]; do
  kill -0 "$gateway_pid" 2>/dev/null || { cat "$work/gateway.log" >&2; exit 1; }
  sleep 0.1
done
portal=$(sed -n 's/^portal //p' "$work/urls")
authority=${portal#https://}
authority=${authority%/}

# The gateway's certificate is one of its own making: the user's settings name it as one not to verify.
export HOME=$work/home
mkdir -p -m 0700 "$HOME/.Tarvik"
cat >"$HOME/.Tarvik/tarvikclient.xml" <<SETTINGS
<tarvikclient>
 <sslcertignoredomains>
  <domains>$authority</domains>
 </sslcertignoredomains>
</tarvikclient>
SETTINGS

show() { sed 's/^/    /' "$1"; }

# session KIND MODULE-LOG
session() {
  local kind=$1 module_log=$HOME/.Tarvik/$2 url code=0
  url=$(sed -n "s/^$kind //p" "$work/urls")
  rm -f "$module_log"
  printf '\n%s\n  launch URL: %s\n  tarvikclient-cli says:\n' "$kind" "$url"
  "$bin/tarvikclient-cli" "$url" >"$work/lines" || code=$?
  show "$work/lines"
  printf '  exit code %s; the module was asked:\n' "$code"
  [ ! -e "$module_log" ] || show "$module_log"
  [ "$code" -eq 0 ] && [ -s "$module_log" ]
}

printf 'portal: %s\n' "$portal"
session plugindll Plugin/sample-plugin.log
session plugindllnotunnel Plugin/sample-plugin.log
session hostchecker hostchecker/sample-hostchecker.log
printf '\nwhat the gateway was told by the host checker:\n'
grep '^hostcheck ' "$work/gateway.log" | sed 's/^/    /'
