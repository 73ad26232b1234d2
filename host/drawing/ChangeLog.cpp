#include "host/drawing/ChangeLog.h"

#include "host/drawing/ChangeRecord.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace velmor {

namespace {

constexpr std::uint64_t kNoState = ~std::uint64_t{0};

/// What the observers are told of: an entity, or the reference that shows an attribute.
AcDbEntity &shownWith(AcDbObject &object)
{
    AcDbObject *owner = ObjectAccess::host(object).owner;
    const bool inReference = owner && owner->isKindOf(AcDbBlockReference::desc());
    return static_cast<AcDbEntity &>(inReference ? *owner : object);
}

} // namespace

ChangeStep::ChangeStep() = default;
ChangeStep::~ChangeStep() = default;
ChangeStep::ChangeStep(ChangeStep &&) noexcept = default;
ChangeStep &ChangeStep::operator=(ChangeStep &&) noexcept = default;

ChangeLog::ChangeLog(Drawing &drawing) : m_drawing(drawing)
{
    Drawing::Private &d = m_drawing.priv();
    d.log = this;
    m_handles = d.nextHandle;
    m_savedState = d.modified ? kNoState : position();
    m_knowsEverything = !d.modified;
}

ChangeLog::~ChangeLog()
{
    m_drawing.priv().log = nullptr;
}

// --- Runs -----------------------------------------------------------------------------------------------------------

void ChangeLog::begin(const std::wstring &name)
{
    closeLoose();
    if (m_runs.empty())
        m_firstOfRun = m_lastId + 1;
    m_runs.push_back({m_changes.size(), m_drawing.priv().nextHandle, name});
}

void ChangeLog::giveUp()
{
    if (!m_runs.empty())
        m_runs.back().givenUp = true;
}

void ChangeLog::keep()
{
    if (m_runs.empty())
        return;
    if (m_runs.back().givenUp)
        return takeBack();
    const Run run = std::move(m_runs.back());
    m_runs.pop_back();
    if (!m_runs.empty())
        return;
    settleAids();
    closeOwn(m_changes.size(), run.name, m_drawing.priv().nextHandle);
}

void ChangeLog::keepForGood()
{
    if (m_runs.empty())
        return;
    if (m_runs.back().givenUp)
        return takeBack();
    const Run run = std::move(m_runs.back());
    m_runs.pop_back();
    if (m_runs.empty()) {
        settleAids();
    } else if (!m_done.empty() && m_done.back().id >= m_firstOfRun) {
        closeOwn(run.first, m_runs.front().name, run.handles);
    } else {
        // What the work around it did at its start belongs to the first step that it makes; this is none yet.
        const auto lasts = [this](const Change &change) { return change.kind != ChangeKind::Handle && !aidOf(change); };
        if (std::none_of(m_changes.begin() + static_cast<std::ptrdiff_t>(run.first), m_changes.end(), lasts))
            return;
    }
    closeStep(m_changes.size(), run.name, m_handles, m_drawing.priv().nextHandle);
    for (Run &outer : m_runs) {
        outer.first = 0;
        outer.handles = m_handles;
    }
}

/// Closes what the work around steps for good did itself: it belongs to the one before.
void ChangeLog::closeOwn(std::size_t end, const std::wstring &name, std::uint64_t after)
{
    const std::uint64_t last = m_lastId;
    closeStep(end, name, m_handles, after);
    const std::size_t count = m_done.size();
    if (m_lastId == last || count < 2 || m_done[count - 2].id < m_firstOfRun || m_done[count - 2].id == m_savedState)
        return;
    mergeLast();
    tell([](StepFollower &follower) { follower.stepsMerged(); });
}

void ChangeLog::takeBack()
{
    if (m_runs.empty())
        return;
    const Run run = std::move(m_runs.back());
    m_runs.pop_back();
    if (m_savedInStep && m_savedChanges > run.first)
        m_savedInStep = false;
    std::vector<Change> changes(std::make_move_iterator(m_changes.begin() + static_cast<std::ptrdiff_t>(run.first)),
                                std::make_move_iterator(m_changes.end()));
    m_changes.resize(run.first);
    for (const Change &change : changes) // aids that go with the rest
        if (change.kind == ChangeKind::Appended)
            m_aids.erase(change.object);
    // What stands from before the run began where it began.
    const std::uint64_t begun = m_handles;
    setHandles(run.handles);
    m_handles = std::min(m_handles, begun);
    try {
        if (!changes.empty())
            apply(changes, true);
    } catch (...) { // an observer's
        if (m_runs.empty())
            takeAidsBack();
        throw;
    }
    if (m_runs.empty())
        takeAidsBack();
}

void ChangeLog::closeLoose()
{
    if (m_runs.empty() && !m_changes.empty())
        closeStep(m_changes.size(), {}, m_handles, m_drawing.priv().nextHandle);
}

