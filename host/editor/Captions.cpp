#include "host/editor/Captions.h"

#include "host/editor/ToolkitTexts.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QSet>
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

namespace {

/// Place of the letter behind the mark of a mnemonic; -1 for none.
qsizetype mnemonicAt(const QString &text)
{
    for (qsizetype i = 0; i + 1 < text.size(); ++i)
        if (text[i] == QLatin1Char('&')) {
            if (text[i + 1] != QLatin1Char('&'))
                return i + 1;
            ++i;
        }
    return -1;
}

bool isPlainLetter(QChar c)
{
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'));
}

/// The text with its mark before a letter that is free, the present one if it is.
QString withFreeMnemonic(QString text, QSet<QChar> &taken)
{
    if (const qsizetype at = mnemonicAt(text); at >= 0) {
        if (!taken.contains(text[at].toUpper())) {
            taken.insert(text[at].toUpper());
            return text;
        }
        text.remove(at - 1, 1);
    }
    const qsizetype end = text.indexOf(QLatin1Char('\t')) < 0 ? text.size() : text.indexOf(QLatin1Char('\t'));
    for (const bool beginnings : {true, false})
        for (qsizetype i = 0; i < end; ++i) {
            const bool begins = i == 0 || text[i - 1] == QLatin1Char(' ');
            if ((beginnings && !begins) || !isPlainLetter(text[i]) || taken.contains(text[i].toUpper()))
                continue;
            taken.insert(text[i].toUpper());
            return text.insert(i, QLatin1Char('&'));
        }
    return text;
}

void settle(const QWidget &menu)
{
    QSet<QChar> taken;
    for (QAction *action : menu.actions())
        if (!action->isSeparator() && action->isVisible()) {
            if (const QString text = withFreeMnemonic(action->text(), taken); text != action->text())
                action->setText(text);
            if (action->menu())
                settle(*action->menu());
        }
}

} // namespace

void settleMnemonics(const QMenuBar &bar)
{
    settle(bar);
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
