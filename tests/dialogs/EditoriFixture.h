#pragma once
// A document for the tests of the SRSS editor, the stability dialog and the further load
// editors: the recording host of the services' tests, a scripted user and the hooks the host
// fills recorded.
#include "dialog/ScriptedRunner.h"
#include "dialogs/EditoriOpterecenja.h"
#include "dialogs/Editors.h"
#include "services/RecordingHost.h"

#include <functional>
#include <utility>
#include <vector>

/// The controls the load editors share: their grids, the name edit and the list buttons.
enum : int { G1 = 1017, G2 = 1018, NAZIV = 1015 };
enum : int { BRISI = 1006, DODAJ = 1007, DOLE = 1012, GORE = 1013 };

class EditoriTest : public ServicesTest {
protected:
    void SetUp() override {
        ServicesTest::SetUp();
        m_runner.Install();
        opterecenje::PostaviEditore();
        s_pEditori = this;
        COpterecenjeApp::BrisiRezultateDimenzionisanja = [] { ++s_pEditori->m_nBrisanjaRezultata; };
        COpterecenjeApp::KopirajPojedinacnaOpterecenja = [](const CId& izvor, const CId& kopija) {
            s_pEditori->m_kopiranja.emplace_back(izvor, kopija);
        };
        Insert(new CModel);
    }
    void TearDown() override {
        COpterecenjeApp::BrisiRezultateDimenzionisanja = nullptr;
        COpterecenjeApp::KopirajPojedinacnaOpterecenja = nullptr;
        s_pEditori = nullptr;
        ServicesTest::TearDown();
    }

    /// Load cases "S1".."Sn" with ordinals 1..n; podesi sets case k (0-based) up further.
    std::vector<CId>
    Slucajevi(int n, const std::function<void(int, CSlucajOpterecenja&)>& podesi = nullptr) {
        std::vector<CId> ids;
        for (int k = 0; k < n; ++k)
            ids.push_back(
                Slucaj(CString::Formatted(L"S%d", k + 1), k + 1, [&](CSlucajOpterecenja& s) {
                    if (podesi)
                        podesi(k, s);
                }));
        return ids;
    }
    /// The next dialog must be the resource id; the scene acts in it as a presenter of type T.
    template <class T> void Ocekuj(int id, std::function<void(T&)> scena) {
        m_runner.Expect(id, [scena = std::move(scena)](CDialogPresenter& p) {
            T* pDlg = dynamic_cast<T*>(&p);
            ASSERT_NE(pDlg, nullptr);
            scena(*pDlg);
        });
    }
    /// Every scene played, every answer taken, nothing against the script.
    void ScenarioOdigran() {
        EXPECT_TRUE(m_runner.Errors().empty());
        EXPECT_TRUE(m_runner.Done());
    }
    /// The texts of the message boxes shown so far.
    std::vector<CString> Poruke() const {
        std::vector<CString> poruke;
        for (const CScriptedRunner::Message& m : m_runner.Messages())
            poruke.push_back(m.text);
        return poruke;
    }
    static CGridModel& Grid(CDialogPresenter& d, int id) { return d.Dialog().Grid(id); }
    /// The texts of a grid's row.
    static std::vector<CString> Red(const CGridModel& g, int row) {
        std::vector<CString> red;
        for (int c = 0; c < g.GetColumnCount(); ++c)
            red.push_back(g.GetItemText(row, c));
        return red;
    }
    /// The stored load case with the ordinal, or null.
    const CSlucajOpterecenja* SlucajBr(int redniBroj) const {
        for (const CId& id : m_base->Ids(CSlucajOpterecenja::Type))
            if (const auto* p = Get<CSlucajOpterecenja>(id); p->DajRedniBroj() == redniBroj)
                return p;
        return nullptr;
    }

    CScriptedRunner m_runner;
    int m_nBrisanjaRezultata = 0;
    std::vector<std::pair<CId, CId>> m_kopiranja;

private:
    static inline EditoriTest* s_pEditori = nullptr;
};
