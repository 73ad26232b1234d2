#include "controls/rules/MaskedBehavior.h"

#include "controls/rules/NumberText.h"

#include <algorithm>
#include <utility>

namespace AMSEdit {

MaskedBehavior::MaskedBehavior(CEditBox &edit, std::wstring mask) : Behavior(edit), m_strMask(std::move(mask)) {}

void MaskedBehavior::SetMask(const std::wstring &mask)
{
    if (mask == m_strMask)
        return;
    m_strMask = mask;
    Redraw();
}

std::wstring MaskedBehavior::GetNumericText() const
{
    std::wstring text = Edit().GetWindowText();
    std::erase_if(text, [](wchar_t character) { return !IsDigit(character); });
    return text;
}

const Symbol *MaskedBehavior::SymbolOf(wchar_t maskCharacter) const
{
    const auto found = std::ranges::find(m_symbols, maskCharacter, &Symbol::GetSymbol);
    return found == m_symbols.end() ? nullptr : &*found;
}

const Symbol *MaskedBehavior::FirstValidating(wchar_t character) const
{
    const auto found = std::ranges::find_if(m_symbols, [=](const Symbol &s) { return s.Validate(character); });
    return found == m_symbols.end() ? nullptr : &*found;
}

std::wstring MaskedBehavior::GetValidText() const
{
    const std::wstring text = Edit().GetWindowText();
    if (m_strMask.empty())
        return text;
    std::wstring valid;
    std::size_t position = 0;
    for (const wchar_t character : text) {
        if (position >= m_strMask.size())
            break;
        if (const Symbol *symbol = FirstValidating(character)) {
            // Any symbol's place will do, not only that of the one that takes the character.
            for (; position < m_strMask.size() && !SymbolOf(m_strMask[position]); ++position)
                valid += m_strMask[position];
            if (position < m_strMask.size())
                valid += symbol->Convert(character);
        } else {
            if (character != m_strMask[position] || SymbolOf(m_strMask[position]))
                break;
            valid += character;
        }
        ++position;
    }
    return valid;
}

void MaskedBehavior::OnChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    if (IsReadOnly())
        return;
    const Selection selection = Edit().GetSel();
    const bool beyondMask = selection.start >= static_cast<int>(m_strMask.size());
    if (!m_strMask.empty()) {
        if (beyondMask && character != kKeyBackspace)
            return;
        if (IsPrintable(character))
            TypeAt(static_cast<std::size_t>(selection.start), character, repeat, keyFlags);
        else
            TypeControlCharacter({character, repeat, keyFlags});
    } else if (ShouldEnter(character)) {
        DefaultChar(character, repeat, keyFlags);
    }
}

void MaskedBehavior::TypeAt(std::size_t position, wchar_t character, unsigned repeat, unsigned keyFlags)
{
    const int length = static_cast<int>(Edit().GetWindowText().size());
    const Selection selection = Edit().GetSel();
    if (const Symbol *symbol = SymbolOf(m_strMask[position])) {
        if (symbol->Validate(character) && ShouldEnter(character))
            Overwrite(selection, length, std::wstring(1, symbol->Convert(character)));
        return;
    }
    if (m_strMask[position] == character && ShouldEnter(character)) {
        Overwrite(selection, length, std::wstring(1, character));
        return;
    }
    std::size_t next = position;
    while (next < m_strMask.size() && !SymbolOf(m_strMask[next]))
        ++next;
    if (next == m_strMask.size() || !SymbolOf(m_strMask[next])->Validate(character) || !ShouldEnter(character))
        return;
    Edit().SetSel(selection.start, static_cast<int>(next));
    Edit().ReplaceSel(m_strMask.substr(position, next - position), true);
    // A box too short for its mask would come here for ever.
    if (Edit().GetSel().start > selection.start)
        OnChar(character, repeat, keyFlags);
}

void MaskedBehavior::OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags)
{
    HandleKeyAtEndOnly(key, repeat, keyFlags);
}

} // namespace AMSEdit
