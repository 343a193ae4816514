// Reading and writing the JSON and CSV files of the interchange.
#include "DataFiles.h"

#include <cerrno>
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

} // namespace

bool IsStandardStream(const std::filesystem::path& file) {
    return file.empty() || file == "-";
}

bool ReadDataFile(const std::filesystem::path& file, std::string& text, std::string& error) {
    text.clear();
    if (IsStandardStream(file))
        return ReadAll(STDIN_FILENO, text, error);
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
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
    const std::filesystem::path directory =
        file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
    std::string temporary = (directory / ("." + file.filename().string() + ".XXXXXX")).string();
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) {
        error = Reason(errno);
        return false;
    }
    // The new file is readable as a file made by the user would be.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    int failure = 0;
    if (!WriteAll(fd, text) || ::fsync(fd) != 0 || ::fchmod(fd, 0666 & ~mask) != 0)
        failure = errno;
    if (::close(fd) != 0 && failure == 0)
        failure = errno;
    if (failure == 0 && ::rename(temporary.c_str(), file.c_str()) == 0)
        return true;
    error = Reason(failure != 0 ? failure : errno);
    ::unlink(temporary.c_str());
    return false;
}
