#pragma once
// The interchange of a model's loads as a host reaches it (CLoadsServices): the loads of the
// current document written as the JSON description or as the CSV table of its combinations,
// and read back from them. docs/json-format.md describes both formats.
#include "framework/String.h"

#include <string>
#include <string_view>

namespace opterecenje {

/// The loads of the current document as JSON (appended to tekst).
void IzveziJson(std::string& tekst);
/// Makes the current document's loads those that the JSON text describes, in one undo step;
/// false with the reason (naming the line and column of the bad input) when the text is
/// refused, and then nothing is changed.
bool UveziJson(std::string_view tekst, CString& greska);
/// The combinations of the current document as a CSV table (appended to tekst).
void IzveziCsv(std::string& tekst);
/// Replaces the current document's combinations by those of the CSV table, or appends them,
/// in one undo step; nUvezenih gets their number. False with the reason when the table is
/// refused, and then nothing is changed.
bool UveziCsv(std::string_view tekst, bool bZameni, int& nUvezenih, CString& greska);

/// Fills the host's services of the interchange.
void PostaviRazmenu();

} // namespace opterecenje
