// Two tree lists side by side in one window, an owner of both that writes down what it is told, and a mouse.
#pragma once

#include "controls/treelist/TLCDragWnd.h"
#include "controls/treelist/TLCDropWnd.h"
#include "controls/treelist/TreeListCtrl.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <functional>
#include <map>
#include <string>
#include <vector>

inline std::string NoticeName(int code)
{
    static const std::map<int, std::string> kNames = {
        {NotifyColumnChanging, "ColumnChanging"},
        {NotifyRowChanging, "RowChanging"},
        {NotifyEndEdit, "EndEdit"},
        {NotifyDragEnter, "DragEnter"},
        {NotifyDragLeave, "DragLeave"},
        {NotifyDragOver, "DragOver"},
        {NotifyDrop, "Drop"},
        {NotifyCheck, "Check"},
        {NotifyLock, "Lock"},
        {NotifySelChanging, "SelChanging"},
        {NotifySelChanged, "SelChanged"},
        {NotifyExpanding, "Expanding"},
        {NotifyExpanded, "Expanded"},
        {NotifyBeginDrag, "BeginDrag"},
        {NotifyBeginControl, "BeginControl"},
        {NotifyEndControl, "EndControl"},
    };
    return kNames.at(code);
}

/// Each control is 380 by 300 pixels with columns of 200 and 100 and rows of 20; no header, no edges. Its rows:
/// Main (Pipe 1, Pipe 2), Side (Pipe 3 (House)), Pond; nothing is expanded at first.
class TreeMouse : public testing::Test, public CTreeListOwner {
protected:
    static constexpr std::uint32_t kStyle = StyleTree | StyleTreeButtons | StyleTreeLines | StyleCheck | StyleLock |
                                            StyleImage | StyleFullRowSelect | StyleMultiSelect | StyleDrag | StyleDrop |
                                            StyleDropSelf | StyleDropRoot | StyleClientEdge;
    static constexpr int kRow = 20;

    static void SetUpTestSuite()
    {
        if (QApplication::instance())
            return;
        static int argumentCount = 1;
        static char name[] = "treelist_drag_test";
        static char *arguments[] = {name, nullptr};
        // Never deleted: statics of the toolkit go first at the end of the program.
        [[maybe_unused]] static auto *application = new QApplication(argumentCount, arguments);
    }

    TreeMouse()
    {
        CTreeListLayeredWnd::Assume(true);
        window.resize(780, 400);
        left = Make(QRect(0, 0, 380, 300));
        right = Make(QRect(390, 0, 380, 300));
        window.move(0, 0);
        window.show();
        window.activateWindow();
        QApplication::processEvents();
        log.clear();
    }
    ~TreeMouse() override
    {
        for (CTreeListCtrl *control : {left.data(), right.data()}) {
            if (control != nullptr)
                control->SetOwner(nullptr);
        }
        CTreeListLayeredWnd::Assume({});
    }

    CTreeListCtrl *Make(const QRect &place)
    {
        auto *control = new CTreeListCtrl(&window);
        control->Create(kStyle, place, &window, 1);
        control->setFrameShape(QFrame::NoFrame);
        control->SetItemHeight(kRow);
        control->SetColumnWidth(0, 200);
        control->InsertColumn(L"Type", kColumnDefaultFormat, 100);
        CTreeListItem *const main = control->InsertItem(L"Main");
        control->InsertItem(L"Pipe 1", main);
        control->InsertItem(L"Pipe 2", main);
        CTreeListItem *const side = control->InsertItem(L"Side");
        control->InsertItem(L"House", control->InsertItem(L"Pipe 3", side));
        control->InsertItem(L"Pond");
        control->SetOwner(this);
        return control;
    }

    std::int64_t OnTreeListNotify(const TreeListNotice &notice) override
    {
        std::string line = notice.control == left ? "left " : "right ";
        line += NoticeName(notice.code);
        line += '(' + (notice.item != nullptr ? Name(notice.control->GetItemText(notice.item)) : "-");
        line += ", " + std::to_string(notice.column) + ')';
        if (notice.source != nullptr)
            line += notice.source == left ? " from left" : " from right";
        log.push_back(line);
        return answer ? answer(notice) : 0;
    }
    static std::string Name(const std::wstring &text) { return QString::fromStdWString(text).toStdString(); }

    /// The notices since the last call.
    std::vector<std::string> Told()
    {
        std::vector<std::string> told;
        told.swap(log);
        return told;
    }
    /// Answers one code with a number, all others with 0.
    void Refuse(int code, std::int64_t with = -1)
    {
        answer = [code, with](const TreeListNotice &notice) { return notice.code == code ? with : 0; };
    }

    static CTreeListItem *Find(const CTreeListCtrl &control, const std::wstring &text, CTreeListItem *from = nullptr)
    {
        for (CTreeListItem *item = control.GetChildItem(from); item != nullptr; item = item->Next()) {
            if (control.GetItemText(item) == text)
                return item;
            if (CTreeListItem *const below = item->FirstChild() ? Find(control, text, item) : nullptr)
                return below;
        }
        return nullptr;
    }

