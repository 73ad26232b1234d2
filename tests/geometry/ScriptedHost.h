// A host for the tests of boundary tracing: a real drawing, and a boundary command that does what the test says.
#pragma once

#include "contracts/NetworkTopology.h"
#include "host/drawing/Drawing.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Where a section lies, for IsSectionInside.
struct SectionPlace {
    int type = 1;
    AcGePoint3d start, end;
};

/// The one of a test; the contract's functions of this program work on it.
class ScriptedHost {
public:
    ScriptedHost();
    ~ScriptedHost();
    static ScriptedHost &current();

    velmor::Drawing &drawing() { return *m_drawing; }
    /// A polyline through plane points in model space, or in another block.
    AcDbObjectId addPolyline(const std::vector<AcDbPolyline::Vertex> &vertices, bool closed = true);
    AcDbObjectId addSquare(double x, double y, double side);

    /// What the host command does to the drawing; nothing at first.
    std::function<void()> command = [] {};
    /// The argument lists that came, each argument as text: texts in quotes, "<picks N>" for a set of N, "<x,y,z>".
    std::vector<std::vector<std::string>> commands;
    std::vector<int> locksDuringCommand; ///< how many document locks were held at each of them
    bool throughChain = false;           ///< the last one came by acedCmd

    std::map<std::uint64_t, SectionPlace> sections; ///< by the handle of their entity

    int logging = 0;
    /// The trace since the last call, without the time in front of each line.
    std::vector<std::string> takeTrace();

    int locks = 0;

private:
    std::unique_ptr<velmor::Drawing> m_drawing;
};

/// The name of a made-up selection set of that length.
struct PickSet {
    explicit PickSet(std::int64_t length) : name{length, 1} {}
    ads_name name;
};
