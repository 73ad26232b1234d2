// What a validating edit asks of the box that holds its text: a short list of operations, and nothing else of a
// toolkit. A test offers them over a string and two positions.
#pragma once

#include <string>

namespace AMSEdit {

/// Numbers of keys, as OnKeyDown and OnChar get them.
enum EditKey : unsigned {
    kKeyBackspace = 8, ///< a character, as Backspace comes by OnChar
    kKeyPageUp = 33,
    kKeyPageDown = 34,
    kKeyEnd = 35,
    kKeyHome = 36,
    kKeyLeft = 37,
    kKeyUp = 38,
    kKeyRight = 39,
    kKeyDown = 40,
    kKeyInsert = 45,
    kKeyDelete = 46,
};

inline constexpr unsigned kStyleReadOnly = 0x800;   ///< bit of GetStyle
inline constexpr unsigned kWarningExclamation = 48; ///< sound and icon of a warning

/// Positions in characters. start equals end for a bare caret; start is never above end.
struct Selection {
    int start = 0;
    int end = 0;
    bool operator==(const Selection &) const = default;
    bool IsCaret() const { return start == end; }
};

/// What the box is handling, handed on to the platform by Default.
struct EditMessage {
    enum class Kind {
        Char,      ///< code is the character
        KeyDown,   ///< code is an EditKey
        KillFocus, ///< the focus has gone
        Paste,     ///< text comes in at the selection: from the clipboard, or dropped
    };
    Kind kind = Kind::Char;
    unsigned code = 0;
    unsigned repeat = 1;
    unsigned keyFlags = 0;
};

/// The edit surface. Text is counted in whole characters, also where a platform counts in halves of them.
class IEditSurface {
public:
    virtual ~IEditSurface() = default;

    /// The whole text.
    virtual std::wstring GetWindowText() const = 0;
    /// Replaces the whole text; the set-text filter then reduces it to its valid form.
    virtual void SetWindowText(const std::wstring &text) = 0;
    virtual Selection GetSel() const = 0;
    /// Selects from start to end, in either order; positions outside the text are moved to its ends. The caret stands
    /// at the end given last. Without noScroll it is scrolled into view.
    virtual void SetSel(int start, int end, bool noScroll = false) = 0;
    /// Replaces the selection and leaves the caret behind the new text. Not filtered. Without canUndo neither this nor
    /// what came before it can be undone.
    virtual void ReplaceSel(const std::wstring &text, bool canUndo) = 0;
    /// Bits of style; kStyleReadOnly is the only one asked for.
    virtual unsigned GetStyle() const = 0;
    virtual bool IsWindowEnabled() const = 0;
    /// True from when the box exists on its platform.
    virtual bool IsWindow() const = 0;
    virtual void SetFocus() = 0;
    /// The platform's standard handling of the message. Keys: at least caret movement, Backspace and Delete of a
    /// single-line box.
    virtual void Default(const EditMessage &message) = 0;
    /// Sounds the warning; sound is kWarningExclamation.
    virtual void MessageBeep(unsigned sound) = 0;
    /// Shows a modal message; icon is kWarningExclamation.
    virtual void AfxMessageBox(const std::wstring &text, unsigned icon) = 0;
};

} // namespace AMSEdit
