#include "host/editor/Session.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/Findings.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/HostVariables.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/Recovery.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

namespace velmor {

namespace {
Session *theSession = nullptr;

void writeAlerts(MessageKind kind, const std::wstring &text)
{
    if (kind == MessageKind::Alert)
        std::fprintf(stderr, "%s\n", utf8(text).c_str());
}
} // namespace

struct Session::Private {
    explicit Private(Session &session) : commands(session), modules(session) {}

    std::unique_ptr<Drawing> drawing;
    std::vector<std::unique_ptr<Drawing>> former; ///< which the view may still show
    std::filesystem::path path;
    CommandStack commands;
    SelectionSets selectionSets;
    HostVariables variables;
    AnswerQueue answers;
    PromptSource *source = nullptr;
    std::optional<std::vector<AcDbObjectId>> nextSelection;
    DialogDriver driver;
    SessionView *view = nullptr;
    std::vector<std::wstring> alerts;
    std::wstring lastStatus;
    MessageSink sink = writeAlerts;
    int locks = 0;
    std::size_t drawingNumber = 0, failures = 0;
    ModuleLoader modules;
};

Session::Session() : d(std::make_unique<Private>(*this))
{
    if (theSession) {
        std::fputs("a second session was started\n", stderr);
        std::abort();
    }
    theSession = this;
    Services::instance().setSettingsDialog(runSettingsDialog);
    Services::instance().setNotice([this](const std::wstring &text) { status(text); });
    setNoticeSink([this](const std::string &line) { status(wide(line)); });
    addHostCommands(d->commands);
}

Session::~Session()
{
    d->modules.unloadAll(); // while their unload handlers still find the session
    Services::instance().setSettingsDialog({});
    Services::instance().setNotice({});
    setNoticeSink({});
    // Nobody gave the drawing up: what is not saved stays to be recovered.
    if (std::uncaught_exceptions() > 0)
        Recovery::instance().disable();
    setDrawing(nullptr);
    d.reset();
    theSession = nullptr;
}

Session &Session::current()
{
    if (!theSession) {
        std::fputs("no session is running\n", stderr);
        std::abort();
    }
    return *theSession;
}

Session *Session::currentOrNull()
{
    return theSession;
}

Drawing *Session::drawing() const
{
    return d->drawing.get();
}

const std::filesystem::path &Session::path() const
{
    return d->path;
}

void Session::setPath(std::filesystem::path path)
{
    d->path = std::move(path);
    Recovery::instance().pathChanged(d->path);
}

void Session::setDrawing(std::unique_ptr<Drawing> drawing, std::filesystem::path path)
{
    auto &former = d->former.emplace_back(); // nothing may fail once it is taken from its place
    ++d->drawingNumber;
    d->selectionSets.clear();
    d->nextSelection.reset();
    if (drawing)
        drawing->component<ChangeLog>(); // told of changes before anybody who may fail over them
    setWorkingDrawing(drawing.get());
    // The view may paint at any time, so the former drawing lives until the view has let go of it; when that fails,
    // until it does so for the next one.
    former = std::exchange(d->drawing, std::move(drawing));
    d->path = std::move(path);
    Recovery::instance().follow(d->drawing.get(), d->path);
    if (d->view)
        d->view->showDrawing(d->drawing.get());
    d->former.clear();
}

std::size_t Session::drawingNumber() const
{
    return d->drawingNumber;
}

CommandStack &Session::commands()
{
    return d->commands;
}

ModuleLoader &Session::modules()
{
    return d->modules;
}

SelectionSets &Session::selectionSets()
{
    return d->selectionSets;
}

AnswerQueue &Session::answers()
{
    return d->answers;
}

void Session::setPromptSource(PromptSource *source)
{
    d->source = source;
}

PromptSource *Session::promptSource() const
{
    return d->source;
}

Answer Session::ask(const Prompt &prompt)
{
    if (auto answer = d->answers.ask(prompt))
        return *std::move(answer);
    if (d->source) {
        if (auto answer = d->source->ask(prompt))
            return *std::move(answer);
    }
    return {Answer::Escape{}};
}

void Session::setNextSelection(std::vector<AcDbObjectId> sectionIds)
{
    d->nextSelection = std::move(sectionIds);
}

std::optional<std::vector<AcDbObjectId>> Session::takeNextSelection()
{
    return std::exchange(d->nextSelection, std::nullopt);
}

void Session::setDialogDriver(DialogDriver driver)
{
    d->driver = std::move(driver);
}

const DialogDriver &Session::dialogDriver() const
{
    return d->driver;
}

void Session::setView(SessionView *view)
{
    d->view = view;
}

SessionView *Session::view() const
{
    return d->view;
}

void Session::alert(const std::wstring &text)
{
    d->alerts.push_back(text);
    if (d->view)
        d->view->showAlert(text);
    else if (d->sink)
        d->sink(MessageKind::Alert, text);
}

void Session::alertFailure(const std::wstring &text)
{
    ++d->failures;
    Recovery::instance().atRisk(); // whatever comes next
    alert(text);
}

std::size_t Session::failures() const
{
    return d->failures;
}

void Session::status(const std::wstring &text)
{
    d->lastStatus = text;
    if (d->commands.isScripted())
        return;
    if (d->view)
        d->view->showStatus(text);
    else if (d->sink)
        d->sink(MessageKind::Status, text);
}

const std::wstring &Session::lastStatus() const
{
    return d->lastStatus;
}

std::vector<std::wstring> &Session::alerts()
{
    return d->alerts;
}

void Session::setMessageSink(MessageSink sink)
{
    d->sink = std::move(sink);
}

std::optional<VariableValue> Session::variable(const std::wstring &name) const
{
    return d->variables.get(*this, name);
}

bool Session::setVariable(const std::wstring &name, const VariableValue &value)
{
    return d->variables.set(*this, name, value);
}

int Session::documentLocks() const
{
    return d->locks;
}

void Session::lockDocument()
{
    ++d->locks;
}

void Session::unlockDocument()
{
    if (d->locks > 0)
        --d->locks;
}

} // namespace velmor
