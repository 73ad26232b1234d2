#include "catalog/AnsiCodePage.h"

#include "contracts/CoreServices.h"

#include <iconv.h>

#include <map>
#include <memory>
#include <optional>

namespace {

constexpr wchar_t kByteBase = 0xDC00;

/// Reads characters of a page one at a time.
class CConverter {
public:
    explicit CConverter(const std::string &pageName) : m_handle(iconv_open("WCHAR_T", pageName.c_str())) {}
    ~CConverter()
    {
        if (IsOpen())
            iconv_close(m_handle);
    }
    CConverter(const CConverter &) = delete;
    CConverter &operator=(const CConverter &) = delete;
    bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }
    /// Nothing for a byte that is no character by itself.
    std::optional<wchar_t> Character(unsigned char byte)
    {
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        char in = static_cast<char>(byte);
        char *pIn = &in;
        std::size_t inLeft = 1;
        std::array<wchar_t, 4> out{};
        char *pOut = reinterpret_cast<char *>(out.data());
        std::size_t outLeft = sizeof out;
        // A page with combining marks holds a letter back until it is flushed.
        if (iconv(m_handle, &pIn, &inLeft, &pOut, &outLeft) == static_cast<std::size_t>(-1) ||
            iconv(m_handle, nullptr, nullptr, &pOut, &outLeft) == static_cast<std::size_t>(-1) ||
            outLeft != sizeof out - sizeof(wchar_t))
            return std::nullopt;
        return out[0];
    }

private:
    iconv_t m_handle;
};

} // namespace

bool CAnsiCodePage::Read(int nNumber)
{
    m_nNumber = nNumber;
    CConverter converter("CP" + std::to_string(nNumber));
    if (!converter.IsOpen())
        return false;
    for (int byte = 0; byte < 128; ++byte)
        if (converter.Character(static_cast<unsigned char>(byte)) != static_cast<wchar_t>(byte))
            return false;
    for (unsigned byte = 128; byte < 256; ++byte)
        m_characters[byte] = converter.Character(static_cast<unsigned char>(byte)).value_or(L'\0');
    return true;
}

const CAnsiCodePage &CAnsiCodePage::Of(int nNumber)
{
    static std::map<int, std::unique_ptr<CAnsiCodePage>> pages;
    auto &slot = pages[nNumber];
    if (slot)
        return *slot;
    std::unique_ptr<CAnsiCodePage> page(new CAnsiCodePage);
    if (!page->Read(nNumber)) {
        if (nNumber != kStandard)
            return Of(kStandard);
        page->m_characters.fill(L'\0'); // no converters on this machine
    }
    for (unsigned byte = 0; byte < 128; ++byte)
        page->m_characters[byte] = static_cast<wchar_t>(byte);
    for (unsigned byte = 0; byte < 256; ++byte)
        if (byte == 0 || page->m_characters[byte] != L'\0')
            page->m_bytes.emplace(page->m_characters[byte], static_cast<char>(byte));
    for (unsigned byte = 128; byte < 256; ++byte) {
        wchar_t &character = page->m_characters[byte];
        if (character != L'\0')
            continue;
        character = static_cast<wchar_t>(byte);
        if (!page->m_bytes.emplace(character, static_cast<char>(byte)).second)
            character = static_cast<wchar_t>(kByteBase + byte);
    }
    slot = std::move(page);
    return *slot;
}

const CAnsiCodePage &CAnsiCodePage::OfSetting()
{
    int nNumber = kStandard;
    ZEMGis::CModuleConfiguration::Instance()->GetGSValueInt(kSetting, nNumber);
    return Of(nNumber);
}

std::string CAnsiCodePage::ToBytes(std::wstring_view text) const
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        const auto found = m_bytes.find(character);
        if (found != m_bytes.end())
            bytes.push_back(found->second);
        else if (character >= kByteBase + 128 && character <= kByteBase + 255)
            bytes.push_back(static_cast<char>(character - kByteBase));
        else
            bytes.push_back('?');
    }
    return bytes;
}

std::wstring CAnsiCodePage::ToWide(std::string_view bytes) const
{
    std::wstring text;
    text.reserve(bytes.size());
    for (const char byte : bytes)
        text.push_back(m_characters[static_cast<unsigned char>(byte)]);
    return text;
}
