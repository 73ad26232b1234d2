#include "controls/rules/AlphanumericBehavior.h"

#include "controls/rules/NumberText.h"

#include <utility>

namespace AMSEdit {

AlphanumericBehavior::AlphanumericBehavior(CEditBox &edit, int maxCharacters, std::wstring invalidCharacters)
    : Behavior(edit), m_nMaxCharacters(maxCharacters), m_strInvalidCharacters(std::move(invalidCharacters))
{
}

void AlphanumericBehavior::SetInvalidCharacters(const std::wstring &characters)
{
    if (characters == m_strInvalidCharacters)
        return;
    m_strInvalidCharacters = characters;
    Redraw();
}

void AlphanumericBehavior::SetMaxCharacters(int n)
{
    if (std::exchange(m_nMaxCharacters, n) != n)
        Redraw();
}

std::wstring AlphanumericBehavior::GetValidText() const
{
    std::wstring text = Edit().GetWindowText();
    if (m_nMaxCharacters > 0 && text.size() > static_cast<std::size_t>(m_nMaxCharacters))
        text.resize(static_cast<std::size_t>(m_nMaxCharacters));
    std::erase_if(text,
                  [this](wchar_t character) { return m_strInvalidCharacters.find(character) != std::wstring::npos; });
    return text;
}

void AlphanumericBehavior::OnChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    if (IsReadOnly())
        return;
    if (m_strInvalidCharacters.find(character) != std::wstring::npos) {
        Edit().MessageBeep(kWarningExclamation);
        return;
    }
    const int length = static_cast<int>(Edit().GetWindowText().size());
    if (m_nMaxCharacters != 0 && length == m_nMaxCharacters && IsPrintable(character)) {
        const int start = Edit().GetSel().start;
        if (start < m_nMaxCharacters && ShouldEnter(character)) {
            Edit().SetSel(start, start + 1);
            Edit().ReplaceSel(std::wstring(1, character), true);
        }
        return;
    }
    if (ShouldEnter(character))
        DefaultChar(character, repeat, keyFlags);
}

} // namespace AMSEdit
