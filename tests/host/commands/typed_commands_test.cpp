// Commands at the real window, by the keyboard alone.
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/MainWindow.h"
#include "host/editor/Viewport.h"
#include "host/network/Network.h"
#include "tests/host/editor/QtFixture.h"

#include "host/services/RecentFiles.h"
#include "host/services/Services.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace velmor {
namespace {

class TypedCommands : public testing::Test {
protected:
    TypedCommands()
    {
        test::application();
        folder = (std::filesystem::temp_directory_path() / "velmor_typed_XXXXXX").string();
        if (!mkdtemp(folder.data()))
            throw std::runtime_error("no folder");
        Services::instance().start({.language = "en"}, Paths({resources()}, folder));
        session.setDrawing(Drawing::createNew());
        open();
        m_guard.setSingleShot(true);
        QObject::connect(&m_guard, &QTimer::timeout, [this] {
            for (int i = 0; i < 10 && session.commands().isRunning(); ++i)
                QTest::keyClick(field, Qt::Key_Escape);
        });
    }
    ~TypedCommands() override
    {
        window.reset();
        std::filesystem::remove_all(folder);
    }
    static std::filesystem::path resources()
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        return std::filesystem::path(source ? source : ".") / "resources";
    }
    void open()
    {
        window = std::make_unique<MainWindow>(session);
        window->show();
        viewport = window->findChild<Viewport *>();
        field = window->findChild<CommandField *>();
        QTest::qWait(0);
    }

    /// One step a turn of the event loop, so that a prompt that opens meanwhile gets the rest. "{Name}" is a key, all
    /// else is typed letter by letter.
    void type(const QString &keys)
    {
        for (qsizetype i = 0; i < keys.size(); ++i) {
            if (keys[i] == QLatin1Char('{')) {
                const qsizetype end = keys.indexOf(QLatin1Char('}'), i);
                const QString name = keys.mid(i + 1, end - i - 1);
                m_steps.append([this, name] { press(name); });
                i = end;
            } else {
                m_steps.append([this, letter = keys[i]] { QTest::keyClick(target(), letter.toLatin1()); });
            }
        }
        m_guard.stop();
        next();
        for (int turn = 0; turn < 2000 && (!m_steps.isEmpty() || session.commands().isRunning()); ++turn)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        EXPECT_TRUE(m_steps.isEmpty());
    }
    QWidget *target() const { return overDrawing ? static_cast<QWidget *>(viewport) : field; }
    void press(const QString &name)
    {
        if (name == QStringLiteral("Pointer")) // to the north-east, at 3 up for 4 to the right
            return QTest::mouseMove(viewport, viewport->view().toView(80.0, 60.0).toPoint());
        if (name == QStringLiteral("Click"))
            return QTest::mouseClick(viewport, Qt::LeftButton, {}, viewport->view().toView(80.0, 60.0).toPoint());
        if (name == QStringLiteral("Room")) {
            QCoreApplication::sendPostedEvents();
            EXPECT_GE(field->width(), window->commandLine().width() / 4);
            return;
        }
        if (name == QStringLiteral("ShiftSpace")) {
            QTest::keyClick(target(), Qt::Key_Space, Qt::ShiftModifier);
            return;
        }
        if (name == QStringLiteral("Wait"))
            return;
        if (name.startsWith(QStringLiteral("Link"))) {
            auto *prompt = window->commandLine().findChild<QLabel *>();
            EXPECT_TRUE(prompt->text().contains(QStringLiteral("<a href"))) << prompt->text().toStdString();
            Q_EMIT prompt->linkActivated(name.mid(4));
            return;
        }
        static const QHash<QString, Qt::Key> keys{
            {QStringLiteral("Enter"), Qt::Key_Return}, {QStringLiteral("Escape"), Qt::Key_Escape},
            {QStringLiteral("Up"), Qt::Key_Up},        {QStringLiteral("Down"), Qt::Key_Down},
            {QStringLiteral("Tab"), Qt::Key_Tab},      {QStringLiteral("F2"), Qt::Key_F2}};
        QTest::keyClick(target(), keys.value(name));
    }
    void next()
    {
        if (m_steps.isEmpty()) {
            // A prompt that is still open would wait for ever.
            m_guard.start(400);
            return;
        }
        const auto step = m_steps.takeFirst();
        QTimer::singleShot(0, window.get(), [this] { next(); });
        step();
    }

