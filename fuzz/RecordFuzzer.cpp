// A fuzz target for one record reader of the loads module, chosen when it is built
// (VORTA_FUZZ_RECORD): whatever the bytes, the reader refuses them or reads a record that
// writes itself back stably, without a crash and without allocating beyond the input's size.
#include "FuzzSetUp.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/GeneralizedLoadCase.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/Skladiste.h"
#include "model/SlucajOpterecenja.h"
#include "model/StabilnostParams.h"

namespace {

struct UnistiObj {
    void operator()(CObj* obj) const { obj->Destroy(1); }
};

/// A stored object's record, read into a new object of its class as the model file does.
template <class Zapis> void Objekat(const std::vector<uint8_t>& bytes) {
    std::unique_ptr<CObj, UnistiObj> obj(CObjBase::CreateObject(Zapis::Type));
    auto& zapis = dynamic_cast<Zapis&>(*obj);
    if (fuzz::Read(zapis, bytes))
        fuzz::ExpectStableRoundTrip(zapis);
}

template <class Vrednost> void Vrednost_(const std::vector<uint8_t>& bytes) {
    Vrednost v;
    if (fuzz::Read(v, bytes))
        fuzz::ExpectStableRoundTrip(v);
}

/// The stored-combinations section: only refusal or acceptance; it keeps nothing.
void Sekcija(const std::vector<uint8_t>& bytes) {
    CFiller f;
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    try {
        const vdiag::CFatalTrap trap;
        CModel::UcitajUskladisteneKombinacije(f, 1);
    } catch (const vdiag::CFatalCheck&) {
    }
}

} // namespace

/// The reader this target fuzzes: 1 load case, 2 combination, 3 stored combination set,
/// 4 envelope, 5 stored-combinations section, 6 stability parameters, 7 generalized load case.
constexpr int kZapis = VORTA_FUZZ_RECORD;
static_assert(kZapis >= 1 && kZapis <= 7, "VORTA_FUZZ_RECORD names no record reader");

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::SetUp();
    const std::vector<uint8_t> bytes(data, data + size);
    if constexpr (kZapis == 1)
        Objekat<CSlucajOpterecenja>(bytes);
    else if constexpr (kZapis == 2)
        Objekat<CKombinacijaOpterecenja>(bytes);
    else if constexpr (kZapis == 3)
        Objekat<CSkladiste>(bytes);
    else if constexpr (kZapis == 4)
        Objekat<CAnvelopaOpterecenja>(bytes);
    else if constexpr (kZapis == 5)
        Sekcija(bytes);
    else if constexpr (kZapis == 6)
        Vrednost_<CStabilnostParams>(bytes);
    else
        Vrednost_<CGeneralizedLoadCase>(bytes);
    return 0;
}
