#pragma once
// Factors and units: a load named by its ordinal number together with its weight, and lists
// of such pairs with a character that says how the listed loads are combined. They are values
// written inside the records of their owners.
#include "framework/Array.h"
#include "objbase/Id.h"
#include "stream/Filler.h"

#include <cstdint>

/// How the loads of a unit are combined; stored as int32 and kept as read.
enum eKarakter : int32_t {
    LCU_LINEARNA = 0, ///< linear superposition: the sum of factor x load
    LCU_ANVELOPA = 1, ///< the loads are enveloped
};

/// One load (by its ordinal on the common scale) with its factor.
/// Record, version 1: int32 version, int32 ordinal, float64 factor.
class CLoadCaseFactor : public CFillerUser {
public:
    CLoadCaseFactor() = default;
    CLoadCaseFactor(int ordinal, double factor) : m_lcId(ordinal), m_dFaktor(factor) {}
    CLoadCaseFactor(const CLoadCaseFactor&) = default;
    CLoadCaseFactor& operator=(const CLoadCaseFactor&) = default;

    void Set(int ordinal, double factor) {
        m_lcId = ordinal;
        m_dFaktor = factor;
    }
    int GetLCRedniBroj() const { return m_lcId; }
    double GetFaktor() const { return m_dFaktor; }
    void SetFaktor(double factor) { m_dFaktor = factor; }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

    /// Normalizes a list: drops factors that are zero within the default tolerance and sorts
    /// the rest by ascending ordinal. Two pairs of one ordinal are an unrecoverable internal
    /// error: callers merge factors of the same load first.
    static void SortLoadCaseFactorArray(OCArray<CLoadCaseFactor>& arrLoadCaseFactors);
    /// Same length and, position by position, the same ordinal and equal factors.
    static int EqualLoadCaseFactorArray(const OCArray<CLoadCaseFactor>& a,
                                        const OCArray<CLoadCaseFactor>& b);

    int32_t m_lcId = 0;

protected:
    double m_dFaktor = 0.0;
};

/// A factor used where loads are turned into masses, with its storey dependence.
/// Record, version 1 (written whole, not nesting the factor record): int32 version,
/// int32 ordinal, float64 factor, int32 storey dependence.
class CLoadCaseFactorZaMase : public CLoadCaseFactor {
public:
    CLoadCaseFactorZaMase() = default;
    CLoadCaseFactorZaMase(int ordinal, double factor, int zavisnost)
        : CLoadCaseFactor(ordinal, factor), m_nZavisnostOdSprata(zavisnost) {}
    CLoadCaseFactorZaMase(const CLoadCaseFactor& factor, int zavisnost)
        : CLoadCaseFactor(factor), m_nZavisnostOdSprata(zavisnost) {}
    CLoadCaseFactorZaMase(const CLoadCaseFactorZaMase&) = default;
    CLoadCaseFactorZaMase& operator=(const CLoadCaseFactorZaMase&) = default;

    int DajZavisnostOdSprata() const { return m_nZavisnostOdSprata; }
    void PostaviZavisnostOdSprata(int value) { m_nZavisnostOdSprata = value; }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    int32_t m_nZavisnostOdSprata = 0;
};

/// A list of factors with its character.
/// Record, version 1: int32 version, int32 character, int32 count n, n factor records.
class CLoadCaseUnit : public CFillerUser {
public:
    CLoadCaseUnit() = default;
    CLoadCaseUnit(const CLoadCaseUnit&) = default;
    CLoadCaseUnit& operator=(const CLoadCaseUnit&) = default;
    CLoadCaseUnit(CLoadCaseUnit&&) noexcept = default;
    CLoadCaseUnit& operator=(CLoadCaseUnit&&) noexcept = default;

    int GetSize() const { return m_arrFactors.GetSize(); }
    bool IsEmpty() const { return m_arrFactors.IsEmpty(); }
    /// Empties the list; the character stays.
    void RemoveAll() { m_arrFactors.RemoveAll(); }
    const CLoadCaseFactor& GetLoadCaseFactor(int i) const { return m_arrFactors[i]; }
    const OCArray<CLoadCaseFactor>& GetFactors() const { return m_arrFactors; }
    /// The list itself, for callers that edit it directly (it may be left unsorted).
    OCArray<CLoadCaseFactor>& Factors() { return m_arrFactors; }

    eKarakter GetKarakter() const { return m_eKarakter; }
    void SetKarakter(eKarakter karakter) { m_eKarakter = karakter; }

    /// Takes the list (normalized with SortLoadCaseFactorArray) and the character.
    void Set(const OCArray<CLoadCaseFactor>& factors, const eKarakter& karakter);
    /// Exactly 0.0 removes pair i; any other value replaces its factor in place.
    void SetFaktor(int i, double f);
    /// Sorts by ascending ordinal; zeros and equal ordinals are kept.
    void SortirajPoRednomBroju();

    bool operator<(const CLoadCaseUnit& other) const;
    bool operator==(const CLoadCaseUnit& other) const;
    bool operator!=(const CLoadCaseUnit& other) const { return !(*this == other); }

    /// Whether a load depends on a seismic load case. Determines the status of every load
    /// case and combination of the model (1 seismic, 0 not, -1 undetermined: a cycle of SRSS
    /// references) and gives the statuses and ids through the optional outputs, indexed by
    /// ordinal - 1 within each kind. With ordinal >= 1 it answers for that load (load case
    /// when ordinal <= N, else combination ordinal - N); otherwise for the unit itself.
    int SadrziLiSeizmickiSlopt(CArray<int>* slStatus, CArray<CId>* slIds, CArray<int>* kombStatus,
                               CArray<CId>* kombIds, int ordinal) const;

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    OCArray<CLoadCaseFactor> m_arrFactors;
    eKarakter m_eKarakter = LCU_LINEARNA;
};
