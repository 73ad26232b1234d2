// Language and theme while the program runs, and the docks of the window.
#include "host/editor/Captions.h"
#include "host/editor/CommandStack.h"
#include "host/editor/MainWindow.h"
#include "host/editor/Selection.h"
#include "host/editor/Theme.h"
#include "host/editor/Viewport.h"
#include "host/editor/panels/Docks.h"
#include "host/editor/panels/Panel.h"
#include "host/services/Services.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace velmor {
namespace {

namespace fs = std::filesystem;

class AppearanceTest : public testing::Test {
protected:
    AppearanceTest() : user(fs::temp_directory_path() / ("velmor_appearance_" + std::to_string(getpid())))
    {
        fs::create_directories(user);
        start();
        session.setMessageSink([](MessageKind, const std::wstring &) {});
        session.setDrawing(Drawing::createNew());
    }
    ~AppearanceTest() override
    {
        applyTheme(Theme::System);
        std::error_code ignored;
        fs::remove_all(user, ignored);
    }
    void start()
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        Services::instance().start({.language = "en"}, Paths({fs::path(source ? source : ".") / "resources"}, user));
    }

    fs::path user;
    Session session;
};

TEST_F(AppearanceTest, TheCommandChangesTheLanguageOfTheOpenWindowAndKeepsIt)
{
    MainWindow window(session);
    window.show();
    auto *file = window.menuBar()->actions().front();
    const QString english = file->text();
    EXPECT_TRUE(session.commands().run(L"LANGUAGE HR"));
    EXPECT_NE(file->text(), english);
    EXPECT_EQ(Services::instance().messages().language(), "hr");
    for (const QDockWidget *dock : window.findChildren<QDockWidget *>())
        EXPECT_NE(dock->windowTitle(), QStringLiteral("Layers"));
    EXPECT_EQ(std::get<std::wstring>(Services::instance().settings().valueOrStandard("LANGUAGE")), L"hr");
    EXPECT_TRUE(session.commands().run(L"LANGUAGE EN"));
    EXPECT_EQ(file->text(), english);
}

TEST_F(AppearanceTest, WhatIsKeptCaptionedFollowsTheLanguageUntilItIsGone)
{
    followLanguage();
    int runs = 0;
    {
        QLabel label;
        keepCaptioned(&label, [&] {
            ++runs;
            label.setText(uiString("ui.viewport"));
        });
        Services::instance().setLanguage("hr");
        EXPECT_EQ(label.text(), QStringLiteral("Crtež"));
        EXPECT_EQ(runs, 2);
    }
    Services::instance().setLanguage("en");
    EXPECT_EQ(runs, 2);
}

TEST_F(AppearanceTest, TheToolkitsButtonsSpeakTheLanguage)
{
    followLanguage();
    Services::instance().setLanguage("hr");
    QDialogButtonBox box(QDialogButtonBox::Cancel);
    EXPECT_EQ(box.buttons().front()->text().remove(QLatin1Char('&')), QStringLiteral("Odustani"));
    Services::instance().setLanguage("en");
    QDialogButtonBox english(QDialogButtonBox::Cancel);
    EXPECT_EQ(english.buttons().front()->text().remove(QLatin1Char('&')), QStringLiteral("Cancel"));
}

TEST_F(AppearanceTest, AThemeIsTakenUpByOpenWindowsAndTheirDrawing)
{
    MainWindow window(session);
    window.resize(900, 700);
    window.show();
    auto *viewport = window.findChild<Viewport *>();
    EXPECT_TRUE(session.commands().run(L"THEME DARK"));
    QApplication::processEvents();
    EXPECT_LT(window.palette().color(QPalette::Window).lightnessF(), 0.3);
    EXPECT_LT(viewport->grab().toImage().pixelColor(viewport->width() / 3, viewport->height() / 3).lightnessF(), 0.3);
    EXPECT_TRUE(session.commands().run(L"THEME LIGHT"));
    QApplication::processEvents();
    EXPECT_GT(window.palette().color(QPalette::Window).lightnessF(), 0.8);
    EXPECT_GT(viewport->grab().toImage().pixelColor(viewport->width() / 3, viewport->height() / 3).lightnessF(), 0.8);
    EXPECT_EQ(themeOfSettings(), Theme::Light);
}

/// Best contrast of any pixel with the colour that most pixels have.
double contrastWithin(const QImage &image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    QRgb ground = 0;
    for (auto at = counts.cbegin(); at != counts.cend(); ++at)
        if (at.value() > counts.value(ground))
            ground = at.key();
    double best = 1.0;
    for (auto at = counts.cbegin(); at != counts.cend(); ++at)
        best = std::max(best, contrastOf(QColor(at.key()), QColor(ground)));
    return best;
}

TEST_F(AppearanceTest, TheSwitchesOfTheStatusBarStayReadableWhenTheThemeChanges)
{
    EXPECT_TRUE(session.commands().run(L"THEME LIGHT"));
    MainWindow window(session);
    window.resize(1200, 700);
    window.show();
    QApplication::processEvents();
    const auto buttons = window.statusBar()->findChildren<QToolButton *>();
    ASSERT_GE(buttons.size(), 3);
    for (const wchar_t *theme : {L"THEME DARK", L"THEME LIGHT", L"THEME DARK"}) {
        EXPECT_TRUE(session.commands().run(theme));
        QApplication::processEvents();
        for (const bool on : {false, true})
            for (QToolButton *button : buttons) {
                button->defaultAction()->setChecked(on);
                // Under the window, since a button alone has no ground of its own.
                const QPoint corner = button->mapTo(&window, QPoint(0, 0));
                const QImage picture = window.grab(QRect(corner, button->size())).toImage();
                EXPECT_GE(contrastWithin(picture), 4.5) << button->text().toStdString() << on;
            }
    }
}

