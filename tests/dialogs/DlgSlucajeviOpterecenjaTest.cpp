// The load case list editor driven as a user drives it: what the grid shows and takes, adding,
// copying, renaming, moving and deleting load cases (with the warning that names what goes
// along), the SRSS editor opened from it, and what OK, Cancel and undo leave in the store.
#include "EditoriFixture.h"

#include "dialogs/DlgNazivSlucaja.h"
#include "dialogs/DlgSlucajeviOpterecenja.h"
#include "services/Anvelope.h"

#include <gtest/gtest.h>

namespace {

enum : int { KOPIRAJ = 1009, PREIMENUJ = 1010, SRSS = 1011 };
using D = CDlgSlucajeviOpterecenja;

class ListaTest : public EditoriTest {
protected:
    /// S1..S3, an influence-line case U (4), SRSS of S1 and S2 (5); K1 = S1 + S2 and
    /// K2 = 1.5 S3 named generically; the envelope 1,3,7.
    void SetUp() override {
        EditoriTest::SetUp();
        m_s = Slucajevi(3);
        m_s.push_back(Slucaj(L"U", 4, UticajnaLinija));
        m_s.push_back(Slucaj(L"SRSS", 5, Srss({1, 2})));
        AddGenerated(1, {{m_s[0], 1.0}, {m_s[1], 1.0}});
        AddGenerated(2, {{m_s[2], 1.5}});
        AddEnvelope(1, L"1,3,7", L"E");
    }
    void Lista(std::function<void(D&)> scena) {
        Ocekuj<D>(1000, std::move(scena));
        COpterecenjeApp::OnSlucajeviOpterecenja();
        ScenarioOdigran();
    }
    /// The names in the grid, in order.
    static std::vector<CString> Imena(D& d) {
        std::vector<CString> imena;
        for (int r = 1; r < Grid(d, G1).GetRowCount(); ++r)
            imena.push_back(Grid(d, G1).GetItemText(r, D::kNaziv));
        return imena;
    }
    std::vector<CString> Uskladistena() const {
        std::vector<CString> imena(static_cast<size_t>(m_base->Count(CSlucajOpterecenja::Type)));
        for (const CId& id : m_base->Ids(CSlucajOpterecenja::Type))
            imena.at(static_cast<size_t>(Get<CSlucajOpterecenja>(id)->DajRedniBroj() - 1)) =
                Get<CSlucajOpterecenja>(id)->GetNaziv();
        return imena;
    }

    std::vector<CId> m_s;
};

using Spisak = std::vector<CString>;

} // namespace

