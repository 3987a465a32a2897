#!/usr/bin/env bash
# floors.sh PROJECT: no include climbs. Each folder names the folders that it may include from, the units of libs/base
# stand on four floors, and each library of somebody else's is included in one folder alone.
set -euo pipefail
cd "$1"
code=0

# allow FOLDER PATTERN...: the quoted includes under FOLDER begin with one of the patterns.
allow() {
  local folder=$1 pattern
  shift
  pattern=$(printf '|%s/' "$@")
  if grep -rnE '^#include "' --include='*.h' --include='*.cpp' "$folder" | grep -vE "#include \"(${pattern:1})"; then
    echo "^ these includes climb out of $folder's floor"
    code=1
  fi
}
allow libs/base base
allow libs/xml xml base
allow libs/json json base
allow libs/http http base
allow libs/curl curl http base
allow libs/openssl openssl base
allow libs/zlib zlib base
allow apps/tarvikclient tarvikclient tarvik base xml json http curl openssl zlib
allow apps/signmodule signmodule tarvikclient base openssl xml
allow apps/devgateway devgateway

# The floors of libs/base are lists in its CMakeLists.txt, lowest first. Prints each include that climbs, and each file
# that stands on no floor.
climbs_in_base() {
  awk '
    FILENAME ~ /CMakeLists/ {
      for (i = 1; i <= NF; ++i) {
        if ($i ~ /^set\(base_/) { ++floor; listing = 1 }
        else if (listing) { unit = $i; sub(/\)$/, "", unit); floors[unit] = floor }
        if ($i ~ /\)$/) listing = 0
      }
      next
    }
    FNR == 1 {
      unit = FILENAME
      gsub(/.*\/|\.(h|cpp)$/, "", unit)
      if (!(unit in floors)) sub(/_(linux|mac)$/, "", unit)
      if (!(unit in floors)) print FILENAME ": on no floor"
    }
    /^#include "base\// {
      included = $2
      gsub(/"|base\/|\.h/, "", included)
      if (floors[included] > floors[unit]) print FILENAME ":" FNR ": " $0
    }' libs/base/CMakeLists.txt libs/base/*.h libs/base/*.cpp
}
climbs=$(climbs_in_base)
if [ -n "$climbs" ]; then
  echo "$climbs"
  echo "^ these climb between the floors of libs/base"
  code=1
fi

# alone HEADERS FOLDER: only sources under FOLDER include these headers, and those of the development gateway, which
# shares nothing with the client.
alone() {
  if grep -rnE "^#include <($1)" --include='*.h' --include='*.cpp' libs apps | grep -vE "^($2|apps/devgateway)[/.]"; then
    echo "^ these headers belong to $2"
    code=1
  fi
}
alone 'curl/' libs/curl
alone 'idn2' libs/http
alone 'openssl/' libs/openssl
alone 'json/' libs/json
alone 'archive' libs/zlib
alone '(wx|gtk|gdk|glib)[/.-]' apps/tarvikclient/gui
alone 'gio[/.-]' 'apps/tarvikclient/(gui|gobjectpointer_linux|systemproxy_linux)'

# only FOLDER REGEX WHAT: every include under FOLDER, as <x> or "x", matches.
only() {
  if grep -rnE '^#include ' --include='*.h' --include='*.cpp' "$1" | grep -vE "#include ($2)"; then
    echo "^ in $1, $3"
    code=1
  fi
}
client='"tarvikclient/[^/]*"|"(base|xml|json|http|curl|openssl|zlib)/'
# The client knows no screen.
only apps/tarvikclient/cli '"tarvikclient/cli/|'"$client"'|"tarvik/|<' 'these includes climb to another program'
if grep -rnE '#include "tarvikclient/(gui|cli)/' --include='*.h' --include='*.cpp' apps/tarvikclient/*.*; then
  echo "^ these includes climb to a program"
  code=1
fi

# The three rooms of the desktop program: what is decided without a window, what differs from desktop to desktop, and
# the windows, which know both. The first lists what it may take of the system and of wxWidgets, and that is no window.
gui=apps/tarvikclient/gui
system='<[a-z_]+>|<(arpa/inet|fcntl|langinfo|pwd|unistd|sys/(stat|types))\.h>'
windowless='<wx/(arrstr|datetime|defs|dynarray|intl|log|regex|strconv|string|translation|utils|xlocale)\.h>'
only $gui/model "\"tarvikclient/gui/model/|$client|$system|$windowless" 'these includes need a window or another room'
only $gui/platform "\"tarvikclient/gui/platform/|$client|<" 'these includes climb to the windows or to the model'
only $gui "\"tarvikclient/gui/|$client|<" 'these includes go to another program'

# units FOLDER: each include there between two of its units, as a pair; NAME.h, NAME.cpp and NAME_SYSTEM.cpp are one.
units() {
  grep -roE '^#include "[^"]+"' --include='*.h' --include='*.cpp' "$1" | sed -nE \
    "s#^apps/(.*)\.(h|cpp):.include \"(${1#apps/}/.*)\.h\"#\1 \3#p" | sed -E 's#_(linux|mac) # #'
}
if ! units $gui | awk '$1 != $2' | tsort >/dev/null; then
  echo "^ these units of $gui know one another in a circle"
  code=1
fi
exit $code
