// vorta-bench-helper: one user action in a fresh process, for the benchmarks that time what a
// user waits for. It sets up like a host (the host's classes, the loads module's set-up entry),
// does what it is asked and prints its figures as "name=value" lines:
//
//   write FILE      build the realistic large model in memory and save it to FILE
//   build           build the same model in memory (for its peak memory)
//   open FILE       open FILE
//   save FILE OUT   open FILE, then save it to OUT
//   cascade FILE    open FILE, then delete load case 1 with its cascade, undo it, redo it, undo
//                   it, and delete it again
//   copy FILE OUT   read FILE, then write its bytes to a new file OUT three times (the fastest
//                   is reported as copy_wall_ms), as a program writes its output
//
// Every figure is CPU time of the process in milliseconds ("_ms"), wall time ("_wall_ms"), or
// the peak resident memory in kilobytes (maxrss_kb), taken when the action ends.
#include "../CombinationModel.h"
#include "host/MainFrame.h"
#include "host/ModelFile.h"
#include "host/ModuleLoader.h"
#include "host/OptionInfo.h"
#include "host/ProcessSetUp.h"
#include "host/VortaUtils.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

extern "C" int VortaModuleSetUp(COptionInfoList* list);

namespace {

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

long MaxRssKb() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss;
}

/// Times one action: CPU and wall time printed under its name.
template <class F> void Izmeri(const char* name, F&& f) {
    const double c0 = CpuMs();
    const double w0 = WallMs();
    f();
    std::printf("%s_ms=%.3f\n%s_wall_ms=%.3f\n", name, CpuMs() - c0, name, WallMs() - w0);
}

/// Set up as a host sets up: the host's classes and the loads module.
void Postavi(COptionInfoList& commands) {
    RegisterHostClasses();
    VortaModuleSetUp(&commands);
    CVortaUtils::s_bLoading = false;
}

std::unique_ptr<CObjBase> Otvori(const char* file) {
    CString error;
    CVortaUtils::s_bLoading = true;
    std::unique_ptr<CObjBase> base = CModelFile::Load(file, error);
    CVortaUtils::s_bLoading = false;
    if (!base) {
        std::fprintf(stderr, "cannot open %s: %s\n", file, error.ToUtf8().c_str());
        std::exit(2);
    }
    CObjBase::SetCurrent(base.get());
    return base;
}

void Snimi(const CObjBase& base, const char* file) {
    CString error;
    if (!CModelFile::Save(base, file, error)) {
        std::fprintf(stderr, "cannot save %s: %s\n", file, error.ToUtf8().c_str());
        std::exit(2);
    }
}

/// The bytes of a file, read whole (false when it cannot be opened).
bool ProcitajSve(const char* file, std::string& bytes) {
    std::FILE* in = std::fopen(file, "rb");
    if (in == nullptr)
        return false;
    bytes.assign(std::filesystem::file_size(file), '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), in));
    std::fclose(in);
    return true;
}

/// How long flushing the bytes of the saved file to the disk takes by itself: the same bytes
/// written to a file beside it, then flushed.
void IzmeriFsync(const char* saved) {
    const std::filesystem::path probe = std::string(saved) + ".fsync";
    std::string bytes;
    if (!ProcitajSve(saved, bytes))
        return;
    const size_t read = bytes.size();
    const int fd = ::open(probe.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0)
        return;
    if (::write(fd, bytes.data(), read) == static_cast<ssize_t>(read))
        Izmeri("fsync", [fd] { ::fsync(fd); });
    ::close(fd);
    ::unlink(probe.c_str());
}

/// Deletes load case 1 as the load case editor does: the case goes, the others move up one
/// place, and the combinations that hold it follow in the cascade, all in one undo step.
int BrisiPrviSlucaj() {
    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    bm.FreezeUndoCounter();
    CId prvi;
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* p = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        if (p != nullptr && p->DajRedniBroj() == 1)
            prvi = id;
    }
    bm.Delete(prvi);
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        auto* p = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(id));
        p->PostaviRedniBroj(p->DajRedniBroj() - 1);
    }
    const int obrisano = CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(prvi);
    bm.UnfreezeUndoCounter();
    bm.Close();
    return obrisano;
}

/// The wall time of writing the bytes of a file to a new file, the fastest of three.
void IzmeriPisanje(const char* file, const char* out) {
    std::string bytes;
    if (!ProcitajSve(file, bytes))
        return;
    const size_t read = bytes.size();
    double best = 1e30;
    for (int i = 0; i < 3; ++i) {
        const double w0 = WallMs();
        const int fd = ::open(out, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        size_t done = 0;
        while (fd >= 0 && done < read) {
            const ssize_t n = ::write(fd, bytes.data() + done, read - done);
            if (n <= 0)
                break;
            done += static_cast<size_t>(n);
        }
        if (fd >= 0)
            ::close(fd);
        best = std::min(best, WallMs() - w0);
    }
    ::unlink(out);
    std::printf("copy_wall_ms=%.3f\n", best);
}

int Upotreba() {
    std::fprintf(stderr, "usage: vorta-bench-helper write FILE | build | open FILE | "
                         "save FILE OUT | cascade FILE | copy FILE OUT\n");
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    // As every host of the project starts.
    vhost::HeapInHugePages(argv);
    if (argc < 2)
        return Upotreba();
    const std::string komanda = argv[1];
    COptionInfoList commands;
    Postavi(commands);
    if (komanda == "write" && argc == 3) {
        benchmodel::CombinationModel model(benchmodel::kAnvelopa);
        Snimi(*model.base, argv[2]);
    } else if (komanda == "build" && argc == 2) {
        const double c0 = CpuMs();
        benchmodel::CombinationModel model(benchmodel::kAnvelopa);
        std::printf("build_ms=%.3f\nmaxrss_kb=%ld\n", CpuMs() - c0, MaxRssKb());
        std::fflush(stdout);
        std::_Exit(0);
    } else if (komanda == "open" && argc == 3) {
        std::unique_ptr<CObjBase> base;
        Izmeri("open", [&] { base = Otvori(argv[2]); });
        std::printf("process_ms=%.3f\nmaxrss_kb=%ld\n", CpuMs(), MaxRssKb());
        std::fflush(stdout);
        // What follows the user's wait (giving the document back) is not timed.
        std::_Exit(0);
    } else if (komanda == "save" && argc == 4) {
        std::unique_ptr<CObjBase> base = Otvori(argv[2]);
        Izmeri("save", [&] { Snimi(*base, argv[3]); });
        IzmeriFsync(argv[3]);
        std::fflush(stdout);
        std::_Exit(0);
    } else if (komanda == "cascade" && argc == 3) {
        std::unique_ptr<CObjBase> base = Otvori(argv[2]);
        int obrisano = 0;
        Izmeri("first_cascade", [&] { obrisano = BrisiPrviSlucaj(); });
        Izmeri("undo", [&] { base->Undo(); });
        Izmeri("redo", [&] { base->Redo(); });
        base->Undo();
        base->ReleaseDiscarded();
        Izmeri("later_cascade", [&] { BrisiPrviSlucaj(); });
        std::printf("deleted=%d\n", obrisano);
        std::fflush(stdout);
        std::_Exit(0);
    } else if (komanda == "copy" && argc == 4) {
        IzmeriPisanje(argv[2], argv[3]);
        std::fflush(stdout);
        std::_Exit(0);
    } else {
        return Upotreba();
    }
    return 0;
}
