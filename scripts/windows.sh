# The client's windows and their states, a row each, for the pictures of screenshots.sh, which sources this.
#
# shot NAME SESSION WAY ROLE TEXT [MARGIN]: SESSION starts a client, WAY goes from what that shows to the window, which is
# the one with the control that bears TEXT (a key of the catalogue, or text of its own) in the ROLE that the
# accessibility bus names. MARGIN pixels around it are in the picture too.
windows() {
  shot panel-asking      waiting                -                label            TarvikClient
  shot panel-preparing   "tunnel init"          -                label            VPN_INIT
  shot panel-connected   "tunnel connected_v4"  -                label            "VPN_GIVENIP %s"
  shot panel-address     "tunnel connected_v6"  -                label            "VPN_GIVENIP %s"
  shot panel-interrupted interrupted            -                label            VPN_RECONNECTING
  shot panel-refused     "tunnel authError"     -                label            VPN_AUTHERROR
  shot panel-stopped     "tunnel ''"            -                label            VPN_STOPPED
  shot menu              "tunnel connected_v4"  open_menu        label            "VPN_GIVENIP %s"     110
  shot settings          "tunnel connected_v4"  open_settings    "check box"      SETTINGS_PROXY_USE_SYSTEM_PARAMETERS
  shot settings-wrong    refused                type_no_server   "check box"      SETTINGS_PROXY_USE_SYSTEM_PARAMETERS
  shot settings-message  refused                type_markup      label            SETTINGS_NOT_STORABLE
  shot about             "tunnel connected_v4"  open_about       label            8.2.0.21
  shot log               "tunnel connected_v4"  open_log         "push button"    "&Save"
  shot connection-error  refused                -                "push button"    Retry
  shot certificate-error distrusted             -                "push button"    Retry
  shot settings-offered  distrusted             open_offered     "check box"      SETTINGS_PROXY_USE_SYSTEM_PARAMETERS
  shot fatal-error       rejected               -                label            UNKNOWN_ERROR_HAS_OCCURED
  shot fatal-signature   forged                 -                label            UNKNOWN_ERROR_HAS_OCCURED
  shot last-session      after_a_crash          -                label            LAST_SESSION
  shot settings-broken   illegible              -                label            SETTINGS_UNREADABLE
  shot gateway-question  asking                 -                "push button"    "&Yes"
}

# --- Sessions

# The gateway is slow to answer.
waiting() { start_gateway --delay 600000; client "$(launch_url plugindll)"; }

# tunnel STATUS: the module stays in that state.
tunnel() {
  local i status=$1
  [ "$status" != connected_v4 ] || status="connected ip=10.8.0.2"
  [ "$status" != connected_v6 ] || status="connected ip=2001:db8:85a3:1234:5678:8a2e:370:7334"
  for i in {1..20}; do [ -n "$status" ] || echo '[{"code":"5","status":"connected"}]'; done >"$work/polls"
  for i in {1..999}; do printf '[{"code":"5","status":"%s"}]\n' "$status"; done >>"$work/polls"
  start_gateway --poll-script "$work/polls"
  client "$(launch_url plugindll)"
}

interrupted() {
  printf '[{"code":"5","status":"connected ip=10.8.0.2"}]\n' >"$work/polls"
  for _ in {1..999}; do echo '[{"code":"5","status":"reconnecting"}]'; done >>"$work/polls"
  start_gateway --poll-script "$work/polls"
  client "$(launch_url plugindll)"
}

# Nobody vouches for the gateway.
distrusted() { start_gateway; rm "$HOME/.Tarvik/tarvikclient.xml"; client "$(launch_url plugindll)"; }

forged() { rm -rf "$HOME/.Tarvik/Plugin"; start_gateway --fault bad-signature; client "$(launch_url plugindll)"; }

after_a_crash() {
  tunnel connected_v4
  ui shown label "$(pattern 'VPN_GIVENIP %s')"
  kill -KILL "$client_pid"
  wait "$client_pid" || true
  client "$(launch_url plugindll)"
}

illegible() {
  start_gateway --delay 600000
  echo "<tarvikclient><proxy" >"$HOME/.Tarvik/tarvikclient.xml"
  client "$(launch_url plugindll)"
}

# Where nobody listens.
refused() { trust localhost:1; client "tarvik://demo-ticket@localhost:1/mediation/plugindll?lang=en"; }

rejected() { start_gateway; client "$(launch_url refused)"; }

# Under a policy that asks about each gateway, which the program of the tests reads, and nobody after this session.
policy=$project/build/release/tests/e2e/policy/policy.xml
asking() {
  mkdir -p -m 0700 "$(dirname "$policy")"
  rm -f "$policy"
  echo '<policy><gateways><others>ask</others></gateways></policy>' >"$policy"
  chmod 0400 "$policy"
  start_gateway
  client "$(launch_url plugindll)" tarvikclient-policytest
}

# --- Ways

open_menu() {
  ui menu label "$(pattern 'VPN_GIVENIP %s')"
  ui shown "menu item" "$(text MENU_SETTINGS)"
}
choose() { open_menu && ui click "menu item" "$(text "$1")"; }
open_settings() { choose MENU_SETTINGS; }
open_about() { choose '&About'; }
open_log() { choose MENU_LOGS; }

open_offered() { ui click "push button" "$(text Settings)" && ui shown "push button" "$(text Add)"; }

type_no_server() {
  ui click "push button" "$(text Settings)"
  ui shown "push button" "$(text Add)"
  ui enter 0 'CORP\alice'
  ui enter 2 "two words"
  ui click "push button" "$(text Add)"
}
type_markup() {
  ui click "push button" "$(text Settings)"
  ui shown "push button" "$(text Add)"
  ui enter 0 "a<b"
  ui click "push button" "$(text '&OK')"
}
