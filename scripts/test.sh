#!/usr/bin/env bash
# Builds everything with warnings as errors and runs the whole test suite.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build="$top/build/test"
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLUMISCOPE_WERROR=ON
cmake --build "$build" -j"$(nproc)"
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
