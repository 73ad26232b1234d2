#include "host/editor/ToolkitTexts.h"

#include "host/drawing/dxf/AtomicFile.h"
#include "host/services/KeyValueText.h"
#include "host/services/Services.h"

#include <QCoreApplication>
#include <QHash>
#include <QTranslator>

namespace velmor {

namespace {

class ToolkitTranslator final : public QTranslator {
public:
    using QTranslator::QTranslator;

    void load(const std::string &language)
    {
        m_texts.clear();
        const auto file = Services::instance().paths().resource("messages/toolkit." + language + ".txt");
        if (file.empty())
            return;
        const ReadFileResult read = readWholeFile(file);
        for (const KeyValueLine &line : parseKeyValues(read.bytes).lines)
            m_texts.insert(QString::fromStdString(line.key), QString::fromStdString(line.value));
    }

    bool isEmpty() const override { return m_texts.isEmpty(); }

    QString translate(const char * /*context*/, const char *source, const char * /*comment*/, int /*n*/) const override
    {
        return m_texts.value(QString::fromUtf8(source).remove(QLatin1Char('&')));
    }

private:
    QHash<QString, QString> m_texts;
};

} // namespace

void useToolkitTexts()
{
    // One for each application: a test may make several, one after another.
    auto *translator = QCoreApplication::instance()->findChild<QTranslator *>(QStringLiteral("toolkitTexts"));
    if (!translator) {
        translator = new ToolkitTranslator(QCoreApplication::instance());
        translator->setObjectName(QStringLiteral("toolkitTexts"));
    }
    QCoreApplication::removeTranslator(translator);
    static_cast<ToolkitTranslator *>(translator)->load(Services::instance().messages().language());
    if (!translator->isEmpty())
        QCoreApplication::installTranslator(translator);
}

} // namespace velmor
