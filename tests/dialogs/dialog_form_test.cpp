// What the small dialogs are as forms: names for those who hear them, letters, room for texts, keys.
#include "tests/dialogs/small_dialog_fixture.h"

#include "controls/XListCtrl.h"
#include "dialogs/CatchLabelDlg.h"
#include "dialogs/CatchLayerDlg.h"
#include "dialogs/DlgCatchmentSections.h"
#include "dialogs/TerrainTypeSimpleDlg.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>

namespace {

class SmallDialogForm : public SmallDialogTest {
protected:
    /// Runs each of the dialogs in both languages.
    void inEach(const std::function<void(CAdUiBaseDialog &)> &look)
    {
        for (const char *language : {"hr", "en"}) {
            start(language);
            CCatchLayerDlg layers;
            run(layers, [&] { look(layers); });
            CTerrainTypeSimpleDlg terrains;
            run(terrains, [&] { look(terrains); });
            CCatchLabelDlg label;
            run(label, [&] { look(label); });
            CDlgCatchmentSections sections;
            run(sections, [&] { look(sections); });
        }
    }
};

TEST_F(SmallDialogForm, EveryControlHasAnAccessibleName)
{
    inEach([](CAdUiBaseDialog &dialog) {
        for (QWidget *widget : dialog.findChildren<QWidget *>()) {
            if (!widget->property(kControlIdProperty).isValid())
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
        EXPECT_EQ(letters.size(), dynamic_cast<const CDlgCatchmentSections *>(&dialog) ? 1 : 2);
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
                if (!widget->isVisible() ||
                    (!qobject_cast<const QLabel *>(widget) && !qobject_cast<const QAbstractButton *>(widget)))
                    continue;
                EXPECT_GE(widget->width(), widget->sizeHint().width()) << widget->objectName().toStdString();
                EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
            }
            for (const CXListCtrl *list : dialog.findChildren<CXListCtrl *>()) {
                int width = 0;
                for (int column = 0; column < list->GetColumnCount(); ++column) {
                    EXPECT_GE(list->GetColumnWidth(column), list->horizontalHeader()->sectionSizeHint(column));
                    for (int row = 0; row < list->GetItemCount(); ++row)
                        EXPECT_GE(list->GetColumnWidth(column),
                                  list->fontMetrics().horizontalAdvance(
                                      QString::fromStdWString(list->GetItemText(row, column))));
                    width += list->GetColumnWidth(column);
                }
                EXPECT_GE(list->viewport()->width(), width) << list->objectName().toStdString();
            }
        });
    }
    QApplication::setFont(usual);
}

/// Controls besides the push buttons that take the focus.
std::vector<int> fieldsOf(const CAdUiBaseDialog &dialog)
{
    std::vector<int> fields;
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        const QVariant number = widget->property(kControlIdProperty);
        if (number.isValid() && widget->focusPolicy() != Qt::NoFocus && !qobject_cast<const QPushButton *>(widget))
            fields.push_back(number.toInt());
    }
    return fields;
}

void press(QWidget *widget, int key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

template <class Dialog>
class OkDialogForm : public SmallDialogTest {
};
using OkDialogs = testing::Types<CCatchLayerDlg, CTerrainTypeSimpleDlg, CCatchLabelDlg>;
TYPED_TEST_SUITE(OkDialogForm, OkDialogs);

TYPED_TEST(OkDialogForm, EnterInAFieldOrAListPressesOkWhichIsTheDefaultButton)
{
    const std::vector<int> fields = fieldsOf(TypeParam());
    ASSERT_GE(fields.size(), 2u);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        for (const int field : fields) {
            TypeParam dialog;
            EXPECT_EQ(this->run(dialog,
                                [&] {
                                    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
                                    dialog.GetDlgItem(field)->setFocus();
                                    for (const int button : {1, 2})
                                        EXPECT_EQ(dialog.template Control<QPushButton>(button)->isDefault(),
                                                  button == 1);
                                    press(dialog.GetDlgItem(field), key);
                                    EXPECT_FALSE(dialog.isVisible()) << field;
                                }),
                      CAdUiBaseDialog::kOk)
                << field;
        }
    }
}

TYPED_TEST(OkDialogForm, EscapeEndsItWithCancelFromEachControl)
{
    for (const int field : fieldsOf(TypeParam())) {
        TypeParam dialog;
        EXPECT_EQ(this->run(dialog,
                            [&] {
                                press(dialog.GetDlgItem(field), Qt::Key_Escape);
                                EXPECT_FALSE(dialog.isVisible()) << field;
                            }),
                  CAdUiBaseDialog::kCancel);
    }
}

TYPED_TEST(OkDialogForm, EnterOnAButtonPressesThatOneWhichThenIsTheDefault)
{
    for (const int control : {1, 2}) {
        TypeParam dialog;
        EXPECT_EQ(this->run(dialog,
                            [&] {
                                ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
                                auto *button = dialog.template Control<QPushButton>(control);
                                button->setFocus();
                                EXPECT_TRUE(button->isDefault()) << control;
                                press(button, Qt::Key_Return);
                                EXPECT_FALSE(dialog.isVisible()) << control;
                            }),
                  control);
    }
}

} // namespace
