// The load case list editor, the SRSS editor, the stability dialog, the envelope dialog and
// the load selection dialog on the realistic large model saved to disk (200 load cases, 32768
// combinations of 20 load cases with generated names, 100 envelopes), each action in a fresh
// process that opens the file as a host does, with the host's results selector filled. The
// time of each is the process's CPU time for the action (the wall time is reported beside it).
// Aims: opening every editor, moving a load case in the list editor, its OK (every combination
// whose load cases moved renamed, the envelopes rewritten, the selector refilled), moving the
// first load case to the end (every combination renamed) and the OK of each editor under
// 100 ms; the stability dialog over 32768 combinations under 100 ms to open.
//
// The program runs its own actions: "bench_editori --akcija NAME FILE" does one and prints its
// figures as "name=value" lines.
#include "FreshProcess.h"
#include "Repetitions.h"

#include "dialog/ScriptedRunner.h"
#include "dialogs/DlgAnvelope.h"
#include "dialogs/DlgIzborOpterecenja.h"
#include "dialogs/DlgSRSSKombOpt.h"
#include "dialogs/DlgSlucajeviOpterecenja.h"
#include "host/MainFrame.h"
#include "host/Model.h"
#include "host/ModelFile.h"
#include "host/OptionInfo.h"
#include "host/ProcessSetUp.h"
#include "host/VortaUtils.h"
#include "model/StabilnostParams.h"
#include "services/Opterecenje.h"
#include "services/SlucajeviOpterecenja.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <map>
#include <memory>
#include <string>

extern "C" int VortaModuleSetUp(COptionInfoList* list);

