// Writing and reading the records of a large model: 200 load cases and 32768 combinations of
// 20 load cases each. Saving and loading should move at least 200 MB/s through the records.
#include "CombinationModel.h"
#include "host/ModelFile.h"

#include <benchmark/benchmark.h>

namespace {

benchmodel::CombinationModel& Model() {
    // The module's start-up hands the host its stored-combinations section handlers.
    CModel::SnimiUskladisteneKombinacije = &CKombOptItemArray::SnimiUskladisteneKombinacije;
    CModel::UcitajUskladisteneKombinacije = &CKombOptItemArray::UcitajUskladisteneKombinacije;
    static benchmodel::CombinationModel model;
    return model;
}

/// Writes every load case and combination record, one after the other, as a model file holds
/// them.
void WriteAll(const CObjBase& base, CFiller& f) {
    f.Open(CFiller::Mode::Write);
    for (const int type : {CSlucajOpterecenja::Type, CKombinacijaOpterecenja::Type}) {
        for (const CId& id : base.Ids(type))
            base.Find(id)->ToFiller(f);
    }
    f.Close();
}

void BM_WriteRecords(benchmark::State& state) {
    const CObjBase& base = *Model().base;
    // One stream for all rounds: after the first it has room for the whole model, so the
    // rounds measure the records and not the growth of the buffer.
    CFiller f;
    WriteAll(base, f);
    for (auto _ : state) {
        WriteAll(base, f);
        benchmark::DoNotOptimize(f.Buffer().data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(f.Size()));
    state.counters["MB"] = static_cast<double>(f.Size()) / 1e6;
}
BENCHMARK(BM_WriteRecords)->Unit(benchmark::kMillisecond);

void BM_ReadRecords(benchmark::State& state) {
    CFiller f;
    WriteAll(*Model().base, f);
    std::vector<CObj*> objects;
    objects.reserve(benchmodel::kSlucajeva + benchmodel::kKombinacija);
    for (auto _ : state) {
        f.Open(CFiller::Mode::Read);
        for (int k = 0; k < benchmodel::kSlucajeva; ++k) {
            auto* p = new CSlucajOpterecenja;
            p->FromFiller(f);
            objects.push_back(p);
        }
        for (int j = 0; j < benchmodel::kKombinacija; ++j) {
            auto* p = new CKombinacijaOpterecenja;
            p->FromFiller(f);
            objects.push_back(p);
        }
        if (f.IsError() || f.Remaining() != 0)
            state.SkipWithError("the records did not read back");
        f.Close();
        state.PauseTiming();
        for (CObj* p : objects)
            p->Destroy(1);
        objects.clear();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(f.Size()));
}
BENCHMARK(BM_ReadRecords)->Unit(benchmark::kMillisecond);

// The whole model file through the host, which frames every record and checks the file: for
// comparison with the records alone.
void BM_WriteModelFile(benchmark::State& state) {
    size_t bytes = 0;
    for (auto _ : state) {
        std::vector<uint8_t> file = CModelFile::Write(*Model().base);
        bytes = file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes));
}
BENCHMARK(BM_WriteModelFile)->Unit(benchmark::kMillisecond);

void BM_ReadModelFile(benchmark::State& state) {
    const std::vector<uint8_t> file = CModelFile::Write(*Model().base);
    for (auto _ : state) {
        CString error;
        std::unique_ptr<CObjBase> read = CModelFile::Read(file, error);
        if (!read)
            state.SkipWithError("the model file did not read back");
        state.PauseTiming();
        read.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(file.size()));
}
BENCHMARK(BM_ReadModelFile)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
