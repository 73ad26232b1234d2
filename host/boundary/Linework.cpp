#include "host/boundary/RegionFinder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace velmor::boundary {

using detail::Stored;

struct Linework::Private {
    detail::PieceIndex index;
    detail::RegionFinder finder{index};
    double tolerance = 0.0;
    std::uint32_t origins = 0;
    std::array<std::uint64_t, 2048> magnitudes{}; ///< number of pieces by exponent of their largest coordinate
    std::vector<std::pair<std::uint32_t, std::uint32_t>> bySource; ///< source and piece, sorted; empty when not known
    bool isStale = false;

    void insert(std::span<const Piece> pieces);
    void settle();
};

namespace {

unsigned exponentOf(const Piece &piece)
{
    int exponent = 0;
    std::frexp(std::max({std::abs(piece.a.x), std::abs(piece.a.y), std::abs(piece.b.x), std::abs(piece.b.y)}),
               &exponent);
    return static_cast<unsigned>(std::clamp(exponent + 1024, 0, 2047));
}

} // namespace

void Linework::Private::insert(std::span<const Piece> pieces)
{
    if (pieces.empty())
        return;
    for (const Piece &piece : pieces)
        ++magnitudes[exponentOf(piece)];
    // The tolerance follows the middle piece, so that a stray entity far away does not make all of it coarse; the
    // count by powers of two does not depend on the order in which pieces came.
    if (tolerance == 0.0 || pieces.size() >= index.size()) {
        std::uint64_t total = 0, below = 0;
        for (const std::uint64_t n : magnitudes)
            total += n;
        unsigned exponent = 0;
        while (below + magnitudes[exponent] < (total + 1) / 2)
            below += magnitudes[exponent++];
        tolerance = std::max(std::ldexp(kNodeTolerance, static_cast<int>(exponent) - 1024), 1e-200);
    }
    std::vector<Stored> cut;
    cut.reserve(pieces.size());
    for (const Piece &piece : pieces)
        detail::cut(piece, origins++, tolerance, cut);
    index.insert(std::move(cut));
    bySource.clear();
    isStale = true;
}

void Linework::Private::settle()
{
    if (isStale)
        finder.reset(tolerance);
    isStale = false;
}

Linework::Linework() : d(std::make_unique<Private>()) {}

Linework::Linework(std::vector<Piece> pieces) : Linework()
{
    d->insert(pieces);
}

Linework::Linework(Linework &&) noexcept = default;
Linework &Linework::operator=(Linework &&) noexcept = default;
Linework::~Linework() = default;

void Linework::insert(std::span<const Piece> pieces)
{
    d->insert(pieces);
}

void Linework::remove(std::uint32_t source)
{
    if (d->bySource.empty()) {
        for (std::uint32_t i = 0; i < d->index.pieces().size(); ++i) {
            if (!d->index.isRemoved(i))
                d->bySource.emplace_back(d->index.pieces()[i].source, i);
        }
        std::sort(d->bySource.begin(), d->bySource.end());
    }
    const auto first = std::lower_bound(d->bySource.begin(), d->bySource.end(), std::pair{source, 0U});
    for (auto i = first; i != d->bySource.end() && i->first == source; ++i)
        d->index.remove(i->second);
    d->isStale = true;
}

std::size_t Linework::size() const
{
    return d->index.size();
}

double Linework::nodeTolerance() const
{
    return d->tolerance;
}

Region Linework::regionAt(Point point, const RegionOptions &options)
{
    d->settle();
    return d->finder.regionAt(point, options);
}

std::size_t Linework::memoryBytes() const
{
    return d->index.memoryBytes() + d->finder.memoryBytes() + d->bySource.capacity() * sizeof(d->bySource[0]);
}

} // namespace velmor::boundary
