// The interchange of loads inside the module: a JSON description takes the place of the
// model's loads in one undo step, keeping the load cases of the same name (and with them the
// host's individual loads); a CSV table replaces the combinations and the envelopes keep the
// places that still hold loads; refused text changes nothing.
#include "RecordingHost.h"

#include "host/ModelFile.h"
#include "services/Anvelope.h"
#include "services/Razmena.h"

#include <gtest/gtest.h>

namespace {

class RazmenaTest : public ServicesTest {
protected:
    void SetUp() override {
        ServicesTest::SetUp();
        Insert(new CModel);
        m_s1 = Slucaj(L"S1", 1);
        m_s2 = Slucaj(L"S2", 2);
        AddCombination(1, {{m_s1, 1.35}, {m_s2, 1.5}}, L"K1");
        AddCombination(2, {{m_s2, 1.0}}, L"K2");
        AddEnvelope(1, L"1-4", L"Sve");
    }
    std::vector<uint8_t> Bajtovi() const { return CModelFile::Write(*m_base); }
    CId m_s1;
    CId m_s2;
};

} // namespace

TEST_F(RazmenaTest, AJsonDescriptionReplacesTheLoadsInOneUndoStepKeepingCasesByName) {
    const std::vector<uint8_t> pre = Bajtovi();
    const int koraci = m_base->GetUndoCount();
    CString greska;
    ASSERT_TRUE(opterecenje::UveziJson(R"({"load_cases": [{"name": "S2"}, {"name": "Novi"},
        {"name": "S1", "never_with": ["S2"]}],
        "combinations": [{"coefficients": [[3, 1.35], ["Novi", 1.5]]}]})",
                                       greska))
        << greska.ToUtf8();
    EXPECT_EQ(m_base->GetUndoCount(), koraci + 1);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s2)->DajRedniBroj(), 1);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s1)->DajRedniBroj(), 3);
    OCArray<CId> nikad;
    nikad.Add(m_s2);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s1)->GetNeKombinujSa(), nikad);
    EXPECT_EQ(m_base->Count(CKombinacijaOpterecenja::Type), 1);
    EXPECT_EQ(m_base->Count(CAnvelopaOpterecenja::Type), 0);
    std::string json;
    opterecenje::IzveziJson(json);
    EXPECT_NE(json.find(R"({"name": "1.50xII+1.35xIII", "generated": true, "coefficients": )"
                        R"([[3, 1.35], [2, 1.5]]})"),
              std::string::npos)
        << json;

    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);

    // Refused: nothing changes, no step is made.
    EXPECT_FALSE(opterecenje::UveziJson(R"({"load_cases": [{"name": "S1", "srss": 1}]})", greska));
    EXPECT_EQ(greska, L"line 1, column 40: \"srss\" must be an array of pairs [load case, number]");
    EXPECT_EQ(Bajtovi(), pre);
    EXPECT_EQ(m_base->GetUndoCount(), koraci);
}

TEST_F(RazmenaTest, ACsvTableReplacesOrExtendsTheCombinations) {
    int n = 0;
    CString greska;
    ASSERT_TRUE(opterecenje::UveziCsv("Name,Generated,2. S2\r\nK3,no,-1\r\n", true, n, greska))
        << greska.ToUtf8();
    EXPECT_EQ(n, 1);
    std::string csv;
    opterecenje::IzveziCsv(csv);
    EXPECT_EQ(csv, "No.,Name,Generated,1. S1,2. S2\r\n1,K3,no,,-1\r\n");
    // The envelope keeps the places that still hold a load: the second combination is gone.
    EXPECT_EQ(opterecenje::DajAnvelope().front().izbor, L"1-3");

    ASSERT_TRUE(
        opterecenje::UveziCsv("S1,Name\n\"0.5\",\"Pola, \"\"S1\"\"\"\n\n", false, n, greska))
        << greska.ToUtf8();
    csv.clear();
    opterecenje::IzveziCsv(csv);
    EXPECT_EQ(csv, "No.,Name,Generated,1. S1,2. S2\r\n1,K3,no,,-1\r\n2,\"Pola, \"\"S1\"\"\",no,0.5,"
                   "\r\n");
}
