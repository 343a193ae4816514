// The record streams: memory and file streams, the checksum stream and version errors.
#include "Filler.h"
#include "Crc32.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <iterator>
#include <limits>
#include <zlib.h>

namespace {

/// count * elemSize, or false when the product does not fit into size_t.
bool ByteCount(size_t elemSize, size_t count, size_t& bytes) {
    if (elemSize != 0 && count > std::numeric_limits<size_t>::max() / elemSize)
        return false;
    bytes = elemSize * count;
    return true;
}

template <class T> void WriteLe(CFiller& f, T v) {
    uint8_t bytes[sizeof(T)];
    for (size_t i = 0; i < sizeof(T); ++i)
        bytes[i] = static_cast<uint8_t>(v >> (8 * i));
    f.Write(bytes, 1, sizeof(T));
}

template <class T> bool ReadLe(CFiller& f, T& v) {
    uint8_t bytes[sizeof(T)];
    if (!f.Read(bytes, 1, sizeof(T)))
        return false;
    T r = 0;
    for (size_t i = 0; i < sizeof(T); ++i)
        r = static_cast<T>(r | static_cast<T>(static_cast<T>(bytes[i]) << (8 * i)));
    v = r;
    return true;
}

} // namespace

CFiller::CFiller(size_t blockSize) : m_blockSize(blockSize == 0 ? DefaultBlockSize : blockSize) {}

CFiller::CFiller(std::filesystem::path file)
    : m_blockSize(DefaultBlockSize), m_file(std::move(file)), m_isFile(true) {}

CFiller::~CFiller() = default;

bool CFiller::Open(Mode mode) {
    m_mode = mode;
    m_pos = 0;
    m_error = false;
    m_errorMessage.Empty();
    m_errorSource.clear();
    if (mode == Mode::Write) {
        m_view = nullptr;
        m_buffer.clear();
        return true;
    }
    if (mode != Mode::Read || !m_isFile)
        return true;
    m_view = nullptr;
    m_buffer.clear();
    std::ifstream in(m_file, std::ios::binary);
    if (!in) {
        SetError();
        return false;
    }
    m_buffer.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        m_buffer.clear();
        SetError();
        return false;
    }
    return true;
}

bool CFiller::Close() {
    const Mode was = m_mode;
    m_mode = Mode::Closed;
    if (!m_isFile || was != Mode::Write)
        return true;
    std::ofstream out(m_file, std::ios::binary | std::ios::trunc);
    if (out)
        out.write(reinterpret_cast<const char*>(m_buffer.data()),
                  static_cast<std::streamsize>(m_buffer.size()));
    if (out)
        out.close();
    if (!out) {
        SetError();
        return false;
    }
    return true;
}

void CFiller::Write(const void* data, size_t elemSize, size_t count) {
    size_t n = 0;
    if (m_mode != Mode::Write || !ByteCount(elemSize, count, n)) {
        SetError();
        return;
    }
    if (n == 0)
        return;
    Sink(static_cast<const uint8_t*>(data), n);
    m_pos += n;
}

void CFiller::Sink(const uint8_t* data, size_t n) {
    const size_t needed = m_buffer.size() + n;
    if (needed > m_buffer.capacity()) {
        // The capacity stays a whole number of blocks; it grows by at least half of itself so
        // that many small records do not copy the buffer over and over.
        const size_t wanted = std::max(needed, m_buffer.capacity() + m_buffer.capacity() / 2);
        m_buffer.reserve((wanted + m_blockSize - 1) / m_blockSize * m_blockSize);
    }
    m_buffer.insert(m_buffer.end(), data, data + n);
}

bool CFiller::Read(void* data, size_t elemSize, size_t count) {
    if (m_error)
        return false;
    size_t n = 0;
    if (m_mode != Mode::Read || !ByteCount(elemSize, count, n) || n > ReadSize() - m_pos) {
        SetError();
        return false;
    }
    if (n != 0)
        std::copy_n(ReadData() + m_pos, n, static_cast<uint8_t*>(data));
    m_pos += n;
    return true;
}

void CFiller::WriteInt32(int32_t v) {
    WriteLe(*this, static_cast<uint32_t>(v));
}
void CFiller::WriteUInt32(uint32_t v) {
    WriteLe(*this, v);
}
void CFiller::WriteUInt8(uint8_t v) {
    Write(&v, 1, 1);
}
void CFiller::WriteUInt16(uint16_t v) {
    WriteLe(*this, v);
}
void CFiller::WriteFloat64(double v) {
    WriteLe(*this, std::bit_cast<uint64_t>(v));
}

