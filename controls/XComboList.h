// The popup of a drop-down cell: a list box with a narrow scroll bar.
#pragma once

#include "controls/rules/ComboKeys.h"
#include "controls/rules/ListMessages.h"

#include <QFrame>

#include <optional>
#include <string>
#include <vector>

class CXListCtrl;
class QListWidget;
class QScrollBar;

/// Tells its list by messages, each of them before it goes on: what the list does with a key is done before the list
/// box moves its selection, so a key that moves the selection writes the choice that was selected when it was pressed.
///
/// The list makes it, and closes it in answer to a message. A click elsewhere counts as Escape.
class CXComboList : public QFrame {
    Q_OBJECT

public:
    explicit CXComboList(CXListCtrl &owner);

    static constexpr unsigned ReturnMessage() { return RegisteredMessage(kComboReturn); }
    static constexpr unsigned EscapeMessage() { return RegisteredMessage(kComboEscape); }
    static constexpr unsigned KeyDownMessage() { return RegisteredMessage(kComboKeyDown); }
    static constexpr unsigned ButtonUpMessage() { return RegisteredMessage(kComboButtonUp); }

    void SetChoices(std::vector<std::wstring> choices, int selected);
    /// Shows the popup: below the cell, or above it where the screen ends. cell in pixels of the screen.
    void ShowAt(const QRect &cell, int rows);
    /// The list box takes the focus. The first time its size and the scroll bar are settled.
    void Activate();
    /// Hides it without a message.
    void Close();
    std::optional<std::wstring> GetSelected() const;

    QListWidget *GetListBox() const { return m_list; }
    QScrollBar *GetScrollBar() const { return m_bar; }
    const CComboKeys &GetKeys() const { return m_keys; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    bool FilterKey(class QKeyEvent &event);
    void Tell(ComboNotice notice);
    void LayOut();
    int RowHeight() const;

    CXListCtrl &m_owner;
    std::vector<std::wstring> m_choices;
    CComboKeys m_keys;
    QListWidget *m_list;
    QScrollBar *m_bar;
    bool m_bFirstActivation = true;
    bool m_bAbove = false; ///< the screen ends below the cell
    bool m_bPressed = false;
    bool m_bClosing = false;
};
