// Names of islands: each is proposed from the main area's name, by hand until the current section is shown again.
#include "tests/definition/dialog_fixture.h"

#include "controls/WideText.h"
#include "definition/AreaNaming.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class IslandNames : public DefinitionDialogTest {
protected:
    IslandNames()
    {
        setSetting("CATCH_NAME_PREFIX", std::wstring(L"S-"));
        m_outer = addBox(1000, 0, 1100, 100, L"0");
        m_first = addBox(1010, 10, 1020, 20, L"0");
        m_second = addBox(1050, 50, 1070, 60, L"0");
    }
    /// One main row with two islands and the islands' own rows.
    void addRows(CDialogUnderTest &dialog)
    {
        dialog.type(215, "0.35");
        dialog.addMainRow(m_outer, 9700, {m_first, m_second});
        dialog.addIslandRow(m_first, 100);
        dialog.addIslandRow(m_second, 200);
        for (const int control : {221, 210})
            dialog.GetDlgItem(control)->setEnabled(true);
    }
    static std::vector<std::wstring> names()
    {
        std::vector<std::wstring> found;
        for (const auto &area : areas())
            found.push_back(area->GetName());
        return found;
    }
    AcDbObjectId m_outer, m_first, m_second;
};

TEST_F(IslandNames, EachIslandOfAnAutomaticRunIsNamedFromItsMainAreaNotFromTheIslandBefore)
{
    addBox(210, 60, 230, 80); // a second courtyard in D4's parcel
    for (const bool labels : {false, true}) {
        m_session.setNextSelection({});
        run([&](CDialogUnderTest &dialog) {
            select(dialog, {L"D4"});
            dialog.choose(257, 2);
            dialog.check(268, true);
            dialog.check(274, labels);
            dialog.type(215, "0.35");
            dialog.click(290);
            EXPECT_EQ(dialog.text(281), ToQString(FormatCount(message(2007), 3)));
            EXPECT_EQ(dialog.text(329), "S-S-D4_1_3");
        });
        EXPECT_THAT(names(), ElementsAre(L"S-D4_1", L"S-S-D4_1_1", L"S-S-D4_1_2")) << labels;
        for (const auto &area : areas())
            Sewage::CCatchmentAreaManager::Instance()->DeleteCA(area);
        ASSERT_THAT(areas(), IsEmpty());
    }
}

TEST_F(IslandNames, SavedByHandWithoutASectionTheyAreNamedFromTheMainArea)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        dialog.type(329, "alone");
        addRows(dialog);
        dialog.selectRows({0, 1, 2});
        dialog.click(221);
        EXPECT_EQ(dialog.text(329), "S-alone_3");
    });
    EXPECT_THAT(names(), ElementsAre(L"alone", L"S-alone_1", L"S-alone_2"));
}

TEST_F(IslandNames, SavedByHandWithLabelsTheyStartAgainFromTheSectionsName)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        addRows(dialog);
        dialog.check(274, true);
        dialog.selectRows({0, 1, 2});
        dialog.click(221);
        EXPECT_EQ(dialog.text(329), "S-D1_4");
    });
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-D1_2", L"S-D1_3"));
}

TEST_F(IslandNames, SavedByHandWithoutLabelsOnlyTheFirstCarriesTheMainAreasName)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        addRows(dialog);
        dialog.check(274, false);
        dialog.selectRows({0, 1, 2});
        dialog.click(221);
        EXPECT_EQ(dialog.text(329), "S-D1_3");
    });
    // The main area shows no section again without labels, an island does.
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-S-D1_1_1", L"S-D1_2"));
}

TEST_F(IslandNames, AnIslandGetsStatusAndRefreshWhetherOrNotLabelsAreWritten)
{
    for (const bool labels : {true, false}) {
        run([&](CDialogUnderTest &dialog) {
            select(dialog, {L"D1"});
            addRows(dialog);
            dialog.check(274, labels);
            dialog.type(329, "island");
            dialog.selectRows({1});
            dialog.click(221);
            EXPECT_EQ(dialog.text(281), ToQString(message(3498))) << labels;
            EXPECT_EQ(dialog.colour(281), 23551u) << labels;
            EXPECT_EQ(dialog.text(329), "S-D1_1") << labels;
        });
        for (const auto &area : areas())
            Sewage::CCatchmentAreaManager::Instance()->DeleteCA(area);
    }
}

} // namespace
