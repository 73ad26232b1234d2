// The box that all validating edits share: its routes, its filter, its colours, undo, and the keeper of a selection.
#include "controls/rules/SelectionSaver.h"
#include "controls/rules/ValidatingEdit.h"

#include "tests/controls/KeySequence.h"

#include <gmock/gmock.h>

using namespace AMSEdit;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const CNoRegionalSettings kNoSettings;

class NumericEdit : public TNumericEdit<FakeEditBox> {
public:
    explicit NumericEdit(int whole = 9, int places = 4) : TValidatingEdit(whole, places, kNoSettings) {}
};

/// A rule that drops every "x", one at a time: its form is reached in as many turns.
class OneByOne : public FakeEditBox {
public:
    std::wstring GetValidText() const override
    {
        std::wstring text = GetWindowText();
        if (const auto at = text.find(L'x'); at != std::wstring::npos)
            text.erase(at, 1);
        return text;
    }
};

/// No rule at all: its form is never its own.
class NeverSettled : public FakeEditBox {
public:
    std::wstring GetValidText() const override { return GetWindowText() + L"+"; }
};

} // namespace

TEST(EditBox, TextIsGivenWholeAndTrimmed)
{
    FakeEditBox box;
    box.SetText(L" \t a b \u00a0 ");
    EXPECT_EQ(box.GetText(), L" \t a b \u00a0 ");
    box.SetText(L" \t a b ");
    EXPECT_EQ(box.GetTrimmedText(), L"a b");
    box.SetText(L" \t ");
    EXPECT_EQ(box.GetTrimmedText(), L"");
}

TEST(EditBox, ABoxWithoutARuleLeavesKeysToThePlatform)
{
    FakeEditBox box;
    sequence::Run(box, L"a|b", L"x>ax|b <BS>>a|b <Del>>a| <Home>>|a <Right>>a| <End>>a| <Left>>|a");
    EXPECT_EQ(box.defaults.size(), 7u);
    EXPECT_EQ(box.beeps, 0);
}

TEST(EditBox, ASetTextIsReducedToItsValidForm)
{
    NumericEdit edit(4, 2);
    edit.SetWindowText(L"a12b.345c");
    EXPECT_EQ(edit.GetText(), L"12.34");
    EXPECT_THAT(edit.journal, ElementsAre(L"set:a12b.345c", L"set:12.34"));
}

TEST(EditBox, AValidTextIsSetOnce)
{
    NumericEdit edit;
    edit.SetWindowText(L"12.5");
    EXPECT_THAT(edit.journal, ElementsAre(L"set:12.5"));
}

TEST(EditBox, TheFilterGoesOnUntilNothingChanges)
{
    OneByOne box;
    box.SetWindowText(L"axbxxc");
    EXPECT_EQ(box.GetText(), L"abc");
    EXPECT_THAT(box.journal, ElementsAre(L"set:axbxxc", L"set:abxxc", L"set:abxc", L"set:abc"));
}

TEST(EditBox, ARuleWithoutAFixedPointDoesNotHangTheBox)
{
    NeverSettled box;
    box.SetWindowText(L"a");
    EXPECT_TRUE(box.GetText().starts_with(L"a+"));
}

TEST(EditBox, APlatformThatCutsTheTextIsNotAskedAgainAndAgain)
{
    NumericEdit edit;
    edit.SetMaxLength(3);
    edit.SetWindowText(L"123456");
    EXPECT_EQ(edit.GetText(), L"123");
    EXPECT_EQ(edit.sets, 2);
}

TEST(EditBox, RedrawSetsTheValidFormOnlyWhereItDiffers)
{
    NumericEdit edit;
    edit.SetWindowText(L"12");
    edit.SetSel(1, 2);
    edit.Redraw();
    EXPECT_EQ(edit.Picture(), L"1[2]");
    EXPECT_EQ(edit.sets, 1);

    edit.SetSel(2, 2);
    edit.ReplaceSel(L"x", true);
    ASSERT_EQ(edit.GetText(), L"12x");
    edit.CEditBox::Redraw();
    EXPECT_EQ(edit.GetText(), L"12");
}

