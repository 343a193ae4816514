// Lookups built once per call of the load services: load case ordinals by id, the first
// combination that agrees with a unit, and the state of envelopes for the results selector.
#include "services/OpterecenjeIndeks.h"

#include "diag/Assert.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "services/Opterecenje.h"
#include "toler/Toler.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace opterecenje {

namespace {

// Coefficients are filed rounded to this step. Rounding puts a boundary halfway between
// multiples of the step, so coefficients typed with up to six decimals sit in the middle of
// their step, far from a boundary.
constexpr double kKorak = 1e-6;
// A coefficient this close to a boundary (in steps) may agree within tolerance with one on
// the other side: it is looked up on both sides. The rounding error of the position within
// the step grows with the magnitude and is added to it (kGreskaPoKoraku per step).
const double kBlizuGranice = CToler::gDefltTol / kKorak + 1e-6;
constexpr double kGreskaPoKoraku = 1e-15;
// More coefficients than this close to boundaries: the unit is compared with every
// combination instead (2^n keys would be more work than that).
constexpr int kNajviseBlizuGranice = 8;
// From this magnitude (in steps) on, doubles are whole numbers of steps apart by more than the
// tolerance: rounding is exact and nothing lies near a boundary.
constexpr double kCeoBroj = 4503599627370496.0; // 2^52

uint64_t Mesaj(uint64_t h, uint64_t v) {
    h ^= v + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2);
    h ^= h >> 31;
    h *= 0xbf58476d1ce4e5b9ULL;
    return h ^ (h >> 29);
}

uint64_t Bitovi(double d) {
    if (d == 0.0)
        d = 0.0; // -0.0 and 0.0 are one step
    uint64_t u;
    static_assert(sizeof u == sizeof d);
    std::memcpy(&u, &d, sizeof u);
    return u;
}

double Zaokruzi(double c) {
    if (!std::isfinite(c))
        return c;
    const double s = c / kKorak;
    return std::fabs(s) >= kCeoBroj ? s : std::floor(s + 0.5);
}

uint64_t Kljuc(const int* redniBrojevi, const double* zaokruzeni, size_t n) {
    uint64_t h = Mesaj(0x51ed270b27a3f1c5ULL, n);
    for (size_t i = 0; i < n; ++i) {
        h = Mesaj(h, static_cast<uint64_t>(static_cast<uint32_t>(redniBrojevi[i])));
        h = Mesaj(h, Bitovi(zaokruzeni[i]));
    }
    return h;
}

} // namespace

// ------------------------------------------------------------------ CRedniBrojeviSlucajeva

CRedniBrojeviSlucajeva::CRedniBrojeviSlucajeva(CBaseManager& bm) {
    std::vector<std::pair<int32_t, int>> slucajevi;
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        slucajevi.emplace_back(id.GetValue(), pSlOpt->DajRedniBroj());
    }
    if (slucajevi.empty())
        return;
    const auto [najmanji, najveci] = std::minmax_element(
        slucajevi.begin(), slucajevi.end(), [](auto& a, auto& b) { return a.first < b.first; });
    const int64_t raspon = static_cast<int64_t>(najveci->first) - najmanji->first + 1;
    if (raspon <= 4 * static_cast<int64_t>(slucajevi.size()) + 4096) {
        m_prviId = najmanji->first;
        m_tabela.assign(static_cast<size_t>(raspon), 0);
        m_imaUTabeli.assign(static_cast<size_t>(raspon), 0);
        for (const auto& [id, rb] : slucajevi) {
            m_tabela[static_cast<size_t>(id - m_prviId)] = rb;
            m_imaUTabeli[static_cast<size_t>(id - m_prviId)] = 1;
        }
    } else {
        for (const auto& [id, rb] : slucajevi)
            m_rb.emplace(id, rb);
    }
}

const int* CRedniBrojeviSlucajeva::Nadji(const CId& id) const {
    if (!m_tabela.empty()) {
        const int64_t i = static_cast<int64_t>(id.GetValue()) - m_prviId;
        if (i < 0 || i >= static_cast<int64_t>(m_tabela.size()) ||
            !m_imaUTabeli[static_cast<size_t>(i)])
            return nullptr;
        return &m_tabela[static_cast<size_t>(i)];
    }
    auto it = m_rb.find(id.GetValue());
    return it == m_rb.end() ? nullptr : &it->second;
}

// ------------------------------------------------------------------ CIndeksKombinacija

