#include "tests/treelist/PinnedPictures.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>

void ExpectPicture(const QImage &painted, const char *name)
{
    constexpr int kShade = 2, kMostRims = 8, kMostOfARim = 64;
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    ASSERT_TRUE(source) << "VELMOR_SOURCE_DIR is not set";
    const QString file =
        QStringLiteral("%1/tests/treelist/golden/%2.png").arg(QString::fromUtf8(source), QLatin1String(name));
    QImage picture = painted.convertToFormat(QImage::Format_RGB32);
    picture.setDevicePixelRatio(1);
    if (std::getenv("VELMOR_WRITE_PICTURES")) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()) && picture.save(file)) << qPrintable(file);
        return;
    }
    const auto keep = [&] {
        const char *built = std::getenv("VELMOR_BINARY_DIR");
        const QString folder = QStringLiteral("%1/treelist-pictures").arg(QString::fromUtf8(built ? built : "."));
        QDir().mkpath(folder);
        const QString kept = QStringLiteral("%1/%2.png").arg(folder, QLatin1String(name));
        picture.save(kept);
        return kept.toStdString();
    };
    QImage golden;
    ASSERT_TRUE(golden.load(file)) << qPrintable(file) << " is missing; painted: " << keep();
    golden = golden.convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(golden.size(), picture.size()) << name << " painted: " << keep();
    int rims = 0, most = 0;
    QRect where;
    for (int y = 0; y < golden.height(); ++y) {
        for (int x = 0; x < golden.width(); ++x) {
            const QRgb one = golden.pixel(x, y), other = picture.pixel(x, y);
            const int off = std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                                      std::abs(qBlue(one) - qBlue(other))});
            if (off > kShade) {
                ++rims;
                most = std::max(most, off);
                where |= QRect(x, y, 1, 1);
            }
        }
    }
    const bool same = rims <= kMostRims && most <= kMostOfARim;
    EXPECT_TRUE(same) << name << ": " << rims << " pixels are off, by up to " << most << ", first to last at "
                      << where.left() << "," << where.top() << " " << where.right() << "," << where.bottom()
                      << "; painted: " << (same ? "" : keep());
}
