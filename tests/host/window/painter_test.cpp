#include "host/drawing/Transient.h"
#include "host/editor/Painter.h"
#include "host/editor/Picture.h"
#include "host/editor/Theme.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <filesystem>

namespace velmor {
namespace {

constexpr int kSize = 200;

/// The drawing from (0, 0) to (100, 100) on a white picture of 200 by 200 pixels.
QImage paint(Drawing &drawing)
{
    QImage image(kSize, kSize, QImage::Format_RGB32);
    image.fill(Qt::white);
    ViewTransform view{.centerX = 50.0, .centerY = 50.0, .pixelsPerUnit = 2.0, .size = {kSize, kSize}};
    QPainter painter(&image);
    paintDrawing(painter, drawing, view, PaintStyle::light());
    return image;
}

/// Whether anything is painted within a unit of a world point.
bool isPainted(const QImage &image, double x, double y)
{
    const int px = static_cast<int>(x * 2.0), py = kSize - static_cast<int>(y * 2.0);
    for (int dy = -2; dy <= 2; ++dy)
        for (int dx = -2; dx <= 2; ++dx)
            if (image.valid(px + dx, py + dy) && image.pixelColor(px + dx, py + dy) != Qt::white)
                return true;
    return false;
}

TEST(Painter, ALineIsDrawnBetweenItsEndsAndNowhereElse)
{
    auto drawing = Drawing::createNew();
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(10, 10), AcGePoint3d(90, 10)));
    const QImage image = paint(*drawing);
    EXPECT_TRUE(isPainted(image, 50, 10));
    EXPECT_FALSE(isPainted(image, 50, 50));
    EXPECT_FALSE(isPainted(image, 97, 10));
}

TEST(Painter, EveryColourStandsOutFromADarkGround)
{
    const PaintStyle dark = PaintStyle::dark();
    for (int index = 1; index <= 255; ++index)
        EXPECT_GE(contrastOf(dark.color(index), dark.background), 3.0) << index;
    EXPECT_EQ(dark.color(3), QColor(0, 255, 0)) << "what stands out already stays";
    EXPECT_GT(dark.color(5).blue(), dark.color(5).red()) << "blue stays blue";
}

TEST(Painter, HugeAnglesCountsAndNestingEndTheirPictureSoon)
{
    auto drawing = Drawing::createNew();
    drawing->append(std::make_unique<AcDbArc>(AcGePoint3d(50, 50), 20.0, 1e17, -1e300));
    EllipseEntity::Shape shape;
    shape.center = {50, 50};
    shape.majorAxis = {20, 0};
    shape.startParameter = 1e300;
    shape.endParameter = -1e308;
    drawing->append(std::make_unique<EllipseEntity>(shape));
    drawing->append(std::make_unique<CircleEntity>(AcGePoint3d(1e307, 50), 1e307));
    BlockRecord &block = drawing->addBlock(L"B");
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(5, 0)), block);
    AcDbBlockReference::Placement placement;
    placement.position = {10, 10};
    for (int i = 0; i < 5; ++i)
        drawing->append(std::make_unique<AcDbBlockReference>(idOf(block), placement), block);
    placement.columns = placement.rows = 2'000'000'000;
    drawing->append(std::make_unique<AcDbBlockReference>(idOf(block), placement));
    drawing->append(std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>(), true));
    drawing->append(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>(), true));
    EXPECT_TRUE(isPainted(paint(*drawing), 12, 10));
}

TEST(Painter, ABulgeIsDrawnAsItsArc)
{
    // From (20, 50) to (80, 50) with bulge 1: a half circle below the chord, through (50, 20).
    auto drawing = Drawing::createNew();
    drawing->append(
        std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{20, 50, 1.0}, {80, 50, 0.0}}, false));
    const QImage image = paint(*drawing);
    EXPECT_TRUE(isPainted(image, 50, 20));
    EXPECT_FALSE(isPainted(image, 50, 50));
    EXPECT_FALSE(isPainted(image, 50, 80));
}

