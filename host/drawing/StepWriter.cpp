// Steps into bytes.
#include "host/drawing/StepBytes.h"
#include "host/drawing/StepCodec.h"

#include <algorithm>

namespace velmor {

using steps::Malformed;
using steps::Naming;
using steps::Plain;

class StepCodec::Writer {
public:
    explicit Writer(StepCodec &codec) : m_codec(codec) {}
    std::string take() { return std::move(m_out); }

    void put(const Plain auto &value) { m_out.append(reinterpret_cast<const char *>(&value), sizeof value); }
    void put(const std::string &text)
    {
        put(static_cast<std::uint64_t>(text.size()));
        m_out += text;
    }
    void put(const std::wstring &text)
    {
        put(static_cast<std::uint64_t>(text.size()));
        m_out.append(reinterpret_cast<const char *>(text.data()), text.size() * sizeof(wchar_t));
    }
    template <Plain T>
    void put(const std::vector<T> &items)
    {
        put(static_cast<std::uint64_t>(items.size()));
        m_out.append(reinterpret_cast<const char *>(items.data()), items.size() * sizeof(T));
    }
    template <class T>
    void put(const std::optional<T> &value)
    {
        put(value.has_value());
        if (value)
            put(*value);
    }

    void object(const AcDbObject *object);
    void layer(std::uint32_t index)
    {
        const auto number = m_codec.m_layerNumbers.find(index);
        if (number == m_codec.m_layerNumbers.end())
            throw Malformed();
        put(number->second);
    }
    void look(const AcDbObject &object)
    {
        const auto &host = ObjectAccess::host(object);
        layer(host.layer);
        put(host.color);
    }
    void flags(const AcDbObject &object)
    {
        put(static_cast<std::uint16_t>(ObjectAccess::host(object).flags & kPatchFlags));
    }
    void shape(const EntityShape &shape);
    void record(const RecordState &state);
    void layerValues(const LayerState &state);
    void newcomers(Drawing &drawing, const ChangeStep &step);
    void change(Drawing &drawing, const Change &change);
    void made(const AcDbEntity &entity);

private:
    StepCodec &m_codec;
    std::string m_out;
};

void StepCodec::Writer::object(const AcDbObject *object)
{
    if (!object) {
        put(Naming::None);
        return;
    }
    if (object->isKindOf(AcDbBlockTableRecord::desc())) {
        const auto number = m_codec.m_blockNumbers.find(static_cast<const BlockRecord *>(object));
        if (number == m_codec.m_blockNumbers.end())
            throw Malformed();
        put(Naming::Block);
        put(number->second);
        return;
    }
    const auto &host = ObjectAccess::host(*object);
    if (host.sourceLength != 0) {
        put(Naming::Place);
        put(static_cast<std::uint64_t>(host.sourceOffset));
        return;
    }
    const auto number = m_codec.m_numbers.find(object);
    if (number == m_codec.m_numbers.end())
        throw Malformed();
    put(Naming::Number);
    put(number->second);
}

void StepCodec::Writer::shape(const EntityShape &shape)
{
    struct Put {
        Writer &w;
        void operator()(std::monostate) const {}
        void operator()(const LineShape &s) const { w.put(s); }
        void operator()(const ArcShape &s) const { w.put(s); }
        void operator()(const CircleShape &s) const { w.put(s); }
        void operator()(const EllipseEntity::Shape &s) const { w.put(s); }
        void operator()(const SplineEntity::Shape &s) const
        {
            w.put(s.degree);
            w.put(s.closed);
            w.put(s.knots);
            w.put(s.controlPoints);
            w.put(s.weights);
            w.put(s.fitPoints);
        }
        void operator()(const AcGePoint3d &s) const { w.put(s); }
        void operator()(const PolylineShape &s) const
        {
            w.put(s.vertices);
            w.put(s.elevation);
            w.put(s.closed);
            w.put(s.width);
        }
        void operator()(const Polyline3dShape &s) const
        {
            w.put(s.vertices);
            w.put(s.closed);
        }
        void operator()(const TextShape &s) const
        {
            w.put(s.position);
            w.put(s.height);
            w.put(s.rotation);
            w.put(s.widthFactor);
            w.put(s.horizontal);
            w.put(s.vertical);
            w.put(s.text);
        }
        void operator()(const ReferenceShape &s) const
        {
            w.object(ObjectAccess::object(s.definition));
            w.put(s.placement);
        }
        void operator()(const HatchShape &s) const
        {
            w.put(s.normal);
            w.put(s.elevation);
            w.put(s.angle);
            w.put(s.scale);
            w.put(s.pattern);
            w.put(s.patternType);
            w.put(s.style);
            w.put(s.associative);
            w.put(static_cast<std::uint64_t>(s.loops.size()));
            for (const AcDbHatch::Loop &loop : s.loops) {
                w.put(loop.type);
                w.put(loop.vertices);
            }
            w.put(static_cast<std::uint64_t>(s.families.size()));
            for (const AcDbHatch::Family &family : s.families) {
                w.put(family.angle);
                w.put(family.baseX);
                w.put(family.baseY);
                w.put(family.offsetX);
                w.put(family.offsetY);
                w.put(family.dashes);
            }
        }
    };
    put(static_cast<std::uint8_t>(shape.value.index()));
    std::visit(Put{*this}, shape.value);
}

void StepCodec::Writer::record(const RecordState &state)
{
    put(state.dictionary);
    put(state.key);
    put(state.hasDictionary);
    put(state.dictionaryChanged);
    put(state.dictionaryHandle);
    put(state.rootHandle);
    put(state.isListed);
    put(state.record.has_value());
    if (!state.record)
        return;
    put(state.record->changed);
    put(state.record->inDataBlock);
    put(state.record->handle);
    put(state.record->items.has_value());
    if (!state.record->items)
        return;
    put(static_cast<std::uint64_t>(state.record->items->size()));
    for (const DataItem &item : *state.record->items) {
        put(item.code);
        put(static_cast<std::uint8_t>(item.value.index()));
        std::visit([this](const auto &value) { put(value); }, item.value);
    }
}

/// An entity that came, or an attribute, as it is now.
void StepCodec::Writer::made(const AcDbEntity &entity)
{
    put(kindOf(entity));
    look(entity);
    put(ObjectAccess::has(entity, kInvisible));
    put(ObjectAccess::host(entity).handle);
    flags(entity);
    switch (kindOf(entity)) {
    case EntityKind::Unknown:
        put(typeNameOf(entity));
        break;
    case EntityKind::Attribute: {
        const auto &attribute = static_cast<const AttributeEntity &>(entity);
        put(attribute.tag());
        put(attribute.isInvisible());
        break;
    }
    case EntityKind::AttributeDefinition: {
        const auto &definition = static_cast<const AttributeDefinitionEntity &>(entity);
        put(definition.tag());
        put(definition.prompt());
        put(definition.isInvisible());
        put(definition.isConstant());
        break;
    }
    default:
        break;
    }
    shape(shapeOf(entity));
    const auto &carried = m_codec.m_drawing.priv().carried;
    const auto tags = carried.find(&entity);
    put(tags == carried.end() ? std::nullopt : std::optional(tags->second));
    m_codec.m_numbers[&entity] = m_codec.m_made.size();
    m_codec.m_made.push_back(const_cast<AcDbEntity *>(&entity));
}

void StepCodec::Writer::layerValues(const LayerState &state)
{
    put(state.layer.color);
    put(state.layer.on);
    put(state.layer.frozen);
    put(state.layer.locked);
    put(state.layer.erased);
    put(state.changed);
    put(state.needsRecord);
    put(state.handle);
}

/// Layers and blocks that came with the step stand before its changes, since an entity that came before them may be on
/// them by the step's end.
void StepCodec::Writer::newcomers(Drawing &drawing, const ChangeStep &step)
{
    Drawing::Private &d = drawing.priv();
    const auto isNewcomer = [](const Change &change) {
        return change.kind == ChangeKind::LayerAdded || change.kind == ChangeKind::BlockAdded;
    };
    put(static_cast<std::uint64_t>(std::ranges::count_if(step.changes, isNewcomer)));
    for (const Change &change : step.changes) {
        if (!isNewcomer(change))
            continue;
        put(change.kind);
        if (change.kind == ChangeKind::LayerAdded) {
            m_codec.m_layerNumbers[change.layer] = static_cast<std::uint32_t>(m_codec.m_layers.size());
            m_codec.m_layers.push_back(change.layer);
            put(d.layers[change.layer].name);
            layerValues(layerState(d, change.layer));
            continue;
        }
        auto &block = static_cast<BlockRecord &>(*change.object);
        m_codec.m_blockNumbers[&block] = static_cast<std::uint32_t>(m_codec.m_blocks.size());
        m_codec.m_blocks.push_back(&block);
        const dxf::BlockSource &source = d.file.blocks[&block];
        put(block.name());
        put(block.basePoint());
        put(ObjectAccess::host(block).handle);
        put(source.beginHandle);
        put(source.endHandle);
    }
}

void StepCodec::Writer::change(Drawing &drawing, const Change &change)
{
    Drawing::Private &d = drawing.priv();
    put(change.kind);
    switch (change.kind) {
    case ChangeKind::Appended:
        object(ObjectAccess::host(*change.object).owner);
        made(static_cast<AcDbEntity &>(*change.object));
        break;
    case ChangeKind::Attribute:
        object(ObjectAccess::host(*change.object).owner);
        flags(*ObjectAccess::host(*change.object).owner);
        made(static_cast<AcDbEntity &>(*change.object));
        break;
    case ChangeKind::Erased:
        object(change.object);
        break;
    case ChangeKind::Look:
        object(change.object);
        look(*change.object);
        flags(*change.object);
        break;
    case ChangeKind::Shape:
        object(change.object);
        shape(shapeOf(static_cast<AcDbEntity &>(*change.object)));
        flags(*change.object);
        break;
    case ChangeKind::Text:
        object(change.object);
        put(static_cast<TextEntity &>(*change.object).shape().text);
        flags(*change.object);
        break;
    case ChangeKind::Data: {
        const auto &state = change.as<RecordState>();
        object(change.object);
        record(recordState(d, change.object, state.dictionary, state.key));
        flags(*change.object);
        break;
    }
    case ChangeKind::Entry: {
        const auto &state = change.as<RecordState>();
        record(recordState(d, nullptr, state.dictionary, state.key));
        break;
    }
    case ChangeKind::Header: {
        const std::string &name = change.as<HeaderState>().name;
        const auto found = d.header.find(name);
        put(name);
        put(found != d.header.end());
        if (found != d.header.end()) {
            put(found->second.code);
            put(found->second.value);
            put(found->second.changed);
        }
        break;
    }
    case ChangeKind::LayerAdded:
        layer(change.layer);
        break;
    case ChangeKind::Layer:
        layer(change.layer);
        layerValues(layerState(d, change.layer));
        break;
    case ChangeKind::LayerName:
        layer(change.layer);
        put(d.layers[change.layer].name);
        break;
    case ChangeKind::CurrentLayer:
        layer(static_cast<std::uint32_t>(d.currentLayer));
        break;
    case ChangeKind::BlockAdded:
        object(change.object);
        break;
    case ChangeKind::BlockErased: {
        auto &block = static_cast<BlockRecord &>(*change.object);
        const auto &entities = ObjectAccess::erasedWithIt(block);
        object(&block);
        put(static_cast<std::uint64_t>(entities.size()));
        for (const AcDbEntity *entity : entities)
            object(entity);
        break;
    }
    case ChangeKind::BasePoint:
        object(change.object);
        put(static_cast<BlockRecord &>(*change.object).basePoint());
        break;
    case ChangeKind::Handle:
        object(change.object);
        put(ObjectAccess::host(*change.object).handle);
        break;
    }
}

StepCodec::StepCodec(Drawing &drawing) : m_drawing(drawing)
{
    const auto layers = static_cast<std::uint32_t>(drawing.layers().size());
    for (std::uint32_t i = 0; i < layers; ++i) {
        m_layers.push_back(i);
        m_layerNumbers[i] = i;
    }
    for (const auto &block : drawing.blocks()) {
        m_blockNumbers[block.get()] = static_cast<std::uint32_t>(m_blocks.size());
        m_blocks.push_back(block.get());
    }
}

std::optional<std::string> StepCodec::encode(const ChangeStep &step)
{
    Writer writer(*this);
    try {
        writer.put(step.name);
        writer.put(step.handlesBefore);
        writer.put(step.handlesAfter);
        writer.newcomers(m_drawing, step);
        writer.put(static_cast<std::uint64_t>(step.changes.size()));
        for (const Change &change : step.changes)
            writer.change(m_drawing, change);
    } catch (const Malformed &) {
        return std::nullopt;
    }
    return writer.take();
}

std::optional<std::string> StepCodec::encodeHandle(const AcDbObject &object)
{
    Writer writer(*this);
    try {
        writer.object(&object);
        writer.put(ObjectAccess::host(object).handle);
    } catch (const Malformed &) {
        return std::nullopt;
    }
    return writer.take();
}

} // namespace velmor
