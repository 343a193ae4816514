// Entries of the results selector: their order and the envelope entries.
#include "ModelFixture.h"

#include "model/ComboItemArray.h"
#include "text/Translator.h"

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

TEST_F(ComboItemTest, AddKeepsKindNumberModeOrderAndEqualEntriesInArrivalOrder) {
    CComboItemArray list;
    list.Add(Item(1, 2, 0, L"K2"));
    list.Add(Item(0, 5, 0, L"S5"));
    EXPECT_EQ(Names(list), (std::vector<CString>{L"S5", L"K2"}));
    // Text, id and the other values play no part: equal entries stay in arrival order.
    for (const CComboItem& item :
         {Item(2, 1, 1, L"A1m1"), Item(2, 1, 0, L"A1m0"), Item(0, 5, 0, L"S5b"),
          Item(0, 1, 0, L"S1"), Item(1, 1, 0, L"K1"), Item(2, 1, 0, L"A1m0b"),
          Item(2, 0, 5, L"A0m5"), Item(9, 0, 0, L"last")})
        list.Add(item);
    EXPECT_EQ(Names(list), (std::vector<CString>{L"S1", L"S5", L"S5b", L"K1", L"K2", L"A0m5",
                                                 L"A1m0", L"A1m0b", L"A1m1", L"last"}));
    EXPECT_EQ(CComboItem::Uporedi(CComboItem(), Item(0, 1)), 0) << "a default is load case 1";
}

TEST_F(ComboItemTest, EnvelopeEntriesStandAtTheirNumbers) {
    const CId second = AddEnvelope(2, L"2,4-5", CString(), 1);
    const CId first = AddEnvelope(1, L"1,3", L"Teret");

    OCArray<CComboItem> items;
    items.Add(Item(0, 7, 0, L"old"));
    ClTranslator translator;
    CComboItem::GetNizAnvelopaItem(items, translator);
    ASSERT_EQ(items.GetSize(), 2);

    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(items[i].m_nTip, CComboItem::ANVELOPA);
        EXPECT_EQ(items[i].m_nBroj, i + 1);
        EXPECT_EQ(items[i].m_bAnvelopa, 1);
        EXPECT_EQ(items[i].m_nMod, i);
        EXPECT_EQ(items[i].m_Id, i == 0 ? first : second);
    }
    EXPECT_EQ(items[0].m_strNaziv, L"[Teret] 1,3");
    EXPECT_EQ(items[1].m_strNaziv, L"[Anv] 2,4-5");

    // The placeholder of an unnamed envelope follows the translator's language.
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Anv", L"Env");
    ClTranslator::SetLanguage(ClTranslator::Engleski);
    CComboItem::GetNizAnvelopaItem(items, translator);
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    ClTranslator::ClearCatalogs();
    ASSERT_EQ(items.GetSize(), 2);
    EXPECT_EQ(items[1].m_strNaziv, L"[Env] 2,4-5");

    // An envelope numbered outside 1..count is an invalid argument.
    const CId third = AddEnvelope(4, L"2");
    EXPECT_THROW(CComboItem::GetNizAnvelopaItem(items, translator), CInvalidArgException);
    Change<CAnvelopaOpterecenja>(third, [](CAnvelopaOpterecenja& a) { a.SetBroj(0); });
    EXPECT_THROW(CComboItem::GetNizAnvelopaItem(items, translator), CInvalidArgException);

    // A model without envelopes gives an empty list.
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.DeleteAll(CBaseManager::AnvelopaOpterecenjaType);
    }
    CComboItem::GetNizAnvelopaItem(items, translator);
    EXPECT_EQ(items.GetSize(), 0);
}

} // namespace