TEST(EditBox, RedrawDoesNothingBeforeTheBoxExists)
{
    NumericEdit edit;
    edit.SetWindowText(L"123456");
    edit.exists = false;
    edit.SetMaxWholeDigits(3);
    EXPECT_EQ(edit.GetText(), L"123456");
    edit.exists = true;
    edit.SetWindowText(edit.GetText());
    EXPECT_EQ(edit.GetText(), L"123");
}

TEST(EditBox, CutCopiesFirstAndThenRemovesTheSelection)
{
    NumericEdit edit;
    sequence::Place(edit, L"1[23]4");
    edit.journal.clear();
    edit.OnCut();
    EXPECT_EQ(edit.Picture(), L"1|4");
    EXPECT_EQ(edit.Clipboard(), L"23");
    EXPECT_THAT(edit.journal, ElementsAre(L"copy"));
}

TEST(EditBox, CutOnABareCaretChangesNothingAndCopiesNothing)
{
    NumericEdit edit;
    edit.SetClipboard(L"before");
    sequence::Place(edit, L"1|234");
    edit.journal.clear();
    edit.OnCut();
    EXPECT_EQ(edit.Picture(), L"1|234");
    EXPECT_EQ(edit.Clipboard(), L"before");
    EXPECT_THAT(edit.journal, IsEmpty());
}

TEST(EditBox, CutPassesByTheKeyRulesAndTheFilter)
{
    NumericEdit edit;
    edit.SetPrefix(L"$ ");
    sequence::Run(edit, L"[$_]12", L"<Cut>>|12~");
    EXPECT_EQ(edit.Clipboard(), L"$ ");
}

TEST(EditBox, ACutCannotBeUndone)
{
    NumericEdit edit;
    sequence::Run(edit, L"12|", L"3>123| <Left>>12|3 <Undo>>12| <Redo>>12|3");
    edit.SetSel(0, 2);
    edit.OnCut();
    EXPECT_FALSE(edit.CanUndo());
    EXPECT_FALSE(edit.CanRedo());
    edit.OnUndo();
    EXPECT_EQ(edit.GetText(), L"3");
}

TEST(EditBox, UndoBringsWhatACutHasLeftInItsValidForm)
{
    NumericEdit edit;
    edit.SetDigitsInGroup(3);
    sequence::Run(edit, L"123,[456]", L"<Cut>>123,|~ 7>1,237| <Undo>>123|");
}

TEST(EditBox, ClearIsTheDeleteKeyOfTheSelection)
{
    NumericEdit edit;
    sequence::Run(edit, L"1[23]4", L"<Clear>>1|4");
    ASSERT_EQ(edit.defaults.size(), 1u);
    EXPECT_EQ(edit.defaults[0].kind, EditMessage::Kind::KeyDown);
    EXPECT_EQ(edit.defaults[0].code, kKeyDelete);
    EXPECT_EQ(edit.defaults[0].repeat, 0u) << "the key comes with a parameter of 0";
    EXPECT_EQ(edit.defaults[0].keyFlags, 0u);

    edit.SetPrefix(L"$ ");
    sequence::Run(edit, L"[$_]12", L"<Clear>>[$_]12");
}

TEST(EditBox, ClearOnABareCaretDoesNotDeleteTheNextCharacter)
{
    NumericEdit edit;
    sequence::Run(edit, L"1|234", L"<Clear>>1|234");
    EXPECT_THAT(edit.defaults, IsEmpty());
}

TEST(EditBox, APasteOfValidTextLeavesTheCaretBehindIt)
{
    NumericEdit edit;
    edit.SetClipboard(L"56");
    sequence::Run(edit, L"1[2]3", L"<Paste>>156|3");
}

TEST(EditBox, APasteOfInvalidTextLeavesTheValidFormAndTheSelectionOfBefore)
{
    NumericEdit edit;
    edit.SetClipboard(L"5x6");
    sequence::Run(edit, L"1[2]3", L"<Paste>>1[5]63");
    edit.SetClipboard(L"x");
    sequence::Run(edit, L"12|3", L"<Paste>>12|3");
    edit.SetClipboard(L"abc");
    sequence::Run(edit, L"[12]", L"<Paste>>|");
}

