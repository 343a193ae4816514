// The admissible subsets of load cases: the rule sets, their closures and the enumeration
// in increasing binary order.
#include "dialogs/KombPodskupovi.h"

#include "diag/Assert.h"
#include "dialog/WaitIndicator.h"
#include "text/Translator.h"

#include <algorithm>
#include <bit>
#include <unordered_map>

namespace {

void Ili(uint32_t* u, const uint32_t* x, int w) {
    for (int i = 0; i < w; ++i)
        u[i] |= x[i];
}

bool Disjunktni(const uint32_t* a, const uint32_t* b, int w) {
    for (int i = 0; i < w; ++i)
        if ((a[i] & b[i]) != 0)
            return false;
    return true;
}

bool Ima(const uint32_t* s, int k) {
    return (s[k / 32] >> (k % 32) & 1u) != 0;
}

void Stavi(uint32_t* s, int k) {
    s[k / 32] |= 1u << (k % 32);
}

/// Calls f(k) for every member k of the set.
template <class F> void ZaSvaki(const uint32_t* s, int w, F&& f) {
    for (int i = 0; i < w; ++i)
        for (uint32_t bitovi = s[i]; bitovi != 0; bitovi &= bitovi - 1)
            f(i * 32 + std::countr_zero(bitovi));
}

} // namespace

void CTabelaPodskupova::PostaviPravila(const CSlOptItemArray& slucajevi) {
    const int nSlOpt = slucajevi.GetSize();
    VASSERT(nSlOpt > 0);
    m_nSlucajeva = nSlOpt;
    m_nReci = (nSlOpt + 31) / 32;
    const int w = m_nReci;
    const size_t velicina = Mesto(nSlOpt);

    std::unordered_map<int32_t, int> poIdu;
    for (int k = nSlOpt - 1; k >= 0; --k)
        poIdu[slucajevi[k].m_Id.GetValue()] = k;
    // The direct rules: never-combine made symmetric (the rule is checked from the side of
    // every member), always-combine as written.
    Skup nikad(velicina, 0u);
    Skup uvek(velicina, 0u);
    m_stalni.assign(static_cast<size_t>(w), 0u);
    for (int k = 0; k < nSlOpt; ++k) {
        const CSlOptItem& s = slucajevi[k];
        for (const CId& id : s.m_arrNeKombinujSa) {
            if (const auto it = poIdu.find(id.GetValue()); it != poIdu.end()) {
                Stavi(Skupa(nikad, k), it->second);
                Stavi(Skupa(nikad, it->second), k);
            }
        }
        for (const CId& id : s.m_arrUvekKombinujSa) {
            if (const auto it = poIdu.find(id.GetValue()); it != poIdu.end())
                Stavi(Skupa(uvek, k), it->second);
        }
        if (s.m_bStalno != 0)
            Stavi(m_stalni.data(), k);
    }

    // Closures: a case and everything it must be combined with, directly or through others;
    // and the reverse, every case that must be combined with it.
    m_uvek.assign(velicina, 0u);
    m_zavisni.assign(velicina, 0u);
    std::vector<int> red;
    for (int k = 0; k < nSlOpt; ++k) {
        uint32_t* z = Skupa(m_uvek, k);
        Stavi(z, k);
        red.assign(1, k);
        while (!red.empty()) {
            const int m = red.back();
            red.pop_back();
            ZaSvaki(Skupa(uvek, m), w, [&](int j) {
                if (!Ima(z, j)) {
                    Stavi(z, j);
                    red.push_back(j);
                }
            });
        }
        ZaSvaki(z, w, [&](int j) { Stavi(Skupa(m_zavisni, j), k); });
    }
    // What a case in forces out: the never-combine partners of everything it brings in, and
    // every case that needs one of those.
    m_uzUvek.assign(velicina, 0u);
    Skup partneri(static_cast<size_t>(w));
    for (int k = 0; k < nSlOpt; ++k) {
        std::fill(partneri.begin(), partneri.end(), 0u);
        ZaSvaki(Skupa(m_uvek, k), w, [&](int m) { Ili(partneri.data(), Skupa(nikad, m), w); });
        DodajZavisne(partneri.data(), Skupa(m_uzUvek, k));
    }

    m_redovi.assign(static_cast<size_t>(kMaxRedova) * static_cast<size_t>(w), 0u);
    m_nRedova = 0;
    m_bPrepunjena = false;
}

void CTabelaPodskupova::DodajZavisne(const uint32_t* x, uint32_t* u) const {
    ZaSvaki(x, m_nReci, [&](int j) { Ili(u, Skupa(m_zavisni, j), m_nReci); });
}

