// The program that the crash test of saving kills. `save FILE FIRST` saves models FIRST,
// FIRST + 1, ... to FILE, one after the other, until it is killed; `check FILE` reads FILE
// back whole and prints which model it holds. Model v is the example model with a few
// thousand further load cases, the first of them named after v (the model is built once and
// only that name changes, so that the program spends its time saving).
#include "host/LoadsServices.h"
#include "host/Model.h"
#include "host/ModelFile.h"
#include "host/OptionInfo.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

extern "C" int VortaModuleSetUp(COptionInfoList* list);

namespace {

constexpr int kDodatnih = 20000;

/// The example model with the further load cases; the id of the first of them is given.
std::unique_ptr<CObjBase> Model(CId& prvi) {
    auto base = std::make_unique<CObjBase>();
    base->SetUndoLimit(1);
    CObjBase::SetCurrent(base.get());
    CLoadsServices::NapraviPrimer();
    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    const int n = bm.Count(CSlucajOpterecenja::Type);
    for (int k = 1; k <= kDodatnih; ++k) {
        auto* p = new CSlucajOpterecenja;
        p->SetNaziv(CString::Formatted(L"Dodatni slucaj %d", k));
        p->PostaviRedniBroj(n + k);
        const CId id = bm.Insert(p);
        if (k == 1)
            prvi = id;
    }
    bm.Close();
    return base;
}

/// Makes the model model v.
void Postavi(const CId& prvi, int v) {
    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    dynamic_cast<CSlucajOpterecenja*>(bm.GetW(prvi))->SetNaziv(CString::Formatted(L"Model %d", v));
    bm.Close();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4 && argc != 3) {
        std::fprintf(stderr, "usage: %s save FILE FIRST | check FILE\n", argv[0]);
        return 2;
    }
    RegisterHostClasses();
    COptionInfoList commands;
    VortaModuleSetUp(&commands);
    const std::string command = argv[1];
    CString error;
    if (command == "save" && argc == 4) {
        CId prvi;
        const std::unique_ptr<CObjBase> base = Model(prvi);
        for (int v = std::atoi(argv[3]);; ++v) {
            Postavi(prvi, v);
            if (!CModelFile::Save(*base, argv[2], error)) {
                std::fprintf(stderr, "%s\n", error.ToUtf8().c_str());
                return 1;
            }
        }
    }
    if (command == "check" && argc == 3) {
        std::unique_ptr<CObjBase> base = CModelFile::Load(argv[2], error);
        if (!base) {
            std::fprintf(stderr, "%s\n", error.ToUtf8().c_str());
            return 1;
        }
        CObjBase::SetCurrent(base.get());
        const CSlucajOpterecenja* prvi = CSlucajOpterecenja::GetSlucajOpterecenja(12);
        int v = -1;
        if (prvi == nullptr || std::swscanf(prvi->GetNaziv().c_str(), L"Model %d", &v) != 1 ||
            base->Count(CSlucajOpterecenja::Type) != 11 + kDodatnih) {
            std::fprintf(stderr, "the model file does not hold a whole model\n");
            return 1;
        }
        CObjBase::SetCurrent(nullptr);
        std::printf("%d\n", v);
        return 0;
    }
    std::fprintf(stderr, "usage: %s save FILE FIRST | check FILE\n", argv[0]);
    return 2;
}
