// Cells of the extended list that are edited in place.
#include "tests/controls/ListFixture.h"

#include "contracts/HostDialog.h"
#include "controls/AMSEdits.h"

using list_clicks::cellOf;
using list_clicks::clickCell;
using list_clicks::pressKey;
using list_clicks::typeIntoCell;
using testing::ElementsAre;
using testing::IsEmpty;

class ListEditing : public ListWidgetTest {
protected:
    /// Types over the text of the open editor and commits by Enter.
    void Commit(const QString &text)
    {
        list->GetEditBox()->selectAll();
        list->GetEditBox()->insert(text);
        pressKey(*list->GetEditBox(), Qt::Key_Return);
    }
};

// --- Opening ---------------------------------------------------------------------------------------------------------

TEST_F(ListEditing, AClickOpensTheEditorOverItsCell)
{
    FillEdited({L"a", L"b"}, false);
    list->SetItemText(1, 1, L"12.5");
    clickCell(*list, 1, 1);

    ASSERT_TRUE(list->IsEditing());
    const QLineEdit &edit = *list->GetEditBox();
    EXPECT_EQ(edit.property(kControlIdProperty).toInt(), 713);
    EXPECT_EQ(edit.geometry(), cellOf(*list, 1, 1).adjusted(1, 0, 0, -1));
    EXPECT_EQ(edit.text(), QStringLiteral("12.5"));
    EXPECT_EQ(edit.selectedText(), QStringLiteral("12.5"));
    EXPECT_TRUE(edit.hasFocus());
    EXPECT_FALSE(edit.accessibleName().isEmpty());
}

TEST_F(ListEditing, TheEditorStandsAsItsColumnDoes)
{
    FillEdited({L"a"}, false);
    list->AddEditColumn(0);
    list->AddEditColumn(2);
    clickCell(*list, 0, 0);
    EXPECT_TRUE(list->GetEditBox()->alignment() & Qt::AlignLeft);
    clickCell(*list, 0, 1);
    EXPECT_TRUE(list->GetEditBox()->alignment() & Qt::AlignRight);
    clickCell(*list, 0, 2);
    EXPECT_TRUE(list->GetEditBox()->alignment() & Qt::AlignHCenter);
}

TEST_F(ListEditing, AColumnThatIsNotEditedOpensNone)
{
    FillEdited({L"a"}, false);
    clickCell(*list, 0, 0);
    EXPECT_FALSE(list->IsEditing());
    EXPECT_FALSE(list->EditCell(0, 0));
    EXPECT_FALSE(list->EditCell(1, 1));
    list->ClearEditColumns();
    clickCell(*list, 0, 1);
    EXPECT_FALSE(list->IsEditing());
}

TEST_F(ListEditing, TheEditorGoesWithItsCell)
{
    FillEdited({L"a", L"b"}, false);
    clickCell(*list, 1, 1);
    list->SetColumnWidth(0, 60);
    EXPECT_EQ(list->GetEditBox()->geometry(), cellOf(*list, 1, 1).adjusted(1, 0, 0, -1));

    while (list->GetItemCount() < 100)
        list->InsertItem(list->GetItemCount(), L"more");
    QApplication::processEvents();
    list->verticalScrollBar()->setValue(1);
    EXPECT_EQ(list->GetEditBox()->geometry(), cellOf(*list, 1, 1).adjusted(1, 0, 0, -1));
    EXPECT_TRUE(list->IsEditing());
}

TEST_F(ListEditing, F2EditsTheCurrentCell)
{
    FillEdited({L"a", L"b"}, false);
    list->setFocus();
    list->setCurrentIndex(list->model()->index(1, 1));
    pressKey(*list, Qt::Key_F2);

    ASSERT_TRUE(list->IsEditing());
    EXPECT_EQ(list->GetCurrentRow(), 1);
    Commit(QStringLiteral("x"));
    EXPECT_EQ(Text(1, 1), L"x");
    EXPECT_TRUE(list->hasFocus());
}

// --- Ending ----------------------------------------------------------------------------------------------------------

