// The common scale of loads and the factor vectors over it.
//
// A load with zero-based number i is load case i+1 when i < nSlOpt, combination i-nSlOpt+1
// after that, and an envelope beyond the combinations. The vectors are rebuilt from the store
// on every call; nothing is cached between calls.
#include "model/LoadNumbering.h"

#include "diag/Assert.h"
#include "framework/Exceptions.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/ModelGlobals.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "toler/Toler.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

namespace LoadNumbering {
namespace {

/// How many combinations ahead of the one being read their entries are asked for.
constexpr size_t kUnapred = 8;

const CKombinacijaOpterecenja* KombinacijaOf(const CBaseManager& bm, const CId& id) {
    const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
    VASSERT(pKombOpt);
    return pKombOpt;
}

/// The ordinal of the load case a combination member names.
int RedniBrojClana(const CBaseManager& bm, const CId& id) {
    const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
    VASSERT(pSlOpt);
    return pSlOpt->DajRedniBroj();
}

/// A vector of length n for zero-based number i: a unit vector at i when i < n; otherwise the
/// coefficients of the combination whose own ordinal is i - nSlOpt + 1 at the places of its
/// load cases, and zeros for anything else.
void Faktori(int i, CArray<double>& f, int n, int nSlOpt) {
    f.SetSize(n);
    for (double& v : f)
        v = 0.0;
    if (i < n) {
        f[i] = 1.0;
        return;
    }
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const CKombOptItem& item = KombinacijaOf(bm, id)->Item();
        if (item.GetRedniBroj() - 1 != i - nSlOpt)
            continue;
        for (int m = 0; m < item.GetBrojOsnOpt(); ++m) {
            double koef = 0.0;
            CId slOptId;
            item.GetOsnOptByIndex(m, koef, slOptId);
            f[RedniBrojClana(bm, slOptId) - 1] = koef;
        }
    }
    bm.Close();
}

/// Replaces the unit's factors by the non-zero entries of a vector, as a linear unit.
template <class Entries> void PostaviUnit(const Entries& entries, CLoadCaseUnit& unit) {
    OCArray<CLoadCaseFactor> factors;
    for (const auto& [index, value] : entries)
        if (CToler::Razliciti(value, 0.0))
            factors.Add(CLoadCaseFactor(index + 1, value));
    unit.Set(factors, LCU_LINEARNA);
}

int DuzinaZaIspis(const Counts& c) {
    return CModelGlobals::nTeorija == 1 ? c.nSlOpt : c.nSlOpt + c.nKomb;
}

} // namespace

Counts Count() {
    CBaseManager bm;
    Counts c;
    c.nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    c.nKomb = bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    c.nAnv = bm.Count(CBaseManager::AnvelopaOpterecenjaType);
    return c;
}

void FaktoriZaProracun(int zerobased, CArray<double>& f) {
    const Counts c = Count();
    Faktori(zerobased, f, c.nSlOpt, c.nSlOpt);
}

void FaktoriZaIspis(int zerobased, CArray<double>& f) {
    const Counts c = Count();
    Faktori(zerobased, f, DuzinaZaIspis(c), c.nSlOpt);
}

