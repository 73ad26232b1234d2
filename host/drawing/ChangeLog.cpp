#include "host/drawing/ChangeLog.h"

#include "host/drawing/ChangeRecord.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <optional>
#include <utility>

namespace velmor {

namespace {

constexpr std::uint64_t kNoState = ~std::uint64_t{0};

template <class State>
Change changeOf(ChangeKind kind, AcDbObject *object, State state)
{
    Change change{kind};
    change.object = object;
    if (object)
        change.flags = static_cast<std::uint16_t>(ObjectAccess::host(*object).flags & kPatchFlags);
    if constexpr (!std::is_same_v<State, std::monostate>) {
        change.extra = std::make_unique<Change::Extra>();
        change.extra->state = std::move(state);
    }
    return change;
}

Change changeOf(ChangeKind kind, AcDbObject *object)
{
    return changeOf(kind, object, std::monostate());
}

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
    if (m_runs.empty()) {
        m_firstOfRun = m_lastId + 1;
        m_aids.clear();
    }
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
    const std::uint64_t last = m_lastId;
    closeStep(m_changes.size(), run.name, m_handles, m_drawing.priv().nextHandle);
    settleRun(m_lastId != last);
}

/// Takes the aids out of the steps of the outermost run, and what it did itself, beside the steps that it made for
/// good, into the step before, at its start into the one behind (hasRest: the last step is such a one). For that the
/// steps are undone and done again, without their observers, for whom nothing changes: followers read what stands in
/// the drawing.
void ChangeLog::settleRun(bool hasRest)
{
    auto aids = std::exchange(m_aids, {});
    std::erase_if(aids, [](const AcDbObject *aid) { return !ObjectAccess::has(*aid, kErased); });
    const auto first = std::ranges::find_if(m_done, [&](const ChangeStep &step) { return step.id >= m_firstOfRun; });
    if (m_done.end() - first < (aids.empty() && hasRest ? 2 : 1) || (aids.empty() && !hasRest))
        return;
    struct Pause {
        explicit Pause(bool &applying) : m_applying(applying) { m_applying = true; }
        ~Pause() { m_applying = false; }
        bool &m_applying;
    } const pause(m_applying);
    std::exception_ptr failure;
    const auto follow = [&](auto call) {
        try {
            tell(call);
        } catch (...) {
            failure = failure ? failure : std::current_exception();
        }
    };
    std::vector<ChangeStep> steps;
    for (auto left = m_done.end() - first; left > 0; --left) {
        steps.push_back(std::move(m_done.back()));
        m_done.pop_back();
        ChangeStep &step = steps.back();
        m_bytes -= step.bytes;
        for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change)
            exchange(m_drawing, *change, true);
        follow([&](StepFollower &follower) { follower.stepUndone(step); });
    }
    std::ranges::reverse(steps);

    Drawing::Private &d = m_drawing.priv();
    for (AcDbObject *aid : aids) // whose first step is forgotten
        if (!ObjectAccess::has(*aid, kErased))
            d.setErased(static_cast<AcDbEntity &>(*aid), true);

    const std::wstring ownName = steps.back().name;
    const auto isOwn = [&](const ChangeStep &step) { return hasRest && step.name == ownName; };
    std::vector<ChangeStep> kept;
    std::optional<std::uint64_t> handlesBefore; // of steps that are gone, whose numbers nobody has any more
    for (ChangeStep &step : steps) {
        std::erase_if(step.changes, [&](const Change &change) { return aids.contains(change.object); });
        const bool isGone =
            std::ranges::all_of(step.changes, [](const Change &change) { return change.kind == ChangeKind::Handle; });
        if (handlesBefore)
            step.handlesBefore = std::exchange(handlesBefore, std::nullopt).value();
        if (isGone) {
            handlesBefore = step.handlesBefore;
            for (Change &change : step.changes) { // given for good, as outside of a step
                exchange(m_drawing, change, false);
                m_keptNumbers = std::max(m_keptNumbers, change.number + 1);
                follow([&](StepFollower &follower) { follower.handleGiven(*change.object); });
            }
        } else if (!kept.empty() && (isOwn(step) || isOwn(kept.back()))) {
            ChangeStep &joined = kept.back();
            if (isOwn(joined))
                joined.name = step.name;
            joined.handlesAfter = step.handlesAfter;
            std::ranges::move(step.changes, std::back_inserter(joined.changes));
        } else {
            kept.push_back(std::move(step));
        }
    }
    if (kept.empty())
        d.nextHandle = std::max(*handlesBefore, m_keptNumbers);
    else
        kept.back().handlesAfter = d.nextHandle;
    m_handles = d.nextHandle;
    for (ChangeStep &step : kept) {
        step.id = ++m_lastId;
        step.bytes = 0;
        for (Change &change : step.changes) {
            exchange(m_drawing, change, false);
            step.bytes += bytesOf(change);
        }
        m_bytes += step.bytes;
        m_done.push_back(std::move(step));
        follow([&](StepFollower &follower) { follower.stepDone(m_done.back()); });
    }
    d.changed();
    tellState();
    if (failure)
        std::rethrow_exception(failure);
}

