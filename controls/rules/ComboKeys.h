// What keys do in the popup of a drop-down cell, and its scroll bar's numbers. No Qt.
#pragma once

#include <optional>
#include <string>
#include <vector>

/// Keys that mean something to the popup; any other one is the list box's alone.
enum class ComboKey { Other, Enter, Escape, PageUp, PageDown, Home, End, Up, Down, Letter };

/// What the popup tells its list.
enum class ComboNotice { None, Return, Escape, KeyDown, ButtonUp };

/// The scroll bar's numbers.
struct ComboScroll {
    int page = 1;
    int maximum = 0; ///< of the range, which begins at 0: the count of choices
    int position = 0;
};

class CComboKeys {
public:
    /// The choices stay the caller's and outlive this.
    explicit CComboKeys(const std::vector<std::wstring> &choices) : m_choices(choices) {}

    /// The first time the popup gets active: what its scroll bar starts with. A page is the number of visible choices.
    void Start(int page, int selected);
    /// The first choice shown then: one above the selected one, or the first.
    static int TopAtStart(int selected) { return selected > 0 ? selected - 1 : 0; }

    /// What the popup tells its list before the key goes on to the list box, which then moves the selection itself.
    /// selected: the choice selected so far, -1 for none.
    ComboNotice PressKey(ComboKey key, wchar_t letter, int selected);
    const ComboScroll &GetScroll() const { return m_scroll; }
    void SetPosition(int position);

    /// The next choice that begins with the letter (upper and lower case alike), searching behind one and on from the
    /// start; none when there is no such choice.
    std::optional<int> NextWith(wchar_t letter, int behind) const;

    /// The focus left the popup. Opening it takes the focus away twice by itself, so the third time closes it.
    ComboNotice LoseFocus();
    int GetFocusLosses() const { return m_nFocusLosses; }

private:
    std::optional<int> WantedPosition(ComboKey key, wchar_t letter, int current) const;

    const std::vector<std::wstring> &m_choices;
    ComboScroll m_scroll;
    int m_nFocusLosses = 0;
};
