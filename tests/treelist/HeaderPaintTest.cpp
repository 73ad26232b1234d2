// What the header of a tree list looks like.
#include "tests/treelist/HeaderFixture.h"

#include "controls/ReadableColour.h"

#include <QHelpEvent>
#include <QToolTip>

#include <cstdlib>

namespace {

class HeaderPaint : public HeaderTest {
protected:
    QImage HeaderPicture()
    {
        Settle();
        return header->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    /// A section without the lines at its right and bottom edges.
    QImage Section(int column)
    {
        const QImage all = HeaderPicture();
        return all.copy(header->GetColumnRect(column).adjusted(0, 0, -1, -1));
    }
    /// Around all that is not the colour of the lower left corner, where nothing stands.
    static QRect Ink(const QImage &image)
    {
        const QRgb ground = image.pixel(0, image.height() - 1);
        QRect ink;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != ground)
                    ink |= QRect(x, y, 1, 1);
            }
        }
        return ink;
    }
    /// The best contrast that any pixel has to the ground.
    static double Contrast(const QImage &image)
    {
        const QColor ground = image.pixelColor(0, image.height() - 1);
        double best = 1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                best = std::max(best, ContrastOf(image.pixelColor(x, y), ground));
        }
        return best;
    }
    /// Pixels of the ink in a row of the picture.
    static int InkInRow(const QImage &image, int y)
    {
        int pixels = 0;
        for (int x = 0; x < image.width(); ++x)
            pixels += image.pixel(x, y) != image.pixel(0, image.height() - 1) ? 1 : 0;
        return pixels;
    }
    /// Whether the header paints itself anew because of what is done.
    bool Repaints(const std::function<void()> &work)
    {
        struct Watcher : QObject {
            bool eventFilter(QObject *, QEvent *event) override
            {
                seen = seen || event->type() == QEvent::Paint;
                return false;
            }
            bool seen = false;
        } watcher;
        Settle();
        header->installEventFilter(&watcher);
        work();
        Settle();
        return watcher.seen;
    }
    void SetFormat(int column, std::uint32_t bits) { list->SetColumnFormat(column, bits, ~bits); }
    static void SetDesktop(const QColor &face, const QColor &text)
    {
        QPalette palette(face);
        palette.setColor(QPalette::Button, face);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, text);
        QApplication::setPalette(palette);
        Settle();
    }
};

} // namespace

TEST_F(HeaderPaint, TheTextStandsAsItsAlignmentSays)
{
    list->SetColumnText(0, L"Name");
    SetFormat(0, kColumnLeft);
    const QRect left = Ink(Section(0));
    EXPECT_LT(left.left(), 10);
    EXPECT_LT(left.right(), kName / 2);

    SetFormat(0, kColumnRight);
    const QRect right = Ink(Section(0));
    EXPECT_GT(right.right(), kName - 12);
    EXPECT_GT(right.left(), kName / 2);

    SetFormat(0, kColumnCentred);
    EXPECT_NEAR(Ink(Section(0)).center().x(), kName / 2, 2);
}

TEST_F(HeaderPaint, AnImageIsDrawnOnlyWithTheBitThatShowsIt)
{
    list->SetColumnText(0, L"");
    list->SetColumnImage(0, 1);
    for (const std::uint32_t side : {kColumnImageLeft, kColumnImageRight, kColumnImageCentred}) {
        SetFormat(0, kColumnLeft | side);
        EXPECT_TRUE(Ink(Section(0)).isNull()) << side;
        SetFormat(0, kColumnLeft | side | kColumnShowsImage);
        EXPECT_FALSE(Ink(Section(0)).isNull()) << side;
    }
    SetFormat(0, kColumnLeft | kColumnShowsImage);
    EXPECT_TRUE(Ink(Section(0)).isNull()) << "none of the three places";
    SetFormat(0, kColumnLeft | kColumnImageLeft | kColumnShowsImage);
    list->SetColumnImage(0, -1);
    EXPECT_TRUE(Ink(Section(0)).isNull());
}

TEST_F(HeaderPaint, TheImageStandsAtItsSide)
{
    list->SetColumnText(0, L"");
    list->SetColumnImage(0, 1);
    SetFormat(0, kColumnImageLeft | kColumnShowsImage);
    EXPECT_LT(Ink(Section(0)).right(), 24);
    SetFormat(0, kColumnImageRight | kColumnShowsImage);
    EXPECT_GT(Ink(Section(0)).left(), kName - 26);
    SetFormat(0, kColumnImageCentred | kColumnShowsImage);
    EXPECT_NEAR(Ink(Section(0)).center().x(), kName / 2, 4);
}

