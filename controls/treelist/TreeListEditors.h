// The three in-place editors of the tree list. Each is a hidden child of the list's viewport, made with the list; the
// list says when and where one of them is shown.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <QComboBox>
#include <QLineEdit>
#include <QWidget>

#include <cstdint>
#include <string>

class CTreeListCtrl;

/// Of a cell without editing: never shown, the list itself takes the focus for it.
class TREELIST_API CTreeListStaticCtrl : public QWidget {
    Q_OBJECT

public:
    explicit CTreeListStaticCtrl(CTreeListCtrl &list);
};

/// Of a cell that is typed in: one line of any length.
class TREELIST_API CTreeListEditCtrl : public QLineEdit {
    Q_OBJECT

public:
    explicit CTreeListEditCtrl(CTreeListCtrl &list);

    std::wstring GetWindowText() const;
    void SetWindowText(const std::wstring &text);
    /// By a column's format: at the left, at the right, else centred, else at the left.
    void SetFormat(std::uint32_t format);
    /// Selection and caret as they were when the focus left last.
    void RestoreSelection();

protected:
    void focusOutEvent(QFocusEvent *event) override;

private:
    int m_nSelectFrom = 0, m_nSelectCount = 0; ///< count below 0: the caret stands in front
};

/// Of a cell whose text is chosen from a list. The list is empty when NotifyBeginControl is told; its owner adds the
/// texts there. A text that is not in the list is shown and kept until another one is chosen. The mouse wheel belongs
/// to the rows.
class TREELIST_API CTreeListComboCtrl : public QWidget {
    Q_OBJECT

public:
    explicit CTreeListComboCtrl(CTreeListCtrl &list);

    /// The new entry's number.
    int AddString(const std::wstring &text);
    void ResetContent();
    int GetCount() const;
    /// Empty for a number that there isn't.
    std::wstring GetLBText(int index) const;
    /// -1 when there is none.
    int FindStringExact(const std::wstring &text) const;
    /// Number of the entry that is chosen; -1: the text is not in the list.
    int GetCurSel() const;
    int SetCurSel(int index);
    std::wstring GetWindowText() const;
    void SetWindowText(const std::wstring &text);
    void SetFormat(std::uint32_t format);
    void ShowDropDown(bool show);
    /// What has the focus and is drawn.
    QComboBox *GetList() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    class List;
    List *m_list;
};
