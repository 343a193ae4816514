// The editor's sort and duplicate removal: the same order and the same survivors as the
// literal algorithms (every pair compared through CKombOptItem::Uporedi), on lists where many
// combinations are equal and differ only in name.
#include "KombFixture.h"

#include "dialogs/KombSortiranje.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// The literal sort: for every k, every m before it, exchange when item k sorts (D=+1) before
/// or (D=-1) after item m.
void DoslovnoSortiranje(CKombOptItemArray& l, int d) {
    for (int k = 0; k < l.GetSize(); ++k)
        for (int m = 0; m < k; ++m)
            if (l[k].Uporedi(l[m]) == d) {
                const CKombOptItem t = l[k];
                l[k] = l[m];
                l[m] = t;
            }
}

/// The literal duplicate removal.
void DoslovnoIzbacivanje(CKombOptItemArray& l) {
    for (int i = 0; i < l.GetSize(); ++i)
        for (int j = i + 1; j < l.GetSize();) {
            if (l[i].Uporedi(l[j]) != 0) {
                ++j;
            } else if (l[j].IsGenericName() != 0 ||
                       (l[i].IsGenericName() == 0 &&
                        l[i].GetNaziv().size() >= l[j].GetNaziv().size())) {
                l.RemoveAt(j);
            } else {
                l.RemoveAt(i);
                j = i + 1;
            }
        }
}

} // namespace

TEST_F(KombTest, SortAndDuplicateRemovalAgreeWithTheLiteralAlgorithms) {
    // Load case ordinals deliberately not in the order of their ids.
    std::vector<CId> sl;
    CRedniBrojeviSlOpt redniBrojevi;
    for (const int r : {3, 1, 4, 2}) {
        sl.push_back(AddLoadCase(L"S", r));
        redniBrojevi.Postavi(sl.back(), r);
    }
    // A small pool of distinct combinations (the same cases in another entry order, a zero
    // coefficient, -0.0 equal to 0.0) makes most of a list equal to something else in it.
    // clang-format off
    const std::vector<std::vector<std::pair<int, double>>> bazen = {
        {{0, 1.0}}, {{1, 1.0}}, {{1, 1.5}}, {{0, 1.0}, {1, 1.5}}, {{1, 1.5}, {0, 1.0}},
        {{2, 0.0}, {3, 1.0}}, {{2, -0.0}, {3, 1.0}}, {{0, 1.0}, {2, -1.5}},
        {{3, 1.35}, {0, 1.0}, {1, 1.5}}, {}};
    // clang-format on
    std::mt19937 rng(7);
    for (int lista = 0; lista < 300; ++lista) {
        const int n = 1 + static_cast<int>(rng() % 120);
        const int raznih = 1 + static_cast<int>(rng() % bazen.size());
        CKombOptItemArray l;
        for (int i = 0; i < n; ++i) {
            CKombOptItem item;
            for (const auto& [k, koef] : bazen[rng() % static_cast<unsigned>(raznih)])
                item.DodajOsnOpt(koef, sl[static_cast<size_t>(k)]);
            // Unique names of a few lengths; some generated.
            item.SetNaziv(CString::Formatted(L"K%d", i) + CString(rng() % 3, L'x'));
            if (rng() % 3 == 0)
                item.PostaviGenerickiNaziv(item.GetNaziv());
            l.AddNew(item);
        }
        for (const int d : {1, -1}) {
            CKombOptItemArray ocekivano = l;
            DoslovnoSortiranje(ocekivano, d);
            std::vector<CString> dobijeno;
            for (const int i : kombsort::PoredakPosleSortiranja(l, redniBrojevi, d))
                dobijeno.push_back(l[i].GetNaziv());
            ASSERT_EQ(dobijeno, Nazivi(ocekivano)) << "list " << lista << ", direction " << d;
        }
        CKombOptItemArray ocekivano = l;
        DoslovnoIzbacivanje(ocekivano);
        const std::vector<bool> ostaje = kombsort::PosleIzbacivanjaDuplikata(l, redniBrojevi);
        std::vector<CString> dobijeno;
        for (int i = 0; i < n; ++i)
            if (ostaje[static_cast<size_t>(i)])
                dobijeno.push_back(l[i].GetNaziv());
        ASSERT_EQ(dobijeno, Nazivi(ocekivano)) << "list " << lista;
    }
}
