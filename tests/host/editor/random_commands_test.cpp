// Ten thousand commands drawn by lot: undone, the drawing's text is the first; redone, the last.
#include "host/editor/LineworkCache.h"
#include "host/editor/Recovery.h"
#include "host/editor/UndoHistory.h"
#include "host/network/Network.h"
#include "host/sewage/AreaTable.h"
#include "host/sewage/CatchmentStore.h"
#include "tests/host/drawing/RandomChanges.h"
#include "tests/host/editor/EditorFixture.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <unistd.h>

namespace velmor {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kCommands = 1000;
#else
constexpr int kCommands = 10000;
#endif
constexpr unsigned kSeed = 20261121;

constexpr const char *kNetwork = "[JUNCTIONS]\nA 1 0\nB 1 0\n[OUTFALLS]\nC 0 FREE\n[CONDUITS]\nP A B 30 0.01 0 0\n"
                                 "Q B C 40 0.01 0 0\n[COORDINATES]\nA 0 0\nB 30 0\nC 70 0\n";

class RandomCommands : public test::EditorFixture {
protected:
    RandomCommands() : m_random(kSeed)
    {
        m_network = std::filesystem::temp_directory_path() / ("velmor_random_" + std::to_string(::getpid()) + ".inp");
        std::ofstream(m_network) << kNetwork;
        // What dialogs and the module do to a drawing.
        session.commands().addCommand(
            L"TEST", L"WORK", L"WORK", 1, [] { s_work(); }, nullptr, -1, nullptr, nullptr);
        s_work = [this] {
            test::RandomChanges changes(drawing(), static_cast<unsigned>(m_random()));
            for (std::size_t count = 1 + m_random() % 3; count > 0; --count)
                changes.make();
        };
        session.commands().addCommand(
            L"TEST", L"AREAS", L"AREAS", 1, [] { s_areas(); }, nullptr, -1, nullptr, nullptr);
        s_areas = [this] { changeAreas(); };
    }
    ~RandomCommands() override
    {
        s_work = s_areas = {};
        std::filesystem::remove(m_network);
    }

    std::size_t upTo(std::size_t count) { return m_random() % count; }
    std::wstring number() { return std::to_wstring(upTo(2000)); }
    Answer point() { return {number() + L"," + number()}; }
    Answer word(std::wstring text) { return {std::move(text)}; }
    Answer enter() { return {Answer::Enter{}}; }
    Answer objects()
    {
        AcDbObjectIdArray ids;
        const auto &all = drawing().modelSpace().entities();
        for (std::size_t tries = 1 + upTo(4); tries > 0 && !all.empty(); --tries)
            if (AcDbEntity *entity = all[upTo(all.size())]; !entity->isErased())
                ids.push_back(idOf(*entity));
        return {std::move(ids)};
    }

    void changeAreas()
    {
        auto &store = drawing().component<CatchmentStore>();
        auto areas = store.areas();
        const double x = static_cast<double>(upTo(1000)), y = static_cast<double>(upTo(1000));
        switch (upTo(5)) {
        case 0:
        case 1:
            store.create({{x, y}, {x + 10, y}, {x + 10, y + 10}, {x, y + 10}}, L"area " + number(), 1, {});
            break;
        case 2:
            if (!areas.empty())
                store.remove(*areas[upTo(areas.size())]);
            break;
        case 3:
            if (!areas.empty())
                areas[upTo(areas.size())]->SetName(L"name " + number());
            break;
        default:
            if (const auto &sections = drawing().component<Network>().sections(); !areas.empty() && !sections.empty())
                store.assign(*areas[upTo(areas.size())], {{sections[upTo(sections.size())], 0.5}});
            break;
        }
    }

    /// Answers for a command of the table, when this test knows it.
    std::vector<Answer> answersFor(const std::wstring &name)
    {
        const std::map<std::wstring, std::function<std::vector<Answer>()>> known{
            {L"WORK", [] { return std::vector<Answer>{}; }},
            {L"AREAS", [] { return std::vector<Answer>{}; }},
            {L"LAYER", [&] { return std::vector<Answer>{word(L"Layer" + std::to_wstring(upTo(300)))}; }},
            {L"BOUNDARY",
             [&] {
                 return std::vector<Answer>{point(), enter()};
             }},
            {L"BOUNDARY-LAYERS",
             [&] {
                 return std::vector<Answer>{word(L"A" + number()), enter()};
             }},
            {L"IMPORT", [&] { return std::vector<Answer>{word(m_network.wstring())}; }},
            {L"UNDO", [&] { return std::vector<Answer>{word(std::to_wstring(1 + upTo(4)))}; }},
            {L"REDO", [&] { return std::vector<Answer>{word(std::to_wstring(1 + upTo(4)))}; }},
            {L"LINE",
             [&] {
                 return std::vector<Answer>{point(), point(), point(), enter()};
             }},
            {L"PLINE",
             [&] {
                 return std::vector<Answer>{point(), point(), point(), enter()};
             }},
            {L"CIRCLE",
             [&] {
                 return std::vector<Answer>{point(), word(std::to_wstring(1 + upTo(50)))};
             }},
            {L"ARC",
             [&] {
                 return std::vector<Answer>{point(), point(), point()};
             }},
            {L"ERASE",
             [&] {
                 return std::vector<Answer>{objects(), enter()};
             }},
            {L"MOVE",
             [&] {
                 return std::vector<Answer>{objects(), enter(), point(), point()};
             }},
            {L"COPY",
             [&] {
                 return std::vector<Answer>{objects(), enter(), point(), point(), enter()};
             }},
            {L"PURGE", [&] { return std::vector<Answer>{word(L"All")}; }},
        };
        const auto found = known.find(name);
        m_known = found != known.end();
        return m_known ? found->second() : std::vector<Answer>{};
    }

