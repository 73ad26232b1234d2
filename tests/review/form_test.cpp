// The review dialog's form: every control of its table, captions, tips, digits, the keyboard, names for those who hear
// it.
#include "tests/review/review_fixture.h"

#include "controls/AMSEdits.h"
#include "controls/Mnemonics.h"
#include "controls/WideText.h"

#include <QKeyEvent>
#include <QLocale>
#include <QRadioButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStyle>

#include <map>
#include <set>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Form : public ReviewDialogTest {
protected:
    Form()
    {
        addSection(L"D1", {0, 5}, {10, 5});
        addArea(L"A1", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    }
    static void pressKeys(QWidget *widget, const QString &text)
    {
        for (const QChar character : text) {
            QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
            QApplication::sendEvent(widget, &key);
        }
    }
    void startIn(const char *language)
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        velmor::Services::instance().start(
            {.language = language},
            velmor::Paths({std::filesystem::path(source ? source : ".") / "resources"}, m_userFolder));
    }
};

TEST_F(Form, EveryControlOfTheTableIsThereInItsKind)
{
    const std::map<int, const char *> kinds{
        {129, "QRadioButton"},
        {130, "QRadioButton"},
        {133, "QRadioButton"},
        {134, "QRadioButton"},
        {120, "AMSEdit::CAMSNumericEdit"},
        {121, "AMSEdit::CAMSNumericEdit"},
        {122, "AMSEdit::CAMSNumericEdit"},
        {123, "AMSEdit::CAMSNumericEdit"},
        {107, "CCatchmentTree"},
        {108, "CXListCtrl"},
        {109, "QLineEdit"},
        {110, "AMSEdit::CAMSNumericEdit"},
        {220, "AMSEdit::CAMSNumericEdit"},
        {111, "QLabel"},
        {112, "QLabel"},
        {327, "QLabel"},
        {126, "CXColorStatic"},
        {106, "QCheckBox"},
        {131, "QCheckBox"},
        {132, "QCheckBox"},
        {127, "QPushButton"},
        {209, "ZEMGis::Utility::CZEMBitmapButton"},
        {114, "ZEMGis::Utility::CZEMBitmapButton"},
        {115, "ZEMGis::Utility::CZEMBitmapButton"},
        {124, "ZEMGis::Utility::CZEMBitmapButton"},
        {125, "ZEMGis::Utility::CZEMBitmapButton"},
        {250, "QPushButton"},
        {260, "QPushButton"},
        {135, "QComboBox"},
        {252, "QPushButton"},
        {255, "QPushButton"},
        {353, "QLineEdit"},
        {253, "QPushButton"},
        {352, "AMSEdit::CAMSNumericEdit"},
        {296, "QCheckBox"},
        {218, "AMSEdit::CAMSNumericEdit"},
        {100, "QPushButton"},
        {3, "QPushButton"},
        {1, "QPushButton"},
    };
    run([&](CReviewUnderTest &dialog) {
        for (const auto &[control, kind] : kinds) {
            QWidget *widget = dialog.GetDlgItem(control);
            ASSERT_NE(widget, nullptr) << control;
            EXPECT_TRUE(widget->inherits(kind)) << control << " is a " << widget->metaObject()->className();
            EXPECT_TRUE(widget->isVisibleTo(&dialog)) << control;
        }
        for (const int hidden : {254, 219, 256, 258, 9, 102, 251, 257, 350, 351, 354}) {
            QWidget *widget = dialog.GetDlgItem(hidden);
            ASSERT_NE(widget, nullptr) << hidden;
            EXPECT_FALSE(widget->isVisibleTo(&dialog)) << hidden;
        }
        EXPECT_EQ(dialog.GetDlgItem(2), nullptr); // Escape and the close box cancel
    });
}

