// Areas, shares, labels and the network are right after undo and redo.
#include "host/drawing/Blocks.h"
#include "host/drawing/ChangeLog.h"
#include "host/sewage/AreaTable.h"
#include "tests/host/sewage/AreaWorld.h"

#include <functional>

namespace velmor::test {
namespace {

class Undone : public AreaWorld {
protected:
    ChangeLog &log() { return drawing().component<ChangeLog>(); }
    void step(const std::function<void()> &work)
    {
        log().begin(L"step");
        work();
        log().keep();
    }
    /// All that the stores tell of the drawing.
    std::string told()
    {
        std::string text = areasJson(areaTable(drawing()));
        for (const auto &area : store().areas())
            text += "labels " + std::to_string(store().labelsOf(*area).size()) + '\n';
        for (const SectionPtr &section : drawing().component<Network>().sections()) {
            const std::wstring name = section->GetName();
            text += std::string(name.begin(), name.end()) + ' ' + std::to_string(section->GetLength2D());
            const std::wstring guid = section->GetGuid();
            text += drawing().component<Network>().GetSectionByGuid(guid.c_str()) == section ? " found" : " lost";
            for (const std::wstring &area : namesBySection(name.c_str()))
                text += ' ' + std::string(area.begin(), area.end());
            text += '\n';
        }
        text += std::to_string(drawing().component<Network>().nodes().size());
        return text;
    }
    /// The same of stores that never saw anything else.
    std::string toldAnew()
    {
        auto again = Drawing::read(drawing().write());
        Drawing *live = workingDrawing();
        setWorkingDrawing(again.drawing.get());
        std::string text = areasJson(areaTable(*again.drawing));
        setWorkingDrawing(live);
        return text;
    }
};

TEST_F(Undone, EveryStateComesBackAsItWas)
{
    told(); // the stores are there from the start
    std::vector<std::string> states;
    const auto state = [&] { states.push_back(told()); };
    state();
    step([&] { create(L"{A}", kSquare, L"first"); });
    state();
    step([&] {
        manager().AssignCA({{section(L"S1"), 0.25}, {section(L"S2"), 0.75}}, manager().GetCatchmentAreaByGuid(L"{A}"));
    });
    state();
    step([&] {
        create(L"{B}", kFarSquare, L"second", 2);
        manager().GetCatchmentAreaByGuid(L"{A}")->SetName(L"renamed");
    });
    state();
    step([&] { manager().GetCatchmentAreaByGuid(L"{B}")->SetFlowCoeff(0.5); });
    state();
    step([&] {
        CStringArray tags;
        BlockRecord &block = drawing().addBlock(L"Label");
        drawing().append(std::make_unique<AttributeDefinitionEntity>(L"ATT1", L"", TextShape()), block);
        tags.push_back(L"ATT1");
        EXPECT_EQ(manager().WriteCatchmentLabel(manager().GetCatchmentAreaByGuid(L"{A}"), idOf(block), tags), 1);
    });
    state();
    step([&] {
        manager().GetCatchmentAreaByGuid(L"{A}")->SetConnectedSectionShare(section(L"S1"), 0.5, 1);
        manager().DeleteCatchmentLabel(manager().GetCatchmentAreaByGuid(L"{A}"));
    });
    state();
    step([&] { manager().DeleteCA(manager().GetCatchmentAreaByGuid(L"{A}")); });
    state();
    step([&] {
        AcDbObject *entity = drawing().findByHandle(section(L"S3")->GetObjectId().handle().value());
        drawing().erase(static_cast<AcDbEntity &>(*entity));
    });
    state();

    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = states.size() - 1; i-- > 0;) {
            ASSERT_TRUE(log().undo());
            EXPECT_EQ(told(), states[i]) << "back at " << i;
        }
        for (std::size_t i = 1; i < states.size(); ++i) {
            ASSERT_TRUE(log().redo());
            EXPECT_EQ(told(), states[i]) << "again at " << i;
            EXPECT_EQ(areasJson(areaTable(drawing())), toldAnew()) << "as a store that is made now";
        }
    }
}

TEST_F(Undone, AnImportOfANetworkComesAndGoes)
{
    auto drawing = Drawing::createNew();
    auto &steps = drawing->component<ChangeLog>();
    auto &network = drawing->component<Network>();
    EXPECT_TRUE(network.sections().empty());
    steps.begin();
    ASSERT_TRUE(importInpText(*drawing, kSmallNetwork, "small.inp"));
    steps.keep();
    ASSERT_EQ(network.sections().size(), 3u);
    const std::wstring guid = network.sections().front()->GetGuid();
    steps.undo();
    EXPECT_TRUE(network.sections().empty());
    EXPECT_TRUE(network.nodes().empty());
    EXPECT_FALSE(network.GetSectionByGuid(guid.c_str()));
    steps.redo();
    EXPECT_EQ(network.sections().size(), 3u);
    EXPECT_EQ(network.nodes().size(), 5u);
    ASSERT_TRUE(network.GetSectionByGuid(guid.c_str()));
    EXPECT_EQ(network.GetSectionByGuid(guid.c_str())->GetName(), L"S1");
    EXPECT_TRUE(network.GetSectionByGuid(guid.c_str())->GetStartingNode());
}

} // namespace
} // namespace velmor::test
