#pragma once
// The assertion routine and the internal-error routine with the error log.
//
// A failed check appends an entry to the error log "vmerror.log", shows a message box and
// ends the process at once with exit code 0 (a host may choose another code); nothing is
// saved. The log is tried first at the log root (the root of the file system unless a host or
// a test sets another one) and then in the current directory; when the environment variable
// TMP is set, the current directory is first changed to it.
//
// While a CFatalTrap is alive on the calling thread, a failed check does none of that: it
// throws CFatalCheck with the check's text instead. A host sets a trap around work whose
// failure is the fault of its input rather than of the program (reading a model file), so
// that the failure becomes a refusal of that input.
#include <functional>
#include <stdexcept>
#include <string>

namespace vdiag {

/// What the user is shown when a check fails: text and caption of a system-modal error box.
using BoxPresenter = std::function<void(const std::string& text, const std::string& caption)>;

/// Installs the presenter of the fatal box; an empty function restores the headless default,
/// which writes caption and text to standard error.
void SetBoxPresenter(BoxPresenter presenter);

/// Directory of the first attempt to open the log (default "/"). Tests point it at their own
/// temporary directory so that nothing is written outside it.
void SetLogRoot(const std::string& directory);
const std::string& GetLogRoot();

/// The exit code of a process ended by a failed check; 0 unless a host chose another.
void SetFatalExitCode(int code);
int GetFatalExitCode();

/// A failed check caught by a trap. what() is the check on one line: "ASSERT(expression)
/// [File : line]" for an assertion, "message [File : line]" for an internal error.
class CFatalCheck : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Turns failed checks on the calling thread into CFatalCheck exceptions for as long as it
/// lives (traps nest); nothing is logged and no box is shown for them.
class CFatalTrap {
public:
    CFatalTrap();
    ~CFatalTrap();
    CFatalTrap(const CFatalTrap&) = delete;
    CFatalTrap& operator=(const CFatalTrap&) = delete;
};

} // namespace vdiag

/// Reports a failed check of `expression` at file:line and ends the process (under a trap:
/// throws vdiag::CFatalCheck).
[[noreturn]] void gfnAssertFailed(const char* expression, const char* file, int line);

/// Reports an impossible state described by `message` at file:line and ends the process (under
/// a trap: throws vdiag::CFatalCheck).
[[noreturn]] void gfnInternalError(const char* file, int line, const std::string& message);

/// Checks a condition with an explicit expression text, file name and line.
inline void gfnAssert(bool condition, const char* expression, const char* file, int line) {
    if (!condition)
        gfnAssertFailed(expression, file, line);
}

/// Base name of a source path without directories and extension ("a/b/Opterecenje.cpp" gives
/// "Opterecenje"): the file name the error log shows.
const char* gfnSourceName(const char* path);

// The assertion routine: checks the expression and names it, its file and its line.
#define VASSERT(expr)                                                                              \
    ((expr) ? static_cast<void>(0) : gfnAssertFailed(#expr, gfnSourceName(__FILE__), __LINE__))
