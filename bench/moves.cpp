// MOVE of all that a drawing holds: typed, taken back, and written. Time a segment is told, which should not grow with
// the drawing.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Drawing.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Session.h"
#include "host/editor/UndoHistory.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

namespace velmor {
namespace {

/// A drawing of lines as a file holds them, so that a save has tags to change.
std::unique_ptr<Drawing> linesOf(std::int64_t count)
{
    auto made = Drawing::createNew();
    for (std::int64_t i = 0; i < count; ++i) {
        const double x = 5.6e6 + static_cast<double>(i % 1000), y = 5.07e6 + static_cast<double>(i / 1000);
        made->append(std::make_unique<AcDbLine>(AcGePoint3d(x, y), AcGePoint3d(x + 0.7, y + 0.3)));
    }
    return Drawing::read(made->write()).drawing;
}

void tellEach(benchmark::State &state)
{
    state.counters["ns/segment"] =
        benchmark::Counter(static_cast<double>(state.range(0)) * 1e-9,
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void MoveAll(benchmark::State &state)
{
    Session session;
    session.setMessageSink([](MessageKind, const std::wstring &) {});
    session.setDrawing(linesOf(state.range(0)));
    session.drawing()->component<UndoHistory>();
    for (auto _ : state)
        if (!session.commands().run(L"MOVE ALL \"\" 0,0 10,5"))
            state.SkipWithError("not moved");
    tellEach(state);
}
BENCHMARK(MoveAll)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void MoveAndUndo(benchmark::State &state)
{
    Session session;
    session.setMessageSink([](MessageKind, const std::wstring &) {});
    session.setDrawing(linesOf(state.range(0)));
    auto &history = session.drawing()->component<UndoHistory>();
    for (auto _ : state) {
        state.PauseTiming();
        session.commands().run(L"MOVE ALL \"\" 0,0 10,5");
        state.ResumeTiming();
        if (history.undo() != 1)
            state.SkipWithError("not taken back");
    }
    tellEach(state);
}
BENCHMARK(MoveAndUndo)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void WriteMoved(benchmark::State &state)
{
    Session session;
    session.setMessageSink([](MessageKind, const std::wstring &) {});
    session.setDrawing(linesOf(state.range(0)));
    session.commands().run(L"MOVE ALL \"\" 0,0 10,5");
    for (auto _ : state)
        benchmark::DoNotOptimize(session.drawing()->write().size());
    tellEach(state);
}
BENCHMARK(WriteMoved)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmor

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
