// The module's set-up entry, which a host finds by name after loading the module: it sets up
// the application object, fills the host's services of the loads module and the editors
// behind the module's commands.
#include "dialogs/Editors.h"
#include "host/LoadsServices.h"
#include "host/ModuleLoader.h"
#include "host/OptionInfo.h"
#include "model/LoadNumbering.h"
#include "model/ProveraModela.h"
#include "services/ModuleServices.h"
#include "services/Opterecenje.h"
#include "services/Razmena.h"

#include <string_view>

static_assert(std::string_view(kModuleSetUpEntry) == "VortaModuleSetUp",
              "the entry below must carry the name hosts look for");

namespace {

void Brojevi(int& nSlOpt, int& nKomb, int& nAnv) {
    const LoadNumbering::Counts n = LoadNumbering::Count();
    nSlOpt = n.nSlOpt;
    nKomb = n.nKomb;
    nAnv = n.nAnv;
}

void PostaviChangeLoadCaseTo(ChangeLoadCaseHandler handler) {
    COpterecenjeApp::ChangeLoadCaseTo = handler;
}

} // namespace

/// Sets the module up for the host whose command list is given; 1 on success, 0 without a
/// list.
extern "C" __attribute__((visibility("default"))) int VortaModuleSetUp(COptionInfoList* list) {
    if (list == nullptr)
        return 0;
    COpterecenjeApp::SetUp(*list);
    opterecenje::PostaviEditore();
    CLoadsServices::Brojevi = &Brojevi;
    CLoadsServices::UkupanBrojSloptOKombinacija = &COpterecenjeApp::UkupanBrojSloptOKombinacija;
    CLoadsServices::FaktoriZaProracun = &COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun;
    CLoadsServices::FaktoriZaIspis = &COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis;
    CLoadsServices::SviFaktoriZaProracun = &COpterecenjeApp::SviFaktori_ZaProracun;
    CLoadsServices::SviFaktoriZaIspis = &COpterecenjeApp::SviFaktori_ZaIspis;
    CLoadsServices::GetTeorija = &COpterecenjeApp::GetTeorija;
    CLoadsServices::SetTeorija = &COpterecenjeApp::SetTeorija;
    CLoadsServices::Izvestaj = &opterecenje::Izvestaj;
    CLoadsServices::IzvestajPoTabelama = &opterecenje::IzvestajPoTabelama;
    CLoadsServices::IzvestajNaZahtev = &opterecenje::IzvestajNaZahtev;
    CLoadsServices::NapraviPrimer = &opterecenje::NapraviPrimer;
    CLoadsServices::PostaviChangeLoadCaseTo = &PostaviChangeLoadCaseTo;
    CLoadsServices::ProveriUcitaniModel = &ProveriUcitaniModel;
    CLoadsServices::ZaboraviDokument = &opterecenje::ZaboraviDokument;
    CLoadsServices::UrediStabilnost = &opterecenje::UrediStabilnost;
    opterecenje::PostaviRazmenu();
    return 1;
}
