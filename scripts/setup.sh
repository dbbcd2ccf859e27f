#!/usr/bin/env bash
# Installs what building, testing and benchmarking Lumiscope needs on Debian 12.
# Installs nothing when every package is already there.
set -euo pipefail
packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev libqcustomplot-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  clang libclang-rt-14-dev            # libFuzzer for the reader fuzz test
  xvfb xauth                          # the viewer on a machine without a display
  python3-pyqtgraph python3-pyqt5 python3-numpy   # reference plots of bench/run plots
  libgrpc++-dev protobuf-compiler-grpc libprotobuf-dev protobuf-compiler   # the network transport and servers
  libsqlite3-dev libpq-dev postgresql-15   # the archiver's databases
  libcli11-dev nlohmann-json3-dev     # the programs' options and JSON output
  qt6-tools-dev                       # the Qt Designer plugin of the control
  help2man                            # man pages from the programs' --help
  desktop-file-utils appstream        # checks of the menu entry and the AppStream data
  dpkg-dev file                       # the Debian package (cpack -G DEB)
  etcd-server etcd-client             # the servers' names (etcd, etcdctl)
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
$sudo apt-get update
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
