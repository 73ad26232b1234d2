// What was done to a drawing, step by step: taken back when work fails, and undone and redone by the user.
//
// One for each drawing (drawing.component<ChangeLog>()); from the moment it is made every change of the drawing is
// noted with what was there before, and nothing else, so that taking a step back costs what the step changed, whatever
// the size of the drawing. It notes entities that come, go, change their shape, layer or colour, texts of attributes,
// layers and the current one, blocks with their base points, attached data, dictionaries, header variables and the
// handles that were given. After a step was taken back the drawing's text is byte for byte what it was before.
//
// Runs nest: the outermost run is a step, and what an inner one kept belongs to it. Changes outside of any run become
// a step of their own, without a name, when the next run begins. Handles that are asked for outside of a step, or that
// a save gives, are given for good.
//
// A run may make steps of its own for good, say the handlers of a dialog that a command runs. What the outermost run
// does itself between and behind them belongs to the one before, and what it did at its start to the first. Aids are
// entities that work only draws to help, say the outline that a dialog shows while an area is defined: no step knows of
// them while the outermost run goes on, nor of those that are erased when it ends. So neither undo nor redo brings one
// back, a run of nothing else makes no step, and a journal that follows the steps has none.
//
// Objects that were undone stay in memory, erased, so that an id never dangles; the log itself stays below its limit
// by forgetting the oldest steps.
#pragma once

#include "host/drawing/Drawing.h"

#include <deque>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace velmor {

struct Change;

/// A step that was done, or was undone and can be done again.
struct ChangeStep {
    ChangeStep();
    ~ChangeStep();
    ChangeStep(ChangeStep &&) noexcept;
    ChangeStep &operator=(ChangeStep &&) noexcept;

    std::wstring name;    ///< of the command or dialog; empty for changes outside of any
    std::uint64_t id = 0; ///< never given twice in a drawing
    std::vector<Change> changes;
    std::uint64_t handlesBefore = 0, handlesAfter = 0; ///< the next free handle
    std::size_t bytes = 0;
};

/// Told of what becomes of steps; for a journal, menus and buttons.
class StepFollower {
public:
    virtual ~StepFollower() = default;
    /// A new step stands at the top; steps that could be redone are gone.
    virtual void stepDone(const ChangeStep &) {}
    virtual void stepUndone(const ChangeStep &) {}
    virtual void stepRedone(const ChangeStep &) {}
    /// The last two steps are one now, which has the name of the earlier one.
    virtual void stepsMerged() {}
    /// A handle was given for good.
    virtual void handleGiven(const AcDbObject &) {}
    /// All numbers below this one are taken for good.
    virtual void numbersKept(std::uint64_t /*next*/) {}
    /// The drawing as it is now stands in its file.
    virtual void drawingSaved() {}
};

class ChangeLog final {
public:
    explicit ChangeLog(Drawing &drawing); ///< made by Drawing::component
    ~ChangeLog();
    ChangeLog(const ChangeLog &) = delete;
    ChangeLog &operator=(const ChangeLog &) = delete;

    // Runs
    void begin(const std::wstring &name = {});
    /// Ends the innermost run, whose changes stay; the run around it may still take them back.
    void keep();
    /// The same, and makes a step of it at once, if it did more than aids: no run around it can take that back.
    void keepForGood();
    /// Ends the innermost run and takes its changes back, the last one first.
    void takeBack();
    /// Whatever ends the innermost run: it takes its changes back.
    void giveUp();
    bool isRunning() const { return !m_runs.empty(); }

    // Steps
    bool canUndo() const { return !m_done.empty() || hasChanges(); }
    bool canRedo() const { return !m_undone.empty() && !hasChanges(); }
    std::size_t undoCount() const { return m_done.size() + (hasChanges() ? 1 : 0); }
    std::size_t redoCount() const { return canRedo() ? m_undone.size() : 0; }
    /// Name of the step that undo (redo) takes; empty when there is none or it has none.
    std::wstring undoName() const;
    std::wstring redoName() const;
    /// Takes the last step back. False when there is none, and while a run has changes of its own.
    bool undo();
    /// Does the step again that was undone last.
    bool redo();
    /// The step that was done last; 0 for none. It names the state of the drawing.
    std::uint64_t position() const { return m_done.empty() ? m_ground : m_done.back().id; }
    /// Forgets all steps; the drawing stays as it is.
    void forget();
    /// No step leads to what is saved: the drawing is modified whatever is undone.
    void markUnsaved();
    /// True when the drawing was as it was read when the log was made, so that its steps tell all that was done to it.
    bool knowsEverything() const { return m_knowsEverything && m_ground == 0 && m_keptNumbers == 0; }
    static constexpr std::size_t kStandardLimit = std::size_t{256} << 20;
    /// The log holds at most about that many bytes, and the last step in any case.
    void setLimit(std::size_t bytes);
    std::size_t bytes() const { return m_bytes; }
    /// True while observers are told of changes that were taken back or done again, when some of them are of layer or
    /// colour: what comes or goes may not have the layer any more with which it was seen.
    bool exchangesLooks() const { return m_exchangesLooks; }

