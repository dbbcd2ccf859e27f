# Sourced by viewer.sh for --network [N]: starts a single local etcd for the
# names (scripts/local-etcd.sh), N device servers and the archiver on
# loopback, and points the viewer at them through LUMISCOPE_TRANSPORT,
# LUMISCOPE_NAMES and etcd's read-only credentials (the servers get the ones
# that may register). A watcher stops them all, by process id, once the
# shell that started them (the viewer, after its exec) has ended.
#   start_network_servers BUILD_DIR CONFIG_DIR N
start_network_servers() {
  local bin="$1/bin" config="$2" count="$3"
  local logs
  logs=$(mktemp -d "${TMPDIR:-/tmp}/lumiscope-network.XXXXXX")
  local pids=()

  # Waits (at most 20 s) for a server's "listening on ADDR" and prints ADDR.
  listening_address() {
    local log="$1" i
    for i in $(seq 1 200); do
      if grep -q '^listening on ' "$log" 2>/dev/null; then
        sed -n 's/^listening on //p' "$log" | head -n 1
        return 0
      fi
      sleep 0.1
    done
    return 1
  }

  local etcd_said
  if ! etcd_said=$("$(dirname "${BASH_SOURCE[0]}")/local-etcd.sh" "$logs/etcd"); then
    echo "etcd did not start (see $logs/etcd); scripts/setup.sh installs it." >&2
    return 1
  fi
  local names etcd_pid server_password reader_password
  names=$(sed -n 's/^endpoint=//p' <<<"$etcd_said")
  etcd_pid=$(sed -n 's/^pid=//p' <<<"$etcd_said")
  server_password=$(sed -n 's/^server_password=//p' <<<"$etcd_said")
  reader_password=$(sed -n 's/^reader_password=//p' <<<"$etcd_said")
  pids+=("$etcd_pid")
  local as_server=(env LUMISCOPE_NAMES_USER=lumiscope-server "LUMISCOPE_NAMES_PASSWORD=$server_password")
  local i
  for ((i = 0; i < count; i++)); do
    "${as_server[@]}" "$bin/lumiscope-devserver" --config "$config" --shard "$i/$count" --names "$names" \
      >"$logs/devserver-$i.log" 2>&1 &
    pids+=($!)
  done
  "${as_server[@]}" "$bin/lumiscope-archiver" --config "$config" --names "$names" \
    ${LUMISCOPE_ARCHIVE_DB:+--db "$LUMISCOPE_ARCHIVE_DB"} >"$logs/archiver.log" 2>&1 &
  pids+=($!)
  for ((i = 0; i < count; i++)); do
    listening_address "$logs/devserver-$i.log" >/dev/null || echo "Device server $i did not start (see $logs)." >&2
  done
  listening_address "$logs/archiver.log" >/dev/null || echo "The archiver did not start (see $logs/archiver.log)." >&2

  local viewer=$$
  (
    while kill -0 "$viewer" 2>/dev/null; do sleep 0.5; done
    kill "${pids[@]}" 2>/dev/null
  ) </dev/null >/dev/null 2>&1 &

  export LUMISCOPE_TRANSPORT=network LUMISCOPE_NAMES="$names"
  export LUMISCOPE_NAMES_USER=lumiscope-reader LUMISCOPE_NAMES_PASSWORD="$reader_password"
  echo "etcd on $names, $count device server(s) and the archiver running; logs in $logs." >&2
}
