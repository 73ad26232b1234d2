#include "host/sewage/PolygonText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace velmor {
namespace {

/// Takes the parts of the text from front to back; every step answers whether it was there.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    bool word(std::string_view upperCase)
    {
        skipBlanks();
        if (m_rest.size() < upperCase.size() ||
            !std::equal(upperCase.begin(), upperCase.end(), m_rest.begin(), [](char wanted, char found) {
                return wanted == (found >= 'a' && found <= 'z' ? static_cast<char>(found - 'a' + 'A') : found);
            }))
            return false;
        m_rest.remove_prefix(upperCase.size());
        return true;
    }
    bool number(double &value)
    {
        skipBlanks();
        if (!m_rest.empty() && m_rest.front() == '+')
            m_rest.remove_prefix(1);
        const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value);
        if (error != std::errc() || !std::isfinite(value))
            return false;
        m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
        return m_rest.empty() || m_rest.front() == ' ' || m_rest.front() == ',' || m_rest.front() == ')' ||
               m_rest.front() == '\t' || m_rest.front() == '\n' || m_rest.front() == '\r';
    }
    bool next(char c)
    {
        skipBlanks();
        if (m_rest.empty() || m_rest.front() != c)
            return false;
        m_rest.remove_prefix(1);
        return true;
    }
    bool atEnd()
    {
        skipBlanks();
        return m_rest.empty();
    }
    bool atSeparator()
    {
        skipBlanks();
        return !m_rest.empty() && (m_rest.front() == ',' || m_rest.front() == ')');
    }

private:
    void skipBlanks()
    {
        const std::size_t used = m_rest.find_first_not_of(" \t\r\n");
        m_rest.remove_prefix(used == std::string_view::npos ? m_rest.size() : used);
    }
    std::string_view m_rest;
};

bool readRing(Scanner &scanner, std::vector<AcGePoint2d> &ring)
{
    if (!scanner.next('('))
        return false;
    do {
        AcGePoint2d point;
        if (!scanner.number(point.x) || !scanner.number(point.y))
            return false;
        // z and m
        for (int more = 0; more < 2 && !scanner.atSeparator(); ++more) {
            double dropped = 0.0;
            if (!scanner.number(dropped))
                return false;
        }
        ring.push_back(point);
    } while (scanner.next(','));
    return scanner.next(')');
}

bool hasThreePoints(const std::vector<AcGePoint2d> &ring)
{
    const auto other = std::find_if(ring.begin(), ring.end(), [&](const AcGePoint2d &p) { return !(p == ring[0]); });
    return other != ring.end() &&
           std::any_of(other, ring.end(), [&](const AcGePoint2d &p) { return !(p == ring[0]) && !(p == *other); });
}

} // namespace

std::optional<std::vector<AcGePoint2d>> ringOfPolygonText(std::wstring_view text)
{
    std::string plain;
    plain.reserve(text.size());
    for (const wchar_t c : text)
        plain.push_back(c > 0 && c < 0x7F ? static_cast<char>(c) : '?');

    Scanner scanner(plain);
    if (!scanner.word("POLYGON"))
        return std::nullopt;
    if (!scanner.word("ZM") && !scanner.word("Z"))
        scanner.word("M");
    std::vector<AcGePoint2d> outer;
    if (!scanner.next('(') || !readRing(scanner, outer))
        return std::nullopt;
    while (scanner.next(',')) {
        std::vector<AcGePoint2d> inner;
        if (!readRing(scanner, inner))
            return std::nullopt;
    }
    if (!scanner.next(')') || !scanner.atEnd() || outer.size() < 4 || !(outer.front() == outer.back()))
        return std::nullopt;
    outer.pop_back();
    if (!hasThreePoints(outer))
        return std::nullopt;
    return outer;
}

} // namespace velmor