TEST_F(Form, CaptionsAndTipsComeFromTheirMessages)
{
    const std::map<int, unsigned> captions{
        {338, 4579}, {129, 11218}, {130, 2019}, {133, 2020}, {134, 2021}, {337, 1980}, {106, 11218}, {131, 2019},
        {132, 2020}, {111, 1989},  {112, 1991}, {327, 1992}, {127, 1885}, {357, 1124}, {250, 11225}, {260, 5384},
        {358, 269},  {252, 2014},  {255, 2015}, {254, 2013}, {359, 3529}, {361, 4379}, {360, 4381},  {256, 3468},
        {258, 4581}, {100, 2666},  {3, 4582},   {1, 60},     {9, 50156},
    };
    const std::map<int, unsigned> tips{{114, 8977}, {115, 8978}, {124, 462}, {125, 7243}, {260, 11199}, {209, 2010}};
    for (const char *language : {"hr", "en"}) {
        startIn(language);
        run([&](CReviewUnderTest &dialog) {
            EXPECT_EQ(ToWide(dialog.windowTitle()), message(4578));
            for (const auto &[control, number] : captions)
                EXPECT_EQ(ToWide(dialog.text(control)), message(number)) << control << ' ' << language;
            for (const auto &[control, number] : tips)
                EXPECT_EQ(ToWide(dialog.GetDlgItem(control)->toolTip()), message(number)) << control;
        });
    }
}

TEST_F(Form, EachNumericEditTakesItsDigitsAndNoSign)
{
    run([&](CReviewUnderTest &dialog) {
        for (const auto &[control, taken] : {std::pair{110, "1234.9876"}, std::pair{220, "12345678.9876"},
                                             std::pair{218, "1234.9876"}, std::pair{352, "1234.9876"}}) {
            auto *edit = dialog.Control<QLineEdit>(control);
            edit->setEnabled(true);
            edit->clear();
            pressKeys(edit, "a-" + QString::fromLatin1(taken).section('.', 0, 0) + "9.98765");
            EXPECT_EQ(edit->text(), taken) << control;
        }
        double least = -1, greatest = -1;
        dialog.Control<AMSEdit::CAMSNumericEdit>(110)->GetRange(&least, &greatest);
        EXPECT_EQ(least, 0.0);
        EXPECT_EQ(greatest, 1.0);
    });
}

TEST_F(Form, TheRangeOfTheCoefficientIsNotEnforcedByTheEdit)
{
    run([&](CReviewUnderTest &dialog) {
        auto *edit = dialog.Control<QLineEdit>(110);
        edit->setFocus();
        edit->clear();
        pressKeys(edit, "7.5");
        dialog.tree()->setFocus();
        EXPECT_EQ(edit->text(), "7.5");
    });
}

TEST_F(Form, NumbersReadTheSameWhereADecimalCommaIsTheCustom)
{
    const QLocale before;
    QLocale::setDefault(QLocale("hr_HR"));
    keep("m_edHScale", {38, 0.75});
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(352), "0.75");
        EXPECT_EQ(dialog.text(123), "1");
        EXPECT_EQ(dialog.list()->GetItemText(0, 1), L"100.0000");
        EXPECT_EQ(dialog.text(109), "0.0100");
    });
    QLocale::setDefault(before);
}

TEST_F(Form, WhatOnlyShowsTakesNoKeys)
{
    run([&](CReviewUnderTest &dialog) {
        for (const int control : {120, 121, 122, 123, 109, 353}) {
            auto *edit = dialog.Control<QLineEdit>(control);
            const QString before = edit->text();
            EXPECT_TRUE(edit->isReadOnly()) << control;
            pressKeys(edit, "1");
            EXPECT_EQ(edit->text(), before) << control;
        }
    });
}

TEST_F(Form, EveryLetterReachesOneControlInEachLanguage)
{
    for (const char *language : {"hr", "en"}) {
        startIn(language);
        run([&](CReviewUnderTest &dialog) {
            std::map<QString, int> owner;
            for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
                const int control = widget->property(kControlIdProperty).toInt();
                QString shown;
                if (const auto *label = qobject_cast<const QLabel *>(widget))
                    shown = label->buddy() ? label->text() : QString();
                else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
                    shown = button->text();
                if (!widget->isVisibleTo(&dialog) || shown.isEmpty())
                    continue;
                const QKeySequence letter = QKeySequence::mnemonic(shown);
                if (letter.isEmpty()) {
                    // 111 belongs to a field that only shows, 358 is without where the letters don't suffice.
                    EXPECT_TRUE(control == 1 || control == 253 || control == 111 || control == 358)
                        << control << ' ' << shown.toStdString() << ' ' << language;
                    continue;
                }
                EXPECT_TRUE(owner.emplace(letter.toString(), control).second)
                    << letter.toString().toStdString() << ": " << control << " and " << owner[letter.toString()] << ' '
                    << language;
            }
        });
    }
}

