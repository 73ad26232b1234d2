// A drawing with a small network in it, made entity by entity.
#pragma once

#include "contracts/CoreServices.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"

#include <gtest/gtest.h>

namespace velmor::test {

class NetworkFixture : public testing::Test {
protected:
    NetworkFixture() { setWorkingDrawing(drawing.get()); }
    ~NetworkFixture() override { setWorkingDrawing(nullptr); }

    Network &network() { return drawing->component<Network>(); }

    AcDbEntity &append(std::unique_ptr<AcDbEntity> made)
    {
        AcDbEntity &entity = *made;
        drawing->append(std::move(made));
        return entity;
    }
    AcDbEntity &addNode(const std::wstring &name, double x, double y)
    {
        AcDbEntity &entity = append(std::make_unique<PointEntity>(AcGePoint3d(x, y)));
        drawing->setData(entity, kNodeKey, itemsOf(NodeData{L"node " + name, name}));
        return entity;
    }
    /// A straight section between two nodes of those names; the GUID is "section NAME".
    AcDbEntity &addSection(const std::wstring &name, const std::wstring &from, const std::wstring &to,
                           double length = 0.0)
    {
        return makeSection(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(30, 40)),
                           {L"section " + name, name, length, L"node " + from, L"node " + to});
    }
    AcDbEntity &makeSection(std::unique_ptr<AcDbEntity> made, const SectionData &data)
    {
        AcDbEntity &entity = append(std::move(made));
        drawing->setData(entity, kSectionKey, itemsOf(data));
        return entity;
    }
    template <class Pointers>
    static std::wstring namesOf(const Pointers &pointers)
    {
        std::wstring names;
        for (const auto &pointer : pointers)
            names += (names.empty() ? L"" : L" ") + pointer->GetName();
        return names;
    }

    std::unique_ptr<Drawing> drawing = Drawing::createNew();
};

} // namespace velmor::test
