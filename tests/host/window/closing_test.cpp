// The window at its end and at its start: what is asked before a drawing goes, and what fails on the way.
#include "host/editor/Application.h"
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/DrawingKeeper.h"
#include "host/editor/MainWindow.h"
#include "host/editor/RecoveryQuestion.h"
#include "host/editor/SaveFileDialog.h"
#include "host/editor/Viewport.h"
#include "host/services/Services.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <fstream>
#include <unistd.h>

namespace velmor {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

class Closing : public testing::Test {
protected:
    Closing()
    {
        std::string pattern = (fs::temp_directory_path() / "velmor-closing-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        m_file = m_folder / "town.dxf";
        // A chosen language and the files that were opened are kept there.
        Services::instance().start({.language = "en"}, Paths({resources()}, m_folder));
        EXPECT_TRUE(Drawing::createNew()->save(m_file));
        m_session.setDrawing(Drawing::load(m_file).drawing, m_file);
        open();
        // Whatever box opens is pressed like this, the next one by the next.
        QObject::connect(&m_hand, &QTimer::timeout, &m_hand, [this] { press(); });
        m_hand.start(1);
    }
    ~Closing() override
    {
        m_hand.stop();
        Recovery::instance().disable();
        m_window.reset();
        Services::instance().start({.language = "en"});
        std::error_code error;
        fs::permissions(m_folder, fs::perms::owner_all, error);
        fs::remove_all(m_folder, error);
    }
    static fs::path resources()
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        return fs::path(source ? source : ".") / "resources";
    }
    void open()
    {
        m_window = std::make_unique<MainWindow>(m_session);
        m_window->show();
        m_input = m_window->commandLine().findChild<QLineEdit *>();
        QTest::qWait(0);
    }
    void press()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        m_boxes.push_back(box->text());
        const QMessageBox::ButtonRole role = m_roles.isEmpty() ? QMessageBox::RejectRole : m_roles.takeFirst();
        m_texts.clear();
        for (QAbstractButton *button : box->buttons())
            m_texts.append(button->text().remove(QLatin1Char('&')));
        for (QAbstractButton *button : box->buttons())
            if (box->buttonRole(button) == role)
                return button->click();
        box->close();
    }
    void change()
    {
        m_session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(++m_lines, 0)));
    }
    void typeLine(const QString &line)
    {
        m_input->insert(line);
        QTest::keyClick(m_input, Qt::Key_Return);
    }
    template <class Condition>
    static bool waitFor(Condition condition)
    {
        return QTest::qWaitFor(condition, 5000);
    }
    void drop(const QStringList &names)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &name : names)
            urls.append(QUrl::fromLocalFile(QString::fromStdString(m_folder.string()) + QLatin1Char('/') + name));
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(m_window.get(), &enter);
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(m_window.get(), &event);
        QCoreApplication::processEvents();
    }
    std::size_t linesIn(const fs::path &file) const
    {
        return Drawing::load(file).drawing->modelSpace().entities().size();
    }

    fs::path m_folder, m_file;
    Session m_session;
    std::unique_ptr<MainWindow> m_window;
    QLineEdit *m_input = nullptr;
    QTimer m_hand;
    QList<QMessageBox::ButtonRole> m_roles; ///< of the buttons that are pressed; rejected at their end
    std::vector<QString> m_boxes;
    QStringList m_texts; ///< of the buttons of the last box
    int m_lines = 0;
};

TEST_F(Closing, AnUnchangedDrawingClosesUnasked)
{
    EXPECT_TRUE(m_window->close());
    EXPECT_THAT(m_boxes, IsEmpty());
}

TEST_F(Closing, SaveWritesTheFileAndCloses)
{
    change();
    m_roles = {QMessageBox::AcceptRole};
    EXPECT_TRUE(m_window->close());
    EXPECT_THAT(m_boxes, SizeIs(1));
    EXPECT_EQ(linesIn(m_file), 1u);
}

