#pragma once
// Lookups that the load services build once per call, so that one refresh of the results
// selector can ask about thousands of loads without walking every combination for each of
// them. They give exactly the answers of the plain walks (the first matching combination in
// store order, the same assertions on unreadable records); only the work is shared.
#include "framework/Array.h"
#include "model/LoadCaseDescriptions.h"
#include "objbase/BaseManager.h"

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace opterecenje {

/// The ordinal of every stored load case by its id.
class CRedniBrojeviSlucajeva {
public:
    /// Reads every load case through a view open for reading.
    explicit CRedniBrojeviSlucajeva(CBaseManager& bm);
    /// The ordinal of the load case with that id, or null when no load case has it.
    const int* Nadji(const CId& id) const;

private:
    // Ids of a document are given from 1 upwards, so the load cases' ids usually lie close
    // together: then a table over their range, else a hash map.
    int32_t m_prviId = 0;
    std::vector<int> m_tabela;      // ordinal by id - m_prviId
    std::vector<char> m_imaUTabeli; // whether that id is a load case
    std::unordered_map<int32_t, int> m_rb;
};

/// The one-based ordinal that a unit stands for (LoadCaseUnitToRedniBroj): a single factor of
/// 1.0 names its own ordinal; otherwise the first combination, in store order, whose sorted
/// list of (load case ordinal, coefficient) agrees with the unit position by position gives
/// nSlOpt + its ordinal; no match gives 0.
///
/// Combinations are read lazily in store order and filed by the ordinals and the rounded
/// coefficients of their lists, so a later question finds its candidates at once; every
/// candidate is confirmed with the tolerance comparison itself. A combination is read (with
/// its assertions) only when the plain walk would have reached it.
class CIndeksKombinacija {
public:
    /// bm must stay open for reading while the index is used.
    CIndeksKombinacija(CBaseManager& bm, int nSlOpt, const CRedniBrojeviSlucajeva& slucajevi);

    int RedniBroj(const CLoadCaseUnit& unit);
    /// The same for the unit of the combination at the given place of the store order, when
    /// the unit holds every member of that combination (the list the plain walk makes of it):
    /// when that combination is the next one to be read, the unit is filed as its list
    /// instead of being read again.
    int RedniBrojKombinacije(const CLoadCaseUnit& unit, int mesto, int rbKombinacije);

private:
    struct Slot {
        uint64_t kljuc = 0;
        int prvi = -1;      // the first combination of the key, -1: empty slot
        int poslednji = -1; // the last one
    };
    struct Sused {
        int pozicija;  // a coefficient close to a boundary between steps
        double sOve;   // its step
        double sDruge; // the step on the other side of the boundary
    };

    /// Reads the next combination of the store order and files it; returns its place.
    int Skeniraj();
    /// Files the next combination with its ordinal and its sorted list.
    void Upisi(int rbKombinacije, const OCArray<CLoadCaseFactor>& lista);
    bool Poklapa(int mesto, const CLoadCaseUnit& unit) const;
    /// Place of the first combination read so far that agrees with the unit, or -1.
    int NadjiMedjuProcitanim(const CLoadCaseUnit& unit);
    /// Place of the first combination that agrees with the unit, or -1.
    int Nadji(const CLoadCaseUnit& unit);
    /// The keys under which a combination that agrees with the unit can be filed (into
    /// m_kljucevi); false when the unit cannot be looked up by key (a coefficient that is not
    /// finite, or too many coefficients close to a rounding boundary).
    bool KljuceviZaTrazenje(const CLoadCaseUnit& unit);
    Slot& SlotKljuca(uint64_t kljuc);

    CBaseManager& m_bm;
    int m_nSlOpt;
    const CRedniBrojeviSlucajeva& m_slucajevi;
    std::vector<CId> m_ids;             // every combination in store order
    int m_nSkenirano = 0;               // how many of them have been read
    std::vector<int> m_rb;              // own ordinal of each read combination
    std::vector<size_t> m_pocetak;      // where its list starts in the two arrays below
    std::vector<int> m_redniBrojevi;    // load case ordinals of the lists
    std::vector<double> m_koeficijenti; // coefficients of the lists
    // Combinations by key, an open-addressing table; for each combination the next one of its
    // key (-1 at the end), in store order.
    std::vector<Slot> m_slotovi;
    std::vector<int> m_sledeci;
    // scratch space, kept between questions
    OCArray<CLoadCaseFactor> m_lista;
    std::vector<double> m_zaokruzeni;
    std::vector<int> m_rbUpita;
    std::vector<Sused> m_susedi;
    std::vector<uint64_t> m_kljucevi;
};

/// What the results selector needs to know about envelopes: whether the generalized load case
/// of an envelope can be built, and whether any of its units stands for a load marked
/// unstable. Builds the answers the way the envelope builds its generalized load case and the
/// way LoadCaseUnitToRedniBroj numbers a unit, sharing the work between envelopes.
class CProveraAnvelopa {
public:
    struct Stanje {
        bool bNeuspeh = false; ///< the generalized load case cannot be built
        bool bLabilna = false; ///< one of its units stands for an unstable load
    };

    CProveraAnvelopa();
    ~CProveraAnvelopa();
    CProveraAnvelopa(const CProveraAnvelopa&) = delete;
    CProveraAnvelopa& operator=(const CProveraAnvelopa&) = delete;

    Stanje Proveri(int brojAnvelope);

private:
    /// Whether the envelope's unit for the selected global ordinal g stands for an unstable
    /// load.
    bool LabilanClan(int g);

    CBaseManager m_bm;
    int m_nSlOpt = 0;
    int m_nKomb = 0;
    CRedniBrojeviSlucajeva m_slucajevi;
    CIndeksKombinacija m_indeks;
    std::unordered_map<int, CId> m_anvelope; // number -> the first envelope of that number
    std::unordered_set<int> m_labilni;
    // Every combination as (own ordinal, place in store order, id), by ordinal and within one
    // ordinal in store order; read when first needed.
    struct Kombinacija {
        int rb;
        int mesto;
        CId id;
    };
    std::vector<Kombinacija> m_kombinacije;
    bool m_bKombinacije = false;
    std::vector<signed char> m_labilanClan; // by global ordinal: -1 not known yet, 0, 1
    OCArray<CLoadCaseFactor> m_faktori;
    CLoadCaseUnit m_unit;
};

} // namespace opterecenje
