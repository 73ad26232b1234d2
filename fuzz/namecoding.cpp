// Names of the terrain catalogue: whatever the page and the bytes, coding and decoding undo each other, and every text
// has a name.
#include "catalog/NameCoding.h"
#include "fuzz/CatalogContract.h"
#include "fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const CAnsiCodePage &page = CAnsiCodePage::Of(1250 + data[0] % 9);
    const std::string bytes(reinterpret_cast<const char *>(data) + 1, size - 1);

    // The bytes as a name.
    const std::wstring name = page.ToWide(bytes);
    require(page.ToBytes(name) == bytes);
    const std::wstring coded = EncodeName(name, page);
    for (const wchar_t c : coded)
        require(c < 128);
    require(DecodeName(coded, page) == name);

    // The bytes as an attribute's text, which may be in no coding at all.
    const std::wstring decoded = DecodeName(name, page);
    require(decoded.size() <= bytes.size());
    require(DecodeName(EncodeName(decoded, page), page) == decoded);

    // Characters of any kind, two bytes each: what the page lacks is lost at once and no further.
    std::wstring any;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        any +=
            static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]) << 8 | static_cast<unsigned char>(bytes[i + 1]));
    const std::wstring kept = DecodeName(EncodeName(any, page), page);
    require(kept == page.ToWide(page.ToBytes(any)) && kept.size() == any.size());
    require(DecodeName(EncodeName(kept, page), page) == kept);
    return 0;
}
