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
  if grep -rnE "^#include <($1)" --include='*.h' --include='*.cpp' libs apps | grep -vE "^($2|apps/devgateway)/"; then
    echo "^ these headers belong to $2"
    code=1
  fi
}
alone 'curl/' libs/curl
alone 'idn2' libs/http
alone 'openssl/' libs/openssl
alone 'json/' libs/json
alone 'archive' libs/zlib
alone '(wx|gtk|gdk|gio|glib)[/.-]' apps/tarvikclient/gui

# The client knows no screen.
if grep -rn '#include "tarvikclient/gui/' --include='*.h' --include='*.cpp' apps/tarvikclient |
    grep -v '^apps/tarvikclient/gui/'; then
  echo "^ these includes climb to the desktop program"
  code=1
fi
exit $code
