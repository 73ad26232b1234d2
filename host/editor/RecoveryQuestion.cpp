#include "host/editor/RecoveryQuestion.h"

#include "host/editor/Captions.h"
#include "host/editor/DrawingKeeper.h"
#include "host/editor/Person.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <QApplication>
#include <QDateTime>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace velmor {

namespace {

QString timeText(std::filesystem::file_time_type time)
{
    const auto system = std::chrono::file_clock::to_sys(time);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(system.time_since_epoch()).count();
    const std::string &language = Services::instance().messages().language();
    const QLocale locale = language == "en" ? QLocale(QLocale::English, QLocale::UnitedKingdom)
                                            : QLocale(QString::fromStdString(language));
    return locale.toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::ShortFormat);
}

QString drawingText(const LeftDrawing &left)
{
    return left.path.empty() ? uiString("ui.recovery.unnamed") : QString::fromStdString(left.path.string());
}

} // namespace

RecoveryQuestion::RecoveryQuestion(const LeftDrawing &left, QWidget *parent)
    : QMessageBox(QMessageBox::Question, QStringLiteral("Velmor"),
                  uiString("ui.recovery.question").arg(drawingText(left)), QMessageBox::NoButton, parent)
{
    const char *told = left.path.empty() ? "ui.recovery.stepsUnnamed"
                       : left.fileChanged
                           ? (left.steps != 0 ? "ui.recovery.stepsChanged" : "ui.recovery.autosavedChanged")
                       : left.steps != 0 ? "ui.recovery.steps"
                                         : "ui.recovery.autosaved";
    QString text = uiString(told).arg(timeText(left.time));
    setInformativeText(left.steps != 0 ? text.arg(left.steps) : text);
    m_recover = addButton(uiString("ui.recovery.recover"), QMessageBox::AcceptRole);
    m_open =
        addButton(uiString(left.path.empty() ? "ui.recovery.drop" : "ui.recovery.open"), QMessageBox::DestructiveRole);
    QPushButton *later = addButton(uiString("ui.recovery.later"), QMessageBox::RejectRole);
    setDefaultButton(qobject_cast<QPushButton *>(m_recover));
    setEscapeButton(later);
}

LeftChoice RecoveryQuestion::choice() const
{
    return clickedButton() == m_recover ? LeftChoice::Recover
           : clickedButton() == m_open  ? LeftChoice::OpenSaved
                                        : LeftChoice::KeepForLater;
}

void enableRecoveryFor(Session &session)
{
    const auto folder = Recovery::standardFolder();
    if (folder.empty())
        return;
    Recovery::instance().enable(folder, [&session](const std::wstring &text) {
        // A box in the middle of a step would hold it up.
        QTimer::singleShot(0, qApp, [&session, text] { session.alert(text); });
    });
}

void askForLeftDrawings(Session &session, QWidget *window,
                        const std::function<bool(const std::filesystem::path &)> &open)
{
    Recovery &recovery = Recovery::instance();
    if (!recovery.isEnabled())
        return;
    for (const LeftDrawing &left : recovery.left()) {
        RecoveryQuestion question(left, window);
        question.exec();
        if (question.choice() == LeftChoice::KeepForLater)
            continue;
        const bool drops = question.choice() == LeftChoice::OpenSaved && left.path.empty();
        // What the person rather keeps open, say a network that was just imported, is not replaced; the other one
        // stays to be recovered.
        if (Person *person = Person::of(session); person && !drops && !person->givesUpDrawing())
            return;
        if (question.choice() == LeftChoice::OpenSaved) {
            const auto sure = QMessageBox::question(window, QStringLiteral("Velmor"), uiString("ui.recovery.sure"),
                                                    QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
            if (sure != QMessageBox::Yes)
                continue;
            if (drops) {
                recovery.drop(left);
                continue;
            }
            if (!open(left.path))
                continue; // what was left is all there is then
            recovery.drop(left);
            return;
        }
        RecoveredDrawing recovered = recovery.recover(left);
        if (!recovered.drawing) {
            session.alert(wide(recovered.message));
            continue;
        }
        const bool whole = recovered.complete;
        session.setDrawing(std::move(recovered.drawing), recovered.path);
        session.status(uiMessage("ui.recovery.done", {drawingText(left).toStdWString()}));
        if (!whole)
            session.alert(uiText("ui.recovery.partly"));
        return;
    }
}

int autosaveMinutes(int setting, bool isNeeded)
{
    constexpr int kWhereNeeded = 5;
    return setting == 0 && isNeeded ? kWhereNeeded : setting;
}

void startAutosaving(QObject *owner)
{
    auto *minute = new QTimer(owner);
    QObject::connect(minute, &QTimer::timeout, owner, [passed = 0]() mutable {
        const int setting = std::get<int>(Services::instance().settings().valueOrStandard("AUTOSAVE_MINUTES"));
        const int wanted = autosaveMinutes(setting, Recovery::instance().needsAutosave());
        if (wanted == 0 || ++passed < wanted)
            return;
        passed = 0;
        Recovery::instance().autosave();
    });
    minute->start(std::chrono::minutes(1));
    auto *pause = new QTimer(owner);
    pause->setObjectName(QStringLiteral("journalSync"));
    pause->setSingleShot(true);
    pause->setInterval(DrawingKeeper::kBetweenSyncs);
    QObject::connect(pause, &QTimer::timeout, owner, [] { Recovery::instance().sync(); });
    Recovery::instance().onUnsynced([timer = QPointer<QTimer>(pause)] {
        if (timer && !timer->isActive())
            timer->start();
    });
}

} // namespace velmor
