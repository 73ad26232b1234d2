#include "dialogs/BlockFileTitle.h"

#include "controls/WideText.h"

#include <QFile>
#include <QFileInfo>

namespace {

bool CanBeOpened(const QString &path)
{
    return QFileInfo(path).isFile() && QFile(path).open(QIODevice::ReadOnly);
}

} // namespace

std::wstring TitleOfBlockFile(const std::wstring &path)
{
    const QString file = ToQString(path);
    QStringList candidates{file};
    constexpr int kExtension = 4;
    if (file.endsWith(QLatin1String(".dwg"), Qt::CaseInsensitive)) {
        const QString stem = file.chopped(kExtension);
        candidates << stem + QLatin1String(".dxf") << stem + QLatin1String(".DXF");
    }
    for (const QString &candidate : candidates) {
        if (CanBeOpened(candidate))
            return ToWide(QFileInfo(file).completeBaseName());
    }
    return {};
}
