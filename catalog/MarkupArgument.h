// A wide text as an argument: from a literal, a pointer that may be null, or a string.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Refers to the caller's characters for the length of a call. Null is not the same as empty.
class CMarkupArgument {
public:
    CMarkupArgument(std::nullptr_t) {}
    CMarkupArgument(const wchar_t *pText)
    {
        if (pText)
            m_text = pText;
    }
    CMarkupArgument(const std::wstring &text) : m_text(text) {}
    CMarkupArgument(std::wstring_view text) : m_text(text.data() ? text : std::wstring_view(L"")) {}

    bool IsNull() const { return m_text.data() == nullptr; }
    /// Empty for null.
    std::wstring_view View() const { return m_text; }

private:
    std::wstring_view m_text;
};
