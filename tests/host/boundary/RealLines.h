// Linework of real files, read with as little as tests need: polygons of a network file, and lines, arcs, circles and
// light-weight polylines of a drawing's model space.
#pragma once

#include "host/boundary/Regions.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <numbers>
#include <sstream>
#include <string>

namespace velmor::boundary::testing {

/// The folder of shared data, or an empty path.
inline std::filesystem::path dataFolder()
{
    if (const char *folder = std::getenv("VELMOR_DATA_DIR"))
        return folder;
    if (const char *source = std::getenv("VELMOR_SOURCE_DIR")) {
        const auto folder = std::filesystem::path(source) / ".." / "shared" / "data";
        if (std::filesystem::exists(folder))
            return folder;
    }
    return {};
}

/// Rings of [Polygons], in the file's order; a repeated first point and repeated neighbours are left out.
inline std::vector<std::vector<Point>> polygonsOf(const std::filesystem::path &file)
{
    std::ifstream in(file);
    std::vector<std::vector<Point>> rings;
    std::map<std::string, std::size_t> numbers;
    bool isInside = false;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line[0] == '[')
            isInside = line.starts_with("[Polygons]") || line.starts_with("[POLYGONS]");
        std::istringstream words(line);
        std::string name;
        Point p;
        if (!isInside || line[0] == ';' || !(words >> name >> p.x >> p.y))
            continue;
        const auto at = numbers.try_emplace(name, rings.size());
        if (at.second)
            rings.emplace_back();
        std::vector<Point> &ring = rings[at.first->second];
        if (ring.empty() || !(ring.back() == p))
            ring.push_back(p);
    }
    for (std::vector<Point> &ring : rings) {
        if (ring.size() > 1 && ring.front() == ring.back())
            ring.pop_back();
    }
    return rings;
}

inline std::vector<Piece> piecesOf(const std::vector<std::vector<Point>> &rings)
{
    std::vector<Piece> pieces;
    for (std::uint32_t i = 0; i < rings.size(); ++i) {
        for (std::size_t k = 0; k < rings[i].size(); ++k)
            pieces.push_back({rings[i][k], rings[i][(k + 1) % rings[i].size()], 0.0, i});
    }
    return pieces;
}

inline std::vector<Piece> piecesOfDrawing(const std::filesystem::path &file)
{
    struct Entity {
        std::string kind;
        std::map<int, double> values;
        std::vector<RingVertex> vertices;
    };
    std::vector<Piece> pieces;
    std::uint32_t source = 0;
    const auto finish = [&](const Entity &e) {
        const auto value = [&e](int code) { return e.values.contains(code) ? e.values.at(code) : 0.0; };
        if (value(67) != 0.0)
            return;
        ++source;
        if (e.kind == "LINE") {
            pieces.push_back({{value(10), value(20)}, {value(11), value(21)}, 0.0, source});
        } else if (e.kind == "CIRCLE") {
            const Point a{value(10) - value(40), value(20)}, b{value(10) + value(40), value(20)};
            pieces.push_back({a, b, 1.0, source});
            pieces.push_back({b, a, 1.0, source});
        } else if (e.kind == "ARC") {
            const double degree = std::numbers::pi / 180;
            double sweep = value(51) - value(50);
            sweep += sweep <= 0 ? 360 : 0;
            const auto at = [&](double angle) {
                return Point{value(10) + value(40) * std::cos(angle * degree),
                             value(20) + value(40) * std::sin(angle * degree)};
            };
            for (int half = 0; half < 2; ++half) {
                pieces.push_back({at(value(50) + sweep * half / 2), at(value(50) + sweep * (half + 1) / 2),
                                  std::tan(sweep / 8 * degree), source});
            }
        } else if (e.kind == "LWPOLYLINE") {
            const std::size_t n = e.vertices.size(), sides = (static_cast<int>(value(70)) & 1) != 0 ? n : n - 1;
            for (std::size_t i = 0; i < sides && n > 1; ++i) {
                const RingVertex &p = e.vertices[i], &q = e.vertices[(i + 1) % n];
                pieces.push_back({{p.x, p.y}, {q.x, q.y}, p.bulge, source});
            }
        }
    };
    std::ifstream in(file, std::ios::binary);
    Entity entity;
    bool isEntities = false;
    std::string codeLine, text, section;
    while (std::getline(in, codeLine) && std::getline(in, text)) {
        const int code = std::atoi(codeLine.c_str());
        if (!text.empty() && text.back() == '\r')
            text.pop_back();
        if (code == 0) {
            if (isEntities)
                finish(entity);
            entity = {text, {}, {}};
            isEntities = isEntities && text != "ENDSEC";
        } else if (code == 2 && entity.kind == "SECTION") {
            isEntities = text == "ENTITIES";
        } else if (isEntities) {
            const double v = std::atof(text.c_str());
            if (entity.kind == "LWPOLYLINE" && code == 10)
                entity.vertices.push_back({v, 0.0, 0.0});
            else if (entity.kind == "LWPOLYLINE" && code == 20 && !entity.vertices.empty())
                entity.vertices.back().y = v;
            else if (entity.kind == "LWPOLYLINE" && code == 42 && !entity.vertices.empty())
                entity.vertices.back().bulge = v;
            else
                entity.values.try_emplace(code, v);
        }
    }
    return pieces;
}

} // namespace velmor::boundary::testing
