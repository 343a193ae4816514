#pragma once
// What every fuzz target shares: the module set up once as a host would set it up, a failed
// check outside a trap made a crash the fuzzer reports, and the reading of one record the way
// the model file reads it.
#include "diag/Assert.h"
#include "host/LoadsServices.h"
#include "host/Model.h"
#include "host/OptionInfo.h"
#include "stream/Filler.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <vector>

extern "C" int VortaModuleSetUp(COptionInfoList* list);

namespace fuzz {

/// Registers the host's classes and sets the module up, once per process.
inline void SetUp() {
    static const bool done = [] {
        // A check that fails where no trap is set must be seen: it aborts, and the fuzzer
        // keeps the input.
        vdiag::SetBoxPresenter([](const std::string& text, const std::string& caption) {
            std::fprintf(stderr, "%s\n%s\n", caption.c_str(), text.c_str());
            std::abort();
        });
        RegisterHostClasses();
        static COptionInfoList commands;
        VortaModuleSetUp(&commands);
        // The host takes every load the results selector makes current, as vorta-cli does.
        CLoadsServices::PostaviChangeLoadCaseTo([](const CGeneralizedLoadCase&, int) { return 1; });
        return true;
    }();
    (void)done;
}

/// Reads a record from the bytes as the model file does: failed checks trapped, thrown
/// errors taken as a refusal. True when the record read without error and consumed the bytes.
template <class Record> bool Read(Record& record, const std::vector<uint8_t>& bytes) {
    CFiller f;
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    try {
        const vdiag::CFatalTrap trap;
        return record.FromFiller(f) && !f.IsError() && f.Remaining() == 0;
    } catch (const vdiag::CFatalCheck&) {
    } catch (const std::exception&) {
    }
    return false;
}

template <class Record> std::vector<uint8_t> Written(const Record& record) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    record.ToFiller(f);
    f.Close();
    return f.Buffer();
}

/// A record that read must write bytes that read again to a record writing the same bytes.
template <class Record> void ExpectStableRoundTrip(const Record& read) {
    const std::vector<uint8_t> once = Written(read);
    Record again;
    if (!Read(again, once) || Written(again) != once) {
        std::fprintf(stderr, "a record read back does not write what it read\n");
        std::abort();
    }
}

} // namespace fuzz