    QString said() const { return window->commandLine().transcript(); }
    std::vector<AcDbEntity *> living()
    {
        std::vector<AcDbEntity *> found;
        for (AcDbEntity *entity : session.drawing()->modelSpace().entities())
            if (!entity->isErased())
                found.push_back(entity);
        return found;
    }

    std::string folder;
    Session session;
    std::unique_ptr<MainWindow> window;
    Viewport *viewport = nullptr;
    CommandField *field = nullptr;
    bool overDrawing = false;

private:
    QList<std::function<void()>> m_steps;
    QTimer m_guard; ///< from the last step on
};

TEST_F(TypedCommands, ALineIsDrawnWithBlanksAndEntersAlike)
{
    type(QStringLiteral("line 0,0 10,0{Enter}@0,5 {Enter}"));
    EXPECT_EQ(living().size(), 2u);
    EXPECT_FALSE(session.commands().isRunning());
}

TEST_F(TypedCommands, AnEmptyEnterRunsTheLastCommandAgain)
{
    type(QStringLiteral("circle 0,0 5 "));
    type(QStringLiteral("{Enter}20,0 5 "));
    EXPECT_EQ(living().size(), 2u);
    type(QStringLiteral(" 40,0 5 ")); // so does a blank
    EXPECT_EQ(living().size(), 3u);
}

TEST_F(TypedCommands, WhatIsTypedOverTheDrawingGoesToTheCommandLine)
{
    overDrawing = true;
    type(QStringLiteral("l"));
    EXPECT_EQ(field->text(), QStringLiteral("l"));
    overDrawing = false;
    type(QStringLiteral(" 0,0 5,5 {Enter}"));
    EXPECT_EQ(living().size(), 1u);
}

TEST_F(TypedCommands, EscapeEndsACommandAndNothingIsDrawn)
{
    type(QStringLiteral("circle 0,0{Enter}{Escape}"));
    EXPECT_FALSE(session.commands().isRunning());
    EXPECT_TRUE(living().empty());
}

TEST_F(TypedCommands, ADistanceAloneGoesTheWayOfThePointer)
{
    viewport->showExtents({-100, -100, 100, 100});
    viewport->grab();
    type(QStringLiteral("line 0,0 {Pointer}25 {Enter}"));
    ASSERT_EQ(living().size(), 1u);
    const auto &end = static_cast<AcDbLine *>(living()[0])->endPoint();
    const double pixel = 1.0 / viewport->view().pixelsPerUnit;
    EXPECT_NEAR(end.x, 20.0, pixel);
    EXPECT_NEAR(end.y, 15.0, pixel);
    EXPECT_NEAR(std::hypot(end.x, end.y), 25.0, 1e-9);
}

TEST_F(TypedCommands, ClicksAndTypedPointsGoTogether)
{
    viewport->showExtents({-100, -100, 100, 100});
    viewport->grab();
    type(QStringLiteral("line 0,0 {Click}{Enter}"));
    ASSERT_EQ(living().size(), 1u);
    EXPECT_NEAR(static_cast<AcDbLine *>(living()[0])->endPoint().x, 80.0, 2.0 / viewport->view().pixelsPerUnit);
}

TEST_F(TypedCommands, ATransparentCommandRunsInsideOfAnother)
{
    type(QStringLiteral("line 0,0 'setvar pickradius 3 10,0 {Enter}"));
    EXPECT_EQ(living().size(), 1u);
    EXPECT_EQ(std::get<double>(*session.variable(L"PICKRADIUS")), 3.0);
}

TEST_F(TypedCommands, ACommandThatChangesDoesNotRunInsideOfAnother)
{
    type(QStringLiteral("line 0,0 'erase 10,0 {Enter}"));
    EXPECT_TRUE(said().contains(QStringLiteral("can't start inside another command")));
    EXPECT_EQ(living().size(), 1u);
}

