#include "tests/host/sewage/AreaWorld.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/Transient.h"
#include "host/services/Services.h"

namespace velmor::test {
namespace {

class Mark : public AreaWorld {
protected:
    TransientGraphics &graphics() { return drawing().component<TransientGraphics>(); }
};

TEST_F(Mark, HatchesTheWholeRingWithWhatWasGiven)
{
    const AreaPtr area = create(L"{M}", kSquare);
    create(L"{I}", kSmallSquare);
    area->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}"}));
    const std::uint64_t revision = drawing().revision();
    area->Mark(3, 2.5, 0.7853981633974483, L"ANSI31", 0);
    ASSERT_EQ(graphics().marks().size(), 1u);
    const TransientMark &mark = graphics().marks().at(L"{M}");
    EXPECT_EQ(mark.rings, (std::vector<TransientRing>{{{0, 0}, {100, 0}, {100, 100}, {0, 100}}}))
        << "an island is no hole";
    EXPECT_EQ(mark.color, 3);
    EXPECT_EQ(mark.scale, 2.5);
    EXPECT_EQ(mark.angle, 0.7853981633974483);
    EXPECT_EQ(mark.pattern, L"ANSI31");
    EXPECT_EQ(drawing().revision(), revision) << "a mark is no change of the drawing";
}

TEST_F(Mark, ASecondOneReplacesTheFirst)
{
    const AreaPtr area = create(L"{G}", kSquare);
    area->Mark(3, 1.0, 0.0, L"ANSI31", 0);
    area->Mark(5, 1.0, 45.0, L"ANSI32", 0);
    ASSERT_EQ(graphics().marks().size(), 1u);
    EXPECT_EQ(graphics().marks().at(L"{G}").color, 5);
    EXPECT_EQ(graphics().marks().at(L"{G}").angle, 45.0);
    area->UnMark();
    area->UnMark();
    EXPECT_TRUE(graphics().marks().empty());
}

TEST_F(Mark, APatternThatIsNotKnownIsDrawnAsAnsi31AndToldOnce)
{
    std::vector<std::wstring> told;
    Services::instance().setNotice([&](const std::wstring &text) { told.push_back(text); });
    const AreaPtr area = create(L"{M}", kSquare), other = create(L"{N}", kSquare);
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    EXPECT_TRUE(told.empty());
    area->Mark(1, 1.0, 0.0, L"NOSUCH", 0);
    other->Mark(1, 1.0, 0.0, L"NOSUCH", 0);
    Services::instance().setNotice({});
    ASSERT_EQ(told.size(), 1u);
    EXPECT_NE(told[0].find(L"NOSUCH"), std::wstring::npos);
    EXPECT_NE(told[0].find(L"ANSI31"), std::wstring::npos);
    EXPECT_EQ(graphics().marks().size(), 2u);
}

TEST_F(Mark, AHiddenAreaHasNone)
{
    manager().SetHiddenCA(section(L"S1"), 1.0, 1, {})->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    EXPECT_TRUE(graphics().marks().empty());
}

TEST_F(Mark, UnmarkingGoesByTheMask)
{
    for (const auto &[guid, type] : {std::pair{L"{1}", 1}, {L"{2}", 2}, {L"{3}", 3}, {L"{0}", 0}})
        create(guid, kSquare, L"a", type)->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    manager().UnMarkAllCatchments(1);
    EXPECT_EQ(graphics().marks().size(), 2u);
    EXPECT_TRUE(graphics().marks().contains(L"{2}"));
    EXPECT_TRUE(graphics().marks().contains(L"{0}"));
    manager().UnMarkAllCatchments(7);
    EXPECT_TRUE(graphics().marks().empty());
}

TEST_F(Mark, GoesWithItsArea)
{
    const AreaPtr area = create(L"{G}", kSquare);
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    manager().DeleteCA(area);
    EXPECT_TRUE(graphics().marks().empty());
}

TEST_F(Mark, StaysWhenTemporaryDrawingIsWiped)
{
    const AreaPtr area = create(L"{G}", kSquare);
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    area->DrawTemporary(2, 0);
    EXPECT_EQ(graphics().temporary().size(), 1u);
    acedRedraw(nullptr, 4);
    EXPECT_TRUE(graphics().temporary().empty());
    EXPECT_EQ(graphics().marks().size(), 1u);
}

TEST_F(Mark, AHiddenAreaIsDrawnByItsSections)
{
    manager().SetHiddenCA(section(L"S2"), 1.0, 1, {})->DrawTemporary(4, 0);
    ASSERT_EQ(graphics().temporary().size(), 1u);
    const TransientPath &path = graphics().temporary().front();
    EXPECT_EQ(path.color, 4);
    EXPECT_EQ(path.vertices.front(), (AcDbPolyline::Vertex{30, 0}));
    EXPECT_EQ(path.vertices.back(), (AcDbPolyline::Vertex{100, 0}));
}

TEST_F(Mark, IsNoStepAndStandsInNoFile)
{
    const AreaPtr area = create(L"{G}", kSquare);
    auto &log = drawing().component<ChangeLog>();
    log.begin(L"review");
    const std::size_t steps = log.undoCount();
    const std::string text = drawing().write();
    area->Mark(1, 0.25, 0.7853981633974483, L"NET", 0);
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, area->GetObjectId(), AcDb::kForWrite), Acad::eOk);
    entity->highlight(kNullSubent, false);
    entity->close();
    EXPECT_EQ(drawing().write(), text);
    log.keep();
    EXPECT_EQ(log.undoCount(), steps);
    EXPECT_EQ(graphics().marks().size(), 1u);
}

TEST_F(Mark, StaysWhenItsAreaChangesAndWhenTheStoreIsReadAnew)
{
    const AreaPtr area = create(L"{G}", kSquare);
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    area->SetName(L"other");
    area->SetFlowCoeff(0.3);
    area->SetType(2);
    manager().RefreshExistingCatchments();
    create(L"{H}", kFarSquare);
    manager().DeleteCA(manager().GetCatchmentAreaByGuid(L"{H}"));
    EXPECT_EQ(graphics().marks().size(), 1u);
    manager().UnMarkAllCatchments(7);
    EXPECT_TRUE(graphics().marks().empty());
}

TEST_F(Mark, EveryOneIsGoneWhenTheDrawingIsClosed)
{
    create(L"{G}", kSquare)->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    const std::string text = drawing().write();
    open(Drawing::read(text).drawing);
    ASSERT_EQ(names().size(), 1u);
    EXPECT_TRUE(graphics().marks().empty());
    EXPECT_TRUE(graphics().highlighted().empty());
}

} // namespace
} // namespace velmor::test
