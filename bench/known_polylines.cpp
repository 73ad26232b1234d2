// The two walks that each trace makes over the whole drawing: noting all polylines, and finding the new ones.
//
// Half of the entities are lines, half light-weight polylines. The figure to look at is the time for each entity.
#include "geometry/ZEMCBoundary.h"

#include "host/drawing/Drawing.h"

#include <benchmark/benchmark.h>

namespace {

std::unique_ptr<velmor::Drawing> made(int entities)
{
    auto drawing = velmor::Drawing::createNew();
    for (int i = 0; i < entities; ++i) {
        const double x = i % 1000, y = i / 1000;
        if (i % 2 == 0)
            drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(x, y), AcGePoint3d(x + 1, y)));
        else
            drawing->append(std::make_unique<AcDbPolyline>(
                std::vector<AcDbPolyline::Vertex>{{x, y, 0}, {x + 1, y, 0}, {x + 1, y + 1, 0}}, true));
    }
    velmor::setWorkingDrawing(drawing.get());
    return drawing;
}

void rememberPolylines(benchmark::State &state)
{
    const auto drawing = made(static_cast<int>(state.range(0)));
    for (auto _ : state)
        CZEMCBoundary::RememberPolylines();
    state.counters["per_entity"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void findNewPoly(benchmark::State &state)
{
    const auto drawing = made(static_cast<int>(state.range(0)));
    CZEMCBoundary::RememberPolylines();
    AcDbObjectIdArray found;
    for (auto _ : state) {
        CZEMCBoundary::FindNewPoly(found);
        benchmark::DoNotOptimize(found.data());
    }
    state.counters["per_entity"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(rememberPolylines)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(findNewPoly)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
