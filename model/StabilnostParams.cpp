// Stability parameters: the per-load-case and per-combination items of a second-order
// analysis, the distinct stability combinations built from them, and their records.
#include "model/StabilnostParams.h"

#include "host/Model.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <bit>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

/// Version errors of the three records carry the name of the unit and factor records' source.
constexpr const char* kIzvor = "LoadCaseDescriptions";

constexpr uint32_t kBitNegativan = 0x80000000u;
constexpr uint32_t kMaskaIndeksa = 0x7FFFFFFFu;

// The smallest number of bytes one element of each counted list can take in a stream; counts
// are checked against them before anything is allocated.
constexpr size_t kMinUnit = 3 * sizeof(int32_t);                       // version, character, n
constexpr size_t kMinSloptItem = 3 * sizeof(int32_t) + sizeof(double); // whole record
constexpr size_t kMinKombItem = 4 * sizeof(int32_t);                   // version .. n

/// Reads a count and checks that the rest of the stream can hold that many elements.
bool ProcitajBroj(CFiller& f, size_t minElem, int32_t& n) {
    n = 0;
    if (!f.ReadInt32(n))
        return false;
    return f.CheckCount(n, minElem);
}

/// Writes a counted list of records.
template <class T> void SnimiNiz(CFiller& f, const OCArray<T>& arr) {
    f.WriteInt32(arr.GetSize());
    for (const T& item : arr)
        item.ToFiller(f);
}

/// Reads a counted list of records; stops at the first element that leaves the stream in error.
template <class T> void UcitajNiz(CFiller& f, size_t minElem, OCArray<T>& arr) {
    int32_t n = 0;
    if (!ProcitajBroj(f, minElem, n))
        return;
    arr.RemoveAll();
    arr.SetSize(n);
    for (T& item : arr) {
        item.FromFiller(f);
        if (f.IsError())
            return;
    }
}

/// The terms of a unit as text: "%.2gx" of the absolute factor when it is not 1, then the
/// Roman numeral of the load case; a term is preceded by "+" or "-", except that the first
/// term of a positive factor has no sign.
CString TekstJedinice(const CLoadCaseUnit& unit) {
    CString text;
    for (int i = 0; i < unit.GetSize(); ++i) {
        const CLoadCaseFactor& lcf = unit.GetLoadCaseFactor(i);
        const double faktor = lcf.GetFaktor();
        if (faktor < 0.0)
            text += L"-";
        else if (i > 0)
            text += L"+";
        if (CToler::Razliciti(std::fabs(faktor), 1.0))
            text += CString::Formatted(L"%.2gx", std::fabs(faktor));
        text += CRomanNumber::GetRomanValue(lcf.GetLCRedniBroj());
    }
    return text;
}

} // namespace

// ----------------------------------------------------------------------------------------
// CStabilnostSloptItem

int CStabilnostSloptItem::ToFiller(CFiller& f) const {
    f.WriteInt32(1);
    f.WriteInt32(m_bDozvoljen);
    f.WriteInt32(m_bFiksan);
    f.WriteFloat64(m_dFaktor);
    return 1;
}

int CStabilnostSloptItem::FromFiller(CFiller& f) {
    if (f.IsError())
        return 0;
    if (CTrFiller::ReadVersion(f, kIzvor, 1, 1) == 0)
        return 0;
    f.ReadInt32(m_bDozvoljen);
    f.ReadInt32(m_bFiksan);
    f.ReadFloat64(m_dFaktor);
    return f.IsError() ? 0 : 1;
}

// ----------------------------------------------------------------------------------------
// CStabilnostKombItem

void CStabilnostKombItem::AddSloptIndex(int index, int negative) {
    uint32_t value = static_cast<uint32_t>(index);
    if (negative != 0)
        value |= kBitNegativan;
    m_arrSloptIndex.Add(value);
}

int CStabilnostKombItem::GetSloptIndex(int i) const {
    return static_cast<int>(m_arrSloptIndex[i] & kMaskaIndeksa);
}

