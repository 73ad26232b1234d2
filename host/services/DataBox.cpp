#include "host/services/DataBox.h"

#include "host/services/Text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace velmor {

using ZEMGis::Data::CDataBox;

namespace {

constexpr int kTextCode = 1, kRealCode = 40, kWholeCode = 90;

std::string shortest(double value)
{
    char digits[40];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

/// The number at the front of a text, blanks before it passed over; 0 when there is none.
template <class Number>
Number leadingNumber(const std::wstring &text)
{
    std::string narrow = utf8(text);
    std::string_view digits = narrow;
    const auto first = digits.find_first_not_of(" \t\r\n");
    digits.remove_prefix(first == std::string_view::npos ? digits.size() : first);
    if (digits.starts_with('+'))
        digits.remove_prefix(1);
    Number number{};
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

int whole(double value)
{
    constexpr double kLowest = std::numeric_limits<int>::min(), kHighest = std::numeric_limits<int>::max();
    if (std::isnan(value))
        return 0;
    return static_cast<int>(std::min(std::max(value, kLowest), kHighest));
}

} // namespace

DataItems itemsOf(const CDataBox &box)
{
    DataItems items;
    if (const auto *text = std::get_if<std::wstring>(&box.value())) {
        items.push_back({kTextCode, *text});
    } else if (const auto *number = std::get_if<double>(&box.value())) {
        items.push_back({kRealCode, *number});
    } else if (const auto *count = std::get_if<int>(&box.value())) {
        items.push_back({kWholeCode, std::int64_t{*count}});
    } else if (const auto *list = std::get_if<CStringArray>(&box.value())) {
        items.push_back({kWholeCode, static_cast<std::int64_t>(list->size())});
        if (list->empty())
            items.push_back({kWholeCode, std::int64_t{0}});
        for (const std::wstring &entry : *list)
            items.push_back({kTextCode, entry});
    }
    return items;
}

CDataBox boxOf(const DataItems &items)
{
    if (items.empty())
        return {};
    const DataItem &first = items.front();
    const auto *count = std::get_if<std::int64_t>(&first.value);
    if (items.size() == 1) {
        if (const auto *text = std::get_if<std::wstring>(&first.value))
            return CDataBox(*text);
        if (const auto *number = std::get_if<double>(&first.value))
            return CDataBox(*number);
        const bool fits = *count >= std::numeric_limits<int>::min() && *count <= std::numeric_limits<int>::max();
        return fits ? CDataBox(static_cast<int>(*count)) : CDataBox(static_cast<double>(*count));
    }
    CStringArray list;
    if (items == itemsOf(list))
        return CDataBox(std::move(list));
    if (!count || *count != static_cast<std::int64_t>(items.size() - 1))
        return {};
    for (std::size_t i = 1; i < items.size(); ++i) {
        const auto *text = std::get_if<std::wstring>(&items[i].value);
        if (!text)
            return {};
        list.push_back(*text);
    }
    return CDataBox(std::move(list));
}

std::string describe(const CDataBox &box)
{
    CStringArray list;
    if (!box.IsNotNull())
        return "null";
    if (!std::holds_alternative<CStringArray>(box.value()))
        return utf8(box.operator std::wstring());
    box.GetArrayCopy(list);
    std::string text = "[";
    for (const std::wstring &entry : list)
        text += (text.size() > 1 ? "," : "") + utf8(entry);
    return text + "]";
}

} // namespace velmor

namespace ZEMGis::Data {

CDataBox::operator int() const
{
    if (const auto *number = std::get_if<int>(&m_value))
        return *number;
    if (const auto *number = std::get_if<double>(&m_value))
        return velmor::whole(*number);
    if (const auto *text = std::get_if<std::wstring>(&m_value))
        return velmor::whole(velmor::leadingNumber<double>(*text));
    return 0;
}

CDataBox::operator double() const
{
    if (const auto *number = std::get_if<int>(&m_value))
        return *number;
    if (const auto *number = std::get_if<double>(&m_value))
        return *number;
    if (const auto *text = std::get_if<std::wstring>(&m_value))
        return velmor::leadingNumber<double>(*text);
    return 0.0;
}

CDataBox::operator std::wstring() const
{
    if (const auto *text = std::get_if<std::wstring>(&m_value))
        return *text;
    if (const auto *number = std::get_if<int>(&m_value))
        return std::to_wstring(*number);
    if (const auto *number = std::get_if<double>(&m_value))
        return velmor::wide(velmor::shortest(*number));
    return {};
}

bool CDataBox::GetArrayCopy(CStringArray &list) const
{
    if (const auto *texts = std::get_if<CStringArray>(&m_value))
        list = *texts;
    else if (const auto *text = std::get_if<std::wstring>(&m_value))
        list = {*text};
    else
        return false;
    return true;
}

} // namespace ZEMGis::Data
