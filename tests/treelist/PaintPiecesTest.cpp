// Painting in pieces: a region of several rectangles, and through a buffer.
#include "tests/treelist/PaintFixture.h"

#include "controls/treelist/TreeListDC.h"

class TreeListPieces : public TreeListPaint {
protected:
    /// With marks and pictures, whose rims are smoothed.
    void Make()
    {
        CreateTree(kTreeStyle | StyleCheck | StyleLock | StyleImage);
        for (CTreeListItem *item : {outfall1, pipe12, areaA, areaB, pipe23}) {
            list->SetItemImage(item, kImageRain, kImageRain, kImageRain, kImageRain);
            list->SetItemState(item, kItemShowsImage, 0);
        }
        Settle();
    }
    QImage Rendered(const QRegion &region, qreal ratio) const
    {
        QImage image(list->viewport()->size() * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::magenta);
        list->viewport()->render(&image, region.boundingRect().topLeft(), region, QWidget::RenderFlags());
        return image;
    }
};

TEST_F(TreeListPieces, ACellThatTwoPiecesMeetIsLaidOnce)
{
    Make();
    const int width = list->viewport()->width();
    // Steps that cut rows and pictures across.
    const QRegion region = QRegion(0, 0, width, 9) + QRegion(0, 9, 70, 42) + QRegion(0, 51, 110, 40);
    ASSERT_GT(region.rectCount(), 1);
    ASSERT_LE(region.rectCount(), 4);
    for (const qreal ratio : {1.0, 2.0}) {
        const QImage whole = Rendered(list->viewport()->rect(), ratio);
        const QImage pieces = Rendered(region, ratio);
        int checked = 0;
        for (const QRect &piece : region) {
            const QRect pixels(piece.topLeft() * ratio, piece.size() * ratio);
            EXPECT_EQ(pieces.copy(pixels), whole.copy(pixels)) << piece.top() << " at scale " << ratio;
            checked += pixels.width() * pixels.height();
        }
        EXPECT_EQ(CountOf(pieces, Qt::magenta), pieces.width() * pieces.height() - checked) << "beside the region";
    }
}

TEST_F(TreeListPieces, NothingIsPaintedBesideThePiece)
{
    Make();
    list->SelectItem(areaA, 0);
    for (const std::uint32_t buffered : {0U, 2U}) {
        list->SetState(buffered, kControlBuffered & ~buffered);
        QImage image(list->viewport()->size(), QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        const QRect clip(30, 27, 90, 26); // through the middle of rows, marks and letters
        list->DrawCtrl(painter, clip);
        EXPECT_FALSE(painter.hasClipping()) << "the painter comes back as it was";
        painter.end();
        EXPECT_EQ(CountOf(image.copy(clip), Qt::magenta), 0) << buffered;
        EXPECT_EQ(CountOf(image, Qt::magenta), image.width() * image.height() - clip.width() * clip.height())
            << buffered;
        EXPECT_EQ(image.copy(clip), Picture().copy(clip)) << buffered;
    }
}

TEST_F(TreeListPieces, ABufferIsSeenWhenItIsDoneAndInItsClipAlone)
{
    for (const int ratio : {1, 2}) {
        QImage image(QSize(40, 30) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        const QRect clip(10, 5, 20, 12);
        {
            CTreeListDC buffer(painter, clip);
            buffer.GetPainter().fillRect(QRect(0, 0, 40, 30), Qt::blue);
            buffer.GetPainter().fillRect(QRect(12, 6, 3, 2), Qt::green);
            EXPECT_EQ(CountOf(image, Qt::magenta), image.width() * image.height()) << ratio;
        }
        painter.end();
        EXPECT_EQ(CountOf(image.copy(QRect(12 * ratio, 6 * ratio, 3 * ratio, 2 * ratio)), Qt::green),
                  6 * ratio * ratio);
        EXPECT_EQ(CountOf(image, Qt::blue), (20 * 12 - 6) * ratio * ratio);
        EXPECT_EQ(CountOf(image.copy(QRect(clip.topLeft() * ratio, clip.size() * ratio)), Qt::magenta), 0);
    }
}
