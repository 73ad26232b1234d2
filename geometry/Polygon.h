// A run of vertices with the tests and measures of a catchment boundary.
//
// Coordinates are drawing units; Contains and the turn tests look at x and y only, the area measures at all three.
// A polygon is used by its own type and on the stack. Indexes are taken on trust unless a call says otherwise. Nothing
// throws; what needs memory answers false when there is none and then leaves the polygon as it was. One thread.
#pragma once

#include <cmath>
#include <vector>

/// One tolerance for all of this: a length in drawing units, an area in square units.
inline constexpr double kPolygonTolerance = 0.001;

struct CVertex {
    double x, y, z;
    CVertex operator+(const CVertex &o) const { return {x + o.x, y + o.y, z + o.z}; }
    CVertex operator-(const CVertex &o) const { return {x - o.x, y - o.y, z - o.z}; }
    CVertex operator*(double factor) const { return {x * factor, y * factor, z * factor}; }
    CVertex operator/(double divisor) const { return {x / divisor, y / divisor, z / divisor}; }
    CVertex &operator+=(const CVertex &o) { return *this = *this + o; }
    bool operator==(const CVertex &) const = default;
    double Dot(const CVertex &o) const { return x * o.x + y * o.y + z * o.z; }
    CVertex Cross(const CVertex &o) const { return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x}; }
    double SquaredLength() const { return Dot(*this); }
    double Length() const { return std::sqrt(SquaredLength()); }
};

// One virtual operation and no virtual destructor: nobody deletes a polygon through another type.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

class CPolygon {
public:
    CPolygon() = default;
    /// count vertices of undefined contents. Without memory for them the user is told and the polygon stays empty.
    explicit CPolygon(int count);
    ~CPolygon();
    CPolygon(const CPolygon &) = delete;
    /// Copies size and vertices; without memory for them this polygon stays as it is.
    CPolygon &operator=(const CPolygon &other);

    int GetSize() const { return m_nCount; }
    /// 0 frees the block; else the first vertices stay and new ones have undefined contents.
    bool SetSize(int count);
    bool AddPoint(const CVertex &vertex);
    CVertex &operator[](int index) { return m_pVertices[index]; }
    const CVertex &operator[](int index) const { return m_pVertices[index]; }

    /// Centroid of the area of a counter-clockwise ring. A clockwise one, and one of a doubled area of at most the
    /// tolerance, gives the plain mean of its vertices (without the closing repeat) instead.
    /// REQUIRES: at least one vertex; a single one counts as closed, so that its mean is that of none.
    CVertex Centroid() const;
    /// 1 inside, 0 outside, by crossings of the ray toward positive x; the ring closes itself. Half open and without
    /// tolerance: a point on a right or upper edge is inside, on a left or lower edge outside.
    /// REQUIRES: at least one vertex.
    int Contains(double x, double y) const;
    /// First and last vertex agree in x, y and z within the tolerance. REQUIRES: at least one vertex.
    bool IsClosed() const;
    /// Repeats the first vertex at the end unless it is closed.
    bool Close();
    virtual void Translate(const CVertex &offset);

    // --- Single points and segments --------------------------------------------------------------------------------

    /// c lies left of the line from a to b; LeftOn: left or on it.
    static bool IsLeft(CVertex a, CVertex b, CVertex c);
    static bool IsLeftOn(CVertex a, CVertex b, CVertex c);
    /// The doubled area of the triangle in the plane is below the tolerance.
    static bool IsCollinear(CVertex a, CVertex b, CVertex c);
    /// Collinear, and c in the x range of a and b, ends included (in their y range when a.x equals b.x).
    static bool IsBetween(CVertex a, CVertex b, CVertex c);
    /// Segments a-b and c-d cross at an inner point of both.
    static bool IntersectProperly(CVertex a, CVertex b, CVertex c, CVertex d);
    /// Segments a-b and c-d have a point in common.
    static bool Intersect(CVertex a, CVertex b, CVertex c, CVertex d);
    /// Each coordinate differs by no more than the tolerance.
    static bool IsEqual(CVertex a, CVertex b);
    /// Degrees, 0 to 180, between the directions a to b and b to c; 0 when one of them has no length.
    static double TurnAngle(CVertex a, CVertex b, CVertex c);
    static double VectorAngle(CVertex a, CVertex b);
    /// Not normalised.
    static CVertex Normal(CVertex a, CVertex b, CVertex c);
    /// To length 1; a zero vector stays.
    static CVertex Normalize(CVertex vector);
    /// Foot of a point on the line through a and b in the plane, with the z of a. A line within the tolerance of
    /// upright or level counts as upright or level.
    static CVertex ProjectOnLine(CVertex point, CVertex a, CVertex b);

