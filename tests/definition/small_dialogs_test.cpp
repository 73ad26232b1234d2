// The dialogs that the definition dialog opens, and what it takes from them.
#include "tests/definition/dialog_tools.h"

#include "controls/WideText.h"
#include "dialogs/CatchLabelDlg.h"
#include "dialogs/CatchLayerDlg.h"
#include "dialogs/TerrainTypeSimpleDlg.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "tests/definition/journal_lines.h"

#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QSpinBox>

#include <fstream>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;

namespace {

class SmallDialogs : public DefinitionDialogTest {
protected:
    static void press(CAdUiBaseDialog &dialog, int control) { dialog.Control<QAbstractButton>(control)->click(); }
    static void chooseLayers(CAdUiBaseDialog &dialog, const QStringList &names)
    {
        auto *list = dialog.Control<QListWidget>(210);
        for (int row = 0; row < list->count(); ++row)
            list->item(row)->setSelected(names.contains(list->item(row)->text()));
    }
    void writeTerrains()
    {
        std::filesystem::create_directories(m_userFolder / "support");
        std::ofstream(m_userFolder / "support" / "ZEMXTerrainType.cfg")
            << "<Terrains><Terrain name=\"Lawn\" flow=\"0.1000\"/><Terrain name=\"Roof\" flow=\"0.9000\"/></Terrains>";
    }
    /// A block file with these attributes; its path.
    std::wstring makeBlock(const char *name, const std::vector<std::wstring> &tags)
    {
        const auto block = velmor::Drawing::createNew();
        for (const std::wstring &tag : tags)
            block->append(std::make_unique<velmor::AttributeDefinitionEntity>(tag, tag, velmor::TextShape{}));
        const std::filesystem::path file = m_userFolder / name;
        EXPECT_TRUE(block->save(file));
        return ToWide(QString::fromStdString(file.string()));
    }
    std::wstring kept(const char *name)
    {
        const auto items = drawing().dictionaryEntry("ZEMX_LSD2", std::string("ZEMX_CATCH_DEFINE_") + name);
        return items && items->size() == 1 ? std::get<std::wstring>(items->front().value) : L"(none)";
    }
};

TEST_F(SmallDialogs, TheLayerDialogStartsWithTheDialogsLayersAndGivesItsChoiceBackWithTheEntities)
{
    const AcDbObjectId only = addLine(500, -10, 520, -10, L"ONLY");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        onNested([&](CAdUiBaseDialog &nested) {
            auto *layers = dynamic_cast<CCatchLayerDlg *>(&nested);
            ASSERT_NE(layers, nullptr);
            EXPECT_THAT(layers->m_chosenLayers, ElementsAre(L"PARCELS"));
            chooseLayers(nested, {"ONLY"});
            press(nested, 1);
        });
        dialog.click(207);
        EXPECT_EQ(dialog.text(363), "ONLY");
        EXPECT_EQ(dialog.GetDlgItem(363)->toolTip(), "ONLY");
        EXPECT_THAT(membersOfTheOnlySet(m_session), ElementsAre(only)); // the former set is freed
    });
    EXPECT_EQ(m_session.selectionSets().size(), 0u);
    run([](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.text(363), "ONLY"); }); // kept in the drawing
}

TEST_F(SmallDialogs, BoundariesAreTracedOnTheLayersThatWereChosen)
{
    setLayers({L"0"}); // nothing lies on it
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.choose(257, 2);
        dialog.click(290);
        EXPECT_THAT(areas(), IsEmpty());
        onNested([&](CAdUiBaseDialog &nested) {
            chooseLayers(nested, {"PARCELS"});
            press(nested, 1);
        });
        dialog.click(207);
        dialog.click(290);
        EXPECT_THAT(areas(), SizeIs(1));
    });
}

TEST_F(SmallDialogs, SeveralLayersShowAsStarsAndStandInTheTip)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        drawing().ensureLayer(L"MORE");
        onNested([&](CAdUiBaseDialog &nested) {
            chooseLayers(nested, {"PARCELS", "MORE"});
            press(nested, 1);
        });
        dialog.click(207);
        EXPECT_EQ(dialog.text(363), "***");
        EXPECT_EQ(dialog.GetDlgItem(363)->toolTip(), "PARCELS\nMORE");
        onNested([&](CAdUiBaseDialog &nested) {
            chooseLayers(nested, {});
            press(nested, 1);
        });
        dialog.click(207);
        EXPECT_EQ(dialog.text(363), ToQString(message(3996)));
        EXPECT_EQ(dialog.GetDlgItem(363)->toolTip(), ToQString(message(3996)));
    });
    // An empty list is not written: the one kept before stays.
    run([](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.text(363), "PARCELS"); });
}

