#include "host/network/Network.h"

#include "host/drawing/ObjectAccess.h"
#include "host/network/NetworkEntities.h"
#include "host/network/NetworkPaths.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <unordered_set>

namespace velmor {

namespace {

struct IdHash {
    std::size_t operator()(const AcDbObjectId &id) const
    {
        return std::hash<const AcDbObject *>()(ObjectAccess::object(id));
    }
};

/// All sections (or nodes) that a drawing has had, with the indexes over those that it has now.
template <class Entity, class Contract, auto Parse>
class Registry {
public:
    using Pointer = boost::shared_ptr<Contract>;

    Registry(Drawing &drawing, const char *key) : m_drawing(drawing), m_key(key) {}

    void build()
    {
        std::unordered_set<const AcDbEntity *> carriers;
        for (AcDbEntity *entity : m_drawing.entitiesWithData(m_key))
            carriers.insert(entity);
        if (carriers.empty())
            return;
        m_building = true;
        for (AcDbEntity *entity : m_drawing.modelSpace().entities())
            if (carriers.contains(entity))
                update(*entity);
        m_building = false;
    }

    /// Takes up what the entity's data says now.
    void update(AcDbEntity &entity)
    {
        const auto items = m_drawing.data(entity, m_key);
        auto data = items ? Parse(*items) : std::nullopt;
        const auto known = m_byId.find(idOf(entity));
        if (known == m_byId.end()) {
            const BlockRecord *owner = data ? ownerOf(entity) : nullptr;
            if (owner && owner->isModelSpace())
                add(boost::make_shared<Entity>(m_drawing, entity, std::move(*data)));
            return;
        }
        Entity &present = *known->second;
        const bool same = data && *data == present.data() && present.isPresent();
        present.setWithdrawn(!data);
        if (data)
            present.setData(std::move(*data));
        m_stale = m_stale || !same;
    }

    void erasedOrBack(AcDbEntity &entity) { m_stale = m_stale || m_byId.contains(idOf(entity)); }

    const std::vector<Pointer> &list() const
    {
        refresh();
        return m_list;
    }
    Pointer byId(const AcDbObjectId &id) const
    {
        const auto found = m_byId.find(id);
        return found != m_byId.end() && found->second->isPresent() ? found->second : Pointer();
    }
    Pointer byGuid(const std::wstring &guid) const { return find(m_byGuid, guid); }
    Pointer byName(const std::wstring &name) const { return find(m_byName, name); }
    /// Grows whenever a question may get another answer.
    std::uint64_t revision() const
    {
        refresh();
        return m_revision;
    }

private:
    using Index = std::unordered_map<std::wstring, Pointer>;

    Pointer find(const Index &index, const std::wstring &text) const
    {
        refresh();
        const auto found = index.find(text);
        return found == index.end() ? Pointer() : found->second;
    }

    void add(boost::shared_ptr<Entity> made)
    {
        m_all.push_back(made);
        m_byId.emplace(made->GetObjectId(), made);
        // What was drawn earlier than others and got its data later belongs before them.
        if (m_building || m_drawing.modelSpace().entities().back() == &made->entity()) {
            if (!m_stale)
                enter(made);
        } else {
            m_stale = m_unordered = true;
        }
    }

    /// One walk over model space puts everything into the drawing's order.
    void sort() const
    {
        m_unordered = false;
        std::unordered_map<const AcDbEntity *, std::size_t> places;
        const auto &entities = m_drawing.modelSpace().entities();
        for (std::size_t i = 0; i < entities.size(); ++i)
            if (m_byId.contains(idOf(*entities[i])))
                places.emplace(entities[i], i);
        std::ranges::sort(m_all, {}, [&](const auto &entity) { return places[&entity->entity()]; });
    }

    /// The first of several with one GUID or name keeps its place.
    void enter(const boost::shared_ptr<Entity> &entity) const
    {
        ++m_revision;
        m_list.push_back(entity);
        m_byGuid.emplace(entity->data().guid, entity);
        m_byName.emplace(entity->data().name, entity);
    }

