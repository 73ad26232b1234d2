// The dialog of terrain types.
#include "tests/dialogs/small_dialog_fixture.h"

#include "controls/AMSEdits.h"
#include "controls/WideText.h"
#include "dialogs/TerrainTypeSimpleDlg.h"
#include "tests/catalog/PlainUser.h"

#include <QHeaderView>
#include <QTreeWidget>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr char kFile[] = "support/ZEMXTerrainType.cfg";
constexpr char kThree[] = "<Terrains>\n<Terrain name=\"Roof\" flow=\"0.9000\"/>\n"
                          "<Terrain name=\"Lawn\" flow=\"0.1234\"/>\n"
                          "<Terrain name=\"Gravel\" flow=\"0.3000\"/>\n</Terrains>\n";

class TerrainDialog : public SmallDialogTest {
protected:
    TerrainDialog() { m_user.write(kFile, kThree); }

    QTreeWidget &list() { return *m_dialog.Control<QTreeWidget>(210); }
    /// "name flow" of each row.
    QStringList rows()
    {
        QStringList shown;
        for (int row = 0; row < list().topLevelItemCount(); ++row)
            shown << list().topLevelItem(row)->text(0) + " " + list().topLevelItem(row)->text(1);
        return shown;
    }
    void choose(int row) { list().topLevelItem(row)->setSelected(true); }
    void add(const char *name, const char *flow)
    {
        type(m_dialog, 255, name);
        type(m_dialog, 215, flow);
        click(m_dialog, 253);
    }
    int run(const std::function<void()> &drive) { return SmallDialogTest::run(m_dialog, drive); }
    static std::wstring record()
    {
        std::wstring text;
        CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"ZEMX_TERRAINTYPE", L"TT_DEFINITION", text, false);
        return text;
    }
    std::string file() const { return m_user.read(kFile); }

    CTerrainTypeSimpleDlg m_dialog;
};

TEST_F(TerrainDialog, TitleAndCaptionsAreTheMessagesOfTheirNumbersInBothLanguages)
{
    for (const char *language : {"hr", "en"}) {
        start(language);
        CTerrainTypeSimpleDlg dialog;
        SmallDialogTest::run(dialog, [&] {
            EXPECT_EQ(dialog.windowTitle(), ToQString(message(2024)));
            EXPECT_EQ(text(dialog, 342), ToQString(message(2024)));
            EXPECT_EQ(text(dialog, 324), ToQString(message(1991)));
            EXPECT_EQ(text(dialog, 1), ToQString(message(60)));
            EXPECT_EQ(text(dialog, 2), ToQString(message(67)));
            const auto *head = dialog.Control<QTreeWidget>(210)->headerItem();
            EXPECT_EQ(head->text(0), ToQString(message(1990)));
            EXPECT_EQ(head->text(1), ToQString(message(1991)));
            for (const int control : {253, 250})
                EXPECT_FALSE(dialog.Control<QAbstractButton>(control)->icon().isNull()) << control;
            EXPECT_NE(dialog.Control<QAbstractButton>(253)->icon().pixmap(18).toImage(),
                      dialog.Control<QAbstractButton>(250)->icon().pixmap(18).toImage());
        });
    }
}

TEST_F(TerrainDialog, TheListIsOfOneSelectionWithWholeRowsAndItsColumns)
{
    run([&] {
        EXPECT_EQ(list().selectionMode(), QAbstractItemView::SingleSelection);
        EXPECT_EQ(list().selectionBehavior(), QAbstractItemView::SelectRows);
        EXPECT_GE(list().columnWidth(0), 89);
        EXPECT_GE(list().columnWidth(1), 122);
        EXPECT_TRUE(list().topLevelItem(0)->textAlignment(1) & Qt::AlignRight);
        EXPECT_FALSE(list().topLevelItem(0)->textAlignment(0) & Qt::AlignRight);
    });
}

