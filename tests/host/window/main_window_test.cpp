#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/MainWindow.h"
#include "host/editor/Viewport.h"
#include "host/services/Services.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <fstream>

namespace velmor {
namespace {

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest()
    {
        session.setDrawing(Drawing::createNew());
        session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(100, 80)));
        window = std::make_unique<MainWindow>(session);
        window->show();
        viewport = window->findChild<Viewport *>();
        input = window->commandLine().findChild<QLineEdit *>();
        QTest::qWait(0);
    }

    /// Does something while the prompt waits.
    static void meanwhile(std::function<void()> action) { QTimer::singleShot(0, std::move(action)); }

    void typeLine(const QString &line)
    {
        input->insert(line); // as if pasted: typed blanks would end it
        QTest::keyClick(input, Qt::Key_Return);
    }

    QPoint pixelOf(double x, double y) const { return viewport->view().toView(x, y).toPoint(); }

    Session session;
    std::unique_ptr<MainWindow> window;
    Viewport *viewport = nullptr;
    QLineEdit *input = nullptr;
};

TEST_F(MainWindowTest, APointPromptTakesAClickAsItsWorldPoint)
{
    meanwhile([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, pixelOf(30.0, 40.0)); });
    ads_point point{};
    ASSERT_EQ(acedGetPoint(nullptr, L"Point:", point), RTNORM);
    const double pixel = 1.0 / viewport->view().pixelsPerUnit;
    EXPECT_NEAR(point[0], 30.0, pixel);
    EXPECT_NEAR(point[1], 40.0, pixel);
}

TEST_F(MainWindowTest, APointPromptTakesTypedCoordinates)
{
    meanwhile([&] {
        QTest::keyClicks(input, QStringLiteral("12.5,7"));
        QTest::keyClick(input, Qt::Key_Return);
    });
    ads_point point{};
    ASSERT_EQ(acedGetPoint(nullptr, L"Point:", point), RTNORM);
    EXPECT_DOUBLE_EQ(point[0], 12.5);
    EXPECT_DOUBLE_EQ(point[1], 7.0);
}

TEST_F(MainWindowTest, EscapeEndsAPrompt)
{
    meanwhile([&] { QTest::keyClick(viewport, Qt::Key_Escape); });
    ads_point point{};
    EXPECT_EQ(acedGetPoint(nullptr, L"Point:", point), RTCAN);
    meanwhile([&] { QTest::keyClick(input, Qt::Key_Escape); });
    std::wstring text;
    EXPECT_EQ(acedGetString(0, L"Text:", text), RTCAN);
}

TEST_F(MainWindowTest, AnEntityPromptPicksTheLineUnderThePointer)
{
    meanwhile([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, pixelOf(50.0, 40.0)); });
    ads_name entity{};
    ads_point point{};
    ASSERT_EQ(acedEntSel(L"Entity:", entity, point), RTNORM);
    AcDbObjectId id;
    ASSERT_EQ(acdbGetObjectId(id, entity), Acad::eOk);
    EXPECT_EQ(id, idOf(*session.drawing()->modelSpace().entities().front()));
}

TEST_F(MainWindowTest, AnEntityPromptMissesBesideTheLine)
{
    meanwhile([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, pixelOf(50.0, 10.0)); });
    ads_name entity{};
    ads_point point{};
    EXPECT_NE(acedEntSel(L"Entity:", entity, point), RTNORM);
}

