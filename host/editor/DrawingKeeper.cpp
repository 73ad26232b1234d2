#include "host/editor/DrawingKeeper.h"

#include "host/drawing/FileMark.h"
#include "host/drawing/StepRecorder.h"
#include "host/drawing/dxf/DxfWriter.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace velmor {

namespace fs = std::filesystem;

namespace {

/// A longer text is written beside the work.
constexpr std::size_t kWrittenAtOnce = std::size_t{4} << 20;

/// Keeps other programs from making folders in the state folder and from listing them, between which a folder is there
/// that nobody holds yet. Whoever doesn't get it in a second goes on without: its holder hangs, or the file system
/// has no locks.
class StateLock {
public:
    explicit StateLock(const fs::path &stateFolder)
        : m_folder(::open(stateFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        constexpr int kTries = 1000;
        constexpr std::chrono::milliseconds kBetween{1};
        for (int i = 0; m_folder >= 0 && i < kTries && ::flock(m_folder, LOCK_EX | LOCK_NB) != 0; ++i) {
            if (errno != EWOULDBLOCK && errno != EINTR)
                return;
            std::this_thread::sleep_for(kBetween);
        }
    }
    ~StateLock()
    {
        if (m_folder >= 0)
            ::close(m_folder);
    }
    StateLock(const StateLock &) = delete;
    StateLock &operator=(const StateLock &) = delete;

private:
    int m_folder;
};

} // namespace

// --- The folder -----------------------------------------------------------------------------------------------------

bool HeldFolder::make(const fs::path &stateFolder, const fs::path &drawing, std::string &reason)
{
    release();
    const auto fails = [&](const fs::path &what, int error) {
        reason = what.string() + ": " + std::strerror(error);
        return false;
    };
    std::error_code error;
    fs::create_directories(stateFolder, error);
    if (error)
        return fails(stateFolder, error.value());
    const StateLock lock(stateFolder);
    for (int number = 1;; ++number) {
        const fs::path folder = stateFolder / ("open-" + std::to_string(::getpid()) + "-" + std::to_string(number));
        if (fs::create_directory(folder, error)) {
            fs::permissions(folder, fs::perms::owner_all, error);
            if (take(folder)) {
                nameDrawing(drawing);
                return true;
            }
            const int why = errno;
            fs::remove_all(folder, error);
            return fails(folder, why);
        }
        if (error && error.value() != EEXIST)
            return fails(folder, error.value());
    }
}

std::vector<fs::path> HeldFolder::allIn(const fs::path &stateFolder)
{
    std::vector<fs::path> found;
    const StateLock lock(stateFolder);
    std::error_code error;
    for (fs::directory_iterator entry(stateFolder, error), end; !error && entry != end; entry.increment(error))
        if (entry->path().filename().string().starts_with("open-"))
            found.push_back(entry->path());
    std::ranges::sort(found);
    return found;
}

bool HeldFolder::take(const fs::path &folder)
{
    release();
    const int lock = ::open((folder / "owner").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0)
        return false;
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        ::close(lock);
        return false;
    }
    m_path = folder;
    m_lock = lock;
    return true;
}

void HeldFolder::nameDrawing(const fs::path &drawing) const
{
    // No path has a zero in it.
    const std::string text = drawing.string() + '\0' + markOf(drawing) + '\n';
    if (m_lock < 0)
        return;
    const auto length = static_cast<off_t>(text.size());
    const bool isWhole = ::pwrite(m_lock, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
    // Half a name would name another drawing.
    if (::ftruncate(m_lock, isWhole ? length : 0) != 0)
        return;
}

HeldFolder::Owner HeldFolder::ownerOf(const fs::path &folder)
{
    std::ifstream stream(folder / "owner", std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(stream)), {});
    const std::size_t pathEnd = text.find('\0');
    const std::size_t markEnd = text.find('\n', pathEnd);
    if (pathEnd == std::string::npos || markEnd == std::string::npos)
        return {};
    Owner owner{true, text.substr(0, pathEnd), false};
    const std::string now = markOf(owner.drawing);
    owner.isChanged = !now.empty() && now != text.substr(pathEnd + 1, markEnd - pathEnd - 1);
    return owner;
}

bool HeldFolder::isOwned(const fs::path &folder)
{
    const int lock = ::open((folder / "owner").c_str(), O_RDWR | O_CLOEXEC);
    if (lock < 0)
        return false;
    const bool isFree = ::flock(lock, LOCK_EX | LOCK_NB) == 0;
    ::close(lock);
    return !isFree;
}

void HeldFolder::release()
{
    if (m_lock >= 0)
        ::close(m_lock);
    m_lock = -1;
}

