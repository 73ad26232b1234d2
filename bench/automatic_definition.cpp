// The automatic definition of a made town against GEOS, in one run:
//   automatic_definition [--no-geos] [--no-curves] [--recovery] [--only SECTIONS SEGMENTS [--islands]]
// It ends with 1 when a bound is missed, when a run saves fewer areas than its sections have regions, or when ours and
// GEOS differ over how many regions these are.
// Ours is the whole road of a person: the dialog is opened, the sections are selected, Auto is clicked (a trace for
// each section with the two walks over the whole drawing, the tests of boundaries against sections, a saved area for
// each region), and the dialog is closed. GEOS nodes the same linework once (OverlayNGRobust), makes polygons of it and
// finds the one around each section. Then the curves over sections and over segments, and what 5,000 areas cost.
//
// Each leg runs in a process of its own, and its time is the processor's; the curves take the better of two. --recovery
// keeps a journal of the steps in a folder of its own, as the program with a window does. --only runs one road, to look
// at it with a profiler.
#include "bench/MadeTown.h"
#include "contracts/CatchmentArea.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "geometry/ZEMCBoundary.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/Recovery.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"
#include "host/services/Services.h"
#include "tests/host/boundary/Referee.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <tuple>

using namespace velmor;
namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kSeed = 1;

/// Time of the processor: what else runs on the machine does not count.
double now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Megabytes that are in use now.
double usedMegabytes()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

struct Leg {
    double open = 0.0, select = 0.0, run = 0.0, close = 0.0; ///< seconds
    double walks = 0.0, traces = 0.0;                        ///< parts of the run, measured once more by themselves
    double megabytes = 0.0;
    std::size_t areas = 0, regions = 0;
    double total() const { return open + select + run + close; }
};

/// Runs the leg in a child process.
Leg apart(const std::function<void(Leg &)> &run)
{
    int ends[2];
    if (pipe(ends) != 0)
        return {};
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        Leg leg;
        run(leg);
        const ssize_t written = write(ends[1], &leg, sizeof leg);
        _exit(written == sizeof leg ? 0 : 1);
    }
    Leg leg;
    const ssize_t got = read(ends[0], &leg, sizeof leg);
    close(ends[0]);
    close(ends[1]);
    waitpid(child, nullptr, 0);
    if (got != sizeof leg) {
        std::fprintf(stderr, "a leg died\n");
        std::exit(1);
    }
    return leg;
}

/// Middles of sections in the town's closed streets. A street that comes again has its next section a step beside.
std::vector<boundary::Point> middlesOf(const bench::MadeTown &town, std::size_t sections)
{
    std::vector<boundary::Point> middles;
    for (std::size_t i = 0; i < sections; ++i) {
        const auto round = static_cast<double>(i / town.sections.size());
        const boundary::Point at = town.sections[i % town.sections.size()];
        middles.push_back({at.x + 0.4 * round, at.y + 0.3 * round});
    }
    return middles;
}

std::unique_ptr<AcDbEntity> entityOf(const boundary::Piece &piece)
{
    if (piece.bulge == 0.0)
        return std::make_unique<AcDbLine>(AcGePoint3d(piece.a.x, piece.a.y), AcGePoint3d(piece.b.x, piece.b.y));
    return std::make_unique<AcDbPolyline>(
        std::vector<AcDbPolyline::Vertex>{{piece.a.x, piece.a.y, piece.bulge}, {piece.b.x, piece.b.y, 0.0}}, false);
}

