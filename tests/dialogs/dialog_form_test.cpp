// What both small dialogs are as forms: names for those who hear them, letters, room for texts, keys.
#include "tests/dialogs/small_dialog_fixture.h"

#include "dialogs/CatchLayerDlg.h"
#include "dialogs/TerrainTypeSimpleDlg.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>

namespace {

class SmallDialogForm : public SmallDialogTest {
protected:
    /// Runs each of the two dialogs in both languages.
    void inEach(const std::function<void(CAdUiBaseDialog &)> &look)
    {
        for (const char *language : {"hr", "en"}) {
            start(language);
            CCatchLayerDlg layers;
            run(layers, [&] { look(layers); });
            CTerrainTypeSimpleDlg terrains;
            run(terrains, [&] { look(terrains); });
        }
    }
};

TEST_F(SmallDialogForm, EveryControlThatTakesTheFocusHasAnAccessibleName)
{
    inEach([](CAdUiBaseDialog &dialog) {
        for (QWidget *widget : dialog.findChildren<QWidget *>()) {
            if (widget->focusPolicy() == Qt::NoFocus || !widget->property(kControlIdProperty).isValid())
                continue;
            QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(accessible, nullptr);
            EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << widget->property(kControlIdProperty).toInt();
        }
    });
}

TEST_F(SmallDialogForm, KeyboardLettersAreUnique)
{
    inEach([](CAdUiBaseDialog &dialog) {
        QString letters;
        const auto take = [&](const QString &caption) {
            const qsizetype mark = caption.indexOf('&');
            if (mark < 0)
                return;
            EXPECT_FALSE(letters.contains(caption.at(mark + 1).toUpper())) << caption.toStdString();
            letters += caption.at(mark + 1).toUpper();
        };
        for (const QLabel *label : dialog.findChildren<QLabel *>())
            take(label->text());
        for (const QAbstractButton *button : dialog.findChildren<QAbstractButton *>())
            take(button->text());
        EXPECT_EQ(letters.size(), 2);
    });
}

TEST_F(SmallDialogForm, NothingIsCutOffAtTwiceTheFontToo)
{
    const QFont usual = QApplication::font();
    for (const int scale : {1, 2}) {
        QFont font = usual;
        font.setPointSizeF(usual.pointSizeF() * scale);
        QApplication::setFont(font);
        inEach([&](CAdUiBaseDialog &dialog) {
            for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
                if (!qobject_cast<const QLabel *>(widget) && !qobject_cast<const QAbstractButton *>(widget))
                    continue;
                EXPECT_GE(widget->width(), widget->sizeHint().width()) << widget->objectName().toStdString();
                EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
            }
        });
    }
    QApplication::setFont(usual);
}

TEST_F(SmallDialogForm, EnterEndsNeitherAndEscapeEndsBoth)
{
    inEach([](CAdUiBaseDialog &dialog) {
        for (QWidget *widget : dialog.findChildren<QWidget *>()) {
            if (widget->focusPolicy() == Qt::NoFocus || qobject_cast<QPushButton *>(widget))
                continue;
            QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            QApplication::sendEvent(widget, &enter);
            EXPECT_TRUE(dialog.isVisible()) << widget->objectName().toStdString();
        }
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(&dialog, &escape);
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST_F(SmallDialogForm, EnterOnAButtonPressesIt)
{
    for (const int control : {1, 2}) {
        CTerrainTypeSimpleDlg dialog;
        EXPECT_EQ(run(dialog,
                      [&] {
                          QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                          QApplication::sendEvent(dialog.GetDlgItem(control), &enter);
                          EXPECT_FALSE(dialog.isVisible()) << control;
                      }),
                  control);
    }
}

} // namespace