bool ChangeLog::hasChanges() const
{
    return std::any_of(m_changes.begin(), m_changes.end(),
                       [](const Change &change) { return change.kind != ChangeKind::Handle; });
}

// --- Aids -----------------------------------------------------------------------------------------------------------
//
// While the outermost run goes on, what was noted of an aid is no part of any step that is closed: it is set aside. So
// the steps, and a journal that follows them, never know of an aid, and whoever repeats the journal of a program that
// died has none.

AcDbObject *ChangeLog::aidOf(const Change &change) const
{
    if (!change.object)
        return nullptr;
    if (m_aids.contains(change.object))
        return change.object;
    AcDbObject *owner = ObjectAccess::host(*change.object).owner; // the reference of an attribute
    return m_aids.contains(owner) ? owner : nullptr;
}

bool ChangeLog::isAid(const AcDbObject &object) const
{
    return m_aids.contains(const_cast<AcDbObject *>(&object));
}

/// Takes the notes on aids out of the changes before end; where these end now.
std::size_t ChangeLog::setAside(std::size_t end)
{
    std::size_t left = 0;
    const auto runs = m_runs;
    for (std::size_t i = 0; i < end; ++i) {
        if (!aidOf(m_changes[i])) {
            if (left != i)
                m_changes[left] = std::move(m_changes[i]);
            ++left;
            continue;
        }
        m_aidNotes.push_back(std::move(m_changes[i]));
        for (std::size_t run = 0; run < runs.size(); ++run)
            m_runs[run].first -= runs[run].first > i ? 1 : 0;
        if (m_savedInStep && m_savedChanges > left)
            --m_savedChanges;
    }
    m_changes.erase(m_changes.begin() + static_cast<std::ptrdiff_t>(left),
                    m_changes.begin() + static_cast<std::ptrdiff_t>(end));
    return left;
}

/// The outermost run ends: aids that are gone leave nothing behind, those that stay are entities like any other.
void ChangeLog::settleAids()
{
    if (m_aids.empty())
        return;
    setAside(m_changes.size());
    std::vector<Change> notes = std::exchange(m_aidNotes, {});
    const std::uint64_t root = m_drawing.priv().file.rootHandle;
    for (Change &note : notes) // aside of what the drawing has come to since
        if (note.kind == ChangeKind::Data)
            note.as<RecordState>().rootHandle = root;
    std::unordered_set<AcDbObject *> gone;
    for (AcDbObject *aid : m_aids)
        if (aid->isErased())
            gone.insert(aid);
    {
        const bool applying = std::exchange(m_applying, true);
        for (auto note = notes.rbegin(); note != notes.rend(); ++note)
            if (gone.contains(aidOf(*note)))
                exchange(m_drawing, *note, true);
        m_applying = applying;
    }
    for (Change &note : notes)
        if (!gone.contains(aidOf(note)))
            m_changes.push_back(std::move(note));
    m_aids.clear();
    if (!hasChanges()) // then only aids, and who was just named, have numbers since
        setHandles(handlesBehind(m_handles, m_changes.size()));
}

/// The outermost run failed: what it drew to help goes with it, also what was drawn in steps that stay.
void ChangeLog::takeAidsBack()
{
    std::vector<Change> erasing;
    for (AcDbObject *aid : m_aids)
        if (!aid->isErased())
            erasing.push_back(changeOf(ChangeKind::Erased, aid));
    std::exception_ptr failure;
    try {
        if (!erasing.empty())
            apply(erasing, false);
    } catch (...) { // an observer's
        failure = std::current_exception();
    }
    std::ranges::move(erasing, std::back_inserter(m_aidNotes));
    settleAids();
    tellState();
    if (failure)
        std::rethrow_exception(failure);
}

/// The next free handle behind changes at the beginning of those at hand, which only name objects.
std::uint64_t ChangeLog::handlesBehind(std::uint64_t before, std::size_t end) const
{
    for (std::size_t i = 0; i < end; ++i)
        before = std::max(before, m_changes[i].number + 1);
    return before;
}

// --- Closing --------------------------------------------------------------------------------------------------------

