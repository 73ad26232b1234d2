// Start-up and closing of the definition dialog.
#include "tests/definition/dialog_fixture.h"

#include "controls/WideText.h"
#include "definition/ReadableColour.h"

#include <QHelpEvent>
#include <QToolTip>
#include <QTreeWidgetItem>

#include <fstream>

using namespace ZEMGis;
using testing::ElementsAre;

namespace {

using StartUp = DefinitionDialogTest;

struct Caption {
    int control;
    unsigned message;
};

constexpr Caption kCaptions[] = {
    {336, 1980}, {106, 1936}, {107, 11254}, {108, 11255}, {289, 1979}, {268, 1981}, {346, 2226}, {207, 1983},
    {259, 1985}, {208, 312},  {209, 4558},  {239, 975},   {274, 1982}, {334, 1986}, {335, 1987}, {328, 4600},
    {301, 1989}, {343, 1990}, {325, 2449},  {349, 4601},  {348, 4602}, {324, 1991}, {327, 1992}, {244, 1990},
    {323, 1988}, {221, 1885}, {3, 4582},    {2, 235},     {9, 50156},
};

TEST_F(StartUp, CaptionsAreTheMessagesOfTheirNumbersInBothLanguages)
{
    for (const char *language : {"hr", "en"}) {
        velmor::Services::instance().start({.language = language}, velmor::Services::instance().paths());
        run([&](CDialogUnderTest &dialog) {
            EXPECT_EQ(dialog.windowTitle(), ToQString(message(1978)));
            for (const Caption &caption : kCaptions)
                EXPECT_EQ(dialog.text(caption.control), ToQString(message(caption.message))) << caption.control;
            EXPECT_EQ(dialog.text(100), ToQString(message(2666) + L" - " + message(1221)));
            EXPECT_EQ(dialog.text(101), ToQString(message(2666) + L" - " + message(5795)));
            // These keep the form's own caption.
            EXPECT_EQ(dialog.text(290), "Auto");
            EXPECT_EQ(dialog.text(296), "Zoom");
            EXPECT_EQ(dialog.text(344), "ATV 118");
        });
    }
}

TEST_F(StartUp, AChangedMessageFileGivesEveryControlItsNewTextAtTheNextOpening)
{
    auto &services = velmor::Services::instance();
    const auto folder = services.paths().userFolder() / "messages";
    std::filesystem::create_directories(folder);
    services.start({.language = "en"}, services.paths());
    { // while the program runs
        std::ofstream file(folder / "en.txt");
        for (const Caption &caption : kCaptions)
            file << caption.message << " = text " << caption.message << "\n";
    }
    run([&](CDialogUnderTest &dialog) {
        for (const Caption &caption : kCaptions)
            EXPECT_EQ(dialog.text(caption.control), QStringLiteral("text %1").arg(caption.message)) << caption.control;
    });
    std::filesystem::remove(folder / "en.txt");
    run([&](CDialogUnderTest &dialog) { EXPECT_FALSE(dialog.text(336).startsWith(QStringLiteral("text "))); });
}

TEST_F(StartUp, ToolTipsAreTheMessagesOfTheirNumbers)
{
    constexpr Caption kTips[] = {{268, 2028},
                                 {204, 1081},
                                 {205, 1082},
                                 {290, 2036},
                                 {274, 2029},
                                 {221, 2037},
                                 {208, 2033},
                                 {209, 2034},
                                 {239, 2035},
                                 {207, 2031},
                                 {286, 2030},
                                 {246, 2032},
                                 // The table of ATV 118 is an example as shipped.
                                 {344, 60006},
                                 {345, 60006},
                                 {222, 60006},
                                 {347, 60006}};
    run([&](CDialogUnderTest &dialog) {
        for (const Caption &tip : kTips)
            EXPECT_EQ(dialog.GetDlgItem(tip.control)->toolTip(), ToQString(message(tip.message))) << tip.control;
        EXPECT_EQ(dialog.GetDlgItem(100)->toolTip(), ToQString(message(2666) + L" - " + message(1221)));
        EXPECT_EQ(dialog.GetDlgItem(101)->toolTip(), ToQString(message(2666) + L" - " + message(5795)));
    });
}

TEST_F(StartUp, BeforeASelectionOnlyTheTemplatesControlsAndWhatTheTypeTurnsOnAreEnabled)
{
    run([&](CDialogUnderTest &dialog) {
        // The selection button, the zoom group, settings, hide, close, information, types, label entry; then
        // catchment's own.
        for (const int control :
             {203, 296, 218, 217, 219, 3, 2, 100, 101, 106, 107, 108, 135, 215, 324, 343, 344, 322, 246})
            EXPECT_TRUE(dialog.isEnabled(control)) << control;
        for (const int control :
             {336, 256, 289, 257, 268, 204, 205, 207, 363, 259, 210, 208, 209, 239, 290, 274, 286, 334,
              335, 328, 329, 326, 301, 213, 325, 345, 349, 222, 348, 347, 327, 220, 244, 216, 323, 221})
            EXPECT_FALSE(dialog.isEnabled(control)) << control;
    });
}

TEST_F(StartUp, HiddenControlsStayHidden)
{
    run([](CDialogUnderTest &dialog) {
        for (const int control : {256, 286, 244, 216, 323, 9})
            EXPECT_FALSE(dialog.GetDlgItem(control)->isVisible()) << control;
        for (const int control : {257, 203, 210, 326, 221, 281})
            EXPECT_TRUE(dialog.GetDlgItem(control)->isVisible()) << control;
    });
}

TEST_F(StartUp, AFreshDrawingStartsWithTypeCatchmentDensity1000AndSlope1)
{
    run([](CDialogUnderTest &dialog) {
        EXPECT_TRUE(dialog.isChecked(106));
        EXPECT_FALSE(dialog.isChecked(107));
        EXPECT_FALSE(dialog.isChecked(108));
        EXPECT_FALSE(dialog.isChecked(268));
        EXPECT_EQ(dialog.text(220), "1000");
        EXPECT_EQ(dialog.text(216), "1");
        EXPECT_EQ(dialog.text(222), "100");
        EXPECT_EQ(dialog.text(213), "");
        EXPECT_EQ(dialog.text(326), "");
        EXPECT_EQ(dialog.text(218), "1.5");
    });
}

TEST_F(StartUp, MethodAndTypeCombosHoldTheirEntriesAndBySectionLengthIsChosen)
{
    run([&](CDialogUnderTest &dialog) {
        const auto *methods = dialog.Control<QComboBox>(257);
        ASSERT_EQ(methods->count(), 4);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(methods->itemText(i), ToQString(message(1997 + static_cast<unsigned>(i))));
            EXPECT_EQ(methods->itemData(i).toInt(), i);
        }
        EXPECT_EQ(methods->currentData().toInt(), 1);
        const auto *types = dialog.Control<QComboBox>(256);
        ASSERT_EQ(types->count(), 3);
        constexpr Caption kTypes[] = {{1, 1936}, {2, 1995}, {4, 1996}};
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(types->itemText(i), ToQString(message(kTypes[i].message)));
            EXPECT_EQ(types->itemData(i).toInt(), kTypes[i].control);
        }
        EXPECT_EQ(types->currentIndex(), 0);
    });
}