namespace {

// ------------------------------------------------------------------------ the child process

double CpuMs() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

double WallMs() {
    return std::chrono::duration<double, std::milli>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

template <class F> void Izmeri(const char* naziv, F&& f) {
    const double c0 = CpuMs();
    const double w0 = WallMs();
    f();
    std::printf("%s_ms=%.3f\n%s_wall_ms=%.3f\n", naziv, CpuMs() - c0, naziv, WallMs() - w0);
}

/// A host frame without a window, in results mode: the results selector is kept as data.
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

template <class Dlg> std::unique_ptr<Dlg> Otvoren() {
    auto dlg = std::make_unique<Dlg>();
    dlg->Start();
    return dlg;
}

const std::map<std::string, std::function<void()>>& Akcije() {
    static const std::map<std::string, std::function<void()>> akcije = {
        {"slucajevi",
         [] {
             std::unique_ptr<CDlgSlucajeviOpterecenja> dlg;
             Izmeri("otvori", [&] { dlg = Otvoren<CDlgSlucajeviOpterecenja>(); });
             dlg->Dialog().Grid(1017).UserClick(1, 1);
             Izmeri("pomeri", [&] { dlg->Dialog().UserClick(1012); }); // "Dole"
             Izmeri("ok", [&] { dlg->Dialog().UserClick(IDOK); });
         }},
        {"selektor", [] { Izmeri("osvezi", [] { COpterecenjeApp::UpdateCombo(-1); }); }},
        {"prvi-na-kraj",
         [] {
             const CId prvi = opterecenje::DajSlucajeveOpterecenja().front().id;
             Izmeri("pomeri", [&] { opterecenje::PremestiSlucajOpterecenja(prvi, 200); });
         }},
        {"srss",
         [] {
             std::unique_ptr<CDlgSRSSKombOpt> dlg;
             Izmeri("otvori", [&] { dlg = Otvoren<CDlgSRSSKombOpt>(); });
             dlg->Dialog().UserClick(1007);
             dlg->Dialog().Grid(1018).UserEndEdit(1, 2, L"1");
             dlg->Dialog().Grid(1018).UserEndEdit(1, 3, L"0.5");
             Izmeri("ok", [&] { dlg->Dialog().UserClick(IDOK); });
         }},
        {"stabilnost",
         [] {
             // Through the command, as the host opens it: from the call until the dialog is
             // ready for the user.
             CStabilnostParams params;
             params.InitDefault();
             CScriptedRunner* runner = dynamic_cast<CScriptedRunner*>(CModalRunner::Get());
             const double c0 = CpuMs();
             const double w0 = WallMs();
             runner->Expect(1005, [&](CDialogPresenter& d) {
                 std::printf("otvori_ms=%.3f\notvori_wall_ms=%.3f\n", CpuMs() - c0, WallMs() - w0);
                 Izmeri("sve", [&] { d.Dialog().Grid(1018).UserPopupCommand(1, 2, 1200); });
                 Izmeri("ok", [&] { d.Dialog().UserClick(IDOK); });
             });
             COpterecenjeApp::OnStabilnost(nullptr, params);
         }},
        {"anvelope",
         [] {
             std::unique_ptr<CDlgAnvelope> dlg;
             Izmeri("otvori", [&] { dlg = Otvoren<CDlgAnvelope>(); });
             dlg->Dialog().UserSetText(1037, L"1-20,201-500");
             CScriptedRunner* runner = dynamic_cast<CScriptedRunner*>(CModalRunner::Get());
             runner->Expect(1004, [](CDialogPresenter& s) {
                 s.Dialog().UserSetText(1015, L"Nova anvelopa");
                 s.Dialog().UserClick(IDOK);
             });
             dlg->Dialog().UserClick(1042);
             Izmeri("ok", [&] { dlg->Dialog().UserClick(IDOK); });
         }},
        {"izbor",
         [] {
             std::unique_ptr<CDlgIzborOpterecenja> dlg;
             Izmeri("otvori", [&] {
                 dlg = std::make_unique<CDlgIzborOpterecenja>(std::vector<int>{1, 201});
                 dlg->Start();
             });
             Izmeri("ok", [&] { dlg->Dialog().UserClick(IDOK); });
         }},
    };
    return akcije;
}

/// One action in this fresh process, on the model file.
int Akcija(const std::string& naziv, const char* fajl) {
    const auto it = Akcije().find(naziv);
    if (it == Akcije().end())
        return 1;
    COptionInfoList komande;
    RegisterHostClasses();
    VortaModuleSetUp(&komande);
    Okvir okvir;
    CMainFrame::Install(&okvir);
    COpterecenjeApp::ChangeLoadCaseTo = [](const CGeneralizedLoadCase&, int) { return 1; };
    CScriptedRunner runner;
    runner.Install();
    CString greska;
    CVortaUtils::s_bLoading = true;
    std::unique_ptr<CObjBase> base = CModelFile::Load(fajl, greska);
    CVortaUtils::s_bLoading = false;
    if (!base) {
        std::fprintf(stderr, "cannot open %s: %s\n", fajl, greska.ToUtf8().c_str());
        return 2;
    }
    CObjBase::SetCurrent(base.get());
    COpterecenjeApp::UpdateCombo(0); // as the host shows the opened model
    it->second();
    CObjBase::SetCurrent(nullptr);
    CMainFrame::Install(nullptr);
    return 0;
}

// ------------------------------------------------------------------------ the benchmarks

/// Runs the action in a fresh process and takes the figure `mera` as the iteration's time.
void Pokreni(benchmark::State& state, const std::string& akcija, const std::string& mera) {
    const std::string fajl = benchmodel::VelikaDatoteka();
    for (auto _ : state) {
        benchmodel::Izvestaj izvestaj = benchmodel::Pokreni(
            {benchmodel::DirektorijumPrograma() + "/bench_editori", "--akcija", akcija, fajl});
        if (!izvestaj.ok || izvestaj.vrednosti.count(mera + "_ms") == 0) {
            state.SkipWithError(izvestaj.greska.empty() ? "no figure" : izvestaj.greska.c_str());
            return;
        }
        state.SetIterationTime(izvestaj.vrednosti[mera + "_ms"] / 1e3);
        state.counters["wall_ms"] = izvestaj.vrednosti[mera + "_wall_ms"];
    }
}

void Registruj(const char* ime, const std::string& akcija, const std::string& mera) {
    benchmark::RegisterBenchmark(
        ime, [akcija, mera](benchmark::State& state) { Pokreni(state, akcija, mera); })
        ->Iterations(1)
        ->UseManualTime()
        ->Apply(benchmodel::PetPuta);
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--akcija") == 0) {
        // As every host of the project starts.
        vhost::HeapInHugePages(argv);
        return Akcija(argv[2], argv[3]);
    }
    Registruj("BM_LoadCaseEditorOpen", "slucajevi", "otvori");
    Registruj("BM_LoadCaseEditorMove", "slucajevi", "pomeri");
    Registruj("BM_LoadCaseEditorOk", "slucajevi", "ok");
    Registruj("BM_MoveFirstLoadCaseToTheEnd", "prvi-na-kraj", "pomeri");
    Registruj("BM_ResultsSelectorRefill", "selektor", "osvezi");
    Registruj("BM_SrssEditorOpen", "srss", "otvori");
    Registruj("BM_SrssEditorOk", "srss", "ok");
    Registruj("BM_StabilityDialogOpen", "stabilnost", "otvori");
    Registruj("BM_StabilityChooseAll", "stabilnost", "sve");
    Registruj("BM_StabilityOk", "stabilnost", "ok");
    Registruj("BM_EnvelopeDialogOpen", "anvelope", "otvori");
    Registruj("BM_EnvelopeDialogOk", "anvelope", "ok");
    Registruj("BM_LoadSelectionOpen", "izbor", "otvori");
    Registruj("BM_LoadSelectionOk", "izbor", "ok");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