TEST(EditBox, ACorrectedPasteScrollsTheCaretIntoView)
{
    NumericEdit edit;
    sequence::Place(edit, L"1|2");
    edit.SetClipboard(L"5x");
    const int scrolls = edit.scrolls;
    edit.OnPaste(0, 0);
    EXPECT_EQ(edit.scrolls, scrolls + 1);
}

TEST(EditBox, UndoBehindAnotherPrefixDoesNotBringTheOldOneBack)
{
    class Listening : public NumericEdit {
    public:
        void OnKillFocus(IEditSurface *newFocus) override
        {
            const Route route(*this);
            SetPrefix(L"kn ");
            NumericEdit::OnKillFocus(newFocus);
        }
    } edit;
    edit.SetPrefix(L"$ ");
    sequence::Run(edit, L"|", L"1>$_1| 2>$_12|");
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.GetText(), L"kn 12");
    edit.OnUndo();
    EXPECT_EQ(edit.GetText(), L"kn 12");
    edit.OnUndo();
    EXPECT_EQ(edit.GetText(), L"kn 1");
}

TEST(EditBox, APasteIsOneStepOfUndo)
{
    NumericEdit edit;
    edit.SetClipboard(L"5x6");
    sequence::Run(edit, L"|", L"1>1| <Paste>>1|56 <Undo>>1| <Undo>>|");
}

TEST(EditBox, APasteIntoAReadOnlyBoxChangesNothing)
{
    NumericEdit edit;
    edit.SetClipboard(L"5");
    sequence::Place(edit, L"1|2");
    edit.SetReadOnly(true);
    edit.OnPaste(0, 0);
    EXPECT_EQ(edit.Picture(), L"1|2");
}

TEST(EditBox, TextChangedBehindItsBackIsPutInItsValidForm)
{
    NumericEdit edit;
    edit.SetWindowText(L"12");
    edit.SetSel(1, 1);
    edit.ReplaceSel(L"x", true);
    edit.HandleForeignChange();
    EXPECT_EQ(edit.Picture(), L"12|");
    EXPECT_FALSE(edit.CanUndo());
}

TEST(EditBox, UndoGoesBackToTextsInTheirFormOfNow)
{
    NumericEdit edit;
    sequence::Run(edit, L"|", L"1>1| 2>12| 3>123| 4>1234|");
    edit.SetMaxWholeDigits(2);
    EXPECT_EQ(edit.GetText(), L"12");
    EXPECT_FALSE(edit.CanUndo()) << "a set by the program is no step of the user";

    sequence::Run(edit, L"|", L"1>1| 2>12|");
    edit.SetWindowText(L"7");
    edit.OnUndo();
    EXPECT_EQ(edit.GetText(), L"7");
}

TEST(EditBox, UndoReachesSoManyStepsAndNoFurther)
{
    FakeEditBox box;
    const int typed = static_cast<int>(CEditHistory::kMaxSteps) + 50;
    for (int i = 0; i < typed; ++i)
        box.OnChar(L'a', 1, 0);
    for (int i = 0; i < 2 * typed; ++i)
        box.OnUndo();
    EXPECT_EQ(box.GetText().size(), 50u);
    for (int i = 0; i < 2 * typed; ++i)
        box.OnRedo();
    EXPECT_EQ(box.GetText().size(), static_cast<std::size_t>(typed));
}

TEST(EditHistory, AnUnchangedTextIsNoStep)
{
    CEditHistory history;
    history.Record({L"a", {1, 1}});
    history.Record({L"a", {0, 0}});
    EXPECT_TRUE(history.CanUndo());
    EXPECT_EQ(history.Undo()->text, L"");
    EXPECT_FALSE(history.CanUndo());
    EXPECT_EQ(history.Redo(), (CEditHistory::State{L"a", {0, 0}}));
    EXPECT_EQ(history.Redo(), std::nullopt);
}

TEST(EditHistory, ANewStepDropsWhatCouldBeRedone)
{
    CEditHistory history;
    history.Record({L"a", {}});
    history.Record({L"b", {}});
    history.Undo();
    history.Record({L"c", {}});
    EXPECT_FALSE(history.CanRedo());
    EXPECT_EQ(history.Undo()->text, L"a");
}

