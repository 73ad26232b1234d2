#include "controls/rules/MaskChoice.h"

#include <algorithm>
#include <array>

namespace AMSEdit {

namespace {

struct DateTimeMask {
    std::wstring_view mask;
    unsigned flags;
};

/// 0x0100 the date alone, 0x0200 the time alone, 0x4000 with seconds.
constexpr auto kDateTimeMasks = std::to_array<DateTimeMask>({
    {L"##/##/#### ##:##:##", 0x4000},
    {L"##/##/#### ##:##", 0},
    {L"##/##/####", 0x0100},
    {L"##:##:##", 0x4200},
    {L"##:##", 0x0200},
});

} // namespace

MaskChoice ChooseByMask(std::wstring_view mask, wchar_t decimalPoint, wchar_t groupSeparator)
{
    const std::size_t first = mask.find(L'#');
    if (first == std::wstring_view::npos)
        return {MaskChoice::Kind::Alphanumeric};
    const auto dateTime = std::ranges::find(kDateTimeMasks, mask, &DateTimeMask::mask);
    if (dateTime != kDateTimeMasks.end())
        return {MaskChoice::Kind::DateTime, dateTime->flags};
    const bool numeric = mask.back() == L'#' && std::ranges::all_of(mask.substr(first), [=](wchar_t character) {
                             return character == L'#' || character == decimalPoint || character == groupSeparator;
                         });
    return {numeric ? MaskChoice::Kind::Numeric : MaskChoice::Kind::Masked};
}

} // namespace AMSEdit
