// The header as whole pictures, each named by the rule that it shows.
#include "tests/treelist/HeaderFixture.h"
#include "tests/treelist/PinnedFont.h"
#include "tests/treelist/PinnedPictures.h"

#include "controls/rules/TreeListImages.h"

#include <QPainter>

namespace {

/// Columns of 70, 60 and 50 pixels, 20 beside them, in the font of pictures.
class HeaderPictures : public HeaderTest {
protected:
    HeaderPictures()
    {
        list->setFont(PinnedFont());
        list->resize(202, 100);
        list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list->SetColumnWidth(0, 70);
        list->SetColumnWidth(1, 60);
        list->SetColumnWidth(2, 50);
        Settle();
    }
    QImage Painted()
    {
        Settle();
        return header->grab().toImage();
    }
    /// With the windows that stand over it, and some pixels of the rows.
    QImage PaintedWithMarks()
    {
        Settle();
        QImage image = list->grab(header->geometry().adjusted(0, 0, 0, 12)).toImage();
        QPainter painter(&image);
        for (QWidget *mark :
             {static_cast<QWidget *>(header->GetDragWnd()), static_cast<QWidget *>(header->GetDropWnd())})
            painter.drawPixmap(header->mapFromGlobal(mark->pos()), mark->grab());
        return image;
    }
    static void SetDesktop(const QColor &face, const QColor &text, const QColor &highlight)
    {
        QPalette palette(face);
        palette.setColor(QPalette::Button, face);
        palette.setColor(QPalette::Base, face);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, text);
        palette.setColor(QPalette::Highlight, highlight);
        QApplication::setPalette(palette);
    }
    void SetImages()
    {
        const std::uint32_t places[] = {kColumnImageLeft, kColumnImageCentred, kColumnImageRight};
        const int images[] = {kImageSection, kImageArea, kImageWarning};
        for (const int column : {0, 1, 2}) {
            list->SetColumnFormat(column, places[column] | kColumnShowsImage, 0);
            list->SetColumnImage(column, images[column]);
        }
    }
};

} // namespace

TEST_F(HeaderPictures, TextsStandAsAlignedAndALongOneEndsInAnEllipsis)
{
    list->SetColumnText(0, L"Name");
    list->SetColumnText(2, L"A long one");
    ExpectPicture(Painted(), "header-texts-stand-as-aligned");
}

TEST_F(HeaderPictures, ImagesStandAtTheLeftInTheMiddleAndAtTheRight)
{
    SetImages();
    ExpectPicture(Painted(), "header-images-stand-at-their-places");
}

TEST_F(HeaderPictures, TheArrowStandsAtTheRightOfItsColumn)
{
    MakeSortable(0);
    list->SetSortColumn(0, false);
    ExpectPicture(Painted(), "header-arrow-up");
    list->SetSortColumn(0, true);
    ExpectPicture(Painted(), "header-arrow-down");
}

TEST_F(HeaderPictures, TheColumnOfTheKeysIsFramed)
{
    header->setFocus(Qt::TabFocusReason);
    PressKey(Qt::Key_Right);
    ExpectPicture(Painted(), "header-column-of-the-keys-is-framed");
}

TEST_F(HeaderPictures, ADraggedColumnIsSeenUnderThePointerAndItsPlaceMarked)
{
    CTreeListLayeredWnd::Assume(true);
    Press(At(100));
    MoveTo(At(70));
    MoveTo(QPoint(60, 18));
    ExpectPicture(PaintedWithMarks(), "header-dragged-column-and-its-place");
    header->OnCancelMode();
    CTreeListLayeredWnd::Assume(std::nullopt);
}

TEST_F(HeaderPictures, ADarkDesktopHasADarkHeader)
{
    SetDesktop(QColor(0x38, 0x3A, 0x3E), QColor(0xE8, 0xE8, 0xEA), QColor(0x2F, 0x65, 0xCA));
    SetImages();
    MakeSortable(1);
    list->SetSortColumn(1, false);
    ExpectPicture(Painted(), "header-on-a-dark-desktop");
}

TEST_F(HeaderPictures, AHighContrastHasItsTwoColours)
{
    SetDesktop(Qt::black, Qt::yellow, Qt::cyan);
    SetImages();
    ExpectPicture(Painted(), "header-in-a-high-contrast");
}
