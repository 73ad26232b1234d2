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

/// Runs the steps from the start, each row on an edit of its own, and compares what the box shows after every key: the
/// text, the selection and that nothing has beeped. Returns the number of keys.
template <class MakeEdit>
int TypeAll(MakeEdit make, const std::vector<Row> &rows)
{
    int count = 0;
    for (const Row &row : rows) {
        SCOPED_TRACE(Narrow(row.start) + " then " + Narrow(row.steps));
        auto edit = make();
        Place(*edit, row.start);
        std::wistringstream stream(row.steps);
        for (std::wstring step; stream >> step; ++count) {
            const std::size_t arrow = step.find(L'>', step[0] == L'<' && step.size() > 2 ? step.find(L'>') + 1 : 1);
            const std::wstring key = step.substr(0, arrow);
            Press(*edit, key);
            EXPECT_EQ(Narrow(Shown(edit->Picture())), Narrow(step.substr(arrow + 1))) << "after " << Narrow(step);
        }
        EXPECT_EQ(edit->beeps, 0);
    }
    return count;
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
