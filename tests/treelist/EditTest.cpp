// The editors over the cells: place, look and content, begin, cancel and restore.
#include "tests/treelist/EditFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using Told = JournalOwner::Told;

class EditTest : public TreeListEditTest {};

// --- The box ---------------------------------------------------------------------------------------------------------

TEST_F(EditTest, TheEditorsAreMadeHiddenWithTheControl)
{
    CreateEdited();
    for (QWidget *editor : std::initializer_list<QWidget *>{list->GetStatic(), list->GetEdit(), list->GetCombo()}) {
        ASSERT_NE(editor, nullptr);
        EXPECT_FALSE(editor->isVisible());
        EXPECT_TRUE(list->isAncestorOf(editor));
    }
}

TEST_F(EditTest, TheBoxStandsOverTheTextAreaWithAllOfTheTextSelectedAndTheFocus)
{
    CreateEdited();
    EXPECT_EQ(list->BeginModify(pipe12, 1), 1);
    EXPECT_EQ(Edit().geometry(), TextOf(pipe12, 1));
    EXPECT_TRUE(Edit().isVisible());
    EXPECT_TRUE(Edit().isEnabled());
    EXPECT_EQ(Edit().text(), QStringLiteral("42.50"));
    EXPECT_EQ(Edit().selectedText(), QStringLiteral("42.50"));
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_TRUE(list->GetState(kControlFocused));
    EXPECT_FALSE(Combo().isVisible());
    EXPECT_THAT(owner.told, ElementsAre(Told{NotifyBeginControl, L"Pipe 1-2", 1}));
}

TEST_F(EditTest, TheBoxAlignsItsTextAsTheColumnDoes)
{
    CreateEdited();
    const struct {
        std::uint32_t format;
        Qt::Alignment alignment;
    } table[] = {
        {kColumnLeft, Qt::AlignLeft},
        {kColumnRight, Qt::AlignRight},
        {kColumnCentred, Qt::AlignHCenter},
        {kColumnRight | kColumnCentred, Qt::AlignRight},
        {kColumnLeft | kColumnRight | kColumnCentred, Qt::AlignLeft},
        {0, Qt::AlignLeft},
    };
    for (const auto &row : table) {
        list->SetColumnFormat(1, row.format, kColumnLeft | kColumnRight | kColumnCentred);
        ASSERT_EQ(list->GetColumnFormat(1) & (kColumnLeft | kColumnRight | kColumnCentred), row.format);
        Begin(pipe12, 1);
        EXPECT_EQ(Edit().alignment() & Qt::AlignHorizontal_Mask, row.alignment) << row.format;
        list->CancelModify();
    }
}

TEST_F(EditTest, TheBoxLeavesTheGridFree)
{
    CreateEdited();
    const QRect text = TextOf(pipe12, 1);
    const struct {
        std::uint32_t style;
        int sides, ends;
    } table[] = {{StyleHorzGrid, 0, 1}, {StyleVertGrid, 1, 0}, {StyleHorzGrid | StyleVertGrid, 1, 1}};
    for (const auto &row : table) {
        list->SetStyle(kTreeStyle | row.style);
        Begin(pipe12, 1);
        EXPECT_EQ(Edit().geometry(), text.adjusted(row.sides, row.ends, -row.sides, -row.ends));
        list->CancelModify();
    }
}

TEST_F(EditTest, ATextAreaNarrowerThanItsTextMakesTheBoxAsWideAsTheColumn)
{
    CreateEdited();
    list->SetColumnModify(0, kEditorEdit);
    const QRect area = TextOf(areaA, 0);
    list->SetItemText(areaA, 0, std::wstring(60, L'W'));
    Begin(areaA, 0);
    EXPECT_EQ(Edit().geometry().left(), area.left());
    EXPECT_EQ(Edit().geometry().width(), 160);
    EXPECT_LT(area.width(), 160);
    list->CancelModify();

    list->SetItemText(areaA, 0, L"A");
    Begin(areaA, 0);
    EXPECT_EQ(Edit().geometry(), area);
}

