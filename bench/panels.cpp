// Tables of the panels in numbers: filling them, taking up one change, sorting and filtering.
#include "contracts/CatchmentArea.h"
#include "host/editor/panels/LayersModel.h"
#include "host/editor/panels/NetworkModels.h"
#include "host/network/NetworkData.h"
#include "host/sewage/AreasModel.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

namespace velmor {
namespace {

constexpr int kSections = 20000, kAreas = 10000, kEntities = 1000000;

std::unique_ptr<Drawing> networkOf(int sections)
{
    auto drawing = Drawing::createNew();
    for (int i = 0; i < sections; ++i) {
        const std::wstring number = std::to_wstring(i);
        auto node = std::make_unique<PointEntity>(AcGePoint3d(i % 200 * 50.0, i / 200 * 50.0));
        AcDbEntity &nodeEntity = *node;
        drawing->append(std::move(node));
        drawing->setData(nodeEntity, kNodeKey, itemsOf(NodeData{L"{N" + number + L"}", L"M" + number}));
        auto line = std::make_unique<AcDbLine>(AcGePoint3d(i % 200 * 50.0, i / 200 * 50.0),
                                               AcGePoint3d(i % 200 * 50.0 + 50.0, i / 200 * 50.0));
        AcDbEntity &entity = *line;
        drawing->append(std::move(line));
        drawing->setData(entity, kSectionKey,
                         itemsOf(SectionData{L"{S" + number + L"}", L"D" + number, 50.0, L"{N" + number + L"}",
                                             L"{N" + std::to_wstring(i + 1) + L"}"}));
    }
    setWorkingDrawing(drawing.get());
    return drawing;
}

void FillSections(benchmark::State &state)
{
    const auto drawing = networkOf(kSections);
    NetworkWatch watch;
    watch.setDrawing(drawing.get());
    for (auto _ : state) {
        SectionsModel sections(watch);
        sections.bringUpToDate();
        benchmark::DoNotOptimize(sections.rowCount());
    }
    watch.setDrawing(nullptr);
    setWorkingDrawing(nullptr);
}
BENCHMARK(FillSections)->Unit(benchmark::kMillisecond);

void OneSectionRenamed(benchmark::State &state)
{
    const auto drawing = networkOf(kSections);
    NetworkWatch watch;
    watch.setDrawing(drawing.get());
    SectionsModel sections(watch);
    PanelOrder order(sections);
    order.sort(SectionsModel::Name);
    sections.bringUpToDate();
    AcDbEntity &entity = *drawing->entitiesWithData(kSectionKey).front();
    int number = 0;
    for (auto _ : state) {
        drawing->setData(entity, kSectionKey,
                         itemsOf(SectionData{L"{S0}", L"X" + std::to_wstring(++number), 50.0, L"{N0}", L"{N1}"}));
        sections.bringUpToDate();
    }
    watch.setDrawing(nullptr);
    setWorkingDrawing(nullptr);
}
BENCHMARK(OneSectionRenamed)->Unit(benchmark::kMillisecond);

void SortSections(benchmark::State &state)
{
    const auto drawing = networkOf(kSections);
    NetworkWatch watch;
    watch.setDrawing(drawing.get());
    SectionsModel sections(watch);
    sections.bringUpToDate();
    PanelOrder order(sections);
    bool up = false;
    for (auto _ : state)
        order.sort(SectionsModel::Name, (up = !up) ? Qt::AscendingOrder : Qt::DescendingOrder);
    watch.setDrawing(nullptr);
    setWorkingDrawing(nullptr);
}
BENCHMARK(SortSections)->Unit(benchmark::kMillisecond);

void FilterSections(benchmark::State &state)
{
    const auto drawing = networkOf(kSections);
    NetworkWatch watch;
    watch.setDrawing(drawing.get());
    SectionsModel sections(watch);
    sections.bringUpToDate();
    PanelOrder order(sections);
    bool one = false;
    for (auto _ : state) {
        order.setFilter((one = !one) ? QStringLiteral("77") : QStringLiteral("123"));
        benchmark::DoNotOptimize(order.rowCount());
    }
    state.counters["shown"] = order.rowCount();
    watch.setDrawing(nullptr);
    setWorkingDrawing(nullptr);
}
BENCHMARK(FilterSections)->Unit(benchmark::kMillisecond);

void CheckNetwork(benchmark::State &state)
{
    const auto drawing = networkOf(kSections);
    for (auto _ : state)
        benchmark::DoNotOptimize(checkNetwork(*drawing));
    setWorkingDrawing(nullptr);
}
BENCHMARK(CheckNetwork)->Unit(benchmark::kMillisecond);

void FillAreas(benchmark::State &state)
{
    const auto drawing = networkOf(100);
    for (int i = 0; i < kAreas; ++i) {
        const std::wstring x = std::to_wstring(i % 100 * 50), y = std::to_wstring(i / 100 * 50),
                           right = std::to_wstring(i % 100 * 50 + 40), top = std::to_wstring(i / 100 * 50 + 40);
        const std::wstring ring = L"POLYGON ((" + x + L" " + y + L", " + right + L" " + y + L", " + right + L" " + top +
                                  L", " + x + L" " + top + L", " + x + L" " + y + L"))";
        ZEMGis::Sewage::CCatchmentAreaManager::Instance()->CreateCA(ring, L"A" + std::to_wstring(i), 1 + i % 7, {});
    }
    for (auto _ : state) {
        AreasModel areas;
        areas.setDrawing(drawing.get());
        areas.bringUpToDate();
        state.counters["rows"] = areas.rowCount();
        areas.setDrawing(nullptr);
    }
    setWorkingDrawing(nullptr);
}
BENCHMARK(FillAreas)->Unit(benchmark::kMillisecond);

/// What the panel of layers costs after one entity of a million was added, and after one was moved to another layer.
void LayersAfterOneChange(benchmark::State &state)
{
    auto drawing = Drawing::createNew();
    for (int i = 0; i < kEntities; ++i)
        drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(i, 0), AcGePoint3d(i, 1)));
    drawing->ensureLayer(L"A");
    LayersModel layers([](const char *, const std::function<void(Drawing &)> &) { return false; });
    layers.setDrawing(drawing.get());
    AcDbEntity &moved = *drawing->modelSpace().entities().front();
    std::size_t layer = 0;
    for (auto _ : state) {
        if (state.range(0) != 0)
            drawing->setLayerOf(moved, layer = 1 - layer);
        else
            drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(0, 1)));
        layers.bringUpToDate();
    }
    layers.setDrawing(nullptr);
}
BENCHMARK(LayersAfterOneChange)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmor

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
