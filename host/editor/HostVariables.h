// The host variables that a session offers by name.
//
//   OSMODE      whole number  object snap bits while picking; 0 is none
//   HPGAPTOL    number >= 0   loose ends of boundary linework nearer than this are joined; 0 joins none
//   PICKRADIUS  number >= 0   how far from an entity a pick given as a point may lie, in drawing units
//   CLAYER      text          current layer of the drawing; only a layer that exists
//   DWGNAME     text          file name of the drawing; only read
//   DWGPREFIX   text          folder of the drawing with its trailing separator; only read
#pragma once

#include "host/editor/Session.h"

namespace velmor {

class HostVariables {
public:
    std::optional<VariableValue> get(const Session &session, const std::wstring &name) const;
    bool set(Session &session, const std::wstring &name, const VariableValue &value);
    /// All names in upper case, sorted.
    static std::vector<std::wstring> names();

private:
    int m_osmode = 0;
    double m_gapTolerance = 0.0;
    double m_pickRadius = 0.5;
};

} // namespace velmor
