#pragma once
// A temporary directory that takes the error log of fatal checks: the log root and TMP point
// at it until the end of the test.
#include "diag/Assert.h"
#include "platform/TempDir.h"

#include <optional>

class CErrorLogDir : public CTempDir {
public:
    CErrorLogDir() : m_oldRoot(vdiag::GetLogRoot()) {
        if (const char* tmp = std::getenv("TMP"))
            m_oldTmp = tmp;
        vdiag::SetLogRoot(Path().string());
        ::setenv("TMP", Path().c_str(), 1);
    }
    ~CErrorLogDir() {
        vdiag::SetLogRoot(m_oldRoot);
        if (m_oldTmp)
            ::setenv("TMP", m_oldTmp->c_str(), 1);
        else
            ::unsetenv("TMP");
    }
    std::string Log() const { return ReadText(Path() / "vmerror.log"); }

private:
    std::string m_oldRoot;
    std::optional<std::string> m_oldTmp;
};
