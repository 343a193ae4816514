// An example model: the loads of a three-storey building, as a user would enter them.
//
// Load cases (ordinals):
//   I    self-weight (g marker), II added dead load         permanent, coefficient 1.35
//   III, IV, V  imposed load of the 1st, 2nd and 3rd storey  coefficient 1.50
//   VI   snow                                                coefficient 1.50
//   VII, VIII  wind X and wind Y: alternating, and never combined with each other
//   IX, X  seismic X and seismic Y,  XI  their SRSS case
// Combinations 1..6 with generated names, envelope 1 over all combinations.
#include "host/Model.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/ModuleServices.h"

#include <memory>
#include <utility>
#include <vector>

namespace opterecenje {

namespace {

struct SlucajPrimera {
    const wchar_t* naziv;
    int gMarker;
    double koeficijent;
    int stalno;
    int alternativno;
    int seizmicki;
};

constexpr SlucajPrimera kSlucajevi[] = {
    {L"Sopstvena tezina", 1, 1.35, 1, 0, 0},
    {L"Dodatno stalno opterecenje", 0, 1.35, 1, 0, 0},
    {L"Korisno opterecenje - 1. sprat", 0, 1.50, 0, 0, 0},
    {L"Korisno opterecenje - 2. sprat", 0, 1.50, 0, 0, 0},
    {L"Korisno opterecenje - 3. sprat", 0, 1.50, 0, 0, 0},
    {L"Sneg", 0, 1.50, 0, 0, 0},
    {L"Vetar X", 0, 1.50, 0, 1, 0},
    {L"Vetar Y", 0, 1.50, 0, 1, 0},
    {L"Seizmika X", 0, 1.00, 0, 0, 1},
    {L"Seizmika Y", 0, 1.00, 0, 0, 1},
};
constexpr int kSeizmikaX = 9;
constexpr int kSeizmikaY = 10;
constexpr int kVetarX = 7;
constexpr int kVetarY = 8;

/// Combinations as (ordinal of a load case, coefficient).
const std::vector<std::vector<std::pair<int, double>>> kKombinacije = {
    {{1, 1.35}, {2, 1.35}, {3, 1.50}},
    {{1, 1.35}, {2, 1.35}, {3, 1.50}, {4, 1.50}, {5, 1.50}},
    {{1, 1.35}, {2, 1.35}, {6, 1.50}},
    {{1, 1.35}, {2, 1.35}, {kVetarX, 1.50}},
    {{1, 1.35}, {2, 1.35}, {kVetarY, 1.50}},
    {{1, 1.00}, {2, 1.00}, {3, 0.30}, {4, 0.30}, {5, 0.30}, {11, 1.00}},
};

bool DokumentImaOpterecenja(const CBaseManager& bm) {
    return bm.Count(CBaseManager::SlucajOpterecenjaType) != 0 ||
           bm.Count(CBaseManager::KombinacijaOpterecenjaType) != 0 ||
           bm.Count(CBaseManager::AnvelopaOpterecenjaType) != 0;
}

} // namespace

void NapraviPrimer() {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    if (DokumentImaOpterecenja(bm)) {
        bm.Close();
        return;
    }
    if (bm.Count(CBaseManager::ModelType) == 0)
        bm.Insert(std::make_unique<CModel>().release());

    // Load cases 1..10, then the SRSS case 11 over the two seismic directions.
    std::vector<CId> ids;
    int rb = 0;
    for (const SlucajPrimera& s : kSlucajevi) {
        auto p = std::make_unique<CSlucajOpterecenja>();
        p->SetNaziv(s.naziv);
        p->PostaviRedniBroj(++rb);
        p->SetgMarker(s.gMarker);
        p->SetKoeficijent(s.koeficijent);
        p->SetStalno(s.stalno);
        p->SetAlternativno(s.alternativno);
        p->SetSeizmicki(s.seizmicki);
        ids.push_back(bm.Insert(p.release()));
    }
    {
        auto p = std::make_unique<CSlucajOpterecenja>();
        p->SetNaziv(L"SRSS seizmika X+Y");
        p->PostaviRedniBroj(++rb);
        p->SetKoeficijent(1.0);
        OCArray<CLoadCaseFactor> faktori;
        faktori.Add(CLoadCaseFactor(kSeizmikaX, 1.0));
        faktori.Add(CLoadCaseFactor(kSeizmikaY, 1.0));
        CLoadCaseUnit srss;
        srss.Set(faktori, LCU_LINEARNA);
        p->PostaviSRSS(srss);
        ids.push_back(bm.Insert(p.release()));
    }

    // Wind X and wind Y are never combined with each other.
    auto neKombinuj = [&](int rbSlucaja, int rbDrugog) {
        auto* p =
            dynamic_cast<CSlucajOpterecenja*>(bm.GetW(ids[static_cast<size_t>(rbSlucaja - 1)]));
        OCArray<CId> lista;
        lista.Add(ids[static_cast<size_t>(rbDrugog - 1)]);
        if (p != nullptr)
            p->SetNeKombinujSa(lista);
    };
    neKombinuj(kVetarX, kVetarY);
    neKombinuj(kVetarY, kVetarX);

    int rbKomb = 0;
    for (const auto& clanovi : kKombinacije) {
        auto p = std::make_unique<CKombinacijaOpterecenja>();
        p->Item().SetRedniBroj(++rbKomb);
        for (const auto& [rbSlucaja, koef] : clanovi)
            p->Item().DodajOsnOpt(koef, ids[static_cast<size_t>(rbSlucaja - 1)]);
        p->Item().SetGenericName(nullptr, 0);
        bm.Insert(p.release());
    }

    const int nSlOpt = static_cast<int>(ids.size());
    auto anvelopa = std::make_unique<CAnvelopaOpterecenja>();
    anvelopa->SetBroj(1);
    anvelopa->SetNaziv(L"Sve kombinacije");
    anvelopa->SetIzbor(CString::Formatted(L"%d-%d", nSlOpt + 1, nSlOpt + rbKomb));
    anvelopa->SetMod(0);
    bm.Insert(anvelopa.release());

    bm.Close();
}

} // namespace opterecenje
