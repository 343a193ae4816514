#pragma once
// CWinApp: the application object of the framework. A module derives its application class
// from it and keeps one instance for its lifetime; the framework calls InitInstance when the
// module starts and ExitInstance when it ends.
#include "framework/String.h"

class CWinApp {
public:
    /// An application with the given name; without one the name stays empty.
    explicit CWinApp(const wchar_t* appName = nullptr) {
        if (appName != nullptr)
            m_strAppName = appName;
    }
    virtual ~CWinApp() = default;
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    /// Start of the application; false stops it.
    virtual bool InitInstance() { return true; }
    /// End of the application; returns its exit code.
    virtual int ExitInstance() { return 0; }

    const CString& GetAppName() const { return m_strAppName; }

private:
    CString m_strAppName;
};