TEST_F(Closing, DiscardClosesAndLeavesTheFile)
{
    change();
    m_roles = {QMessageBox::DestructiveRole};
    EXPECT_TRUE(m_window->close());
    EXPECT_EQ(linesIn(m_file), 0u);
}

TEST_F(Closing, CancelLetsTheWindowAndTheDrawingStay)
{
    change();
    m_roles = {QMessageBox::RejectRole};
    EXPECT_FALSE(m_window->close());
    EXPECT_TRUE(m_window->isVisible());
    EXPECT_TRUE(m_session.drawing()->isModified());
}

TEST_F(Closing, TheQuestionIsInTheLanguageThatWasChosen)
{
    Services::instance().setLanguage("hr");
    change();
    EXPECT_FALSE(m_window->close());
    Services::instance().setLanguage("en");
    ASSERT_THAT(m_boxes, SizeIs(1));
    for (const char *text : {"Spremi", "Odbaci", "Odustani"})
        EXPECT_TRUE(m_texts.contains(QString::fromUtf8(text))) << text;
    EXPECT_THAT(m_texts, SizeIs(3));
}

TEST_F(Closing, TypedNewAsksTheSameQuestionInTheLanguageThatWasChosen)
{
    Services::instance().setLanguage("hr");
    change();
    typeLine(QStringLiteral("_new"));
    Services::instance().setLanguage("en");
    ASSERT_THAT(m_boxes, SizeIs(1));
    EXPECT_TRUE(m_texts.contains(QStringLiteral("Odbaci")));
    EXPECT_TRUE(m_session.drawing()->isModified());
    m_roles = {QMessageBox::AcceptRole};
    typeLine(QStringLiteral("_new"));
    EXPECT_FALSE(m_session.drawing()->isModified());
    EXPECT_TRUE(m_session.path().empty());
    EXPECT_EQ(linesIn(m_file), 1u);
}

TEST_F(Closing, ASaveThatFailsLetsTheWindowStayAndSaysWhy)
{
    change();
    fs::permissions(m_file, fs::perms::owner_read);
    m_roles = {QMessageBox::AcceptRole, QMessageBox::AcceptRole};
    EXPECT_FALSE(m_window->close());
    EXPECT_TRUE(m_window->isVisible());
    ASSERT_THAT(m_boxes, SizeIs(2));
    EXPECT_THAT(m_boxes[1].toStdString(), HasSubstr("town.dxf"));
    EXPECT_TRUE(m_session.drawing()->isModified());
}

TEST_F(Closing, AFileThatSomebodyHasChangedIsNotWrittenOverUnasked)
{
    change();
    std::ofstream(m_file, std::ios::app) << "999\nanother program was here\n";
    const auto size = fs::file_size(m_file);
    m_roles = {QMessageBox::AcceptRole, QMessageBox::RejectRole};
    EXPECT_FALSE(m_window->close());
    ASSERT_THAT(m_boxes, SizeIs(2));
    EXPECT_THAT(m_boxes[1].toStdString(), HasSubstr("town.dxf"));
    EXPECT_EQ(fs::file_size(m_file), size);
    m_roles = {QMessageBox::AcceptRole, QMessageBox::AcceptRole};
    EXPECT_TRUE(m_window->close());
    EXPECT_EQ(linesIn(m_file), 1u);
}

TEST_F(Closing, AtAPromptTheCommandEndsFirst)
{
    QTimer::singleShot(0, m_window.get(), [this] { m_window->close(); });
    m_session.commands().run(L"_CIRCLE 0,0");
    EXPECT_TRUE(waitFor([this] { return !m_window->isVisible(); }));
    EXPECT_TRUE(m_session.drawing()->modelSpace().entities().empty());
}

