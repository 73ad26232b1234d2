#include "contracts/HostDialog.h"
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Journal.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::EditorFixture;

class TestDialog : public CAdUiBaseDialog {
public:
    TestDialog()
    {
        auto *layout = new QVBoxLayout(this);
        const auto add = [&](QWidget *widget, int id) {
            widget->setProperty(kControlIdProperty, id);
            layout->addWidget(widget);
        };
        add(new QPushButton(QStringLiteral("OK")), 1);
        add(new QPushButton(QStringLiteral("Close")), 2);
        add(new QLineEdit, 10);
        add(new QLabel(QStringLiteral("label")), 11);
    }
    using CAdUiBaseDialog::EndDialog;

    bool refuseCancel = false;
    bool endAtStart = false;
    int inits = 0, cancels = 0, oks = 0;

protected:
    bool OnInitDialog() override
    {
        ++inits;
        if (endAtStart)
            EndDialog(7);
        return CAdUiBaseDialog::OnInitDialog();
    }
    void OnCancel() override
    {
        ++cancels;
        if (!refuseCancel)
            CAdUiBaseDialog::OnCancel();
    }
    void OnOK() override
    {
        ++oks;
        CAdUiBaseDialog::OnOK();
    }
};

/// A window stands in for a person.
struct PersonView final : SessionView {
    void showDrawing(Drawing *) override {}
    void redraw() override {}
    void zoomTo(const Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
};

class HostDialogTest : public EditorFixture {
protected:
    HostDialogTest() { test::application(); }
    int drive(TestDialog &dialog, DialogDriver driver)
    {
        session.setDialogDriver(std::move(driver));
        const int result = dialog.DoModal();
        session.setDialogDriver({});
        return result;
    }
    static void press(QWidget &widget, int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
};

TEST_F(HostDialogTest, ADriverSeesTheDialogOpenAndADialogLeftOpenIsCancelled)
{
    TestDialog dialog;
    bool seen = false;
    EXPECT_EQ(drive(dialog, [&](CAdUiBaseDialog &shown) { seen = &shown == &dialog && shown.isVisible(); }),
              CAdUiBaseDialog::kCancel);
    EXPECT_TRUE(seen);
    EXPECT_EQ(dialog.inits, 1);
    EXPECT_EQ(dialog.cancels, 1);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(HostDialogTest, ADialogWithNobodyToEndItIsCancelledAtOnce)
{
    TestDialog dialog;
    EXPECT_EQ(dialog.DoModal(), CAdUiBaseDialog::kCancel);
    EXPECT_EQ(dialog.cancels, 1);
}

TEST_F(HostDialogTest, ADialogThatRefusesToBeCancelledEndsAllTheSameWhenNobodyIsLeft)
{
    TestDialog dialog;
    dialog.refuseCancel = true;
    EXPECT_EQ(dialog.DoModal(), CAdUiBaseDialog::kCancel);
}

TEST_F(HostDialogTest, EndDialogGivesTheResult)
{
    TestDialog dialog;
    EXPECT_EQ(drive(dialog, [&](CAdUiBaseDialog &shown) { shown.EndDialog(42); }), 42);
    EXPECT_EQ(dialog.cancels, 0);
}

TEST_F(HostDialogTest, ADialogThatEndsWhileItIsSetUpIsNeverShown)
{
    TestDialog dialog;
    dialog.endAtStart = true;
    bool driven = false;
    EXPECT_EQ(drive(dialog, [&](CAdUiBaseDialog &) { driven = true; }), 7);
    EXPECT_FALSE(driven);
}

TEST_F(HostDialogTest, ADialogMayRunAgain)
{
    TestDialog dialog;
    EXPECT_EQ(drive(dialog, [](CAdUiBaseDialog &shown) { shown.EndDialog(5); }), 5);
    EXPECT_EQ(drive(dialog, [](CAdUiBaseDialog &shown) { shown.Control<QPushButton>(1)->click(); }),
              CAdUiBaseDialog::kOk);
    EXPECT_EQ(dialog.oks, 1);
    EXPECT_EQ(dialog.inits, 2);
}

TEST_F(HostDialogTest, ControlTwoEscapeAndTheWindowsButtonTakeTheCancelPath)
{
    for (const auto &way : std::vector<DialogDriver>{
             [](CAdUiBaseDialog &shown) { shown.Control<QPushButton>(2)->click(); },
             [](CAdUiBaseDialog &shown) { press(shown, Qt::Key_Escape); },
             [](CAdUiBaseDialog &shown) { shown.close(); },
         }) {
        TestDialog dialog;
        bool open = true;
        EXPECT_EQ(drive(dialog,
                        [&](CAdUiBaseDialog &shown) {
                            way(shown);
                            open = shown.isVisible();
                        }),
                  CAdUiBaseDialog::kCancel);
        EXPECT_FALSE(open);
        EXPECT_EQ(dialog.cancels, 1);
    }
}

TEST_F(HostDialogTest, ACancelPathThatKeepsTheDialogKeepsItOpen)
{
    TestDialog dialog;
    dialog.refuseCancel = true;
    EXPECT_EQ(drive(dialog,
                    [&](CAdUiBaseDialog &shown) {
                        shown.close();
                        EXPECT_TRUE(shown.isVisible());
                        shown.EndDialog(9);
                    }),
              9);
}

TEST_F(HostDialogTest, EnterEndsNoDialog)
{
    TestDialog dialog;
    drive(dialog, [&](CAdUiBaseDialog &shown) {
        press(shown, Qt::Key_Return);
        press(*shown.GetDlgItem(10), Qt::Key_Enter);
        EXPECT_TRUE(shown.isVisible());
    });
    EXPECT_EQ(dialog.oks, 0);
}

TEST_F(HostDialogTest, ControlsAreFoundByNumberAndKind)
{
    TestDialog dialog;
    EXPECT_NE(dialog.Control<QLineEdit>(10), nullptr);
    EXPECT_EQ(dialog.Control<QPushButton>(10), nullptr);
    EXPECT_EQ(dialog.GetDlgItem(99), nullptr);
    dialog.EnableControl(10, false);
    EXPECT_FALSE(dialog.GetDlgItem(10)->isEnabled());
    dialog.EnableControl(99, false); // none: nothing happens
    delete dialog.GetDlgItem(11);
    EXPECT_EQ(dialog.GetDlgItem(11), nullptr);
    auto *late = new QLabel(&dialog);
    late->setProperty(kControlIdProperty, 11);
    EXPECT_EQ(dialog.GetDlgItem(11), late);
}

TEST_F(HostDialogTest, AnEditorCommandHidesTheDialogAndBringsItBackWithItsFocus)
{
    TestDialog dialog;
    drive(dialog, [&](CAdUiBaseDialog &shown) {
        shown.GetDlgItem(10)->setFocus();
        shown.BeginEditorCommand();
        EXPECT_FALSE(shown.isVisible());
        EXPECT_TRUE(shown.IsEditorCommandRunning());
        shown.CompleteEditorCommand(1);
        EXPECT_TRUE(shown.isVisible());
        EXPECT_FALSE(shown.IsEditorCommandRunning());
        EXPECT_EQ(shown.focusWidget(), shown.GetDlgItem(10));
    });
}

TEST_F(HostDialogTest, WhatADialogAsksOfTheHostStandsInTheJournal)
{
    TestDialog dialog;
    Journal::instance().setRecording(true);
    drive(dialog, [](CAdUiBaseDialog &shown) {
        shown.BeginEditorCommand();
        shown.CompleteEditorCommand(0);
        shown.EndDialog(42);
    });
    Journal::instance().setRecording(false);
    const std::vector<JournalEntry> expected{{"CAdUiBaseDialog::BeginEditorCommand", {}},
                                             {"CAdUiBaseDialog::CompleteEditorCommand", {"0"}},
                                             {"CAdUiBaseDialog::EndDialog", {"42"}}};
    EXPECT_EQ(Journal::instance().entries(), expected);
}

TEST_F(HostDialogTest, TheOpenersAreHiddenToo)
{
    TestDialog outer, inner;
    int depth = 0;
    bool outerHidden = false, outerBack = false;
    drive(outer, [&](CAdUiBaseDialog &shown) {
        if (depth++ == 0) {
            EXPECT_EQ(inner.DoModal(), CAdUiBaseDialog::kCancel);
            EXPECT_TRUE(shown.isVisible());
            return;
        }
        shown.BeginEditorCommand();
        outerHidden = !outer.isVisible();
        shown.CompleteEditorCommand(1);
        outerBack = outer.isVisible();
    });
    EXPECT_TRUE(outerHidden);
    EXPECT_TRUE(outerBack);
}

TEST_F(HostDialogTest, EditorCommandsNest)
{
    TestDialog dialog;
    drive(dialog, [&](CAdUiBaseDialog &shown) {
        shown.BeginEditorCommand();
        shown.BeginEditorCommand();
        shown.CompleteEditorCommand(1);
        EXPECT_FALSE(shown.isVisible());
        shown.CompleteEditorCommand(1);
        EXPECT_TRUE(shown.isVisible());
        shown.CompleteEditorCommand(1); // one too many changes nothing
        EXPECT_TRUE(shown.isVisible());
    });
}

TEST_F(HostDialogTest, ADialogThatEndsDuringAnEditorCommandStaysHidden)
{
    TestDialog dialog;
    drive(dialog, [&](CAdUiBaseDialog &shown) {
        shown.BeginEditorCommand();
        shown.EndDialog(3);
        shown.CompleteEditorCommand(1);
        EXPECT_FALSE(shown.isVisible());
    });
}

TEST_F(HostDialogTest, WithAPersonTheDialogRunsTillItIsEndedThoughItHidesMeanwhile)
{
    PersonView view;
    session.setView(&view);
    TestDialog dialog;
    std::vector<bool> visible;
    QTimer::singleShot(0, &dialog, [&] {
        visible.push_back(dialog.isVisible());
        dialog.BeginEditorCommand();
        QEventLoop pick; // the pick's own loop
        QTimer::singleShot(0, &pick, [&] { pick.quit(); });
        pick.exec();
        visible.push_back(dialog.isVisible());
        dialog.CompleteEditorCommand(1);
        visible.push_back(dialog.isVisible());
        QTimer::singleShot(0, &dialog, [&] { dialog.Control<QPushButton>(2)->click(); });
    });
    EXPECT_EQ(dialog.DoModal(), CAdUiBaseDialog::kCancel);
    session.setView(nullptr);
    EXPECT_THAT(visible, testing::ElementsAre(true, false, true));
}

TEST_F(HostDialogTest, WhatLeavesAHandlerAtTheWindowEndsTheHandlerAlone)
{
    PersonView view;
    session.setView(&view);
    TestDialog dialog;
    dialog.setWindowTitle(QStringLiteral("Areas"));
    auto *work = new QPushButton(&dialog);
    QObject::connect(work, &QPushButton::clicked, &dialog, [&] {
        dialog.RunHandler([&] {
            line(0, 0, 1, 1);
            dialog.BeginEditorCommand();
            throw std::runtime_error("the pump is dry");
        });
    });
    bool visible = false, editorCommand = true;
    QTimer::singleShot(0, &dialog, [&] {
        work->click();
        visible = dialog.isVisible();
        editorCommand = dialog.IsEditorCommandRunning();
        QTimer::singleShot(0, &dialog, [&] { dialog.Control<QPushButton>(2)->click(); });
    });
    EXPECT_EQ(dialog.DoModal(), CAdUiBaseDialog::kCancel);
    session.setView(nullptr);
    EXPECT_TRUE(visible);
    EXPECT_FALSE(editorCommand);
    EXPECT_THAT(session.alerts(), testing::ElementsAre(L"Areas failed and was taken back: the pump is dry"));
    ASSERT_EQ(entityCount(), 1u);
    EXPECT_TRUE(drawing().modelSpace().entities().front()->isErased());
}

TEST_F(HostDialogTest, ACancelPathThatThrowsEndsTheDialogAllTheSame)
{
    struct Failing final : TestDialog {
        void OnCancel() override { throw std::runtime_error("no settings"); }
    } dialog;
    EXPECT_EQ(drive(dialog,
                    [&](CAdUiBaseDialog &shown) {
                        shown.close();
                        EXPECT_FALSE(shown.isVisible());
                    }),
              CAdUiBaseDialog::kCancel);
    EXPECT_EQ(session.alerts().size(), 1u);
}

TEST_F(HostDialogTest, AHandlerThatAnotherOneSetsOffBelongsToItsUndoStep)
{
    auto &log = drawing().component<ChangeLog>();
    TestDialog dialog;
    dialog.setWindowTitle(QStringLiteral("Areas"));
    drive(dialog, [&](CAdUiBaseDialog &shown) {
        shown.RunHandler([&] {
            line(0, 0, 1, 0);
            shown.RunHandler([&] { line(1, 0, 2, 0); });
            line(2, 0, 3, 0);
        });
        EXPECT_EQ(log.undoCount(), 1u);
        EXPECT_EQ(log.undoName(), L"Areas");
        shown.RunHandler([&] { line(3, 0, 4, 0); });
        EXPECT_EQ(log.undoCount(), 2u);
    });
    // One that fails is taken back alone.
    drive(dialog, [&](CAdUiBaseDialog &shown) {
        shown.RunHandler([&] {
            shown.RunHandler([&] {
                line(4, 0, 5, 0);
                throw std::runtime_error("inner");
            });
            line(5, 0, 6, 0);
        });
    });
    EXPECT_EQ(log.undoCount(), 3u);
    EXPECT_EQ(session.alerts().size(), 1u);
    EXPECT_TRUE(drawing().modelSpace().entities().at(4)->isErased());
    EXPECT_FALSE(drawing().modelSpace().entities().at(5)->isErased());
}

TEST_F(HostDialogTest, TheEndOfADialogAndWhatItsCommandDoesBehindItBelongToTheLastHandlersStep)
{
    struct Closing final : TestDialog {
        std::function<void()> close;
        void OnCancel() override
        {
            close();
            CAdUiBaseDialog::OnCancel();
        }
    };
    auto &log = drawing().component<ChangeLog>();
    session.commands().addWork(L"AREAS", 0, [&](Asker &) {
        Closing dialog;
        dialog.setWindowTitle(QStringLiteral("Areas"));
        dialog.close = [&] { line(1, 0, 2, 0); };
        drive(dialog, [&](CAdUiBaseDialog &shown) { shown.RunHandler([&] { line(0, 0, 1, 0); }); });
        line(2, 0, 3, 0);
        return Command::Next::Commit;
    });
    EXPECT_EQ(session.commands().start(L"AREAS"), RunStatus::Done);
    EXPECT_EQ(log.undoCount(), 1u);
    EXPECT_EQ(log.undoName(), L"Areas");
}

TEST_F(HostDialogTest, ADriverThatThrowsLeavesNoDialogOpen)
{
    TestDialog dialog;
    EXPECT_THROW(drive(dialog, [](CAdUiBaseDialog &) { throw std::runtime_error("driver"); }), std::runtime_error);
    session.setDialogDriver({});
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.DoModal(), CAdUiBaseDialog::kCancel);
}

TEST(BitmapButton, AnUnknownIconChangesNothing)
{
    test::application();
    ZEMGis::Utility::CZEMBitmapButton button;
    button.setText(QStringLiteral("Zoom"));
    button.SetButtonIcon(L"no such icon", 1, 16, 16, 0);
    EXPECT_TRUE(button.icon().isNull());
    EXPECT_EQ(button.text(), QStringLiteral("Zoom"));
    button.SetToolTip(L"tip");
    EXPECT_EQ(button.toolTip(), QStringLiteral("tip"));
}

} // namespace
} // namespace velmor
