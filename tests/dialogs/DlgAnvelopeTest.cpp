// The envelope dialog, its save dialog and the load selection dialog driven as a user drives
// them: composing a selection by text or in the grid, the messages for a selection that does
// not parse, saving under a name (and replacing an envelope of that name), deleting, the load
// shown in the results after OK, and what OK, Cancel and undo leave in the store.
#include "EditoriFixture.h"

#include "dialogs/DlgAnvelope.h"
#include "dialogs/DlgIzborOpterecenja.h"
#include "dialogs/DlgSnimi.h"

#include <gtest/gtest.h>

namespace {

enum : int {
    LISTA = 1036,
    IZBOR = 1037,
    MOD = 1038,
    SADRZAJ = 1039,
    AKTIVIRAJ = 1040,
    ODABERI = 1041,
    SNIMI = 1042,
    PRIKAZ = 1043,
    PRIMENI = 1044
};

class AnvelopeTest : public EditoriTest {
protected:
    /// S1..S3, K1 = S1 + S2 and K2 = S3 (global ordinals 4 and 5), envelopes E1 = 4-5 and
    /// E2 = 1,3 (mode 1).
    void SetUp() override {
        EditoriTest::SetUp();
        m_s = Slucajevi(3);
        AddCombination(1, {{m_s[0], 1.0}, {m_s[1], 1.0}}, L"K1");
        AddCombination(2, {{m_s[2], 1.0}}, L"K2");
        AddEnvelope(1, L"4-5", L"E1");
        AddEnvelope(2, L"1,3", L"E2", 1);
    }
    void Anvelope(std::function<void(CDlgAnvelope&)> scena) {
        Ocekuj<CDlgAnvelope>(1001, std::move(scena));
        COpterecenjeApp::OnSlucajeviOpterecenja2();
        ScenarioOdigran();
    }
    static std::vector<CString> Lista(const CDialogModel& m) { return m.Control(LISTA).items; }
    std::vector<std::pair<CString, CString>> Uskladistene() const {
        std::vector<std::pair<CString, CString>> a;
        for (const opterecenje::CAnvelopaListe& e : opterecenje::DajAnvelope())
            a.emplace_back(e.naziv, e.izbor + CString::Formatted(L" (%d)", e.nMod));
        return a;
    }

    std::vector<CId> m_s;
};

using Tekstovi = std::vector<CString>;
using Parovi = std::vector<std::pair<CString, CString>>;

} // namespace

