// Random doings with an edit, read from bytes: the same bytes do the same to a fake box and to a widget.
#pragma once

#include "controls/rules/EditBox.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

namespace edit_ops {

/// Bytes to be used up; 0 behind their end.
class Bytes {
public:
    Bytes(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}
    bool AtEnd() const { return m_at >= m_size; }
    unsigned Next() { return AtEnd() ? 0 : m_data[m_at++]; }
    unsigned Below(unsigned bound) { return Next() % bound; }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

/// Characters that mean something to one rule or another, and some that do not. The last is beyond 16 bits.
inline constexpr wchar_t kAlphabet[] = {L'0', L'1', L'2', L'3', L'4', L'5', L'6', L'7', L'8', L'9',         L'.',
                                        L',', L'-', L'+', L'$', L' ', L'/', L':', L'x', L'A', L'\u20ac',    L'\u2212',
                                        L'%', L'#', L'B', L'k', L'n', L'a', L'p', L'(', L')', L'\U0001F600'};

inline wchar_t CharacterOf(Bytes &bytes)
{
    return kAlphabet[bytes.Below(std::size(kAlphabet))];
}

inline std::wstring TextOf(Bytes &bytes, unsigned longest)
{
    std::wstring text;
    for (unsigned left = bytes.Below(longest + 1); left > 0; --left)
        text += CharacterOf(bytes);
    return text;
}

struct Op {
    enum class Kind { Char, Key, Select, Paste, Set, Cut, Clear, Undo, Redo, LoseFocus, Setter };
    Kind kind = Kind::Char;
    wchar_t character = 0;
    unsigned key = 0;
    int start = 0, end = 0;
    std::wstring text = {};
};

/// Kind::Setter is the caller's to read on.
inline Op NextOp(Bytes &bytes)
{
    using namespace AMSEdit;
    static constexpr unsigned keys[] = {kKeyDelete, kKeyLeft, kKeyRight, kKeyHome, kKeyEnd};
    using Kind = Op::Kind;
    const unsigned choice = bytes.Below(20);
    if (choice < 8)
        return {.kind = Kind::Char, .character = CharacterOf(bytes)};
    switch (choice) {
    case 8:
    case 9:
        return {.kind = Kind::Char, .character = kKeyBackspace};
    case 10:
    case 11:
        return {.kind = Kind::Key, .key = keys[bytes.Below(std::size(keys))]};
    case 12: {
        const int start = static_cast<int>(bytes.Below(20));
        return {.kind = Kind::Select, .start = start, .end = static_cast<int>(bytes.Below(20))};
    }
    case 13:
        return {.kind = Kind::Paste, .text = TextOf(bytes, 8)};
    case 14:
        return {.kind = Kind::Set, .text = TextOf(bytes, 12)};
    case 15:
        return {.kind = Kind::Cut};
    case 16:
        return {.kind = Kind::Clear};
    case 17:
        return {.kind = bytes.Below(2) == 0 ? Kind::Undo : Kind::Redo};
    case 18:
        return {.kind = Kind::LoseFocus};
    default:
        return {.kind = Kind::Setter};
    }
}

/// Does it to an edit on a fake box or on a widget; nothing for a setter.
template <class Edit>
void Apply(Edit &edit, const Op &op)
{
    switch (op.kind) {
    case Op::Kind::Char:
        edit.Type(op.character);
        break;
    case Op::Kind::Key:
        edit.PressKey(op.key);
        break;
    case Op::Kind::Select:
        edit.SetSel(op.start, op.end);
        break;
    case Op::Kind::Paste:
        edit.SetClipboard(op.text);
        edit.PressPaste();
        break;
    case Op::Kind::Set:
        edit.SetWindowText(op.text);
        edit.SetSel(0, 0);
        break;
    case Op::Kind::Cut:
        edit.PressCut();
        break;
    case Op::Kind::Clear:
        edit.PressClear();
        break;
    case Op::Kind::Undo:
        edit.PressUndo();
        break;
    case Op::Kind::Redo:
        edit.PressRedo();
        break;
    case Op::Kind::LoseFocus:
        edit.OnKillFocus(nullptr);
        break;
    case Op::Kind::Setter:
        break;
    }
}

} // namespace edit_ops
