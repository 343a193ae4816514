// Factors and units: their records, normalization, ordering and the seismic-containment test.
#include "model/LoadCaseDescriptions.h"

#include "diag/Assert.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "toler/Toler.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr const char* kSource = "LoadCaseDescriptions";
constexpr int32_t kVerzija = 1;
/// Bytes of the smallest factor record: version, ordinal and factor.
constexpr size_t kFactorRecordSize = 4 + 4 + 8;

/// Reads the version of a record and checks it; a wrong one is reported as a version error.
bool ReadVersion(CFiller& f) {
    return CTrFiller::ReadVersion(f, kSource, kVerzija, kVerzija) != 0;
}

} // namespace

// --- CLoadCaseFactor ---

int CLoadCaseFactor::ToFiller(CFiller& f) const {
    f.WriteInt32(kVerzija);
    f.WriteInt32(m_lcId);
    f.WriteFloat64(m_dFaktor);
    return 1;
}

int CLoadCaseFactor::FromFiller(CFiller& f) {
    if (f.IsError() || !ReadVersion(f))
        return 0;
    f.ReadInt32(m_lcId);
    f.ReadFloat64(m_dFaktor);
    return 1;
}

void CLoadCaseFactor::SortLoadCaseFactorArray(OCArray<CLoadCaseFactor>& arrLoadCaseFactors) {
    // Zero factors carry no load: they go, the others keep their order.
    auto& factors = arrLoadCaseFactors.Vector();
    factors.erase(std::remove_if(factors.begin(), factors.end(),
                                 [](const CLoadCaseFactor& f) {
                                     return !CToler::Razliciti(f.m_dFaktor, 0.0, CToler::gDefltTol);
                                 }),
                  factors.end());
    const size_t n = factors.size();
    if (n < 2)
        return;
    const auto poRednomBroju = [](const CLoadCaseFactor& a, const CLoadCaseFactor& b) {
        return a.m_lcId < b.m_lcId;
    };
    if (std::is_sorted(factors.begin(), factors.end(), poRednomBroju) &&
        std::adjacent_find(factors.begin(), factors.end(), [](const auto& a, const auto& b) {
            return a.m_lcId == b.m_lcId;
        }) == factors.end())
        return;
    // With different ordinals the order is the one sorted by ordinal, however it is reached.
    std::sort(factors.begin(), factors.end(), poRednomBroju);
    if (std::adjacent_find(factors.begin(), factors.end(), [](const auto& a, const auto& b) {
            return a.m_lcId == b.m_lcId;
        }) == factors.end())
        return;
    // One load twice in a unit means a caller did not merge its factors, which no later step
    // could repair.
    gfnInternalError(kSource, 81, "arrLoadCaseFactors [i].m_lcId == arrLoadCaseFactors [j].m_lcId");
}

int CLoadCaseFactor::EqualLoadCaseFactorArray(const OCArray<CLoadCaseFactor>& a,
                                              const OCArray<CLoadCaseFactor>& b) {
    if (a.GetSize() != b.GetSize())
        return 0;
    for (int i = 0; i < a.GetSize(); ++i) {
        if (a[i].m_lcId != b[i].m_lcId ||
            CToler::Razliciti(a[i].m_dFaktor, b[i].m_dFaktor, CToler::gDefltTol))
            return 0;
    }
    return 1;
}

// --- CLoadCaseFactorZaMase ---

int CLoadCaseFactorZaMase::ToFiller(CFiller& f) const {
    f.WriteInt32(kVerzija);
    f.WriteInt32(m_lcId);
    f.WriteFloat64(m_dFaktor);
    f.WriteInt32(m_nZavisnostOdSprata);
    return 1;
}

int CLoadCaseFactorZaMase::FromFiller(CFiller& f) {
    if (f.IsError() || !ReadVersion(f))
        return 0;
    f.ReadInt32(m_lcId);
    f.ReadFloat64(m_dFaktor);
    f.ReadInt32(m_nZavisnostOdSprata);
    return 1;
}

// --- CLoadCaseUnit ---

void CLoadCaseUnit::Set(const OCArray<CLoadCaseFactor>& factors, const eKarakter& karakter) {
    if (&factors != &m_arrFactors)
        m_arrFactors = factors;
    CLoadCaseFactor::SortLoadCaseFactorArray(m_arrFactors);
    m_eKarakter = karakter;
}

