// What a save hands to the catchment store and in which order: property bags, labels, ties of islands.
#include "tests/definition/dialog_fixture.h"

#include "controls/WideText.h"

#include <sstream>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::SizeIs;
using velmor::Journal;
using velmor::journalText;

namespace {

constexpr const char *kLabel = "CCatchmentAreaManager::WriteCatchmentLabel";

class SavingCalls : public DefinitionDialogTest {
protected:
    SavingCalls()
    {
        m_outer = addBox(1000, 0, 1100, 100, L"0");
        m_first = addBox(1010, 10, 1020, 20, L"0");
        m_second = addBox(1050, 50, 1070, 60, L"0");
    }
    /// One main row with two islands and the islands' own rows, for the section D1.
    void prepare(CDialogUnderTest &dialog)
    {
        select(dialog, {L"D1"});
        dialog.type(215, "0.35");
        dialog.addMainRow(m_outer, 9700, {m_first, m_second});
        dialog.addIslandRow(m_first, 100);
        dialog.addIslandRow(m_second, 200);
        dialog.GetDlgItem(221)->setEnabled(true);
    }
    /// Saves that one row and keeps the record of its calls.
    static void saveRow(CDialogUnderTest &dialog, int row)
    {
        dialog.selectRows({row});
        Journal::instance().setRecording(true);
        dialog.click(221);
        Journal::instance().setRecording(false);
    }
    /// Tags of a bag in a call's argument, in order.
    static std::vector<std::string> tagsOf(const std::string &bag)
    {
        std::vector<std::string> tags;
        std::istringstream properties(bag);
        for (std::string property; std::getline(properties, property, ';');) {
            const std::size_t start = property.find_first_not_of(' ');
            tags.push_back(property.substr(start, property.find('=') - start));
        }
        return tags;
    }
    static std::vector<std::string> savedTags()
    {
        const auto created = entriesOf("CCatchmentAreaManager::CreateCA");
        return created.size() == 1 ? tagsOf(created.front().arguments.at(3)) : std::vector<std::string>();
    }
    /// The calls that leave something behind, up to the assignment of sections, each with its arguments; the polygon
    /// text and the bag of a creation are left out.
    static std::vector<std::string> effects()
    {
        std::vector<std::string> found;
        for (const velmor::JournalEntry &entry : Journal::instance().entries()) {
            if (entry.operation == "CCatchmentAreaManager::CreateCA") {
                found.push_back("CreateCA " + entry.arguments.at(1) + " " + entry.arguments.at(2));
            } else if (entry.operation == "CDataRW::Write" || entry.operation == "CDataRW::Read" ||
                       entry.operation == "CUtility::CreateGUID" ||
                       entry.operation == "CTransform::AcadPoly2GeosPoly" ||
                       entry.operation == "CCatchmentArea::SetPropertyData" ||
                       entry.operation == "CCatchmentArea::SetName" ||
                       entry.operation == "CCatchmentAreaManager::GetCatchmentAreaByGuid" ||
                       entry.operation == "CCatchmentAreaManager::AssignCA") {
                std::string text = entry.operation.substr(entry.operation.find("::") + 2);
                for (const std::string &argument : entry.arguments)
                    text += " " + argument;
                found.push_back(text);
            }
            if (entry.operation == "CCatchmentAreaManager::AssignCA")
                break;
        }
        return found;
    }
    std::string sectionHandle() { return journalText(network().sectionByName(L"D1")->GetHandleText()); }

    AcDbObjectId m_outer, m_first, m_second;
};

TEST_F(SavingCalls, TheBagOfAnAreaWithAPolygonIsFilledInOrder)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        saveRow(dialog, 0);
        EXPECT_THAT(savedTags(), ElementsAre("CA_GUID", "CA_POPULATION", "CA_COEFF", "CA_SLOPE", "CA_TYPE_ISLAND"));
        saveRow(dialog, 1);
        EXPECT_THAT(savedTags(),
                    ElementsAre("CA_GUID", "CA_POPULATION", "CA_COEFF", "CA_SLOPE", "CA_TYPE_ISLAND", "CA_MAIN_AREA"));
    });
}