    // Places in a top-level row, from the order 2 pixels, button, check box, lock, image, 2 pixels, text.
    static QPoint Button(int row) { return {10, row * kRow + 10}; }
    static QPoint Check(int row) { return {26, row * kRow + 10}; }
    static QPoint Lock(int row) { return {38, row * kRow + 10}; }
    /// Where the image stands when the item shows one, else where the text begins.
    static QPoint Image(int row) { return {50, row * kRow + 10}; }
    static QPoint Text(int row) { return {120, row * kRow + 10}; }
    static QPoint Type(int row) { return {250, row * kRow + 10}; }
    /// A place of the right control, as the left one counts.
    static QPoint OnRight(const QPoint &point) { return point + QPoint(390, 0); }

    static void Send(CTreeListCtrl &control, QEvent::Type type, const QPoint &at, Qt::MouseButton button,
                     Qt::MouseButtons held, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QWidget &widget = *control.viewport();
        QMouseEvent event(type, QPointF(at), QPointF(widget.mapToGlobal(at)), button, held, keys);
        QApplication::sendEvent(&widget, &event);
    }
    void Press(const QPoint &at, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        Send(*left, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, keys);
    }
    void Move(const QPoint &at) { Send(*left, QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton); }
    void Hover(const QPoint &at) { Send(*left, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton); }
    void Release(const QPoint &at) { Send(*left, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton); }
    void Click(const QPoint &at, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        Press(at, keys);
        Release(at);
    }
    void DoubleClick(const QPoint &at)
    {
        Send(*left, QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
        Release(at);
    }
    void RightPress(const QPoint &at)
    {
        Send(*left, QEvent::MouseButtonPress, at, Qt::RightButton, Qt::RightButton);
        Send(*left, QEvent::MouseButtonRelease, at, Qt::RightButton, Qt::NoButton);
    }

    bool Dragging() const { return left->GetState(kControlDragging | kControlCaptured) != 0; }
    /// What a drag may not leave behind in either control.
    void ExpectNothingLeft()
    {
        for (CTreeListCtrl *control : {left.data(), right.data()}) {
            if (control == nullptr)
                continue;
            EXPECT_EQ(control->GetState(kControlDragging | kControlCaptured), 0u);
            EXPECT_EQ(control->GetDragWnd(), nullptr);
            EXPECT_EQ(control->GetDropWnd(), nullptr);
            EXPECT_EQ(control->GetDragTarget(), nullptr);
            EXPECT_EQ(control->GetTargetItem(), nullptr);
            EXPECT_EQ(control->GetHoverItem(), nullptr);
            EXPECT_EQ(control->GetTimerInterval(CTreeListCtrl::kTimerExpand), -1);
            EXPECT_EQ(control->GetTimerInterval(CTreeListCtrl::kTimerScroll), -1);
            EXPECT_NE(control->GetCursorNumber(), 8015);
            EXPECT_NE(control->GetCursorNumber(), 8016);
        }
        for (const QWidget *widget : QApplication::topLevelWidgets()) {
            EXPECT_NE(widget->objectName(), QLatin1String(CTLCDragWnd::kClassName));
            EXPECT_NE(widget->objectName(), QLatin1String(CTLCDropWnd::kClassName));
        }
    }

    QWidget window;
    QPointer<CTreeListCtrl> left, right;
    std::vector<std::string> log;
    std::function<std::int64_t(const TreeListNotice &)> answer;
};

/// The same with nothing to edit, so that notices tell of dragging only. The left one has Main expanded: its rows are
/// Main, Pipe 1, Pipe 2, Side, Pond; the right one's are Main, Side, Pond.
class TreeDrag : public TreeMouse {
protected:
    /// A place where no control is, in the window.
    static constexpr QPoint kBetween{385, 100};

    TreeDrag()
    {
        QApplication::setStartDragDistance(10);
        for (CTreeListCtrl *control : {left.data(), right.data()})
            control->SetStyle(kStyle | StyleReadOnly);
        left->Expand(Find(*left, L"Main"), kExpand);
        log.clear();
    }

    CTreeListItem *Left(const std::wstring &text) const { return Find(*left, text); }
    CTreeListItem *Right(const std::wstring &text) const { return Find(*right, text); }
    /// Presses a row's text and goes as far as a drag begins, within the row.
    void DragRow(int row)
    {
        Press(Text(row));
        Move(Text(row) + QPoint(11, 0));
    }
    void DragOverRight(int row) { Move(OnRight(Text(row))); }
    /// Drags row 4 (Pond) of the left over row 1 (Side) of the right, and forgets what was told.
    void DragPondOverSide()
    {
        DragRow(4);
        DragOverRight(1);
        ASSERT_EQ(left->GetDragTarget(), right);
        ASSERT_EQ(right->GetTargetItem(), Right(L"Side"));
        log.clear();
    }
};