    // --- Vertices --------------------------------------------------------------------------------------------------

    /// Moves the later vertices down; the block keeps its size.
    void RemovePoint(int index);
    /// The vertex stands at index afterwards; index may be the size.
    bool InsertPoint(int index, const CVertex &vertex);
    /// Drops what lies outside a to b (outside the run over the seam when a > b), by removals at rising indexes:
    /// the run shrinks meanwhile, so each removal skips a vertex. Only a = 0 keeps exactly the range.
    bool KeepRange(int a, int b);
    /// Number of edges from a to b: the shorter way round on a closed polygon, else b - a with its sign.
    int VertexDistance(int a, int b) const;
    /// Half the absolute sum of the fan triangles; signs by each triangle's turn.
    double Area() const;
    /// Length along the ring from a to b over the closing edge where a > b or b is the size; 0 when a equals b.
    /// REQUIRES: a in [0, size), b in [0, size]; else 0.
    double PathLength(int a, int b) const;
    /// The vertex nearest to the query in the plane, the first of equals. index may be null.
    CVertex NearestVertex(const CVertex &query, int *index = nullptr) const;
    /// No edge meets the segment a-b but those that end at a or b.
    bool IsDiagonalClear(int a, int b) const;
    /// b lies in the interior angle at a of a counter-clockwise ring.
    bool IsInCone(int a, int b) const;
    bool IsDiagonal(int a, int b) const;
    /// Drops each inner vertex whose turn is below that many degrees, and never looks at the vertex behind a dropped
    /// one.
    bool Simplify(double degrees);
    /// index is a vertex within a to b, ends included; over the seam when a > b.
    bool IsIndexInRange(int a, int b, int index) const;
    /// The same without the ends.
    bool IsIndexInsideRange(int a, int b, int index) const;

    // --- Areas and triangles ---------------------------------------------------------------------------------------

    /// By clipping triangles off. area is positive; centroid as Centroid's rule, but with the mean as the resort for
    /// any area not above the tolerance; normal has length 1; slope is rise over run (the greatest double for an
    /// upright face); azimuth is the downhill direction in degrees, 0 north and clockwise, 0 for a slope below 0.01.
    /// False only for an empty polygon (or without memory for a copy).
    bool GetAreaProperties(double &area, CVertex &centroid, CVertex &normal, double &slope, double &azimuth) const;
    /// Triangles as vertex triples in result, (size - 3) * 3 vertices. Each collinear vertex that was dropped leaves a
    /// triple of zeroes at the end.
    /// REQUIRES: closed, at least 4 vertices; else false. result is another polygon.
    bool Triangulate(CPolygon &result) const;
    /// Triples of centre, vertex i, vertex i + 1; for 4 vertices the first 3 as they are.
    bool FanTriangles(CPolygon &result, const CVertex &centre) const;
    /// Delaunay triangles of the vertices as triples; quartic. With more than three vertices on an empty circle every
    /// triangle among them is given.
    bool DelaunayTriangles(CPolygon &result) const;

    // --- Curvature -------------------------------------------------------------------------------------------------

    /// y over x between vertex i and the next is y + b t + c t^2 + d t^3 with t counted from vertex i; at the last
    /// vertex b is the slope there. The arrays come back with one entry for each vertex.
    /// REQUIRES: x rising strictly. False with fewer than 2 vertices.
    bool NaturalSpline(std::vector<double> &b, std::vector<double> &c, std::vector<double> &d) const;
    /// 2 (x' y'' - y' x'') / (x'^2 + y'^2)^1.5 at vertex i, from splines of x and y over the chord length through the
    /// vertices within halfSpan of i; so twice the signed curvature. 0 where the divisor is not positive.
    double SplineCurvature(int i, int halfSpan) const;
    /// Change of direction at vertex i over the length of the edge before it, negative unless it turns left; 0 at both
    /// ends.
    double DiscreteCurvature(int i) const;

private:
    double RingLength(int from, int to) const;

    int m_nCount = 0;
    CVertex *m_pVertices = nullptr; ///< a C heap block; null exactly when the count is 0
};

#pragma GCC diagnostic pop
