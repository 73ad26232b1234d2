#include "host/drawing/dxf/TextCodec.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <iconv.h>
#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

namespace velmor {

namespace {

constexpr wchar_t kNone = 0; // no character at this place of a page; byte 0 itself never comes up in text
constexpr wchar_t kByteBase = 0xDC00;

class Converter {
public:
    Converter(const char *to, const char *from) : m_handle(iconv_open(to, from)) {}
    ~Converter()
    {
        if (isOpen())
            iconv_close(m_handle);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;
    bool isOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }
    /// The one character that these bytes are in the page; none when they are no, part of, or several characters.
    wchar_t character(std::string_view bytes)
    {
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        std::array<char, 4> in{};
        bytes.copy(in.data(), in.size());
        char *inAt = in.data();
        std::size_t inLeft = bytes.size();
        std::array<wchar_t, 4> out{};
        char *outAt = reinterpret_cast<char *>(out.data());
        std::size_t outLeft = sizeof out;
        const bool failed = iconv(m_handle, &inAt, &inLeft, &outAt, &outLeft) == static_cast<std::size_t>(-1);
        // A page with combining marks holds the last character back until it is flushed.
        if (failed || iconv(m_handle, nullptr, nullptr, &outAt, &outLeft) == static_cast<std::size_t>(-1))
            return kNone;
        return inLeft == 0 && outLeft == sizeof out - sizeof(wchar_t) ? out[0] : kNone;
    }

private:
    iconv_t m_handle;
};

} // namespace

/// One code page, both ways.
struct TextCodec::Page {
    std::array<wchar_t, 256> single{};
    std::array<bool, 256> leads{}; ///< first bytes of pairs
    std::vector<wchar_t> pairs;    ///< by first byte * 256 + second; empty for a single-byte page
    std::unordered_map<wchar_t, std::uint16_t> bytes;

