// The interchange of loads on the realistic large model (200 load cases, 32768 combinations of
// 20 load cases with generated names, 100 envelopes): the JSON description and the CSV table
// of combinations, each way, in MB/s of the text. First the module's services alone (the
// formats' own speed), then what a user waits for: `vorta-cli export` and `vorta-cli import` in
// a fresh process with files on disk (the process's CPU time, opening and saving the model file
// included, and alongside the rate beyond that). Aim: 50 MB/s or more each way.
#include "services/Razmena.h"
#include "CombinationModel.h"
#include "FreshProcess.h"
#include "Repetitions.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using benchmodel::Izvestaj;
using benchmodel::Pokreni;

enum class EFormat { Json, Csv };

std::string Izvezi(EFormat format) {
    std::string tekst;
    if (format == EFormat::Json)
        opterecenje::IzveziJson(tekst);
    else
        opterecenje::IzveziCsv(tekst);
    return tekst;
}

double MB(size_t bajtova) {
    return static_cast<double>(bajtova) / 1e6;
}

void BM_ExportService(benchmark::State& state, EFormat format) {
    const benchmodel::CombinationModel model(benchmodel::kAnvelopa);
    size_t bajtova = 0;
    for (auto _ : state) {
        const std::string tekst = Izvezi(format);
        bajtova = tekst.size();
        benchmark::DoNotOptimize(tekst.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bajtova) * state.iterations());
    state.counters["text_MB"] = MB(bajtova);
}

void BM_ImportService(benchmark::State& state, EFormat format) {
    const benchmodel::CombinationModel model(benchmodel::kAnvelopa);
    model.base->SetUndoLimit(1);
    const std::string tekst = Izvezi(format);
    for (auto _ : state) {
        CString greska;
        int n = 0;
        const bool ok = format == EFormat::Json ? opterecenje::UveziJson(tekst, greska)
                                                : opterecenje::UveziCsv(tekst, true, n, greska);
        if (!ok) {
            state.SkipWithError(greska.ToUtf8().c_str());
            return;
        }
        // The undo step of the import is given back while the host is idle.
        state.PauseTiming();
        model.base->ReleaseDiscarded();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(tekst.size()) * state.iterations());
    state.counters["text_MB"] = MB(tekst.size());
}

BENCHMARK_CAPTURE(BM_ExportService, json, EFormat::Json)->Iterations(3)->Apply(benchmodel::PetPuta);
BENCHMARK_CAPTURE(BM_ImportService, json, EFormat::Json)->Iterations(3)->Apply(benchmodel::PetPuta);
BENCHMARK_CAPTURE(BM_ExportService, csv, EFormat::Csv)->Iterations(3)->Apply(benchmodel::PetPuta);
BENCHMARK_CAPTURE(BM_ImportService, csv, EFormat::Csv)->Iterations(3)->Apply(benchmodel::PetPuta);

// ---- vorta-cli in a fresh process

std::string Program() {
    return benchmodel::DirektorijumPrograma() + "/vorta-cli";
}

std::string Datoteka(EFormat format) {
    return benchmodel::PrivremeniDirektorijum() +
           (format == EFormat::Json ? "/loads.json" : "/combinations.csv");
}

/// The large model's text in the format, written once by `vorta-cli export`.
const std::string& Tekst(EFormat format) {
    static std::string datoteke[2];
    std::string& d = datoteke[format == EFormat::Json ? 0 : 1];
    if (d.empty()) {
        d = Datoteka(format);
        Pokreni({Program(), "export", benchmodel::VelikaDatoteka(), "-o", d});
    }
    return d;
}

bool Izvrsi(benchmark::State& state, const std::vector<std::string>& argumenti,
            Izvestaj& izvestaj) {
    izvestaj = Pokreni(argumenti, benchmodel::PrivremeniDirektorijum() + "/out.txt");
    if (!izvestaj.ok) {
        state.SkipWithError(izvestaj.greska.c_str());
        return false;
    }
    state.SetIterationTime(izvestaj.cpuMs / 1e3);
    return true;
}

