#pragma once
// The host's own texts: written in Serbian (Latin script) as the module's are, and translated
// through the same catalogs (the catalog tool finds every literal passed to T).
#include "text/Translator.h"
#include "ui/QtText.h"

#include <QString>

inline QString T(const wchar_t* text) {
    return ToQ(ClTranslator::Translate(text));
}
