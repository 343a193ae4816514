#pragma once
// A host for the tests of the load services. RecordingHost is a main frame that records what
// the module tells it (announced loads, repaints, unit updates) and answers what the module
// asks (current load, phase, mode, running command). ServicesTest installs it together with a
// message box presenter that records every box and answers OK, a views handler that records
// refreshes, and a ChangeLoadCaseTo that records the loads made current.
#include "host/MainFrame.h"
#include "host/MessageBox.h"
#include "host/VortaUtils.h"
#include "model/GeneralizedLoadCase.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/ModelFixture.h"
#include "model/SlucajOpterecenja.h"
#include "services/Opterecenje.h"
#include "toler/Toler.h"

#include <functional>
#include <vector>

struct Najava {
    CString tekst;
    CId id;
    int anvelopa = 0;
};

class RecordingHost : public CMainFrame {
public:
    CId GetCurrentSloptId(int& number) const override {
        number = m_nTekuciBroj;
        return CId();
    }
    int GetBrojTekuceFazeGradjenja() const override { return m_nFaza; }
    bool IsCommandActive() const override { return m_bKomandaAktivna; }
    bool IsResultsMode() const override { return m_bRezultati; }
    void Pane0Event_SlucajOpterecenja(const CString& text, const CId& id, int envelope) override {
        m_najave.push_back({text, id, envelope});
    }
    void Pane2Event_UpdateUnit() override { ++m_nUpdateUnit; }
    void Repaint() override { ++m_nRepaint; }

    std::vector<CString> Lista() const { return Combo().Texts(); }
    int Izbor() const { return Combo().GetCurSel(); }
    /// The text of the last announcement, empty when there was none.
    CString PoslednjaNajava() const { return m_najave.empty() ? CString() : m_najave.back().tekst; }

    // what the host answers
    int m_nTekuciBroj = 0;
    int m_nFaza = 0;
    bool m_bKomandaAktivna = false;
    bool m_bRezultati = false;
    // what the module did
    std::vector<Najava> m_najave;
    int m_nUpdateUnit = 0;
    int m_nRepaint = 0;
};

class ServicesTest : public ModelTest {
protected:
    void SetUp() override {
        ModelTest::SetUp();
        CMainFrame::Install(&m_host);
        s_pTest = this;
        CVortaMessageBox::SetPresenter([this](const CString& text, const CString& caption,
                                              unsigned type, const std::vector<CString>&) {
            m_poruke.push_back(text);
            m_poslednja = {caption, type};
            return static_cast<int>(CVortaMessageBox::IDOK);
        });
        CVortaUtils::SetViewsHandler([this](int a, int b, int c, int d, int e) {
            m_osvezavanja.push_back({a, b, c, d, e});
        });
        COpterecenjeApp::ChangeLoadCaseTo = [](const CGeneralizedLoadCase& glc, int flag) {
            s_pTest->m_promene.emplace_back(glc, flag);
            return 1;
        };
        COpterecenjeApp::SetTeorija(1);
        COpterecenjeApp::ResetArrayLabilnihSlOpt();
        COpterecenjeApp::gComboItemArray.RemoveAll();
        COpterecenjeApp::ResetAnvelope();
        COpterecenjeApp::ResetSelektora();
        COpterecenjeApp::NapraviImeDDASlOpt = nullptr;
        CSlucajOpterecenja::ResetujMapuTonovaZaMultiModalne();
        CVortaUtils::g_bDisableComboResults = false;
        CVortaUtils::g_bAktivnaKomandaZaUnosOpterecenja = false;
        CVortaUtils::g_bAktivanSlOptUticajneLinije = false;
        CVortaUtils::s_bLoading = false;
    }
    void TearDown() override {
        COpterecenjeApp::ChangeLoadCaseTo = nullptr;
        CVortaUtils::SetViewsHandler(nullptr);
        CVortaMessageBox::SetPresenter(nullptr);
        CMainFrame::Install(nullptr);
        s_pTest = nullptr;
        COpterecenjeApp::SetTeorija(1);
        ModelTest::TearDown();
    }