TEST_F(MainWindowTest, TheWheelZoomsAtThePointer)
{
    const QPointF pointer(200.0, 100.0);
    const AcGePoint3d before = viewport->view().toWorld(pointer);
    QWheelEvent wheel(pointer, viewport->mapToGlobal(pointer), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    const double scale = viewport->view().pixelsPerUnit;
    QCoreApplication::sendEvent(viewport, &wheel);
    EXPECT_GT(viewport->view().pixelsPerUnit, scale);
    const AcGePoint3d after = viewport->view().toWorld(pointer);
    EXPECT_NEAR(before.x, after.x, 1e-6);
    EXPECT_NEAR(before.y, after.y, 1e-6);
}

TEST_F(MainWindowTest, AboutTellsTheApplicationsVersion)
{
    QCoreApplication::setApplicationVersion(QStringLiteral("7.8.9"));
    QString told;
    meanwhile([&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            told = box->text();
            box->close();
        }
    });
    for (QAction *action : window->findChildren<QAction *>()) {
        if (action->shortcut() == QKeySequence(Qt::SHIFT | Qt::Key_F1))
            action->trigger();
    }
    EXPECT_TRUE(told.contains(QStringLiteral("7.8.9"))) << told.toStdString();
}

TEST_F(MainWindowTest, ZoomToAnEntityCentresIt)
{
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(500, 500), AcGePoint3d(520, 510)));
    ASSERT_TRUE(CZEMCEdit::zoom(idOf(*session.drawing()->modelSpace().entities().back()), 2.0));
    EXPECT_NEAR(viewport->view().centerX, 510.0, 1e-6);
    EXPECT_NEAR(viewport->view().centerY, 505.0, 1e-6);
    const Extents visible = viewport->view().visible();
    EXPECT_GT(visible.maxX - visible.minX, 2.0 * 20.0 * 0.99);
}

// --- The view over drawings and commands

TEST_F(MainWindowTest, AnotherDrawingTakesTheFormerOnesPlaceInAShownWindow)
{
    auto second = Drawing::createNew();
    second->append(std::make_unique<AcDbLine>(AcGePoint3d(5000, 5000), AcGePoint3d(5010, 5000)));
    const AcDbEntity *line = second->modelSpace().entities().front();
    session.setDrawing(std::move(second), "second.dxf");
    EXPECT_EQ(viewport->entityAt({5005, 5000}), line);
    EXPECT_TRUE(window->windowTitle().startsWith(QStringLiteral("second.dxf")));
    viewport->grab();
    EXPECT_NEAR(viewport->view().centerX, 5005.0, 1e-6);
    EXPECT_NEAR(viewport->view().centerY, 5000.0, 1e-6);
}

TEST_F(MainWindowTest, TypedNewShowsAnEmptyDrawing)
{
    typeLine(QStringLiteral("new Yes"));
    EXPECT_TRUE(session.drawing()->modelSpace().entities().empty());
    EXPECT_EQ(viewport->entityAt({50, 40}), nullptr);
    const QImage empty = viewport->grab().toImage();
    EXPECT_EQ(empty.pixel(pixelOf(50, 40)), empty.pixel(1, 1));
}

TEST_F(MainWindowTest, ACommandKeepsThePersonsPanAndZoom)
{
    viewport->grab();
    viewport->zoomBy(3.0);
    QTest::keyClick(viewport, Qt::Key_Right);
    const ViewTransform before = viewport->view();
    typeLine(QStringLiteral("setvar OSMODE 1"));
    typeLine(QStringLiteral("nosuchcommand"));
    viewport->grab();
    EXPECT_EQ(viewport->view().centerX, before.centerX);
    EXPECT_EQ(viewport->view().centerY, before.centerY);
    EXPECT_EQ(viewport->view().pixelsPerUnit, before.pixelsPerUnit);
}

TEST_F(MainWindowTest, AZoomThatACommandAskedForStays)
{
    session.setDrawing(Drawing::createNew());
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1000, 1000)));
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(10, 10), AcGePoint3d(20, 20)));
    ASSERT_TRUE(CZEMCEdit::zoom(idOf(*session.drawing()->modelSpace().entities().back()), 1.0));
    viewport->grab(); // the first paint of this drawing
    EXPECT_NEAR(viewport->view().centerX, 15.0, 1e-6);
}