bool CTabelaPodskupova::Zapamti(const uint32_t* skup) {
    std::copy_n(skup, m_nReci, m_redovi.data() + Mesto(m_nRedova));
    if (++m_nRedova == kMaxRedova) {
        m_bPrepunjena = true;
        return false;
    }
    return true;
}

void CTabelaPodskupova::Nabroji(const CSlOptItemArray& slucajevi) {
    const int n = m_nSlucajeva;
    const int w = m_nReci;
    VASSERT(n > 0 && slucajevi.GetSize() == n);
    if (m_redovi.size() != Mesto(kMaxRedova))
        m_redovi.assign(Mesto(kMaxRedova), 0u);
    std::fill_n(m_redovi.begin(), Mesto(m_nRedova), 0u);
    m_nRedova = 0;
    m_bPrepunjena = false;
    CWaitProgress cekanje(ClTranslator::Translate(L"Nabrajanje kombinacija..."));

    // Level l decides load case n-1-l; u[l] and van[l] hold the cases forced in and out
    // before that decision.
    Skup u(Mesto(n + 1), 0u);
    Skup van(Mesto(n + 1), 0u);
    uint32_t* u0 = u.data();
    uint32_t* van0 = van.data();
    Skup iskljuceni(static_cast<size_t>(w), 0u);
    for (int k = 0; k < n; ++k) {
        const CSlOptItem& s = slucajevi[k];
        if (Ima(m_stalni.data(), k)) {
            Ili(u0, Skupa(m_uvek, k), w);
            Ili(van0, Skupa(m_uzUvek, k), w);
        } else if (s.m_dKoeficijent == 0.0 || s.m_bUticajnaLinija != 0) {
            Stavi(iskljuceni.data(), k);
        }
    }
    DodajZavisne(iskljuceni.data(), van0);
    if (!Disjunktni(u0, van0, w))
        return;

    // korak[l]: 0 entering the level, 1 after "out" was tried, 2 done.
    std::vector<uint8_t> korak(static_cast<size_t>(n) + 1, 0);
    int l = 0;
    int64_t posete = 0;
    while (l >= 0) {
        cekanje.Step(++posete);
        uint32_t* ul = u.data() + Mesto(l);
        uint32_t* vl = van.data() + Mesto(l);
        if (l == n) {
            // Every case decided: the cases in form the subset (the empty one never counts).
            const bool prazan = std::all_of(ul, ul + w, [](uint32_t x) { return x == 0; });
            if (!prazan && !Zapamti(ul))
                return;
            --l;
            continue;
        }
        uint32_t* un = ul + w;
        uint32_t* vn = vl + w;
        const int b = n - 1 - l;
        auto& k = korak[static_cast<size_t>(l)];
        if (k == 0 && (Ima(ul, b) || Ima(vl, b))) {
            // Already forced: the only way on.
            k = 2;
            std::copy_n(ul, w, un);
            std::copy_n(vl, w, vn);
            korak[static_cast<size_t>(l) + 1] = 0;
            ++l;
            continue;
        }
        if (k == 0) {
            k = 1;
            std::copy_n(ul, w, un);
            std::copy_n(vl, w, vn);
            Ili(vn, Skupa(m_zavisni, b), w);
            if (Disjunktni(un, vn, w)) {
                korak[static_cast<size_t>(l) + 1] = 0;
                ++l;
                continue;
            }
        }
        if (k == 1) {
            k = 2;
            std::copy_n(ul, w, un);
            std::copy_n(vl, w, vn);
            Ili(un, Skupa(m_uvek, b), w);
            Ili(vn, Skupa(m_uzUvek, b), w);
            if (Disjunktni(un, vn, w)) {
                korak[static_cast<size_t>(l) + 1] = 0;
                ++l;
                continue;
            }
        }
        --l;
    }
}

int CTabelaPodskupova::BrojMogucihKombinacija(const CSlOptItemArray& slucajevi) const {
    Skup alternativni(static_cast<size_t>(m_nReci), 0u);
    for (int k = 0; k < std::min(m_nSlucajeva, slucajevi.GetSize()); ++k)
        if (slucajevi[k].m_bAlternativno != 0)
            Stavi(alternativni.data(), k);
    int ukupno = 0;
    for (int r = 0; r < m_nRedova; ++r) {
        const uint32_t* s = Red(r);
        int a = 0;
        for (int i = 0; i < m_nReci; ++i)
            a += std::popcount(s[i] & alternativni[static_cast<size_t>(i)]);
        ukupno += a <= 10 ? 1 << a : 1;
    }
    return ukupno;
}

void CTabelaPodskupova::Oslobodi() {
    Skup().swap(m_redovi);
    m_nRedova = 0;
    m_bPrepunjena = false;
}
