#include "controls/rules/ComboKeys.h"

#include <algorithm>
#include <cwctype>

namespace {

constexpr int kFocusLossThatCloses = 3;

std::wint_t lowered(wchar_t character)
{
    return std::towlower(static_cast<std::wint_t>(character));
}

} // namespace

void CComboKeys::Start(int page, int selected)
{
    m_scroll.page = std::max(page, 1);
    m_scroll.maximum = static_cast<int>(m_choices.size());
    SetPosition(std::max(selected, 0));
}

void CComboKeys::SetPosition(int position)
{
    m_scroll.position = std::clamp(position, 0, m_scroll.maximum);
}

std::optional<int> CComboKeys::NextWith(wchar_t letter, int behind) const
{
    const int count = static_cast<int>(m_choices.size());
    for (int step = 1; step <= count; ++step) {
        const int at = (std::max(behind, -1) + step) % count;
        const std::wstring &choice = m_choices[static_cast<std::size_t>(at)];
        if (!choice.empty() && lowered(choice.front()) == lowered(letter))
            return at;
    }
    return std::nullopt;
}

std::optional<int> CComboKeys::WantedPosition(ComboKey key, wchar_t letter, int current) const
{
    switch (key) {
    case ComboKey::PageUp:
        return current - (m_scroll.page - 1);
    case ComboKey::PageDown:
        return current + m_scroll.page - 1;
    case ComboKey::End:
        return m_scroll.maximum;
    case ComboKey::Home:
        return 0;
    case ComboKey::Up:
        return current - 1;
    case ComboKey::Down:
        return current + 1;
    case ComboKey::Letter:
        return NextWith(letter, current);
    default:
        return std::nullopt;
    }
}

ComboNotice CComboKeys::PressKey(ComboKey key, wchar_t letter, int selected)
{
    if (key == ComboKey::Enter)
        return ComboNotice::Return;
    if (key == ComboKey::Escape)
        return ComboNotice::Escape;
    const std::optional<int> wanted = WantedPosition(key, letter, std::max(selected, 0));
    if (!wanted)
        return ComboNotice::None;
    SetPosition(*wanted);
    return ComboNotice::KeyDown;
}

ComboNotice CComboKeys::LoseFocus()
{
    return ++m_nFocusLosses == kFocusLossThatCloses ? ComboNotice::Escape : ComboNotice::None;
}
