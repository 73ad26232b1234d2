// Reads the network out of a SWMM 5 input file: nodes with their places, conduits with their bends, outlines of
// subcatchments. Knows no drawing.
//
// Rows are words between blanks; ";" begins a comment; a word in double quotes may hold blanks. Tables and names are
// told apart without regard to case, as SWMM does, but a name that fits exactly comes first. Format: SWMM user's
// manual, appendix D.
#pragma once

#include "host/drawing/Drawing.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

struct InpPoint {
    double x = 0.0, y = 0.0;
    bool operator==(const InpPoint &) const = default;
};

struct InpNode {
    std::wstring name;
    std::size_t line = 0;
    InpPoint at;
};

struct InpConduit {
    std::wstring name;
    std::size_t line = 0;
    std::size_t from = 0, to = 0; ///< numbers of nodes in InpNetwork::nodes
    double length = 0.0;          ///< 0: the file has none
    std::vector<InpPoint> bends;  ///< between the nodes, from the first on
};

struct InpPolygon {
    std::wstring name;
    std::size_t line = 0;
    std::vector<InpPoint> ring; ///< three corners at least; none equal to the next; first not repeated
};

struct InpNetwork {
    FileStatus status = FileStatus::Ok;
    std::string message; ///< one line unless status is Ok
    bool inFeet = false; ///< coordinates and lengths as in the file; false: metres
    std::vector<InpNode> nodes;
    std::vector<InpConduit> conduits;
    std::vector<InpPolygon> polygons;
    std::vector<Finding> findings; ///< what was left out or taken otherwise, in order of lines
};

/// name is used in the message. Without polygons their table is not looked at. progress is told from time to time how
/// much is done, from 0 to 1; false ends it, with the status Cancelled. Never throws but for want of memory.
InpNetwork readInp(std::string_view text, const std::string &name, bool withPolygons,
                   const std::function<bool(double done)> &progress = {});

} // namespace velmor
