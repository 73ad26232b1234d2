#include "app/Program.h"

#include "app/Recover.h"
#include "app/RegionReport.h"
#include "app/Script.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Findings.h"
#include "host/editor/Application.h"
#include "host/editor/Captions.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/MainWindow.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/Picture.h"
#include "host/editor/Recovery.h"
#include "host/network/Network.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"
#include "host/services/Text.h"
#include "host/sewage/AreaMarks.h"
#include "host/sewage/AreaTable.h"

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QMessageBox>
#include <fmt/format.h>

#include <chrono>
#include <clocale>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>

namespace velmor {

namespace {

constexpr char kModuleName[] = "zemxvelmor";
constexpr char kOverviewModuleName[] = "zemxoverview"; ///< stands on the first
constexpr int kMarkColor = 3;                          ///< of areas in a picture: green
constexpr double kHatchLinesInHeight = 150;            ///< lines of their hatch over a picture's height

/// What the command line asks for.
struct Request {
    std::string file, output, language, script;
    std::vector<std::string> points, layers;
    std::string pointsFile;
    RecoverRequest recovery;
    bool autosave = false;
    bool withPolygons = false, json = false, csv = false, islands = false;
    std::string size = "1600x1200";
    int argc = 0;
    char **argv = nullptr;
};

int complain(ExitCode code, const std::string &message)
{
    std::cerr << "velmor: " << message << std::endl;
    return code;
}

/// Flushes the results; a full disk or a closed pipe behind the standard output is a failure too.
int finish(ExitCode code)
{
    std::cout.flush();
    return std::cout ? code : complain(kFailed, uiLine("ui.cli.results"));
}

/// Reads a drawing for a command that only looks at it. Damage is told; what could be read is used all the same, and
/// the exit code tells it once more.
std::unique_ptr<Drawing> openDrawing(const std::string &file, ExitCode &code)
{
    LoadResult loaded = Drawing::load(file);
    if (!loaded.drawing) {
        code = kBadInput;
        complain(code, loaded.message);
        return nullptr;
    }
    code = kDone;
    if (loaded.report.damaged()) {
        const auto &findings = loaded.report.findings;
        const auto first = std::ranges::find(findings, Severity::Damage, &Finding::severity);
        const auto others = std::ranges::count(findings, Severity::Damage, &Finding::severity) - 1;
        code = kBadInput;
        const std::string text = others > 0 ? uiLine("ui.cli.damagedMore", {first->text, std::to_string(others)})
                                            : uiLine("ui.cli.damaged", {first->text});
        complain(code, findingLine(file, {first->severity, first->line, text}));
    }
    return std::move(loaded.drawing);
}

// --- Commands that need no window system
// -------------------------------------------------------------------------------

int importNetwork(const Request &request)
{
    const auto drawing = Drawing::createNew();
    const NetworkImportResult imported = importInp(*drawing, request.file, {.withPolygons = request.withPolygons});
    if (!imported)
        return complain(kBadInput, imported.message);
    for (const std::string &line : findingLines(request.file, imported.findings))
        std::cerr << line << '\n';
    if (const SaveResult saved = drawing->save(request.output); !saved)
        return complain(kFailed, saved.message);
    std::cout << uiLine(imported.convertedFromFeet ? "cli.importedFeet" : "cli.imported",
                        {request.output, std::to_string(imported.sections), std::to_string(imported.nodes),
                         std::to_string(imported.polygons)})
              << '\n';
    return finish(kDone);
}

int listAreas(const Request &request)
{
    ExitCode code;
    const auto drawing = openDrawing(request.file, code);
    if (!drawing)
        return code;
    setWorkingDrawing(drawing.get());
    const auto rows = areaTable(*drawing);
    std::cout << (request.json ? areasJson(rows) : request.csv ? areasCsv(rows) : areasText(rows));
    setWorkingDrawing(nullptr);
    return finish(code);
}

int findRegions(const Request &request)
{
    std::vector<RegionAnswer> answers;
    std::vector<boundary::Point> points;
    std::size_t wrongLine = 0;
    for (const std::string &text : request.points) {
        if (!readPoints(text, points, wrongLine) || points.empty())
            return complain(kWrongUse, uiLine("ui.cli.point", {text}));
    }
    if (!request.pointsFile.empty()) {
        std::ifstream stream(request.pointsFile, std::ios::binary);
        std::ostringstream text;
        if (!stream || !(text << stream.rdbuf()))
            return complain(kBadInput, uiLine("ui.cli.pointsFile", {request.pointsFile}));
        if (!readPoints(text.str(), points, wrongLine))
            return complain(kBadInput, uiLine("ui.cli.pointsLine", {request.pointsFile, std::to_string(wrongLine)}));
    }
    if (points.empty())
        return complain(kWrongUse, uiLine("ui.cli.noPoint"));

    ExitCode code;
    const auto drawing = openDrawing(request.file, code);
    if (!drawing)
        return code;
    std::vector<std::wstring> layers;
    for (const std::string &name : request.layers) {
        layers.push_back(wide(name));
        if (!drawing->findLayer(layers.back()))
            return complain(kBadInput, uiLine("ui.cli.layer", {request.file, name}));
    }
    auto &cache = drawing->component<LineworkCache>();
    boundary::Linework &linework = layers.empty() ? cache.visible() : cache.ofLayers(layers);
    for (const boundary::Point &point : points) {
        const auto start = std::chrono::steady_clock::now();
        RegionAnswer answer{point, linework.regionAt(point, {.islands = request.islands}), 0.0};
        answer.milliseconds =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        answers.push_back(std::move(answer));
    }
    std::cout << (request.json ? regionsJson(answers) : regionsText(answers));
    return finish(code);
}

/// Kinds of entities stand as in the file; the other groups of the report have names in words.
std::string shownKind(const std::string &kind)
{
    static const std::map<std::string_view, const char *> words = {{"layers", "cli.audit.layers"},
                                                                   {"blocks", "cli.audit.blocks"},
                                                                   {"header variables", "cli.audit.variables"},
                                                                   {"named dictionaries", "cli.audit.dictionaries"},
                                                                   {"data records", "cli.audit.records"}};
    const auto found = words.find(kind);
    return found == words.end() ? kind : uiLine(found->second);
}

int audit(const Request &request)
{
    LoadResult loaded = Drawing::load(request.file);
    if (!loaded.drawing)
        return complain(kBadInput, loaded.message);
    const LoadReport &report = loaded.report;
    std::cout << fmt::format("{}: {}{}, {}\n", request.file, report.version,
                             report.binary ? " " + uiLine("cli.audit.binary") : std::string(), report.codePage);
    using Counts = std::map<std::string, std::size_t>;
    const auto none = [](bool isNone) { return isNone ? ": " + uiLine("cli.audit.none") + "\n" : std::string(":\n"); };
    const auto table = [&](const char *title, const Counts &entities, const Counts &others) {
        std::cout << uiLine(title) << none(entities.empty() && others.empty());
        for (const Counts *counts : {&entities, &others})
            for (const auto &[kind, count] : *counts)
                std::cout << fmt::format("  {:<24} {:>9}\n", shownKind(kind), count);
    };
    table("cli.audit.read", report.read, report.readOthers);
    table("cli.audit.unread", report.unread, report.unreadOthers);
    std::cout << uiLine("cli.audit.findings") << none(report.findings.empty());
    for (const Finding &finding : report.findings) {
        constexpr const char *kNames[] = {"cli.audit.note", "cli.audit.warning", "cli.audit.damage"};
        const std::string text = uiLine(kNames[static_cast<int>(finding.severity)]) + ": " + finding.text;
        std::cout << "  " << findingLine({}, {finding.severity, finding.line, text}) << '\n';
    }
    std::cout << uiLine(report.damaged() ? "cli.audit.damaged" : "cli.audit.sound") << '\n';
    return finish(report.damaged() ? kBadInput : kDone);
}

// --- Commands that need one
// --------------------------------------------------------------------------------------------

/// Nobody sees a window: what the toolkit has to say about windows is of no use, only its errors are.
void useOffscreenPlatform()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            std::cerr << text.toStdString() << std::endl;
    });
}

