// CGeneralizedLoadCase: the sorted list of units, its record and its list of ordinals.
#include "model/GeneralizedLoadCase.h"

#include "model/LoadNumbering.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <map>
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
    const CLoadCaseUnit copy(unit);
    auto& units = m_arrUnits.Vector();
    size_t pos = units.size();
    units.emplace_back();
    // Walk back over the units that the new one precedes, moving each one place on; equal
    // units stay in front, so the new one goes after them.
    while (pos > 0 && copy < units[pos - 1]) {
        units[pos] = units[pos - 1];
        --pos;
    }
    units[pos] = copy;
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
