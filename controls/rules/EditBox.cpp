#include "controls/rules/EditBox.h"

#include "controls/rules/NumberText.h"
#include "controls/rules/SelectionSaver.h"

namespace AMSEdit {

namespace {

constexpr std::uint32_t kTextColourKnown = 0x1;
/// A rule reaches its valid form at once, or after as many turns as its mask has literals. What has not settled after
/// this many is no rule, and the box keeps what it has.
constexpr int kMaxFilterTurns = 1000;

} // namespace

std::wstring CEditBox::GetTrimmedText() const
{
    return Trimmed(GetWindowText());
}

void CEditBox::SetBackgroundColor(ColorRef colour)
{
    m_brush = colour;
    PlatformRepaint();
}

ColorRef CEditBox::GetBackgroundColor()
{
    if (!m_brush) {
        TakeBackground();
        PlatformRepaint();
    }
    return *m_brush;
}

void CEditBox::TakeBackground()
{
    m_brush = m_brush.value_or(ContextBackgroundColor());
}

void CEditBox::SetTextColor(ColorRef colour)
{
    m_crText = colour;
    m_nInternalFlags |= kTextColourKnown;
    PlatformRepaint();
}

ColorRef CEditBox::GetTextColor()
{
    if (!(m_nInternalFlags & kTextColourKnown)) {
        m_crText = ContextTextColor();
        m_nInternalFlags |= kTextColourKnown;
        PlatformRepaint();
    }
    return m_crText;
}

std::optional<PaintColours> CEditBox::OnCtlColor()
{
    if (!m_brush && !(m_nInternalFlags & kTextColourKnown))
        return std::nullopt;
    PaintColours colours;
    if (m_crText != 0)
        colours.text = m_crText;
    TakeBackground();
    colours.background = *m_brush;
    return colours;
}

void CEditBox::Redraw()
{
    ++m_nRules;
    if (!IsWindow())
        return;
    const std::wstring valid = GetValidText();
    if (valid != GetWindowText())
        SetWindowText(valid);
}

void CEditBox::OnChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    const Route route(*this);
    Default({EditMessage::Kind::Char, static_cast<unsigned>(character), repeat, keyFlags});
}

void CEditBox::OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags)
{
    const Route route(*this);
    Default({EditMessage::Kind::KeyDown, key, repeat, keyFlags});
}

void CEditBox::OnKillFocus(IEditSurface *)
{
    const Route route(*this);
    Default({.kind = EditMessage::Kind::KillFocus});
}

void CEditBox::OnPaste(std::uintptr_t, std::intptr_t)
{
    HandlePaste();
}

void CEditBox::OnCut()
{
    if (GetSel().IsCaret())
        return;
    const Route route(*this);
    PlatformCopy();
    ReplaceSel(L"", false);
}

void CEditBox::OnClear()
{
    if (GetSel().IsCaret())
        return;
    OnKeyDown(kKeyDelete, 0, 0);
}

void CEditBox::OnUndo()
{
    Walk(&CEditHistory::Undo);
}

void CEditBox::OnRedo()
{
    Walk(&CEditHistory::Redo);
}

void CEditBox::Walk(std::optional<CEditHistory::State> (CEditHistory::*step)())
{
    const Route route(*this); // notes the caret of the state that is left
    m_bWalking = true;
    const auto state = (m_history.*step)();
    if (!state)
        return;
    if (state->rules == m_nRules)
        PlatformSetText(state->text);
    else
        SetWindowText(state->text);
    SetSel(state->selection.start, state->selection.end);
}

void CEditBox::SetWindowText(const std::wstring &text)
{
    const Route route(*this, Route::By::Program);
    PlatformSetText(text);
    std::wstring carried = text;
    for (int turn = 0; turn < kMaxFilterTurns; ++turn) {
        std::wstring valid = GetValidText();
        if (valid == carried)
            return;
        PlatformSetText(valid);
        carried = std::move(valid);
    }
}

void CEditBox::ReplaceSel(const std::wstring &text, bool canUndo)
{
    const Route route(*this, Route::By::Program);
    if (!canUndo)
        m_bForget = true;
    PlatformReplaceSel(text);
}

void CEditBox::HandlePaste()
{
    const Route route(*this);
    const Selection before = GetSel();
    Default({.kind = EditMessage::Kind::Paste});
    const std::wstring valid = GetValidText();
    if (valid != GetWindowText()) {
        SetWindowText(valid);
        SetSel(before.start, before.end);
    }
}

void CEditBox::HandleForeignChange()
{
    const Route route(*this, Route::By::Program);
    const std::wstring valid = GetValidText();
    if (valid == GetWindowText())
        return;
    const SelectionSaver selection(this);
    SetWindowText(valid);
}

CEditBox::Route::Route(CEditBox &box, By by) : m_box(box)
{
    if (m_box.m_nRoutes++ > 0)
        return;
    m_box.m_by = by;
    m_box.m_bForget = by == By::Program;
    m_box.m_bWalking = false;
    m_box.m_history.MoveSelection(m_box.GetSel());
    m_box.RouteBegins();
}

CEditBox::Route::~Route()
{
    if (m_box.m_nRoutes == 1) {
        CEditHistory::State state = m_box.Now();
        // What a cut has left may be no text of the rules, nor what keys make of it: undo puts both in their form.
        const bool mayBeLeft = m_box.m_bForget || m_box.m_history.Rules() != m_box.m_nRules;
        if (mayBeLeft && m_box.GetValidText() != state.text)
            --state.rules;
        if (m_box.m_bForget)
            m_box.m_history.Restart(std::move(state));
        else if (!m_box.m_bWalking)
            m_box.m_history.Record(std::move(state));
    }
    if (--m_box.m_nRoutes == 0)
        m_box.RouteEnds(m_box.m_by);
}

} // namespace AMSEdit