CIndeksKombinacija::CIndeksKombinacija(CBaseManager& bm, int nSlOpt,
                                       const CRedniBrojeviSlucajeva& slucajevi)
    : m_bm(bm), m_nSlOpt(nSlOpt), m_slucajevi(slucajevi) {
    m_ids.reserve(static_cast<size_t>(m_bm.Count(CBaseManager::KombinacijaOpterecenjaType)));
    m_bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = m_bm.GetFirst(); id.Valid(); id = m_bm.GetNext())
        m_ids.push_back(id);
    m_pocetak.reserve(m_ids.size() + 1);
    m_pocetak.push_back(0);
    m_rb.reserve(m_ids.size());
    m_sledeci.reserve(m_ids.size());
    size_t kapacitet = 16;
    while (kapacitet < 2 * m_ids.size())
        kapacitet *= 2;
    m_slotovi.resize(kapacitet);
}

CIndeksKombinacija::Slot& CIndeksKombinacija::SlotKljuca(uint64_t kljuc) {
    const size_t maska = m_slotovi.size() - 1;
    for (size_t i = static_cast<size_t>(kljuc) & maska;; i = (i + 1) & maska)
        if (m_slotovi[i].prvi < 0 || m_slotovi[i].kljuc == kljuc)
            return m_slotovi[i];
}

void CIndeksKombinacija::Upisi(int rbKombinacije, const OCArray<CLoadCaseFactor>& lista) {
    const int mesto = m_nSkenirano++;
    const size_t od = m_redniBrojevi.size();
    m_zaokruzeni.clear();
    for (const CLoadCaseFactor& f : lista) {
        m_redniBrojevi.push_back(f.GetLCRedniBroj());
        m_koeficijenti.push_back(f.GetFaktor());
        m_zaokruzeni.push_back(Zaokruzi(f.GetFaktor()));
    }
    m_pocetak.push_back(m_redniBrojevi.size());
    m_rb.push_back(rbKombinacije);
    m_sledeci.push_back(-1);
    const uint64_t kljuc =
        Kljuc(m_redniBrojevi.data() + od, m_zaokruzeni.data(), m_zaokruzeni.size());
    Slot& slot = SlotKljuca(kljuc);
    if (slot.prvi < 0) {
        slot.kljuc = kljuc;
        slot.prvi = mesto;
    } else {
        m_sledeci[static_cast<size_t>(slot.poslednji)] = mesto;
    }
    slot.poslednji = mesto;
}

int CIndeksKombinacija::Skeniraj() {
    const int mesto = m_nSkenirano;
    const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(m_bm.GetR(m_ids[mesto]));
    VASSERT(pKombOpt);
    const CKombOptItem& item = pKombOpt->Item();
    m_lista.RemoveAll();
    for (int k = 0; k < item.GetBrojOsnOpt(); ++k) {
        double koef = 0.0;
        CId id;
        item.GetOsnOptByIndex(k, koef, id);
        if (CToler::Jednaki(koef, 0.0) || !id.Valid())
            continue;
        const int* pSlOpt = m_slucajevi.Nadji(id);
        VASSERT(pSlOpt);
        m_lista.Add(CLoadCaseFactor(*pSlOpt, koef));
    }
    CLoadCaseFactor::SortLoadCaseFactorArray(m_lista);
    Upisi(item.GetRedniBroj(), m_lista);
    return mesto;
}

bool CIndeksKombinacija::Poklapa(int mesto, const CLoadCaseUnit& unit) const {
    const size_t od = m_pocetak[static_cast<size_t>(mesto)];
    const size_t n = m_pocetak[static_cast<size_t>(mesto) + 1] - od;
    if (n != static_cast<size_t>(unit.GetSize()))
        return false;
    for (size_t i = 0; i < n; ++i) {
        const CLoadCaseFactor& f = unit.GetLoadCaseFactor(static_cast<int>(i));
        if (m_redniBrojevi[od + i] != f.GetLCRedniBroj() ||
            CToler::Razliciti(m_koeficijenti[od + i], f.GetFaktor()))
            return false;
    }
    return true;
}

