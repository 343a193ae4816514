#pragma once
// Shared by the tests of the load records: expected record bytes spelled out field by field
// (little-endian) by the test itself, so that a record is checked against its layout and not
// against the code that writes it; memory streams to write and read records; the checks every
// record reader must pass on damaged input; and short ways to build units and id lists.
#include "model/GeneralizedLoadCase.h"
#include "model/LoadCaseDescriptions.h"
#include "model/ModelGlobals.h"
#include "model/SlucajOpterecenja.h"
#include "stream/Filler.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>
#include <zlib.h>

namespace loadrec {

class Bytes {
public:
    Bytes& i32(int32_t v) { return le(static_cast<uint32_t>(v), 4); }
    Bytes& u8(uint8_t v) { return le(v, 1); }
    Bytes& f64(double v) { return le(std::bit_cast<uint64_t>(v), 8); }
    /// The string record: int32 count of UTF-16 units, then the units (BMP text only here).
    Bytes& str(const std::wstring& s) {
        i32(static_cast<int32_t>(s.size()));
        for (const wchar_t c : s)
            le(static_cast<uint16_t>(c), 2);
        return *this;
    }
    Bytes& ids(const std::vector<int32_t>& values) {
        i32(static_cast<int32_t>(values.size()));
        for (const int32_t v : values)
            i32(v);
        return *this;
    }
    Bytes& raw(const std::vector<uint8_t>& bytes) {
        m_b.insert(m_b.end(), bytes.begin(), bytes.end());
        return *this;
    }
    /// The base record of a stored object: version 1, id, attribute word.
    Bytes& base(int32_t id = -1, int32_t atribut = 0) { return i32(1).i32(id).i32(atribut); }
    /// A factor record, version 1.
    Bytes& factor(int32_t ordinal, double f) { return i32(1).i32(ordinal).f64(f); }
    /// A unit record, version 1: character, count, factors.
    Bytes& unit(int32_t karakter, const std::vector<std::pair<int, double>>& pairs) {
        i32(1).i32(karakter).i32(static_cast<int32_t>(pairs.size()));
        for (const auto& [k, f] : pairs)
            factor(k, f);
        return *this;
    }

    const std::vector<uint8_t>& get() const { return m_b; }
    size_t size() const { return m_b.size(); }
    uint32_t crc() const {
        uLong c = crc32(0L, Z_NULL, 0);
        c = crc32(c, m_b.data(), static_cast<uInt>(m_b.size()));
        return static_cast<uint32_t>(c);
    }

private:
    Bytes& le(uint64_t v, int n) {
        for (int i = 0; i < n; ++i)
            m_b.push_back(static_cast<uint8_t>(v >> (8 * i)));
        return *this;
    }
    std::vector<uint8_t> m_b;
};

using Pairs = std::vector<std::pair<int, double>>;
using Units = std::vector<CLoadCaseUnit>;

inline CLoadCaseUnit Unit(const Pairs& pairs, eKarakter karakter = LCU_LINEARNA) {
    CLoadCaseUnit unit;
    unit.SetKarakter(karakter);
    for (const auto& [k, f] : pairs)
        unit.Factors().Add(CLoadCaseFactor(k, f));
    return unit;
}

inline Pairs PairsOf(const CLoadCaseUnit* unit) {
    Pairs pairs;
    for (int i = 0; unit != nullptr && i < unit->GetSize(); ++i)
        pairs.emplace_back(unit->GetLoadCaseFactor(i).GetLCRedniBroj(),
                           unit->GetLoadCaseFactor(i).GetFaktor());
    return pairs;
}

inline Units UnitsOf(const CGeneralizedLoadCase& glc) {
    Units units;
    for (int i = 0; i < glc.GetSize(); ++i)
        units.push_back(glc.GetLoadCaseUnit(i));
    return units;
}

inline OCArray<CId> Ids(std::initializer_list<int32_t> values) {
    OCArray<CId> ids;
    for (const int32_t v : values)
        ids.Add(CId(v));
    return ids;
}

/// The values of a load case record of any version (base record included); the rows an older
/// version lacks are left out.
struct CaseRecord {
    int32_t id = -1;
    int32_t atribut = 0;
    int32_t nda = 1;
    int32_t ulazi = 3;
    std::optional<Pairs> srss = Pairs{{2, 1.0}, {3, 1.0}};
    int32_t alternativno = 0;
    std::vector<int32_t> uvek = {5, 6};
    int32_t uticaj = 0; // moment
    int32_t multimodalni = 3;
    int32_t flags = 1;
    int32_t staraUticajna = 0;
    double koeficijent = 1.25;
    int32_t stalno = 0;
    std::vector<int32_t> nikad = {7};
    std::wstring naziv = L"Stalno \u010d";
    int32_t redniBroj = 3;
    int32_t gMarker = 0;