TEST_F(MainWindowTest, AnEmptyDrawingShowsAllOfWhatComesFirst)
{
    session.setDrawing(Drawing::createNew());
    viewport->grab();
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(7000, 100), AcGePoint3d(7100, 100)));
    viewport->grab();
    EXPECT_NEAR(viewport->view().centerX, 7050.0, 1e-6);
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(10, 10)));
    viewport->grab();
    EXPECT_NEAR(viewport->view().centerX, 7050.0, 1e-6);
}

TEST_F(MainWindowTest, AnEmptyDrawingInWhichAPersonPointsStaysWhereItIs)
{
    session.setDrawing(Drawing::createNew());
    viewport->grab();
    const double before = viewport->view().centerX;
    meanwhile([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, {40, 40}); });
    ads_point point{};
    ASSERT_EQ(acedGetPoint(nullptr, L"Point:", point), RTNORM);
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(7000, 100), AcGePoint3d(7100, 100)));
    viewport->grab();
    EXPECT_EQ(viewport->view().centerX, before);
}

TEST_F(MainWindowTest, WhatACommandHasSaidIsNotSaidAgainAsTheReason)
{
    auto *said = window->findChild<QPlainTextEdit *>();
    const auto count = [said](const std::wstring &text) {
        return said->toPlainText().count(QString::fromStdWString(text));
    };
    session.lockDocument(); // a command beside an open dialog is refused in the status line
    typeLine(QStringLiteral("setvar OSMODE 1"));
    session.unlockDocument();
    EXPECT_EQ(count(session.lastStatus()), 1);
    meanwhile([] { // the alert is a box, which waits
        if (auto *box = QApplication::activeModalWidget())
            box->close();
    });
    typeLine(QStringLiteral("setvar NOSUCH 1"));
    ASSERT_EQ(session.alerts().size(), 1u);
    EXPECT_EQ(count(session.alerts()[0]), 1);
    typeLine(QStringLiteral("nosuchcommand"));
    EXPECT_EQ(count(L"nosuchcommand"), 2); // as typed, and in the answer
}

TEST_F(MainWindowTest, SignsTypedOverTheDrawingGoToTheCommandLine)
{
    const double scale = viewport->view().pixelsPerUnit;
    for (const char *text : {"-BOUNDARY", "-5,3", "+5,3"}) {
        input->clear();
        viewport->setFocus();
        QTest::keyClick(viewport, text[0]);
        QTest::keyClicks(input, QString::fromLatin1(text + 1));
        EXPECT_EQ(input->text(), QString::fromLatin1(text));
    }
    EXPECT_EQ(viewport->view().pixelsPerUnit, scale);
}

TEST_F(MainWindowTest, APromptThatWaitsIsShownAndAnsweredInTheLanguageThatIsChosenMeanwhile)
{
    const auto *label = window->commandLine().findChild<QLabel *>();
    QString before, after, outer;
    bool ended = false;
    meanwhile([&] {
        before = label->text();
        session.commands().run(L"LANGUAGE HR");
        after = label->text();
        meanwhile([&] { // the prompt of a command inside of it, in whose time the language changes again
            session.commands().run(L"LANGUAGE EN");
            meanwhile([&] {
                outer = label->text();
                session.commands().run(L"LANGUAGE HR");
                typeLine(QStringLiteral("krajevi"));
            });
            QTest::keyClick(input, Qt::Key_Escape);
        });
        session.commands().run(L"'DIST");
    });
    ended = session.commands().run(L"ZOOM");
    Services::instance().setLanguage("en");
    EXPECT_TRUE(before.contains(QStringLiteral("Corner of a window"))) << before.toStdString();
    EXPECT_TRUE(before.contains(QStringLiteral("Extents")));
    EXPECT_TRUE(after.contains(QStringLiteral("Vrh prozora"))) << after.toStdString();
    EXPECT_TRUE(after.contains(QStringLiteral("Krajevi")));
    EXPECT_EQ(outer, before);
    EXPECT_TRUE(ended);
}

} // namespace
} // namespace velmor
