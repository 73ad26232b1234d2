// The catchment review with 10,000 areas on 20,000 sections, in one run:
//   review [--store | --frames | --dialog]
// It ends with 1 when a bound is missed. Three parts, each alone with its option:
// The store: what the review asks of it, per area with 2,500 and with 10,000 areas, which must not grow with their
// number. The frames: painting 10,000 marks over a town, whole and zoomed in, with a coarse and with a very fine
// pattern. The dialog: opening, selecting, checking and writing all, and the memory that it holds; its tree is filled
// side by side with a plain tree widget that gets the same rows.
//
// Times are the processor's, and each part runs in a process of its own, so what else runs on the machine hardly
// counts.
#include "contracts/CatchmentArea.h"
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Transient.h"
#include "host/editor/DisplayIndex.h"
#include "host/editor/Session.h"
#include "host/editor/ViewPicture.h"
#include "host/network/Catalog.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"
#include "host/services/Services.h"
#include "host/sewage/CatchmentStore.h"
#include "review/DlgEditCatchmentArea.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTreeWidget>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>

using namespace velmor;
namespace fs = std::filesystem;

namespace {

using ZEMGis::Sewage::CatchmentAreas;
using ZEMGis::Sewage::CCatchmentAreaManager;
using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;

constexpr int kAreas = 10000;
constexpr int kPerRow = 100;
constexpr double kPitch = 50.0;
constexpr double kQuarterPi = 0.7853981633974483;

/// Time of the processor, milliseconds.
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

/// Megabytes that are in use now.
double usedMegabytes()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

bool isGood = true;

/// Prints a figure, and marks the run as failed when it is beyond its bound.
void figure(const char *what, double value, const char *unit, double most)
{
    const bool holds = value <= most;
    std::printf("  %-62s %9.2f %-8s (at most %g)%s\n", what, value, unit, most, holds ? "" : "  MISSED");
    isGood = isGood && holds;
    std::fflush(stdout);
}

CCatchmentAreaManager &manager()
{
    return *CCatchmentAreaManager::Instance();
}

CatchmentAreas allAreas()
{
    CatchmentAreas areas;
    manager().GetAllCatchmentAreas(areas, ZEMGis::Sewage::kTypeAll);
    return areas;
}

std::wstring polygonAt(int i)
{
    const double x = i % kPerRow * kPitch, y = i / kPerRow * kPitch;
    const auto at = [&](double dx, double dy) { return std::to_wstring(x + dx) + L" " + std::to_wstring(y + dy); };
    return L"POLYGON ((" + at(0, 0) + L", " + at(40, 3) + L", " + at(44, 20) + L", " + at(37, 41) + L", " + at(12, 44) +
           L", " + at(2, 30) + L", " + at(0, 0) + L"))";
}

std::wstring guidOf(char kind, int number)
{
    return L"{" + std::wstring(1, static_cast<wchar_t>(kind)) + L"0000000-0000-0000-0000-" +
           std::to_wstring(100000000000 + number) + L"}";
}

/// Two sections for each area, from node to node; the text of a drawing with nothing else.
std::string networkOf(int areas)
{
    auto drawing = Drawing::createNew();
    const std::size_t layer = drawing->ensureLayer(kSectionLayer);
    const auto add = [&](std::unique_ptr<AcDbEntity> made) -> AcDbEntity & {
        AcDbEntity &entity = *made;
        drawing->append(std::move(made));
        drawing->setLayerOf(entity, layer);
        return entity;
    };
    const auto placeOf = [](int i) {
        const int place = i / 2;
        return AcGePoint3d(place % kPerRow * kPitch + 5.0, place / kPerRow * kPitch + 10.0 + i % 2 * 15.0);
    };
    for (int i = 0; i <= 2 * areas; ++i)
        drawing->setData(add(std::make_unique<PointEntity>(placeOf(i))), kNodeKey,
                         itemsOf(NodeData{guidOf('1', i), L"MH" + std::to_wstring(i)}));
    for (int i = 0; i < 2 * areas; ++i) {
        const AcGePoint3d from = placeOf(i);
        SectionData data;
        data.name = L"MH" + std::to_wstring(i) + L"-MH" + std::to_wstring(i + 1);
        data.guid = guidOf('0', i);
        data.startNode = guidOf('1', i);
        data.endNode = guidOf('1', i + 1);
        drawing->setData(add(std::make_unique<AcDbLine>(from, AcGePoint3d(from.x + 30.0, from.y))), kSectionKey,
                         itemsOf(data));
    }
    return drawing->write();
}

/// Defines the areas on the working drawing, each on its two sections.
void defineAreas(Drawing &drawing, int count)
{
    const auto sections = drawing.component<Network>().sections();
    for (int i = 0; i < count; ++i) {
        const auto area = manager().CreateCA(polygonAt(i), L"MH" + std::to_wstring(i) + L"_1", 1 + i % 3, {});
        area->SetFlowCoeff(0.4 + i % 5 * 0.1);
        area->SetPopulation(80.0 + i % 3);
        const auto at = static_cast<std::size_t>(2 * i);
        manager().AssignCA({{sections[at], 0.5}, {sections[at + 1], 0.5}}, area);
    }
}

/// A host without a window, as scripts have it.
class Host {
public:
    Host()
        : m_folder(fs::temp_directory_path() / ("velmor_bench_" + std::to_string(getpid()))),
          m_application(m_count, m_arguments)
    {
        fs::create_directories(m_folder);
        Services::instance().start({.language = "en"}, Paths({fs::path(VELMOR_SOURCE_DIR) / "resources"}, m_folder));
        m_session.setMessageSink([](MessageKind, const std::wstring &) {});
    }
    ~Host()
    {
        m_session.setDrawing(nullptr);
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }
    Session &session() { return m_session; }
    /// Opens a drawing with that many areas as a person has it: out of a file.
    Drawing &open(int areas)
    {
        m_session.setDrawing(Drawing::read(networkOf(areas)).drawing);
        defineAreas(*m_session.drawing(), areas);
        m_session.setDrawing(Drawing::read(m_session.drawing()->write()).drawing);
        return *m_session.drawing();
    }

private:
    int m_count = 1;
    char m_name[7] = "review";
    char *m_arguments[2] = {m_name, nullptr};
    fs::path m_folder;
    QApplication m_application;
    Session m_session;
};

// --- The store ----------------------------------------------------------------------------------------------

struct Cost {
    const char *what;
    double milliseconds; ///< for all areas
};

/// What each operation takes over all areas of a drawing with that many; changes are one step, as in a dialog.
std::vector<Cost> storeCosts(Host &host, int count)
{
    Drawing &drawing = host.open(count);
    auto &log = drawing.component<ChangeLog>();
    std::vector<Cost> costs;
    CatchmentAreas areas;
    costs.push_back({"GetAllCatchmentAreas, the first time", timeOf([&] { areas = allAreas(); })});
    const auto measure = [&](const char *what, const std::function<void(const AreaPtr &)> &work) {
        log.begin(L"bench");
        costs.push_back({what, timeOf([&] {
                             for (const AreaPtr &area : areas)
                                 work(area);
                         })});
        log.keep();
    };
    ZEMGis::Sewage::SectionShares sections;
    measure("GetConnectedSections, the first time", [&](const AreaPtr &area) { area->GetConnectedSections(sections); });
    measure("GetConnectedSections", [&](const AreaPtr &area) { area->GetConnectedSections(sections); });
    measure("GetCatchmentAreaByGuid", [&](const AreaPtr &area) { manager().GetCatchmentAreaByGuid(area->GetGuid()); });
    measure("GetArea", [](const AreaPtr &area) { area->GetArea(); });
    measure("SetFlowCoeff", [](const AreaPtr &area) { area->SetFlowCoeff(0.55); });
    measure("SetPopulation", [](const AreaPtr &area) { area->SetPopulation(120.5); });
    measure("SetType", [](const AreaPtr &area) { area->SetType(3); });
    measure("SetName", [](const AreaPtr &area) { area->SetName(L"one name for all"); });
    measure("SetConnectedSectionShare", [&](const AreaPtr &area) {
        area->GetConnectedSections(sections);
        area->SetConnectedSectionShare(sections.front().first, 0.25, 1);
    });
    const auto catalog = ZEMGis::Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
    auto &types = *catalog->GetAllElementsMap();
    for (const char *what : {"WriteCatchmentLabel, new", "WriteCatchmentLabel, again"})
        measure(what, [&](const AreaPtr &area) {
            manager().WriteCatchmentLabel(area, std::next(types.begin())->second.get());
        });
    const wchar_t *pattern = L"ANSI31";
    measure("Mark", [&](const AreaPtr &area) { area->Mark(3, 1.0, kQuarterPi, pattern, 0); });
    measure("UnMark", [](const AreaPtr &area) { area->UnMark(); });
    measure("Mark once more", [&](const AreaPtr &area) { area->Mark(3, 1.0, kQuarterPi, pattern, 0); });
    costs.push_back({"UnMarkAllCatchments", timeOf([] { manager().UnMarkAllCatchments(7); })});
    measure("highlight", [](const AreaPtr &area) {
        AcDbEntity *entity = nullptr;
        if (acdbOpenAcDbEntity(entity, area->GetObjectId(), AcDb::kForWrite) == Acad::eOk) {
            entity->highlight(AcDbFullSubentPath(), false);
            entity->close();
        }
    });
    measure("unhighlight", [](const AreaPtr &area) {
        AcDbEntity *entity = nullptr;
        if (acdbOpenAcDbEntity(entity, area->GetObjectId(), AcDb::kForWrite) == Acad::eOk) {
            entity->unhighlight(AcDbFullSubentPath(), false);
            entity->close();
        }
    });
    boost::shared_ptr<ZEMGis::Topology::CSpatialIndex> index;
    costs.push_back({"CreateCustomSpatialIndex and SetSpatialIndexCA", timeOf([&] {
                         std::vector<ZEMGis::Topology::CEntity *> entities;
                         for (const AreaPtr &area : areas)
                             entities.push_back(area.get());
                         index = ZEMGis::Topology::CTopoEditor::Instance()->CreateCustomSpatialIndex(entities);
                         CCatchmentAreaManager::SetSpatialIndexCA(index);
                     })});
    auto &store = drawing.component<CatchmentStore>();
    std::size_t found = 0;
    measure("a pick", [&](const AreaPtr &area) { found += store.areaAt(area->GetCenterPoint()) == area; });
    if (found != areas.size())
        std::printf("  only %zu of %zu areas are found by their centres\n", found, areas.size());
    isGood = isGood && found == areas.size();
    costs.push_back({"RefreshExistingCatchments", timeOf([] { manager().RefreshExistingCatchments(); })});
    measure("DeleteCatchmentLabel", [](const AreaPtr &area) { manager().DeleteCatchmentLabel(area); });
    measure("DeleteCA", [](const AreaPtr &area) { manager().DeleteCA(area); });
    return costs;
}

void benchStore()
{
    Host host;
    const auto few = storeCosts(host, kAreas / 4), many = storeCosts(host, kAreas);
    std::printf("the store: microseconds an area, with %d and with %d areas\n", kAreas / 4, kAreas);
    for (std::size_t i = 0; i < many.size(); ++i) {
        const double small = few[i].milliseconds * 1e3 / (kAreas / 4), large = many[i].milliseconds * 1e3 / kAreas;
        // What takes no time can't be told from what the machine does beside it.
        const bool holds = large <= std::max(2.0 * small, small + 1.0) && large <= 100.0;
        std::printf("  %-50s %9.3f %9.3f%s\n", many[i].what, small, large, holds ? "" : "  MISSED");
        isGood = isGood && holds;
    }
}

// --- Frames -------------------------------------------------------------------------------------------------

void benchFrames()
{
    Host host;
    Drawing &drawing = host.open(kAreas);
    const CatchmentAreas areas = allAreas();
    auto &index = drawing.component<DisplayIndex>();
    ViewTransform all;
    all.size = {1600, 1000};
    all.show(index.visibleExtents());
    ViewTransform near = all;
    near.pixelsPerUnit = 4.0;
    const PaintStyle style = PaintStyle::light();
    const auto markAll = [&](double scale, const wchar_t *pattern) {
        for (const AreaPtr &area : areas)
            area->Mark(3, scale, kQuarterPi, pattern, 0);
    };
    std::printf("frames of %d marks, %g by %g pixels\n", kAreas, all.size.width(), all.size.height());
    struct Case {
        const char *what;
        const wchar_t *pattern;
        double scale;
        const ViewTransform &view;
    };
    const Case cases[] = {
        {"all of them, ANSI31 at scale 1", L"ANSI31", 1.0, all},
        {"a part of them, ANSI31 at scale 1", L"ANSI31", 1.0, near},
        {"all of them, ANSI31 at scale 0.001", L"ANSI31", 0.001, all},
        {"a part of them, ANSI31 at scale 0.001", L"ANSI31", 0.001, near},
        {"all of them, dots at scale 0.01", L"DOTS", 0.01, all},
        {"a part of them, dots at scale 0.5", L"DOTS", 0.5, near},
        {"all of them, filled", L"SOLID", 1.0, all},
    };
    for (const Case &it : cases) {
        ViewPicture picture;
        markAll(it.scale, it.pattern);
        picture.base(drawing, it.view, style, 1.0);
        const double first = timeOf([&] { picture.overlay(drawing, it.view, style, 1.0); });
        markAll(it.scale, it.pattern);
        const double again = timeOf([&] { picture.overlay(drawing, it.view, style, 1.0); });
        ViewTransform moved = it.view;
        moved.panBy({16.0, 0.0});
        const double step = timeOf([&] { picture.overlay(drawing, moved, style, 1.0); });
        figure((std::string(it.what) + ", first").c_str(), first, "ms", 250.0);
        figure((std::string(it.what) + ", again").c_str(), again, "ms", 150.0);
        figure((std::string(it.what) + ", a step of panning").c_str(), step, "ms", 30.0);
    }
}

// --- The dialog ---------------------------------------------------------------------------------------------

class Dialog : public CDlgEditCatchmentArea {
public:
    void click(int control)
    {
        Control<QAbstractButton>(control)->click();
        settle();
    }
    QTreeWidget &tree() { return *Control<QTreeWidget>(kTree); }
    void select(int row)
    {
        tree().setCurrentItem(tree().topLevelItem(row));
        settle();
    }
    /// What was posted runs, and what changed is painted.
    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    static constexpr int kTree = 107, kCheckAll = 124, kUncheckAll = 125, kWriteData = 127, kIndustry = 133, kAll = 134,
                         kErase = 250, kRename = 260;
};

/// The rows of the dialog's tree, for the plain one, which gets ready texts and asks no store.
struct Row {
    QString name;
    QStringList sections;
};

std::vector<Row> rowsOf(QTreeWidget &tree)
{
    std::vector<Row> rows;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        const QTreeWidgetItem &item = *tree.topLevelItem(i);
        rows.push_back({item.text(0), {}});
        for (int k = 0; k < item.childCount(); ++k)
            rows.back().sections.append(item.child(k)->text(0));
    }
    return rows;
}