TEST_F(AppearanceTest, TheStatusBarSaysWhatTheNameOfALayerIsThere)
{
    MainWindow window(session);
    const auto shown = [&](const QString &text) {
        for (const QLabel *label : window.statusBar()->findChildren<QLabel *>())
            if (label->text() == text)
                return true;
        return false;
    };
    EXPECT_TRUE(shown(QStringLiteral("Layer: 0")));
    EXPECT_TRUE(session.commands().run(L"LANGUAGE HR"));
    EXPECT_TRUE(shown(QStringLiteral("Sloj: 0")));
    EXPECT_TRUE(session.commands().run(L"LANGUAGE EN"));
}

TEST_F(AppearanceTest, NamesOfThemesAreTakenInAnyCase)
{
    EXPECT_EQ(themeNamed(L"Dark"), Theme::Dark);
    EXPECT_EQ(themeNamed(L"LIGHT"), Theme::Light);
    EXPECT_EQ(themeNamed(L""), Theme::System);
    EXPECT_EQ(themeNamed(L"blue"), Theme::System);
}

TEST_F(AppearanceTest, EveryPanelIsADockWithAKeyInTheMenu)
{
    MainWindow window(session);
    std::set<QString> keys;
    ASSERT_EQ(panelSpecs().size(), 4u);
    for (const PanelSpec &spec : panelSpecs()) {
        auto *dock = window.findChild<QDockWidget *>(QLatin1String("dock.") + QLatin1String(spec.name));
        ASSERT_NE(dock, nullptr) << spec.name;
        EXPECT_EQ(dock->toggleViewAction()->shortcut().toString(), QString::fromLatin1(spec.key));
        EXPECT_TRUE(keys.insert(QString::fromLatin1(spec.key)).second);
        EXPECT_FALSE(dock->windowTitle().contains(QLatin1Char('&')));
    }
}

TEST_F(AppearanceTest, PlacesOfDocksOutliveTheProgram)
{
    {
        MainWindow window(session);
        window.show();
        window.findChild<QDockWidget *>(QStringLiteral("dock.areas"))->show();
        window.findChild<QDockWidget *>(QStringLiteral("dock.layers"))->hide();
        window.docks().keepLayout();
    }
    start(); // reads the settings' file anew
    MainWindow window(session);
    window.docks().restoreLayout();
    EXPECT_FALSE(window.findChild<QDockWidget *>(QStringLiteral("dock.areas"))->isHidden());
    EXPECT_TRUE(window.findChild<QDockWidget *>(QStringLiteral("dock.layers"))->isHidden());
}

TEST_F(AppearanceTest, APanelFollowsAnotherDrawingAndWhatIsSelectedInIt)
{
    MainWindow window(session);
    window.resize(1200, 900);
    window.show();
    auto *dock = window.findChild<QDockWidget *>(QStringLiteral("dock.properties"));
    dock->show();
    dock->raise();
    QApplication::processEvents();
    auto *table = dock->findChild<QTableView *>();
    EXPECT_EQ(table->model()->rowCount(), 0);
    session.setDrawing(Drawing::createNew());
    const AcDbObjectId id =
        session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(30, 40)));
    session.drawing()->component<Selection>().set(std::vector{id});
    EXPECT_GT(table->model()->rowCount(), 4);
    session.setDrawing(Drawing::createNew());
    EXPECT_EQ(table->model()->rowCount(), 0);
}

TEST_F(AppearanceTest, TheNetworkPanelsButtonImportsAndItsTableTakesTheViewToASection)
{
    MainWindow window(session);
    window.resize(1200, 900);
    window.show();
    auto *dock = window.findChild<QDockWidget *>(QStringLiteral("dock.network"));
    dock->show();
    dock->raise();
    QApplication::processEvents();
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    QPushButton *import = nullptr;
    for (QPushButton *button : dock->findChildren<QPushButton *>())
        if (button->text() == uiString("ui.network.import"))
            import = button;
    ASSERT_NE(import, nullptr);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const auto file = fs::absolute(fs::path(source ? source : ".") / "examples/town.inp");
    QTimer::singleShot(0, &window, [&file] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr) << "the file is chosen in a dialog";
        dialog->findChild<QLineEdit *>()->setText(QString::fromStdString(file.string()));
        QMetaObject::invokeMethod(dialog, "accept");
    });
    import->click();
    QApplication::processEvents();
    QTableView *table = nullptr;
    for (QTableView *one : dock->findChildren<QTableView *>())
        if (one->accessibleName() == uiString("ui.network.sections"))
            table = one;
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->model()->rowCount(), 70);
    table->setCurrentIndex(table->model()->index(3, 0));
    auto *viewport = window.findChild<Viewport *>();
    const double before = viewport->view().pixelsPerUnit;
    QTest::keyClick(table, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_GT(viewport->view().pixelsPerUnit, before) << "one section fills the view";
    EXPECT_EQ(session.drawing()->component<Selection>().members().size(), 1u);
}

TEST_F(AppearanceTest, RowsAreCopiedByKeyWithTheirHeads)
{
    MainWindow window(session);
    window.resize(1200, 900);
    window.show();
    auto *dock = window.findChild<QDockWidget *>(QStringLiteral("dock.layers"));
    dock->show();
    dock->raise();
    QApplication::processEvents();
    auto *table = dock->findChild<QTableView *>();
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 1 + table->model()->rowCount());
    EXPECT_EQ(lines[0].count(QLatin1Char('\t')), table->model()->columnCount() - 1);
    EXPECT_TRUE(lines[0].contains(QStringLiteral("Name")));
}

} // namespace
} // namespace velmor
