// The combination editor on a realistic model: 64 load cases with the usual rules (four
// permanent cases, thirty pairs of cases that are never combined, such as wind from either
// side, and cases that must always come with another one) and 32768 combinations, a quarter
// of them repeated under names of their own. The model is written to a file and opened as a
// host opens it. Finding the admissible sets should stay under 50 ms, generating 32768
// combinations under 100 ms, and opening the editor, each sort, duplicate removal and OK under
// 100 ms each; the editor holding such a model under 200 MB (BM_PeakMemory, run it alone:
// --benchmark_filter=PeakMemory).
#include "dialog/ScriptedRunner.h"
#include "dialogs/DlgKombOpt.h"
#include "dialogs/KombPodskupovi.h"
#include "host/Model.h"
#include "host/ModelFile.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/ModelRegistration.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr int kSlucajeva = 64;
constexpr int kStalnih = 4;
constexpr int kKombinacija = 32768;

/// The load cases of the model in a list: G1..G4 permanent, then pairs never combined with
/// each other; the first case of every third pair must come with the case before it.
CSlOptItemArray Slucajevi() {
    CSlOptItemArray s;
    for (int k = 0; k < kSlucajeva; ++k) {
        OCArray<CId> nikad;
        OCArray<CId> uvek;
        const bool stalno = k < kStalnih;
        if (!stalno) {
            const int par = (k - kStalnih) / 2;
            const int prvi = kStalnih + 2 * par;
            nikad.Add(CId(1 + (k == prvi ? prvi + 1 : prvi)));
            if (k == prvi && par % 3 == 1)
                uvek.Add(CId(k)); // the case before it (id k is case k-1)
        }
        s.AddNew(CString::Formatted(L"%s %d - opterecenje sa dugim opisnim nazivom",
                                    stalno ? L"Stalno" : L"Povremeno", k + 1),
                 k + 1, 0, 0, 0, CId(k + 1), stalno ? 1.35 : 1.5, stalno ? 1 : 0, 0, nikad, uvek,
                 0);
    }
    return s;
}

struct Model {
    Model() {
        RegisterHostClasses();
        RegisterLoadClasses();
        CModel::SnimiUskladisteneKombinacije = &CKombOptItemArray::SnimiUskladisteneKombinacije;
        CModel::UcitajUskladisteneKombinacije = &CKombOptItemArray::UcitajUskladisteneKombinacije;
        runner.Install(); // every question answered with its first button: "Zameni"
        const CSlOptItemArray s = Slucajevi();
        {
            auto base = std::make_unique<CObjBase>();
            CObjBase::SetCurrent(base.get());
            CBaseManager bm;
            bm.Open(CBaseManager::Write);
            // Load case k gets the id k + 1 that the rules name.
            for (int k = 0; k < kSlucajeva; ++k) {
                auto p = std::make_unique<CSlucajOpterecenja>();
                p->Set(k + 1, s[k]);
                bm.Insert(p.release());
            }
            bm.Insert(std::make_unique<CModel>().release());
            bm.Close();
            // The combinations: the first admissible sets, three quarters of them once more
            // under a name of their own, shuffled.
            CTabelaPodskupova tabela;
            tabela.PostaviPravila(s);
            tabela.Nabroji(s);
            std::vector<std::pair<int, bool>> redovi;
            for (int r = 0; r < kKombinacija * 3 / 4; ++r)
                redovi.emplace_back(r, false);
            std::mt19937 rng(5);
            for (int i = 0; i < kKombinacija / 4; ++i)
                redovi.emplace_back(static_cast<int>(rng() % (kKombinacija * 3 / 4)), true);
            std::shuffle(redovi.begin(), redovi.end(), rng);
            bm.Open(CBaseManager::Write);
            for (size_t j = 0; j < redovi.size(); ++j) {
                auto p = std::make_unique<CKombinacijaOpterecenja>();
                p->Item().SetRedniBroj(static_cast<int>(j) + 1);
                for (int k = 0; k < kSlucajeva; ++k)
                    if (tabela.Sadrzi(redovi[j].first, k))
                        p->Item().DodajOsnOpt(s[k].m_dKoeficijent, CId(k + 1));
                if (redovi[j].second)
                    p->Item().SetNaziv(CString::Formatted(L"Kombinacija %zu", j + 1));
                else
                    p->Item().SetGenericName(nullptr, 0);
                bm.Insert(p.release());
            }
            bm.Close();
            fajl = std::filesystem::temp_directory_path() /
                   ("vorta-bench-kombinacije-" + std::to_string(::getpid()) + ".vld");
            CString greska;
            CModelFile::Save(*base, fajl, greska);
            CObjBase::SetCurrent(nullptr);
        }
        CString greska;
        base = CModelFile::Load(fajl, greska);
        if (!base) {
            std::fprintf(stderr, "%s\n", greska.ToUtf8().c_str());
            std::abort();
        }
        CObjBase::SetCurrent(base.get());
    }
    ~Model() {
        std::error_code ec;
        std::filesystem::remove(fajl, ec);
    }
    std::filesystem::path fajl;
    std::unique_ptr<CObjBase> base;
    CScriptedRunner runner;
};

