#pragma once
// A temporary directory for one test, removed with everything in it when the test ends.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
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
        // A test may have taken the write permission away.
        namespace fs = std::filesystem;
        std::error_code ignored;
        fs::permissions(m_path, fs::perms::owner_all, fs::perm_options::add, ignored);
        fs::remove_all(m_path, ignored);
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// The whole content of a file, empty when it cannot be read.
inline std::string ReadText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
