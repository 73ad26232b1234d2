// A program that is killed at any moment while commands run loses the command at work and no other, and the drawing's
// own file is whole.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/StepJournal.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Recovery.h"
#include "host/editor/Session.h"
#include "host/services/Services.h"
#include "tests/app/ProgramRun.h"
#include "tests/host/editor/CommandLot.h"

#include <algorithm>
#include <csignal>
#include <map>
#include <set>

#include <fcntl.h>

namespace velmor {
namespace {

using test::ScratchFolder;

constexpr int kKills = 200;
/// More commands than are reached before the kill.
constexpr int kCommands = 1500;
constexpr unsigned kSeed = 20261121;

/// Runs the same row of commands every time.
class Work {
public:
    explicit Work(const std::filesystem::path &file) : lot(session, kSeed, file.parent_path()), m_random(kSeed)
    {
        lot.regionsOneIn = 1 << 20; // the town is heaps of lines
        lot.undoneAtOnce = 1;       // of several, some may be undone at the kill
        session.setMessageSink({});
        session.setDrawing(Drawing::load(file).drawing, file);
        session.drawing()->write(); // numbers what the file left without
    }
    void command()
    {
        switch (m_random() % 60) {
        case 0:
        case 1:
        case 2:
            Recovery::instance().autosave();
            name = "autosave";
            break;
        case 3: {
            const std::vector<Answer> answers{{Answer::Enter{}}, {Answer::Enter{}}};
            session.commands().start(L"SAVE", answers);
            name = "SAVE";
            break;
        }
        default:
            name = lot.run();
            break;
        }
    }
    Session session;
    test::CommandLot lot;
    std::string name; ///< of the last command

private:
    std::mt19937 m_random;
};

/// Identities are made anew in each run: digits of a GUID count as zeros.
std::uint64_t stateOf(std::string text)
{
    constexpr std::size_t kLength = 38;
    for (std::size_t at = text.find('{'); at != std::string::npos; at = text.find('{', at + 1))
        if (at + kLength <= text.size() && text[at + kLength - 1] == '}' && text[at + 9] == '-' && text[at + 24] == '-')
            std::fill_n(text.begin() + static_cast<std::ptrdiff_t>(at), kLength, '0');
    return checksumOf(text);
}

void makeTown(const std::filesystem::path &file)
{
    const auto town = Drawing::createNew();
    test::RandomChanges changes(*town, 9);
    for (int i = 0; i < 3000; ++i)
        changes.make();
    ASSERT_TRUE(town->save(file, {.backup = false}));
}

/// What the drawing's text is behind each command.
struct KnownStates {
    std::vector<std::uint64_t> behind;                ///< each command; first before all
    std::vector<std::vector<std::uint64_t>> handlers; ///< behind each handler of a dialog that the command runs
    std::vector<std::string> names;                   ///< of each command
    std::map<std::string, int> done;                  ///< commands that changed the drawing
};

KnownStates knownStates(const ScratchFolder &folder)
{
    makeTown(folder / "known.dxf");
    Work work(folder / "known.dxf");
    Drawing &drawing = *work.session.drawing();
    KnownStates known{{stateOf(drawing.write())}, {{}}, {{}}, {}};
    work.lot.afterHandler = [&] { known.handlers.back().push_back(stateOf(drawing.write())); };
    for (int i = 0; i < kCommands; ++i) {
        known.handlers.emplace_back();
        work.command();
        known.names.push_back(work.name);
        known.behind.push_back(stateOf(drawing.write()));
        if (known.behind[known.behind.size() - 2] != known.behind.back())
            ++known.done[work.name];
    }
    return known;
}

/// Told behind each command. So large that a pipe holds 128: the work is never farther ahead of the one who kills it,
/// however slow or busy the machine is, and yet it is still at work, not waiting for a reader, when the kill comes.
struct Report {
    std::uint32_t command = 0;
    char padding[508] = {};
};

pid_t startWork(const ScratchFolder &folder, int report)
{
    const pid_t child = fork();
    if (child != 0)
        return child;
    Recovery::instance().enable(folder / "state", {});
    {
        Work work(folder / "town.dxf");
        for (std::uint32_t i = 1; i <= kCommands; ++i) {
            work.command();
            const Report done{i};
            if (write(report, &done, sizeof done) != sizeof done)
                _exit(3);
        }
    }
    _exit(2);
}

TEST(KilledWork, LosesAtMostTheCommandAtWorkAndTheFileIsWhole)
{
    // In memory a sync takes no time, so that the kills spread over the commands instead of meeting syncs alone.
    if (access("/dev/shm", W_OK) == 0) {
        ASSERT_EQ(setenv("TMPDIR", "/dev/shm", 1), 0);
    }
    Services::instance().start({.language = "en"});
    const ScratchFolder folder;
    ASSERT_NO_FATAL_FAILURE(makeTown(folder / "fresh.dxf"));
    const KnownStates known = knownStates(folder);
    const auto &states = known.behind;
    std::set<std::string> commands;
    for (const auto &[name, count] : known.done)
        commands.insert(name.substr(0, name.find(' ')));
    for (const std::string &name : test::CommandLot::names()) {
        const std::string command = name.substr(0, name.find(' '));
        EXPECT_TRUE(command == "BOUNDARY" || commands.contains(command)) << command << " changed nothing";
    }
    for (const char *name : {"MOVE of what was read", "COPY of what was read"})
        EXPECT_TRUE(known.done.contains(name)) << name << " changed nothing";
    const std::set<std::uint64_t> whole(states.begin(), states.end());
    std::mt19937 random(7);
    std::set<std::uint32_t> met;
    std::set<std::string> atWork; ///< commands that were met by a kill
    int recoveries = 0, saved = 0, beyond = 0, amidDialog = 0;
    for (int round = 0; round < kKills; ++round) {
        std::filesystem::copy_file(folder / "fresh.dxf", folder / "town.dxf",
                                   std::filesystem::copy_options::overwrite_existing);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_GT(fcntl(ends[1], F_SETPIPE_SZ, 65536), 0);
        const pid_t child = startWork(folder, ends[1]);
        close(ends[1]);
        // Somewhere behind a command drawn by lot, also before the first.
        const auto wanted = static_cast<std::uint32_t>(random() % 400);
        std::uint32_t done = 0;
        Report told;
        while (done < wanted && read(ends[0], &told, sizeof told) == sizeof told)
            done = told.command;
        usleep(static_cast<useconds_t>(random() % 3000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "round " << round << ": the work ended before it was killed";
        while (read(ends[0], &told, sizeof told) == sizeof told)
            done = told.command;
        close(ends[0]);
        met.insert(done);
        atWork.insert(known.names[done + 1]);

        const LoadResult onDisk = Drawing::load(folder / "town.dxf");
        ASSERT_TRUE(onDisk.drawing) << "round " << round << ": " << onDisk.message;
        ASSERT_FALSE(onDisk.report.damaged()) << "round " << round;
        ASSERT_TRUE(whole.contains(stateOf(test::readFile(folder / "town.dxf")))) << "round " << round;

        Recovery::instance().enable(folder / "state", {});
        const auto left = Recovery::instance().left();
        std::uint64_t state = stateOf(test::readFile(folder / "town.dxf"));
        if (!left.empty()) {
            ASSERT_EQ(left.size(), 1u) << "round " << round;
            const RecoveredDrawing recovered = Recovery::instance().recover(left[0]);
            ASSERT_TRUE(recovered.drawing) << "round " << round << ": " << recovered.message;
            ASSERT_TRUE(recovered.complete) << "round " << round;
            ASSERT_FALSE(recovered.fromAutosave) << "round " << round;
            state = stateOf(recovered.drawing->write());
            ++recoveries;
        } else {
            ++saved;
        }
        // Handlers of a dialog that were done stand, whatever becomes of the command that runs it.
        const auto &handlers = known.handlers[done + 1];
        const bool isHandler = std::ranges::find(handlers, state) != handlers.end();
        amidDialog += isHandler && state != states[done + 1] ? 1 : 0;
        ASSERT_TRUE(state == states[done] || state == states[done + 1] || isHandler)
            << "round " << round << ": killed behind command " << done << ", found the state behind "
            << std::find(states.begin(), states.end(), state) - states.begin() << (left.empty() ? " in the file" : "");
        beyond += state != states[done] ? 1 : 0;
        Recovery::instance().disable();
        std::filesystem::remove_all(folder / "state");
    }
    // Slow commands draw the kills to themselves, the more the slower the build.
    EXPECT_GE(met.size(), static_cast<std::size_t>(kKills / 4)) << "the kills met too few places";
    EXPECT_GE(atWork.size(), 15u) << "the kills met too few kinds of commands";
    EXPECT_GE(recoveries, kKills / 2);
    RecordProperty("recovered", recoveries);
    RecordProperty("amidDialog", amidDialog);
    RecordProperty("saved", saved);
    RecordProperty("beyondTheLastReport", beyond);
}

} // namespace
} // namespace velmor
