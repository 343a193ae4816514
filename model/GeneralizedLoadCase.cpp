// CGeneralizedLoadCase: the sorted list of units, its record and its list of ordinals.
#include "model/GeneralizedLoadCase.h"

#include "model/LoadNumbering.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace {

/// Unit records are at least their version, character and count.
constexpr size_t kMinUnitRecord = 3 * sizeof(int32_t);

/// Same ordinals position by position: the part of a unit that must match exactly.
std::vector<int> OrdinalsOf(const CLoadCaseUnit& unit) {
    std::vector<int> ordinals;
    ordinals.reserve(static_cast<size_t>(unit.GetSize()));
    for (const CLoadCaseFactor& factor : unit.GetFactors())
        ordinals.push_back(factor.GetLCRedniBroj());
    return ordinals;
}

/// Factors equal within the default tolerance position by position (ordinals already agree).
bool SameFactors(const CLoadCaseUnit& a, const CLoadCaseUnit& b) {
    for (int i = 0; i < a.GetSize(); ++i)
        if (CToler::Razliciti(a.GetLoadCaseFactor(i).GetFaktor(),
                              b.GetLoadCaseFactor(i).GetFaktor()))
            return false;
    return true;
}

/// The order of units by their exact values: character, number of pairs, then pair by pair
/// the ordinal and the factor. Without NaN factors it is a strict weak order.
bool TacnoManji(const CLoadCaseUnit& a, const CLoadCaseUnit& b) {
    if (a.GetKarakter() != b.GetKarakter())
        return a.GetKarakter() < b.GetKarakter();
    if (a.GetSize() != b.GetSize())
        return a.GetSize() < b.GetSize();
    for (int i = 0; i < a.GetSize(); ++i) {
        const CLoadCaseFactor& fa = a.GetLoadCaseFactor(i);
        const CLoadCaseFactor& fb = b.GetLoadCaseFactor(i);
        if (fa.GetLCRedniBroj() != fb.GetLCRedniBroj())
            return fa.GetLCRedniBroj() < fb.GetLCRedniBroj();
        if (fa.GetFaktor() != fb.GetFaktor())
            return fa.GetFaktor() < fb.GetFaktor();
    }
    return false;
}

/// For neighbours a, b of the exact order (a not after b): whether the comparison within the
/// tolerance decides between them as the exact one does, both ways. They first differ in the
/// character, the number of pairs or an ordinal, which are compared exactly, or in a factor,
/// which must then lie further from the other than the tolerance.
bool IstiPoredak(const CLoadCaseUnit& a, const CLoadCaseUnit& b) {
    if (a.GetKarakter() != b.GetKarakter() || a.GetSize() != b.GetSize())
        return true;
    for (int i = 0; i < a.GetSize(); ++i) {
        const CLoadCaseFactor& fa = a.GetLoadCaseFactor(i);
        const CLoadCaseFactor& fb = b.GetLoadCaseFactor(i);
        if (fa.GetLCRedniBroj() != fb.GetLCRedniBroj())
            return true;
        if (fa.GetFaktor() != fb.GetFaktor())
            return CToler::Manji(fa.GetFaktor(), fb.GetFaktor()) &&
                   CToler::Veci(fb.GetFaktor(), fa.GetFaktor());
    }
    return true;
}

bool BezNaN(const CLoadCaseUnit& unit) {
    for (const CLoadCaseFactor& factor : unit.GetFactors())
        if (std::isnan(factor.GetFaktor()))
            return false;
    return true;
}

} // namespace

CGeneralizedLoadCase::CGeneralizedLoadCase(const CGeneralizedLoadCase& src)
    : CFillerUser(), m_nRbrFaze(src.m_nRbrFaze), m_arrUnits(src.m_arrUnits) {}

CGeneralizedLoadCase& CGeneralizedLoadCase::operator=(const CGeneralizedLoadCase& src) {
    // The spare value belongs to the record only and is not carried.
    if (this != &src) {
        m_nRbrFaze = src.m_nRbrFaze;
        m_arrUnits = src.m_arrUnits;
    }
    return *this;
}

void CGeneralizedLoadCase::AddLoadCaseUnit(const CLoadCaseUnit& unit) {
    // The unit may be one of ours: take a copy before the array grows.
    CLoadCaseUnit copy(unit);
    auto& units = m_arrUnits.Vector();
    size_t pos = units.size();
    units.emplace_back();
    // Walk back over the units that the new one precedes, moving each one place on; equal
    // units stay in front, so the new one goes after them.
    while (pos > 0 && copy < units[pos - 1]) {
        units[pos] = std::move(units[pos - 1]);
        --pos;
    }
    units[pos] = std::move(copy);
}