TEST_F(ListaTest, TheGridShowsAndTakesTheValuesOfEveryCaseAndOkWritesThemInOneUndoStep) {
    const std::vector<uint8_t> pre = Bajtovi();
    Lista([&](D& d) {
        CGridModel& g = Grid(d, G1);
        EXPECT_EQ(Red(g, 1), (Spisak{L"1", L"S1", L"", L"1.00", L"", L"", L"", L"0", L"", L""}));
        EXPECT_EQ(g.GetItemText(4, D::kUticajnaLinija), L"Moment");
        EXPECT_EQ(g.GetItemText(5, D::kSRSS), L"I+II");
        for (const int r : {4, 5}) // neither an influence-line nor an SRSS case is seismic
            for (const int c : {D::kSeizmicki, D::kNDA, D::kTonovi})
                EXPECT_TRUE(g.IsReadOnly(r, c)) << r << "," << c;

        struct Unos {
            int row, col;
            const wchar_t* tekst;
            bool primljen;
            const wchar_t* celija;
        };
        for (const Unos& u :
             {Unos{1, D::kNaziv, L"  Stalno  ", true, L"Stalno"},
              Unos{1, D::kNaziv, L"  ", false, L"Stalno"},
              Unos{1, D::kKoeficijent, L"1.345", true, L"1.35"},
              Unos{1, D::kKoeficijent, L"-1", false, L"1.35"},
              Unos{1, D::kKoeficijent, L"abc", false, L"1.35"},
              Unos{2, D::kTonovi, L"3", true, L"3"}, Unos{2, D::kTonovi, L"1.5", false, L"3"},
              Unos{2, D::kTonovi, L"-1", false, L"3"}, Unos{4, D::kTonovi, L"2", false, L"0"}}) {
            EXPECT_EQ(g.UserEndEdit(u.row, u.col, u.tekst), u.primljen)
                << CString(u.tekst).ToUtf8();
            EXPECT_EQ(g.GetItemText(u.row, u.col), u.celija) << CString(u.tekst).ToUtf8();
        }
        EXPECT_TRUE(g.UserClickCheck(1, D::kG));
        EXPECT_TRUE(g.UserClickCheck(3, D::kSeizmicki));
        EXPECT_TRUE(g.UserClickCheck(3, D::kSeizmickiProracun));
        EXPECT_TRUE(g.UserClickCheck(2, D::kNDA));
        EXPECT_FALSE(g.UserClickCheck(5, D::kSeizmicki));
        d.Dialog().UserClick(IDOK);
    });
    const CSlucajOpterecenja* s1 = Get<CSlucajOpterecenja>(m_s[0]);
    EXPECT_EQ(s1->GetNaziv(), L"Stalno");
    EXPECT_EQ(s1->GetKoeficijent(), 1.345);
    EXPECT_EQ(s1->GetgMarker(), 1);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s[1])->GetBrojMultimodalnih(), 3);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s[1])->JeLiNDA(), 1);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s[2])->IsSeizmicki(), 1);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s[2])->DajUlaziUSeizmickiProracun(), 1);
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);

    // Cancel writes nothing, whatever was changed.
    Lista([&](D& d) {
        Grid(d, G1).UserEndEdit(1, D::kNaziv, L"Drugo");
        d.Dialog().UserClick(IDCANCEL);
    });
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(ListaTest, CasesAreAddedCopiedRenamedAndMovedWithinTheirBlock) {
    const std::vector<uint8_t> pre = Bajtovi();
    CId kopijaOd;
    Lista([&](D& d) {
        CGridModel& g = Grid(d, G1);
        CDialogModel& m = d.Dialog();
        // A new case after the selected one; with an SRSS case selected, before the SRSS cases.
        g.UserClick(2, D::kNaziv);
        m.UserClick(DODAJ);
        EXPECT_EQ(Imena(d), (Spisak{L"S1", L"S2", L"Slucaj opterecenja 3", L"S3", L"U", L"SRSS"}));
        EXPECT_EQ(g.GetEditRow(), 3);
        g.UserClick(6, D::kNaziv);
        m.UserClick(DODAJ);
        EXPECT_EQ(Imena(d)[5], L"Slucaj opterecenja 6");

        // A copy of S1 named in the name dialog (a blank name is refused first).
        Ocekuj<CDlgNazivSlucaja>(2091, [](CDlgNazivSlucaja& n) {
            EXPECT_EQ(n.Dialog().GetText(NAZIV), L"S1 - kopija");
            n.Dialog().UserSetText(NAZIV, L" ");
            n.Dialog().UserClick(IDOK);
            EXPECT_FALSE(n.Dialog().IsEnded());
            n.Dialog().UserSetText(NAZIV, L"Kopija ");
            n.Dialog().UserClick(IDOK);
        });
        g.UserClick(1, D::kNaziv);
        m.UserClick(KOPIRAJ);
        EXPECT_EQ(Imena(d)[1], L"Kopija");
        EXPECT_TRUE(g.IsRowSelected(2));
        kopijaOd = m_s[0];

        // Rename S3; a cancelled rename changes nothing.
        Ocekuj<CDlgNazivSlucaja>(2091, [](CDlgNazivSlucaja& n) {
            n.Dialog().UserSetText(NAZIV, L"Sneg");
            n.Dialog().UserClick(IDOK);
        });
        Ocekuj<CDlgNazivSlucaja>(
            2091, [](CDlgNazivSlucaja& n) { n.Dialog().UserSetText(NAZIV, L"Vetar"); });
        g.UserClick(5, D::kNaziv);
        m.UserClick(PREIMENUJ);
        m.UserClick(PREIMENUJ);
        EXPECT_EQ(Imena(d)[4], L"Sneg");

        // S1 down; the last ordinary case cannot pass the SRSS case, nor the SRSS case go up.
        g.UserClick(1, D::kNaziv);
        m.UserClick(DOLE);
        g.UserClick(7, D::kNaziv);
        m.UserClick(DOLE);
        g.UserClick(8, D::kNaziv);
        m.UserClick(GORE);
        EXPECT_EQ(Imena(d), (Spisak{L"Kopija", L"S1", L"S2", L"Slucaj opterecenja 3", L"Sneg", L"U",
                                    L"Slucaj opterecenja 6", L"SRSS"}));
        EXPECT_EQ(Red(g, 8)[D::kSRSS], L"II+III");
        m.UserClick(IDOK);
    });
    EXPECT_EQ(Uskladistena(), (Spisak{L"Kopija", L"S1", L"S2", L"Slucaj opterecenja 3", L"Sneg",
                                      L"U", L"Slucaj opterecenja 6", L"SRSS"}));
    ASSERT_EQ(m_kopiranja.size(), 1u);
    EXPECT_EQ(m_kopiranja[0].first, kopijaOd);
    EXPECT_EQ(CombinationNames(), (Spisak{L"II+III", L"1.50xV"}));
    // The envelope 1,3,7 (S1, S3, K2) is now 2,5,10.
    EXPECT_EQ(opterecenje::DajAnvelope().at(0).izbor, L"2,5,10");
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(ListaTest, DeletingWarnsWithWhatGoesAlongAndTakesTheSrssCasesThatCombineIt) {
    const std::vector<uint8_t> pre = Bajtovi();
    m_runner.AnswerMessageBox(CVortaMessageBox::IDNO).AnswerMessageBox(CVortaMessageBox::IDYES);
    Lista([&](D& d) {
        CGridModel& g = Grid(d, G1);
        g.UserClick(2, D::kNaziv);
        d.Dialog().UserClick(BRISI); // No
        EXPECT_EQ(Imena(d).size(), 5u);
        d.Dialog().UserClick(BRISI); // Yes
        EXPECT_EQ(Imena(d), (Spisak{L"S1", L"S3", L"U"}));
        EXPECT_TRUE(g.IsRowSelected(2));
        d.Dialog().UserClick(IDOK);
    });
    ASSERT_EQ(m_runner.Messages().size(), 2u);
    EXPECT_EQ(m_runner.Messages()[0].text,
              L"Izabrani slucajevi opterecenja (1) bice obrisani, a sa njima i kombinacije koje ih "
              L"sadrze (1), SRSS slucajevi koji ih kombinuju (1) i anvelope koje ostaju bez "
              L"opterecenja (0). Da li zelite da ih obrisete?");
    EXPECT_EQ(m_runner.Messages()[0].caption, L"Upozorenje");
    EXPECT_EQ(Uskladistena(), (Spisak{L"S1", L"S3", L"U"}));
    EXPECT_EQ(CombinationNames(), (Spisak{L"1.50xII"}));
    EXPECT_EQ(opterecenje::DajAnvelope().at(0).izbor, L"1-2,4");
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(ListaTest, TheSrssButtonWritesTheListFirstAndShowsWhatTheSrssEditorDid) {
    m_runner.AnswerMessageBox(CVortaMessageBox::IDYES);
    Lista([&](D& d) {
        CGridModel& g = Grid(d, G1);
        g.UserEndEdit(3, D::kNaziv, L"Seizmika");
        Ocekuj<CDialogPresenter>(2090, [](CDialogPresenter& s) {
            CGridModel& sg = s.Dialog().Grid(1018);
            s.Dialog().UserClick(1007); // Dodaj: a second SRSS case, of S1 and Seizmika
            sg.UserEndEdit(1, 2, L"1");
            sg.UserEndEdit(1, 4, L"1");
            s.Dialog().UserClick(IDOK);
        });
        d.Dialog().UserClick(SRSS);
        EXPECT_EQ(Imena(d), (Spisak{L"S1", L"S2", L"Seizmika", L"U", L"SRSS: I+III", L"SRSS"}));
        EXPECT_EQ(g.GetItemText(5, D::kSRSS), L"I+III");
        d.Dialog().UserClick(IDCANCEL);
    });
    // Both were written before the list was cancelled.
    EXPECT_EQ(Uskladistena(), (Spisak{L"S1", L"S2", L"Seizmika", L"U", L"SRSS: I+III", L"SRSS"}));
    EXPECT_EQ(m_nBrisanjaRezultata, 1);
}
