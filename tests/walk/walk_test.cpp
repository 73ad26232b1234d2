// A walk over every window: what a person meets has a name, a translation, room, contrast and a key.
//
// Windows come from two sides: those that are made here (the main window with each of its docks, the definition dialog,
// the dialogs that the contracts open), and whatever the actions of the main window's menus open.
#include "tests/walk/Walk.h"

#include "contracts/CoreServices.h"
#include "contracts/HostDialog.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "host/editor/Captions.h"
#include "host/editor/CommandLine.h"
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
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

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
        const fs::path user = fs::temp_directory_path() / ("velmor_walk_" + std::to_string(getpid()));
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
        switchLanguage(window, as);
        walkActions(window, session, as);
        walkContracts(window, as);
    }

    /// The open window speaks the other language after a switch, and the former one after the way back.
    static void switchLanguage(MainWindow &window, const Look &as)
    {
        const bool isEnglish = std::string_view(as.language) == "en";
        const TextsByPlace before = test::textsOf(window);
        Services::instance().setLanguage(isEnglish ? "hr" : "en");
        QApplication::processEvents();
        const TextsByPlace other = test::textsOf(window);
        s_findings->add(QStringLiteral("open window"), "switched",
                        isEnglish ? test::untranslated(before, other) : test::untranslated(other, before));
        Services::instance().setLanguage(as.language);
        QApplication::processEvents();
        const TextsByPlace back = test::textsOf(window);
        QStringList strange;
        for (auto at = before.cbegin(); at != before.cend(); ++at)
            if (back.value(at.key()) != at.value())
                strange.append(at.key() + QStringLiteral(": \"") + at.value() + QStringLiteral("\" came back as \"") +
                               back.value(at.key()) + QLatin1Char('"'));
        s_findings->add(QStringLiteral("open window"), "switched", strange);
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
        // With unsaved changes; to cancel lets the window stay.
        window.session().drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
        whileOpen(QStringLiteral("closing"), window, as, [&] { window.close(); });
        whileOpen(QStringLiteral("alert"), window, as, [] { acedAlert(L"An alert"); });
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
                if (!seen.contains(modal)) {
                    seen.append(modal);
                    look(name + QStringLiteral(" dialog %1").arg(++number), *modal, as);
                }
                if (auto *dialog = qobject_cast<QDialog *>(modal))
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
};

TEST_F(Walk, EveryFocusableWidgetHasAName)
{
    EXPECT_EQ(s_findings->of("unnamed"), "");
}

TEST_F(Walk, EveryTextDiffersBetweenTheLanguagesOrIsAWordThatBothShare)
{
    EXPECT_EQ(s_findings->of("untranslated"), "");
}

TEST_F(Walk, AnOpenWindowFollowsTheLanguageThereAndBack)
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
         {"definition dialog", "settings TCE1 dialog 1", "settings TCE2 dialog 1", "hatch patterns dialog 1",
          "colours dialog 1", "selection tool menu 1", "recovery dialog 1", "closing dialog 1", "alert dialog 1"})
        EXPECT_TRUE(s_seen.contains(QString::fromLatin1(name))) << name;
}

} // namespace
} // namespace velmor
