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
    /// Source and number of the pieces before sourcesEnd, sorted; those after it are looked through.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> bySource;
    std::uint32_t sourcesEnd = 0;
    bool isStale = false;
    /// The linework with its gaps closed, for the tolerance that was asked for last.
    std::unique_ptr<Private> joined;
    double joinedTolerance = 0.0;

    void insert(std::span<const Piece> pieces);
    void insertCut(std::vector<Stored> cut);
    void remove(std::uint32_t source);
    void settle();
    Private &withGapsClosed(double gapTolerance);
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
        tolerance = std::max(std::ldexp(kNodeTolerance, static_cast<int>(exponent) - 1024), 1e-140);
    }
    std::vector<Stored> cut;
    std::size_t parts = 0;
    for (const Piece &piece : pieces)
        parts += static_cast<std::size_t>(detail::partsOf(piece.bulge));
    cut.reserve(parts);
    for (const Piece &piece : pieces)
        detail::cut(piece, origins++, tolerance, cut);
    insertCut(std::move(cut));
}

void Linework::Private::insertCut(std::vector<Stored> cut)
{
    if (index.insert(std::move(cut)) < sourcesEnd) {
        bySource.clear();
        sourcesEnd = 0;
    }
    isStale = true;
}

void Linework::Private::remove(std::uint32_t source)
{
    const auto count = static_cast<std::uint32_t>(index.pieces().size());
    constexpr std::uint32_t kFewPieces = 4096;
    if (count - sourcesEnd > std::max(kFewPieces, count / 8)) {
        bySource.clear();
        for (std::uint32_t i = 0; i < count; ++i)
            bySource.emplace_back(index.pieces()[i].source, i);
        std::sort(bySource.begin(), bySource.end());
        sourcesEnd = count;
    }
    const auto first = std::lower_bound(bySource.begin(), bySource.end(), std::pair{source, 0U});
    for (auto i = first; i != bySource.end() && i->first == source; ++i)
        index.remove(i->second);
    for (std::uint32_t i = sourcesEnd; i < count; ++i) {
        if (index.pieces()[i].source == source)
            index.remove(i);
    }
    isStale = true;
}

void Linework::Private::settle()
{
    if (!isStale)
        return;
    finder.reset(tolerance);
    joined.reset();
    isStale = false;
}

Linework::Private &Linework::Private::withGapsClosed(double gapTolerance)
{
    if (joined && joinedTolerance == gapTolerance)
        return *joined;
    auto made = std::make_unique<Private>();
    made->tolerance = tolerance;
    std::vector<Stored> all;
    all.reserve(index.size());
    for (std::uint32_t i = 0; i < index.pieces().size(); ++i) {
        if (!index.isRemoved(i))
            all.push_back(index.pieces()[i]);
    }
    std::uint32_t origin = origins;
    for (const Piece &joint : finder.jointsFor(gapTolerance))
        detail::cut(joint, origin++, tolerance, all);
    made->insertCut(std::move(all));
    made->settle();
    joined = std::move(made);
    joinedTolerance = gapTolerance;
    return *joined;
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
    d->remove(source);
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
    Private &asked = options.gapTolerance > 0 ? d->withGapsClosed(options.gapTolerance) : *d;
    return asked.finder.regionAt(point, options);
}

std::size_t Linework::memoryBytes() const
{
    std::size_t bytes = 0;
    for (const Private *p = d.get(); p != nullptr; p = p->joined.get())
        bytes += p->index.memoryBytes() + p->finder.memoryBytes() + p->bySource.capacity() * sizeof(p->bySource[0]);
    return bytes;
}

} // namespace velmor::boundary
