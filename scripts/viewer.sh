#!/usr/bin/env bash
# Builds Lumiscope and starts it against the built-in simulated accelerator,
# reading the sample configuration directory.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build="$top/build/viewer"

# --network [N]: the viewer on N device servers (default 3), found through a
# local etcd, and the archiver, all started on loopback and stopped when the
# viewer ends.
network=""
if [ "${1:-}" = "--network" ]; then
  shift
  network=3
  if [[ "${1:-}" =~ ^[1-9][0-9]*$ ]]; then network=$1; shift; fi
fi

cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLUMISCOPE_TESTS=OFF
cmake --build "$build" -j"$(nproc)"

if [ -n "$network" ]; then
  . "$top/scripts/network-servers.sh"
  start_network_servers "$build" "$top/configs" "$network"
fi

# Without a display the viewer runs under xvfb-run (a screen nobody sees);
# "--snapshot FILE.png" draws off-screen instead and saves a picture.
run=("$build/bin/lumiscope" "$@")
unattended=0
for argument in "$@"; do
  case "$argument" in --snapshot|--help|-h|--quit-when-populated|--quit-when-live) unattended=1 ;; esac
done
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ "$unattended" -eq 0 ]; then
  echo "No display found: starting the viewer under xvfb-run." >&2
  echo "For a picture of the window instead: scripts/viewer.sh --snapshot viewer.png --channel 0 [--after 3] [--size 1280x800]" >&2
  run=(xvfb-run -a "${run[@]}")
fi
exec "${run[@]}"
