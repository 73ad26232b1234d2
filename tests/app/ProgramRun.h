// Runs the program as a person would, in a folder of its own, and tells what came of it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmor::test {

namespace fs = std::filesystem;

struct Outcome {
    int code = -1; ///< exit code; 128 and more: ended by a signal
    std::string out, err;
};

inline std::string readFile(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

inline void writeFile(const fs::path &file, std::string_view text)
{
    std::ofstream(file, std::ios::binary) << text;
}

/// A folder that goes with the test.
class ScratchFolder {
public:
    ScratchFolder()
    {
        std::string name = (fs::temp_directory_path() / "velmor_test_XXXXXX").string();
        if (!mkdtemp(name.data()))
            std::abort();
        m_path = name;
    }
    ~ScratchFolder()
    {
        std::error_code error;
        fs::remove_all(m_path, error);
    }
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;
    const fs::path &path() const { return m_path; }
    fs::path operator/(const std::string &name) const { return m_path / name; }

private:
    fs::path m_path;
};

/// Starts the program; the child's number. Its output goes to the two files.
inline pid_t startProgram(const std::vector<std::string> &arguments, const fs::path &folder, const fs::path &out,
                          const fs::path &err)
{
    const pid_t child = fork();
    if (child != 0)
        return child;
    if (chdir(folder.c_str()) != 0)
        _exit(126);
    const int outFile = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int errFile = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(outFile, STDOUT_FILENO);
    dup2(errFile, STDERR_FILENO);
    setenv("VELMOR_CONFIG_DIR", folder.c_str(), 1); // not the settings of whoever runs the tests
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    std::vector<std::string> words{VELMOR_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char *> argv;
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
}

inline Outcome runProgram(const std::vector<std::string> &arguments, const fs::path &folder)
{
    const ScratchFolder output;
    const pid_t child = startProgram(arguments, folder, output / "out", output / "err");
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readFile(output / "out"),
            readFile(output / "err")};
}

/// One line that is not empty, and no more.
inline bool isOneLine(const std::string &text)
{
    return text.size() > 1 && text.find('\n') == text.size() - 1;
}

} // namespace velmor::test
