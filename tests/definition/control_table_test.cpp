// The controls of the definition dialog one by one: kind, built-in caption, digits, order of the keyboard.
#include "tests/definition/dialog_fixture.h"

#include "contracts/HostDialog.h"
#include "controls/AMSEdits.h"
#include "controls/WideText.h"

#include <QKeyEvent>
#include <QLocale>
#include <QRadioButton>
#include <QScopeGuard>
#include <QTest>

using namespace ZEMGis;
using AMSEdit::CAMSNumericEdit;
using testing::ElementsAre;
using velmor::Journal;

namespace {

using ControlTable = DefinitionDialogTest;

struct Row {
    int control;
    const char *kind; ///< the class
    const wchar_t *caption;
};

constexpr Row kRows[] = {
    {336, "QLabel", L"Vrsta površine"},
    {106, "QCheckBox", L"Catch"},
    {107, "QCheckBox", L"House"},
    {108, "QCheckBox", L"Industrial"},
    {256, "QComboBox", nullptr},
    {289, "QLabel", L"Način definiranja"},
    {257, "QComboBox", nullptr},
    {268, "QCheckBox", L"Traži podslivove"},
    {203, "ZEMGis::Selection::CSelectionButton", L"Button1"},
    {346, "QLabel", L"Trenutna dionica"},
    {266, "CXColorStatic", L"D1"},
    {204, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {205, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {296, "QCheckBox", L"Zoom"},
    {218, "AMSEdit::CAMSNumericEdit", L""},
    {217, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {219, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {207, "ZEMGis::Utility::CZEMBitmapButton", L"Layer granica sliva"},
    {363, "QLineEdit", L""},
    {281, "CXColorStatic", L"Odaberite elemente topologije"},
    {259, "QLabel", L"Zadavanje slivne površine"},
    {210, "QTreeWidget", nullptr},
    {208, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {209, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {239, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {290, "ZEMGis::Utility::CZEMBitmapButton", L"Auto"},
    {274, "QCheckBox", L"Oznaka sliva"},
    {135, "QComboBox", nullptr},
    {286, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {334, "QLabel", L"Boja definiranih površina:"},
    {332, "CXColorStatic", L""},
    {335, "QLabel", L"Boja trenutačne površine:"},
    {333, "CXColorStatic", L""},
    {328, "QLabel", L"Ime površine"},
    {329, "QLineEdit", L""},
    {326, "AMSEdit::CAMSNumericEdit", L""},
    {301, "QLabel", L"Površina [ha]"},
    {213, "AMSEdit::CAMSNumericEdit", L""},
    {343, "QRadioButton", L"Vrsta tla"},
    {344, "QRadioButton", L"ATV 118"},
    {322, "QComboBox", nullptr},
    {246, "ZEMGis::Utility::CZEMBitmapButton", L""},
    {325, "QLabel", L"Pad sliva"},
    {345, "QComboBox", nullptr},
    {349, "QLabel", L"Intenzitet"},
    {222, "AMSEdit::CAMSNumericEdit", L""},
    {348, "QLabel", L"% otjecanja"},
    {347, "QComboBox", nullptr},
    {324, "QLabel", L"Koeficijent"},
    {215, "AMSEdit::CAMSNumericEdit", L""},
    {327, "QLabel", L"Gustoća stanovništva"},
    {220, "AMSEdit::CAMSNumericEdit", L""},
    {244, "QLabel", L"Podloga:"},
    {216, "AMSEdit::CAMSNumericEdit", L""},
    {323, "QLabel", L"Redni broj"},
    {221, "ZEMGis::Utility::CZEMBitmapButton", L"Spremi podatke"},
    {100, "ZEMGis::Utility::CZEMBitmapButton", L"Info-Sections"},
    {101, "ZEMGis::Utility::CZEMBitmapButton", L"Info-Area"},
    {3, "QPushButton", L"Hide"},
    {2, "QPushButton", L"Close"},
    {9, "QPushButton", L"Help"},
};

TEST_F(ControlTable, EachControlIsOfItsKindWithItsBuiltInCaption)
{
    const CDialogUnderTest dialog; // not run: nothing has given it texts yet
    for (const Row &row : kRows) {
        const QWidget *widget = dialog.GetDlgItem(row.control);
        ASSERT_NE(widget, nullptr) << row.control;
        EXPECT_STREQ(widget->metaObject()->className(), row.kind) << row.control;
        if (row.caption) {
            EXPECT_EQ(dialog.text(row.control), ToQString(row.caption)) << row.control;
        }
    }
}

TEST_F(ControlTable, NoOtherControlHasANumberAndNoneHasItTwice)
{
    const CDialogUnderTest dialog;
    std::vector<int> expected, found;
    for (const Row &row : kRows)
        expected.push_back(row.control);
    for (const QWidget *widget : dialog.findChildren<QWidget *>())
        if (const QVariant number = widget->property(kControlIdProperty); number.isValid())
            found.push_back(number.toInt());
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(expected));
}

TEST_F(ControlTable, NumericEditsHaveTheirDigitsSignAndSeparators)
{
    struct Field {
        int control, whole, decimals;
        bool negative;
    };
    constexpr Field kFields[] = {
        {218, 4, 4, false}, {215, 4, 4, true},  {213, 8, 4, true},  {220, 8, 4, true},
        {216, 8, 4, true},  {222, 4, 4, false}, {326, 8, 0, false},
    };
    run([&](CDialogUnderTest &dialog) {
        for (const Field &field : kFields) {
            const auto *edit = dialog.Control<CAMSNumericEdit>(field.control);
            ASSERT_NE(edit, nullptr) << field.control;
            EXPECT_EQ(edit->GetMaxWholeDigits(), field.whole) << field.control;
            EXPECT_EQ(edit->GetMaxDecimalPlaces(), field.decimals) << field.control;
            EXPECT_EQ(edit->IsNegativeAllowed(), field.negative) << field.control;
            wchar_t point = 0, group = 0;
            edit->GetSeparators(&point, &group);
            EXPECT_EQ(point, L'.') << field.control;
            EXPECT_EQ(group, L',') << field.control;
        }
    });
}

TEST_F(ControlTable, ThePointIsTheDecimalPointWhateverTheLocale)
{
    const QLocale before;
    const auto back = qScopeGuard([&] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::Croatian, QLocale::Croatia));
    run([&](CDialogUnderTest &dialog) {
        EXPECT_EQ(dialog.text(218), "1.5");
        dialog.type(220, "12.25");
        EXPECT_EQ(dialog.text(220), "12.25");
        EXPECT_EQ(dialog.Control<CAMSNumericEdit>(220)->GetDouble(), 12.25);
    });
    run([&](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.text(220), "12.25"); });
}

TEST_F(ControlTable, TextFromCodeIsHeldToTheEditsDigitsAndSign)
{
    run([](CDialogUnderTest &dialog) {
        dialog.type(215, "-1000000.12345");
        EXPECT_EQ(dialog.text(215), "-1000.1234");
        dialog.type(222, "-12345.67891");
        EXPECT_EQ(dialog.text(222), "1234.6789");
        dialog.type(213, "");
        EXPECT_EQ(dialog.Control<CAMSNumericEdit>(213)->GetDouble(), 0.0); // an empty edit reads 0
    });
}

void pressEnter(QWidget *widget)
{
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(widget, &event);
    }
}

/// Numbers of the buttons that are drawn as the one that Enter presses.
std::vector<int> ringed(const CDialogUnderTest &dialog)
{
    std::vector<int> buttons;
    for (const QPushButton *button : dialog.findChildren<QPushButton *>())
        if (button->isDefault())
            buttons.push_back(button->property(kControlIdProperty).toInt());
    return buttons;
}

TEST_F(ControlTable, TheDialogOpensWithTheSelectionOfSectionsAsItsDefaultButton)
{
    run([](CDialogUnderTest &dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        EXPECT_TRUE(dialog.GetDlgItem(203)->hasFocus());
        EXPECT_THAT(ringed(dialog), ElementsAre(203));
    });
}

TEST_F(ControlTable, EnterInAFieldEndsNothingAndPressesNothingAndNoButtonIsRingedThere)
{
    run([](CDialogUnderTest &dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        int pressed = 0;
        for (const QPushButton *button : dialog.findChildren<QPushButton *>())
            QObject::connect(button, &QPushButton::clicked, button, [&] { ++pressed; });
        for (const Row &row : kRows) {
            QWidget *widget = dialog.GetDlgItem(row.control);
            if (qobject_cast<QPushButton *>(widget) || !widget->isVisible())
                continue;
            widget->setEnabled(true);
            if (widget->focusPolicy() != Qt::NoFocus) {
                widget->setFocus();
                EXPECT_TRUE(widget->hasFocus()) << row.control;
                EXPECT_THAT(ringed(dialog), testing::IsEmpty()) << row.control;
            }
            pressEnter(widget);
            EXPECT_TRUE(dialog.isVisible()) << row.control;
        }
        EXPECT_EQ(pressed, 0);
    });
}

TEST_F(ControlTable, ThePushButtonWithTheFocusIsTheOneWithTheRingAndEnterPressesIt)
{
    run([&](CDialogUnderTest &dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        select(dialog, {L"D1", L"D2"});
        const Notification::SetActiveCommand other(L"OTHER"); // no handler need run
        for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
            const int control = button->property(kControlIdProperty).toInt();
            // The picks ask without looking for another command, the last one closes, the first opens its menu.
            if (!button->isVisible() || testing::Matches(testing::AnyOf(203, 208, 209, 239, 290, 2))(control))
                continue;
            int pressed = 0;
            QObject::connect(button, &QPushButton::clicked, button, [&] { ++pressed; });
            button->setEnabled(true);
            button->setFocus();
            EXPECT_THAT(ringed(dialog), ElementsAre(control));
            pressEnter(button);
            EXPECT_EQ(pressed, 2) << control;
        }
    });
}

TEST_F(ControlTable, TabGoesThroughTheControlsInTheOrderOfWork)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2"});
        for (const Row &row : kRows)
            dialog.GetDlgItem(row.control)->setEnabled(true);
        std::vector<int> order;
        const QWidget *first = dialog.GetDlgItem(203);
        const QWidget *widget = first;
        do {
            const QVariant number = widget->property(kControlIdProperty);
            if (number.isValid() && (widget->focusPolicy() & Qt::TabFocus) && widget->isVisible())
                order.push_back(number.toInt());
            widget = widget->nextInFocusChain();
        } while (widget != first);
        EXPECT_THAT(order, ElementsAre(203, 204, 205, 296, 218, 217, 257, 207, 363, 268, 106, 107, 108, 219, 210, 208,
                                       209, 239, 290, 329, 326, 213, 343, 322, 246, 344, 345, 222, 347, 215, 220, 274,
                                       135, 221, 100, 101, 3, 2));
    });
}

TEST_F(ControlTable, TheTerrainListIsLoadedBetweenTheSelectionButtonAndTheAreas)
{
    Journal::instance().setRecording(true);
    run([](CDialogUnderTest &) { Journal::instance().setRecording(false); });
    // A new drawing takes the file's list when the catalogue is loaded, which shows in the journal.
    const auto order = calls({"CSelectionButton::SetSelectionType", "CZEMCDictionaryPtr::dctWrite",
                              "CCatchmentAreaManager::GetAllCatchmentAreas"});
    ASSERT_GE(order.size(), 3u);
    EXPECT_EQ(order.front(), "CSelectionButton::SetSelectionType");
    EXPECT_EQ(order[1], "CZEMCDictionaryPtr::dctWrite");
    EXPECT_EQ(order.back(), "CCatchmentAreaManager::GetAllCatchmentAreas");
    EXPECT_THAT(entriesOf("CZEMCDictionaryPtr::dctWrite").front().arguments.at(1), "TT_DEFINITION");
}

} // namespace
