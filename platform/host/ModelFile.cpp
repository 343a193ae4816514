// The model file: reading, writing and the atomic save. docs/model-file.md gives the layout.
#include "host/ModelFile.h"

#include "diag/Assert.h"
#include "host/LoadsServices.h"
#include "host/Model.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
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

/// Checks the magic and the format version at the start of a file of `size` bytes, of which
/// `n` are given; false with the reason.
bool CheckHeader(const uint8_t* head, size_t n, size_t size, CString& error) {
    // A file cut inside its magic is still recognised as a model file.
    if (size == 0 || std::memcmp(head, CModelFile::Magic, std::min(n, MagicSize)) != 0) {
        error = L"not a model file";
        return false;
    }
    if (size < MagicSize + 4) {
        error = L"model file is truncated";
        return false;
    }
    const auto version = static_cast<int32_t>(LoadLe32(head + MagicSize));
    if (version != CModelFile::FormatVersion) {
        error = CString::Formatted(L"unsupported model file version %d", version);
        return false;
    }
    return true;
}

/// Reads up to n bytes at the end of the buffer; false with errno set when a read fails.
bool ReadUpTo(int fd, std::vector<uint8_t>& bytes, size_t n) {
    const size_t start = bytes.size();
    bytes.resize(start + n);
    size_t done = 0;
    while (done < n) {
        const ssize_t got = ::read(fd, bytes.data() + start + done, n - done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return false;
        if (got == 0)
            break; // the file became shorter since it was measured
        done += static_cast<size_t>(got);
    }
    bytes.resize(start + done);
    return true;
}

/// The bytes of a model file: only a regular file of a sane size is read, and only once its
/// magic and version are those of a model file. False with the reason otherwise.
bool ReadModelFile(const std::filesystem::path& file, std::vector<uint8_t>& bytes, CString& error) {
    const CString name = FromPath(file);
    // Opening does not wait for a writer when the file is a pipe; that is refused below.
    CFileHandle fd(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat st {};
    if (fd.Get() < 0 || ::fstat(fd.Get(), &st) != 0) {
        error = CString::Formatted(L"cannot open model file \"%s\": %s", name.c_str(),
                                   SystemError(errno).c_str());
        return false;
    }
    if (!S_ISREG(st.st_mode)) {
        error = CString::Formatted(L"cannot open model file \"%s\": %s", name.c_str(),
                                   S_ISDIR(st.st_mode) ? SystemError(EISDIR).c_str()
                                                       : L"not a regular file");
        return false;
    }
    const auto size = static_cast<uint64_t>(st.st_size);
    if (size > CModelFile::MaxFileSize) {
        error = CString::Formatted(
            L"cannot open model file \"%s\": %llu bytes is too large for a model file (at "
            L"most %llu)",
            name.c_str(), static_cast<unsigned long long>(size),
            static_cast<unsigned long long>(CModelFile::MaxFileSize));
        return false;
    }
    ::fcntl(fd.Get(), F_SETFL, ::fcntl(fd.Get(), F_GETFL) & ~O_NONBLOCK);
    bytes.clear();
    // The magic and the version are checked before the rest is read.
    const size_t headSize = std::min<size_t>(size, MagicSize + 4);
    if (ReadUpTo(fd.Get(), bytes, headSize)) {
        if (!CheckHeader(bytes.data(), bytes.size(), bytes.size() < headSize ? bytes.size() : size,
                         error))
            return false;
        if (ReadUpTo(fd.Get(), bytes, static_cast<size_t>(size) - bytes.size()))
            return true;
    }
    error = CString::Formatted(L"cannot read model file \"%s\": %s", name.c_str(),
                               SystemError(errno).c_str());
    return false;
}

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

/// The permissions a new file gets: 0666 less the process's file mode mask.
mode_t NewFileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/// What the names of the target's temporary files begin with: "." and the target's name, cut
/// so that a whole temporary name stays within the limit of a file name, and ".".
std::string TemporaryPrefix(const std::filesystem::path& target) {
    // The rest of a temporary name: the process id (at most 10 digits), "-" and "XXXXXX".
    constexpr size_t kRest = 10 + 1 + 6;
    std::string name = target.filename().string();
    if (name.size() > NAME_MAX - 2 - kRest)
        name.resize(NAME_MAX - 2 - kRest);
    return "." + name + ".";
}

/// A new, empty temporary file beside the target, created exclusively under a name of its own,
/// ".<name>.<process id>-XXXXXX" (a link or file already there is never opened); its
/// descriptor, or -1 with errno set.
int CreateTemporary(const std::filesystem::path& target, std::filesystem::path& temp) {
    std::string pattern =
        (target.parent_path() / (TemporaryPrefix(target) + std::to_string(::getpid()) + "-XXXXXX"))
            .string();
    const int fd = ::mkostemp(pattern.data(), O_CLOEXEC);
    if (fd >= 0)
        temp = pattern;
    return fd;
}

/// Removes the temporary files of the target that saves of processes no longer alive left
/// behind (a save that was killed cannot remove its own).
void RemoveOrphanedTemporaries(const std::filesystem::path& target) {
    const std::string prefix = TemporaryPrefix(target);
    std::filesystem::path directory = target.parent_path();
    if (directory.empty())
        directory = ".";
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(directory, ec)) {
        const std::string name = entry.path().filename().string();
        if (name.size() <= prefix.size() + 7 || name.compare(0, prefix.size(), prefix) != 0)
            continue;
        const std::string rest = name.substr(prefix.size());
        const size_t dash = rest.size() - 7;
        if (rest[dash] != '-' || rest.find_first_not_of("0123456789") != dash || dash > 10)
            continue;
        const long pid = std::strtol(rest.c_str(), nullptr, 10);
        if (pid > 0 && pid != ::getpid() && ::kill(static_cast<pid_t>(pid), 0) != 0 &&
            errno == ESRCH)
            ::unlink(entry.path().c_str());
    }
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
    if (!CheckHeader(bytes.data(), bytes.size(), bytes.size(), error))
        return nullptr;
    // A check of the program that fails while the file is taken in was caused by the file's
    // content: the file is refused, and the program and the open model go on.
    try {
        const vdiag::CFatalTrap trap;
        return ReadChecked(bytes, error);
    } catch (const vdiag::CFatalCheck& check) {
        error = L"model file is damaged: " + CString::FromUtf8(check.what());
    } catch (const std::bad_alloc&) {
        error = L"model file is too large to be read into memory";
    } catch (const std::exception& e) {
        error = L"model file is damaged: " + CString::FromUtf8(e.what());
    }
    return nullptr;
}

std::unique_ptr<CObjBase> CModelFile::ReadChecked(const std::vector<uint8_t>& bytes,
                                                  CString& error) {
    auto fail = [&error](CString message) -> std::unique_ptr<CObjBase> {
        error = std::move(message);
        return nullptr;
    };
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
    // The loads module checks what it needs of the model and repairs what it knows how to.
    if (CLoadsServices::ProveriUcitaniModel != nullptr) {
        CString reason;
        if (!CLoadsServices::ProveriUcitaniModel(*base, reason))
            return fail(L"model file is damaged: " + reason);
    }
    return base;
}

bool CModelFile::Save(const CObjBase& base, const std::filesystem::path& file, CString& error) {
    const CString name = FromPath(file);
    auto fail = [&](const wchar_t* what, int code) {
        error = CString::Formatted(L"%s \"%s\": %s", what, name.c_str(), SystemError(code).c_str());
        return false;
    };
    // A link to the model file is kept: the file it names is replaced.
    struct stat st {};
    std::filesystem::path target = file;
    if (::lstat(file.c_str(), &st) == 0 && S_ISLNK(st.st_mode)) {
        std::error_code ec;
        target = std::filesystem::weakly_canonical(file, ec);
        if (ec)
            return fail(L"cannot write model file", ec.value());
    }
    // An existing file keeps its permissions; only a regular file is ever replaced.
    mode_t mode = 0;
    if (::stat(target.c_str(), &st) == 0) {
        if (!S_ISREG(st.st_mode)) {
            error = CString::Formatted(L"cannot write model file \"%s\": %s", name.c_str(),
                                       S_ISDIR(st.st_mode) ? SystemError(EISDIR).c_str()
                                                           : L"not a regular file");
            return false;
        }
        mode = st.st_mode & 07777;
    } else if (errno != ENOENT) {
        return fail(L"cannot write model file", errno);
    } else {
        mode = NewFileMode();
    }
    const std::vector<uint8_t> bytes = Write(base);
    if (bytes.size() > MaxFileSize) {
        error = CString::Formatted(L"cannot write model file \"%s\": the model is too large for "
                                   L"a model file (%llu bytes, at most %llu)",
                                   name.c_str(), static_cast<unsigned long long>(bytes.size()),
                                   static_cast<unsigned long long>(MaxFileSize));
        return false;
    }

    std::filesystem::path temp;
    CFileHandle fd(CreateTemporary(target, temp));
    if (fd.Get() < 0)
        return fail(L"cannot write model file", errno);
    if (::fchmod(fd.Get(), mode) != 0 || !WriteAll(fd.Get(), bytes) || ::fsync(fd.Get()) != 0 ||
        !fd.Close()) {
        const int code = errno;
        ::unlink(temp.c_str());
        return fail(L"cannot write model file", code);
    }
    if (::rename(temp.c_str(), target.c_str()) != 0) {
        const int code = errno;
        ::unlink(temp.c_str());
        return fail(L"cannot replace model file", code);
    }
    // The rename itself reaches the disk with the directory; a failure here loses nothing.
    std::filesystem::path directory = target.parent_path();
    if (directory.empty())
        directory = ".";
    CFileHandle dir(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.Get() >= 0)
        ::fsync(dir.Get());
    RemoveOrphanedTemporaries(target);
    return true;
}

std::unique_ptr<CObjBase> CModelFile::Load(const std::filesystem::path& file, CString& error) {
    std::vector<uint8_t> bytes;
    if (!ReadModelFile(file, bytes, error))
        return nullptr;
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
