#include "tests/controls/FakeEditBox.h"

#include "controls/rules/NumberText.h"

#include <algorithm>

using namespace AMSEdit;

void FakeEditBox::SetSel(int start, int end, bool noScroll)
{
    start = std::clamp(start, 0, Length());
    end = std::clamp(end, 0, Length());
    m_selection = {std::min(start, end), std::max(start, end)};
    scrolls += noScroll ? 0 : 1;
}

void FakeEditBox::SetFocus()
{
    ++focusTakes;
    journal.push_back(L"focus");
}

void FakeEditBox::MessageBeep(unsigned sound)
{
    ++beeps;
    journal.push_back(L"beep:" + std::to_wstring(sound));
}

void FakeEditBox::AfxMessageBox(const std::wstring &text, unsigned icon)
{
    messages.push_back(text);
    journal.push_back(L"message:" + std::to_wstring(icon));
}

void FakeEditBox::PlatformSetText(const std::wstring &text)
{
    ++sets;
    journal.push_back(L"set:" + text);
    m_text = text.substr(0, m_maxLength);
    m_selection = {0, 0};
}

void FakeEditBox::PlatformReplaceSel(const std::wstring &text)
{
    const auto [start, end] = m_selection;
    m_text.erase(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
    const std::wstring fitting = text.substr(0, m_maxLength - std::min(m_maxLength, m_text.size()));
    m_text.insert(static_cast<std::size_t>(start), fitting);
    PlaceCaret(start + static_cast<int>(fitting.size()));
}

void FakeEditBox::PlatformCopy()
{
    journal.push_back(L"copy");
    m_clipboard = m_text.substr(static_cast<std::size_t>(m_selection.start),
                                static_cast<std::size_t>(m_selection.end - m_selection.start));
}

void FakeEditBox::Default(const EditMessage &message)
{
    defaults.push_back(message);
    const auto character = static_cast<wchar_t>(message.code);
    switch (message.kind) {
    case EditMessage::Kind::Paste:
        if (!m_readOnly && !m_clipboard.empty())
            PlatformReplaceSel(m_clipboard);
        break;
    case EditMessage::Kind::KeyDown:
        DefaultKey(message.code);
        break;
    case EditMessage::Kind::Char:
        if (m_readOnly)
            break;
        if (IsPrintable(character)) {
            PlatformReplaceSel(std::wstring(1, character));
        } else if (message.code == kKeyBackspace) {
            if (m_selection.IsCaret() && m_selection.start > 0)
                m_selection.start -= 1;
            PlatformReplaceSel(L"");
        }
        break;
    case EditMessage::Kind::KillFocus:
        break;
    }
}

void FakeEditBox::DefaultKey(unsigned key)
{
    const auto [start, end] = m_selection;
    switch (key) {
    case kKeyLeft:
    case kKeyUp:
        PlaceCaret(m_selection.IsCaret() ? start - 1 : start);
        break;
    case kKeyRight:
    case kKeyDown:
        PlaceCaret(m_selection.IsCaret() ? end + 1 : end);
        break;
    case kKeyHome:
        PlaceCaret(0);
        break;
    case kKeyEnd:
        PlaceCaret(Length());
        break;
    case kKeyDelete:
        if (m_readOnly)
            break;
        if (m_selection.IsCaret() && end < Length())
            m_selection.end += 1;
        PlatformReplaceSel(L"");
        break;
    default:
        break;
    }
}