/// False, with a line that says why, when the module can't be loaded.
bool loadModule(const char *name, const char *complaint)
{
    const auto problem = ModuleLoader::load(ModuleLoader::pathOf(name));
    if (problem)
        std::cerr << "velmor: " << uiLine(complaint, {*problem}) << std::endl;
    return !problem;
}

/// The program goes on without the commands of a module that isn't there. Without the first one the second has nothing
/// to stand on, and one line says it all.
void loadModules()
{
    if (loadModule(kModuleName, "ui.cli.module"))
        loadModule(kOverviewModuleName, "ui.cli.overviewModule");
}

int runScript(Request &request)
{
    std::error_code error;
    if (std::filesystem::is_directory(request.script, error))
        return complain(kBadInput, uiLine("ui.cli.scriptFolder", {request.script}));
    std::ifstream stream(request.script, std::ios::binary);
    std::ostringstream text;
    if (stream)
        text << stream.rdbuf();
    if (!stream || stream.bad())
        return complain(kBadInput, uiLine("ui.cli.script", {request.script}));
    useOffscreenPlatform();
    QApplication application(request.argc, request.argv);
    std::setlocale(LC_NUMERIC, "C");
    if (request.autosave)
        Recovery::instance().enable(Recovery::standardFolder(), [](const std::wstring &problem) {
            std::cerr << "velmor: " << utf8(problem) << std::endl;
        });
    Session session;
    loadModules();
    Script script(session, request.script, text.str(), std::cout, std::cerr);
    const ScriptResult result = script.run();
    return result.code == kDone ? finish(kDone) : complain(result.code, result.message);
}

