// One load combination as a value: its entries, its generated name, its ordering and its file
// record; the list of combinations and the stored-combinations section of the model file.
#include "model/KombOptItem.h"

#include "diag/Assert.h"
#include "model/NameText.h"
#include "model/SlOptItem.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <map>
#include <vector>

namespace {

const char* const kSource = "KombOptItem";

/// Bytes of one entry in the item record: int32 load case id and float64 coefficient.
constexpr size_t kEntryBytes = sizeof(int32_t) + sizeof(double);
/// Entries packed into one write or read of the stream.
constexpr int kEntriesPerBlock = 64;
/// The smallest item record: an empty name (its int32 length), flag, ordinal and count.
constexpr size_t kMinItemBytes = 4 * sizeof(int32_t);

using nazivi::FormatKoef;
using nazivi::RimskiBroj;

/// A little-endian number from a record's bytes (one load where the processor's order is the
/// record's).
template <class T> T CitajLE(const uint8_t* p) {
    T v = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&v, p, sizeof v);
    } else {
        for (size_t b = 0; b < sizeof v; ++b)
            v |= static_cast<T>(p[b]) << (8 * b);
    }
    return v;
}

/// One side of a MAX term of the paired rule: the coefficient and "x" unless it is 1, then
/// the numeral of the ordinal.
CString ClanPara(double koef, int redniBroj) {
    CString clan;
    if (CToler::Razliciti(koef, 1.0)) {
        clan += FormatKoef(koef, 0);
        clan += L'x';
    }
    clan += RimskiBroj(redniBroj);
    return clan;
}

/// The name of an SRSS unit whose linked entries (j with parovi[j]) are written as MAX terms.
CString NazivSaParovima(const CLoadCaseUnit& unit, const std::map<int, int>& parovi, int bKorijen) {
    auto faktor = [&](int j) {
        const double f = unit.GetLoadCaseFactor(j).GetFaktor();
        return bKorijen != 0 ? std::sqrt(std::fabs(f)) : f;
    };
    CString naziv;
    for (int j = 0; j < unit.GetSize(); ++j) {
        const double f = faktor(j);
        const int redniBroj = unit.GetLoadCaseFactor(j).GetLCRedniBroj();
        if (const auto it = parovi.find(j); it != parovi.end()) {
            const int p = it->second;
            const CString a = ClanPara(f, redniBroj);
            const CString b = ClanPara(faktor(p), unit.GetLoadCaseFactor(p).GetLCRedniBroj());
            if (j != 0)
                naziv += L'+';
            naziv += CString::Formatted(L"MAX(%s,%s)", a.c_str(), b.c_str());
            // The partner is expected right after its first entry: the next entry is never
            // written on its own.
            ++j;
            continue;
        }
        if (CToler::Jednaki(f, 1.0)) {
            if (j != 0)
                naziv += L'+';
        } else {
            naziv += FormatKoef(f, 0);
            naziv += L'x';
        }
        naziv += RimskiBroj(redniBroj);
    }
    return naziv;
}

const CSlucajOpterecenja* SlucajOpterecenja(const CBaseManager& bm, const CId& id) {
    return dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
}

} // namespace

// --- load case ordinals by id ---

void CRedniBrojeviSlOpt::Postavi(const CId& id, int redniBroj) {
    const int32_t kljuc = id.GetValue();
    auto it = std::lower_bound(m_arrRedniBroj.begin(), m_arrRedniBroj.end(), kljuc,
                               [](const auto& e, int32_t k) { return e.first < k; });
    if (it != m_arrRedniBroj.end() && it->first == kljuc)
        it->second = redniBroj;
    else
        m_arrRedniBroj.insert(it, {kljuc, redniBroj});
    // The table by id stays within a few times the number of load cases; it only grows, so an
    // id it covers always has its entry there.
    if (kljuc < 0)
        return;
    const auto mesto = static_cast<size_t>(kljuc);
    if (mesto >= m_arrPoIdu.size()) {
        if (mesto >= 4 * m_arrRedniBroj.size() + 256)
            return;
        m_arrPoIdu.resize(mesto + 1, kNema);
    }
    m_arrPoIdu[mesto] = redniBroj;
}

