// The combination editor driven as a user drives it: what the grids show, generation, the
// grid edits, the list commands, storage, imports, OK and Cancel, and one undo bringing the
// model back.
#include "KombFixture.h"

#include "grid/GridImages.h"
#include "model/Skladiste.h"
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using N = std::vector<CString>;

} // namespace

TEST_F(KombTest, StartUpFillsBothGridsTheCountAndTheButtonStates) {
    // S1 permanent, S2 alternating and seismic, S3 an influence-line case, S4 coefficient 0.
    const std::vector<CId> ids = Slucajevi(4, [](int k, CSlucajOpterecenja& s) {
        s.SetKoeficijent(k == 0 ? 1.35 : k == 3 ? 0.0 : 1.0);
        s.SetStalno(k == 0);
        s.SetAlternativno(k == 1);
        s.SetSeizmicki(k == 1);
        if (k == 2)
            s.SetUticajUticajneLinije(UL_MOMENT);
    });
    AddCombination(1, {{ids[0], 1.5}, {ids[1], -1.0}}, L"Moja");
    const std::vector<uint8_t> pre = Bajtovi();
    for (const int jezik : {ClTranslator::Srpski, ClTranslator::Bugarski}) {
        ClTranslator::SetLanguage(jezik);
        Editor([&](CDlgKombOpt& d) {
            CDialogModel& m = d.Dialog();
            CGridModel& g1 = m.Grid(G1);
            CGridModel& g2 = m.Grid(G2);
            EXPECT_TRUE(g1.GetCheck(1, 3));
            EXPECT_EQ(g1.GetItemText(1, 4), L"1.35");
            EXPECT_EQ(g1.GetCell(3, 1).foreground, 0x808080u);
            EXPECT_FALSE(g1.IsCheckCell(3, 3) || g1.IsCheckCell(3, 5));
            EXPECT_TRUE(g1.IsReadOnly(3, 4) && g2.IsReadOnly(1, 4));
            EXPECT_EQ(Red(g2, 0), (N{L"", L"Naziv", L"1", L"2", L"3", L"4"}));
            EXPECT_EQ(Red(g2, 1), (N{L"1", L"Moja", L"1.50", L"-1.00", L"0.00", L"0.00"}));
            // The seismic mark is a Bulgarian one.
            EXPECT_EQ(g2.GetItemImage(1, 0),
                      jezik == ClTranslator::Bugarski ? GridImage::Seizmicki : GridImage::None);
            EXPECT_EQ(m.GetText(1009), L"3"); // {S1}, and {S1,S2} with S2 in both signs
            const std::pair<int, bool> stanja[] = {{1006, false}, {1034, true}, {1033, false},
                                                   {1007, true},  {1037, true}, {1036, false},
                                                   {1010, false}, {1014, false}};
            for (const auto& [id, omoguceno] : stanja)
                EXPECT_EQ(m.IsEnabled(id), omoguceno) << id;
            EXPECT_FALSE(m.IsVisible(1011));
            g1.UserClick(1, 1); // a permanent case has no rules
            EXPECT_FALSE(m.IsEnabled(1010));
            g1.UserClick(2, 1);
            EXPECT_TRUE(m.IsEnabled(1014));
            EXPECT_EQ(g1.GetItemImage(2, 2), GridImage::Izabrani);
        });
    }
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(KombTest, GenerationGivesSignVariantsInOrderAndAsksBeforeReplacing) {
    const std::vector<CId> ids = Slucajevi(3, [](int k, CSlucajOpterecenja& s) {
        s.SetKoeficijent(k == 0 ? 1.35 : 1.5);
        s.SetStalno(k == 0);
        s.SetAlternativno(k > 0);
    });
    AddCombination(1, {{ids[0], 1.0}}, L"K1");
    const std::vector<uint8_t> pre = Bajtovi();
    for (const int odgovor : {1, 2, 3}) { // "Zameni", "Dodaj", "Cancel"
        m_runner.AnswerMessageBox(odgovor);
        Editor([&](CDlgKombOpt& d) {
            EXPECT_EQ(d.Dialog().GetText(1009), L"9");
            d.Dialog().UserClick(1008);
            // {S1}, {S1,S2}, {S1,S3}, {S1,S2,S3}, the first alternating case changing fastest.
            const N c = Clanovi(d.Kombinacije(), ids);
            ASSERT_EQ(c.size(), odgovor == 1 ? 9u : odgovor == 2 ? 10u : 1u);
            EXPECT_EQ(c.front(), odgovor == 1 ? L"1:1.35" : L"1:1");
            if (odgovor != 3) {
                EXPECT_EQ(N(c.end() - 4, c.end()),
                          (N{L"1:1.35 2:1.5 3:1.5", L"1:1.35 2:-1.5 3:1.5", L"1:1.35 2:1.5 3:-1.5",
                             L"1:1.35 2:-1.5 3:-1.5"}));
            }
            d.Dialog().UserClick(IDOK);
        });
        EXPECT_EQ(m_runner.Messages().back().buttons, (N{L"Zameni", L"Dodaj", L"Cancel"}));
        EXPECT_EQ(CombinationNames().back(), odgovor == 3 ? L"K1" : L"1.35xI-1.50xII-1.50xIII");
        if (odgovor != 3) {
            EXPECT_TRUE(m_base->Undo());
        }
        EXPECT_EQ(Bajtovi(), pre);
    }
}

TEST_F(KombTest, GeneratorAgreesWithABruteForceReadingOfTheRules) {
    std::mt19937 rng(99);
    for (int model = 0; model < 40; ++model) {
        m_base = std::make_unique<CObjBase>();
        CObjBase::SetCurrent(m_base.get());
        const int n = 1 + model % 7;
        const CSlOptItemArray s = SlucajniSlucajevi(rng, n);
        std::vector<CId> ids = Slucajevi(n, [&](int k, CSlucajOpterecenja& c) {
            c.Set(k + 1, s[k]);
            if (s[k].m_bUticajnaLinija != 0)
                c.SetUticajUticajneLinije(UL_POMERANJE);
        });
        ASSERT_EQ(ids.back(), CId(n)); // the rules name the load cases by these ids
        bool prepunjen = false;
        N ocekivano;
        for (const uint32_t S : DoslovniPodskupovi(s, prepunjen)) {
            std::vector<int> clanovi;
            int alternativnih = 0;
            for (int k = 0; k < n; ++k)
                if ((S >> k & 1u) != 0) {
                    clanovi.push_back(k);
                    alternativnih += s[k].m_bAlternativno;
                }
            for (uint32_t m = 0; m < (1u << alternativnih); ++m) {
                CString tekst;
                int b = 0;
                for (const int k : clanovi) {
                    const bool minus = s[k].m_bAlternativno != 0 && (m >> b++ & 1u) != 0;
                    tekst += CString::Formatted(L"%s%d:%g", tekst.empty() ? L"" : L" ", k + 1,
                                                minus ? -s[k].m_dKoeficijent : s[k].m_dKoeficijent);
                }
                ocekivano.push_back(tekst);
            }
        }
        Editor([&](CDlgKombOpt& d) {
            EXPECT_EQ(d.Dialog().GetText(1009), CString::Formatted(L"%zu", ocekivano.size()));
            d.Dialog().UserClick(1008);
            EXPECT_EQ(Clanovi(d.Kombinacije(), ids), ocekivano) << "model " << model;
        });
    }
}

TEST_F(KombTest, Grid1EditsAndRulesChangeTheCountAndAreWrittenOnOk) {
    // Eleven load cases, the first ten alternating: every subset S counts 2^|S ∩ A|.
    const std::vector<CId> ids =
        Slucajevi(11, [](int k, CSlucajOpterecenja& s) { s.SetAlternativno(k < 10); });
    const std::vector<uint8_t> pre = Bajtovi();
    Editor([&](CDlgKombOpt& d) {
        CDialogModel& m = d.Dialog();
        CGridModel& g1 = m.Grid(G1);
        EXPECT_EQ(m.GetText(1009), L"118097"); // 2 * 3^10 - 1
        EXPECT_TRUE(g1.UserClickCheck(11, 5));
        EXPECT_FALSE(g1.GetCheck(11, 5));
        EXPECT_EQ(m_runner.Messages().back().text,
                  L"Dozvoljeno je najvise 10 alternativnih opterecenja.");
        for (const wchar_t* los : {L"abc", L"1,5", L"nan", L""})
            EXPECT_FALSE(g1.UserEndEdit(1, 4, los));
        EXPECT_EQ(g1.GetItemText(1, 4), L"1.00");
        EXPECT_TRUE(g1.UserEndEdit(1, 4, L"0"));
        EXPECT_EQ(m.GetText(1009), L"39365"); // S1 left out: 2 * 3^9 - 1
        EXPECT_TRUE(g1.UserClickCheck(2, 3)); // S2 permanent: 2 * 2 * 3^8
        EXPECT_EQ(m.GetText(1009), L"26244");
        EXPECT_TRUE(g1.UserEndEdit(3, 4, L" 2.345 "));
        EXPECT_EQ(g1.GetItemText(3, 4), L"2.35");
        // S10 never with S11: of the subsets with S11, those with S10 go.
        g1.UserClick(10, 1);
        m_runner.Expect(1003, [](CDialogPresenter& p) {
            p.Dialog().Grid(1030).UserClick(11, 1);
            p.Dialog().UserClick(IDOK);
        });
        m.UserClick(1010);
        EXPECT_EQ(m.GetText(1009), L"17496");
        EXPECT_EQ(g1.GetItemImage(11, 2), GridImage::Nikad);
        m.UserClick(IDOK);
    });
    EXPECT_EQ(Get<CSlucajOpterecenja>(ids[0])->GetKoeficijent(), 0.0);
    EXPECT_EQ(Get<CSlucajOpterecenja>(ids[1])->GetStalno(), 1);
    EXPECT_EQ(Get<CSlucajOpterecenja>(ids[2])->GetKoeficijent(), 2.345);
    EXPECT_EQ(Get<CSlucajOpterecenja>(ids[10])->GetNeKombinujSa().GetSize(), 1);
    EXPECT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(KombTest, ListCommandsWorkOnTheSelectedCombinations) {
    const std::vector<CId> ids = Slucajevi(2);
    AddCombination(1, {{ids[0], 1.0}}, L"K1");
    AddCombination(2, {{ids[1], 1.5}}, L"K2");
    AddCombination(3, {{ids[0], 1.0}, {ids[1], 1.0}}, L"K3");
    AddCombination(4, {{ids[0], 1.0}}, L"Kombinacija");
    const std::vector<uint8_t> pre = Bajtovi();
    m_runner.AnswerPopup(36867).AnswerPopup(36865);
    Editor([&](CDlgKombOpt& d) {
        CDialogModel& m = d.Dialog();
        CGridModel& g2 = m.Grid(G2);
        g2.UserClick(2, 1);
        m.UserClick(1038); // "Sa kopiranjem"
        m.UserClick(1007);
        EXPECT_EQ(Nazivi(d.Kombinacije()), (N{L"K1", L"K2", L"1.50xII", L"K3", L"Kombinacija"}));
        EXPECT_EQ(g2.GetSelectedRows(), std::vector<int>{3});
        m.UserClick(GORE);
        EXPECT_EQ(Nazivi(d.Kombinacije()), (N{L"K1", L"1.50xII", L"K2", L"K3", L"Kombinacija"}));
        m.UserClick(DOLE);
        EXPECT_EQ(g2.GetSelectedRows(), std::vector<int>{3});
        // Duplicates: a user-given name wins over a generated one, the longer over the shorter.
        m.UserClick(1033);
        EXPECT_EQ(Nazivi(d.Kombinacije()), (N{L"K2", L"K3", L"Kombinacija"}));
        EXPECT_EQ(g2.GetSelectedCount(), 0);
        m.UserClick(1033); // descending: more load cases, then the higher ordinal, first
        EXPECT_EQ(Nazivi(d.Kombinacije()), (N{L"K3", L"K2", L"Kombinacija"}));
        EXPECT_EQ(d.Kombinacije()[0].GetRedniBroj(), 2); // sorting does not renumber
        g2.UserSelectRows({1, 2});
        EXPECT_FALSE(m.IsEnabled(1007) || m.IsEnabled(1013) || m.IsEnabled(1012));
        m.UserClick(1006);
        EXPECT_EQ(Nazivi(d.Kombinacije()), N{L"Kombinacija"});
        EXPECT_EQ(g2.GetSelectedRows(), std::vector<int>{1});
        m.UserClick(IDOK);
    });
    EXPECT_EQ(CombinationNames(), N{L"Kombinacija"});
    EXPECT_EQ(m_osvezavanja.back(), (std::vector<int>{1, 1, 0, 0, 0}));
    EXPECT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);
    m_runner.AnswerMessageBox(CVortaMessageBox::IDNO).AnswerMessageBox(CVortaMessageBox::IDYES);
    Editor([&](CDlgKombOpt& d) {
        d.Dialog().UserClick(1034); // answered No
        EXPECT_EQ(d.Kombinacije().GetSize(), 4);
        d.Dialog().UserClick(1034); // answered Yes
        EXPECT_FALSE(d.Dialog().IsEnabled(1034) || d.Dialog().IsEnabled(1037));
        d.Dialog().UserClick(IDOK);
    });
    EXPECT_EQ(m_base->Count(CKombinacijaOpterecenja::Type), 0);
}

TEST_F(KombTest, OkRefusesACombinationWithoutANonZeroCoefficient) {
    const std::vector<CId> ids = Slucajevi(2);
    AddCombination(1, {{ids[0], 1.0}}, L"K1");
    AddCombination(2, {{ids[0], 1e-10}, {ids[1], -1e-10}}, L"K2"); // zero within tolerance
    Editor([&](CDlgKombOpt& d) {
        CDialogModel& m = d.Dialog();
        CGridModel& g2 = m.Grid(G2);
        m.UserClick(1007); // an empty one at the end
        for (const int red : {2, 3}) {
            m.UserClick(IDOK);
            EXPECT_FALSE(m.IsEnded());
            EXPECT_EQ(m_runner.Messages().back().text,
                      L"U kombinaciji opterecenja ne smeju da budu svi koeficijenti nula!");
            EXPECT_EQ(g2.GetSelectedRows(), std::vector<int>{red});
            EXPECT_EQ(std::make_pair(g2.GetEditRow(), g2.GetEditCol()), std::make_pair(red, 2));
            EXPECT_EQ(m.GetFocus(), G2);
            EXPECT_TRUE(g2.UserEndEdit(red, 3, L"-1.5"));
        }
        EXPECT_EQ(g2.GetItemText(3, 1), L"-1.50xII"); // a generated name follows the entries
        EXPECT_TRUE(g2.UserEndEdit(3, 1, L"Moja"));
        m.UserClick(IDOK);
        EXPECT_TRUE(m.IsEnded());
    });
    EXPECT_EQ(CombinationNames(), (N{L"K1", L"K2", L"Moja"}));
}

TEST_F(KombTest, StorageAndAnotherModelFileBringCombinationsBackThroughTheMapping) {
    const std::vector<CId> ids = Slucajevi(2);
    AddCombination(1, {{ids[0], 1.0}}, L"K1");
    // Another model: A1..A3 and two combinations, Y numbered before X; a file that is no model.
    CObjBase drugi;
    CObjBase::SetCurrent(&drugi);
    std::vector<CId> a;
    for (int k = 1; k <= 3; ++k)
        a.push_back(AddLoadCase(CString::Formatted(L"A%d", k), k));
    AddCombination(2, {{a[0], 1.0}, {a[2], 2.0}}, L"X");
    AddCombination(1, {{a[1], 1.5}}, L"Y");
    CObjBase::SetCurrent(m_base.get());
    CString greska;
    ASSERT_TRUE(CModelFile::Save(drugi, m_tmp / "drugi.vld", greska));
    std::ofstream(m_tmp / "smece.vld") << "nije model";
    for (const char* fajl : {"nema.vld", "smece.vld", "drugi.vld"})
        m_runner.AnswerFile(m_tmp / fajl);
    m_runner.AnswerMessageBox(CVortaMessageBox::IDCANCEL);
    Editor([&](CDlgKombOpt& d) {
        CDialogModel& m = d.Dialog();
        EXPECT_FALSE(m.IsEnabled(1036));
        m.UserClick(1037); // nothing stored yet: no question
        EXPECT_TRUE(m.IsEnabled(1036));
        const std::vector<uint8_t> sa = Bajtovi();
        m.UserClick(1037); // answered Cancel: the stored set stays
        EXPECT_EQ(m_runner.Messages().back().text,
                  L"Brisanje ranije uskladistenih kombinacija i dodavanje novih?");
        EXPECT_EQ(Bajtovi(), sa);
        m_runner.Expect(1006, [](CDialogPresenter& p) { p.Dialog().UserClick(IDOK); });
        m.UserClick(1036);
        for (int i = 0; i < 2; ++i) {
            m.UserClick(1035);
            EXPECT_EQ(m_runner.Messages().back().caption, L"Greska");
            EXPECT_EQ(m_runner.Messages().back().text.find(L"Kombinacije nije moguce uvesti"), 0u);
        }
        m_runner.Expect(1006, [](CDialogPresenter& p) {
            CGridModel& g = p.Dialog().Grid(1030);
            EXPECT_EQ(g.GetItemText(0, 0), L"Uvozni fajl");
            EXPECT_EQ(g.GetComboSel(3, 1), 0); // A3 has no counterpart
            EXPECT_EQ(p.Dialog().GetItemText(1036, 0), L"1. Y");
            p.Dialog().UserClick(IDOK);
        });
        m.UserClick(1035);
        EXPECT_EQ(Clanovi(d.Kombinacije(), ids), (N{L"1:1", L"1:1", L"2:1.5", L"1:1"}));
        EXPECT_EQ(d.Kombinacije()[3].GetRedniBroj(), 4);
    });
    // Cancel wrote no combination; the storage was written when asked.
    EXPECT_EQ(CombinationNames(), N{L"K1"});
    EXPECT_EQ(m_base->Count(CSkladiste::Type), 1);
}

TEST_F(KombTest, AModelWithoutLoadCasesIsNotEdited) {
    m_runner.Expect(1002, nullptr);
    COpterecenjeApp::OnKombinacijeOpterecenja();
    ASSERT_EQ(m_runner.Messages().size(), 1u);
    EXPECT_EQ(m_runner.Messages()[0].text, L"U modelu nema slucajeva opterecenja.");
}
