#include "host/editor/FilePreview.h"

#include "host/drawing/BlockFile.h"
#include "host/drawing/Blocks.h"
#include "host/editor/Painter.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

#include <list>
#include <memory>

namespace velmor {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kRemembered = 4;
constexpr double kMargin = 0.06; ///< of the picture's extent, free at each side

/// A file as it was when it was read; a file that could not be read has no scene.
struct Remembered {
    fs::path file;
    fs::file_time_type time;
    std::uintmax_t size = 0;
    std::unique_ptr<Drawing> scene;
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

Drawing *rememberedScene(const fs::path &file)
{
    static std::list<Remembered> files; // the last one first
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    const auto size = fs::file_size(file, error);
    const auto known = std::find_if(files.begin(), files.end(), [&](const Remembered &r) {
        return r.file == file && r.time == time && r.size == size;
    });
    if (known != files.end()) {
        files.splice(files.begin(), files, known);
    } else {
        std::erase_if(files, [&](const Remembered &r) { return r.file == file; });
        files.push_front({file, time, size, sceneOf(file)});
        if (files.size() > kRemembered)
            files.pop_back();
    }
    return files.front().scene.get();
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
        const QImage picture = filePicture(m_file, m_widget.size(), m_ground);
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

QImage filePicture(const fs::path &file, const QSize &size, const QColor &ground)
{
    Drawing *scene = size.isEmpty() ? nullptr : rememberedScene(file);
    Extents extents = scene ? visibleExtents(*scene) : Extents();
    if (extents.isEmpty())
        return {};
    extents.grow(kMargin * std::max(extents.maxX - extents.minX, extents.maxY - extents.minY));
    QImage image(size, QImage::Format_RGB32);
    PaintStyle style;
    style.background = ground;
    image.fill(ground);
    ViewTransform view;
    view.size = size;
    view.show(extents);
    QPainter painter(&image);
    paintDrawing(painter, *scene, view, style);
    return image;
}

bool showFilePicture(QWidget &widget, const fs::path &file, const QColor &ground)
{
    PictureKeeper *keeper = PictureKeeper::of(widget);
    const QImage picture = filePicture(file, widget.size(), ground);
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
