// Benchmarks of the time tools: movie steps, zoom on histories, waterfall.
#include <benchmark/benchmark.h>
