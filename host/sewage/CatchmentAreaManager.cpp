// The contract's operations over the store of the working drawing.
#include "contracts/CatchmentArea.h"

#include "host/drawing/Journal.h"
#include "host/network/Catalog.h"
#include "host/sewage/AreaLabels.h"
#include "host/sewage/AreaPick.h"
#include "host/sewage/CatchmentStore.h"
#include "host/sewage/JournalWords.h"
#include "host/sewage/PolygonText.h"

namespace ZEMGis::Sewage {

using velmor::CatchmentStore;
using velmor::journal;
using velmor::journalWord;

namespace {

bool recording()
{
    return velmor::Journal::instance().isRecording();
}

} // namespace

CCatchmentAreaManager *CCatchmentAreaManager::Instance()
{
    static CCatchmentAreaManager manager;
    return &manager;
}

boost::shared_ptr<CCatchmentArea> CCatchmentAreaManager::CreateCA(const std::wstring &polygonText,
                                                                  const std::wstring &name, int typeMask,
                                                                  boost::shared_ptr<Data::CProperties> properties)
{
    if (recording())
        journal("CCatchmentAreaManager::CreateCA", polygonText, name, typeMask, journalWord(properties));
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    const auto ring = velmor::ringOfPolygonText(polygonText);
    if (!store || !ring)
        return {};
    return store->create(*ring, name, typeMask, properties);
}

boost::shared_ptr<CCatchmentArea> CCatchmentAreaManager::SetHiddenCA(boost::shared_ptr<Topology::CSection> section,
                                                                     double areaSquareMetres, int typeMask,
                                                                     boost::shared_ptr<Data::CProperties> properties)
{
    if (recording())
        journal("CCatchmentAreaManager::SetHiddenCA", journalWord(section), areaSquareMetres, typeMask,
                journalWord(properties));
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (!store)
        return {};
    return store->createHidden(section, areaSquareMetres, typeMask, properties);
}

void CCatchmentAreaManager::AssignCA(const SectionShares &sections, boost::shared_ptr<CCatchmentArea> area)
{
    if (recording())
        journal("CCatchmentAreaManager::AssignCA", journalWord(sections), journalWord(area));
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (!store)
        return;
    if (const auto own = store->own(area.get()))
        store->assign(*own, sections);
}

void CCatchmentAreaManager::DeleteCA(boost::shared_ptr<CCatchmentArea> area)
{
    journal("CCatchmentAreaManager::DeleteCA", journalWord(area));
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (!store)
        return;
    if (const auto own = store->own(area.get()))
        store->remove(*own);
}

int CCatchmentAreaManager::GetAllCatchmentAreas(CatchmentAreas &areas, unsigned mask) const
{
    journal("CCatchmentAreaManager::GetAllCatchmentAreas", mask);
    areas.clear();
    if (CatchmentStore *store = CatchmentStore::ofWorkingDrawing())
        store->collect(areas, mask);
    return static_cast<int>(areas.size());
}

int CCatchmentAreaManager::GetCABySection(boost::shared_ptr<Topology::CSection> section, CatchmentAreas &areas,
                                          unsigned mask) const
{
    journal("CCatchmentAreaManager::GetCABySection", journalWord(section), mask);
    areas.clear();
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (store && section)
        store->collectBySection(section->GetGuid(), areas, mask);
    return static_cast<int>(areas.size());
}

boost::shared_ptr<CCatchmentArea> CCatchmentAreaManager::GetCatchmentAreaByGuid(const std::wstring &guid) const
{
    journal("CCatchmentAreaManager::GetCatchmentAreaByGuid", guid);
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (!store)
        return {};
    return store->byGuid(guid);
}

bool CCatchmentAreaManager::RefreshExistingCatchments()
{
    journal("CCatchmentAreaManager::RefreshExistingCatchments");
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (!store)
        return false;
    store->refresh();
    return true;
}

void CCatchmentAreaManager::UnMarkAllCatchments(unsigned mask)
{
    journal("CCatchmentAreaManager::UnMarkAllCatchments", mask);
    if (CatchmentStore *store = CatchmentStore::ofWorkingDrawing())
        store->unmarkAll(mask);
}

int CCatchmentAreaManager::WriteCatchmentLabel(boost::shared_ptr<CCatchmentArea> area, AcDbObjectId block,
                                               const CStringArray &tags)
{
    if (recording())
        journal("CCatchmentAreaManager::WriteCatchmentLabel", journalWord(area), block, journalWord(tags));
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (!store)
        return 0;
    const auto own = store->own(area.get());
    return own && velmor::writeLabel(*store, *own, block, tags) ? 1 : 0;
}

int CCatchmentAreaManager::WriteCatchmentLabel(boost::shared_ptr<CCatchmentArea> area, Data::CCatalogItem *item)
{
    if (recording())
        journal("CCatchmentAreaManager::WriteCatchmentLabel", journalWord(area),
                item ? velmor::journalText(item->GetName()) : std::string("null"));
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    const auto *label = dynamic_cast<const velmor::LabelCatalogItem *>(item);
    if (!store || !label)
        return 0;
    const auto own = store->own(area.get());
    return own && velmor::writeLabel(*store, *own, label->type()) ? 1 : 0;
}

int CCatchmentAreaManager::DeleteCatchmentLabel(boost::shared_ptr<CCatchmentArea> area)
{
    journal("CCatchmentAreaManager::DeleteCatchmentLabel", journalWord(area));
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    if (!store)
        return 0;
    const auto own = store->own(area.get());
    return own && store->eraseLabels(*own) > 0 ? 1 : 0;
}

void CCatchmentAreaManager::SetSpatialIndexCA(boost::shared_ptr<Topology::CSpatialIndex> index)
{
    journal("CCatchmentAreaManager::SetSpatialIndexCA", index ? "index" : "null");
    if (CatchmentStore *store = CatchmentStore::ofWorkingDrawing())
        store->setPickIndex(std::move(index));
}

int CCatchmentAreaManager::StartCAInfoTooltipAreas()
{
    journal("CCatchmentAreaManager::StartCAInfoTooltipAreas");
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    return store ? velmor::pickArea(*store) : RTERROR;
}

void CCatchmentAreaManager::StartCAInfoTooltipSections()
{
    journal("CCatchmentAreaManager::StartCAInfoTooltipSections");
    if (CatchmentStore *store = CatchmentStore::ofWorkingDrawing())
        velmor::pickSections(*store);
}

CCatchmentArea *CCatchmentAreaManager::GetInteractivelySelectedCA()
{
    CatchmentStore *store = CatchmentStore::ofWorkingDrawing();
    return store ? store->picked().get() : nullptr;
}

} // namespace ZEMGis::Sewage