TEST_F(StartUp, SlopeClassesAndRunOffPercentagesStandInTheirCombos)
{
    run([](CDialogUnderTest &dialog) {
        const auto *slopes = dialog.Control<QComboBox>(345);
        QStringList texts;
        for (int i = 0; i < slopes->count(); ++i)
            texts << slopes->itemText(i);
        EXPECT_EQ(texts, QStringList({" < 1%", " 1 - 4%  ", " 4 - 10%", " > 10%"}));
        const auto *runoff = dialog.Control<QComboBox>(347);
        ASSERT_EQ(runoff->count(), 11);
        for (int i = 0; i < 11; ++i)
            EXPECT_EQ(runoff->itemText(i), QString::number(10 * i));
    });
}

TEST_F(StartUp, TheZoomFactorComesFromTheSettings)
{
    setSetting("DEFAULT_ZOOM", 2.25);
    run([](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.text(218), "2.25"); });
}

TEST_F(StartUp, TheZoomCheckIsReadFromTheSettingsAndWrittenAtOnce)
{
    run([](CDialogUnderTest &dialog) {
        EXPECT_FALSE(dialog.isChecked(296));
        dialog.click(296);
        int on = 0;
        EXPECT_NE(CModuleConfiguration::Instance()->GetGSValueInt(L"ZOOM_ONOFF", on), 0);
        EXPECT_EQ(on, 1);
    });
    run([](CDialogUnderTest &dialog) { EXPECT_TRUE(dialog.isChecked(296)); });
}

