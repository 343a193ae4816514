// Entries of the results selector: their order, the envelope entries and the active entry.
#include "ModelFixture.h"

#include "model/ComboItemArray.h"
#include "text/Translator.h"

#include <string>
#include <vector>

namespace {

CComboItem Item(int tip, int broj, int mod = 0, const CString& naziv = CString()) {
    CComboItem item;
    item.m_nTip = tip;
    item.m_nBroj = broj;
    item.m_nMod = mod;
    item.m_strNaziv = naziv;
    return item;
}

std::vector<CString> Names(const CComboItemArray& items) {
    std::vector<CString> names;
    for (const CComboItem& item : items)
        names.push_back(item.m_strNaziv);
    return names;
}

using ComboItemTest = ModelTest;

TEST_F(ComboItemTest, ItemsCompareByKindThenNumberThenMode) {
    const CComboItem def;
    EXPECT_EQ(CComboItem::Uporedi(def, Item(0, 1)), 0) << "a default item is load case 1";
    EXPECT_FALSE(def.m_Id.Valid());
    EXPECT_EQ(CComboItem::Uporedi(Item(0, 9, 9), Item(1, 1, 0)), -1);
    EXPECT_EQ(CComboItem::Uporedi(Item(2, 1, 0), Item(1, 9, 9)), 1);
    EXPECT_EQ(CComboItem::Uporedi(Item(1, 2, 9), Item(1, 3, 0)), -1);
    EXPECT_EQ(CComboItem::Uporedi(Item(1, 4, 0), Item(1, 3, 9)), 1);
    EXPECT_EQ(CComboItem::Uporedi(Item(2, 3, 0), Item(2, 3, 1)), -1);
    EXPECT_EQ(CComboItem::Uporedi(Item(2, 3, 1), Item(2, 3, 0)), 1);
    // text, id and the other values play no part
    CComboItem a = Item(2, 3, 1, L"a");
    CComboItem b = Item(2, 3, 1, L"b");
    b.m_Id = CId(5);
    b.m_arrDodatno[0] = 4;
    EXPECT_EQ(CComboItem::Uporedi(a, b), 0);
}

TEST_F(ComboItemTest, AddKeepsTheListInOrderAndEqualEntriesInArrivalOrder) {
    CComboItemArray list;
    list.Add(Item(1, 2, 0, L"K2"));
    list.Add(Item(0, 5, 0, L"S5"));
    EXPECT_EQ(Names(list), (std::vector<CString>{L"S5", L"K2"}));

    list.Add(Item(2, 1, 1, L"A1m1"));
    list.Add(Item(2, 1, 0, L"A1m0"));
    list.Add(Item(0, 5, 0, L"S5b"));
    list.Add(Item(0, 1, 0, L"S1"));
    list.Add(Item(1, 1, 0, L"K1"));
    list.Add(Item(2, 1, 0, L"A1m0b"));
    list.Add(Item(9, 0, 0, L"last"));
    EXPECT_EQ(Names(list), (std::vector<CString>{L"S1", L"S5", L"S5b", L"K1", L"K2", L"A1m0",
                                                 L"A1m0b", L"A1m1", L"last"}));

    // Entries added in order stay in that order.
    CComboItemArray ordered;
    for (int i = 0; i < 50; ++i)
        ordered.Add(Item(i / 20, i % 20, 0, CString(std::to_wstring(i))));
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(ordered[i].m_strNaziv, CString(std::to_wstring(i)));
}

TEST_F(ComboItemTest, ActiveItemIsACopySharedByTheModule) {
    const CComboItem saved = CComboItemArray::GetActiveItem();
    CComboItem item = Item(2, 4, 1, L"[A] 1-2");
    item.m_arrDodatno[7] = 8;
    CComboItemArray::SetActiveItem(item);
    item.m_nBroj = 99;
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_nBroj, 4);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_arrDodatno[7], 8);
    CComboItemArray::SetActiveItem(saved);
}

TEST_F(ComboItemTest, EnvelopeEntriesStandAtTheirNumbers) {
    const CId second = AddEnvelope(2, L"2,4-5", CString(), 1);
    const CId first = AddEnvelope(1, L"1,3", L"Teret");

    OCArray<CComboItem> items;
    items.Add(Item(0, 7, 0, L"old"));
    ClTranslator translator;
    CComboItem::GetNizAnvelopaItem(items, translator);
    ASSERT_EQ(items.GetSize(), 2);

    EXPECT_EQ(items[0].m_nTip, CComboItem::ANVELOPA);
    EXPECT_EQ(items[0].m_nBroj, 1);
    EXPECT_EQ(items[0].m_strNaziv, L"[Teret] 1,3");
    EXPECT_EQ(items[0].m_bUticajnaLinija, 0);
    EXPECT_EQ(items[0].m_bAnvelopa, 1);
    EXPECT_EQ(items[0].m_nMod, 0);
    EXPECT_EQ(items[0].m_Id, first);
    EXPECT_EQ(items[0].m_arrDodatno[6], 0);

    EXPECT_EQ(items[1].m_nBroj, 2);
    EXPECT_EQ(items[1].m_strNaziv, L"[Anv] 2,4-5");
    EXPECT_EQ(items[1].m_nMod, 1);
    EXPECT_EQ(items[1].m_Id, second);

    // The placeholder of an unnamed envelope follows the translator's language.
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Anv", L"Env");
    ClTranslator::SetLanguage(ClTranslator::Engleski);
    CComboItem::GetNizAnvelopaItem(items, translator);
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    ClTranslator::ClearCatalogs();
    ASSERT_EQ(items.GetSize(), 2);
    EXPECT_EQ(items[1].m_strNaziv, L"[Env] 2,4-5");
    EXPECT_EQ(items[0].m_strNaziv, L"[Teret] 1,3");

    // A model without envelopes gives an empty list.
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.DeleteAll(CBaseManager::AnvelopaOpterecenjaType);
    }
    CComboItem::GetNizAnvelopaItem(items, translator);
    EXPECT_EQ(items.GetSize(), 0);
}

TEST_F(ComboItemTest, EnvelopeNumberOutsideTheEnvelopesIsAnInvalidArgument) {
    AddEnvelope(1, L"1");
    AddEnvelope(3, L"2");
    OCArray<CComboItem> items;
    ClTranslator translator;
    EXPECT_THROW(CComboItem::GetNizAnvelopaItem(items, translator), CInvalidArgException);

    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    bm.DeleteAll(CBaseManager::AnvelopaOpterecenjaType);
    bm.Close();
    AddEnvelope(0, L"1");
    EXPECT_THROW(CComboItem::GetNizAnvelopaItem(items, translator), CInvalidArgException);
}

} // namespace
