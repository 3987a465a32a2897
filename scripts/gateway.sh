# A development gateway for the scripts beside this one, which source it after common.sh: $bin and $work, and a HOME
# of its own, whose settings trust the gateway.

bin=$project/build/release/bin
work=$(mktemp -d)
gateway_pid=

stop_gateway() {
  [ -n "$gateway_pid" ] || return 0
  kill "$gateway_pid" 2>/dev/null || true
  wait "$gateway_pid" || true
  gateway_pid=
}

clean_up() {
  stop_gateway
  rm -rf "$work"
}
trap clean_up EXIT

# launch_url KIND: also "portal", the page's address.
launch_url() { sed -n "s/^$1 //p" "$work/urls"; }

# trust AUTHORITY: the gateway's certificate is one of its own making, so the user's settings name it as one not to
# verify.
trust() {
  export XAUTHORITY=${XAUTHORITY:-$HOME/.Xauthority} # the display's key stays where it is
  export HOME=$work/home
  mkdir -p -m 0700 "$HOME/.Tarvik"
  cat >"$HOME/.Tarvik/tarvikclient.xml" <<SETTINGS
<tarvikclient>
 <sslcertignoredomains>
  <domains>$1</domains>
 </sslcertignoredomains>
</tarvikclient>
SETTINGS
}

# start_gateway [OPTION...]: in place of the one that runs.
start_gateway() {
  local portal
  stop_gateway
  : >"$work/urls" # before the gateway opens it: the loop below may come first
  "$bin/tarvik-devgateway" --port 0 "$@" >"$work/urls" 2>"$work/gateway.log" &
  gateway_pid=$!
  until [ "$(wc -l <"$work/urls")" -ge 5 ]; do
    kill -0 "$gateway_pid" 2>/dev/null || { cat "$work/gateway.log" >&2; return 1; }
    sleep 0.1
  done
  portal=$(launch_url portal)
  portal=${portal#https://}
  trust "${portal%/}"
}
