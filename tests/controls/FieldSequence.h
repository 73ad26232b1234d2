// Key sequences of the date and time edits, in the writing of KeySequence.h. A text that is half typed is not in its
// valid form, which here is a whole date or time; so that is not compared after every key.
#pragma once

#include "tests/controls/KeySequence.h"
#include "tests/controls/PinnedSettings.h"

#include "controls/rules/DateTimeEdits.h"

#include <functional>
#include <memory>

namespace sequence {

/// A clock that stands still.
class PinnedClock : public AMSEdit::IClock {
public:
    explicit PinnedClock(const AMSEdit::CalendarTime &now) : m_now(now) {}
    AMSEdit::CalendarTime Now() const override { return m_now; }

private:
    AMSEdit::CalendarTime m_now;
};

inline const PinnedSettings kNoAnswers{};
inline const PinnedSettings kDayFirst{{AMSEdit::RegionalQuery::DateSeparator, L"."},
                                      {AMSEdit::RegionalQuery::ShortDatePattern, L"dd.MM.yyyy"},
                                      {AMSEdit::RegionalQuery::TimeOfTwentyFourHours, L"1"}};
inline const PinnedSettings kTwentyFour{{AMSEdit::RegionalQuery::TimeOfTwentyFourHours, L"1"}};
/// Saturday, 21 November 2026, a quarter to two in the afternoon.
inline const PinnedClock kNow{{2026, 11, 21, 13, 45, 30}};

using DateEdit = AMSEdit::TDateEdit<SequenceBox>;
using TimeEdit = AMSEdit::TTimeEdit<SequenceBox>;
using DateTimeEdit = AMSEdit::TDateTimeEdit<SequenceBox>;

/// Makes edits that a function sets up.
template <class Edit>
auto Make(const PinnedSettings &settings, std::function<void(Edit &)> setUp = {})
{
    return [&settings, setUp = std::move(setUp)] {
        auto edit = std::make_unique<Edit>(settings, kNow);
        if (setUp)
            setUp(*edit);
        return edit;
    };
}

inline auto Date(std::function<void(DateEdit &)> setUp = {})
{
    return Make<DateEdit>(kNoAnswers, std::move(setUp));
}

inline auto DayFirstDate(std::function<void(DateEdit &)> setUp = {})
{
    return Make<DateEdit>(kDayFirst, std::move(setUp));
}

/// A time of twelve hours, and one of twenty-four.
inline auto Twelve(std::function<void(TimeEdit &)> setUp = {})
{
    return Make<TimeEdit>(kNoAnswers, std::move(setUp));
}

inline auto TwentyFour(std::function<void(TimeEdit &)> setUp = {})
{
    return Make<TimeEdit>(kTwentyFour, std::move(setUp));
}

/// A date and a time of twenty-four hours.
inline auto Both(std::function<void(DateTimeEdit &)> setUp = {})
{
    return Make<DateTimeEdit>(kTwentyFour, std::move(setUp));
}

/// Every row on an edit of its own; a half typed text is in no valid form, so that is left.
template <class MakeEdit>
int TypeAll(MakeEdit make, const std::vector<Row> &rows)
{
    return RunAll(make, rows, Form::Left);
}

/// An edit whose rule changes in the middle of a step of the user: when the focus leaves.
template <class Edit>
class ChangingWhenLeft : public Edit {
public:
    ChangingWhenLeft(const AMSEdit::IRegionalSettings &settings, std::function<void(Edit &)> change)
        : Edit(settings, kNow), m_change(std::move(change))
    {
    }
    void OnKillFocus(AMSEdit::IEditSurface *newFocus) override
    {
        const typename Edit::Route route(*this);
        m_change(*this);
        Edit::OnKillFocus(newFocus);
    }

private:
    std::function<void(Edit &)> m_change;
};

/// Types the keys, changes a rule within a step and goes back key by key: the texts of before the change come back in
/// the form that they now have to have.
template <class Edit>
void ExpectUndoInFormBehindAChange(std::function<void(Edit &)> change, const std::vector<const wchar_t *> &keys)
{
    ChangingWhenLeft<Edit> edit(kNoAnswers, std::move(change));
    for (const wchar_t *key : keys)
        Press(edit, key);
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(Narrow(edit.GetWindowText()), Narrow(edit.GetValidText())) << "behind the change";
    for (std::size_t step = 0; step <= keys.size(); ++step) {
        edit.OnUndo();
        EXPECT_EQ(Narrow(edit.GetWindowText()), Narrow(edit.GetValidText())) << "undo " << step + 1;
    }
}

/// A text set from outside, and what it becomes.
struct Reduced {
    const wchar_t *given;
    const wchar_t *valid;
};

/// Each text is set, and then once more: the second time it stays.
template <class MakeEdit>
void SetAll(MakeEdit make, const std::vector<Reduced> &rows)
{
    for (const Reduced &row : rows) {
        auto edit = make();
        edit->SetWindowText(row.given);
        EXPECT_EQ(Narrow(edit->GetWindowText()), Narrow(row.valid)) << "set " << Narrow(row.given);
        EXPECT_EQ(edit->GetValidText(), edit->GetWindowText()) << "set " << Narrow(row.given);
    }
}

} // namespace sequence
