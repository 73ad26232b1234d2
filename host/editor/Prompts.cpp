#include "host/editor/Prompts.h"

#include <charconv>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

std::optional<double> parseNumber(std::wstring_view text)
{
    std::string narrow;
    for (const wchar_t c : text) {
        if (c > 127)
            return std::nullopt;
        narrow.push_back(static_cast<char>(c));
    }
    while (!narrow.empty() && narrow.front() == ' ')
        narrow.erase(narrow.begin());
    while (!narrow.empty() && narrow.back() == ' ')
        narrow.pop_back();
    if (narrow.starts_with('+'))
        narrow.erase(narrow.begin());
    double value = 0.0;
    const char *end = narrow.data() + narrow.size();
    const auto [last, error] = std::from_chars(narrow.data(), end, value);
    if (error != std::errc() || last != end || narrow.empty() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

/// Nothing for a point beyond the numbers.
std::optional<AcGePoint3d> finite(const AcGePoint3d &point)
{
    const bool isPoint = std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
    return isPoint ? std::optional(point) : std::nullopt;
}

} // namespace

std::optional<AcGePoint3d> parsePoint(std::wstring_view text, const std::optional<AcGePoint3d> &base)
{
    const bool relative = text.starts_with(L'@');
    if (relative) {
        if (!base)
            return std::nullopt;
        text.remove_prefix(1);
        if (const auto polar = text.find(L'<'); polar != std::wstring_view::npos) {
            const auto distance = parseNumber(text.substr(0, polar));
            const auto degrees = parseNumber(text.substr(polar + 1));
            if (!distance || !degrees)
                return std::nullopt;
            const double angle = *degrees * std::numbers::pi / 180.0;
            return finite(*base + AcGeVector3d{*distance * std::cos(angle), *distance * std::sin(angle), 0.0});
        }
    }
    double values[3] = {0.0, 0.0, 0.0};
    int count = 0;
    for (;;) {
        const auto comma = text.find(L',');
        const auto number = parseNumber(text.substr(0, comma));
        if (!number || count == 3)
            return std::nullopt;
        values[count++] = *number;
        if (comma == std::wstring_view::npos)
            break;
        text.remove_prefix(comma + 1);
    }
    if (count < 2)
        return std::nullopt;
    if (relative)
        return finite(*base + AcGeVector3d{values[0], values[1], values[2]});
    return AcGePoint3d(values[0], values[1], values[2]);
}

bool Answer::isEnter() const
{
    const std::wstring *words = text();
    return std::holds_alternative<Enter>(value) || (words && words->empty());
}

std::optional<AcGePoint3d> Answer::point(const std::optional<AcGePoint3d> &base) const
{
    if (const auto *given = std::get_if<AcGePoint3d>(&value))
        return *given;
    if (const auto *pick = std::get_if<Pick>(&value))
        return pick->point;
    if (const std::wstring *words = text())
        return parsePoint(*words, base);
    return std::nullopt;
}

std::optional<Answer> AnswerQueue::ask(const Prompt &)
{
    if (m_answers.empty())
        return std::nullopt;
    std::optional<Answer> answer(std::move(m_answers.front()));
    m_answers.pop_front();
    return answer;
}

} // namespace velmor
