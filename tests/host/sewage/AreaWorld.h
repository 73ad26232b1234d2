// What the tests of the catchment store stand on: a session with a drawing and a small network, and short ways to make
// areas in it.
#pragma once

#include "contracts/CatchmentArea.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/sewage/CatchmentStore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

namespace velmor::test {

using ZEMGis::Data::CDataBox;
using ZEMGis::Data::CProperties;
using ZEMGis::Data::CProperty;
using ZEMGis::Sewage::CatchmentAreas;
using ZEMGis::Sewage::CCatchmentArea;
using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Sewage::SectionShares;
using AreaPtr = boost::shared_ptr<CCatchmentArea>;
using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;

//   A(0,0) --S1-- B(30,0) --S2-- C(100,0)      E(0,50) --S3-- F(0,90)
inline constexpr char kSmallNetwork[] = R"([OPTIONS]
FLOW_UNITS           LPS
[JUNCTIONS]
A 10 0
B 9 0
C 8 0
E 9 0
[OUTFALLS]
F 7 FREE
[CONDUITS]
S1 A B 30 0.01 0 0
S2 B C 70 0.01 0 0
S3 E F 40 0.01 0 0
[COORDINATES]
A 0 0
B 30 0
C 100 0
E 0 50
F 0 90
)";

inline boost::shared_ptr<CProperties> bag(std::initializer_list<std::pair<const wchar_t *, CDataBox>> values)
{
    boost::shared_ptr<CProperties> properties(new CProperties);
    for (const auto &[tag, value] : values) {
        boost::shared_ptr<CProperty> property(new CProperty);
        property->SetTag(tag);
        property->SetValue(value);
        properties->AddProperty(property);
    }
    return properties;
}

inline CDataBox propertyOf(const AreaPtr &area, const wchar_t *tag)
{
    CDataBox box;
    area->GetPropertyData(tag, box);
    return box;
}

class AreaWorld : public testing::Test {
protected:
    void SetUp() override { open(Drawing::createNew()); }

    void open(std::unique_ptr<Drawing> drawing)
    {
        session.setDrawing(std::move(drawing));
        ASSERT_TRUE(importInpText(*session.drawing(), kSmallNetwork, "small.inp"));
    }
    Drawing &drawing() { return *session.drawing(); }
    CatchmentStore &store() { return drawing().component<CatchmentStore>(); }
    static CCatchmentAreaManager &manager() { return *CCatchmentAreaManager::Instance(); }
    SectionPtr section(const wchar_t *name)
    {
        const SectionPtr found = drawing().component<Network>().sectionByName(name);
        EXPECT_TRUE(found);
        return found;
    }
    static AreaPtr create(const wchar_t *guid, const wchar_t *polygon, const wchar_t *name = L"a", int type = 1)
    {
        return manager().CreateCA(polygon, name, type, bag({{L"CA_GUID", guid}}));
    }
    static std::vector<std::wstring> names(unsigned mask = 7)
    {
        CatchmentAreas areas;
        manager().GetAllCatchmentAreas(areas, mask);
        std::vector<std::wstring> found;
        for (const AreaPtr &area : areas)
            found.push_back(area->GetName());
        return found;
    }
    std::vector<std::wstring> namesBySection(const wchar_t *name, unsigned mask = 7)
    {
        CatchmentAreas areas;
        manager().GetCABySection(section(name), areas, mask);
        std::vector<std::wstring> found;
        for (const AreaPtr &area : areas)
            found.push_back(area->GetName());
        return found;
    }
    AcDbEntity &entityOf(const AreaPtr &area)
    {
        AcDbObject *object = drawing().findByHandle(area->GetObjectId().handle().value());
        EXPECT_TRUE(object);
        return static_cast<AcDbEntity &>(*object);
    }

    Session session;
};

inline constexpr wchar_t kSquare[] = L"POLYGON ((0 0, 100 0, 100 100, 0 100, 0 0))";
inline constexpr wchar_t kSmallSquare[] = L"POLYGON ((20 20, 40 20, 40 40, 20 40, 20 20))";
inline constexpr wchar_t kFarSquare[] = L"POLYGON ((500 0, 550 0, 550 50, 500 50, 500 0))";

using Names = std::vector<std::wstring>;

} // namespace velmor::test
