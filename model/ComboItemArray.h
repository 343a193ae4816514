#pragma once
// Entries of the results selector (load cases, combinations, envelopes) and their list.
#include "framework/Array.h"
#include "framework/String.h"
#include "objbase/Id.h"

#include <array>
#include <cstdint>

class ClTranslator;

class CComboItem {
public:
    enum Tip : int32_t { SLUCAJ = 0, KOMBINACIJA = 1, ANVELOPA = 2 };

    int32_t m_nTip = SLUCAJ;            // kind: load case, combination, envelope
    int32_t m_nBroj = 1;                // ordinal, or the envelope's number
    CString m_strNaziv;                 // the text shown for the entry
    int32_t m_bUticajnaLinija = 0;      // 1 for an influence-line load case
    int32_t m_bAnvelopa = 0;            // 1 for envelope entries
    int32_t m_nMod = 0;                 // the envelope's mode
    CId m_Id;                           // the stored object
    std::array<int32_t, 8> m_arrDodatno{}; // further values of the host, carried unchanged

    /// -1 when a sorts before b, 1 after, 0 equal: by kind, number, mode.
    static int Uporedi(const CComboItem& a, const CComboItem& b);
    /// One entry per envelope, at the place of its number, with the text "[name] selection".
    static void GetNizAnvelopaItem(OCArray<CComboItem>& items, ClTranslator& translator);
};

class CComboItemArray : public OCArray<CComboItem> {
public:
    /// Sorted insertion: before the first entry the new one precedes, else at the end.
    void Add(const CComboItem& item);

    static const CComboItem& GetActiveItem();
    static void SetActiveItem(const CComboItem& item);

private:
    static inline CComboItem s_activeItem;
};
