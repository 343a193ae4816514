#pragma once
// Stability parameters: which load cases and combinations take part in a second-order
// (buckling) analysis, the distinct stability combinations derived from them as pairs of a
// fixed and a variable unit, and the search range and accuracy of the critical multiplier.
#include "framework/Array.h"
#include "framework/String.h"
#include "model/LoadCaseDescriptions.h"

/// One per load case (index ordinal - 1). Record, version 1: int32 version, int32 allowed,
/// int32 fixed, float64 factor.
class CStabilnostSloptItem : public CFillerUser {
public:
    int IsDozvoljen() const { return m_bDozvoljen; }
    void SetDozvoljen(int value) { m_bDozvoljen = value; }
    int IsFiksan() const { return m_bFiksan; }
    void SetFiksan(int value) { m_bFiksan = value; }
    double GetFaktor() const { return m_dFaktor; }
    void SetFaktor(double value) { m_dFaktor = value; }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    int32_t m_bDozvoljen = 0;
    int32_t m_bFiksan = 0;
    double m_dFaktor = 0.0;
};

/// One per combination (index own ordinal - 1). Record, version 2: int32 version,
/// int32 approved, int32 selected, int32 n, n x int32 load case index (bit 31: negative).
class CStabilnostKombItem : public CFillerUser {
public:
    int IsOdobren() const { return m_bOdobren; }
    void SetOdobren(int value) { m_bOdobren = value; }
    int IsIzabran() const { return m_bIzabran; }
    void SetIzabran(int value) { m_bIzabran = value; }

    /// Appends a zero-based load case index, marked negative when negative is non-zero.
    void AddSloptIndex(int index, int negative);
    int GetSloptIndex(int i) const;
    int IsSloptNegative(int i) const;
    int GetSize() const { return m_arrSloptIndex.GetSize(); }
    void RemoveAll() { m_arrSloptIndex.RemoveAll(); }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    int32_t m_bOdobren = 0;
    int32_t m_bIzabran = 0;
    CArray<uint32_t> m_arrSloptIndex;
};

/// Record, version 5: int32 version, int32 torsion switch, uint32 combinations checksum,
/// int32 n + n fixed unit records, int32 n + n variable unit records, float64 search range,
/// float64 accuracy, int32 n + n x float64 critical values, int32 n + n load case item
/// records, int32 n + n combination item records. Older versions lack the leading fields.
class CStabilnostParams : public CFillerUser {
public:
    static constexpr int32_t Verzija = 5;

    CStabilnostParams() = default;
    CStabilnostParams(const CStabilnostParams& src) : CFillerUser() { _Copy(src); }
    CStabilnostParams& operator=(const CStabilnostParams& src) {
        if (this != &src)
            _Copy(src);
        return *this;
    }

    /// Builds the items from the model's load cases and combinations.
    void InitDefault();
    /// Builds the distinct stability combinations from the selected combination items.
    void Update();
    /// Empties the items and restores the default range, accuracy and checksum.
    void Reset();
    /// Same checksum and same numbers of items; nothing else is compared, deliberately.
    static int JednakiStabilnostParams(const CStabilnostParams& a, const CStabilnostParams& b);

    int BrojSloptItema() const { return m_arrSloptItems.GetSize(); }
    CStabilnostSloptItem& GetSloptItem(int i) { return m_arrSloptItems[i]; }
    const CStabilnostSloptItem& GetSloptItem(int i) const { return m_arrSloptItems[i]; }
    int BrojKombItema() const { return m_arrKombItems.GetSize(); }
    CStabilnostKombItem& GetKombItem(int i) { return m_arrKombItems[i]; }
    const CStabilnostKombItem& GetKombItem(int i) const { return m_arrKombItems[i]; }
    int BrojOdobrenihKombItema() const;
    int BrojIzabranihKombItema() const;

    const OCArray<CLoadCaseUnit>& GetFixLCUArray() const { return m_arrFix; }
    const OCArray<CLoadCaseUnit>& GetVarLCUArray() const { return m_arrVar; }
    int GetBrojRazlicitihKombinacijaStabilnosti() const { return m_arrFix.GetSize(); }
    void GetKombinacijuStabilnosti(int i, CLoadCaseUnit& fixed, CLoadCaseUnit& variable) const;
    /// Index of the distinct stability combination of a combination (own ordinal), or -1.
    int KombinacijaRbrToStabilnostIndex(int ordinal) const;
    CArray<double>& GetKritDeltaArray() { return m_arrKritDelta; }
    const CArray<double>& GetKritDeltaArray() const { return m_arrKritDelta; }

    void SetOpsegZaDelta(double value) { m_dOpsegZaDelta = value; }
    double GetOpsegZaDelta() const { return m_dOpsegZaDelta; }
    void SetTacnostZaDelta(double value) { m_dTacnostZaDelta = value; }
    double GetTacnostZaDelta() const { return m_dTacnostZaDelta; }
    uint32_t GetCRCkombinacija() const { return m_nCRCkombinacija; }
    void SetIskljucTorzGreda(int value) { m_bIskljucTorzGreda = value; }
    int GetIskljucTorzGreda() const { return m_bIskljucTorzGreda; }

    /// Text of stability combination i: the fixed part, then the variable part after the
    /// critical multiplier.
    CString GetKombinacijaString(int i) const;

    int ToFiller(CFiller& f) const override;
    /// Returns 0 also after a successful read: callers test the stream's error flag.
    int FromFiller(CFiller& f) override;

private:
    void _Copy(const CStabilnostParams& src);
    static uint32_t GetCRCResultsTeorijaII();

    OCArray<CStabilnostSloptItem> m_arrSloptItems;
    OCArray<CStabilnostKombItem> m_arrKombItems;
    OCArray<CLoadCaseUnit> m_arrFix;
    OCArray<CLoadCaseUnit> m_arrVar;
    CArray<int> m_arrKombToStab;
    CArray<double> m_arrKritDelta;
    double m_dOpsegZaDelta = 1000.0;
    double m_dTacnostZaDelta = 0.1;
    uint32_t m_nCRCkombinacija = 0;
    int32_t m_bIskljucTorzGreda = 0;
};
