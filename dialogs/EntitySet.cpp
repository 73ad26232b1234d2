#include "dialogs/EntitySet.h"

#include "contracts/EditorAids.h"

#include <utility>

CEntitySet::~CEntitySet()
{
    acedAtEnd(L"", [this] { Free(); });
}

CEntitySet::CEntitySet(CEntitySet &&other) noexcept
    : m_name{std::exchange(other.m_name[0], 0), std::exchange(other.m_name[1], 0)}
{
}

CEntitySet &CEntitySet::operator=(CEntitySet &&other)
{
    if (this == &other)
        return *this;
    Free();
    std::swap(m_name[0], other.m_name[0]);
    std::swap(m_name[1], other.m_name[1]);
    return *this;
}

void CEntitySet::Renew()
{
    Free();
    acedSSAdd(nullptr, nullptr, m_name);
}

void CEntitySet::Free()
{
    if (IsNone())
        return;
    acedSSFree(m_name);
    m_name[0] = m_name[1] = 0;
}

void CEntitySet::Add(const AcDbEntity &entity)
{
    ads_name name = {0, 0};
    if (acdbGetAdsName(name, entity.objectId()) == Acad::eOk)
        acedSSAdd(name, m_name, m_name);
}
