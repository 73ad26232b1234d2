// Every way by which a user brings text into a validating edit on the real widget.
#include "controls/WideText.h"

#include "tests/controls/EditOps.h"
#include "tests/controls/FakeEditBox.h"
#include "tests/controls/MaskSymbols.h"
#include "tests/controls/RoutedEdits.h"

#include <gmock/gmock.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>

#include <random>

using namespace AMSEdit;
using namespace routed;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class AlphanumericEdit : public TAlphanumericEdit<WidgetEditBox> {
public:
    explicit AlphanumericEdit(int maxCharacters = 0) : TValidatingEdit(maxCharacters, std::wstring(L"%")) {}
};

void press(QWidget &widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString &text = {})
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(&widget, &event);
}

void drop(CAMSEdit &edit, const QString &text, QPointF where)
{
    QMimeData data;
    data.setText(text);
    QDragEnterEvent enter(where.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&edit, &enter);
    QDropEvent event(where, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&edit, &event);
}

void trigger(CAMSEdit &edit, const char *action)
{
    const std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
    auto *found = menu->findChild<QAction *>(QLatin1String(action));
    ASSERT_NE(found, nullptr) << action;
    found->trigger();
}

} // namespace

// Keys

TEST(EditRoutes, AKeyOfSeveralCharactersEntersEachByTheRules)
{
    NumericEdit edit;
    press(edit, 0, Qt::NoModifier, QStringLiteral("1a2.5"));
    EXPECT_EQ(edit.Picture(), L"12.5|");
}

TEST(EditRoutes, KeysWithControlEnterNothing)
{
    NumericEdit edit;
    press(edit, Qt::Key_1, Qt::ControlModifier, QStringLiteral("1"));
    press(edit, Qt::Key_1, Qt::ControlModifier | Qt::ShiftModifier, QStringLiteral("1"));
    EXPECT_EQ(edit.text(), QString());
    press(edit, Qt::Key_1, Qt::KeypadModifier, QStringLiteral("1"));
    EXPECT_EQ(edit.text(), QStringLiteral("1"));
}