TEST_F(TypedCommands, UpAndDownWalkThroughWhatWasTypedAlsoAfterARestart)
{
    type(QStringLiteral("point 1,1 "));
    window.reset();
    open();
    type(QStringLiteral("{Up}{Up}"));
    EXPECT_EQ(field->text(), QStringLiteral("point"));
    type(QStringLiteral("{Down}"));
    EXPECT_EQ(field->text(), QStringLiteral("1,1"));
}

TEST_F(TypedCommands, TabTakesWhatFitsOneAfterAnother)
{
    type(QStringLiteral("pli{Tab}"));
    EXPECT_EQ(field->text(), QStringLiteral("PLINE"));
    field->clear();
    type(QStringLiteral("zo"));
    EXPECT_TRUE(field->areCompletionsShown());
    type(QStringLiteral("{Tab}{Tab}"));
    EXPECT_EQ(field->text(), QStringLiteral("ZOOM"));
    field->clear();
}

TEST_F(TypedCommands, KeysOfMenusWorkWhileTheEmptyFieldHasTheFocus)
{
    type(QStringLiteral("line 0,0 10,0 {Enter}"));
    ASSERT_EQ(living().size(), 1u);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(living().size(), 0u);
    QTest::keyClick(field, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(living().size(), 1u);
}

TEST_F(TypedCommands, TheEmptyFieldGivesItsKeysToTheDrawing)
{
    type(QStringLiteral("line 0,0 10,0 {Enter}"));
    viewport->showExtents({500, 500, 600, 600});
    const auto centre = [this] { return viewport->view().centerX; };
    const double there = centre();
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Home);
    viewport->grab();
    const double all = centre();
    EXPECT_NEAR(all, 5.0, 1.0);
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_NEAR(centre(), there, 1e-9);
    QTest::keyClick(field, Qt::Key_Left);
    EXPECT_LT(centre(), there);
    QTest::keyClick(field, Qt::Key_Right);
    EXPECT_NEAR(centre(), there, 1e-9);
    // With something typed they are the field's.
    QTest::keyClicks(field, QStringLiteral("ab"));
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_EQ(field->text(), QStringLiteral("a"));
    QTest::keyClick(field, Qt::Key_Left);
    EXPECT_EQ(field->cursorPosition(), 0);
    EXPECT_NEAR(centre(), there, 1e-9);
    // Whoever holds Backspace to clear the field stays where he is.
    field->clear();
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(field, &held);
    EXPECT_NEAR(centre(), there, 1e-9);
}

TEST_F(TypedCommands, ShiftSpaceInTheFieldTakesTheNextOfSeveralAndIsNoEnter)
{
    type(QStringLiteral("line 0,0 10,0 {Enter}"));
    type(QStringLiteral("line 0,0 10,0 {Enter}"));
    viewport->showExtents({-20, -20, 20, 20});
    QTest::mouseMove(viewport, viewport->view().toView(5.0, 0.0).toPoint());
    QCoreApplication::processEvents();
    const AcDbEntity *top = viewport->hovered();
    ASSERT_NE(top, nullptr);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_FALSE(session.commands().isRunning()) << "the last command is not begun again";
    EXPECT_NE(viewport->hovered(), top);
    EXPECT_NE(viewport->hovered(), nullptr);
    // At a selection, too: it goes on.
    type(QStringLiteral("erase {ShiftSpace}all {Enter}"));
    EXPECT_TRUE(living().empty());
}

