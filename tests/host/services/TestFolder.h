// A folder of its own for a test, gone at its end; and environment variables set for as long.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

namespace velmor::test {

class TestFolder {
public:
    TestFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "velmor-test-XXXXXX").string();
        m_path = ::mkdtemp(name.data()) ? name : std::string();
        EXPECT_FALSE(m_path.empty()) << "no temporary folder";
    }
    ~TestFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;
    const std::filesystem::path &path() const { return m_path; }
    std::filesystem::path write(const std::filesystem::path &name, const std::string &text) const
    {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << text;
        return m_path / name;
    }
    std::string read(const std::filesystem::path &name) const
    {
        std::ostringstream text;
        text << std::ifstream(m_path / name, std::ios::binary).rdbuf();
        return text.str();
    }

private:
    std::filesystem::path m_path;
};

/// Sets a variable (or takes it away) and puts the old state back.
class TestVariable {
public:
    TestVariable(const char *name, const char *value) : m_name(name)
    {
        if (const char *old = std::getenv(name))
            m_old = old;
        set(value);
    }
    TestVariable(const char *name, const std::filesystem::path &value) : TestVariable(name, value.c_str()) {}
    ~TestVariable() { set(m_old ? m_old->c_str() : nullptr); }
    TestVariable(const TestVariable &) = delete;
    TestVariable &operator=(const TestVariable &) = delete;

private:
    void set(const char *value) { value ? ::setenv(m_name, value, 1) : ::unsetenv(m_name); }
    const char *m_name;
    std::optional<std::string> m_old;
};

} // namespace velmor::test
