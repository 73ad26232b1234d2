// Payload of a boundary in the definition dialog's list and of an area in the review dialog's tree.
#pragma once

#include "contracts/NetworkTopology.h"

#include <string>

/// One boundary of the definition at hand: a row of the dialog's list.
class CCatchItemData {
public:
    virtual ~CCatchItemData() = default;

    int m_bIsland = 0;           ///< 0 a main area, 1 an island
    AcDbObjectId m_id;           ///< the boundary polyline
    AcDbObjectIdArray m_islands; ///< polylines of a main area's islands
    /// Hectares on a main row, square metres on an island row.
    double m_area = ZEMGis::Topology::kUnknownValue;
    double m_coefficient = ZEMGis::Topology::kUnknownValue; ///< shown when the row is selected alone, if known
    double m_slope = ZEMGis::Topology::kUnknownValue;       ///< the same
    std::wstring m_text;
};
