// Entries of the results selector: their order, the envelope entries and the active entry.
#include "model/ComboItemArray.h"

#include "diag/Assert.h"
#include "model/AnvelopaOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"

#include <algorithm>

namespace {

int Uporedi(int32_t a, int32_t b) {
    return a < b ? -1 : (a > b ? 1 : 0);
}

} // namespace

int CComboItem::Uporedi(const CComboItem& a, const CComboItem& b) {
    if (const int r = ::Uporedi(a.m_nTip, b.m_nTip); r != 0)
        return r;
    if (const int r = ::Uporedi(a.m_nBroj, b.m_nBroj); r != 0)
        return r;
    return ::Uporedi(a.m_nMod, b.m_nMod);
}

void CComboItem::GetNizAnvelopaItem(OCArray<CComboItem>& items, ClTranslator& translator) {
    items.RemoveAll();
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    items.SetSize(bm.Count(CBaseManager::AnvelopaOpterecenjaType));
    bm.Select(CBaseManager::AnvelopaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pAnvOpt = dynamic_cast<const CAnvelopaOpterecenja*>(bm.GetR(id));
        VASSERT(pAnvOpt);
        // Entries stand at the place of the envelope's number, whatever the store order; a
        // number outside 1..E is an invalid argument of the array.
        CComboItem& item = items[pAnvOpt->GetBroj() - 1];
        item.m_nTip = ANVELOPA;
        item.m_nBroj = pAnvOpt->GetBroj();
        const CString naziv =
            pAnvOpt->GetNaziv().IsEmpty() ? translator.Do(L"Anv") : pAnvOpt->GetNaziv();
        item.m_strNaziv.Format(L"[%s] %s", naziv.c_str(), pAnvOpt->GetIzbor().c_str());
        item.m_bUticajnaLinija = 0;
        item.m_bAnvelopa = 1;
        item.m_nMod = pAnvOpt->GetMod();
        item.m_Id = id;
        item.m_arrDodatno[6] = 0;
    }
    bm.Close();
}

void CComboItemArray::Add(const CComboItem& item) {
    // The list is kept in order by this insertion, so the first entry that the new one
    // precedes is found by halving; equal entries stay in front of the new one.
    auto& entries = Vector();
    const auto pos = std::upper_bound(
        entries.begin(), entries.end(), item,
        [](const CComboItem& a, const CComboItem& b) { return CComboItem::Uporedi(a, b) < 0; });
    entries.insert(pos, item);
}

const CComboItem& CComboItemArray::GetActiveItem() {
    return s_activeItem;
}

void CComboItemArray::SetActiveItem(const CComboItem& item) {
    s_activeItem = item;
}