TEST_F(ListEditing, EnterTakesTheTextOverAndTells)
{
    FillEdited({L"a"}, false);
    EXPECT_TRUE(typeIntoCell(*list, 0, 1, QStringLiteral("words")));

    EXPECT_EQ(Text(0, 1), L"words");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
    EXPECT_FALSE(list->IsEditing());
    EXPECT_TRUE(list->hasFocus());
}

TEST_F(ListEditing, LosingTheFocusTakesTheTextOver)
{
    FillEdited({L"a"}, false);
    clickCell(*list, 0, 1);
    list->GetEditBox()->insert(QStringLiteral("words"));
    other->setFocus();

    EXPECT_EQ(Text(0, 1), L"words");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
    EXPECT_FALSE(list->IsEditing());
    EXPECT_TRUE(other->hasFocus());
}

TEST_F(ListEditing, AClickOnAnotherCellTakesTheTextOverFirst)
{
    FillEdited({L"a", L"b"}, false);
    clickCell(*list, 0, 1);
    list->GetEditBox()->insert(QStringLiteral("one"));
    clickCell(*list, 1, 1);

    EXPECT_EQ(Text(0, 1), L"one");
    ASSERT_TRUE(list->IsEditing());
    EXPECT_EQ(list->GetCurrentRow(), 1);
    EXPECT_EQ(list->GetEditBox()->text(), QString());
}

TEST_F(ListEditing, EscapeAbandonsAndGoesNoFurther)
{
    FillEdited({L"a"}, false);
    list->SetItemText(0, 1, L"old");
    clickCell(*list, 0, 1);
    list->GetEditBox()->insert(QStringLiteral("new"));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    escape.ignore();
    QApplication::sendEvent(list->GetEditBox(), &escape);

    EXPECT_TRUE(escape.isAccepted());
    EXPECT_FALSE(list->IsEditing());
    EXPECT_EQ(Text(0, 1), L"old");
    EXPECT_THAT(told, IsEmpty());
    EXPECT_TRUE(list->hasFocus());
}

TEST_F(ListEditing, EscapeWithoutAnEditorGoesToTheDialog)
{
    FillEdited({L"a"}, false);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(list, &escape);

    EXPECT_FALSE(escape.isAccepted());
}

TEST_F(ListEditing, EndingFromOutsideCommitsOrAbandons)
{
    FillEdited({L"a"}, false);
    EXPECT_FALSE(list->CommitEditing());
    EXPECT_FALSE(list->AbandonEditing());
    EXPECT_TRUE(list->EditCell(0, 1));
    list->GetEditBox()->setText(QStringLiteral("one"));
    EXPECT_TRUE(list->CommitEditing());
    EXPECT_EQ(Text(0, 1), L"one");
    EXPECT_TRUE(list->EditCell(0, 1));
    list->GetEditBox()->setText(QStringLiteral("two"));
    EXPECT_TRUE(list->AbandonEditing());
    EXPECT_EQ(Text(0, 1), L"one");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListEditing, ATextLeftAsItWasIsNotTold)
{
    FillEdited({L"a"}, false);
    list->SetItemText(0, 1, L"same");
    typeIntoCell(*list, 0, 1, QStringLiteral("same"));

    EXPECT_THAT(told, IsEmpty());
    EXPECT_FALSE(list->IsEditing());
}

TEST_F(ListEditing, AnEmptyTextIsATextToo)
{
    FillEdited({L"a"}, false);
    list->SetItemText(0, 1, L"old");
    typeIntoCell(*list, 0, 1, QString());

    EXPECT_EQ(Text(0, 1), L"");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListEditing, AMenuOverTheEditorEndsNothing)
{
    FillEdited({L"a"}, false);
    clickCell(*list, 0, 1);
    QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(list->GetEditBox(), &menu);

    EXPECT_TRUE(list->IsEditing());
}

TEST_F(ListEditing, AnEditorWhoseRowIsGoneStaysAndChangesNothing)
{
    FillEdited({L"a"}, false);
    clickCell(*list, 0, 1);
    list->GetEditBox()->insert(QStringLiteral("x"));
    list->DeleteAllItems();
    other->setFocus();

    EXPECT_TRUE(list->IsEditing());
    EXPECT_THAT(told, IsEmpty());
    list->InsertItem(0, L"new");
    clickCell(*list, 0, 0); // with the next click it is gone, at the latest with the next editor
    clickCell(*list, 0, 1);
    EXPECT_EQ(list->GetEditBox()->text(), list->IsEditing() ? QString::fromStdWString(Text(0, 1)) : QString());
}

