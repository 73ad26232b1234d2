// Undo and redo of one step in a drawing of any size: the time follows what the step changed, not the drawing.
//
// The drawing has as many lines as the first argument says; the step moves, colours or makes as many as the second.
// Ends with 1 when undo and redo in the largest drawing take more than three times as long as in the smallest.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/EntityShape.h"
#include "host/drawing/StepCodec.h"
#include "host/editor/LineworkCache.h"
#include "host/network/Network.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <string>

using namespace velmor;

namespace {

/// Lines that were read, as they stand in a town that is opened.
Drawing &townOf(std::size_t lines)
{
    static std::map<std::size_t, std::unique_ptr<Drawing>> towns;
    auto &town = towns[lines];
    if (town)
        return *town;
    const auto made = Drawing::createNew();
    for (std::size_t i = 0; i < lines; ++i) {
        const auto x = static_cast<double>(i % 1000), y = static_cast<double>(i / 1000);
        made->append(std::make_unique<AcDbLine>(AcGePoint3d(x, y), AcGePoint3d(x + 0.9, y)));
    }
    town = Drawing::read(made->write()).drawing;
    town->component<ChangeLog>();
    town->component<Network>().sections();
    town->component<LineworkCache>().visible();
    return *town;
}

void change(Drawing &town, std::size_t count)
{
    auto &log = town.component<ChangeLog>();
    log.begin();
    const auto &lines = town.modelSpace().entities();
    for (std::size_t i = 0; i < count; ++i) {
        AcDbEntity &line = *lines[i * (lines.size() / count)];
        town.setColorOf(line, line.colorIndex() == 1 ? 2 : 1);
        auto shape = shapeOf(line);
        std::get<LineShape>(shape.value).end.y += 0.1;
        setShape(town, line, std::move(shape));
    }
    log.keep();
}

/// Undo and redo of a step that moved and coloured lines.
void BM_UndoAndRedo(benchmark::State &state)
{
    Drawing &town = townOf(static_cast<std::size_t>(state.range(0)));
    auto &log = town.component<ChangeLog>();
    change(town, static_cast<std::size_t>(state.range(1)));
    for (auto _ : state) {
        log.undo();
        log.redo();
    }
    log.undo();
    state.SetItemsProcessed(state.iterations() * state.range(1) * 2);
}
BENCHMARK(BM_UndoAndRedo)->ArgsProduct({{10'000, 1'000'000}, {1, 100}})->Unit(benchmark::kMicrosecond);

/// The step itself, with its notes.
void BM_Step(benchmark::State &state)
{
    Drawing &town = townOf(static_cast<std::size_t>(state.range(0)));
    auto &log = town.component<ChangeLog>();
    for (auto _ : state)
        change(town, static_cast<std::size_t>(state.range(1)));
    while (log.undo())
        ;
}
BENCHMARK(BM_Step)->ArgsProduct({{10'000, 1'000'000}, {1, 100}})->Unit(benchmark::kMicrosecond);

/// What the journal gets of a step.
void BM_StepAsBytes(benchmark::State &state)
{
    struct Encoder final : StepFollower {
        explicit Encoder(Drawing &drawing) : codec(drawing) {}
        void stepDone(const ChangeStep &step) override { bytes = codec.encode(step)->size(); }
        StepCodec codec;
        std::size_t bytes = 0;
    };
    Drawing &town = townOf(static_cast<std::size_t>(state.range(0)));
    auto &log = town.component<ChangeLog>();
    Encoder encoder(town);
    log.addFollower(encoder);
    for (auto _ : state)
        change(town, static_cast<std::size_t>(state.range(1)));
    log.removeFollower(encoder);
    while (log.undo())
        ;
    state.counters["bytes"] = static_cast<double>(encoder.bytes);
}
BENCHMARK(BM_StepAsBytes)->ArgsProduct({{10'000, 1'000'000}, {1, 100}})->Unit(benchmark::kMicrosecond);

constexpr double kMostGrowth = 3.0; ///< of one undo and redo, from 10,000 lines to a million

/// Seconds of an undo and a redo of one line's change, the best of many.
double exchange(std::size_t lines)
{
    using Clock = std::chrono::steady_clock;
    auto &log = townOf(lines).component<ChangeLog>();
    change(townOf(lines), 1);
    double best = 1.0;
    for (int i = 0; i < 2000; ++i) {
        const auto begun = Clock::now();
        log.undo();
        log.redo();
        best = std::min(best, std::chrono::duration<double>(Clock::now() - begun).count());
    }
    log.undo();
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    const double growth = exchange(1'000'000) / exchange(10'000);
    std::printf("undo and redo of one change, in a million lines over 10,000: %.2f (at most %.1f)\n", growth,
                kMostGrowth);
    return growth <= kMostGrowth ? 0 : 1;
}
