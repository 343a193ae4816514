// The loads module's services as the host sees them: function pointers the module fills.
#include "host/LoadsServices.h"

void CLoadsServices::Reset() {
    Brojevi = nullptr;
    UkupanBrojSloptOKombinacija = nullptr;
    FaktoriZaProracun = nullptr;
    FaktoriZaIspis = nullptr;
    SviFaktoriZaProracun = nullptr;
    SviFaktoriZaIspis = nullptr;
    GetTeorija = nullptr;
    SetTeorija = nullptr;
    Izvestaj = nullptr;
    IzvestajPoTabelama = nullptr;
    IzvestajNaZahtev = nullptr;
    NapraviPrimer = nullptr;
    PostaviChangeLoadCaseTo = nullptr;
    ProveriUcitaniModel = nullptr;
    ZaboraviDokument = nullptr;
    UrediStabilnost = nullptr;
    IzveziJson = nullptr;
    IzveziCsv = nullptr;
    UveziJson = nullptr;
    UveziCsv = nullptr;
}
