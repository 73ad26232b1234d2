#include "host/drawing/dxf/Numbers.h"

namespace velmor::dxf {

namespace {

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    return text;
}

} // namespace

bool detail::parseRealExactly(const char *first, const char *last, double &value)
{
    std::string_view text = trimmed({first, static_cast<std::size_t>(last - first)});
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    double result = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    if (error == std::errc::result_out_of_range && end == text.data() + text.size()) {
        // Too small to be told from zero is a number; too large is none.
        const auto exponent = text.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos && exponent + 1 < text.size() && text[exponent + 1] == '-';
        value = 0.0;
        return tiny;
    }
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(result))
        return false;
    value = result;
    return true;
}

std::optional<std::int64_t> parseInteger(std::string_view text)
{
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size())
        return value;
    double real = 0.0;
    if (!text.empty() && parseReal(text, real) && real == std::floor(real) && std::abs(real) < 9e15)
        return static_cast<std::int64_t>(real);
    return std::nullopt;
}

std::uint64_t parseHandle(std::string_view text)
{
    text = trimmed(text);
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return error == std::errc() && end == text.data() + text.size() ? value : 0;
}

std::string formatReal(double value)
{
    if (!std::isfinite(value))
        value = 0.0;
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string text(buffer, result.ptr);
    if (text.find_first_of(".e") == std::string::npos)
        text += ".0";
    return text;
}

std::string formatHandle(std::uint64_t handle)
{
    char buffer[20];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, handle, 16);
    std::string text(buffer, result.ptr);
    for (char &c : text)
        if (c >= 'a')
            c -= 'a' - 'A';
    return text;
}

} // namespace velmor::dxf
