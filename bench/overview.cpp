// The overview over 20,000 sections with 10,000 areas, in one run; it ends with 1 when a bound is missed: reading the
// network, opening with the first picture (beside a plain tree widget that gets the same rows), renaming a node,
// opening all rows, highlighting everything, closing. Times are the processor's.
#include "contracts/CatchmentArea.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"
#include "host/services/Services.h"
#include "overview/NetworkOverviewDlg.h"
#include "overview/OverviewNetwork.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTreeWidget>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <random>
#include <string>

#include <unistd.h>

using namespace velmor;
namespace fs = std::filesystem;

namespace {

constexpr int kSections = 20000, kAreas = 10000, kPerRow = 100;
constexpr double kPitch = 50.0;

double now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

double timeOf(const std::function<void()> &work)
{
    const double start = now();
    work();
    return now() - start;
}

bool isGood = true;

/// Prints a figure, and marks the run as failed when it is beyond its bound.
void figure(const char *what, double value, double most)
{
    const bool holds = value <= most;
    std::printf("  %-44s %9.1f ms (at most %g)%s\n", what, value, most, holds ? "" : "  MISSED");
    isGood = isGood && holds;
    std::fflush(stdout);
}

std::wstring guidOf(char kind, int number)
{
    return L"{" + std::wstring(1, static_cast<wchar_t>(kind)) + L"0000000-0000-0000-0000-" +
           std::to_wstring(100000000000 + number) + L"}";
}

AcGePoint3d placeOf(int i)
{
    return {i % kPerRow * kPitch, i / kPerRow * kPitch};
}

/// A network that branches at every few nodes, each section from a node to one before it.
void makeNetwork(Drawing &drawing)
{
    std::mt19937 random(20261122);
    const std::size_t layer = drawing.ensureLayer(kSectionLayer);
    const auto add = [&](std::unique_ptr<AcDbEntity> made) -> AcDbEntity & {
        AcDbEntity &entity = *made;
        drawing.append(std::move(made));
        drawing.setLayerOf(entity, layer);
        return entity;
    };
    for (int i = 0; i <= kSections; ++i)
        drawing.setData(add(std::make_unique<PointEntity>(placeOf(i))), kNodeKey,
                        itemsOf(NodeData{guidOf('1', i), L"MH" + std::to_wstring(i)}));
    for (int i = 1; i <= kSections; ++i) {
        const int to = i - 1 - static_cast<int>(random() % static_cast<unsigned>(std::min(i, 4)));
        SectionData data;
        data.name = L"S" + std::to_wstring(i);
        data.guid = guidOf('0', i);
        data.startNode = guidOf('1', i);
        data.endNode = guidOf('1', to);
        drawing.setData(add(std::make_unique<AcDbLine>(placeOf(i), placeOf(to))), kSectionKey, itemsOf(data));
    }
}

void makeAreas(Drawing &drawing)
{
    const auto sections = drawing.component<Network>().sections();
    auto &manager = *ZEMGis::Sewage::CCatchmentAreaManager::Instance();
    for (int i = 0; i < kAreas; ++i) {
        const AcGePoint3d at = placeOf(2 * i);
        const auto corner = [&](double dx, double dy) {
            return std::to_wstring(at.x + dx) + L" " + std::to_wstring(at.y + dy);
        };
        const auto area = manager.CreateCA(L"POLYGON ((" + corner(0, 0) + L", " + corner(40, 0) + L", " +
                                               corner(40, 40) + L", " + corner(0, 40) + L", " + corner(0, 0) + L"))",
                                           L"A" + std::to_wstring(i), 1 + i % 3, {});
        area->SetFlowCoeff(0.4 + i % 5 * 0.1);
        const auto first = static_cast<std::size_t>(2 * i);
        manager.AssignCA({{sections[first], 0.5}, {sections[first + 1], 0.5}}, area);
    }
}

/// The rows beneath an item, with all their texts.
void fillBeside(const CTreeListItem &parent, QTreeWidget &list, QTreeWidgetItem *above)
{
    for (const CTreeListItem *at = parent.FirstChild(); at; at = at->Next()) {
        auto *item = above ? new QTreeWidgetItem(above) : new QTreeWidgetItem(&list);
        for (int column = 0; column < kOverviewColumns; ++column)
            item->setText(column, QString::fromStdWString(at->Text(column)));
        fillBeside(*at, list, item);
    }
}

void bench()
{
    Session session;
    session.setMessageSink({});
    session.setDrawing(Drawing::createNew());
    makeNetwork(*session.drawing());
    makeAreas(*session.drawing());
    std::printf("The overview of %d sections with %d areas:\n", kSections, kAreas);
    figure("reading network and areas", timeOf([] { ReadNetwork(); }), 300.0);
    double opened = 0.0, started = 0.0;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        const auto click = [&](int control) {
            return timeOf([&] {
                dialog.Control<QAbstractButton>(control)->click();
                dialog.grab();
            });
        };
        dialog.grab();
        opened = now();
        figure("opening with the first picture", opened - started, 1000.0);
        auto &list = *dialog.Control<CTreeListCtrl>(CNetworkOverviewDlg::kTreeNetwork);
        CTreeListItem *row = list.GetChildItem(list.GetChildItem(nullptr));
        while (list.GetControl(row, kToColumn) != kEditorEdit)
            row = list.GetNextSiblingItem(row);
        const auto renameNode = [&] {
            list.BeginModify(row, kToColumn);
            list.GetEdit()->setText(QStringLiteral("renamed"));
            isGood = list.FinishModify() == 1 && isGood;
        };
        figure("renaming a node where it stands", timeOf(renameNode), 100.0);
        QTreeWidget plain;
        plain.setColumnCount(kOverviewColumns);
        const double beside = timeOf([&] { fillBeside(*list.GetRootItem(), plain, nullptr); });
        std::printf("  %-44s %9.1f ms\n", "a plain tree widget with the same rows", beside);
        figure("opening all rows", click(CNetworkOverviewDlg::kBtnExpand), 300.0);
        figure("highlighting everything", click(CNetworkOverviewDlg::kBtnCheckAll), 1000.0);
        figure("highlighting nothing", click(CNetworkOverviewDlg::kBtnCheckNone), 1000.0);
        started = now();
    });
    started = now();
    {
        CNetworkOverviewDlg dialog;
        dialog.DoModal();
    }
    figure("closing", now() - started, 300.0);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const fs::path folder = fs::temp_directory_path() / ("velmor_bench_overview_" + std::to_string(getpid()));
    fs::create_directories(folder);
    Services::instance().start({.language = "en"}, Paths({fs::path(VELMOR_SOURCE_DIR) / "resources"}, folder));
    bench();
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return isGood ? 0 : 1;
}
