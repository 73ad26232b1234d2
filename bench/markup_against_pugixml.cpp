// The markup document against pugixml and tinyxml2, as ratios in one run:
//   markup_against_pugixml [--no-million]
// Each leg runs in a process of its own, so that "cold" means memory that nobody has touched yet; the legs of a pair
// take turns, and the median of their ratios counts. Time is that of the processor. Files lie in memory where the
// system offers a folder for that, so that the disk does not count; the last lines tell what saving costs on a disk.
#include "catalog/Markup.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <pugixml.hpp>
#include <tinyxml2.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

double now(clockid_t clock = CLOCK_PROCESS_CPUTIME_ID)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Runs a leg in a child process and gives what it returns.
double apart(const std::function<double()> &run)
{
    int ends[2];
    if (pipe(ends) != 0)
        return 0.0;
    const pid_t child = fork();
    if (child == 0) {
        const double result = run();
        const ssize_t written = write(ends[1], &result, sizeof result);
        _exit(written == sizeof result ? 0 : 1);
    }
    double result = 0.0;
    if (read(ends[0], &result, sizeof result) != sizeof result)
        result = 0.0;
    close(ends[0]);
    close(ends[1]);
    waitpid(child, nullptr, 0);
    return result;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Seconds of the first call in a process.
std::function<double()> cold(std::function<void()> run)
{
    return [run] {
        const double start = now();
        run();
        return now() - start;
    };
}

/// Seconds of one call among many, without the first: the least of them. With `keepMemory` what was freed stays with
/// the process, so that it is as warm as it can be; else malloc decides.
std::function<double()> warm(std::function<void()> run, int times, bool keepMemory = false)
{
    return [run, times, keepMemory] {
        if (keepMemory) {
            mallopt(M_TRIM_THRESHOLD, 1 << 30);
            mallopt(M_MMAP_THRESHOLD, 32 << 20); // the most that is possible
        }
        run();
        double best = 1e9;
        for (int i = 0; i < times; ++i) {
            const double start = now();
            run();
            best = std::min(best, now() - start);
        }
        return best;
    };
}

/// One line: our time, the other's, their ratio and what it may be at most.
void compare(const char *what, const std::function<double()> &ours, const std::function<double()> &other, double limit,
             int turns = 9)
{
    std::vector<double> mine, others, ratios;
    for (int i = 0; i < turns; ++i) {
        mine.push_back(apart(ours));
        others.push_back(apart(other));
        ratios.push_back(mine.back() / others.back());
    }
    const double ratio = median(ratios);
    std::printf("  %-48s %10.3f ms %10.3f ms   %6.2f", what, median(mine) * 1e3, median(others) * 1e3, ratio);
    if (limit > 0.0)
        std::printf(" (at most %.2f)%s", limit, ratio > limit ? "  OVER" : "");
    std::printf("\n");
    std::fflush(stdout);
}

void must(bool holds)
{
    if (!holds) {
        std::fprintf(stderr, "a step of the benchmark failed\n");
        _exit(2);
    }
}

/// Elements of two attributes, one a line.
std::string listOf(int count)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\" ?><Terrains>\r\n";
    for (int i = 0; i < count; ++i) {
        char line[100];
        std::snprintf(line, sizeof line, "<Terrain name=\"type %d\" flow=\"0.%04d\"/>\r\n", i, i % 10000);
        text += line;
    }
    return text + "</Terrains>\r\n";
}

std::wstring wide(const std::string &plain)
{
    return {plain.begin(), plain.end()};
}

std::size_t allocated()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void parseAndMemory(int count)
{
    const std::string bytes = listOf(count);
    const std::wstring text = wide(bytes);
    const int times = count > 500000 ? 5 : 15;
    std::printf("\n%d elements of two attributes, %.1f MB                       ours         other    ratio\n", count,
                static_cast<double>(bytes.size()) / 1e6);
    const auto ours = [&] {
        CMarkup document;
        must(document.SetText(text));
    };
    const auto others = [&] {
        pugi::xml_document document;
        must(document.load_buffer(bytes.data(), bytes.size()));
    };
    // A small one's first touch of memory is mostly that of the process itself.
    const bool isLarge = count >= 100000;
    if (isLarge)
        compare("parse, cold: SetText / pugixml load_buffer", cold(ours), cold(others), 1.5);
    compare("parse, again with new objects", warm(ours, times), warm(others, times), 1.5);
    CMarkup mine;
    pugi::xml_document other;
    compare("parse, again with the same object", warm([&] { must(mine.SetText(text)); }, times, true),
            warm([&] { must(other.load_buffer(bytes.data(), bytes.size())); }, times, true), 1.5);

    const auto perElement = [&](const std::function<std::size_t()> &run) {
        return apart([&] { return static_cast<double>(run()); }) / count;
    };
    const double index = perElement([&] {
        const std::size_t before = allocated();
        CMarkup document;
        document.SetText(text);
        return allocated() - before - text.size() * sizeof(wchar_t);
    });
    const double nodes = perElement([&] {
        const std::size_t before = allocated();
        pugi::xml_document document;
        document.load_buffer(bytes.data(), bytes.size());
        return allocated() - before - bytes.size();
    });
    mine.SetText(text);
    const double told = static_cast<double>(mine.GetMemoryBesideText()) / count;
    std::printf(
        "  memory beside the text, bytes an element            ours %.1f (at most 48)%s; as malloc counts: ours "
        "%.1f, pugixml %.1f\n",
        told, std::max(told, isLarge ? index : 0.0) > 48.0 ? "  OVER" : "", index, nodes);
}

