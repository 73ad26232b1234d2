#include "tests/pictures/Pictures.h"

#include <QEventLoop>
#include <QHash>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cstdio>

namespace velmor {

namespace {

/// The 256 colours that most pixels have.
QList<QRgb> commonColors(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    QList<QRgb> colors = counts.keys();
    std::ranges::sort(colors,
                      [&](QRgb a, QRgb b) { return counts[a] > counts[b] || (counts[a] == counts[b] && a < b); });
    return colors.mid(0, 256);
}

} // namespace

bool savePicture(const QImage &picture, const QString &file)
{
    if (picture.convertToFormat(QImage::Format_Indexed8, commonColors(picture)).save(file))
        return true;
    std::fprintf(stderr, "%s: the picture can't be written\n", qPrintable(file));
    return false;
}

QImage pictureOf(QWidget &widget)
{
    QEventLoop settled; // a box over a list takes its size a little later
    QTimer::singleShot(60, &settled, &QEventLoop::quit);
    settled.exec();
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QImage sideBySide(const QImage &left, const QImage &right)
{
    constexpr int kGap = 8;
    QImage both(left.width() + kGap + right.width(), std::max(left.height(), right.height()), QImage::Format_RGB32);
    both.fill(Qt::white);
    QPainter painter(&both);
    painter.drawImage(0, 0, left);
    painter.drawImage(left.width() + kGap, 0, right);
    return both;
}

} // namespace velmor