bool CRedniBrojeviSlOpt::NadjiSortirano(int32_t kljuc, int& redniBroj) const {
    const auto it = std::lower_bound(m_arrRedniBroj.begin(), m_arrRedniBroj.end(), kljuc,
                                     [](const auto& e, int32_t k) { return e.first < k; });
    if (it == m_arrRedniBroj.end() || it->first != kljuc)
        return false;
    redniBroj = it->second;
    return true;
}

// --- entries ---

void CKombOptItem::Copy(const CKombOptItem& src) {
    m_Id = src.m_Id;
    m_strNaziv = src.m_strNaziv;
    m_bGenericName = src.m_bGenericName;
    m_nRedniBroj = src.m_nRedniBroj;
    m_arrKoef = src.m_arrKoef;
    m_arrId = src.m_arrId;
}

void CKombOptItem::DodajOsnOpt(double koef, const CId& id) {
    m_arrId.Add(id);
    m_arrKoef.Add(koef);
}

void CKombOptItem::Obrisi() {
    m_arrKoef.RemoveAll();
    m_arrId.RemoveAll();
}

int CKombOptItem::SetOsnOptKoef(int i, double koef) {
    if (i < 0 || i >= GetBrojOsnOpt())
        return 0;
    m_arrKoef[i] = koef;
    return 1;
}

int CKombOptItem::SetOsnOptId(int i, const CId& id) {
    if (i < 0 || i >= GetBrojOsnOpt())
        return 0;
    m_arrId[i] = id;
    return 1;
}

int CKombOptItem::SetOsnOptKoef(const CId& id, double koef) {
    int i = 0;
    double staro = 0.0;
    if (!GetOsnOptById(i, staro, id))
        return 0;
    m_arrKoef[i] = koef;
    return 1;
}

int CKombOptItem::GetOsnOptById(int& i, double& koef, const CId& id) const {
    // A cascade asks this of every combination of the model: a plain search of the ids.
    const std::vector<CId>& ids = m_arrId.Vector();
    const auto kraj =
        ids.begin() + static_cast<std::ptrdiff_t>(std::min(ids.size(), m_arrKoef.Vector().size()));
    const auto it = std::find(ids.begin(), kraj, id);
    if (it == kraj)
        return 0;
    i = static_cast<int>(it - ids.begin());
    koef = m_arrKoef[i];
    return 1;
}

int CKombOptItem::DaLiSadrziSloptId(const CId& id) const {
    for (int k = 0; k < GetBrojOsnOpt(); ++k) {
        if (m_arrId[k] == id && m_arrKoef[k] != 0.0)
            return 1;
    }
    return 0;
}

int CKombOptItem::SadrziSeizmickiSlopt(const CArray<int>& flags1, const CArray<CId>& ids1,
                                       const CArray<int>& flags2, const CArray<CId>& ids2) const {
    auto oznacen = [](const CArray<int>& flags, const CArray<CId>& ids, const CId& id) {
        for (int k = 0; k < ids.GetSize(); ++k) {
            if (ids[k] == id)
                return flags[k] == 1;
        }
        return false;
    };
    for (int i = 0; i < GetBrojOsnOpt(); ++i) {
        if (m_arrKoef[i] == 0.0)
            continue;
        if (oznacen(flags1, ids1, m_arrId[i]) || oznacen(flags2, ids2, m_arrId[i]))
            return 1;
    }
    return 0;
}

// --- checksum, ordering, clean-up ---

