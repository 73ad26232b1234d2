// A walk over every window: what a person meets has a name, a translation, room, contrast and a key.
//
// Windows come from two sides: those that are made here (the main window with each of its docks, the definition dialog,
// the dialogs that the contracts open), and whatever the actions of the main window's menus open.
#include "tests/walk/Walk.h"

#include "contracts/CoreServices.h"
#include "contracts/HostDialog.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "dialogs/CatchLabelDlg.h"
#include "dialogs/CatchLayerDlg.h"
#include "dialogs/DlgCatchmentSections.h"
#include "dialogs/TerrainTypeSimpleDlg.h"
#include "host/editor/Captions.h"
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Loading.h"
#include "host/editor/MainWindow.h"
#include "host/editor/RecoveryQuestion.h"
#include "host/editor/Theme.h"
#include "host/editor/panels/Panel.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"
#include "host/services/Services.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace velmor {
namespace {

namespace fs = std::filesystem;
using test::TextsByPlace;

struct Look {
    const char *language;
    Theme theme;
};
constexpr Look kLooks[] = {{"en", Theme::Light}, {"hr", Theme::Light}, {"en", Theme::Dark}, {"hr", Theme::Dark}};

/// What was found, by window; once for several looks.
class Findings {
public:
    void add(const QString &window, const char *kind, const QStringList &found)
    {
        for (const QString &line : found)
            m_lines[QString::fromLatin1(kind)].append(window + QStringLiteral(": ") + line);
    }
    /// Lines of one kind, each once.
    std::string of(const char *kind) const
    {
        QStringList lines = m_lines.value(QString::fromLatin1(kind));
        lines.removeDuplicates();
        return lines.join(QLatin1Char('\n')).toStdString();
    }

private:
    QMap<QString, QStringList> m_lines;
};

class Walk : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_findings = std::make_unique<Findings>();
        s_texts.clear();
        const fs::path user = s_folder = fs::temp_directory_path() / ("velmor_walk_" + std::to_string(getpid()));
        fs::create_directories(user);
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        for (const Look &look : kLooks) {
            Services::instance().start({.language = look.language},
                                       Paths({fs::path(source ? source : ".") / "resources"}, user));
            followLanguage();
            applyTheme(look.theme);
            walkAll(look);
        }
        std::error_code ignored;
        fs::remove_all(user, ignored);
        compareSwitchedWithFresh();
        for (auto at = s_texts.cbegin(); at != s_texts.cend(); ++at)
            s_findings->add(
                at.key(), "untranslated",
                test::untranslated(at.value().value(QStringLiteral("en")), at.value().value(QStringLiteral("hr"))));
    }
    static void TearDownTestSuite() { s_findings.reset(); }

    /// Looks at a window that is shown.
    static void look(const QString &name, QWidget &window, const Look &as)
    {
        QApplication::processEvents();
        s_findings->add(name, "unnamed", test::unnamedWidgets(window));
        const QString where =
            name +
            QStringLiteral(" (%1, %2)").arg(QLatin1String(as.language), QString::fromWCharArray(nameOf(as.theme)));
        s_findings->add(where, "cut", test::cutTexts(window));
        s_findings->add(where, "weak", test::weakTexts(window));
        s_findings->add(where, "mnemonics", test::sharedMnemonics(window));
        s_findings->add(where, "unreachable", test::unreachableActions(window));
        s_texts[name][QString::fromLatin1(as.language)].insert(test::textsOf(window));
        s_seen.insert(name);
    }

    static void walkAll(const Look &as)
    {
        Session session;
        session.setMessageSink([](MessageKind, const std::wstring &) {});
        session.setDrawing(drawingWithEverything());
        walkDefinition(session, as);
        session.setDrawing(drawingWithEverything()); // a step keeps the name it was done under, whatever comes
        MainWindow window(session);
        window.resize(1500, 950);
        window.show();
        const auto docks = window.findChildren<QDockWidget *>();
        for (QDockWidget *dock : docks) {
            dock->show();
            dock->raise();
            QApplication::processEvents();
            look(QStringLiteral("main window with ") + dock->objectName(), window, as);
        }
        switchWhileOpen(window, session, as);
        walkActions(window, session, as);
        walkContracts(window, as);
    }

    /// The window where the whole transcript stands.
    static QWidget *transcriptOf(MainWindow &window)
    {
        for (QDialog *dialog : window.findChildren<QDialog *>())
            if (dialog->isVisible() && dialog->findChild<QPlainTextEdit *>())
                return dialog;
        return nullptr;
    }

    /// What stands open speaks the other language and has the other colours after a switch by command, and is as before
    /// after the way back.
    static void switchWhileOpen(MainWindow &window, Session &session, const Look &as)
    {
        look(QStringLiteral("fresh window"), window, as);
        window.commandLine().toggleTranscript();
        QWidget *transcript = transcriptOf(window);
        ASSERT_NE(transcript, nullptr);
        look(QStringLiteral("transcript"), *transcript, as);

        const bool isEnglish = std::string_view(as.language) == "en";
        const Look other{isEnglish ? "hr" : "en", as.theme == Theme::Light ? Theme::Dark : Theme::Light};
        const auto change = [&](const Look &to) {
            const std::string language = to.language;
            EXPECT_TRUE(session.commands().run(L"LANGUAGE " + std::wstring(language.begin(), language.end())));
            EXPECT_TRUE(session.commands().run(std::wstring(L"THEME _") + nameOf(to.theme)));
            QApplication::processEvents();
        };
        const TextsByPlace before[] = {test::textsOf(window), test::textsOf(*transcript)};
        change(other);
        look(QStringLiteral("open window after a switch"), window, other);
        look(QStringLiteral("open transcript after a switch"), *transcript, other);
        const TextsByPlace after[] = {test::textsOf(window), test::textsOf(*transcript)};
        for (int i = 0; i < 2; ++i)
            s_findings->add(QStringLiteral("open window"), "switched",
                            isEnglish ? test::untranslated(before[i], after[i])
                                      : test::untranslated(after[i], before[i]));
        change(as);
        const TextsByPlace back[] = {test::textsOf(window), test::textsOf(*transcript)};
        for (int i = 0; i < 2; ++i)
            tellDifferences(before[i], back[i], QStringLiteral("came back as"));
        window.commandLine().toggleTranscript();
    }

    static void tellDifferences(const TextsByPlace &wanted, const TextsByPlace &found, const QString &how)
    {
        QStringList strange;
        for (auto at = wanted.cbegin(); at != wanted.cend(); ++at)
            if (const auto other = found.constFind(at.key()); other != found.cend() && other.value() != at.value())
                strange.append(QStringLiteral("%1: \"%2\" %3 \"%4\"").arg(at.key(), at.value(), how, other.value()));
        s_findings->add(QStringLiteral("open window"), "switched", strange);
    }

    /// A window that was switched to a language reads like one that was made in it.
    static void compareSwitchedWithFresh()
    {
        const auto fresh = s_texts.value(QStringLiteral("fresh window"));
        const auto switched = s_texts.value(QStringLiteral("open window after a switch"));
        for (const char *language : {"en", "hr"})
            tellDifferences(fresh.value(QString::fromLatin1(language)), switched.value(QString::fromLatin1(language)),
                            QStringLiteral("reads after a switch"));
    }

    /// Every dialog that an action of the menus opens; what asks for points is ended.
    static void walkActions(MainWindow &window, Session &session, const Look &as)
    {
        const auto menus = window.menuBar()->findChildren<QMenu *>();
        for (qsizetype m = 0; m < menus.size(); ++m) {
            const auto actions = menus[m]->actions();
            for (qsizetype i = 0; i < actions.size(); ++i) {
                QAction *action = actions[i];
                const bool isAppearance = action->actionGroup() != nullptr;
                if (action->isSeparator() || action->menu() || isAppearance || !action->isEnabled() ||
                    action->property("ends").toBool() || action->isCheckable() ||
                    action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_Q))
                    continue;
                whileOpen(QStringLiteral("action %1/%2").arg(m).arg(i), window, as, [&] { action->trigger(); });
            }
        }
        session.alerts().clear();
    }

    static void walkContracts(MainWindow &window, const Look &as)
    {
        using ZEMGis::CModuleConfiguration;
        whileOpen(QStringLiteral("settings TCE1"), window, as,
                  [] { CModuleConfiguration::Instance()->ShowGSDialog(L"TCE1"); });
        whileOpen(QStringLiteral("settings TCE2"), window, as,
                  [] { CModuleConfiguration::Instance()->ShowGSDialog(L"TCE2"); });
        whileOpen(QStringLiteral("hatch patterns"), window, as, [] {
            std::wstring pattern;
            acedHatchPalletteDialog(L"ANSI31", true, pattern);
        });
        whileOpen(QStringLiteral("colours"), window, as, [] {
            int color = 3;
            acedSetColorDialog(color, true, 7);
        });
        whileOpen(QStringLiteral("selection tool"), window, as, [&] {
            ZEMGis::Selection::CSelectionButton button(&window);
            button.show();
            button.click();
        });
        whileOpen(QStringLiteral("recovery"), window, as, [&] {
            LeftDrawing left;
            left.path = "town.dxf";
            left.steps = 3;
            RecoveryQuestion question(left, &window);
            question.exec();
        });
        // A load that goes on till it is cancelled.
        whileOpen(QStringLiteral("loading"), window, as, [&] {
            loadBeside(window, "town.dxf", [](const LoadOptions &options) {
                while (options.progress(0.5))
                    std::this_thread::yield();
                return LoadResult();
            });
        });
        walkDamaged(window, as);
        // With unsaved changes; to cancel lets the window stay.
        window.session().drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
        whileOpen(QStringLiteral("closing"), window, as, [&] { window.close(); });
        whileOpen(QStringLiteral("alert"), window, as, [] { acedAlert(L"An alert"); });
    }

    /// A file that is cut off: opening tells it, saving over it asks first.
    static void walkDamaged(MainWindow &window, const Look &as)
    {
        const fs::path file = s_folder / "cut.dxf";
        const std::string whole = window.session().drawing()->write();
        std::ofstream(file, std::ios::binary) << whole.substr(0, whole.find("LINE", whole.find("ENTITIES")) + 60);
        window.session().drawing()->save(s_folder / "whole.dxf"); // nothing to ask about
        whileOpen(QStringLiteral("damaged open"), window, as, [&] { window.openFile(file); });
        window.session().drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
        whileOpen(QStringLiteral("damaged save"), window, as, [&] { actionOf(window, QKeySequence::Save)->trigger(); });
        window.session().setDrawing(drawingWithEverything());
    }
    static QAction *actionOf(MainWindow &window, QKeySequence::StandardKey key)
    {
        for (QAction *action : window.findChildren<QAction *>())
            if (action->shortcut() == QKeySequence(key))
                return action;
        return nullptr;
    }

    /// Runs what may open dialogs; each is looked at once and then cancelled, a waiting prompt gets Escape.
    static void whileOpen(const QString &name, MainWindow &window, const Look &as, const std::function<void()> &work)
    {
        QList<QWidget *> seen;
        int number = 0, rounds = 0;
        QTimer driver;
        driver.setInterval(0);
        QObject::connect(&driver, &QTimer::timeout, &driver, [&] {
            if (++rounds > 200) // nothing that a person could end with Escape
                ADD_FAILURE() << name.toStdString() << " does not end";
            if (QWidget *popup = QApplication::activePopupWidget()) {
                if (!seen.contains(popup)) {
                    seen.append(popup);
                    look(name + QStringLiteral(" menu %1").arg(++number), *popup, as);
                }
                popup->close();
            } else if (QWidget *modal = QApplication::activeModalWidget()) {
                const bool isNew = !seen.contains(modal);
                if (isNew) {
                    seen.append(modal);
                    look(name + QStringLiteral(" dialog %1").arg(++number), *modal, as);
                }
                if (qobject_cast<QProgressDialog *>(modal)) {
                    if (isNew)
                        modal->findChild<QPushButton *>()->click();
                    --rounds; // it stays till the work has noticed
                } else if (auto *dialog = qobject_cast<QDialog *>(modal))
                    dialog->reject();
                else
                    modal->close();
            } else if (auto *input = window.commandLine().findChild<QLineEdit *>()) {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
                QApplication::sendEvent(input, &press);
            }
        });
        driver.start();
        work();
        driver.stop();
    }

    static void walkDefinition(Session &session, const Look &as)
    {
        session.setDialogDriver(
            [&](CAdUiBaseDialog &dialog) { look(QStringLiteral("definition dialog"), dialog, as); });
        CDlgCreateCatchmentArea dialog;
        dialog.DoModal();
        session.setDialogDriver(
            [&](CAdUiBaseDialog &small) { look(QStringLiteral("boundary layers dialog"), small, as); });
        CCatchLayerDlg().DoModal();
        session.setDialogDriver(
            [&](CAdUiBaseDialog &small) { look(QStringLiteral("terrain types dialog"), small, as); });
        CTerrainTypeSimpleDlg().DoModal();
        session.setDialogDriver([&](CAdUiBaseDialog &small) { look(QStringLiteral("label dialog"), small, as); });
        CCatchLabelDlg().DoModal();
        session.setDialogDriver([&](CAdUiBaseDialog &small) { look(QStringLiteral("sections dialog"), small, as); });
        CDlgCatchmentSections().DoModal();
        session.setDialogDriver(nullptr);
    }

    static std::unique_ptr<Drawing> drawingWithEverything()
    {
        auto drawing = Drawing::createNew();
        const std::size_t layer = drawing->ensureLayer(kSectionLayer, 5);
        for (int i = 0; i < 3; ++i) {
            auto line = std::make_unique<AcDbLine>(AcGePoint3d(100.0 * i, 0), AcGePoint3d(100.0 * i + 90.0, 10));
            AcDbEntity &section = *line;
            drawing->append(std::move(line));
            drawing->setLayerOf(section, layer);
            SectionData data;
            data.guid = L"{D" + std::to_wstring(i) + L"}";
            data.name = L"D" + std::to_wstring(i);
            drawing->setData(section, kSectionKey, itemsOf(data));
        }
        return drawing;
    }

    static inline std::unique_ptr<Findings> s_findings;
    static inline QMap<QString, QMap<QString, TextsByPlace>> s_texts; ///< by window, by language
    static inline std::set<QString> s_seen;
    static inline fs::path s_folder;
};