TEST_F(EditTest, ATextAreaNarrowerThanTheLeastWidthMakesTheBoxAsWideAsTheColumn)
{
    CreateEdited();
    const int column = list->InsertColumn(L"Note", kColumnLeft, 50, -1, 49);
    list->SetColumnModify(column, kEditorEdit);
    const QRect area = TextOf(pipe12, column);
    ASSERT_LT(area.width(), 49);
    Begin(pipe12, column);
    EXPECT_EQ(Edit().width(), 50);
    EXPECT_EQ(Edit().x(), TextOf(pipe12, column).x());
}

TEST_F(EditTest, AnEmptyRectangleBeginsNothing)
{
    CreateEdited();
    EXPECT_EQ(list->BeginEdit(pipe12, 1, QRect()), 0);
    EXPECT_EQ(list->BeginCombo(pipe12, 2, QRect(5, 5, 0, 20)), 0);
    EXPECT_FALSE(Edit().isVisible());

    list->SetColumnWidth(1, 0);
    EXPECT_EQ(list->BeginModify(pipe12, 1), 1);
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 1), L"42.50"); // not the text of a box that nobody saw
}

TEST_F(EditTest, CancellingTheBoxWritesItsTextToTheColumnHidesAndDisablesIt)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("7"));
    EXPECT_EQ(Text(pipe12, 1), L"42.50");
    EXPECT_EQ(list->CancelEdit(pipe12, 1), 1);
    EXPECT_EQ(Text(pipe12, 1), L"7");
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_FALSE(Edit().isEnabled());
    EXPECT_TRUE(list->hasFocus());
    EXPECT_THAT(owner.told, IsEmpty());
    EXPECT_EQ(list->CancelEdit(pipe12, 1), 0);
}

TEST_F(EditTest, ARestoredBoxIsAsItWas)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("123456"));
    Edit().setSelection(2, 3);
    Answer(NotifyColumnChanging, -1);
    EXPECT_EQ(list->FinishModify(), 0);
    EXPECT_TRUE(InEdit());
    EXPECT_TRUE(Edit().isVisible());
    EXPECT_TRUE(Edit().isEnabled());
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_EQ(Edit().text(), QStringLiteral("123456"));
    EXPECT_EQ(Edit().selectedText(), QStringLiteral("345"));
    EXPECT_EQ(Edit().geometry(), TextOf(pipe12, 1));
    EXPECT_EQ(Text(pipe12, 1), L"42.50");
    EXPECT_EQ(list->RestoreEdit(pipe12, 1, QRect()), 0);
}

TEST_F(EditTest, AllEditorsAreEmptyWhenTheOwnerIsToldOfTheBegin)
{
    CreateEdited();
    Begin(pipe12, 2);
    ASSERT_EQ(Combo().GetCount(), 3);
    ASSERT_EQ(list->BeginModify(pipe12, 1), 1);
    int told = 0;
    onNotice = [&](const TreeListNotice &notice) {
        if (notice.code != NotifyBeginControl || ++told > 1)
            return;
        EXPECT_EQ(Edit().text(), QString());
        EXPECT_EQ(Combo().GetCount(), 0);
        EXPECT_FALSE(Edit().isVisible());
    };
    ASSERT_EQ(list->BeginModify(pipe23, 1), 1);
    EXPECT_EQ(told, 1);
}

TEST_F(EditTest, ALongTextAndOddCharactersStayWhole)
{
    CreateEdited();
    std::wstring text(40000, L'x');
    text += L"\tline\n\U0001F6B0 žćčđš";
    list->SetItemText(pipe12, 1, text);
    Begin(pipe12, 1);
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 1), text);
    EXPECT_THAT(owner.told, ElementsAre(Told{NotifyEndControl, L"Pipe 1-2", 1}, Told{NotifyEndEdit, L"Pipe 1-2", 1}));
}

