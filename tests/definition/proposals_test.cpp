// Which names the dialog proposes and which it takes, on the edit of the name; and what of the areas that are there
// already is taken, of whatever type they are.
#include "tests/definition/made_area.h"
#include "tests/definition/manual_fixture.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class Proposals : public ManualDefinitionTest {
protected:
    QString proposalFor(std::initializer_list<const wchar_t *> sections)
    {
        QString proposal;
        run([&](CDialogUnderTest &dialog) {
            prepare(dialog, 0, sections);
            proposal = dialog.text(329);
        });
        return proposal;
    }
    /// Saves a square under that name, or under the proposed one; the alerts that it gave.
    std::vector<std::wstring> save(const QString &name, double x)
    {
        const AcDbObjectId box = addBox(x, 0, x + 10, 10, L"0");
        run([&](CDialogUnderTest &dialog) {
            prepare(dialog, 0, {L"D1"});
            if (!name.isEmpty())
                dialog.type(329, name);
            dialog.addMainRow(box, 100);
            dialog.selectRows({0});
            dialog.GetDlgItem(221)->setEnabled(true);
            dialog.click(221);
        });
        return std::exchange(alerts(), {});
    }
};

TEST_F(Proposals, WithAllThreePiecesEmptyTheCounterFollowsTheSectionsName)
{
    for (const char *key : {"CATCH_NAME_PREFIX", "CATCH_NAME_SUFIX", "CATCH_COUNTER_DELIMITER"})
        setSetting(key, std::wstring());
    EXPECT_EQ(proposalFor({L"D1"}), "D11");
    EXPECT_EQ(proposalFor({L"D2", L"D1"}), "D21");
}

TEST_F(Proposals, ThePiecesStandRoundTheSectionsName)
{
    setSetting("CATCH_NAME_SUFIX", std::wstring(L"-K"));
    setSetting("CATCH_COUNTER_DELIMITER", std::wstring(L"#"));
    EXPECT_EQ(proposalFor({L"D1"}), "S-D1-K#1");
}

TEST_F(Proposals, ANameOfTheDrawingRaisesTheCounterBeforeAnythingWasSaved)
{
    ASSERT_TRUE(makeArea(L"S-D1_2", 1, 1000));
    EXPECT_EQ(proposalFor({L"D1"}), "S-D1_1") << "the counter reaches 2 only when 1 is taken";
    ASSERT_TRUE(makeArea(L"S-D1_1", 1, 2000));
    EXPECT_EQ(proposalFor({L"D1"}), "S-D1_3");
    EXPECT_EQ(proposalFor({L"D2"}), "S-D2_1");
}

TEST_F(Proposals, NamesOfAllTypesAreTakenWhateverTypeIsOn)
{
    ASSERT_TRUE(makeArea(L"S-D1_1", 2, 1000));
    ASSERT_TRUE(makeArea(L"S-D1_2", 4, 2000));
    ASSERT_TRUE(makeArea(L"S-D1_3", 6, 3000));
    EXPECT_EQ(proposalFor({L"D1"}), "S-D1_4");
    EXPECT_THAT(save("S-D1_2", 4000), ElementsAre(message(1620)));
    EXPECT_THAT(areas(), SizeIs(3));
}

TEST_F(Proposals, TheNameOfAHiddenAreaIsTaken)
{
    auto bag = boost::shared_ptr<Data::CProperties>(new Data::CProperties);
    const auto hidden =
        Sewage::CCatchmentAreaManager::Instance()->SetHiddenCA(network().sectionByName(L"D2"), 5000, 1, bag);
    ASSERT_TRUE(hidden);
    ASSERT_NE(hidden->IsHidden(), 0);
    hidden->SetName(L"S-D1_1");
    EXPECT_EQ(proposalFor({L"D1"}), "S-D1_2");
    EXPECT_THAT(save("S-D1_1", 4000), ElementsAre(message(1620)));
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(Proposals, CentresOfAllTypesAreTakenWhateverTypeIsOn)
{
    int number = 0;
    for (const int mask : {1, 2, 4}) {
        const double x = 1000.0 * mask;
        ASSERT_TRUE(makeArea(L"other " + std::to_wstring(++number), mask, x));
        EXPECT_THAT(save({}, x), ElementsAre(message(2005))) << mask;
        EXPECT_THAT(areas(), SizeIs(static_cast<std::size_t>(number))) << mask;
    }
    EXPECT_THAT(save({}, 9000), IsEmpty()) << "a free place";
    EXPECT_THAT(areas(), SizeIs(4));
}

TEST_F(Proposals, TheCentreOfAHiddenAreaTheMiddleOfItsSectionIsTaken)
{
    addSection(L"H", {4000, 5}, {4010, 5});
    auto bag = boost::shared_ptr<Data::CProperties>(new Data::CProperties);
    ASSERT_TRUE(Sewage::CCatchmentAreaManager::Instance()->SetHiddenCA(network().sectionByName(L"H"), 5000, 2, bag));
    EXPECT_THAT(save({}, 4000), ElementsAre(message(2005)));
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(Proposals, ANameThatDiffersInCaseAloneIsAnotherName)
{
    ASSERT_TRUE(makeArea(L"S-D1_1", 1, 1000));
    EXPECT_THAT(save("s-d1_1", 2000), IsEmpty());
    EXPECT_TRUE(areaNamed(L"s-d1_1"));
    EXPECT_TRUE(areaNamed(L"S-D1_1"));
    EXPECT_THAT(save("s-d1_1", 3000), ElementsAre(message(1620)));
    EXPECT_THAT(areas(), SizeIs(2));
}

TEST_F(Proposals, ANameInSmallLettersDoesNotRaiseTheCounter)
{
    ASSERT_TRUE(makeArea(L"s-d1_1", 1, 1000));
    EXPECT_EQ(proposalFor({L"D1"}), "S-D1_1");
    EXPECT_THAT(save({}, 2000), IsEmpty());
    EXPECT_TRUE(areaNamed(L"S-D1_1"));
}

} // namespace