TEST_F(StartUp, TheStatusLineShowsTheIdleTextInBlue)
{
    run([&](CDialogUnderTest &dialog) {
        EXPECT_EQ(dialog.text(281), ToQString(message(658)));
        EXPECT_EQ(dialog.colour(281), 0xFF0000u);
        EXPECT_TRUE(dialog.GetDlgItem(281)->font().bold());
    });
}

TEST_F(StartUp, SwatchesShowTheColoursOfTheSettings)
{
    setSetting("CATCH_HATCH_COLOR_DEFINED", 5);
    run([](CDialogUnderTest &dialog) {
        const auto shown = [&](int control) {
            const QImage picture = dialog.GetDlgItem(control)->grab().toImage();
            return picture.pixelColor(picture.rect().center());
        };
        EXPECT_EQ(shown(332), ColourOf(acedGetRGB(5)));
        EXPECT_EQ(shown(333), ColourOf(acedGetRGB(4))); // without a setting
    });
}

TEST_F(StartUp, TheLabelCatalogueFillsItsComboInKeyOrderAndTheFirstIsChosen)
{
    run([](CDialogUnderTest &dialog) {
        const auto catalog = Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
        ASSERT_TRUE(catalog);
        QStringList expected;
        for (const auto &[key, item] : *catalog->GetAllElementsMap()) {
            if (item->IsGroup() == 0)
                expected << ToQString(item->GetName());
        }
        ASSERT_FALSE(expected.isEmpty());
        const auto *combo = dialog.Control<QComboBox>(135);
        QStringList shown;
        for (int i = 0; i < combo->count(); ++i)
            shown << combo->itemText(i);
        EXPECT_EQ(shown, expected);
        EXPECT_EQ(combo->currentIndex(), 0);
    });
}

TEST_F(StartUp, TheListHasItsTwoColumnsAtLeastAsWideAsRequired)
{
    run([&](CDialogUnderTest &dialog) {
        const QTreeWidget &list = *dialog.list();
        ASSERT_EQ(list.columnCount(), 2);
        EXPECT_EQ(list.headerItem()->text(0), ToQString(message(1994)));
        EXPECT_EQ(list.headerItem()->text(1), ToQString(message(1989)));
        EXPECT_GE(list.columnWidth(0), 78);
        EXPECT_GE(list.columnWidth(1), 76);
        EXPECT_EQ(list.selectionBehavior(), QAbstractItemView::SelectRows);
    });
}

TEST_F(StartUp, LayersAreSummedUpInOneLineAndListedInTheTip)
{
    const auto expectShown = [&](const QString &summary, const QString &tip) {
        run([&](CDialogUnderTest &dialog) {
            EXPECT_EQ(dialog.text(363), summary);
            EXPECT_EQ(dialog.GetDlgItem(363)->toolTip(), tip);
        });
    };
    expectShown("PARCELS", "PARCELS");
    setLayers({L"A", L"B", L"C"});
    expectShown("***", "A\nB\nC");
}

