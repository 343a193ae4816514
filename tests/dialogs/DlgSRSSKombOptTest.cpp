// The SRSS editor driven as a user drives it: the offered load cases, coefficient entry and the
// generated name, the refusal of an entry with fewer than two coefficients, numbering after
// the ordinary load cases, deleting an SRSS case with its combinations, and what OK, Cancel
// and undo leave in the store.
#include "EditoriFixture.h"

#include "dialogs/DlgSRSSKombOpt.h"

#include <gtest/gtest.h>

namespace {

enum : int { BRISI_SVE = 1008 };

class SRSSTest : public EditoriTest {
protected:
    void Dijalog(std::function<void(CDlgSRSSKombOpt&)> scena) {
        Ocekuj<CDlgSRSSKombOpt>(2090, std::move(scena));
        opterecenje::SRSSKombinacijeDlg();
        ScenarioOdigran();
    }
};

using Faktori = std::vector<std::pair<int, double>>;

} // namespace

TEST_F(SRSSTest, CoefficientsAreEnteredRoundedSquaredAndNamedAndOkWritesOneUndoStep) {
    // S1..S5; S4 an influence-line case and S5 marked NDA are not offered; SRSS I+II as 6.
    Slucajevi(3);
    Slucaj(L"S4", 4, UticajnaLinija);
    Slucaj(L"S5", 5, Nda);
    Slucaj(L"SRSS: I+II", 6, Srss({1, 2}));
    const std::vector<uint8_t> pre = Bajtovi();

    Dijalog([&](CDlgSRSSKombOpt& d) {
        CGridModel& g = Grid(d, G2);
        EXPECT_EQ(Red(g, 1),
                  (std::vector<CString>{L"6", L"SRSS: I+II", L"1.00", L"1.00", L"0.00"}));
        EXPECT_EQ(Red(Grid(d, G1), 3), (std::vector<CString>{L"3", L"S3"}));

        struct Unos {
            int col;
            const wchar_t* tekst;
            bool primljen;
            const wchar_t* celija; // what the cell shows afterwards
            const wchar_t* naziv;
        };
        const Unos unosi[] = {
            {4, L"0.005", false, L"0.00", L"SRSS: I+II"},
            {4, L"0.004", false, L"0.00", L"SRSS: I+II"},
            {4, L"-2", false, L"0.00", L"SRSS: I+II"},
            {4, L"x", false, L"0.00", L"SRSS: I+II"},
            {4, L"inf", false, L"0.00", L"SRSS: I+II"},
            {4, L"1e200", false, L"0.00", L"SRSS: I+II"}, // its square is no number
            {4, L"1e308", false, L"0.00", L"SRSS: I+II"},
            {4, L"0.01", true, L"0.01", L"SRSS: I+II+0.01xIII"},
            {2, L"0", true, L"0.00", L"SRSS: II+0.01xIII"},
            {3, L"1.234", true, L"1.23", L"SRSS: 1.23xII+0.01xIII"},
            {2, L"0.5", true, L"0.50", L"SRSS: 0.50xI+1.23xII+0.01xIII"},
        };
        for (const Unos& u : unosi) {
            EXPECT_EQ(g.UserEndEdit(1, u.col, u.tekst), u.primljen) << CString(u.tekst).ToUtf8();
            EXPECT_EQ(g.GetItemText(1, u.col), u.celija) << CString(u.tekst).ToUtf8();
            EXPECT_EQ(g.GetItemText(1, 1), u.naziv) << CString(u.tekst).ToUtf8();
        }
        // A name of the user's own stays through later edits.
        EXPECT_TRUE(g.UserEndEdit(1, 1, L"Seizmika"));
        EXPECT_TRUE(g.UserEndEdit(1, 4, L"0.2"));
        EXPECT_EQ(g.GetItemText(1, 1), L"Seizmika");
        d.Dialog().UserClick(IDOK);
        EXPECT_EQ(d.Dialog().GetResult(), IDOK);
    });

    const CSlucajOpterecenja* p = SlucajBr(6);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->GetNaziv(), L"Seizmika");
    const Faktori f = ParoviJedinice(p->DajLCUnitZaSRSS());
    ASSERT_EQ(f.size(), 3u);
    EXPECT_EQ(f[0].first, 1);
    EXPECT_NEAR(f[0].second, 0.25, 1e-12);
    EXPECT_NEAR(f[1].second, 1.23 * 1.23, 1e-12);
    EXPECT_EQ(f[2].first, 3);
    EXPECT_NEAR(f[2].second, 0.04, 1e-12);
    EXPECT_EQ(m_nBrisanjaRezultata, 1);
    // The input selector refilled: the total load and S1..S4 (S5 is marked NDA).
    EXPECT_EQ(m_host.Lista().size(), 5u);

    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(SRSSTest, FewerThanTwoCoefficientsBlockOkAtTheFirstColumnLeftToFill) {
    Slucajevi(3);
    Slucaj(L"SRSS", 4, Srss({1, 3}));
    const std::vector<uint8_t> pre = Bajtovi();

    Dijalog([&](CDlgSRSSKombOpt& d) {
        CGridModel& g = Grid(d, G2);
        // Only III left: refused, the focus in the column of I, which it lacks.
        EXPECT_TRUE(g.UserEndEdit(1, 2, L"0"));
        d.Dialog().UserClick(IDOK);
        EXPECT_FALSE(d.Dialog().IsEnded());
        EXPECT_EQ(g.GetEditRow(), 1);
        EXPECT_EQ(g.GetEditCol(), 2);
        EXPECT_EQ(d.Dialog().GetFocus(), G2);
        // With no cell focused a new entry goes first.
        g.SetFocusCell(-1, -1);
        g.ClearSelection();
        d.Dialog().UserClick(DODAJ);
        EXPECT_EQ(Red(g, 1), (std::vector<CString>{L"4", L"", L"0.00", L"0.00", L"0.00"}));
        EXPECT_EQ(g.GetItemText(2, 0), L"5");
        EXPECT_TRUE(g.UserEndEdit(1, 3, L"1"));
        EXPECT_EQ(g.GetItemText(1, 1), L"SRSS: II"); // an empty name is generated
        d.Dialog().UserClick(IDOK);
        EXPECT_EQ(g.GetEditRow(), 1);
        EXPECT_EQ(g.GetEditCol(), 2);
        EXPECT_FALSE(d.Dialog().IsEnded());
        ASSERT_EQ(m_runner.Messages().size(), 2u);
        for (const CScriptedRunner::Message& m : m_runner.Messages()) {
            EXPECT_EQ(m.text, L"Bar dva koeficijenta moraju biti razlicita od nule.");
            EXPECT_EQ(m.caption, L"Greska");
            EXPECT_EQ(m.type & 0xF0u, static_cast<unsigned>(CVortaMessageBox::MB_ICONWARNING));
        }
        // Cancel writes nothing.
    });
    EXPECT_EQ(Bajtovi(), pre);
    EXPECT_EQ(m_nBrisanjaRezultata, 0);

    // OK with nothing changed closes and writes nothing either.
    Dijalog([](CDlgSRSSKombOpt& d) { d.Dialog().UserClick(IDOK); });
    EXPECT_EQ(Bajtovi(), pre);
    EXPECT_EQ(m_nBrisanjaRezultata, 0);
}

