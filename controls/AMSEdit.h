// The box of a validating edit as a widget.
#pragma once

#include "controls/rules/EditBox.h"

#include <QLineEdit>

#include <functional>
#include <optional>

namespace AMSEdit {

/// A line edit whose every way of changing its text goes by the box's routes: keys, cut, paste, clear, undo, set from
/// code, input methods, text that is dropped or pasted with the middle button, the context menu. What comes past them
/// (a call through QLineEdit, an aid that writes into the box) is put in its valid form at once.
///
/// textChanged and textEdited tell of the text once a step, when it is in its final form. editingFinished comes as the
/// focus leaves, before a behaviour pads or repairs the text.
///
/// A box that takes its focus back, or shows its message, spares the others their own rules for a lost focus. A pop-up
/// or menu bar takes no focus in this sense.
class CAMSEdit : public QLineEdit, public CEditBox {
    Q_OBJECT

public:
    explicit CAMSEdit(QWidget *parent = nullptr);
    ~CAMSEdit() override;

    // IEditSurface, in whole characters
    std::wstring GetWindowText() const override;
    Selection GetSel() const override;
    /// The caret is always kept in view.
    void SetSel(int start, int end, bool noScroll = false) override;
    unsigned GetStyle() const override;
    bool IsWindowEnabled() const override;
    bool IsWindow() const override { return true; }
    void SetFocus() override;
    void Default(const EditMessage &message) override;
    void MessageBeep(unsigned sound) override;
    void AfxMessageBox(const std::wstring &text, unsigned icon) override;

    // In place of the operations of the same name, by the box's routes.
    QMenu *createStandardContextMenu();
    bool isUndoAvailable() const { return !isReadOnly() && CanUndo(); }
    bool isRedoAvailable() const { return !isReadOnly() && CanRedo(); }

public Q_SLOTS:
    void setText(const QString &text);
    void clear();
    void cut();
    void paste();
    void undo();
    void redo();
    /// Removes the selection as the Delete key does.
    void clearSelection();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

    void PlatformSetText(const std::wstring &text) override;
    void PlatformReplaceSel(const std::wstring &text) override;
    void PlatformCopy() override;
    ColorRef ContextBackgroundColor() const override;
    ColorRef ContextTextColor() const override;
    void PlatformRepaint() override;
    void RouteBegins() override;
    void RouteEnds(Route::By by) override;

private:
    struct Seen {
        QString text;
        int cursor = 0;
        int selectionStart = -1;
        int selectionLength = 0;
    };
    Seen Look() const;
    bool HandleCommandKey(QKeyEvent *event);
    void DefaultChar(const EditMessage &message);
    void DefaultKeyDown(const EditMessage &message);
    void DefaultKillFocus();
    void Clear(int start, int end);
    /// Runs what the platform does to bring text in as a paste.
    void PasteBy(std::function<void()> platform);
    void OnTextChanged();
    void ApplyColours();

    QKeyEvent *m_pKeyEvent = nullptr; ///< the key under way, until the platform has had it
    QFocusEvent *m_pFocusEvent = nullptr;
    std::function<void()> m_fnPaste; ///< empty: the clipboard
    Seen m_before;
    bool m_bSignalsWereBlocked = false;
    std::optional<Selection> m_composedOver; ///< selected when an input method began
    std::optional<QString> m_telling;        ///< the text that listeners are hearing of just now
    bool m_bColouring = false;
    bool m_bColoured = false;
    QPalette m_desktopPalette; ///< as it is without the box's own colours; kept while it has some
};

} // namespace AMSEdit
