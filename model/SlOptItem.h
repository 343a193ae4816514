#pragma once
// Load case list items: the editable, stand-alone copy of a load case used where load cases
// are handled as a list outside the object store (the load case list editor, the snapshot of
// a stored combination set).
#include "framework/Array.h"
#include "framework/String.h"
#include "objbase/Id.h"
#include "stream/Filler.h"

#include <cstdint>

/// Record, version 1: int32 version, int32 id, string name, int32 value 1, int32 g marker,
/// int32 influence-line flag, int32 alternating flag, int32 value 3, int32 enters seismic
/// analysis, float64 coefficient, int32 permanent flag, int32 count + count x int32 never-
/// combine ids, int32 count + count x int32 always-combine ids.
class CSlOptItem : public CFillerUser {
public:
    CSlOptItem() = default;
    CSlOptItem(const CString& naziv, int vrednost1, int gMarker, int uticajnaLinija, const CId& id,
               double koeficijent, int stalno, int alternativno, const OCArray<CId>& neKombinujSa,
               const OCArray<CId>& uvekKombinujSa, int ulaziUSeizmickiProracun);
    CSlOptItem(const CSlOptItem& src) : CFillerUser() { Copy(src); }
    CSlOptItem& operator=(const CSlOptItem& src) {
        Copy(src);
        return *this;
    }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

    CId m_Id;                              // the load case, none for a case not yet stored
    CString m_strNaziv;                    // name
    int32_t m_nVrednost1 = 0;              // kept for the list editor
    int32_t m_ngMarker = 0;                // g marker
    int32_t m_bUticajnaLinija = 0;         // 1 for an influence-line case (shown only)
    int32_t m_bAlternativno = 0;           // alternating flag
    int32_t m_nVrednost3 = -1;             // kept for the list editor
    int32_t m_nUlaziUSeizmickiProracun = 0;
    double m_dKoeficijent = 1.0;
    int32_t m_bStalno = 0;                 // permanent flag
    OCArray<CId> m_arrNeKombinujSa;        // "Ne kombinuj sa"
    OCArray<CId> m_arrUvekKombinujSa;      // "Uvek kombinuj sa"

private:
    void Copy(const CSlOptItem& src);
};

/// Record, version 1: int32 version, int32 count n, n item records.
class CSlOptItemArray : public CFillerUser {
public:
    CSlOptItemArray() = default;
    CSlOptItemArray(const CSlOptItemArray& src) : CFillerUser() { Copy(src); }
    CSlOptItemArray& operator=(const CSlOptItemArray& src) {
        Copy(src);
        return *this;
    }

    int GetSize() const { return m_arr.GetSize(); }
    const CSlOptItem& GetAt(int i) const { return m_arr[i]; }
    CSlOptItem& GetAt(int i) { return m_arr[i]; }
    const CSlOptItem& operator[](int i) const { return m_arr[i]; }
    CSlOptItem& operator[](int i) { return m_arr[i]; }
    void RemoveAll() { m_arr.RemoveAll(); }
    void RemoveAt(int i) { m_arr.RemoveAt(i); }

    /// Appends a default item.
    void AddNew();
    /// Puts an item with these values (coefficient 1.0) at the 1-based position, growing the
    /// list when the position lies beyond its end; an item already there is overwritten.
    void AddNew(const CString& naziv, int position, int vrednost1, int gMarker, int uticajnaLinija,
                const CId& id);
    void AddNew(const CString& naziv, int position, int vrednost1, int gMarker, int uticajnaLinija,
                const CId& id, double koeficijent, int stalno, int alternativno,
                const OCArray<CId>& neKombinujSa, const OCArray<CId>& uvekKombinujSa,
                int ulaziUSeizmickiProracun);
    /// Inserts a copy before the 1-based position.
    void InsertNewAt(int position, const CSlOptItem& item);

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    void Copy(const CSlOptItemArray& src);
    OCArray<CSlOptItem> m_arr;
};