    void refresh() const
    {
        if (!m_stale)
            return;
        m_stale = false;
        ++m_revision;
        if (m_unordered)
            sort();
        m_list.clear();
        m_byGuid.clear();
        m_byName.clear();
        for (const auto &entity : m_all)
            if (entity->isPresent())
                enter(entity);
    }

    Drawing &m_drawing;
    const char *m_key;
    bool m_building = false;                              ///< entities come in the drawing's order
    mutable std::vector<boost::shared_ptr<Entity>> m_all; ///< in the drawing's order, erased ones too
    mutable bool m_unordered = false;                     ///< but for those added since
    std::unordered_map<AcDbObjectId, boost::shared_ptr<Entity>, IdHash> m_byId;
    mutable bool m_stale = false; ///< the three below are to be made anew
    mutable std::vector<Pointer> m_list;
    mutable Index m_byGuid, m_byName;
    mutable std::uint64_t m_revision = 0;
};

} // namespace

struct Network::Private {
    explicit Private(Drawing &d) : drawing(d) {}

    /// The drawing is walked once, at the first question; from then on its changes are followed.
    void build()
    {
        if (built)
            return;
        built = true;
        nodes.build();
        sections.build();
    }

    Drawing &drawing;
    bool built = false;
    Registry<SectionEntity, ZEMGis::Topology::CSection, sectionDataOf> sections{drawing, kSectionKey};
    Registry<NodeEntity, ZEMGis::Topology::CNode, nodeDataOf> nodes{drawing, kNodeKey};
};

Network::Network(Drawing &drawing) : d(std::make_unique<Private>(drawing))
{
    drawing.addObserver(*this);
}
Network::~Network()
{
    d->drawing.removeObserver(*this);
}

void Network::entityAppended(AcDbEntity &entity)
{
    entityModified(entity);
}

void Network::entityModified(AcDbEntity &entity)
{
    if (!d->built)
        return;
    d->nodes.update(entity);
    d->sections.update(entity);
}

void Network::entityErased(AcDbEntity &entity, bool /*erased*/)
{
    d->nodes.erasedOrBack(entity);
    d->sections.erasedOrBack(entity);
}

const std::vector<Network::SectionPtr> &Network::sections() const
{
    d->build();
    return d->sections.list();
}

const std::vector<Network::NodePtr> &Network::nodes() const
{
    d->build();
    return d->nodes.list();
}

Network::SectionPtr Network::sectionByName(const std::wstring &name) const
{
    d->build();
    return d->sections.byName(name);
}

Network::NodePtr Network::nodeByName(const std::wstring &name) const
{
    d->build();
    return d->nodes.byName(name);
}

Network::SectionPtr Network::sectionByGuid(const std::wstring &guid) const
{
    d->build();
    return guid.empty() ? SectionPtr() : d->sections.byGuid(guid);
}

std::uint64_t Network::sectionsRevision() const
{
    d->build();
    return d->sections.revision();
}

Network::NodePtr Network::nodeByGuid(const std::wstring &guid) const
{
    d->build();
    return guid.empty() ? NodePtr() : d->nodes.byGuid(guid);
}

std::vector<Network::SectionPtr> Network::upstreamOf(const std::wstring &nodeOrSectionName) const
{
    if (const NodePtr node = nodeByName(nodeOrSectionName))
        return upstreamOfNode(*this, node->GetGuid());
    return branchOf(*this, sectionByName(nodeOrSectionName), true);
}

Network::SectionPtr Network::GetSectionById(const AcDbObjectId &id) const
{
    d->build();
    return d->sections.byId(id);
}

Network::SectionPtr Network::GetSectionByHandle(const wchar_t *handleText) const
{
    const AcDbHandle handle(handleText ? handleText : L"");
    if (handle.isNull())
        return {};
    d->build();
    AcDbObject *object = d->drawing.findByHandle(handle.value());
    return object ? d->sections.byId(idOf(*object)) : SectionPtr();
}

Network::SectionPtr Network::GetSectionByGuid(const wchar_t *guid) const
{
    return guid ? sectionByGuid(guid) : SectionPtr();
}

} // namespace velmor