int CStabilnostKombItem::IsSloptNegative(int i) const {
    return (m_arrSloptIndex[i] & kBitNegativan) != 0 ? 1 : 0;
}

int CStabilnostKombItem::ToFiller(CFiller& f) const {
    f.WriteInt32(2);
    f.WriteInt32(m_bOdobren);
    f.WriteInt32(m_bIzabran);
    f.WriteInt32(m_arrSloptIndex.GetSize());
    for (uint32_t value : m_arrSloptIndex)
        f.WriteUInt32(value);
    return 1;
}

int CStabilnostKombItem::FromFiller(CFiller& f) {
    if (f.IsError())
        return 0;
    if (CTrFiller::ReadVersion(f, kIzvor, 2, 2) == 0)
        return 0;
    f.ReadInt32(m_bOdobren);
    f.ReadInt32(m_bIzabran);
    int32_t n = 0;
    if (!ProcitajBroj(f, sizeof(uint32_t), n))
        return 0;
    m_arrSloptIndex.SetSize(n);
    for (uint32_t& value : m_arrSloptIndex) {
        if (!f.ReadUInt32(value))
            return 0;
    }
    return 1;
}

// ----------------------------------------------------------------------------------------
// CStabilnostParams: building the items

void CStabilnostParams::InitDefault() {
    CBaseManager bm;
    const int nSlopt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    const int nKomb = bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    m_arrSloptItems.RemoveAll();
    m_arrKombItems.RemoveAll();
    m_arrSloptItems.SetSize(nSlopt);
    m_arrKombItems.SetSize(nKomb);

    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));

    // Load cases that carry a moving load cannot take part in a stability analysis.
    std::unordered_set<CId> pokretna;
    bm.Select(CBaseManager::PokretnoOpterecenjeType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        if (const auto* p = dynamic_cast<const CPokretnoOpterecenje*>(bm.GetR(id)))
            pokretna.insert(p->GetSlOptId());
    }

    std::unordered_map<CId, int> redniBrojSlopt; // load case id -> its ordinal
    std::unordered_set<CId> iskljuceni;
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        if (pSlOpt == nullptr)
            continue;
        const int ordinal = pSlOpt->DajRedniBroj();
        redniBrojSlopt[id] = ordinal;
        const bool iskljucen = pSlOpt->IsSeizmicki() || pSlOpt->JeliSRSS() || pSlOpt->JeLiNDA() ||
                               pSlOpt->IsUticajnaLinija() || pokretna.contains(id);
        CStabilnostSloptItem& item = m_arrSloptItems[ordinal - 1];
        item.SetFiksan(0);
        item.SetFaktor(1.0);
        item.SetDozvoljen(iskljucen ? 0 : 1);
        if (iskljucen)
            iskljuceni.insert(id);
    }

    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pKomb = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
        if (pKomb == nullptr)
            continue;
        const CKombOptItem& komb = pKomb->Item();
        CStabilnostKombItem& item = m_arrKombItems[komb.GetRedniBroj() - 1];
        item.SetIzabran(0);
        item.RemoveAll();
        int odobren = 1;
        for (int i = 0; i < komb.GetBrojOsnOpt(); ++i) {
            double koef = 0.0;
            CId slOptId;
            komb.GetOsnOptByIndex(i, koef, slOptId);
            if (iskljuceni.contains(slOptId) && CToler::Razliciti(koef, 0.0))
                odobren = 0;
        }
        item.SetOdobren(odobren);
        if (!odobren)
            continue;
        for (int i = 0; i < komb.GetBrojOsnOpt(); ++i) {
            double koef = 0.0;
            CId slOptId;
            komb.GetOsnOptByIndex(i, koef, slOptId);
            const auto it = redniBrojSlopt.find(slOptId);
            // A component whose load case is gone has no place among the load case items.
            if (CToler::Jednaki(koef, 0.0) || it == redniBrojSlopt.end())
                continue;
            item.AddSloptIndex(it->second - 1, CToler::Manji(koef, 0.0) ? 1 : 0);
        }
    }
    bm.Close();

    m_nCRCkombinacija = GetCRCResultsTeorijaII();
    m_bIskljucTorzGreda = 0;
}