TEST_F(SavingCalls, TheBagOfAnAreaWithoutAPolygonIsFilledInOrder)
{
    const std::pair<int, std::vector<std::string>> expected[] = {
        {1, {"CA_GUID", "CA_TYPE_ISLAND", "CA_POPULATION", "CA_COEFF", "CA_SLOPE"}},
        {2, {"CA_GUID", "CA_TYPE_ISLAND", "CA_POPULATION"}},
        {3, {"CA_GUID", "CA_TYPE_ISLAND", "CA_POPULATION", "CA_COEFF", "CA_SLOPE"}},
        {4, {"CA_GUID", "CA_TYPE_ISLAND"}},
        {5, {"CA_GUID", "CA_TYPE_ISLAND", "CA_POPULATION", "CA_COEFF", "CA_SLOPE"}},
        {6, {"CA_GUID", "CA_TYPE_ISLAND", "CA_POPULATION"}},
        {7, {"CA_GUID", "CA_TYPE_ISLAND", "CA_POPULATION", "CA_COEFF", "CA_SLOPE"}},
    };
    for (const auto &[mask, tags] : expected) {
        run([&, mask = mask, &tags = tags](CDialogUnderTest &dialog) {
            dialog.choose(257, 3);
            select(dialog, {L"D1"});
            for (const auto &[control, bit] : {std::pair(106, 1), std::pair(107, 2), std::pair(108, 4)})
                dialog.Control<QAbstractButton>(control)->setChecked((mask & bit) != 0);
            dialog.type(213, "1");
            dialog.type(215, "0.35");
            Journal::instance().setRecording(true);
            dialog.click(221);
            Journal::instance().setRecording(false);
            const auto hidden = entriesOf("CCatchmentAreaManager::SetHiddenCA");
            ASSERT_THAT(hidden, SizeIs(1)) << mask;
            EXPECT_EQ(tagsOf(hidden.front().arguments.at(3)), tags) << mask;
        });
    }
}

TEST_F(SavingCalls, ASaveHoldsItsCommandAndALockOfTheDocumentFromItsStartToItsEnd)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        dialog.check(274, false);
        saveRow(dialog, 0);
        EXPECT_THAT(calls({"SetActiveCommand", "~SetActiveCommand", "AcAxDocLock::AcAxDocLock",
                           "AcAxDocLock::~AcAxDocLock", "CCatchmentAreaManager::CreateCA", "acedUpdateDisplay"}),
                    ElementsAre("SetActiveCommand", "AcAxDocLock::AcAxDocLock", "CCatchmentAreaManager::CreateCA",
                                "acedUpdateDisplay", "acedUpdateDisplay", "AcAxDocLock::~AcAxDocLock",
                                "~SetActiveCommand"));
    });
}

TEST_F(SavingCalls, AMainRowIsLabelledFromTheCatalogueItemAlone)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        saveRow(dialog, 0);
        ASSERT_THAT(areas(), SizeIs(1));
        const std::string item = dialog.Control<QComboBox>(135)->currentText().toStdString();
        ASSERT_NE(item, "");
        ASSERT_THAT(entriesOf(kLabel), SizeIs(1));
        EXPECT_THAT(entriesOf(kLabel).front().arguments, ElementsAre(journalText(areas()[0]->GetGuid()), item));
    });
}

TEST_F(SavingCalls, AnIslandRowIsLabelledFromTheBlockAndThenItsMainAreaFromTheCatalogueItem)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        saveRow(dialog, 0);
        saveRow(dialog, 1);
        ASSERT_THAT(areas(), SizeIs(2));
        auto *block = drawing().findBlock(L"CatchLabel");
        ASSERT_NE(block, nullptr);
        const std::string item = dialog.Control<QComboBox>(135)->currentText().toStdString();
        const auto labels = entriesOf(kLabel);
        ASSERT_THAT(labels, SizeIs(2));
        ASSERT_THAT(labels[0].arguments, SizeIs(3));
        EXPECT_EQ(labels[0].arguments[0], journalText(areas()[1]->GetGuid()));
        EXPECT_EQ(labels[0].arguments[1], journalText(velmor::idOf(*block)));
        CStringArray tags;
        Utility::CUtility::GetAttributesFromBlockDef(velmor::idOf(*block), tags);
        std::string tagList;
        for (const std::wstring &tag : tags)
            tagList += (tagList.empty() ? "" : ", ") + journalText(tag);
        EXPECT_NE(tagList, "");
        EXPECT_EQ(labels[0].arguments[2], "[" + tagList + "]");
        EXPECT_THAT(labels[1].arguments, ElementsAre(journalText(areas()[0]->GetGuid()), item));
    });
}

