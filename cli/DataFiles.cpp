// Reading and writing the JSON and CSV files of the interchange.
#include "DataFiles.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uint64_t kMaxSize = uint64_t{1} << 30;

std::string Reason(int error) {
    return std::strerror(error);
}

/// Reads what the descriptor gives up to its end; false with the reason.
bool ReadAll(int fd, std::string& text, std::string& error) {
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0)
            return true;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            error = Reason(errno);
            return false;
        }
        if (text.size() + static_cast<size_t>(n) > kMaxSize) {
            error = "it is larger than 1 GiB";
            return false;
        }
        text.append(buffer, static_cast<size_t>(n));
    }
}

bool WriteAll(int fd, const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

/// Writes to a device or a pipe that exists already; a pipe without a reader is refused at
/// once rather than waited for.
bool WriteInPlace(const std::filesystem::path& file, const std::string& text, std::string& error) {
    const int fd = ::open(file.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        error = Reason(errno);
        return false;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    int failure = WriteAll(fd, text) ? 0 : errno;
    if (::close(fd) != 0 && failure == 0)
        failure = errno;
    if (failure != 0)
        error = Reason(failure);
    return failure == 0;
}

} // namespace

bool IsStandardStream(const std::filesystem::path& file) {
    return file.empty() || file == "-";
}

bool ReadDataFile(const std::filesystem::path& file, std::string& text, std::string& error) {
    text.clear();
    if (IsStandardStream(file))
        return ReadAll(STDIN_FILENO, text, error);
    // Opening does not wait for a writer when the file is a pipe; that is refused below.
    const int fd = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        error = Reason(errno);
        return false;
    }
    struct stat info {};
    bool ok = ::fstat(fd, &info) == 0;
    if (!ok) {
        error = Reason(errno);
    } else if (!S_ISREG(info.st_mode)) {
        error = "it is not a regular file";
        ok = false;
    } else if (static_cast<uint64_t>(info.st_size) > kMaxSize) {
        error = "it is larger than 1 GiB";
        ok = false;
    } else {
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
        text.reserve(static_cast<size_t>(info.st_size));
        ok = ReadAll(fd, text, error);
    }
    ::close(fd);
    return ok;
}

bool WriteDataFile(const std::filesystem::path& file, const std::string& text, std::ostream& out,
                   std::string& error) {
    if (IsStandardStream(file)) {
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        out.flush();
        if (!out) {
            error = "the output cannot be written";
            return false;
        }
        return true;
    }
    // A link is kept: the file it names is replaced.
    std::filesystem::path target = file;
    struct stat info {};
    if (::lstat(file.c_str(), &info) == 0 && S_ISLNK(info.st_mode)) {
        std::error_code ec;
        target = std::filesystem::weakly_canonical(file, ec);
        if (ec) {
            error = Reason(ec.value());
            return false;
        }
    }
    // A file that exists keeps its permissions; a device or a pipe is written as it is.
    mode_t mode = 0;
    if (::stat(target.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode)) {
            error = Reason(EISDIR);
            return false;
        }
        if (!S_ISREG(info.st_mode))
            return WriteInPlace(target, text, error);
        mode = info.st_mode & 07777;
    } else if (errno != ENOENT) {
        error = Reason(errno);
        return false;
    } else {
        // The new file is readable as a file made by the user would be.
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    // The temporary file: ".<name>.XXXXXX" beside the target, the name cut so that the whole
    // stays within the limit of a file name.
    std::string name = target.filename().string();
    name.resize(std::min<size_t>(name.size(), NAME_MAX - 8));
    std::string temporary = (target.parent_path() / ("." + name + ".XXXXXX")).string();
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        error = Reason(errno);
        return false;
    }
    int failure = 0;
    if (::fchmod(fd, mode) != 0 || !WriteAll(fd, text) || ::fsync(fd) != 0)
        failure = errno;
    if (::close(fd) != 0 && failure == 0)
        failure = errno;
    if (failure == 0 && ::rename(temporary.c_str(), target.c_str()) == 0)
        return true;
    error = Reason(failure != 0 ? failure : errno);
    ::unlink(temporary.c_str());
    return false;
}