TEST_F(SmallDialogs, CancelOfTheLayerDialogLeavesLayersAndEntities)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        const AcDbObjectIdArray before = membersOfTheOnlySet(m_session);
        onNested([&](CAdUiBaseDialog &nested) {
            chooseLayers(nested, {});
            press(nested, 2);
        });
        dialog.click(207);
        EXPECT_EQ(dialog.text(363), "PARCELS");
        EXPECT_EQ(membersOfTheOnlySet(m_session), before);
    });
}

TEST_F(SmallDialogs, OkOfTheTerrainDialogFillsTheComboAnewFromItsList)
{
    writeTerrains();
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        EXPECT_EQ(entryTexts(dialog, 322), QStringList({"Roof", "Lawn"}));
        dialog.type(215, "0.5");
        onNested([&](CAdUiBaseDialog &nested) {
            ASSERT_NE(dynamic_cast<CTerrainTypeSimpleDlg *>(&nested), nullptr);
            nested.Control<QTreeWidget>(210)->topLevelItem(0)->setSelected(true);
            press(nested, 250); // Roof goes
            nested.Control<QLineEdit>(255)->setText("Gravel");
            nested.Control<QLineEdit>(215)->setText("0.3");
            press(nested, 253);
            press(nested, 1);
        });
        dialog.click(246);
        EXPECT_EQ(entryTexts(dialog, 322), QStringList({"Lawn", "Gravel"}));
        EXPECT_EQ(dialog.Control<QComboBox>(322)->currentIndex(), 0);
        EXPECT_EQ(dialog.text(215), "0.1");
        auto *combo = dialog.Control<QComboBox>(322);
        combo->setCurrentIndex(1);
        Q_EMIT combo->activated(1);
        EXPECT_EQ(dialog.text(215), "0.3");
    });
}

TEST_F(SmallDialogs, CancelOfTheTerrainDialogStillSelectsTheFirstEntryAndItsCoefficient)
{
    writeTerrains();
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        auto *combo = dialog.Control<QComboBox>(322);
        combo->setCurrentIndex(1);
        dialog.type(215, "0.5");
        onNested([&](CAdUiBaseDialog &nested) {
            nested.Control<QLineEdit>(255)->setText("Gravel");
            press(nested, 253);
            press(nested, 2);
        });
        dialog.click(246);
        EXPECT_EQ(entryTexts(dialog, 322), QStringList({"Roof", "Lawn"}));
        EXPECT_EQ(combo->currentIndex(), 0);
        EXPECT_EQ(dialog.text(215), "0.9");
    });
}

TEST_F(SmallDialogs, AnEmptiedTerrainListLeavesTheCoefficient)
{
    writeTerrains();
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.type(215, "0.5");
        onNested([&](CAdUiBaseDialog &nested) {
            auto *list = nested.Control<QTreeWidget>(210);
            while (list->topLevelItemCount() > 0) {
                list->topLevelItem(0)->setSelected(true);
                press(nested, 250);
            }
            press(nested, 1);
        });
        dialog.click(246);
        EXPECT_EQ(entryTexts(dialog, 322), QStringList());
        EXPECT_EQ(dialog.text(215), "0.5");
    });
}

TEST_F(SmallDialogs, ADamagedRecordGivesAnEmptyListAndOkKeepsTheFileBesideTheNewOne)
{
    const auto support = m_userFolder / "support";
    const auto contentOf = [&](const char *name) {
        std::ifstream file(support / name);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    writeTerrains();
    const std::string both = contentOf("ZEMXTerrainType.cfg");
    drawing().setDictionaryEntry("ZEMX_TERRAINTYPE", "TT_DEFINITION", {{1, std::wstring(L"<Other/>")}});
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        EXPECT_EQ(entryTexts(dialog, 322), QStringList());
        dialog.type(215, "0.5");
        onNested([&](CAdUiBaseDialog &nested) {
            EXPECT_EQ(nested.Control<QTreeWidget>(210)->topLevelItemCount(), 0);
            press(nested, 1);
        });
        for (int i = 0; i < 2; ++i) {
            dialog.click(246);
            EXPECT_EQ(entryTexts(dialog, 322), QStringList());
            EXPECT_EQ(dialog.text(215), "0.5");
            EXPECT_EQ(contentOf("ZEMXTerrainType.cfg"), "<Other/>");
            EXPECT_EQ(contentOf("ZEMXTerrainType.cfg.bak"), both);
        }
    });
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(SmallDialogs, AfterTheSettingsTheirKeysAreReadAgainAndNoOthers)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        onNested([&](CAdUiBaseDialog &nested) {
            nested.Control<QSpinBox>(settingControl("CATCH_HATCH_COLOR_TEMP"))->setValue(6);
            nested.Control<QSpinBox>(settingControl("CATCH_HATCH_COLOR_DEFINED"))->setValue(2);
            auto *prefix = nested.Control<QLineEdit>(settingControl("CATCH_NAME_PREFIX"));
            prefix->clear();
            for (const QChar letter : QStringLiteral("P-")) {
                QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
                QApplication::sendEvent(prefix, &key);
            }
            nested.Control<QDoubleSpinBox>(settingControl("DEFAULT_ZOOM"))->setValue(7.5);
            press(nested, velmor::kControlOk);
        });
        Journal::instance().setRecording(true);
        dialog.click(219);
        Journal::instance().setRecording(false);
        const auto shown = entriesOf("CModuleConfiguration::ShowGSDialog");
        ASSERT_THAT(shown, SizeIs(1));
        EXPECT_THAT(shown.front().arguments, ElementsAre("TCE1"));
        EXPECT_EQ(dialog.swatch(333), acedGetRGB(6));
        EXPECT_EQ(dialog.swatch(332), acedGetRGB(2));
        EXPECT_EQ(dialog.text(218), "1.5"); // read at the start only
        dialog.click(205);
        EXPECT_EQ(dialog.text(329), "P-D2_1");
    });
}

