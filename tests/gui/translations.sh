#!/usr/bin/env bash
# translations.sh PROJECT: each text that the interface shows is in each catalogue, and nothing else is; what a text
# leaves a place for ("%s", "{name}") is in its translations too. Names each key and language that is wrong.
set -euo pipefail
export LC_ALL=C.UTF-8
sources=$1/apps/tarvikclient/gui
catalogues=$1/resources/po
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
code=0

# keys FILE: its messages' keys as they are written there, sorted.
keys() {
  msgcat --no-wrap "$1" | sed -nE 's/^(#~ )?msgid "(.+)"$/\2/p' | sort -u
}
# choose FILE OPTION...: the keys of those messages that msgattrib chooses.
choose() {
  msgattrib --no-wrap "${@:2}" -o "$work/chosen.po" "$1"
  [ ! -e "$work/chosen.po" ] || keys "$work/chosen.po"
  rm -f "$work/chosen.po"
}
# complain LANGUAGE WHAT: each line of the input is a key of which WHAT is true.
complain() {
  while read -r key; do
    echo "$1: \"$key\" $2"
    code=1
  done
}
# places FILE WHERE: each message's key with each place-holder that its key and notes (WHERE=key) or its text
# (WHERE=text) have.
places() {
  msgcat --no-wrap "$1" | awk -v where="$2" '
    function collect(line) {
      while (match(line, /%[a-z]|\{[a-z]+\}/)) {
        found[substr(line, RSTART, RLENGTH)]
        line = substr(line, RSTART + RLENGTH)
      }
    }
    function finish(  place) {
      for (place in found)
        print key ": " place
      delete found
      key = part = ""
    }
    /^$/ { finish(); next }
    /^#~/ { next }
    /^#\./ && where == "key" { collect($0) }
    /^msgid / { part = "key"; key = substr($0, 8, length($0) - 8) }
    /^msgstr/ { part = "text" }
    /^(msg|")/ && part == where && key != "" { collect($0) }
    END { finish() }' | sort -u
}

find "$sources" -name '*.h' -o -name '*.cpp' -o -name '*.mm' | sort >"$work/files"
xgettext --language=C++ --from-code=UTF-8 --keyword --keyword=_ --keyword=wxTRANSLATE --keyword=wxGetTranslation \
  --add-comments=TRANSLATORS --files-from="$work/files" --output="$work/used.pot"
[ -s "$work/used.pot" ] || { echo "no text is used in $sources"; exit 1; }
keys "$work/used.pot" >"$work/used"
keys "$catalogues/stock.pot" >"$work/stock"
sort -u "$work/used" "$work/stock" >"$work/wanted"
places "$catalogues/en.po" key >"$work/places"

for catalogue in "$catalogues"/*.po; do
  language=$(basename "$catalogue" .po)
  msgfmt --check --output-file=/dev/null "$catalogue" || code=1
  choose "$catalogue" --no-obsolete >"$work/defined"
  complain "$language" "is missing" < <(comm -23 "$work/wanted" "$work/defined")
  complain "$language" "is used nowhere" < <(comm -13 "$work/wanted" "$work/defined")
  complain "$language" "has no text" < <(choose "$catalogue" --untranslated --no-obsolete)
  complain "$language" "is fuzzy" < <(choose "$catalogue" --only-fuzzy --no-obsolete)
  complain "$language" "is obsolete" < <(choose "$catalogue" --only-obsolete)
  complain "$language" "is not in the text" < <(places "$catalogue" text | comm -23 "$work/places" -)
  complain "$language" "does not belong in the text" < <(places "$catalogue" text | comm -13 "$work/places" -)
done
# One word for one thing: these say in other words what the texts call gateway and organisation.
for others in en:company de:Unternehmen de:Firma fr:entreprise es:empresa es:pasarela; do
  complain "${others%%:*}" "has another word for one thing" \
    < <(grep -iE "^(msgstr|Comment).*${others#*:}" "$catalogues/${others%%:*}.po" "$1/resources/tarvikclient.desktop" || true)
done
exit $code
