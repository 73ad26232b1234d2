// The tip that shows the whole text of a cell that is too narrow for it.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <QWidget>

#include <cstdint>

class CTreeListCtrl;

/// Alignment of a column's texts by its format: left, right, else centred by its bit; left without any.
Qt::Alignment TreeListAlignment(std::uint32_t format);

/// A window over the cell, so that its text stands where the cell's text begins or ends. It takes no mouse and no
/// focus: the pointer stays with the cell below.
class TREELIST_API CTreeListTipCtrl : public QWidget {
    Q_OBJECT

public:
    explicit CTreeListTipCtrl(CTreeListCtrl *list);

    /// text: place of the cell's text on the screen. A text longer than the screen is wide is wrapped.
    void Show(const CTreeListItem *item, int column, const QString &words, const QRect &text, Qt::Alignment alignment);
    void Hide();
    /// True while the tip shows a text of that item.
    bool IsOf(const CTreeListItem *item) const { return m_pItem && m_pItem == item; }
    bool IsOf(const CTreeListItem *item, int column) const { return IsOf(item) && m_nColumn == column; }
    QString GetText() const { return m_strText; }
    Qt::Alignment GetAlignment() const { return m_alignment; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const CTreeListItem *m_pItem = nullptr; ///< only compared
    int m_nColumn = -1;
    QString m_strText;
    Qt::Alignment m_alignment;
    bool m_bWrapped = false;
};