TEST_F(TerrainDialog, TheCoefficientTakesFourDigitsFourDecimalsAndNoSign)
{
    run([&] {
        type(m_dialog, 215, "-12345.67891");
        EXPECT_EQ(text(m_dialog, 215), "1234.6789");
        type(m_dialog, 215, "1,5"); // a group separator counts for nothing
        EXPECT_EQ(m_dialog.Control<AMSEdit::CAMSNumericEdit>(215)->GetDouble(), 15.0);
    });
}

TEST_F(TerrainDialog, AtTheStartTheListShowsFourDecimals)
{
    // A new drawing takes the file's entries, each in front of the one before.
    run([&] { EXPECT_EQ(rows(), QStringList({"Gravel 0.3000", "Lawn 0.1234", "Roof 0.9000"})); });
}

TEST_F(TerrainDialog, ARowThatIsClickedGoesIntoTheEdits)
{
    run([&] {
        choose(1);
        EXPECT_EQ(text(m_dialog, 255), "Lawn");
        EXPECT_EQ(text(m_dialog, 215), "0.1234");
        choose(2);
        EXPECT_EQ(text(m_dialog, 255), "Roof");
        EXPECT_EQ(text(m_dialog, 215), "0.9"); // trailing zeros are trimmed
    });
}

TEST_F(TerrainDialog, AnEmptyNameAddsNothing)
{
    run([&] {
        const QStringList before = rows();
        add("", "0.5");
        EXPECT_EQ(rows(), before);
    });
}

TEST_F(TerrainDialog, ANewNameGoesToTheEndAndTheWholeListThenShowsTwoDecimals)
{
    run([&] {
        add("Meadow", "0.0567");
        EXPECT_EQ(rows(), QStringList({"Gravel 0.30", "Lawn 0.12", "Roof 0.90", "Meadow 0.06"}));
        click(m_dialog, 1);
    });
    EXPECT_THAT(record(), HasSubstr(L"name=\"Meadow\" flow=\"0.0567\"")); // what is kept has four
    EXPECT_THAT(record(), HasSubstr(L"name=\"Lawn\" flow=\"0.1234\""));
}

TEST_F(TerrainDialog, AKnownNameChangesItsCoefficientInItsPlace)
{
    run([&] {
        choose(1);
        type(m_dialog, 215, "0.25");
        click(m_dialog, 253);
        EXPECT_EQ(rows(), QStringList({"Gravel 0.30", "Lawn 0.25", "Roof 0.90"}));
    });
}

TEST_F(TerrainDialog, AfterAChangeAClickedRowGivesTheTwoDecimalsThatItShows)
{
    run([&] {
        add("Meadow", "0.5");
        choose(1);
        EXPECT_EQ(text(m_dialog, 215), "0.12");
        click(m_dialog, 253);
        click(m_dialog, 1);
    });
    EXPECT_THAT(record(), HasSubstr(L"name=\"Lawn\" flow=\"0.1200\""));
}

TEST_F(TerrainDialog, ANameThatDiffersInCaseOnlyIsASecondEntry)
{
    run([&] {
        add("ROOF", "0.8");
        EXPECT_EQ(rows(), QStringList({"Gravel 0.30", "Lawn 0.12", "Roof 0.90", "ROOF 0.80"}));
    });
}

TEST_F(TerrainDialog, ARemovedRowGoesAndTheOthersKeepTheirFormat)
{
    run([&] {
        choose(1);
        click(m_dialog, 250);
        EXPECT_EQ(rows(), QStringList({"Gravel 0.3000", "Roof 0.9000"}));
        EXPECT_TRUE(list().selectedItems().isEmpty()); // no other row takes its place
        EXPECT_EQ(text(m_dialog, 255), "Lawn");
        click(m_dialog, 250); // nothing is selected
        EXPECT_EQ(rows().size(), 2);
        click(m_dialog, 1);
    });
    EXPECT_THAT(record(), Not(HasSubstr(L"Lawn")));
    EXPECT_THAT(file(), Not(HasSubstr("Lawn")));
}

