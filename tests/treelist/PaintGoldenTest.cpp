// The rows as whole pictures, each named by the rule that it shows.
#include "tests/treelist/PaintFixture.h"

namespace {

constexpr std::uint32_t kTree = StyleTree | StyleTreeLines | StyleTreeRootLines | StyleTreeButtons;
constexpr std::uint32_t kGlyphs = StyleCheck | StyleLock | StyleImage;

} // namespace

class TreeListPictures : public TreeListPaint {
protected:
    /// Rows of 16 pixels in columns of 84, 36 and 30, 160 x 80 in all; ten pixels beside the columns.
    void Make(std::uint32_t style)
    {
        ASSERT_NE(list->Create(style, QRect(0, 0, 162, 82), &window, 900), 0);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list->SetItemHeight(16);
        list->SetColumnWidth(0, 84);
        list->InsertColumn(L"Length", kColumnRight, 36);
        list->InsertColumn(L"Kind", kColumnCentred, 30);
        out = Add(L"Out 1", TreeListRoot(), L"", L"out");
        pipe = Add(L"Pipe 7", out, L"42.50", L"pipe");
        area = Add(L"Area A", pipe, L"0.25", L"area");
        end = Add(L"Out 2", TreeListRoot(), L"", L"out");
        Add(L"Pipe 8", end, L"8.00", L"pipe");
        list->Expand(out, kExpand);
        list->Expand(pipe, kExpand);
        const std::pair<CTreeListItem *, int> images[] = {
            {out, kImageOutfall}, {pipe, kImageSection}, {area, kImageHouse}, {end, kImageOutfall}};
        for (const auto &[item, image] : images) {
            list->SetItemImage(item, image, image, kImageGood, image);
            list->SetItemState(item, kItemShowsImage, 0);
        }
        list->SetCheck(pipe, kCheckMixed);
        list->SetCheck(area, kCheckOn);
        list->SetLock(out, kCheckMixed);
        list->SetLock(end, kCheckOn);
        Show();
        list->SetState(0, kControlFocused);
    }
    QImage Painted(qreal ratio = 1.0) const
    {
        QImage image(QSize(160, 80) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        list->DrawCtrl(painter, QRect(0, 0, 160, 80));
        return image;
    }
    void Choose(CTreeListItem *item, int column = 0, bool clear = true)
    {
        list->SelectItem(item, column, clear);
        list->SetState(kControlFocused, 0);
    }

    CTreeListItem *out = nullptr, *pipe = nullptr, *area = nullptr, *end = nullptr;
};

TEST_F(TreeListPictures, TreeLinesJoinSiblingsAndParents)
{
    Make(kTree);
    ExpectPicture(Painted(), "tree-lines-join-siblings-and-parents");
}

TEST_F(TreeListPictures, WithoutRootLinesTheTopLevelHasNone)
{
    Make(kTree & ~StyleTreeRootLines);
    ExpectPicture(Painted(), "without-root-lines-the-top-level-has-none");
}

TEST_F(TreeListPictures, ButtonsStandWithoutLinesToo)
{
    Make(StyleTree | StyleTreeButtons);
    ExpectPicture(Painted(), "buttons-stand-without-lines-too");
}

TEST_F(TreeListPictures, CheckLockAndImageStandBeforeTheText)
{
    Make(kTree | kGlyphs);
    ExpectPicture(Painted(), "check-lock-and-image-stand-before-the-text");
    ExpectPicture(Painted(2.0), "check-lock-and-image-stand-before-the-text-at-scale-2");
}

TEST_F(TreeListPictures, AMainCellHasNeitherIndentNorButton)
{
    Make(kGlyphs);
    ExpectPicture(Painted(), "a-main-cell-has-neither-indent-nor-button");
}

TEST_F(TreeListPictures, AFullRowSelectionLeavesTheDecorationOut)
{
    Make(kTree | kGlyphs | StyleFullRowSelect);
    Choose(pipe);
    ExpectPicture(Painted(), "a-full-row-selection-leaves-the-decoration-out");
}

TEST_F(TreeListPictures, OtherwiseTheSelectionStandsBehindTheTexts)
{
    Make(kTree | kGlyphs);
    Choose(pipe);
    ExpectPicture(Painted(), "otherwise-the-selection-stands-behind-the-texts");
}

TEST_F(TreeListPictures, TheSelectedColumnHasItsOwnColour)
{
    Make(kTree | StyleFullRowSelect | StyleSelectColumn);
    Choose(pipe, 1);
    ExpectPicture(Painted(), "the-selected-column-has-its-own-colour");
}

TEST_F(TreeListPictures, TheNewestOfManySelectedDiffers)
{
    Make(kTree | StyleFullRowSelect | StyleMultiSelect);
    Choose(out);
    Choose(area, 0, false);
    Choose(end, 0, false);
    ExpectPicture(Painted(), "the-newest-of-many-selected-differs");
}

TEST_F(TreeListPictures, WithoutTheFocusTheSelectionIsPale)
{
    Make(kTree | StyleFullRowSelect | StyleShowSelectionAlways);
    Choose(pipe);
    list->SetState(0, kControlFocused);
    ExpectPicture(Painted(), "without-the-focus-the-selection-is-pale");
}

TEST_F(TreeListPictures, RowsAlternateDownToTheBottom)
{
    Make(kTree | StyleAlternate | StyleBkColor);
    list->Expand(pipe, kCollapse);
    ExpectPicture(Painted(), "rows-alternate-down-to-the-bottom");
}

TEST_F(TreeListPictures, TheHorizontalGridEndsWithAClosingLine)
{
    Make(kTree | StyleHorzGrid);
    ExpectPicture(Painted(), "the-horizontal-grid-ends-with-a-closing-line");
}

TEST_F(TreeListPictures, BothGridsInAllCellsAndEmptyRows)
{
    Make(kTree | StyleHorzGrid | StyleVertGrid | StyleGridInFirstColumn | StyleHorzGridEmptyRows | StyleVertGridAll);
    list->Expand(pipe, kCollapse);
    ExpectPicture(Painted(), "both-grids-in-all-cells-and-empty-rows");
}

TEST_F(TreeListPictures, AFocusRectangleIsInsetAtTheGrid)
{
    Make(kTree | StyleHorzGrid | StyleVertGrid);
    Choose(pipe);
    ExpectPicture(Painted(), "a-focus-rectangle-is-inset-at-the-grid");
}

TEST_F(TreeListPictures, TheBackgroundsPictureMovesWithTheColumns)
{
    Make(kTree | StyleBkBitmap);
    ExpectPicture(Painted(), "the-background-s-picture-lies-behind-the-rows");
    list->SetColumnWidth(2, 60);
    Settle();
    list->horizontalScrollBar()->setValue(20);
    ExpectPicture(Painted(), "the-background-s-picture-moves-with-the-columns");
    list->setEnabled(false);
    ExpectPicture(Painted(), "the-background-s-picture-while-disabled");
}

TEST_F(TreeListPictures, ADisabledWindowHasItsOwnColours)
{
    Make(kTree | kGlyphs | StyleAlternate);
    list->setEnabled(false);
    ExpectPicture(Painted(), "a-disabled-window-has-its-own-colours");
}

TEST_F(TreeListPictures, TextsStandAsTheirColumnsDoAndEndInAnEllipsis)
{
    Make(StyleVertGrid);
    list->SetItemText(out, 0, L"A name that is too long");
    list->SetItemText(out, 1, L"1234567.89");
    list->SetItemText(pipe, 2, L"centred");
    ExpectPicture(Painted(), "texts-stand-as-their-columns-do-and-end-in-an-ellipsis");
}

TEST_F(TreeListPictures, TheTargetOfADragIsSelectedAndItsMarksDimmed)
{
    Make(kTree | kGlyphs | StyleFullRowSelect);
    list->SetTargetItem(area);
    ExpectPicture(Painted(), "the-target-of-a-drag-is-selected-and-its-marks-dimmed");
    list->SetTargetItem(nullptr);
}

TEST_F(TreeListPictures, ANarrowCellCutsItsMarks)
{
    Make(kTree | kGlyphs | StyleVertGrid);
    list->SetColumnWidth(0, 50);
    ExpectPicture(Painted(), "a-narrow-cell-cuts-its-marks");
}

TEST_F(TreeListPictures, AScrolledViewShowsTheLaterRowsAndColumns)
{
    Make(kTree | kGlyphs | StyleAlternate);
    for (int row = 0; row < 6; ++row)
        Add(L"Row", TreeListRoot(), L"1.00", L"row");
    list->SetColumnWidth(2, 90);
    Settle();
    list->verticalScrollBar()->setValue(2);
    list->horizontalScrollBar()->setValue(30);
    ExpectPicture(Painted(), "a-scrolled-view-shows-the-later-rows-and-columns");
}

TEST_F(TreeListPictures, ADarkDesktop)
{
    Make(kTree | kGlyphs | StyleFullRowSelect | StyleSelectColumn | StyleAlternate | StyleHorzGrid | StyleVertGrid);
    Choose(pipe, 1);
    UseDesktop(DarkPalette());
    ExpectPicture(Painted(), "a-dark-desktop");
}

TEST_F(TreeListPictures, ADesktopOfHighContrast)
{
    Make(kTree | kGlyphs | StyleFullRowSelect | StyleSelectColumn | StyleAlternate | StyleHorzGrid | StyleVertGrid);
    Choose(pipe, 1);
    UseDesktop(ContrastPalette(Qt::black, Qt::white));
    ExpectPicture(Painted(), "a-desktop-of-high-contrast");
}

TEST_F(TreeListPictures, AllMarksOnEveryDesktop)
{
    const std::pair<const char *, QPalette> desktops[] = {
        {"all-marks-on-a-light-desktop", LightPalette()},
        {"all-marks-on-a-dark-desktop", DarkPalette()},
        {"all-marks-with-high-contrast", ContrastPalette(Qt::white, Qt::black)}};
    for (const auto &[name, palette] : desktops) {
        const TreeListShades shades = ShadesOf(palette);
        QImage image(QSize(160, 80) * 2, QImage::Format_RGB32);
        image.setDevicePixelRatio(2);
        image.fill(palette.color(QPalette::Base));
        QPainter painter(&image);
        for (int number = 0; number < kTreeListImages; ++number)
            tree_list_glyphs::PaintImage(painter, QRectF(6 + number % 7 * 22, 4 + number / 7 * 20, 16, 16), number,
                                         shades);
        for (int state = 0; state < 3; ++state) {
            tree_list_glyphs::PaintCheck(painter, QRectF(6 + state * 22, 46, 16, 16), state, shades);
            tree_list_glyphs::PaintLock(painter, QRectF(76 + state * 12, 46, 8, 16), state, shades);
            tree_list_glyphs::PaintButton(painter, QRect(110 + state * 16, 46, 16, 16), state == 1, shades.ink,
                                          shades.ground);
        }
        painter.end();
        ExpectPicture(image, name);
    }
}

TEST_F(TreeListPictures, TheFiveCursors)
{
    QImage image(QSize(160, 40) * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    image.fill(QColor(0x90, 0xA0, 0xB0));
    QPainter painter(&image);
    int x = 0;
    for (const int number : {8005, 8006, 8007, 8015, 8016}) {
        painter.drawPixmap(QPoint(x, 4), tree_list_glyphs::Cursor(number, 2).pixmap());
        x += 32;
    }
    painter.end();
    ExpectPicture(image, "the-five-cursors");
}
