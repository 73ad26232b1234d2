#include "controls/rules/EditHistory.h"

#include <utility>

namespace AMSEdit {

void CEditHistory::Record(State state)
{
    if (state.text == Text()) {
        MoveSelection(state.selection);
        return;
    }
    m_states.resize(m_nCurrent + 1);
    m_states.push_back(std::move(state));
    if (m_states.size() > kMaxSteps + 1)
        m_states.erase(m_states.begin());
    m_nCurrent = m_states.size() - 1;
}

void CEditHistory::Restart(State state)
{
    m_states.clear();
    m_states.push_back(std::move(state));
    m_nCurrent = 0;
}

std::optional<CEditHistory::State> CEditHistory::Undo()
{
    if (!CanUndo())
        return std::nullopt;
    return m_states[--m_nCurrent];
}

std::optional<CEditHistory::State> CEditHistory::Redo()
{
    if (!CanRedo())
        return std::nullopt;
    return m_states[++m_nCurrent];
}

} // namespace AMSEdit
