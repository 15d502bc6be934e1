// TempDirectory.h: a directory that goes away with its owner, and small file helpers.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class TempDirectory {
public:
    TempDirectory()
    {
        std::string pattern = std::filesystem::temp_directory_path() / "tovik-test-XXXXXX";
        m_path = std::filesystem::canonical(mkdtemp(pattern.data()));
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;
    ~TempDirectory() { std::filesystem::remove_all(m_path); }

    const std::filesystem::path& path() const { return m_path; }
    std::string operator/(const std::string& name) const { return m_path / name; }

    /// Writes a file, its directories included, and returns its path.
    std::string write(const std::string& name, const std::string& content) const
    {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

private:
    std::filesystem::path m_path;
};

inline std::string contents_of(const std::filesystem::path& file)
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}