TEST_F(Form, EveryControlThatTakesTheFocusHasAName)
{
    run([&](CReviewUnderTest &dialog) {
        for (QWidget *widget : dialog.findChildren<QWidget *>()) {
            const int control = widget->property(kControlIdProperty).toInt();
            if (control == 0 || widget->focusPolicy() == Qt::NoFocus || !widget->isVisibleTo(&dialog))
                continue;
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const bool spoken = button && !button->text().isEmpty() && control != 253;
            EXPECT_TRUE(spoken || !widget->accessibleName().isEmpty()) << control;
        }
    });
}

TEST_F(Form, TheTabKeyGoesThroughTheControlsInTheOrderOfTheForm)
{
    run([&](CReviewUnderTest &dialog) {
        std::vector<int> order;
        dialog.GetDlgItem(107)->setFocus();
        for (QWidget *widget = dialog.GetDlgItem(107)->nextInFocusChain(); widget != dialog.GetDlgItem(107);
             widget = widget->nextInFocusChain()) {
            const int control = widget->property(kControlIdProperty).toInt();
            if (control != 0 && widget->isVisibleTo(&dialog) && (widget->focusPolicy() & Qt::TabFocus))
                order.push_back(control);
        }
        EXPECT_THAT(order,
                    ElementsAre(296, 218, 109, 110, 220, 127, 106, 131, 132, 108, 250, 260, 135, 252, 255, 353, 253,
                                352, 100, 3, 1, 129, 130, 133, 134, 120, 121, 122, 123, 114, 115, 124, 125, 209));
    });
}

TEST_F(Form, NothingIsCutOffInAnyLanguageAtAnySizeOfTheLetters)
{
    const QFont before = QApplication::font();
    for (const char *language : {"hr", "en"}) {
        for (const double factor : {1.0, 1.5, 2.0}) {
            QFont font = before;
            font.setPointSizeF(before.pointSizeF() * factor);
            QApplication::setFont(font);
            startIn(language);
            run([&](CReviewUnderTest &dialog) {
                for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
                    const int control = widget->property(kControlIdProperty).toInt();
                    const bool captioned = qobject_cast<const QAbstractButton *>(widget) ||
                                           (qobject_cast<const QLabel *>(widget) && control != 126);
                    if (control == 0 || !captioned || !widget->isVisible())
                        continue;
                    // Three dots need less than a button usually takes.
                    const int needed =
                        control == 253 ? widget->fontMetrics().horizontalAdvance("... ") : widget->sizeHint().width();
                    EXPECT_GE(widget->width(), needed) << control << ' ' << language << ' ' << factor;
                    EXPECT_GE(widget->height(), widget->minimumSizeHint().height())
                        << control << ' ' << language << ' ' << factor;
                }
            });
        }
    }
    QApplication::setFont(before);
}

TEST_F(Form, WhatAPersonMakesWiderGoesToTheTree)
{
    run([&](CReviewUnderTest &dialog) {
        auto *splitter = dialog.findChild<QSplitter *>();
        ASSERT_NE(splitter, nullptr);
        const QList<int> before = splitter->sizes();
        dialog.resize(dialog.width() + 200, dialog.height());
        QCoreApplication::processEvents();
        const QList<int> after = splitter->sizes();
        EXPECT_EQ(after.at(1), before.at(1));
        EXPECT_GT(after.at(0), before.at(0) + 150);
    });
}

TEST_F(Form, TheKeyboardStartsInTheTree)
{
    run([&](CReviewUnderTest &dialog) { EXPECT_EQ(dialog.focusWidget(), dialog.tree()); });
}

TEST_F(Form, ItOpensWhereAndAsItWasLeft)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.move(37, 41);
        dialog.resize(dialog.width() - 10, dialog.height() - 20);
        auto *splitter = dialog.findChild<QSplitter *>();
        splitter->setSizes({splitter->sizes().at(0) - 30, splitter->sizes().at(1) + 30});
        dialog.click(1);
    });
    QSize left;
    int tree = 0;
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.frameGeometry().topLeft(), QPoint(37, 41));
        left = dialog.size();
        tree = dialog.findChild<QSplitter *>()->sizes().at(0);
        dialog.resize(dialog.width() - 20, dialog.height());
        QCoreApplication::processEvents();
        dialog.close();
    });
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.size(), QSize(left.width() - 20, left.height()));
        EXPECT_EQ(dialog.findChild<QSplitter *>()->sizes().at(0), tree - 20);
        dialog.resize(left);
    });
}

} // namespace
