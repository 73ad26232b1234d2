// Presses, drags and cancels at random, with an owner who changes everything while he is told.
#include "tests/treelist/DragFixture.h"

#include <QDialog>
#include <QTimer>

#include <array>
#include <random>

namespace {

class TreeDragWalk : public TreeMouse {
protected:
    static constexpr int kWalks = 60;
    static constexpr int kSteps = 200;

    int Draw(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    CTreeListItem *AnyItem(const CTreeListCtrl &control)
    {
        return control.GetFirstShowItem(Draw(std::max(1, control.GetVisibleCount())));
    }
    void AddBelow(CTreeListCtrl &control, CTreeListItem *parent)
    {
        control.InsertItem(L"New", parent != nullptr ? parent : TreeListRoot());
    }
    CTreeListCtrl *AnyControl() { return Draw(2) == 0 ? left : right; }
    /// Mostly on a row of the left control.
    QPoint AnyStart()
    {
        static constexpr std::array<int, 8> kAcross = {10, 26, 38, 50, 120, 120, 250, 350};
        return {kAcross[static_cast<std::size_t>(Draw(kAcross.size()))], Draw(8) * kRow + 10};
    }
    QPoint AnyPoint() { return (Draw(2) == 0 ? QPoint() : QPoint(390, 0)) + QPoint(Draw(400), Draw(360)); }

    /// What an owner may do at any notice.
    std::int64_t React()
    {
        CTreeListCtrl &control = *AnyControl();
        switch (Draw(40)) {
        case 0:
        case 1:
            return -1;
        case 2:
            if (CTreeListItem *const item = AnyItem(control))
                control.DeleteItem(item);
            break;
        case 3:
            control.DeleteAllItems();
            break;
        case 4:
        case 5:
        case 6:
            AddBelow(control, AnyItem(control));
            break;
        case 7:
            control.Expand(AnyItem(control), kToggle);
            break;
        case 8: {
            QDialog question(&window);
            QTimer::singleShot(0, &question, [&question] { question.reject(); });
            question.exec();
            break;
        }
        case 9:
            control.setEnabled(!control.isEnabled());
            break;
        case 10:
            control.setVisible(control.isHidden());
            break;
        case 11:
            control.SelectItem(AnyItem(control), 0, Draw(2) == 0);
            break;
        case 12:
            left->OnCancelMode();
            break;
        default:
            break;
        }
        return 0;
    }

    void Step()
    {
        switch (Draw(16)) {
        case 0:
        case 1:
        case 2:
            Press(AnyStart(), Draw(3) == 0 ? Qt::ControlModifier : Qt::NoModifier);
            break;
        case 3:
        case 4:
        case 5:
        case 6:
        case 7:
        case 8:
            Move(AnyPoint());
            drags += left->GetDragWnd() != nullptr ? 1 : 0;
            break;
        case 9:
            Release(AnyPoint());
            EXPECT_FALSE(Dragging());
            break;
        case 10:
            Hover(AnyPoint());
            EXPECT_FALSE(Dragging());
            break;
        case 11:
            RightPress(AnyStart());
            break;
        case 12:
            AnyControl()->OnTimer(1 + Draw(2));
            break;
        case 13:
            DoubleClick(AnyStart());
            break;
        case 14:
            QApplication::processEvents();
            break;
        default:
            for (CTreeListCtrl *control : {left.data(), right.data()}) {
                control->setEnabled(true);
                control->show();
                for (int row = control->GetCount(); row < 6; ++row)
                    AddBelow(*control, row % 2 == 0 ? nullptr : AnyItem(*control));
            }
            break;
        }
    }
    /// What holds between two steps, whatever was done.
    void ExpectSound()
    {
        EXPECT_EQ(left->GetDragWnd() == nullptr, left->GetDropWnd() == nullptr);
        if (left->GetDragWnd() != nullptr) {
            EXPECT_NE(left->GetState(kControlDragging), 0u);
        }
        if (left->GetDragTarget() != nullptr) {
            EXPECT_NE(left->GetDragWnd(), nullptr);
        }
        for (CTreeListCtrl *control : {left.data(), right.data()}) {
            const bool entered = left->GetDragTarget() == control;
            if (!entered) {
                EXPECT_EQ(control->GetTargetItem(), nullptr);
                EXPECT_EQ(control->GetHoverItem(), nullptr);
            }
            if (control->GetHoverItem() == nullptr) {
                EXPECT_EQ(control->GetTimerInterval(CTreeListCtrl::kTimerExpand), -1);
                EXPECT_EQ(control->GetTimerInterval(CTreeListCtrl::kTimerScroll), -1);
            }
            for (CTreeListItem *const held : {control->GetTargetItem(), control->GetHoverItem()}) {
                const CTreeListItem *top = held;
                while (top != nullptr && top->Parent() != nullptr)
                    top = top->Parent();
                EXPECT_TRUE(held == nullptr || top == control->GetRootItem());
            }
        }
    }

    std::mt19937 random;
    int drags = 0;
};

} // namespace

TEST_F(TreeDragWalk, NothingIsLeftBehindWhateverTheOwnerDoes)
{
    QApplication::setStartDragDistance(10);
    for (unsigned seed = 1; seed <= kWalks && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        for (CTreeListCtrl *control : {left.data(), right.data()}) {
            control->SetStyle(Draw(2) == 0 ? kStyle : kStyle | StyleReadOnly);
            control->SetColumnModify(1, Draw(3));
        }
        bool telling = false;
        answer = [this, &telling](const TreeListNotice &) -> std::int64_t {
            if (std::exchange(telling, true))
                return 0;
            const std::int64_t answered = React();
            telling = false;
            return answered;
        };
        for (int step = 0; step < kSteps && !HasFailure(); ++step) {
            Step();
            ExpectSound();
        }
        Release(AnyPoint());
        answer = nullptr;
        ExpectNothingLeft();
        log.clear();
    }
    EXPECT_GT(drags, kWalks * kSteps / 50); // enough of it was dragging
}