void CLoadCaseUnit::SetFaktor(int i, double f) {
    // Only an exact zero removes the pair: a small factor set on purpose stays.
    if (f == 0.0)
        m_arrFactors.RemoveAt(i);
    else
        m_arrFactors[i].SetFaktor(f);
}

void CLoadCaseUnit::SortirajPoRednomBroju() {
    const int n = m_arrFactors.GetSize();
    for (int i = 0; i < n - 1; ++i) {
        int best = i;
        for (int j = i + 1; j < n; ++j) {
            if (m_arrFactors[j].m_lcId < m_arrFactors[best].m_lcId)
                best = j;
        }
        if (best != i)
            std::swap(m_arrFactors[i], m_arrFactors[best]);
    }
}

bool CLoadCaseUnit::operator<(const CLoadCaseUnit& other) const {
    if (m_eKarakter != other.m_eKarakter)
        return m_eKarakter < other.m_eKarakter;
    if (GetSize() != other.GetSize())
        return GetSize() < other.GetSize();
    for (int i = 0; i < GetSize(); ++i) {
        const CLoadCaseFactor& a = m_arrFactors[i];
        const CLoadCaseFactor& b = other.m_arrFactors[i];
        if (a.GetLCRedniBroj() != b.GetLCRedniBroj())
            return a.GetLCRedniBroj() < b.GetLCRedniBroj();
        if (CToler::Manji(a.GetFaktor(), b.GetFaktor(), CToler::gDefltTol))
            return true;
        if (CToler::Veci(a.GetFaktor(), b.GetFaktor(), CToler::gDefltTol))
            return false;
    }
    return false;
}

bool CLoadCaseUnit::operator==(const CLoadCaseUnit& other) const {
    return m_eKarakter == other.m_eKarakter &&
           CLoadCaseFactor::EqualLoadCaseFactorArray(m_arrFactors, other.m_arrFactors) != 0;
}

int CLoadCaseUnit::ToFiller(CFiller& f) const {
    f.WriteInt32(kVerzija);
    f.WriteInt32(m_eKarakter);
    f.WriteInt32(m_arrFactors.GetSize());
    for (const CLoadCaseFactor& factor : m_arrFactors)
        factor.ToFiller(f);
    return 1;
}

int CLoadCaseUnit::FromFiller(CFiller& f) {
    if (f.IsError() || !ReadVersion(f))
        return 0;
    int32_t karakter = m_eKarakter;
    if (f.ReadInt32(karakter))
        m_eKarakter = static_cast<eKarakter>(karakter);
    // A count the rest of the stream cannot hold is refused before anything is allocated;
    // the unit is then empty and the stream in error.
    int32_t n = 0;
    f.ReadInt32(n);
    if (!f.CheckCount(n, kFactorRecordSize))
        n = 0;
    m_arrFactors.RemoveAll();
    m_arrFactors.SetSize(n);
    // A failing element shows as the stream's error flag; later elements then read nothing.
    for (CLoadCaseFactor& factor : m_arrFactors)
        factor.FromFiller(f);
    return 1;
}

// --- the seismic-containment test ---

namespace {

/// Status of every load case and combination: 1 seismic, 0 not, -1 undetermined.
struct CSeizmickiStatus {
    CArray<int> sl;
    CArray<CId> slIds;
    CArray<int> komb;
    CArray<CId> kombIds;

    /// The status of a load on the common scale; out-of-range ordinals are invalid arguments.
    int& Of(int ordinal) {
        if (ordinal <= 0)
            throw CInvalidArgException("ordinal of a load must be positive");
        if (ordinal <= sl.GetSize())
            return sl[ordinal - 1];
        return komb[ordinal - sl.GetSize() - 1];
    }

