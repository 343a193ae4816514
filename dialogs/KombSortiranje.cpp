// The sort order and the duplicates of the combination editor's list.
#include "dialogs/KombSortiranje.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <deque>
#include <limits>
#include <numeric>

namespace {

/// The ordering key of every combination: its load case ordinals and coefficients, entry by
/// entry, in one flat array.
class Kljucevi {
public:
    Kljucevi(const CKombOptItemArray& lista, const CRedniBrojeviSlOpt& redniBrojevi) {
        const int n = lista.GetSize();
        size_t ukupno = 0;
        for (int i = 0; i < n; ++i)
            ukupno += static_cast<size_t>(lista[i].GetBrojOsnOpt());
        m_clanovi.reserve(ukupno);
        m_pocetak.reserve(static_cast<size_t>(n) + 1);
        m_pocetak.push_back(0);
        for (int i = 0; i < n; ++i) {
            const CKombOptItem& item = lista[i];
            for (int e = 0; e < item.GetBrojOsnOpt(); ++e) {
                double koef = 0.0;
                CId id;
                item.GetOsnOptByIndex(e, koef, id);
                int r = INT_MAX;
                if (!redniBrojevi.Nadji(id, r))
                    r = INT_MAX;
                // A coefficient that is not a number (no editor lets one through) sorts as
                // infinity, so that the order stays an order.
                if (std::isnan(koef))
                    koef = std::numeric_limits<double>::infinity();
                m_clanovi.push_back({r, koef});
            }
            m_pocetak.push_back(static_cast<int>(m_clanovi.size()));
        }
    }

    /// As CKombOptItem::Uporedi: 1 when a sorts before b, -1 after, 0 equal.
    int Uporedi(int a, int b) const {
        const int na = Broj(a);
        const int nb = Broj(b);
        if (na != nb)
            return na < nb ? 1 : -1;
        const Clan* pa = m_clanovi.data() + m_pocetak[static_cast<size_t>(a)];
        const Clan* pb = m_clanovi.data() + m_pocetak[static_cast<size_t>(b)];
        for (int e = 0; e < na; ++e) {
            if (pa[e].redniBroj != pb[e].redniBroj)
                return pb[e].redniBroj > pa[e].redniBroj ? 1 : -1;
            if (pa[e].koef != pb[e].koef)
                return pb[e].koef > pa[e].koef ? 1 : -1;
        }
        return 0;
    }

private:
    struct Clan {
        int redniBroj;
        double koef;
    };
    int Broj(int i) const {
        return m_pocetak[static_cast<size_t>(i) + 1] - m_pocetak[static_cast<size_t>(i)];
    }
    std::vector<int> m_pocetak;
    std::vector<Clan> m_clanovi;
};

/// The run of equal combinations every combination belongs to, runs numbered in sort order
/// from 0; `poRedu` receives the indices in sort order (equal ones in list order).
std::vector<int> Razredi(const Kljucevi& kljucevi, int n, std::vector<int>& poRedu,
                         int& brojRazreda) {
    poRedu.resize(static_cast<size_t>(n));
    std::iota(poRedu.begin(), poRedu.end(), 0);
    std::sort(poRedu.begin(), poRedu.end(), [&](int a, int b) {
        const int u = kljucevi.Uporedi(a, b);
        return u == 1 || (u == 0 && a < b);
    });
    std::vector<int> razred(static_cast<size_t>(n));
    brojRazreda = 0;
    for (int p = 0; p < n; ++p) {
        if (p > 0 && kljucevi.Uporedi(poRedu[static_cast<size_t>(p) - 1],
                                      poRedu[static_cast<size_t>(p)]) != 0)
            ++brojRazreda;
        razred[static_cast<size_t>(poRedu[static_cast<size_t>(p)])] = brojRazreda;
    }
    if (n > 0)
        ++brojRazreda;
    return razred;
}

/// Counts of items by run, with sums over the runs below a given one.
class Brojac {
public:
    explicit Brojac(int n) : m_stablo(static_cast<size_t>(n) + 1, 0) {}
    void Dodaj(int razred) {
        for (size_t i = static_cast<size_t>(razred) + 1; i < m_stablo.size(); i += i & (~i + 1))
            ++m_stablo[i];
    }
    /// How many items of runs below `razred` were counted.
    int Ispod(int razred) const {
        int zbir = 0;
        for (size_t i = static_cast<size_t>(razred); i > 0; i -= i & (~i + 1))
            zbir += m_stablo[i];
        return zbir;
    }

private:
    std::vector<int> m_stablo;
};

/// Turns a run by r: r times its first member goes to its end.
void Okreni(std::deque<int>& red, int r) {
    const auto n = static_cast<int>(red.size());
    if (n < 2)
        return;
    r %= n;
    if (r <= n - r) {
        for (; r > 0; --r) {
            red.push_back(red.front());
            red.pop_front();
        }
    } else {
        for (r = n - r; r > 0; --r) {
            red.push_front(red.back());
            red.pop_back();
        }
    }
}

} // namespace

