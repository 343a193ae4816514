// Writes the seed corpus of the fuzz targets: the example model as a model file, and the
// records of the loads module in every version they were ever written in. Usage:
// fuzz_make_corpus DIR (the corpus folder; one folder per target inside it).
#include "host/LoadsServices.h"
#include "host/Model.h"
#include "host/ModelFile.h"
#include "host/OptionInfo.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/LoadRecordBytes.h"
#include "model/Skladiste.h"
#include "model/StabilnostParams.h"

#include <filesystem>
#include <fstream>
#include <string>

extern "C" int VortaModuleSetUp(COptionInfoList* list);

namespace {

namespace fs = std::filesystem;

void Seed(const fs::path& dir, const std::string& target, const std::string& name,
          const std::vector<uint8_t>& bytes) {
    fs::create_directories(dir / target);
    std::ofstream(dir / target / ("seed-" + name), std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
}

template <class Zapis>
void Objekti(const fs::path& dir, const std::string& target, const CObjBase& base) {
    int n = 0;
    for (const CId& id : base.Ids(Zapis::Type))
        Seed(dir, target, "primer-" + std::to_string(++n), loadrec::Written(*base.Find(id)));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS_DIR\n", argv[0]);
        return 2;
    }
    const fs::path dir = argv[1];
    RegisterHostClasses();
    COptionInfoList commands;
    VortaModuleSetUp(&commands);

    // The example model, and an empty one.
    CObjBase prazan;
    Seed(dir, "model_file", "prazan", CModelFile::Write(prazan));
    CObjBase primer;
    CObjBase::SetCurrent(&primer);
    CLoadsServices::NapraviPrimer();
    Seed(dir, "model_file", "primer", CModelFile::Write(primer));

    // Every record of the example, and load case records of every version.
    Objekti<CSlucajOpterecenja>(dir, "load_case", primer);
    for (int32_t v = 1; v <= CSlucajOpterecenja::Verzija; ++v)
        Seed(dir, "load_case", "verzija-" + std::to_string(v), loadrec::CaseRecord{}.Record(v));
    Objekti<CKombinacijaOpterecenja>(dir, "combination", primer);
    Objekti<CAnvelopaOpterecenja>(dir, "envelope", primer);
    Seed(dir, "envelope", "verzija-1",
         loadrec::Bytes().base(4).i32(1).str(L"1-3,5").str(L"Anvelopa").i32(1).get());
    CSkladiste skladiste;
    CKombOptItemArray kombinacije;
    for (const CId& id : primer.Ids(CKombinacijaOpterecenja::Type))
        kombinacije.AddNew(dynamic_cast<const CKombinacijaOpterecenja*>(primer.Find(id))->Item());
    skladiste.Set(kombinacije);
    Seed(dir, "stored_set", "primer", loadrec::Written(skladiste));

    CFiller sekcija;
    sekcija.Open(CFiller::Mode::Write);
    CModel::SnimiUskladisteneKombinacije(sekcija);
    Seed(dir, "section", "verzija-2", sekcija.Buffer());
    Seed(dir, "section", "verzija-1", loadrec::Bytes().i32(1).i32(1).i32(0).get());

    CStabilnostParams stabilnost;
    Seed(dir, "stability", "podrazumevani", loadrec::Written(stabilnost));
    CGeneralizedLoadCase glc;
    glc.SetRbrFaze(2);
    glc.AddLoadCaseUnit(loadrec::Unit({{1, 1.35}, {3, 1.5}}));
    glc.AddLoadCaseUnit(loadrec::Unit({{2, 1.0}}, LCU_ANVELOPA));
    Seed(dir, "generalized_load_case", "dve-jedinice", loadrec::Written(glc));

    CObjBase::SetCurrent(nullptr);
    return 0;
}