void load(int count, const fs::path &folder)
{
    const std::string file = (folder / "load.xml").string();
    std::ofstream(file, std::ios::binary) << listOf(count);
    const std::wstring name = wide(file);
    const auto ours = cold([&] {
        CMarkup document;
        must(document.Load(name));
    });
    compare("load, cold: Load / pugixml load_file, parse_full", ours, cold([&] {
                pugi::xml_document document;
                must(document.load_file(file.c_str(), pugi::parse_full));
            }),
            1.3);
    compare("load, cold: Load / tinyxml2 LoadFile", ours, cold([&] {
                tinyxml2::XMLDocument document;
                must(document.LoadFile(file.c_str()) == tinyxml2::XML_SUCCESS);
            }),
            0.5, 5);
}

void loadEditSave(const fs::path &folder)
{
    const std::string from = (folder / "edit.xml").string(), to = (folder / "edited.xml").string();
    std::ofstream(from, std::ios::binary) << listOf(1000);
    const std::wstring wideFrom = wide(from), wideTo = wide(to);
    const auto ours = [&] {
        CMarkup document;
        must(document.Load(wideFrom) && document.FindElement() && document.FindChildElement());
        must(document.SetChildAttribute(L"flow", L"0.12345") && document.Save(wideTo));
    };
    const auto other = [&] {
        pugi::xml_document document;
        must(document.load_file(from.c_str(), pugi::parse_full));
        must(document.document_element().first_child().attribute("flow").set_value("0.12345"));
        must(document.save_file(to.c_str()));
    };
    std::printf("\n1000 elements, files in %s\n", folder.c_str());
    compare("load, edit one attribute, save", warm(ours, 300), warm(other, 300), 0.8);
}

/// Positions of 1,000 of 100,000 elements, and the same elements of the other library.
struct Edited {
    static constexpr int kCount = 100000, kEdits = 1000;
    CMarkup mine;
    pugi::xml_document other;
    std::vector<std::wstring> names;
    std::vector<pugi::xml_node> nodes;

    Edited()
    {
        const std::string bytes = listOf(kCount);
        must(mine.SetText(wide(bytes)) && other.load_buffer(bytes.data(), bytes.size()));
        std::mt19937 random(1);
        std::vector<int> order(kCount);
        for (int i = 0; i < kCount; ++i)
            order[static_cast<std::size_t>(i)] = i;
        std::shuffle(order.begin(), order.end(), random);
        order.resize(kEdits);
        std::vector<bool> isChosen(kCount);
        for (const int i : order)
            isChosen[static_cast<std::size_t>(i)] = true;
        std::vector<pugi::xml_node> all;
        must(mine.FindElement());
        pugi::xml_node node = other.document_element().first_child();
        for (std::size_t i = 0; i < kCount; ++i, node = node.next_sibling()) {
            must(mine.FindChildElement());
            all.push_back(node);
            if (isChosen[i])
                mine.SavePosition(std::to_wstring(i));
        }
        for (const int i : order) {
            names.push_back(std::to_wstring(i));
            nodes.push_back(all[static_cast<std::size_t>(i)]);
        }
    }
};