namespace kombsort {

std::vector<int> PoredakPosleSortiranja(const CKombOptItemArray& lista,
                                        const CRedniBrojeviSlOpt& redniBrojevi, int smer) {
    const int n = lista.GetSize();
    const Kljucevi kljucevi(lista, redniBrojevi);
    std::vector<int> poRedu;
    int brojRazreda = 0;
    std::vector<int> razred = Razredi(kljucevi, n, poRedu, brojRazreda);
    if (smer < 0) {
        // Descending: the same walk with the order turned round.
        for (int& r : razred)
            r = brojRazreda - 1 - r;
    }

    // For every combination, how many of a lower run came before it; for every run, how many
    // of a lower run came in all.
    Brojac brojac(brojRazreda);
    std::vector<int> nizih(static_cast<size_t>(n));
    std::vector<std::vector<int>> clanovi(static_cast<size_t>(brojRazreda));
    for (int i = 0; i < n; ++i) {
        const int r = razred[static_cast<size_t>(i)];
        nizih[static_cast<size_t>(i)] = brojac.Ispod(r);
        brojac.Dodaj(r);
        clanovi[static_cast<size_t>(r)].push_back(i);
    }

    std::vector<int> poredak;
    poredak.reserve(static_cast<size_t>(n));
    std::deque<int> red;
    for (int r = 0; r < brojRazreda; ++r) {
        const std::vector<int>& c = clanovi[static_cast<size_t>(r)];
        red.clear();
        for (size_t j = 0; j < c.size(); ++j) {
            if (j > 0)
                Okreni(red,
                       nizih[static_cast<size_t>(c[j])] - nizih[static_cast<size_t>(c[j - 1])]);
            red.push_back(c[j]);
        }
        if (!c.empty())
            Okreni(red, brojac.Ispod(r) - nizih[static_cast<size_t>(c.back())]);
        poredak.insert(poredak.end(), red.begin(), red.end());
    }
    return poredak;
}

std::vector<bool> PosleIzbacivanjaDuplikata(const CKombOptItemArray& lista,
                                            const CRedniBrojeviSlOpt& redniBrojevi) {
    const int n = lista.GetSize();
    const Kljucevi kljucevi(lista, redniBrojevi);
    std::vector<int> poRedu;
    int brojRazreda = 0;
    const std::vector<int> razred = Razredi(kljucevi, n, poRedu, brojRazreda);

    // Every run keeps one member: the first in list order, replaced by a later one with a
    // user-given name when the kept one's name is generated or strictly shorter.
    std::vector<int> zadrzan(static_cast<size_t>(brojRazreda), -1);
    for (int i = 0; i < n; ++i) {
        int& z = zadrzan[static_cast<size_t>(razred[static_cast<size_t>(i)])];
        if (z < 0) {
            z = i;
            continue;
        }
        const CKombOptItem& kandidat = lista[i];
        const CKombOptItem& dosad = lista[z];
        if (kandidat.IsGenericName() != 0)
            continue;
        if (dosad.IsGenericName() != 0 || dosad.GetNaziv().size() < kandidat.GetNaziv().size())
            z = i;
    }
    std::vector<bool> ostaje(static_cast<size_t>(n), false);
    for (const int z : zadrzan)
        ostaje[static_cast<size_t>(z)] = true;
    return ostaje;
}

} // namespace kombsort
