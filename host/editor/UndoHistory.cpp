#include "host/editor/UndoHistory.h"

#include <algorithm>

namespace velmor {

UndoHistory::UndoHistory(Drawing &drawing) : m_log(drawing.component<ChangeLog>()), m_position(m_log.position())
{
    m_log.addFollower(*this);
}

UndoHistory::~UndoHistory()
{
    m_log.removeFollower(*this);
}

std::size_t UndoHistory::undo(std::size_t steps)
{
    std::size_t done = 0;
    while (done < steps && m_log.undo())
        ++done;
    return done;
}

std::size_t UndoHistory::redo(std::size_t steps)
{
    std::size_t done = 0;
    while (done < steps && m_log.redo())
        ++done;
    return done;
}

void UndoHistory::setMark()
{
    std::erase_if(m_marks, [this](std::uint64_t mark) { return mark >= m_log.position(); });
    m_marks.push_back(m_log.position());
}

bool UndoHistory::hasMark() const
{
    return !m_marks.empty() && m_marks.front() <= m_log.position();
}

std::size_t UndoHistory::undoToMark()
{
    while (!m_marks.empty() && m_marks.back() > m_log.position())
        m_marks.pop_back(); // the state it stood for was undone
    if (m_marks.empty())
        return 0;
    const std::uint64_t mark = m_marks.back();
    std::size_t done = 0;
    while (m_log.position() > mark && m_log.undo())
        ++done;
    if (m_log.position() == mark)
        m_marks.pop_back();
    return done;
}

std::shared_ptr<void> UndoHistory::onChange(std::function<void()> call)
{
    auto kept = std::make_shared<std::function<void()>>(std::move(call));
    m_calls.push_back(kept);
    return kept;
}

void UndoHistory::stepDone(const ChangeStep &)
{
    // Marks of states that were undone can't be met any more.
    std::erase_if(m_marks, [&](std::uint64_t mark) { return mark > m_position; });
    changed();
}

void UndoHistory::changed()
{
    m_position = m_log.position();
    std::erase_if(m_calls, [](const auto &call) { return call.expired(); });
    const auto calls = m_calls;
    for (const auto &call : calls)
        if (const auto present = call.lock())
            (*present)();
}

} // namespace velmor