/// A drawing with the town's linework on its boundary layer and that many sections, read from its file's text.
std::unique_ptr<Drawing> drawingOf(const bench::MadeTown &town, std::size_t sections)
{
    auto drawing = Drawing::createNew();
    const std::size_t parcels = drawing->ensureLayer(L"PARCELS"), network = drawing->ensureLayer(kSectionLayer);
    const auto add = [&](std::unique_ptr<AcDbEntity> entity, std::size_t layer) -> AcDbEntity & {
        AcDbEntity &added = *entity;
        drawing->append(std::move(entity));
        drawing->setLayerOf(added, layer);
        return added;
    };
    for (const boundary::Piece &piece : town.pieces)
        add(entityOf(piece), parcels);
    int number = 0;
    for (const boundary::Point &middle : middlesOf(town, sections)) {
        AcDbEntity &section = add(std::make_unique<AcDbLine>(AcGePoint3d(middle.x - 16.0, middle.y - 5.0),
                                                             AcGePoint3d(middle.x + 16.0, middle.y + 5.0)),
                                  network);
        SectionData data;
        data.name = L"D" + std::to_wstring(++number);
        data.guid = L"{" + data.name + L"}";
        drawing->setData(section, kSectionKey, itemsOf(data));
    }
    drawing->setDictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS", {{1, std::wstring(L"PARCELS")}});
    return Drawing::read(drawing->write()).drawing; // as a person has it: out of a file
}

class Dialog : public CDlgCreateCatchmentArea {
public:
    void click(int control) { Control<QAbstractButton>(control)->click(); }
    void choose(int control, int itemData)
    {
        auto *combo = Control<QComboBox>(control);
        combo->setCurrentIndex(combo->findData(itemData));
        Q_EMIT combo->activated(combo->currentIndex());
    }
};

/// A host without a window, as scripts have it.
class Host {
public:
    explicit Host(bool recovery)
        : m_folder(fs::temp_directory_path() / ("velmor_bench_" + std::to_string(getpid()))),
          m_application(m_count, m_arguments)
    {
        fs::create_directories(m_folder);
        Services::instance().start({.language = "en"}, Paths({fs::path(VELMOR_SOURCE_DIR) / "resources"}, m_folder));
        m_session.setMessageSink([](MessageKind, const std::wstring &) {});
        if (recovery)
            Recovery::instance().enable(m_folder / "state", [](const std::wstring &) {});
    }
    ~Host()
    {
        m_session.setDrawing(nullptr);
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }
    Session &session() { return m_session; }
    static std::size_t countAreas()
    {
        ZEMGis::Sewage::CatchmentAreas areas;
        ZEMGis::Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, ZEMGis::Sewage::kTypeAll);
        return areas.size();
    }
    std::vector<AcDbObjectId> sectionIds()
    {
        std::vector<AcDbObjectId> ids;
        for (const auto &section : m_session.drawing()->component<Network>().sections())
            ids.push_back(section->GetObjectId());
        return ids;
    }

private:
    int m_count = 1;
    char m_name[21] = "automatic_definition";
    char *m_arguments[2] = {m_name, nullptr};
    fs::path m_folder;
    QApplication m_application;
    Session m_session;
};

/// The road of a person through the dialog.
void road(Leg &leg, std::size_t sections, std::size_t segments, bool islands, bool recovery)
{
    Host host(recovery);
    const bench::MadeTown town = bench::makeTown(segments, kSeed);
    const std::vector<boundary::Point> middles = middlesOf(town, sections);
    host.session().setDrawing(drawingOf(town, sections));
    const std::vector<AcDbObjectId> ids = host.sectionIds();
    double last = now();
    const auto lap = [&last] {
        const double before = last;
        last = now();
        return last - before;
    };
    host.session().setDialogDriver([&](CAdUiBaseDialog &shown) {
        auto &dialog = static_cast<Dialog &>(shown);
        leg.open = lap();
        host.session().setNextSelection(ids);
        dialog.click(203);
        dialog.choose(257, 2);
        dialog.Control<QAbstractButton>(268)->setChecked(islands);
        dialog.Control<QLineEdit>(215)->setText(QStringLiteral("0.5"));
        leg.select = lap();
        dialog.click(290);
        leg.run = lap();
    });
    {
        Dialog dialog;
        dialog.DoModal();
    }
    leg.close = lap();
    leg.areas = Host::countAreas();

    // What of the run went into the two walks of each trace, and into the traces themselves.
    constexpr int kWalks = 20;
    AcDbObjectIdArray found;
    lap();
    for (int i = 0; i < kWalks; ++i) {
        CZEMCBoundary::RememberPolylines();
        CZEMCBoundary::FindNewPoly(found);
    }
    leg.walks = lap() / kWalks * static_cast<double>(sections);
    boundary::Linework &linework = host.session().drawing()->component<LineworkCache>().ofLayers({L"PARCELS"});
    for (const boundary::Point &middle : middles)
        linework.regionAt(middle, {.islands = islands});
    leg.traces = lap();
    std::set<std::tuple<double, double, double>> outlines;
    for (const boundary::Point &middle : middles) {
        if (const boundary::Region region = linework.regionAt(middle))
            outlines.emplace(region.outer.front().x, region.outer.front().y, boundary::signedArea(region.outer));
    }
    leg.regions = outlines.size();
    if (!host.session().alerts().empty())
        std::fprintf(stderr, "%zu alerts, the first: %ls\n", host.session().alerts().size(),
                     host.session().alerts().front().c_str());
}