uint32_t CKombOptItem::CRC_BitanZaTeorijuII() const {
    CCrcFiller crc;
    int32_t nenultih = 0;
    for (const double koef : m_arrKoef) {
        if (CToler::Razliciti(koef, 0.0))
            ++nenultih;
    }
    crc.WriteInt32(m_nRedniBroj);
    crc.WriteInt32(nenultih);
    for (int i = 0; i < GetBrojOsnOpt(); ++i) {
        if (CToler::Jednaki(m_arrKoef[i], 0.0))
            continue;
        crc.WriteInt32(m_arrId[i].GetValue());
        crc.WriteFloat64(m_arrKoef[i]);
    }
    return crc.GetCRC();
}

int CKombOptItem::Uporedi(const CKombOptItem& other) const {
    if (GetBrojOsnOpt() < other.GetBrojOsnOpt())
        return 1;
    if (GetBrojOsnOpt() > other.GetBrojOsnOpt())
        return -1;
    if (GetBrojOsnOpt() == 0)
        return 0;
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    for (int i = 0; i < GetBrojOsnOpt(); ++i) {
        const CSlucajOpterecenja* pSlOpt1 = SlucajOpterecenja(bm, m_arrId[i]);
        gfnAssert(pSlOpt1 != nullptr, "pSlOpt1", kSource, __LINE__);
        const CSlucajOpterecenja* pSlOpt2 = SlucajOpterecenja(bm, other.m_arrId[i]);
        gfnAssert(pSlOpt2 != nullptr, "pSlOpt2", kSource, __LINE__);
        if (pSlOpt2->DajRedniBroj() > pSlOpt1->DajRedniBroj())
            return 1;
        if (pSlOpt2->DajRedniBroj() < pSlOpt1->DajRedniBroj())
            return -1;
        // Coefficients are ordered exactly: two combinations that differ at all are not equal.
        if (other.m_arrKoef[i] > m_arrKoef[i])
            return 1;
        if (other.m_arrKoef[i] < m_arrKoef[i])
            return -1;
    }
    return 0;
}

int CKombOptItem::IzbaciNepotrebneNule(CBaseManager& /*bm*/) {
    int izbaceno = 0;
    for (int i = GetBrojOsnOpt() - 1; i >= 0; --i) {
        if (CToler::Jednaki(m_arrKoef[i], 0.0)) {
            m_arrKoef.RemoveAt(i);
            m_arrId.RemoveAt(i);
            izbaceno = 1;
        }
    }
    return izbaceno;
}

int CKombOptItem::NarusenaKonzistencija(CBaseManager& bm) {
    const int nSlOpt = bm.GetObjTypeCount(CSlucajOpterecenja::Type);
    std::vector<bool> zauzet(static_cast<size_t>(nSlOpt) + 1, false);
    int narusena = 0;
    for (int i = 0; i < GetBrojOsnOpt();) {
        const CSlucajOpterecenja* pSlOpt = SlucajOpterecenja(bm, m_arrId[i]);
        const int r = pSlOpt != nullptr ? pSlOpt->DajRedniBroj() : 0;
        if (r >= 1 && r <= nSlOpt && !zauzet[static_cast<size_t>(r)]) {
            zauzet[static_cast<size_t>(r)] = true;
            ++i;
            continue;
        }
        m_arrKoef.RemoveAt(i);
        m_arrId.RemoveAt(i);
        narusena = 1;
    }
    return narusena;
}

bool CKombOptItem::ImaNarusenuKonzistenciju(const CRedniBrojeviSlOpt& redniBrojevi,
                                            int nSlOpt) const {
    // Every combination of a model read from a file is checked: the load cases taken are
    // marked on the stack while the model has few of them.
    constexpr int kNaSteku = 1024;
    uint64_t naSteku[kNaSteku / 64] = {};
    std::vector<uint64_t> uHipu;
    uint64_t* zauzet = naSteku;
    if (nSlOpt >= kNaSteku) {
        uHipu.assign(static_cast<size_t>(nSlOpt) / 64 + 1, 0);
        zauzet = uHipu.data();
    }
    for (int i = 0; i < GetBrojOsnOpt(); ++i) {
        int r = 0;
        if (!redniBrojevi.Nadji(m_arrId[i], r) || r < 1 || r > nSlOpt)
            return true;
        const auto rec = static_cast<size_t>(r) / 64;
        const uint64_t bit = uint64_t{1} << (static_cast<size_t>(r) % 64);
        if ((zauzet[rec] & bit) != 0)
            return true;
        zauzet[rec] |= bit;
    }
    return false;
}

