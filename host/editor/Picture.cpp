#include "host/editor/Picture.h"

#include "host/drawing/dxf/AtomicFile.h"
#include "host/services/Messages.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>

namespace velmor {

SaveResult savePicture(Drawing &drawing, const std::filesystem::path &file, const PictureOptions &options)
{
    // Asked for before the image is made: the system may grant memory that it does not have and stop the program later.
    const bool isTooLarge = static_cast<std::int64_t>(options.size.width()) * options.size.height() > kMostPixels;
    QImage image(isTooLarge ? QSize() : options.size, QImage::Format_RGB32);
    if (image.isNull())
        return {FileStatus::NotWritable, uiLine("ui.picture.size", {file.string()})};
    image.fill(options.style.background);
    ViewTransform view;
    view.size = options.size;
    view.show(options.extents.isEmpty() ? visibleExtents(drawing) : options.extents);
    QPainter painter(&image);
    paintDrawing(painter, drawing, view, options.style);
    painter.end();

    const QString path = QString::fromStdString(file.string());
    QByteArray suffix = QFileInfo(path).suffix().toLatin1().toUpper();
    if (suffix != "JPG" && suffix != "JPEG" && suffix != "BMP")
        suffix = "PNG";
    // The encoder's own words about a full disk say nothing; so it writes to memory.
    QByteArray encoded;
    QBuffer buffer(&encoded);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, suffix.constData()))
        return {FileStatus::NotWritable, uiLine("ui.picture.ending", {file.string(), suffix.toStdString()})};
    const std::string_view pieces[] = {{encoded.constData(), static_cast<std::size_t>(encoded.size())}};
    return writeFileAtomically(file, pieces, false);
}

} // namespace velmor
