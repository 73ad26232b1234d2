// Texts set from code on the real widget, and what listeners hear of every change.
#include "tests/controls/RoutedEdits.h"

#include <gmock/gmock.h>

#include <QApplication>

using namespace AMSEdit;
using namespace routed;
using testing::ElementsAre;

TEST(EditRoutes, SetsFromCodeAreReducedByEveryName)
{
    NumericEdit edit(4, 2);
    edit.setText(QStringLiteral("a12345"));
    EXPECT_EQ(edit.GetText(), L"1234");
    QLineEdit &plain = edit;
    plain.setText(QStringLiteral("b56.789"));
    EXPECT_EQ(edit.GetText(), L"56.78");
    edit.setProperty("text", QStringLiteral("7c7"));
    EXPECT_EQ(edit.GetText(), L"77");
    plain.insert(QStringLiteral("x8"));
    EXPECT_EQ(edit.GetText(), L"778");
    edit.SetDigitsInGroup(3);
    QMetaObject::invokeMethod(&edit, "setText", Q_ARG(QString, QStringLiteral("1234")));
    EXPECT_EQ(edit.GetText(), L"1,234");
    plain.backspace();
    EXPECT_EQ(edit.GetText(), L"123");
    plain.undo();
    EXPECT_EQ(edit.GetText(), edit.GetValidText());
    edit.clear();
    EXPECT_EQ(edit.GetText(), L"");
    EXPECT_FALSE(edit.isUndoAvailable());
}

TEST(EditRoutes, ListenersHearOfTheTextOnceAndInItsFinalForm)
{
    NumericEdit edit;
    edit.SetDigitsInGroup(3);
    place(edit, L"123", 3, 3);
    const Heard heard(edit);
    edit.Type(L'4');
    EXPECT_THAT(heard.changed, ElementsAre("1,234"));
    EXPECT_THAT(heard.edited, ElementsAre("1,234"));
    edit.Type(L'x');
    EXPECT_THAT(heard.changed, testing::SizeIs(1)) << "a dropped key changes nothing";
    edit.setText(QStringLiteral("a5b"));
    EXPECT_THAT(heard.changed, ElementsAre("1,234", "5"));
    EXPECT_THAT(heard.edited, ElementsAre("1,234")) << "set by the program";
    EXPECT_FALSE(edit.isModified());
    edit.SetClipboard(L"x6");
    edit.PressPaste();
    EXPECT_THAT(heard.changed, ElementsAre("1,234", "5", "56"));
    EXPECT_THAT(heard.edited, ElementsAre("1,234", "56"));
    EXPECT_TRUE(edit.isModified());
}

TEST(EditRoutes, ListenersOfACallPastTheBoxHearOfTheFinalFormLast)
{
    NumericEdit edit;
    const Heard heard(edit);
    static_cast<QLineEdit &>(edit).setText(QStringLiteral("a5b"));
    QApplication::processEvents();
    ASSERT_FALSE(heard.changed.empty());
    EXPECT_EQ(heard.changed.back(), QStringLiteral("5"));
}

TEST(EditRoutes, AListenerMaySetTheTextByEitherName)
{
    NumericEdit edit(4, 2);
    const auto connection = QObject::connect(&edit, &QLineEdit::textChanged, [&](const QString &text) {
        if (text == QStringLiteral("1"))
            static_cast<QLineEdit &>(edit).setText(QStringLiteral("x77y"));
        else if (text == QStringLiteral("771"))
            edit.setText(QStringLiteral("z88"));
    });
    edit.Type(L'1');
    EXPECT_EQ(edit.GetText(), L"77");
    edit.Type(L'1');
    EXPECT_EQ(edit.GetText(), L"88");
    QObject::disconnect(connection);
}

TEST(EditRoutes, ACutIsToldAsItIsLeft)
{
    NumericEdit edit;
    edit.SetDigitsInGroup(3);
    place(edit, L"123456", 4, 7);
    const Heard heard(edit);
    edit.PressCut();
    QApplication::processEvents();
    EXPECT_EQ(edit.GetText(), L"123,");
    EXPECT_THAT(heard.changed, ElementsAre("123,"));
}

TEST(EditRoutes, CaretAndSelectionAreToldOnce)
{
    NumericEdit edit;
    edit.SetDigitsInGroup(3);
    place(edit, L"123", 3, 3);
    std::vector<std::pair<int, int>> moves;
    int selections = 0;
    QObject::connect(&edit, &QLineEdit::cursorPositionChanged, [&](int from, int to) { moves.emplace_back(from, to); });
    QObject::connect(&edit, &QLineEdit::selectionChanged, [&] { ++selections; });
    edit.Type(L'4');
    EXPECT_THAT(moves, ElementsAre(std::pair(3, 5)));
    EXPECT_EQ(selections, 0);
    edit.SetSel(0, 2);
    EXPECT_EQ(selections, 1);
}
