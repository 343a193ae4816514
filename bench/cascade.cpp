// Deleting one load case from a large model (200 load cases, 32768 combinations of 20 load
// cases each): the load case goes, the combinations that contain it follow, the rest are
// renumbered and renamed, all in one undo step. It should take under 50 ms.
#include "CombinationModel.h"

#include <benchmark/benchmark.h>

namespace {

benchmodel::CombinationModel& Model() {
    static benchmodel::CombinationModel model;
    return model;
}

/// Deletes load case k (0-based) as the load case editor does and runs the cascade; the
/// benchmark then undoes the step outside the timing and, as a host does when it is idle,
/// frees the undo steps that can no longer be reached.
void BrisiSlucaj(benchmark::State& state, int k) {
    benchmodel::CombinationModel& model = Model();
    const CId slOpt = model.slucajevi[static_cast<size_t>(k)];
    int obrisano = 0;
    for (auto _ : state) {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.FreezeUndoCounter();
        bm.Delete(slOpt);
        // The cases after it move up one place.
        for (size_t i = static_cast<size_t>(k) + 1; i < model.slucajevi.size(); ++i) {
            auto* p = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(model.slucajevi[i]));
            p->PostaviRedniBroj(p->DajRedniBroj() - 1);
        }
        obrisano = CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(slOpt);
        bm.UnfreezeUndoCounter();
        bm.Close();

        state.PauseTiming();
        if (obrisano == 0 || !model.base->Undo())
            state.SkipWithError("the cascade did not run");
        model.base->ReleaseDiscarded();
        state.ResumeTiming();
    }
    state.counters["deleted"] = obrisano;
}

// The last load case: the survivors are renumbered, their names stay.
void BM_DeleteLastLoadCase(benchmark::State& state) {
    BrisiSlucaj(state, benchmodel::kSlucajeva - 1);
}
BENCHMARK(BM_DeleteLastLoadCase)->Unit(benchmark::kMillisecond);

// The first load case: every other case moves up, so every surviving name changes too.
void BM_DeleteFirstLoadCase(benchmark::State& state) {
    BrisiSlucaj(state, 0);
}
BENCHMARK(BM_DeleteFirstLoadCase)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
