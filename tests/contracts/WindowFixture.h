// The program's window with a person at it: steps that wait for their turn, whatever loop runs.
#pragma once

#include "tests/contracts/ContractsFixture.h"

#include "host/editor/CommandLine.h"
#include "host/editor/MainWindow.h"
#include "host/editor/PointerTip.h"
#include "host/editor/Viewport.h"
#include "host/services/Messages.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <deque>
#include <utility>

namespace velmor::test {

class WindowFixture : public ContractsFixture {
protected:
    /// Shows the window on what the drawing holds now; all of -10 to 110 is in view.
    void showWindow()
    {
        window = std::make_unique<MainWindow>(session);
        window->show();
        viewport = window->findChild<Viewport *>();
        for (QLineEdit *edit : window->findChildren<QLineEdit *>())
            if (edit->window() == window.get() && !input)
                input = edit;
        QCoreApplication::processEvents();
        viewport->showExtents({-10, -10, 110, 110});
    }

    /// Something that the person does as soon as the program waits for it.
    void then(std::function<bool()> isTurn, std::function<void()> act)
    {
        steps.push_back({std::move(isTurn), std::move(act)});
        schedule();
    }
    /// The same, before all that were told so far.
    void first(std::function<bool()> isTurn, std::function<void()> act)
    {
        steps.push_front({std::move(isTurn), std::move(act)});
        schedule();
    }
    /// When the program asks for something.
    void atPrompt(std::function<void()> act)
    {
        then([this] { return isPrompting(); }, std::move(act));
    }
    void chooseInMenu(const QString &text)
    {
        then([] { return qobject_cast<QMenu *>(QApplication::activePopupWidget()) != nullptr; },
             [text] {
                 auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
                 for (QAction *action : menu->actions())
                     if (action->text().remove(QLatin1Char('&')) == text && action->isEnabled()) {
                         menu->setActiveAction(action);
                         QTest::keyClick(menu, Qt::Key_Return);
                         return;
                     }
                 ADD_FAILURE() << "no such entry: " << text.toStdString();
                 menu->close();
             });
    }
    void click(double x, double y) { QTest::mouseClick(viewport, Qt::LeftButton, {}, pixelOf(x, y)); }
    void drag(double x1, double y1, double x2, double y2)
    {
        QTest::mousePress(viewport, Qt::LeftButton, {}, pixelOf(x1, y1));
        QTest::mouseMove(viewport, pixelOf((x1 + x2) / 2, (y1 + y2) / 2));
        QTest::mouseMove(viewport, pixelOf(x2, y2));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, pixelOf(x2, y2));
    }
    void key(Qt::Key which) { QTest::keyClick(viewport, which); }
    QPoint pixelOf(double x, double y) const { return viewport->view().toView(x, y).toPoint(); }
    QImage shot() { return viewport->grab().toImage(); }

    bool isPrompting() const
    {
        const auto labels = window->findChild<CommandLine *>()->findChildren<QLabel *>();
        const QString idle = QString::fromStdWString(uiText("ui.command.idle"));
        return std::none_of(labels.begin(), labels.end(), [&](const QLabel *l) { return l->text() == idle; });
    }

    std::unique_ptr<MainWindow> window;
    Viewport *viewport = nullptr;
    QLineEdit *input = nullptr;

private:
    struct Step {
        std::function<bool()> isTurn;
        std::function<void()> act;
    };
    /// A turn of its own each time, since one that still works is not repeated in the loops inside of it.
    void schedule()
    {
        if (std::exchange(scheduled, true))
            return;
        QTimer::singleShot(0, &context, [this] {
            scheduled = false;
            takeTurn();
        });
    }
    void takeTurn()
    {
        if (steps.empty())
            return;
        // Moving the mouse handles events, too: the next step waits for this one, unless it runs a loop of its own.
        const int level = QThread::currentThread()->loopLevel();
        if (level == actingAt || !steps.front().isTurn())
            return schedule();
        const auto act = std::move(steps.front().act);
        steps.pop_front();
        schedule();
        const int before = std::exchange(actingAt, level);
        act();
        actingAt = before;
    }
    QObject context;
    bool scheduled = false;
    int actingAt = -1; ///< depth of the loop in which a step is at work
    std::deque<Step> steps;
};

} // namespace velmor::test
