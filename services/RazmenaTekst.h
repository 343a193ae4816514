#pragma once
// The text formats of the interchange of loads: the JSON description of a model's loads and
// the CSV table of its combinations (docs/json-format.md). Readers check everything they read
// and name the line and column of the first thing they refuse; they leave the description
// they fill unusable when they refuse.
#include "services/RazmenaOpis.h"

#include <string>
#include <string_view>

namespace opterecenje::razmena {

/// How a JSON text is read: by the fast reader, and by the other only when the fast one
/// refuses the text or leaves a doubt (Brzo), or by the other alone (Referentno), whose reading
/// every text must get either way.
enum class ECitanjeJson { Brzo, Referentno };

/// Reads a JSON description; false with "line L, column C: reason" when it is refused.
bool ProcitajJson(std::string_view tekst, COpis& opis, CString& greska,
                  ECitanjeJson citanje = ECitanjeJson::Brzo);
/// Writes the description as JSON (appended to tekst).
void NapisiJson(const COpis& opis, std::string& tekst);

/// Reads a CSV table of combinations over the given load cases (the model's, in ordinal
/// order); false with "line L, column C: reason" when it is refused.
bool ProcitajCsv(std::string_view tekst, const std::vector<CSlucajOpisa>& slucajevi,
                 CKombinacijeOpisa& kombinacije, CString& greska);
/// Writes the description's combinations as a CSV table (appended to tekst).
void NapisiCsv(const COpis& opis, std::string& tekst);

/// The name of an influence line's kind in the formats; null for a kind without one.
const char* NazivUticaja(eUticajUticajneLin uticaj);
/// The kind of an influence line by its name; false for a name of no kind.
bool UticajPoNazivu(std::string_view naziv, eUticajUticajneLin& uticaj);

/// "line L, column C: poruka" for the byte poz of the text.
CString NaMestu(std::string_view tekst, size_t poz, const CString& poruka);

} // namespace opterecenje::razmena
