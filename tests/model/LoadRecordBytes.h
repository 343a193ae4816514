#pragma once
// Expected record bytes for the load case tests, spelled out field by field (little-endian) by
// the test itself, so that a record is checked against its layout and not against the code
// that writes it.
#include "stream/Filler.h"

#include <bit>
#include <cstdint>
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
        loadrec::Bytes b;
        b.base(id, atribut).i32(version);
        if (version >= 11)
            b.i32(nda);
        if (version >= 10)
            b.i32(ulazi);
        if (version >= 9) {
            b.u8(srss ? 1 : 0);
            if (srss) {
                b.i32(1).i32(0).i32(static_cast<int32_t>(srss->size()));
                for (const auto& [k, f] : *srss)
                    b.factor(k, f);
            }
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

} // namespace loadrec