TEST_F(SmallDialogs, NoneOpensWhileACommandIsActive)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        int opened = 0;
        onNested([&](CAdUiBaseDialog &) { ++opened; });
        {
            const Notification::SetActiveCommand other(L"OTHER");
            for (const int control : {207, 246, 219, 286}) {
                ASSERT_TRUE(dialog.isEnabled(control)) << control;
                dialog.click(control);
            }
            EXPECT_EQ(opened, 0);
        }
        for (const int control : {207, 246, 219, 286})
            dialog.click(control);
        EXPECT_EQ(opened, 4);
    });
}

TEST_F(SmallDialogs, TheHiddenHelpButtonOpensNothing)
{
    run([&](CDialogUnderTest &dialog) {
        int opened = 0;
        onNested([&](CAdUiBaseDialog &) { ++opened; });
        EXPECT_FALSE(dialog.GetDlgItem(9)->isVisible());
        dialog.GetDlgItem(9)->setEnabled(true);
        dialog.click(9);
        EXPECT_EQ(opened, 0);
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(SmallDialogs, TheHiddenLabelButtonHandsItsBlockOnAndTakesBackWhatOkGives)
{
    const std::wstring path = makeBlock("Own.dxf", {L"FIRST", L"SECOND"});
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        EXPECT_FALSE(dialog.GetDlgItem(286)->isVisible());
        onNested([&](CAdUiBaseDialog &nested) {
            auto *label = dynamic_cast<CCatchLabelDlg *>(&nested);
            ASSERT_NE(label, nullptr);
            EXPECT_EQ(label->m_strBlockName, L"CatchLabel");
            EXPECT_THAT(label->m_strBlockPath, testing::EndsWith(L"CatchLabel.dwg"));
            m_session.answers().push({path});
            press(nested, 250);
            press(nested, 1);
        });
        const JournalLines lines = recorded([&] { dialog.click(286); });
        ASSERT_THAT(lines, testing::Not(IsEmpty()));
        EXPECT_EQ(lines.front(), "SetActiveCommand(CA_DEFINE_LAB)");
        EXPECT_EQ(dialog.LabelBlock(), velmor::idOf(*drawing().findBlock(L"Own")));
        EXPECT_THAT(dialog.LabelAttributes(), ElementsAre(L"FIRST", L"SECOND", L"", L""));
    });
    // The closing writes what was taken back.
    EXPECT_EQ(kept("m_strBlockPath"), path);
    EXPECT_EQ(kept("m_strBlockName"), L"Own");
}

TEST_F(SmallDialogs, CancelOfTheLabelDialogLeavesBlockAndAttributes)
{
    const std::wstring path = makeBlock("Own.dxf", {L"FIRST"});
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        const AcDbObjectId block = dialog.LabelBlock();
        const CStringArray attributes = dialog.LabelAttributes();
        onNested([&](CAdUiBaseDialog &nested) {
            m_session.answers().push({path});
            press(nested, 250);
            press(nested, 2);
        });
        dialog.click(286);
        EXPECT_EQ(dialog.LabelBlock(), block);
        EXPECT_EQ(dialog.LabelAttributes(), attributes);
    });
    EXPECT_EQ(kept("m_strBlockName"), L"CatchLabel");
}

TEST_F(SmallDialogs, APickInTheLayerDialogPutsBothDialogsAwayAndBringsThemBack)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        const AcDbObjectId line = addLine(500, -10, 520, -10, L"ONLY");
        onNested([&](CAdUiBaseDialog &nested) {
            m_session.answers().push({AcDbObjectIdArray{line}});
            m_session.answers().push({velmor::Answer::Enter{}});
            press(nested, 209);
            EXPECT_TRUE(nested.isVisible());
            EXPECT_TRUE(dialog.isVisible());
            press(nested, 1);
        });
        dialog.click(207);
        EXPECT_EQ(dialog.text(363), "ONLY");
    });
}

} // namespace
