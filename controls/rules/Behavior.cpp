#include "controls/rules/Behavior.h"

namespace AMSEdit {

void Behavior::OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags)
{
    m_pEdit->Default({EditMessage::Kind::KeyDown, key, repeat, keyFlags});
}

void Behavior::OnKillFocus(IEditSurface *)
{
    m_pEdit->Default({.kind = EditMessage::Kind::KillFocus});
}

void Behavior::OnPaste(std::uintptr_t, std::intptr_t)
{
    m_pEdit->HandlePaste();
}

void Behavior::OnDefault(const EditMessage &message)
{
    m_pEdit->Default(message);
}

void Behavior::Redraw()
{
    m_pEdit->CEditBox::Redraw();
}

bool Behavior::ShouldEnter(wchar_t character)
{
    return m_pEdit->CEditBox::ShouldEnter(character);
}

bool Behavior::ModifyFlags(unsigned add, unsigned remove)
{
    const unsigned flags = (m_nFlags & ~remove) | add;
    if (flags == m_nFlags)
        return false;
    m_nFlags = flags;
    Redraw();
    return true;
}

void Behavior::DefaultChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    m_pEdit->Default({EditMessage::Kind::Char, static_cast<unsigned>(character), repeat, keyFlags});
}

void Behavior::TypeControlCharacter(const TypedKey &key)
{
    const int length = static_cast<int>(m_pEdit->GetWindowText().size());
    if (key.character == kKeyBackspace && m_pEdit->GetSel().end != length)
        OnKeyDown(kKeyLeft, 1, 0);
    else if (ShouldEnter(key.character))
        DefaultChar(key.character, key.repeat, key.keyFlags);
}

void Behavior::HandleKeyAtEndOnly(unsigned key, unsigned repeat, unsigned keyFlags)
{
    if (key == kKeyDelete) {
        const Selection selection = m_pEdit->GetSel();
        const int length = static_cast<int>(m_pEdit->GetWindowText().size());
        const bool onLast = selection.IsCaret() && selection.start == length - 1;
        if (selection.end != length && !onLast)
            return;
    }
    Behavior::OnKeyDown(key, repeat, keyFlags);
}

void Behavior::Overwrite(Selection selection, int textLength, const std::wstring &text)
{
    const int end = selection.end == textLength ? selection.end : selection.start + 1;
    m_pEdit->SetSel(selection.start, end);
    m_pEdit->ReplaceSel(text, true);
}

} // namespace AMSEdit
