#!/usr/bin/env bash
# screenshots.sh DIRECTORY: takes a picture of each of the client's windows and states (windows.sh) in English, and of some
# in German, of them on dark and dense screens and in a large font.
# screenshots.sh --all DIRECTORY [LANGUAGE...]: of each in each language, light and dark, on screens of normal and of
# double density, and in a normal and a large font; for each of these a folder, and a sheet of all its pictures.
# Wants a large desktop whose programs can be driven: TARVIK_TEST_SCREEN=2560x1800 tests/gui/with_desktop.sh makes one.
# Fails when a window does not appear or the client does not end as it should.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
. "$(dirname "${BASH_SOURCE[0]}")/gateway.sh"
. "$(dirname "${BASH_SOURCE[0]}")/windows.sh"

all=
[ "${1:-}" != --all ] || { all=1; shift; }
output=${1:?usage: screenshots.sh [--all] DIRECTORY [LANGUAGE...]}
shift
mkdir -p "$output"
output=$(cd "$output" && pwd)
export XDG_CONFIG_HOME=$work/config # of the user's desktop, and not of the client's own home
mkdir -p "$XDG_CONFIG_HOME/gtk-3.0"

# text KEY: what the client says for it in the current language, without the mark of the letter that chooses it.
text() {
  TEXTDOMAINDIR=$project/build/release/share/locale LC_ALL=C.UTF-8 LANGUAGE=$language gettext tarvikclient "$1" | tr -d '&'
}

# pattern KEY: the same as far as it is known and fits into a line, as the driver finds it.
pattern() {
  local whole known
  whole=$(text "$1")
  known=${whole%%[%\{]*}
  known=${known:0:20}
  if [ "$known" = "$whole" ]; then echo "$whole"; else echo "$known*"; fi
}

# ui ORDER...: what the driver did has to succeed.
ui() {
  "$bin/uidriver" "$@" && return
  say "the driver could not: $* ($look); on the screen is:"
  "$bin/uidriver" describe >&2
  return 1
}

# picture FILE ROLE TEXT MARGIN: of the window that holds the control, with what overlaps it.
picture() {
  local area size offset x y margin=$(($4 * GDK_SCALE))
  area=$(ui window "$2" "$3")
  sleep 0.5 # a window is in the tree before it is drawn, and may still grow
  area=$(ui window "$2" "$3")
  size=${area%%+*}
  offset=${area#*+}
  x=$((${offset%+*} - margin))
  y=$((${offset#*+} - margin))
  [ $x -ge 0 ] || x=0
  [ $y -ge 0 ] || y=0
  import -window root -crop "$((${size%x*} + 2 * margin))x$((${size#*x} + 2 * margin))+$x+$y" +repage "$1"
  printf '  %s\n' "${1#"$output"/}"
}

# client URL [PROGRAM]: starts the client in the current language, as the portal's link does.
client() {
  "$bin/${2:-tarvikclient}" "${1/lang=en/lang=$language}" >"$work/client.out" 2>&1 &
  client_pid=$!
}

# client_ends: and well.
client_ends() {
  local code=0
  kill "$client_pid"
  wait "$client_pid" || code=$?
  [ "$code" -eq 0 ] || { say "tarvikclient ended with $code ($look)"; cat "$work/client.out" >&2; return 1; }
}

# shot: as windows.sh says. Of those in $wanted, or of all.
shot() {
  local way=$3
  [[ -z $wanted || " $wanted " == *" $1 "* ]] || return 0
  eval "$2"
  [ "$way" = - ] || "$way"
  picture "$folder/$1$suffix.png" "$4" "$(pattern "$5")" "${6:-28}"
  client_ends
  [ "$2" != asking ] || rm -f "$policy"
}

# take LANGUAGE light|dark SCALE POINTS FOLDER SUFFIX [NAME...]: the pictures of that look.
take() {
  language=$1 folder=$5 suffix=$6 look="$1 $2 $3 $4"
  wanted="${*:7}"
  export GDK_SCALE=$3
  unset GTK_THEME
  [ "$2" = light ] || export GTK_THEME=Adwaita:dark
  printf '[Settings]\ngtk-font-name=Sans %s\n' "$4" >"$XDG_CONFIG_HOME/gtk-3.0/settings.ini"
  printf '%s, %s, scale %s, %s points:\n' "${@:1:4}"
  mkdir -p "$folder"
  windows
}

# sheet FOLDER: one picture of all.
sheet() {
  montage -label '%t' "$1"/*.png -geometry '1000x700>+6+6' -tile 4x -background '#808080' "$1.png"
}

take_all() {
  local each theme scale points folder
  for each in "$@"; do
    for theme in light dark; do
      for scale in 1 2; do
        for points in 10 18; do
          folder=$output/$each-$theme-${scale}x-${points}pt
          rm -rf "$folder"
          take "$each" "$theme" "$scale" "$points" "$folder" ""
          sheet "$folder"
        done
      done
    done
  done
}

if [ -n "$all" ]; then
  [ $# -gt 0 ] || set -- en de fr es
  take_all "$@"
else
  rm -f "$output"/*.png
  take en light 1 10 "$output" -en
  take de light 1 10 "$output" -de panel-connected panel-interrupted settings about connection-error fatal-error
  # What differs most from look to look: the panel, a window with fields, and one with a long text.
  take en dark 1 10 "$output" -en-dark panel-connected settings connection-error
  take en light 2 10 "$output" -en-2x panel-connected settings connection-error
  take de dark 2 18 "$output" -de-dark-2x-18pt panel-connected settings connection-error
fi
printf 'the pictures are in %s\n' "$output"
