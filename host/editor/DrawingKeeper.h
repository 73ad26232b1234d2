// Keeps one open drawing in its folder: who has it, the text it was read from, a journal of its steps, an autosave.
#pragma once

#include "host/drawing/StepCodec.h"
#include "host/drawing/StepJournal.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmor {

/// A folder of the state folder, locked for the life of this object.
class HeldFolder {
public:
    HeldFolder() = default;
    ~HeldFolder() { release(); }
    HeldFolder(const HeldFolder &) = delete;
    HeldFolder &operator=(const HeldFolder &) = delete;

    /// Makes a new folder whose owner file names the drawing. False when that can't be, with the reason.
    bool make(const std::filesystem::path &stateFolder, const std::filesystem::path &drawing, std::string &reason);
    /// All folders of drawings. None of them is one that is just being made and not held yet.
    static std::vector<std::filesystem::path> allIn(const std::filesystem::path &stateFolder);
    /// Takes hold of a folder that nobody holds. False while its owner lives.
    bool take(const std::filesystem::path &folder);
    const std::filesystem::path &path() const { return m_path; }
    bool isHeld() const { return m_lock >= 0; }
    /// Names the drawing in the owner file, with the size and the time that its own file has now.
    void nameDrawing(const std::filesystem::path &drawing) const;
    struct Owner {
        bool isKnown = false;          ///< false: the owner file could not be written or read
        std::filesystem::path drawing; ///< empty: it has no file of its own
        bool isChanged = false;        ///< the drawing's own file is no longer the one that was named
    };
    static Owner ownerOf(const std::filesystem::path &folder);
    static std::filesystem::path drawingOf(const std::filesystem::path &folder) { return ownerOf(folder).drawing; }
    /// Whether somebody holds the folder.
    static bool isOwned(const std::filesystem::path &folder);
    void release();
    /// Takes the folder away with all that is in it.
    void remove();

private:
    std::filesystem::path m_path;
    int m_lock = -1;
};

/// What the journal begins with: which text its steps stand on.
struct JournalBase {
    std::uint64_t checksum = 0; ///< of the drawing's text as it was read
    bool damaged = false;       ///< the file was damaged when it was read
    std::filesystem::path path; ///< of the drawing then
};
std::string bytesOf(const JournalBase &base);
std::optional<JournalBase> journalBaseOf(std::string_view bytes);

class DrawingKeeper final : private StepFollower {
public:
    struct Calls {
        /// Gets each reason why the work can't be kept, the same one once.
        std::function<void(const std::string &reason)> tell;
        /// The journal has something that the disk has not: sync is to be called in kBetweenSyncs, if it was not yet.
        std::function<void()> syncSoon;
    };
    static constexpr std::chrono::seconds kBetweenSyncs{2};
    /// For a drawing that was opened, made or imported.
    DrawingKeeper(Drawing &drawing, std::unique_ptr<HeldFolder> folder, std::filesystem::path path,
                  FileOperations &operations, Calls calls);
    /// To go on with the folder that the drawing was recovered from; codec has taken part in that, and is null when it
    /// was recovered in part.
    DrawingKeeper(Drawing &drawing, std::unique_ptr<HeldFolder> folder, std::filesystem::path path,
                  FileOperations &operations, Calls calls, std::unique_ptr<StepCodec> codec);
    ~DrawingKeeper() override;

    /// Follows the drawing from now on. Steps that were done to it already go into the journal too.
    void start();
    void setPath(std::filesystem::path path);
    /// False when there is nothing to write, or the last one is still being written.
    bool autosave();
    /// Waits for what is written beside the work.
    void finishAutosave();
    void sync();
    /// Something went wrong, and worse may follow: all that was done comes to the disk.
    void atRisk();
    /// The journal can't take the steps: only an autosave keeps them.
    bool isBroken() const { return m_broken; }
    /// The user gave the drawing up or it is saved: the folder goes with this object.
    void giveUp() { m_givenUp = true; }
    bool isAdopted() const { return m_isAdopted; }
    const HeldFolder &folder() const { return *m_folder; }

private:
    void stepDone(const ChangeStep &step) override;
    void stepUndone(const ChangeStep &step) override;
    void stepRedone(const ChangeStep &step) override;
    void stepsMerged() override;
    void handleGiven(const AcDbObject &object) override;
    void numbersKept(std::uint64_t next) override;
    void drawingSaved() override;

    void catchUp();
    bool begin();
    void writeBase();
    void put(char type, const std::optional<std::string> &bytes);
    void stepEnded();
    void check(const SaveResult &result);
    void checkBase(bool waiting);
    void checkAutosave();
    void tell(const std::string &reason);
    void dropOlder();

    Drawing &m_drawing;
    ChangeLog &m_log;
    std::unique_ptr<HeldFolder> m_folder;
    std::filesystem::path m_path;
    FileOperations &m_operations;
    Calls m_calls;
    std::set<std::string> m_told;
    std::unique_ptr<StepCodec> m_codec; ///< null: its steps can't be told, the autosave has to do
    StepJournal m_journal;
    bool m_isAdopted = false, m_begun = false, m_broken = false, m_givenUp = false, m_catchingUp = false;
    bool m_isWhole = false;    ///< since the journal broke, or the last save, the whole drawing was written once
    std::uint64_t m_autosaved; ///< revision of the drawing when it was written last
    std::chrono::steady_clock::time_point m_synced;
    std::future<SaveResult> m_base, m_saving;
};

} // namespace velmor