uint32_t CStabilnostParams::GetCRCResultsTeorijaII() {
    uint32_t total = 0;
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        if (const CObj* pSlOpt = bm.GetR(id)) {
            uint32_t crc1 = 0, crc2 = 0, crc3 = 0;
            pSlOpt->UpdateCRC(crc1, crc2, crc3);
            total += crc3;
        }
    }
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        if (const auto* pKomb = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id)))
            total += pKomb->Item().CRC_BitanZaTeorijuII();
    }
    bm.Close();
    return total;
}

// ----------------------------------------------------------------------------------------
// CStabilnostParams: the distinct stability combinations

namespace {

/// The bits of a unit's factors, as the key of its pair of units.
void DodajUKljuc(const CLoadCaseUnit& unit, std::vector<uint64_t>& kljuc) {
    kljuc.push_back(static_cast<uint64_t>(unit.GetSize()));
    for (int k = 0; k < unit.GetSize(); ++k) {
        const CLoadCaseFactor& f = unit.GetLoadCaseFactor(k);
        kljuc.push_back(static_cast<uint64_t>(static_cast<uint32_t>(f.GetLCRedniBroj())));
        kljuc.push_back(std::bit_cast<uint64_t>(f.GetFaktor()));
    }
}

struct KljucHash {
    size_t operator()(const std::vector<uint64_t>& kljuc) const {
        uint64_t h = 1469598103934665603ull;
        for (const uint64_t v : kljuc)
            h = (h ^ v) * 1099511628211ull;
        return static_cast<size_t>(h ^ (h >> 29));
    }
};

} // namespace

