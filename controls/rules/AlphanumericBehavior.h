// The rule of an alphanumeric edit: at most so many characters, and some characters not at all.
#pragma once

#include "controls/rules/Behavior.h"

namespace AMSEdit {

/// A refused character beeps: the only rule that does. A full box overwrites.
class AlphanumericBehavior : public Behavior {
public:
    /// maxCharacters of 0: no limit.
    explicit AlphanumericBehavior(CEditBox &edit, int maxCharacters = 0, std::wstring invalidCharacters = {});

    void SetInvalidCharacters(const std::wstring &characters);
    const std::wstring &GetInvalidCharacters() const { return m_strInvalidCharacters; }
    void SetMaxCharacters(int n);
    int GetMaxCharacters() const { return m_nMaxCharacters; }

    std::wstring GetValidText() const override;
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override;

private:
    int m_nMaxCharacters;
    std::wstring m_strInvalidCharacters;
};

} // namespace AMSEdit
