#pragma once
// Small helpers shared by the load services: translated texts, warnings, checks whose
// expression text is given as written, and the SRSS test of a load case.
#include "diag/Assert.h"
#include "framework/String.h"
#include "host/MessageBox.h"
#include "model/SlucajOpterecenja.h"
#include "text/Translator.h"

#include <string>

namespace opterecenje {

/// The translation of a text of the module.
inline CString Prevod(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

/// A warning box: the translated text under the caption "Upozorenje".
inline void Upozori(const wchar_t* poruka) {
    CVortaMessageBox::MessageBoxW(Prevod(poruka), Prevod(L"Upozorenje"),
                                  CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONWARNING);
}

/// A check that names its expression with the given text (for texts that are not the code
/// as formatted, such as "bm.Count () == 1"), and the place of the call. The place comes from
/// the compiler's built-ins rather than std::source_location, which not every compiler the
/// project builds with (the fuzz build's) offers yet.
inline void Proveri(bool uslov, const char* izraz, const char* datoteka = __builtin_FILE(),
                    int linija = __builtin_LINE()) {
    if (!uslov)
        gfnAssertFailed(izraz, gfnSourceName(datoteka), linija);
}

/// An impossible state, reported by its message; the program ends.
[[noreturn]] inline void InternalError(const char* poruka, const char* datoteka = __builtin_FILE(),
                                       int linija = __builtin_LINE()) {
    gfnInternalError(gfnSourceName(datoteka), linija, poruka);
}

/// An SRSS load case: it has an SRSS unit that holds factors.
inline bool JeSRSS(const CSlucajOpterecenja& slucaj) {
    return slucaj.JeliSRSS() && !slucaj.DajLCUnitZaSRSS()->IsEmpty();
}

} // namespace opterecenje
