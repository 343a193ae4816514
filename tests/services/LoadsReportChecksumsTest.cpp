// The checksums table sums each record's own checksums, whatever the length and the letters of
// the names and under either analysis order, in both ways the tables are handed to a host.
#include "RecordingHost.h"

#include "services/ModuleServices.h"

#include <cstdint>
#include <string>

namespace {

class ChecksumsTest : public ServicesTest {
protected:
    /// The first two sums of every record, each asked for by itself.
    std::vector<CString> SumeZapisa() {
        uint32_t c1 = 0, c2 = 0, c3 = 0;
        for (const int tip :
             {CBaseManager::SlucajOpterecenjaType, CBaseManager::KombinacijaOpterecenjaType,
              CBaseManager::AnvelopaOpterecenjaType})
            for (const CId& id : m_base->Ids(tip))
                m_base->Find(id)->UpdateCRC(c1, c2, c3);
        return {CString::Formatted(L"%08X", c1), CString::Formatted(L"%08X", c3)};
    }
};

} // namespace

TEST_F(ChecksumsTest, TableSumsEachRecordsOwnChecksumsUnderBothAnalysisOrders) {
    const CId modelId = Insert(new CModel);
    const CId g = Slucaj(CString(300, L'ђ') + L"😀", 1);
    const CId q = Slucaj(L"Q", 2);
    // Names around the lengths at which the record is written in pieces, past the block in
    // which the checksum gathers them, beyond the Basic Multilingual Plane, not Unicode at all.
    const CString nazivi[] = {L"",
                              CString(127, L'ш'),
                              CString(128, L'a'),
                              CString(129, L'Ж'),
                              CString(256, L'b') + L"😀",
                              CString(700, L'x') + L"𝔸" + CString(300, L'y'),
                              CString(3000, L'z'),
                              CString{L'a', static_cast<wchar_t>(0xDC00), L'b'}};
    int rb = 0;
    for (const CString& naziv : nazivi) {
        ++rb;
        AddCombination(rb, {{g, 1.35}, {q, 0.25 * rb}, {g, 0.0}}, naziv);
    }
    AddEnvelope(1, L"1-10", CString(200, L'е'));

    std::vector<CString> prethodne;
    for (const int analiza : {1, 2}) {
        Change<CModel>(modelId, [&](CModel& m) { m.SetAnaliza(analiza); });
        const std::vector<CString> ocekivane = SumeZapisa();
        EXPECT_NE(ocekivane, prethodne) << "the second-order sum counts the combinations";
        prethodne = ocekivane;

        CLoadsReport r;
        opterecenje::Izvestaj(r);
        ASSERT_EQ(r.tables.size(), 5u);
        ASSERT_GE(r.tables[4].rows.size(), 2u);
        EXPECT_EQ(r.tables[4].rows[0][1], ocekivane[0]) << analiza;
        EXPECT_EQ(r.tables[4].rows[1][1], ocekivane[1]) << analiza;

        const CReportTables tabele = opterecenje::IzvestajNaZahtev();
        ASSERT_EQ(tabele.size(), 5u);
        CReportRows redovi;
        tabele[4]->Rows(0, 2, redovi);
        ASSERT_EQ(redovi.Count(), 2u);
        EXPECT_EQ(redovi.Get(0, 1), ocekivane[0].ToUtf8()) << analiza;
        EXPECT_EQ(redovi.Get(1, 1), ocekivane[1].ToUtf8()) << analiza;
    }
}