void HeldFolder::remove()
{
    if (m_lock < 0)
        return;
    std::error_code error;
    fs::remove_all(m_path, error);
    release();
}

// --- The journal's first record -------------------------------------------------------------------------------------

std::string bytesOf(const JournalBase &base)
{
    std::string bytes(sizeof base.checksum + 1, '\0');
    std::memcpy(bytes.data(), &base.checksum, sizeof base.checksum);
    bytes[sizeof base.checksum] = base.damaged ? '1' : '0';
    return bytes + base.path.string();
}

std::optional<JournalBase> journalBaseOf(std::string_view bytes)
{
    JournalBase base;
    if (bytes.size() < sizeof base.checksum + 1)
        return std::nullopt;
    std::memcpy(&base.checksum, bytes.data(), sizeof base.checksum);
    base.damaged = bytes[sizeof base.checksum] == '1';
    base.path = std::string(bytes.substr(sizeof base.checksum + 1));
    return base;
}

// --- The keeper -----------------------------------------------------------------------------------------------------

DrawingKeeper::DrawingKeeper(Drawing &drawing, std::unique_ptr<HeldFolder> folder, fs::path path,
                             FileOperations &operations, Calls calls)
    : m_drawing(drawing), m_log(drawing.component<ChangeLog>()), m_folder(std::move(folder)), m_path(std::move(path)),
      m_operations(operations), m_calls(std::move(calls)), m_autosaved(drawing.isModified() ? 0 : drawing.revision())
{
}

DrawingKeeper::DrawingKeeper(Drawing &drawing, std::unique_ptr<HeldFolder> folder, fs::path path,
                             FileOperations &operations, Calls calls, std::unique_ptr<StepCodec> codec)
    : m_drawing(drawing), m_log(drawing.component<ChangeLog>()), m_folder(std::move(folder)), m_path(std::move(path)),
      m_operations(operations), m_calls(std::move(calls)), m_codec(std::move(codec)), m_isAdopted(true), m_begun(true),
      m_broken(!m_codec), m_autosaved(0)
{
}

void DrawingKeeper::start()
{
    if (m_isAdopted) {
        m_log.addFollower(*this);
        if (m_codec)
            check(m_journal.resume(m_folder->path() / "steps", m_operations));
        return;
    }
    m_folder->nameDrawing(m_path);
    catchUp();
    stepEnded();
}

void DrawingKeeper::catchUp()
{
    if (!m_log.knowsEverything()) {
        m_log.addFollower(*this);
        m_broken = true;
        return;
    }
    if (auto recorded = m_drawing.component<StepRecorder>().take()) {
        m_codec = std::move(recorded->codec);
        m_log.addFollower(*this);
        for (const JournalRecordInFile &record : recorded->records)
            put(record.type, record.bytes);
        return;
    }
    // The codec starts from the text as it was read; what was done since is then done again for the journal.
    std::size_t steps = 0;
    while (m_log.undo())
        ++steps;
    m_codec = std::make_unique<StepCodec>(m_drawing);
    m_log.addFollower(*this);
    m_catchingUp = true;
    while (steps > 0 && m_log.redo())
        --steps;
    m_catchingUp = false;
}

DrawingKeeper::~DrawingKeeper()
{
    m_log.removeFollower(*this);
    finishAutosave();
    m_journal.close();
    if (m_givenUp)
        m_folder->remove();
}

void DrawingKeeper::setPath(fs::path path)
{
    m_path = std::move(path);
    m_folder->nameDrawing(m_path);
    if (m_begun)
        put(journal_record::kSaved, m_path.string());
}

void DrawingKeeper::tell(const std::string &reason)
{
    if (m_told.insert(reason).second && m_calls.tell)
        m_calls.tell(reason);
}

void DrawingKeeper::check(const SaveResult &result)
{
    if (result)
        return;
    m_broken = true;
    tell(result.message);
}

/// The first change: the journal is made, and the text it stands on kept.
bool DrawingKeeper::begin()
{
    if (std::exchange(m_begun, true))
        return !m_broken;
    const std::string &text = m_drawing.priv().file.text;
    writeBase();
    check(m_journal.create(m_folder->path() / "steps", m_operations));
    if (!m_broken)
        check(m_journal.append(journal_record::kBase,
                               bytesOf(JournalBase{checksumOf(text), m_drawing.loadReport().damaged(), m_path})));
    return !m_broken;
}