int makePicture(Request &request)
{
    int width = 0, height = 0, taken = 0;
    if (std::sscanf(request.size.c_str(), "%5dx%5d%n", &width, &height, &taken) != 2 ||
        taken != static_cast<int>(request.size.size()) || std::min(width, height) < 16)
        return complain(kWrongUse, uiLine("ui.cli.size", {request.size}));
    useOffscreenPlatform();
    QApplication application(request.argc, request.argv);
    std::setlocale(LC_NUMERIC, "C");
    ExitCode code;
    auto drawing = openDrawing(request.file, code);
    if (!drawing)
        return code;
    setWorkingDrawing(drawing.get());
    PictureOptions options;
    options.size = {width, height};
    const Extents shown = visibleExtents(*drawing);
    if (!shown.isEmpty()) {
        // The picture shows the extents whole, so its height follows the side that fills it.
        const double pictureHeight =
            std::max(shown.maxY - shown.minY, (shown.maxX - shown.minX) * height / static_cast<double>(width));
        markAllAreas(kMarkColor, pictureHeight / kHatchLinesInHeight);
    }
    const SaveResult saved = savePicture(*drawing, request.output, options);
    setWorkingDrawing(nullptr);
    return saved ? finish(code) : complain(kFailed, saved.message);
}

int openWindow(Request &request)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return complain(kFailed, uiLine("ui.cli.display"));
    const bool isSeen = qgetenv("QT_QPA_PLATFORM") != "offscreen";
    if (!isSeen)
        useOffscreenPlatform();
    Application application(request.argc, request.argv);
    std::setlocale(LC_NUMERIC, "C");
    followLanguage();
    OpenedFile opened;
    if (!request.file.empty()) {
        QWidget screen; // the window comes with what it shows
        opened = readForWindow(request.file, &screen);
        if (!opened.drawing && !opened.cancelled) {
            complain(kBadInput, opened.message);
            // Who started the program by a click on a file sees no terminal.
            if (isSeen)
                QMessageBox::critical(nullptr, QStringLiteral("Velmor"), QString::fromStdString(opened.message));
            return kBadInput;
        }
    }
    Session session;
    loadModules();
    return runWindow(session, std::move(opened));
}

/// The value of --language on a command line that can't be understood as a whole.
std::string languageAmong(int argc, char **argv)
{
    constexpr std::string_view kOption = "--language";
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == kOption && i + 1 < argc)
            return argv[i + 1];
        if (word.starts_with(kOption) && word.size() > kOption.size() && word[kOption.size()] == '=')
            return std::string(word.substr(kOption.size() + 1));
    }
    return {};
}

/// The toolkit of the command line words its errors in English; what each is about stands in it by name.
std::string wordsOf(const CLI::ParseError &error)
{
    static constexpr const char *kKinds[] = {"ExtrasError",   "RequiredError",   "ArgumentMismatch", "ValidationError",
                                             "ExcludesError", "ConversionError", "RequiresError",    "InvalidError"};
    const std::string what = error.what();
    const auto known = std::ranges::find(kKinds, error.get_name());
    if (known == std::end(kKinds))
        return what;
    const bool isExtra = error.get_name() == "ExtrasError";
    const auto colon = what.find(": ");
    const std::string about =
        isExtra && colon != std::string::npos ? what.substr(colon + 2) : what.substr(0, what.find_first_of(": "));
    return uiLine("cli.error." + error.get_name(), {about});
}

} // namespace

