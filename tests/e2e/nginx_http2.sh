#!/usr/bin/env bash
# nginx_http2.sh PROGRAMS: a plug-in session through nginx, which ends TLS and speaks HTTP/2, in front of the
# development gateway. Exit code 77 where nginx is not installed.
set -euo pipefail

programs=$1
PATH=$PATH:/usr/sbin
command -v nginx >/dev/null || { echo "nginx is not installed"; exit 77; }

work=$(mktemp -d)
pids=()
finish() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait
  rm -rf "$work"
}
trap finish EXIT

openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=localhost \
  -keyout "$work/key.pem" -out "$work/certificate.pem" 2>/dev/null

# start PORT: nginx there and the gateway behind it; fails when a port is somebody else's. Neither picks one and tells.
start() {
  local port=$1 upstream=$(($1 + 10000)) gateway server at
  "$programs/tarvik-devgateway" --port "$upstream" --public-name localhost >"$work/gateway.log" 2>&1 &
  gateway=$!
  pids+=($gateway)
  cat >"$work/nginx.conf" <<CONF
daemon off;
master_process off;
pid $work/nginx.pid;
error_log $work/error.log;
events {}
http {
  access_log $work/access.log;
  client_body_temp_path $work/body;
  proxy_temp_path $work/proxy;
  fastcgi_temp_path $work/fastcgi;
  uwsgi_temp_path $work/uwsgi;
  scgi_temp_path $work/scgi;
  server {
    listen 127.0.0.1:$port ssl http2;
    ssl_certificate $work/certificate.pem;
    ssl_certificate_key $work/key.pem;
    location / { proxy_pass https://127.0.0.1:$upstream; proxy_set_header Host \$host; }
  }
}
CONF
  : >"$work/error.log"
  nginx -p "$work" -c "$work/nginx.conf" -e "$work/error.log" &
  server=$!
  pids+=($server)
  for at in "$upstream" "$port"; do
    until (exec 3<>/dev/tcp/127.0.0.1/"$at") 2>/dev/null; do
      kill -0 $gateway && kill -0 $server || return 1
      sleep 0.1
    done
  done
  kill -0 $gateway && kill -0 $server
}
port=
for _ in 1 2 3 4 5; do
  candidate=$((20000 + RANDOM % 10000))
  if start "$candidate" 2>/dev/null; then port=$candidate; break; fi
done
[ -n "$port" ] || { cat "$work/gateway.log" "$work/error.log"; exit 1; }

export HOME="$work/home"
mkdir -p "$HOME/.Tarvik"
echo "<tarvikclient><sslcertignoredomains><domains>localhost:$port</domains></sslcertignoredomains></tarvikclient>" \
  >"$HOME/.Tarvik/tarvikclient.xml"
"$programs/tarvikclient-cli" "tarvik://ticket@localhost:$port/mediation/plugindll?lang=en" | tee "$work/lines"
grep -q '^onVpnStatus connected ip=10.8.0.2$' "$work/lines"
[ "$(tail -n 1 "$work/lines")" = "onStatus 4" ]
# Every request of the session came over HTTP/2.
cat "$work/access.log"
grep -q '"GET /mediation/plugindll?[^"]* HTTP/2.0" 200' "$work/access.log"
! grep -v 'HTTP/2.0"' "$work/access.log"
