#!/usr/bin/env bash
# Builds Lumiscope and starts it against the built-in simulated accelerator,
# reading the sample configuration directory.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build="$top/build/viewer"

# --network [N]: the viewer on N device servers (default 3), a name service and
# the archiver started on loopback, all stopped when the viewer ends.
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

if [ -x "$build/bin/lumiscope" ]; then
  run=("$build/bin/lumiscope" "$@")
  if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "No display found: starting the viewer under xvfb-run." >&2
    run=(xvfb-run -a "${run[@]}")
  fi
  exec "${run[@]}"
fi

# Until the viewer window exists: check the sample configuration the way the
# viewer will read it, then, on a display, show the plot demo fed live by the
# simulated accelerator.
echo "The viewer window is not built yet: checking the sample configuration instead."
"$build/bin/lumiscope-config" check "$top/configs"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x "$build/bin/lumiscope-plot-demo" ]; then
  echo "Showing the plot demo on the simulated accelerator meanwhile."
  exec "$build/bin/lumiscope-plot-demo" --config "$top/configs"
fi
