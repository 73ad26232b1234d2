// What keeps a person's work when the program or the machine ends without being asked.
//
// Every open drawing has a folder of its own in the state folder, held by a lock for as long as its program lives:
//
//   owner         which drawing it is; locked by the program
//   base.dxf      the text that the drawing was read from, written at its first change
//   steps         a journal to which every step that is done, undone or redone is appended before the user gets the
//                 next prompt (see StepJournal.h)
//   autosave.dxf  the whole drawing, written every few minutes
//
// The user's own file is never touched. A folder whose lock is free belonged to a program that died: its drawing is
// recovered by repeating the steps on the base; what can't be repeated any more is taken from the autosave. A program
// that is killed so loses the step at work and no other. The journal is brought to the disk itself every two seconds
// at most (once the event loop gets its turn, see onUnsynced), and with each autosave, so a machine that fails costs
// the steps of that time.
//
// Where the journal can't take a step (a full disk, a step that can't be told as bytes), the whole drawing is written
// at once and with the autosaves from then on. A folder that can't be written is told, once for each drawing and
// reason; work goes on without it.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/drawing/dxf/AtomicFile.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmor {

/// A drawing that a program left behind.
struct LeftDrawing {
    std::filesystem::path folder;
    std::filesystem::path path;           ///< the drawing's own file; empty when it had none
    std::filesystem::file_time_type time; ///< of the last step or autosave
    std::size_t steps = 0;                ///< that were done or undone since it was saved
    bool fileChanged = false;             ///< its own file was written by somebody since; it is not to be written over
};

struct RecoveredDrawing {
    std::unique_ptr<Drawing> drawing; ///< modified; null when nothing could be recovered
    std::filesystem::path path;       ///< its own file, which is as it was saved last; empty when it is not
    std::size_t steps = 0;            ///< that were repeated
    bool complete = true;             ///< all that the journal holds was repeated
    bool fromAutosave = false;
    std::string message; ///< one line when drawing is null
};

/// The recovery of the program; it does nothing before it is enabled.
class Recovery {
public:
    static Recovery &instance();

    /// From now on drawings that the session opens are kept in that folder, which is made when it is missing. tell gets
    /// what the user has to know: the same trouble once, a drawing that another program has open.
    void enable(std::filesystem::path stateFolder, std::function<void(const std::wstring &)> tell,
                FileOperations *operations = nullptr);
    /// Ends it; the folders of open drawings stay behind as if the program had died.
    void disable();
    bool isEnabled() const;
    /// VELMOR_STATE_DIR, else velmor in XDG_STATE_HOME or in ~/.local/state; empty when the environment names none.
    static std::filesystem::path standardFolder();

    /// Called when the journal has something that the disk has not yet, and no later step may bring it there: sync is
    /// to be called in about two seconds. A program without an event loop does without.
    void onUnsynced(std::function<void()> call);

    /// The session's drawing from now on; null for none. The former one was given up by the user, and so is its folder.
    /// Whatever fails here is told and leaves the drawing without a keeper; nothing is thrown.
    void follow(Drawing *drawing, const std::filesystem::path &path);
    /// The drawing got a file of its own.
    void pathChanged(const std::filesystem::path &path);

    /// Writes the whole drawing into its folder, unless it is as it was at the last time; the writing itself goes on
    /// beside the work.
    void autosave();
    /// Waits for an autosave that is being written.
    void finishAutosave();
    /// Brings the journal to the disk.
    void sync();
    /// The same for all that was done, when something went wrong and worse may follow.
    void atRisk();
    /// The steps can't be kept one by one: only autosaves keep the drawing.
    bool needsAutosave() const;
    /// Whether another program has that file open.
    bool isOpenElsewhere(const std::filesystem::path &file) const;

    // What programs left behind
    /// The latest first. Folders in which nothing is lost are taken away.
    std::vector<LeftDrawing> left();
    /// Reads it. When the session takes the drawing, its folder is gone on with; before that it is held.
    RecoveredDrawing recover(const LeftDrawing &left);
    /// Takes the folder away for good.
    void drop(const LeftDrawing &left);

private:
    Recovery();
    ~Recovery();
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace velmor