TEST_F(AnvelopeTest, ASelectionIsComposedSavedUnderANameAndEnvelopesDeletedAndOkWritesOneStep) {
    const std::vector<uint8_t> pre = Bajtovi();
    for (int i = 0; i < 4; ++i)
        m_runner.AnswerMessageBox(CVortaMessageBox::IDOK);
    m_runner.AnswerMessageBox(CVortaMessageBox::IDYES);
    Anvelope([&](CDlgAnvelope& d) {
        CDialogModel& m = d.Dialog();
        EXPECT_EQ(Lista(m), (Tekstovi{L"1. [E1] 4-5", L"2. [E2] 1,3"}));
        EXPECT_EQ(m.GetText(PRIKAZ), L"Nema aktivne anvelope.");
        EXPECT_EQ(m.GetItemCount(MOD), 2);

        // What the text holds, or that it does not parse (5 loads: 3 cases, 2 combinations).
        for (const auto& [tekst, sadrzaj] : std::vector<std::pair<const wchar_t*, const wchar_t*>>{
                 {L"1,3-4", L"Slucajeva opterecenja: 2, kombinacija opterecenja: 1"},
                 {L"3-3", L"Izbor nije ispravan."},
                 {L"6", L"Izbor nije ispravan."},
                 {L"", L""}}) {
            m.UserSetText(IZBOR, tekst);
            EXPECT_EQ(m.GetText(SADRZAJ), sadrzaj) << CString(tekst).ToUtf8();
        }
        m.UserClick(SNIMI); // nothing chosen
        m.UserSetText(IZBOR, L"1,,2");
        m.UserClick(SNIMI); // does not parse
        m.UserClick(IDOK);
        EXPECT_FALSE(m.IsEnded());

        // Loads chosen in the selection dialog, saved as a new envelope of mode 1.
        Ocekuj<CDlgIzborOpterecenja>(1020, [](CDlgIzborOpterecenja& i) {
            CGridModel& g = Grid(i, G1);
            EXPECT_EQ(Red(g, 5), (Tekstovi{L"5", L"Kombinacija", L"K2"}));
            g.UserSelectRows({2, 4, 5});
            EXPECT_EQ(i.Dialog().GetText(IZBOR), L"2,4-5");
            i.Dialog().UserClick(IDOK);
        });
        m.UserClick(ODABERI);
        EXPECT_EQ(m.GetText(IZBOR), L"2,4-5");
        m.UserSelect(MOD, 1);
        Ocekuj<CDlgSnimi>(1004, [](CDlgSnimi& s) {
            EXPECT_EQ(s.Dialog().GetText(1016), L"Izbor opterecenja: 2,4-5");
            s.Dialog().UserClick(IDOK); // a blank name is refused
            EXPECT_FALSE(s.Dialog().IsEnded());
            s.Dialog().UserSetText(NAZIV, L"Nova");
            s.Dialog().UserClick(IDOK);
        });
        m.UserClick(SNIMI);
        EXPECT_EQ(Lista(m).back(), L"3. [Nova] 2,4-5");
        EXPECT_EQ(m.GetCurSel(LISTA), 2);

        // Saving under the name of E1 replaces it once the user agrees.
        m.UserSetText(IZBOR, L" 5, 1 ");
        Ocekuj<CDlgSnimi>(1004, [](CDlgSnimi& s) {
            EXPECT_EQ(s.Dialog().GetText(NAZIV), L"Nova");
            s.Dialog().UserSetText(NAZIV, L"E1");
            s.Dialog().UserClick(IDOK);
        });
        m.UserClick(SNIMI);
        EXPECT_EQ(Lista(m).front(), L"1. [E1] 1,5");

        // E2 deleted: the one after it moves up.
        m.UserSelect(LISTA, 1);
        EXPECT_EQ(m.GetText(IZBOR), L"1,3");
        EXPECT_EQ(m.GetCurSel(MOD), 1);
        m.UserClick(BRISI);
        EXPECT_EQ(Lista(m), (Tekstovi{L"1. [E1] 1,5", L"2. [Nova] 2,4-5"}));
        m.UserClick(IDOK);
        EXPECT_TRUE(m.IsEnded());
    });
    const std::vector<CScriptedRunner::Message>& poruke = m_runner.Messages();
    ASSERT_EQ(poruke.size(), 5u);
    EXPECT_EQ(poruke[0].text, L"Izaberite bar jedno opterecenje.");
    const CString neispravan = L"Izbor opterecenja \"1,,2\" nije ispravan. Navedite redne brojeve "
                               L"opterecenja od 1 do 5 razdvojene zarezima, ili opsege kao 3-5.";
    EXPECT_EQ(poruke[1].text, neispravan);
    EXPECT_EQ(poruke[2].text, neispravan); // OK refused too
    EXPECT_EQ(poruke[3].text, L"Unesite naziv anvelope.");
    EXPECT_EQ(poruke[4].text, L"Anvelopa \"E1\" vec postoji. Da li zelite da je zamenite?");
    EXPECT_EQ(Uskladistene(), (Parovi{{L"E1", L"1,5 (1)"}, {L"Nova", L"2,4-5 (1)"}}));
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);

    // Cancel writes nothing.
    Anvelope([](CDlgAnvelope& d) {
        d.Dialog().UserSelect(LISTA, 0);
        d.Dialog().UserClick(BRISI);
    });
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(AnvelopeTest, OkShowsTheActivatedEnvelopeOrTheChosenLoadsInTheResults) {
    m_host.m_bRezultati = true;
    COpterecenjeApp::UpdateCombo(0);

    // An activated envelope becomes the current load of the results selector.
    Anvelope([](CDlgAnvelope& d) {
        d.Dialog().UserSelect(LISTA, 1);
        d.Dialog().UserClick(AKTIVIRAJ);
        EXPECT_EQ(d.Dialog().GetText(PRIKAZ), L"Aktivna anvelopa: 2. [E2] 1,3");
        d.Dialog().UserClick(IDOK);
    });
    EXPECT_EQ(COpterecenjeApp::DajAktivnuAnvelopu(), 2);
    EXPECT_EQ(m_host.Izbor(), 6);
    ASSERT_FALSE(m_promene.empty());
    EXPECT_TRUE(m_promene.back().first.IsAnvelopeType());

    // One load: its position in the selector.
    Anvelope([](CDlgAnvelope& d) {
        EXPECT_EQ(d.Dialog().GetText(PRIKAZ), L"Aktivna anvelopa: 2. [E2] 1,3");
        d.Dialog().UserSetText(IZBOR, L"4");
        d.Dialog().UserClick(IDOK);
    });
    EXPECT_EQ(m_host.Izbor(), 3);
    EXPECT_EQ(m_promene.back().first.GetLoadCaseUnit(0).GetSize(), 2); // K1 = S1 + S2

    // Several loads that no envelope holds: shown as an envelope without a name.
    const size_t promena = m_promene.size();
    Anvelope([](CDlgAnvelope& d) {
        d.Dialog().UserSetText(IZBOR, L"3,1");
        d.Dialog().UserClick(IDOK);
    });
    ASSERT_EQ(m_promene.size(), promena + 1);
    EXPECT_TRUE(m_promene.back().first.IsAnvelopeType());
    EXPECT_EQ(m_host.PoslednjaNajava(), L"Anvelopa: 1,3");
    EXPECT_EQ(m_host.m_najave.back().anvelopa, 1);

    // Deleting the active envelope leaves none active.
    Anvelope([](CDlgAnvelope& d) {
        d.Dialog().UserSelect(LISTA, 1);
        d.Dialog().UserClick(BRISI);
        EXPECT_EQ(d.Dialog().GetText(PRIKAZ), L"Nema aktivne anvelope.");
        d.Dialog().UserClick(IDOK);
    });
    EXPECT_EQ(COpterecenjeApp::DajAktivnuAnvelopu(), 0);
    EXPECT_EQ(m_host.Lista().size(), 6u);
}

