// The manual definition at the window: a person clicks, the rubber band follows, snaps work where they are meant to.
#include "tests/definition/manual_fixture.h"

#include "host/editor/MainWindow.h"
#include "host/editor/Viewport.h"

#include <QMessageBox>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class ManualWindow : public ManualDefinitionTest {
protected:
    static constexpr int kEnds = 1; ///< object snap

    ManualWindow() : m_window(std::make_unique<velmor::MainWindow>(m_session))
    {
        m_session.setVariable(L"OSMODE", kEnds);
        m_window->show();
        m_viewport = m_window->findChild<velmor::Viewport *>();
        QTest::qWait(0);
        m_session.view()->zoomTo({-20, -20, 320, 120});
    }
    ~ManualWindow() override
    {
        m_person.reset();
        m_window.reset();
    }

    QPoint pixelOf(double x, double y) const { return m_viewport->view().toView(x, y).toPoint(); }
    /// A place that many pixels right of and above another.
    QPoint besides(double x, double y, int pixels) const { return pixelOf(x, y) + QPoint(pixels, -pixels); }
    void clickAt(const QPoint &pixel)
    {
        QTest::mouseMove(m_viewport, pixel);
        QTest::mouseClick(m_viewport, Qt::LeftButton, {}, pixel);
    }
    /// Does one thing at each prompt that follows, once the window asks it.
    void meanwhile(std::vector<std::function<void()>> actions)
    {
        m_person.reset();
        m_person = std::make_unique<CPerson>(m_session, std::move(actions));
    }

    /// Passes the prompts on to the window and acts a moment later.
    class CPerson : public velmor::PromptSource {
    public:
        CPerson(velmor::Session &session, std::vector<std::function<void()>> actions)
            : m_session(session), m_window(session.promptSource()), m_actions(std::move(actions))
        {
            m_session.setPromptSource(this);
        }
        ~CPerson() override { m_session.setPromptSource(m_window); }
        std::optional<velmor::Answer> ask(const velmor::Prompt &prompt) override
        {
            EXPECT_LT(m_asked, m_actions.size());
            if (m_asked == m_actions.size())
                return std::nullopt;
            QTimer::singleShot(0, m_actions[m_asked++]);
            return m_window->ask(prompt);
        }

    private:
        velmor::Session &m_session;
        velmor::PromptSource *m_window;
        std::vector<std::function<void()>> m_actions;
        std::size_t m_asked = 0;
    };

    std::unique_ptr<velmor::MainWindow> m_window;
    velmor::Viewport *m_viewport = nullptr;
    std::unique_ptr<CPerson> m_person;
};

TEST_F(ManualWindow, APointIsTakenWhereItIsClickedAlsoBesideAnEnd)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        meanwhile({[&] {
            EXPECT_FALSE(dialog.isVisible());
            QTest::mouseMove(m_viewport, besides(0, 0, 4));
            EXPECT_FALSE(m_viewport->snapPoint());
            clickAt(besides(0, 0, 4)); // a snap would take the corner, which lies in no region
        }});
        dialog.click(208);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 1.0000 chosen"});
    });
    EXPECT_EQ(snaps(), kEnds);
}

TEST_F(ManualWindow, CornersSnapToTheEndsThatAreClickedNearby)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        meanwhile({[&] { clickAt(besides(0, 0, 4)); }, [&] { clickAt(besides(100, 0, 4)); },
                   [&] { clickAt(besides(100, 100, 4)); }, [&] { QTest::keyClick(m_viewport, Qt::Key_Return); }});
        dialog.click(239);
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 0.5000 chosen"});
        EXPECT_THAT(verticesOf(dialog.LastBoundary()),
                    ElementsAre(std::pair(0, 0), std::pair(100, 0), std::pair(100, 100), std::pair(100, 100)));
    });
}

TEST_F(ManualWindow, ARubberBandRunsFromTheLastCornerToThePointer)
{
    const QPoint from = pixelOf(20, 50), to = pixelOf(80, 50);
    // The band is dashed: how many columns between both differ.
    const auto changed = [&](const QImage &a, const QImage &b) {
        int columns = 0;
        for (int x = from.x() + 10; x < to.x() - 10; ++x) {
            bool differs = false;
            for (int dy = -2; dy <= 2; ++dy)
                differs = differs || a.pixel(x, from.y() + dy) != b.pixel(x, from.y() + dy);
            columns += differs;
        }
        return columns;
    };
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        QImage before, band;
        meanwhile({[&] {
                       QTest::mouseMove(m_viewport, to);
                       before = m_viewport->grab().toImage();
                       clickAt(from);
                   },
                   [&] {
                       QTest::mouseMove(m_viewport, to);
                       band = m_viewport->grab().toImage();
                       QTest::keyClick(m_viewport, Qt::Key_Escape);
                   }});
        dialog.click(239);
        ASSERT_FALSE(band.isNull());
        EXPECT_GT(changed(before, band), (to.x() - from.x()) / 4);
        EXPECT_THAT(rows(dialog), IsEmpty());
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(ManualWindow, APolylineIsPickedByAClickOnItAndEscapeLeavesEachPrompt)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        meanwhile({[&] { clickAt(pixelOf(50, 100)); }});
        dialog.click(209);
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 1.0000 chosen"});
        for (const int control : {208, 209, 239}) {
            meanwhile({[&] { QTest::keyClick(m_viewport, Qt::Key_Escape); }});
            dialog.click(control);
            EXPECT_TRUE(dialog.isVisible()) << control;
            EXPECT_THAT(rows(dialog), IsEmpty()) << control;
            EXPECT_EQ(snaps(), kEnds) << control;
        }
    });
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ManualWindow, AFailedPickShowsWhereItLeakedWhileItIsToldAndTellsTheGap)
{
    // The fourth parcel: its left side stops 3 short of its first corner.
    addLine(400, 0, 500, 0);
    addLine(500, 0, 500, 100);
    addLine(500, 100, 400, 100);
    addLine(400, 100, 400, 3);
    m_session.view()->zoomTo({350, -50, 550, 150});
    const auto red = [&] {
        const QImage picture = m_viewport->grab().toImage();
        const QPoint gap = pixelOf(400, 1.5);
        int found = 0;
        for (int dx = -40; dx <= 40; ++dx) {
            for (int dy = -40; dy <= 40; ++dy) {
                const QColor pixel = picture.pixelColor(gap + QPoint(dx, dy));
                found += pixel.red() > 200 && pixel.green() < 80 && pixel.blue() < 80;
            }
        }
        return found;
    };
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        EXPECT_EQ(red(), 0);
        int whileTold = 0;
        QString told;
        std::function<void()> closeAlert = [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box) {
                QTimer::singleShot(0, m_viewport, closeAlert);
                return;
            }
            whileTold = red();
            told = m_window->statusBar()->currentMessage();
            box->accept();
        };
        meanwhile({[&] {
            QTimer::singleShot(0, m_viewport, closeAlert);
            clickAt(pixelOf(450, 50));
        }});
        dialog.click(208);
        EXPECT_THAT(alerts(), ElementsAre(message(2002)));
        EXPECT_GT(whileTold, 20);
        EXPECT_TRUE(told.contains("400,3")) << told.toStdString();
        EXPECT_GT(red(), 20) << "until the next pick";
        meanwhile({[&] { clickAt(pixelOf(450, 120)); }});
        QTimer::singleShot(0, m_viewport, closeAlert); // nothing goes round that point
        dialog.click(208);
        EXPECT_EQ(red(), 0);
    });
}

} // namespace
