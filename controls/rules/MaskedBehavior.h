// The rule of a masked edit: each character of a mask is a symbol, which takes what its functions allow, or a literal.
#pragma once

#include "controls/rules/Behavior.h"

#include <vector>

namespace AMSEdit {

/// A mask character that stands for a kind of characters.
class Symbol {
public:
    using ValidateFunction = int (*)(wchar_t);
    using ConvertFunction = wchar_t (*)(wchar_t);

    Symbol() = default;
    /// Each function may be null: every character is valid, or stays as it is.
    explicit Symbol(wchar_t symbol, ValidateFunction validate = nullptr, ConvertFunction convert = nullptr)
        : m_chSymbol(symbol), m_fnValidate(validate), m_fnConvert(convert)
    {
    }
    virtual ~Symbol() = default;

    virtual bool Validate(wchar_t character) const { return !m_fnValidate || m_fnValidate(character) != 0; }
    virtual wchar_t Convert(wchar_t character) const { return m_fnConvert ? m_fnConvert(character) : character; }
    void SetSymbol(wchar_t symbol) { m_chSymbol = symbol; }
    wchar_t GetSymbol() const { return m_chSymbol; }

private:
    wchar_t m_chSymbol = 0;
    ValidateFunction m_fnValidate = nullptr;
    ConvertFunction m_fnConvert = nullptr;
};

/// An empty mask takes any text. Without symbols every mask character is a literal. Text can be shortened from its end
/// alone: Backspace inside it moves the caret, Delete inside it does nothing.
class MaskedBehavior : public Behavior {
public:
    explicit MaskedBehavior(CEditBox &edit, std::wstring mask = {});

    /// An unchanged mask changes nothing.
    void SetMask(const std::wstring &mask);
    const std::wstring &GetMask() const { return m_strMask; }
    /// The symbols, to be filled by the owner: none are built in. The first one that fits counts.
    std::vector<Symbol> &GetSymbolArray() { return m_symbols; }
    const std::vector<Symbol> &GetSymbolArray() const { return m_symbols; }
    /// The digits of the text.
    std::wstring GetNumericText() const;

    std::wstring GetValidText() const override;
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags) override;

protected:
    /// Stores without a redraw.
    void StoreMask(const std::wstring &mask) { m_strMask = mask; }

private:
    /// The symbol that a mask character is; null for a literal.
    const Symbol *SymbolOf(wchar_t maskCharacter) const;
    /// The first symbol that takes a character of the text; null when none does.
    const Symbol *FirstValidating(wchar_t character) const;
    void TypeAt(std::size_t position, wchar_t character, unsigned repeat, unsigned keyFlags);

    std::wstring m_strMask;
    std::vector<Symbol> m_symbols;
};

} // namespace AMSEdit
