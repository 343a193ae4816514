#pragma once
// Model files spelled out byte by byte, as the documented layouts give them, so that the
// end-to-end tests can hand vorta-cli files no program of ours would write.
#include <bit>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>
#include <zlib.h>

class CRecordBytes {
public:
    CRecordBytes& i32(int32_t v) { return le(static_cast<uint32_t>(v), 4); }
    CRecordBytes& u8(uint8_t v) { return le(v, 1); }
    CRecordBytes& f64(double v) { return le(std::bit_cast<uint64_t>(v), 8); }
    /// The string record: int32 count of UTF-16 units, then the units (ASCII here).
    CRecordBytes& str(const std::string& s) {
        i32(static_cast<int32_t>(s.size()));
        for (const char c : s)
            le(static_cast<uint8_t>(c), 2);
        return *this;
    }
    /// The base record of a stored object: version 1, id, attribute word.
    CRecordBytes& base(int32_t id) { return i32(1).i32(id).i32(0); }
    const std::string& get() const { return m_b; }

private:
    CRecordBytes& le(uint64_t v, int n) {
        for (int i = 0; i < n; ++i)
            m_b.push_back(static_cast<char>(v >> (8 * i)));
        return *this;
    }
    std::string m_b;
};

/// A model file: records by type, the stored-combinations section and the checksum.
class CModelFileBytes {
public:
    static constexpr int32_t kModel = 1, kSlucaj = 20, kKombinacija = 21, kAnvelopa = 23;

    CModelFileBytes& Add(int32_t type, const CRecordBytes& record) {
        m_records[type].push_back(record.get());
        return *this;
    }
    /// The host's model object.
    CModelFileBytes& Model(int32_t id) {
        return Add(kModel, CRecordBytes().base(id).i32(1).i32(1));
    }
    /// A load case record of version 11; oldFlag is the old influence-line flag and kind the
    /// influence-line kind.
    /// srss holds the (ordinal, factor) pairs of an SRSS unit, when the case has one.
    CModelFileBytes& LoadCase(int32_t id, int32_t ordinal, const std::string& name,
                              int32_t kind = -1, int32_t oldFlag = 0,
                              const std::vector<std::pair<int32_t, double>>& srss = {}) {
        CRecordBytes r;
        r.base(id).i32(11).i32(0).i32(0).u8(srss.empty() ? 0 : 1);
        if (!srss.empty()) {
            r.i32(1).i32(0).i32(static_cast<int32_t>(srss.size()));
            for (const auto& [rb, faktor] : srss)
                r.i32(1).i32(rb).f64(faktor);
        }
        r.i32(0).i32(0).i32(kind).i32(0).i32(0).i32(oldFlag);
        r.f64(1.5).i32(0).i32(0).str(name).i32(ordinal).i32(0);
        return Add(kSlucaj, r);
    }
    /// A combination with a generated name and (load case id, coefficient) entries.
    CModelFileBytes& Combination(int32_t id, int32_t ordinal,
                                 const std::vector<std::pair<int32_t, double>>& entries) {
        CRecordBytes r;
        r.base(id).i32(1).str("K").i32(1).i32(ordinal).i32(static_cast<int32_t>(entries.size()));
        for (const auto& [slucaj, koef] : entries)
            r.i32(slucaj).f64(koef);
        return Add(kKombinacija, r);
    }
    CModelFileBytes& Envelope(int32_t id, int32_t number, const std::string& selection) {
        return Add(kAnvelopa,
                   CRecordBytes().base(id).i32(2).i32(0).str(selection).str("A").i32(number));
    }
    /// The version of the stored-combinations section (1 unless a test says otherwise).
    CModelFileBytes& SectionVersion(int32_t version) {
        m_section = version;
        return *this;
    }

    std::string Bytes() const {
        CRecordBytes f;
        f.u8('V').u8('L').u8('D').u8('M').i32(1).i32(static_cast<int32_t>(m_records.size()));
        std::string out = f.get();
        for (const auto& [type, records] : m_records) {
            out += CRecordBytes().i32(type).i32(static_cast<int32_t>(records.size())).get();
            for (const std::string& record : records)
                out += CRecordBytes().i32(static_cast<int32_t>(record.size())).get() + record;
        }
        // The section: its version, then an empty combination list (version 1, count 0).
        out += CRecordBytes().i32(12).i32(m_section).i32(1).i32(0).get();
        const auto crc = static_cast<uint32_t>(
            crc32(0L, reinterpret_cast<const Bytef*>(out.data()), static_cast<uInt>(out.size())));
        return out + CRecordBytes().i32(static_cast<int32_t>(crc)).get();
    }

private:
    std::map<int32_t, std::vector<std::string>> m_records;
    int32_t m_section = 1;
};
