// The model file: reading, writing and the atomic save. docs/model-file.md gives the layout.
#include "host/ModelFile.h"

#include "diag/Assert.h"
#include "host/LoadsServices.h"
#include "host/Model.h"
#include "host/ModelFileInput.h"
#include "stream/Crc32.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t MagicSize = sizeof(CModelFile::Magic);
/// Magic, format version, number of type sections, length of the stored-combinations section
/// and the checksum: the smallest possible file.
constexpr size_t MinimumSize = MagicSize + 4 + 4 + 4 + 4;

struct DestroyObj {
    void operator()(CObj* obj) const { obj->Destroy(1); }
};
using ObjPtr = std::unique_ptr<CObj, DestroyObj>;

uint32_t LoadLe32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
}

void WriteBlock(CFiller& f, const std::vector<uint8_t>& bytes) {
    f.WriteInt32(static_cast<int32_t>(bytes.size()));
    f.Write(bytes.data(), 1, bytes.size());
}

/// Writes everything of a model file but its checksum: the magic and version, the objects of
/// every persistent type, and the stored-combinations section.
void WriteBody(const CObjBase& base, CFiller& f) {
    f.Write(CModelFile::Magic, 1, MagicSize);
    f.WriteInt32(CModelFile::FormatVersion);

    std::vector<int> types;
    for (const int type : CObjBase::GetRegisteredTypes())
        if (CObjBase::IsPersistent(type) && base.Count(type) > 0)
            types.push_back(type);
    f.WriteInt32(static_cast<int32_t>(types.size()));
    // One stream takes every record in turn before it is written with its length.
    CFiller record;
    for (const int type : types) {
        const std::vector<CId> ids = base.Ids(type);
        f.WriteInt32(type);
        f.WriteInt32(static_cast<int32_t>(ids.size()));
        for (const CId& id : ids) {
            record.Open(CFiller::Mode::Write);
            base.Find(id)->ToFiller(record);
            record.Close();
            WriteBlock(f, record.Buffer());
        }
    }

    record.Open(CFiller::Mode::Write);
    if (CModel::SnimiUskladisteneKombinacije != nullptr)
        CModel::SnimiUskladisteneKombinacije(record);
    record.Close();
    WriteBlock(f, record.Buffer());
}

/// A stream that writes what it is given into a file in pieces as it comes, so that a large
/// model is never held whole as bytes, and sums the CRC-32 of it on the way. Beyond the largest
/// model file it only counts.
class CFileOutput : public CFiller {
public:
    explicit CFileOutput(int fd) : m_fd(fd), m_crc(0) {
        m_piece.reserve(kPiece);
        Open(Mode::Write);
    }
    uint32_t Crc() const { return m_crc; }
    uint64_t Total() const { return m_total; }
    bool TooLarge() const { return m_total > CModelFile::MaxFileSize; }
    /// Writes what is still held; false with errno set when any write failed.
    bool Finish() {
        Flush();
        if (m_errno != 0)
            errno = m_errno;
        return m_errno == 0;
    }

protected:
    void Sink(const uint8_t* data, size_t n) override {
        m_crc = Crc32(m_crc, data, n);
        m_total += n;
        if (m_errno != 0 || TooLarge())
            return;
        if (m_piece.size() + n > kPiece)
            Flush();
        if (n >= kPiece)
            Put(data, n);
        else
            m_piece.insert(m_piece.end(), data, data + n);
    }

private:
    static constexpr size_t kPiece = size_t{1} << 20;

    void Flush() {
        if (m_errno == 0 && !TooLarge())
            Put(m_piece.data(), m_piece.size());
        m_piece.clear();
    }
    void Put(const uint8_t* data, size_t n) {
        size_t done = 0;
        while (m_errno == 0 && done < n) {
            const ssize_t w = ::write(m_fd, data + done, n - done);
            if (w < 0 && errno == EINTR)
                continue;
            if (w <= 0)
                m_errno = w < 0 ? errno : EIO;
            else
                done += static_cast<size_t>(w);
        }
    }

