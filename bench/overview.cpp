// The overview over 20,000 sections with 10,000 areas, in one run, side by side with a plain tree widget of the same
// rows and texts; it ends with 1 when a bound is missed: opening it with its first picture, opening all rows,
// highlighting everything and nothing, closing. Then renaming a node where no section drains an area, so that each one
// is a finding. Times are the processor's.
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
#include <optional>
#include <random>
#include <stdexcept>
#include <string>

#include <unistd.h>

using namespace velmor;
namespace fs = std::filesystem;

namespace {

constexpr int kSections = 20000, kAreas = 10000, kPerRow = 100;
constexpr double kPitch = 50.0;
/// Bounds: how many times as long as the peer.
constexpr double kMostOpening = 1.3, kMostExpanding = 1.0, kMostHighlighting = 2.0, kMostClosing = 0.5,
                 kMostRenaming = 10.0;

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

/// Prints a time beside its peer's, and marks the run as failed when their ratio is beyond its bound.
void figure(const char *what, double value, double peer, double most)
{
    const double ratio = value / peer;
    const bool holds = ratio <= most;
    std::printf("  %-34s %9.2f ms, peer %9.2f ms: %.3f (at most %g)%s\n", what, value, peer, ratio, most,
                holds ? "" : "  MISSED");
    isGood = isGood && holds;
    std::fflush(stdout);
}

/// A plain tree widget with the rows of the overview and their check boxes.
class PeerTree {
public:
    explicit PeerTree(const CTreeListCtrl &rows) : m_columns(rows.GetColumnCount())
    {
        m_widget.resize(rows.size());
        m_widget.setColumnCount(m_columns);
        m_widget.setUniformRowHeights(true);
        addBeneath(rows.GetRootItem(), m_widget.invisibleRootItem());
        m_widget.show();
        m_widget.grab();
    }
    void expandAll()
    {
        m_widget.expandAll();
        m_widget.grab();
    }
    void checkAll(Qt::CheckState check)
    {
        for (QTreeWidgetItemIterator at(&m_widget); *at; ++at)
            (*at)->setCheckState(0, check);
        m_widget.grab();
    }

private:
    void addBeneath(const CTreeListItem *rows, QTreeWidgetItem *parent)
    {
        for (const CTreeListItem *row = rows->FirstChild(); row; row = row->Next()) {
            QStringList texts;
            for (int column = 0; column < m_columns; ++column)
                texts.append(QString::fromStdWString(row->Text(column)));
            auto *item = new QTreeWidgetItem(parent, texts);
            item->setCheckState(0, Qt::Unchecked);
            item->setExpanded(row->Level() == 1);
            addBeneath(row, item);
        }
    }
    QTreeWidget m_widget;
    int m_columns;
};

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

void benchRenaming()
{
    Session session;
    session.setMessageSink({});
    session.setDrawing(Drawing::createNew());
    makeNetwork(*session.drawing());
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        auto &tree = *dialog.findChild<CTreeListCtrl *>();
        dialog.grab();
        CTreeListItem *row = tree.GetChildItem(tree.GetChildItem(nullptr));
        while (row && tree.GetItemText(row, kToColumn).empty())
            row = tree.GetNextSiblingItem(row);
        if (!row)
            throw std::logic_error("no section at the outfall");
        // The least that a rename must do besides: each finding's text is looked at once.
        const double peer = timeOf([&] {
            for (QTreeWidgetItemIterator at(dialog.Control<QTreeWidget>(CNetworkOverviewDlg::kTreeFindings)); *at;
                 ++at) {
                if ((*at)->text(0).isEmpty())
                    isGood = false;
            }
        });
        const double renamed = timeOf([&] {
            tree.BeginModify(row, kFromColumn);
            tree.GetEdit()->SetWindowText(L"Renamed");
            tree.FinishModify();
            dialog.grab();
        });
        if (!session.drawing()->component<Network>().nodeByName(L"Renamed")) {
            std::puts("  the node was not renamed");
            isGood = false;
        }
        figure("renaming a node", renamed, peer, kMostRenaming);
    });
    CNetworkOverviewDlg dialog;
    dialog.DoModal();
}

void bench()
{
    Session session;
    session.setMessageSink({});
    session.setDrawing(Drawing::createNew());
    makeNetwork(*session.drawing());
    makeAreas(*session.drawing());
    std::printf("The overview of %d sections with %d areas:\n", kSections, kAreas);
    const double reading = timeOf([] { ReadNetwork(); });
    double started = 0.0, filled = 0.0;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        const auto click = [&](int control) {
            return timeOf([&] {
                dialog.Control<QAbstractButton>(control)->click();
                dialog.grab();
            });
        };
        dialog.grab();
        const double opened = now() - started;
        std::optional<PeerTree> peer;
        filled = timeOf([&] { peer.emplace(*dialog.findChild<CTreeListCtrl *>()); });
        figure("opening with the first picture", opened, reading + filled, kMostOpening);
        figure("opening all rows", click(CNetworkOverviewDlg::kBtnExpand), timeOf([&] { peer->expandAll(); }),
               kMostExpanding);
        figure("highlighting everything", click(CNetworkOverviewDlg::kBtnCheckAll),
               timeOf([&] { peer->checkAll(Qt::Checked); }), kMostHighlighting);
        figure("highlighting nothing", click(CNetworkOverviewDlg::kBtnCheckNone),
               timeOf([&] { peer->checkAll(Qt::Unchecked); }), kMostHighlighting);
        peer.reset();
        started = now();
    });
    started = now();
    {
        CNetworkOverviewDlg dialog;
        dialog.DoModal();
    }
    figure("closing", now() - started, filled, kMostClosing);
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
    benchRenaming();
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return isGood ? 0 : 1;
}