TEST_F(TypedCommands, SpaceHeldInTheFieldMovesTheView)
{
    type(QStringLiteral("point 1,1 "));
    viewport->showExtents({-100, -100, 100, 100});
    const double before = viewport->view().centerX;
    field->setFocus();
    QTest::keyPress(field, Qt::Key_Space);
    QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(200, 200));
    QTest::mouseMove(viewport, QPoint(240, 200));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(240, 200));
    QTest::keyRelease(QApplication::focusWidget() == viewport ? static_cast<QWidget *>(viewport) : field,
                      Qt::Key_Space);
    EXPECT_NEAR(viewport->view().centerX, before - 40.0 / viewport->view().pixelsPerUnit, 1e-9);
    EXPECT_FALSE(session.commands().isRunning());
    EXPECT_EQ(living().size(), 1u);
    // What goes elsewhere with the focus is held no longer.
    field->setFocus();
    QTest::keyPress(field, Qt::Key_Space);
    window->setFocus();
    const double after = viewport->view().centerX;
    QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(200, 200));
    QTest::mouseMove(viewport, QPoint(240, 200));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(240, 200));
    EXPECT_EQ(viewport->view().centerX, after);
}

TEST_F(TypedCommands, ALetterBeforeSpaceIsLetGoComesBehindTheEnter)
{
    type(QStringLiteral("point 1,1 "));
    QTimer::singleShot(0, window.get(), [this] {
        QTest::keyPress(field, Qt::Key_Space);
        QTest::keyClick(field, Qt::Key_2);
        QTest::keyRelease(field, Qt::Key_Space);
    });
    type(QStringLiteral("{Wait}{Wait}{Wait}{Wait},2{Enter}"));
    EXPECT_EQ(living().size(), 2u) << said().toStdString();
}

TEST_F(TypedCommands, InsideOfAWindowsCornersAPointIsStillDrawnToObjectSnaps)
{
    viewport->showExtents({-100, -100, 100, 100});
    viewport->grab();
    const QPointF click = viewport->view().toView(80.0, 60.0);
    const AcGePoint3d end = viewport->view().toWorld(click.toPoint() + QPoint(3, 0));
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), end));
    ASSERT_TRUE(session.setVariable(L"OSMODE", 1));
    type(QStringLiteral("zoom w 'dist 0,0 {Click}-50,-50 50,50 "));
    ASSERT_TRUE(session.commands().lastPoint().has_value());
    EXPECT_NEAR(session.commands().lastPoint()->x, end.x, 1e-12);
    EXPECT_NEAR(session.commands().lastPoint()->y, end.y, 1e-12);
}

TEST_F(TypedCommands, CornersOfWindowsAndMovesOfTheViewAreNoLastPoint)
{
    type(QStringLiteral("line 0,0 10,10 {Enter}"));
    type(QStringLiteral("zoom w 500,500 600,600 "));
    type(QStringLiteral("pan 0,0 5,5 "));
    type(QStringLiteral("line @5,0 @0,5 {Enter}"));
    ASSERT_EQ(living().size(), 2u);
    const auto &start = static_cast<AcDbLine *>(living()[1])->startPoint();
    EXPECT_NEAR(start.x, 15.0, 1e-9);
    EXPECT_NEAR(start.y, 10.0, 1e-9);
}

TEST_F(TypedCommands, AQuotedTextIsReadAsAScriptReadsIt)
{
    type(QStringLiteral("text 0,0 2 0 \"A \"\"b\"\"\"{Enter}{Enter}"));
    ASSERT_EQ(living().size(), 1u);
    EXPECT_EQ(static_cast<TextEntity *>(living()[0])->shape().text, L"A \"b\"");
}

TEST_F(TypedCommands, OptionsOfTheBoundaryCommandAreClickedAndTypedInTheUsersLanguage)
{
    for (const auto &[low, high] : {std::pair(0.0, 100.0), std::pair(40.0, 60.0)})
        session.drawing()->append(std::make_unique<AcDbPolyline>(
            std::vector<AcDbPolyline::Vertex>{{low, low, 0}, {high, low, 0}, {high, high, 0}, {low, high, 0}}, true));
    Services::instance().start({.language = "hr"}, Paths({resources()}, folder));
    type(QStringLiteral("_-boundary {Link0}otoci ne {Enter}{Enter}10,10 {Enter}"));
    EXPECT_EQ(living().size(), 3u) << "without the island";
    type(QStringLiteral("_-boundary _advanced _islands _no {Enter}{Enter}10,10 {Enter}"));
    EXPECT_EQ(living().size(), 4u) << said().toStdString();
    Services::instance().start({.language = "en"}, Paths({resources()}, folder));
}

