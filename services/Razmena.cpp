// The interchange of a model's loads: the text formats over the model's description.
#include "services/Razmena.h"

#include "host/LoadsServices.h"
#include "services/RazmenaOpis.h"
#include "services/RazmenaTekst.h"

namespace opterecenje {

void IzveziJson(std::string& tekst) {
    razmena::NapisiJson(razmena::ProcitajModel(), tekst);
}

bool UveziJson(std::string_view tekst, CString& greska) {
    razmena::COpis opis;
    if (!razmena::ProcitajJson(tekst, opis, greska))
        return false;
    razmena::UpisiModel(opis);
    return true;
}

void IzveziCsv(std::string& tekst) {
    razmena::NapisiCsv(razmena::ProcitajModel(), tekst);
}

bool UveziCsv(std::string_view tekst, bool bZameni, int& nUvezenih, CString& greska) {
    razmena::CKombinacijeOpisa kombinacije;
    if (!razmena::ProcitajCsv(tekst, razmena::ProcitajSlucajeve(), kombinacije, greska))
        return false;
    razmena::UpisiKombinacije(kombinacije, bZameni);
    nUvezenih = static_cast<int>(kombinacije.lista.size());
    return true;
}

void PostaviRazmenu() {
    CLoadsServices::IzveziJson = &IzveziJson;
    CLoadsServices::UveziJson = &UveziJson;
    CLoadsServices::IzveziCsv = &IzveziCsv;
    CLoadsServices::UveziCsv = &UveziCsv;
}

} // namespace opterecenje