/// Makes a step of changes at the beginning of those at hand.
void ChangeLog::closeStep(std::size_t end, std::wstring name, std::uint64_t before, std::uint64_t after)
{
    if (!m_aids.empty()) {
        end = setAside(end);
        if (end == 0)
            return tellState(); // the numbers of the aids belong to the step that follows
    }
    const auto last = m_changes.begin() + static_cast<std::ptrdiff_t>(end);
    const bool onlyHandles =
        std::all_of(m_changes.begin(), last, [](const Change &change) { return change.kind == ChangeKind::Handle; });
    m_handles = after;
    // The runs that go on count from what is left.
    const auto moveRuns = [&] {
        for (Run &run : m_runs)
            run.first -= std::min(run.first, end);
    };
    if (onlyHandles) {
        // To name an object is no step of the user's.
        if (!m_aids.empty())
            m_handles = after = handlesBehind(before, end);
        m_keptNumbers = std::max(m_keptNumbers, end != 0 ? after : 0);
        for (auto change = m_changes.begin(); change != last; ++change)
            tell([&](StepFollower &follower) { follower.handleGiven(*change->object); });
        m_changes.erase(m_changes.begin(), last);
        moveRuns();
        return;
    }
    ChangeStep step;
    step.name = std::move(name);
    step.id = ++m_lastId;
    step.handlesBefore = before;
    step.handlesAfter = after;
    step.changes.assign(std::make_move_iterator(m_changes.begin()), std::make_move_iterator(last));
    m_changes.erase(m_changes.begin(), last);
    moveRuns();
    for (const Change &change : step.changes)
        step.bytes += bytesOf(change);
    if (m_savedInStep) {
        if (m_savedChanges == end)
            m_savedState = step.id;
        m_savedInStep = m_savedChanges > end;
        m_savedChanges -= std::min(m_savedChanges, end);
    }
    for (const ChangeStep &undone : m_undone)
        m_bytes -= undone.bytes;
    m_undone.clear();
    m_bytes += step.bytes;
    m_done.push_back(std::move(step));
    trim();
    tellState();
    tell([this](StepFollower &follower) { follower.stepDone(m_done.back()); });
}

// --- Steps ----------------------------------------------------------------------------------------------------------

std::wstring ChangeLog::undoName() const
{
    return hasChanges() || m_done.empty() ? std::wstring() : m_done.back().name;
}

std::wstring ChangeLog::redoName() const
{
    return canRedo() ? m_undone.back().name : std::wstring();
}

bool ChangeLog::undo()
{
    if (m_applying || (!m_runs.empty() && hasChanges()))
        return false;
    closeStep(m_changes.size(), {}, m_handles, m_drawing.priv().nextHandle);
    if (m_done.empty())
        return false;
    m_undone.push_back(std::move(m_done.back()));
    m_done.pop_back();
    ChangeStep &step = m_undone.back();
    setHandles(step.handlesBefore);
    // The step is taken back whatever an observer makes of it, so the followers have to know.
    std::exception_ptr failure;
    try {
        apply(step.changes, true);
    } catch (...) {
        failure = std::current_exception();
    }
    tell([&](StepFollower &follower) { follower.stepUndone(step); });
    if (failure)
        std::rethrow_exception(failure);
    return true;
}

bool ChangeLog::redo()
{
    if (m_applying || hasChanges() || m_undone.empty())
        return false;
    closeStep(m_changes.size(), {}, m_handles, m_drawing.priv().nextHandle);
    m_done.push_back(std::move(m_undone.back()));
    m_undone.pop_back();
    ChangeStep &step = m_done.back();
    setHandles(std::max(m_drawing.priv().nextHandle, step.handlesAfter));
    std::exception_ptr failure;
    try {
        apply(step.changes, false);
    } catch (...) {
        failure = std::current_exception();
    }
    tell([&](StepFollower &follower) { follower.stepRedone(step); });
    if (failure)
        std::rethrow_exception(failure);
    return true;
}

void ChangeLog::replay(ChangeStep step)
{
    closeLoose();
    for (const ChangeStep &undone : m_undone)
        m_bytes -= undone.bytes;
    m_undone.clear();
    step.id = ++m_lastId;
    for (const Change &change : step.changes)
        step.bytes += bytesOf(change);
    m_bytes += step.bytes;
    m_undone.push_back(std::move(step));
    redo();
    trim();
}

bool ChangeLog::mergeLast()
{
    if (m_done.size() < 2)
        return false;
    ChangeStep last = std::move(m_done.back());
    m_done.pop_back();
    ChangeStep &step = m_done.back();
    std::ranges::move(last.changes, std::back_inserter(step.changes));
    step.handlesAfter = last.handlesAfter;
    step.id = last.id;
    step.bytes += last.bytes;
    return true;
}

void ChangeLog::forget()
{
    m_ground = position();
    m_done.clear();
    m_undone.clear();
    m_bytes = 0;
}

void ChangeLog::markUnsaved()
{
    m_savedState = kNoState;
    m_savedInStep = false;
    tellState();
}

void ChangeLog::setLimit(std::size_t bytes)
{
    m_limit = bytes;
    trim();
}

void ChangeLog::trim()
{
    while (m_bytes > m_limit && m_done.size() > 1) {
        m_bytes -= m_done.front().bytes;
        m_ground = m_done.front().id;
        m_done.pop_front();
    }
}

