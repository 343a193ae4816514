// The interchange of loads inside the module: a JSON description takes the place of the
// model's loads in one undo step, keeping the load cases of the same name (and with them the
// host's individual loads); a CSV table replaces the combinations and the envelopes keep the
// places that still hold loads; refused text changes nothing.
#include "RecordingHost.h"

#include "model/StabilnostParams.h"
#include "services/Anvelope.h"
#include "services/Razmena.h"
#include "stream/Filler.h"

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
    /// The stability parameters of the model object's record.
    CStabilnostParams Stabilnost() const {
        const CId id = m_base->Ids(CBaseManager::ModelType).front();
        CStabilnostParams params;
        CFiller f;
        f.SetBuffer(dynamic_cast<const CModel&>(*m_base->Find(id)).GetStabilnost());
        f.Open(CFiller::Mode::Read);
        params.FromFiller(f);
        EXPECT_FALSE(f.IsError());
        return params;
    }
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

TEST_F(RazmenaTest, StabilityParametersGoIntoTheModelRecordAndComeBackWhileTheyFitTheLoads) {
    const std::vector<uint8_t> pre = Bajtovi();
    CString greska;
    const char* const opis = R"({"load_cases": [{"name": "S1"}, {"name": "S2"},
        {"name": "E", "seismic": true}],
      "combinations": [{"coefficients": [[1, 1.35], [2, 1.5]]}, {"coefficients": [[2, 1]]},
        {"coefficients": [[1, 1], [3, 1]]}],
      "stability": {"search_range": 2500, "accuracy": 0.01, "fixed": [["S1", 1.35]],
        "combinations": [1, 2]}})";
    ASSERT_TRUE(opterecenje::UveziJson(opis, greska)) << greska.ToUtf8();

    // The record is the stability dialog's: S1 fixed, the seismic case offered to nothing,
    // the two combinations chosen, the third not offered, and their distinct pairs of units.
    const CStabilnostParams params = Stabilnost();
    EXPECT_EQ(params.GetOpsegZaDelta(), 2500.0);
    EXPECT_EQ(params.GetTacnostZaDelta(), 0.01);
    ASSERT_EQ(params.BrojSloptItema(), 3);
    EXPECT_TRUE(params.GetSloptItem(0).IsFiksan());
    EXPECT_EQ(params.GetSloptItem(0).GetFaktor(), 1.35);
    EXPECT_FALSE(params.GetSloptItem(1).IsFiksan());
    EXPECT_FALSE(params.GetSloptItem(2).IsDozvoljen());
    ASSERT_EQ(params.BrojKombItema(), 3);
    EXPECT_EQ(params.BrojIzabranihKombItema(), 2);
    EXPECT_FALSE(params.GetKombItem(2).IsOdobren());
    EXPECT_EQ(params.GetBrojRazlicitihKombinacijaStabilnosti(), 2);

    std::string json;
    opterecenje::IzveziJson(json);
    EXPECT_NE(json.find("\"stability\": {\"search_range\": 2500, \"accuracy\": 0.01, "
                        "\"beam_torsion_off\": false,\n    \"fixed\": [[1, 1.35]],\n    "
                        "\"combinations\": [1, 2]}"),
              std::string::npos)
        << json;

    // Other combinations make the parameters those of other loads: they are not exported.
    int n = 0;
    ASSERT_TRUE(opterecenje::UveziCsv("Name,S1\r\nK,1\r\n", false, n, greska));
    json.clear();
    opterecenje::IzveziJson(json);
    EXPECT_EQ(json.find("\"stability\""), std::string::npos);

    // A description without them leaves the model without them; undo brings back each step.
    ASSERT_TRUE(opterecenje::UveziJson(R"({"load_cases": [{"name": "S1"}]})", greska));
    const CId model = m_base->Ids(CBaseManager::ModelType).front();
    EXPECT_TRUE(dynamic_cast<const CModel&>(*m_base->Find(model)).GetStabilnost().empty());
    ASSERT_TRUE(m_base->Undo());
    ASSERT_TRUE(m_base->Undo());
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(RazmenaTest, JsonAtTheEdgesOfTheSyntaxIsReadExactlyOrRefusedWithItsPlace) {
    // Accepted: the text as a user's editor may leave it, and numbers that only a conversion
    // rounded to the nearest double gives back as they were meant.
    struct Prihvacen {
        std::string tekst;
        const char* izvoz; // what the combinations export as
    };
    const Prihvacen prihvaceni[] = {
        {"\xEF\xBB\xBF{\"load_cases\": [{\"name\": \"S1\"}, {\"name\": \"S2\"}], "
         "\"combinations\": [{\"name\": \"K\", \"coefficients\": [[1, 1.5]]}]}",
         R"({"name": "K", "generated": false, "coefficients": [[1, 1.5]]})"},
        // An escaped name names the load case as its letters do.
        {R"({"load_cases": [{"name": "S\u0031"}, {"name": "S\"2"}], "combinations": )"
         R"([{"name": "\u041a", "coefficients": [["S1", 2], ["S\"2", 0.1e-2]]}]})",
         R"({"name": "К", "generated": false, "coefficients": [[1, 2], [2, 0.001]]})"},
        // Halfway between two doubles goes to the even one; beyond their range, to zero
        // (and a zero coefficient is dropped).
        {R"({"load_cases": [{"name": "S1"}, {"name": "S2"}], "combinations": [{"name": "K", )"
         R"("coefficients": [[1, 1.00000000000000011102230246251565404236316680908203125], )"
         R"([2, 1e-400]]}]})",
         R"({"name": "K", "generated": false, "coefficients": [[1, 1]]})"},
    };
    for (const Prihvacen& p : prihvaceni) {
        CString greska;
        ASSERT_TRUE(opterecenje::UveziJson(p.tekst, greska)) << greska.ToUtf8();
        std::string json;
        opterecenje::IzveziJson(json);
        EXPECT_NE(json.find(p.izvoz), std::string::npos) << json;
    }

    const std::vector<uint8_t> pre = Bajtovi();
    struct Odbijen {
        std::string tekst;
        const wchar_t* greska;
    };
    const Odbijen odbijeni[] = {
        {R"({"load_cases": [{"name": "S\udc01"}]})",
         L"line 1, column 26: syntax error while parsing value - invalid string: surrogate "
         L"U+DC00..U+DFFF must follow U+D800..U+DBFF"},
        {R"({"load_cases": [{"name": "S1", "name": "S2"}]})",
         L"line 1, column 32: the key \"name\" is given twice"},
        {R"({"load_cases": [{"name": "S1"}], "combinations": [{"coefficients": )"
         R"([[18446744073709551616, 1]]}]})",
         L"line 1, column 70: a load case is given by its number or its name"},
        {R"({"load_cases": [{"name": "S1"}], "combinations": [{"coefficients": [[1, 1]], )"
         R"("name": 5}]})",
         L"line 1, column 86: \"name\" must be a string"},
        {"{\"load_cases\": [{\"name\": \"S1\xC3\"}]}",
         L"line 1, column 26: syntax error while parsing value - invalid string: ill-formed "
         L"UTF-8 byte"},
    };
    // Load cases named by numbers that no list of them reaches.
    for (const char* broj : {"0", "-3", "3000000000", "-9223372036854775808"}) {
        const std::string tekst = std::string(R"({"load_cases": [{"name": "S1"}], )") +
                                  R"("combinations": [{"coefficients": [[)" + broj + ", 1]]}]}";
        CString greska;
        EXPECT_FALSE(opterecenje::UveziJson(tekst, greska));
        EXPECT_EQ(greska.ToUtf8(), std::string("line 1, column 70: there is no load case ") + broj +
                                       " (they are numbered 1 to 1)");
    }
    for (const Odbijen& o : odbijeni) {
        CString greska;
        EXPECT_FALSE(opterecenje::UveziJson(o.tekst, greska)) << o.tekst;
        EXPECT_EQ(greska.ToUtf8(), CString(o.greska).ToUtf8()) << o.tekst;
    }
    EXPECT_EQ(Bajtovi(), pre);
}

