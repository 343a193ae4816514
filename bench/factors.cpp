// The factor vectors of every load of the realistic large model (200 load cases, 32768
// combinations of 20 load cases with generated names, 100 envelopes), as `show` and a
// host's result views ask for them: in one walk for all loads, in time linear in the model's
// size and the vectors' length. For comparison, load by load through the single services,
// which walk every combination for each load (on a sample of combinations).
#include "CombinationModel.h"
#include "Repetitions.h"
#include "services/Opterecenje.h"

#include <benchmark/benchmark.h>

namespace {

benchmodel::CombinationModel& Model() {
    static benchmodel::CombinationModel model(benchmodel::kAnvelopa);
    return model;
}

// Every load, for analysis (0) or for printing (1), under theory 1 or 2.
void BM_AllFactorVectors(benchmark::State& state) {
    Model();
    COpterecenjeApp::SetTeorija(static_cast<int>(state.range(1)));
    double zbir = 0.0;
    int redova = 0;
    const auto red = [&](int, const CArray<double>& f) {
        ++redova;
        zbir += f.IsEmpty() ? 0.0 : f[f.GetSize() - 1];
    };
    for (auto _ : state) {
        redova = 0;
        if (state.range(0) == 0)
            COpterecenjeApp::SviFaktori_ZaProracun(red);
        else
            COpterecenjeApp::SviFaktori_ZaIspis(red);
        benchmark::DoNotOptimize(zbir);
    }
    state.counters["loads"] = redova;
    COpterecenjeApp::SetTeorija(1);
}
BENCHMARK(BM_AllFactorVectors)
    ->Args({0, 1})
    ->Args({1, 1})
    ->Args({1, 2})
    ->ArgNames({"ispis", "teorija"})
    ->Apply(benchmodel::PetPuta);

// 100 combinations load by load, as a host without the walk for all loads asks for them.
void BM_FactorVectorsOneByOne(benchmark::State& state) {
    Model();
    CArray<double> f;
    for (auto _ : state)
        for (int j = 0; j < 100; ++j) {
            COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(
                benchmodel::kSlucajeva + j * (benchmodel::kKombinacija / 100), f);
            benchmark::DoNotOptimize(f.GetData());
        }
    state.counters["loads"] = 100;
}
BENCHMARK(BM_FactorVectorsOneByOne)->Apply(benchmodel::PetPuta);

} // namespace

BENCHMARK_MAIN();
