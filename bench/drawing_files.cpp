// Drawing files of a made town: loading and saving against dxflib and ezdxf, memory, and the walk over all entities.
//
//   drawing_files [SEGMENTS...]     default 100000 and 1000000
//
// dxflib hands every entity to a listener and keeps nothing itself; the listener here stores lines and arcs, so that
// they can be written. Everything runs in one process but memory and ezdxf, and each figure is the best of some runs.
#include "bench/MadeTown.h"
#include "host/drawing/Drawing.h"

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

using namespace velmor;

namespace {

double secondsOf(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double bestOf(int runs, const std::function<void()> &work)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i)
        best = std::min(best, secondsOf(work));
    return best;
}

std::unique_ptr<AcDbEntity> entityOf(const boundary::Piece &piece)
{
    if (piece.bulge == 0.0)
        return std::make_unique<AcDbLine>(AcGePoint3d(piece.a.x, piece.a.y), AcGePoint3d(piece.b.x, piece.b.y));
    const double f = (1.0 - piece.bulge * piece.bulge) / (4.0 * piece.bulge);
    const double x = 0.5 * (piece.a.x + piece.b.x) - f * (piece.b.y - piece.a.y);
    const double y = 0.5 * (piece.a.y + piece.b.y) + f * (piece.b.x - piece.a.x);
    double start = std::atan2(piece.a.y - y, piece.a.x - x), end = std::atan2(piece.b.y - y, piece.b.x - x);
    if (piece.bulge < 0.0)
        std::swap(start, end);
    return std::make_unique<AcDbArc>(AcGePoint3d(x, y), std::hypot(piece.a.x - x, piece.a.y - y), start, end);
}

void makeFile(std::size_t segments, bool isR12, const std::string &path)
{
    std::unique_ptr<Drawing> drawing;
    if (isR12)
        drawing = Drawing::read("0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n").drawing;
    else
        drawing = Drawing::createNew();
    const auto town = bench::TownMaker(segments, 1).make();
    const std::size_t parcels = drawing->ensureLayer(L"PARCELS", 3);
    drawing->setCurrentLayer(parcels);
    for (const boundary::Piece &piece : town.pieces)
        drawing->append(entityOf(piece));
    if (const auto saved = drawing->save(path); !saved) {
        std::fprintf(stderr, "%s\n", saved.message.c_str());
        std::exit(3);
    }
}

/// What a program on dxflib keeps of lines and arcs.
class Listener final : public DL_CreationAdapter {
public:
    void addLine(const DL_LineData &data) override { lines.emplace_back(data, getAttributes()); }
    void addArc(const DL_ArcData &data) override { arcs.emplace_back(data, getAttributes()); }
    std::vector<std::pair<DL_LineData, DL_Attributes>> lines;
    std::vector<std::pair<DL_ArcData, DL_Attributes>> arcs;
};

class Silent final : public DL_CreationAdapter {};

void writeWithDxflib(const Listener &listener, const std::string &path)
{
    DL_Dxf dxf;
    DL_WriterA *writer = dxf.out(path.c_str(), DL_VERSION_2000);
    dxf.writeHeader(*writer);
    writer->sectionEnd();
    writer->sectionEntities();
    for (const auto &[data, attributes] : listener.lines)
        dxf.writeLine(*writer, data, attributes);
    for (const auto &[data, attributes] : listener.arcs)
        dxf.writeArc(*writer, data, attributes);
    writer->sectionEnd();
    writer->dxfEOF();
    writer->close();
    delete writer;
}

/// Most memory that this process has used so far, in kilobytes.
long peakKilobytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::stol(line.substr(6));
    return 0;
}

/// Most memory that loading a file takes, in bytes: a fresh process of this program that loads it, against one that
/// loads nothing.
double memoryOfLoading(const std::string &path)
{
    const std::string program = std::filesystem::read_symlink("/proc/self/exe");
    const auto peak = [&](const std::string &file) {
        FILE *pipe = ::popen((program + " --load '" + file + "'").c_str(), "r");
        long kilobytes = 0;
        if (pipe && std::fscanf(pipe, "%ld", &kilobytes) != 1)
            kilobytes = 0;
        if (pipe)
            ::pclose(pipe);
        return static_cast<double>(kilobytes) * 1024.0;
    };
    return peak(path) - peak("");
}

