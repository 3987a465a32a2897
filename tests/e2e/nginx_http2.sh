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

: >"$work/urls" # before the gateway opens it: the loop below may come first
"$programs/tarvik-devgateway" --port 0 --public-name localhost >"$work/urls" 2>"$work/gateway.log" &
pids+=($!)
# The port that the gateway got is known to the system alone, its URLs name the public one.
upstream=
for _ in $(seq 300); do
  [ "$(wc -l <"$work/urls")" -lt 5 ] || break
  sleep 0.1
done
inode=$(readlink /proc/"${pids[0]}"/fd/* | sed -n 's/^socket:\[\(.*\)\]$/\1/p')
for socket in $inode; do
  hex=$(awk -v inode="$socket" '$10 == inode && $4 == "0A" { split($2, a, ":"); print a[2] }' /proc/net/tcp)
  [ -z "$hex" ] || upstream=$((16#$hex))
done
[ -n "$upstream" ] || { cat "$work/gateway.log"; exit 1; }

# nginx cannot pick a port of its own and tell: try some until one is free.
start_nginx() {
  local port=$1
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
  nginx_pid=$!
  for _ in $(seq 50); do
    kill -0 "$nginx_pid" 2>/dev/null || return 1
    if (exec 3<>/dev/tcp/127.0.0.1/"$port") 2>/dev/null; then
      pids+=("$nginx_pid")
      return 0
    fi
    sleep 0.1
  done
  return 1
}
port=
for _ in 1 2 3 4 5; do
  candidate=$((20000 + RANDOM % 10000))
  if start_nginx "$candidate"; then port=$candidate; break; fi
done
[ -n "$port" ] || { cat "$work/error.log"; exit 1; }

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