TEST_F(ListEditing, AClickThatIsRefusedLeavesTheEditorOpen)
{
    FillEdited({L"a", L"b"}, false);
    EXPECT_EQ(list->focusPolicy(), Qt::TabFocus); // a click brings the focus only where it goes on
    list->SetEnabled(1, false);
    clickCell(*list, 0, 1);
    list->GetEditBox()->insert(QStringLiteral("half"));
    clickCell(*list, 1, 0);

    EXPECT_TRUE(list->IsEditing());
    EXPECT_TRUE(list->GetEditBox()->hasFocus());
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListEditing, AClickOnACheckBoxIsToldBeforeTheOpenEditorIs)
{
    FillEdited({L"a", L"b"}, false);
    list->SetCheckbox(1, 2, 0, false);
    clickCell(*list, 0, 1);
    list->GetEditBox()->insert(QStringLiteral("one"));
    clickCell(*list, 1, 2);

    EXPECT_THAT(told, ElementsAre(Place(1, 2), Place(0, 1)));
    EXPECT_EQ(Text(0, 1), L"one");
    EXPECT_FALSE(list->IsEditing());
}

// --- Refills inside the notice ---------------------------------------------------------------------------------------

TEST_F(ListEditing, TheListMayBeFilledAnewInsideTheNotice)
{
    FillEdited({L"a", L"b"}, true);
    onTold = [this] {
        const std::wstring text = Text(0, 1);
        list->DeleteAllItems();
        for (int row = 0; row < 2; ++row) {
            list->InsertItem(row, L"new");
            list->SetItemText(row, 1, text + L" refilled");
            list->SetCellNumeric(row, 1);
        }
    };
    typeIntoCell(*list, 0, 1, QStringLiteral("7"));

    EXPECT_EQ(Text(0, 1), L"7.000 refilled");
    EXPECT_FALSE(list->IsEditing());
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
    onTold = nullptr;
    EXPECT_TRUE(typeIntoCell(*list, 1, 1, QStringLiteral("8")));
    EXPECT_EQ(Text(1, 1), L"8.000");
}

TEST_F(ListEditing, AClickElsewhereEditsThereThoughTheNoticeFillsTheListAnew)
{
    FillEdited({L"a", L"b"}, false);
    onTold = [this] {
        list->DeleteAllItems();
        for (int row = 0; row < 2; ++row) {
            list->InsertItem(row, L"new");
            list->SetItemText(row, 1, L"stored");
        }
    };
    clickCell(*list, 0, 1);
    list->GetEditBox()->insert(QStringLiteral("one"));
    clickCell(*list, 1, 1);

    ASSERT_TRUE(list->IsEditing());
    EXPECT_EQ(list->GetCurrentRow(), 1);
    EXPECT_EQ(list->GetEditBox()->text(), QStringLiteral("stored"));
}

TEST_F(ListEditing, TheNoticeMayOpenAnotherEditor)
{
    FillEdited({L"a", L"b"}, false);
    onTold = [this] {
        onTold = nullptr;
        list->EditCell(1, 1);
    };
    typeIntoCell(*list, 0, 1, QStringLiteral("one"));

    EXPECT_TRUE(list->IsEditing());
    EXPECT_EQ(list->GetCurrentRow(), 1);
    EXPECT_EQ(Text(0, 1), L"one");
    EXPECT_EQ(Text(1, 1), L"");
}

TEST_F(ListEditing, TheFocusMayMoveInsideTheNoticeAndTellsOnce)
{
    FillEdited({L"a"}, false);
    onTold = [this] { other->setFocus(); };
    typeIntoCell(*list, 0, 1, QStringLiteral("one"));

    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
    EXPECT_FALSE(list->IsEditing());
    EXPECT_TRUE(other->hasFocus());
}

// --- Numbers ---------------------------------------------------------------------------------------------------------

