// The desktop host's load tables on the realistic large model (200 load cases, 32768
// combinations of 20 load cases with generated names, 100 envelopes), on Qt's offscreen
// platform: what the user waits for after every change, the tables asked for afresh and the
// table in view painted (the combinations, 32768 rows of 203 columns), and a jump to the end of
// that table. Aim: the refresh under 100 ms. Wall time, as the user sees it.
#include "CombinationModel.h"
#include "LoadTables.h"
#include "Repetitions.h"
#include "host/OptionInfo.h"
#include "host/VortaUtils.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QScrollBar>
#include <QTableView>

#include <chrono>
#include <memory>

extern "C" int VortaModuleSetUp(COptionInfoList* list);

namespace {

double Ms(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since)
        .count();
}

struct Prozor {
    Prozor() {
        RegisterHostClasses();
        VortaModuleSetUp(&komande);
        CVortaUtils::s_bLoading = false;
        tabele.resize(1100, 720);
        tabele.show();
        tabele.Refresh();
        tabele.setCurrentIndex(1);
        QApplication::processEvents();
    }
    COptionInfoList komande;
    benchmodel::CombinationModel model{benchmodel::kAnvelopa};
    CLoadTables tabele;
};

/// Made on first use, gone before the application.
std::unique_ptr<Prozor> g_prozor;

Prozor& Velik() {
    if (!g_prozor)
        g_prozor = std::make_unique<Prozor>();
    return *g_prozor;
}

/// The refresh after a change: the tables asked for afresh, the table in view painted.
void BM_LoadTablesRefresh(benchmark::State& state) {
    Prozor& p = Velik();
    QTableView* view = p.tabele.Table(1);
    for (auto _ : state) {
        const auto t0 = std::chrono::steady_clock::now();
        p.tabele.Refresh();
        view->viewport()->repaint();
        state.SetIterationTime(Ms(t0) / 1e3);
    }
    // A jump to the last rows of the table in view, painted.
    const auto t0 = std::chrono::steady_clock::now();
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    view->viewport()->repaint();
    state.counters["jump_to_end_ms"] = Ms(t0);
    view->verticalScrollBar()->setValue(0);
    state.counters["rows"] = view->model()->rowCount();
}
BENCHMARK(BM_LoadTablesRefresh)->Iterations(1)->UseManualTime()->Apply(benchmodel::PetPuta);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    g_prozor.reset();
    return 0;
}
