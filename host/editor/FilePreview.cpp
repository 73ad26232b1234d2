#include "host/editor/FilePreview.h"

#include "host/drawing/BlockFile.h"
#include "host/drawing/Blocks.h"
#include "host/editor/Painter.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <array>
#include <iterator>
#include <list>
#include <memory>

namespace velmor {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kRemembered = 4;
constexpr double kMargin = 0.06; ///< of the picture's extent, free at each side

/// Tells whether a block file has changed: time and size of what may be read in its place.
struct Stamp {
    struct One {
        fs::file_time_type time;
        std::uintmax_t size = 0;
        bool operator==(const One &) const = default;
    };
    std::array<One, 3> files;
    bool operator==(const Stamp &) const = default;
};

Stamp stampOf(const fs::path &file)
{
    Stamp stamp;
    const std::array candidates{file, fs::path(file).replace_extension(".dxf"),
                                fs::path(file).replace_extension(".DXF")};
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        std::error_code error;
        const auto time = fs::last_write_time(candidates[i], error);
        if (!error)
            stamp.files[i] = {time, fs::file_size(candidates[i], error)};
    }
    return stamp;
}

/// A file as it was when it was read, and the picture that was last made of it; a file that could not be read has no
/// scene.
struct Remembered {
    fs::path file;
    Stamp stamp;
    std::unique_ptr<Drawing> scene;
    Extents extents; ///< of what is drawn; empty when nothing is
    QImage picture;
    QColor ground;
};

/// The file's drawing as a reference in a drawing of its own, with texts in place of its attributes.
std::unique_ptr<Drawing> sceneOf(const fs::path &file)
{
    auto source = readBlockFile(file);
    const LoadResult loaded = source ? Drawing::read(std::move(source->bytes)) : LoadResult();
    if (!loaded.drawing)
        return nullptr;
    auto scene = Drawing::createNew();
    const BlockImport imported = importBlockInto(*scene, L"PREVIEW", *loaded.drawing, {});
    if (!imported.block)
        return nullptr;
    const AcDbBlockReference::Placement placement;
    scene->append(std::make_unique<AcDbBlockReference>(idOf(*imported.block), placement));
    for (const AcDbEntity *entity : imported.block->entities()) {
        if (entity->isErased() || kindOf(*entity) != EntityKind::AttributeDefinition)
            continue;
        const auto &attribute = static_cast<const AttributeDefinitionEntity &>(*entity);
        if (attribute.isInvisible())
            continue;
        TextShape shape = placedShape(attribute.shape(), imported.block->basePoint(), placement);
        if (!attribute.isConstant())
            shape.text = attribute.tag();
        scene->append(std::make_unique<TextEntity>(std::move(shape)));
        AcDbEntity &text = *scene->modelSpace().entities().back();
        scene->setLayerOf(text, layerIndexOf(*entity));
        scene->setColorOf(text, entity->colorIndex());
    }
    return scene;
}

QImage paintedScene(Drawing &scene, const Extents &extents, const QSize &pixels, double pixelRatio,
                    const QColor &ground)
{
    QImage image(pixels, QImage::Format_RGB32);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(ground);
    PaintStyle style;
    style.background = ground;
    ViewTransform view;
    view.size = image.deviceIndependentSize();
    view.show(extents, 0.0);
    QPainter painter(&image);
    paintDrawing(painter, scene, view, style);
    return image;
}

/// Where a scene is drawn. Extents of texts are estimates, and a picture of texts alone would be cut off by them.
Extents drawnExtents(Drawing &scene)
{
    constexpr int kTries = 3, kSide = 256;
    Extents extents = visibleExtents(scene);
    for (int i = 0; i < kTries && !extents.isEmpty(); ++i) {
        extents.grow(std::max(extents.maxX - extents.minX, extents.maxY - extents.minY));
        const QSize pixels(kSide, kSide);
        const QImage image = paintedScene(scene, extents, pixels, 1.0, Qt::white);
        QRect ink;
        for (int y = 0; y < kSide; ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
            const auto isInk = [](QRgb pixel) { return pixel != qRgb(255, 255, 255); };
            const auto *first = std::find_if(line, line + kSide, isInk);
            if (first == line + kSide)
                continue;
            const auto *last =
                std::find_if(std::make_reverse_iterator(line + kSide), std::make_reverse_iterator(line), isInk).base();
            ink |= QRect(static_cast<int>(first - line), y, static_cast<int>(last - first), 1);
        }
        if (ink.isEmpty())
            return extents;
        ViewTransform view;
        view.size = pixels;
        view.show(extents, 0.0);
        const AcGePoint3d lowest = view.toWorld({static_cast<double>(ink.left()), ink.bottom() + 1.0});
        const AcGePoint3d highest = view.toWorld({ink.right() + 1.0, static_cast<double>(ink.top())});
        extents = Extents();
        extents.add(lowest.x, lowest.y);
        extents.add(highest.x, highest.y);
        if (QRect(1, 1, kSide - 2, kSide - 2).contains(ink))
            break;
    }
    return extents;
}