TEST_F(SRSSTest, EntriesAreNumberedAfterTheOrdinaryCasesWhateverIsMovedAddedOrDeleted) {
    Slucajevi(5);
    Slucaj(L"A", 6, Srss({1, 2}));
    Slucaj(L"B", 7, Srss({2, 3}));
    Slucaj(L"C", 8, Srss({4, 5}));

    auto redosled = [](const CDlgSRSSKombOpt& d) {
        std::vector<std::pair<int, CString>> r;
        for (const auto& s : d.Stavke())
            r.emplace_back(s.nRedniBroj, s.naziv);
        return r;
    };
    using R = std::vector<std::pair<int, CString>>;
    Dijalog([&](CDlgSRSSKombOpt& d) {
        CGridModel& g = Grid(d, G2);
        g.UserClick(3, 1); // C
        d.Dialog().UserClick(GORE);
        EXPECT_EQ(redosled(d), (R{{6, L"A"}, {7, L"C"}, {8, L"B"}}));
        EXPECT_TRUE(g.IsRowSelected(2));
        d.Dialog().UserClick(GORE);
        d.Dialog().UserClick(GORE); // already first: nothing
        EXPECT_EQ(redosled(d), (R{{6, L"C"}, {7, L"A"}, {8, L"B"}}));
        g.UserClick(2, 1);
        d.Dialog().UserClick(DOLE);
        d.Dialog().UserClick(DOLE);
        EXPECT_EQ(redosled(d), (R{{6, L"C"}, {7, L"B"}, {8, L"A"}}));
        EXPECT_EQ(Red(g, 3)[0], L"8");
        g.UserClick(1, 1);
        d.Dialog().UserClick(BRISI);
        EXPECT_EQ(redosled(d), (R{{6, L"B"}, {7, L"A"}}));
        d.Dialog().UserClick(IDOK);
        EXPECT_EQ(d.Dialog().GetResult(), IDOK);
    });
    EXPECT_EQ(SlucajBr(6)->GetNaziv(), L"B");
    EXPECT_EQ(SlucajBr(7)->GetNaziv(), L"A");
    EXPECT_EQ(SlucajBr(8), nullptr);
    EXPECT_EQ(m_base->Count(CSlucajOpterecenja::Type), 7);

    Dijalog([&](CDlgSRSSKombOpt& d) {
        d.Dialog().UserClick(BRISI_SVE);
        EXPECT_EQ(Grid(d, G2).GetRowCount(), 1);
        d.Dialog().UserClick(IDOK);
    });
    EXPECT_EQ(m_base->Count(CSlucajOpterecenja::Type), 5);
    EXPECT_EQ(m_nBrisanjaRezultata, 2);
}

