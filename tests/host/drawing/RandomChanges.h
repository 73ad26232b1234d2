// Changes of every kind to a drawing, drawn by lot: for tests that compare what was there before and after.
#pragma once

#include "host/drawing/Blocks.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/EntityShape.h"
#include "host/drawing/LayerRename.h"

#include <algorithm>
#include <random>
#include <string>

namespace velmor::test {

class RandomChanges {
public:
    RandomChanges(Drawing &drawing, unsigned seed) : m_drawing(drawing), m_random(seed) {}

    /// One change, or one that finds nothing to change; its number tells the kind.
    int make();
    static constexpr int kKinds = 25;

private:
    std::size_t upTo(std::size_t count) { return m_random() % count; }
    double place() { return static_cast<double>(upTo(100000)) / 16.0; }
    AcGePoint3d point() { return {place(), place(), 0.0}; }
    std::wstring word() { return L"word " + std::to_wstring(upTo(40)) + L" š"; }
    AcDbEntity *entity();
    BlockRecord &record();
    std::size_t layer();
    std::unique_ptr<AcDbEntity> anEntity();
    DataItems items();

    Drawing &m_drawing;
    std::mt19937 m_random;
};

inline AcDbEntity *RandomChanges::entity()
{
    const auto &all = m_drawing.modelSpace().entities();
    for (int tries = 0; tries < 8 && !all.empty(); ++tries)
        if (AcDbEntity *found = all[upTo(all.size())]; !found->isErased())
            return found;
    return nullptr;
}

inline BlockRecord &RandomChanges::record()
{
    if (upTo(4) == 0)
        for (const auto &block : m_drawing.blocks())
            if (!block->isErased() && !block->isModelSpace() && upTo(3) == 0)
                return *block;
    return m_drawing.modelSpace();
}

inline std::size_t RandomChanges::layer()
{
    const std::size_t index = upTo(m_drawing.layers().size());
    return m_drawing.layer(index).erased ? 0 : index;
}

inline DataItems RandomChanges::items()
{
    DataItems items;
    for (std::size_t count = upTo(4); count > 0; --count) {
        if (upTo(3) == 0)
            items.push_back({40, place()});
        else if (upTo(2) == 0)
            items.push_back({90, std::int64_t(upTo(1000))});
        else
            items.push_back({1, upTo(10) == 0 ? std::wstring(600, L'x') : word()});
    }
    return items;
}

inline std::unique_ptr<AcDbEntity> RandomChanges::anEntity()
{
    switch (upTo(10)) {
    case 0:
        return std::make_unique<AcDbArc>(point(), 1.0 + place(), 0.25, 2.5);
    case 1:
        return std::make_unique<CircleEntity>(point(), 1.0 + place());
    case 2: {
        std::vector<AcDbPolyline::Vertex> vertices;
        for (std::size_t count = 2 + upTo(6); count > 0; --count)
            vertices.push_back({place(), place(), upTo(3) == 0 ? 0.5 : 0.0});
        return std::make_unique<AcDbPolyline>(std::move(vertices), upTo(2) == 0);
    }
    case 3:
        return std::make_unique<TextEntity>(TextShape{point(), 2.5, 0.0, 1.0, 0, 0, word()});
    case 4:
        return std::make_unique<PointEntity>(point());
    case 5: {
        auto hatch = std::make_unique<AcDbHatch>();
        hatch->setPatternScale(1.0 + place());
        hatch->setPattern(AcDbHatch::kPreDefined, L"ANSI31");
        return hatch;
    }
    case 6:
        return std::make_unique<AcDb2dPolyline>(
            std::vector<AcDbPolyline::Vertex>{{place(), place(), 0}, {place(), place(), 0}}, false);
    default:
        return std::make_unique<AcDbLine>(point(), point());
    }
}

inline int RandomChanges::make()
{
    const int kind = static_cast<int>(upTo(kKinds));
    AcDbEntity *some = entity();
    switch (kind) {
    case 0:
    case 1:
    case 2:
    case 3:
        m_drawing.append(anEntity(), record());
        break;
    case 4:
        if (some)
            m_drawing.erase(*some);
        break;
    case 5:
        // What was erased may come back.
        if (const auto &all = m_drawing.modelSpace().entities(); !all.empty())
            m_drawing.erase(*all[upTo(all.size())], false);
        break;
    case 6:
        if (some)
            m_drawing.setLayerOf(*some, layer());
        break;
    case 7:
        if (some)
            m_drawing.setColorOf(*some, static_cast<int>(upTo(257)));
        break;
    case 8:
        m_drawing.ensureLayer(L"Layer " + std::to_wstring(upTo(200)), static_cast<int>(1 + upTo(255)));
        break;
    case 9: {
        const std::size_t index = layer();
        Layer values = m_drawing.layer(index);
        values.on = upTo(2) == 0;
        values.color = static_cast<int>(1 + upTo(255));
        m_drawing.setLayer(index, values);
        break;
    }
    case 10:
        m_drawing.setCurrentLayer(layer());
        break;
    case 11:
    case 12:
        if (some)
            m_drawing.setData(*some, "KEY" + std::to_string(upTo(3)), items());
        break;
    case 13:
        m_drawing.setDictionaryEntry("BOOK" + std::to_string(upTo(3)), "PAGE" + std::to_string(upTo(5)), items());
        break;
    case 14:
        m_drawing.setHeaderVariable("$USERR" + std::to_string(1 + upTo(5)), 40, std::to_string(upTo(100)) + ".5");
        break;
    case 15: {
        BlockRecord &block = m_drawing.addBlock(L"Block " + std::to_wstring(upTo(8)), point());
        if (block.entities().empty()) {
            m_drawing.append(std::make_unique<AcDbLine>(point(), point()), block);
            m_drawing.append(
                std::make_unique<AttributeDefinitionEntity>(L"NAME", L"", TextShape{{}, 2.5, 0.0, 1.0, 0, 0, word()}),
                block);
        }
        AcDbBlockReference::Placement placement;
        placement.position = point();
        appendReference(m_drawing, block, placement, 0, m_drawing.modelSpace());
        break;
    }
    case 16:
        if (some && kindOf(*some) == EntityKind::BlockReference)
            for (AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(*some)))
                m_drawing.setAttributeText(*attribute, word());
        break;
    case 17:
        if (some && kindOf(*some) == EntityKind::Line && some->upgradeOpen() != Acad::eOk) {
            AcDbEntity *opened = nullptr;
            if (acdbOpenAcDbEntity(opened, idOf(*some), AcDb::kForWrite) == Acad::eOk) {
                static_cast<AcDbLine *>(opened)->setEndPoint(point());
                opened->close();
            }
        }
        break;
    case 18:
        if (some && kindOf(*some) == EntityKind::Hatch) {
            AcDbEntity *opened = nullptr;
            if (acdbOpenAcDbEntity(opened, idOf(*some), AcDb::kForWrite) == Acad::eOk) {
                static_cast<AcDbHatch *>(opened)->setPatternScale(1.0 + place());
                static_cast<AcDbHatch *>(opened)->setPatternAngle(place());
                opened->close();
            }
        }
        break;
    case 19: {
        const auto source = Drawing::createNew();
        source->append(std::make_unique<AcDbLine>(point(), point()));
        source->append(std::make_unique<CircleEntity>(point(), 2.0), source->addBlock(L"Inner"));
        source->append(
            std::make_unique<AcDbBlockReference>(idOf(*source->findBlock(L"Inner")), AcDbBlockReference::Placement()));
        m_drawing.importBlock(L"Imported " + std::to_wstring(upTo(4)), *source);
        break;
    }
    case 20:
        m_drawing.eraseLayer(layer());
        break;
    case 21:
        if (BlockRecord &block = record(); !block.isModelSpace())
            m_drawing.eraseBlock(block);
        break;
    case 22:
    case 23:
        if (some) {
            EntityShape shape = shapeOf(*some);
            if (auto *circle = std::get_if<CircleShape>(&shape.value))
                circle->center.x += 1.0;
            else if (auto *polyline = std::get_if<PolylineShape>(&shape.value); polyline && !polyline->vertices.empty())
                polyline->vertices.front().y += 0.5;
            else if (auto *text = std::get_if<TextShape>(&shape.value))
                text->text += L"!";
            else if (auto *place = std::get_if<AcGePoint3d>(&shape.value))
                place->y -= 2.0;
            else if (auto *reference = std::get_if<ReferenceShape>(&shape.value))
                reference->placement.rotation += 0.25;
            setShape(m_drawing, *some, std::move(shape));
        }
        break;
    }
    if (kind == 24)
        renameLayer(m_drawing, layer(), L"Layer " + std::to_wstring(upTo(200)));
    return kind;
}

/// Where two texts part, with what stands there; empty for equal ones.
inline std::string differenceOf(const std::string &a, const std::string &b)
{
    if (a == b)
        return {};
    const auto place =
        static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    const std::size_t from = place < 300 ? 0 : place - 300;
    return "at byte " + std::to_string(place) + " (" + std::to_string(a.size()) + " and " + std::to_string(b.size()) +
           "):\n" + a.substr(from, 400) + "\n--- and ---\n" + b.substr(from, 400);
}

} // namespace velmor::test
