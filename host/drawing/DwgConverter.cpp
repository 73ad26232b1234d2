#include "host/drawing/DwgConverter.h"

#include "host/drawing/Texts.h"
#include "host/drawing/dxf/AtomicFile.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace velmor {

namespace fs = std::filesystem;

namespace {

constexpr int kLongestRunMilliseconds = 120'000, kStepMilliseconds = 20;

fs::path programInPath(const std::string &name)
{
    const char *path = std::getenv("PATH");
    std::string_view rest = path ? path : "";
    while (!rest.empty()) {
        const auto end = rest.find(':');
        const fs::path program = fs::path(rest.substr(0, end)) / name;
        if (::access(program.c_str(), X_OK) == 0 && fs::is_regular_file(program))
            return program;
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return {};
}

/// A folder of our own that goes with everything in it.
class WorkFolder {
public:
    WorkFolder()
    {
        std::string name = (fs::temp_directory_path() / "velmor-convert-XXXXXX").string();
        if (::mkdtemp(name.data()))
            m_path = name;
    }
    ~WorkFolder()
    {
        std::error_code error;
        if (!m_path.empty())
            fs::remove_all(m_path, error);
    }
    WorkFolder(const WorkFolder &) = delete;
    WorkFolder &operator=(const WorkFolder &) = delete;
    const fs::path &path() const { return m_path; }

private:
    fs::path m_path;
};

/// Runs a program without input and output; false when it can't be started, fails, or takes too long.
bool run(const std::vector<std::string> &words)
{
    std::vector<char *> arguments;
    for (const std::string &word : words)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&files, output, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int started = ::posix_spawn(&child, arguments[0], &files, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (started != 0)
        return false;
    int status = 0;
    for (int waited = 0; ::waitpid(child, &status, WNOHANG) == 0; waited += kStepMilliseconds) {
        if (waited > kLongestRunMilliseconds) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            return false;
        }
        ::poll(nullptr, 0, kStepMilliseconds);
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

bool isClosedFormat(std::string_view bytes)
{
    return bytes.starts_with("AC1") || bytes.starts_with("MC0");
}

std::optional<std::string> convertedDwg(const fs::path &file, std::string &message)
{
    const fs::path program = programInPath(kDwgConverter);
    if (program.empty()) {
        message = drawingText("dwg.none", {file.string(), kDwgConverter});
        return std::nullopt;
    }
    const WorkFolder work;
    const fs::path made = work.path() / "drawing.dxf";
    if (!work.path().empty() && run({program.string(), "-y", "-o", made.string(), fs::absolute(file).string()}))
        if (ReadFileResult read = readWholeFile(made))
            return std::move(read.bytes);
    message = drawingText("dwg.failed", {file.string(), kDwgConverter});
    return std::nullopt;
}

} // namespace velmor