TEST_F(EditTest, ATextThatNobodyChangedIsNotWrittenAnew)
{
    CreateEdited();
    for (const int column : {1, 2}) {
        const std::wstring text{L'a', static_cast<wchar_t>(0x110000), L'b'}; // no toolkit keeps such a character
        list->SetItemText(pipe12, column, text);
        Begin(pipe12, column);
        EXPECT_EQ(list->FinishModify(), 1);
        EXPECT_EQ(Text(pipe12, column), text);
    }
}

TEST_F(EditTest, AnEditorIsNamedAsItsColumn)
{
    CreateEdited();
    Begin(pipe12, 1);
    EXPECT_EQ(Edit().accessibleName(), QStringLiteral("Length"));
    ASSERT_EQ(list->BeginModify(pipe12, 2), 1);
    EXPECT_EQ(Combo().GetList()->accessibleName(), QStringLiteral("Kind"));
    list->SetColumnText(1, L"");
    ASSERT_EQ(list->BeginModify(pipe12, 1), 1);
    EXPECT_FALSE(Edit().accessibleName().isEmpty());
}

TEST_F(EditTest, TheEditorsHaveFontAndPaletteOfTheControl)
{
    CreateEdited();
    Begin(pipe12, 1);
    QFont font = list->font();
    font.setBold(true);
    list->setFont(font);
    QPalette palette = list->palette();
    palette.setColor(QPalette::Base, Qt::darkBlue);
    list->setPalette(palette);
    EXPECT_TRUE(Edit().font().bold());
    EXPECT_EQ(Edit().palette().color(QPalette::Base), QColor(Qt::darkBlue));
}

TEST_F(EditTest, WhatAnInputMethodCommitsIsText)
{
    CreateEdited();
    Begin(pipe12, 1);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("水"));
    QApplication::sendEvent(&Edit(), &event);
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 1), L"水");
}

// --- The list --------------------------------------------------------------------------------------------------------

TEST_F(EditTest, TheComboStandsOnePixelHigherAndShowsTheText)
{
    CreateEdited();
    EXPECT_EQ(list->BeginModify(pipe12, 2), 1);
    EXPECT_EQ(Combo().geometry(), TextOf(pipe12, 2).translated(0, -1));
    EXPECT_TRUE(Combo().isVisible());
    EXPECT_TRUE(Combo().GetList()->hasFocus());
    EXPECT_EQ(Combo().GetWindowText(), L"section");
    EXPECT_EQ(Combo().GetCurSel(), 0);
    EXPECT_FALSE(Edit().isVisible());
}

TEST_F(EditTest, AChosenTextGoesToTheColumn)
{
    CreateEdited();
    Begin(pipe12, 2);
    Key(Qt::Key_Down);
    EXPECT_EQ(Combo().GetWindowText(), L"area");
    EXPECT_EQ(Text(pipe12, 2), L"section");
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 2), L"area");
    EXPECT_FALSE(Combo().isVisible());
    EXPECT_FALSE(Combo().isEnabled());
}

TEST_F(EditTest, ATextThatIsNotInTheListIsKeptUntilAnotherIsChosen)
{
    CreateEdited();
    list->SetItemText(pipe12, 2, L"culvert");
    Begin(pipe12, 2);
    EXPECT_EQ(Combo().GetCurSel(), -1);
    EXPECT_EQ(Combo().GetCount(), 3);
    EXPECT_EQ(Combo().GetWindowText(), L"culvert");
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 2), L"culvert");
    EXPECT_EQ(owner.told.back(), (Told{NotifyEndEdit, L"Pipe 1-2", 1}));

    Begin(pipe12, 2);
    Key(Qt::Key_Down);
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 2), L"section");
}

