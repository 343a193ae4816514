#pragma once
// The translation library: texts of the program are written in Serbian (Latin script) and
// translated through the catalog of the current language at display time.
//
// String record (ToFiller / FromFiller): int32 n, the number of UTF-16 code units, then n
// uint16 code units, little-endian. Characters outside the Basic Multilingual Plane are
// written as surrogate pairs, so every Unicode text round-trips; a value that is not a
// Unicode scalar value (a lone surrogate, or above U+10FFFF) is written as U+FFFD, and a
// lone surrogate read from a stream becomes U+FFFD.
#include "framework/Array.h"
#include "framework/String.h"

#include <filesystem>

class CFiller;

class ClTranslator {
public:
    /// Language codes; Serbian is the source language and needs no catalog.
    enum Jezik : int { Srpski = 0, Engleski = 1, Bugarski = 2, Ruski = 3, Nemacki = 4 };
    /// Sub-languages: the script of a language written in two (Serbian in Cyrillic has a
    /// catalog of its own; Latin, the default, is the source).
    enum PodJezik : int { Latinica = 0, Cirilica = 1 };

    /// The translation of a source text in the current language, or the text itself when the
    /// language has no catalog or the catalog has no entry for it. A text that begins with
    /// "$$" is not translated and is given without that marker.
    CString Do(const CString& source) const;
    static CString Translate(const CString& source);

    static void SetLanguage(int language, int subLanguage = 0);
    static int GetLanguage();
    static int GetSubLanguage();
    /// True when the current language or the current sub-language is Bulgarian.
    static bool bugarskiJezik();

    /// Adds or replaces one entry of a language's catalog (of its sub-language's, which the
    /// language falls back to); ClearCatalogs empties them all.
    static void AddTranslation(int language, const CString& source, const CString& translation);
    static void AddTranslation(int language, int subLanguage, const CString& source,
                               const CString& translation);
    static void ClearCatalogs();
    /// Adds every translated entry of a compiled catalog (a GNU .mo file, UTF-8) to the
    /// catalog of the language. False with the reason when the file cannot be read or is not
    /// such a catalog; nothing is added then.
    static bool UcitajKatalog(int language, int subLanguage, const std::filesystem::path& file,
                              CString& error);

    /// The string record (see above). FromFiller returns 0 and leaves s untouched when the
    /// stream is in error or the record cannot be complete.
    static int ToFiller(CFiller& f, const CString& s);
    static int FromFiller(CFiller& f, CString& s);

    /// A list of integers as text: ascending, duplicates dropped, runs of two or more
    /// consecutive numbers written as "first-last", items joined by ",": {1,2,3,5} gives
    /// "1-3,5". The text is also a valid envelope selection.
    static CString IntArray2String(const CArray<int>& values);
    /// Reads such a text back (also single items in any order and blanks around numbers);
    /// the values come back ascending without duplicates, and an empty or blank text gives an
    /// empty list. Returns false for anything else, and for a text that expands to more than
    /// 2^20 numbers, and leaves values empty.
    static bool String2IntArray(const CString& text, CArray<int>& values);
};

/// Marks a text of the program for translation where it is written but not yet shown (dialog
/// templates, tables of captions) and gives it back unchanged; it is translated where it is
/// shown. The tools that gather the texts for the catalogs find every text so marked and
/// every text literal passed to ClTranslator::Translate or Do.
constexpr const wchar_t* Tr(const wchar_t* text) {
    return text;
}

/// A number with the given count of decimals and '.' as separator. With signFlag non-zero a
/// positive value (and zero) gets a leading "+", so that terms read as a sum: 1.5 with two
/// decimals gives "1.50", or "+1.50" with the flag; -1.5 gives "-1.50" either way. A value
/// that rounds to zero never shows a minus sign. Infinite and undefined values give "inf",
/// "-inf" and "nan".
CString gfnFormatDouble(double value, int decimals, int signFlag);

class CRomanNumber {
public:
    /// The Roman numeral of 1..3999 (4 is IV, 1994 is MCMXCIV). Zero, negative numbers and
    /// numbers above 3999, which have no standard numeral, are given in decimal digits.
    static CString GetRomanValue(int value);
};

class CGreek {
public:
    /// Replaces every marker "#g<letter>#g" by the Greek letter that the Latin letter stands
    /// for in the symbol font ("#gd#g" gives δ, "#gD#g" gives Δ); a marker with any other
    /// content is left as it stands.
    static CString ConvertToUnicode(const CString& text);
};
