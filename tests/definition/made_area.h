// An area that stands in the drawing before the dialog opens.
#pragma once

#include "contracts/CatchmentArea.h"

#include <string>

/// A square of 10 by 10 units whose lower left corner is (x, 0), of that type mask, for no section.
inline boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> makeArea(const std::wstring &name, int mask, double x)
{
    using namespace ZEMGis;
    const auto guid = boost::shared_ptr<Data::CProperty>(new Data::CProperty);
    guid->SetTag(L"CA_GUID");
    guid->SetValue(Utility::CUtility::CreateGUID());
    const auto bag = boost::shared_ptr<Data::CProperties>(new Data::CProperties);
    bag->AddProperty(guid);
    const AcGePoint3dArray ring{{x, 0}, {x + 10, 0}, {x + 10, 10}, {x, 10}};
    return Sewage::CCatchmentAreaManager::Instance()->CreateCA(
        Utility::CTransform::PolygonText(Utility::CTransform::AcadPoly2GeosPoly(ring)), name, mask, bag);
}
