#include "host/boundary/PieceGeometry.h"

#include <algorithm>
#include <tuple>

namespace velmor::boundary::detail {

namespace {

constexpr double kLargestCoordinate = 1e12;

double sign(double v)
{
    return v < 0 ? -1.0 : 1.0;
}

void addOriented(std::vector<Stored> &out, double ax, double ay, double bx, double by, double bulge,
                 std::uint32_t source, std::uint32_t origin)
{
    if (std::tie(bx, by) < std::tie(ax, ay)) {
        std::swap(ax, bx);
        std::swap(ay, by);
        bulge = -bulge;
    }
    out.push_back({ax, ay, bx, by, bulge, source, origin});
}

} // namespace

Frame::Frame(const Stored &piece)
    : mx(piece.ax + (piece.bx - piece.ax) * 0.5), my(piece.ay + (piece.by - piece.ay) * 0.5), dx(piece.bx - piece.ax),
      dy(piece.by - piece.ay)
{
    const double length = std::sqrt(dx * dx + dy * dy);
    dx /= length;
    dy /= length;
    half = length * 0.5;
    const double b = piece.bulge;
    sagitta = -b * half;
    if (b == 0.0) {
        k = 0.0;
        kappa = 1.0;
    } else {
        const double s = 1.0 + b * b;
        k = 2.0 * std::abs(b) / (half * s);
        kappa = sign(b) * (1.0 - b * b) / s;
    }
}

double Frame::equation(double x, double y) const
{
    const double u = along(x, y), v = beside(x, y);
    return k * (u * u + v * v - half * half) - 2.0 * kappa * v;
}

bool Frame::holds(double u, double v, double tolerance) const
{
    return std::abs(u) <= half && v >= std::min(0.0, sagitta) - tolerance && v <= std::max(0.0, sagitta) + tolerance;
}

Vector Frame::tangent(double x, double y) const
{
    if (k == 0.0)
        return {dx, dy};
    // The direction to the centre is kappa n - k (p - m); a quarter turn of it is the tangent.
    const double u = along(x, y), v = beside(x, y);
    double tu = kappa - k * v, tv = k * u;
    if (kappa < 0) {
        tu = -tu;
        tv = -tv;
    }
    const double length = std::sqrt(tu * tu + tv * tv);
    tu /= length;
    tv /= length;
    return {tu * dx - tv * dy, tu * dy + tv * dx};
}

int partsOf(double bulge)
{
    // Tangents of an eighth, two and three eighths of a half turn, with room for rounding.
    const double b = std::abs(bulge) * (1.0 - 1e-9);
    return b <= 0.41421356237309503 ? 1 : b <= 1.0 ? 2 : b <= 2.4142135623730949 ? 3 : 4;
}

void cut(const Piece &piece, std::uint32_t origin, double tolerance, std::vector<Stored> &out)
{
    Point a = piece.a, b = piece.b;
    double bulge = piece.bulge;
    for (const double v : {a.x, a.y, b.x, b.y}) {
        if (!(std::abs(v) <= kLargestCoordinate))
            return;
    }
    const double length = lengthOf(b.x - a.x, b.y - a.y);
    if (!(length > tolerance) || !std::isfinite(bulge))
        return;
    if (std::abs(bulge) * length * 0.5 <= tolerance) {
        addOriented(out, a.x, a.y, b.x, b.y, 0.0, piece.source, origin);
        return;
    }
    // Cut in one direction whatever way the piece was given.
    if (std::tie(b.x, b.y) < std::tie(a.x, a.y)) {
        std::swap(a, b);
        bulge = -bulge;
    }
    const double sweep = 4.0 * std::atan(bulge);
    const int parts = partsOf(bulge);
    if (parts == 1) {
        out.push_back({a.x, a.y, b.x, b.y, bulge, piece.source, origin});
        return;
    }
    const double toCentre = (1.0 - bulge * bulge) / (4.0 * bulge);
    const double cx = a.x + (b.x - a.x) * 0.5 - (b.y - a.y) * toCentre;
    const double cy = a.y + (b.y - a.y) * 0.5 + (b.x - a.x) * toCentre;
    const double partBulge = std::tan(sweep / (4.0 * parts));
    // The circle of an almost closed arc may be of any size.
    const double radius = lengthOf(a.x - cx, a.y - cy);
    if (!(radius + std::max(std::abs(cx), std::abs(cy)) <= kLargestCoordinate))
        return;
    double px = a.x, py = a.y;
    for (int i = 1; i <= parts; ++i) {
        double qx = b.x, qy = b.y;
        if (i < parts) {
            const double c = std::cos(sweep * i / parts), s = std::sin(sweep * i / parts);
            qx = cx + (a.x - cx) * c - (a.y - cy) * s;
            qy = cy + (a.x - cx) * s + (a.y - cy) * c;
        }
        addOriented(out, px, py, qx, qy, partBulge, piece.source, origin);
        px = qx;
        py = qy;
    }
}

bool canonicalLess(const Stored &a, const Stored &b)
{
    return std::tie(a.ax, a.ay, a.bx, a.by, a.bulge) < std::tie(b.ax, b.ay, b.bx, b.by, b.bulge);
}

namespace {

double distanceIn(const Frame &frame, const Stored &piece, double x, double y)
{
    const double toA = lengthOf(x - piece.ax, y - piece.ay), toB = lengthOf(x - piece.bx, y - piece.by);
    const double ends = std::min(toA, toB);
    const double u = frame.along(x, y);
    if (piece.bulge == 0.0)
        return std::abs(u) <= frame.half ? std::abs(frame.beside(x, y)) : ends;
    // Within the sector of the arc the circle is nearest: the sector is where the point lies on the inner side of
    // both end radii.
    const double v = frame.beside(x, y);
    const double centre = frame.kappa / frame.k;
    const double fromCentre = (v - centre) * sign(piece.bulge);
    const bool inSector = fromCentre < 0 && std::abs(u) * std::abs(centre) <= frame.half * -fromCentre;
    if (!inSector)
        return ends;
    const double twice = frame.equation(x, y);
    return std::min(ends, std::abs(twice) / (1.0 + frame.k * lengthOf(u, v - centre)));
}

} // namespace

double distance(const Stored &piece, double x, double y)
{
    return distanceIn(Frame(piece), piece, x, y);
}

Box boxOf(const Stored &piece)
{
    Box box{piece.ax, std::min(piece.ay, piece.by), piece.bx, std::max(piece.ay, piece.by)};
    if (piece.bulge != 0.0) {
        // The chord's parallelogram up to the rise holds an arc of at most a quarter.
        const double ox = piece.bulge * 0.5 * (piece.by - piece.ay), oy = -piece.bulge * 0.5 * (piece.bx - piece.ax);
        box.x0 += std::min(0.0, ox);
        box.x1 += std::max(0.0, ox);
        box.y0 += std::min(0.0, oy);
        box.y1 += std::max(0.0, oy);
    }
    return box;
}

Extreme leftmost(const Stored &piece)
{
    if (piece.bulge != 0.0) {
        // Towards the leftmost point of the circle the normal is (-1, 0).
        const Frame f(piece);
        const double radius = 1.0 / f.k;
        const double cu = 0.0, cv = f.kappa * radius;
        const double u = cu - radius * f.dx, v = cv + radius * f.dy;
        const double margin = 1e-12 * f.half;
        if (std::abs(u) < f.half - margin && v > std::min(0.0, f.sagitta) && v < std::max(0.0, f.sagitta))
            return {f.mx + u * f.dx - v * f.dy, f.my + u * f.dy + v * f.dx, false};
    }
    return {piece.ax, piece.ay, true};
}

namespace {

Contacts segmentContacts(const Stored &a, const Stored &b, double tolerance)
{
    Contacts found;
    const double ux = a.bx - a.ax, uy = a.by - a.ay, vx = b.bx - b.ax, vy = b.by - b.ay;
    const double wx = b.ax - a.ax, wy = b.ay - a.ay;
    const double zx = b.bx - a.ax, zy = b.by - a.ay;
    const double uu = ux * ux + uy * uy, vv = vx * vx + vy * vy, tt = tolerance * tolerance;
    const double c0 = cross(ux, uy, wx, wy), c1 = cross(ux, uy, zx, zy);
    const bool near0 = c0 * c0 <= tt * uu, near1 = c1 * c1 <= tt * uu;
    if (!near0 && !near1 && (c0 > 0) == (c1 > 0))
        return found;
    const double yx = a.bx - b.ax, yy = a.by - b.ay;
    const double e0 = cross(vx, vy, -wx, -wy), e1 = cross(vx, vy, yx, yy);
    const bool near2 = e0 * e0 <= tt * vv, near3 = e1 * e1 <= tt * vv;
    if (!near2 && !near3 && (e0 > 0) == (e1 > 0))
        return found;

    const auto between = [tt](double dx, double dy, double lx, double ly, double length2) {
        const double s = dot(dx, dy, lx, ly);
        if (s < 0)
            return dx * dx + dy * dy <= tt;
        if (s > length2)
            return (dx - lx) * (dx - lx) + (dy - ly) * (dy - ly) <= tt;
        return true;
    };
    if (near0 && between(wx, wy, ux, uy, uu))
        found.add(b.ax, b.ay);
    if (near1 && between(zx, zy, ux, uy, uu))
        found.add(b.bx, b.by);
    if (near2 && between(-wx, -wy, vx, vy, vv))
        found.add(a.ax, a.ay);
    if (near3 && between(yx, yy, vx, vy, vv))
        found.add(a.bx, a.by);
    // An end on the other piece leaves the rest of its straight piece on one side.
    if (found.count > 0)
        return found;
    const double denominator = cross(ux, uy, vx, vy);
    if ((c0 > 0) != (c1 > 0) && (e0 > 0) != (e1 > 0) && denominator != 0) {
        const double t = cross(wx, wy, vx, vy) / denominator;
        found.add(a.ax + ux * t, a.ay + uy * t);
    }
    return found;
}

/// Signed curvature of a piece at a point as seen when looking from the point along (dx, dy).
double curvatureTowards(const Frame &f, double x, double y, double dx, double dy)
{
    if (f.k == 0.0)
        return 0.0;
    const double u = f.along(x, y), v = f.beside(x, y);
    const double cu = -f.k * u, cv = f.kappa - f.k * v; // direction to the centre
    const double du = dx * f.dx + dy * f.dy, dv = dy * f.dx - dx * f.dy;
    return f.k * sign(cross(du, dv, cu, cv));
}

/// How far the pieces part between two points that both lie on both, near enough for small parts.
double parting(const Frame &f, const Frame &g, const Vector &p, const Vector &q)
{
    const double dx = q.x - p.x, dy = q.y - p.y;
    const double bend = curvatureTowards(f, p.x, p.y, dx, dy) - curvatureTowards(g, p.x, p.y, dx, dy);
    return std::abs(bend) * (dx * dx + dy * dy) / 8.0;
}

struct Roots {
    double at[2];
    int count = 0;
};

/// Where a line p + t d meets the arc f, as parameters t; a touch within tolerance is one root.
Roots lineRoots(const Frame &f, double pu, double pv, double du, double dv, double tolerance)
{
    const double a = f.k * (du * du + dv * dv);
    const double b = f.k * (pu * du + pv * dv) - f.kappa * dv;
    const double c = f.k * (pu * pu + pv * pv - f.half * f.half) - 2.0 * f.kappa * pv;
    Roots roots;
    const double discriminant = b * b - a * c;
    if (a != 0.0) {
        const double deepest = -discriminant / a; // equation at the middle of the roots
        if (std::abs(deepest) * 0.5 <= tolerance) {
            roots.at[roots.count++] = -b / a;
            return roots;
        }
    }
    if (discriminant < 0)
        return roots;
    const double q = -(b + sign(b) * std::sqrt(discriminant));
    if (a != 0.0)
        roots.at[roots.count++] = q / a;
    if (q != 0.0)
        roots.at[roots.count++] = c / q;
    return roots;
}

Contacts arcContacts(const Stored &a, const Stored &b, double tolerance)
{
    Contacts found;
    Frame f(a), g(b);
    const auto near = [tolerance](const Frame &frame, const Stored &piece, double x, double y) {
        return (x == piece.ax && y == piece.ay) || (x == piece.bx && y == piece.by) ||
               distanceIn(frame, piece, x, y) <= tolerance;
    };
    if (near(g, b, a.ax, a.ay))
        found.add(a.ax, a.ay);
    if (near(g, b, a.bx, a.by))
        found.add(a.bx, a.by);
    if (near(f, a, b.ax, b.ay))
        found.add(b.ax, b.ay);
    if (near(f, a, b.bx, b.by))
        found.add(b.bx, b.by);
    const int ends = found.count;

    // f is the more curved of both.
    if (f.k < g.k)
        std::swap(f, g);
    double pu, pv, du, dv;
    const double gu = f.along(g.mx, g.my), gv = f.beside(g.mx, g.my);
    const double gdu = g.dx * f.dx + g.dy * f.dy, gdv = g.dy * f.dx - g.dx * f.dy;
    if (g.k == 0.0) {
        pu = gu;
        pv = gv;
        du = gdu;
        dv = gdv;
    } else {
        // The line through the crossings of both circles, from the difference of their equations.
        const double nu = -gdv, nv = gdu;
        const double lu = g.k * gu * f.k + f.k * g.kappa * nu;
        const double lv = f.k * (g.k * gv + g.kappa * nv) - g.k * f.kappa;
        const double w = g.k * (gu * gu + gv * gv - g.half * g.half) + 2.0 * g.kappa * (nu * gu + nv * gv);
        const double right = 0.5 * (f.k * w + g.k * f.k * f.half * f.half);
        const double length2 = lu * lu + lv * lv;
        if (length2 <= 1e-28 * (f.k + g.k) * (f.k + g.k))
            return found; // same centre
        pu = lu * right / length2;
        pv = lv * right / length2;
        const double length = std::sqrt(length2);
        du = -lv / length;
        dv = lu / length;
    }
    const Roots roots = lineRoots(f, pu, pv, du, dv, tolerance);
    for (int i = 0; i < roots.count; ++i) {
        const double u = pu + roots.at[i] * du, v = pv + roots.at[i] * dv;
        if (!f.holds(u, v, tolerance))
            continue;
        const Vector at{f.mx + u * f.dx - v * f.dy, f.my + u * f.dy + v * f.dx};
        if (!g.holds(g.along(at.x, at.y), g.k == 0.0 ? 0.0 : g.beside(at.x, at.y), tolerance))
            continue;
        if (g.k != 0.0 && std::abs(g.equation(at.x, at.y)) > 4.0 * tolerance)
            continue; // a touch of f with the line alone
        bool known = false;
        for (int j = 0; j < found.count && !known; ++j) {
            const Vector &other = found.at[static_cast<std::size_t>(j)];
            known = lengthOf(at.x - other.x, at.y - other.y) <= 2.0 * tolerance ||
                    parting(f, g, other, at) <= (j < ends ? tolerance : 0.0);
        }
        if (!known)
            found.add(at.x, at.y);
    }
    return found;
}

} // namespace

Contacts contacts(const Stored &a, const Stored &b, double tolerance)
{
    const bool swapped = canonicalLess(b, a);
    const Stored &first = swapped ? b : a, &second = swapped ? a : b;
    return a.bulge == 0.0 && b.bulge == 0.0 ? segmentContacts(first, second, tolerance)
                                            : arcContacts(first, second, tolerance);
}

LineHits lineHits(const Stored &piece, const Vector &p, const Vector &d, double tolerance)
{
    LineHits hits;
    const double ax = piece.ax - p.x, ay = piece.ay - p.y, bx = piece.bx - p.x, by = piece.by - p.y;
    const double sa = cross(d.x, d.y, ax, ay), sb = cross(d.x, d.y, bx, by);
    const double ta = dot(d.x, d.y, ax, ay), tb = dot(d.x, d.y, bx, by);
    if (std::abs(sa) <= tolerance)
        hits.add(ta);
    if (std::abs(sb) <= tolerance)
        hits.add(tb);
    if (piece.bulge == 0.0) {
        if ((sa > 0) != (sb > 0))
            hits.add(ta + (tb - ta) * (sa / (sa - sb)));
        return hits;
    }
    const Frame f(piece);
    const double pu = f.along(p.x, p.y), pv = f.beside(p.x, p.y);
    const double du = d.x * f.dx + d.y * f.dy, dv = d.y * f.dx - d.x * f.dy;
    const Roots roots = lineRoots(f, pu, pv, du, dv, tolerance);
    for (int i = 0; i < roots.count; ++i) {
        if (f.holds(pu + roots.at[i] * du, pv + roots.at[i] * dv, tolerance))
            hits.add(roots.at[i]);
    }
    return hits;
}

double bulgeOfChord(double chord, double k)
{
    const double s = std::min(1.0, chord * k * 0.5);
    return s / (1.0 + std::sqrt(1.0 - s * s));
}

Vector Curve::startTangent() const
{
    const double length = chord(), b2 = bulge * bulge;
    const double c = (1.0 - b2) / (1.0 + b2), s = -2.0 * bulge / (1.0 + b2);
    const double dx = (x1 - x0) / length, dy = (y1 - y0) / length;
    return {dx * c - dy * s, dx * s + dy * c};
}

Vector Curve::towards(double distance) const
{
    const double length = chord();
    if (bulge == 0.0 || distance >= length)
        return {(x1 - x0) / length, (y1 - y0) / length};
    const Vector t = startTangent();
    // An angle between tangent and chord is half the angle at the centre.
    const double k = 4.0 * bulge / (length * (1.0 + bulge * bulge));
    const double s = std::clamp(distance * k * 0.5, -1.0, 1.0), c = std::sqrt(1.0 - s * s);
    return {t.x * c - t.y * s, t.x * s + t.y * c};
}

double bulgeArea(double chord, double bulge)
{
    const double b2 = bulge * bulge;
    if (b2 < 0.01) {
        // r^2 (angle - sin angle) / 2 as a series in the bulge, which loses nothing for flat arcs.
        return chord * chord * bulge *
               (1.0 / 3 + b2 * (1.0 / 15 + b2 * (-1.0 / 105 + b2 * (1.0 / 315 + b2 * (-1.0 / 693 + b2 / 1287)))));
    }
    const double s = 1.0 + b2;
    const double angle = 4.0 * std::atan(bulge);
    const double sine = 4.0 * bulge * (1.0 - b2) / (s * s);
    return chord * chord * s * s / (32.0 * b2) * (angle - sine);
}

} // namespace velmor::boundary::detail

namespace velmor::boundary {

double signedArea(const Ring &ring)
{
    if (ring.empty())
        return 0.0;
    const RingVertex &base = ring.front();
    double twice = 0.0, arcs = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const RingVertex &p = ring[i], &q = ring[i + 1 < ring.size() ? i + 1 : 0];
        twice += detail::cross(p.x - base.x, p.y - base.y, q.x - base.x, q.y - base.y);
        if (p.bulge != 0.0)
            arcs += detail::bulgeArea(std::hypot(q.x - p.x, q.y - p.y), p.bulge);
    }
    return twice * 0.5 + arcs;
}

} // namespace velmor::boundary