void SviFaktori(bool zaIspis, const RedFaktora& red) {
    const Counts c = Count();
    const int n = zaIspis ? DuzinaZaIspis(c) : c.nSlOpt;
    const int ukupno = c.nSlOpt + c.nKomb + c.nAnv;

    // Beyond the vector's length a number stands for the combinations whose own ordinal is
    // number - nSlOpt + 1 (none for an envelope): their members in store order, each as (place
    // in the vector, coefficient), a later member of a place overwriting an earlier one. The
    // members of all numbers lie end to end, those of number z from pocetak[z - n] on.
    struct Clan {
        int mesto;
        double koef;
    };
    std::vector<Clan> clanovi;
    std::vector<size_t> pocetak;
    bool bJedanPoJedan = false;
    if (ukupno > n) {
        CBaseManager bm;
        bm.Open(CBaseManager::Read);
        // The ordinals of the load cases by id, read once rather than for every member: a
        // member whose id has none names no load case.
        CRedniBrojeviSlOpt redniBrojevi;
        bm.Select(CBaseManager::SlucajOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
            if (const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id)))
                redniBrojevi.Postavi(id, pSlOpt->DajRedniBroj());
        // The combinations some load asks for, with their numbers less n, and how many
        // members each number has.
        std::vector<std::pair<const CKombOptItem*, size_t>> trazene;
        pocetak.assign(static_cast<size_t>(ukupno - n) + 1, 0);
        bm.Select(CBaseManager::KombinacijaOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
            if (pKombOpt == nullptr) {
                bJedanPoJedan = true;
                break;
            }
            const CKombOptItem& item = pKombOpt->Item();
            const int64_t broj =
                int64_t{item.GetRedniBroj()} - 1 + c.nSlOpt; // its zero-based number
            if (broj < n || broj >= ukupno)
                continue; // no load asks for it
            trazene.emplace_back(&item, static_cast<size_t>(broj - n));
            pocetak[static_cast<size_t>(broj - n) + 1] += static_cast<size_t>(item.GetBrojOsnOpt());
        }
        for (size_t b = 1; b < pocetak.size(); ++b)
            pocetak[b] += pocetak[b - 1];
        clanovi.resize(pocetak.back());
        std::vector<size_t> sledeci(pocetak.begin(), pocetak.end() - 1);
        for (size_t t = 0; t < trazene.size() && !bJedanPoJedan; ++t) {
            // The combinations a few places ahead are asked for while this one is read: first
            // the item, then, when it has come, its entries.
            if (t + 2 * kUnapred < trazene.size())
                __builtin_prefetch(trazene[t + 2 * kUnapred].first);
            if (t + kUnapred < trazene.size())
                trazene[t + kUnapred].first->Predohvati();
            const auto& [item, b] = trazene[t];
            for (int m = 0; m < item->GetBrojOsnOpt(); ++m) {
                double koef = 0.0;
                CId slOptId;
                item->GetOsnOptByIndex(m, koef, slOptId);
                int redniBroj = 0;
                if (!redniBrojevi.Nadji(slOptId, redniBroj) || redniBroj < 1 || redniBroj > n) {
                    bJedanPoJedan = true;
                    break;
                }
                clanovi[sledeci[b]++] = {redniBroj - 1, koef};
            }
        }
        bm.Close();
    }

    CArray<double> f;
    if (bJedanPoJedan) {
        // What the single calls do, with their assertions and errors at the same load.
        for (int z = 0; z < ukupno; ++z) {
            Faktori(z, f, n, c.nSlOpt);
            red(z, f);
        }
        return;
    }
    // One vector of zeros serves every load: only the places a load sets are put back to zero
    // after it, so that a long vector is not cleared whole for each of many loads.
    f.SetSize(n);
    std::fill(f.begin(), f.end(), 0.0);
    for (int z = 0; z < ukupno; ++z) {
        if (z < n) {
            f[z] = 1.0;
            red(z, f);
            f[z] = 0.0;
            continue;
        }
        const Clan* const prvi = clanovi.data() + pocetak[static_cast<size_t>(z - n)];
        const Clan* const kraj = clanovi.data() + pocetak[static_cast<size_t>(z - n) + 1];
        for (const Clan* clan = prvi; clan != kraj; ++clan)
            f[clan->mesto] = clan->koef;
        red(z, f);
        for (const Clan* clan = prvi; clan != kraj; ++clan)
            f[clan->mesto] = 0.0;
    }
}

void ZerobasedToLoadCaseUnit(int zerobased, CLoadCaseUnit& unit) {
    CArray<double> f;
    FaktoriZaIspis(zerobased, f);
    std::vector<std::pair<int, double>> entries;
    for (int m = 0; m < f.GetSize(); ++m)
        entries.emplace_back(m, f[m]);
    PostaviUnit(entries, unit);
}

void SviZerobasedLoadCaseUnits(OCArray<CLoadCaseUnit>& units) {
    const Counts c = Count();
    const int n = DuzinaZaIspis(c);
    const int total = c.nSlOpt + c.nKomb;
    units.RemoveAll();
    units.SetSize(total);

    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    // The combinations that a number beyond the printing vector stands for, by their own
    // ordinal, in store order; each is read once.
    std::vector<std::vector<const CKombOptItem*>> poRednomBroju;
    if (n < total) {
        poRednomBroju.resize(static_cast<size_t>(c.nKomb) + 1);
        bm.Select(CBaseManager::KombinacijaOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const CKombOptItem& item = KombinacijaOf(bm, id)->Item();
            if (item.GetRedniBroj() >= 1 && item.GetRedniBroj() <= c.nKomb)
                poRednomBroju[static_cast<size_t>(item.GetRedniBroj())].push_back(&item);
        }
    }

    for (int z = 0; z < total; ++z) {
        // The non-zero entries of the printing vector of z, by index; a later member of the
        // same load case overwrites an earlier one, as in the vector.
        std::map<int, double> entries;
        if (z < n) {
            entries[z] = 1.0;
        } else {
            for (const CKombOptItem* item : poRednomBroju[static_cast<size_t>(z - c.nSlOpt + 1)]) {
                for (int m = 0; m < item->GetBrojOsnOpt(); ++m) {
                    double koef = 0.0;
                    CId slOptId;
                    item->GetOsnOptByIndex(m, koef, slOptId);
                    const int k = RedniBrojClana(bm, slOptId);
                    if (k < 1 || k > n)
                        throw CInvalidArgException("array index out of range");
                    entries[k - 1] = koef;
                }
            }
        }
        PostaviUnit(entries, units[z]);
    }
    bm.Close();
}

} // namespace LoadNumbering
