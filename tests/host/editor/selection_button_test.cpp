#include "contracts/HostDialog.h"
#include "contracts/NetworkTopology.h"
#include "host/editor/SectionChoice.h"
#include "host/network/Network.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using testing::ElementsAre;
using ZEMGis::Selection::CSelectionButton;
using ZEMGis::Selection::CSelectionSet;

// A - B - C in a row, and D that joins at B.
constexpr char kNetwork[] = R"([OPTIONS]
FLOW_UNITS CMS
[JUNCTIONS]
A 10
B 9
D 10
[OUTFALLS]
C 8 FREE
[CONDUITS]
AB A B 100 0.01
BC B C 100 0.01
DB D B 100 0.01
[COORDINATES]
A 0 0
B 100 0
C 200 0
D 100 100
)";

class Listener : public CAdUiBaseDialog {
public:
    std::vector<unsigned> messages;
    std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t, std::intptr_t) override
    {
        messages.push_back(message);
        return 0;
    }
};

class SelectionButtonTest : private test::QtReady, public test::EditorFixture {
protected:
    SelectionButtonTest()
    {
        EXPECT_TRUE(importInpText(drawing(), kNetwork, "net.inp"));
        button.setParentDialog(&dialog, true);
        button.SetButtonTopologyType(1);
        button.SetHideDisabledMenuOptions(1);
        button.SetSelectionType(32415745);
    }
    std::vector<std::wstring> selected()
    {
        const std::unique_ptr<CSelectionSet> set(button.GetSelection());
        EXPECT_TRUE(set->m_extra.empty());
        std::vector<std::wstring> names;
        for (const auto &section : set->m_sections)
            names.push_back(section->GetName());
        return names;
    }
    AcDbObjectId section(const wchar_t *name)
    {
        return drawing().component<Network>().sectionByName(name)->GetObjectId();
    }
    std::optional<std::vector<AcDbObjectId>> choose(const wchar_t *line)
    {
        const auto words = splitWords(line, reason);
        return sectionsByWords(drawing(), *words, reason);
    }
    std::wstring reason;
    Listener dialog;
    CSelectionButton button;
};

TEST_F(SelectionButtonTest, APreparedSelectionComesInPickOrderWithoutDuplicatesAndIsTold)
{
    session.setNextSelection({section(L"DB"), section(L"AB"), section(L"DB")});
    button.click();
    EXPECT_THAT(selected(), ElementsAre(L"DB", L"AB"));
    EXPECT_THAT(dialog.messages, ElementsAre(0x762u));
}

TEST_F(SelectionButtonTest, WithoutOneTheButtonAsksTillEnter)
{
    session.answers().push({std::wstring(L"name BC AB")});
    session.answers().push({std::wstring(L"nothing of the kind")});
    session.answers().push({std::wstring(L"100,50")}); // on DB
    session.answers().push({Answer::Enter{}});
    button.click();
    EXPECT_THAT(selected(), ElementsAre(L"BC", L"AB", L"DB"));
    EXPECT_THAT(dialog.messages, ElementsAre(0x762u));
}

TEST_F(SelectionButtonTest, ACancelledSelectionLeavesTheLastOneAndTellsItAgain)
{
    session.setNextSelection({section(L"AB")});
    button.click();
    button.click(); // nobody answers
    EXPECT_THAT(selected(), ElementsAre(L"AB"));
    EXPECT_EQ(dialog.messages.size(), 2u);
}

TEST_F(SelectionButtonTest, WithoutNotificationNobodyIsTold)
{
    button.setParentDialog(&dialog, false);
    session.setNextSelection({section(L"AB")});
    button.click();
    EXPECT_THAT(selected(), ElementsAre(L"AB"));
    EXPECT_TRUE(dialog.messages.empty());
}

TEST_F(SelectionButtonTest, WhatIsNoSectionIsPassedOver)
{
    session.setNextSelection({line(0, 500, 10, 500), section(L"AB")});
    button.click();
    EXPECT_THAT(selected(), ElementsAre(L"AB"));
}

TEST_F(SelectionButtonTest, SectionsAreChosenByWords)
{
    EXPECT_EQ(choose(L"all")->size(), 3u);
    EXPECT_THAT(*choose(L"name BC AB BC"), ElementsAre(section(L"BC"), section(L"AB")));
    EXPECT_THAT(*choose(L"upstream B"), testing::UnorderedElementsAre(section(L"AB"), section(L"DB")));
    const std::wstring handle = handleText(*open(section(L"DB")));
    EXPECT_THAT(*choose((L"handle " + handle).c_str()), ElementsAre(section(L"DB")));
}

TEST_F(SelectionButtonTest, WordsThatMeanNoSectionAreRefusedWithAReason)
{
    for (const wchar_t *line : {L"name NOPE", L"upstream NOPE", L"upstream A", L"handle ZZ", L"every", L"name", L""}) {
        reason.clear();
        EXPECT_FALSE(choose(line).has_value()) << line;
        EXPECT_FALSE(reason.empty()) << line;
    }
}

} // namespace
} // namespace velmor