void ChangeLog::setHandles(std::uint64_t next)
{
    next = std::max(next, m_keptNumbers);
    for (const AcDbObject *aid : m_aids)
        next = std::max(next, ObjectAccess::host(*aid).handle + 1);
    m_drawing.priv().nextHandle = next;
    m_handles = next;
    for (Run &run : m_runs)
        run.handles = std::min(run.handles, next);
}

void ChangeLog::tellState()
{
    m_drawing.priv().modified = hasChanges() || position() != m_savedState;
}

/// Brings the drawing to the other side of all changes first, and tells its observers afterwards.
void ChangeLog::apply(std::vector<Change> &changes, bool undoing)
{
    struct Pause {
        explicit Pause(bool &applying) : m_applying(applying) { m_applying = true; }
        ~Pause() { m_applying = false; }
        bool &m_applying;
    };
    Drawing::Private &d = m_drawing.priv();
    {
        const Pause pause(m_applying);
        if (undoing)
            for (auto change = changes.rbegin(); change != changes.rend(); ++change)
                exchange(m_drawing, *change, true);
        else
            for (Change &change : changes)
                exchange(m_drawing, change, false);
    }
    d.changed();
    tellState();

    std::exception_ptr failure;
    const auto inform = [&](auto call) {
        const auto present = d.observers;
        for (DrawingObserver *observer : present) {
            if (std::find(d.observers.begin(), d.observers.end(), observer) == d.observers.end())
                continue;
            try {
                call(*observer);
            } catch (...) {
                // The others have to know all the same.
                failure = failure ? failure : std::current_exception();
            }
        }
    };
    const Pause pause(m_applying);
    const bool outer = std::exchange(
        m_exchangesLooks, std::ranges::any_of(changes, [](const Change &c) { return c.kind == ChangeKind::Look; }));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const Change &change = undoing ? changes[changes.size() - 1 - i] : changes[i];
        switch (change.kind) {
        case ChangeKind::Appended:
        case ChangeKind::Erased: {
            auto &entity = static_cast<AcDbEntity &>(*change.object);
            inform([&](DrawingObserver &o) { o.entityErased(entity, entity.isErased()); });
            break;
        }
        case ChangeKind::Data:
            if (!ObjectAccess::has(*change.object, kIsEntity))
                break;
            [[fallthrough]];
        case ChangeKind::Attribute:
        case ChangeKind::Look:
        case ChangeKind::Shape:
        case ChangeKind::Text: {
            AcDbEntity &entity = shownWith(*change.object);
            if (!ObjectAccess::has(entity, kWithdrawn))
                inform([&](DrawingObserver &o) { o.entityModified(entity); });
            break;
        }
        default:
            break;
        }
    }
    m_exchangesLooks = outer;
    if (failure)
        std::rethrow_exception(failure);
}

void ChangeLog::addFollower(StepFollower &follower)
{
    m_followers.push_back(&follower);
}

void ChangeLog::removeFollower(StepFollower &follower)
{
    std::erase(m_followers, &follower);
}

template <class Call>
void ChangeLog::tell(Call call)
{
    const auto present = m_followers;
    std::exception_ptr failure;
    for (StepFollower *follower : present) {
        if (std::find(m_followers.begin(), m_followers.end(), follower) == m_followers.end())
            continue;
        try {
            call(*follower);
        } catch (...) {
            // A menu that fails must not keep the journal from knowing.
            failure = failure ? failure : std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

// --- Handles ----------------------------------------------------------------------------------------------------

void ChangeLog::noteHandle(AcDbObject &object)
{
    if (m_applying)
        return;
    if (!m_runs.empty()) {
        Change change = changeOf(ChangeKind::Handle, &object);
        change.number = ObjectAccess::host(object).handle;
        note(std::move(change));
        return;
    }
    m_keptNumbers = std::max(m_keptNumbers, ObjectAccess::host(object).handle + 1);
    tell([&](StepFollower &follower) { follower.handleGiven(object); });
}

void ChangeLog::keepNumbers()
{
    keepNumbersBelow(m_drawing.priv().nextHandle);
}

void ChangeLog::keepNumbersBelow(std::uint64_t next)
{
    if (next <= m_keptNumbers)
        return;
    m_keptNumbers = next;
    m_drawing.priv().nextHandle = std::max(m_drawing.priv().nextHandle, next);
    tell([&](StepFollower &follower) { follower.numbersKept(next); });
}

std::uint64_t ChangeLog::firstFreeNumber() const
{
    return m_undone.empty() ? 0 : m_undone.front().handlesAfter;
}

void ChangeLog::saved()
{
    m_savedInStep = hasChanges();
    m_savedChanges = m_changes.size();
    m_savedState = m_savedInStep ? kNoState : position();
    tell([](StepFollower &follower) { follower.drawingSaved(); });
}

} // namespace velmor