TEST_F(Closing, AtANestedPromptAllCommandsEndFirst)
{
    // Inside of the circle's second prompt another command asks; the window is closed there.
    QTimer::singleShot(0, m_window.get(), [this] {
        QTimer::singleShot(0, m_window.get(), [this] {
            EXPECT_EQ(m_session.commands().running().size(), 2u);
            m_window->close();
        });
        typeLine(QStringLiteral("'_zoom _Window"));
    });
    typeLine(QStringLiteral("_circle 0,0"));
    EXPECT_TRUE(waitFor([this] { return !m_window->isVisible(); }));
    EXPECT_FALSE(m_session.commands().isRunning());
    EXPECT_TRUE(m_session.drawing()->modelSpace().entities().empty());
}

TEST_F(Closing, QuitClosesAndAsksAboutChanges)
{
    change();
    typeLine(QStringLiteral("_quit"));
    EXPECT_TRUE(waitFor([this] { return m_boxes.size() == 1; }));
    EXPECT_TRUE(m_window->isVisible());
    m_roles = {QMessageBox::DestructiveRole};
    typeLine(QStringLiteral("_quit"));
    EXPECT_TRUE(waitFor([this] { return !m_window->isVisible(); }));
}

TEST_F(Closing, TheEndingComesBeforeTheQuestionWhetherToReplace)
{
    EXPECT_TRUE(Drawing::createNew()->save(m_folder / "plan.dxf"));
    const auto look = [] { return qobject_cast<QFileDialog *>(QApplication::activeModalWidget()); };
    QTimer choose;
    QObject::connect(&choose, &QTimer::timeout, &choose, [&] {
        QFileDialog *dialog = look();
        if (dialog == nullptr)
            return;
        if (!m_boxes.empty()) // the question was answered with No
            return dialog->reject();
        dialog->setDirectory(QString::fromStdString(m_folder.string()));
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(QStringLiteral("plan"));
        static_cast<QDialog *>(dialog)->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
    });
    choose.start(5);
    EXPECT_EQ(askForSaveFile(m_window.get(), QStringLiteral("title"), QStringLiteral("Drawings (*.dxf)"),
                             QStringLiteral("dxf")),
              QString());
    ASSERT_THAT(m_boxes, SizeIs(1));
    EXPECT_THAT(m_boxes[0].toStdString(), HasSubstr("plan.dxf"));
}

// --- Dropped files

TEST_F(Closing, SeveralFilesOrOtherKindsThatAreDroppedChangeNothing)
{
    Drawing *former = m_session.drawing();
    EXPECT_TRUE(Drawing::createNew()->save(m_folder / "b.dxf"));
    std::ofstream(m_folder / "notes.txt") << "text";
    drop({QStringLiteral("town.dxf"), QStringLiteral("b.dxf")});
    drop({QStringLiteral("notes.txt")});
    drop({});
    EXPECT_EQ(m_session.drawing(), former);
    EXPECT_THAT(m_boxes, IsEmpty());
}

TEST_F(Closing, AFileThatIsDroppedAsksAboutChangesAndEndsTheCommandThatRuns)
{
    EXPECT_TRUE(Drawing::createNew()->save(m_folder / "b.dxf"));
    change();
    Drawing *former = m_session.drawing();
    drop({QStringLiteral("b.dxf")});
    EXPECT_TRUE(waitFor([this] { return m_boxes.size() == 1; }));
    EXPECT_EQ(m_session.drawing(), former);
    m_roles = {QMessageBox::DestructiveRole};
    QTimer::singleShot(0, m_window.get(), [this] { drop({QStringLiteral("b.dxf")}); });
    typeLine(QStringLiteral("_circle 0,0"));
    EXPECT_TRUE(waitFor([this] { return m_session.path() == m_folder / "b.dxf"; }));
    EXPECT_FALSE(m_session.commands().isRunning());
}

