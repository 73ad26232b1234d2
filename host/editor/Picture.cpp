#include "host/editor/Picture.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSaveFile>

namespace velmor {

SaveResult savePicture(Drawing &drawing, const std::filesystem::path &file, const PictureOptions &options)
{
    QImage image(options.size, QImage::Format_RGB32);
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
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly) || !image.save(&out, suffix.constData()) || !out.commit())
        return {FileStatus::NotWritable, file.string() + ": the picture can't be written (" +
                                             out.errorString().toStdString() + "); choose another place"};
    return {};
}

} // namespace velmor