void CStabilnostParams::Update() {
    const int nKomb = m_arrKombItems.GetSize();
    const int nIzabranih = BrojIzabranihKombItema();
    m_arrFix.RemoveAll();
    m_arrVar.RemoveAll();
    m_arrFix.SetSize(nIzabranih);
    m_arrVar.SetSize(nIzabranih);
    m_arrKombToStab.SetSize(nKomb);

    // One pair of units per selected combination: fixed load cases with their own factor,
    // the others with +1 or -1 in the part that the critical multiplier scales.
    for (int i = 0, j = 0; i < nKomb; ++i) {
        const CStabilnostKombItem& komb = m_arrKombItems[i];
        if (!komb.IsIzabran()) {
            m_arrKombToStab[i] = -1;
            continue;
        }
        // Filled in place and normalized there (Set leaves a unit's own list where it is).
        OCArray<CLoadCaseFactor>& fix = m_arrFix[j].Factors();
        OCArray<CLoadCaseFactor>& var = m_arrVar[j].Factors();
        for (int k = 0; k < komb.GetSize(); ++k) {
            const int index = komb.GetSloptIndex(k);
            const CStabilnostSloptItem& slopt = m_arrSloptItems[index];
            if (slopt.IsFiksan())
                fix.Add(CLoadCaseFactor(index + 1, slopt.GetFaktor()));
            else
                var.Add(CLoadCaseFactor(index + 1, komb.IsSloptNegative(k) ? -1.0 : 1.0));
        }
        m_arrFix[j].Set(fix, LCU_LINEARNA);
        m_arrVar[j].Set(var, LCU_LINEARNA);
        m_arrKombToStab[i] = j++;
    }

    // Combinations with the same fixed and variable parts share the first one's units. The
    // factors of a load case are the same in every combination (its own factor, or +1 or -1),
    // so units equal within the tolerance are equal bit for bit, and the first combination of
    // each pair of units is found by its bits instead of by comparing every two combinations.
    std::unordered_map<std::vector<uint64_t>, int, KljucHash> prve;
    prve.reserve(static_cast<size_t>(nIzabranih));
    std::vector<uint64_t> kljuc;
    for (int i = 0; i < nKomb; ++i) {
        const int si = m_arrKombToStab[i];
        if (si == -1)
            continue;
        kljuc.clear();
        DodajUKljuc(m_arrFix[si], kljuc);
        DodajUKljuc(m_arrVar[si], kljuc);
        const auto [it, nova] = prve.try_emplace(kljuc, si);
        if (!nova && it->second != si) {
            m_arrFix[si].RemoveAll();
            m_arrVar[si].RemoveAll();
            m_arrKombToStab[i] = it->second;
        }
    }

    // Drop emptied pairs of units, shifting the later indices down: an index loses one for
    // every dropped pair before it. A selected combination whose units were empty from the
    // start loses its pair the same way; its own entry is not reset.
    const int nParova = m_arrFix.GetSize();
    std::vector<int> ispredIzbacenih(static_cast<size_t>(nParova) + 1, 0);
    for (int t = 0; t < nParova; ++t)
        ispredIzbacenih[static_cast<size_t>(t) + 1] =
            ispredIzbacenih[static_cast<size_t>(t)] +
            (m_arrFix[t].IsEmpty() && m_arrVar[t].IsEmpty() ? 1 : 0);
    if (ispredIzbacenih.back() > 0) {
        for (int& s : m_arrKombToStab)
            if (s > 0 && s < nParova)
                s -= ispredIzbacenih[static_cast<size_t>(s)];
        std::vector<CLoadCaseUnit>& fix = m_arrFix.Vector();
        std::vector<CLoadCaseUnit>& var = m_arrVar.Vector();
        size_t n = 0;
        for (size_t t = 0; t < fix.size(); ++t) {
            if (fix[t].IsEmpty() && var[t].IsEmpty())
                continue;
            if (n != t) {
                fix[n] = std::move(fix[t]);
                var[n] = std::move(var[t]);
            }
            ++n;
        }
        fix.resize(n);
        var.resize(n);
    }

    m_arrKritDelta.SetSize(m_arrFix.GetSize());
    for (double& d : m_arrKritDelta)
        d = -1.0;
}

void CStabilnostParams::Reset() {
    m_arrSloptItems.RemoveAll();
    m_arrKombItems.RemoveAll();
    m_dOpsegZaDelta = 1000.0;
    m_dTacnostZaDelta = 0.1;
    m_nCRCkombinacija = 0;
}

int CStabilnostParams::JednakiStabilnostParams(const CStabilnostParams& a,
                                               const CStabilnostParams& b) {
    return a.m_nCRCkombinacija == b.m_nCRCkombinacija &&
                   a.m_arrSloptItems.GetSize() == b.m_arrSloptItems.GetSize() &&
                   a.m_arrKombItems.GetSize() == b.m_arrKombItems.GetSize()
               ? 1
               : 0;
}

int CStabilnostParams::BrojOdobrenihKombItema() const {
    int n = 0;
    for (const CStabilnostKombItem& item : m_arrKombItems)
        n += item.IsOdobren() ? 1 : 0;
    return n;
}

int CStabilnostParams::BrojIzabranihKombItema() const {
    int n = 0;
    for (const CStabilnostKombItem& item : m_arrKombItems)
        n += item.IsIzabran() ? 1 : 0;
    return n;
}

void CStabilnostParams::GetKombinacijuStabilnosti(int i, CLoadCaseUnit& fixed,
                                                  CLoadCaseUnit& variable) const {
    fixed = m_arrFix[i];
    variable = m_arrVar[i];
}

int CStabilnostParams::KombinacijaRbrToStabilnostIndex(int ordinal) const {
    return m_arrKombToStab[ordinal - 1];
}

