#include "host/editor/DrawingKeeper.h"

#include "host/drawing/dxf/DxfWriter.h"
#include "host/services/Messages.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmor {

namespace fs = std::filesystem;

namespace {

/// A longer text is written beside the work.
constexpr std::size_t kWrittenAtOnce = std::size_t{4} << 20;
constexpr std::chrono::seconds kBetweenSyncs{2};

/// What tells a file from what it was: another program that writes it changes its time. Empty for a file that is not
/// there: nothing of anybody's can be written over.
std::string markOf(const fs::path &file)
{
    struct stat state = {};
    if (file.empty() || ::stat(file.c_str(), &state) != 0)
        return {};
    return std::to_string(state.st_size) + ' ' + std::to_string(state.st_mtim.tv_sec) + ' ' +
           std::to_string(state.st_mtim.tv_nsec);
}

} // namespace

// --- The folder -----------------------------------------------------------------------------------------------------

bool HeldFolder::make(const fs::path &stateFolder, std::string &reason)
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
    for (int number = 1;; ++number) {
        const fs::path folder = stateFolder / ("open-" + std::to_string(::getpid()) + "-" + std::to_string(number));
        if (fs::create_directory(folder, error)) {
            fs::permissions(folder, fs::perms::owner_all, error);
            if (take(folder))
                return true;
            const int why = errno;
            fs::remove_all(folder, error);
            return fails(folder, why);
        }
        if (error && error.value() != EEXIST)
            return fails(folder, error.value());
    }
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
                             FileOperations &operations, Tell tell)
    : m_drawing(drawing), m_log(drawing.component<ChangeLog>()), m_folder(std::move(folder)), m_path(std::move(path)),
      m_operations(operations), m_tell(std::move(tell)), m_autosaved(drawing.isModified() ? 0 : drawing.revision())
{
    m_folder->nameDrawing(m_path);
    if (!m_log.knowsEverything()) {
        m_log.addFollower(*this);
        m_broken = true;
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

DrawingKeeper::DrawingKeeper(Drawing &drawing, std::unique_ptr<HeldFolder> folder, fs::path path,
                             FileOperations &operations, Tell tell, std::unique_ptr<StepCodec> codec)
    : m_drawing(drawing), m_log(drawing.component<ChangeLog>()), m_folder(std::move(folder)), m_path(std::move(path)),
      m_operations(operations), m_tell(std::move(tell)), m_codec(std::move(codec)), m_autosaved(0)
{
    m_log.addFollower(*this);
    m_begun = true;
    m_broken = !m_codec;
    if (m_codec)
        check(m_journal.resume(m_folder->path() / "steps", m_operations));
}

DrawingKeeper::~DrawingKeeper()
{
    m_log.removeFollower(*this);
    finishAutosave();
    if (m_base.valid())
        m_base.wait();
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

void DrawingKeeper::tellOnce(const std::string &reason)
{
    if (!std::exchange(m_told, true) && m_tell)
        m_tell(reason);
}

void DrawingKeeper::check(const SaveResult &result)
{
    if (result)
        return;
    m_broken = true;
    tellOnce(result.message);
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

void DrawingKeeper::put(char type, const std::optional<std::string> &bytes)
{
    if (m_broken || !begin())
        return;
    if (!bytes) {
        m_broken = true;
        tellOnce(uiLine("ui.recovery.coarse"));
        return;
    }
    check(m_journal.append(type, *bytes));
    if (!m_broken && std::chrono::steady_clock::now() - m_synced >= kBetweenSyncs)
        sync();
}

void DrawingKeeper::stepDone(const ChangeStep &step)
{
    if (!m_broken && m_codec)
        put(journal_record::kStep, m_codec->encode(step));
}

void DrawingKeeper::stepUndone(const ChangeStep &)
{
    put(journal_record::kUndone, "");
}

void DrawingKeeper::stepRedone(const ChangeStep &step)
{
    if (m_catchingUp)
        stepDone(step);
    else
        put(journal_record::kRedone, "");
}

void DrawingKeeper::handleGiven(const AcDbObject &object)
{
    if (!m_broken && m_codec)
        put(journal_record::kHandle, m_codec->encodeHandle(object));
}

void DrawingKeeper::numbersKept(std::uint64_t next)
{
    put(journal_record::kNumbers, std::string(reinterpret_cast<const char *>(&next), sizeof next));
}

void DrawingKeeper::drawingSaved()
{
    m_autosaved = m_drawing.revision();
    m_folder->nameDrawing(m_path); // its file is another one now
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

void DrawingKeeper::autosave()
{
    sync();
    if (m_saving.valid() && m_saving.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return; // the last one is still being written
    finishAutosave();
    if (m_base.valid() && m_base.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
        check(m_base.get());
    if (m_drawing.revision() == m_autosaved)
        return;
    m_autosaved = m_drawing.revision();
    // Its pieces lie in the writer and in the text that was read, none in what the user goes on changing.
    auto writer = std::make_shared<dxf::DxfWriter>(m_drawing.priv());
    auto pieces = writer->pieces();
    // Where the journal holds all, this is only a second way to the drawing; else it is the newest state there is.
    const fs::path file = m_folder->path() / (m_broken ? "newest.dxf" : "autosave.dxf");
    m_saving = std::async(std::launch::async, [writer, pieces = std::move(pieces), file, &operations = m_operations] {
        return writeFileAtomically(file, pieces, false, operations);
    });
}

void DrawingKeeper::finishAutosave()
{
    if (!m_saving.valid())
        return;
    if (const SaveResult saved = m_saving.get(); !saved) {
        m_autosaved = 0; // tried again at the next time
        tellOnce(saved.message);
    }
}

} // namespace velmor
