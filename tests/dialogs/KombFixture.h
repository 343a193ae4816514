#pragma once
// A document for the tests of the combination editor and its dialogs: load cases put into the
// store, a scripted user, the model file bytes by which a test sees that undo brings the model
// back, and the admissible subsets as the rules read literally (every candidate subset in
// increasing binary order, each rule checked from the side of each member).
#include "EditoriFixture.h"
#include "dialogs/DlgKombOpt.h"

#include <algorithm>
#include <functional>
#include <random>
#include <unordered_map>
#include <vector>

class KombTest : public EditoriTest {
protected:
    /// Runs the editor through the module's command; the scene acts in it.
    void Editor(const std::function<void(CDlgKombOpt&)>& scena) {
        Ocekuj<CDlgKombOpt>(1002, scena);
        COpterecenjeApp::OnKombinacijeOpterecenja();
        ScenarioOdigran();
    }
    /// The names of the combinations of a list, in order.
    static std::vector<CString> Nazivi(const CKombOptItemArray& lista) {
        std::vector<CString> nazivi;
        for (int i = 0; i < lista.GetSize(); ++i)
            nazivi.push_back(lista[i].GetNaziv());
        return nazivi;
    }
    /// Every combination's entries as text, "k:coefficient" with k the load case's place in
    /// ids from 1 (0 for one not there).
    static std::vector<CString> Clanovi(const CKombOptItemArray& lista,
                                        const std::vector<CId>& ids) {
        std::vector<CString> clanovi;
        for (int i = 0; i < lista.GetSize(); ++i) {
            CString tekst;
            for (int e = 0; e < lista[i].GetBrojOsnOpt(); ++e) {
                double koef = 0.0;
                CId id;
                lista[i].GetOsnOptByIndex(e, koef, id);
                const auto k = std::find(ids.begin(), ids.end(), id) - ids.begin();
                tekst +=
                    CString::Formatted(L"%s%d:%g", e > 0 ? L" " : L"",
                                       k < static_cast<long>(ids.size()) ? int(k) + 1 : 0, koef);
            }
            clanovi.push_back(tekst);
        }
        return clanovi;
    }
};

/// The admissible subsets of the list by the literal walk (N up to 31): every candidate from 1
/// up, at most 32768 kept; `prepunjen` when the 32768th was kept.
inline std::vector<uint32_t> DoslovniPodskupovi(const CSlOptItemArray& s, bool& prepunjen) {
    const int n = s.GetSize();
    std::unordered_map<int32_t, int> poIdu;
    for (int k = n - 1; k >= 0; --k)
        poIdu[s[k].m_Id.GetValue()] = k;
    auto maska = [&](const OCArray<CId>& ids) {
        uint32_t m = 0;
        for (const CId& id : ids)
            if (const auto it = poIdu.find(id.GetValue()); it != poIdu.end())
                m |= 1u << it->second;
        return m;
    };
    uint32_t stalni = 0, iskljuceni = 0;
    std::vector<uint32_t> nikad, uvek;
    for (int k = 0; k < n; ++k) {
        nikad.push_back(maska(s[k].m_arrNeKombinujSa));
        uvek.push_back(maska(s[k].m_arrUvekKombinujSa));
        if (s[k].m_bStalno != 0)
            stalni |= 1u << k;
        if (s[k].m_dKoeficijent == 0.0 || s[k].m_bUticajnaLinija != 0)
            iskljuceni |= 1u << k;
    }
    std::vector<uint32_t> redovi;
    prepunjen = false;
    for (uint64_t kandidat = 1; kandidat < (uint64_t{1} << n); ++kandidat) {
        const auto S = static_cast<uint32_t>(kandidat);
        bool ok = (S & stalni) == stalni && (S & iskljuceni & ~stalni) == 0;
        for (int k = 0; k < n && ok; ++k)
            if ((S >> k & 1u) != 0)
                ok = (S & nikad[static_cast<size_t>(k)]) == 0 &&
                     (S & uvek[static_cast<size_t>(k)]) == uvek[static_cast<size_t>(k)];
        if (!ok)
            continue;
        redovi.push_back(S);
        if (redovi.size() == 32768) {
            prepunjen = true;
            break;
        }
    }
    return redovi;
}

/// A random load case list of n cases with ids 1..n: zero coefficients, influence lines,
/// permanent and alternating cases, never and always rules (some naming no load case).
inline CSlOptItemArray SlucajniSlucajevi(std::mt19937& rng, int n) {
    std::uniform_real_distribution<double> p(0.0, 1.0);
    // Up to about three never-combine rules and one always-combine rule per load case, most
    // models far fewer.
    const double gustina = p(rng) * p(rng);
    const double pNikad = gustina * 3.0 / n;
    const double pUvek = gustina * 1.0 / n;
    CSlOptItemArray s;
    for (int k = 0; k < n; ++k) {
        OCArray<CId> nikad, uvek;
        for (int j = 0; j <= n; ++j) {
            const CId id(j == n ? 1000 : j + 1);
            if (p(rng) < pNikad)
                nikad.Add(id);
            if (p(rng) < pUvek)
                uvek.Add(id);
        }
        const double koef = p(rng) < 0.08 ? 0.0 : 1.5;
        s.AddNew(CString::Formatted(L"S%d", k + 1), k + 1, 0, 0, p(rng) < 0.04 ? 1 : 0, CId(k + 1),
                 koef, p(rng) < 0.05 ? 1 : 0, p(rng) < 0.3 ? 1 : 0, nikad, uvek, 0);
    }
    return s;
}
