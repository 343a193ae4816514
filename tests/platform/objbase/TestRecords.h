#pragma once
// Small persistent records for the object base tests, and a temporary directory that also
// takes the error log of fatal checks.
#include "diag/Assert.h"
#include "objbase/ObjBase.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// A record with a value and a factor; counts notifications and releases.
class CTestZapis : public CPooledObj<CTestZapis, 501> {
public:
    CTestZapis() = default;
    explicit CTestZapis(int32_t value, double factor = 1.0)
        : m_nVrednost(value), m_dFaktor(factor) {}

    int ToFiller(CFiller& f) const override {
        CObj::ToFiller(f);
        f.WriteInt32(1);
        f.WriteInt32(m_nVrednost);
        f.WriteFloat64(m_dFaktor);
        return 1;
    }
    int FromFiller(CFiller& f) override {
        if (!CObj::FromFiller(f))
            return 0;
        int32_t version = 0;
        if (!f.ReadInt32(version))
            return 0;
        if (version != 1) {
            CTrFiller::SetObjVerErr(f, "TestZapis", version);
            return 0;
        }
        return f.ReadInt32(m_nVrednost) && f.ReadFloat64(m_dFaktor) ? 1 : 0;
    }
    void NotifyInsert() override { ++s_nInserted; }
    void NotifyDelete() override { ++s_nDeleted; }
    void DestroyMe() { ++s_nReleased; }

    int32_t m_nVrednost = 0;
    double m_dFaktor = 1.0;

    inline static int s_nInserted = 0;
    inline static int s_nDeleted = 0;
    inline static int s_nReleased = 0;
};

/// A second record type, with a name-like list of codes, so that stores hold several types.
class CTestOznaka : public CPooledObj<CTestOznaka, 502> {
public:
    int ToFiller(CFiller& f) const override {
        CObj::ToFiller(f);
        f.WriteInt32(1);
        f.WriteInt32(static_cast<int32_t>(m_kodovi.size()));
        for (const int32_t k : m_kodovi)
            f.WriteInt32(k);
        return 1;
    }
    int FromFiller(CFiller& f) override {
        if (!CObj::FromFiller(f))
            return 0;
        int32_t version = 0;
        int32_t count = 0;
        if (!f.ReadInt32(version) || version != 1 || !f.ReadInt32(count) || !f.CheckCount(count, 4))
            return 0;
        m_kodovi.assign(static_cast<size_t>(count), 0);
        for (int32_t& k : m_kodovi)
            f.ReadInt32(k);
        return f.IsError() ? 0 : 1;
    }

    std::vector<int32_t> m_kodovi;
};

inline void RegisterTestRecords() {
    if (!CObjBase::IsRegistered(CTestZapis::Type))
        CObjBase::RegisterSubBase(new CTestZapis, 1);
    if (!CObjBase::IsRegistered(CTestOznaka::Type))
        CObjBase::RegisterSubBase(new CTestOznaka, 1);
}

/// A fresh temporary directory, removed with everything in it at the end of the test. Fatal
/// checks write their error log into it.
class CTempDir {
public:
    CTempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vorta-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("cannot create a temporary directory");
        m_path = pattern;
    }
    ~CTempDir() {
        if (m_bLogCaught) {
            vdiag::SetLogRoot(m_oldRoot);
            if (m_oldTmp)
                ::setenv("TMP", m_oldTmp->c_str(), 1);
            else
                ::unsetenv("TMP");
        }
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;
    const std::filesystem::path& Path() const { return m_path; }

    /// Points the error log and TMP at this directory until the end of the test.
    void CatchErrorLog() {
        if (!m_bLogCaught) {
            m_oldRoot = vdiag::GetLogRoot();
            if (const char* tmp = std::getenv("TMP"))
                m_oldTmp = tmp;
            m_bLogCaught = true;
        }
        vdiag::SetLogRoot(m_path.string());
        ::setenv("TMP", m_path.c_str(), 1);
    }

private:
    std::filesystem::path m_path;
    bool m_bLogCaught = false;
    std::string m_oldRoot;
    std::optional<std::string> m_oldTmp;
};
