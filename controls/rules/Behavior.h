// A behaviour: the rule of a validating edit. It knows what valid text is, what each key does and what happens when the
// focus leaves, and it works on the box's operations alone.
#pragma once

#include "controls/rules/EditBox.h"

namespace AMSEdit {

/// What a behaviour that validates a value does when the focus leaves; they act in this order: beep, repair, message,
/// refocus. A message is shown only where its refocus bit is set too: its names hold both bits. Bits from 0x100 up
/// belong to each heir.
inline constexpr unsigned KillFocusBeepIfInvalid = 0x0001;
inline constexpr unsigned KillFocusBeepIfEmpty = 0x0002;
inline constexpr unsigned KillFocusRepairIfInvalid = 0x0004;
inline constexpr unsigned KillFocusRepairIfEmpty = 0x0008;
inline constexpr unsigned KillFocusRefocusIfInvalid = 0x0010;
inline constexpr unsigned KillFocusRefocusIfEmpty = 0x0020;
inline constexpr unsigned KillFocusMessageIfInvalid = 0x0050;
inline constexpr unsigned KillFocusMessageIfEmpty = 0x00A0;
inline constexpr unsigned kKillFocusFlags = 0x00FF;

/// Base of all behaviours. The box is not owned and outlives the behaviour, which is a second base of the same edit.
/// Operations are public so that an edit of several behaviours can hand on to its current one.
class Behavior {
public:
    explicit Behavior(CEditBox &edit) : m_pEdit(&edit) {}
    Behavior(const Behavior &) = delete;
    Behavior &operator=(const Behavior &) = delete;
    virtual ~Behavior() = default;

    /// The box's text, changed as little as makes it obey the rules. Applied to its own result it changes nothing.
    virtual std::wstring GetValidText() const = 0;
    virtual void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) = 0;
    virtual void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags);
    virtual void OnKillFocus(IEditSurface *newFocus);
    virtual void OnPaste(std::uintptr_t wParam, std::intptr_t lParam);
    virtual void OnDefault(const EditMessage &message);
    virtual void Redraw();
    virtual bool ShouldEnter(wchar_t character);

    /// The old flags without remove and with add. False when that changes nothing; else the text is put in its valid
    /// form by the new ones.
    bool ModifyFlags(unsigned add, unsigned remove);
    unsigned GetFlags() const { return m_nFlags; }

protected:
    /// For an heir that shares its base with other heirs: it names its box by Bind, as its first act.
    Behavior() = default;
    void Bind(CEditBox &edit) { m_pEdit = &edit; }
    /// A character as OnChar gets it.
    struct TypedKey {
        wchar_t character = 0;
        unsigned repeat = 1;
        unsigned keyFlags = 0;
    };
    /// The base character handler: the platform enters the character, or does what a control character stands for.
    void DefaultChar(wchar_t character, unsigned repeat, unsigned keyFlags);
    CEditBox &Edit() const { return *m_pEdit; }
    bool HasFlag(unsigned flag) const { return (m_nFlags & flag) == flag; }
    bool IsReadOnly() const { return (m_pEdit->GetStyle() & kStyleReadOnly) != 0; }
    /// Selects what a typed character replaces: one character, or the selection where that reaches the end of the
    /// text; and replaces it.
    void Overwrite(Selection selection, int textLength, const std::wstring &text);
    /// Stores without the redraw of ModifyFlags.
    void StoreFlags(unsigned flags) { m_nFlags = flags; }

    // Of a text that can be shortened from its end alone.

    /// Backspace inside the text moves the caret; other control characters are the platform's.
    void TypeControlCharacter(const TypedKey &key);
    /// Delete works at the end of the text alone; all other keys are the platform's.
    void HandleKeyAtEndOnly(unsigned key, unsigned repeat, unsigned keyFlags);

    /// True for a disabled box and for a valid value. With showError an invalid one shows the message and takes the
    /// focus. heir is this behaviour as the one that validates a value.
    template <class Heir>
    bool CheckValue(Heir &heir, bool showError)
    {
        if (!m_pEdit->IsWindowEnabled() || heir.IsValid())
            return true;
        if (showError) {
            heir.ShowErrorMessage();
            m_pEdit->SetFocus();
        }
        return false;
    }

    /// The flags of the low byte, for a value of the given state. repair and showError are the heir's.
    enum class ValueState { Valid, Invalid, Empty };
    template <class Repair, class ShowError>
    void ActOnLostFocus(ValueState state, Repair &&repair, ShowError &&showError)
    {
        if (state == ValueState::Valid)
            return;
        const bool empty = state == ValueState::Empty;
        if (HasFlag(empty ? KillFocusBeepIfEmpty : KillFocusBeepIfInvalid))
            m_pEdit->MessageBeep(kWarningExclamation);
        if (HasFlag(empty ? KillFocusRepairIfEmpty : KillFocusRepairIfInvalid))
            repair();
        if (HasFlag(empty ? KillFocusMessageIfEmpty : KillFocusMessageIfInvalid))
            showError();
        if (HasFlag(empty ? KillFocusRefocusIfEmpty : KillFocusRefocusIfInvalid))
            m_pEdit->SetFocus();
    }

private:
    CEditBox *m_pEdit = nullptr;
    unsigned m_nFlags = 0;
};

} // namespace AMSEdit
