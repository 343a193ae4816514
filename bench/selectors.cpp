// The results selector of the realistic large model (200 load cases, 32768 combinations of 20
// load cases with generated names, 100 envelopes, every tenth over every load case and
// combination), as the user meets it: the refresh that the host asks for after every change,
// UpdateComboResults(-1), with a load case, a combination or an envelope over all loads
// current, with and without loads marked unstable, and the choice of such an envelope in the
// list. Each should take under 100 ms. CPU time is what counts on a shared machine.
#include "CombinationModel.h"
#include "Repetitions.h"
#include "host/MainFrame.h"
#include "host/VortaUtils.h"
#include "model/ComboItemArray.h"
#include "model/GeneralizedLoadCase.h"
#include "services/Opterecenje.h"

#include <benchmark/benchmark.h>

namespace {

using benchmodel::kKombinacija;
using benchmodel::kSlucajeva;

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

struct Model {
    Model() : model(benchmodel::kAnvelopa) {
        CMainFrame::Install(&okvir);
        // The host evaluates the new current load; here it only takes it.
        COpterecenjeApp::ChangeLoadCaseTo = [](const CGeneralizedLoadCase& glc, int) {
            return glc.GetSize() >= 0 ? 1 : 0;
        };
    }
    benchmodel::CombinationModel model;
    Okvir okvir;
};

Model& Velik() {
    static Model model;
    return model;
}

/// The position in the results list of the current load of each kind: the load case 100,
/// the combination 16384, the envelope 10 (over every load).
int Pozicija(int vrsta) {
    switch (vrsta) {
    case 0:
        return 99;
    case 1:
        return kSlucajeva + 16383;
    default:
        return kSlucajeva + kKombinacija + benchmodel::kSveAnvelope - 1;
    }
}

/// Makes the load at that position current, as the user's choice in the list does.
void Izaberi(int pozicija) {
    COpterecenjeApp::UpdateComboResults(0);
    CMainFrame::Get()->Combo().SetCurSel(pozicija);
    COpterecenjeApp::OnCombo();
}

/// Loads marked unstable: none, or the last combination, so that an envelope over every load
/// has to number each of its units before it finds the marked one.
void Oznaci(bool bLabilni) {
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    if (bLabilni)
        COpterecenjeApp::MarkAsLabilanSlOpt(kSlucajeva + kKombinacija);
}

// The refresh after a change, with the current load kept: load case (0), combination (1) or
// envelope over every load (2).
void BM_RefreshWithCurrentLoad(benchmark::State& state) {
    Velik();
    COpterecenjeApp::SetTeorija(static_cast<int>(state.range(2)));
    Oznaci(false);
    Izaberi(Pozicija(static_cast<int>(state.range(0))));
    Oznaci(state.range(1) != 0);
    for (auto _ : state) {
        COpterecenjeApp::UpdateComboResults(-1);
        benchmark::DoNotOptimize(CMainFrame::Get()->Combo().GetCurSel());
    }
    if (CMainFrame::Get()->Combo().GetCurSel() != Pozicija(static_cast<int>(state.range(0))))
        state.SkipWithError("the current load was not kept");
    Oznaci(false);
    COpterecenjeApp::SetTeorija(1);
}
// (An envelope over every load cannot stay current with a load marked unstable: the choice
// falls back to another load.)
BENCHMARK(BM_RefreshWithCurrentLoad)
    ->Args({0, 0, 1})
    ->Args({1, 0, 1})
    ->Args({2, 0, 1})
    ->Args({0, 1, 1})
    ->Args({1, 1, 1})
    ->Args({2, 0, 2})
    ->ArgNames({"current", "unstable", "teorija"})
    ->Apply(benchmodel::PetPuta);

// The user's choice of the envelope over every load in the list.
void BM_ChooseEnvelopeOverAllLoads(benchmark::State& state) {
    Velik();
    COpterecenjeApp::SetTeorija(static_cast<int>(state.range(0)));
    Oznaci(false);
    COpterecenjeApp::UpdateComboResults(0);
    for (auto _ : state) {
        CMainFrame::Get()->Combo().SetCurSel(Pozicija(2));
        COpterecenjeApp::OnCombo();
    }
    if (CComboItemArray::GetActiveItem().m_nTip != CComboItem::ANVELOPA)
        state.SkipWithError("the envelope was not chosen");
    COpterecenjeApp::SetTeorija(1);
}
BENCHMARK(BM_ChooseEnvelopeOverAllLoads)
    ->Arg(1)
    ->Arg(2)
    ->ArgName("teorija")
    ->Apply(benchmodel::PetPuta);

// The generalized load case of the envelope over every load: 32968 units.
void BM_EnvelopeOverAllLoads(benchmark::State& state) {
    Velik();
    COpterecenjeApp::SetTeorija(static_cast<int>(state.range(0)));
    CGeneralizedLoadCase glc;
    for (auto _ : state) {
        if (!CAnvelopaOpterecenja::GeneralizedLoadcase(benchmodel::kSveAnvelope, glc))
            state.SkipWithError("the envelope was not built");
        benchmark::DoNotOptimize(glc.GetSize());
    }
    state.counters["units"] = glc.GetSize();
    COpterecenjeApp::SetTeorija(1);
}
BENCHMARK(BM_EnvelopeOverAllLoads)->Arg(1)->Arg(2)->ArgName("teorija")->Apply(benchmodel::PetPuta);

} // namespace

BENCHMARK_MAIN();
