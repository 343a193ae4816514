// The load services on a large model: 200 load cases, 32768 combinations and 100 envelopes,
// every tenth of which envelopes every combination. The host calls these after every change,
// so a refresh of the results selector should stay under about 100 ms.
#include "CombinationModel.h"
#include "host/MainFrame.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/Opterecenje.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

using benchmodel::kKombinacija;
using benchmodel::kSlucajeva;
constexpr int kAnvelopa = 100;
constexpr int kPromenljivih = 15; // 2^15 combinations of the variable cases

/// A headless frame in results mode.
class Okvir : public CMainFrame {
public:
    CId GetCurrentSloptId(int& number) const override {
        number = 0;
        return CId();
    }
    int GetBrojTekuceFazeGradjenja() const override { return 0; }
    bool IsCommandActive() const override { return false; }
    bool IsResultsMode() const override { return true; }
    void Pane0Event_SlucajOpterecenja(const CString&, const CId&, int) override {}
    void Pane2Event_UpdateUnit() override {}
    void Repaint() override {}
};

/// Combination j: the two permanent cases with 1.35 and, for every set bit of j, one of the
/// variable cases 3..17 with 1.5 (or 1.05 for the cases above 10): all combinations differ.
std::vector<std::pair<int, double>> Clanovi(int j) {
    std::vector<std::pair<int, double>> c = {{1, 1.35}, {2, 1.35}};
    for (int b = 0; b < kPromenljivih; ++b)
        if (j & (1 << b))
            c.emplace_back(3 + b, 3 + b > 10 ? 1.05 : 1.5);
    return c;
}

struct Model {
    Model() {
        base = benchmodel::NoviModel(ids);
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        for (int j = 0; j < kKombinacija; ++j) {
            auto p = std::make_unique<CKombinacijaOpterecenja>();
            p->Item().SetRedniBroj(j + 1);
            for (const auto& [rb, koef] : Clanovi(j))
                p->Item().DodajOsnOpt(koef, ids[static_cast<size_t>(rb - 1)]);
            p->Item().SetNaziv(CString::Formatted(L"K%d", j + 1));
            bm.Insert(p.release());
        }
        for (int e = 1; e <= kAnvelopa; ++e) {
            auto p = std::make_unique<CAnvelopaOpterecenja>();
            p->SetBroj(e);
            p->SetNaziv(CString::Formatted(L"Anvelopa %d", e));
            const int od = kSlucajeva + 1 + (e * 311) % (kKombinacija - 400);
            p->SetIzbor(e % 10 == 0 ? CString::Formatted(L"1-%d", kSlucajeva + kKombinacija)
                                    : CString::Formatted(L"1-20,%d-%d", od, od + 300));
            bm.Insert(p.release());
        }
        bm.Close();
        CMainFrame::Install(&okvir);
    }
    std::unique_ptr<CObjBase> base;
    std::vector<CId> ids;
    Okvir okvir;
};

Model& Velik() {
    static Model model;
    return model;
}

CLoadCaseUnit UnitKombinacije(int j) {
    OCArray<CLoadCaseFactor> f;
    for (const auto& [rb, koef] : Clanovi(j))
        f.Add(CLoadCaseFactor(rb, koef));
    CLoadCaseUnit u;
    u.Set(f, LCU_LINEARNA);
    return u;
}

/// Loads marked unstable: none, or the last combination only, so that every envelope over all
/// combinations has to number each of its units before it finds the marked one.
void Oznaci(bool bLabilni) {
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    if (bLabilni)
        COpterecenjeApp::MarkAsLabilanSlOpt(kSlucajeva + kKombinacija);
}

void BM_UpdateComboResults(benchmark::State& state) {
    Velik();
    COpterecenjeApp::SetTeorija(static_cast<int>(state.range(0)));
    Oznaci(state.range(1) != 0);
    for (auto _ : state) {
        COpterecenjeApp::UpdateComboResults(0);
        benchmark::DoNotOptimize(CMainFrame::Get()->Combo().GetCount());
    }
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    COpterecenjeApp::SetTeorija(1);
}
BENCHMARK(BM_UpdateComboResults)
    ->ArgsProduct({{1, 2}, {0, 1}})
    ->ArgNames({"teorija", "labilni"})
    ->Unit(benchmark::kMillisecond);

void BM_FaktoriZaProracun(benchmark::State& state) {
    Velik();
    CArray<double> f;
    const int z = kSlucajeva + static_cast<int>(state.range(0));
    for (auto _ : state) {
        COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(z, f);
        benchmark::DoNotOptimize(f.GetData());
    }
}
BENCHMARK(BM_FaktoriZaProracun)->Arg(0)->Arg(kKombinacija - 1)->Unit(benchmark::kMillisecond);

void BM_FaktoriZaIspis(benchmark::State& state) {
    Velik();
    COpterecenjeApp::SetTeorija(static_cast<int>(state.range(0)));
    CArray<double> f;
    const int z = kSlucajeva + kKombinacija - 1;
    for (auto _ : state) {
        COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(z, f);
        benchmark::DoNotOptimize(f.GetData());
    }
    COpterecenjeApp::SetTeorija(1);
}
BENCHMARK(BM_FaktoriZaIspis)->Arg(1)->Arg(2)->ArgName("teorija")->Unit(benchmark::kMillisecond);

void BM_LoadCaseUnitToRedniBroj(benchmark::State& state) {
    Velik();
    // The last combination in store order: the whole walk.
    const CLoadCaseUnit u = UnitKombinacije(static_cast<int>(state.range(0)));
    int rb = 0;
    for (auto _ : state) {
        rb = COpterecenjeApp::LoadCaseUnitToRedniBroj(u);
        benchmark::DoNotOptimize(rb);
    }
    if (rb != kSlucajeva + static_cast<int>(state.range(0)) + 1)
        state.SkipWithError("wrong ordinal");
}
BENCHMARK(BM_LoadCaseUnitToRedniBroj)->Arg(0)->Arg(kKombinacija - 1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
