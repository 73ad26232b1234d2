// What a validating edit on the real widget does when it loses the focus.
#include "controls/AMSEdits.h"

#include "tests/controls/RoutedEdits.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QVBoxLayout>

using namespace AMSEdit;
using namespace routed;
using testing::IsEmpty;

namespace {

/// Two edits in a window, the first with the focus.
template <class First, class Second>
struct Pair {
    QWidget window;
    First first;
    Second second;

    Pair()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(&first);
        layout->addWidget(&second);
        window.show();
        window.activateWindow();
        QApplication::processEvents();
        first.setFocus();
        QApplication::processEvents();
    }
    ~Pair()
    {
        first.setParent(nullptr);
        second.setParent(nullptr);
    }
};

} // namespace

TEST(EditFocus, LossPadsAndTellsThatEditingIsFinished)
{
    Pair<NumericEdit, NumericEdit> pair;
    ASSERT_TRUE(pair.first.hasFocus());
    pair.first.ModifyFlags(PadZerosAfterDecimal, 0);
    int finished = 0;
    QObject::connect(&pair.first, &QLineEdit::editingFinished, [&] { ++finished; });
    pair.first.Type(L'5');
    pair.second.setFocus();
    EXPECT_EQ(pair.first.GetText(), L"5.0000");
    EXPECT_EQ(finished, 1);
    EXPECT_TRUE(pair.second.hasFocus());
}

TEST(EditFocus, AListenerMaySetTheBoxWhenEditingIsFinished)
{
    Pair<NumericEdit, NumericEdit> pair;
    QObject::connect(&pair.first, &QLineEdit::editingFinished, [&] { pair.first.SetDouble(7, true); });
    pair.first.Type(L'5');
    const Heard heard(pair.first);
    pair.second.setFocus();
    EXPECT_EQ(pair.first.GetText(), L"7");
    EXPECT_THAT(heard.edited, IsEmpty());
}

TEST(EditFocus, AListenerThatSetsTheBoxPastItsRoutesIsFilteredToo)
{
    Pair<NumericEdit, NumericEdit> pair;
    QObject::connect(&pair.first, &QLineEdit::editingFinished,
                     [&] { static_cast<QLineEdit &>(pair.first).setText(QStringLiteral("a5b")); });
    pair.first.Type(L'1');
    const Heard heard(pair.first);
    pair.second.setFocus();
    EXPECT_EQ(pair.first.GetText(), L"5");
    ASSERT_FALSE(heard.changed.empty());
    EXPECT_EQ(heard.changed.back(), QStringLiteral("5"));
    EXPECT_THAT(heard.edited, IsEmpty());
}

TEST(EditFocus, AnInvalidValueTakesTheFocusBack)
{
    Pair<NumericEdit, NumericEdit> pair;
    pair.first.SetRange(1, 5);
    pair.first.ModifyFlags(KillFocusRefocusIfInvalid, 0);
    pair.first.SetWindowText(L"9");
    pair.second.setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(pair.first.hasFocus());
    EXPECT_EQ(pair.first.focusTakes, 1);
}

TEST(EditFocus, TwoBoxesDoNotFightForTheFocus)
{
    Pair<NumericEdit, NumericEdit> pair;
    for (NumericEdit *edit : {&pair.first, &pair.second}) {
        edit->SetRange(1, 5);
        edit->ModifyFlags(KillFocusMessageIfEmpty | KillFocusBeepIfEmpty, 0);
    }
    pair.second.setFocus();
    for (int i = 0; i < 10; ++i)
        QApplication::processEvents();
    EXPECT_TRUE(pair.first.hasFocus());
    EXPECT_EQ(pair.first.messages.size(), 1u);
    EXPECT_THAT(pair.second.messages, IsEmpty());
    EXPECT_EQ(pair.second.beeps, 0);
}

TEST(EditFocus, APopUpTakesNoFocus)
{
    NumericEdit edit;
    edit.ModifyFlags(KillFocusBeepIfEmpty, 0);
    for (const auto reason : {Qt::PopupFocusReason, Qt::MenuBarFocusReason}) {
        QFocusEvent event(QEvent::FocusOut, reason);
        QApplication::sendEvent(&edit, &event);
    }
    EXPECT_EQ(edit.beeps, 0);
    QFocusEvent event(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(&edit, &event);
    EXPECT_EQ(edit.beeps, 1);
}

TEST(EditFocus, TheMessageIsAModalBoxWithTheWarningIcon)
{
    const ToolkitForTests toolkit;
    CAMSNumericEdit edit(9, 4, kNoSettings);
    edit.SetRange(1, 5);
    QString shown;
    bool warns = false, modal = false;
    QTimer::singleShot(0, [&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            shown = box->text();
            warns = box->icon() == QMessageBox::Warning;
            modal = box->isModal();
            box->accept();
        }
    });
    EXPECT_FALSE(edit.CheckIfValid(true));
    EXPECT_EQ(shown, QStringLiteral("Please specify a numeric value between 1 and 5."));
    EXPECT_TRUE(warns);
    EXPECT_TRUE(modal);
}
