// Plain values of the drawing host: points, names, status values, argument chains.
//
// Lengths are drawing units, angles radians (counter-clockwise from the x axis) unless a name says otherwise.
// Nothing here owns anything but argument chains (see acutBuildList in DrawingHost.h).
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Marks what the host defines and a module binds to when it is loaded.
#define ZEMX_CONTRACT __attribute__((visibility("default")))

/// Growing arrays of the seam; index from 0.
template <class T>
using AcArray = std::vector<T>;
using CStringArray = std::vector<std::wstring>;

// --- Status values -----------------------------------------------------------------------------------------------

namespace Acad {
/// Results of database calls. Only eOk and eNotAnEntity are numbers that callers know.
enum ErrorStatus : int {
    eOk = 0,
    eInvalidInput = 3,
    eNullObjectId = 7,
    eOutOfRange = 12,
    eNotAnEntity = 34,       ///< the id names something that is not an entity (or not the class asked for)
    eWasErased = 51,         ///< the object is erased
    eUnknownHandle = 57,     ///< no object of that handle
    eWasOpenForRead = 84,    ///< open for reading elsewhere, so it can't be opened for writing
    eWasOpenForWrite = 85,   ///< open for writing elsewhere
    eNotOpenForWrite = 87,   ///< a change needs an object opened for writing
    eNotInDatabase = 91,     ///< the object was never appended to a drawing
    eAlreadyInDatabase = 92, ///< the object is in a drawing already
    eKeyNotFound = 101,
    eIsReferenced = 104, ///< something of the drawing refers to the object
    eFileAccessErr = 230,
    eDegenerateGeometry = 301,
    eNotAvailable = 900, ///< this host does not offer the operation
};
} // namespace Acad

/// Results of the aced and acut functions.
enum AcedStatus : int {
    RTNORM = 5100,   ///< done, or a value was given
    RTERROR = -5001, ///< failed
    RTCAN = -5002,   ///< the user cancelled (Escape)
    RTREJ = -5003,   ///< refused: wrong arguments
    RTFAIL = -5004,
    RTKWORD = -5005,     ///< the user gave a keyword
    RTNONE_INPUT = 5000, ///< the user pressed Enter with no value
};

/// Kinds of values in an argument chain.
enum ResbufKind : short {
    RTNONE = 5000,
    RTREAL = 5001,
    RTPOINT = 5002, ///< a point in the plane
    RTSHORT = 5003,
    RTSTR = 5005,
    RTENAME = 5006,
    RTPICKS = 5007, ///< a selection set
    RT3DPOINT = 5009,
    RTLONG = 5010,
};

using ads_real = double;
using ads_point = double[3];
/// Name of an entity or a selection set; all zero names nothing.
using ads_name = std::int64_t[2];

/// One value of an argument chain or of a dictionary entry. A text is owned by the chain.
struct resbuf {
    resbuf *rbnext = nullptr;
    short restype = RTNONE; ///< a ResbufKind, or a group code in dictionary entries
    union {
        double rreal;
        double rpoint[3];
        short rint;
        std::int32_t rlong;
        wchar_t *rstring;
        std::int64_t rlname[2];
    } resval = {};
};

// --- Geometry values ---------------------------------------------------------------------------------------------

/// Points no farther than this from each other are the same point to operator==.
inline constexpr double kPointEqualTolerance = 1e-10;

struct AcGeVector3d {
    double x = 0.0, y = 0.0, z = 0.0;
    double length() const { return std::sqrt(x * x + y * y + z * z); }
};

/// A point, or a vertex, in drawing units.
struct AcGePoint3d {
    double x = 0.0, y = 0.0, z = 0.0;
    AcGePoint3d() = default;
    AcGePoint3d(double px, double py, double pz = 0.0) : x(px), y(py), z(pz) {}
    AcGeVector3d operator-(const AcGePoint3d &o) const { return {x - o.x, y - o.y, z - o.z}; }
    AcGePoint3d operator+(const AcGeVector3d &v) const { return {x + v.x, y + v.y, z + v.z}; }
    double distanceTo(const AcGePoint3d &o) const { return (*this - o).length(); }
    bool isEqualTo(const AcGePoint3d &o, double tolerance = kPointEqualTolerance) const
    {
        return (*this - o).length() <= tolerance;
    }
    bool operator==(const AcGePoint3d &o) const { return isEqualTo(o); }
};

struct AcGePoint2d {
    double x = 0.0, y = 0.0;
    bool operator==(const AcGePoint2d &) const = default;
};

using AcGePoint3dArray = AcArray<AcGePoint3d>;

/// A circular arc through two points with a bulge (tangent of a quarter of the included angle, positive to the left).
class ZEMX_CONTRACT AcGeCircArc2d {
public:
    AcGeCircArc2d(AcGePoint2d start, AcGePoint2d end, double bulge);
    AcGePoint2d center() const { return m_center; }
    double radius() const { return m_radius; }
    double length() const { return m_length; }

private:
    AcGePoint2d m_center;
    double m_radius = 0.0;
    double m_length = 0.0;
};
