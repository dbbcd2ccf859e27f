#!/usr/bin/env bash
# run_fuzz.sh FUZZER CONFIGDIR CORPUSDIR SECONDS
# Seeds the corpus with every file of the configuration directory, once for
# each reader, and fuzzes for a fixed time with a fixed seed.
set -euo pipefail
fuzzer=$1 configs=$2 corpus=$3 seconds=$4
rm -rf "$corpus"
mkdir -p "$corpus"
n=0
for file in "$configs"/*; do
  for reader in 0 1 2 3 4 5 6 7; do
    { printf "\\x$(printf %02x $reader)"; cat "$file"; } > "$corpus/seed-$n-$reader"
  done
  n=$((n + 1))
done
# Sizes at and around the bounds, for the sized-channel reader.
for size in 8000 8001 -1 2000000000 2147483647 -2147483648; do
  printf "\\x07e%s" "$size" > "$corpus/size-$size"
done
# Anything it finds is written beside the corpus, to be added to the tests.
exec "$fuzzer" "$corpus" -seed=1 -artifact_prefix="$(dirname "$corpus")/" -max_total_time="$seconds" -max_len=65536 -print_final_stats=1 \
  -rss_limit_mb=2048