TEST_F(RazmenaTest, ACsvTableOfMostlyEmptyFieldsIsReadFieldByField) {
    int n = 0;
    CString greska;
    // Blank rows (empty, spaces or an empty quoted field) are passed over; a name of spaces is
    // a name; the table's last column may be left empty.
    ASSERT_TRUE(opterecenje::UveziCsv("Name,Generated,1. S1,2. S2\r\n,,,\r\n  , ,\t,\"\"\r\n"
                                      "\"\",,1,\r\nK,\"no\",,\"2\"\r\n\" \",,,3\n",
                                      true, n, greska))
        << greska.ToUtf8();
    EXPECT_EQ(n, 3);
    std::string csv;
    opterecenje::IzveziCsv(csv);
    EXPECT_EQ(csv, "No.,Name,Generated,1. S1,2. S2\r\n1,I,yes,1,\r\n2,K,no,,2\r\n"
                   "3,\" \",no,,3\r\n");

    const std::vector<uint8_t> pre = Bajtovi();
    struct Odbijen {
        const char* tekst;
        const char* greska;
    };
    const Odbijen odbijeni[] = {
        {"Name,1. S1\r\nK,1,\r\n",
         "line 2, column 3 (C): the row has more fields than the heading"},
        {"Name,1. S1,2. S2\r\nK,,,,\r\n",
         "line 2, column 4 (D): the row has more fields than the heading"},
        {"Name,,2. S2\r\n", "line 1, column 2 (B): \"\" is not a load case of the model"},
        {"Name,1. S1,2. S2\r\nK,,\"\"\r\n",
         "line 2, column 2 (B): a combination needs a coefficient other than zero"},
        {"Name,1. S1\r\nK,\"1\r\n", "line 2, column 2 (B): a quoted field is not closed"},
    };
    for (const Odbijen& o : odbijeni) {
        EXPECT_FALSE(opterecenje::UveziCsv(o.tekst, true, n, greska)) << o.tekst;
        EXPECT_EQ(greska.ToUtf8(), o.greska) << o.tekst;
    }
    EXPECT_EQ(Bajtovi(), pre);
}
