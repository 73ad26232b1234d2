// A program that is killed at any moment while commands run loses the command at work and no other, and the drawing's
// own file is whole.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/StepJournal.h"
#include "host/editor/CommandStack.h"
#include "host/editor/QuestionCommand.h"
#include "host/editor/Recovery.h"
#include "host/editor/Session.h"
#include "tests/app/ProgramRun.h"
#include "tests/host/drawing/RandomChanges.h"

#include <csignal>
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
    explicit Work(const std::filesystem::path &file) : m_random(kSeed)
    {
        session.setMessageSink({});
        session.commands().addHostCommand(L"WORK", 0, [this] {
            return std::make_unique<QuestionCommand>(
                std::vector<Question>{}, [this](Session &at, const QuestionCommand::Answers &) {
                    test::RandomChanges changes(*at.drawing(), static_cast<unsigned>(m_random()));
                    for (std::size_t count = 1 + m_random() % 4; count > 0; --count)
                        changes.make();
                    return Command::Next::Commit;
                });
        });
        session.setDrawing(Drawing::load(file).drawing, file);
        session.drawing()->write(); // numbers what the file left without
    }
    void command()
    {
        const auto start = [this](const wchar_t *name, std::vector<Answer> answers = {}) {
            session.commands().start(name, answers);
        };
        switch (m_random() % 20) {
        case 0:
            start(L"LAYER", {{L"Layer" + std::to_wstring(m_random() % 50)}});
            break;
        case 1:
            start(L"UNDO", {{std::wstring(L"1")}}); // of several, some may be undone at the kill
            break;
        case 2:
            start(L"REDO", {{std::wstring(L"1")}});
            break;
        case 3:
            Recovery::instance().autosave();
            break;
        case 4:
            if (m_random() % 4 == 0)
                start(L"SAVE", {{Answer::Enter{}}, {Answer::Enter{}}});
            break;
        default:
            start(L"WORK");
            break;
        }
    }
    Session session;

private:
    std::mt19937 m_random;
};

void makeTown(const std::filesystem::path &file)
{
    const auto town = Drawing::createNew();
    test::RandomChanges changes(*town, 9);
    for (int i = 0; i < 3000; ++i)
        changes.make();
    ASSERT_TRUE(town->save(file, {.backup = false}));
}

/// What the drawing's text is behind each command.
std::vector<std::uint64_t> knownStates(const ScratchFolder &folder)
{
    makeTown(folder / "known.dxf");
    Work work(folder / "known.dxf");
    std::vector<std::uint64_t> states{checksumOf(work.session.drawing()->write())};
    for (int i = 0; i < kCommands; ++i) {
        work.command();
        states.push_back(checksumOf(work.session.drawing()->write()));
    }
    return states;
}

/// Told behind each command. So large that a pipe of one page holds eight: the work is never farther ahead of the one
/// who kills it, however slow or busy the machine is.
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
    const ScratchFolder folder;
    ASSERT_NO_FATAL_FAILURE(makeTown(folder / "fresh.dxf"));
    const auto states = knownStates(folder);
    const std::set<std::uint64_t> whole(states.begin(), states.end());
    std::mt19937 random(7);
    std::set<std::uint32_t> met;
    int recoveries = 0, saved = 0, beyond = 0;
    for (int round = 0; round < kKills; ++round) {
        std::filesystem::copy_file(folder / "fresh.dxf", folder / "town.dxf",
                                   std::filesystem::copy_options::overwrite_existing);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_GT(fcntl(ends[1], F_SETPIPE_SZ, 4096), 0);
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

        const LoadResult onDisk = Drawing::load(folder / "town.dxf");
        ASSERT_TRUE(onDisk.drawing) << "round " << round << ": " << onDisk.message;
        ASSERT_FALSE(onDisk.report.damaged()) << "round " << round;
        ASSERT_TRUE(whole.contains(checksumOf(test::readFile(folder / "town.dxf")))) << "round " << round;

        Recovery::instance().enable(folder / "state", {});
        const auto left = Recovery::instance().left();
        std::uint64_t state = checksumOf(test::readFile(folder / "town.dxf"));
        if (!left.empty()) {
            ASSERT_EQ(left.size(), 1u) << "round " << round;
            const RecoveredDrawing recovered = Recovery::instance().recover(left[0]);
            ASSERT_TRUE(recovered.drawing) << "round " << round << ": " << recovered.message;
            ASSERT_TRUE(recovered.complete) << "round " << round;
            ASSERT_FALSE(recovered.fromAutosave) << "round " << round;
            state = checksumOf(recovered.drawing->write());
            ++recoveries;
        } else {
            ++saved;
        }
        ASSERT_TRUE(state == states[done] || state == states[done + 1])
            << "round " << round << ": killed behind command " << done << ", found the state behind "
            << std::find(states.begin(), states.end(), state) - states.begin() << (left.empty() ? " in the file" : "");
        beyond += state != states[done] ? 1 : 0;
        Recovery::instance().disable();
        std::filesystem::remove_all(folder / "state");
    }
    // Slow commands draw the kills to themselves, the more the slower the build.
    EXPECT_GE(met.size(), static_cast<std::size_t>(kKills / 4)) << "the kills met too few places";
    EXPECT_GE(recoveries, kKills / 2);
    RecordProperty("recovered", recoveries);
    RecordProperty("saved", saved);
    RecordProperty("beyondTheLastReport", beyond);
}

} // namespace
} // namespace velmor