bool CFiller::ReadInt32(int32_t& v) {
    uint32_t u = 0;
    if (!ReadLe(*this, u))
        return false;
    v = static_cast<int32_t>(u);
    return true;
}

bool CFiller::ReadUInt32(uint32_t& v) {
    return ReadLe(*this, v);
}
bool CFiller::ReadUInt8(uint8_t& v) {
    return Read(&v, 1, 1);
}
bool CFiller::ReadUInt16(uint16_t& v) {
    return ReadLe(*this, v);
}

bool CFiller::ReadFloat64(double& v) {
    uint64_t u = 0;
    if (!ReadLe(*this, u))
        return false;
    v = std::bit_cast<double>(u);
    return true;
}

bool CFiller::CheckCount(int64_t count, size_t minElemSize) {
    if (m_error)
        return false;
    // Every element of a record takes at least one byte, so a zero size counts as one.
    const size_t elem = std::max<size_t>(minElemSize, 1);
    if (m_mode != Mode::Read || count < 0 || static_cast<uint64_t>(count) > Remaining() / elem) {
        SetError();
        return false;
    }
    return true;
}

void CFiller::SetError(const CString& message, const std::string& source) {
    // The first reason stays: later failures are usually consequences of it.
    if (!message.IsEmpty() && m_errorMessage.IsEmpty()) {
        m_errorMessage = message;
        m_errorSource = source;
    }
    m_error = true;
}

size_t CFiller::Remaining() const {
    switch (m_mode) {
    case Mode::Write:
        return m_pos;
    case Mode::Read:
        return ReadSize() - m_pos;
    case Mode::Closed:
        break;
    }
    return 0;
}

void CFiller::SetBuffer(std::vector<uint8_t> bytes) {
    m_view = nullptr;
    m_buffer = std::move(bytes);
    m_pos = 0;
}

void CFiller::SetView(const uint8_t* data, size_t size) {
    m_buffer.clear();
    m_view = data;
    m_viewSize = size;
    // An empty view is still a view, of nothing.
    static const uint8_t kNothing = 0;
    if (m_view == nullptr)
        m_view = &kNothing;
    m_pos = 0;
}

std::vector<uint8_t> CFiller::TakeBuffer() {
    std::vector<uint8_t> bytes = std::move(m_buffer);
    m_buffer.clear();
    m_pos = 0;
    return bytes;
}

CCrcFiller::CCrcFiller() : m_crc(static_cast<uint32_t>(crc32(0L, Z_NULL, 0))) {
    Open(Mode::Write);
}

uint32_t CCrcFiller::GetCRC() const {
    Saberi();
    return m_crc;
}

void CCrcFiller::Reset() {
    m_crc = static_cast<uint32_t>(crc32(0L, Z_NULL, 0));
    m_nSakupljeno = 0;
    Open(Mode::Write);
}

void CCrcFiller::Saberi() const {
    m_crc = Crc32(m_crc, m_sakupljeno, m_nSakupljeno);
    m_nSakupljeno = 0;
}

void CCrcFiller::Sink(const uint8_t* data, size_t n) {
    if (m_nSakupljeno + n > kBlok) {
        Saberi();
        if (n > kBlok) {
            m_crc = Crc32(m_crc, data, n);
            return;
        }
    }
    std::copy_n(data, n, m_sakupljeno + m_nSakupljeno);
    m_nSakupljeno += n;
}

void CTrFiller::SetObjVerErr(CFiller& f, const char* sourceName, const CString& message) {
    f.SetError(message, sourceName != nullptr ? sourceName : "");
}

void CTrFiller::SetObjVerErr(CFiller& f, const char* sourceName, int version) {
    SetObjVerErr(f, sourceName, CString::Formatted(L"Object version error! Version: %d", version));
}

int32_t CTrFiller::ReadVersion(CFiller& f, const char* sourceName, int32_t first, int32_t last) {
    int32_t version = 0;
    if (!f.ReadInt32(version))
        return 0;
    if (version < first || version > last) {
        SetObjVerErr(f, sourceName, version);
        return 0;
    }
    return version;
}
