// The model file: reading, writing and the atomic save. docs/model-file.md gives the layout.
#include "host/ModelFile.h"

#include "host/Model.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <zlib.h>

namespace {

constexpr size_t MagicSize = sizeof(CModelFile::Magic);
/// Magic, format version, number of type sections, length of the stored-combinations section
/// and the checksum: the smallest possible file.
constexpr size_t MinimumSize = MagicSize + 4 + 4 + 4 + 4;

struct DestroyObj {
    void operator()(CObj* obj) const { obj->Destroy(1); }
};
using ObjPtr = std::unique_ptr<CObj, DestroyObj>;

uint32_t Crc32(const uint8_t* data, size_t n) {
    uLong crc = crc32(0L, Z_NULL, 0);
    constexpr size_t chunk = size_t{1} << 30;
    while (n > 0) {
        const size_t part = std::min(n, chunk);
        crc = crc32(crc, data, static_cast<uInt>(part));
        data += part;
        n -= part;
    }
    return static_cast<uint32_t>(crc);
}

uint32_t LoadLe32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
}

/// The bytes of one record written into a memory stream.
std::vector<uint8_t> RecordOf(const CFillerUser& user) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    user.ToFiller(f);
    f.Close();
    return f.Buffer();
}

void WriteBlock(CFiller& f, const std::vector<uint8_t>& bytes) {
    f.WriteInt32(static_cast<int32_t>(bytes.size()));
    f.Write(bytes.data(), 1, bytes.size());
}

/// Walks the sections by their counts and lengths only. False when the file ends before the
/// walk does: then a checksum mismatch is reported as a truncated file.
bool StructureComplete(const std::vector<uint8_t>& bytes) {
    const size_t end = bytes.size() - 4;
    size_t pos = MagicSize + 4;
    auto next = [&](int64_t& v) {
        if (pos > end || end - pos < 4)
            return false;
        v = static_cast<int32_t>(LoadLe32(bytes.data() + pos));
        pos += 4;
        return true;
    };
    auto skip = [&](int64_t n) {
        if (n < 0 || static_cast<uint64_t>(n) > end - pos)
            return false;
        pos += static_cast<size_t>(n);
        return true;
    };
    int64_t types = 0;
    if (!next(types))
        return false;
    for (int64_t t = 0; t < types; ++t) {
        int64_t type = 0;
        int64_t count = 0;
        if (!next(type) || !next(count))
            return false;
        for (int64_t i = 0; i < count; ++i) {
            int64_t length = 0;
            if (!next(length) || !skip(length))
                return false;
        }
    }
    int64_t section = 0;
    return next(section) && skip(section);
}

CString FromPath(const std::filesystem::path& path) {
    return CString::FromUtf8(path.string());
}

CString SystemError(int error) {
    return CString::FromUtf8(std::strerror(error));
}

/// A file descriptor closed when it goes out of scope.
class CFileHandle {
public:
    explicit CFileHandle(int fd) : m_fd(fd) {}
    ~CFileHandle() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    CFileHandle(const CFileHandle&) = delete;
    CFileHandle& operator=(const CFileHandle&) = delete;
    int Get() const { return m_fd; }
    /// Closes now; false when the close reports an error (a write that did not reach the disk).
    bool Close() {
        const int fd = m_fd;
        m_fd = -1;
        return ::close(fd) == 0;
    }

private:
    int m_fd;
};

bool WriteAll(int fd, const std::vector<uint8_t>& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

/// Writes the bytes to a new file and flushes them to the disk. An existing file of that name
/// is emptied; `created` tells whether the file now exists, so a failure can remove it again.
bool WriteDurably(const std::filesystem::path& file, const std::vector<uint8_t>& bytes,
                  bool& created) {
    CFileHandle fd(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    created = fd.Get() >= 0;
    if (!created)
        return false;
    if (!WriteAll(fd.Get(), bytes) || ::fsync(fd.Get()) != 0)
        return false;
    return fd.Close();
}

} // namespace

std::vector<uint8_t> CModelFile::Write(const CObjBase& base) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    f.Write(Magic, 1, MagicSize);
    f.WriteInt32(FormatVersion);

    std::vector<int> types;
    for (const int type : CObjBase::GetRegisteredTypes())
        if (CObjBase::IsPersistent(type) && base.Count(type) > 0)
            types.push_back(type);
    f.WriteInt32(static_cast<int32_t>(types.size()));
    for (const int type : types) {
        const std::vector<CId> ids = base.Ids(type);
        f.WriteInt32(type);
        f.WriteInt32(static_cast<int32_t>(ids.size()));
        for (const CId& id : ids)
            WriteBlock(f, RecordOf(*base.Find(id)));
    }

    CFiller section;
    section.Open(CFiller::Mode::Write);
    if (CModel::SnimiUskladisteneKombinacije != nullptr)
        CModel::SnimiUskladisteneKombinacije(section);
    section.Close();
    WriteBlock(f, section.Buffer());

    f.WriteUInt32(Crc32(f.Buffer().data(), f.Buffer().size()));
    f.Close();
    return f.Buffer();
}

