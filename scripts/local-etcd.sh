#!/usr/bin/env bash
# Starts a single-member etcd on loopback that holds Lumiscope's server names,
# with authentication on: the user lumiscope-server may write the names, the
# user lumiscope-reader only read them (root administers). For one machine:
# the viewer's --network start and the tests; a site runs a cluster (README).
#
#   scripts/local-etcd.sh DIR [CLIENT_PORT PEER_PORT]
#
# Keeps its data and log in DIR and prints, once etcd answers:
#   endpoint=127.0.0.1:PORT
#   pid=PID                         (stop it with: kill PID)
#   server_password=...   reader_password=...
# Without ports it takes two free ones.
set -euo pipefail
dir="$1"
client_port="${2:-}"
peer_port="${3:-}"
mkdir -p "$dir"
rm -rf "$dir/data"  # a fresh store: its users' passwords are made anew below

free_port() {
  local port
  for _ in $(seq 1 50); do
    port=$((20000 + RANDOM % 30000))
    if ! (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; then echo "$port"; return 0; fi
  done
  return 1
}
[ -n "$client_port" ] || client_port=$(free_port)
[ -n "$peer_port" ] || peer_port=$(free_port)
endpoint="127.0.0.1:$client_port"

etcd --name lumiscope-names --data-dir "$dir/data" \
  --listen-client-urls "http://$endpoint" --advertise-client-urls "http://$endpoint" \
  --listen-peer-urls "http://127.0.0.1:$peer_port" --initial-advertise-peer-urls "http://127.0.0.1:$peer_port" \
  --initial-cluster "lumiscope-names=http://127.0.0.1:$peer_port" \
  </dev/null >"$dir/etcd.log" 2>&1 &
pid=$!

ctl() { ETCDCTL_API=3 etcdctl --endpoints="$endpoint" --dial-timeout=2s "$@" >>"$dir/setup.log" 2>&1; }
for _ in $(seq 1 100); do
  ctl endpoint health && break
  kill -0 "$pid" 2>/dev/null || { echo "etcd did not start (see $dir/etcd.log)" >&2; exit 1; }
  sleep 0.1
done

password() { head -c 18 /dev/urandom | base64 | tr -d '/+='; }
root_password=$(password)
server_password=$(password)
reader_password=$(password)
set_up() {
  ctl user add "root:$root_password" --interactive=false &&
    ctl role add lumiscope-server &&
    ctl role grant-permission lumiscope-server readwrite /lumiscope/names/ --prefix=true &&
    ctl user add "lumiscope-server:$server_password" --interactive=false &&
    ctl user grant-role lumiscope-server lumiscope-server &&
    ctl role add lumiscope-reader &&
    ctl role grant-permission lumiscope-reader read /lumiscope/names/ --prefix=true &&
    ctl user add "lumiscope-reader:$reader_password" --interactive=false &&
    ctl user grant-role lumiscope-reader lumiscope-reader &&
    ctl auth enable
}
set_up || { echo "etcd's users could not be set up (see $dir/setup.log)" >&2; kill "$pid"; exit 1; }
echo "endpoint=$endpoint"
echo "pid=$pid"
echo "server_password=$server_password"
echo "reader_password=$reader_password"