TEST_F(HeaderPaint, TextAndImageDoNotMeet)
{
    list->SetColumnText(0, L"Name");
    list->SetColumnImage(0, 1);
    for (const std::uint32_t alignment : {kColumnLeft, kColumnRight, kColumnCentred}) {
        SetFormat(0, alignment | kColumnImageLeft | kColumnShowsImage);
        const QImage both = Section(0);
        SetFormat(0, kColumnImageLeft | kColumnShowsImage);
        list->SetColumnText(0, L"");
        const QImage image = Section(0);
        list->SetColumnText(0, L"Name");
        const int edge = Ink(image).right();
        EXPECT_EQ(both.copy(0, 0, edge + 1, both.height()), image.copy(0, 0, edge + 1, both.height())) << alignment;
        EXPECT_GT(Ink(both).right(), edge + 2) << alignment;
    }
}

TEST_F(HeaderPaint, TheHeadersOwnImagesReplaceTheDefaultOnes)
{
    QPixmap green(16, 16);
    green.fill(Qt::green);
    list->SetColumnText(0, L"");
    list->SetHeaderImages({QIcon(green)});
    list->SetColumnImage(0, 0);
    SetFormat(0, kColumnImageLeft | kColumnShowsImage);
    const QRect ink = Ink(Section(0));
    EXPECT_EQ(ink.size(), QSize(16, 16));
    EXPECT_EQ(Section(0).pixelColor(ink.center()), QColor(Qt::green));
}

TEST_F(HeaderPaint, TheArrowPointsUpAndAfterASecondClickDown)
{
    list->SetColumnText(0, L"");
    MakeSortable(0);
    EXPECT_TRUE(Ink(Section(0)).isNull());
    list->SetSortColumn(0, false);
    QImage section = Section(0);
    QRect arrow = Ink(section);
    EXPECT_GT(arrow.left(), kName / 2);
    EXPECT_EQ(InkInRow(section, arrow.top()), 1);
    EXPECT_EQ(InkInRow(section, arrow.bottom()), arrow.width());

    list->SetSortColumn(0, true);
    section = Section(0);
    arrow = Ink(section);
    EXPECT_EQ(InkInRow(section, arrow.top()), arrow.width());
    EXPECT_EQ(InkInRow(section, arrow.bottom()), 1);
}

TEST_F(HeaderPaint, ASortableColumnUnderThePointerAndPressedLooksSo)
{
    MakeSortable(0);
    const auto face = [this](int column) { return Section(column).pixelColor(0, header->height() - 2); };
    const QColor plain = face(0);
    Hover(At(30));
    const QColor hot = face(0);
    EXPECT_NE(hot, plain);
    EXPECT_EQ(face(1), plain);
    Press(At(30));
    EXPECT_NE(face(0), hot);
    Release(At(30));
    Hover(At(kName + 30));
    EXPECT_EQ(face(1), plain) << "a column that cannot be clicked";
    EXPECT_EQ(face(0), plain);
}

TEST_F(HeaderPaint, OnEveryDesktopTextsAndLinesStandOut)
{
    const struct {
        QColor face, text;
    } desktops[] = {{QColor(0xEF, 0xEF, 0xEF), Qt::black},
                    {QColor(0x38, 0x3A, 0x3E), QColor(0xE8, 0xE8, 0xEA)},
                    {QColor(0x38, 0x3A, 0x3E), QColor(0x50, 0x50, 0x50)}, // a careless palette
                    {Qt::black, Qt::yellow},
                    {Qt::white, Qt::black}};
    list->SetColumnText(0, L"MMMM");
    for (const auto &desktop : desktops) {
        SetDesktop(desktop.face, desktop.text);
        EXPECT_EQ(Section(0).pixelColor(0, header->height() - 2), desktop.face);
        EXPECT_GE(Contrast(Section(0)), 4.5) << desktop.face.name().toStdString();
    }
    SetDesktop(Qt::black, Qt::white);
    const QImage all = HeaderPicture();
    EXPECT_GT(ContrastOf(all.pixelColor(kName - 1, 5), Qt::black), 1.5) << "the line between two columns";
    EXPECT_GT(ContrastOf(all.pixelColor(kName + kLength + kKind + 20, header->height() - 1), Qt::black), 1.5);
}

TEST_F(HeaderPaint, AColumnOfNoWidthIsNotPainted)
{
    list->SetColumnText(1, L"MMMM");
    list->SetColumnWidth(1, 0);
    const QImage with = HeaderPicture();
    list->SetColumnFormat(1, kColumnHidden, 0);
    EXPECT_EQ(HeaderPicture(), with);
}

