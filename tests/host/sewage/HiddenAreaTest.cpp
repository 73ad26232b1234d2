#include "tests/host/sewage/AreaWorld.h"

namespace velmor::test {
namespace {

class HiddenArea : public AreaWorld {};

TEST_F(HiddenArea, IsTiedToItsSectionWithTheWholeShare)
{
    const AreaPtr area =
        manager().SetHiddenCA(section(L"S1"), 20000.0, 2, bag({{L"CA_GUID", L"{H}"}, {L"CA_POPULATION", 80.0}}));
    ASSERT_TRUE(area);
    EXPECT_NE(area->IsHidden(), 0);
    EXPECT_EQ(area->GetArea(), 2.0) << "square metres come in, hectares go out";
    EXPECT_EQ(area->GetType(), 2);
    EXPECT_EQ(area->GetPopulation(), 80.0);
    SectionShares sections;
    area->GetConnectedSections(sections);
    EXPECT_EQ(sections, (SectionShares{{section(L"S1"), 1.0}}));
    EXPECT_EQ(namesBySection(L"S1"), (Names{area->GetName()}));
}

TEST_F(HiddenArea, IsListedLikeAllOthers)
{
    create(L"{1}", kSquare, L"one");
    const AreaPtr hidden = manager().SetHiddenCA(section(L"S2"), 1.0, 1, bag({{L"CA_GUID", L"{H}"}}));
    EXPECT_EQ(names(), (Names{L"one", hidden->GetName()}));
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{H}"), hidden);
}

TEST_F(HiddenArea, IsNamedAfterItsSectionWithANumberThatIsFree)
{
    create(L"{1}", kSquare, L"S1_2");
    Names given;
    for (const wchar_t *name : {L"S1", L"S1", L"S2", L"S1"})
        given.push_back(manager().SetHiddenCA(section(name), 1.0, 1, {})->GetName());
    EXPECT_EQ(given, (Names{L"S1_1", L"S1_3", L"S2_1", L"S1_4"}));
}

TEST_F(HiddenArea, StandsAtTheMiddleOfItsSection)
{
    const AreaPtr area = manager().SetHiddenCA(section(L"S2"), 1.0, 1, {});
    EXPECT_EQ(area->GetCenterPoint(), AcGePoint3d(65, 0));
}

TEST_F(HiddenArea, KeepsItsPlaceWhenTheSectionIsGone)
{
    const AreaPtr area = manager().SetHiddenCA(section(L"S2"), 1.0, 1, {});
    AcDbObject *gone = drawing().findByHandle(section(L"S2")->GetObjectId().handle().value());
    drawing().erase(static_cast<AcDbEntity &>(*gone));
    EXPECT_EQ(area->GetCenterPoint(), AcGePoint3d(65, 0));
}

TEST_F(HiddenArea, HasAnEntityThatCanBeOpened)
{
    const AreaPtr area = manager().SetHiddenCA(section(L"S1"), 1.0, 1, {});
    CZEMCEntityPtr entity(area->GetObjectId(), AcDb::kForRead);
    EXPECT_EQ(entity.openStatus(), Acad::eOk);
    EXPECT_EQ(entity->layer(), L"VELMOR_CATCHMENTS");
}

TEST_F(HiddenArea, OfANullSectionIsNull)
{
    EXPECT_FALSE(manager().SetHiddenCA({}, 1.0, 1, {}));
    EXPECT_TRUE(names().empty());
}

TEST_F(HiddenArea, CanBeDeletedAndItsNameIsNotGivenTwice)
{
    const AreaPtr area = manager().SetHiddenCA(section(L"S1"), 1.0, 1, {});
    const std::wstring name = area->GetName();
    const AcDbObjectId id = area->GetObjectId();
    manager().DeleteCA(area);
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(id.isErased());
    EXPECT_NE(manager().SetHiddenCA(section(L"S1"), 1.0, 1, {})->GetName(), name);
}

} // namespace
} // namespace velmor::test
