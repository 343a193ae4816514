// The admissible subsets of load cases and the count of possible combinations: the same
// subsets, in the same order, as the literal walk over every candidate.
#include "KombFixture.h"

#include "dialogs/KombPodskupovi.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// The count by its definition: 2^a per subset with a alternating cases, 1 above 10.
int DoslovanBroj(const CSlOptItemArray& s, const std::vector<uint32_t>& redovi) {
    int ukupno = 0;
    for (const uint32_t S : redovi) {
        int a = 0;
        for (int k = 0; k < s.GetSize(); ++k)
            a += (S >> k & 1u) != 0 && s[k].m_bAlternativno != 0 ? 1 : 0;
        ukupno += a <= 10 ? 1 << a : 1;
    }
    return ukupno;
}

std::vector<uint32_t> Redovi(const CTabelaPodskupova& t) {
    std::vector<uint32_t> redovi;
    for (int r = 0; r < t.BrojRedova(); ++r)
        redovi.push_back(t.Red(r)[0]);
    return redovi;
}

} // namespace

TEST(KombPodskupovi, RandomRulesGiveTheSubsetsOfTheLiteralWalkInItsOrder) {
    std::mt19937 rng(20240611);
    CTabelaPodskupova tabela;
    for (int model = 0; model < 400; ++model) {
        const int n = 1 + model % 20;
        CSlOptItemArray s = SlucajniSlucajevi(rng, n);
        if (model % 7 == 0) // many alternating cases: the count's limit of 10
            for (int k = 0; k < n; ++k)
                s[k].m_bAlternativno = 1;
        bool prepunjen = false;
        const std::vector<uint32_t> ocekivano = DoslovniPodskupovi(s, prepunjen);
        tabela.PostaviPravila(s);
        tabela.Nabroji(s);
        ASSERT_EQ(tabela.BrojReci(), 1);
        ASSERT_EQ(Redovi(tabela), ocekivano) << "model " << model << ", " << n << " cases";
        EXPECT_EQ(tabela.Prepunjena(), prepunjen);
        EXPECT_EQ(tabela.BrojMogucihKombinacija(s), DoslovanBroj(s, ocekivano));
    }
}

TEST(KombPodskupovi, TheTableKeepsTheFirst32768SubsetsOfAnyNumberOfLoadCases) {
    // Without rules the subsets are 1, 2, 3, ... in binary, of which 32768 are kept; with all
    // but the top ten cases left out (coefficient 0) they lie in the higher words.
    for (const auto& [n, iskljucenih] : {std::pair{15, 0}, {16, 0}, {64, 0}, {70, 60}}) {
        CSlOptItemArray s;
        for (int k = 0; k < n; ++k)
            s.AddNew(L"S", k + 1, 0, 0, 0, CId(k + 1), k < iskljucenih ? 0.0 : 1.0, 0, 0,
                     OCArray<CId>(), OCArray<CId>(), 0);
        CTabelaPodskupova t;
        t.PostaviPravila(s);
        t.Nabroji(s);
        const int64_t svih = (int64_t{1} << std::min(n - iskljucenih, 40)) - 1;
        EXPECT_EQ(t.BrojReci(), (n + 31) / 32);
        EXPECT_EQ(t.BrojRedova(), std::min<int64_t>(svih, 32768)) << n;
        EXPECT_EQ(t.Prepunjena(), svih >= 32768);
        for (const int r : {0, 1, t.BrojRedova() - 1}) {
            std::vector<uint32_t> ocekivano(static_cast<size_t>(t.BrojReci()), 0u);
            for (int b = 0; b < 31; ++b)
                if ((r + 1) >> b & 1)
                    ocekivano[static_cast<size_t>(iskljucenih + b) / 32] |=
                        1u << ((iskljucenih + b) % 32);
            EXPECT_EQ(std::vector<uint32_t>(t.Red(r), t.Red(r) + t.BrojReci()), ocekivano);
        }
    }
}
