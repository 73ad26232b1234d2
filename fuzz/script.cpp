// Scripts and typed lines: whatever they say, the program goes on, and a wrong line has a reason with its place. Files
// are read and written in a folder of this run alone.
#include "app/Script.h"
#include "fuzz/Require.h"
#include "host/editor/CommandStack.h"
#include "host/services/Services.h"
#include "tests/app/ScriptDialog.h"

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace {

using namespace velmor;

/// The text with all names of files in the folder of this run.
std::string withinFolder(std::string text)
{
    std::ranges::replace(text, '/', '_');
    for (std::size_t at = 0; (at = text.find("..", at)) != std::string::npos;)
        text.replace(at, 2, "__");
    return text;
}

void emptyFolder()
{
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(".", error))
        std::filesystem::remove_all(entry.path(), error);
}

void openDialog()
{
    test::ScriptDialog dialog;
    dialog.DoModal();
}

void tryWords(const std::wstring &line)
{
    std::wstring reason;
    const auto words = splitWords(line, reason);
    require(words.has_value() == reason.empty(), "words or a reason");
    if (!words)
        return;
    std::wstring again;
    for (const Word &word : *words) {
        again += L" \"";
        for (const wchar_t c : word.text)
            again += c == L'"' ? std::wstring(L"\"\"") : std::wstring(1, c);
        again += L'"';
        for (const auto &base : {std::optional<AcGePoint3d>(), std::optional(AcGePoint3d(1e308, -2.0, 3.0))})
            if (const auto point = parsePoint(word.text, base))
                require(std::isfinite(point->x) && std::isfinite(point->y) && std::isfinite(point->z),
                        "a point is finite");
    }
    const auto quoted = splitWords(again, reason);
    require(quoted && std::ranges::equal(*quoted, *words, {}, &Word::text, &Word::text), "quoted words are the same");
}

void setUp(Session &session)
{
    session.setMessageSink({});
    auto drawing = Drawing::createNew();
    using Vertices = std::vector<AcDbPolyline::Vertex>;
    drawing->append(std::make_unique<AcDbPolyline>(Vertices{{0, 0, 0}, {10, 0, 0.5}, {10, 10, 0}, {0, 10, 0}}, true));
    drawing->append(std::make_unique<CircleEntity>(AcGePoint3d(5, 5), 2.0));
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(20, 20)));
    drawing->append(std::make_unique<AcDbPolyline>(Vertices{}, true));
    session.setDrawing(std::move(drawing));
    session.commands().addCommand(L"TEST", L"dialog", L"dialog", 1, openDialog, nullptr, -1, nullptr, nullptr);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static std::string folder = (std::filesystem::temp_directory_path() / "velmor_fuzz_XXXXXX").string();
    if (!mkdtemp(folder.data()))
        std::abort();
    setenv("VELMOR_CONFIG_DIR", (folder + "/config").c_str(), 1);
    setenv("CUPS_SERVER", "/none", 1); // no printer is looked for
    std::filesystem::create_directory(folder + "/work");
    std::filesystem::current_path(folder + "/work");
    std::atexit([] { std::filesystem::remove_all(folder); });
    static int argc = 1;
    static char name[] = "fuzz_script";
    static char *argv[] = {name, nullptr};
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}); // no window is seen
    new QApplication(argc, argv);
    Services::instance().start({.language = "en"});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text = withinFolder({reinterpret_cast<const char *>(data), size});
    {
        Session session;
        setUp(session);
        std::ostringstream out, err;
        const ScriptResult result = Script(session, "s", text, out, err).run();
        require((result.code == kDone) == result.message.empty(), "a wrong line has a reason");
        require(result.code == kDone || result.message.starts_with("s:"), "and a place");
        require(result.message.find('\n') == std::string::npos, "in one line");
    }
    Session session;
    setUp(session);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::wstring typed = QString::fromUtf8(line.data(), static_cast<int>(line.size())).toStdWString();
        tryWords(typed);
        std::wstring reason;
        if (!session.commands().run(typed, &reason))
            require(!reason.empty(), "a refused line has a reason");
        require(!session.commands().isRunning(), "a command ends with its line");
    }
    emptyFolder();
    return 0;
}