TEST_F(SavingCalls, AfterARowIsSavedItsLabelTheSectionAndTheMainAreasLabelFollowInThisOrder)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        const auto follows = [] {
            std::vector<std::string> found;
            bool assigned = false;
            for (const velmor::JournalEntry &entry : Journal::instance().entries()) {
                if (entry.operation == "CCatchmentArea::Mark")
                    break; // the marks, once for the whole save
                assigned = assigned || entry.operation == "CCatchmentAreaManager::AssignCA";
                if (assigned && (entry.operation == kLabel || entry.operation == "acedRedraw" ||
                                 entry.operation == "CEntity::DrawTemporary" ||
                                 entry.operation == "CCatchmentAreaManager::GetCatchmentAreaByGuid"))
                    found.push_back(entry.operation.substr(entry.operation.rfind(':') + 1) + " " +
                                    entry.arguments.front());
            }
            return found;
        };
        const std::string section = journalText(network().sectionByName(L"D1")->GetObjectId());
        saveRow(dialog, 0);
        ASSERT_THAT(areas(), SizeIs(1));
        const std::string main = journalText(areas()[0]->GetGuid());
        EXPECT_THAT(follows(), ElementsAre("WriteCatchmentLabel " + main, "acedRedraw 4", "DrawTemporary " + section));
        saveRow(dialog, 1);
        ASSERT_THAT(areas(), SizeIs(2));
        EXPECT_THAT(follows(), ElementsAre("WriteCatchmentLabel " + journalText(areas()[1]->GetGuid()), "acedRedraw 4",
                                           "DrawTemporary " + section, "GetCatchmentAreaByGuid " + main,
                                           "WriteCatchmentLabel " + main));
    });
}

TEST_F(SavingCalls, WithoutTheLabelCheckOnlyTheIslandsMainAreaIsLabelled)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        dialog.check(274, false);
        saveRow(dialog, 0);
        EXPECT_THAT(entriesOf(kLabel), SizeIs(0));
        saveRow(dialog, 1);
        ASSERT_THAT(entriesOf(kLabel), SizeIs(1));
        EXPECT_THAT(entriesOf(kLabel).front().arguments,
                    ElementsAre(journalText(areas().at(0)->GetGuid()),
                                dialog.Control<QComboBox>(135)->currentText().toStdString()));
    });
}

TEST_F(SavingCalls, AMainAreaStampsItsIslandsBeforeItIsMadeAndListsThemBeforeItIsAssigned)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        dialog.type(329, "main");
        saveRow(dialog, 0);
        ASSERT_THAT(areas(), SizeIs(1));
        const std::string guid = journalText(areas()[0]->GetGuid());
        const std::string entity = journalText(areas()[0]->GetObjectId());
        const std::string first = journalText(m_first), second = journalText(m_second);
        EXPECT_THAT(effects(), ElementsAre("CreateGUID " + guid, "Write SLIV_MAIN_AREA " + first + " " + guid,
                                           "Write SLIV_MAIN_AREA " + second + " " + guid, "AcadPoly2GeosPoly 4",
                                           "CreateCA main 1", "SetName " + guid + " main",
                                           "Write SLIV_ISLANDS " + entity + " [" + first + "," + second + "]",
                                           "AssignCA [" + sectionHandle() + " 1] " + guid));
    });
}

TEST_F(SavingCalls, AnIslandIsListedOnItsMainAreaBeforeItIsMadeItself)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog);
        dialog.check(274, false);
        saveRow(dialog, 0);
        dialog.type(329, "island");
        saveRow(dialog, 2);
        ASSERT_THAT(areas(), SizeIs(2));
        const std::string main = journalText(areas()[0]->GetGuid()), guid = journalText(areas()[1]->GetGuid());
        const std::string entity = journalText(areas()[0]->GetObjectId());
        EXPECT_THAT(effects(),
                    ElementsAre("CreateGUID " + guid, "Read SLIV_MAIN_AREA", "GetCatchmentAreaByGuid " + main,
                                "SetPropertyData " + main + " CA_ISLANDS [" + guid + "]",
                                "Write SLIV_ISLANDS " + entity + " [" + guid + "]", "AcadPoly2GeosPoly 4",
                                "CreateCA island 1", "SetName " + guid + " island",
                                "AssignCA [" + sectionHandle() + " 1] " + guid));
    });
}

} // namespace