void DrawingKeeper::writeBase()
{
    // The text never changes while the drawing lives, so another thread may read it.
    const auto write = [&text = m_drawing.priv().file.text, file = m_folder->path() / "base.dxf",
                        &operations = m_operations] {
        const std::array<std::string_view, 1> pieces{text};
        return writeFileAtomically(file, pieces, false, operations);
    };
    if (m_drawing.priv().file.text.size() <= kWrittenAtOnce)
        check(write());
    else
        m_base = std::async(std::launch::async, write);
}

/// The base that is written beside the work; without it the steps stand on nothing.
void DrawingKeeper::checkBase(bool waiting)
{
    if (m_base.valid() && (waiting || m_base.wait_for(std::chrono::seconds(0)) == std::future_status::ready))
        check(m_base.get());
}

void DrawingKeeper::put(char type, const std::optional<std::string> &bytes)
{
    checkBase(false);
    if (m_broken || !begin())
        return;
    if (!bytes) {
        m_broken = true;
        tell(uiLine("ui.recovery.coarse"));
        return;
    }
    check(m_journal.append(type, *bytes));
    if (m_broken)
        return;
    if (std::chrono::steady_clock::now() - m_synced >= kBetweenSyncs)
        sync();
    else if (m_calls.syncSoon)
        m_calls.syncSoon();
}

/// What the journal did not take is kept as a whole, once at its end and from then on by the autosaves.
void DrawingKeeper::stepEnded()
{
    if (m_broken && !m_catchingUp && !m_isWhole)
        m_isWhole = autosave();
}

void DrawingKeeper::stepDone(const ChangeStep &step)
{
    if (!m_broken && m_codec)
        put(journal_record::kStep, m_codec->encode(step));
    stepEnded();
}

void DrawingKeeper::stepUndone(const ChangeStep &)
{
    put(journal_record::kUndone, "");
    stepEnded();
}

void DrawingKeeper::stepRedone(const ChangeStep &step)
{
    if (m_catchingUp)
        return stepDone(step);
    put(journal_record::kRedone, "");
    stepEnded();
}

void DrawingKeeper::stepsMerged()
{
    put(journal_record::kMerged, "");
}

void DrawingKeeper::handleGiven(const AcDbObject &object)
{
    if (!m_broken && m_codec)
        put(journal_record::kHandle, m_codec->encodeHandle(object));
}

void DrawingKeeper::numbersKept(std::uint64_t next)
{
    put(journal_record::kNumbers, bytesOfNumber(next));
}

void DrawingKeeper::drawingSaved()
{
    m_autosaved = m_drawing.revision();
    m_folder->nameDrawing(m_path); // its file is another one now
    checkBase(true);               // which serves as the base no longer
    if (m_begun)
        put(journal_record::kSaved, m_path.string());
    // A journal that can't take the save would be taken for newer than the file.
    if (m_broken)
        dropOlder();
}

/// Takes away what is older than the drawing's own file now.
void DrawingKeeper::dropOlder()
{
    const std::uint64_t saved = m_autosaved;
    finishAutosave(); // else it would come after this
    m_autosaved = saved;
    m_journal.close();
    m_isWhole = false;
    std::error_code error;
    for (const char *name : {"newest.dxf", "steps", "autosave.dxf"})
        fs::remove(m_folder->path() / name, error);
}

void DrawingKeeper::sync()
{
    m_synced = std::chrono::steady_clock::now();
    if (m_journal.isOpen())
        check(m_journal.sync());
}

void DrawingKeeper::atRisk()
{
    checkBase(true);
    if (m_broken)
        autosave();
    else
        sync();
}

bool DrawingKeeper::autosave()
{
    sync();
    if (m_saving.valid() && m_saving.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return false; // the last one is still being written
    checkAutosave();
    checkBase(false);
    if (m_drawing.revision() == m_autosaved)
        return false;
    m_autosaved = m_drawing.revision();
    // Its pieces lie in the writer and in the text that was read, none in what the user goes on changing.
    auto writer = std::make_shared<dxf::DxfWriter>(m_drawing.priv());
    auto pieces = writer->pieces();
    // Where the journal holds all, this is only a second way to the drawing; else it is the newest state there is.
    const fs::path file = m_folder->path() / (m_broken ? "newest.dxf" : "autosave.dxf");
    m_saving = std::async(std::launch::async, [writer, pieces = std::move(pieces), file, &operations = m_operations] {
        return writeFileAtomically(file, pieces, false, operations);
    });
    return true;
}

void DrawingKeeper::finishAutosave()
{
    checkBase(true);
    checkAutosave();
}

void DrawingKeeper::checkAutosave()
{
    if (!m_saving.valid())
        return;
    if (const SaveResult saved = m_saving.get(); !saved) {
        m_autosaved = 0; // tried again at the next time
        tell(saved.message);
    }
}

} // namespace velmor