bool CIndeksKombinacija::KljuceviZaTrazenje(const CLoadCaseUnit& unit) {
    const int n = unit.GetSize();
    m_rbUpita.resize(static_cast<size_t>(n));
    m_zaokruzeni.resize(static_cast<size_t>(n));
    m_susedi.clear();
    m_kljucevi.clear();
    for (int i = 0; i < n; ++i) {
        const CLoadCaseFactor& f = unit.GetLoadCaseFactor(i);
        const double c = f.GetFaktor();
        if (!std::isfinite(c))
            return false;
        m_rbUpita[static_cast<size_t>(i)] = f.GetLCRedniBroj();
        const double q = Zaokruzi(c);
        m_zaokruzeni[static_cast<size_t>(i)] = q;
        const double s = c / kKorak;
        if (std::fabs(s) < kCeoBroj) {
            const double r = s + 0.5 - q; // where c lies in its step, 0..1
            const double blizu = kBlizuGranice + kGreskaPoKoraku * std::fabs(s);
            if (r < blizu)
                m_susedi.push_back({i, q, q - 1.0});
            else if (r > 1.0 - blizu)
                m_susedi.push_back({i, q, q + 1.0});
        }
    }
    if (static_cast<int>(m_susedi.size()) > kNajviseBlizuGranice)
        return false;
    const unsigned varijanti = 1u << m_susedi.size();
    for (unsigned v = 0; v < varijanti; ++v) {
        // Both sides of every coefficient near a boundary, in all combinations.
        for (size_t b = 0; b < m_susedi.size(); ++b) {
            const Sused& sused = m_susedi[b];
            m_zaokruzeni[static_cast<size_t>(sused.pozicija)] =
                (v & (1u << b)) != 0 ? sused.sDruge : sused.sOve;
        }
        m_kljucevi.push_back(Kljuc(m_rbUpita.data(), m_zaokruzeni.data(), m_zaokruzeni.size()));
    }
    return true;
}

int CIndeksKombinacija::NadjiMedjuProcitanim(const CLoadCaseUnit& unit) {
    if (!KljuceviZaTrazenje(unit)) {
        // Compared with every combination read so far, in store order.
        for (int i = 0; i < m_nSkenirano; ++i)
            if (Poklapa(i, unit))
                return i;
        return -1;
    }
    int najbolji = -1;
    for (uint64_t k : m_kljucevi) {
        const Slot& slot = SlotKljuca(k);
        for (int i = slot.prvi; i >= 0; i = m_sledeci[static_cast<size_t>(i)]) {
            if (najbolji >= 0 && i >= najbolji)
                break;
            if (Poklapa(i, unit)) {
                najbolji = i;
                break;
            }
        }
    }
    return najbolji;
}

int CIndeksKombinacija::Nadji(const CLoadCaseUnit& unit) {
    // The combinations read so far come first in store order: the earliest of them that
    // agrees is the answer; otherwise the walk goes on where it stopped.
    if (const int i = NadjiMedjuProcitanim(unit); i >= 0)
        return i;
    while (m_nSkenirano < static_cast<int>(m_ids.size())) {
        const int i = Skeniraj();
        if (Poklapa(i, unit))
            return i;
    }
    return -1;
}

int CIndeksKombinacija::RedniBroj(const CLoadCaseUnit& unit) {
    if (unit.GetSize() == 1 && CToler::Jednaki(unit.GetLoadCaseFactor(0).GetFaktor(), 1.0))
        return unit.GetLoadCaseFactor(0).GetLCRedniBroj();
    const int i = Nadji(unit);
    return i < 0 ? 0 : m_nSlOpt + m_rb[static_cast<size_t>(i)];
}

int CIndeksKombinacija::RedniBrojKombinacije(const CLoadCaseUnit& unit, int mesto,
                                             int rbKombinacije) {
    if (mesto != m_nSkenirano ||
        (unit.GetSize() == 1 && CToler::Jednaki(unit.GetLoadCaseFactor(0).GetFaktor(), 1.0)))
        return RedniBroj(unit);
    // The plain walk would read this combination next and find its own list there.
    if (const int i = NadjiMedjuProcitanim(unit); i >= 0)
        return m_nSlOpt + m_rb[static_cast<size_t>(i)];
    Upisi(rbKombinacije, unit.GetFactors());
    return m_nSlOpt + rbKombinacije;
}

// ------------------------------------------------------------------ CProveraAnvelopa

namespace {

CBaseManager& Otvori(CBaseManager& bm) {
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    return bm;
}

} // namespace

CProveraAnvelopa::CProveraAnvelopa()
    : m_slucajevi(Otvori(m_bm)),
      m_indeks(m_bm, m_bm.Count(CBaseManager::SlucajOpterecenjaType), m_slucajevi) {
    m_nSlOpt = m_bm.Count(CBaseManager::SlucajOpterecenjaType);
    m_nKomb = m_bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    m_bm.Select(CBaseManager::AnvelopaOpterecenjaType);
    for (CId id = m_bm.GetFirst(); id.Valid(); id = m_bm.GetNext()) {
        const auto* pAnvOpt = dynamic_cast<const CAnvelopaOpterecenja*>(m_bm.GetR(id));
        VASSERT(pAnvOpt);
        m_anvelope.emplace(pAnvOpt->GetBroj(), id); // the first of a number wins
    }
    for (int rb : COpterecenjeApp::gArrRedBrLabilnihSlOpt)
        m_labilni.insert(rb);
}