int runProgram(int argc, char **argv)
{
    Request request;
    request.argc = argc;
    request.argv = argv;
    QCoreApplication::setApplicationVersion(QStringLiteral(VELMOR_VERSION));
    // Help and complaints are in the language that the command line asks for, so it is looked for first.
    Services::instance().start({.language = languageAmong(argc, argv)});
    const auto text = [](const char *name) { return uiLine(name); };
    CLI::App app(text("cli.help.program"), "velmor");
    const auto dress = [&](CLI::App &to) {
        to.set_help_flag("-h,--help", text("cli.help.help"));
        to.set_version_flag("--version", "velmor " VELMOR_VERSION, text("cli.help.version"));
        to.option_defaults()->group(text("cli.help.options"));
        for (CLI::Option *option : to.get_options())
            option->group(text("cli.help.options"));
    };
    for (const char *label : {"Usage", "Positionals", "OPTIONS", "SUBCOMMAND", "SUBCOMMANDS", "REQUIRED", "TEXT"})
        app.get_formatter()->label(label, text((std::string("cli.label.") + label).c_str()));
    dress(app);
    const auto addLanguage = [&](CLI::App *to) {
        to->add_option("--language", request.language, text("cli.help.language"))->check(CLI::IsMember({"hr", "en"}));
    };
    addLanguage(&app);
    app.add_option("FILE", request.file, text("cli.help.file"));
    int (*command)(Request &) = openWindow;
    const auto add = [&](const char *name, const std::string &what, int (*run)(Request &)) {
        CLI::App *sub = app.add_subcommand(name, what);
        sub->group(text("cli.help.commands"));
        dress(*sub);
        addLanguage(sub);
        sub->callback([&command, run] { command = run; });
        return sub;
    };
    const auto addDrawing = [&](CLI::App *sub) {
        sub->add_option("DRAWING", request.file, text("cli.help.drawing"))->required();
    };

    auto *run = add("run", text("cli.help.run"), runScript);
    run->add_option("SCRIPT", request.script, text("cli.help.script"))->required();
    run->add_flag("--autosave", request.autosave, text("cli.help.autosave"));

    auto *recover = add("recover", text("cli.help.recover"), [](Request &r) { return recoverDrawings(r.recovery); });
    recover->add_option("NUMBER", request.recovery.number, text("cli.help.recover.number"));
    recover->add_option("-o,--output", request.recovery.output, text("cli.help.output"));
    recover->add_flag("--drop", request.recovery.drop, text("cli.help.recover.drop"));

    auto *import = add("import", text("cli.help.import"), [](Request &r) { return importNetwork(r); });
    import->add_option("NETWORK", request.file, text("cli.help.network"))->required();
    import->add_option("-o,--output", request.output, text("cli.help.output"))->required();
    import->add_flag("--with-polygons", request.withPolygons, text("cli.help.polygons"));

    auto *areas = add("areas", text("cli.help.areas"), [](Request &r) { return listAreas(r); });
    addDrawing(areas);
    auto *json = areas->add_flag("--json", request.json, text("cli.help.json"));
    areas->add_flag("--csv", request.csv, text("cli.help.csv"))->excludes(json);

    auto *boundary = add("boundary", text("cli.help.boundary"), [](Request &r) { return findRegions(r); });
    addDrawing(boundary);
    boundary->add_option("--point", request.points, text("cli.help.point"))->expected(1)->take_all();
    boundary->add_option("--points", request.pointsFile, text("cli.help.points"));
    boundary->add_option("--layers", request.layers, text("cli.help.layers"))
        ->delimiter(',')
        ->allow_extra_args(false); // the next word is the drawing's
    boundary->add_flag("--islands", request.islands, text("cli.help.islands"));
    boundary->add_flag("--json", request.json, text("cli.help.json"));

    auto *picture = add("picture", text("cli.help.picture"), makePicture);
    addDrawing(picture);
    picture->add_option("-o,--output", request.output, text("cli.help.pictureFile"))->required();
    picture->add_option("--size", request.size, text("cli.help.size"));

    auto *check = add("audit", text("cli.help.audit"), [](Request &r) { return audit(r); });
    addDrawing(check);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0)
            return app.exit(error);
        return complain(kWrongUse, uiLine("ui.cli.wrongUse", {wordsOf(error)}));
    }
    try {
        Services::instance().start({.language = request.language});
        for (const FileFinding &finding : Services::instance().findings())
            std::cerr << "velmor: " << finding.message() << '\n';
        return command(request);
    } catch (const std::exception &error) {
        return complain(kFailed, error.what());
    }
}

} // namespace velmor