    /// The status of the load case with this id, or null when no recorded load case has it.
    const int* OfLoadCase(const CId& id) const {
        if (!id.Valid())
            return nullptr;
        for (int i = 0; i < slIds.GetSize(); ++i) {
            if (slIds[i] == id)
                return &sl[i];
        }
        return nullptr;
    }
};

/// Combines the statuses of referenced loads: 1 as soon as one is 1, else -1 when one is
/// still undetermined, else 0.
class CReferenceCheck {
public:
    void Add(int status) {
        if (status == 1)
            m_bSeizmicki = true;
        else if (status == -1)
            m_bOtvoreno = true;
    }
    bool Done() const { return m_bSeizmicki; }
    int Result() const { return m_bSeizmicki ? 1 : (m_bOtvoreno ? -1 : 0); }

private:
    bool m_bSeizmicki = false;
    bool m_bOtvoreno = false;
};

int LoadCaseStatus(const CSlucajOpterecenja& slOpt, CSeizmickiStatus& status) {
    if (slOpt.JeLiNDA() || slOpt.IsSeizmicki() || slOpt.DajUlaziUSeizmickiProracun() != 0)
        return 1;
    const CLoadCaseUnit* srss = slOpt.JeliSRSS() ? slOpt.DajLCUnitZaSRSS() : nullptr;
    if (srss == nullptr || srss->IsEmpty())
        return 0;
    CReferenceCheck check;
    for (int i = 0; i < srss->GetSize() && !check.Done(); ++i) {
        const CLoadCaseFactor& factor = srss->GetLoadCaseFactor(i);
        if (factor.GetFaktor() != 0.0) // deliberate: only an exact zero leaves a load out
            check.Add(status.Of(factor.GetLCRedniBroj()));
    }
    return check.Result();
}

int CombinationStatus(const CKombOptItem& item, const CSeizmickiStatus& status) {
    CReferenceCheck check;
    for (int i = 0; i < item.GetBrojOsnOpt() && !check.Done(); ++i) {
        double koef = 0.0;
        CId id;
        item.GetOsnOptByIndex(i, koef, id);
        if (koef == 0.0) // deliberate: only an exact zero leaves a load case out
            continue;
        if (const int* s = status.OfLoadCase(id))
            check.Add(*s);
    }
    return check.Result();
}

/// Reads the model's load cases and combinations and resolves their statuses; what a cycle
/// of SRSS references holds stays -1.
void ResolveStatuses(CSeizmickiStatus& status) {
    CBaseManager bm;
    const int nSl = bm.Count(CBaseManager::SlucajOpterecenjaType);
    const int nKomb = bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    status.sl.SetSize(nSl);
    status.slIds.SetSize(nSl);
    status.komb.SetSize(nKomb);
    status.kombIds.SetSize(nKomb);
    std::fill(status.sl.begin(), status.sl.end(), -1);
    std::fill(status.komb.begin(), status.komb.end(), -1);

    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    std::vector<const CSlucajOpterecenja*> slOpt(static_cast<size_t>(nSl), nullptr);
    std::vector<const CKombinacijaOpterecenja*> komb(static_cast<size_t>(nKomb), nullptr);
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* p = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        if (p == nullptr)
            continue;
        const int index = p->DajRedniBroj() - 1;
        status.slIds[index] = id; // checked: an ordinal outside 1..N is an invalid argument
        status.sl[index] = -1;
        slOpt[static_cast<size_t>(index)] = p;
    }
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* p = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
        if (p == nullptr)
            continue;
        const int index = p->Item().GetRedniBroj() - 1;
        status.kombIds[index] = id;
        status.komb[index] = -1;
        komb[static_cast<size_t>(index)] = p;
    }

    for (bool changed = true; changed;) {
        changed = false;
        for (int i = 0; i < nSl; ++i) {
            if (status.sl[i] != -1 || slOpt[static_cast<size_t>(i)] == nullptr)
                continue;
            status.sl[i] = LoadCaseStatus(*slOpt[static_cast<size_t>(i)], status);
            changed = changed || status.sl[i] != -1;
        }
        for (int i = 0; i < nKomb; ++i) {
            if (status.komb[i] != -1 || komb[static_cast<size_t>(i)] == nullptr)
                continue;
            status.komb[i] = CombinationStatus(komb[static_cast<size_t>(i)]->Item(), status);
            changed = changed || status.komb[i] != -1;
        }
    }
    bm.Close();
}

} // namespace

int CLoadCaseUnit::SadrziLiSeizmickiSlopt(CArray<int>* slStatus, CArray<CId>* slIds,
                                          CArray<int>* kombStatus, CArray<CId>* kombIds,
                                          int ordinal) const {
    CSeizmickiStatus status;
    ResolveStatuses(status);
    if (slStatus != nullptr)
        *slStatus = status.sl;
    if (slIds != nullptr)
        *slIds = status.slIds;
    if (kombStatus != nullptr)
        *kombStatus = status.komb;
    if (kombIds != nullptr)
        *kombIds = status.kombIds;

    if (ordinal >= 1)
        return status.Of(ordinal) == 1 ? 1 : 0;
    for (const CLoadCaseFactor& factor : m_arrFactors) {
        if (factor.GetFaktor() != 0.0 && status.Of(factor.GetLCRedniBroj()) == 1)
            return 1;
    }
    return 0;
}
