#pragma once
// A model's loads as the interchange formats describe them (docs/json-format.md): load cases
// with every value a user sets, combinations, envelopes, the stored combination set and the
// stability parameters. Loads name each other by their place in the description, so a
// description holds no ids of the store; reading one from the store and writing one into it is
// all the formats need of the model.
#include "framework/String.h"
#include "model/SlucajOpterecenja.h"

#include <cstdint>
#include <optional>
#include <vector>

class CBaseManager;

namespace opterecenje::razmena {

/// One load case of a description with its weight: a coefficient of a combination, or the
/// weight of an SRSS case (whose unit keeps its square).
struct CClan {
    int32_t indeks = 0; // the load case's place in its list, from 0
    double koef = 0.0;
};

struct CSlucajOpisa {
    CString naziv;
    int g = 0;
    double koef = 1.0;
    int stalno = 0;
    int alternativno = 0;
    int seizmicki = 0;
    int ulaziUSeizmickiProracun = 0;
    int nda = 0;
    int tonovi = 0;
    eUticajUticajneLin uticaj = UL_NIJEDNA;
    std::vector<int32_t> nikad; // "Ne kombinuj sa", places of load cases
    std::vector<int32_t> uvek;  // "Uvek kombinuj sa"
    std::vector<CClan> srss;    // the weights of an SRSS case; empty for any other
};

/// A combination; its load cases are the range [prvi, prvi + broj) of its list's members.
struct CKombinacijaOpisa {
    CString naziv;
    bool generisan = false;
    uint32_t prvi = 0;
    uint32_t broj = 0;
};

/// Combinations with their members in one list, so that tens of thousands of them cost a few
/// allocations.
struct CKombinacijeOpisa {
    std::vector<CKombinacijaOpisa> lista;
    std::vector<CClan> clanovi;

    const CClan* Clanovi(const CKombinacijaOpisa& k) const { return clanovi.data() + k.prvi; }
};

struct CAnvelopaOpisa {
    CString naziv;
    CString izbor; // global ordinals, as in 1,3-5,12
    int mod = 0;
};

/// A load case as a stored combination set remembers it.
struct CUskladisteniSlucaj {
    CString naziv;
    int g = 0;
    int uticajna = 0;
};

/// The stored combination set: its combinations name the load cases of its snapshot.
struct CSkladisteOpisa {
    std::vector<CUskladisteniSlucaj> slucajevi;
    CKombinacijeOpisa kombinacije;
};

/// What a user sets in the stability dialog: the load cases that keep a fixed coefficient
/// (the others are multiplied by the critical multiplier), the combinations analysed, the
/// search range and accuracy of the multiplier and the beam torsion switch.
struct CStabilnostOpisa {
    double opseg = 1000.0;
    double tacnost = 0.1;
    int iskljucTorziju = 0;
    std::vector<CClan> fiksni;
    std::vector<int32_t> izabrane; // places of the combinations, from 0
};

struct COpis {
    std::vector<CSlucajOpisa> slucajevi;
    CKombinacijeOpisa kombinacije;
    std::vector<CAnvelopaOpisa> anvelope;
    std::optional<CSkladisteOpisa> skladiste;
    std::optional<CStabilnostOpisa> stabilnost;
};

/// The loads of the current document.
COpis ProcitajModel();
/// The load cases of the current document alone.
std::vector<CSlucajOpisa> ProcitajSlucajeve();

/// Makes the current document's loads those of the description, in one undo step: load cases
/// of the same name keep their identity (and the host's individual loads with it), the others
/// are added or deleted as the load case list editor does it; combinations, envelopes, the
/// stored set and the stability parameters are replaced. The description must be valid (the readers
/// check it).
void UpisiModel(const COpis& opis);

/// The stability parameters of the model object, when it has some that were built for the
/// document's loads as they are.
std::optional<CStabilnostOpisa> ProcitajStabilnost(CBaseManager& bm);
/// Gives the model object the stability parameters as the stability dialog leaves them when a
/// user sets these values (none for nullopt); bm is a view open for writing, whose undo step
/// the change joins. The description must be valid for the document's loads.
void UpisiStabilnost(CBaseManager& bm, const std::optional<CStabilnostOpisa>& opis);

/// Replaces the document's combinations by these, or appends them after the existing ones,
/// in one undo step. Members name the document's load cases by their ordinal - 1.
void UpisiKombinacije(const CKombinacijeOpisa& kombinacije, bool bZameni);

} // namespace opterecenje::razmena
