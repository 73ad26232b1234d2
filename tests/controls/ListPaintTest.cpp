// What the cells of the extended list look like.
#include "tests/controls/Ink.h"
#include "tests/controls/ListFixture.h"

#include "controls/ListPainting.h"

#include <QHelpEvent>
#include <QToolTip>

using list_clicks::cellOf;

class ListPaint : public ListWidgetTest {
protected:
    /// Colour near a cell's lower left corner, where no text stands.
    QColor Ground(int row, int column) const
    {
        const QRect cell = cellOf(*list, row, column);
        return Picture().pixelColor(cell.left() + 3, cell.bottom() - 2);
    }
    QImage CellPicture(int row, int column) const { return Picture().copy(cellOf(*list, row, column)); }
    static bool Holds(const QImage &image, const QColor &colour, int near = 60)
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (std::abs(pixel.red() - colour.red()) + std::abs(pixel.green() - colour.green()) +
                        std::abs(pixel.blue() - colour.blue()) <
                    near)
                    return true;
            }
        }
        return false;
    }
};

TEST_F(ListPaint, TheFirstColumnStandsOnLightGreyWhateverItsRecordSays)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({});
    list->InsertItem(0, L"a", kSystemColor, 0x00FF00);
    Show();

    EXPECT_EQ(Ground(0, 0), QColor(0xF0, 0xF0, 0xF0));
    EXPECT_EQ(Ground(0, 1), QColor(Qt::white));
}

TEST_F(ListPaint, OnADarkDesktopTheFirstColumnIsADarkGreyAndItsTextReadable)
{
    const QColor base(0x22, 0x23, 0x26);
    SetDesktop(QColor(0x38, 0x3a, 0x3e), base, QColor(0xe8, 0xe8, 0xea));
    Fill({});
    list->InsertItem(0, L"MMMM", 0x800000, kSystemColor); // a dark blue
    Show();
    const QColor ground = Ground(0, 0);

    EXPECT_NE(ground, base);
    EXPECT_GT(ContrastOf(Qt::white, ground), 7.0);
    const QColor text = ReadableColour(QColor(0, 0, 0x80), ground);
    EXPECT_GE(ContrastOf(text, ground), 4.5);
    EXPECT_TRUE(Holds(CellPicture(0, 0), text));
}

TEST_F(ListPaint, ACellHasTheColoursOfItsRecord)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetItemText(0, 1, L"MMMM", 0x0000FF, 0x99FFFF);
    Show();

    EXPECT_EQ(Ground(0, 1), QColor(0xFF, 0xFF, 0x99));
    EXPECT_TRUE(Holds(CellPicture(0, 1), QColor(0xFF, 0, 0)));
}

TEST_F(ListPaint, TheSelectedRowIsHighlightedWithTheFocusAndGreyWithout)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a", L"b"});
    Show();
    list->SetCurSel(0);
    list->setFocus();
    EXPECT_EQ(Ground(0, 2), QColor(0x2f, 0x65, 0xca));
    EXPECT_EQ(Ground(0, 0), QColor(0x2f, 0x65, 0xca));
    other->setFocus();
    EXPECT_EQ(Ground(0, 2), list->palette().color(QPalette::Button));
    EXPECT_EQ(Ground(1, 2), QColor(Qt::white));
}

TEST_F(ListPaint, ADisabledRowIsGrey)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetItemText(0, 1, L"MMMM", 0x0000FF, kSystemColor);
    list->SetEnabled(0, false);
    Show();

    EXPECT_FALSE(Holds(CellPicture(0, 1), QColor(0xFF, 0, 0)));
    EXPECT_TRUE(Holds(CellPicture(0, 1), list->palette().color(QPalette::Disabled, QPalette::Text)));
}

TEST_F(ListPaint, TextsStandAsTheirColumnsDo)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetItemText(0, 1, L"x");
    list->SetItemText(0, 2, L"x");
    Show();
    other->setFocus(); // no mark of the current cell

    const QRect right = InkOf(CellPicture(0, 1), Qt::white), middle = InkOf(CellPicture(0, 2), Qt::white);
    EXPECT_NEAR(right.right(), 100 - 1 - 6, 2);
    EXPECT_NEAR(middle.center().x(), 50, 3);
    EXPECT_NEAR(InkOf(CellPicture(0, 0), QColor(0xF0, 0xF0, 0xF0)).left(), 6, 2);
}

TEST_F(ListPaint, TheFirstColumnIsBoldAndOthersWhenToldSo)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetItemText(0, 2, L"mmmmmm");
    Show();
    const QRect normal = InkOf(CellPicture(0, 2), Qt::white);
    list->SetBold(0, 2, true);

    EXPECT_GT(InkOf(CellPicture(0, 2), Qt::white).width(), normal.width());
    EXPECT_TRUE(list->GetBold(0, 2));
}

