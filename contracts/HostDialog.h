// The host's modal dialog and the two buttons that belong to the family's look. The only contract that needs Qt.
//
// Every control of a dialog carries its number as the dynamic property "controlId" (kControlIdProperty).
#pragma once

#include "contracts/CoreServices.h"

#include <QDialog>
#include <QPushButton>

#include <cstdint>
#include <functional>
#include <memory>

/// Name of the dynamic property that holds a control's number.
inline constexpr char kControlIdProperty[] = "controlId";

/// Base of all dialogs: modal, with its own event loop, so that it can hand the editor to the user and take it back.
class ZEMX_CONTRACT CAdUiBaseDialog : public QDialog {
    Q_OBJECT
public:
    enum Result { kOk = 1, kCancel = 2 };

    explicit CAdUiBaseDialog(QWidget *parent = nullptr);
    ~CAdUiBaseDialog() override;

    /// Runs OnInitDialog, shows the dialog and blocks until EndDialog; the result given there.
    int DoModal();
    /// Ends DoModal.
    void EndDialog(int result);
    /// Hides the dialog (and the dialogs that opened it) and gives the user the drawing.
    void BeginEditorCommand();
    /// Brings the dialogs back with their focus.
    void CompleteEditorCommand(int restore = 1);
    /// True between BeginEditorCommand and CompleteEditorCommand.
    bool IsEditorCommandRunning() const;

    /// The control of that number; null when there is none.
    QWidget *GetDlgItem(int controlId) const;
    /// Typed access; null when the control is absent or of another kind.
    template <class Widget>
    Widget *Control(int controlId) const
    {
        return qobject_cast<Widget *>(GetDlgItem(controlId));
    }
    void EnableControl(int controlId, bool enabled);

    /// Runs a handler of one of the dialog's controls, which is the only way to run one: what it throws ends it and
    /// nothing else. The user is told, what it changed in the drawing is taken back, and an editor command that it
    /// began is completed. False then.
    bool RunHandler(const std::function<void()> &handler);
    /// A numbered notice from a control, as the selection button sends it; the base answers 0.
    virtual std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam);

protected:
    /// Before the dialog is shown; a derived class calls the base first.
    virtual bool OnInitDialog();
    /// Escape, the window's close button and a control of number 2 take this path; the base ends with kCancel.
    virtual void OnCancel();
    /// After a handler failed and its changes were taken back: a derived class brings what it remembers of the drawing
    /// in step with it.
    virtual void OnHandlerFailed();
    /// A control of number 1 takes this path; the base ends with kOk.
    virtual void OnOK();

    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void reject() override;
    void accept() override;

private:
    void RunCancel();
    struct Private;
    std::unique_ptr<Private> d;
};

namespace ZEMGis::Selection {

/// The notice that a selection button sends to its dialog when a selection has ended.
inline constexpr unsigned kSelectionDoneMessage = 0x762;

/// A push button that opens the selection tool: a menu of ways to select (all, by pick, by window, a branch upstream or
/// downstream, the path between two nodes). Its dialog, and the one that opened that, are hidden while the person picks
/// in the drawing; Enter ends with what was picked, Escape with what was selected before.
class ZEMX_CONTRACT CSelectionButton : public QPushButton {
    Q_OBJECT
public:
    explicit CSelectionButton(QWidget *parent = nullptr);
    /// With notify true the dialog gets kSelectionDoneMessage after each selection, an empty one and one that ended by
    /// Escape too; not when the menu is left without a choice.
    void setParentDialog(CAdUiBaseDialog *dialog, bool notify);
    void SetButtonTopologyType(int type);
    void SetHideDisabledMenuOptions(int hide);
    void SetSelectionType(int mask);
    /// The last selection; the caller deletes it. Never null.
    CSelectionSet *GetSelection() const;

private:
    void runSelection();
    void take(const std::vector<AcDbObjectId> &ids);
    CAdUiBaseDialog *m_dialog = nullptr;
    bool m_notify = false;
    int m_topologyType = 0, m_hideDisabled = 0, m_selectionType = 0;
    std::vector<boost::shared_ptr<Topology::CSection>> m_selected;
};

} // namespace ZEMGis::Selection

namespace ZEMGis::Utility {

/// A push button with an icon of the module's resources.
class ZEMX_CONTRACT CZEMBitmapButton : public QPushButton {
    Q_OBJECT
public:
    explicit CZEMBitmapButton(QWidget *parent = nullptr);
    /// An icon by name, beside the button's text; an unknown name changes nothing. type is 1, flags 0.
    void SetButtonIcon(const wchar_t *name, unsigned type, int width, int height, unsigned flags);
    void SetToolTip(const wchar_t *text);
};

} // namespace ZEMGis::Utility
