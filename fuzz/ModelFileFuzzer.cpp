// A fuzz target for the model file reader with the loads module set up: whatever the bytes,
// the file is refused, or the model read passes everything `vorta-cli show` does with it (the
// module's tables, the factor vectors of every load, the envelopes, both selectors) and is
// written back to the same bytes on a second round, without a crash. Most changed bytes break
// the checksum and are refused at once, so the bytes also go through with the checksum made
// right, to reach the reading of the sections and records behind it.
#include "FuzzSetUp.h"
#include "HeadlessFrame.h"
#include "host/LoadsServices.h"
#include "host/ModelFile.h"
#include "model/AnvelopaOpterecenja.h"

#include <memory>
#include <zlib.h>

namespace {

void Pokazi(CHeadlessFrame& frame) {
    CLoadsReport report;
    CLoadsServices::Izvestaj(report);
    int nSlOpt = 0, nKomb = 0, nAnv = 0;
    CLoadsServices::Brojevi(nSlOpt, nKomb, nAnv);
    for (int teorija : {1, 2}) {
        CLoadsServices::SetTeorija(teorija);
        for (int i = 0; i < nSlOpt + nKomb + nAnv; ++i) {
            CArray<double> faktori;
            CLoadsServices::FaktoriZaProracun(i, faktori);
            CLoadsServices::FaktoriZaIspis(i, faktori);
        }
        for (int broj = 1; broj <= nAnv; ++broj) {
            CGeneralizedLoadCase glc;
            CAnvelopaOpterecenja::GeneralizedLoadcase(broj, glc);
        }
    }
    CLoadsServices::SetTeorija(1);
    for (const bool rezultati : {false, true}) {
        frame.SetResultsMode(rezultati);
        CMainFrame::UpdateCombo(-1);
    }
}

void Procitaj(const std::vector<uint8_t>& bytes) {
    static CHeadlessFrame frame;
    static CFrameInstallation installation(frame);
    CString error;
    std::unique_ptr<CObjBase> base = CModelFile::Read(bytes, error);
    if (!base)
        return;
    CObjBase::SetCurrent(base.get());
    Pokazi(frame);
    const std::vector<uint8_t> once = CModelFile::Write(*base);
    std::unique_ptr<CObjBase> again = CModelFile::Read(once, error);
    if (!again || CModelFile::Write(*again) != once) {
        std::fprintf(stderr, "a model read back does not write what it read: %s\n",
                     error.ToUtf8().c_str());
        std::abort();
    }
    CObjBase::SetCurrent(nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::SetUp();
    std::vector<uint8_t> bytes(data, data + size);
    Procitaj(bytes);
    if (size >= 8) {
        const size_t body = size - 4;
        const auto crc = static_cast<uint32_t>(crc32(0L, bytes.data(), static_cast<uInt>(body)));
        bool changed = false;
        for (int i = 0; i < 4; ++i) {
            const auto b = static_cast<uint8_t>(crc >> (8 * i));
            changed = changed || bytes[body + static_cast<size_t>(i)] != b;
            bytes[body + static_cast<size_t>(i)] = b;
        }
        if (changed)
            Procitaj(bytes);
    }
    return 0;
}