TEST_F(TypedCommands, APersonIsAskedForWhatAScriptMayLeaveOut)
{
    for (const wchar_t *name : {L"Pipes", L"Labels", L"Others"})
        session.drawing()->ensureLayer(name);
    auto pipe = std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(50, 0));
    const auto add = [&](std::unique_ptr<AcDbEntity> entity, const wchar_t *layer) {
        AcDbEntity &made = *entity;
        session.drawing()->append(std::move(entity));
        session.drawing()->setLayerOf(made, *session.drawing()->findLayer(layer));
    };
    const auto text = [](double x, const wchar_t *words) {
        TextShape shape;
        shape.position = {x, 0.1};
        shape.height = 1.0;
        shape.text = words;
        return std::make_unique<TextEntity>(shape);
    };
    add(std::move(pipe), L"Pipes");
    add(text(0.0, L"M1"), L"Labels");
    add(text(50.0, L"X9"), L"Others");
    type(QStringLiteral("sections Pipes{Enter}Labels{Enter}"));
    const auto &network = session.drawing()->component<Network>();
    EXPECT_TRUE(network.nodeByName(L"M1")) << said().toStdString();
    EXPECT_FALSE(network.nodeByName(L"X9"));
    type(QStringLiteral("boundary-layers Pipes{Enter}Others{Enter}{Enter}"));
    const auto kept = session.drawing()->dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS");
    ASSERT_TRUE(kept.has_value());
    EXPECT_EQ(kept->size(), 2u);
    type(QStringLiteral("undo 2{Enter}"));
    EXPECT_FALSE(session.drawing()->dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS").has_value());
    EXPECT_TRUE(network.sections().empty());
}

TEST_F(TypedCommands, AFileThatIsSavedToByACommandIsAmongTheRecentOnes)
{
    const auto file = std::filesystem::path(folder) / "saved.dxf";
    type(QStringLiteral("saveas \"") + QString::fromStdString(file.string()) + QStringLiteral("\"{Enter}"));
    ASSERT_EQ(session.path(), file);
    const auto recent = RecentFiles::ofUser().list();
    EXPECT_NE(std::ranges::find(recent, file), recent.end());
}

TEST_F(TypedCommands, ARefusedAnswerIsTold)
{
    type(QStringLiteral("-boundary _advanced _xyz {Escape}"));
    EXPECT_TRUE(said().contains(QStringLiteral("Needed: one of the words in brackets, or one of Boundary, Islands")));
}

TEST_F(TypedCommands, AnotherCommandFromAMenuEndsNestedPromptsToo)
{
    QTimer::singleShot(300, window.get(), [this] { window->startCommand(QStringLiteral("_AUDIT")); });
    type(QStringLiteral("line 0,0 'dist 1,1 "));
    EXPECT_TRUE(said().contains(QStringLiteral("The drawing is sound")));
    EXPECT_FALSE(session.commands().isRunning());
}

TEST_F(TypedCommands, HelpInsideOfACommandTellsAboutIt)
{
    type(QStringLiteral("circle 'help 0,0 5 "));
    EXPECT_TRUE(said().contains(QStringLiteral("CIRCLE (C, CI): ")));
    EXPECT_FALSE(said().contains(QStringLiteral("ZOOM (")));
    EXPECT_EQ(living().size(), 1u);
}

TEST_F(TypedCommands, ALongPromptLeavesRoomForTheAnswer)
{
    window->resize(700, 500);
    QTest::qWait(0);
    type(QStringLiteral("layer {Room}Roads "));
    EXPECT_TRUE(session.drawing()->findLayer(L"Roads").has_value());
}

TEST_F(TypedCommands, ATextTakesItsBlanks)
{
    type(QStringLiteral("text 0,0 2 0 Main street{Enter}{Enter}"));
    ASSERT_EQ(living().size(), 1u);
    EXPECT_EQ(static_cast<TextEntity *>(living()[0])->shape().text, L"Main street");
}

