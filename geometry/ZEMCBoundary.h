// Turns a point into a closed polyline with the host's boundary command, and answers questions about such polylines.
//
// The command reports nothing back: what it made is found by comparing all polylines of the drawing before and after.
// A polyline is an entity whose class is exactly AcDbPolyline or exactly AcDb2dPolyline; the 3D polyline counts in
// GetCentroid alone. Polylines that the command made belong to the drawing, this class erases none. A selection set
// of a length below 1 counts as empty and is not handed to the command, which then takes all that is visible.
//
// All results are true for success or yes; there are no messages. An entity that can't be opened is passed over.
// Main thread only, and no two traces at a time. Lengths and areas are drawing units and their squares.
#pragma once

#include "contracts/DrawingHost.h"
#include "geometry/Polygon.h"

/// A polyline that is read once, for tests of many points.
class CBoundaryRing {
public:
    /// Holds no vertices when the polyline is of another class than the two or can't be opened.
    explicit CBoundaryRing(AcDbObjectId polyline);
    CBoundaryRing(const CBoundaryRing &) = delete;
    CBoundaryRing &operator=(const CBoundaryRing &) = delete;

    /// It is a curve that can be opened.
    bool IsCurve() const { return m_bCurve; }
    /// CPolygon::Contains of the vertices; false without any.
    bool Contains(const AcGePoint3d &point) const;

private:
    CPolygon m_polygon;
    bool m_bCurve = false;
    double m_dMinX = 0.0, m_dMinY = 0.0, m_dMaxX = 0.0, m_dMaxY = 0.0; ///< infinite when a vertex is not finite
};

/// The one point that decides where a section lies.
struct CSectionPoint {
    bool m_bFound = false; ///< there is such a section
    AcGePoint3d m_point;   ///< the middle of its chord; the origin for a section of any type but 1

    explicit CSectionPoint(AcDbObjectId section);
};

class CZEMCBoundary {
public:
    // --- Boundaries. The caller has ended its dialog's hold on the editor. ------------------------------------------

    /// With islands: boundary becomes the new polyline of the largest area (the first found of equals), and every other
    /// new one, as an island of it, is appended to others. False, and both untouched, when no new polyline has an area
    /// above 0. The caller holds the document lock.
    static bool CreateBoundary(const AcGePoint3d &picked, AcDbObjectId &boundary, AcDbObjectIdArray &others,
                               const ads_name selection);
    /// Without islands: boundary becomes the first new polyline found, whatever its area. Locks the document itself.
    static bool CreateBoundary(const AcGePoint3d &picked, AcDbObjectId &boundary, const ads_name selection);
    /// With islands, from several points at once; results as of the first form.
    static bool CreateBoundary(const AcGePoint3dArray &points, AcDbObjectId &boundary, AcDbObjectIdArray &others,
                               const ads_name selection);
    /// Lets the command make regions and joins each new entity with the next. boundary is never written, and since
    /// FindNewPoly sees polylines only, regions alone give false.
    static bool CreateBoundary(const AcGePoint3dArray &points, AcDbObjectId &boundary, const ads_name selection);

    /// Notes all polylines of the working drawing, in model space, paper spaces and block definitions.
    static void RememberPolylines();
    /// newIds becomes the polylines that were not noted yet, in block-table order and then in each block's order, and
    /// they are noted from then on. True when the drawing holds a polyline at all; false also when the walk broke off,
    /// with what was found so far.
    static bool FindNewPoly(AcDbObjectIdArray &newIds);

    // --- Drawing -----------------------------------------------------------------------------------------------------

    /// Draws a closed light-weight polyline over the vertices of a polyline, which stays; over none of another class.
    /// False when source can't be opened.
    static bool CopyToPolylineLW(AcDbObjectId source, AcDbObjectId &copy);
    /// Draws a closed light-weight polyline over more than 2 points; with fewer draws nothing and answers false.
    static bool DrawPolygon(const AcGePoint3dArray &points, AcDbObjectId &polygon);

    // --- Measures. Bulges count in GetArea and GetLength; elsewhere an arc is its chord. --------------------------

    /// CPolygon::Centroid of the vertices; false when there are none.
    static bool GetCentroid(AcGePoint3d &centroid, AcDbObjectId polyline);
    /// As the curve reports it, and written by the curve alone: a failure leaves area as it is.
    static bool GetArea(double &area, AcDbObjectId curve);
    /// Of a light-weight polyline. One of straight segments only is measured without its closing segment and gives
    /// true; one with arcs is measured with it, and the answer is false although length holds the whole length.
    static bool GetLength(double &length, AcDbObjectId polyline);

    /// CPolygon::Contains of the vertices; false without vertices or for another class than the two.
    static bool IsPointInside(AcDbObjectId polyline, const AcGePoint3d &point);
    static bool IsPointInside(const CZEMCPolylineLWPtr &polyline, const AcGePoint3d &point);
    /// The middle of the section's chord alone decides. A section of any type but 1 is tested at (0, 0, 0).
    static bool IsSectionInside(AcDbObjectId polyline, AcDbObjectId section);
    /// The same where many sections are tested against many polylines.
    static bool IsSectionInside(const CBoundaryRing &ring, const CSectionPoint &section);
};