/// A walk over all records and all entities, each opened, tested for its class and closed; or by seeking the
/// class, as boundary tracing does.
std::size_t walk(AcDbDatabase &database, bool opening)
{
    std::size_t polylines = 0;
    AcDbBlockTable *table = nullptr;
    database.getBlockTable(table, AcDb::kForRead);
    AcDbBlockTableIterator *records = nullptr;
    table->newIterator(records);
    table->close();
    for (records->start(); !records->done(); records->step()) {
        AcDbBlockTableRecord *record = nullptr;
        if (records->getRecord(record, AcDb::kForRead) != Acad::eOk)
            continue;
        AcDbBlockTableRecordIterator *entities = nullptr;
        record->newIterator(entities);
        record->close();
        const auto seek = [&] {
            if (!opening)
                entities->seek(AcDbPolyline::desc(), AcDb2dPolyline::desc());
        };
        for (entities->start(), seek(); !entities->done(); entities->step(), seek()) {
            if (!opening) {
                ++polylines;
                continue;
            }
            AcDbEntity *entity = nullptr;
            if (entities->getEntity(entity, AcDb::kForRead) != Acad::eOk)
                continue;
            const AcRxClass *kind = entity->isA();
            polylines += kind == AcDbPolyline::desc() || kind == AcDb2dPolyline::desc();
            entity->close();
        }
        delete entities;
    }
    delete records;
    return polylines;
}

double ezdxfSeconds(const std::string &path)
{
    const std::string command = "/usr/bin/python3 -c \"import time, ezdxf; t = time.perf_counter(); ezdxf.readfile('" +
                                path + "'); print(time.perf_counter() - t)\" 2>/dev/null";
    FILE *pipe = ::popen(command.c_str(), "r");
    double seconds = 0.0;
    if (pipe && std::fscanf(pipe, "%lf", &seconds) != 1)
        seconds = 0.0;
    if (pipe)
        ::pclose(pipe);
    return seconds;
}

void compare(std::size_t segments, bool isR12, const std::filesystem::path &folder)
{
    const std::string path = folder / "town.dxf", copy = folder / "copy.dxf";
    if (const pid_t child = ::fork(); child == 0) { // so that its memory does not count below
        makeFile(segments, isR12, path);
        ::_exit(0);
    }
    int status = 0;
    ::wait(&status);
    const double size = static_cast<double>(std::filesystem::file_size(path));
    std::printf("%zu segments, %s, %.1f MB\n", segments, isR12 ? "R12" : "2013", size / 1e6);

    const double memory = memoryOfLoading(path);
    const int runs = segments > 300000 ? 3 : 5;
    const double load = bestOf(runs, [&] { const auto r = Drawing::load(path); });
    const double loadSave = bestOf(runs, [&] {
        const auto r = Drawing::load(path);
        r.drawing->append(std::make_unique<AcDbLine>());
        r.drawing->save(copy, {.backup = false});
    });
    const double theirRead = bestOf(runs, [&] {
        Silent silent;
        DL_Dxf().in(path, &silent);
    });
    const double theirReadWrite = bestOf(2, [&] {
        Listener listener;
        DL_Dxf().in(path, &listener);
        writeWithDxflib(listener, copy);
    });
    const double python = ezdxfSeconds(path);

    const auto drawing = Drawing::load(path).drawing;
    std::size_t count = 0;
    for (const auto &block : drawing->blocks())
        count += block->entities().size();
    const auto each = static_cast<double>(count);
    std::size_t opened = 0, sought = 0;
    const double opening = bestOf(25, [&] { opened = walk(*drawing, true); }) / each;
    const double seeking = bestOf(25, [&] { sought = walk(*drawing, false); }) / each;
    if (opened != sought) {
        std::fprintf(stderr, "%zu polylines were opened, %zu found by their class\n", opened, sought);
        std::exit(3);
    }

    std::printf(
        "  load                 %8.1f ms  %6.0f MB/s   dxflib reads in %8.1f ms (%.0f MB/s): ratio %.3f (0.3)\n",
        load * 1e3, size / load / 1e6, theirRead * 1e3, size / theirRead / 1e6, load / theirRead);
    std::printf("  load, change, save   %8.1f ms                dxflib       %8.1f ms: ratio %.3f (0.2)\n",
                loadSave * 1e3, theirReadWrite * 1e3, loadSave / theirReadWrite);
    if (python > 0.0)
        std::printf("  ezdxf reads in %.1f ms: ratio %.4f (0.05)\n", python * 1e3, load / python);
    std::printf("  memory %.1f MB: %.2f times the file (3)\n", memory / 1e6, memory / size);
    std::printf("  walk over %zu entities: %.2f ns each opened (5), %.2f ns each by seeking\n", count, opening * 1e9,
                seeking * 1e9);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && std::string(argv[1]) == "--load") {
        const auto result = *argv[2] ? Drawing::load(argv[2]) : LoadResult();
        std::printf("%ld\n", peakKilobytes());
        return 0;
    }
    std::vector<std::size_t> sizes;
    for (int i = 1; i < argc; ++i)
        sizes.push_back(std::stoul(argv[i]));
    if (sizes.empty())
        sizes = {100000, 1000000};
    const auto folder = std::filesystem::temp_directory_path() / ("drawing_files_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    for (const std::size_t size : sizes)
        for (const bool isR12 : {false, true})
            compare(size, isR12, folder);
    std::filesystem::remove_all(folder);
}