// Colours

TEST(EditColours, AnUncolouredBoxLeavesPaintingToTheDesktop)
{
    FakeEditBox box;
    EXPECT_EQ(box.OnCtlColor(), std::nullopt);
}

TEST(EditColours, ASetBackgroundIsAnsweredWithTheDesktopsText)
{
    FakeEditBox box;
    box.SetBackgroundColor(0x00FFFF);
    EXPECT_EQ(box.repaints, 1);
    EXPECT_EQ(box.GetBackgroundColor(), 0x00FFFFu);
    EXPECT_EQ(box.OnCtlColor(), (PaintColours{std::nullopt, 0x00FFFF}));
    box.SetBackgroundColor(0x0000FF);
    EXPECT_EQ(box.repaints, 2);
    EXPECT_EQ(box.OnCtlColor(), (PaintColours{std::nullopt, 0x0000FF}));
}

TEST(EditColours, ASetTextColourTakesTheDesktopsBackgroundAlong)
{
    FakeEditBox box;
    box.desktopBackground = 0x202020;
    box.SetTextColor(0x0000FF);
    EXPECT_EQ(box.repaints, 1);
    EXPECT_EQ(box.GetTextColor(), 0x0000FFu);
    EXPECT_EQ(box.OnCtlColor(), (PaintColours{0x0000FFu, 0x202020}));
    box.desktopBackground = 0xFFFFFF;
    EXPECT_EQ(box.OnCtlColor(), (PaintColours{0x0000FFu, 0x202020})) << "taken over once, for all later paints";
}

TEST(EditColours, BlackSetOnPurposeLeavesTheDesktopsText)
{
    FakeEditBox box;
    box.SetTextColor(0);
    const auto colours = box.OnCtlColor();
    ASSERT_TRUE(colours);
    EXPECT_EQ(colours->text, std::nullopt);
    EXPECT_EQ(colours->background, 0xFFFFFFu);
}

TEST(EditColours, AskingForTheBackgroundMakesTheBoxAnswerForItself)
{
    FakeEditBox box;
    box.desktopBackground = 0x123456;
    EXPECT_EQ(box.GetBackgroundColor(), 0x123456u);
    EXPECT_EQ(box.OnCtlColor(), (PaintColours{std::nullopt, 0x123456}));
    box.desktopBackground = 0xFFFFFF;
    EXPECT_EQ(box.GetBackgroundColor(), 0x123456u);
}

TEST(EditColours, AskingForTheTextColourTakesItOver)
{
    FakeEditBox box;
    box.desktopText = 0x00AA00;
    EXPECT_EQ(box.GetTextColor(), 0x00AA00u);
    box.desktopText = 0x0000AA;
    EXPECT_EQ(box.GetTextColor(), 0x00AA00u);
    EXPECT_EQ(box.OnCtlColor(), (PaintColours{0x00AA00u, 0xFFFFFF}));
}

TEST(EditColours, ReadOnlyAndDisabledBoxesAnswerAsWell)
{
    FakeEditBox box;
    box.SetBackgroundColor(0x00FFFF);
    box.SetReadOnly(true);
    box.SetEnabled(false);
    EXPECT_EQ(box.OnCtlColor(), (PaintColours{std::nullopt, 0x00FFFF}));
}

// The keeper of a selection

TEST(SelectionSaver, RestoresTheSelectionAtItsEndWithoutScrolling)
{
    FakeEditBox box;
    sequence::Place(box, L"1[23]4");
    const int scrolls = box.scrolls;
    {
        const SelectionSaver saver(&box);
        EXPECT_EQ(saver.GetStart(), 1);
        EXPECT_EQ(saver.GetEnd(), 3);
        box.SetSel(0, 0, true);
    }
    EXPECT_EQ(box.Picture(), L"1[23]4");
    EXPECT_EQ(box.scrolls, scrolls);
}

TEST(SelectionSaver, GivenPositionsAreThoseThatAreRestored)
{
    FakeEditBox box;
    sequence::Place(box, L"|1234");
    {
        const SelectionSaver saver(&box, 1, 2);
    }
    EXPECT_EQ(box.Picture(), L"1[2]34");
}