TEST_F(StartUp, WithoutLayersTheSummarySaysSo)
{
    m_session.setDrawing(velmor::Drawing::createNew());
    run([&](CDialogUnderTest &dialog) {
        EXPECT_EQ(dialog.text(363), ToQString(message(3996)));
        EXPECT_EQ(dialog.GetDlgItem(363)->toolTip(), ToQString(message(3996)));
    });
}

TEST_F(StartUp, EveryControlHasAnAccessibleNameAtTheStartAndAfterASelection)
{
    for (const char *language : {"hr", "en"}) {
        velmor::Services::instance().start({.language = language}, velmor::Services::instance().paths());
        run([&](CDialogUnderTest &dialog) {
            const auto nameOf = [&](int control) {
                QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(dialog.GetDlgItem(control));
                return accessible ? accessible->text(QAccessible::Name) : QString();
            };
            const auto allHaveNames = [&] {
                int count = 0;
                for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
                    if (const QVariant number = widget->property(kControlIdProperty); number.isValid()) {
                        ++count;
                        EXPECT_FALSE(nameOf(number.toInt()).isEmpty()) << number.toInt();
                    }
                }
                EXPECT_EQ(count, 61);
            };
            allHaveNames();
            dialog.choose(257, 0);
            select(dialog, {L"D1"});
            EXPECT_EQ(dialog.text(281), ""); // which says nothing to those who see it
            allHaveNames();
            EXPECT_EQ(nameOf(266), ToQString(message(2226) + L": D1"));
            EXPECT_EQ(nameOf(332), ToQString(message(1986)));
            EXPECT_EQ(nameOf(333), ToQString(message(1987)));
        });
    }
}

TEST_F(StartUp, AStatusThatIsCutOffShowsWholeInItsTipAndAShortOneHasNone)
{
    run([&](CDialogUnderTest &dialog) {
        auto *status = dialog.Control<QLabel>(281);
        const auto tip = [&] {
            QToolTip::hideText();
            QHelpEvent help(QEvent::ToolTip, QPoint(3, 3), status->mapToGlobal(QPoint(3, 3)));
            QApplication::sendEvent(status, &help);
            return QToolTip::isVisible() ? QToolTip::text() : QString();
        };
        EXPECT_EQ(tip(), "");
        const int height = status->height();
        const QString text = QStringLiteral("Automatski definirano površina: 2000 <- ").repeated(20).trimmed();
        status->setText(text);
        QApplication::processEvents();
        EXPECT_EQ(tip(), text);
        EXPECT_EQ(status->height(), height); // it stays one line
    });
}

TEST_F(StartUp, KeyboardLettersAreUniqueAndEveryOfferedCaptionOfWeightHasOne)
{
    for (const char *language : {"hr", "en"}) {
        velmor::Services::instance().start({.language = language}, velmor::Services::instance().paths());
        run([](CDialogUnderTest &dialog) {
            QString letters;
            const auto take = [&](int control) {
                const QWidget *widget = dialog.GetDlgItem(control);
                const auto *label = qobject_cast<const QLabel *>(widget);
                const QString text = label ? label->text() : qobject_cast<const QAbstractButton *>(widget)->text();
                const qsizetype mark = text.indexOf('&');
                ASSERT_GE(mark, 0) << control;
                const QChar letter = text.at(mark + 1).toUpper();
                EXPECT_FALSE(letters.contains(letter)) << control;
                letters += letter;
            };
            for (const int control :
                 {221, 290, 203, 208, 209, 239, 289, 207, 268, 328, 301, 343, 344, 324, 327, 106, 107, 108, 274, 3})
                take(control);
        });
    }
}

