// Areas of all kinds in a drawing, and what must be the same after the drawing was saved and loaded.
#pragma once

#include "tests/host/sewage/AreaWorld.h"

#include "host/sewage/AreaTable.h"

#include <string>
#include <vector>

namespace velmor::test {

/// An empty drawing of the oldest form that is still about.
inline constexpr char kEmptyR12[] =
    "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1009\n  9\n$DWGCODEPAGE\n  3\nANSI_1250\n"
    "  0\nENDSEC\n  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n 70\n     1\n"
    "  0\nLAYER\n  2\n0\n 70\n     0\n 62\n     7\n  6\nCONTINUOUS\n  0\nENDTAB\n"
    "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n";

inline std::unique_ptr<Drawing> emptyDrawing(bool r12)
{
    return r12 ? Drawing::read(kEmptyR12).drawing : Drawing::createNew();
}

class SavedWorld : public AreaWorld, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override
    {
        std::unique_ptr<Drawing> empty = emptyDrawing(GetParam());
        ASSERT_TRUE(empty);
        ASSERT_EQ(empty->isR12(), GetParam());
        open(std::move(empty));
    }

    /// A main area with an island, a clockwise one with awkward numbers, a labelled one, a hidden one.
    void makeAreas()
    {
        const AreaPtr main = manager().CreateCA(kSquare, L"Čakovec \"1\"", 3,
                                                bag({{L"CA_GUID", L"{M}"},
                                                     {L"CA_POPULATION", 120.125},
                                                     {L"CA_COEFF", 0.1},
                                                     {L"CA_SLOPE", 1e-300},
                                                     {L"CA_TYPE_ISLAND", 0}}));
        manager().AssignCA({{section(L"S1"), 0.3}, {section(L"S2"), 1.0 / 3.0}}, main);
        main->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}", L"{J}"}));
        main->SetPropertyData(L"EMPTY", CDataBox(CStringArray{}));
        main->SetPropertyData(L"LONG", CDataBox(std::wstring(1000, L'x') + L" end"));
        manager().CreateCA(kSmallSquare, L"island", 1,
                           bag({{L"CA_GUID", L"{I}"}, {L"CA_TYPE_ISLAND", 1}, {L"CA_MAIN_AREA", L"{M}"}}));
        manager().CreateCA(kFarSquare, L"lost island", 4,
                           bag({{L"CA_GUID", L"{J}"}, {L"CA_TYPE_ISLAND", 1}, {L"CA_MAIN_AREA", L""}}));
        manager().CreateCA(L"POLYGON ((5432109.8765432109 431098.12345678901, 5432187.3000000004 431211.1, "
                           L"5432301.0999999996 431150.7000000002, 5432109.8765432109 431098.12345678901))",
                           L"", 1, bag({{L"CA_GUID", L"{W}"}}));
        const AreaPtr hidden =
            manager().SetHiddenCA(section(L"S3"), 12345.678901234567, 2, bag({{L"CA_GUID", L"{H}"}}));
        BlockRecord &block = drawing().addBlock(L"SIGN");
        TextShape shape;
        shape.text = L"?";
        drawing().append(std::make_unique<AttributeDefinitionEntity>(L"NAME", L"NAME", shape), block);
        ASSERT_NE(manager().WriteCatchmentLabel(main, idOf(block), CStringArray{L"NAME"}), 0);
        ASSERT_NE(manager().WriteCatchmentLabel(hidden, idOf(block), CStringArray{L"NAME"}), 0);
    }

    struct Ring {
        std::wstring guid;
        std::vector<AcDbPolyline::Vertex> vertices;
        bool operator==(const Ring &) const = default;
    };
    std::vector<AreaRecord> records()
    {
        std::vector<AreaRecord> found;
        for (const auto &area : store().areas())
            found.push_back(area->record());
        return found;
    }
    std::vector<Ring> rings()
    {
        std::vector<Ring> found;
        for (const auto &area : store().areas()) {
            Ring ring{area->GetGuid(), {}};
            const AcDbEntity &entity = *area->entity();
            if (entity.isA() == AcDbPolyline::desc())
                ring.vertices = static_cast<const AcDbPolyline &>(entity).vertices();
            else if (entity.isA() == AcDb2dPolyline::desc())
                ring.vertices = static_cast<const AcDb2dPolyline &>(entity).vertices();
            found.push_back(ring);
        }
        return found;
    }
    struct Centre {
        double x, y;
        bool operator==(const Centre &) const = default;
    };
    std::vector<Centre> centres()
    {
        std::vector<Centre> found;
        for (const auto &area : store().areas())
            found.push_back({area->GetCenterPoint().x, area->GetCenterPoint().y});
        return found;
    }
    int labelCount()
    {
        int count = 0;
        for (const AcDbEntity *entity : drawing().modelSpace().entities())
            count += !entity->isErased() && entity->isA() == AcDbBlockReference::desc();
        return count;
    }
    std::string json() { return areasJson(areaTable(drawing())); }
};

} // namespace velmor::test
