#include "host/editor/Captions.h"

#include "host/editor/ToolkitTexts.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

namespace velmor {

namespace {

class LanguageSource final : public QObject {
    Q_OBJECT
Q_SIGNALS:
    void changed();
};

LanguageSource &languageSource()
{
    static LanguageSource source;
    return source;
}

void takeUpLanguage()
{
    useToolkitTexts();
    Q_EMIT languageSource().changed();
    QList<QPointer<QWidget>> windows;
    for (QWidget *window : QApplication::topLevelWidgets())
        windows.append(window);
    for (const QPointer<QWidget> &window : windows) {
        QEvent event(QEvent::LanguageChange);
        if (window)
            QCoreApplication::sendEvent(window, &event);
    }
}

} // namespace

QString uiString(std::string_view name)
{
    return QString::fromStdWString(uiText(name));
}

void keepCaptioned(QObject *owner, std::function<void()> setTexts)
{
    setTexts();
    QObject::connect(&languageSource(), &LanguageSource::changed, owner, std::move(setTexts));
}

void followLanguage()
{
    if (!QCoreApplication::instance() || QCoreApplication::instance()->property("followsLanguage").toBool())
        return;
    QCoreApplication::instance()->setProperty("followsLanguage", true);
    useToolkitTexts();
    Services::instance().setLanguageChanged([] {
        if (QCoreApplication::instance())
            takeUpLanguage();
    });
}

} // namespace velmor

#include "Captions.moc"
