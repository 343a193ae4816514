// The admissible subsets of load cases and the count of possible combinations: the same
// subsets, in the same order, as the literal walk over every candidate.
#include "KombFixture.h"

#include "dialogs/KombPodskupovi.h"

#include <gtest/gtest.h>

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
    struct Slucaj {
        int n;
        int redova;
        bool prepunjena;
    };
    // 2^N - 1 subsets without rules; 64 and 70 cases fill the rows with the lowest cases.
    for (const Slucaj& c : {Slucaj{15, 32767, false}, Slucaj{16, 32768, true},
                            Slucaj{64, 32768, true}, Slucaj{70, 32768, true}}) {
        CSlOptItemArray s;
        for (int k = 0; k < c.n; ++k)
            s.AddNew(L"S", k + 1, 0, 0, 0, CId(k + 1));
        // The last case must be combined with the first: every subset holding it needs case 0.
        s[c.n - 1].m_arrUvekKombinujSa.Add(CId(1));
        CTabelaPodskupova t;
        t.PostaviPravila(s);
        t.Nabroji(s);
        EXPECT_EQ(t.BrojReci(), (c.n + 31) / 32);
        EXPECT_EQ(t.Prepunjena(), c.prepunjena) << c.n;
        if (c.n < 16) {
            EXPECT_EQ(t.BrojRedova(), (1 << (c.n - 1)) - 1 + (1 << (c.n - 2)));
            continue;
        }
        ASSERT_EQ(t.BrojRedova(), c.redova);
        // Row i is the binary number i + 1, but that 16 cases skip the last case alone.
        for (const int r : {0, 1, 4095, 32767}) {
            const int broj = r == 32767 && c.n == 16 ? 32769 : r + 1;
            EXPECT_EQ(t.Red(r)[0], static_cast<uint32_t>(broj));
            for (int w = 1; w < t.BrojReci(); ++w)
                EXPECT_EQ(t.Red(r)[w], 0u);
        }
    }
}
