// The box of a validating edit without its widget: every route by which text comes in, the filter behind them, the
// colours, and undo. A binding to a toolkit adds the platform's operations.
#pragma once

#include "controls/rules/EditHistory.h"
#include "controls/rules/EditSurface.h"

#include <cstdint>
#include <optional>

namespace AMSEdit {

/// A colour in blue, green, red byte order: 0xFF0000 is blue.
using ColorRef = std::uint32_t;

/// What a box answers when it is about to be painted.
struct PaintColours {
    std::optional<ColorRef> text; ///< none: the text colour stays the one that the desktop gives
    ColorRef background = 0;
    bool operator==(const PaintColours &) const = default;
};

/// A box without rules of its own: it takes any text. The rule comes in by overriding GetValidText and the key
/// handlers.
///
/// Each message handler is one step of the user (a Route): undo goes back over it as a whole, and listeners hear of the
/// text once, at its end.
class CEditBox : public IEditSurface {
public:
    std::wstring GetText() const { return GetWindowText(); }
    /// The text with white space cut from both ends.
    std::wstring GetTrimmedText() const;
    void SetText(const std::wstring &text) { SetWindowText(text); }

    void SetBackgroundColor(ColorRef colour);
    /// The colour set. When none is, takes over the one that the desktop gives now, for all later paints as well.
    ColorRef GetBackgroundColor();
    void SetTextColor(ColorRef colour);
    /// The colour set. When none is, takes over the one that the desktop gives now.
    ColorRef GetTextColor();
    /// Answer to the question for colours, also of a read-only or disabled box; none: as the desktop paints it.
    /// A text colour of 0 leaves the desktop's own in place, also when it was set on purpose.
    std::optional<PaintColours> OnCtlColor();

    /// Once the box exists: sets the text to its valid form where it differs. The selection is not kept.
    virtual void Redraw();
    /// What the text would have to be. Applied to its own result it changes nothing. Here: the text as it stands.
    virtual std::wstring GetValidText() const { return GetWindowText(); }
    /// Last word on a character that the rules have accepted. Here: always true.
    virtual bool ShouldEnter(wchar_t) { return true; }

    virtual void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags);
    virtual void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags);
    /// newFocus: the box of the family that gets the focus, null for anything else.
    virtual void OnKillFocus(IEditSurface *newFocus);
    virtual void OnPaste(std::uintptr_t wParam, std::intptr_t lParam);
    /// Copies the selection and then removes it, past the key rules: what is left may break a rule until the next key
    /// or set puts it right. A bare caret: nothing.
    void OnCut();
    /// Removes the selection by the rules of the Delete key. A bare caret: nothing.
    void OnClear();
    /// Back or forth by one step of the user. A text of the present rules comes back as it was, half typed too; one
    /// from before a change of the rules is put in its valid form. Nothing at the ends.
    void OnUndo();
    void OnRedo();
    bool CanUndo() const { return m_history.CanUndo(); }
    bool CanRedo() const { return m_history.CanRedo(); }

    /// Sets the text and reduces it to its valid form. Outside a step of the user there is nothing to undo any more.
    void SetWindowText(const std::wstring &text) final;
    void ReplaceSel(const std::wstring &text, bool canUndo) final;

    /// The platform pastes; when the text is not in its valid form then, the valid form is set, with the selection as
    /// it was before.
    void HandlePaste();
    /// The text was changed by something that knows no rules: it is set to its valid form, the caret stays if it can.
    void HandleForeignChange();

protected:
    /// One step of the user, or one of the program. Steps within a step belong to it.
    class Route {
    public:
        enum class By { User, Program };
        explicit Route(CEditBox &box, By by = By::User);
        Route(const Route &) = delete;
        Route &operator=(const Route &) = delete;
        ~Route();

    private:
        CEditBox &m_box;
    };
    bool IsInRoute() const { return m_nRoutes > 0; }

    virtual void PlatformSetText(const std::wstring &text) = 0;
    virtual void PlatformReplaceSel(const std::wstring &text) = 0;
    /// Puts the selection on the clipboard.
    virtual void PlatformCopy() = 0;
    /// What the desktop paints this box with at present.
    virtual ColorRef ContextBackgroundColor() const = 0;
    virtual ColorRef ContextTextColor() const = 0;
    /// The colours have changed: paint anew, background too.
    virtual void PlatformRepaint() = 0;
    /// Around the outermost step.
    virtual void RouteBegins() {}
    virtual void RouteEnds(Route::By) {}

private:
    CEditHistory::State Now() const { return {GetWindowText(), GetSel(), m_nRules}; }
    void TakeBackground();
    void Walk(std::optional<CEditHistory::State> (CEditHistory::*step)());

    std::optional<ColorRef> m_brush;
    ColorRef m_crText = 0;
    std::uint32_t m_nInternalFlags = 0;
    CEditHistory m_history;
    unsigned m_nRules = 0; ///< counts the redraws: every change of a rule ends in one
    int m_nRoutes = 0;
    Route::By m_by = Route::By::User;
    bool m_bForget = false;  ///< the step now under way can't be undone
    bool m_bWalking = false; ///< the step now under way is undo or redo itself
};

} // namespace AMSEdit