TEST_F(TypedCommands, OptionsCanBeClicked)
{
    type(QStringLiteral("circle {Link1}0,0 6,8 ")); // 2P
    ASSERT_EQ(living().size(), 1u);
    EXPECT_EQ(static_cast<CircleEntity *>(living()[0])->radius(), 5.0);
}

TEST_F(TypedCommands, WordsInTheUsersLanguageAndGlobalOnesMeanTheSame)
{
    Services::instance().start({.language = "hr"}, Paths({resources()}, folder));
    type(QStringLiteral("linija 0,0 10,0 10,10 z "));
    EXPECT_EQ(living().size(), 3u);
    type(QStringLiteral("_line 0,0 10,0 10,10 _close "));
    EXPECT_EQ(living().size(), 6u);
    Services::instance().start({.language = "en"}, Paths({resources()}, folder));
}

TEST_F(TypedCommands, TheTranscriptHoldsWhatWasSaidAndTyped)
{
    type(QStringLiteral("dist 0,0 3,4 "));
    EXPECT_TRUE(said().contains(QStringLiteral("Distance 5")));
    EXPECT_TRUE(said().contains(QStringLiteral("3,4")));
}

TEST_F(TypedCommands, AMenuEndsTheCommandThatAsksAndStartsItsOwn)
{
    QTimer::singleShot(200, window.get(), [this] { window->startCommand(QStringLiteral("_AUDIT")); });
    type(QStringLiteral("line 0,0 "));
    EXPECT_TRUE(said().contains(QStringLiteral("The drawing is sound")));
}

TEST_F(TypedCommands, WhatAModuleAsksIsShownAndGoesWithTheAnswer)
{
    auto *prompt = window->commandLine().findChild<QLabel *>();
    QString shown;
    const auto look = [&] {
        QTimer::singleShot(0, window.get(), [&] {
            shown = prompt->text();
            QTest::keyClick(field, Qt::Key_Escape);
        });
    };
    ads_point point{};
    look();
    EXPECT_EQ(acedGetPoint(nullptr, L"Corner of it:", point), RTCAN);
    EXPECT_EQ(shown, QStringLiteral("Corner of it:"));
    ads_name entity{};
    look();
    EXPECT_EQ(acedEntSel(L"Which one:", entity, point), RTCAN);
    EXPECT_EQ(shown, QStringLiteral("Which one:"));
    std::wstring text;
    look();
    EXPECT_EQ(acedGetString(1, L"Say it:", text), RTCAN);
    EXPECT_EQ(shown, QStringLiteral("Say it:"));
    EXPECT_NE(prompt->text(), QStringLiteral("Say it:"));
}

TEST_F(TypedCommands, ClosingAtAPromptEndsTheCommandFirst)
{
    QTimer::singleShot(300, window.get(), [this] { window->close(); });
    type(QStringLiteral("circle 0,0 "));
    for (int turn = 0; turn < 100 && window->isVisible(); ++turn)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(living().empty());
}

TEST_F(TypedCommands, OtherFilesAndSeveralAtOnceAreNotTaken)
{
    for (const QStringList &names :
         {QStringList{QStringLiteral("notes.txt")}, QStringList{QStringLiteral("a.dxf"), QStringLiteral("b.dxf")}}) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &name : names)
            urls.append(QUrl::fromLocalFile(QString::fromStdString(folder) + QLatin1Char('/') + name));
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QCoreApplication::sendEvent(window.get(), &enter);
        EXPECT_FALSE(enter.isAccepted());
    }
}

TEST_F(TypedCommands, ADroppedDrawingIsOpened)
{
    auto drawing = Drawing::createNew();
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(5, 0)));
    const auto file = std::filesystem::path(folder) / "dropped.dxf";
    ASSERT_TRUE(drawing->save(file));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file.string()))});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window.get(), &drop);
    for (int turn = 0; turn < 200 && session.path() != file; ++turn)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_EQ(session.path(), file);
    EXPECT_EQ(living().size(), 1u);
}

} // namespace
} // namespace velmor