TEST(EditRoutes, WordsAreDeletedByTheRules)
{
    NumericEdit edit;
    edit.SetDigitsInGroup(3);
    edit.SetPrefix(L"$ ");
    place(edit, L"1234567", 11, 11);
    press(edit, Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(edit.GetText(), edit.GetValidText());
    EXPECT_LT(edit.GetText().size(), 11u);
    place(edit, L"1234567", 2, 2);
    press(edit, Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(edit.GetText(), edit.GetValidText());
    place(edit, L"1234567", 0, 0);
    press(edit, Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(edit.GetText(), L"$ 1,234,567") << "the prefix cannot be deleted alone";
}

TEST(EditRoutes, LinesAreDeletedByTheRulesWhereTheDesktopHasKeysForIt)
{
    NumericEdit edit;
    const auto endOfLine = QKeySequence::keyBindings(QKeySequence::DeleteEndOfLine);
    const auto wholeLine = QKeySequence::keyBindings(QKeySequence::DeleteCompleteLine);
    if (endOfLine.isEmpty() || wholeLine.isEmpty())
        GTEST_SKIP() << "this platform has no keys that delete lines";
    edit.SetDigitsInGroup(3);
    edit.SetPrefix(L"$ ");
    place(edit, L"1234567", 4, 4);
    press(edit, endOfLine[0][0].key(), endOfLine[0][0].keyboardModifiers());
    EXPECT_EQ(edit.Picture(), L"$ 1|");
    EXPECT_EQ(edit.Clipboard(), L"234,567");
    place(edit, L"1234567", 4, 4);
    press(edit, wholeLine[0][0].key(), wholeLine[0][0].keyboardModifiers());
    EXPECT_EQ(edit.GetText(), L"");
}

TEST(EditRoutes, ASelectionMadeWithShiftIsReplaced)
{
    NumericEdit edit;
    place(edit, L"1234", 4, 4);
    press(edit, Qt::Key_Left, Qt::ShiftModifier);
    press(edit, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(edit.Picture(), L"12[34]");
    press(edit, Qt::Key_5, Qt::NoModifier, QStringLiteral("5"));
    EXPECT_EQ(edit.Picture(), L"125|");
}

TEST(EditRoutes, KeysThatTheBoxHasNoUseForGoOn)
{
    NumericEdit edit;
    for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Escape, Qt::Key_F5}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&edit, &event);
        EXPECT_FALSE(event.isAccepted()) << key;
    }
    QKeyEvent refused(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    QApplication::sendEvent(&edit, &refused);
    EXPECT_TRUE(refused.isAccepted()) << "a refused character is dropped here";
}

TEST(EditRoutes, AReadOnlyBoxTakesNothingByAnyRoute)
{
    NumericEdit edit;
    place(edit, L"123", 1, 2);
    edit.setReadOnly(true);
    edit.SetClipboard(L"9");
    press(edit, Qt::Key_5, Qt::NoModifier, QStringLiteral("5"));
    press(edit, Qt::Key_Backspace, Qt::NoModifier, QStringLiteral("\b"));
    press(edit, Qt::Key_Delete);
    edit.PressCut();
    edit.PressPaste();
    edit.PressUndo();
    edit.cut();
    edit.paste();
    edit.undo();
    edit.clearSelection();
    drop(edit, QStringLiteral("7"), QPointF(2, 2));
    QInputMethodEvent commit;
    commit.setCommitString(QStringLiteral("8"));
    QApplication::sendEvent(&edit, &commit);
    EXPECT_EQ(edit.GetText(), L"123");
    EXPECT_EQ(edit.Clipboard(), L"9");

    const std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
    for (const char *name : {"undo", "redo", "cut", "paste", "clear"})
        EXPECT_FALSE(menu->findChild<QAction *>(QLatin1String(name))->isEnabled()) << name;
}

// Clipboard, drop, menu

TEST(EditRoutes, PasteByKeySlotAndMenu)
{
    for (int way = 0; way < 4; ++way) {
        NumericEdit edit(4, 2);
        place(edit, L"1", 1, 1);
        edit.SetClipboard(L"2x3456");
        if (way == 0)
            edit.PressPaste();
        else if (way == 1)
            edit.paste();
        else if (way == 2)
            trigger(edit, "paste");
        else
            press(edit, Qt::Key_Insert, Qt::ShiftModifier);
        EXPECT_EQ(edit.Picture(), L"1|234") << way;
    }
}

TEST(EditRoutes, CutByKeySlotAndMenu)
{
    for (int way = 0; way < 4; ++way) {
        NumericEdit edit;
        place(edit, L"1234", 1, 3);
        if (way == 0)
            edit.PressCut();
        else if (way == 1)
            edit.cut();
        else if (way == 2)
            trigger(edit, "cut");
        else
            press(edit, Qt::Key_Delete, Qt::ShiftModifier);
        EXPECT_EQ(edit.Picture(), L"1|4") << way;
        EXPECT_EQ(edit.Clipboard(), L"23") << way;
    }
}

TEST(EditRoutes, TheMenuClearsCopiesSelectsAndWalksBack)
{
    NumericEdit edit;
    edit.SetPrefix(L"$ ");
    place(edit, L"1234", 0, 4);
    trigger(edit, "clear");
    EXPECT_EQ(edit.Picture(), L"[$ 12]34") << "the prefix cannot be deleted alone";
    edit.SetSel(3, 5);
    trigger(edit, "copy");
    EXPECT_EQ(edit.Clipboard(), L"23");
    trigger(edit, "clear");
    EXPECT_EQ(edit.Picture(), L"$ 1|4");
    trigger(edit, "undo");
    EXPECT_EQ(edit.GetText(), L"$ 1234");
    trigger(edit, "redo");
    EXPECT_EQ(edit.GetText(), L"$ 14");
    trigger(edit, "select-all");
    EXPECT_EQ(edit.Picture(), L"[$ 14]");
}

TEST(EditRoutes, TheMenuOffersWhatIsPossible)
{
    NumericEdit edit;
    edit.SetClipboard(L"");
    const auto enabled = [&] {
        std::vector<std::string> names;
        const std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
        for (const QAction *action : menu->actions()) {
            if (action->isEnabled() && !action->isSeparator())
                names.push_back(action->objectName().toStdString());
        }
        return names;
    };
    EXPECT_THAT(enabled(), IsEmpty());
    edit.Type(L'1');
    EXPECT_THAT(enabled(), ElementsAre("undo", "select-all"));
    edit.PressUndo();
    EXPECT_THAT(enabled(), ElementsAre("redo"));
    edit.PressRedo();
    edit.SetClipboard(L"5");
    edit.selectAll();
    EXPECT_THAT(enabled(), ElementsAre("undo", "cut", "copy", "paste", "clear"));
}

TEST(EditRoutes, TheContextMenuEventShowsThatMenu)
{
    NumericEdit edit;
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QApplication::sendEvent(&edit, &event);
    auto *menu = edit.findChild<QMenu *>(QStringLiteral("qt_edit_menu"));
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->testAttribute(Qt::WA_DeleteOnClose));
    delete menu;
}

TEST(EditRoutes, DroppedTextIsReducedToItsValidForm)
{
    NumericEdit edit(4, 2);
    edit.resize(200, 30);
    place(edit, L"1", 1, 1);
    drop(edit, QStringLiteral("a2b3456"), QPointF(190, 15));
    EXPECT_EQ(edit.GetText(), L"1234");
    place(edit, L"1", 1, 1);
    drop(edit, QStringLiteral("2"), QPointF(190, 15));
    EXPECT_EQ(edit.GetText(), L"12");
    edit.PressUndo();
    EXPECT_EQ(edit.GetText(), L"1");
}

TEST(EditRoutes, AMiddleButtonIsHandledAsAPaste)
{
    NumericEdit edit;
    place(edit, L"12", 2, 2);
    const bool hasSelection = QApplication::clipboard()->supportsSelection();
    if (hasSelection)
        QApplication::clipboard()->setText(QStringLiteral("a3b"), QClipboard::Selection);
    edit.defaults.clear();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, QPointF(2, 2), QPointF(2, 2), Qt::MiddleButton, Qt::MiddleButton, Qt::NoModifier);
        QApplication::sendEvent(&edit, &event);
    }
    ASSERT_FALSE(edit.defaults.empty());
    EXPECT_EQ(edit.defaults.back().kind, EditMessage::Kind::Paste);
    EXPECT_EQ(edit.GetText().size(), hasSelection ? 3u : 2u);
    EXPECT_EQ(edit.GetText(), edit.GetValidText());
}