    void addFollower(StepFollower &follower);
    void removeFollower(StepFollower &follower);
    /// Makes one step of the last two, as for stepsMerged. False when there are fewer.
    bool mergeLast();
    /// Takes a step that was read from a journal and does it. Its changes are as those of a step that was undone.
    void replay(ChangeStep step);

    // Notes, by the drawing's own operations. "Before" ones come right before the change.
    void noteAppended(AcDbEntity &entity);
    void noteAttribute(AttributeEntity &attribute, unsigned flagsOfReference);
    void noteErasing(AcDbEntity &entity); ///< before an entity is erased or comes back
    /// It is an aid of the work that runs. False outside of work, and for an entity that is no longer only its own.
    bool noteAid(AcDbEntity &entity);
    void noteLook(AcDbEntity &entity);                                     ///< before a change of layer or colour
    void noteShape(AcDbEntity &entity);                                    ///< before a change of its own shape
    void noteText(TextEntity &text);                                       ///< before a change of its text
    void noteData(AcDbObject &object, const std::string &key);             ///< before
    void noteEntry(const std::string &dictionary, const std::string &key); ///< before
    void noteHeader(const std::string &name);                              ///< before
    void noteLayerAdded(std::size_t index);
    void noteLayer(std::size_t index);     ///< before
    void noteLayerName(std::size_t index); ///< before; its record's state is a note of its own
    void noteCurrentLayer();               ///< before
    void noteBlockAdded(BlockRecord &block);
    void noteBlockErasing(BlockRecord &block); ///< before
    void noteBasePoint(BlockRecord &block);    ///< before
    void noteHandle(AcDbObject &object);
    /// An aid of the work that runs now; it is not to be written.
    bool isAid(const AcDbObject &object) const;
    /// A save took numbers of its own: they stay taken.
    void keepNumbers();
    /// The same for all numbers below one.
    void keepNumbersBelow(std::uint64_t next);
    /// No number below this one may be given: it belongs to a step that can be redone.
    std::uint64_t firstFreeNumber() const;
    void saved();

private:
    struct Run {
        std::size_t first; ///< of its changes
        std::uint64_t handles;
        std::wstring name;
        bool givenUp = false;
    };
    bool hasChanges() const;
    void note(Change change);
    void closeStep(std::size_t end, std::wstring name, std::uint64_t before, std::uint64_t after);
    void closeOwn(std::size_t end, const std::wstring &name, std::uint64_t after);
    void closeLoose();
    AcDbObject *aidOf(const Change &change) const;
    std::size_t setAside(std::size_t end);
    void settleAids();
    void takeAidsBack();
    std::uint64_t handlesBehind(std::uint64_t before, std::size_t end) const;
    void apply(std::vector<Change> &changes, bool undoing);
    void setHandles(std::uint64_t next);
    void tellState();
    void trim();
    template <class Call>
    void tell(Call call);

    Drawing &m_drawing;
    std::vector<Change> m_changes; ///< since the last step
    std::vector<Run> m_runs;
    std::uint64_t m_handles = 0; ///< next free handle when the changes at hand began
    std::deque<ChangeStep> m_done;
    std::vector<ChangeStep> m_undone; ///< the one to be redone next comes last
    std::vector<StepFollower *> m_followers;
    std::unordered_set<AcDbObject *> m_aids; ///< of the outermost run
    std::vector<Change> m_aidNotes;          ///< on them, that are no longer among the changes at hand
    std::uint64_t m_lastId = 0;
    std::uint64_t m_firstOfRun = 0; ///< the first step that the outermost run made, or would make
    std::uint64_t m_ground = 0;     ///< the state below the oldest step that is still known
    std::uint64_t m_keptNumbers = 0;
    std::uint64_t m_savedState = 0;
    std::size_t m_savedChanges = 0; ///< how many of the changes at hand the file on disk holds
    bool m_savedInStep = false;
    std::size_t m_bytes = 0, m_limit = kStandardLimit;
    bool m_applying = false;
    bool m_exchangesLooks = false;
    bool m_knowsEverything;
};

} // namespace velmor
