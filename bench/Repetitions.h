#pragma once
// The figures the project reports for what a user waits for: every benchmark repeated five
// times, with the minimum and the median of the five runs (and the mean, for comparison).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace benchmodel {

inline constexpr int kPonavljanja = 5;

inline double Najmanja(const std::vector<double>& v) {
    return v.empty() ? 0.0 : *std::min_element(v.begin(), v.end());
}

/// Five runs reported as their minimum, median and mean.
inline void PetPuta(benchmark::internal::Benchmark* b) {
    b->Repetitions(kPonavljanja)
        ->ComputeStatistics("min", Najmanja)
        ->ReportAggregatesOnly(true)
        ->Unit(benchmark::kMillisecond);
}

} // namespace benchmodel