// Input methods

TEST(EditRoutes, CommittedTextIsTypedCharacterByCharacter)
{
    NumericEdit edit(4, 2);
    edit.SetDigitsInGroup(3);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("1x2345"));
    QApplication::sendEvent(&edit, &event);
    EXPECT_EQ(edit.Picture(), L"1,234|");
    edit.PressUndo();
    EXPECT_EQ(edit.GetText(), L"") << "one step";
}

TEST(EditRoutes, TextUnderCompositionIsNotTheBoxsText)
{
    NumericEdit edit;
    place(edit, L"12", 1, 1);
    QInputMethodEvent composing(QStringLiteral("abc"), {});
    QApplication::sendEvent(&edit, &composing);
    EXPECT_EQ(edit.GetText(), L"12");
    EXPECT_TRUE(edit.displayText().contains(QStringLiteral("12")) || !edit.displayText().isEmpty());
    QInputMethodEvent commit;
    commit.setCommitString(QStringLiteral("3"));
    QApplication::sendEvent(&edit, &commit);
    EXPECT_EQ(edit.Picture(), L"13|2");
}

TEST(EditRoutes, CompositionOverASelectionLeavesItToWhatIsEntered)
{
    const auto compose = [](CAMSEdit &edit, const char *text) {
        QInputMethodEvent event(QLatin1String(text), {});
        QApplication::sendEvent(&edit, &event);
    };
    const auto enter = [](CAMSEdit &edit, const char *text) {
        QInputMethodEvent event;
        event.setCommitString(QLatin1String(text));
        QApplication::sendEvent(&edit, &event);
    };
    NumericEdit number;
    number.SetDigitsInGroup(3);
    place(number, L"1234567", 0, 3);
    compose(number, "a");
    compose(number, "ab");
    EXPECT_EQ(number.GetText(), L"1,234,567");
    enter(number, "9");
    EXPECT_EQ(number.GetText(), L"934,567");

    class Masked : public TMaskedEdit<WidgetEditBox> {
    public:
        Masked() : TValidatingEdit(L"##/##") { GetSymbolArray() = mask_symbols::kDigits; }
    } masked;
    place(masked, L"1234", 1, 3);
    compose(masked, "5");
    EXPECT_EQ(masked.GetText(), L"12/34");
    compose(masked, "");
    EXPECT_EQ(masked.Picture(), L"1[2/]34") << "cancelled";
    compose(masked, "5");
    enter(masked, "5");
    EXPECT_EQ(masked.Picture(), L"15|/34") << "as the key does";
}

