// The dialog's form: what its edits take from the keyboard, which of them only show, and the images of its buttons.
#include "tests/definition/dialog_fixture.h"

#include "contracts/HostDialog.h"
#include "host/services/Icons.h"

#include <QIcon>
#include <QKeyEvent>

#include <set>

using namespace ZEMGis;
using testing::UnorderedElementsAreArray;

namespace {

using Form = DefinitionDialogTest;

/// Presses the keys of a text one after another.
void pressKeys(QWidget *widget, const QString &text)
{
    for (const QChar character : text) {
        QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QApplication::sendEvent(widget, &key);
    }
}

TEST_F(Form, EachNumericEditTakesItsDigitsItsDecimalsAndItsSign)
{
    struct Row {
        int control;
        const char *taken;
    };
    constexpr Row kRows[] = {
        {218, "1234.9876"},      {215, "-1234.9876"},     {213, "-12345678.9876"},
        {220, "-12345678.9876"}, {216, "-12345678.9876"}, {222, "1234.9876"},
    };
    run([&](CDialogUnderTest &dialog) {
        for (const Row &row : kRows) {
            auto *edit = dialog.Control<QLineEdit>(row.control);
            edit->setEnabled(true); // a disabled one takes no key
            edit->clear();
            const QString whole = QString::fromLatin1(row.taken).section('.', 0, 0);
            // A letter, a sign, whole digits and one too many, a point, decimals and one too many.
            pressKeys(edit, "a-" + whole.mid(whole.startsWith('-') ? 1 : 0) + "9.98765");
            EXPECT_EQ(edit->text(), row.taken) << row.control;
        }
    });
}

TEST_F(Form, TheCounterEditHasEightDigitsAndNeitherSignNorDecimals)
{
    run([&](CDialogUnderTest &dialog) {
        auto *edit = dialog.Control<QLineEdit>(326);
        edit->setEnabled(true);
        edit->setReadOnly(false);
        pressKeys(edit, "-12345678.9");
        EXPECT_EQ(edit->text(), "12345678");
    });
}

TEST_F(Form, TheCounterAndTheLayerSummaryOnlyShow)
{
    run([&](CDialogUnderTest &dialog) {
        for (const int control : {326, 363}) {
            auto *edit = dialog.Control<QLineEdit>(control);
            edit->setEnabled(true);
            const QString before = edit->text();
            EXPECT_TRUE(edit->isReadOnly()) << control;
            pressKeys(edit, "1");
            EXPECT_EQ(edit->text(), before) << control;
        }
        for (const int control : {218, 215, 213, 220, 216, 222, 329})
            EXPECT_FALSE(dialog.Control<QLineEdit>(control)->isReadOnly()) << control;
    });
}

TEST_F(Form, EveryButtonShowsAnImageOfItsOwnInItsSize)
{
    run([&](CDialogUnderTest &dialog) {
        std::vector<int> pictured;
        std::vector<QImage> images;
        for (const auto *button : dialog.findChildren<Utility::CZEMBitmapButton *>()) {
            const int control = button->property(kControlIdProperty).toInt();
            pictured.push_back(control);
            const int size = control == 100 || control == 101 ? 16 : 18;
            EXPECT_EQ(button->iconSize(), QSize(size, size)) << control;
            ASSERT_FALSE(button->icon().isNull()) << control;
            const QImage image = button->icon().pixmap(QSize(18, 18)).toImage().convertToFormat(QImage::Format_ARGB32);
            ASSERT_FALSE(image.isNull()) << control;
            for (std::size_t i = 0; i < images.size(); ++i)
                EXPECT_NE(image, images[i]) << control << " shows the image of " << pictured[i];
            images.push_back(image);
        }
        EXPECT_THAT(pictured,
                    UnorderedElementsAreArray({100, 101, 204, 205, 207, 208, 209, 217, 219, 221, 239, 246, 286, 290}));
    });
}

TEST_F(Form, EveryButtonShowsTheImageOfItsName)
{
    constexpr std::pair<int, const wchar_t *> kNames[] = {
        {204, L"SECTION_PREVIOUS"}, {205, L"SECTION_NEXT"}, {217, L"ZOOM_SECTION"}, {219, L"SETTINGS"},
        {207, L"LAYERS"},           {208, L"BY_POINT"},     {209, L"BY_ENTITY"},    {239, L"BY_CORNERS"},
        {290, L"AUTOMATIC"},        {246, L"TERRAIN"},      {286, L"LABEL_BLOCK"},  {221, L"SAVE"},
        {100, L"INFO_SECTIONS"},    {101, L"INFO_AREAS"},
    };
    run([&](CDialogUnderTest &dialog) {
        for (const auto &[control, name] : kNames) {
            const velmor::IconFile *file = velmor::findIcon(name);
            ASSERT_NE(file, nullptr) << control;
            const QIcon wanted(QString::fromStdString(file->path.string()));
            const QSize size(18, 18);
            EXPECT_EQ(dialog.Control<QPushButton>(control)->icon().pixmap(size).toImage(),
                      wanted.pixmap(size).toImage())
                << control;
        }
    });
}

TEST_F(Form, WithoutATerrainTypeTheCoefficientKeepsItsValueThroughMethodsAndTypes)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.Control<QComboBox>(322)->clear();
        select(dialog, {L"D1", L"D2"});
        dialog.type(215, "0.42");
        for (const int method : {0, 2, 3, 1}) {
            dialog.choose(257, method);
            EXPECT_EQ(dialog.text(215), "0.42") << "method " << method;
        }
        for (const int check : {107, 106, 106, 108, 107}) {
            dialog.click(check);
            EXPECT_EQ(dialog.text(215), "0.42") << "check " << check;
        }
        for (const int type : {1, 2, 4}) {
            dialog.choose(256, type);
            EXPECT_EQ(dialog.text(215), "0.42") << "type " << type;
        }
        select(dialog, {L"D3"});
        EXPECT_EQ(dialog.text(215), "0.42");
    });
}

} // namespace
