// Where something stands in a picture.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

/// The part of the picture that differs from a colour; empty when nothing does.
inline QRect InkOf(const QImage &image, const QColor &ground)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != ground)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}