Remembered &remembered(const fs::path &file)
{
    static std::list<Remembered> files; // the last one first
    const Stamp stamp = stampOf(file);
    const auto known = std::find_if(files.begin(), files.end(),
                                    [&](const Remembered &r) { return r.file == file && r.stamp == stamp; });
    if (known != files.end()) {
        files.splice(files.begin(), files, known);
    } else {
        std::erase_if(files, [&](const Remembered &r) { return r.file == file; });
        files.push_front({file, stamp, sceneOf(file), {}, {}, {}});
        if (Drawing *scene = files.front().scene.get())
            files.front().extents = drawnExtents(*scene);
        if (files.size() > kRemembered)
            files.pop_back();
    }
    return files.front();
}

/// Paints a picture over a widget behind each of its own paints.
class PictureKeeper final : public QObject {
public:
    explicit PictureKeeper(QWidget &widget) : QObject(&widget), m_widget(widget) { widget.installEventFilter(this); }
    static PictureKeeper *of(const QWidget &widget)
    {
        for (QObject *child : widget.children())
            if (auto *keeper = dynamic_cast<PictureKeeper *>(child))
                return keeper;
        return nullptr;
    }
    void show(const fs::path &file, const QColor &ground)
    {
        m_file = file;
        m_ground = ground;
        m_widget.update();
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (object != &m_widget || event->type() != QEvent::Paint)
            return false;
        const QImage picture = filePicture(m_file, m_widget.size(), m_ground, m_widget.devicePixelRatioF());
        if (picture.isNull())
            return false;
        QPainter(&m_widget).drawImage(0, 0, picture);
        return true;
    }

private:
    QWidget &m_widget;
    fs::path m_file;
    QColor m_ground;
};

} // namespace

QImage filePicture(const fs::path &file, const QSize &size, const QColor &ground, double pixelRatio)
{
    if (size.isEmpty())
        return {};
    Remembered &known = remembered(file);
    const QSize pixels = (QSizeF(size) * pixelRatio).toSize();
    if (known.picture.size() == pixels && known.picture.devicePixelRatio() == pixelRatio && known.ground == ground)
        return known.picture;
    if (known.extents.isEmpty())
        return {};
    Extents extents = known.extents;
    extents.grow(kMargin * std::max(extents.maxX - extents.minX, extents.maxY - extents.minY));
    const QImage image = paintedScene(*known.scene, extents, pixels, pixelRatio, ground);
    known.picture = image;
    known.ground = ground;
    return image;
}

QColor drawingGround(const QWidget &widget)
{
    const bool isDark = widget.palette().color(QPalette::Base).lightnessF() < 0.5;
    return (isDark ? PaintStyle::dark() : PaintStyle::light()).background;
}

bool showFilePicture(QWidget &widget, const fs::path &file, const QColor &ground)
{
    PictureKeeper *keeper = PictureKeeper::of(widget);
    const QImage picture = filePicture(file, widget.size(), ground, widget.devicePixelRatioF());
    if (picture.isNull()) {
        if (keeper) // what it shows is no longer what was asked for
            keeper->show({}, ground);
        return false;
    }
    if (widget.testAttribute(Qt::WA_WState_InPaintEvent)) {
        QPainter(&widget).drawImage(0, 0, picture);
        return true;
    }
    if (!keeper)
        keeper = new PictureKeeper(widget);
    keeper->show(file, ground);
    return true;
}

} // namespace velmor