TEST_F(EditTest, AListThatNobodyFillsKeepsTheText)
{
    CreateTree();
    list->SetColumnModify(2, kEditorCombo);
    Begin(pipe12, 2);
    EXPECT_EQ(Combo().GetCount(), 0);
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 2), L"section");
}

TEST_F(EditTest, TheListAnswersForItsEntries)
{
    CreateEdited();
    CTreeListComboCtrl &combo = Combo();
    combo.ResetContent();
    EXPECT_EQ(combo.AddString(L"one"), 0);
    EXPECT_EQ(combo.GetCurSel(), -1); // nothing is chosen by being the first
    EXPECT_EQ(combo.AddString(L"two"), 1);
    EXPECT_EQ(combo.GetLBText(1), L"two");
    EXPECT_EQ(combo.GetLBText(2), L"");
    EXPECT_EQ(combo.FindStringExact(L"two"), 1);
    EXPECT_EQ(combo.FindStringExact(L"TWO"), -1);
    EXPECT_EQ(combo.SetCurSel(1), 1);
    EXPECT_EQ(combo.GetWindowText(), L"two");
    EXPECT_EQ(combo.AddString(L"three"), 2);
    EXPECT_EQ(combo.GetCurSel(), 1);
    EXPECT_EQ(combo.SetCurSel(9), -1);
}

TEST_F(EditTest, ARefusedChoiceComesBackAsItWas)
{
    CreateEdited();
    Begin(pipe12, 2);
    Combo().SetCurSel(2);
    Answer(NotifyColumnChanging, -1);
    EXPECT_EQ(list->FinishModify(), 0);
    EXPECT_TRUE(Combo().isVisible());
    EXPECT_TRUE(Combo().GetList()->hasFocus());
    EXPECT_EQ(Combo().GetWindowText(), L"outfall");
    EXPECT_EQ(Combo().GetCount(), 3);
    EXPECT_EQ(Text(pipe12, 2), L"section");
    EXPECT_EQ(Combo().geometry(), TextOf(pipe12, 2).translated(0, -1));
}

