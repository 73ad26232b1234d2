#include "host/drawing/dxf/TextFormat.h"

#include <algorithm>

namespace velmor::dxf {

namespace {
bool isDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}
} // namespace

std::wstring plainLine(std::wstring_view text)
{
    std::wstring plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'%' || i + 2 >= text.size() || text[i + 1] != L'%') {
            plain += text[i];
            continue;
        }
        const wchar_t code = text[i + 2];
        switch (code) {
        case L'd':
        case L'D':
            plain += L'\u00B0';
            break;
        case L'c':
        case L'C':
            plain += L'\u2300';
            break;
        case L'p':
        case L'P':
            plain += L'\u00B1';
            break;
        case L'%':
            plain += L'%';
            break;
        case L'u':
        case L'U':
        case L'o':
        case L'O':
        case L'k':
        case L'K':
            break;
        default:
            if (i + 4 < text.size() && isDigit(code) && isDigit(text[i + 3]) && isDigit(text[i + 4])) {
                const int number = (code - L'0') * 100 + (text[i + 3] - L'0') * 10 + (text[i + 4] - L'0');
                if (number >= 32)
                    plain += static_cast<wchar_t>(number);
                i += 2;
            } else {
                plain += L"%%";
                --i;
            }
        }
        i += 2;
    }
    return plain;
}

std::wstring codedLine(std::wstring_view text)
{
    std::wstring coded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        coded += text[i];
        const bool inRun = text[i] == L'%' && ((i > 0 && text[i - 1] == L'%') || text.substr(i + 1).starts_with(L'%'));
        if (inRun)
            coded += L"%%";
    }
    return coded;
}

std::wstring plainParagraphs(std::wstring_view text)
{
    std::wstring plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (c == L'{' || c == L'}')
            continue;
        if (c == L'%' && text.substr(i).starts_with(L"%%") && i + 2 < text.size()) {
            const std::size_t length = isDigit(text[i + 2]) ? 5 : 3;
            plain += plainLine(text.substr(i, length));
            i += std::min(length, text.size() - i) - 1;
            continue;
        }
        if (c != L'\\' || i + 1 >= text.size()) {
            plain += c;
            continue;
        }
        const wchar_t code = text[++i];
        switch (code) {
        case L'P':
        case L'X':
        case L'N':
            plain += L'\n';
            break;
        case L'~':
            plain += L'\u00A0';
            break;
        case L'\\':
        case L'{':
        case L'}':
            plain += code;
            break;
        case L'L':
        case L'l':
        case L'O':
        case L'o':
        case L'K':
        case L'k':
            break;
        case L'S': // a stack: upper and lower part with ^, / or # between, ended by a semicolon
            for (++i; i < text.size() && text[i] != L';'; ++i)
                if (text[i] == L'^' || text[i] == L'#')
                    plain += L'/';
                else if (text[i] == L'\\' && i + 1 < text.size())
                    plain += text[++i];
                else
                    plain += text[i];
            break;
        case L'A':
        case L'C':
        case L'c':
        case L'F':
        case L'f':
        case L'H':
        case L'Q':
        case L'T':
        case L'W':
        case L'p': { // a value up to a semicolon
            const std::size_t end = text.find(L';', i);
            i = end == std::wstring_view::npos ? text.size() : end;
            break;
        }
        default:
            plain += L'\\';
            plain += code;
        }
    }
    return plain;
}

std::wstring codedParagraphs(std::wstring_view text)
{
    std::wstring coded;
    for (const wchar_t c : text) {
        if (c == L'\n') {
            coded += L"\\P";
            continue;
        }
        if (c == L'\\' || c == L'{' || c == L'}')
            coded += L'\\';
        coded += c;
    }
    return coded;
}

} // namespace velmor::dxf
