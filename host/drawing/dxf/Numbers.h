// Numbers of a DXF file, from text and to text, without regard to the locale.
#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmor::dxf {

namespace detail {
inline constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                          1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
bool parseRealExactly(const char *first, const char *last, double &value);
} // namespace detail

/// Reads a real number with blanks around it; false for anything else, infinities and not-a-number included.
/// A mantissa below 2^53 over an exact power of ten gives the correctly rounded result in one division; what does not
/// fit takes the long way.
inline bool parseReal(const char *first, const char *last, double &value)
{
    while (first != last && (*first == ' ' || *first == '\t'))
        ++first;
    const char *p = first;
    const bool negative = p != last && *p == '-';
    if (negative)
        ++p;
    std::uint64_t mantissa = 0;
    const char *digits = p;
    while (p != last && static_cast<unsigned>(*p - '0') <= 9)
        mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
    auto count = p - digits;
    std::ptrdiff_t decimals = 0;
    if (p != last && *p == '.') {
        const char *point = ++p;
        while (p != last && static_cast<unsigned>(*p - '0') <= 9)
            mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
        decimals = p - point;
        count += decimals;
    }
    if (p != last || count == 0 || count > 19 || decimals > 22 || mantissa > (std::uint64_t{1} << 53))
        return detail::parseRealExactly(first, last, value);
    const double magnitude = static_cast<double>(mantissa) / detail::kPowersOfTen[decimals];
    value = negative ? -magnitude : magnitude;
    return true;
}
inline bool parseReal(std::string_view text, double &value)
{
    return parseReal(text.data(), text.data() + text.size(), value);
}

/// Blanks around are allowed; a real that is whole ("3.0") counts too. No value when the text is anything else.
std::optional<std::int64_t> parseInteger(std::string_view text);
/// Hexadecimal with blanks around; 0 for anything else.
std::uint64_t parseHandle(std::string_view text);

/// The shortest text that reads back the same double, always with a point or an exponent ("0.0", "1e+20").
/// A number that is not finite comes out as 0.0, since no reader takes one.
std::string formatReal(double value);
std::string formatHandle(std::uint64_t handle);

} // namespace velmor::dxf
