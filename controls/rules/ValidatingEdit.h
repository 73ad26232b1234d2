// Joins a box and a behaviour to one edit, and routes the box's messages to the behaviour.
#pragma once

#include "controls/rules/AlphanumericBehavior.h"
#include "controls/rules/Behavior.h"
#include "controls/rules/MaskChoice.h"
#include "controls/rules/MaskedBehavior.h"
#include "controls/rules/NumericBehavior.h"

#include <type_traits>
#include <utility>

namespace AMSEdit {

/// Messages that go to the behaviour; the platform gets the others, and the box always keeps cut, paste and clear.
enum RoutedMessage : unsigned { kRouteChar = 1, kRouteKeyDown = 2, kRouteKillFocus = 4 };

/// An edit on a box of any platform. An heir vetoes characters by overriding ShouldEnter.
template <class Box, class Rule, unsigned Routes>
class TValidatingEdit : public Box, public Rule {
public:
    /// ruleArguments stand behind the box in the behaviour's constructor.
    template <class... RuleArguments>
    requires std::is_constructible_v<Rule, CEditBox &, RuleArguments...>
    explicit TValidatingEdit(RuleArguments &&...ruleArguments)
        : Box(), Rule(static_cast<CEditBox &>(*this), std::forward<RuleArguments>(ruleArguments)...)
    {
    }

    std::wstring GetValidText() const override { return Rule::GetValidText(); }
    void Redraw() override { Box::Redraw(); }
    bool ShouldEnter(wchar_t character) override { return Box::ShouldEnter(character); }
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override
    {
        const typename Box::Route route(*this);
        if constexpr ((Routes & kRouteChar) != 0)
            Rule::OnChar(character, repeat, keyFlags);
        else
            Box::OnChar(character, repeat, keyFlags);
    }
    void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags) override
    {
        const typename Box::Route route(*this);
        if constexpr ((Routes & kRouteKeyDown) != 0)
            Rule::OnKeyDown(key, repeat, keyFlags);
        else
            Box::OnKeyDown(key, repeat, keyFlags);
    }
    void OnKillFocus(IEditSurface *newFocus) override
    {
        const typename Box::Route route(*this);
        if constexpr ((Routes & kRouteKillFocus) != 0)
            Rule::OnKillFocus(newFocus);
        else
            Box::OnKillFocus(newFocus);
    }
    void OnPaste(std::uintptr_t wParam, std::intptr_t lParam) override { Box::OnPaste(wParam, lParam); }
};

template <class Box>
using TAlphanumericEdit = TValidatingEdit<Box, AlphanumericBehavior, kRouteChar>;
template <class Box>
using TMaskedEdit = TValidatingEdit<Box, MaskedBehavior, kRouteChar | kRouteKeyDown>;
template <class Box>
using TNumericEdit = TValidatingEdit<Box, NumericBehavior, kRouteChar | kRouteKeyDown | kRouteKillFocus>;

} // namespace AMSEdit
