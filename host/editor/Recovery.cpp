#include "host/editor/Recovery.h"

#include "host/drawing/DrawingData.h"
#include "host/drawing/FileMark.h"
#include "host/editor/DrawingKeeper.h"
#include "host/editor/Guarded.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <set>

namespace velmor {

namespace fs = std::filesystem;

struct Recovery::Private {
    fs::path stateFolder;
    std::function<void(const std::wstring &)> tell;
    FileOperations ownOperations;
    FileOperations *operations = &ownOperations;
    std::unique_ptr<DrawingKeeper> keeper;
    std::function<void()> unsynced;
    std::set<std::pair<fs::path, std::string>> toldFolders; ///< drawing and reason

    /// What is needed to go on with a recovered drawing once the session takes it.
    struct Adopted {
        const Drawing *drawing = nullptr;
        std::unique_ptr<HeldFolder> folder;
        std::unique_ptr<StepCodec> codec;
    };
    std::vector<Adopted> adopted;

    void tellNotKept(const std::string &reason) const
    {
        if (tell)
            tell(uiMessage("ui.recovery.notKept", {wide(reason)}));
    }
    DrawingKeeper::Calls calls()
    {
        return {[this](const std::string &reason) { tellNotKept(reason); },
                [this] {
                    if (unsynced)
                        unsynced();
                }};
    }
    bool isHeldByOthers(const fs::path &path) const;
    void keep(Drawing &drawing, const fs::path &file);
    bool repeat(RecoveredDrawing &result, const fs::path &folder, Adopted &adoption) const;
    static bool loadBase(RecoveredDrawing &result, const fs::path &folder, const JournalBase &base);
};

namespace {

/// What the records say was done since the last save.
std::size_t stepsSinceSaved(const std::vector<JournalRecordInFile> &records)
{
    std::size_t steps = 0;
    for (const JournalRecordInFile &record : records) {
        if (record.type == journal_record::kSaved)
            steps = 0;
        else if (record.type == journal_record::kMerged && steps > 1)
            --steps;
        else if (record.type == journal_record::kStep || record.type == journal_record::kUndone ||
                 record.type == journal_record::kRedone)
            ++steps;
    }
    return steps;
}

fs::path wholePath(const fs::path &path)
{
    std::error_code error;
    const fs::path result = fs::weakly_canonical(fs::absolute(path, error), error);
    return error ? path : result;
}

} // namespace

Recovery::Recovery() : d(std::make_unique<Private>()) {}
Recovery::~Recovery() = default;

Recovery &Recovery::instance()
{
    static Recovery recovery;
    return recovery;
}

fs::path Recovery::standardFolder()
{
    const auto variable = [](const char *name) {
        const char *value = std::getenv(name);
        return fs::path(value ? value : "");
    };
    if (const fs::path own = variable("VELMOR_STATE_DIR"); !own.empty())
        return own;
    if (const fs::path state = variable("XDG_STATE_HOME"); state.is_absolute())
        return state / "velmor";
    const fs::path home = variable("HOME");
    return home.empty() ? fs::path() : home / ".local" / "state" / "velmor";
}

void Recovery::enable(fs::path stateFolder, std::function<void(const std::wstring &)> tell, FileOperations *operations)
{
    d->stateFolder = std::move(stateFolder);
    d->tell = std::move(tell);
    d->operations = operations ? operations : &d->ownOperations;
    d->toldFolders.clear();
}

void Recovery::disable()
{
    d->keeper.reset();
    d->adopted.clear();
    d->stateFolder.clear();
    d->tell = {};
    d->unsynced = {};
}

bool Recovery::isEnabled() const
{
    return !d->stateFolder.empty();
}

void Recovery::onUnsynced(std::function<void()> call)
{
    d->unsynced = std::move(call);
}

void Recovery::follow(Drawing *drawing, const fs::path &path)
{
    if (d->keeper)
        d->keeper->giveUp();
    d->keeper.reset();
    if (!isEnabled() || !drawing)
        return;
    try {
        d->keep(*drawing, path.empty() ? path : wholePath(path));
    } catch (...) {
        // An adopted folder holds what was recovered; one of our own holds nothing of use.
        if (const auto failed = std::move(d->keeper); failed && !failed->isAdopted())
            failed->giveUp();
        d->tellNotKept(utf8(reasonOfException()));
    }
}

void Recovery::Private::keep(Drawing &drawing, const fs::path &file)
{
    const auto adoption = std::ranges::find(adopted, &drawing, &Adopted::drawing);
    if (adoption != adopted.end()) {
        Adopted taken = std::move(*adoption);
        adopted.erase(adoption);
        keeper = std::make_unique<DrawingKeeper>(drawing, std::move(taken.folder), file, *operations, calls(),
                                                 std::move(taken.codec));
        keeper->start();
    } else {
        auto folder = std::make_unique<HeldFolder>();
        std::string reason;
        if (folder->make(stateFolder, file, reason)) {
            keeper = std::make_unique<DrawingKeeper>(drawing, std::move(folder), file, *operations, calls());
            keeper->start();
        } else if (toldFolders.emplace(file, reason).second)
            tellNotKept(reason);
    }
    // Behind its own folder, which names the file by now: of two programs that open it at a time one sees the other.
    if (tell && isHeldByOthers(file))
        tell(uiMessage("ui.recovery.openElsewhere", {wide(file.string())}));
}

void Recovery::pathChanged(const fs::path &path)
{
    if (d->keeper)
        d->keeper->setPath(path.empty() ? path : wholePath(path));
}

void Recovery::autosave()
{
    if (d->keeper)
        d->keeper->autosave();
}

void Recovery::finishAutosave()
{
    if (d->keeper)
        d->keeper->finishAutosave();
}

void Recovery::sync()
{
    if (d->keeper)
        d->keeper->sync();
}

void Recovery::atRisk()
{
    if (d->keeper)
        d->keeper->atRisk();
}

bool Recovery::needsAutosave() const
{
    return d->keeper && d->keeper->isBroken();
}

// --- What others left -----------------------------------------------------------------------------------------------

/// The folder that this program holds for its drawing is left out: its lock would count as another program's.
bool Recovery::Private::isHeldByOthers(const fs::path &path) const
{
    return !path.empty() && std::ranges::any_of(HeldFolder::allIn(stateFolder), [&](const fs::path &folder) {
        return !(keeper && folder == keeper->folder().path()) && HeldFolder::drawingOf(folder) == path &&
               HeldFolder::isOwned(folder);
    });
}

bool Recovery::isOpenElsewhere(const fs::path &file) const
{
    return isEnabled() && !file.empty() && d->isHeldByOthers(wholePath(file));
}

std::vector<LeftDrawing> Recovery::left()
{
    std::vector<LeftDrawing> drawings;
    for (const fs::path &folder : HeldFolder::allIn(d->stateFolder)) {
        if (HeldFolder::isOwned(folder))
            continue;
        const HeldFolder::Owner owner = HeldFolder::ownerOf(folder);
        LeftDrawing left{folder, owner.drawing, fs::file_time_type::min(), 0, owner.isChanged};
        bool isWhole = false;
        left.steps = stepsSinceSaved(StepJournal::read(folder / "steps", &isWhole));
        const auto timeOf = [&](const char *name) {
            std::error_code error;
            const auto time = fs::last_write_time(folder / name, error);
            return error ? fs::file_time_type::min() : time;
        };
        const auto ofSteps = timeOf("steps"), ofNewest = timeOf("newest.dxf"), ofAutosave = timeOf("autosave.dxf");
        left.time = std::max(ofSteps, ofNewest);
        if (left.steps == 0)
            left.time = std::max(left.time, ofAutosave);
        // Only a journal that was read to its end can tell that nothing is lost; one that was never begun, too.
        std::error_code error;
        const bool isThere = fs::exists(folder / "steps", error) || error;
        const bool isLost =
            left.steps != 0 || ofNewest != fs::file_time_type::min() || (isThere && !isWhole) || ofAutosave > ofSteps;
        if (isLost)
            drawings.push_back(std::move(left));
        else if (HeldFolder held; held.take(folder))
            held.remove();
    }
    std::ranges::sort(drawings, std::ranges::greater(), &LeftDrawing::time);
    return drawings;
}

/// The text that the steps stand on: the kept one, else the drawing's own file when it is still the same.
bool Recovery::Private::loadBase(RecoveredDrawing &result, const fs::path &folder, const JournalBase &base)
{
    for (const fs::path &file : {folder / "base.dxf", base.path}) {
        if (file.empty())
            continue;
        LoadResult loaded = Drawing::load(file);
        if (!loaded.drawing || checksumOf(loaded.drawing->priv().file.text) != base.checksum)
            continue;
        result.drawing = std::move(loaded.drawing);
        Drawing::Private &p = result.drawing->priv();
        p.file.path = base.path;
        // A file that was cut off was closed before its text was kept; it is not to be written over all the same.
        if (base.damaged && !p.report.damaged())
            p.report.findings.push_back({Severity::Damage, 0, uiLine("ui.recovery.damaged")});
        return true;
    }
    return false;
}

bool Recovery::Private::repeat(RecoveredDrawing &result, const fs::path &folder, Adopted &adoption) const
{
    const auto records = StepJournal::read(folder / "steps");
    const auto base = records.empty() || records.front().type != journal_record::kBase
                          ? std::nullopt
                          : journalBaseOf(records.front().bytes);
    if (!base || !loadBase(result, folder, *base))
        return false;
    result.path = base->path;
    auto &log = result.drawing->component<ChangeLog>();
    log.setLimit(std::numeric_limits<std::size_t>::max()); // what was undone must still be there
    auto codec = std::make_unique<StepCodec>(*result.drawing);
    const auto doAgain = [&](const JournalRecordInFile &record) {
        switch (record.type) {
        case journal_record::kStep:
            if (auto step = codec->decode(record.bytes)) {
                log.replay(std::move(*step));
                return true;
            }
            return false;
        case journal_record::kUndone:
            return log.undo();
        case journal_record::kRedone:
            return log.redo();
        case journal_record::kMerged:
            result.steps -= result.steps > 1 ? 1 : 0;
            return log.mergeLast();
        case journal_record::kHandle:
            return codec->applyHandle(record.bytes);
        case journal_record::kNumbers: {
            std::uint64_t next = 0;
            if (record.bytes.size() != sizeof next)
                return false;
            record.bytes.copy(reinterpret_cast<char *>(&next), sizeof next);
            log.keepNumbersBelow(next);
            return true;
        }
        case journal_record::kSaved:
            result.path = record.bytes;
            result.steps = 0;
            return true;
        default:
            return false;
        }
    };
    for (std::size_t i = 1; i < records.size(); ++i) {
        const char type = records[i].type;
        if (!doAgain(records[i])) {
            result.complete = false;
            break;
        }
        if (type == journal_record::kStep || type == journal_record::kUndone || type == journal_record::kRedone)
            ++result.steps;
    }
    log.setLimit(ChangeLog::kStandardLimit);
    // What was repeated only in part must not be gone on with: its journal ends in something else.
    if (result.complete)
        adoption.codec = std::move(codec);
    return true;
}

RecoveredDrawing Recovery::recover(const LeftDrawing &left)
{
    RecoveredDrawing result;
    Private::Adopted adoption;
    adoption.folder = std::make_unique<HeldFolder>();
    if (!adoption.folder->take(left.folder)) {
        result.message = uiLine("ui.recovery.taken", {left.path.string()});
        return result;
    }
    const auto takeWhole = [&](const char *name) {
        LoadResult loaded = Drawing::load(left.folder / name);
        if (!loaded.drawing)
            return false;
        result.drawing = std::move(loaded.drawing);
        result.drawing->priv().file.path = left.path;
        result.fromAutosave = true;
        result.complete = true;
        result.steps = 0;
        result.path = left.path;
        adoption.codec.reset();
        return true;
    };
    std::error_code error;
    // Without a journal that holds all, the whole drawing that was written last is the newest.
    const bool isDone = (fs::exists(left.folder / "newest.dxf", error) && takeWhole("newest.dxf")) ||
                        d->repeat(result, left.folder, adoption) || takeWhole("autosave.dxf");
    if (!isDone) {
        result.message = uiLine("ui.recovery.nothing", {left.folder.string()});
        return result;
    }
    // A file that somebody has written since is not the one the steps were done to: saving must not replace it
    // unasked, and so what was recovered has no file. The same where nobody can tell.
    std::error_code noFile;
    const HeldFolder::Owner owner = HeldFolder::ownerOf(left.folder);
    if (owner.isKnown)
        result.path = owner.isChanged ? fs::path() : owner.drawing;
    else if (fs::exists(result.path, noFile) || noFile)
        result.path.clear();
    // A file of somebody else's stays one that nobody writes over unasked, also when it is named to save to.
    result.drawing->component<FileMark>().set(owner.drawing, owner.isChanged ? std::string() : markOf(owner.drawing));
    result.drawing->component<ChangeLog>().markUnsaved();
    adoption.drawing = result.drawing.get();
    d->adopted.push_back(std::move(adoption));
    return result;
}

void Recovery::drop(const LeftDrawing &left)
{
    if (HeldFolder held; held.take(left.folder))
        held.remove();
}

} // namespace velmor
