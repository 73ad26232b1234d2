#include "host/sewage/StoredArea.h"

#include "host/drawing/Journal.h"
#include "host/drawing/Transient.h"
#include "host/sewage/AreaRing.h"
#include "host/sewage/CatchmentStore.h"
#include "host/sewage/JournalWords.h"

#include <algorithm>

namespace velmor {
namespace {

using ZEMGis::Data::CDataBox;

constexpr double kSquareMetresPerHectare = 10000.0;
constexpr wchar_t kGuidTag[] = L"CA_GUID";
constexpr wchar_t kCoefficientTag[] = L"CA_COEFF";
constexpr wchar_t kPopulationTag[] = L"CA_POPULATION";
constexpr wchar_t kIslandsTag[] = L"CA_ISLANDS";

} // namespace

StoredArea::StoredArea(CatchmentStore &store, AcDbEntity &entity, AreaRecord record)
    : m_store(&store), m_entity(&entity), m_handle(handleOf(entity)), m_record(std::move(record))
{
}

AcDbObjectId StoredArea::GetObjectId() const
{
    return m_entity ? idOf(*m_entity) : AcDbObjectId();
}

void StoredArea::DrawTemporary(int colour, int flag)
{
    journal("CCatchmentArea::DrawTemporary", m_record.guid, colour, flag);
    if (m_store)
        m_store->drawTemporary(*this, colour);
}

int StoredArea::GetPropertyData(const wchar_t *tag, CDataBox &box) const
{
    box = CDataBox();
    if (!tag)
        return 0;
    if (tag == std::wstring_view(kGuidTag)) {
        box = CDataBox(m_record.guid);
        return 1;
    }
    const CDataBox *found = m_record.property(tag);
    if (!found)
        return 0;
    box = *found;
    return 1;
}

int StoredArea::SetPropertyData(const wchar_t *tag, const CDataBox &box)
{
    if (Journal::instance().isRecording())
        journal("CCatchmentArea::SetPropertyData", m_record.guid, tag, journalWord(box));
    if (!tag || !*tag)
        return 0;
    // The GUID is the area's key for the rest of its life.
    if (tag == std::wstring_view(kGuidTag))
        return box == CDataBox(m_record.guid) ? 1 : 0;
    settle();
    m_record.setProperty(tag, box);
    if (m_store)
        m_store->write(*this);
    return 1;
}

void StoredArea::Mark(int colour, double scale, double angle, const wchar_t *pattern, int flag)
{
    journal("CCatchmentArea::Mark", m_record.guid, colour, scale, angle, pattern, flag);
    if (m_store)
        m_store->mark(*this, colour, scale, angle, pattern ? pattern : L"");
}

void StoredArea::UnMark()
{
    journal("CCatchmentArea::UnMark", m_record.guid);
    if (m_store)
        m_store->unmark(*this);
}

void StoredArea::SetType(int mask)
{
    journal("CCatchmentArea::SetType", m_record.guid, mask);
    settle();
    m_record.type = mask;
    if (m_store)
        m_store->write(*this);
}

double StoredArea::GetArea() const
{
    if (m_record.hidden)
        return m_record.hiddenSquareMetres / kSquareMetresPerHectare;
    knowGeometry();
    return m_squareMetres / kSquareMetresPerHectare;
}

double StoredArea::GetFlowCoeff() const
{
    return m_record.number(kCoefficientTag);
}

void StoredArea::SetFlowCoeff(double coefficient)
{
    journal("CCatchmentArea::SetFlowCoeff", m_record.guid, coefficient);
    setNumber(kCoefficientTag, coefficient);
}

double StoredArea::GetPopulation() const
{
    return m_record.number(kPopulationTag);
}

void StoredArea::SetPopulation(double population)
{
    journal("CCatchmentArea::SetPopulation", m_record.guid, population);
    setNumber(kPopulationTag, population);
}

AcGePoint3d StoredArea::GetCenterPoint() const
{
    if (m_record.hidden && m_store)
        if (const auto middle = m_store->middleOfSection(*this))
            return *middle;
    knowGeometry();
    return m_centre;
}

int StoredArea::GetConnectedSections(ZEMGis::Sewage::SectionShares &sections) const
{
    sections.clear();
    if (m_store)
        m_store->connectedSections(*this, sections);
    return static_cast<int>(sections.size());
}

int StoredArea::SetConnectedSectionShare(SectionPtr section, double share, int flag)
{
    journal("CCatchmentArea::SetConnectedSectionShare", m_record.guid, journalWord(section), share, flag);
    if (!section)
        return 0;
    settle();
    const std::wstring guid = section->GetGuid();
    const auto found = std::find_if(m_record.shares.begin(), m_record.shares.end(),
                                    [&](const AreaRecord::Share &s) { return s.sectionGuid == guid; });
    if (found == m_record.shares.end())
        return 0;
    found->share = storable(share);
    if (m_store)
        m_store->write(*this);
    return 1;
}

int StoredArea::GetSubCatchments(std::vector<std::wstring> &guids) const
{
    guids.clear();
    if (const CDataBox *islands = m_record.property(kIslandsTag))
        islands->GetArrayCopy(guids);
    return static_cast<int>(guids.size());
}

void StoredArea::SetName(const std::wstring &name)
{
    journal("CCatchmentArea::SetName", m_record.guid, name);
    settle();
    if (m_store)
        m_store->rename(*this, name);
    else
        m_record.name = name;
}

bool StoredArea::isOfMask(unsigned mask) const
{
    constexpr unsigned all = ZEMGis::Sewage::kTypeAll;
    return (mask & all) == all || (static_cast<unsigned>(m_record.type) & mask) != 0;
}

void StoredArea::settle()
{
    if (m_store)
        m_store->bringUpToDate();
}

void StoredArea::setNumber(const wchar_t *tag, double value)
{
    settle();
    m_record.setProperty(tag, CDataBox(value));
    if (m_store)
        m_store->write(*this);
}

void StoredArea::knowGeometry() const
{
    if (m_geometryKnown || !m_entity)
        return;
    m_geometryKnown = true;
    m_squareMetres = 0.0;
    const std::vector<AcGePoint3d> ring = ringOf(*m_entity);
    if (!ring.empty()) {
        m_centre = centreOfRing(ring);
        static_cast<const AcDbCurve &>(*m_entity).getArea(m_squareMetres);
    } else if (kindOf(*m_entity) == EntityKind::Point) {
        m_centre = static_cast<const PointEntity &>(*m_entity).position();
    } else {
        const Extents extents = extentsOf(*m_entity);
        m_centre = extents.isEmpty()
                       ? AcGePoint3d()
                       : AcGePoint3d((extents.minX + extents.maxX) / 2, (extents.minY + extents.maxY) / 2);
    }
}

} // namespace velmor