    /// Stores a load case and lets the caller set it up further.
    CId Slucaj(const CString& naziv, int ordinal,
               const std::function<void(CSlucajOpterecenja&)>& podesi = nullptr) {
        auto* p = new CSlucajOpterecenja;
        p->SetNaziv(naziv);
        p->PostaviRedniBroj(ordinal);
        if (podesi)
            podesi(*p);
        return Insert(p);
    }
    static void Seizmicki(CSlucajOpterecenja& s) { s.SetSeizmicki(1); }
    static void Nda(CSlucajOpterecenja& s) { s.PostaviNDA(1); }
    static void UticajnaLinija(CSlucajOpterecenja& s) { s.SetUticajUticajneLinije(UL_MOMENT); }
    /// An SRSS case over the given load case ordinals.
    static std::function<void(CSlucajOpterecenja&)> Srss(std::initializer_list<int> ordinals) {
        return [u = Unit({}, ordinals)](CSlucajOpterecenja& s) { s.PostaviSRSS(u); };
    }
    /// A linear unit of (ordinal, factor) pairs, then ordinals with factor 1.
    static CLoadCaseUnit Unit(std::initializer_list<std::pair<int, double>> faktori,
                              std::initializer_list<int> celi = {}) {
        CLoadCaseUnit u;
        for (const auto& [rb, f] : faktori)
            u.Factors().Add(CLoadCaseFactor(rb, f));
        for (const int rb : celi)
            u.Factors().Add(CLoadCaseFactor(rb, 1.0));
        u.SetKarakter(LCU_LINEARNA);
        return u;
    }
    /// The (ordinal, factor) pairs of a unit; none for no unit.
    static std::vector<std::pair<int, double>> ParoviJedinice(const CLoadCaseUnit* u) {
        std::vector<std::pair<int, double>> p;
        for (int i = 0; u != nullptr && i < u->GetSize(); ++i)
            p.emplace_back(u->GetLoadCaseFactor(i).GetLCRedniBroj(),
                           u->GetLoadCaseFactor(i).GetFaktor());
        return p;
    }
    RecordingHost m_host;
    std::vector<CString> m_poruke;            // the texts of the message boxes shown
    std::pair<CString, unsigned> m_poslednja; // caption and type of the last one
    std::vector<std::vector<int>> m_osvezavanja;
    std::vector<std::pair<CGeneralizedLoadCase, int>> m_promene;

private:
    static inline ServicesTest* s_pTest = nullptr;
};

/// LoadCaseUnitToRedniBroj as the plain walk over all combinations in store order.
inline int RedniBrojDoslovno(const CLoadCaseUnit& u) {
    if (u.GetSize() == 1 && CToler::Jednaki(u.GetLoadCaseFactor(0).GetFaktor(), 1.0))
        return u.GetLoadCaseFactor(0).GetLCRedniBroj();
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    const int nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto& item = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id))->Item();
        OCArray<CLoadCaseFactor> lista;
        for (int k = 0; k < item.GetBrojOsnOpt(); ++k) {
            double koef = 0.0;
            CId sl;
            item.GetOsnOptByIndex(k, koef, sl);
            if (!CToler::Jednaki(koef, 0.0) && sl.Valid())
                lista.Add(CLoadCaseFactor(
                    dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(sl))->DajRedniBroj(), koef));
        }
        CLoadCaseFactor::SortLoadCaseFactorArray(lista);
        bool isti = lista.GetSize() == u.GetSize();
        for (int i = 0; i < lista.GetSize() && isti; ++i)
            isti = lista[i].GetLCRedniBroj() == u.GetLoadCaseFactor(i).GetLCRedniBroj() &&
                   !CToler::Razliciti(lista[i].GetFaktor(), u.GetLoadCaseFactor(i).GetFaktor());
        if (isti)
            return nSlOpt + item.GetRedniBroj();
    }
    return 0;
}
