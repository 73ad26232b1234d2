// The picture of a block file as a dialog shows it: what is in it, on which ground, how large, and when it is made
// anew.
#include "tests/contracts/ContractsFixture.h"

#include "host/editor/FilePreview.h"
#include "host/editor/Painter.h"
#include "host/editor/Theme.h"

#include <QPainter>
#include <QWidget>

namespace velmor::test {
namespace {

/// Asks for a file's picture at each of its paints.
class Field final : public QWidget {
public:
    std::wstring file;
    std::uint32_t ground = 0;
    bool answer = false;

protected:
    void paintEvent(QPaintEvent *) override { answer = acdbDisplayPreviewFromDwg(file.c_str(), this, ground); }
};

class Preview : public ContractsFixture {
protected:
    std::wstring blockFile(const char *name, const std::vector<AttributeDefinitionEntity *> &attributes)
    {
        auto block = Drawing::createNew();
        for (AttributeDefinitionEntity *attribute : attributes)
            block->append(std::unique_ptr<AcDbEntity>(attribute));
        EXPECT_TRUE(block->save(folder / name));
        return (folder / name).wstring();
    }
    static AttributeDefinitionEntity *attribute(const wchar_t *tag, double y, bool invisible = false,
                                                bool constant = false, const wchar_t *text = L"-")
    {
        TextShape shape;
        shape.position = {0.0, y, 0.0};
        shape.height = 1.0;
        shape.text = text;
        return new AttributeDefinitionEntity(tag, tag, shape, invisible, constant);
    }
    static QRect inkIn(const QImage &image, QRgb ground)
    {
        QRect ink;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) != ground)
                    ink |= QRect(x, y, 1, 1);
        return ink;
    }
    static QRect inkIn(const std::wstring &file, const QSize &size = {300, 200})
    {
        return inkIn(filePicture(std::filesystem::path(file), size, Qt::white), qRgb(255, 255, 255));
    }
};

TEST_F(Preview, AttributesThatCanBeSeenShowTheirTags)
{
    const QRect one = inkIn(blockFile("one.dxf", {attribute(L"A", 0.0)}));
    const QRect longer = inkIn(blockFile("longer.dxf", {attribute(L"ALONGTAG", 0.0)}));
    ASSERT_FALSE(one.isEmpty());
    EXPECT_GT(longer.width() * one.height(), 3 * one.width() * longer.height()) << "the tag, not the text";
    const QRect withHidden = inkIn(blockFile("hidden.dxf", {attribute(L"A", 0.0), attribute(L"B", 50.0, true)}));
    EXPECT_EQ(withHidden, one) << "what a reference does not show takes no room";
    const QRect constant = inkIn(blockFile("constant.dxf", {attribute(L"A", 0.0, false, true, L"CONSTANT")}));
    EXPECT_GT(constant.width() * one.height(), 3 * one.width() * constant.height()) << "the text, not the tag";
}

TEST_F(Preview, AllOfItLiesWithinTheFieldAndFillsIt)
{
    const std::wstring file = blockFile("far.dxf", {attribute(L"FIRST", 5000.0), attribute(L"SECOND", 5003.0)});
    for (const QSize &size : {QSize(300, 200), QSize(120, 400), QSize(40, 40)}) {
        const QRect ink = inkIn(file, size);
        EXPECT_TRUE(QRect(QPoint(), size).adjusted(1, 1, -1, -1).contains(ink)) << size.width();
        EXPECT_TRUE(ink.width() > size.width() * 3 / 5 || ink.height() > size.height() * 3 / 5) << size.width();
    }
}

TEST_F(Preview, WithoutAColourItStandsOnTheGroundOfDrawings)
{
    Field field;
    field.resize(100, 80);
    field.file = blockFile("block.dxf", {attribute(L"TAG", 0.0)});
    for (const Theme theme : {Theme::Light, Theme::Dark}) {
        field.setPalette(paletteOf(theme));
        const PaintStyle style = theme == Theme::Dark ? PaintStyle::dark() : PaintStyle::light();
        const QImage shown = field.grab().toImage();
        ASSERT_TRUE(field.answer);
        EXPECT_EQ(shown.pixel(1, 1), style.background.rgb());
        const QRect ink = inkIn(shown, style.background.rgb());
        ASSERT_FALSE(ink.isEmpty());
        double best = 0.0;
        for (int y = ink.top(); y <= ink.bottom(); ++y)
            for (int x = ink.left(); x <= ink.right(); ++x)
                best = std::max(best, contrastOf(shown.pixelColor(x, y), style.background));
        EXPECT_GT(best, 4.5) << "what is drawn can be read";
    }
    field.ground = 0x0000FF00;
    EXPECT_EQ(field.grab().toImage().pixel(1, 1), qRgb(0, 255, 0));
}

TEST_F(Preview, TheFileBesideAMissingOneIsLookedAtAgainWhenItComesOrChanges)
{
    const std::wstring asked = (folder / "label.dwg").wstring();
    EXPECT_TRUE(filePicture(std::filesystem::path(asked), {100, 80}, Qt::white).isNull());
    blockFile("label.dxf", {attribute(L"A", 0.0)});
    const QRect first = inkIn(asked);
    ASSERT_FALSE(first.isEmpty());
    blockFile("label.dxf", {attribute(L"AMUCHLONGERTAG", 0.0)});
    EXPECT_NE(inkIn(asked), first);
    std::filesystem::remove(folder / "label.dxf");
    EXPECT_TRUE(filePicture(std::filesystem::path(asked), {100, 80}, Qt::white).isNull());
}

TEST_F(Preview, AnotherPaintTakesThePictureThatWasMade)
{
    const std::filesystem::path file = blockFile("block.dxf", {attribute(L"A", 0.0)});
    const QImage first = filePicture(file, {100, 80}, Qt::white);
    EXPECT_EQ(filePicture(file, {100, 80}, Qt::white).cacheKey(), first.cacheKey());
    EXPECT_NE(filePicture(file, {100, 81}, Qt::white).cacheKey(), first.cacheKey());
    EXPECT_NE(filePicture(file, {100, 80}, Qt::black).pixel(1, 1), first.pixel(1, 1));
}

TEST_F(Preview, ADenseScreenGetsAPictureOfItsOwnPixels)
{
    const std::filesystem::path file = blockFile("block.dxf", {attribute(L"A", 0.0)});
    const QImage image = filePicture(file, {100, 80}, Qt::white, 2.0);
    EXPECT_EQ(image.size(), QSize(200, 160));
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(100, 80));
    const QRect ink = inkIn(image, qRgb(255, 255, 255));
    EXPECT_TRUE(QRect(1, 1, 198, 158).contains(ink));
    EXPECT_TRUE(ink.width() > 110 || ink.height() > 90);
}

} // namespace
} // namespace velmor::test