void referee(Leg &leg, std::size_t sections, std::size_t segments)
{
    const bench::MadeTown town = bench::makeTown(segments, kSeed);
    const auto middles = middlesOf(town, sections);
    double start = now();
    const boundary::testing::Referee judge(town.pieces, {.perQuarter = 8});
    leg.open = now() - start;
    start = now();
    for (const boundary::Point &middle : middles)
        leg.areas += judge.hasFace(middle) ? 1 : 0;
    leg.run = now() - start;
    std::set<std::string> faces;
    for (const boundary::Point &middle : middles)
        faces.insert(judge.text(middle));
    leg.regions = faces.size();
}

std::wstring squareAt(int i)
{
    const int x = i % 100 * 50, y = i / 100 * 50;
    const auto at = [&](int dx, int dy) { return std::to_wstring(x + dx) + L" " + std::to_wstring(y + dy); };
    return L"POLYGON ((" + at(0, 0) + L", " + at(40, 3) + L", " + at(44, 20) + L", " + at(37, 41) + L", " + at(12, 44) +
           L", " + at(-2, 30) + L", " + at(0, 0) + L"))";
}

/// Opening and closing on a drawing with that many areas; megabytes is what the areas and the dialog hold beyond the
/// drawing with its sections.
void openWith(Leg &leg, int areas)
{
    Host host(false);
    const bench::MadeTown town = bench::makeTown(10000, kSeed);
    host.session().setDrawing(drawingOf(town, 2000));
    const auto sections = host.session().drawing()->component<Network>().sections();
    auto &manager = *ZEMGis::Sewage::CCatchmentAreaManager::Instance();
    const double before = usedMegabytes();
    for (int i = 0; i < areas; ++i) {
        const auto area = manager.CreateCA(squareAt(i), L"A" + std::to_wstring(i), 1, {});
        const auto at = static_cast<std::size_t>(i) % sections.size();
        manager.AssignCA({{sections[at], 0.5}, {sections[(at + 1) % sections.size()], 0.5}}, area);
    }
    const auto open = [&] {
        const double start = now();
        double shown = start;
        host.session().setDialogDriver([&](CAdUiBaseDialog &) {
            shown = now();
            leg.megabytes = usedMegabytes() - before;
        });
        Dialog dialog;
        dialog.DoModal();
        leg.open = shown - start;
        leg.close = now() - shown;
    };
    open(); // what the program makes once
    open();
    leg.areas = Host::countAreas();
}

