// Texts of the gallery's controls without a host: the English ones, from the project's folder.
#include "contracts/CoreServices.h"

#include <QFile>
#include <QHash>
#include <QTextStream>

namespace {

QHash<unsigned, QString> readTexts()
{
    QHash<unsigned, QString> texts;
    QFile file(QStringLiteral(VELMOR_SOURCE_DIR "/resources/messages/en.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return texts;
    QTextStream lines(&file);
    while (!lines.atEnd()) {
        const QString line = lines.readLine();
        const qsizetype sign = line.indexOf(QLatin1String(" = "));
        bool isNumber = false;
        const unsigned number = line.left(sign).toUInt(&isNumber);
        if (sign > 0 && isNumber)
            texts.insert(number, line.mid(sign + 3));
    }
    return texts;
}

} // namespace

ZEMGis::CModuleConfiguration *ZEMGis::CModuleConfiguration::Instance()
{
    static CModuleConfiguration configuration;
    return &configuration;
}

std::wstring ZEMGis::CModuleConfiguration::GetMsg(unsigned number) const
{
    static const QHash<unsigned, QString> texts = readTexts();
    return texts.value(number).toStdWString();
}