TEST_F(HeaderPaint, ATextThatFindsNoRoomEndsInItsColumnAndItsTipTellsIt)
{
    const auto tipAt = [this](int x) {
        QHelpEvent event(QEvent::ToolTip, At(x), header->mapToGlobal(At(x)));
        QApplication::sendEvent(header, &event);
        return QToolTip::text();
    };
    EXPECT_EQ(tipAt(30), QString());
    EXPECT_EQ(tipAt(kName + kLength + kKind + 30), QString());
    list->SetColumnText(0, L"A header that is far wider than its column will ever be, whatever its font");
    list->SetColumnText(1, L"");
    EXPECT_TRUE(Ink(Section(1)).isNull());
    EXPECT_TRUE(tipAt(30).contains(QStringLiteral("whatever its font")));
    QToolTip::hideText();
}

TEST_F(HeaderPaint, AnAutomaticWidthShowsTheWholeTextOfTheHeader)
{
    list->SetColumnText(0, L"MMMM");
    const QRect whole = Ink(Section(0));
    list->SetColumnWidth(0, -2);
    const QRect fitted = Ink(Section(0));
    EXPECT_EQ(fitted.width(), whole.width());
}

TEST_F(HeaderPaint, AFittedColumnShowsItsWholeHeaderWithImageAndArrow)
{
    list->SetColumnText(0, L"A header of some width");
    list->SetColumnImage(0, 1);
    SetFormat(0, kColumnLeft | kColumnImageLeft | kColumnShowsImage | kColumnSorts | kColumnSortBits);
    list->SetSortColumn(0);
    list->SetColumnWidth(0, 330);
    header->FitColumn(0);
    const QImage fitted = Section(0);
    const QRect text = Ink(fitted.copy(0, 0, fitted.width() - 20, fitted.height()));
    EXPECT_LT(Width(0), 300);
    list->SetColumnWidth(0, 330);
    const QImage wide = Section(0);
    EXPECT_EQ(text, Ink(wide.copy(0, 0, wide.width() - 20, wide.height())));
}

TEST_F(HeaderPaint, TheSectionsScrollWithTheRows)
{
    list->SetColumnWidth(2, 700);
    const QImage before = HeaderPicture();
    list->horizontalScrollBar()->setValue(70);
    const QImage after = HeaderPicture();
    EXPECT_EQ(after.copy(0, 0, 100, after.height()), before.copy(70, 0, 100, before.height()));
}

TEST_F(HeaderPaint, TheColumnOfTheKeysIsMarkedWhileTheHeaderHasTheFocus)
{
    const QImage before = Section(1);
    header->setFocus(Qt::TabFocusReason);
    PressKey(Qt::Key_Right);
    EXPECT_NE(Section(1), before);
    list->setFocus();
    EXPECT_EQ(Section(1), before);
}

TEST_F(HeaderPaint, ADisabledControlsHeaderIsDimmed)
{
    list->SetColumnText(0, L"MMMM");
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x60, 0x60, 0x60));
    QApplication::setPalette(palette);
    const double before = Contrast(Section(0));
    list->setEnabled(false);
    EXPECT_LT(Contrast(Section(0)), before);
}

TEST_F(HeaderPaint, TheHeightFollowsTheFont)
{
    const int before = header->height();
    QFont font = list->font();
    font.setPixelSize(40);
    list->setFont(font);
    Settle();
    EXPECT_GT(header->height(), before + 15);
    EXPECT_EQ(header->height(), header->GetHeight());
    EXPECT_EQ(header->geometry().bottom() + 1, list->viewport()->y());
}

TEST_F(HeaderPaint, WhateverChangesTheColumnsPaintsTheHeaderAnew)
{
    EXPECT_FALSE(Repaints([] {}));
    EXPECT_TRUE(Repaints([this] { list->SetColumnText(1, L"Other"); }));
    EXPECT_TRUE(Repaints([this] { list->SetColumnWidth(1, 500); }));
    EXPECT_TRUE(Repaints([this] { list->SetColumnImage(1, 3); }));
    EXPECT_TRUE(Repaints([this] { list->SetColumnFormat(1, kColumnCentred, kColumnRight); }));
    EXPECT_TRUE(Repaints([this] { list->SetColumnOrderArray({1, 0, 2}); }));
    EXPECT_TRUE(Repaints([this] { list->horizontalScrollBar()->setValue(30); }));
    EXPECT_TRUE(Repaints([this] { list->SetSortColumn(1); }));
    EXPECT_TRUE(Repaints([this] { list->SetHeaderImages({QIcon()}); }));
    EXPECT_TRUE(Repaints([this] { list->SetStyle(kStyle & ~StyleHeaderSort); }));
    EXPECT_TRUE(Repaints([this] { list->InsertColumn(L"New"); }));
    EXPECT_TRUE(Repaints([this] { list->DeleteColumn(0); }));
    EXPECT_TRUE(Repaints([this] { list->setEnabled(false); }));
}