void printRoad(const char *name, std::size_t sections, std::size_t segments, const Leg &leg)
{
    std::printf("%-8s %5zu sections %8zu segments: open %6.1f ms, select %6.1f ms, run %8.1f ms, close %6.1f ms, "
                "together %8.1f ms, %5zu areas, %.3f ms a section (walks %.0f %%, traces %.0f %% of the run)\n",
                name, sections, segments, leg.open * 1e3, leg.select * 1e3, leg.run * 1e3, leg.close * 1e3,
                leg.total() * 1e3, leg.areas, leg.total() * 1e3 / static_cast<double>(sections),
                leg.walks / leg.run * 100.0, leg.traces / leg.run * 100.0);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    bool withGeos = true, withCurves = true, recovery = false, islands = false;
    std::size_t onlySections = 0, onlySegments = 0;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--no-geos") == 0)
            withGeos = false;
        else if (std::strcmp(argv[i], "--no-curves") == 0)
            withCurves = false;
        else if (std::strcmp(argv[i], "--recovery") == 0)
            recovery = true;
        else if (std::strcmp(argv[i], "--islands") == 0)
            islands = true;
        else if (std::strcmp(argv[i], "--only") == 0 && i + 2 < argc) {
            onlySections = std::stoul(argv[++i]);
            onlySegments = std::stoul(argv[++i]);
        }
    }
    if (onlySections > 0) {
        Leg leg;
        road(leg, onlySections, onlySegments, islands, recovery);
        printRoad(islands ? "islands" : "plain", onlySections, onlySegments, leg);
        return 0;
    }
    bool good = true;
    const auto hold = [&good](bool holds, const char *bound) {
        if (!holds)
            std::printf("MISSED: %s\n", bound);
        good = good && holds;
    };
    const auto measure = [&](std::size_t sections, std::size_t segments, bool withIslands = false) {
        const Leg leg = apart([&](Leg &made) { road(made, sections, segments, withIslands, recovery); });
        printRoad(withIslands ? "islands" : "plain", sections, segments, leg);
        hold(leg.regions > 0, "the sections lie in regions");
        hold(withIslands ? leg.areas >= leg.regions : leg.areas == leg.regions, "an area for each region is saved");
        return leg;
    };
    const Leg own = measure(2000, 100000), withIslands = measure(2000, 100000, true);
    if (withGeos) {
        const Leg other = apart([](Leg &leg) { referee(leg, 2000, 100000); });
        std::printf("GEOS: noding and polygons %.1f ms, finding %.1f ms (%zu found), together %.1f ms\n",
                    other.open * 1e3, other.run * 1e3, other.areas, other.total() * 1e3);
        std::printf("ratio of time %.3f, with islands %.3f; regions: %zu of ours, %zu of GEOS\n",
                    own.total() / other.total(), withIslands.total() / other.total(), own.regions, other.regions);
        hold(own.total() <= 0.75 * other.total(), "at most 0.75 of GEOS");
        hold(own.regions == other.regions, "as many regions as GEOS");
    }
    if (withCurves) {
        // A section costs no more when there are more of them, and what it costs grows no faster than the drawing, but
        // for the little by which memory is slower than the processor's caches.
        constexpr double kUneven = 1.3, kBeyondCaches = 1.2;
        const auto eachOf = [&](std::size_t sections, std::size_t segments) {
            return std::min(measure(sections, segments).total(), measure(sections, segments).total()) /
                   static_cast<double>(sections);
        };
        double first = 0.0, smaller = 0.0;
        for (const std::size_t sections : {250, 500, 1000, 2000, 4000}) {
            const double each = eachOf(sections, 100000);
            first = first == 0.0 ? each : first;
            hold(each <= first * kUneven, "linear in sections");
        }
        for (const std::size_t segments : {10000, 100000, 1000000}) {
            const double each = eachOf(1000, segments);
            if (smaller > 0.0)
                std::printf("ten times the segments: %.2f times the time of a section\n", each / smaller);
            hold(smaller == 0.0 || each <= smaller * 10.0 * kBeyondCaches, "linear in segments");
            smaller = each;
        }
    }
    const Leg none = apart([](Leg &leg) { openWith(leg, 0); });
    const Leg many = apart([](Leg &leg) { openWith(leg, 5000); });
    std::printf("opening the dialog: %.1f ms without areas, %.1f ms with %zu: %.1f ms above; they hold %.1f MB above "
                "the drawing\n",
                none.open * 1e3, many.open * 1e3, many.areas, (many.open - none.open) * 1e3,
                many.megabytes - none.megabytes);
    hold(many.areas == 5000 && many.open - none.open < 0.3, "5,000 areas open in less than 300 ms more");
    hold(many.megabytes - none.megabytes < 100.0, "5,000 areas hold less than 100 MB");
    return good ? 0 : 1;
}