// --- generated name ---

template <class Lookup>
void CKombOptItem::NazivPoRednimBrojevima(Lookup&& redniBroj, bool bKorijen, CString& naziv) const {
    // The entries that take part (coefficient not zero) with their ordinals. Every entry with
    // an id is looked up, so a missing load case is found even where its coefficient is 0.
    struct Clan {
        int redniBroj;
        int index;
    };
    // Combinations have a few dozen entries at most: their terms are gathered on the stack.
    constexpr size_t kNaSteku = 64;
    Clan naSteku[kNaSteku];
    std::vector<Clan> uHipu;
    Clan* clanovi = naSteku;
    const int n = GetBrojOsnOpt();
    if (static_cast<size_t>(n) > kNaSteku) {
        uHipu.resize(static_cast<size_t>(n));
        clanovi = uHipu.data();
    }
    // Models have at most a few hundred load cases: while the ordinals stay below
    // kMaliRedniBroj the terms are put in order by marking their ordinals in a bit table, which
    // also keeps the later entry of a load case that appears twice.
    constexpr int kMaliRedniBroj = 1024;
    uint64_t oznaceni[kMaliRedniBroj / 64] = {};
    int poslednji[kMaliRedniBroj];
    bool maliRedniBrojevi = true;
    int najveci = 0;
    // The tolerance tests of CToler::Jednaki, written out: this runs for every entry of every
    // combination that a renumbering renames.
    const double tol = CToler::gDefltTol;
    const double* koefs = m_arrKoef.Vector().data();
    const CId* ids = m_arrId.Vector().data();
    size_t nClanova = 0;
    int najmanji = 65535;
    for (int i = 0; i < n; ++i) {
        if (!ids[i].Valid())
            continue;
        const int r = redniBroj(ids[i]);
        if (std::fabs(koefs[i]) <= tol)
            continue;
        // Terms have places by ordinal from 1 up: a load case without an ordinal has none.
        if (r < 1)
            throw CInvalidArgException("load case without an ordinal in a combination");
        najmanji = std::min(najmanji, r);
        najveci = std::max(najveci, r);
        clanovi[nClanova++] = {r, i};
        if (r < kMaliRedniBroj) {
            oznaceni[r / 64] |= uint64_t{1} << (r % 64);
            poslednji[r] = i;
        } else {
            maliRedniBrojevi = false;
        }
    }
    nazivi::NazivBafer bafer;
    auto dodaj = [&](int r, int index) {
        const double koef = koefs[index];
        if (std::fabs(koef - 1.0) <= tol) {
            if (r != najmanji)
                bafer.Dodaj(L'+');
        } else {
            bafer.Dodaj(nazivi::KoefKomad(bKorijen ? std::sqrt(std::fabs(koef)) : koef,
                                          r != najmanji ? 1 : 0));
        }
        bafer.Dodaj(nazivi::RimskiKomad(r));
    };
    if (maliRedniBrojevi) {
        for (int rec = 0; rec <= najveci / 64 && nClanova > 0; ++rec) {
            for (uint64_t bitovi = oznaceni[rec]; bitovi != 0; bitovi &= bitovi - 1) {
                const int r = rec * 64 + std::countr_zero(bitovi);
                dodaj(r, poslednji[r]);
            }
        }
    } else {
        // Terms stand in ascending order of ordinal; of two entries of one load case the
        // later one gives the term.
        std::sort(clanovi, clanovi + nClanova, [](const Clan& a, const Clan& b) {
            return a.redniBroj != b.redniBroj ? a.redniBroj < b.redniBroj : a.index < b.index;
        });
        for (size_t k = 0; k < nClanova; ++k) {
            if (k + 1 < nClanova && clanovi[k + 1].redniBroj == clanovi[k].redniBroj)
                continue;
            dodaj(clanovi[k].redniBroj, clanovi[k].index);
        }
    }
    bafer.Prepisi(naziv);
}

