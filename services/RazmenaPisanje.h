#pragma once
// Pieces of the text formats of the interchange appended to a text: JSON strings, numbers in
// their shortest form that reads back to the same double, CSV fields.
#include "framework/String.h"

#include <cstdint>
#include <string>

namespace opterecenje::razmena {

/// The text as a JSON string in UTF-8, quoted, with what JSON requires escaped.
void DodajTekstJson(std::string& t, const CString& tekst);
/// The shortest decimal form that reads back to the same value ('.' as separator); the text
/// zaNeKonacan for a value that is not finite.
void DodajBroj(std::string& t, double v, const char* zaNeKonacan);
void DodajCeo(std::string& t, int64_t v);
/// The text as a CSV field in UTF-8, quoted (quotes doubled) when it holds a separator, a
/// quote, a line break or blanks at either end.
void DodajPoljeCsv(std::string& t, const CString& tekst);

} // namespace opterecenje::razmena
