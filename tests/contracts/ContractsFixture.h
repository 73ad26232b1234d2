// A session with a drawing that can be saved, closed and opened again, and pictures of it.
#pragma once

#include "contracts/CoreServices.h"
#include "host/drawing/Entities.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Painter.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"
#include "host/services/Services.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include <unistd.h>

namespace velmor::test {

class ContractsFixture : public testing::Test {
protected:
    ContractsFixture()
        : folder(std::filesystem::temp_directory_path() / ("velmor-contracts-" + std::to_string(::getpid())))
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder / "user");
        startServices("en");
        session.setMessageSink({});
        session.setDrawing(Drawing::createNew());
    }
    ~ContractsFixture() override
    {
        session.setDrawing(nullptr);
        std::error_code error;
        std::filesystem::remove_all(folder, error);
    }

    /// Settings and texts as of a program that starts now, with the user's folder of the test.
    void startServices(const std::string &language)
    {
        Services::instance().start({.language = language}, Paths({VELMOR_TEST_RESOURCES}, folder / "user"));
    }

    Drawing &drawing() { return *session.drawing(); }

    /// Saves, closes and opens the drawing again, as the next session of a person would.
    void reopen()
    {
        const auto file = folder / "drawing.dxf";
        ASSERT_TRUE(drawing().save(file));
        session.setDrawing(nullptr);
        LoadResult loaded = Drawing::load(file);
        ASSERT_TRUE(loaded.drawing) << loaded.message;
        EXPECT_FALSE(loaded.report.damaged());
        session.setDrawing(std::move(loaded.drawing), file);
    }
    std::string savedText()
    {
        std::ifstream in(folder / "drawing.dxf", std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    AcDbObjectId line(double x1, double y1, double x2, double y2)
    {
        return drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2)));
    }
    static std::unique_ptr<AcDbPolyline> boxEntity(double x1, double y1, double x2, double y2)
    {
        return std::make_unique<AcDbPolyline>(
            std::vector<AcDbPolyline::Vertex>{{x1, y1, 0}, {x2, y1, 0}, {x2, y2, 0}, {x1, y2, 0}}, true);
    }
    AcDbObjectId box(double x1, double y1, double x2, double y2) { return drawing().append(boxEntity(x1, y1, x2, y2)); }
    static AcDbEntity *opened(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead)
    {
        AcDbEntity *entity = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, id, mode), Acad::eOk);
        return entity;
    }
    /// The entity, not open any more.
    static AcDbEntity &entityOf(AcDbObjectId id)
    {
        AcDbEntity *entity = opened(id);
        entity->close();
        return *entity;
    }
    AcDbObjectId byHandle(const std::wstring &text)
    {
        AcDbObjectId id;
        drawing().getAcDbObjectId(id, false, AcDbHandle(text.c_str()), 0);
        return id;
    }
    static std::wstring handleTextOf(AcDbObjectId id)
    {
        wchar_t buffer[17];
        return id.handle().getIntoAsciiBuffer(buffer) ? buffer : L"";
    }
    /// Entities of model space that are not erased.
    std::vector<AcDbEntity *> entities()
    {
        std::vector<AcDbEntity *> found;
        for (AcDbEntity *entity : drawing().modelSpace().entities())
            if (!entity->isErased())
                found.push_back(entity);
        return found;
    }

    /// What a person sees of a part of the drawing: extents of world coordinates in 200 by 200 pixels.
    QImage picture(const Extents &extents = {-10, -10, 110, 110})
    {
        QImage image(200, 200, QImage::Format_RGB32);
        const PaintStyle style = PaintStyle::light();
        image.fill(style.background);
        ViewTransform view;
        view.size = image.size();
        view.show(extents);
        QPainter painter(&image);
        paintDrawing(painter, drawing(), view, style);
        return image;
    }
    /// The pixels of a part of such a picture, one less at each side.
    static QRect pixelsOf(const Extents &part, const Extents &shown = {-10, -10, 110, 110})
    {
        ViewTransform view;
        view.size = QSize(200, 200);
        view.show(shown);
        const QPointF low = view.toView(part.minX, part.minY), high = view.toView(part.maxX, part.maxY);
        return QRect(QPoint(static_cast<int>(std::ceil(low.x())) + 1, static_cast<int>(std::ceil(high.y())) + 1),
                     QPoint(static_cast<int>(high.x()) - 2, static_cast<int>(low.y()) - 2));
    }
    /// Pixels of the picture that are not its ground.
    static int inkOf(const QImage &image) { return inkIn(image, image.rect()); }
    static int inkIn(const QImage &image, const QRect &region)
    {
        int ink = 0;
        for (int y = region.top(); y <= region.bottom(); ++y)
            for (int x = region.left(); x <= region.right(); ++x)
                ink += image.pixel(x, y) != QColor(Qt::white).rgb();
        return ink;
    }
    static int differences(const QImage &a, const QImage &b)
    {
        int different = 0;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                different += a.pixel(x, y) != b.pixel(x, y);
        return different;
    }

    std::filesystem::path folder;
    Session session;
};

} // namespace velmor::test
