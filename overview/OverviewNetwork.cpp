#include "overview/OverviewNetwork.h"

#include <memory>
#include <string>
#include <unordered_map>

using namespace ZEMGis::Sewage;
using ZEMGis::Topology::CTopologyMultiStorage;

namespace {

/// Numbers of entities, which are the same when their GUIDs are.
class CNumbers {
public:
    /// The number of a known GUID, -1 of any other.
    int Find(const std::wstring &guid) const
    {
        const auto found = m_numbers.find(guid);
        return found == m_numbers.end() ? -1 : found->second;
    }
    /// True for a GUID that was not known; it has the number then.
    bool Add(const std::wstring &guid, std::size_t number)
    {
        return m_numbers.emplace(guid, static_cast<int>(number)).second;
    }

private:
    std::unordered_map<std::wstring, int> m_numbers;
};

/// Calls visit(id) with each curve of the drawing. None is opened: the iterator knows what each is.
template <class Visit>
void WalkCurves(Visit visit)
{
    AcDbDatabase *database = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTable *table = nullptr;
    if (!database || database->getBlockTable(table, AcDb::kForRead) != Acad::eOk)
        return;
    AcDbBlockTableIterator *newBlocks = nullptr;
    const Acad::ErrorStatus status = table->newIterator(newBlocks);
    table->close();
    if (status != Acad::eOk)
        return;
    const std::unique_ptr<AcDbBlockTableIterator> blocks(newBlocks);
    for (; !blocks->done(); blocks->step()) {
        AcDbBlockTableRecord *record = nullptr;
        if (blocks->getRecord(record, AcDb::kForRead) != Acad::eOk)
            continue;
        AcDbBlockTableRecordIterator *newEntities = nullptr;
        const Acad::ErrorStatus entityStatus = record->newIterator(newEntities);
        record->close();
        if (entityStatus != Acad::eOk)
            continue;
        const std::unique_ptr<AcDbBlockTableRecordIterator> entities(newEntities);
        for (; !entities->done(); entities->step()) {
            const AcRxClass *kind = entities->readableClass();
            AcDbObjectId id;
            if (kind && kind->isDerivedFrom(AcDbCurve::desc()) && entities->getEntityId(id) == Acad::eOk)
                visit(id);
        }
    }
}

void ReadSections(COverviewNetwork &network, CNumbers &sections)
{
    const auto topology = CTopologyMultiStorage::Instance()->GetTopology();
    CNumbers nodes;
    const auto number = [&](const COverviewNetwork::NodePtr &node) {
        if (!node)
            return -1;
        const std::wstring guid = node->GetGuid();
        if (nodes.Add(guid, network.m_nodes.size()))
            network.m_nodes.push_back(node);
        return nodes.Find(guid);
    };
    WalkCurves([&](const AcDbObjectId &id) {
        const COverviewNetwork::SectionPtr section = topology->GetSectionById(id);
        if (!section)
            return;
        sections.Add(section->GetGuid(), network.m_sections.size()); // shares mean the first of several
        const int to = number(section->GetEndingNode());
        network.m_forestSections.push_back({number(section->GetStartingNode()), to, section->GetLength2D()});
        network.m_sections.push_back(section);
    });
}

void ReadAreas(COverviewNetwork &network, const CNumbers &sections)
{
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    manager->RefreshExistingCatchments();
    CatchmentAreas areas;
    manager->GetAllCatchmentAreas(areas, kTypeAll);
    CNumbers numbers;
    for (const COverviewNetwork::AreaPtr &area : areas) {
        if (area && numbers.Add(area->GetGuid(), network.m_areas.size()))
            network.m_areas.push_back(area);
    }
    SectionShares shares;
    std::vector<std::wstring> islands;
    for (const COverviewNetwork::AreaPtr &area : network.m_areas) {
        CForestArea &values = network.m_forestAreas.emplace_back();
        values.m_hectares = area->GetArea();
        values.m_coefficient = area->GetFlowCoeff();
        area->GetConnectedSections(shares);
        for (const auto &[section, share] : shares) {
            if (const int place = section ? sections.Find(section->GetGuid()) : -1; place >= 0)
                values.m_shares.push_back({place, share});
        }
        area->GetSubCatchments(islands);
        for (const std::wstring &guid : islands) {
            if (const int island = numbers.Find(guid); island >= 0)
                values.m_islands.push_back(island);
        }
    }
}

} // namespace

COverviewNetwork ReadNetwork()
{
    COverviewNetwork network;
    CNumbers sections;
    ReadSections(network, sections);
    ReadAreas(network, sections);
    return network;
}
