// Loading beside the window: progress, cancel, and what stays.
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Loading.h"
#include "host/editor/MainWindow.h"
#include "host/editor/RecoveryQuestion.h"

#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <thread>

namespace velmor {
namespace {

QProgressDialog *shownDialog()
{
    return qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
}

TEST(LoadingWindow, ALongLoadShowsItsProgressAndCanBeCancelled)
{
    QWidget window;
    window.show();
    int shown = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        QProgressDialog *dialog = shownDialog();
        if (!dialog || dialog->value() < 250)
            return;
        ++shown;
        EXPECT_FALSE(dialog->accessibleName().isEmpty());
        dialog->findChild<QPushButton *>()->click();
    });
    look.start(10);
    // As long as nobody cancels it.
    const LoadResult result = loadBeside(window, "town.dxf", [](const LoadOptions &options) {
        while (options.progress(0.5))
            std::this_thread::yield();
        LoadResult cancelled;
        cancelled.status = FileStatus::Cancelled;
        return cancelled;
    });
    EXPECT_EQ(result.status, FileStatus::Cancelled);
    EXPECT_GE(shown, 1);
    EXPECT_EQ(shownDialog(), nullptr);
}

TEST(LoadingWindow, AShortLoadShowsNothing)
{
    QWidget window;
    window.show();
    const LoadResult result = loadBeside(
        window, "town.dxf", [](const LoadOptions &) { return Drawing::read(Drawing::createNew()->write()); });
    EXPECT_TRUE(result.drawing);
}

TEST(LoadingWindow, TheFormerDrawingStaysWhenAFileCantBeOpened)
{
    Session session;
    session.setDrawing(Drawing::createNew());
    Drawing *former = session.drawing();
    MainWindow window(session);
    window.show();
    OpenedFile cancelled;
    cancelled.cancelled = true;
    cancelled.message = "cancelled";
    EXPECT_FALSE(window.showFile(std::move(cancelled)));
    EXPECT_EQ(session.drawing(), former);
}

TEST(UndoKeys, ReachTheDrawingWhileTheCommandLineIsEmpty)
{
    Session session;
    session.setDrawing(Drawing::createNew());
    MainWindow window(session);
    window.show();
    window.activateWindow();
    auto *input = window.findChild<CommandField *>();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    input->setFocus();
    session.commands().run(L"LAYER Parcels");
    ASSERT_TRUE(session.drawing()->findLayer(L"Parcels"));
    const auto press = [&](int key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(input, static_cast<Qt::Key>(key), modifiers);
    };
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(session.drawing()->findLayer(L"Parcels"));
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_TRUE(session.drawing()->findLayer(L"Parcels"));
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(session.drawing()->findLayer(L"Parcels"));
    // What is typed is taken back first.
    input->insert(QStringLiteral("li"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(input->text().isEmpty());
    EXPECT_TRUE(session.drawing()->findLayer(L"Parcels"));
}

TEST(RecoveryBox, NamesFileAndTimeAndOffersThreeWays)
{
    LeftDrawing left;
    left.path = "/plans/town.dxf";
    left.time = std::filesystem::file_time_type::clock::now();
    left.steps = 7;
    RecoveryQuestion question(left);
    EXPECT_TRUE(question.text().contains(QStringLiteral("/plans/town.dxf")));
    EXPECT_TRUE(question.informativeText().contains(QStringLiteral("7")));
    EXPECT_FALSE(question.informativeText().contains(QStringLiteral("without a name")));
    LeftDrawing changed = left;
    changed.fileChanged = true;
    EXPECT_TRUE(RecoveryQuestion(changed).informativeText().contains(QStringLiteral("without a name")));
    ASSERT_EQ(question.buttons().size(), 3);
    const std::vector<LeftChoice> expected{LeftChoice::Recover, LeftChoice::OpenSaved, LeftChoice::KeepForLater};
    std::vector<LeftChoice> chosen;
    for (QMessageBox::ButtonRole role :
         {QMessageBox::AcceptRole, QMessageBox::DestructiveRole, QMessageBox::RejectRole}) {
        RecoveryQuestion each(left);
        for (QAbstractButton *button : each.buttons())
            if (each.buttonRole(button) == role)
                QTimer::singleShot(0, button, &QAbstractButton::click);
        each.exec();
        chosen.push_back(each.choice());
    }
    EXPECT_EQ(chosen, expected);
    RecoveryQuestion escaped(left);
    QTimer::singleShot(0, &escaped, &QDialog::reject);
    escaped.exec();
    EXPECT_EQ(escaped.choice(), LeftChoice::KeepForLater);
}

} // namespace
} // namespace velmor
