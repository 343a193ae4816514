#pragma once
// A host for the tests of the load services. RecordingHost is a main frame that records what
// the module tells it (announced loads, repaints, unit updates) and answers what the module
// asks (current load, phase, mode, running command). ServicesTest installs it together with a
// message box presenter that records every box and answers from a script, a views handler
// that counts refreshes, and a ChangeLoadCaseTo that records the loads made current.
#include "host/MainFrame.h"
#include "host/MessageBox.h"
#include "host/VortaUtils.h"
#include "model/GeneralizedLoadCase.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/ModelFixture.h"
#include "model/SlucajOpterecenja.h"
#include "services/Opterecenje.h"
#include "toler/Toler.h"

#include <cstdlib>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

struct Najava {
    CString tekst;
    CId id;
    int anvelopa = 0;
};

struct Poruka {
    CString tekst;
    CString naslov;
    unsigned tip = 0;
};

class RecordingHost : public CMainFrame {
public:
    CId GetCurrentSloptId(int& number) const override {
        number = m_nTekuciBroj;
        return m_idTekuci;
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
    CId m_idTekuci;
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
        // The document fixture points TMP at its own directory, which goes at the end of the
        // test: the previous value is restored so that tests can run one after another.
        if (const char* tmp = std::getenv("TMP"))
            m_staroTmp = tmp;
        ModelTest::SetUp();
        CMainFrame::Install(&m_host);
        s_pTest = this;
        CVortaMessageBox::SetPresenter([this](const CString& text, const CString& caption,
                                              unsigned type, const std::vector<CString>&) {
            m_poruke.push_back({text, caption, type});
            if (m_odgovori.empty())
                return static_cast<int>(CVortaMessageBox::IDOK);
            const int odgovor = m_odgovori.front();
            m_odgovori.pop_front();
            return odgovor;
        });
        CVortaUtils::SetViewsHandler([this](int a, int b, int c, int d, int e) {
            m_osvezavanja.push_back({a, b, c, d, e});
        });
        COpterecenjeApp::ChangeLoadCaseTo = &ZabeleziPromenu;

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
        if (m_staroTmp)
            ::setenv("TMP", m_staroTmp->c_str(), 1);
        else
            ::unsetenv("TMP");
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
        return [ordinals](CSlucajOpterecenja& s) {
            OCArray<CLoadCaseFactor> f;
            for (int o : ordinals)
                f.Add(CLoadCaseFactor(o, 1.0));
            CLoadCaseUnit u;
            u.Set(f, LCU_LINEARNA);
            s.PostaviSRSS(u);
        };
    }

    static CLoadCaseUnit Unit(std::initializer_list<std::pair<int, double>> faktori,
                              eKarakter karakter = LCU_LINEARNA) {
        CLoadCaseUnit u;
        for (const auto& [rb, f] : faktori)
            u.Factors().Add(CLoadCaseFactor(rb, f));
        u.SetKarakter(karakter);
        return u;
    }

    /// The warnings shown so far, by text.
    std::vector<CString> Upozorenja() const {
        std::vector<CString> tekstovi;
        for (const Poruka& p : m_poruke)
            tekstovi.push_back(p.tekst);
        return tekstovi;
    }

    RecordingHost m_host;
    std::vector<Poruka> m_poruke;
    std::deque<int> m_odgovori;
    std::vector<std::vector<int>> m_osvezavanja;
    std::vector<std::pair<CGeneralizedLoadCase, int>> m_promene;

private:
    std::optional<std::string> m_staroTmp;

    static int ZabeleziPromenu(const CGeneralizedLoadCase& glc, int flag) {
        if (s_pTest != nullptr)
            s_pTest->m_promene.emplace_back(glc, flag);
        return 1;
    }
    static inline ServicesTest* s_pTest = nullptr;
};

/// LoadCaseUnitToRedniBroj as the plain walk over all combinations, for comparison.
inline int RedniBrojDoslovno(const CLoadCaseUnit& u) {
    if (u.GetSize() == 1 && CToler::Jednaki(u.GetLoadCaseFactor(0).GetFaktor(), 1.0))
        return u.GetLoadCaseFactor(0).GetLCRedniBroj();
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    const int nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    int rezultat = 0;
    for (CId id = bm.GetFirst(); id.Valid() && rezultat == 0; id = bm.GetNext()) {
        const auto& item = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id))->Item();
        OCArray<CLoadCaseFactor> lista;
        for (int k = 0; k < item.GetBrojOsnOpt(); ++k) {
            double koef = 0.0;
            CId sl;
            item.GetOsnOptByIndex(k, koef, sl);
            if (CToler::Jednaki(koef, 0.0) || !sl.Valid())
                continue;
            lista.Add(CLoadCaseFactor(
                dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(sl))->DajRedniBroj(), koef));
        }
        CLoadCaseFactor::SortLoadCaseFactorArray(lista);
        if (lista.GetSize() != u.GetSize())
            continue;
        bool isti = true;
        for (int i = 0; i < lista.GetSize() && isti; ++i)
            isti = lista[i].GetLCRedniBroj() == u.GetLoadCaseFactor(i).GetLCRedniBroj() &&
                   !CToler::Razliciti(lista[i].GetFaktor(), u.GetLoadCaseFactor(i).GetFaktor());
        if (isti)
            rezultat = nSlOpt + item.GetRedniBroj();
    }
    bm.Close();
    return rezultat;
}
