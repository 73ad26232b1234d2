// The host variables that a session offers by name.
//
//   OSMODE      whole number  object snap bits while picking; 0 is none
//   ORTHOMODE   0 or 1        points that are picked lie right, left, above or below of the one before
//   AUTOSNAP    whole number  1 markers of object snaps, 2 their names, 8 polar tracking
//   POLARANG    number > 0    step of polar tracking, degrees, up to 180
//   APERTURE    1 to 50       half of the field in which object snaps are looked for, pixels
//   PICKBOX     1 to 50       how far from an entity a click in the view may be, pixels
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
    int m_osmode = 0, m_orthoMode = 0, m_autoSnap = 3, m_aperture = 10, m_pickBox = 6;
    double m_polarAngle = 90.0;
    double m_gapTolerance = 0.0;
    double m_pickRadius = 0.5;
};

} // namespace velmor
