#include "contracts/HostDialog.h"

#include "host/drawing/Journal.h"
#include "host/editor/EditorHold.h"
#include "host/editor/Guarded.h"
#include "host/editor/ProgressMeter.h"
#include "host/editor/Session.h"
#include "host/services/Services.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace {

/// Dialogs whose DoModal runs, the outermost first.
std::vector<CAdUiBaseDialog *> &openDialogs()
{
    static std::vector<CAdUiBaseDialog *> dialogs;
    return dialogs;
}

} // namespace

bool velmor::isEditorHandedOver()
{
    return std::ranges::any_of(openDialogs(), [](const auto *dialog) { return dialog->IsEditorCommandRunning(); });
}

struct CAdUiBaseDialog::Private {
    QEventLoop *loop = nullptr;
    bool open = false;
    bool wired = false;
    int result = kCancel;
    int editorCommands = 0;
    int handlers = 0; ///< that run now, one inside the other
    bool cancelling = false;
    /// A dialog that was put away, and where it stood.
    struct Hidden {
        QPointer<QWidget> dialog;
        QRect place;
    };
    std::vector<Hidden> hidden; ///< the outermost first
    QPointer<QWidget> focus;
    mutable std::unordered_map<int, QPointer<QWidget>> controls;

    void wire(CAdUiBaseDialog &dialog);
};

/// The buttons of number 1 and 2 take the dialog's own paths.
void CAdUiBaseDialog::Private::wire(CAdUiBaseDialog &dialog)
{
    if (std::exchange(wired, true))
        return;
    if (auto *button = dialog.Control<QAbstractButton>(kOk))
        connect(button, &QAbstractButton::clicked, &dialog, [&dialog] { dialog.accept(); });
    if (auto *button = dialog.Control<QAbstractButton>(kCancel))
        connect(button, &QAbstractButton::clicked, &dialog, [&dialog] { dialog.RunCancel(); });
}

CAdUiBaseDialog::CAdUiBaseDialog(QWidget *parent) : QDialog(parent), d(std::make_unique<Private>())
{
    setWindowModality(Qt::ApplicationModal);
}

CAdUiBaseDialog::~CAdUiBaseDialog() = default;

int CAdUiBaseDialog::DoModal()
{
    d->open = true;
    d->result = kCancel;
    velmor::Services::instance().reloadTexts(); // a user who translates sees it at the next opening
    OnInitDialog();
    if (!d->open) // it ended itself while it was set up
        return d->result;
    d->wire(*this);

    struct Entry { // leaves the list also when a driver throws
        explicit Entry(CAdUiBaseDialog &dialog) : m_dialog(dialog) { openDialogs().push_back(&dialog); }
        ~Entry()
        {
            m_dialog.d->open = false;
            m_dialog.d->loop = nullptr;
            m_dialog.hide();
            std::erase(openDialogs(), &m_dialog);
        }
        CAdUiBaseDialog &m_dialog;
    } entry(*this);
    show();
    raise();
    activateWindow();

    const velmor::Session *session = velmor::Session::currentOrNull();
    const velmor::DialogDriver driver = session ? session->dialogDriver() : velmor::DialogDriver();
    if (driver)
        driver(*this);
    if (d->open && (driver || !session || !session->view())) {
        // Nobody is there to end it.
        RunCancel();
        if (d->open)
            EndDialog(kCancel);
    }
    if (d->open) {
        QEventLoop loop;
        d->loop = &loop;
        loop.exec(QEventLoop::DialogExec);
    }
    return d->result;
}

void CAdUiBaseDialog::EndDialog(int result)
{
    velmor::journal("CAdUiBaseDialog::EndDialog", result);
    if (!d->open)
        return;
    d->result = result;
    d->open = false;
    hide();
    if (d->loop)
        d->loop->exit();
}

void CAdUiBaseDialog::BeginEditorCommand()
{
    velmor::journal("CAdUiBaseDialog::BeginEditorCommand");
    if (d->editorCommands++ > 0)
        return;
    d->focus = focusWidget();
    d->hidden.clear();
    for (CAdUiBaseDialog *dialog : openDialogs()) {
        if (dialog->isVisible())
            d->hidden.push_back({dialog, dialog->geometry()});
    }
    for (auto hidden = d->hidden.rbegin(); hidden != d->hidden.rend(); ++hidden)
        hidden->dialog->hide();
}