void CKombOptItem::SetGenericName(const CLoadCaseUnit* unit, int bKorijen) {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));

    // Linked pairs come only from the hook, for an SRSS load case or a unit being edited.
    const CLoadCaseUnit* izvor = nullptr;
    bool bPozvan = false;
    CArray<int, int> prvi;
    CArray<int, int> drugi;
    if (m_Id.Valid()) {
        const CSlucajOpterecenja* pSlOpt = SlucajOpterecenja(bm, m_Id);
        if (pSlOpt != nullptr && pSlOpt->JeliSRSS() && fnVratiParovePovezanih != nullptr) {
            fnVratiParovePovezanih(m_Id, nullptr, prvi, drugi);
            bPozvan = true;
            izvor = pSlOpt->DajLCUnitZaSRSS();
        }
    } else if (unit != nullptr && fnVratiParovePovezanih != nullptr) {
        fnVratiParovePovezanih(m_Id, unit, prvi, drugi);
        bPozvan = true;
        izvor = unit;
    }

    if (bPozvan && prvi.GetSize() > 0) {
        std::map<int, int> parovi;
        for (int k = 0; k < prvi.GetSize(); ++k)
            parovi[prvi[k]] = drugi[k];
        const CLoadCaseUnit kopija = *izvor;
        bm.Close();
        m_strNaziv = NazivSaParovima(kopija, parovi, bKorijen);
        m_bGenericName = 1;
        return;
    }

    NazivPoRednimBrojevima(
        [&bm](const CId& id) {
            const CSlucajOpterecenja* pSlOpt = SlucajOpterecenja(bm, id);
            gfnAssert(pSlOpt != nullptr, "pSlOpt", kSource, __LINE__);
            return pSlOpt->DajRedniBroj();
        },
        bPozvan && bKorijen != 0, m_strNaziv);
    m_bGenericName = 1;
    bm.Close();
}

CString CKombOptItem::NapraviGenerickiNaziv(const CRedniBrojeviSlOpt& redniBrojevi) const {
    CString naziv;
    NapraviGenerickiNaziv(redniBrojevi, naziv);
    return naziv;
}

void CKombOptItem::NapraviGenerickiNaziv(const CRedniBrojeviSlOpt& redniBrojevi,
                                         CString& naziv) const {
    NazivPoRednimBrojevima(
        [&redniBrojevi](const CId& id) {
            int r = 0;
            gfnAssert(redniBrojevi.Nadji(id, r), "pSlOpt", kSource, __LINE__);
            return r;
        },
        false, naziv);
}

void CKombOptItem::SetGenericNamePoRednimBrojevima(const CRedniBrojeviSlOpt& redniBrojevi) {
    NapraviGenerickiNaziv(redniBrojevi, m_strNaziv);
    m_bGenericName = 1;
}

// --- item record ---

int CKombOptItem::ToFiller(CFiller& f) const {
    ClTranslator::ToFiller(f, m_strNaziv);
    // The flag, the ordinal, the count and the entries (int32 id, float64 coefficient) go out
    // little-endian in blocks, so that a combination costs the stream a few writes rather than
    // two per load case: the undo step writes the record of every combination it changes.
    uint8_t blok[3 * sizeof(int32_t) + kEntriesPerBlock * kEntryBytes];
    uint8_t* p = blok;
    auto stavi = [&p](auto v) {
        for (size_t b = 0; b < sizeof v; ++b)
            *p++ = static_cast<uint8_t>(v >> (8 * b));
    };
    const int n = GetBrojOsnOpt();
    stavi(static_cast<uint32_t>(m_bGenericName));
    stavi(static_cast<uint32_t>(m_nRedniBroj));
    stavi(static_cast<uint32_t>(n));
    const CId* ids = m_arrId.Vector().data();
    const double* koefs = m_arrKoef.Vector().data();
    int first = 0;
    do {
        const int count = std::min(n - first, kEntriesPerBlock);
        for (int i = first; i < first + count; ++i) {
            stavi(static_cast<uint32_t>(ids[i].GetValue()));
            stavi(std::bit_cast<uint64_t>(koefs[i]));
        }
        f.Write(blok, 1, static_cast<size_t>(p - blok));
        p = blok;
        first += count;
    } while (first < n);
    return 1;
}

