// The texts that undo and redo walk over: one for each key or other step of the user.
#pragma once

#include "controls/rules/EditSurface.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace AMSEdit {

/// Texts that a box held, with the selection that it had then.
class CEditHistory {
public:
    struct State {
        std::wstring text;
        Selection selection;
        unsigned rules = 0; ///< the rules that the text was entered under
        bool operator==(const State &) const = default;
    };
    /// Older steps are forgotten.
    static constexpr std::size_t kMaxSteps = 200;

    /// Notes the text after a step; what could be redone is gone. An unchanged text moves the selection only.
    void Record(State state);
    /// The caret has moved since the last step.
    void MoveSelection(Selection selection) { m_states[m_nCurrent].selection = selection; }
    /// Starts anew: there is nothing to undo.
    void Restart(State state);
    bool CanUndo() const { return m_nCurrent > 0; }
    bool CanRedo() const { return m_nCurrent + 1 < m_states.size(); }
    /// The state one step back or forth, which is the current one from now on; none at the ends.
    std::optional<State> Undo();
    std::optional<State> Redo();
    /// The text noted last, and the rules that it was entered under.
    const std::wstring &Text() const { return m_states[m_nCurrent].text; }
    unsigned Rules() const { return m_states[m_nCurrent].rules; }

private:
    std::vector<State> m_states{State{}};
    std::size_t m_nCurrent = 0;
};

} // namespace AMSEdit
