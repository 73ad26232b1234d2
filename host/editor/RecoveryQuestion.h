// Recovery at the window: the question at the start, and the clock of the autosave.
#pragma once

#include "host/editor/Recovery.h"

#include <QMessageBox>

namespace velmor {

class Session;

/// What to do with a drawing that another run left.
enum class LeftChoice {
    Recover,
    OpenSaved, ///< what was not saved is given up
    KeepForLater,
};

/// The box that asks it: which file, what time, how many steps. Shown by the caller.
class RecoveryQuestion final : public QMessageBox {
public:
    explicit RecoveryQuestion(const LeftDrawing &left, QWidget *parent = nullptr);
    LeftChoice choice() const;

private:
    QAbstractButton *m_recover, *m_open;
};

/// Enables the recovery for a window's session; troubles are told once the window runs.
void enableRecoveryFor(Session &session);
/// Asks for what other runs left, the latest first, until one is opened; those that are not stay for the next start.
/// Unsaved changes of the drawing that is open are asked about before it is replaced.
/// open opens a drawing's own file.
void askForLeftDrawings(Session &session, QWidget *window,
                        const std::function<bool(const std::filesystem::path &)> &open);
/// Minutes between autosaves by the setting AUTOSAVE_MINUTES (0: never). Where nothing else keeps the drawing, it is
/// autosaved all the same.
int autosaveMinutes(int setting, bool isNeeded);
/// Autosaves as often, and brings the last steps before a pause to the disk, as long as the owner lives.
void startAutosaving(QObject *owner);

} // namespace velmor