TEST_F(AnvelopeTest, TheSelectionDialogTakesTypedTextAppliedOrNot) {
    std::vector<int> izbor = {2, 9};
    Ocekuj<CDlgIzborOpterecenja>(1020, [](CDlgIzborOpterecenja& i) {
        CGridModel& g = Grid(i, G1);
        EXPECT_EQ(g.GetSelectedRows(), std::vector<int>{2}); // 9 is beyond the loads
        EXPECT_EQ(i.Dialog().GetText(IZBOR), L"2");
        i.Dialog().UserSetText(IZBOR, L"1-x");
        i.Dialog().UserClick(PRIMENI);
        i.Dialog().UserSetText(IZBOR, L"4-5, 1");
        i.Dialog().UserClick(PRIMENI);
        EXPECT_EQ(g.GetSelectedRows(), (std::vector<int>{1, 4, 5}));
        EXPECT_EQ(i.Dialog().GetText(IZBOR), L"1,4-5");
        i.Dialog().UserSetText(IZBOR, L"3");
        i.Dialog().UserClick(IDOK);
    });
    EXPECT_TRUE(opterecenje::IzborOpterecenjaDlg(izbor));
    EXPECT_EQ(izbor, std::vector<int>{3});
    ASSERT_EQ(m_runner.Messages().size(), 1u);
    EXPECT_EQ(m_runner.Messages()[0].caption, L"Greska");
    ScenarioOdigran();
}
