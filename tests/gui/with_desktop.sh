#!/usr/bin/env bash
# with_desktop.sh COMMAND...: runs the command on a desktop of its own: a display with a window manager, a session bus,
# and the accessibility bus, through which programs can be driven. Its exit code is the command's.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$here/with_display.sh" env -u NO_AT_BRIDGE -u DBUS_SESSION_BUS_ADDRESS dbus-run-session -- bash -c '
  exec 2>&3 3>&-
  openbox --sm-disable >/dev/null 2>&1 & manager=$!
  code=0; "$@" || code=$?
  kill $manager 2>/dev/null || true
  exit $code' desktop "$@" 3>&2 2>/dev/null