CProveraAnvelopa::~CProveraAnvelopa() {
    m_bm.Close();
}

bool CProveraAnvelopa::LabilanClan(int g) {
    // A load case, or a combination enveloped through its own results, is a unit (g, 1.0).
    if (g <= m_nSlOpt || COpterecenjeApp::gbTeorija != 1)
        return m_labilni.count(g) != 0;
    if (m_labilanClan.empty())
        m_labilanClan.assign(static_cast<size_t>(m_nSlOpt + m_nKomb) + 1, -1);
    signed char& odgovor = m_labilanClan[static_cast<size_t>(g)];
    if (odgovor >= 0)
        return odgovor != 0;

    if (!m_bKombinacije) {
        m_bKombinacije = true;
        m_kombinacije.reserve(static_cast<size_t>(m_nKomb));
        m_bm.Select(CBaseManager::KombinacijaOpterecenjaType);
        int mesto = 0;
        for (CId id = m_bm.GetFirst(); id.Valid(); id = m_bm.GetNext(), ++mesto) {
            const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(m_bm.GetR(id));
            VASSERT(pKombOpt);
            m_kombinacije.push_back({pKombOpt->Item().GetRedniBroj(), mesto, id});
        }
        std::stable_sort(m_kombinacije.begin(), m_kombinacije.end(),
                         [](const Kombinacija& a, const Kombinacija& b) { return a.rb < b.rb; });
    }
    // Under superposition every combination with that ordinal gives the unit of its load
    // cases, as the envelope builds it: members with a coefficient other than 0 whose load
    // case exists.
    bool bLabilan = false;
    const int rbKomb = g - m_nSlOpt;
    auto it = std::lower_bound(m_kombinacije.begin(), m_kombinacije.end(), rbKomb,
                               [](const Kombinacija& a, int rb) { return a.rb < rb; });
    for (; it != m_kombinacije.end() && it->rb == rbKomb; ++it) {
        const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(m_bm.GetR(it->id));
        VASSERT(pKombOpt);
        const CKombOptItem& item = pKombOpt->Item();
        m_faktori.RemoveAll();
        bool bCela = true; // every member the plain walk reads has its load case
        for (int k = 0; k < item.GetBrojOsnOpt(); ++k) {
            double koef = 0.0;
            CId id;
            item.GetOsnOptByIndex(k, koef, id);
            if (!id.Valid())
                continue;
            const int* rb = m_slucajevi.Nadji(id);
            if (rb == nullptr && !CToler::Jednaki(koef, 0.0))
                bCela = false;
            if (rb != nullptr && CToler::Razliciti(koef, 0.0))
                m_faktori.Add(CLoadCaseFactor(*rb, koef));
        }
        m_unit.Set(m_faktori, LCU_ANVELOPA); // sorted as the envelope sorts it
        const int rb = bCela ? m_indeks.RedniBrojKombinacije(m_unit, it->mesto, it->rb)
                             : m_indeks.RedniBroj(m_unit);
        if (m_labilni.count(rb) != 0)
            bLabilan = true;
    }
    odgovor = bLabilan ? 1 : 0;
    return bLabilan;
}

CProveraAnvelopa::Stanje CProveraAnvelopa::Proveri(int brojAnvelope) {
    Stanje stanje;
    auto it = m_anvelope.find(brojAnvelope);
    if (it == m_anvelope.end()) {
        stanje.bNeuspeh = true;
        return stanje;
    }
    const auto* pAnvOpt = dynamic_cast<const CAnvelopaOpterecenja*>(m_bm.GetR(it->second));
    VASSERT(pAnvOpt);
    CArray<int> izabrani;
    if (!CAnvelopaOpterecenja::Str2FlagsArray(pAnvOpt->GetIzbor(), izabrani, m_nSlOpt + m_nKomb)) {
        stanje.bNeuspeh = true;
        return stanje;
    }
    // Nothing is marked: no unit can stand for an unstable load.
    if (m_labilni.empty())
        return stanje;
    for (int i = 0; i < izabrani.GetSize() && !stanje.bLabilna; ++i)
        if (izabrani[i] != 0 && LabilanClan(i + 1))
            stanje.bLabilna = true;
    return stanje;
}

} // namespace opterecenje