int CKombOptItem::FromFiller(CFiller& f) {
    ClTranslator::FromFiller(f, m_strNaziv);
    f.ReadInt32(m_bGenericName);
    f.ReadInt32(m_nRedniBroj);
    int32_t n = 0;
    f.ReadInt32(n);
    // A count that the rest of the stream cannot hold is refused before anything is sized.
    if (!f.CheckCount(n, kEntryBytes))
        return 0;
    m_arrKoef.SetSize(n);
    m_arrId.SetSize(n);
    uint8_t blok[kEntriesPerBlock * kEntryBytes];
    for (int first = 0; first < n; first += kEntriesPerBlock) {
        const int count = std::min(n - first, kEntriesPerBlock);
        if (!f.Read(blok, kEntryBytes, static_cast<size_t>(count)))
            return 0;
        const uint8_t* p = blok;
        for (int i = first; i < first + count; ++i) {
            m_arrId[i] = CId(static_cast<int32_t>(CitajLE<uint32_t>(p)));
            m_arrKoef[i] = std::bit_cast<double>(CitajLE<uint64_t>(p + sizeof(uint32_t)));
            p += kEntryBytes;
        }
    }
    return 1;
}

// --- the list ---

void CKombOptItemArray::Copy(const CKombOptItemArray& src) {
    if (this != &src)
        m_arr = src.m_arr;
}

void CKombOptItemArray::AddNew() {
    m_arr.Add(CKombOptItem());
}

void CKombOptItemArray::AddNew(const CKombOptItem& item) {
    m_arr.Add(item);
}

void CKombOptItemArray::AddNew(int n, const CKombOptItem& item) {
    if (n > m_arr.GetSize())
        m_arr.SetSize(n);
    m_arr[n - 1] = item;
}

void CKombOptItemArray::InsertNewAt(int n) {
    m_arr.InsertAt(n - 1, CKombOptItem());
}

int CKombOptItemArray::ToFiller(CFiller& f) const {
    f.WriteInt32(1);
    f.WriteInt32(m_arr.GetSize());
    for (const CKombOptItem& item : m_arr)
        item.ToFiller(f);
    return 1;
}

int CKombOptItemArray::FromFiller(CFiller& f) {
    int32_t verzija = 0;
    int32_t n = 0;
    f.ReadInt32(verzija); // only version 1 was ever written; it is not checked
    f.ReadInt32(n);
    if (!f.CheckCount(n, kMinItemBytes))
        return 0;
    m_arr.SetSize(n);
    for (CKombOptItem& item : m_arr) {
        if (!item.FromFiller(f))
            return 0;
    }
    return f.IsError() ? 0 : 1;
}

void CKombOptItemArray::SnimiUskladisteneKombinacije(CFiller& f) {
    // Kept only for the file format: an empty load case list and an empty combination list.
    f.WriteInt32(2);
    CSlOptItemArray().ToFiller(f);
    CKombOptItemArray().ToFiller(f);
}

void CKombOptItemArray::UcitajUskladisteneKombinacije(CFiller& f, int /*version*/) {
    int32_t verzija = 0;
    if (!f.ReadInt32(verzija))
        return;
    if (verzija == 2) {
        CSlOptItemArray slOpt;
        slOpt.FromFiller(f);
    } else if (verzija != 1) {
        gfnInternalError(kSource, __LINE__,
                         "Version error in CKombOptItemArray::UcitajUskladisteneKombinacije");
    }
    CKombOptItemArray kombinacije;
    kombinacije.FromFiller(f);
}