Model& Velik() {
    static Model model;
    return model;
}

/// An editor opened on the model.
std::unique_ptr<CDlgKombOpt> Otvori() {
    auto dlg = std::make_unique<CDlgKombOpt>();
    dlg->Start();
    return dlg;
}

using Sat = std::chrono::steady_clock;
double Sekundi(Sat::time_point od) {
    return std::chrono::duration<double>(Sat::now() - od).count();
}

/// Processor time of the process: on a machine shared with other work it tells what the wall
/// time of an idle machine would be.
double Procesor() {
    timespec t{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

void Min(benchmark::internal::Benchmark* b) {
    b->ComputeStatistics(
        "min", [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); });
    b->Repetitions(5)->Unit(benchmark::kMillisecond);
}

void BM_AdmissibleSets(benchmark::State& state) {
    const CSlOptItemArray s = Slucajevi();
    CTabelaPodskupova tabela;
    tabela.PostaviPravila(s);
    int broj = 0;
    for (auto _ : state) {
        tabela.Nabroji(s);
        broj = tabela.BrojMogucihKombinacija(s);
        benchmark::DoNotOptimize(broj);
    }
    state.counters["rows"] = tabela.BrojRedova();
    state.counters["count"] = broj;
}
BENCHMARK(BM_AdmissibleSets)->Apply(Min);

void BM_OpenEditor(benchmark::State& state) {
    Velik();
    for (auto _ : state) {
        auto dlg = Otvori();
        benchmark::DoNotOptimize(dlg.get());
        state.PauseTiming();
        dlg.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenEditor)->Iterations(10)->Apply(Min);

/// Times one command of a freshly opened editor.
template <class Komanda> void Komandu(benchmark::State& state, Komanda komanda) {
    Velik();
    double procesor = 0.0;
    for (auto _ : state) {
        auto dlg = Otvori();
        const auto od = Sat::now();
        const double p = Procesor();
        komanda(*dlg);
        procesor += Procesor() - p;
        state.SetIterationTime(Sekundi(od));
    }
    state.counters["cpu_ms"] =
        benchmark::Counter(procesor * 1e3, benchmark::Counter::kAvgIterations);
}

void BM_Generate(benchmark::State& state) {
    Komandu(state, [](CDlgKombOpt& d) {
        d.Dialog().UserClick(1008);
        benchmark::DoNotOptimize(d.Kombinacije().GetSize());
    });
}
BENCHMARK(BM_Generate)->Iterations(10)->UseManualTime()->Apply(Min);

void BM_SortAscending(benchmark::State& state) {
    Komandu(state, [](CDlgKombOpt& d) { d.Dialog().UserMenuCommand(36866); });
}
BENCHMARK(BM_SortAscending)->Iterations(10)->UseManualTime()->Apply(Min);

void BM_SortDescending(benchmark::State& state) {
    Komandu(state, [](CDlgKombOpt& d) { d.Dialog().UserMenuCommand(36865); });
}
BENCHMARK(BM_SortDescending)->Iterations(10)->UseManualTime()->Apply(Min);

void BM_RemoveDuplicates(benchmark::State& state) {
    Komandu(state, [&](CDlgKombOpt& d) {
        d.Dialog().UserMenuCommand(36867);
        state.counters["left"] = d.Kombinacije().GetSize();
    });
}
BENCHMARK(BM_RemoveDuplicates)->Iterations(10)->UseManualTime()->Apply(Min);

/// OK after a change of every combination: a sort rewrites them all, a generation replaces
/// them all.
void BM_Ok(benchmark::State& state) {
    const bool generisi = state.range(0) != 0;
    Velik();
    double procesor = 0.0;
    for (auto _ : state) {
        auto dlg = Otvori();
        dlg->Dialog().UserMenuCommand(36866);
        if (generisi)
            dlg->Dialog().UserClick(1008);
        const auto od = Sat::now();
        const double p = Procesor();
        dlg->Dialog().UserClick(IDOK);
        procesor += Procesor() - p;
        state.SetIterationTime(Sekundi(od));
        // As a host does when idle: what can no longer be redone is freed.
        Velik().base->ReleaseDiscarded();
        Velik().base->Undo();
    }
    state.counters["cpu_ms"] =
        benchmark::Counter(procesor * 1e3, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_Ok)->Arg(0)->Arg(1)->Iterations(10)->UseManualTime()->Apply(Min);

void BM_PeakMemory(benchmark::State& state) {
    Velik();
    for (auto _ : state) {
        auto dlg = Otvori();
        dlg->Dialog().UserMenuCommand(36866);
        dlg->Dialog().UserClick(1008);
        dlg->Dialog().UserClick(IDOK);
        Velik().base->ReleaseDiscarded();
        Velik().base->Undo();
    }
    rusage r{};
    ::getrusage(RUSAGE_SELF, &r);
    state.counters["peak_MB"] = static_cast<double>(r.ru_maxrss) / 1024.0;
}
BENCHMARK(BM_PeakMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