TEST(EditRoutes, ReplacedTextIsReducedToItsValidForm)
{
    NumericEdit edit;
    place(edit, L"123", 3, 3);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("x9"), -2, 2);
    QApplication::sendEvent(&edit, &event);
    EXPECT_EQ(edit.GetText(), L"19");
}

// Characters of two halves

TEST(EditRoutes, PositionsAreCountedInWholeCharacters)
{
    AlphanumericEdit edit(3);
    const std::wstring smile(1, L'\U0001F600');
    edit.SetWindowText(L"a" + smile + L"b");
    EXPECT_EQ(edit.text().size(), 4);
    edit.SetSel(2, 3);
    EXPECT_EQ(edit.GetSel(), (Selection{2, 3}));
    EXPECT_EQ(edit.selectedText(), QStringLiteral("b"));
    edit.SetSel(1, 2);
    EXPECT_EQ(ToWide(edit.selectedText()), smile);
    edit.SetSel(0, 0);
    edit.Type(L'\U0001F600');
    EXPECT_EQ(edit.GetText(), smile + smile + L"b") << "a full box overwrites a whole character";
    EXPECT_EQ(edit.GetSel(), (Selection{1, 1}));
    edit.SetWindowText(smile + smile + smile + smile);
    EXPECT_EQ(edit.GetText(), smile + smile + smile) << "none is halved";
    edit.SetWindowText(L"");
    edit.Type(L'\U0001F600');
    EXPECT_EQ(edit.GetText(), smile);
}

// The widget and the fake box are one

TEST(EditRoutes, TheWidgetDoesWhatTheFakeBoxDoesWithAnyKeys)
{
    const unsigned seed = 20240517;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int useful = 0;
    for (int round = 0; round < 150; ++round) {
        class Fake : public TNumericEdit<FakeEditBox> {
        public:
            Fake() : TValidatingEdit(6, 2, kNoSettings) {}
        } fake;
        NumericEdit widget(6, 2);
        for (NumericBehavior *edit : std::initializer_list<NumericBehavior *>{&fake, &widget}) {
            edit->SetDigitsInGroup(round % 4);
            edit->SetPrefix(round % 3 == 0 ? L"$ " : L"");
            edit->ModifyFlags(round % 5 == 0 ? DecimalAfterMaxWhole | PadZerosAfterDecimal : 0, 0);
        }
        std::vector<std::uint8_t> data(120);
        std::ranges::generate(data, [&] { return static_cast<std::uint8_t>(random()); });
        edit_ops::Bytes bytes(data.data(), data.size());
        while (!bytes.AtEnd()) {
            const edit_ops::Op op = edit_ops::NextOp(bytes);
            const std::wstring before = fake.Picture();
            edit_ops::Apply(fake, op);
            edit_ops::Apply(widget, op);
            useful += fake.Picture() != before ? 1 : 0;
            ASSERT_EQ(widget.Picture(), fake.Picture())
                << "round " << round << " kind " << static_cast<int>(op.kind) << " character "
                << static_cast<unsigned>(op.character) << " key " << op.key << " from " << before;
        }
    }
    EXPECT_GT(useful, 2000);
}
