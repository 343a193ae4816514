#pragma once
// CGeneralizedLoadCase: a load as the analysis and the result views receive it, a sorted list
// of units together with the construction phase in which they are evaluated.
#include "model/LoadCaseDescriptions.h"

#include <vector>

/// Record, version 2: int32 version, int32 spare value (0), int32 phase number, int32 count n,
/// n unit records in sorted order. Version 1 lacks the spare value.
class CGeneralizedLoadCase : public CFillerUser {
public:
    CGeneralizedLoadCase() = default;
    CGeneralizedLoadCase(const CGeneralizedLoadCase& src);
    CGeneralizedLoadCase& operator=(const CGeneralizedLoadCase& src);

    /// Removes every unit; the phase number stays.
    void Reset() { m_arrUnits.RemoveAll(); }
    void SetRbrFaze(int value) { m_nRbrFaze = value; }
    int GetRbrFaze() const { return m_nRbrFaze; }
    int GetSize() const { return m_arrUnits.GetSize(); }
    const CLoadCaseUnit& GetLoadCaseUnit(int i) const { return m_arrUnits[i]; }
    /// Inserts in ascending order; a unit equal to existing ones goes after them.
    void AddLoadCaseUnit(const CLoadCaseUnit& unit);
    /// Adds the units as AddLoadCaseUnit adds them one after the other, in their order, with
    /// exactly the same result. When the comparison of factors within the tolerance orders
    /// these units as the exact values do (any two factors it compares are equal or further
    /// apart than the tolerance) that result is the stable sort of the units, made in
    /// O(n log n); otherwise they are inserted one by one.
    void AddLoadCaseUnits(std::vector<CLoadCaseUnit>&& units);
    /// True when any unit is of envelope character.
    int IsAnvelopeType() const;

    bool operator==(const CGeneralizedLoadCase& other) const;
    bool operator!=(const CGeneralizedLoadCase& other) const { return !(*this == other); }

    /// The 1-based ordinals of the loads that the units stand for, as a list text.
    CString PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja() const;

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    int32_t m_nRbrFaze = 1;
    OCArray<CLoadCaseUnit> m_arrUnits;
    int32_t m_nRezerva = 0;
};
