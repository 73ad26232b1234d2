// One box that takes its behaviour from a mask.
#pragma once

#include "controls/rules/DateTimeBehavior.h"
#include "controls/rules/ValidatingEdit.h"

#include <type_traits>

namespace AMSEdit {

// Each behaviour has a base of its own, so that none can be asked for without naming the behaviour. That holds for
// heirs of the edit as well: the warning stays off for whoever includes this.
#pragma GCC diagnostic ignored "-Winaccessible-base"

/// Starts alphanumeric, without a limit and without % ' * " + ? > < : \ . Every message, paste too, goes to the current
/// behaviour. The symbols of the masked behaviour are the owner's to fill.
template <class Box>
class TMultiMaskedEdit : public Box,
                         public AlphanumericBehavior,
                         public NumericBehavior,
                         public MaskedBehavior,
                         public DateTimeBehavior {
public:
    explicit TMultiMaskedEdit(const IRegionalSettings &settings, const IClock &clock = SystemClock())
        : Box(), AlphanumericBehavior(static_cast<CEditBox &>(*this), 0, L"%'*\"+?><:\\"),
          NumericBehavior(static_cast<CEditBox &>(*this), 9, 4, settings),
          MaskedBehavior(static_cast<CEditBox &>(*this)),
          DateTimeBehavior(static_cast<CEditBox &>(*this), settings, clock)
    {
    }

    /// Chooses the behaviour and sets it up by the mask; the text is put in the form that it then has to have.
    void SetMask(const std::wstring &mask)
    {
        MaskedBehavior::StoreMask(mask);
        wchar_t decimalPoint = 0, groupSeparator = 0;
        NumericBehavior::GetSeparators(&decimalPoint, &groupSeparator);
        m_choice = ChooseByMask(mask, decimalPoint, groupSeparator);
        switch (m_choice.kind) {
        case MaskChoice::Kind::Alphanumeric:
            AlphanumericBehavior::SetMaxCharacters(static_cast<int>(mask.size()));
            break;
        case MaskChoice::Kind::Numeric:
            NumericBehavior::SetMask(mask);
            break;
        case MaskChoice::Kind::DateTime:
            // Flags of an earlier mask stay.
            DateTimeBehavior::ModifyFlags(m_choice.flags, 0);
            break;
        case MaskChoice::Kind::Masked:
            MaskedBehavior::StoreMask({});
            MaskedBehavior::SetMask(mask);
            break;
        }
        // The behaviour may be another one though none of its own settings has changed.
        Redraw();
    }
    const std::wstring &GetMask() const { return MaskedBehavior::GetMask(); }
    /// What the mask has chosen.
    MaskChoice::Kind CurrentKind() const { return m_choice.kind; }

    std::wstring GetValidText() const override
    {
        return ToCurrent(*this, []<class Rule>(const Rule &rule) { return rule.Rule::GetValidText(); });
    }
    void Redraw() override { Box::Redraw(); }
    bool ShouldEnter(wchar_t character) override { return Box::ShouldEnter(character); }
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override
    {
        const typename Box::Route route(*this);
        ToCurrent(*this, [&]<class Rule>(Rule &rule) { rule.Rule::OnChar(character, repeat, keyFlags); });
    }
    void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags) override
    {
        const typename Box::Route route(*this);
        ToCurrent(*this, [&]<class Rule>(Rule &rule) { rule.Rule::OnKeyDown(key, repeat, keyFlags); });
    }
    void OnKillFocus(IEditSurface *newFocus) override
    {
        const typename Box::Route route(*this);
        ToCurrent(*this, [&]<class Rule>(Rule &rule) { rule.Rule::OnKillFocus(newFocus); });
    }
    void OnPaste(std::uintptr_t wParam, std::intptr_t lParam) override
    {
        ToCurrent(*this, [&]<class Rule>(Rule &rule) { rule.Rule::OnPaste(wParam, lParam); });
    }

private:
    /// Calls with the current behaviour in its own type, so that its operation can be named past the overrides here.
    template <class Self, class Call>
    static auto ToCurrent(Self &self, Call call)
    {
        using Alphanumeric =
            std::conditional_t<std::is_const_v<Self>, const AlphanumericBehavior, AlphanumericBehavior>;
        using Numeric = std::conditional_t<std::is_const_v<Self>, const NumericBehavior, NumericBehavior>;
        using Masked = std::conditional_t<std::is_const_v<Self>, const MaskedBehavior, MaskedBehavior>;
        using DateTime = std::conditional_t<std::is_const_v<Self>, const DateTimeBehavior, DateTimeBehavior>;
        switch (self.m_choice.kind) {
        case MaskChoice::Kind::Numeric:
            return call(static_cast<Numeric &>(self));
        case MaskChoice::Kind::DateTime:
            return call(static_cast<DateTime &>(self));
        case MaskChoice::Kind::Masked:
            return call(static_cast<Masked &>(self));
        case MaskChoice::Kind::Alphanumeric:
            break;
        }
        return call(static_cast<Alphanumeric &>(self));
    }

    MaskChoice m_choice;
};

} // namespace AMSEdit