    std::vector<std::wstring> knownNames()
    {
        std::vector<std::wstring> names;
        for (const CommandInfo &info : session.commands().list())
            if (answersFor(info.name); m_known)
                names.push_back(info.name);
        return names;
    }
    /// Runs one of them; its name.
    std::wstring command(const std::vector<std::wstring> &names)
    {
        std::wstring name = names[upTo(names.size())];
        // Regions of lines that lie in heaps take their time.
        if (name == L"BOUNDARY" && upTo(20) != 0)
            name = L"WORK";
        const auto answers = answersFor(name);
        session.commands().start(name, answers);
        return name;
    }

    std::mt19937 m_random;
    std::filesystem::path m_network;
    bool m_known = false;
    static inline std::function<void()> s_work, s_areas;
};

TEST_F(RandomCommands, UndoneGiveTheFirstTextAndRedoneTheLast)
{
    drawing().component<ChangeLog>().setLimit(std::size_t{4} << 30);
    auto &history = drawing().component<UndoHistory>();
    drawing().component<Network>().sections();
    drawing().component<LineworkCache>().visible();
    drawing().component<CatchmentStore>();
    const std::string first = drawing().write();

    const auto names = knownNames();
    EXPECT_GE(names.size(), 8u);
    std::map<std::wstring, int> done;
    for (int i = 0; i < kCommands; ++i) {
        const std::size_t steps = history.undoCount();
        const std::wstring name = command(names);
        if (history.undoCount() > steps)
            ++done[name];
        if (i % 500 == 0)
            drawing().write(); // as an autosave does
    }
    while (history.redo() != 0)
        ;
    const std::string last = drawing().write();
    std::size_t made = 0;
    for (const auto &[name, count] : done) {
        made += static_cast<std::size_t>(count);
        RecordProperty(std::string(name.begin(), name.end()), count);
    }
    EXPECT_GE(made, static_cast<std::size_t>(kCommands) / 5) << "too few commands changed anything";
    EXPECT_GE(done.size(), 5u);
    EXPECT_EQ(session.failures(), 0u);
    const std::string areas = areasJson(areaTable(drawing()));
    const std::size_t sections = drawing().component<Network>().sections().size();

    history.undo(static_cast<std::size_t>(kCommands) * 2);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(test::differenceOf(drawing().write(), first), "");
    EXPECT_FALSE(drawing().isModified());
    EXPECT_TRUE(drawing().component<Network>().sections().empty());
    EXPECT_TRUE(drawing().component<CatchmentStore>().areas().empty());

    history.redo(static_cast<std::size_t>(kCommands) * 2);
    EXPECT_EQ(test::differenceOf(drawing().write(), last), "");
    EXPECT_EQ(drawing().component<Network>().sections().size(), sections);
    EXPECT_EQ(areasJson(areaTable(drawing())), areas);
    // The stores tell the same as those of a drawing that was never anything else.
    const auto again = Drawing::read(last);
    ASSERT_TRUE(again.drawing);
    EXPECT_FALSE(again.report.damaged());
    setWorkingDrawing(again.drawing.get());
    EXPECT_EQ(again.drawing->component<Network>().sections().size(), sections);
    EXPECT_EQ(areasJson(areaTable(*again.drawing)), areas);
    setWorkingDrawing(&drawing());
}

TEST_F(RandomCommands, RepeatedFromTheJournalGiveTheSameText)
{
    const auto state = m_network.parent_path() / (m_network.stem().string() + "_state");
    Recovery &recovery = Recovery::instance();
    std::vector<std::wstring> told;
    recovery.enable(state, [&](const std::wstring &text) { told.push_back(text); });
    session.setDrawing(Drawing::createNew());
    const auto names = knownNames();
    for (int round = 0; round < 5; ++round) {
        for (int i = 0; i < kCommands / 10; ++i)
            command(names);
        const std::string text = drawing().write();
        // The program dies and is started again.
        recovery.disable();
        recovery.enable(state, [&](const std::wstring &line) { told.push_back(line); });
        const auto left = recovery.left();
        ASSERT_EQ(left.size(), 1u);
        RecoveredDrawing recovered = recovery.recover(left[0]);
        ASSERT_TRUE(recovered.drawing) << recovered.message;
        EXPECT_TRUE(recovered.complete);
        EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
        session.setDrawing(std::move(recovered.drawing));
    }
    EXPECT_TRUE(told.empty());
    recovery.disable();
    std::filesystem::remove_all(state);
}

} // namespace
} // namespace velmor