void CGeneralizedLoadCase::AddLoadCaseUnits(std::vector<CLoadCaseUnit>&& units) {
    auto& postojece = m_arrUnits.Vector();
    // Inserting one by one into a list sorted by a strict weak order gives the stable sort of
    // the list followed by the new units. The comparison within the tolerance is such an
    // order on these units when it agrees with the exact order on every pair; it is enough to
    // see that on the neighbours of the exact order, as the factors of the units between two
    // others lie between theirs.
    bool bSortom = std::all_of(postojece.begin(), postojece.end(), BezNaN) &&
                   std::all_of(units.begin(), units.end(), BezNaN) &&
                   std::is_sorted(postojece.begin(), postojece.end(), TacnoManji);
    std::vector<CLoadCaseUnit*> poredak;
    if (bSortom) {
        poredak.reserve(postojece.size() + units.size());
        for (CLoadCaseUnit& unit : postojece)
            poredak.push_back(&unit);
        for (CLoadCaseUnit& unit : units)
            poredak.push_back(&unit);
        std::stable_sort(
            poredak.begin(), poredak.end(),
            [](const CLoadCaseUnit* a, const CLoadCaseUnit* b) { return TacnoManji(*a, *b); });
        for (size_t i = 1; i < poredak.size() && bSortom; ++i)
            bSortom = IstiPoredak(*poredak[i - 1], *poredak[i]);
    }
    if (!bSortom) {
        // Factors that the tolerance cannot tell apart: the order depends on the arrival of
        // the units, so they go in one by one.
        for (const CLoadCaseUnit& unit : units)
            AddLoadCaseUnit(unit);
        return;
    }
    std::vector<CLoadCaseUnit> sortirane;
    sortirane.reserve(poredak.size());
    for (CLoadCaseUnit* unit : poredak)
        sortirane.push_back(std::move(*unit));
    postojece = std::move(sortirane);
}

int CGeneralizedLoadCase::IsAnvelopeType() const {
    for (const CLoadCaseUnit& unit : m_arrUnits)
        if (unit.GetKarakter() == LCU_ANVELOPA)
            return 1;
    return 0;
}

bool CGeneralizedLoadCase::operator==(const CGeneralizedLoadCase& other) const {
    if (m_nRbrFaze != other.m_nRbrFaze || GetSize() != other.GetSize())
        return false;
    for (int i = 0; i < GetSize(); ++i)
        if (m_arrUnits[i] != other.m_arrUnits[i])
            return false;
    return true;
}

CString CGeneralizedLoadCase::PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja() const {
    if (m_arrUnits.IsEmpty())
        return CString();

    // Every load case and combination as the unit it stands for, made in one walk of the store.
    OCArray<CLoadCaseUnit> loads;
    LoadNumbering::SviZerobasedLoadCaseUnits(loads);

    // Our units grouped by their ordinals (which must match exactly), in our order; only the
    // factors are then compared within the tolerance. The characters play no part.
    std::map<std::vector<int>, std::vector<int>> byOrdinals;
    for (int i = 0; i < GetSize(); ++i)
        byOrdinals[OrdinalsOf(m_arrUnits[i])].push_back(i);
    std::vector<bool> used(static_cast<size_t>(GetSize()), false);

    CArray<int> selected;
    for (int z = 0; z < loads.GetSize(); ++z) {
        const auto candidates = byOrdinals.find(OrdinalsOf(loads[z]));
        if (candidates == byOrdinals.end())
            continue;
        for (int i : candidates->second) {
            if (!used[static_cast<size_t>(i)] && SameFactors(m_arrUnits[i], loads[z])) {
                used[static_cast<size_t>(i)] = true;
                selected.Add(z + 1);
                break;
            }
        }
    }
    return ClTranslator::IntArray2String(selected);
}

int CGeneralizedLoadCase::ToFiller(CFiller& f) const {
    f.WriteInt32(2);
    f.WriteInt32(m_nRezerva);
    f.WriteInt32(m_nRbrFaze);
    f.WriteInt32(GetSize());
    for (const CLoadCaseUnit& unit : m_arrUnits)
        unit.ToFiller(f);
    return 1;
}

int CGeneralizedLoadCase::FromFiller(CFiller& f) {
    if (f.IsError())
        return 0;
    const int32_t version = CTrFiller::ReadVersion(f, "LoadCaseDescriptions", 1, 2);
    if (version == 0)
        return 0;
    if (version == 2) {
        // The stored spare value is read past and deliberately dropped.
        f.ReadInt32(m_nRezerva);
        m_nRezerva = 0;
    }
    f.ReadInt32(m_nRbrFaze);
    int32_t count = 0;
    f.ReadInt32(count);
    // A count the rest of the stream cannot hold sets the error flag and reads no unit.
    if (!f.CheckCount(count, kMinUnitRecord))
        count = 0;
    m_arrUnits.SetSize(count);
    // Each unit reads itself; a failure shows in the stream's error flag. The units are kept
    // in stream order.
    for (CLoadCaseUnit& unit : m_arrUnits)
        unit.FromFiller(f);
    return 1;
}
