#pragma once
// A temporary directory for one test, removed with everything in it when the test ends.
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

class CTempDir {
public:
    CTempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vorta-test-XXXXXX");
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("cannot create a temporary directory");
        m_path = pattern;
    }
    ~CTempDir() {
        std::error_code ec;
        std::filesystem::remove_all(m_path, ec);
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};
