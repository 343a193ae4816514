#pragma once
// The stream library: binary record streams in memory and in files, and the record interface.
//
// A CFiller is opened for writing or for reading and closed again. Writers append elements;
// readers take them in the same order. All multi-byte helpers are little-endian. A stream has
// an error flag: reading past the end, a count that the remaining bytes cannot hold, a version
// error or a failed file operation set it, and every later read returns at once leaving its
// target untouched (readers test the flag before they read). No input can make a reader
// allocate without bound.
#include "framework/String.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

class CFiller;

/// Anything that writes itself into a stream and reads itself back.
class CFillerUser {
public:
    virtual ~CFillerUser() = default;
    virtual int ToFiller(CFiller& f) const = 0;
    virtual int FromFiller(CFiller& f) = 0;
};

class CFiller {
public:
    enum class Mode { Closed, Write, Read };
    static constexpr size_t DefaultBlockSize = 4096;

    /// A memory stream that grows in blocks of the given size.
    explicit CFiller(size_t blockSize = DefaultBlockSize);
    /// A file stream: Open(Write) collects the bytes and Close writes them to the file;
    /// Open(Read) loads the whole file (a missing or unreadable file sets the error flag).
    explicit CFiller(std::filesystem::path file);
    virtual ~CFiller();
    CFiller(const CFiller&) = delete;
    CFiller& operator=(const CFiller&) = delete;

    /// Opens for writing (the content is emptied) or for reading (from the first byte).
    /// Opening clears the error flag. Returns false when a file cannot be read.
    bool Open(Mode mode);
    /// Closes; a file stream opened for writing writes its file here. Returns false (and sets
    /// the error flag) when the file cannot be written.
    bool Close();
    Mode GetMode() const { return m_mode; }
    bool IsOpen() const { return m_mode != Mode::Closed; }

    /// Writes count elements of elemSize bytes each, as they lie in memory. A stream that is
    /// not open for writing ignores them and sets the error flag.
    void Write(const void* data, size_t elemSize, size_t count);
    /// Reads count elements of elemSize bytes; past the end the error flag is set, nothing is
    /// stored and false is returned.
    bool Read(void* data, size_t elemSize, size_t count);

    void WriteInt32(int32_t v);
    void WriteUInt32(uint32_t v);
    void WriteUInt8(uint8_t v);
    void WriteUInt16(uint16_t v);
    void WriteFloat64(double v);
    /// Each reader stores into v only when the read succeeded.
    bool ReadInt32(int32_t& v);
    bool ReadUInt32(uint32_t& v);
    bool ReadUInt8(uint8_t& v);
    bool ReadUInt16(uint16_t& v);
    bool ReadFloat64(double& v);

    /// Checks a count read from the stream before anything is allocated for it: a negative
    /// count, or one whose elements of at least minElemSize bytes (at least one) cannot fit
    /// into the bytes that remain, sets the error flag and gives false; so does a stream that
    /// is not open for reading.
    bool CheckCount(int64_t count, size_t minElemSize);

    bool IsError() const { return m_error; }
    /// Sets the error flag with a reason and the name of the source that found it. The first
    /// reason given is kept until the stream is opened again.
    void SetError(const CString& message = CString(), const std::string& source = std::string());
    const CString& GetErrorMessage() const { return m_errorMessage; }
    const std::string& GetErrorSource() const { return m_errorSource; }

    /// Bytes written so far (writing) or bytes still unread (reading).
    size_t Remaining() const;
    size_t Size() const { return ReadSize(); }
    size_t Position() const { return m_pos; }

    /// The bytes of a memory stream, and a way to give it bytes to read (SetBuffer, then
    /// Open(Read)).
    const std::vector<uint8_t>& Buffer() const { return m_buffer; }
    void SetBuffer(std::vector<uint8_t> bytes);
    /// Gives the stream bytes to read (then Open(Read)) without copying them: they stay the
    /// caller's and must outlive the reading. The next SetBuffer or Open(Write) ends the view.
    void SetView(const uint8_t* data, size_t size);
    /// Moves the bytes written so far out of the stream, which is left empty.
    std::vector<uint8_t> TakeBuffer();

protected:
    /// Where written bytes go; a checksum stream overrides it.
    virtual void Sink(const uint8_t* data, size_t n);

private:
    /// The bytes being read: the view when one is given, else the buffer.
    const uint8_t* ReadData() const { return m_view != nullptr ? m_view : m_buffer.data(); }
    size_t ReadSize() const { return m_view != nullptr ? m_viewSize : m_buffer.size(); }

    std::vector<uint8_t> m_buffer;
    const uint8_t* m_view = nullptr;
    size_t m_viewSize = 0;
    size_t m_pos = 0;
    size_t m_blockSize;
    Mode m_mode = Mode::Closed;
    bool m_error = false;
    CString m_errorMessage;
    std::string m_errorSource;
    std::filesystem::path m_file;
    bool m_isFile = false;
};

/// A write-only stream that keeps nothing but the CRC-32 (zlib's) of what was written. It is
/// open for writing from construction on; Reset starts a new checksum. Records are written in
/// many small pieces, so the pieces are gathered and summed a block at a time.
class CCrcFiller : public CFiller {
public:
    CCrcFiller();
    uint32_t GetCRC() const;
    void Reset();

protected:
    void Sink(const uint8_t* data, size_t n) override;

private:
    /// Adds the gathered bytes to the checksum.
    void Saberi() const;

    static constexpr size_t kBlok = 1024;
    mutable uint32_t m_crc;
    mutable size_t m_nSakupljeno = 0;
    mutable uint8_t m_sakupljeno[kBlok];
};

/// Version errors of records: the message and the source name are kept by the stream, whose
/// error flag is set, so the host can tell why a file did not load.
class CTrFiller {
public:
    static void SetObjVerErr(CFiller& f, const char* sourceName, const CString& message);
    /// Formats "Object version error! Version: %d" and reports it as above.
    static void SetObjVerErr(CFiller& f, const char* sourceName, int version);
    /// Reads a record's int32 version. A version outside first..last is reported as above.
    /// Returns the version, or 0 when it could not be read or is not one of those.
    static int32_t ReadVersion(CFiller& f, const char* sourceName, int32_t first, int32_t last);
};