// The text of a stability combination, for example "1.4xI+II + δ x (III-IV)":
//   - each part is its terms one after another; a term is its sign ("-" for a negative
//     factor, "+" for a positive one except on the first term, which then has none), the
//     absolute factor as "%.2gx" when it is not 1, and the Roman numeral of the load case;
//     there are no spaces between terms;
//   - the fixed part comes first; when it is not empty, " + " joins it to the variable part;
//   - the variable part follows "#gd#g x" (the critical multiplier δ): after " " when it has
//     one term, inside " (" and ")" when it has more;
//   - a pair whose variable part is empty (possible only in data not built by Update) gives
//     the fixed part alone;
//   - finally the Greek markup is turned into its letter.
CString CStabilnostParams::GetKombinacijaString(int i) const {
    const CLoadCaseUnit& fix = m_arrFix[i];
    const CLoadCaseUnit& var = m_arrVar[i];
    CString text = TekstJedinice(fix);
    if (!var.IsEmpty()) {
        if (!fix.IsEmpty())
            text += L" + ";
        text += L"#gd#g x";
        if (var.GetSize() > 1)
            text += L" (" + TekstJedinice(var) + L")";
        else
            text += L" " + TekstJedinice(var);
    }
    return CGreek::ConvertToUnicode(text);
}

void CStabilnostParams::_Copy(const CStabilnostParams& src) {
    m_arrSloptItems = src.m_arrSloptItems;
    m_arrKombItems = src.m_arrKombItems;
    m_arrFix = src.m_arrFix;
    m_arrVar = src.m_arrVar;
    m_arrKombToStab = src.m_arrKombToStab;
    m_arrKritDelta = src.m_arrKritDelta;
    m_dOpsegZaDelta = src.m_dOpsegZaDelta;
    m_dTacnostZaDelta = src.m_dTacnostZaDelta;
    m_nCRCkombinacija = src.m_nCRCkombinacija;
    m_bIskljucTorzGreda = src.m_bIskljucTorzGreda;
}

// ----------------------------------------------------------------------------------------
// CStabilnostParams: the record

int CStabilnostParams::ToFiller(CFiller& f) const {
    f.WriteInt32(Verzija);
    f.WriteInt32(m_bIskljucTorzGreda);
    f.WriteUInt32(m_nCRCkombinacija);
    SnimiNiz(f, m_arrFix);
    SnimiNiz(f, m_arrVar);
    f.WriteFloat64(m_dOpsegZaDelta);
    f.WriteFloat64(m_dTacnostZaDelta);
    f.WriteInt32(m_arrKritDelta.GetSize());
    for (double d : m_arrKritDelta)
        f.WriteFloat64(d);
    SnimiNiz(f, m_arrSloptItems);
    SnimiNiz(f, m_arrKombItems);
    return 1;
}

// Older records lack the leading fields; what they lack keeps its value. The result is 0
// whatever happens: callers look at the stream's error flag.
int CStabilnostParams::FromFiller(CFiller& f) {
    if (f.IsError())
        return 0;
    const int32_t version = CTrFiller::ReadVersion(f, kIzvor, 1, Verzija);
    if (version == 0)
        return 0;
    if (version >= 5)
        f.ReadInt32(m_bIskljucTorzGreda);
    if (version >= 4)
        f.ReadUInt32(m_nCRCkombinacija);
    if (version >= 3) {
        UcitajNiz(f, kMinUnit, m_arrFix);
        UcitajNiz(f, kMinUnit, m_arrVar);
    }
    if (version >= 2) {
        f.ReadFloat64(m_dOpsegZaDelta);
        f.ReadFloat64(m_dTacnostZaDelta);
        int32_t n = 0;
        if (!ProcitajBroj(f, sizeof(double), n))
            return 0;
        m_arrKritDelta.SetSize(n);
        for (double& d : m_arrKritDelta) {
            if (!f.ReadFloat64(d))
                return 0;
        }
    }
    UcitajNiz(f, kMinSloptItem, m_arrSloptItems);
    UcitajNiz(f, kMinKombItem, m_arrKombItems);
    return 0;
}