TEST(Painter, ErasedEntitiesAndHiddenLayersAreNotDrawn)
{
    auto drawing = Drawing::createNew();
    const AcDbObjectId erased = drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(10, 30), AcGePoint3d(90, 30)));
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, erased, AcDb::kForWrite), Acad::eOk);
    entity->erase();
    entity->close();
    const std::size_t layer = drawing->ensureLayer(L"hidden");
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(10, 60), AcGePoint3d(90, 60));
    AcDbLine *hidden = line.get();
    drawing->append(std::move(line));
    drawing->setLayerOf(*hidden, layer);
    EXPECT_TRUE(isPainted(paint(*drawing), 50, 60));
    Layer off = drawing->layer(layer);
    off.on = false;
    drawing->setLayer(layer, off);
    const QImage image = paint(*drawing);
    EXPECT_FALSE(isPainted(image, 50, 30));
    EXPECT_FALSE(isPainted(image, 50, 60));
}

TEST(Painter, AMarkIsHatchedInsideItsRingAndNotInItsHole)
{
    auto drawing = Drawing::createNew();
    TransientMark mark;
    mark.rings = {{{10, 10}, {90, 10}, {90, 90}, {10, 90}}, {{40, 40}, {60, 40}, {60, 60}, {40, 60}}};
    mark.pattern = L"ANSI31";
    mark.scale = 1.0;
    drawing->component<TransientGraphics>().setMark(L"A", mark);
    const QImage image = paint(*drawing);
    EXPECT_TRUE(isPainted(image, 25, 50));
    EXPECT_FALSE(isPainted(image, 50, 50));
    drawing->component<TransientGraphics>().clearMarks();
    EXPECT_FALSE(isPainted(paint(*drawing), 25, 50));
}

TEST(Painter, ABlockReferenceIsDrawnAtItsPlaceWithItsScale)
{
    auto drawing = Drawing::createNew();
    BlockRecord &block = drawing->addBlock(L"CROSS");
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(-1, 0), AcGePoint3d(1, 0)), block);
    AcDbBlockReference::Placement placement;
    placement.position = {50, 70};
    placement.scaleX = placement.scaleY = 20.0;
    drawing->append(std::make_unique<AcDbBlockReference>(idOf(block), placement));
    const QImage image = paint(*drawing);
    EXPECT_TRUE(isPainted(image, 65, 70));
    EXPECT_FALSE(isPainted(image, 65, 50));
}

TEST(Picture, AFileIsWrittenInTheSizeAskedFor)
{
    auto drawing = Drawing::createNew();
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(90, 10)));
    const auto file = std::filesystem::temp_directory_path() / ("velmor_picture_" + std::to_string(getpid()) + ".png");
    ASSERT_TRUE(savePicture(*drawing, file, {.size = {320, 200}, .style = PaintStyle::light(), .extents = {}}));
    EXPECT_EQ(QImage(QString::fromStdString(file.string())).size(), QSize(320, 200));
    std::filesystem::remove(file);
}

TEST(Picture, APlaceThatCannotBeWrittenGivesAMessageWithItsName)
{
    auto drawing = Drawing::createNew();
    const SaveResult saved = savePicture(*drawing, "/no/such/folder/picture.png");
    EXPECT_EQ(saved.status, FileStatus::NotFound);
    EXPECT_NE(saved.message.find("/no/such/folder/picture.png"), std::string::npos);
}

TEST(Picture, ANameThatIsNotUtf8IsTakenByItsBytes)
{
    auto drawing = Drawing::createNew();
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(90, 10)));
    const auto folder = std::filesystem::temp_directory_path() / ("velmor_picture_bytes_" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    const auto file = folder / "\x9Aibenik\xFF.png"; // "Šibenik" in an old code page
    EXPECT_TRUE(savePicture(*drawing, file));
    EXPECT_TRUE(std::filesystem::exists(file));
    std::filesystem::remove_all(folder);
}

TEST(Picture, ASizeWithoutRoomForItGivesAMessage)
{
    auto drawing = Drawing::createNew();
    const auto file = std::filesystem::temp_directory_path() / ("velmor_huge_" + std::to_string(getpid()) + ".png");
    const SaveResult saved = savePicture(*drawing, file, {.size = {16385, 16384}, .style = {}, .extents = {}});
    EXPECT_EQ(saved.status, FileStatus::NotWritable);
    EXPECT_NE(saved.message.find(file.string()), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(file));
}

} // namespace
} // namespace velmor