TEST_F(ListEditing, ANumericCellWritesItsNumberWithThreeDecimals)
{
    FillEdited({L"a"}, true);
    for (const auto &[typed, written] : std::vector<std::pair<QString, std::wstring>>{
             {QStringLiteral("12.5"), L"12.500"},
             {QStringLiteral("0.001"), L"0.001"},
             {QStringLiteral("1000"), L"1000.000"},
             {QStringLiteral("1.23456"), L"1.234"}, // cut, not rounded
             {QStringLiteral("1'000"), L"1000.000"},
             {QStringLiteral(" 7 m"), L"7.000"},
             {QStringLiteral("00042"), L"42.000"},
         }) {
        list->SetItemText(0, 1, L"1");
        ASSERT_TRUE(typeIntoCell(*list, 0, 1, typed));
        EXPECT_EQ(Text(0, 1), written) << typed.toStdString();
        list->DeleteAllItems();
        list->InsertItem(0, L"a");
        list->SetCellNumeric(0, 1);
    }
}

TEST_F(ListEditing, TheDecimalPointIsAPointWhereverTheDesktopStands)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Croatian, QLocale::Croatia));
    FillEdited({L"a"}, true);
    typeIntoCell(*list, 0, 1, QStringLiteral("1'012.5"));
    EXPECT_EQ(Text(0, 1), L""); // beyond the limits
    typeIntoCell(*list, 0, 1, QStringLiteral("12.5"));
    EXPECT_EQ(Text(0, 1), L"12.500");
    QLocale::setDefault(before);
}

TEST_F(ListEditing, ATypedCommaIsTheDecimalPointOfANumber)
{
    // Who types 1,5 must not find 15.
    FillEdited({L"a"}, true);
    clickCell(*list, 0, 1);
    pressKey(*list->GetEditBox(), Qt::Key_1, QStringLiteral("1"));
    pressKey(*list->GetEditBox(), Qt::Key_5, QStringLiteral("5"));
    pressKey(*list->GetEditBox(), Qt::Key_Left);
    pressKey(*list->GetEditBox(), Qt::Key_Comma, QStringLiteral(","));

    EXPECT_EQ(list->GetEditBox()->text(), QStringLiteral("1.5"));
    EXPECT_EQ(list->GetEditBox()->cursorPosition(), 2);
    pressKey(*list->GetEditBox(), Qt::Key_Return);
    EXPECT_EQ(Text(0, 1), L"1.500");
}

TEST_F(ListEditing, APastedCommaIsTheDecimalPointOfANumber)
{
    FillEdited({L"a"}, true);
    ASSERT_TRUE(typeIntoCell(*list, 0, 1, QStringLiteral("12,5")));

    EXPECT_EQ(Text(0, 1), L"12.500");
}

TEST_F(ListEditing, AWordKeepsItsComma)
{
    FillEdited({L"a"}, false);
    ASSERT_TRUE(typeIntoCell(*list, 0, 1, QStringLiteral("12,5")));

    EXPECT_EQ(Text(0, 1), L"12,5");
}

TEST_F(ListEditing, ACommaFromAProgramsAidIsTheDecimalPointOfANumber)
{
    FillEdited({L"a"}, true);
    auto *model = list->model();

    EXPECT_TRUE(model->setData(model->index(0, 1), QStringLiteral("12,5"), Qt::EditRole));
    EXPECT_EQ(Text(0, 1), L"12.500");
}

TEST_F(ListEditing, AnEditorThatNobodyTypedIntoChangesNothing)
{
    // The rule would write 33.3333 anew as 33.333.
    FillEdited({L"a", L"b"}, true);
    list->SetItemText(0, 1, L"33.3333");
    clickCell(*list, 0, 1);
    clickCell(*list, 1, 1);
    EXPECT_EQ(Text(0, 1), L"33.3333");
    clickCell(*list, 0, 1);
    other->setFocus();
    EXPECT_EQ(Text(0, 1), L"33.3333");
    clickCell(*list, 0, 1);
    pressKey(*list->GetEditBox(), Qt::Key_Left);
    pressKey(*list->GetEditBox(), Qt::Key_Return);
    EXPECT_EQ(Text(0, 1), L"33.3333");
    EXPECT_FALSE(list->IsEditing());
    EXPECT_TRUE(list->hasFocus());
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListEditing, TheSameDigitsTypedAnewAreAnEntry)
{
    FillEdited({L"a"}, true);
    list->SetItemText(0, 1, L"33.3333");
    typeIntoCell(*list, 0, 1, QStringLiteral("33.3333"));

    EXPECT_EQ(Text(0, 1), L"33.333");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListEditing, TheRuleItselfPassesOverAComma)
{
    FillEdited({L"a"}, true);
    ASSERT_TRUE(list->EditCell(0, 1));
    list->GetEditBox()->setText(QStringLiteral("12,5")); // as no person does
    list->CommitEditing();

    EXPECT_EQ(Text(0, 1), L"125.000");
}

