// Life of the control, what a style does to the view, and how notices come to the owner.
#include "tests/treelist/TreeFixture.h"

#include "contracts/HostDialog.h"
#include "controls/treelist/TreeListHeaderCtrl.h"
#include "controls/treelist/TreeListTipCtrl.h"
#include "host/drawing/Drawing.h"
#include "host/editor/Session.h"
#include "host/services/Services.h"

#include <QPaintEvent>

#include <stdexcept>

using testing::ElementsAre;

class TreeListControl : public TreeListTest {
protected:
    /// Counts the paint events of the viewport.
    class PaintCount : public QObject {
    public:
        explicit PaintCount(QWidget *watched) { watched->installEventFilter(this); }
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint) {
                ++count;
                painted = static_cast<QPaintEvent *>(event)->region();
            }
            return false;
        }
        int count = 0;
        QRegion painted;
    };
};

// --- Create ---

TEST_F(TreeListControl, CreateMakesHeaderTipAndEditorsAndSetsItsBit)
{
    EXPECT_EQ(list->GetState(kControlCreated), 0u);
    EXPECT_EQ(list->GetHeader(), nullptr);
    ASSERT_NE(list->Create(kTreeStyle, QRect(5, 6, 200, 100), &window, 77), 0);
    EXPECT_EQ(list->GetState(kControlCreated), kControlCreated);
    EXPECT_NE(list->GetHeader(), nullptr);
    EXPECT_NE(list->GetTip(), nullptr);
    EXPECT_NE(list->GetEdit(), nullptr);
    EXPECT_NE(list->GetCombo(), nullptr);
    EXPECT_NE(list->GetStatic(), nullptr);
    EXPECT_EQ(list->geometry(), QRect(5, 6, 200, 100));
    EXPECT_EQ(list->property(kControlIdProperty).toInt(), 77);
    EXPECT_EQ(list->objectName(), QStringLiteral("Morvane.TreeListCtrl"));
    EXPECT_EQ(list->GetColumnCount(), 1);
    EXPECT_EQ(list->GetCount(), 0);
    EXPECT_TRUE(list->GetRootItem()->Has(kItemExpanded));
    EXPECT_EQ(list->viewport()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(TreeListControl, CreateOnceMoreIsRefused)
{
    ASSERT_NE(list->Create(kTreeStyle, QRect(), &window, 1), 0);
    const CTreeListHeaderCtrl *header = list->GetHeader();
    EXPECT_EQ(list->Create(0, QRect(), &window, 2), 0);
    EXPECT_EQ(list->GetHeader(), header);
    EXPECT_EQ(list->GetStyle(), kTreeStyle);
}

TEST_F(TreeListControl, CreatePutsTheControlIntoItsParent)
{
    QWidget parent;
    auto *control = new CTreeListCtrl;
    ASSERT_NE(control->Create(0, QRect(0, 0, 10, 10), &parent, 1), 0);
    EXPECT_EQ(control->parentWidget(), &parent);
}

TEST_F(TreeListControl, TheClientEdgeIsTakenOutOfTheStyleAndBecomesAFrame)
{
    ASSERT_NE(list->Create(kTreeStyle | StyleClientEdge, QRect(), &window, 1), 0);
    EXPECT_EQ(list->GetStyle(), kTreeStyle);
    EXPECT_EQ(list->frameShadow(), QFrame::Sunken);
    EXPECT_NE(list->frameShape(), QFrame::Box);
}

TEST_F(TreeListControl, TheFrameOfCreateStaysThroughEveryLaterStyle)
{
    ASSERT_NE(list->Create(kTreeStyle | StyleClientEdge, QRect(), &window, 1), 0);
    list->SetStyle(list->GetStyle() | StyleCheck);
    EXPECT_EQ(list->frameShape(), QFrame::StyledPanel);
    CTreeListCtrl plain(&window);
    ASSERT_NE(plain.Create(kTreeStyle, QRect(), &window, 2), 0);
    plain.SetStyle(kTreeStyle | StyleClientEdge);
    EXPECT_EQ(plain.frameShape(), QFrame::Box) << "the client edge is taken at Create only";
}

TEST_F(TreeListControl, WithoutTheClientEdgeTheFrameIsAThinRectangleOfShadows)
{
    CreateTree();
    const QImage picture = list->grab().toImage();
    const QRgb dark = list->palette().color(QPalette::Dark).rgb(), mid = list->palette().color(QPalette::Mid).rgb();
    const int right = picture.width() - 1, bottom = picture.height() - 1;
    for (int x = 1; x < right; x += 7) {
        EXPECT_EQ(picture.pixel(x, 0), dark);
        EXPECT_EQ(picture.pixel(x, bottom), mid);
    }
    for (int y = 1; y < bottom; y += 7) {
        EXPECT_EQ(picture.pixel(0, y), dark);
        EXPECT_EQ(picture.pixel(right, y), mid);
    }
    EXPECT_EQ(list->viewport()->mapTo(list, QPoint()).x(), 1);
}

TEST_F(TreeListControl, AControlGoesInTheMidstOfAnEditWithoutAWordToItsOwner)
{
    CreateTree();
    ASSERT_EQ(list->BeginModify(pipe12, 1), 1);
    Move(PlaceOf(areaA));
    owner.told.clear();
    delete list;
    EXPECT_TRUE(owner.told.empty());
    list = new CTreeListCtrl(&window); // for the fixture's end
}

TEST_F(TreeListControl, AControlGoesInTheMidstOfADragWithoutAWordToItsOwner)
{
    CreateTree(kTreeStyle | StyleDrag | StyleDrop | StyleDropSelf);
    const QPoint from = PlaceOf(areaA), to = PlaceOf(outfall2) + QPoint(90, 90);
    Press(from);
    Move(to, Qt::LeftButton);
    EXPECT_NE(list->GetState(kControlDragging), 0u);
    owner.told.clear();
    delete list;
    EXPECT_TRUE(owner.told.empty());
    list = new CTreeListCtrl(&window); // for the fixture's end
}

// --- Style ---

TEST_F(TreeListControl, SetStyleAnswersTheOldWordAndGivesTheHeaderItsBits)
{
    CreateEmpty(StyleTree);
    EXPECT_EQ(list->GetHeader()->GetStyle(), 0u);
    EXPECT_EQ(list->SetStyle(StyleHeader), StyleTree);
    EXPECT_EQ(list->GetHeader()->GetStyle(), 1u);
    EXPECT_EQ(list->SetStyle(StyleHeader | StyleHeaderDrag), StyleHeader);
    EXPECT_EQ(list->GetHeader()->GetStyle(), 3u);
    list->SetStyle(StyleHeader | StyleHeaderDrop);
    EXPECT_EQ(list->GetHeader()->GetStyle(), 5u);
    list->SetStyle(StyleHeader | StyleHeaderSort);
    EXPECT_EQ(list->GetHeader()->GetStyle(), 9u);
    list->SetStyle(StyleHeaderDrag | StyleHeaderDrop | StyleTree);
    EXPECT_EQ(list->GetHeader()->GetStyle(), 0u) << "neither without the header";
    EXPECT_EQ(list->GetStyle(), StyleTree);
}

TEST_F(TreeListControl, SetStylePaintsAnew)
{
    CreateTree();
    PaintCount paints(list->viewport());
    list->SetStyle(kTreeStyle | StyleHorzGrid);
    Settle();
    EXPECT_EQ(paints.painted.boundingRect(), list->viewport()->rect());
}

// --- Painting that is put off ---

TEST_F(TreeListControl, AChangedTextPaintsItsRowAlone)
{
    CreateTree();
    PaintCount paints(list->viewport());
    list->SetItemText(areaA, 1, L"0.30");
    Settle();
    EXPECT_EQ(paints.painted, QRegion(0, 40, list->viewport()->width(), 20));
}

TEST_F(TreeListControl, ManyChangesArePaintedAtOnce)
{
    CreateEmpty();
    AddRows(200);
    Show();
    PaintCount paints(list->viewport());
    for (int row = 0; row < 200; ++row)
        list->SetItemText(list->GetFirstShowItem(row), 1, L"new");
    Settle();
    EXPECT_EQ(paints.count, 1);
    EXPECT_EQ(paints.painted.boundingRect(), list->viewport()->rect());
    list->SetItemText(list->GetFirstShowItem(0), 1, L"newer");
    Settle();
    EXPECT_EQ(paints.count, 2) << "and single rows again behind that";
    EXPECT_EQ(paints.painted.boundingRect().height(), 20);
}

TEST_F(TreeListControl, WhileDrawingIsOffNothingIsPainted)
{
    CreateTree();
    list->SetBkColor(0x123456, 0);
    const auto ground = [this] {
        QImage image(5, 5, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        list->viewport()->render(&image, QPoint(), QRegion(20, 200, 5, 5), QWidget::RenderFlags());
        return image.pixel(2, 2);
    };
    const QRgb shown = qRgb(0x56, 0x34, 0x12);
    EXPECT_EQ(ground(), shown);
    QRgb within = shown;
    owner.onNotice = [&](const TreeListNotice &notice) {
        if (notice.code == NotifySelChanging)
            within = ground();
    };
    list->DeleteAllItems(); // drawing is off around it
    EXPECT_NE(within, shown);
    EXPECT_EQ(ground(), shown);

    PaintCount paints(list->viewport());
    AddRows(3);
    owner.onNotice = [&](const TreeListNotice &) { Settle(); }; // what is swallowed comes later
    list->DeleteAllItems();
    paints.count = 0;
    Settle();
    EXPECT_EQ(paints.count, 1);
    EXPECT_EQ(paints.painted.boundingRect(), list->viewport()->rect());
}

TEST_F(TreeListControl, EnablingAndDisablingPaintsAnew)
{
    CreateTree();
    const QImage enabled = Picture();
    PaintCount paints(list->viewport());
    list->setEnabled(false);
    Settle();
    EXPECT_GT(paints.count, 0);
    EXPECT_NE(Picture(), enabled);
    list->setEnabled(true);
    Settle();
    EXPECT_EQ(Picture(), enabled);
}

// --- Notices ---

TEST_F(TreeListControl, TheOwnerIsToldAndHisAnswerComesBack)
{
    CreateTree();
    owner.answers[NotifyExpanding] = {std::int64_t{-5'000'000'000}};
    TreeListNotice told;
    owner.onNotice = [&](const TreeListNotice &notice) { told = notice; };
    EXPECT_EQ(list->Notify(NotifyExpanding, pipe12, 2), -5'000'000'000);
    EXPECT_EQ(told.control, list);
    EXPECT_EQ(told.code, NotifyExpanding);
    EXPECT_EQ(told.item, pipe12);
    EXPECT_EQ(told.column, 2);
    EXPECT_EQ(told.source, nullptr);
}

TEST_F(TreeListControl, WithoutAnOwnerTheAnswerIsZero)
{
    CreateTree();
    list->SetOwner(nullptr);
    EXPECT_EQ(list->Notify(NotifySelChanging, pipe12, 0), 0);
    EXPECT_EQ(list->GetOwner(), nullptr);
    list->SelectItem(pipe12);
    EXPECT_EQ(list->GetSelectedItem(), pipe12);
}

namespace {

/// A window stands in for a person, who is shown what failed.
struct PersonView final : velmor::SessionView {
    void showDrawing(velmor::Drawing *) override {}
    void redraw() override {}
    void zoomTo(const velmor::Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
};

} // namespace

class TreeListInDialog : public TreeListTest {
protected:
    TreeListInDialog()
    {
        velmor::Services::instance().start({.language = "en"});
        session.setMessageSink({});
        session.setDrawing(velmor::Drawing::createNew());
        session.setView(&view);
        dialog.setWindowTitle(QStringLiteral("Overview"));
        inner = new QWidget(&dialog);
        control = new CTreeListCtrl(inner);
        control->Create(StyleTree, QRect(0, 0, 300, 200), inner, 10);
        control->SetOwner(&owner);
        first = control->InsertItem(L"first");
        control->InsertItem(L"below", first);
    }
    ~TreeListInDialog() override
    {
        control->SetOwner(nullptr);
        session.setView(nullptr);
    }

    PersonView view;
    velmor::Session session;
    CAdUiBaseDialog dialog;
    QWidget *inner = nullptr;
    CTreeListCtrl *control = nullptr;
    CTreeListItem *first = nullptr;
};

TEST_F(TreeListInDialog, AnAnswerComesThroughTheHandlerOfTheDialog)
{
    owner.answers[NotifyExpanding] = {-1};
    EXPECT_EQ(control->Notify(NotifyExpanding, first, 0), -1);
    owner.answers[NotifyExpanding] = {7};
    EXPECT_EQ(control->Notify(NotifyExpanding, first, 0), 7);
    EXPECT_TRUE(session.alerts().empty());
}

TEST_F(TreeListInDialog, AHandlerThatFailsIsToldAndCountsAsAVeto)
{
    owner.onNotice = [](const TreeListNotice &) { throw std::runtime_error("the pump is dry"); };
    EXPECT_EQ(control->Notify(NotifySelChanging, first, 0), -1);
    EXPECT_THAT(session.alerts(), ElementsAre(L"Overview failed and was taken back: the pump is dry"));

    EXPECT_EQ(control->Expand(first, kExpand), 0);
    EXPECT_FALSE(first->Has(kItemExpanded));
    control->SelectItem(first);
    EXPECT_EQ(control->GetSelectedItem(), nullptr);
}

// --- Hit testing and layout from inside of notices ---

TEST_F(TreeListControl, AnOwnerMayRefillTheControlWhileItExpands)
{
    CreateTree();
    owner.onNotice = [&](const TreeListNotice &notice) {
        if (notice.code != NotifyExpanding)
            return;
        owner.onNotice = nullptr;
        list->DeleteAllItems();
        AddRows(50);
    };
    list->Expand(outfall2, kExpand);
    EXPECT_EQ(list->GetVisibleCount(), 50);
    EXPECT_EQ(list->HitTest({20, 5})->Text(0), L"Row 0");
    EXPECT_GT(list->verticalScrollBar()->maximum(), 0);
    Settle();
}

TEST_F(TreeListControl, AFewChangedRowsArePaintedAndNoOtherOne)
{
    CreateEmpty();
    AddRows(14);
    Show();
    class Watch : public QObject {
    public:
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint)
                painted += static_cast<QPaintEvent *>(event)->region();
            return false;
        }
        QRegion painted;
    } watch;
    list->viewport()->installEventFilter(&watch);
    for (int row = 0; row < 8; ++row) {
        if (row % 2)
            list->SetItemText(list->GetFirstShowItem(row), 1, L"new");
        else
            list->SetCheck(list->GetFirstShowItem(row), kCheckMixed);
    }
    Settle();
    const QRegion rows = watch.painted;
    list->viewport()->removeEventFilter(&watch);
    EXPECT_FALSE(rows.isEmpty());
    EXPECT_EQ(rows.boundingRect(), QRect(0, 0, list->viewport()->width(), 8 * 20));
}
