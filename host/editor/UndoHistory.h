// Undo and redo as a user works with them: so many steps, marks, and word of every change for menus and buttons.
//
// One for each drawing (drawing.component<UndoHistory>()). A step is a command, an action of the window or a handler of
// a dialog (all that runs through runGuarded); commands that another one calls belong to its step, and the end of a
// command to the step of the last handler that changed something. The steps themselves
// are the drawing's (see ChangeLog.h).
#pragma once

#include "host/drawing/ChangeLog.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmor {

class CommandStack;

class UndoHistory final : private StepFollower {
public:
    explicit UndoHistory(Drawing &drawing); ///< made by Drawing::component
    ~UndoHistory() override;
    UndoHistory(const UndoHistory &) = delete;
    UndoHistory &operator=(const UndoHistory &) = delete;

    bool canUndo() const { return m_log.canUndo(); }
    bool canRedo() const { return m_log.canRedo(); }
    std::size_t undoCount() const { return m_log.undoCount(); }
    std::size_t redoCount() const { return m_log.redoCount(); }
    /// Name of what undo (redo) takes next: a command, a dialog's title; empty when there is none or it has none.
    std::wstring undoName() const { return m_log.undoName(); }
    std::wstring redoName() const { return m_log.redoName(); }

    /// Takes that many steps back, or as many as there are; their number. None while other work than the command that
    /// asks for it runs.
    std::size_t undo(std::size_t steps = 1);
    std::size_t redo(std::size_t steps = 1);

    /// Remembers this state; marks nest.
    void setMark();
    bool hasMark() const;
    /// Takes back all steps since the last mark that still stands, and the mark; their number. Nothing without a mark.
    std::size_t undoToMark();

    /// Called after every change of what can be undone or redone, as long as the handle lives.
    [[nodiscard]] std::shared_ptr<void> onChange(std::function<void()> call);

private:
    void stepDone(const ChangeStep &) override;
    void stepUndone(const ChangeStep &) override { changed(); }
    void stepRedone(const ChangeStep &) override { changed(); }
    void stepsMerged() override { changed(); }
    void changed();

    ChangeLog &m_log;
    std::uint64_t m_position;           ///< of the log, when it was last told of
    std::vector<std::uint64_t> m_marks; ///< positions of the log, ascending
    std::vector<std::weak_ptr<std::function<void()>>> m_calls;
};

/// UNDO [NUMBER | Mark | Back | All], U, REDO [NUMBER | All].
void addUndoCommands(CommandStack &stack);

} // namespace velmor