TEST_F(ListEditing, ANumberOutOfRangeIsSilentlyRefused)
{
    FillEdited({L"a"}, true);
    list->SetItemText(0, 1, L"5.000");
    for (const char *typed : {"0", "0.0009", "1000.001", "-5", "1234567", "letters", ""}) {
        ASSERT_TRUE(typeIntoCell(*list, 0, 1, QString::fromLatin1(typed)));
        EXPECT_EQ(Text(0, 1), L"5.000") << typed;
        EXPECT_FALSE(list->IsEditing());
    }
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListEditing, TheSameValueInAnotherFormIsWrittenAndNotTold)
{
    FillEdited({L"a"}, true);
    list->SetItemText(0, 1, L"5.000");
    typeIntoCell(*list, 0, 1, QStringLiteral("5"));

    EXPECT_EQ(Text(0, 1), L"5.000");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListEditing, AnotherFormOfTheOldTextIsAChange)
{
    FillEdited({L"a"}, true);
    list->SetItemText(0, 1, L"5.0000"); // as the dialogs write it
    typeIntoCell(*list, 0, 1, QStringLiteral("5.0000"));

    EXPECT_EQ(Text(0, 1), L"5.000");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListEditing, TheLimitsCanBeOthers)
{
    FillEdited({L"a"}, true);
    list->SetNumericLimits(-10.0, 10.0, 2, 1);
    EXPECT_EQ(list->GetNumericLimits(), (ListNumericLimits{-10.0, 10.0, 2, 1}));

    typeIntoCell(*list, 0, 1, QStringLiteral("-3.25"));
    EXPECT_EQ(Text(0, 1), L"-3.2");
    typeIntoCell(*list, 0, 1, QStringLiteral("11"));
    EXPECT_EQ(Text(0, 1), L"-3.2");
    typeIntoCell(*list, 0, 1, QStringLiteral("099")); // two whole digits: 09
    EXPECT_EQ(Text(0, 1), L"9.0");
}

TEST_F(ListEditing, NothingIsLeftOfTheNumericBox)
{
    FillEdited({L"a"}, true);
    typeIntoCell(*list, 0, 1, QStringLiteral("5"));

    EXPECT_THAT(list->findChildren<AMSEdit::CAMSNumericEdit *>(), IsEmpty());
}

TEST_F(ListEditing, ACellOfALaterColumnTakesAnyText)
{
    Fill({L"a"});
    list->InsertColumn(3, L"Later", 80);
    list->AddEditColumn(3);
    EXPECT_FALSE(list->SetCellNumeric(0, 3));
    window.resize(560, 360);
    Show();

    ASSERT_TRUE(typeIntoCell(*list, 0, 3, QStringLiteral("words")));
    EXPECT_EQ(Text(0, 3), L"words");
}

TEST_F(ListEditing, AProgramsAidWritesByTheSameRule)
{
    FillEdited({L"a"}, true);
    auto *model = list->model();

    EXPECT_TRUE(model->setData(model->index(0, 1), QStringLiteral("7"), Qt::EditRole));
    EXPECT_EQ(Text(0, 1), L"7.000");
    EXPECT_FALSE(model->setData(model->index(0, 1), QStringLiteral("0"), Qt::EditRole));
    EXPECT_FALSE(model->setData(model->index(0, 0), QStringLiteral("x"), Qt::EditRole));
    EXPECT_EQ(Text(0, 1), L"7.000");
    EXPECT_EQ(Text(0, 0), L"a");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}
