// Benchmarks of the spectrum tools: percent conversion and live frames with
// thresholds, reference and peak hold on.
#include <benchmark/benchmark.h>
