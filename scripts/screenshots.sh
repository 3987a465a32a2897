#!/usr/bin/env bash
# screenshots.sh DIRECTORY: takes the client through its windows, in English and in German, and leaves a picture of
# each in the directory. Wants a desktop whose programs can be driven: tests/gui/with_desktop.sh makes one. Fails when
# a window does not appear or the client does not end as it should.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
. "$(dirname "${BASH_SOURCE[0]}")/gateway.sh"

output=$1
mkdir -p "$output"
rm -f "$output"/*.png

# text KEY: what the client says for it in the current language, without the mark of the letter that chooses it.
text() {
  TEXTDOMAINDIR=$project/build/release/share/locale LC_ALL=C.UTF-8 LANGUAGE=$language gettext tarvikclient "$1" | tr -d '&'
}

# ui ORDER...: what the driver did has to succeed.
ui() {
  "$bin/uidriver" "$@" && return
  say "the driver could not: $* ($language); on the screen is:"
  "$bin/uidriver" describe >&2
  return 1
}

# picture NAME ROLE TEXT [MARGIN]: of the window that holds the control, with what overlaps it.
picture() {
  local area size offset x y margin=${4:-28}
  area=$(ui window "$2" "$3")
  size=${area%%+*}
  offset=${area#*+}
  x=$((${offset%+*} - margin))
  y=$((${offset#*+} - margin))
  [ $x -ge 0 ] || x=0
  [ $y -ge 0 ] || y=0
  sleep 0.5 # a window is in the tree before it is drawn
  import -window root -crop "$((${size%x*} + 2 * margin))x$((${size#*x} + 2 * margin))+$x+$y" +repage \
    "$output/$1-$language.png"
  printf '  %s\n' "$1-$language.png"
}

# client URL: starts the client in the current language, as the portal's link does.
client() {
  "$bin/tarvikclient" "${1/lang=en/lang=$language}" >"$work/client.out" 2>&1 &
  client_pid=$!
}

# client_ends: and well.
client_ends() {
  local code=0
  wait "$client_pid" || code=$?
  [ "$code" -eq 0 ] || { say "tarvikclient ended with $code"; cat "$work/client.out" >&2; return 1; }
}

# A module that stays in each state long enough for its picture.
poll_script() {
  local i
  for i in {1..8}; do echo '[{"code":"5","status":"init"}]'; done
  for i in {1..40}; do echo '[{"code":"5","status":"connected ip=10.8.0.2"}]'; done
  for i in {1..8}; do echo '[]'; done
  echo '[{"code":"8","reason":"1"}]'
}

working_session() {
  local given
  printf -v given "$(text 'VPN_GIVENIP %s')" 10.8.0.2
  poll_script >"$work/polls"
  start_gateway --poll-script "$work/polls"
  client "$(launch_url plugindll)"
  ui shown label "$(text VPN_INIT)*"
  picture panel-initialising label "$(text TarvikClient)"
  ui shown label "$given"
  picture panel-connected label "$given"
  ui menu label "$given"
  ui shown "menu item" "$(text MENU_SETTINGS)"
  picture menu label "$given" 100
  ui click "menu item" "$(text MENU_SETTINGS)"
  picture settings "check box" "$(text SETTINGS_PROXY_USE_SYSTEM_PARAMETERS)"
  ui click "push button" "$(text '&Cancel')"
  ui menu label "$given"
  ui click "menu item" "$(text '&About')"
  picture about label 8.2.0.21
  ui click "push button" "$(text '&Close')"
  ui shown label "$(text VPN_STOPPED)"
  picture panel-stopped label "$(text VPN_STOPPED)"
  client_ends
}

refused_connection() {
  client "tarvik://demo-ticket@localhost:1/mediation/plugindll?lang=en" # where nobody listens
  picture connection-error "push button" "$(text Retry)"
  ui click "push button" "$(text Quit)"
  client_ends
}

fatal_error() {
  client "$(launch_url refused)"
  picture fatal-error label "$(text UNKNOWN_ERROR_HAS_OCCURED)"
  ui click "push button" "$(text '&Quit')"
  client_ends
}

for language in en de; do
  printf 'language %s:\n' "$language"
  working_session
  refused_connection
  fatal_error
done
printf 'the pictures are in %s\n' "$output"
