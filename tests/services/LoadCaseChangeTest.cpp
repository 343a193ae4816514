// Making the load of a selector item the host's current load, for every kind of item.
#include "RecordingHost.h"

namespace {

class LoadCaseChangeTest : public ServicesTest {
protected:
    void Model() {
        m_a = Slucaj(L"A", 1);
        m_b = Slucaj(L"B", 2);
        m_c = Slucaj(L"C", 3);
        m_k = AddCombination(1, {{m_c, 0.5}, {m_a, 1.35}, {m_b, 0.0}, {CId(), 2.0}});
        AddEnvelope(1, L"1,4");
    }
    CComboItem Item(int tip, int broj, const CId& id) {
        CComboItem item;
        item.m_nTip = tip;
        item.m_nBroj = broj;
        item.m_Id = id;
        return item;
    }
    /// The units of the load made current last, as (ordinal, factor) lists.
    std::vector<std::vector<std::pair<int, double>>> Tekuce() const {
        std::vector<std::vector<std::pair<int, double>>> units;
        const CGeneralizedLoadCase& glc = m_promene.back().first;
        for (int i = 0; i < glc.GetSize(); ++i) {
            units.emplace_back();
            for (const CLoadCaseFactor& f : glc.GetLoadCaseUnit(i).GetFactors())
                units.back().emplace_back(f.GetLCRedniBroj(), f.GetFaktor());
        }
        return units;
    }
    using Units = std::vector<std::vector<std::pair<int, double>>>;
    CId m_a, m_b, m_c, m_k;
};

} // namespace

TEST_F(LoadCaseChangeTest, EveryKindBecomesAGeneralizedLoadCaseInTheCurrentPhase) {
    Model();
    m_host.m_nFaza = 4;

    COpterecenjeApp::OnLoadCaseChange(Item(CComboItem::SLUCAJ, 2, m_b));
    EXPECT_EQ(Tekuce(), (Units{{{2, 1.0}}}));
    EXPECT_EQ(m_promene.back().first.GetRbrFaze(), 5);
    EXPECT_EQ(m_promene.back().second, 0);
    EXPECT_FALSE(m_promene.back().first.IsAnvelopeType());

    // Superposition: the combination's cases, sorted, without the zero and the invalid member.
    COpterecenjeApp::OnLoadCaseChange(Item(CComboItem::KOMBINACIJA, 1, m_k));
    EXPECT_EQ(Tekuce(), (Units{{{1, 1.35}, {3, 0.5}}}));

    // The other theory: the combination's own place on the scale.
    COpterecenjeApp::SetTeorija(3);
    COpterecenjeApp::OnLoadCaseChange(Item(CComboItem::KOMBINACIJA, 1, m_k));
    EXPECT_EQ(Tekuce(), (Units{{{4, 1.0}}}));

    COpterecenjeApp::OnLoadCaseChange(Item(CComboItem::ANVELOPA, 1, CId()));
    EXPECT_EQ(Tekuce(), (Units{{{1, 1.0}}, {{4, 1.0}}}));
    EXPECT_TRUE(m_promene.back().first.IsAnvelopeType());
    EXPECT_EQ(m_promene.back().first.GetRbrFaze(), 5);

    EXPECT_EQ(m_promene.size(), 4u);
    EXPECT_EQ(m_osvezavanja, std::vector<std::vector<int>>(4, std::vector<int>{1, 1, 0, 0, 0}));
}

TEST_F(LoadCaseChangeTest, AnUnknownKindOfItemIsAnInternalError) {
    Model();
    EXPECT_EXIT(COpterecenjeApp::OnLoadCaseChange(Item(3, 1, m_a)), ::testing::ExitedWithCode(0),
                "Nedozvoljen tip combo item-a\\.");
    const std::string log = ErrorLog();
    EXPECT_NE(log.find("##### BEGINING OF STACK DUMP"), std::string::npos);
    EXPECT_NE(log.find("OpterecenjeSelectors"), std::string::npos);
}

TEST_F(LoadCaseChangeTest, MissingEnvelopeOrHostFunctionEndsTheProgram) {
    Model();
    EXPECT_EXIT(COpterecenjeApp::OnLoadCaseChange(Item(CComboItem::ANVELOPA, 7, CId())),
                ::testing::ExitedWithCode(0), "ASSERT\\(bRet\\)");
    COpterecenjeApp::ChangeLoadCaseTo = nullptr;
    EXPECT_EXIT(COpterecenjeApp::OnLoadCaseChange(Item(CComboItem::SLUCAJ, 1, m_a)),
                ::testing::ExitedWithCode(0), "ASSERT\\(COpterecenjeApp::ChangeLoadCaseTo\\)");
}
