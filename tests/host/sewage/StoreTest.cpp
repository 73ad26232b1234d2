#include "tests/host/sewage/AreaWorld.h"

namespace velmor::test {
namespace {

class Store : public AreaWorld {};

TEST_F(Store, AnEmptyStoreGivesAnEmptyVectorAndZero)
{
    CatchmentAreas areas(3);
    EXPECT_EQ(manager().GetAllCatchmentAreas(areas, 7), 0);
    EXPECT_TRUE(areas.empty());
    EXPECT_EQ(manager().GetCABySection(section(L"S1"), areas, 7), 0);
    EXPECT_FALSE(manager().GetCatchmentAreaByGuid(L"{NONE}"));
}

TEST_F(Store, WithoutADrawingEveryOperationAnswersNothing)
{
    session.setDrawing(nullptr);
    CatchmentAreas areas;
    EXPECT_EQ(manager().GetAllCatchmentAreas(areas, 7), 0);
    EXPECT_FALSE(manager().CreateCA(kSquare, L"a", 1, {}));
    EXPECT_FALSE(manager().GetCatchmentAreaByGuid(L"{G}"));
    EXPECT_FALSE(manager().RefreshExistingCatchments());
    EXPECT_EQ(CCatchmentAreaManager::GetInteractivelySelectedCA(), nullptr);
}

TEST_F(Store, AnAreaHasWhatItWasMadeOf)
{
    const AreaPtr area = manager().CreateCA(kSquare, L"North", 3,
                                            bag({{L"CA_GUID", L"{G1}"},
                                                 {L"CA_POPULATION", 120.5},
                                                 {L"CA_COEFF", 0.45},
                                                 {L"CA_SLOPE", 2.0},
                                                 {L"CA_TYPE_ISLAND", 0}}));
    ASSERT_TRUE(area);
    EXPECT_EQ(area->GetGuid(), L"{G1}");
    EXPECT_EQ(area->GetName(), L"North");
    EXPECT_EQ(area->GetType(), 3);
    EXPECT_EQ(area->IsHidden(), 0);
    EXPECT_EQ(area->GetArea(), 1.0) << "hectares";
    EXPECT_EQ(area->GetPopulation(), 120.5);
    EXPECT_EQ(area->GetFlowCoeff(), 0.45);
    EXPECT_EQ(area->GetCenterPoint(), AcGePoint3d(50, 50));
    EXPECT_EQ(propertyOf(area, L"CA_GUID"), CDataBox(L"{G1}"));
    EXPECT_EQ(propertyOf(area, L"CA_SLOPE"), CDataBox(2.0));
    EXPECT_EQ(propertyOf(area, L"CA_TYPE_ISLAND"), CDataBox(0));
    EXPECT_FALSE(propertyOf(area, L"CA_MAIN_AREA").IsNotNull());
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{G1}"), area);
}

TEST_F(Store, TheDrawnPolylineHasTheRingsDoublesClosedWithoutTheRepeat)
{
    const AreaPtr area =
        create(L"{G}", L"POLYGON ((0.1 1e-17, 5432109.8765432109 0.30000000000000004, 7 9, 0.1 1e-17))");
    ASSERT_TRUE(area);
    const AcDbEntity &entity = entityOf(area);
    ASSERT_EQ(entity.isA(), AcDbPolyline::desc());
    const auto &polyline = static_cast<const AcDbPolyline &>(entity);
    const std::vector<AcDbPolyline::Vertex> expected{{0.1, 1e-17}, {5432109.8765432109, 0.30000000000000004}, {7, 9}};
    EXPECT_EQ(polyline.vertices(), expected);
    EXPECT_TRUE(polyline.isClosed());
    EXPECT_EQ(entity.layer(), L"VELMOR_CATCHMENTS");
    EXPECT_EQ(drawing().layer(drawing().currentLayer()).name, L"0") << "the user's current layer stays";
}

TEST_F(Store, UnusableTextGivesNullAndDrawsNothing)
{
    const std::size_t before = drawing().modelSpace().entities().size();
    EXPECT_FALSE(create(L"{G}", L"POLYGON EMPTY"));
    EXPECT_FALSE(create(L"{G}", L"POLYGON ((0 0, 1 0, 1 1, 0 1))"));
    EXPECT_EQ(drawing().modelSpace().entities().size(), before);
    EXPECT_TRUE(names().empty());
}

TEST_F(Store, AnAreaWithoutABagGetsAGuidOfItsOwn)
{
    const AreaPtr first = manager().CreateCA(kSquare, L"a", 1, {});
    const AreaPtr second = manager().CreateCA(kSquare, L"b", 1, {});
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->GetGuid().size(), 38u);
    EXPECT_NE(first->GetGuid(), second->GetGuid());
}

TEST_F(Store, AGuidIsGivenOnlyOnce)
{
    ASSERT_TRUE(create(L"{G}", kSquare));
    EXPECT_FALSE(create(L"{G}", kFarSquare));
    EXPECT_EQ(names(), Names{L"a"});
}

TEST_F(Store, AreasComeInOrderOfCreationAndByAnyCommonBit)
{
    create(L"{9}", kSquare, L"one", 1);
    create(L"{1}", kSmallSquare, L"two", 6);
    create(L"{5}", kFarSquare, L"three", 3);
    EXPECT_EQ(names(7), (Names{L"one", L"two", L"three"}));
    EXPECT_EQ(names(1), (Names{L"one", L"three"}));
    EXPECT_EQ(names(2), (Names{L"two", L"three"}));
    EXPECT_EQ(names(4), (Names{L"two"}));
    EXPECT_EQ(names(5), (Names{L"one", L"two", L"three"}));
    EXPECT_TRUE(names(0).empty());
}

TEST_F(Store, AllAreasAreOfMaskSevenEvenOnesWithoutAType)
{
    create(L"{G}", kSquare, L"untyped", 0);
    EXPECT_EQ(names(7), Names{L"untyped"});
    EXPECT_TRUE(names(3).empty());
}

TEST_F(Store, AnAreaAndItsIslandsAreTiedByGuid)
{
    const AreaPtr main = create(L"{M}", kSquare, L"main");
    const AreaPtr island = manager().CreateCA(
        kSmallSquare, L"island", 1, bag({{L"CA_GUID", L"{I}"}, {L"CA_TYPE_ISLAND", 1}, {L"CA_MAIN_AREA", L"{M}"}}));
    std::vector<std::wstring> subs{L"old"};
    EXPECT_EQ(main->GetSubCatchments(subs), 0);
    EXPECT_TRUE(subs.empty());

    EXPECT_NE(main->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}", L"{LOST}"})), 0);
    EXPECT_EQ(main->GetSubCatchments(subs), 2);
    EXPECT_EQ(subs, (Names{L"{I}", L"{LOST}"})) << "an unknown GUID is the reader's to pass over";
    EXPECT_EQ(propertyOf(island, L"CA_MAIN_AREA"), CDataBox(L"{M}"));
    EXPECT_EQ(main->GetArea(), 1.0) << "gross: an island is no hole";
    EXPECT_DOUBLE_EQ(store().netHectares(*store().byGuid(L"{M}")), 0.96);
}

TEST_F(Store, AnyPropertyKeepsItsType)
{
    const AreaPtr area = create(L"{G}", kSquare);
    const CDataBox values[] = {CDataBox(1.5), CDataBox(7), CDataBox(L"text"), CDataBox(CStringArray{L"a", L"b"})};
    for (const CDataBox &value : values) {
        EXPECT_NE(area->SetPropertyData(L"ANY_TAG", value), 0);
        EXPECT_EQ(propertyOf(area, L"ANY_TAG"), value);
    }
    EXPECT_NE(area->SetPropertyData(L"ANY_TAG", CDataBox()), 0);
    EXPECT_EQ(area->SetPropertyData(nullptr, CDataBox(1)), 0);
}

TEST_F(Store, ABoxOfAnotherPropertyIsNullAfterAskingForAnAbsentOne)
{
    const AreaPtr area = create(L"{G}", kSquare);
    for (const wchar_t *absent : {L"ANY_TAG", static_cast<const wchar_t *>(nullptr)}) {
        CDataBox box(L"of another");
        EXPECT_EQ(area->GetPropertyData(absent, box), 0);
        EXPECT_FALSE(box.IsNotNull());
    }
}

TEST_F(Store, TheGuidCannotBeChanged)
{
    const AreaPtr area = create(L"{G}", kSquare);
    EXPECT_EQ(area->SetPropertyData(L"CA_GUID", CDataBox(L"{OTHER}")), 0);
    EXPECT_EQ(area->GetGuid(), L"{G}");
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{G}"), area);
}

TEST_F(Store, CoefficientAndPopulationAreTheirPropertiesAndHaveNoRange)
{
    const AreaPtr area = create(L"{G}", kSquare);
    EXPECT_EQ(area->GetFlowCoeff(), 0.0);
    EXPECT_EQ(area->GetPopulation(), 0.0);
    area->SetFlowCoeff(7.5);
    area->SetPopulation(-3.0);
    EXPECT_EQ(propertyOf(area, L"CA_COEFF"), CDataBox(7.5));
    EXPECT_EQ(propertyOf(area, L"CA_POPULATION"), CDataBox(-3.0));
    area->SetPropertyData(L"CA_COEFF", CDataBox(0.2));
    EXPECT_EQ(area->GetFlowCoeff(), 0.2);
}

TEST_F(Store, NamesNeedNotBeUniqueAndTypesChangeAtOnce)
{
    const AreaPtr first = create(L"{1}", kSquare, L"x", 1);
    const AreaPtr second = create(L"{2}", kFarSquare, L"y", 1);
    second->SetName(L"x");
    EXPECT_EQ(names(), (Names{L"x", L"x"}));
    first->SetType(4);
    EXPECT_EQ(names(1), Names{L"x"});
    EXPECT_EQ(first->GetType(), 4);
}

// --- Sections and shares ------------------------------------------------------------------------------------

TEST_F(Store, AnAreaWithoutSectionsAnswersZero)
{
    const AreaPtr area = create(L"{G}", kSquare);
    SectionShares sections(2);
    EXPECT_EQ(area->GetConnectedSections(sections), 0);
    EXPECT_TRUE(sections.empty());
}

TEST_F(Store, AssigningReplacesTheSectionsWithTheirShares)
{
    const AreaPtr area = create(L"{G}", kSquare);
    manager().AssignCA({{section(L"S3"), 1.0}}, area);
    EXPECT_EQ(namesBySection(L"S3"), Names{L"a"});

    manager().AssignCA({{section(L"S1"), 0.3}, {SectionPtr(), 0.5}, {section(L"S2"), 0.7}}, area);
    SectionShares sections;
    EXPECT_EQ(area->GetConnectedSections(sections), 2);
    EXPECT_EQ(sections, (SectionShares{{section(L"S1"), 0.3}, {section(L"S2"), 0.7}}));
    EXPECT_TRUE(namesBySection(L"S3").empty());
    EXPECT_EQ(namesBySection(L"S1"), Names{L"a"});

    manager().AssignCA({}, area);
    EXPECT_EQ(area->GetConnectedSections(sections), 0);
    EXPECT_TRUE(namesBySection(L"S1").empty());
}

TEST_F(Store, ASectionThatComesTwiceHasOneShareTheSum)
{
    const AreaPtr area = create(L"{G}", kSquare);
    manager().AssignCA({{section(L"S1"), 0.25}, {section(L"S2"), 0.5}, {section(L"S1"), 0.25}}, area);
    SectionShares sections;
    area->GetConnectedSections(sections);
    EXPECT_EQ(sections, (SectionShares{{section(L"S1"), 0.5}, {section(L"S2"), 0.5}}));
    EXPECT_EQ(namesBySection(L"S1"), Names{L"a"});
}

TEST_F(Store, AShareThatIsNoNumberIsKeptAsUnknown)
{
    const AreaPtr area = create(L"{G}", kSquare);
    manager().AssignCA({{section(L"S1"), 0.0 / std::fabs(0.0)}}, area);
    SectionShares sections;
    area->GetConnectedSections(sections);
    ASSERT_EQ(sections.size(), 1u);
    EXPECT_EQ(sections[0].second, ZEMGis::Topology::kUnknownValue);
}

TEST_F(Store, ChangingAShareChangesOnlyThatOne)
{
    const AreaPtr area = create(L"{G}", kSquare);
    manager().AssignCA({{section(L"S1"), 0.3}, {section(L"S2"), 0.7}}, area);
    EXPECT_NE(area->SetConnectedSectionShare(section(L"S1"), 0.9, 1), 0);
    SectionShares sections;
    area->GetConnectedSections(sections);
    EXPECT_EQ(sections, (SectionShares{{section(L"S1"), 0.9}, {section(L"S2"), 0.7}}));
}

TEST_F(Store, AShareOfANullOrForeignSectionIsRefused)
{
    const AreaPtr area = create(L"{G}", kSquare);
    manager().AssignCA({{section(L"S1"), 1.0}}, area);
    EXPECT_EQ(area->SetConnectedSectionShare({}, 0.5, 1), 0);
    EXPECT_EQ(area->SetConnectedSectionShare(section(L"S2"), 0.5, 1), 0);
    SectionShares sections;
    area->GetConnectedSections(sections);
    EXPECT_EQ(sections, (SectionShares{{section(L"S1"), 1.0}}));
}

TEST_F(Store, ASectionThatLeftTheNetworkIsPassedOver)
{
    const AreaPtr area = create(L"{G}", kSquare);
    manager().AssignCA({{section(L"S1"), 0.3}, {section(L"S2"), 0.7}}, area);
    AcDbObject *gone = drawing().findByHandle(section(L"S1")->GetObjectId().handle().value());
    drawing().erase(static_cast<AcDbEntity &>(*gone));
    SectionShares sections;
    EXPECT_EQ(area->GetConnectedSections(sections), 1);
    EXPECT_EQ(sections, (SectionShares{{section(L"S2"), 0.7}}));
}

TEST_F(Store, TheAreasOfASectionAreThoseOfTheMaskInOrder)
{
    const AreaPtr one = create(L"{1}", kSquare, L"one", 1);
    const AreaPtr two = create(L"{2}", kSmallSquare, L"two", 2);
    const AreaPtr three = create(L"{3}", kFarSquare, L"three", 1);
    for (const AreaPtr &area : {three, two, one})
        manager().AssignCA({{section(L"S1"), 1.0}}, area);
    EXPECT_EQ(namesBySection(L"S1"), (Names{L"one", L"two", L"three"}));
    EXPECT_EQ(namesBySection(L"S1", 1), (Names{L"one", L"three"}));
    CatchmentAreas areas(2);
    EXPECT_EQ(manager().GetCABySection({}, areas, 7), 0);
    EXPECT_TRUE(areas.empty());
}

// --- Deleting -----------------------------------------------------------------------------------------------

TEST_F(Store, ADeletedAreaIsGoneFromEveryLookup)
{
    const AreaPtr area = create(L"{G}", kSquare, L"gone");
    const AreaPtr other = create(L"{O}", kFarSquare, L"stays");
    manager().AssignCA({{section(L"S1"), 1.0}}, area);
    const AcDbObjectId id = area->GetObjectId();
    manager().DeleteCA(area);
    EXPECT_FALSE(manager().GetCatchmentAreaByGuid(L"{G}"));
    EXPECT_EQ(names(), Names{L"stays"});
    EXPECT_TRUE(namesBySection(L"S1").empty());
    EXPECT_TRUE(id.isErased());
}

TEST_F(Store, ADeletedAreaChangesNothingAnyMore)
{
    const AreaPtr area = create(L"{G}", kSquare);
    manager().DeleteCA(area);
    const std::uint64_t revision = drawing().revision();
    area->SetName(L"ghost");
    area->SetFlowCoeff(0.1);
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    area->DrawTemporary(1, 0);
    manager().AssignCA({{section(L"S1"), 1.0}}, area);
    manager().DeleteCA(area);
    manager().DeleteCA({});
    EXPECT_EQ(drawing().revision(), revision);
    EXPECT_TRUE(area->GetObjectId().isNull());
    SectionShares sections;
    EXPECT_EQ(area->GetConnectedSections(sections), 0);
    EXPECT_TRUE(namesBySection(L"S1").empty());
}

TEST_F(Store, DeletingAMainAreaLeavesItsIslands)
{
    const AreaPtr main = create(L"{M}", kSquare, L"main");
    const AreaPtr island =
        manager().CreateCA(kSmallSquare, L"island", 1, bag({{L"CA_GUID", L"{I}"}, {L"CA_MAIN_AREA", L"{M}"}}));
    manager().DeleteCA(main);
    EXPECT_EQ(names(), Names{L"island"});
    EXPECT_EQ(propertyOf(island, L"CA_MAIN_AREA"), CDataBox(L"{M}"));
}

TEST_F(Store, AnAreaOutlivesItsDrawingWithoutHarm)
{
    const AreaPtr area = create(L"{G}", kSquare, L"kept");
    session.setDrawing(nullptr);
    EXPECT_EQ(area->GetName(), L"kept");
    EXPECT_TRUE(area->GetObjectId().isNull());
    area->SetName(L"still");
    area->UnMark();
    EXPECT_EQ(area->GetName(), L"still");
}

TEST_F(Store, AreasOfAnotherDrawingAreNotTouched)
{
    const AreaPtr area = create(L"{G}", kSquare, L"first");
    std::unique_ptr<Drawing> second = Drawing::createNew();
    Drawing *const first = workingDrawing();
    setWorkingDrawing(second.get());
    EXPECT_TRUE(names().empty());
    manager().DeleteCA(area);
    setWorkingDrawing(first);
    EXPECT_EQ(names(), Names{L"first"});
}

TEST_F(Store, TheHandleTextIsThatOfTheEntity)
{
    const AreaPtr area = create(L"{G}", kSquare);
    EXPECT_EQ(area->GetHandleText(), handleText(entityOf(area)));
    EXPECT_FALSE(area->GetHandleText().empty());
}

} // namespace
} // namespace velmor::test
