// The small tree list and its header, with the mouse over the header.
#pragma once

#include "tests/treelist/TreeFixture.h"

#include "controls/treelist/TreeListHeaderCtrl.h"
#include "controls/treelist/TreeListHeaderWindows.h"

/// The control without rows. Points are pixels of the header, and the mouse of this fixture is there.
class HeaderTest : public TreeListTest {
protected:
    static constexpr std::uint32_t kStyle =
        StyleTree | StyleTreeButtons | StyleHeader | StyleHeaderSort | StyleHeaderDrag | StyleHeaderDrop;
    /// Widths at the start; column 0 begins at the left edge.
    static constexpr int kName = 160, kLength = 80, kKind = 90;

    HeaderTest()
    {
        CreateEmpty(kStyle);
        header = list->GetHeader();
        m_telling = QObject::connect(list, &CTreeListCtrl::ColumnClicked, list,
                                     [this](int column) { clicked.push_back(column); });
        Show();
    }
    ~HeaderTest() override { QObject::disconnect(m_telling); }

    QPoint At(int x) const { return {x, header->height() / 2}; }
    void Send(QEvent::Type type, const QPoint &at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, QPointF(at), QPointF(header->mapToGlobal(at)), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(header, &event);
    }
    void Press(const QPoint &at) { Send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton); }
    void MoveTo(const QPoint &at) { Send(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton); }
    void Release(const QPoint &at) { Send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton); }
    void Hover(const QPoint &at) { Send(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton); }
    void Click(int x)
    {
        Press(At(x));
        Release(At(x));
    }
    void DoubleClick(int x)
    {
        Click(x);
        Send(QEvent::MouseButtonDblClick, At(x), Qt::LeftButton, Qt::LeftButton);
        Release(At(x));
    }
    void DragColumn(int from, const QPoint &to)
    {
        Press(At(from));
        MoveTo(At(from + 2 * QApplication::startDragDistance()));
        MoveTo(to);
        Release(to);
    }
    void PressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(header, &event);
    }
    int Width(int column) const { return list->GetColumnWidth(column); }
    std::vector<int> Order() const { return list->GetColumnOrderArray(); }
    void MakeSortable(int column) { list->SetColumnFormat(column, kColumnSorts | kColumnSortBits, 0); }

    CTreeListHeaderCtrl *header = nullptr;
    std::vector<int> clicked; ///< columns, as they were told

private:
    QMetaObject::Connection m_telling;
};