    std::vector<uint8_t> Record(int32_t version) const {
        Bytes b;
        b.base(id, atribut).i32(version);
        if (version >= 11)
            b.i32(nda);
        if (version >= 10)
            b.i32(ulazi);
        if (version >= 9) {
            b.u8(srss ? 1 : 0);
            if (srss)
                b.unit(0, *srss);
        }
        if (version >= 8)
            b.i32(alternativno);
        if (version >= 7)
            b.ids(uvek);
        if (version >= 6)
            b.i32(uticaj);
        if (version >= 5)
            b.i32(multimodalni);
        if (version >= 4)
            b.i32(flags);
        if (version >= 3)
            b.i32(staraUticajna);
        if (version >= 2)
            b.f64(koeficijent).i32(stalno).ids(nikad);
        b.str(naziv).i32(redniBroj).i32(gMarker);
        return b.get();
    }
};

/// A load case with every field set to something other than its default.
inline void FillEveryField(CSlucajOpterecenja& s) {
    s.SetId(CId(5));
    s.SetAtribut(6);
    s.SetNaziv(L"G1");
    s.SetgMarker(1);
    s.SetKoeficijent(1.5);
    s.SetStalno(1);
    s.SetAlternativno(1);
    s.SetNeKombinujSa(Ids({7, 8}));
    s.SetUvekKombinujSa(Ids({9}));
    s.SetSeizmicki(1);
    s.PostaviNDA(1);
    s.SetBrojMultimodalnih(4);
    s.SetUticajUticajneLinije(UL_NORMALNA_SILA);
    s.PostaviSRSS(Unit({{1, 1.0}, {2, 0.5}})); // weighted: sets flag bit 1 too
    s.PostaviUlaziUSeizmickiProracun(1);
    s.PostaviRedniBroj(3);
}

/// What a record writes into a fresh memory stream.
template <class T> std::vector<uint8_t> Written(const T& record) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    record.ToFiller(f);
    f.Close();
    return f.Buffer();
}

/// A memory stream open for reading the given bytes.
class Reader {
public:
    explicit Reader(const std::vector<uint8_t>& bytes) {
        m_f.SetBuffer(bytes);
        m_f.Open(CFiller::Mode::Read);
    }
    CFiller& f() { return m_f; }
    CFiller* operator->() { return &m_f; }

private:
    CFiller m_f;
};

/// The first n bytes.
inline std::vector<uint8_t> Prefix(const std::vector<uint8_t>& bytes, size_t n) {
    return std::vector<uint8_t>(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(n));
}

/// The bytes with the int32 at the offset replaced.
inline std::vector<uint8_t> With32(std::vector<uint8_t> bytes, size_t offset, int32_t v) {
    for (size_t i = 0; i < 4; ++i)
        bytes.at(offset + i) = static_cast<uint8_t>(static_cast<uint32_t>(v) >> (8 * i));
    return bytes;
}

/// A reader of a record must end in the stream's error flag, never in a crash or a huge
/// allocation: on every truncation of a good record, and when any count at the given offsets
/// holds more than the stream can, or is negative.
template <class T>
void ExpectDamagedInputFails(const std::vector<uint8_t>& good,
                             std::initializer_list<size_t> countOffsets = {}) {
    for (size_t n = 0; n < good.size(); ++n) {
        Reader r(Prefix(good, n));
        T value;
        value.FromFiller(r.f());
        EXPECT_TRUE(r->IsError()) << "record cut after " << n << " bytes";
    }
    for (const size_t at : countOffsets) {
        for (const int32_t count : {0x7FFFFFFF, 0x40000000, -1, INT32_MIN}) {
            Reader r(With32(good, at, count));
            T value;
            value.FromFiller(r.f());
            EXPECT_TRUE(r->IsError()) << "count " << count << " at " << at;
        }
    }
    // A stream already in error is not read at all.
    Reader r(good);
    r->SetError();
    T value;
    value.FromFiller(r.f());
    EXPECT_EQ(r->Position(), 0u);
}

/// A record of an unknown version is refused with the version error of its source file.
template <class T>
void ExpectVersionError(const std::vector<uint8_t>& bytes, int32_t version, const char* source) {
    Reader r(bytes);
    T value;
    EXPECT_EQ(value.FromFiller(r.f()), 0) << version;
    EXPECT_TRUE(r->IsError()) << version;
    EXPECT_EQ(r->GetErrorMessage(),
              CString::Formatted(L"Object version error! Version: %d", version));
    EXPECT_EQ(r->GetErrorSource(), source);
}

/// Restores the analysis theory that a test changes.
struct TeorijaGuard {
    int saved = CModelGlobals::nTeorija;
    ~TeorijaGuard() { CModelGlobals::nTeorija = saved; }
};

} // namespace loadrec