void fillPlain(QTreeWidget &tree, const std::vector<Row> &rows)
{
    QList<QTreeWidgetItem *> items;
    const auto made = [](const QString &text) {
        auto *item = new QTreeWidgetItem({text});
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Unchecked);
        return item;
    };
    for (const Row &row : rows) {
        items.append(made(row.name));
        for (const QString &section : row.sections)
            items.back()->addChild(made(section));
    }
    tree.addTopLevelItems(items);
    Dialog::settle();
}

void benchDialog()
{
    Host host;
    host.open(kAreas);
    std::printf("the dialog with %d areas and %d sections\n", kAreas, 2 * kAreas);
    const double before = usedMegabytes();
    double opened = 0.0;
    const auto atTheDialog = [&](const std::function<void(Dialog &)> &work) {
        const double start = now();
        host.session().setDialogDriver([&](CAdUiBaseDialog &shown) {
            Dialog::settle();
            opened = now() - start;
            work(static_cast<Dialog &>(shown));
        });
        Dialog dialog;
        dialog.DoModal();
    };
    atTheDialog([&](Dialog &) {
        figure("opening it for the first time", opened, "ms", 1500.0);
        figure("memory above the drawing", usedMegabytes() - before, "MB", 200.0);
    });
    double closed = now();
    atTheDialog([&](Dialog &dialog) {
        figure("opening it once more", opened, "ms", 1500.0);
        if (dialog.tree().topLevelItemCount() != kAreas) {
            std::printf("  the tree has %d areas\n", dialog.tree().topLevelItemCount());
            isGood = false;
            return;
        }
        const std::vector<Row> rows = rowsOf(dialog.tree());
        QTreeWidget plain;
        plain.setUniformRowHeights(true);
        plain.setHeaderHidden(true);
        plain.resize(dialog.tree().size());
        plain.show();
        double ours = 1e300, others = 1e300;
        for (int i = 0; i < 15; ++i) {
            dialog.click(Dialog::kIndustry); // there are none
            ours = std::min(ours, timeOf([&] { dialog.click(Dialog::kAll); }));
            plain.clear();
            others = std::min(others, timeOf([&] { fillPlain(plain, rows); }));
        }
        std::printf("  filling the tree %.1f ms, a plain one %.1f ms\n", ours, others);
        figure("filling the tree over filling a plain one", ours / others, "", 1.5);

        const auto slowest = [&] {
            double worst = 0.0;
            for (int i = 0; i < 40; ++i)
                worst = std::max(worst, timeOf([&] { dialog.select(i * 7919 % kAreas); }));
            return worst;
        };
        figure("selecting an item, the slowest of 40", slowest(), "ms", 50.0);
        const double checked = timeOf([&] { dialog.click(Dialog::kCheckAll); });
        const double written = timeOf([&] { dialog.click(Dialog::kWriteData); });
        std::printf("  checking all %.1f ms, writing to all %.1f ms\n", checked, written);
        figure("checking all and writing to all", checked + written, "ms", 2000.0);
        figure("writing to all once more, over the labels that stand",
               timeOf([&] { dialog.click(Dialog::kWriteData); }), "ms", 2000.0);
        figure("selecting an item with all checked, the slowest of 40", slowest(), "ms", 50.0);
        figure("unchecking all", timeOf([&] { dialog.click(Dialog::kUncheckAll); }), "ms", 500.0);
        figure("naming all by their nodes", timeOf([&] { dialog.click(Dialog::kRename); }), "ms", 1000.0);
        if (allAreas().front()->GetName() != L"MH0") {
            std::printf("  no area got the name of its node\n");
            isGood = false;
        }
        std::printf("  memory above the drawing with all labels and the step that takes them back: %.1f MB\n",
                    usedMegabytes() - before);
        dialog.click(Dialog::kCheckAll);
        host.session().answers().push({std::wstring(L"Yes")});
        figure("erasing all", timeOf([&] { dialog.click(Dialog::kErase); }), "ms", 1000.0);
        closed = now();
    });
    figure("closing it", now() - closed, "ms", 500.0);
    const std::size_t left = allAreas().size();
    auto &log = host.session().drawing()->component<ChangeLog>();
    figure("taking the erasing back", timeOf([&] { log.undo(); }), "ms", 1000.0);
    if (left != 0 || allAreas().size() != static_cast<std::size_t>(kAreas)) {
        std::printf("  %zu areas were left, and %zu came back\n", left, allAreas().size());
        isGood = false;
    }
    if (!host.session().alerts().empty()) {
        std::printf("  an alert: %ls\n", host.session().alerts().front().c_str());
        isGood = false;
    }
}

/// Runs a part in a child process.
void apart(const std::function<void()> &part)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        part();
        std::fflush(stdout);
        _exit(isGood ? 0 : 1);
    }
    int status = 1;
    waitpid(child, &status, 0);
    isGood = isGood && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const auto wanted = [&](const char *option) { return argc == 1 || std::strcmp(argv[1], option) == 0; };
    if (wanted("--store"))
        apart(benchStore);
    if (wanted("--frames"))
        apart(benchFrames);
    if (wanted("--dialog"))
        apart(benchDialog);
    return isGood ? 0 : 1;
}