TEST_F(Closing, AMissingFileIsToldByNameAndTheDrawingStays)
{
    Drawing *former = m_session.drawing();
    drop({QStringLiteral("gone.dxf")});
    EXPECT_TRUE(waitFor([this] { return m_boxes.size() == 1; }));
    EXPECT_THAT(m_boxes[0].toStdString(), HasSubstr("gone.dxf"));
    EXPECT_THAT(m_boxes[0].toStdString(), HasSubstr("check the name"));
    typeLine(QStringLiteral("_open \"%1\"").arg(QString::fromStdString((m_folder / "gone.dxf").string())));
    ASSERT_THAT(m_boxes, SizeIs(2));
    EXPECT_THAT(m_boxes[1].toStdString(), HasSubstr("gone.dxf"));
    EXPECT_THAT(m_boxes[1].toStdString(), HasSubstr("check the name"));
    EXPECT_EQ(m_session.drawing(), former);
}

// --- What fails in a handler

/// Fails at events of a kind.
struct Failing final : QObject {
    explicit Failing(QEvent::Type failing) : type(failing) {}
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == type) {
            ++count;
            throw std::runtime_error("the handler broke");
        }
        return false;
    }
    QEvent::Type type;
    int count = 0;
};

TEST_F(Closing, AnExceptionInAHandlerIsToldAndTheProgramGoesOn)
{
    Recovery::instance().enable(m_folder / "state", {});
    m_session.setDrawing(Drawing::load(m_file).drawing, m_file);
    change();
    Drawing *drawing = m_session.drawing();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::Drop, QEvent::Close}) {
        Failing failing(type);
        m_window->installEventFilter(&failing);
        const std::size_t before = m_boxes.size();
        if (type == QEvent::KeyPress)
            QTest::keyClick(m_window.get(), Qt::Key_A);
        else if (type == QEvent::Drop)
            drop({QStringLiteral("town.dxf")});
        else
            EXPECT_FALSE(m_window->close());
        EXPECT_TRUE(waitFor([&] { return m_boxes.size() == before + 1; })) << type;
        EXPECT_THAT(m_boxes.back().toStdString(), HasSubstr("the handler broke"));
        m_window->removeEventFilter(&failing);
        EXPECT_EQ(failing.count, 1);
    }
    EXPECT_EQ(m_session.failures(), 3u);
    EXPECT_TRUE(m_window->isVisible());
    EXPECT_EQ(m_session.drawing(), drawing);
    EXPECT_EQ(drawing->modelSpace().entities().size(), 1u);
    EXPECT_FALSE(fs::is_empty(m_folder / "state"));
    // And it works on.
    typeLine(QStringLiteral("_layer Works"));
    EXPECT_TRUE(drawing->findLayer(L"Works"));
}

TEST_F(Closing, AnExceptionInATimerOrASlotThatWasQueuedIsToldToo)
{
    QTimer::singleShot(0, m_window.get(), [] { throw std::bad_alloc(); });
    EXPECT_TRUE(waitFor([this] { return m_boxes.size() == 1; }));
    EXPECT_THAT(m_boxes[0].toStdString(), HasSubstr("memory"));
    QMetaObject::invokeMethod(
        m_window.get(), [] { throw std::runtime_error("the slot broke"); }, Qt::QueuedConnection);
    EXPECT_TRUE(waitFor([this] { return m_boxes.size() == 2; }));
    EXPECT_THAT(m_boxes[1].toStdString(), HasSubstr("the slot broke"));
}

TEST_F(Closing, APaintThatFailsAgainAndAgainIsToldOnce)
{
    struct Broken final : QWidget {
        using QWidget::QWidget;
        int painted = 0;
        void paintEvent(QPaintEvent *) override
        {
            ++painted;
            throw std::runtime_error("the paint broke");
        }
    } broken;
    broken.show();
    for (int i = 0; i < 5; ++i) {
        broken.repaint();
        QTest::qWait(0);
    }
    EXPECT_TRUE(waitFor([this] { return !m_boxes.empty(); }));
    QTest::qWait(0);
    broken.repaint();
    QTest::qWait(0);
    EXPECT_GE(broken.painted, 2);
    EXPECT_THAT(m_boxes, SizeIs(1));
}

// --- What was left

