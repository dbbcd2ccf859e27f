#!/usr/bin/env bash
# Builds everything with warnings as errors and runs the whole test suite.
#   scripts/test.sh              the suite in build/test
#   scripts/test.sh --sanitize   the same suite built with AddressSanitizer and
#                                UndefinedBehaviorSanitizer in build/sanitize;
#                                any finding fails the test that made it
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
jobs=$(nproc)
case "${1:-}" in
  "")
    build="$top/build/test"
    cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLUMISCOPE_WERROR=ON
    ;;
  --sanitize)
    build="$top/build/sanitize"
    # -O1 keeps the build quick and the reports readable; no recovery, so
    # undefined behaviour ends the test instead of scrolling past. GCC 12
    # reports instrumented std::function members inside libstdc++'s own
    # std::regex as maybe-uninitialized; the plain build keeps that warning.
    flags="-O1 -g -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=all"
    flags="$flags -Wno-maybe-uninitialized"
    cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DLUMISCOPE_WERROR=ON \
      -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined"
    export ASAN_OPTIONS="detect_leaks=1:check_initialization_order=1"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
    export LSAN_OPTIONS="suppressions=$top/tests/support/leak_suppressions.txt:print_suppressions=0"
    ;;
  *)
    echo "usage: scripts/test.sh [--sanitize]" >&2
    exit 2
    ;;
esac
cmake --build "$build" -j"$jobs"
ctest --test-dir "$build" --output-on-failure -j"$jobs"
