// The host's own dialogs: settings, patterns, colours, and the picture of a block file.
#include "tests/contracts/ContractsFixture.h"

#include "contracts/HostDialog.h"
#include "host/drawing/PatternLibrary.h"
#include "host/editor/FilePreview.h"
#include "host/editor/dialogs/ColorDialog.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/editor/dialogs/PatternDialog.h"

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTest>

#include <algorithm>

namespace velmor::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using ZEMGis::CModuleConfiguration;

class DialogContract : public ContractsFixture {
protected:
    ~DialogContract() override { session.setDialogDriver({}); }

    /// A person at the next dialog.
    void person(std::function<void(CAdUiBaseDialog &)> work)
    {
        session.setDialogDriver([this, work](CAdUiBaseDialog &dialog) {
            ++shown;
            title = dialog.windowTitle();
            work(dialog);
        });
    }
    static void click(CAdUiBaseDialog &dialog, int control)
    {
        auto *button = dialog.Control<QAbstractButton>(control);
        ASSERT_TRUE(button);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    static int controlOf(const char *key)
    {
        int row = 0;
        for (const SettingSpec &spec : settingTable()) {
            if (spec.key == std::string_view(key))
                return kControlSettings + row;
            ++row;
        }
        return -1;
    }
    static CModuleConfiguration &configuration() { return *CModuleConfiguration::Instance(); }
    int shown = 0;
    QString title;
};

// --- Settings -----------------------------------------------------------------------------------------------------

constexpr const char *kAllKeys[] = {"DECIMAL_PLACES_CATCHMENT",
                                    "DEFAULT_ZOOM",
                                    "ZOOM_ONOFF",
                                    "MARK_COLOR",
                                    "CATCH_HATCH_SCALE",
                                    "CATCH_HATCH_COLOR_DEFINED",
                                    "CATCH_HATCH_COLOR_TEMP",
                                    "CATCH_NAME_PREFIX",
                                    "CATCH_NAME_SUFIX",
                                    "CATCH_COUNTER_DELIMITER"};

TEST_F(DialogContract, SettingsShowEveryKeyInBothGroupsNamedAndInBothLanguages)
{
    std::vector<QString> titles;
    for (const char *language : {"en", "hr"}) {
        startServices(language);
        for (const wchar_t *group : {L"TCE1", L"TCE2"}) {
            person([&](CAdUiBaseDialog &dialog) {
                for (const char *key : kAllKeys) {
                    const QWidget *field = dialog.GetDlgItem(controlOf(key));
                    ASSERT_TRUE(field) << key;
                    EXPECT_FALSE(field->accessibleName().isEmpty()) << key;
                    EXPECT_THAT(field->accessibleName().toStdString(), Not(HasSubstr("ui."))) << key;
                }
            });
            EXPECT_EQ(configuration().ShowGSDialog(group), 0) << "the person ended it without OK";
            titles.push_back(title);
        }
    }
    EXPECT_EQ(shown, 4);
    std::sort(titles.begin(), titles.end());
    EXPECT_EQ(std::unique(titles.begin(), titles.end()), titles.end());
    EXPECT_EQ(configuration().ShowGSDialog(L"TCE3"), 0);
    EXPECT_EQ(shown, 4) << "there is no such group";
}

TEST_F(DialogContract, OkSetsWhatWasChangedForThisRunAndTheNext)
{
    person([](CAdUiBaseDialog &dialog) {
        dialog.Control<QSpinBox>(controlOf("CATCH_HATCH_COLOR_DEFINED"))->setValue(30);
        dialog.Control<QDoubleSpinBox>(controlOf("CATCH_HATCH_SCALE"))->setValue(2.625);
        auto *prefix = dialog.Control<QLineEdit>(controlOf("CATCH_NAME_PREFIX"));
        prefix->clear();
        QTest::keyClicks(prefix, QStringLiteral("S-"));
        dialog.Control<QAbstractButton>(controlOf("ZOOM_ONOFF"))->click();
        click(dialog, kControlOk);
    });
    EXPECT_EQ(configuration().ShowGSDialog(L"TCE1"), 1);
    for (const bool nextRun : {false, true}) {
        if (nextRun)
            startServices("en");
        int color = 0, zoom = 0, mark = -1;
        double scale = 0.0;
        std::wstring prefix;
        EXPECT_TRUE(configuration().GetGSValueInt(L"CATCH_HATCH_COLOR_DEFINED", color));
        EXPECT_TRUE(configuration().GetGSValueDouble(L"CATCH_HATCH_SCALE", scale));
        EXPECT_TRUE(configuration().GetGSValueString(L"CATCH_NAME_PREFIX", prefix));
        EXPECT_TRUE(configuration().GetGSValueInt(L"ZOOM_ONOFF", zoom));
        EXPECT_EQ(color, 30);
        EXPECT_EQ(scale, 2.625);
        EXPECT_EQ(prefix, L"S-");
        EXPECT_EQ(zoom, 1);
        EXPECT_FALSE(configuration().GetGSValueInt(L"MARK_COLOR", mark)) << "what was not changed stays unset";
        EXPECT_EQ(mark, -1);
    }
}

TEST_F(DialogContract, ReturnIsTheOkOfTheHostsOwnDialogs)
{
    person([](CAdUiBaseDialog &dialog) {
        auto *field = dialog.Control<QSpinBox>(controlOf("CATCH_HATCH_COLOR_DEFINED"));
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("31"));
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_EQ(configuration().ShowGSDialog(L"TCE1"), 1);
    int color = 0;
    EXPECT_TRUE(configuration().GetGSValueInt(L"CATCH_HATCH_COLOR_DEFINED", color));
    EXPECT_EQ(color, 31);
    std::wstring found;
    person([&found](CAdUiBaseDialog &dialog) {
        auto *filter = dialog.Control<QLineEdit>(kControlPatternFilter);
        filter->setFocus();
        QTest::keyClicks(filter, QStringLiteral("herring"));
        found = dialog.Control<QListWidget>(kControlPatterns)->currentItem()->text().toStdWString();
        QTest::keyClick(filter, Qt::Key_Enter, Qt::KeypadModifier);
        EXPECT_FALSE(dialog.isVisible());
    });
    std::wstring pattern;
    EXPECT_TRUE(acedHatchPalletteDialog(L"ANSI31", true, pattern));
    EXPECT_EQ(pattern, found);
    EXPECT_NE(pattern, L"ANSI31");
    person([](CAdUiBaseDialog &dialog) {
        auto *number = dialog.Control<QSpinBox>(kControlColourNumber);
        number->setFocus();
        number->selectAll();
        QTest::keyClicks(number, QStringLiteral("40"));
        QTest::keyClick(number, Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_TRUE(acedSetColorDialog(color, false, 7));
    EXPECT_EQ(color, 40);
    // With the focus on another button Return presses that one.
    person([](CAdUiBaseDialog &dialog) {
        dialog.Control<QSpinBox>(kControlColourNumber)->setValue(99);
        dialog.GetDlgItem(kControlCancel)->setFocus();
        QTest::keyClick(dialog.GetDlgItem(kControlCancel), Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_FALSE(acedSetColorDialog(color, false, 7));
    EXPECT_EQ(color, 40);
}

TEST_F(DialogContract, CancelChangesNothing)
{
    ASSERT_TRUE(Services::instance().set("MARK_COLOR", 5));
    person([](CAdUiBaseDialog &dialog) {
        dialog.Control<QSpinBox>(controlOf("MARK_COLOR"))->setValue(9);
        dialog.Control<QDoubleSpinBox>(controlOf("DEFAULT_ZOOM"))->setValue(7.0);
        click(dialog, kControlCancel);
    });
    EXPECT_EQ(configuration().ShowGSDialog(L"TCE2"), 0);
    int color = 0;
    double zoom = -1.0;
    EXPECT_TRUE(configuration().GetGSValueInt(L"MARK_COLOR", color));
    EXPECT_EQ(color, 5);
    EXPECT_FALSE(configuration().GetGSValueDouble(L"DEFAULT_ZOOM", zoom));
}

TEST_F(DialogContract, DefaultsTakeKeysBackToUnset)
{
    ASSERT_TRUE(Services::instance().set("MARK_COLOR", 5));
    ASSERT_TRUE(Services::instance().set("DEFAULT_ZOOM", 3.5));
    person([](CAdUiBaseDialog &dialog) {
        EXPECT_EQ(dialog.Control<QDoubleSpinBox>(controlOf("DEFAULT_ZOOM"))->value(), 3.5);
        click(dialog, controlOf("DEFAULT_ZOOM") + 100); // its own reset button
        EXPECT_EQ(dialog.Control<QDoubleSpinBox>(controlOf("DEFAULT_ZOOM"))->value(), 2.0) << "the review's default";
        click(dialog, kControlOk);
    });
    EXPECT_EQ(configuration().ShowGSDialog(L"TCE2"), 1);
    double zoom = -1.0;
    int color = -1;
    EXPECT_FALSE(configuration().GetGSValueDouble(L"DEFAULT_ZOOM", zoom));
    EXPECT_TRUE(configuration().GetGSValueInt(L"MARK_COLOR", color));
    person([](CAdUiBaseDialog &dialog) {
        EXPECT_EQ(dialog.Control<QDoubleSpinBox>(controlOf("DEFAULT_ZOOM"))->value(), 1.5) << "the definition's";
        click(dialog, kControlDefaults);
        click(dialog, kControlOk);
    });
    EXPECT_EQ(configuration().ShowGSDialog(L"TCE1"), 1);
    EXPECT_FALSE(configuration().GetGSValueInt(L"MARK_COLOR", color));
}

TEST_F(DialogContract, FieldsHoldTheirLimits)
{
    person([](CAdUiBaseDialog &dialog) {
        for (const SettingSpec &spec : settingTable()) {
            const int control = controlOf(spec.key);
            if (auto *whole = dialog.Control<QSpinBox>(control)) {
                EXPECT_EQ(whole->minimum(), spec.lowest) << spec.key;
                EXPECT_EQ(whole->maximum(), spec.highest) << spec.key;
            } else if (auto *number = dialog.Control<QDoubleSpinBox>(control)) {
                EXPECT_EQ(number->minimum(), spec.lowest) << spec.key;
                EXPECT_EQ(number->maximum(), spec.highest) << spec.key;
                number->findChild<QLineEdit *>()->setText(QStringLiteral("0,25"));
                number->interpretText();
                EXPECT_EQ(number->value(), 0.25) << "a comma begins the fraction, too";
            }
        }
    });
    configuration().ShowGSDialog(L"TCE1");
}

TEST_F(DialogContract, WhatCantBeKeptLeavesTheDialogOpenWithOneLineAndNothingChanged)
{
    ASSERT_TRUE(Services::instance().set("MARK_COLOR", 5));
    // The settings' file can't be written: a folder stands in its place.
    const auto file = folder / "user" / "settings.cfg";
    std::filesystem::remove(file);
    std::filesystem::create_directories(file / "in the way");
    bool stayed = false;
    person([&](CAdUiBaseDialog &dialog) {
        dialog.Control<QSpinBox>(controlOf("MARK_COLOR"))->setValue(9);
        click(dialog, kControlOk);
        stayed = dialog.isVisible();
    });
    EXPECT_EQ(configuration().ShowGSDialog(L"TCE1"), 0);
    EXPECT_TRUE(stayed);
    int color = 0;
    EXPECT_TRUE(configuration().GetGSValueInt(L"MARK_COLOR", color));
    EXPECT_EQ(color, 5);
}

// --- Patterns -----------------------------------------------------------------------------------------------------

TEST_F(DialogContract, PatternsBeginAtTheCurrentOneElseAtAnsi31AndOkTellsTheChosenOne)
{
    for (const auto &[current, start] :
         {std::pair{L"ansi37", "ANSI37"}, std::pair{L"no such", "ANSI31"}, std::pair{L"", "ANSI31"}}) {
        person([&, expected = start](CAdUiBaseDialog &dialog) {
            EXPECT_EQ(dialog.Control<QListWidget>(kControlPatterns)->currentItem()->text().toStdString(), expected);
        });
        std::wstring result = L"before";
        EXPECT_FALSE(acedHatchPalletteDialog(current, true, result));
        EXPECT_EQ(result, L"before") << "ended without OK";
    }
    person([](CAdUiBaseDialog &dialog) {
        auto *list = dialog.Control<QListWidget>(kControlPatterns);
        list->setCurrentItem(list->findItems(QStringLiteral("DOTS"), Qt::MatchExactly).value(0));
        click(dialog, kControlOk);
    });
    std::wstring result;
    EXPECT_TRUE(acedHatchPalletteDialog(L"ANSI31", true, result));
    EXPECT_EQ(result, L"DOTS");
    person([](CAdUiBaseDialog &dialog) {
        dialog.Control<QListWidget>(kControlPatterns)->setCurrentRow(0);
        click(dialog, kControlCancel);
    });
    EXPECT_FALSE(acedHatchPalletteDialog(L"ANSI31", true, result));
    EXPECT_EQ(result, L"DOTS");
}

TEST_F(DialogContract, EveryPatternHasAPictureOfItsOwn)
{
    std::map<std::string, QString> seen;
    for (const Pattern *pattern : PatternLibrary::instance().all()) {
        const QImage image = patternPicture(pattern->name, {72, 54}, Qt::black, Qt::white);
        EXPECT_GT(inkOf(image), 20) << QString::fromStdWString(pattern->name).toStdString();
        const std::string bytes(reinterpret_cast<const char *>(image.constBits()),
                                static_cast<std::size_t>(image.sizeInBytes()));
        const auto [other, isNew] = seen.emplace(bytes, QString::fromStdWString(pattern->name));
        EXPECT_TRUE(isNew) << QString::fromStdWString(pattern->name).toStdString() << " looks like "
                           << other->second.toStdString();
    }
    EXPECT_EQ(inkOf(patternPicture(L"NOSUCH", {72, 54}, Qt::black, Qt::white)), 0);
}

TEST_F(DialogContract, APictureOfAPatternIsSharpOnAScreenOfManyPixels)
{
    for (const wchar_t *pattern : {L"NET", L"NET3"}) {
        const QImage plain = patternPicture(pattern, {72, 54}, Qt::black, Qt::white);
        const QImage fine = patternPicture(pattern, {72, 54}, Qt::black, Qt::white, 2.0);
        EXPECT_EQ(fine.size(), QSize(144, 108));
        EXPECT_EQ(fine.devicePixelRatio(), 2.0);
        // Lines of the same places, twice as long and twice as wide.
        EXPECT_NEAR(inkOf(fine), 4.0 * inkOf(plain), 0.5 * inkOf(fine));
        EXPECT_NE(fine.convertToFormat(QImage::Format_RGB32), plain.scaled(144, 108));
    }
}
TEST_F(DialogContract, EveryFieldOfThePaletteStandsOutAgainstTheWindow)
{
    for (const QColor &window : {QColor(Qt::white), QColor(Qt::black)}) {
        person([&](CAdUiBaseDialog &dialog) {
            auto *grid = dialog.Control<ColorGrid>(kControlColours);
            QPalette colours = grid->palette();
            colours.setColor(QPalette::Window, window);
            colours.setColor(QPalette::WindowText, window == Qt::white ? Qt::black : Qt::white);
            grid->setPalette(colours);
            const QImage image = grid->grab().toImage();
            for (int index = 1; index <= 255; ++index) {
                const QRect field = grid->fieldOf(index);
                for (const int x : {field.left(), field.right() + 1})
                    EXPECT_NEAR(image.pixelColor(x, field.center().y()).lightness(), 128, 40) << index;
            }
        });
        int color = 256; // by layer, so that no field is framed
        acedSetColorDialog(color, true, 7);
    }
}
TEST_F(DialogContract, OurOwnPatternsAreDescribedInTheProgramsLanguage)
{
    for (const auto &[language, words] : {std::pair{"en", "crossing lines"}, std::pair{"hr", "ukrižene crte"}}) {
        startServices(language);
        person([expected = words](CAdUiBaseDialog &dialog) {
            auto *list = dialog.Control<QListWidget>(kControlPatterns);
            for (int row = 0; row < list->count(); ++row)
                EXPECT_THAT(list->item(row)->toolTip().toStdString(), Not(HasSubstr("ui.pattern")));
            EXPECT_THAT(list->currentItem()->toolTip().toStdString(), HasSubstr(expected));
        });
        std::wstring result;
        acedHatchPalletteDialog(L"ANSI37", true, result);
    }
}

TEST_F(DialogContract, TheUsersPatternsAreShownWhenTheyAreWanted)
{
    std::filesystem::create_directories(folder / "user" / "support");
    std::ofstream(folder / "user" / "support" / "patterns.pat") << "*MINE, my own\n30, 0,0, 0,5\n";
    for (const bool custom : {true, false}) {
        person([custom](CAdUiBaseDialog &dialog) {
            const auto mine =
                dialog.Control<QListWidget>(kControlPatterns)->findItems(QStringLiteral("MINE"), Qt::MatchExactly);
            EXPECT_EQ(mine.size(), custom ? 1 : 0);
        });
        std::wstring result;
        acedHatchPalletteDialog(L"ANSI31", custom, result);
    }
}

TEST_F(DialogContract, SearchingNarrowsTheList)
{
    person([](CAdUiBaseDialog &dialog) {
        QTest::keyClicks(dialog.Control<QLineEdit>(kControlPatternFilter), QStringLiteral("herring"));
        auto *list = dialog.Control<QListWidget>(kControlPatterns);
        EXPECT_EQ(list->currentItem()->text(), QStringLiteral("AR-HBONE"));
        QTest::keyClicks(dialog.Control<QLineEdit>(kControlPatternFilter), QStringLiteral("zzz"));
        EXPECT_EQ(list->currentItem(), nullptr);
        EXPECT_FALSE(dialog.GetDlgItem(kControlOk)->isEnabled());
    });
    std::wstring result;
    EXPECT_FALSE(acedHatchPalletteDialog(L"ANSI31", true, result));
}

// --- Colours ------------------------------------------------------------------------------------------------------

TEST_F(DialogContract, AColourIsChosenByClickByKeysAndByItsNumber)
{
    person([](CAdUiBaseDialog &dialog) {
        auto *grid = dynamic_cast<ColorGrid *>(dialog.GetDlgItem(kControlColours));
        ASSERT_TRUE(grid);
        EXPECT_EQ(grid->index(), 3);
        QTest::mouseClick(grid, Qt::LeftButton, {}, grid->fieldOf(140).center());
        EXPECT_EQ(dialog.Control<QSpinBox>(kControlColourNumber)->value(), 140);
        QTest::keyClick(grid, Qt::Key_Right);
        EXPECT_EQ(grid->index(), 150);
        QTest::keyClick(grid, Qt::Key_Down);
        EXPECT_EQ(grid->index(), 151);
        click(dialog, kControlOk);
    });
    int color = 3;
    EXPECT_TRUE(acedSetColorDialog(color, false, 7));
    EXPECT_EQ(color, 151);
    person([](CAdUiBaseDialog &dialog) {
        dialog.Control<QSpinBox>(kControlColourNumber)->setValue(99);
        click(dialog, kControlCancel);
    });
    EXPECT_FALSE(acedSetColorDialog(color, false, 7));
    EXPECT_EQ(color, 151);
}

TEST_F(DialogContract, EveryColourIsReachedByKeysAlone)
{
    ColorGrid grid(nullptr);
    std::set<int> reached;
    std::vector<int> open{7};
    while (!open.empty()) {
        const int from = open.back();
        open.pop_back();
        if (!reached.insert(from).second)
            continue;
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) {
            grid.setIndex(from);
            QTest::keyClick(&grid, key);
            open.push_back(grid.index());
        }
    }
    EXPECT_EQ(reached.size(), 255u);
}

TEST_F(DialogContract, ByLayerAndByBlockAreOfferedWhenTheyAreAllowed)
{
    person([](CAdUiBaseDialog &dialog) {
        click(dialog, kControlByLayer);
        click(dialog, kControlOk);
    });
    int color = 3;
    EXPECT_TRUE(acedSetColorDialog(color, true, 5));
    EXPECT_EQ(color, 256);
    person([](CAdUiBaseDialog &dialog) { EXPECT_EQ(dialog.GetDlgItem(kControlByLayer), nullptr); });
    EXPECT_FALSE(acedSetColorDialog(color, false, 5));
}

// --- Picture of a block file ---------------------------------------------------------------------------------------

class Field final : public QWidget {
public:
    std::wstring file;
    bool answer = false;

protected:
    void paintEvent(QPaintEvent *) override { answer = acdbDisplayPreviewFromDwg(file.c_str(), this, 0x00FFFFFF); }
};

TEST_F(DialogContract, TwoBlockFilesGiveTwoPicturesAndAMissingOneAnEmptyField)
{
    const auto saveBlock = [&](const char *name, std::unique_ptr<AcDbEntity> entity) {
        auto block = Drawing::createNew();
        block->append(std::move(entity));
        EXPECT_TRUE(block->save(folder / name));
        return (folder / name).wstring();
    };
    Field field;
    field.resize(80, 60);
    const auto shownFile = [&](const std::wstring &file) {
        field.file = file;
        return field.grab().toImage();
    };
    const QImage empty = shownFile((folder / "missing.dwg").wstring());
    EXPECT_FALSE(field.answer);
    EXPECT_TRUE(session.alerts().empty());
    const QImage circle = shownFile(saveBlock("a.dxf", std::make_unique<CircleEntity>(AcGePoint3d(5, 5), 3.0)));
    EXPECT_TRUE(field.answer);
    const QImage square = shownFile(saveBlock("b.dxf", boxEntity(0, 0, 4, 3)));
    EXPECT_GT(differences(empty, circle), 50);
    EXPECT_GT(differences(circle, square), 50);
    // The file changes on disk: so does the picture.
    saveBlock("b.dxf", std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(9, 9)));
    EXPECT_GT(differences(square, shownFile((folder / "b.dxf").wstring())), 50);
    // A ".dwg" that is not there stands for the ".dxf" beside it.
    EXPECT_EQ(differences(circle, shownFile((folder / "a.dwg").wstring())), 0);
}

TEST_F(DialogContract, ALabelBlockShowsItsTags)
{
    const QImage image =
        filePicture(std::filesystem::path(VELMOR_TEST_RESOURCES) / "symbols" / "CatchLabel.dxf", {120, 90}, Qt::white);
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(inkOf(image), 100);
}

TEST_F(DialogContract, APictureAskedForBetweenPaintsShowsAtTheNextOne)
{
    auto block = Drawing::createNew();
    block->append(boxEntity(0, 0, 4, 3));
    ASSERT_TRUE(block->save(folder / "box.dxf"));
    QWidget field;
    field.resize(80, 60);
    const QImage before = field.grab().toImage();
    EXPECT_TRUE(acdbDisplayPreviewFromDwg((folder / "box.dxf").wstring().c_str(), &field, 0x00FFFFFF));
    EXPECT_GT(differences(before, field.grab().toImage()), 50);
    EXPECT_FALSE(acdbDisplayPreviewFromDwg((folder / "missing.dxf").wstring().c_str(), &field, 0x00FFFFFF));
    EXPECT_EQ(differences(before, field.grab().toImage()), 0) << "no picture of the former file stays";
    EXPECT_FALSE(acdbDisplayPreviewFromDwg(L"", &field, 0));
    EXPECT_FALSE(acdbDisplayPreviewFromDwg((folder / "box.dxf").wstring().c_str(), nullptr, 0));
}

} // namespace
} // namespace velmor::test
