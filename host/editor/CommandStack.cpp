#include "host/editor/CommandStack.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/Journal.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandTable.h"
#include "host/editor/EditorHold.h"
#include "host/editor/Guarded.h"
#include "host/editor/LeakMarks.h"
#include "host/editor/ProgressMeter.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/editor/Words.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <cwctype>

namespace velmor {

const std::wstring *matchKeyword(const std::vector<std::wstring> &keywords, std::wstring_view text)
{
    if (text.starts_with(L'_'))
        text.remove_prefix(1);
    if (text.empty())
        return nullptr;
    for (const std::wstring &keyword : keywords) {
        if (text.size() > keyword.size() || !sameText(text, std::wstring_view(keyword).substr(0, text.size())))
            continue;
        // What is left of the keyword must hold none of its capitals.
        if (std::none_of(keyword.begin() + static_cast<std::ptrdiff_t>(text.size()), keyword.end(),
                         [](wchar_t c) { return std::iswupper(c) != 0; }))
            return &keyword;
    }
    return nullptr;
}

Acad::ErrorStatus CommandStack::addCommand(const wchar_t *group, const wchar_t *globalName, const wchar_t *localName,
                                           std::int32_t flags, AcRxFunctionPtr function, void *, int, void *,
                                           void **commandId)
{
    journal("AcEdCommandStack::addCommand", group, globalName, localName, flags);
    if (!group || !globalName || !*globalName || !function)
        return Acad::eInvalidInput;
    for (const CommandEntry &entry : m_entries) {
        if (sameText(entry.group, group) && sameText(entry.globalName, globalName))
            return Acad::eInvalidInput;
    }
    CommandEntry entry;
    entry.group = group;
    entry.globalName = globalName;
    entry.localName = localName && *localName ? localName : globalName;
    entry.flags = flags;
    entry.function = function;
    entry.owner = m_owner;
    m_entries.push_back(std::move(entry));
    if (commandId)
        *commandId = reinterpret_cast<void *>(function);
    return Acad::eOk;
}

Acad::ErrorStatus CommandStack::removeCmd(const wchar_t *group, const wchar_t *globalName)
{
    journal("AcEdCommandStack::removeCmd", group, globalName);
    if (!group || !globalName)
        return Acad::eInvalidInput;
    const auto removed = std::erase_if(m_entries, [&](const CommandEntry &entry) {
        return entry.function && sameText(entry.group, group) && sameText(entry.globalName, globalName);
    });
    return removed ? Acad::eOk : Acad::eKeyNotFound;
}

void CommandStack::addWork(const wchar_t *name, std::int32_t flags, CommandWork work, bool needsDrawing)
{
    CommandEntry entry;
    entry.group = L"VELMOR";
    entry.globalName = entry.localName = name;
    entry.flags = flags;
    entry.work = std::move(work);
    entry.needsDrawing = needsDrawing;
    m_entries.push_back(std::move(entry));
}

void CommandStack::removeAllOf(const void *owner)
{
    std::erase_if(m_entries, [&](const CommandEntry &entry) { return owner && entry.owner == owner; });
}

const CommandEntry *CommandStack::find(std::wstring_view name) const
{
    while (name.starts_with(L'\'') || name.starts_with(L'.')) // transparent call, built-in definition
        name.remove_prefix(1);
    const bool global = name.starts_with(L'_');
    if (global)
        name.remove_prefix(1);
    const auto found = std::ranges::find_if(m_entries, [&](const CommandEntry &entry) {
        return sameText(global ? entry.globalName : entry.localName, name);
    });
    if (found != m_entries.end())
        return &*found;
    const CommandRow *row = global ? nullptr : commandRowOfWord(name);
    if (!row)
        return nullptr;
    const auto named = std::ranges::find_if(
        m_entries, [&](const CommandEntry &entry) { return sameText(entry.globalName, row->wideName()); });
    return named == m_entries.end() ? nullptr : &*named;
}

std::vector<CommandInfo> CommandStack::list() const
{
    std::vector<CommandInfo> infos;
    for (const CommandEntry &entry : m_entries)
        infos.push_back({entry.group, entry.globalName, entry.localName, !entry.function});
    return infos;
}

bool CommandStack::run(const std::wstring &line, std::wstring *reason)
{
    std::wstring why;
    const auto words = splitWords(line, why);
    if (words && !words->empty()) {
        std::vector<Answer> answers;
        for (const Word &word : std::span(*words).subspan(1))
            answers.push_back({word.text});
        const std::wstring &name = words->front().text;
        const std::size_t alertsBefore = m_session.alerts().size();
        switch (start(name, answers)) {
        case RunStatus::Done:
            return true;
        case RunStatus::Unknown:
            why = uiMessage("ui.run.unknown", {name});
            break;
        case RunStatus::InputRefused:
            why = uiMessage("ui.run.refused", {name});
            break;
        case RunStatus::Cancelled:
            why = uiMessage("ui.run.cancelled", {name});
            break;
        case RunStatus::Busy:
            why = m_session.lastStatus();
            break;
        case RunStatus::Failed:
        case RunStatus::BadInput:
            why = m_session.alerts().size() > alertsBefore ? m_session.alerts().back() : m_session.lastStatus();
            break;
        }
    } else if (words) {
        why = uiText("ui.run.none");
    }
    if (reason)
        *reason = why;
    return false;
}

namespace {

/// Name of the command whose open dialog forbids this command of a module to start, empty for a dialog that no command
/// opened: over a dialog that is hidden for a pick it would open a second one on the same half-done work, its own once
/// more, or another one that changes what the first one has in hand.
std::optional<std::wstring> openDialogUnder(const CommandStack &stack, const CommandEntry &command)
{
    const auto &running = stack.running();
    if (std::ranges::find(running, command.globalName) != running.end())
        return command.localName;
    if (!isEditorHandedOver())
        return std::nullopt;
    for (auto name = running.rbegin(); name != running.rend(); ++name) {
        for (const CommandEntry &entry : stack.entries()) {
            if (entry.function && entry.globalName == *name)
                return entry.localName;
        }
    }
    return std::wstring();
}

} // namespace

RunStatus CommandStack::start(std::wstring_view name, std::span<const Answer> answers)
{
    const CommandEntry *entry = find(name);
    if (!entry)
        return RunStatus::Unknown;
    if (entry->function) {
        if (const std::optional<std::wstring> open = openDialogUnder(*this, *entry)) {
            m_session.status(open->empty() ? uiText("ui.run.locked") : uiMessage("ui.run.inItself", {*open}));
            return RunStatus::Busy;
        }
    }
    const bool isLocked = m_session.documentLocks() > 0;
    const bool isAtWork = isLookingForBreak(&m_session);
    const bool mayRun =
        !isAtWork && (entry->isTransparent() || (!isLocked && entry->mayStartInside() && name.starts_with(L'\'')));
    if (!mayRun && (isAtWork || isRunning() || isLocked)) {
        m_session.status(isRunning() ? uiMessage("ui.run.running", {m_running.back()}) : uiText("ui.run.locked"));
        return RunStatus::Busy;
    }
    if (!entry->isTransparent())
        clearLeakMarks(m_session);
    const RunStatus status = runEntry(*entry, answers, true);
    return status == RunStatus::Done && !answers.empty() ? RunStatus::InputRefused : status;
}

RunStatus CommandStack::runScripted(std::span<const Answer> arguments)
{
    struct Depth {
        explicit Depth(int &depth) : m_depth(++depth) {}
        ~Depth() { --m_depth; }
        int &m_depth;
    } const depth(m_scripted);
    RunStatus status = RunStatus::InputRefused;
    bool refused = arguments.empty();
    while (!arguments.empty()) {
        const std::wstring *name = arguments.front().text();
        arguments = arguments.subspan(1);
        if (!name || name->empty()) {
            refused = true; // a value where a command name belongs
            continue;
        }
        const CommandEntry *entry = find(*name);
        if (!entry)
            return RunStatus::Unknown;
        status = runEntry(*entry, arguments, false);
        refused = refused || status == RunStatus::InputRefused;
        if (status == RunStatus::Failed || status == RunStatus::BadInput || status == RunStatus::Cancelled)
            return status;
    }
    return refused ? RunStatus::InputRefused : status;
}

RunStatus CommandStack::runEntry(const CommandEntry &entry, std::span<const Answer> &answers, bool askSession)
{
    // A copy: the command may unload a module, and the table with it.
    const CommandEntry running = entry;
    m_running.push_back(running.globalName);
    RunStatus status = RunStatus::Failed;
    const bool finished = runGuarded(m_session, running.localName, [&] {
        if (running.function) {
            running.function();
            status = RunStatus::Done;
        } else {
            status = driveWork(running, answers, askSession);
        }
        // A command that was left or could not do its work has done nothing.
        const bool left =
            status == RunStatus::Cancelled || status == RunStatus::Failed || status == RunStatus::BadInput;
        if (left && m_session.drawing())
            m_session.drawing()->component<ChangeLog>().giveUp();
    });
    m_running.pop_back();
    return finished ? status : RunStatus::Failed;
}

namespace {

RunStatus statusOf(Command::Next next, bool refused)
{
    if (next == Command::Next::Revert)
        return RunStatus::Failed;
    if (next == Command::Next::BadInput)
        return RunStatus::BadInput;
    return refused ? RunStatus::InputRefused : RunStatus::Done;
}

} // namespace

RunStatus CommandStack::driveWork(const CommandEntry &entry, std::span<const Answer> &answers, bool askSession)
{
    if (entry.needsDrawing && !m_session.drawing()) {
        m_session.alert(uiText("ui.drawing.none"));
        return RunStatus::BadInput;
    }
    Asker asker(m_session, answers, askSession);
    try {
        const Command::Next next = entry.work(asker);
        return statusOf(next, asker.refused());
    } catch (const Cancelled &) {
        return RunStatus::Cancelled;
    }
}

} // namespace velmor