TEST_F(SRSSTest, DeletingAnSrssCaseTakesItsCombinationsFirst) {
    const std::vector<CId> s = Slucajevi(2);
    const CId a = Slucaj(L"A", 3, Srss({1, 2}));
    const CId b = Slucaj(L"B", 4, Srss({1, 2}));
    AddCombination(1, {{s[0], 1.0}, {a, 1.0}});
    AddCombination(2, {{s[0], 1.35}, {s[1], 1.5}});
    AddCombination(3, {{b, 1.0}, {s[1], 1.0}});
    for (const CId& id : m_base->Ids(CKombinacijaOpterecenja::Type))
        Change<CKombinacijaOpterecenja>(id, [](auto& k) { k.Item().SetGenericName(nullptr, 0); });
    const std::vector<uint8_t> pre = Bajtovi();

    Dijalog([&](CDlgSRSSKombOpt& d) {
        Grid(d, G2).UserClick(1, 1);
        d.Dialog().UserClick(BRISI);
        d.Dialog().UserClick(IDOK);
    });
    EXPECT_EQ(m_base->Find(a), nullptr);
    ASSERT_NE(Get<CSlucajOpterecenja>(b), nullptr);
    EXPECT_EQ(Get<CSlucajOpterecenja>(b)->DajRedniBroj(), 3);
    EXPECT_EQ(CombinationNames(), (std::vector<CString>{L"1.35xI+1.50xII", L"II+IV"}));
    EXPECT_EQ(m_nBrisanjaRezultata, 1);
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(SRSSTest, OnlyCasesThatMayTakePartAreOfferedAndMisplacedSrssCasesAreRefused) {
    // S2 carries a moving load, S3 is unstable; both are left out.
    const std::vector<CId> s = Slucajevi(3);
    auto* pokretno = new CPokretnoOpterecenje;
    pokretno->SetSlOptId(s[1]);
    Insert(pokretno);
    COpterecenjeApp::MarkAsLabilanSlOpt(3);
    Dijalog([&](CDlgSRSSKombOpt& d) {
        EXPECT_EQ(Red(Grid(d, G2), 0), (std::vector<CString>{L"", L"Naziv", L"1"}));
        EXPECT_EQ(Grid(d, G1).GetRowCount(), 2);
    });

    // An SRSS case in the middle of the ordinary ones cannot be numbered after them.
    Change<CSlucajOpterecenja>(s[1], [](CSlucajOpterecenja& p) {
        p.PostaviSRSS(Unit({}, {1, 3}));
    });
    Dijalog([&](CDlgSRSSKombOpt& d) { EXPECT_TRUE(d.Dialog().IsEnded()); });
    ASSERT_EQ(m_runner.Messages().size(), 1u);
    EXPECT_EQ(m_runner.Messages()[0].caption, L"Greska");
}
