// A whole model built from an empty model file through the editors alone, as a user builds it:
// load cases in the list editor, their SRSS case in the SRSS editor, combinations generated in
// the combination editor, an envelope of all combinations, the stability parameters; then
// saved, read back and checked.
#include "EditoriFixture.h"

#include "dialogs/DlgAnvelope.h"
#include "dialogs/DlgKombOpt.h"
#include "dialogs/DlgKombOptStabilnost.h"
#include "dialogs/DlgSlucajeviOpterecenja.h"
#include "dialogs/DlgSnimi.h"
#include "model/StabilnostParams.h"
#include "services/Anvelope.h"
#include "services/SlucajeviOpterecenja.h"

#include <gtest/gtest.h>

namespace {

using D = CDlgSlucajeviOpterecenja;

struct NoviSlucaj {
    const wchar_t* naziv;
    const wchar_t* koef;
    bool g;
    bool seizmicki;
};
constexpr NoviSlucaj kSlucajevi[] = {{L"Sopstvena tezina", L"1.35", true, false},
                                     {L"Korisno opterecenje", L"1.5", false, false},
                                     {L"Sneg", L"1.5", false, false},
                                     {L"Seizmika X", L"0", false, true},
                                     {L"Seizmika Y", L"0", false, true}};

} // namespace

TEST_F(EditoriTest, AWholeModelIsBuiltFromAnEmptyFileWithTheEditorsAlone) {
    // An empty model file, read into the document the editors work on.
    {
        CObjBase prazna;
        CString greska;
        m_base = CModelFile::Read(CModelFile::Write(prazna), greska);
        ASSERT_NE(m_base, nullptr) << greska.ToUtf8();
        CObjBase::SetCurrent(m_base.get());
        Insert(new CModel);
    }

    // Load cases, and from the list editor the SRSS case of the two seismic directions.
    m_runner.AnswerMessageBox(CVortaMessageBox::IDYES); // write the list before the SRSS editor
    Ocekuj<D>(1000, [this](D& d) {
        CGridModel& g = Grid(d, 1017);
        for (const NoviSlucaj& s : kSlucajevi) {
            d.Dialog().UserClick(1007);
            const int r = g.GetRowCount() - 1;
            EXPECT_TRUE(g.UserEndEdit(r, D::kNaziv, s.naziv));
            EXPECT_TRUE(g.UserEndEdit(r, D::kKoeficijent, s.koef));
            if (s.g)
                g.UserClickCheck(r, D::kG);
            if (s.seizmicki)
                g.UserClickCheck(r, D::kSeizmicki);
        }
        Ocekuj<CDialogPresenter>(2090, [](CDialogPresenter& s) {
            s.Dialog().UserClick(1007);
            s.Dialog().Grid(1018).UserEndEdit(1, 5, L"1");
            s.Dialog().Grid(1018).UserEndEdit(1, 6, L"1");
            s.Dialog().UserClick(IDOK);
        });
        d.Dialog().UserClick(1011);
        EXPECT_EQ(g.GetItemText(6, D::kSRSS), L"IV+V");
        d.Dialog().UserClick(IDOK);
    });
    COpterecenjeApp::OnSlucajeviOpterecenja();

    // Combinations: the self-weight permanent, every admissible set of the others.
    Ocekuj<CDlgKombOpt>(1002, [](CDlgKombOpt& d) {
        EXPECT_TRUE(d.Dialog().Grid(1017).UserClickCheck(1, 3)); // "St."
        d.Dialog().UserClick(1008);
        EXPECT_EQ(d.Kombinacije().GetSize(), 8); // {I} with any of II, III, VI
        d.Dialog().UserClick(IDOK);
    });
    COpterecenjeApp::OnKombinacijeOpterecenja();

    // An envelope of all combinations (global ordinals 7..14).
    Ocekuj<CDlgAnvelope>(1001, [this](CDlgAnvelope& d) {
        d.Dialog().UserSetText(1037, L"7-14");
        Ocekuj<CDlgSnimi>(1004, [](CDlgSnimi& s) {
            s.Dialog().UserSetText(1015, L"Sve kombinacije");
            s.Dialog().UserClick(IDOK);
        });
        d.Dialog().UserClick(1042);
        d.Dialog().UserClick(IDOK);
    });
    COpterecenjeApp::OnSlucajeviOpterecenja2();

    // Stability: every combination that may be analysed.
    CStabilnostParams params;
    params.InitDefault();
    Ocekuj<CDlgKombOptStabilnost>(1005, [](CDlgKombOptStabilnost& d) {
        d.Dialog().Grid(1018).UserPopupCommand(1, 2, 1200);
        d.Dialog().UserClick(IDOK);
    });
    EXPECT_EQ(COpterecenjeApp::OnStabilnost(nullptr, params), 1);
    ScenarioOdigran();

    // Saved and read back, the model holds what the editors made.
    const std::filesystem::path fajl = m_tmp / "model.vld";
    CString greska;
    ASSERT_TRUE(CModelFile::Save(*m_base, fajl, greska)) << greska.ToUtf8();
    m_base = CModelFile::Load(fajl, greska);
    ASSERT_NE(m_base, nullptr) << greska.ToUtf8();
    CObjBase::SetCurrent(m_base.get());

    const std::vector<opterecenje::CSlucajListe> slucajevi = opterecenje::DajSlucajeveOpterecenja();
    ASSERT_EQ(slucajevi.size(), 6u);
    for (size_t k = 0; k < 5; ++k) {
        EXPECT_EQ(slucajevi[k].item.m_strNaziv, kSlucajevi[k].naziv);
        EXPECT_EQ(slucajevi[k].nSeizmicki, kSlucajevi[k].seizmicki ? 1 : 0);
    }
    EXPECT_EQ(slucajevi[0].item.m_ngMarker, 1);
    EXPECT_EQ(slucajevi[0].item.m_bStalno, 1);
    EXPECT_EQ(slucajevi[5].item.m_strNaziv, L"SRSS: IV+V");
    EXPECT_EQ(CombinationNames(),
              (std::vector<CString>{L"1.35xI", L"1.35xI+1.50xII", L"1.35xI+1.50xIII",
                                    L"1.35xI+1.50xII+1.50xIII", L"1.35xI+VI", L"1.35xI+1.50xII+VI",
                                    L"1.35xI+1.50xIII+VI", L"1.35xI+1.50xII+1.50xIII+VI"}));
    const std::vector<opterecenje::CAnvelopaListe> anvelope = opterecenje::DajAnvelope();
    ASSERT_EQ(anvelope.size(), 1u);
    EXPECT_EQ(anvelope[0].naziv, L"Sve kombinacije");
    EXPECT_EQ(anvelope[0].izbor, L"7-14");
    // The combinations with the SRSS case of the seismic directions cannot be analysed.
    EXPECT_EQ(params.BrojOdobrenihKombItema(), 4);
    EXPECT_EQ(params.BrojIzabranihKombItema(), 4);
    EXPECT_EQ(params.GetBrojRazlicitihKombinacijaStabilnosti(), 4);
}