    static std::shared_ptr<const Page> load(const std::string &iconvName);
    wchar_t pair(unsigned char first, unsigned char second) const
    {
        return pairs.empty() ? kNone : pairs[first * 256u + second];
    }
};

std::shared_ptr<const TextCodec::Page> TextCodec::Page::load(const std::string &iconvName)
{
    static std::map<std::string, std::shared_ptr<const Page>> loaded;
    auto &slot = loaded[iconvName];
    if (slot)
        return slot;
    Converter converter("WCHAR_T", iconvName.c_str());
    if (!converter.isOpen())
        return nullptr;
    auto page = std::make_shared<Page>();
    const bool doubleByte = iconvName == "CP932" || iconvName == "CP936" || iconvName == "CP949" ||
                            iconvName == "CP950" || iconvName == "JOHAB";
    for (unsigned byte = 1; byte < 256; ++byte) {
        const char text = static_cast<char>(byte);
        // Below 128 all pages are ASCII here: some double-byte tables have a yen or a won sign for the backslash, which
        // is the backslash of file names and escapes all the same.
        page->single[byte] = byte < 128 ? static_cast<wchar_t>(byte) : converter.character({&text, 1});
        if (page->single[byte] != kNone)
            page->bytes.emplace(page->single[byte], static_cast<std::uint16_t>(byte));
    }
    if (doubleByte) {
        page->pairs.assign(65536, kNone);
        for (unsigned first = 128; first < 256; ++first) {
            if (page->single[first] != kNone)
                continue;
            for (unsigned second = 0x30; second < 256; ++second) {
                const std::array<char, 2> text{static_cast<char>(first), static_cast<char>(second)};
                const wchar_t character = converter.character({text.data(), 2});
                if (character == kNone)
                    continue;
                page->leads[first] = true;
                page->pairs[first * 256 + second] = character;
                page->bytes.emplace(character, static_cast<std::uint16_t>(first * 256 + second));
            }
        }
    }
    slot = page;
    return slot;
}

namespace {

struct PageName {
    std::string shown, iconvName;
};

/// The system's name for a $DWGCODEPAGE value; none when the value has no known form.
std::optional<PageName> pageNameOf(std::string_view codePage)
{
    std::string upper, digits;
    for (const char c : codePage) {
        upper.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
        if (std::isdigit(static_cast<unsigned char>(c)))
            digits.push_back(c);
    }
    const auto starts = [&](std::string_view with) { return upper.starts_with(with); };
    if (starts("UTF"))
        return PageName{"UTF-8", ""};
    if (upper == "ASCII" || upper == "US_ASCII" || upper == "US-ASCII")
        return PageName{"ANSI_1252", "CP1252"};
    if (starts("BIG5"))
        return PageName{"ANSI_950", "CP950"};
    if (starts("GB"))
        return PageName{"ANSI_936", "CP936"};
    if (starts("KSC"))
        return PageName{"ANSI_949", "CP949"};
    if (starts("JOHAB"))
        return PageName{"ANSI_1361", "JOHAB"};
    if (starts("MAC"))
        return PageName{"MACINTOSH", "MACINTOSH"};
    if (starts("ISO")) {
        const auto eight = digits.find("8859");
        if (eight == std::string::npos || digits.size() <= eight + 4)
            return std::nullopt;
        const std::string part = digits.substr(eight + 4);
        return PageName{"ISO8859-" + part, "ISO-8859-" + part};
    }
    if ((starts("ANSI") || starts("DOS") || starts("CP") || starts("WINDOWS")) && !digits.empty()) {
        const std::string shown = (starts("DOS") ? "DOS" : "ANSI_") + digits;
        if (digits == "1361")
            return PageName{shown, "JOHAB"};
        if (digits == "950")
            return PageName{shown, "CP950"};
        if (digits == "65001")
            return PageName{"UTF-8", ""};
        return PageName{shown, "CP" + digits};
    }
    return std::nullopt;
}

bool isPlain(std::string_view bytes)
{
    for (const char c : bytes)
        if (static_cast<signed char>(c) <= 0 || c == '\\' || c == '^')
            return false;
    return true;
}

std::optional<unsigned> hexNumber(std::string_view digits)
{
    unsigned value = 0;
    for (const char c : digits) {
        if (!std::isxdigit(static_cast<unsigned char>(c)))
            return std::nullopt;
        const int upper = std::toupper(static_cast<unsigned char>(c));
        value = value * 16 + static_cast<unsigned>(upper <= '9' ? upper - '0' : upper - 'A' + 10);
    }
    return value;
}

/// The character of "\U+XXXX" at the start of bytes (two escapes in a row for one beyond U+FFFF) and its length.
struct Escape {
    wchar_t character = kNone;
    std::size_t length = 0;
};

std::optional<unsigned> unicodeUnit(std::string_view bytes)
{
    if (bytes.size() < 7 || !(bytes.starts_with("\\U+") || bytes.starts_with("\\u+")))
        return std::nullopt;
    return hexNumber(bytes.substr(3, 4));
}

Escape unicodeEscape(std::string_view bytes)
{
    const auto unit = unicodeUnit(bytes);
    if (!unit || *unit == 0)
        return {};
    if (*unit < 0xD800 || *unit > 0xDFFF)
        return {static_cast<wchar_t>(*unit), 7};
    const auto low = *unit < 0xDC00 ? unicodeUnit(bytes.substr(7)) : std::nullopt;
    if (!low || *low < 0xDC00 || *low > 0xDFFF)
        return {}; // half a pair stays as the seven letters that it is
    return {static_cast<wchar_t>(0x10000 + ((*unit - 0xD800) << 10) + (*low - 0xDC00)), 14};
}

Escape multiByteEscape(std::string_view bytes)
{
    static constexpr std::array<const char *, 5> kPages{"CP932", "CP950", "CP949", "JOHAB", "CP936"};
    if (bytes.size() < 8 || !(bytes.starts_with("\\M+") || bytes.starts_with("\\m+")))
        return {};
    const auto code = hexNumber(bytes.substr(4, 4));
    if (!code || bytes[3] < '1' || bytes[3] > '5')
        return {};
    const auto page = TextCodec::Page::load(kPages[static_cast<std::size_t>(bytes[3] - '1')]);
    if (!page)
        return {};
    const wchar_t character =
        *code < 256 ? page->single[*code]
                    : page->pair(static_cast<unsigned char>(*code >> 8), static_cast<unsigned char>(*code & 255));
    return character == kNone ? Escape{} : Escape{character, 8};
}

Escape caretEscape(std::string_view bytes)
{
    if (bytes.size() < 2)
        return {};
    if (bytes[1] == ' ')
        return {L'^', 2};
    if (bytes[1] > '@' && bytes[1] <= '_')
        return {static_cast<wchar_t>(bytes[1] - '@'), 2};
    return {};
}

/// One well-formed UTF-8 character at the start of bytes.
Escape utf8Character(std::string_view bytes)
{
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : (lead & 0xF0) == 0xE0       ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || bytes.size() < length)
        return {};
    unsigned value = length == 1 ? lead : lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80)
            return {};
        value = (value << 6) | (at(i) & 0x3Fu);
    }
    const bool tooLong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (tooLong || (value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF || value == 0)
        return {};
    return {static_cast<wchar_t>(value), length};
}