/// The CPU time of the process around the interchange, in ms (the least of three runs): a
/// fresh process that opens the large model file and saves it again after a change of one name,
/// or one that opens it and refuses an empty description (and so writes nothing).
double Okvir(bool menja) {
    static double okvir[2] = {0.0, 0.0};
    double& ms = okvir[menja ? 1 : 0];
    if (ms > 0.0)
        return ms;
    const std::string& d = benchmodel::PrivremeniDirektorijum();
    const std::string model = d + "/frame.vld";
    std::ofstream(d + "/empty.json").flush();
    ms = 1e30;
    for (int i = 0; i < 3; ++i) {
        std::filesystem::copy_file(benchmodel::VelikaDatoteka(), model,
                                   std::filesystem::copy_options::overwrite_existing);
        const Izvestaj izvestaj =
            menja
                ? Pokreni({Program(), "case", "rename", model, "1", "Self-weight"}, d + "/out.txt")
                : Pokreni({Program(), "import", model, d + "/empty.json"}, d + "/out.txt");
        ms = std::min(ms, izvestaj.cpuMs);
    }
    return ms;
}

/// The figures of a run of vorta-cli over a text of so many bytes: beside the rate of the
/// whole process, its peak memory and the rate of what the process spends beyond opening (and
/// saving) the model.
void Brojke(benchmark::State& state, const Izvestaj& izvestaj, size_t bajtova, bool menja) {
    state.SetBytesProcessed(static_cast<int64_t>(bajtova) * state.iterations());
    state.counters["text_MB"] = MB(bajtova);
    state.counters["wall_ms"] = izvestaj.wallMs;
    state.counters["peak_MB"] = izvestaj.maxRssKb / 1024.0;
    const double okvir = Okvir(menja);
    state.counters["open_save_ms"] = okvir;
    state.counters["beyond_open_save_MB_per_s"] =
        MB(bajtova) / (std::max(izvestaj.cpuMs - okvir, 1.0) / 1e3);
}

void BM_CliExport(benchmark::State& state, EFormat format) {
    const std::string izlaz = benchmodel::PrivremeniDirektorijum() +
                              (format == EFormat::Json ? "/export.json" : "/export.csv");
    Izvestaj izvestaj;
    for (auto _ : state)
        if (!Izvrsi(state, {Program(), "export", benchmodel::VelikaDatoteka(), "-o", izlaz},
                    izvestaj))
            return;
    Brojke(state, izvestaj, std::filesystem::file_size(izlaz), false);
}

void BM_CliImport(benchmark::State& state, EFormat format) {
    const std::string& ulaz = Tekst(format);
    const std::string model = benchmodel::PrivremeniDirektorijum() + "/import.vld";
    std::vector<std::string> argumenti = {Program(), "import", model, ulaz};
    if (format == EFormat::Csv) {
        argumenti.push_back("--combinations");
        argumenti.push_back("--replace");
    }
    Izvestaj izvestaj;
    for (auto _ : state) {
        std::filesystem::copy_file(benchmodel::VelikaDatoteka(), model,
                                   std::filesystem::copy_options::overwrite_existing);
        if (!Izvrsi(state, argumenti, izvestaj))
            return;
    }
    Brojke(state, izvestaj, std::filesystem::file_size(ulaz), true);
}

BENCHMARK_CAPTURE(BM_CliExport, json, EFormat::Json)
    ->Iterations(1)
    ->UseManualTime()
    ->Apply(benchmodel::PetPuta);
BENCHMARK_CAPTURE(BM_CliImport, json, EFormat::Json)
    ->Iterations(1)
    ->UseManualTime()
    ->Apply(benchmodel::PetPuta);
BENCHMARK_CAPTURE(BM_CliExport, csv, EFormat::Csv)
    ->Iterations(1)
    ->UseManualTime()
    ->Apply(benchmodel::PetPuta);
BENCHMARK_CAPTURE(BM_CliImport, csv, EFormat::Csv)
    ->Iterations(1)
    ->UseManualTime()
    ->Apply(benchmodel::PetPuta);

} // namespace

BENCHMARK_MAIN();
