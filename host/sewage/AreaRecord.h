// What the drawing keeps of one catchment area, and its form as attached data.
//
// The record hangs on the area's entity under kAreaDataKey: on its closed polyline, or on a point for a hidden area.
// Any program that keeps extended data keeps it. Sections are named by their GUIDs.
#pragma once

#include "contracts/CatchmentArea.h"
#include "host/drawing/Drawing.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmor {

inline constexpr char kAreaDataKey[] = "VELMOR_CATCHMENT";
/// On a label: the GUID of its area.
inline constexpr char kLabelDataKey[] = "VELMOR_LABEL";
inline constexpr wchar_t kAreaLayer[] = L"VELMOR_CATCHMENTS";
inline constexpr wchar_t kLabelLayer[] = L"VELMOR_LABELS";

struct AreaRecord {
    struct Share {
        std::wstring sectionGuid;
        double share = 0.0; ///< fraction of 1, or kUnknownValue
        bool operator==(const Share &) const = default;
    };
    std::int64_t order = 0; ///< rises with creation
    std::wstring guid;
    std::wstring name;
    int type = 0; ///< type mask
    bool hidden = false;
    double hiddenSquareMetres = 0.0; ///< only of a hidden area
    std::vector<Share> shares;
    /// All properties but the GUID, in the order they came.
    std::vector<std::pair<std::wstring, ZEMGis::Data::CDataBox>> properties;

    const ZEMGis::Data::CDataBox *property(std::wstring_view tag) const;
    /// A null box takes the property away. Numbers that are not finite become kUnknownValue.
    void setProperty(const std::wstring &tag, const ZEMGis::Data::CDataBox &box);
    /// The number under a tag; 0 when there is none.
    double number(std::wstring_view tag) const;
    bool operator==(const AreaRecord &) const = default;
};

/// The number, or kUnknownValue for one that a drawing file can't hold.
double storable(double value);

DataItems toItems(const AreaRecord &record);
/// Nothing for items that are no record of ours.
std::optional<AreaRecord> recordFromItems(const DataItems &items);

} // namespace velmor
