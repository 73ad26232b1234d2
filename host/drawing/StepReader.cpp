// Steps from bytes, in the state of steps that were undone.
#include "host/drawing/StepBytes.h"
#include "host/drawing/StepCodec.h"

#include <cstring>

namespace velmor {

using steps::Malformed;
using steps::Naming;
using steps::Plain;

class StepCodec::Reader {
public:
    Reader(StepCodec &codec, std::string_view bytes) : m_codec(codec), m_rest(bytes) {}
    bool atEnd() const { return m_rest.empty(); }

    template <Plain T>
    T get()
    {
        T value;
        std::memcpy(&value, take(sizeof value), sizeof value);
        return value;
    }
    bool flag() { return get<std::uint8_t>() != 0; }
    std::string text()
    {
        const std::uint64_t size = count(1);
        return {take(size), size};
    }
    std::wstring wide()
    {
        const std::uint64_t size = count(sizeof(wchar_t));
        std::wstring result(size, L'\0');
        std::memcpy(result.data(), take(size * sizeof(wchar_t)), size * sizeof(wchar_t));
        return result;
    }
    template <Plain T>
    std::vector<T> list()
    {
        const std::uint64_t size = count(sizeof(T));
        std::vector<T> items(size);
        const char *bytes = take(size * sizeof(T));
        if (size != 0)
            std::memcpy(items.data(), bytes, size * sizeof(T));
        return items;
    }
    /// A number of things that take at least that many bytes each.
    std::uint64_t count(std::size_t each)
    {
        const auto number = get<std::uint64_t>();
        if (number > m_rest.size() / each)
            throw Malformed();
        return number;
    }

    AcDbObject *object();
    AcDbEntity *entity()
    {
        AcDbObject *found = object();
        if (!found || !ObjectAccess::has(*found, kIsEntity))
            throw Malformed();
        return static_cast<AcDbEntity *>(found);
    }
    BlockRecord *block()
    {
        AcDbObject *found = object();
        if (!found || !found->isKindOf(AcDbBlockTableRecord::desc()))
            throw Malformed();
        return static_cast<BlockRecord *>(found);
    }
    std::uint32_t layer()
    {
        const auto number = get<std::uint32_t>();
        if (number >= m_codec.m_layers.size())
            throw Malformed();
        return m_codec.m_layers[number];
    }
    std::uint16_t flags() { return static_cast<std::uint16_t>(get<std::uint16_t>() & kPatchFlags); }
    EntityShape shape();
    RecordState record(AcDbObject *object);
    void layerValues(LayerState &state);
    AcDbEntity &made(AcDbObject &owner);
    void newcomers();
    Change change();

private:
    const char *take(std::size_t size)
    {
        if (size > m_rest.size())
            throw Malformed();
        const char *bytes = m_rest.data();
        m_rest.remove_prefix(size);
        return bytes;
    }
    std::unique_ptr<AcDbEntity> entityOf(EntityKind kind);