void ChangeLog::keepForGood()
{
    if (m_runs.empty())
        return;
    if (m_runs.back().givenUp)
        return takeBack();
    const Run run = std::move(m_runs.back());
    m_runs.pop_back();
    // What the work around it did before is a step before this one.
    if (!m_runs.empty() && run.first > 0)
        closeStep(run.first, m_runs.front().name, m_handles, run.handles);
    closeStep(m_changes.size(), run.name, m_handles, m_drawing.priv().nextHandle);
    for (Run &outer : m_runs) {
        outer.first = 0;
        outer.handles = m_handles;
    }
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
    setHandles(run.handles);
    if (!changes.empty())
        apply(changes, true);
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

/// Makes a step of changes at the beginning of those at hand.
void ChangeLog::closeStep(std::size_t end, std::wstring name, std::uint64_t before, std::uint64_t after)
{
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

// --- Notes ----------------------------------------------------------------------------------------------------------

void ChangeLog::note(Change change)
{
    if (!m_applying)
        m_changes.push_back(std::move(change));
}

void ChangeLog::noteAppended(AcDbEntity &entity)
{
    note(changeOf(ChangeKind::Appended, &entity));
}

void ChangeLog::noteAttribute(AttributeEntity &attribute, unsigned flagsOfReference)
{
    Change change = changeOf(ChangeKind::Attribute, &attribute);
    change.flags = static_cast<std::uint16_t>(flagsOfReference & kPatchFlags);
    note(std::move(change));
}

void ChangeLog::noteErasing(AcDbEntity &entity)
{
    note(changeOf(ChangeKind::Erased, &entity));
}

void ChangeLog::noteAid(AcDbEntity &entity)
{
    if (isRunning())
        m_aids.insert(&entity);
}

void ChangeLog::noteLook(AcDbEntity &entity)
{
    if (m_applying)
        return;
    Change change = changeOf(ChangeKind::Look, &entity);
    change.layer = ObjectAccess::host(entity).layer;
    change.color = ObjectAccess::host(entity).color;
    note(std::move(change));
}

void ChangeLog::noteShape(AcDbEntity &entity)
{
    if (m_applying)
        return;
    // A hatch is set up by a row of setters, each of which is one change.
    const std::size_t first = m_runs.empty() ? 0 : m_runs.back().first;
    if (m_changes.size() > first && m_changes.back().kind == ChangeKind::Shape && m_changes.back().object == &entity)
        return;
    note(changeOf(ChangeKind::Shape, &entity, shapeOf(entity)));
}

void ChangeLog::noteText(TextEntity &text)
{
    if (!m_applying)
        note(changeOf(ChangeKind::Text, &text, text.shape().text));
}

void ChangeLog::noteData(AcDbObject &object, const std::string &key)
{
    if (!m_applying)
        note(changeOf(ChangeKind::Data, &object, recordState(m_drawing.priv(), &object, {}, key)));
}

void ChangeLog::noteEntry(const std::string &dictionary, const std::string &key)
{
    if (!m_applying)
        note(changeOf(ChangeKind::Entry, nullptr, recordState(m_drawing.priv(), nullptr, dictionary, key)));
}

void ChangeLog::noteHeader(const std::string &name)
{
    if (m_applying)
        return;
    HeaderState state{name, {}};
    const auto &header = m_drawing.priv().header;
    if (const auto found = header.find(name); found != header.end())
        state.variable = found->second;
    note(changeOf(ChangeKind::Header, nullptr, std::move(state)));
}

void ChangeLog::noteLayerAdded(std::size_t index)
{
    Change change{ChangeKind::LayerAdded};
    change.layer = static_cast<std::uint32_t>(index);
    note(std::move(change));
}

void ChangeLog::noteLayer(std::size_t index)
{
    if (m_applying)
        return;
    Change change = changeOf(ChangeKind::Layer, nullptr, layerState(m_drawing.priv(), index));
    change.layer = static_cast<std::uint32_t>(index);
    note(std::move(change));
}

void ChangeLog::noteLayerName(std::size_t index)
{
    Change change = changeOf(ChangeKind::LayerName, nullptr, m_drawing.priv().layers[index].name);
    change.layer = static_cast<std::uint32_t>(index);
    note(std::move(change));
}

void ChangeLog::noteCurrentLayer()
{
    Change change{ChangeKind::CurrentLayer};
    change.layer = static_cast<std::uint32_t>(m_drawing.priv().currentLayer);
    note(std::move(change));
}

void ChangeLog::noteBlockAdded(BlockRecord &block)
{
    note(changeOf(ChangeKind::BlockAdded, &block));
}

void ChangeLog::noteBlockErasing(BlockRecord &block)
{
    note(changeOf(ChangeKind::BlockErased, &block, BlockState{ObjectAccess::erasedWithIt(block), {}}));
}

void ChangeLog::noteBasePoint(BlockRecord &block)
{
    note(changeOf(ChangeKind::BasePoint, &block, BlockState{{}, block.basePoint()}));
}

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
