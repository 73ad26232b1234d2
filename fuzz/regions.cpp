// Regions of arbitrary linework: no crash, no endless walk, and what is found holds its point.
//
// First byte: bit 0 chooses raw doubles or a small lattice, where everything coincides; bit 1 asks with a gap
// tolerance. Then pieces, and the rest of the bytes are points.
#include "host/boundary/Regions.h"
#include "host/boundary/RingLocator.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

using namespace velmor::boundary;

namespace {

class Bytes {
public:
    Bytes(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}
    bool atEnd() const { return m_size == 0; }
    std::uint8_t next()
    {
        if (m_size == 0)
            return 0;
        --m_size;
        return *m_data++;
    }
    double number()
    {
        std::uint8_t raw[8];
        for (std::uint8_t &byte : raw)
            byte = next();
        double value = 0.0;
        std::memcpy(&value, raw, sizeof value);
        return value;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
};

void check(bool holds)
{
    if (!holds)
        std::abort();
}

bool isFinite(const Ring &ring)
{
    return std::all_of(ring.begin(), ring.end(), [](const RingVertex &v) {
        return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.bulge);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    const std::uint8_t kind = bytes.next();
    const bool isLattice = (kind & 1U) == 0;
    const std::size_t count = bytes.next() % 64;
    const double bulges[] = {0, 0, 0, 1, -1, 0.41421356237309503, -0.41421356237309503, 0.5};
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < count; ++i) {
        Piece piece;
        if (isLattice) {
            const std::uint8_t a = bytes.next(), b = bytes.next(), c = bytes.next();
            piece.a = {a / 16 * 1.0, a % 16 * 1.0};
            piece.b = {b / 16 * 1.0, b % 16 * 1.0};
            piece.bulge = bulges[c % 8];
        } else {
            piece.a = {bytes.number(), bytes.number()};
            piece.b = {bytes.number(), bytes.number()};
            piece.bulge = bytes.number();
        }
        piece.source = static_cast<std::uint32_t>(i % 7);
        pieces.push_back(piece);
    }
    Linework lines(pieces);
    Linework reversed(std::vector<Piece>(pieces.rbegin(), pieces.rend()));
    const RegionOptions options{.islands = true, .gapTolerance = (kind & 2U) != 0 ? 1.5 : 0.0};
    for (int asked = 0; asked < 16 && !bytes.atEnd(); ++asked) {
        Point point;
        if (isLattice) {
            const std::uint8_t x = bytes.next(), y = bytes.next();
            point = {x / 15.9 + 0.01, y / 15.9 + 0.01};
        } else {
            point = {bytes.number(), bytes.number()};
        }
        if (!std::isfinite(point.x) || !std::isfinite(point.y))
            continue;
        const Region region = lines.regionAt(point, options);
        check(isFinite(region.outer));
        for (const Ring &island : region.islands)
            check(isFinite(island) && island.size() >= 2);
        check(region.gaps.size() <= 8);
        if (region)
            check(region.outer.size() >= 2);
        if (!isLattice || region.status == Status::OnEdge)
            continue;
        if (region) {
            check(signedArea(region.outer) > 0);
            using detail::RingLocator;
            check(RingLocator(region.outer, 0.0).locate(point.x, point.y) == RingLocator::Place::Inside);
            for (const Ring &island : region.islands)
                check(RingLocator(island, 0.0).locate(point.x, point.y) != RingLocator::Place::Inside);
        }
        const Region other = reversed.regionAt(point, options);
        check(other.status == region.status);
        check(other.outer == region.outer);
        check(other.islands == region.islands);
        if (asked % 5 == 4) {
            lines.remove(3);
            reversed.remove(3);
        }
    }
    return 0;
}