    StepCodec &m_codec;
    std::string_view m_rest;
};

AcDbObject *StepCodec::Reader::object()
{
    const auto naming = get<Naming>();
    switch (naming) {
    case Naming::None:
        return nullptr;
    case Naming::Place:
        if (AcDbObject *found = m_codec.atOffset(get<std::uint64_t>()))
            return found;
        break;
    case Naming::Number:
        if (const auto number = get<std::uint64_t>(); number < m_codec.m_made.size())
            return m_codec.m_made[number];
        break;
    case Naming::Block:
        if (const auto number = get<std::uint32_t>(); number < m_codec.m_blocks.size())
            return m_codec.m_blocks[number];
        break;
    }
    throw Malformed();
}

EntityShape StepCodec::Reader::shape()
{
    EntityShape result;
    switch (get<std::uint8_t>()) {
    case 0:
        break;
    case 1:
        result.value = get<LineShape>();
        break;
    case 2:
        result.value = get<ArcShape>();
        break;
    case 3:
        result.value = get<CircleShape>();
        break;
    case 4:
        result.value = get<EllipseEntity::Shape>();
        break;
    case 5: {
        SplineEntity::Shape s;
        s.degree = get<int>();
        s.closed = flag();
        s.knots = list<double>();
        s.controlPoints = list<AcGePoint3d>();
        s.weights = list<double>();
        s.fitPoints = list<AcGePoint3d>();
        result.value = std::move(s);
        break;
    }
    case 6:
        result.value = get<AcGePoint3d>();
        break;
    case 7: {
        PolylineShape s;
        s.vertices = list<AcDbPolyline::Vertex>();
        s.elevation = get<double>();
        s.closed = flag();
        s.width = get<double>();
        result.value = std::move(s);
        break;
    }
    case 8: {
        Polyline3dShape s;
        s.vertices = list<AcGePoint3d>();
        s.closed = flag();
        result.value = std::move(s);
        break;
    }
    case 9: {
        TextShape s;
        s.position = get<AcGePoint3d>();
        s.height = get<double>();
        s.rotation = get<double>();
        s.widthFactor = get<double>();
        s.horizontal = get<int>();
        s.vertical = get<int>();
        s.text = wide();
        result.value = std::move(s);
        break;
    }
    case 10: {
        ReferenceShape s;
        AcDbObject *definition = object();
        if (definition && !definition->isKindOf(AcDbBlockTableRecord::desc()))
            throw Malformed();
        s.definition = ObjectAccess::id(definition);
        s.placement = get<AcDbBlockReference::Placement>();
        result.value = s;
        break;
    }
    case 11: {
        HatchShape s;
        s.normal = get<AcGeVector3d>();
        s.elevation = get<double>();
        s.angle = get<double>();
        s.scale = get<double>();
        s.pattern = wide();
        s.patternType = get<int>();
        s.style = get<int>();
        s.associative = flag();
        for (std::uint64_t left = count(sizeof(int)); left > 0; --left) {
            const int type = get<int>();
            s.loops.push_back({type, list<AcDbPolyline::Vertex>()});
        }
        for (std::uint64_t left = count(sizeof(double)); left > 0; --left) {
            AcDbHatch::Family family;
            family.angle = get<double>();
            family.baseX = get<double>();
            family.baseY = get<double>();
            family.offsetX = get<double>();
            family.offsetY = get<double>();
            family.dashes = list<double>();
            s.families.push_back(std::move(family));
        }
        result.value = std::move(s);
        break;
    }
    default:
        throw Malformed();
    }
    return result;
}

RecordState StepCodec::Reader::record(AcDbObject *object)
{
    std::string dictionary = text(), key = text();
    const RecordState now = recordState(m_codec.m_drawing.priv(), object, dictionary, key);
    RecordState state;
    state.dictionary = std::move(dictionary);
    state.key = std::move(key);
    state.hasDictionary = flag();
    state.dictionaryChanged = flag();
    state.dictionaryHandle = get<std::uint64_t>();
    state.rootHandle = get<std::uint64_t>();
    state.isListed = flag();
    if (!flag())
        return state;
    state.record.emplace();
    // Where it stands in the text is the same for ever.
    state.record->source = now.record ? now.record->source : nullptr;
    state.record->changed = flag();
    state.record->inDataBlock = flag();
    state.record->handle = get<std::uint64_t>();
    if (!flag())
        return state;
    DataItems items(count(sizeof(int)));
    for (DataItem &item : items) {
        item.code = get<int>();
        switch (get<std::uint8_t>()) {
        case 0:
            item.value = wide();
            break;
        case 1:
            item.value = get<double>();
            break;
        case 2:
            item.value = get<std::int64_t>();
            break;
        default:
            throw Malformed();
        }
    }
    state.record->items = std::move(items);
    return state;
}

std::unique_ptr<AcDbEntity> StepCodec::Reader::entityOf(EntityKind kind)
{
    switch (kind) {
    case EntityKind::Unknown:
        return std::make_unique<UnknownEntity>(text());
    case EntityKind::Attribute: {
        std::wstring tag = wide();
        const bool invisible = flag();
        return std::make_unique<AttributeEntity>(std::move(tag), TextShape(), invisible);
    }
    case EntityKind::AttributeDefinition: {
        std::wstring tag = wide(), prompt = wide();
        const bool invisible = flag(), constant = flag();
        return std::make_unique<AttributeDefinitionEntity>(std::move(tag), std::move(prompt), TextShape(), invisible,
                                                           constant);
    }
    default:
        if (auto entity = blankEntity(kind))
            return entity;
        throw Malformed();
    }
}

/// Makes the object in the state of one that was undone.
AcDbEntity &StepCodec::Reader::made(AcDbObject &owner)
{
    Drawing::Private &d = m_codec.m_drawing.priv();
    const auto kind = get<EntityKind>();
    const std::uint32_t itsLayer = layer();
    const auto color = get<std::int16_t>();
    const bool invisible = flag();
    const auto handle = get<std::uint64_t>();
    const std::uint16_t parts = flags();
    std::unique_ptr<AcDbEntity> entity = entityOf(kind);
    EntityShape itsShape = shape();
    if (kind != EntityKind::Unknown && !setShape(m_codec.m_drawing, *entity, std::move(itsShape)))
        throw Malformed();
    std::optional<std::string> carried;
    if (flag())
        carried = text();
    AcDbEntity &e = *entity;
    auto &host = ObjectAccess::host(e);
    host.layer = itsLayer;
    host.color = color;
    host.handle = handle;
    ObjectAccess::setOwner(e, owner);
    ObjectAccess::set(e, kIsEntity | kErased | kWithdrawn | parts | (invisible ? kInvisible : 0));
    d.made.push_back(std::move(entity));
    if (carried)
        d.carried.emplace(&e, std::move(*carried));
    m_codec.m_numbers[&e] = m_codec.m_made.size();
    m_codec.m_made.push_back(&e);
    return e;
}

void StepCodec::Reader::layerValues(LayerState &state)
{
    state.layer.color = get<int>();
    state.layer.on = flag();
    state.layer.frozen = flag();
    state.layer.locked = flag();
    state.layer.erased = flag();
    state.changed = flag();
    state.needsRecord = flag();
    state.handle = get<std::uint64_t>();
}

/// Makes the layers and blocks that come with the step, in the state of ones that were undone.
void StepCodec::Reader::newcomers()
{
    Drawing::Private &d = m_codec.m_drawing.priv();
    for (std::uint64_t left = count(1); left > 0; --left) {
        const auto kind = get<ChangeKind>();
        if (kind == ChangeKind::LayerAdded) {
            LayerState state;
            state.layer.name = wide();
            layerValues(state);
            state.layer.erased = true;
            const auto index = static_cast<std::uint32_t>(d.layers.size());
            d.layers.push_back(state.layer);
            d.file.layers.resize(d.layers.size());
            d.file.layers.back().handle = state.handle;
            d.file.layers.back().changed = state.changed;
            d.file.layers.back().needsRecord = state.needsRecord;
            m_codec.m_layerNumbers[index] = static_cast<std::uint32_t>(m_codec.m_layers.size());
            m_codec.m_layers.push_back(index);
            continue;
        }
        if (kind != ChangeKind::BlockAdded)
            throw Malformed();
        auto &block = *d.blocks.emplace_back(std::make_unique<BlockRecord>(wide()));
        ObjectAccess::setOwner(block, d.table);
        ObjectAccess::set(block, kErased | kWithdrawn);
        ObjectAccess::basePoint(block) = get<AcGePoint3d>();
        ObjectAccess::host(block).handle = get<std::uint64_t>();
        dxf::BlockSource &source = d.file.blocks[&block];
        source.beginHandle = get<std::uint64_t>();
        source.endHandle = get<std::uint64_t>();
        m_codec.m_blockNumbers[&block] = static_cast<std::uint32_t>(m_codec.m_blocks.size());
        m_codec.m_blocks.push_back(&block);
    }
}

Change StepCodec::Reader::change()
{
    Drawing::Private &d = m_codec.m_drawing.priv();
    Change change{get<ChangeKind>()};
    const auto hold = [&change](auto state) {
        change.extra = std::make_unique<Change::Extra>();
        change.extra->state = std::move(state);
    };
    switch (change.kind) {
    case ChangeKind::Appended: {
        BlockRecord &owner = *block();
        AcDbEntity &entity = made(owner);
        ObjectAccess::set(entity, kPaperSpace, owner.isLayout() && !owner.isModelSpace());
        ObjectAccess::entities(owner).push_back(&entity);
        d.added.push_back(&entity);
        change.object = &entity;
        break;
    }
    case ChangeKind::Attribute: {
        AcDbEntity &reference = *entity();
        if (kindOf(reference) != EntityKind::BlockReference)
            throw Malformed();
        change.flags = flags();
        d.touch(reference, 0);
        change.object = &made(reference);
        if (kindOf(static_cast<AcDbEntity &>(*change.object)) != EntityKind::Attribute)
            throw Malformed();
        break;
    }
    case ChangeKind::Erased:
        change.object = entity();
        break;
    case ChangeKind::Look:
        change.object = entity();
        change.layer = layer();
        change.color = get<std::int16_t>();
        change.flags = flags();
        d.touch(*change.object, 0);
        break;
    case ChangeKind::Shape:
        change.object = entity();
        hold(shape());
        change.flags = flags();
        d.touch(*change.object, 0);
        break;
    case ChangeKind::Text: {
        AcDbEntity *text = entity();
        if (!text->isKindOf(TextEntity::desc()))
            throw Malformed();
        change.object = text;
        hold(wide());
        change.flags = flags();
        d.touch(*text, 0);
        break;
    }
    case ChangeKind::Data:
        change.object = object();
        if (!change.object)
            throw Malformed();
        hold(record(change.object));
        change.flags = flags();
        d.touch(*change.object, 0);
        break;
    case ChangeKind::Entry:
        hold(record(nullptr));
        break;
    case ChangeKind::Header: {
        HeaderState state;
        state.name = text();
        if (flag()) {
            state.variable.emplace();
            state.variable->code = get<int>();
            state.variable->value = text();
            state.variable->changed = flag();
        }
        hold(std::move(state));
        break;
    }
    case ChangeKind::LayerAdded:
        change.layer = layer();
        break;
    case ChangeKind::Layer: {
        LayerState state;
        change.layer = layer();
        state.layer.name = d.layers[change.layer].name;
        layerValues(state);
        hold(std::move(state));
        break;
    }
    case ChangeKind::LayerName:
        change.layer = layer();
        hold(wide());
        break;
    case ChangeKind::CurrentLayer:
        change.layer = layer();
        break;
    case ChangeKind::BlockAdded:
        change.object = block();
        break;
    case ChangeKind::BlockErased: {
        BlockState state;
        change.object = block();
        for (std::uint64_t left = count(1); left > 0; --left)
            state.erasedWithIt.push_back(entity());
        hold(std::move(state));
        d.touch(*change.object, 0);
        break;
    }
    case ChangeKind::BasePoint: {
        BlockState state;
        change.object = block();
        state.basePoint = get<AcGePoint3d>();
        hold(std::move(state));
        break;
    }
    case ChangeKind::Handle:
        change.object = object();
        change.number = get<std::uint64_t>();
        if (!change.object)
            throw Malformed();
        if (ObjectAccess::host(*change.object).sourceLength != 0)
            d.touch(*change.object, 0);
        break;
    default:
        throw Malformed();
    }
    return change;
}

AcDbObject *StepCodec::atOffset(std::uint64_t offset)
{
    if (m_byOffset.empty()) {
        const auto enter = [this](AcDbObject &object) {
            if (ObjectAccess::host(object).sourceLength != 0)
                m_byOffset.emplace(ObjectAccess::host(object).sourceOffset, &object);
        };
        for (dxf::RawObject *object : m_drawing.priv().file.rawObjects)
            enter(*object);
        for (const auto &block : m_drawing.blocks())
            for (AcDbEntity *entity : block->entities()) {
                enter(*entity);
                if (kindOf(*entity) == EntityKind::BlockReference)
                    for (const AcDbObjectId id : ObjectAccess::attributes(static_cast<AcDbBlockReference &>(*entity)))
                        enter(*ObjectAccess::object(id));
            }
    }
    const auto found = m_byOffset.find(offset);
    return found == m_byOffset.end() ? nullptr : found->second;
}

std::optional<ChangeStep> StepCodec::decode(std::string_view bytes)
{
    Reader reader(*this, bytes);
    try {
        ChangeStep step;
        step.name = reader.wide();
        step.handlesBefore = reader.get<std::uint64_t>();
        step.handlesAfter = reader.get<std::uint64_t>();
        reader.newcomers();
        for (std::uint64_t left = reader.count(1); left > 0; --left)
            step.changes.push_back(reader.change());
        return reader.atEnd() ? std::optional(std::move(step)) : std::nullopt;
    } catch (const Malformed &) {
        return std::nullopt;
    }
}

bool StepCodec::applyHandle(std::string_view bytes)
{
    Reader reader(*this, bytes);
    try {
        AcDbObject *object = reader.object();
        const auto handle = reader.get<std::uint64_t>();
        if (!object || ObjectAccess::host(*object).handle != 0)
            return false;
        Drawing::Private &d = m_drawing.priv();
        const std::uint64_t next = d.nextHandle;
        d.nextHandle = handle;
        d.giveHandle(*object);
        d.nextHandle = std::max(next, handle + 1);
        return ObjectAccess::host(*object).handle == handle;
    } catch (const Malformed &) {
        return false;
    }
}

} // namespace velmor