class LeftBehind : public Closing {
protected:
    LeftBehind()
    {
        // A program that died with a step of its own.
        Recovery::instance().enable(m_folder / "state", {});
        m_session.setDrawing(Drawing::load(m_file).drawing, m_file);
        m_session.commands().run(L"_LAYER Lost");
        Recovery::instance().disable();
        m_session.setDrawing(Drawing::createNew());
        Recovery::instance().enable(m_folder / "state", {});
        EXPECT_THAT(Recovery::instance().left(), SizeIs(1));
    }
    void ask()
    {
        askForLeftDrawings(m_session, m_window.get(),
                           [this](const fs::path &file) { return m_window->openFile(file); });
    }
};

TEST_F(LeftBehind, OpenSavedOpensTheFileAndGivesTheRestUp)
{
    m_roles = {QMessageBox::DestructiveRole, QMessageBox::YesRole};
    ask();
    EXPECT_EQ(m_session.path(), m_file);
    EXPECT_FALSE(m_session.drawing()->findLayer(L"Lost"));
    EXPECT_THAT(Recovery::instance().left(), IsEmpty());
}

TEST_F(LeftBehind, OpenSavedOfAFileThatCantBeOpenedGivesNothingUp)
{
    std::ofstream(m_file) << "no drawing";
    m_roles = {QMessageBox::DestructiveRole, QMessageBox::YesRole, QMessageBox::AcceptRole};
    Drawing *former = m_session.drawing();
    ask();
    EXPECT_EQ(m_session.drawing(), former);
    EXPECT_THAT(m_boxes, SizeIs(3)); // the third says why
    EXPECT_THAT(Recovery::instance().left(), SizeIs(1));
}

TEST_F(LeftBehind, RecoverBringsTheStepBack)
{
    m_roles = {QMessageBox::AcceptRole};
    ask();
    EXPECT_THAT(m_boxes, SizeIs(1));
    EXPECT_TRUE(m_session.drawing()->findLayer(L"Lost"));
    EXPECT_EQ(m_session.path(), m_file);
}

TEST_F(LeftBehind, WhatWasJustImportedIsNotReplacedUnasked)
{
    change(); // as an import does: changes, and no file
    Drawing *imported = m_session.drawing();
    for (const auto role : {QMessageBox::AcceptRole, QMessageBox::DestructiveRole}) {
        m_boxes.clear();
        m_roles = {role, QMessageBox::RejectRole};
        ask();
        EXPECT_THAT(m_boxes, SizeIs(2));
        EXPECT_EQ(m_session.drawing(), imported);
        EXPECT_THAT(Recovery::instance().left(), SizeIs(1)) << "it can be recovered later";
    }
    m_roles = {QMessageBox::AcceptRole, QMessageBox::DestructiveRole};
    ask();
    EXPECT_TRUE(m_session.drawing()->findLayer(L"Lost"));
}

TEST_F(LeftBehind, TheLastStepBeforeAPauseIsSyncedByATimer)
{
    m_session.setDrawing(Drawing::createNew());
    startAutosaving(m_window.get());
    const auto *pause = m_window->findChild<QTimer *>(QStringLiteral("journalSync"));
    ASSERT_NE(pause, nullptr);
    EXPECT_FALSE(pause->isActive());
    for (int i = 0; i < 20 && !pause->isActive(); ++i)
        m_session.commands().run(L"_LAYER Step" + std::to_wstring(i));
    EXPECT_TRUE(pause->isActive());
    EXPECT_TRUE(pause->isSingleShot());
    EXPECT_LE(pause->intervalAsDuration(), DrawingKeeper::kBetweenSyncs);
}

TEST(AutosaveMinutes, AreTheSettingUnlessNothingElseKeepsTheDrawing)
{
    EXPECT_EQ(autosaveMinutes(0, false), 0);
    EXPECT_EQ(autosaveMinutes(7, false), 7);
    EXPECT_EQ(autosaveMinutes(7, true), 7);
    EXPECT_GT(autosaveMinutes(0, true), 0);
}

} // namespace
} // namespace velmor
