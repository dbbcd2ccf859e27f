# Sourced by viewer.sh for --network [N]: starts the name service, N device
# servers and the archiver on loopback and points the viewer at them through
# LUMISCOPE_TRANSPORT and LUMISCOPE_NAMES. A watcher stops them all, by
# process id, once the shell that started them (the viewer, after its exec)
# has ended.
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

  "$bin/lumiscope-names" --listen 127.0.0.1:0 >"$logs/names.log" 2>&1 &
  pids+=($!)
  local names
  if ! names=$(listening_address "$logs/names.log"); then
    echo "The name service did not start (see $logs/names.log)." >&2
    kill "${pids[@]}" 2>/dev/null
    return 1
  fi
  local i
  for ((i = 0; i < count; i++)); do
    "$bin/lumiscope-devserver" --config "$config" --shard "$i/$count" --names "$names" \
      >"$logs/devserver-$i.log" 2>&1 &
    pids+=($!)
  done
  "$bin/lumiscope-archiver" --config "$config" --names "$names" \
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
  echo "Name service on $names, $count device server(s) and the archiver running; logs in $logs." >&2
}
