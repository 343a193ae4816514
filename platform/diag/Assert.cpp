// The assertion routine and the internal-error routine: error log, fatal box, immediate exit;
// or, under a trap, an exception that carries the check.
#include "Assert.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <set>
#include <string_view>
#include <unistd.h>

namespace {

constexpr const char* kLogName = "vmerror.log";

vdiag::BoxPresenter& Presenter() {
    static vdiag::BoxPresenter presenter;
    return presenter;
}

std::string& LogRoot() {
    static std::string root = "/";
    return root;
}

int g_nFatalExitCode = 0;
thread_local int t_nTraps = 0;

/// Opens the error log for appending: first at the log root, then in the current directory.
std::FILE* OpenLog() {
    if (const char* tmp = std::getenv("TMP"); tmp != nullptr) {
        // A directory that cannot be entered leaves the current one; the log still follows.
        [[maybe_unused]] const int rc = ::chdir(tmp);
    }
    const std::string rooted = (std::filesystem::path(LogRoot()) / kLogName).string();
    if (std::FILE* f = std::fopen(rooted.c_str(), "a+"); f != nullptr)
        return f;
    return std::fopen(kLogName, "a+");
}

/// Appends one entry to the error log; `what` is the failed expression or the message.
void WriteLogEntry(const char* what, const char* file, int line) {
    std::FILE* f = OpenLog();
    if (f == nullptr)
        return;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::fprintf(f, "##### BEGINING OF STACK DUMP\n\n");
    std::fprintf(f, "Date [%02d.%02d.%04d]\n", local.tm_mday, local.tm_mon + 1,
                 local.tm_year + 1900);
    std::fprintf(f, "Local System Time [%02d:%02d]\n\n", local.tm_hour, local.tm_min);
    std::fprintf(f, "ASSERT(%s)\nFILE: %s\nLINE: %d\n\n", what, file, line);
    std::fclose(f);
}

/// printf into a std::string.
[[gnu::format(printf, 1, 2)]] std::string Printf(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    const int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string s;
    if (n > 0) {
        s.resize(static_cast<size_t>(n) + 1);
        std::vsnprintf(s.data(), s.size(), fmt, args);
        s.resize(static_cast<size_t>(n));
    }
    va_end(args);
    return s;
}

/// Shows the fatal box and ends the process; nothing is saved and no destructor runs.
[[noreturn]] void ShowBoxAndExit(const std::string& text, const std::string& caption) {
    try {
        if (Presenter())
            Presenter()(text, caption);
        else
            std::fprintf(stderr, "%s\n%s\n", caption.c_str(), text.c_str());
    } catch (...) {
        // The process ends whatever the presenter does.
    }
    std::fflush(nullptr);
    std::_Exit(g_nFatalExitCode);
}

const char* OrEmpty(const char* s) {
    return s != nullptr ? s : "";
}

} // namespace

namespace vdiag {

void SetBoxPresenter(BoxPresenter presenter) {
    Presenter() = std::move(presenter);
}

void SetLogRoot(const std::string& directory) {
    LogRoot() = directory;
}

const std::string& GetLogRoot() {
    return LogRoot();
}

void SetFatalExitCode(int code) {
    g_nFatalExitCode = code;
}

int GetFatalExitCode() {
    return g_nFatalExitCode;
}

CFatalTrap::CFatalTrap() {
    ++t_nTraps;
}

CFatalTrap::~CFatalTrap() {
    --t_nTraps;
}

} // namespace vdiag

void gfnAssertFailed(const char* expression, const char* file, int line) {
    expression = OrEmpty(expression);
    file = OrEmpty(file);
    if (t_nTraps > 0)
        throw vdiag::CFatalCheck(Printf("ASSERT(%s) [%s : %d]", expression, file, line));
    WriteLogEntry(expression, file, line);
    ShowBoxAndExit(Printf("ASSERT(%s)\n[%s : %d]\n", expression, file, line),
                   "ASSERT FAILED - Error log \"vmerror.log\" created.");
}

void gfnInternalError(const char* file, int line, const std::string& message) {
    file = OrEmpty(file);
    if (t_nTraps > 0)
        throw vdiag::CFatalCheck(Printf("%s [%s : %d]", message.c_str(), file, line));
    WriteLogEntry(message.c_str(), file, line);
    ShowBoxAndExit(Printf("[%s : %d]\n%s", file, line, message.c_str()),
                   "INTERNAL ERROR - PROGRAM TERMINATES");
}

const char* gfnSourceName(const char* path) {
    // The names are kept for the life of the process, so the pointers stay valid; a set of
    // strings keeps every element where it was created.
    static std::mutex mutex;
    static std::set<std::string, std::less<>> names;
    const std::string_view full(OrEmpty(path));
    const size_t slash = full.find_last_of("/\\");
    std::string_view name = slash == std::string_view::npos ? full : full.substr(slash + 1);
    if (const size_t dot = name.rfind('.'); dot != std::string_view::npos && dot > 0)
        name = name.substr(0, dot);
    const std::lock_guard lock(mutex);
    auto it = names.find(name);
    if (it == names.end())
        it = names.emplace(name).first;
    return it->c_str();
}