TEST_F(StartUp, NothingIsCutOffInEitherLanguageAtTwiceTheFontToo)
{
    const QFont usual = QApplication::font();
    for (const int scale : {1, 2}) {
        QFont font = usual;
        font.setPointSizeF(usual.pointSizeF() * scale);
        QApplication::setFont(font);
        for (const char *language : {"hr", "en"}) {
            velmor::Services::instance().start({.language = language}, velmor::Services::instance().paths());
            run([&](CDialogUnderTest &dialog) {
                for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
                    const bool shows = qobject_cast<const QLabel *>(widget) ||
                                       qobject_cast<const QAbstractButton *>(widget) ||
                                       qobject_cast<const QComboBox *>(widget);
                    if (!shows || !widget->isVisible() ||
                        widget->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored)
                        continue;
                    EXPECT_GE(widget->width(), widget->sizeHint().width())
                        << widget->objectName().toStdString() << " at " << scale;
                    EXPECT_GE(widget->height(), widget->minimumSizeHint().height())
                        << widget->objectName().toStdString() << " at " << scale;
                }
            });
        }
    }
    QApplication::setFont(usual);
}

TEST_F(StartUp, EscapeAndTheCloseButtonBothEndTheDialog)
{
    run([](CDialogUnderTest &dialog) {
        dialog.click(2);
        EXPECT_FALSE(dialog.isVisible());
    });
    run([](CDialogUnderTest &dialog) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(&dialog, &escape);
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST_F(StartUp, TheDocumentIsLockedWhileTheDialogLives)
{
    EXPECT_EQ(m_session.documentLocks(), 0);
    run([&](CDialogUnderTest &) { EXPECT_GT(m_session.documentLocks(), 0); });
    EXPECT_EQ(m_session.documentLocks(), 0);
}

TEST_F(StartUp, WithoutADrawingTheDialogOpensEmpty)
{
    m_session.setDrawing(nullptr);
    run([&](CDialogUnderTest &dialog) {
        EXPECT_EQ(dialog.text(281), ToQString(message(658)));
        dialog.choose(257, 2);
        EXPECT_EQ(dialog.text(281), ToQString(message(658)));
    });
}

TEST_F(StartUp, TheSelectionButtonSaysWhatItDoesInBothLanguages)
{
    for (const auto &[language, caption] :
         {std::pair("hr", QStringLiteral("Odaberi dionice")), std::pair("en", QStringLiteral("Select sections"))}) {
        velmor::Services::instance().start({.language = language}, velmor::Services::instance().paths());
        run([&, caption = caption](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.text(203), caption); });
    }
}

TEST_F(StartUp, TheCounterEditShowsNothing)
{
    run([](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.Control<QLineEdit>(326)->placeholderText(), ""); });
}

TEST_F(StartUp, BlueAndOrangeAreDrawnAsRequiredOnALightWindowAndReadablyOnADarkOne)
{
    run([&](CDialogUnderTest &dialog) {
        const auto isDrawn = [&](const QColor &colour) {
            const QImage picture = dialog.GetDlgItem(281)->grab().toImage();
            for (int y = 0; y < picture.height(); ++y)
                for (int x = 0; x < picture.width(); ++x)
                    if (picture.pixelColor(x, y).rgb() == colour.rgb())
                        return true;
            return false;
        };
        const auto setWindow = [&](const QColor &colour) {
            QPalette palette = dialog.palette();
            palette.setColor(QPalette::Window, colour);
            dialog.setPalette(palette);
        };
        const QColor light(239, 239, 239), dark(45, 45, 45), blue(0, 0, 255);
        setWindow(light);
        EXPECT_TRUE(isDrawn(blue));
        setWindow(dark);
        EXPECT_FALSE(isDrawn(blue));
        EXPECT_TRUE(isDrawn(ReadableColour(blue, dark)));
        setWindow(light);
        select(dialog, {L"D1"});
        dialog.choose(257, 2);
        dialog.type(215, "1");
        dialog.click(290); // a result
        EXPECT_TRUE(isDrawn(QColor(255, 91, 0)));
    });
}

} // namespace