Escape pageCharacter(const TextCodec::Page &page, std::string_view bytes)
{
    const auto first = static_cast<unsigned char>(bytes[0]);
    if (page.single[first] != kNone)
        return {page.single[first], 1};
    if (page.leads[first] && bytes.size() > 1) {
        const wchar_t character = page.pair(first, static_cast<unsigned char>(bytes[1]));
        if (character != kNone)
            return {character, 2};
    }
    return {};
}

void appendUtf8(std::string &out, std::uint32_t value)
{
    const auto tail = [&](int shift) { out.push_back(static_cast<char>(0x80 | ((value >> shift) & 0x3F))); };
    if (value < 0x80) {
        out.push_back(static_cast<char>(value));
    } else if (value < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (value >> 6)));
        tail(0);
    } else if (value < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (value >> 12)));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | (value >> 18)));
        tail(12);
        tail(6);
        tail(0);
    }
}

void appendUnicodeEscape(std::string &out, std::uint32_t value)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    if (value > 0xFFFF) {
        appendUnicodeEscape(out, 0xD800 + ((value - 0x10000) >> 10));
        appendUnicodeEscape(out, 0xDC00 + ((value - 0x10000) & 0x3FF));
        return;
    }
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4)
        out.push_back(kDigits[(value >> shift) & 15]);
}

} // namespace

TextCodec TextCodec::forDrawing(std::string_view version, std::string_view codePage)
{
    TextCodec codec;
    const bool unicodeVersion = version.size() == 6 && version.starts_with("AC") && version >= "AC1021";
    std::optional<PageName> page = unicodeVersion ? PageName{"UTF-8", ""} : pageNameOf(codePage);
    if (page && !page->iconvName.empty()) {
        codec.m_page = Page::load(page->iconvName);
        if (!codec.m_page)
            page.reset();
    }
    if (!page) {
        codec.m_known = codePage.empty();
        page = PageName{"ANSI_1252", "CP1252"};
        codec.m_page = Page::load(page->iconvName);
    }
    codec.m_name = page->shown;
    return codec;
}

std::wstring TextCodec::decode(std::string_view bytes) const
{
    if (isPlain(bytes))
        return {bytes.begin(), bytes.end()};
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        Escape next;
        if (bytes[0] == '\\') {
            next = unicodeEscape(bytes);
            if (next.length == 0)
                next = multiByteEscape(bytes);
        } else if (bytes[0] == '^') {
            next = caretEscape(bytes);
        }
        if (next.length == 0)
            next = m_page ? pageCharacter(*m_page, bytes) : utf8Character(bytes);
        if (next.length == 0)
            next = {static_cast<wchar_t>(kByteBase + static_cast<unsigned char>(bytes[0])), 1};
        text.push_back(next.character);
        bytes.remove_prefix(next.length);
    }
    return text;
}

std::string TextCodec::encode(std::wstring_view text) const
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t c : text) {
        const auto value = static_cast<std::uint32_t>(c);
        if (value == 0) {
            continue; // no file can hold it
        } else if (value < 0x20) {
            bytes.push_back('^');
            bytes.push_back(static_cast<char>(value + '@'));
        } else if (c == L'^') {
            bytes += "^ ";
        } else if (value < 0x80) {
            bytes.push_back(static_cast<char>(value));
        } else if (value >= kByteBase && value <= kByteBase + 0xFFu) {
            bytes.push_back(static_cast<char>(value - kByteBase));
        } else if (value > 0x10FFFF) {
            appendUnicodeEscape(bytes, 0xFFFD);
        } else if (!m_page) {
            if (value >= 0xD800 && value <= 0xDFFF)
                appendUnicodeEscape(bytes, value);
            else
                appendUtf8(bytes, value);
        } else if (const auto found = m_page->bytes.find(c); found != m_page->bytes.end()) {
            if (found->second > 255)
                bytes.push_back(static_cast<char>(found->second >> 8));
            bytes.push_back(static_cast<char>(found->second & 255));
        } else {
            appendUnicodeEscape(bytes, value);
        }
    }
    return bytes;
}

} // namespace velmor