TEST_F(Walk, EveryFocusableWidgetHasAName)
{
    EXPECT_EQ(s_findings->of("unnamed"), "");
}

TEST_F(Walk, EveryTextDiffersBetweenTheLanguagesOrIsAWordThatBothShare)
{
    EXPECT_EQ(s_findings->of("untranslated"), "");
}

TEST_F(Walk, OpenWindowsFollowTheLanguageThereAndBackAndReadLikeFreshOnes)
{
    EXPECT_EQ(s_findings->of("switched"), "");
}

TEST_F(Walk, NoTextIsCutOff)
{
    EXPECT_EQ(s_findings->of("cut"), "");
}

TEST_F(Walk, EveryTextHasContrastEnough)
{
    EXPECT_EQ(s_findings->of("weak"), "");
}

TEST_F(Walk, MnemonicsOfAMenuOrADialogAreItsOwn)
{
    EXPECT_EQ(s_findings->of("mnemonics"), "");
}

TEST_F(Walk, EveryActionHasAKeyOrAChainOfMnemonics)
{
    EXPECT_EQ(s_findings->of("unreachable"), "");
}

TEST_F(Walk, TheWindowsThatMustBeThereWereMet)
{
    for (const PanelSpec &panel : panelSpecs())
        EXPECT_TRUE(s_seen.contains(QStringLiteral("main window with dock.") + QLatin1String(panel.name)));
    for (const char *name :
         {"definition dialog", "boundary layers dialog", "terrain types dialog", "label dialog", "sections dialog",
          "settings TCE1 dialog 1", "settings TCE2 dialog 1", "hatch patterns dialog 1", "colours dialog 1",
          "selection tool menu 1", "recovery dialog 1", "closing dialog 1", "alert dialog 1", "loading dialog 1",
          "damaged open dialog 1", "damaged save dialog 1", "transcript", "open window after a switch",
          "open transcript after a switch"})
        EXPECT_TRUE(s_seen.contains(QString::fromLatin1(name))) << name;
}

} // namespace
} // namespace velmor