TEST_F(EditTest, TheWheelOverTheListChoosesNothingAndIsLeftToTheRows)
{
    CreateEdited();
    Begin(pipe12, 2);
    const QPointF at(5, 5);
    QWheelEvent event(at, Combo().GetList()->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(Combo().GetList(), &event);
    EXPECT_EQ(Combo().GetWindowText(), L"section");
    EXPECT_FALSE(event.isAccepted());
    Wheel(-1);
    EXPECT_FALSE(InEdit());
}

// --- No editor -------------------------------------------------------------------------------------------------------

TEST_F(EditTest, ACellWithoutAnEditorOnlyTakesTheFocus)
{
    CreateEdited();
    other->setFocus();
    EXPECT_EQ(list->BeginModify(pipe12, 0), 1);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_FALSE(list->GetStatic()->isVisible());
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_TRUE(InEdit());
    EXPECT_EQ(list->FinishModify(), 1);
    EXPECT_EQ(Text(pipe12, 0), L"Pipe 1-2");
}

TEST_F(EditTest, TheItemsOwnKindGoesBeforeTheColumns)
{
    CreateEdited();
    list->SetItemModify(pipe12, 1, kEditorCombo);
    Begin(pipe12, 1);
    EXPECT_TRUE(Combo().isVisible());
    EXPECT_EQ(Combo().GetWindowText(), L"42.50");
}

TEST_F(EditTest, TheFocusOfTheControlIsThatOfItsEditor)
{
    CreateEdited();
    Begin(pipe12, 1);
    list->setFocus();
    list->SetCtrlFocus();
    EXPECT_TRUE(Edit().hasFocus());
    list->FinishModify();
    other->setFocus();
    list->SetCtrlFocus();
    EXPECT_TRUE(list->hasFocus());
}

// --- Notices in order ------------------------------------------------------------------------------------------------

TEST_F(EditTest, AnEditOfTwoColumnsTellsEachStepWithItsColumn)
{
    CreateEdited();
    list->BeginModify(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->BeginModify(pipe12, 2);
    Combo().SetCurSel(1);
    list->FinishModify();
    const std::wstring row = L"Pipe 1-2";
    EXPECT_THAT(owner.told, ElementsAre(Told{NotifyBeginControl, row, 1}, Told{NotifyEndControl, row, 1},
                                        Told{NotifyColumnChanging, row, 1}, Told{NotifyBeginControl, row, 2},
                                        Told{NotifyEndControl, row, 2}, Told{NotifyColumnChanging, row, 2},
                                        Told{NotifyRowChanging, row, 2}, Told{NotifyEndEdit, row, 0}));
    EXPECT_EQ(Text(pipe12, 1), L"50");
    EXPECT_EQ(Text(pipe12, 2), L"area");
}

TEST_F(EditTest, ACancelledEditGivesAllTextsBack)
{
    CreateEdited();
    list->BeginModify(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->BeginModify(pipe12, 2);
    Combo().SetCurSel(1);
    owner.told.clear();
    list->CancelModify();
    EXPECT_EQ(Text(pipe12, 1), L"42.50");
    EXPECT_EQ(Text(pipe12, 2), L"section");
    EXPECT_THAT(owner.told, ElementsAre(Told{NotifyEndControl, L"Pipe 1-2", 2}, Told{NotifyEndEdit, L"Pipe 1-2", -1}));
}

// --- The mouse -------------------------------------------------------------------------------------------------------

TEST_F(EditTest, ASingleClickEdits)
{
    CreateEdited();
    Click(PlaceOf(pipe12, kHitText, 1));
    EXPECT_TRUE(InEdit());
    EXPECT_EQ(list->GetModifyItem(), pipe12);
    EXPECT_EQ(list->GetModifyColumn(), 1);
    EXPECT_TRUE(Edit().hasFocus());
}

TEST_F(EditTest, AClickOnAnotherRowsTextFinishesTheEditBeforeTheSelectionMoves)
{
    CreateEdited();
    Click(PlaceOf(pipe12, kHitText, 1));
    TypeOver(QStringLiteral("50"));
    owner.told.clear();
    Click(PlaceOf(pipe23, kHitText, 1));
    EXPECT_THAT(owner.told,
                ElementsAre(Told{NotifyEndControl, L"Pipe 1-2", 1}, Told{NotifyColumnChanging, L"Pipe 1-2", 1},
                            Told{NotifyRowChanging, L"Pipe 1-2", 1}, Told{NotifyEndEdit, L"Pipe 1-2", 0},
                            Told{NotifySelChanging, L"Pipe 2-3", 1}, Told{NotifySelChanged, L"Pipe 2-3", 1},
                            Told{NotifyBeginControl, L"Pipe 2-3", 1}));
    EXPECT_EQ(Text(pipe12, 1), L"50");
    EXPECT_EQ(list->GetModifyItem(), pipe23);
}

TEST_F(EditTest, AClickOnAnotherRowLeavesARefusedTextInItsEditor)
{
    CreateEdited();
    Click(PlaceOf(pipe12, kHitText, 1));
    TypeOver(QStringLiteral("nonsense"));
    Answer(NotifyColumnChanging, -1);
    Click(PlaceOf(pipe23, kHitText, 1));
    EXPECT_EQ(list->GetModifyItem(), pipe12);
    EXPECT_EQ(Edit().text(), QStringLiteral("nonsense"));
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_EQ(list->GetSelectedItem(), pipe12);
}

TEST_F(EditTest, AClickBesideTheRowsFinishesTheEdit)
{
    CreateEdited();
    Click(PlaceOf(pipe12, kHitText, 1));
    TypeOver(QStringLiteral("50"));
    Click(QPoint(20, 270));
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"50");
    EXPECT_FALSE(Edit().isVisible());
}
