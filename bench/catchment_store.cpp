// Catchment areas in numbers: loading them, making them, asking for those of a section.
#include "contracts/CatchmentArea.h"
#include "host/network/Network.h"
#include "host/sewage/CatchmentStore.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace velmor {
namespace {

using ZEMGis::Sewage::CatchmentAreas;
using ZEMGis::Sewage::CCatchmentAreaManager;

std::string networkOf(int sections)
{
    std::string junctions = "[JUNCTIONS]\n", conduits = "[CONDUITS]\n", coordinates = "[COORDINATES]\nX 0 0\n";
    for (int i = 0; i < sections; ++i) {
        const std::string n = std::to_string(i);
        junctions += "N" + n + " 1 0\n";
        conduits += "P" + n + " N" + n + " X 10 0.01 0 0\n";
        coordinates += "N" + n + " " + std::to_string(i % 100 * 50) + " " + std::to_string(i / 100 * 50) + "\n";
    }
    return junctions + "[OUTFALLS]\nX 0 FREE\n" + conduits + coordinates;
}

std::wstring polygonAt(int i)
{
    const int x = i % 100 * 50, y = i / 100 * 50;
    const auto at = [&](int dx, int dy) {
        return std::to_wstring(x + dx) + L".125 " + std::to_wstring(y + dy) + L".375";
    };
    return L"POLYGON ((" + at(0, 0) + L", " + at(40, 3) + L", " + at(44, 20) + L", " + at(37, 41) + L", " + at(12, 44) +
           L", " + at(-2, 30) + L", " + at(0, 0) + L"))";
}

/// A drawing of that many areas, each on two sections.
std::unique_ptr<Drawing> townOf(int count)
{
    auto drawing = Drawing::createNew();
    importInpText(*drawing, networkOf(count), "bench.inp");
    setWorkingDrawing(drawing.get());
    auto &manager = *CCatchmentAreaManager::Instance();
    const auto sections = drawing->component<Network>().sections();
    for (int i = 0; i < count; ++i) {
        const auto area = manager.CreateCA(polygonAt(i), L"A" + std::to_wstring(i), 1 + i % 7, {});
        area->SetFlowCoeff(0.4);
        const auto at = static_cast<std::size_t>(i);
        manager.AssignCA({{sections[at], 0.5}, {sections[(at + 1) % sections.size()], 0.5}}, area);
    }
    return drawing;
}

void MakeAreas(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(townOf(static_cast<int>(state.range(0))));
    setWorkingDrawing(nullptr);
}

void LoadStore(benchmark::State &state)
{
    const std::string text = townOf(static_cast<int>(state.range(0)))->write();
    for (auto _ : state) {
        state.PauseTiming();
        LoadResult loaded = Drawing::read(text);
        state.ResumeTiming();
        benchmark::DoNotOptimize(loaded.drawing->component<CatchmentStore>().areas().size());
        state.PauseTiming();
        loaded.drawing.reset();
        state.ResumeTiming();
    }
    setWorkingDrawing(nullptr);
}

void ReadDrawingAndStore(benchmark::State &state)
{
    const std::string text = townOf(static_cast<int>(state.range(0)))->write();
    for (auto _ : state) {
        LoadResult loaded = Drawing::read(text);
        benchmark::DoNotOptimize(loaded.drawing->component<CatchmentStore>().areas().size());
    }
    setWorkingDrawing(nullptr);
}

void AreasOfEverySection(benchmark::State &state)
{
    const auto drawing = townOf(static_cast<int>(state.range(0)));
    const auto sections = drawing->component<Network>().sections();
    for (auto _ : state)
        for (const auto &section : sections) {
            CatchmentAreas areas;
            benchmark::DoNotOptimize(CCatchmentAreaManager::Instance()->GetCABySection(section, areas, 7));
        }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sections.size()));
    setWorkingDrawing(nullptr);
}

void DeleteAreas(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto drawing = townOf(static_cast<int>(state.range(0)));
        CatchmentAreas areas;
        CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, 7);
        state.ResumeTiming();
        for (const auto &area : areas)
            CCatchmentAreaManager::Instance()->DeleteCA(area);
        state.PauseTiming();
        areas.clear();
        drawing.reset();
        state.ResumeTiming();
    }
    setWorkingDrawing(nullptr);
}

BENCHMARK(MakeAreas)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadStore)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadDrawingAndStore)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(AreasOfEverySection)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(DeleteAreas)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmor

BENCHMARK_MAIN();