std::unique_ptr<CObjBase> CModelFile::Read(const std::vector<uint8_t>& bytes, CString& error) {
    auto fail = [&error](CString message) -> std::unique_ptr<CObjBase> {
        error = std::move(message);
        return nullptr;
    };
    // A file cut inside its magic is still recognised as a model file.
    if (bytes.empty() || std::memcmp(bytes.data(), Magic, std::min(bytes.size(), MagicSize)) != 0)
        return fail(L"not a model file");
    if (bytes.size() < MagicSize + 4)
        return fail(L"model file is truncated");
    const auto version = static_cast<int32_t>(LoadLe32(bytes.data() + MagicSize));
    if (version != FormatVersion)
        return fail(CString::Formatted(L"unsupported model file version %d", version));
    if (bytes.size() < MinimumSize)
        return fail(L"model file is truncated");
    const size_t bodySize = bytes.size() - 4;
    if (Crc32(bytes.data(), bodySize) != LoadLe32(bytes.data() + bodySize)) {
        if (!StructureComplete(bytes))
            return fail(L"model file is truncated");
        return fail(L"model file is damaged (checksum mismatch)");
    }

    // The checksum holds, so what follows only fails for a file written wrongly; every count
    // and length is still checked before it is trusted.
    const CString damaged = L"model file is damaged";
    CFiller f;
    f.SetBuffer(std::vector<uint8_t>(bytes.begin() + MagicSize + 4, bytes.begin() + bodySize));
    f.Open(CFiller::Mode::Read);
    auto base = std::make_unique<CObjBase>();
    int32_t types = 0;
    if (!f.ReadInt32(types) || !f.CheckCount(types, 8))
        return fail(damaged);
    for (int32_t t = 0; t < types; ++t) {
        int32_t type = 0;
        int32_t count = 0;
        if (!f.ReadInt32(type) || !f.ReadInt32(count))
            return fail(damaged);
        if (!CObjBase::IsRegistered(type))
            return fail(CString::Formatted(L"unknown object type %d", type));
        if (!f.CheckCount(count, 4))
            return fail(damaged);
        for (int32_t i = 0; i < count; ++i) {
            int32_t length = 0;
            if (!f.ReadInt32(length) || !f.CheckCount(length, 1))
                return fail(damaged);
            std::vector<uint8_t> record(static_cast<size_t>(length));
            f.Read(record.data(), 1, record.size());
            CFiller rec;
            rec.SetBuffer(std::move(record));
            rec.Open(CFiller::Mode::Read);
            ObjPtr obj(CObjBase::CreateObject(type));
            const int ok = obj->FromFiller(rec);
            if (!ok || rec.IsError() || rec.Remaining() != 0) {
                CString reason = rec.GetErrorMessage();
                if (reason.IsEmpty())
                    reason = rec.IsError() || !ok ? CString(L"the record ends too early")
                                                  : CString(L"the record is longer than read");
                return fail(CString::Formatted(L"object record of type %d is damaged: %s", type,
                                               reason.c_str()));
            }
            const int32_t id = obj->GetId().GetValue();
            if (!base->InsertLoaded(obj.release()))
                return fail(CString::Formatted(
                    L"object id %d of type %d is invalid or repeated in the model file", id, type));
        }
    }

    int32_t sectionSize = 0;
    if (!f.ReadInt32(sectionSize) || !f.CheckCount(sectionSize, 1))
        return fail(damaged);
    std::vector<uint8_t> sectionBytes(static_cast<size_t>(sectionSize));
    f.Read(sectionBytes.data(), 1, sectionBytes.size());
    if (f.IsError() || f.Remaining() != 0)
        return fail(damaged);
    // An empty section was written without the loads module and holds nothing to read.
    if (sectionSize > 0 && CModel::UcitajUskladisteneKombinacije != nullptr) {
        CFiller section;
        section.SetBuffer(std::move(sectionBytes));
        section.Open(CFiller::Mode::Read);
        CModel::UcitajUskladisteneKombinacije(section, FormatVersion);
        if (section.IsError()) {
            const CString reason = section.GetErrorMessage();
            return fail(reason.IsEmpty()
                            ? CString(L"stored combinations section is damaged")
                            : CString::Formatted(L"stored combinations section is damaged: %s",
                                                 reason.c_str()));
        }
    }
    return base;
}

bool CModelFile::Save(const CObjBase& base, const std::filesystem::path& file, CString& error) {
    const std::vector<uint8_t> bytes = Write(base);
    std::filesystem::path temp = file;
    temp += ".tmp";
    bool created = false;
    if (!WriteDurably(temp, bytes, created)) {
        const int code = errno;
        if (created)
            ::unlink(temp.c_str());
        error = CString::Formatted(L"cannot write model file \"%s\": %s", FromPath(temp).c_str(),
                                   SystemError(code).c_str());
        return false;
    }
    if (::rename(temp.c_str(), file.c_str()) != 0) {
        const int code = errno;
        ::unlink(temp.c_str());
        error = CString::Formatted(L"cannot replace model file \"%s\": %s", FromPath(file).c_str(),
                                   SystemError(code).c_str());
        return false;
    }
    // The rename itself reaches the disk with the directory; a failure here loses nothing.
    std::filesystem::path directory = file.parent_path();
    if (directory.empty())
        directory = ".";
    CFileHandle dir(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.Get() >= 0)
        ::fsync(dir.Get());
    return true;
}

std::unique_ptr<CObjBase> CModelFile::Load(const std::filesystem::path& file, CString& error) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        error = CString::Formatted(L"cannot open model file \"%s\": %s", FromPath(file).c_str(),
                                   SystemError(errno).c_str());
        return nullptr;
    }
    const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(in),
                                     std::istreambuf_iterator<char>()};
    if (in.bad()) {
        error = CString::Formatted(L"cannot read model file \"%s\"", FromPath(file).c_str());
        return nullptr;
    }
    return Read(bytes, error);
}

bool CModelFile::Open(const std::filesystem::path& file, std::unique_ptr<CObjBase>& open,
                      CString& error) {
    std::unique_ptr<CObjBase> loaded = Load(file, error);
    if (!loaded)
        return false;
    const bool wasCurrent = open && CObjBase::GetCurrent() == open.get();
    std::unique_ptr<CObjBase> old = std::move(open);
    open = std::move(loaded);
    if (wasCurrent)
        CObjBase::SetCurrent(open.get());
    old.reset();
    return true;
}
