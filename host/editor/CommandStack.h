// All commands of a session in one table: the host's own and those that modules register; and their runs.
#pragma once

#include "contracts/DrawingHost.h"
#include "host/editor/Command.h"
#include "host/editor/Prompts.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace velmor {

enum class RunStatus {
    Done,
    Unknown,      ///< no command of that name
    InputRefused, ///< it ran, but at least one answer was of no use to it
    Cancelled,    ///< Escape, or the answers ran out
    Failed,       ///< it could not do its work; the session's alert or status says why
    BadInput,     ///< the same because of what it was given, say a file that is no drawing
    Busy,         ///< another command runs, or a dialog holds the document
};

class Asker;
class Session;
/// A host command: it reads from top to bottom and gets its answers from the asker.
using CommandWork = std::function<Command::Next(Asker &)>;

/// One row of the table.
struct CommandEntry {
    static constexpr std::int32_t kTransparent = 1; ///< may start while another one runs
    /// May do so only behind the mark ', and not while a dialog holds the document: it changes something.
    static constexpr std::int32_t kTransparentByMark = 0x1000;
    std::wstring group, globalName, localName;
    std::int32_t flags = 0;
    AcRxFunctionPtr function = nullptr; ///< of a module's command
    CommandWork work;                   ///< of a host command
    bool needsDrawing = false;          ///< its work is only begun when a drawing is open
    const void *owner = nullptr;        ///< the module that was being loaded when it was added
    bool isTransparent() const { return (flags & kTransparent) != 0; }
    bool mayStartInside() const { return (flags & (kTransparent | kTransparentByMark)) != 0; }
};

struct CommandInfo {
    std::wstring group, name, localName;
    bool isHostCommand = false;
};

class CommandStack final : public AcEdCommandStack {
public:
    explicit CommandStack(Session &session) : m_session(session) {}

    // Contract
    Acad::ErrorStatus addCommand(const wchar_t *group, const wchar_t *globalName, const wchar_t *localName,
                                 std::int32_t flags, AcRxFunctionPtr function, void *uiContext, int functionCode,
                                 void *resourceInstance, void **commandId) override;
    Acad::ErrorStatus removeCmd(const wchar_t *group, const wchar_t *globalName) override;

    /// A host command whose work needs an open drawing; without one it is refused with an alert.
    void addWork(const wchar_t *name, std::int32_t flags, CommandWork work, bool needsDrawing = true);
    /// Commands that are added from now on belong to this module; null: to the host.
    void setOwner(const void *owner) { m_owner = owner; }
    void removeAllOf(const void *owner);

    /// By local name, by alias, or by global name (with the mark "_" by nothing else); upper and lower case alike. A
    /// module's own local name goes before all. Null when there is none.
    const CommandEntry *find(std::wstring_view name) const;
    /// All rows in the order of adding.
    const std::vector<CommandEntry> &entries() const { return m_entries; }

    /// The table as a menu or a command line shows it.
    std::vector<CommandInfo> list() const;

    /// A person (or a script) starts a command: refused as Busy while another one runs or the document is locked,
    /// unless it is transparent; so is a module's command inside of itself, transparent or not. The answers come first;
    /// what it asks beyond them goes to the session's prompts.
    RunStatus start(std::wstring_view name, std::span<const Answer> answers = {});
    /// The same for a typed line: the command's name with optional answers, as splitWords separates them. reason (may
    /// be null) gets one line when it did not succeed.
    bool run(const std::wstring &line, std::wstring *reason = nullptr);
    /// Code starts a command over a whole argument list, command names included: prompts get nothing else, and a
    /// command that still asks when the list ends is cancelled.
    RunStatus runScripted(std::span<const Answer> arguments);

    bool isRunning() const { return !m_running.empty(); }
    /// True while runScripted works.
    bool isScripted() const { return m_scripted > 0; }
    /// Names of the running commands, outermost first.
    const std::vector<std::wstring> &running() const { return m_running; }

    /// The point that was answered last, from which "@" counts where nothing else is told.
    const std::optional<AcGePoint3d> &lastPoint() const { return m_lastPoint; }
    void setLastPoint(const AcGePoint3d &point) { m_lastPoint = point; }
    /// A command asked for the end of the program; whoever runs commands ends it.
    bool isQuitAsked() const { return m_quitAsked; }
    void askToQuit(bool asked = true) { m_quitAsked = asked; }

private:
    RunStatus runEntry(const CommandEntry &entry, std::span<const Answer> &answers, bool askSession);
    RunStatus driveWork(const CommandEntry &entry, std::span<const Answer> &answers, bool askSession);

    Session &m_session;
    const void *m_owner = nullptr;
    std::vector<CommandEntry> m_entries;
    std::vector<std::wstring> m_running;
    int m_scripted = 0;
    std::optional<AcGePoint3d> m_lastPoint;
    bool m_quitAsked = false;
};

} // namespace velmor
