// The fatal paths of the load records: each broken invariant ends the program through the
// assertion routine (exit code 0) and leaves its entry in the error log.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <string>

using namespace loadrec;

using ModelAssertions = ModelTest;

TEST_F(ModelAssertions, CopyConstructionOutsideThePoolEndsTheProgram) {
    CSlucajOpterecenja slOpt;
    EXPECT_EXIT(CSlucajOpterecenja{slOpt}, ::testing::ExitedWithCode(0),
                "ASSERT FAILED - Error log \"vmerror.log\" created.\nASSERT\\(this == validAdr\\)\n"
                "\\[SlucajOpterecenja : 48\\]");
}

TEST_F(ModelAssertions, LoadCaseOrdinalsMustBeOneToNEachOnce) {
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(); // no load cases
    AddLoadCase(L"B", 2);
    AddLoadCase(L"A", 1);
    AddLoadCase(L"C", 3);
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();

    const CId extra = AddLoadCase(L"D", 5);
    const char* const outside = "ASSERT\\(nIndex >= 0 && nIndex < nOsnovnihOpt\\)\n"
                                "\\[SlucajOpterecenja : 630\\]";
    EXPECT_EXIT(CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(),
                ::testing::ExitedWithCode(0), outside);
    Change<CSlucajOpterecenja>(extra, [](CSlucajOpterecenja& s) { s.PostaviRedniBroj(0); });
    EXPECT_EXIT(CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(),
                ::testing::ExitedWithCode(0), outside);
    Change<CSlucajOpterecenja>(extra, [](CSlucajOpterecenja& s) { s.PostaviRedniBroj(2); });
    EXPECT_EXIT(CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(),
                ::testing::ExitedWithCode(0),
                "ASSERT\\(nizIndeks\\[nIndex\\] == -1\\)\n\\[SlucajOpterecenja : 633\\]");
}

TEST_F(ModelAssertions, ObjectsThatAreNotThereEndTheProgram) {
    const CId g = AddLoadCase(L"G", 1);
    const CId missing(900);
    CKombOptItem present, absent;
    present.DodajOsnOpt(1.0, g);
    absent.DodajOsnOpt(1.0, missing);
    // Ordering names the side whose load case is missing.
    EXPECT_EXIT(present.Uporedi(absent), ::testing::ExitedWithCode(0),
                "ASSERT\\(pSlOpt2\\)\n\\[KombOptItem : ");
    EXPECT_EXIT(absent.Uporedi(present), ::testing::ExitedWithCode(0),
                "ASSERT\\(pSlOpt1\\)\n\\[KombOptItem : ");
    // Naming looks up every entry, even one with coefficient 0.
    present.DodajOsnOpt(0.0, missing);
    EXPECT_EXIT(present.SetGenericName(nullptr, 0), ::testing::ExitedWithCode(0),
                "ASSERT\\(pSlOpt\\)\n\\[KombOptItem : ");
    // A combination's checksum needs the model object.
    const CId komb = AddCombination(2, {{g, 1.0}});
    uint32_t c1 = 0, c2 = 0, c3 = 0;
    EXPECT_EXIT(Get<CKombinacijaOpterecenja>(komb)->UpdateCRC(c1, c2, c3),
                ::testing::ExitedWithCode(0), "ASSERT\\(pModel\\)\n\\[KombinacijaOpterecenja : ");
    // Deleting an envelope that does not exist.
    AddEnvelope(1, L"1");
    EXPECT_EXIT(CAnvelopaOpterecenja::BrisiAnvelopu(5), ::testing::ExitedWithCode(0),
                "ASSERT\\(idAnv.Valid \\(\\)\\)\n\\[AnvelopaOpterecenja : ");
}

TEST_F(ModelAssertions, ImpossibleStatesEndTheProgramAsInternalErrors) {
    // A load named twice in one unit: a caller did not merge its factors.
    EXPECT_EXIT(
        CLoadCaseUnit().Set(Unit({{3, 1.0}, {2, 1.0}, {2, 1.0}}).GetFactors(), LCU_LINEARNA),
        ::testing::ExitedWithCode(0),
        "INTERNAL ERROR - PROGRAM TERMINATES\n\\[LoadCaseDescriptions : 81\\]\n"
        "arrLoadCaseFactors \\[i\\]\\.m_lcId == arrLoadCaseFactors \\[j\\]\\.m_lcId");
    // The entry is in the log the document's tests point at.
    EXPECT_NE(ErrorLog().find("##### BEGINING OF STACK DUMP\n\n"), std::string::npos);
    EXPECT_NE(ErrorLog().find("ASSERT(arrLoadCaseFactors [i].m_lcId == arrLoadCaseFactors [j]."
                              "m_lcId)\nFILE: LoadCaseDescriptions\nLINE: 81\n\n"),
              std::string::npos);

    // A stored-combinations section of an unknown version.
    for (const int32_t version : {3, 0}) {
        Reader r(Bytes().i32(version).i32(1).i32(0).get());
        EXPECT_EXIT(CKombOptItemArray::UcitajUskladisteneKombinacije(r.f(), 0),
                    ::testing::ExitedWithCode(0),
                    "INTERNAL ERROR - PROGRAM TERMINATES\n\\[KombOptItem : [0-9]+\\]\n"
                    "Version error in CKombOptItemArray::UcitajUskladisteneKombinacije");
    }
}
