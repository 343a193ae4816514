#pragma once
// CTabelaPodskupova: the admissible subsets of load cases from which the combination editor
// generates combinations.
//
// Load case k (its position in the editor's load case list) is bit k of a subset; a subset is
// a bit set of W = ceil(N/32) 32-bit words, bit k in word k/32 at bit k%32. A non-empty subset
// S is admissible when
//   - it holds every permanent load case (PERM),
//   - it holds no load case with coefficient exactly 0.0 and no influence-line load case,
//     unless that case is permanent,
//   - no member k has a member in its never-combine set NEVER[k],
//   - every member k has all of its always-combine set ALWAYS[k] in S.
// The table keeps the first 32768 admissible subsets in increasing binary order (load case 0
// the lowest bit); when all 32768 rows fill, it is marked overflowing and holds no more.
//
// The rules are clauses of at most two load cases each, every one with at most one case that
// must be present: whatever the cases decided so far force in and out, the set of the cases
// forced in is itself admissible. So the subsets are found by deciding the load cases from
// the highest down, "out" before "in", each choice propagated through the rules at once; a
// choice that contradicts what is forced is never followed, and every choice followed leads
// to at least one admissible subset. The work is proportional to the subsets kept, not to the
// 2^N candidates, and the order is the increasing binary order.
#include "model/SlOptItem.h"

#include <cstdint>
#include <vector>

class CTabelaPodskupova {
public:
    static constexpr int kMaxRedova = 32768;

    /// Builds the rule sets from the never-combine and always-combine lists and the permanent
    /// flags of the load case list (ids that match no load case are skipped) and sizes the
    /// row store; an empty load case list is a fault of the caller (asserts).
    void PostaviPravila(const CSlOptItemArray& slucajevi);
    /// Finds the admissible subsets anew with the coefficients and influence-line flags of the
    /// list (whose load cases are those the rules were built for).
    void Nabroji(const CSlOptItemArray& slucajevi);
    /// The number of possible combinations: every subset counts 2^a for its a alternating load
    /// cases, or 1 when a is above 10.
    int BrojMogucihKombinacija(const CSlOptItemArray& slucajevi) const;
    /// Frees the rows.
    void Oslobodi();

    int BrojSlucajeva() const { return m_nSlucajeva; }
    int BrojReci() const { return m_nReci; }
    int BrojRedova() const { return m_nRedova; }
    /// True when all 32768 rows filled (there may be more admissible subsets).
    bool Prepunjena() const { return m_bPrepunjena; }
    /// Row i (0-based, below BrojRedova): BrojReci() words.
    const uint32_t* Red(int i) const { return m_redovi.data() + Mesto(i); }
    bool Sadrzi(int red, int slucaj) const {
        return (Red(red)[slucaj / 32] >> (slucaj % 32) & 1u) != 0;
    }

private:
    using Skup = std::vector<uint32_t>;
    size_t Mesto(int i) const { return static_cast<size_t>(i) * static_cast<size_t>(m_nReci); }
    uint32_t* Skupa(Skup& skupovi, int k) { return skupovi.data() + Mesto(k); }
    const uint32_t* Skupa(const Skup& skupovi, int k) const { return skupovi.data() + Mesto(k); }
    /// Adds to `u` every case whose always-combine closure holds a member of `x`: the cases
    /// that must be out when the members of x are out.
    void DodajZavisne(const uint32_t* x, uint32_t* u) const;
    /// Keeps a subset found; false once the rows are full.
    bool Zapamti(const uint32_t* skup);

    int m_nSlucajeva = 0;
    int m_nReci = 0;
    // Per load case, N sets of W words each:
    Skup m_uvek;    // the case and every case it must be combined with, directly or not
    Skup m_zavisni; // the case and every case that must be combined with it
    Skup m_uzUvek;  // what must be out when the case is in
    Skup m_stalni;  // PERM (one set)
    Skup m_redovi;  // the row store, kMaxRedova sets
    int m_nRedova = 0;
    bool m_bPrepunjena = false;
};
