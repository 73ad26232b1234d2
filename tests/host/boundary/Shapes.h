// Shapes as text for tests: chains of points, and rings to compare with.
#pragma once

#include "host/boundary/Regions.h"

#include <sstream>
#include <string>

namespace velmor::boundary::testing {

/// "0 0, 10 0, 10 10 1, 0 10": a vertex each, with an optional bulge of the side that starts there.
inline Ring ring(const std::string &text)
{
    Ring out;
    std::istringstream vertices(text);
    for (std::string vertex; std::getline(vertices, vertex, ',');) {
        std::istringstream numbers(vertex);
        RingVertex v;
        numbers >> v.x >> v.y >> v.bulge;
        out.push_back(v);
    }
    return out;
}

/// Open chains, separated by semicolons.
inline std::vector<Piece> chains(const std::string &text)
{
    std::vector<Piece> out;
    std::istringstream parts(text);
    std::uint32_t source = 0;
    for (std::string part; std::getline(parts, part, ';'); ++source) {
        const Ring vertices = ring(part);
        for (std::size_t i = 0; i + 1 < vertices.size(); ++i) {
            out.push_back(
                {{vertices[i].x, vertices[i].y}, {vertices[i + 1].x, vertices[i + 1].y}, vertices[i].bulge, source});
        }
    }
    return out;
}

/// Closed chains, separated by semicolons.
inline std::vector<Piece> loops(const std::string &text)
{
    std::vector<Piece> out;
    std::istringstream parts(text);
    std::uint32_t source = 0;
    for (std::string part; std::getline(parts, part, ';'); ++source) {
        const Ring vertices = ring(part);
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const RingVertex &p = vertices[i], &q = vertices[(i + 1) % vertices.size()];
            out.push_back({{p.x, p.y}, {q.x, q.y}, p.bulge, source});
        }
    }
    return out;
}

inline std::vector<Piece> operator+(std::vector<Piece> a, const std::vector<Piece> &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

} // namespace velmor::boundary::testing