TEST_F(ListPaint, ACheckBoxStandsAtTheLeftOrAloneInTheMiddle)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetCheckbox(0, 2, 0, false);
    Show();
    const QRect alone = InkOf(CellPicture(0, 2), Qt::white);
    EXPECT_NEAR(alone.center().x(), 50, 2);
    list->SetItemText(0, 2, L"text");
    const QRect both = InkOf(CellPicture(0, 2), Qt::white);
    EXPECT_NEAR(both.left(), 9 + 3, 1);
}

TEST_F(ListPaint, ATickShowsTheState)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetCheckbox(0, 2, 0, false);
    Show();
    EXPECT_FALSE(Holds(CellPicture(0, 2), Qt::black));
    list->SetCheckbox(0, 2, 1, false);
    EXPECT_TRUE(Holds(CellPicture(0, 2), Qt::black));
}

TEST_F(ListPaint, ADropDownIsPlainTextUntilItsRowIsSelected)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetComboBox(0, 2, true, nullptr, 5, 0);
    Show();
    EXPECT_TRUE(InkOf(CellPicture(0, 2), Qt::white).isEmpty());
    list->SetCurSel(0);
    const QImage shown = CellPicture(0, 2);
    EXPECT_EQ(shown.pixelColor(shown.width() / 2, shown.height() / 2), QColor(Qt::white)); // its own ground
    EXPECT_NE(shown.pixelColor(shown.width() / 2, 0), QColor(Qt::white));                  // its edge
    const int side = shown.height();
    EXPECT_TRUE(Holds(shown.copy(shown.width() - side, 0, side, side), Qt::black)); // its arrow
}

TEST_F(ListPaint, ACellThatIsNotDrawnShowsNoText)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a"});
    list->SetItemText(0, 2, L"text");
    list->SetNoDraw(0, 2, true);
    Show();

    EXPECT_TRUE(InkOf(CellPicture(0, 2), Qt::white).isEmpty());
}

TEST_F(ListPaint, ACutTextHasATipAndAWholeOneNone)
{
    Fill({L"a"});
    list->SetItemText(0, 2, L"a text that is much longer than its column is wide <b>");
    list->SetItemText(0, 1, L"short");
    Show();
    const auto ask = [this](int column) {
        QToolTip::hideText();
        const QPoint at = cellOf(*list, 0, column).center();
        QHelpEvent event(QEvent::ToolTip, at, list->viewport()->mapToGlobal(at));
        QApplication::sendEvent(list->viewport(), &event);
        return QToolTip::text();
    };

    EXPECT_TRUE(ask(1).isEmpty());
    EXPECT_TRUE(ask(2).contains(QStringLiteral("much longer")));
}

TEST_F(ListPaint, TheHeaderShowsItsTextAndItsCheckBox)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({});
    list->SetHeaderCheckedState(2, 0);
    Show();
    const auto picture = [this] {
        CXHeaderCtrl &header = list->GetHeader();
        return header.viewport()->grab().toImage().copy(header.sectionViewportPosition(2), 0, 30, header.height());
    };
    const QImage empty = picture();
    list->SetHeaderCheckedState(2, 1);
    const QImage ticked = picture();
    list->SetHeaderCheckedState(2, -1);

    EXPECT_NE(empty, ticked);
    EXPECT_NE(empty, picture());
}

TEST_F(ListPaint, TheHeaderShowsAPictureAtTheRightOfItsText)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    QPixmap red(8, 8);
    red.fill(Qt::red);
    Fill({});
    Show();
    CXHeaderCtrl &header = list->GetHeader();
    const int before = header.WidthOf(1);
    EXPECT_TRUE(header.SetItemBitmap(1, red));
    EXPECT_FALSE(header.SetItemBitmap(3, red));
    EXPECT_EQ(header.WidthOf(1), before + 8 + header.GetSpacing());
    list->InsertColumn(0, L"New", 50); // the picture goes with its column

    const QImage picture = header.viewport()->grab().toImage();
    const int right = header.sectionViewportPosition(2) + header.sectionSize(2);
    EXPECT_EQ(picture.pixelColor(right - 12, header.height() / 2), QColor(Qt::red));
}

TEST_F(ListPaint, TheOwnerPaintsAHeaderOfItsOwn)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    list->InsertColumn(0, L"Text", 100, kFormatLeft | kFormatOwnerDraw);
    std::vector<int> drawn;
    list->GetHeader().SetDrawItem([&](QPainter &painter, const QRect &rect, int column) {
        drawn.push_back(column);
        painter.fillRect(rect.adjusted(10, 4, -10, -4), Qt::blue);
    });
    Show();
    const QImage picture = list->GetHeader().viewport()->grab().toImage();

    EXPECT_FALSE(drawn.empty());
    EXPECT_EQ(picture.pixelColor(50, picture.height() / 2), QColor(Qt::blue));
}

TEST_F(ListPaint, RowsAreHighEnoughForALargeFont)
{
    Fill({L"a"});
    Show();
    QFont large = list->font();
    large.setPointSize(24);
    list->setFont(large);

    EXPECT_GE(list->rowHeight(0), QFontMetrics(large).height());
}
