// The areas of a drawing as rows, and the rows as JSON, CSV or plain text.
#pragma once

#include "contracts/HostTypes.h"
#include "host/drawing/Drawing.h"

#include <string>
#include <vector>

namespace velmor {

struct AreaRow {
    struct Section {
        std::wstring name;
        std::wstring handle; ///< of the section's entity
        double share = 0.0;  ///< fraction of 1, or -1000000 when it is not known
        bool operator==(const Section &) const = default;
    };
    std::wstring guid;
    std::wstring name;
    int type = 0; ///< mask: 1 catchment, 2 house, 4 industrial
    bool hidden = false;
    double areaHectares = 0.0;    ///< gross
    double netAreaHectares = 0.0; ///< less the islands, which are rows of their own
    double coefficient = 0.0;
    double population = 0.0; ///< density
    double slope = 0.0;
    bool island = false;
    std::wstring mainArea; ///< GUID of an island's main area; empty for none
    AcGePoint3d centre;
    std::vector<Section> sections; ///< those that are in the network
    bool operator==(const AreaRow &) const = default;
};

/// All areas in order of creation, hidden ones included.
std::vector<AreaRow> areaTable(Drawing &drawing);

/// A list of objects with guid, name, type, hidden, area_ha, coefficient, population, slope, island (0 or 1),
/// main_area (text or null), centre ([x, y]) and sections (objects with name, handle, share). Numbers read back as the
/// same doubles. UTF-8, one line for each area, with a final line end.
std::string areasJson(const std::vector<AreaRow> &rows);
/// A head line and a line for each area, fields parted by commas and quoted where needed; the centre in two columns
/// (x, y), net_area_ha behind area_ha, the sections as "name:share" parted by blanks. UTF-8.
std::string areasCsv(const std::vector<AreaRow> &rows);
/// An aligned table with gross and net areas, for reading; a line of totals below. The gross total counts islands
/// twice (in their main areas too), the net total once. Heads in the program's language. UTF-8.
std::string areasText(const std::vector<AreaRow> &rows);

} // namespace velmor