    int m_fd;
    uint32_t m_crc;
    uint64_t m_total = 0;
    int m_errno = 0;
    std::vector<uint8_t> m_piece;
};

/// Walks the sections by their counts and lengths only. False when the file ends before the
/// walk does: then a checksum mismatch is reported as a truncated file.
bool StructureComplete(CModelFileInput& in) {
    const size_t end = in.Size() - 4;
    size_t pos = MagicSize + 4;
    auto next = [&](int64_t& v) {
        const uint8_t* p = pos <= end && end - pos >= 4 ? in.Bytes(pos, 4) : nullptr;
        if (p == nullptr)
            return false;
        v = static_cast<int32_t>(LoadLe32(p));
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
    /// Gives the descriptor up without closing it.
    void Release() { m_fd = -1; }
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

/// Opens a model file for reading: only a regular file of a sane size. Its descriptor and
/// size, or -1 with the reason.
int OpenModelFile(const std::filesystem::path& file, size_t& size, CString& error) {
    const CString name = FromPath(file);
    // Opening does not wait for a writer when the file is a pipe; that is refused below.
    CFileHandle fd(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat st {};
    if (fd.Get() < 0 || ::fstat(fd.Get(), &st) != 0) {
        error = CString::Formatted(L"cannot open model file \"%s\": %s", name.c_str(),
                                   SystemError(errno).c_str());
        return -1;
    }
    if (!S_ISREG(st.st_mode)) {
        error = CString::Formatted(L"cannot open model file \"%s\": %s", name.c_str(),
                                   S_ISDIR(st.st_mode) ? SystemError(EISDIR).c_str()
                                                       : L"not a regular file");
        return -1;
    }
    const auto bytes = static_cast<uint64_t>(st.st_size);
    if (bytes > CModelFile::MaxFileSize) {
        error = CString::Formatted(
            L"cannot open model file \"%s\": %llu bytes is too large for a model file (at "
            L"most %llu)",
            name.c_str(), static_cast<unsigned long long>(bytes),
            static_cast<unsigned long long>(CModelFile::MaxFileSize));
        return -1;
    }
    ::fcntl(fd.Get(), F_SETFL, ::fcntl(fd.Get(), F_GETFL) & ~O_NONBLOCK);
    size = static_cast<size_t>(bytes);
    const int opened = fd.Get();
    fd.Release();
    return opened;
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

/// The reason a check of the program or an allocation failed while a file was taken in: the
/// failure was caused by the file's content, so the file is refused and the program and the
/// open model go on.
template <class F> CString Trapped(F&& work) {
    try {
        const vdiag::CFatalTrap trap;
        work();
    } catch (const vdiag::CFatalCheck& check) {
        return L"model file is damaged: " + CString::FromUtf8(check.what());
    } catch (const std::bad_alloc&) {
        return L"model file is too large to be read into memory";
    } catch (const std::exception& e) {
        return L"model file is damaged: " + CString::FromUtf8(e.what());
    }
    return CString();
}

/// Reads the objects of every type section into the base, from pos on; the reason when they
/// cannot be taken (a damaged file), with pos where the objects end.
CString ReadObjects(CModelFileInput& in, size_t& pos, CObjBase& base) {
    const CString damaged = L"model file is damaged";
    const size_t end = in.Size() - 4;
    auto readInt = [&](int32_t& v) {
        const uint8_t* p = end - pos >= 4 ? in.Bytes(pos, 4) : nullptr;
        if (p == nullptr)
            return false;
        v = static_cast<int32_t>(LoadLe32(p));
        pos += 4;
        return true;
    };
    // A count fits when its elements of at least `size` bytes fit into what is left.
    auto fits = [&](int32_t count, size_t size) {
        return count >= 0 && static_cast<size_t>(count) <= (end - pos) / size;
    };
    int32_t types = 0;
    if (!readInt(types) || !fits(types, 8))
        return damaged;
    // One stream reads every record where it lies.
    CFiller rec;
    for (int32_t t = 0; t < types; ++t) {
        int32_t type = 0;
        int32_t count = 0;
        if (!readInt(type) || !readInt(count))
            return damaged;
        if (!CObjBase::IsRegistered(type))
            return CString::Formatted(L"unknown object type %d", type);
        if (!fits(count, 4))
            return damaged;
        for (int32_t i = 0; i < count; ++i) {
            int32_t length = 0;
            if (!readInt(length) || !fits(length, 1))
                return damaged;
            const uint8_t* record = in.Bytes(pos, static_cast<size_t>(length));
            if (record == nullptr)
                return damaged;
            pos += static_cast<size_t>(length);
            rec.SetView(record, static_cast<size_t>(length));
            rec.Open(CFiller::Mode::Read);
            ObjPtr obj(CObjBase::CreateForReading(type));
            const int ok = obj->FromFiller(rec);
            if (!ok || rec.IsError() || rec.Remaining() != 0) {
                CString reason = rec.GetErrorMessage();
                if (reason.IsEmpty())
                    reason = rec.IsError() || !ok ? CString(L"the record ends too early")
                                                  : CString(L"the record is longer than read");
                return CString::Formatted(L"object record of type %d is damaged: %s", type,
                                          reason.c_str());
            }
            const int32_t id = obj->GetId().GetValue();
            if (!base.InsertLoaded(obj.release()))
                return CString::Formatted(
                    L"object id %d of type %d is invalid or repeated in the model file", id, type);
        }
    }
    return CString();
}

/// A new object base read from the input, or null with the reason; `name` names the file in the
/// reason a read fails.
std::unique_ptr<CObjBase> ReadInput(CModelFileInput& in, const CString& name, CString& error) {
    auto fail = [&error](CString message) -> std::unique_ptr<CObjBase> {
        error = std::move(message);
        return nullptr;
    };
    auto unreadable = [&]() {
        return fail(in.Error() == 0
                        ? CString(L"model file is truncated")
                        : CString::Formatted(L"cannot read model file \"%s\": %s", name.c_str(),
                                             SystemError(in.Error()).c_str()));
    };
    if (in.Size() < MinimumSize)
        return fail(L"model file is truncated");
    const size_t bodySize = in.Size() - 4;

    // The objects are read as the file passes, its checksum summed on the way; what they say
    // counts only once the checksum holds, and a damaged file is reported as such first.
    auto base = std::make_unique<CObjBase>();
    size_t pos = MagicSize + 4;
    CString reason;
    const CString trapped = Trapped([&] { reason = ReadObjects(in, pos, *base); });
    if (!trapped.IsEmpty())
        reason = trapped;
    uint32_t crc = 0;
    const uint8_t* stored = nullptr;
    if (!in.Checksum(crc) || (stored = in.Bytes(bodySize, 4)) == nullptr)
        return unreadable();
    if (crc != LoadLe32(stored)) {
        if (!StructureComplete(in))
            return in.Failed() ? unreadable() : fail(L"model file is truncated");
        return fail(L"model file is damaged (checksum mismatch)");
    }
    if (!reason.IsEmpty()) {
        base.reset();
        return fail(reason);
    }

    // The checksum holds, so what follows only fails for a file written wrongly; every count
    // and length is still checked before it is trusted.
    const CString damaged = L"model file is damaged";
    const uint8_t* p = bodySize - pos >= 4 ? in.Bytes(pos, 4) : nullptr;
    if (p == nullptr)
        return in.Failed() ? unreadable() : fail(damaged);
    const auto sectionSize = static_cast<int32_t>(LoadLe32(p));
    pos += 4;
    if (sectionSize < 0 || static_cast<size_t>(sectionSize) != bodySize - pos)
        return fail(damaged);
    // An empty section was written without the loads module and holds nothing to read.
    if (sectionSize > 0 && CModel::UcitajUskladisteneKombinacije != nullptr) {
        const uint8_t* bytes = in.Bytes(pos, static_cast<size_t>(sectionSize));
        if (bytes == nullptr)
            return unreadable();
        CFiller section;
        section.SetView(bytes, static_cast<size_t>(sectionSize));
        section.Open(CFiller::Mode::Read);
        reason = Trapped(
            [&] { CModel::UcitajUskladisteneKombinacije(section, CModelFile::FormatVersion); });
        if (!reason.IsEmpty())
            return fail(reason);
        if (section.IsError()) {
            const CString why = section.GetErrorMessage();
            return fail(why.IsEmpty()
                            ? CString(L"stored combinations section is damaged")
                            : CString::Formatted(L"stored combinations section is damaged: %s",
                                                 why.c_str()));
        }
    }
    // The loads module checks what it needs of the model and repairs what it knows how to.
    if (CLoadsServices::ProveriUcitaniModel != nullptr) {
        bool ok = false;
        CString why;
        reason = Trapped([&] { ok = CLoadsServices::ProveriUcitaniModel(*base, why); });
        if (!reason.IsEmpty())
            return fail(reason);
        if (!ok)
            return fail(L"model file is damaged: " + why);
    }
    return base;
}

/// As ReadInput, with failed checks trapped anywhere in the reading.
std::unique_ptr<CObjBase> ReadTrapped(CModelFileInput& in, const CString& name, CString& error) {
    std::unique_ptr<CObjBase> base;
    const CString reason = Trapped([&] { base = ReadInput(in, name, error); });
    if (reason.IsEmpty())
        return base;
    error = reason;
    return nullptr;
}

} // namespace

std::vector<uint8_t> CModelFile::Write(const CObjBase& base) {
    CFiller f(size_t{1} << 20);
    f.Open(CFiller::Mode::Write);
    WriteBody(base, f);
    f.WriteUInt32(Crc32(0, f.Buffer().data(), f.Buffer().size()));
    f.Close();
    return f.TakeBuffer();
}

std::unique_ptr<CObjBase> CModelFile::Read(const std::vector<uint8_t>& bytes, CString& error) {
    if (!CheckHeader(bytes.data(), bytes.size(), bytes.size(), error))
        return nullptr;
    CModelFileInput in(bytes.data(), bytes.size());
    return ReadTrapped(in, CString(), error);
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
    std::filesystem::path temp;
    CFileHandle fd(CreateTemporary(target, temp));
    if (fd.Get() < 0)
        return fail(L"cannot write model file", errno);
    // The file is written as its bytes are made.
    CFileOutput out(fd.Get());
    bool written = ::fchmod(fd.Get(), mode) == 0;
    if (written) {
        WriteBody(base, out);
        out.WriteUInt32(out.Crc());
        written = out.Finish();
    }
    if (out.TooLarge()) {
        ::unlink(temp.c_str());
        error = CString::Formatted(L"cannot write model file \"%s\": the model is too large for "
                                   L"a model file (%llu bytes, at most %llu)",
                                   name.c_str(), static_cast<unsigned long long>(out.Total()),
                                   static_cast<unsigned long long>(MaxFileSize));
        return false;
    }
    if (!written || ::fsync(fd.Get()) != 0 || !fd.Close()) {
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
    size_t size = 0;
    CFileHandle fd(OpenModelFile(file, size, error));
    if (fd.Get() < 0)
        return nullptr;
    // The magic and the version are checked before the rest is read.
    CModelFileInput in(fd.Get(), size);
    const size_t headSize = std::min(size, MagicSize + 4);
    const uint8_t* head = in.Bytes(0, headSize);
    if (head == nullptr && in.Error() != 0) {
        error = CString::Formatted(L"cannot read model file \"%s\": %s", FromPath(file).c_str(),
                                   SystemError(in.Error()).c_str());
        return nullptr;
    }
    if (head == nullptr) {
        // The file became shorter than its header since it was measured.
        error = L"model file is truncated";
        return nullptr;
    }
    if (!CheckHeader(head, headSize, size, error))
        return nullptr;
    return ReadTrapped(in, FromPath(file), error);
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