void CAdUiBaseDialog::CompleteEditorCommand(int restore)
{
    velmor::journal("CAdUiBaseDialog::CompleteEditorCommand", restore);
    if (d->editorCommands == 0 || --d->editorCommands > 0)
        return;
    const auto hidden = std::exchange(d->hidden, {});
    if (restore == 0)
        return;
    for (const auto &[widget, place] : hidden) {
        auto *dialog = static_cast<CAdUiBaseDialog *>(widget.data());
        if (!dialog || !dialog->d->open)
            continue;
        dialog->setGeometry(place); // a window manager may choose a new place otherwise
        dialog->show();
    }
    if (!d->open)
        return;
    raise();
    activateWindow();
    if (d->focus)
        d->focus->setFocus();
}

bool CAdUiBaseDialog::IsEditorCommandRunning() const
{
    return d->editorCommands > 0;
}

QWidget *CAdUiBaseDialog::GetDlgItem(int controlId) const
{
    if (const auto found = d->controls.find(controlId); found != d->controls.end() && found->second)
        return found->second;
    for (QWidget *widget : findChildren<QWidget *>()) {
        const QVariant number = widget->property(kControlIdProperty);
        if (number.isValid() && number.toInt() == controlId) {
            d->controls[controlId] = widget;
            return widget;
        }
    }
    return nullptr;
}

void CAdUiBaseDialog::EnableControl(int controlId, bool enabled)
{
    if (QWidget *control = GetDlgItem(controlId))
        control->setEnabled(enabled);
}

bool CAdUiBaseDialog::RunHandler(const std::function<void()> &handler)
{
    velmor::Session *session = velmor::Session::currentOrNull();
    if (!session) {
        handler();
        return true;
    }
    if (velmor::isLookingForBreak(session)) // a handler is at work
        return false;
    const int editorCommands = d->editorCommands;
    // A handler that another one sets off, say by choosing a row, belongs to that one's step; and what a dialog clears
    // away at its end to the same step as what is left to its destructor, that of the command that opened it.
    const velmor::Kept kept = d->handlers > 0 || d->cancelling ? velmor::Kept::WithOuterWork : velmor::Kept::ForGood;
    ++d->handlers;
    const bool done = velmor::runGuarded(*session, windowTitle().toStdWString(), handler, kept);
    --d->handlers;
    if (done)
        return true;
    while (d->editorCommands > editorCommands)
        CompleteEditorCommand(1);
    velmor::runGuarded(
        *session, windowTitle().toStdWString(), [this] { OnHandlerFailed(); }, kept);
    return false;
}

void CAdUiBaseDialog::OnHandlerFailed() {}

/// A dialog whose cancel path fails ends all the same: nobody could close it any more.
void CAdUiBaseDialog::RunCancel()
{
    if (velmor::isLookingForBreak(velmor::Session::currentOrNull()))
        return;
    const bool outer = std::exchange(d->cancelling, true);
    if (!RunHandler([this] { OnCancel(); }))
        EndDialog(kCancel);
    d->cancelling = outer;
}

std::intptr_t CAdUiBaseDialog::OnWindowMessage(unsigned, std::uintptr_t, std::intptr_t)
{
    return 0;
}

bool CAdUiBaseDialog::OnInitDialog()
{
    return true;
}

void CAdUiBaseDialog::OnCancel()
{
    EndDialog(kCancel);
}

void CAdUiBaseDialog::OnOK()
{
    EndDialog(kOk);
}

void CAdUiBaseDialog::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        RunCancel();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        break; // ends no dialog by itself
    default:
        QDialog::keyPressEvent(event);
        return;
    }
    event->accept();
}

void CAdUiBaseDialog::closeEvent(QCloseEvent *event)
{
    event->ignore(); // the cancel path hides the dialog when it agrees
    RunCancel();
}

void CAdUiBaseDialog::reject()
{
    RunCancel();
}

void CAdUiBaseDialog::accept()
{
    RunHandler([this] { OnOK(); });
}