TEST_F(TerrainDialog, AllRowsCanGoAndANewOneComeAfterThem)
{
    run([&] {
        for (int left = 3; left > 0; --left) {
            choose(0);
            click(m_dialog, 250);
            EXPECT_EQ(rows().size(), left - 1);
        }
        add("First", "1");
        EXPECT_EQ(rows(), QStringList("First 1.00"));
    });
}

TEST_F(TerrainDialog, ASelectionThatGoesPutsTheLastNameBackIntoItsEdit)
{
    run([&] {
        choose(0);
        type(m_dialog, 255, "half typed");
        list().clearSelection();
        EXPECT_EQ(text(m_dialog, 255), "Gravel");
    });
}

TEST_F(TerrainDialog, OkSavesToTheDrawingAndThenToTheFile)
{
    EXPECT_EQ(run([&] {
                  add("Meadow", "0.5");
                  velmor::Journal::instance().setRecording(true);
                  click(m_dialog, 1);
                  velmor::Journal::instance().setRecording(false);
              }),
              CAdUiBaseDialog::kOk);
    EXPECT_EQ(callsOf("CZEMCDictionaryPtr::dctWrite"), 1u);
    EXPECT_THAT(record(), HasSubstr(L"Meadow"));
    EXPECT_THAT(file(), HasSubstr("Meadow"));
    CStringArray names;
    AcArray<double> flows;
    m_dialog.m_catalog.GetTerrains(names, flows);
    EXPECT_THAT(names, ElementsAre(L"Gravel", L"Lawn", L"Roof", L"Meadow"));
}

TEST_F(TerrainDialog, CancelLeavesFileAndRecordAsTheyWere)
{
    std::wstring merged;
    EXPECT_EQ(run([&] {
                  merged = record(); // what the start has merged stays
                  add("Meadow", "0.5");
                  choose(0);
                  click(m_dialog, 250);
                  click(m_dialog, 2);
              }),
              CAdUiBaseDialog::kCancel);
    EXPECT_EQ(record(), merged);
    EXPECT_THAT(merged, HasSubstr(L"Lawn"));
    EXPECT_EQ(file(), kThree);
}

TEST_F(TerrainDialog, WithoutAFileTheDrawingsListIsThereAllTheSame)
{
    std::filesystem::remove(m_user.path() / kFile);
    CZEMCDictionaryPtr writer(AcDb::kForWrite);
    ASSERT_TRUE(writer.dctWrite(L"ZEMX_TERRAINTYPE", L"TT_DEFINITION",
                                std::wstring(L"<Terrains><Terrain name=\"Own\" flow=\"0.2000\"/></Terrains>"), false,
                                true, 1));
    run([&] { EXPECT_EQ(rows(), QStringList("Own 0.2000")); });
}

TEST_F(TerrainDialog, ASaveThatFailsTellsNothingAndLeavesTheFileWhole)
{
    const auto folder = (m_user.path() / kFile).parent_path();
    namespace fs = std::filesystem;
    fs::permissions(m_user.path(), fs::perms(0755));
    fs::permissions(folder, fs::perms(0555));
    fs::permissions(folder / "ZEMXTerrainType.cfg", fs::perms(0444));
    EXPECT_TRUE(velmor::test::asPlainUser([&] {
        const int result = run([&] {
            add("Meadow", "0.5");
            click(m_dialog, 1);
        });
        return result == CAdUiBaseDialog::kOk && m_session.alerts().empty() &&
               record().find(L"Meadow") != std::wstring::npos; // the drawing has it
    }));
    EXPECT_EQ(file(), kThree);
    fs::permissions(folder, fs::perms(0755));
}

TEST_F(TerrainDialog, AnErrorInOneFieldOfTheFileIsNoErrorOfTheList)
{
    m_user.write(kFile, "<Terrains><Terrain name=\"&lt;b&gt;\" flow=\"-0.5\"/><Terrain flow=\"x\"/></Terrains>");
    run([&] {
        EXPECT_EQ(rows(), QStringList({" 0.0000", "<b> -0.5000"}));
        choose(1);
        EXPECT_EQ(text(m_dialog, 215), "0.5"); // the edit takes no sign
    });
}

} // namespace