TEST(SelectionSaver, RestoreUpdateDisableAndMoves)
{
    FakeEditBox box;
    sequence::Place(box, L"1[2]34");
    {
        SelectionSaver saver(&box);
        box.SetSel(0, 0);
        saver.Restore();
        EXPECT_EQ(box.Picture(), L"1[2]34");
        box.SetSel(2, 4);
        saver.Update();
        EXPECT_EQ(saver.GetStart(), 2);
        EXPECT_EQ(saver.GetEnd(), 4);
        saver.SetPositions(0, 1);
        saver.MoveBy(1, 2);
        EXPECT_EQ(saver.GetStart(), 1);
        EXPECT_EQ(saver.GetEnd(), 3);
        saver.MoveBy(-1);
    }
    EXPECT_EQ(box.Picture(), L"[12]34");
    {
        SelectionSaver saver(&box);
        box.SetSel(4, 4);
        saver.Disable();
    }
    EXPECT_EQ(box.Picture(), L"1234|");
}

TEST(SelectionSaver, WithoutAnEditThereIsNothingToDo)
{
    SelectionSaver saver(nullptr);
    saver.Update();
    saver.Restore();
    EXPECT_EQ(saver.GetStart(), 0);
    EXPECT_EQ(saver.GetEnd(), 0);
}

// Flags of a behaviour

TEST(BehaviorFlags, AreChangedByRemovingAndThenAdding)
{
    NumericEdit edit;
    EXPECT_EQ(edit.GetFlags(), 0u);
    EXPECT_TRUE(edit.ModifyFlags(0x0103, 0));
    EXPECT_EQ(edit.GetFlags(), 0x0103u);
    EXPECT_TRUE(edit.ModifyFlags(0x0200, 0x0101));
    EXPECT_EQ(edit.GetFlags(), 0x0202u);
    EXPECT_FALSE(edit.ModifyFlags(0x0002, 0x0002)) << "removed and added again";
}

TEST(BehaviorFlags, AnUnchangedResultReturnsFalseAndDoesNotRedraw)
{
    NumericEdit edit;
    edit.SetWindowText(L"-5");
    edit.SetSel(2, 2);
    edit.ReplaceSel(L"x", true);
    EXPECT_FALSE(edit.ModifyFlags(0, CannotBeNegative));
    EXPECT_EQ(edit.GetText(), L"-5x");
    EXPECT_TRUE(edit.ModifyFlags(CannotBeNegative, 0));
    EXPECT_EQ(edit.GetText(), L"5");
}

TEST(BehaviorDefaults, WhatABehaviourDoesNotHandleGoesToThePlatform)
{
    class Bare : public Behavior {
    public:
        using Behavior::Behavior;
        std::wstring GetValidText() const override { return Edit().GetWindowText(); }
        void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override
        {
            DefaultChar(character, repeat, keyFlags);
        }
    };
    FakeEditBox box;
    box.SetClipboard(L"p");
    Bare rule(box);
    rule.OnChar(L'a', 2, 3);
    rule.OnKeyDown(kKeyHome, 4, 5);
    rule.OnKillFocus(nullptr);
    rule.OnDefault({EditMessage::Kind::KeyDown, kKeyEnd});
    rule.OnPaste(0, 0);
    ASSERT_EQ(box.defaults.size(), 5u);
    EXPECT_EQ(box.defaults[0].code, unsigned{L'a'});
    EXPECT_EQ(box.defaults[0].repeat, 2u);
    EXPECT_EQ(box.defaults[0].keyFlags, 3u);
    EXPECT_EQ(box.defaults[1].code, kKeyHome);
    EXPECT_EQ(box.defaults[1].repeat, 4u);
    EXPECT_EQ(box.defaults[1].keyFlags, 5u);
    EXPECT_EQ(box.defaults[2].kind, EditMessage::Kind::KillFocus);
    EXPECT_EQ(box.defaults[3].code, kKeyEnd);
    EXPECT_EQ(box.defaults[4].kind, EditMessage::Kind::Paste);
    EXPECT_EQ(box.Picture(), L"ap|");
    EXPECT_TRUE(rule.ShouldEnter(L'x'));
}