void randomEdits(const fs::path &folder)
{
    const std::string file = (folder / "edits.xml").string();
    const std::wstring name = wide(file);
    Edited edited;
    std::printf("\n1000 random edits and a save, 100000 elements\n");
    compare("attributes", cold([&] {
                for (std::size_t i = 0; i < edited.names.size(); ++i) {
                    must(edited.mine.RestorePosition(edited.names[i]));
                    must(edited.mine.SetChildAttribute(L"flow", i % 2 == 0 ? L"0.12345" : L"0.5"));
                }
                must(edited.mine.Save(name));
            }),
            cold([&] {
                for (std::size_t i = 0; i < edited.nodes.size(); ++i)
                    must(edited.nodes[i].attribute("flow").set_value(i % 2 == 0 ? "0.12345" : "0.5"));
                must(edited.other.save_file(file.c_str()));
            }),
            20.0);
    compare("attributes, added and removed elements in turn", cold([&] {
                for (std::size_t i = 0; i < edited.names.size(); ++i) {
                    must(edited.mine.RestorePosition(edited.names[i]));
                    switch (i % 3) {
                    case 0:
                        must(edited.mine.SetChildAttribute(L"flow", L"0.12345"));
                        break;
                    case 1:
                        must(edited.mine.AddChildElement(L"Terrain") && edited.mine.SetChildAttribute(L"name", L"new"));
                        break;
                    default:
                        must(edited.mine.RemoveChildElement());
                    }
                }
                must(edited.mine.Save(name));
            }),
            cold([&] {
                for (std::size_t i = 0; i < edited.nodes.size(); ++i) {
                    pugi::xml_node node = edited.nodes[i], parent = edited.other.document_element();
                    switch (i % 3) {
                    case 0:
                        must(node.attribute("flow").set_value("0.12345"));
                        break;
                    case 1:
                        parent.insert_child_after("Terrain", node).append_attribute("name").set_value("new");
                        break;
                    default:
                        must(parent.remove_child(node));
                    }
                }
                must(edited.other.save_file(file.c_str()));
            }),
            20.0);

    std::printf("\nThe next sibling, 100000 times\n");
    compare("FindElement / next_sibling",
            warm(
                [&] {
                    edited.mine.Rewind();
                    edited.mine.FindElement();
                    edited.mine.EnterChild();
                    int found = 0;
                    while (edited.mine.FindElement())
                        ++found;
                    must(found == Edited::kCount);
                },
                20),
            warm(
                [&] {
                    int found = 0;
                    for (auto node = edited.other.document_element().first_child(); node; node = node.next_sibling())
                        ++found;
                    must(found == Edited::kCount);
                },
                20),
            0.0);
}

/// Wall time of a save of 1,000 elements: ours, the other's, and the other's made as safe as ours.
void saveOnDisk(const fs::path &folder)
{
    const std::string bytes = listOf(1000), file = (folder / "disk.xml").string(), beside = file + ".new";
    CMarkup mine;
    pugi::xml_document other;
    must(mine.SetText(wide(bytes)) && other.load_buffer(bytes.data(), bytes.size()));
    const auto wall = [](const std::function<void()> &run) {
        std::vector<double> times;
        for (int i = 0; i < 30; ++i) {
            const double start = now(CLOCK_MONOTONIC);
            run();
            times.push_back(now(CLOCK_MONOTONIC) - start);
        }
        return median(times) * 1e3;
    };
    const double ours = wall([&] { must(mine.Save(wide(file))); });
    const double plain = wall([&] { must(other.save_file(file.c_str())); });
    const double safe = wall([&] {
        must(other.save_file(beside.c_str()));
        const int opened = open(beside.c_str(), O_WRONLY);
        must(opened >= 0 && fsync(opened) == 0 && close(opened) == 0);
        must(rename(beside.c_str(), file.c_str()) == 0);
    });
    std::printf(
        "\nA save of 1000 elements in %s, by the clock: Save %.3f ms (new file, synced, renamed), pugixml %.3f ms "
        "(over the old file), pugixml made as safe %.3f ms\n",
        folder.c_str(), ours, plain, safe);
}

} // namespace

int main(int argc, char **argv)
{
    const bool withMillion = argc < 2 || std::strcmp(argv[1], "--no-million") != 0;
    const fs::path disk = fs::temp_directory_path() / ("velmor-bench-" + std::to_string(getpid()));
    const fs::path memory = fs::is_directory("/dev/shm") ? "/dev/shm" / disk.filename() : disk;
    fs::create_directories(disk);
    fs::create_directories(memory);
    for (const int count : {1000, 100000, 1000000}) {
        if (count == 1000000 && !withMillion)
            continue;
        parseAndMemory(count);
        if (count >= 100000)
            load(count, memory);
    }
    loadEditSave(memory);
    randomEdits(memory);
    saveOnDisk(disk);
    fs::remove_all(disk);
    fs::remove_all(memory);
    return 0;
}
