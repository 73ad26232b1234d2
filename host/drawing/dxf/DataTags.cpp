#include "host/drawing/dxf/DataTags.h"

namespace velmor::dxf {

namespace {

DataItem itemOf(const Tag &tag, const TextCodec &codec)
{
    DataItem item;
    item.code = tag.code;
    switch (valueKindOf(tag.code)) {
    case ValueKind::Real: {
        double value = 0.0;
        tag.real(value);
        item.value = value;
        break;
    }
    case ValueKind::Integer:
        item.value = parseInteger(tag.text()).value_or(0);
        break;
    default:
        item.value = codec.decode(tag.text());
    }
    return item;
}

} // namespace

std::string toUtf8(std::wstring_view text)
{
    // Not through the codec of files, which writes control characters in its own way.
    std::string bytes;
    for (const wchar_t wide : text) {
        const auto c = static_cast<std::uint32_t>(wide);
        if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else if (c < 0x800) {
            bytes += static_cast<char>(0xC0 | c >> 6);
            bytes += static_cast<char>(0x80 | (c & 63));
        } else if (c < 0x10000) {
            bytes += static_cast<char>(0xE0 | c >> 12);
            bytes += static_cast<char>(0x80 | (c >> 6 & 63));
            bytes += static_cast<char>(0x80 | (c & 63));
        } else {
            bytes += static_cast<char>(0xF0 | (c >> 18 & 7));
            bytes += static_cast<char>(0x80 | (c >> 12 & 63));
            bytes += static_cast<char>(0x80 | (c >> 6 & 63));
            bytes += static_cast<char>(0x80 | (c & 63));
        }
    }
    return bytes;
}

std::wstring fromUtf8(std::string_view text)
{
    std::wstring wide;
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        const int more = first < 0xC0 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
        std::uint32_t c = more == 0 ? first : first & (0x3F >> more);
        std::size_t used = 1;
        for (int k = 0; k < more && i + used < text.size(); ++k, ++used)
            c = c << 6 | (static_cast<unsigned char>(text[i + used]) & 63);
        wide += static_cast<wchar_t>(c);
        i += used;
    }
    return wide;
}

std::vector<std::string> piecesOf(const TextCodec &codec, std::wstring_view text)
{
    std::vector<std::string> pieces(1);
    for (const wchar_t c : text) {
        const std::string bytes = codec.encode(std::wstring_view(&c, 1));
        if (pieces.back().size() + bytes.size() > kLongestText)
            pieces.emplace_back();
        pieces.back() += bytes;
    }
    return pieces;
}

std::vector<Tag> tagsOf(const FileText &file, std::size_t offset, std::size_t length)
{
    std::vector<Tag> tags;
    const char *first = file.text.data() + offset;
    TagCursor cursor(first, first + length);
    Tag tag;
    const char *start = nullptr;
    while (cursor.next(tag, start))
        if (tag.code != 999)
            tags.push_back(tag);
    return tags;
}

DataItems readRecord(const FileText &file, const RawObject &record)
{
    DataItems items;
    const auto &host = ObjectAccess::host(record);
    bool inside = false, first = true;
    std::string begun;
    for (const Tag &tag : tagsOf(file, host.sourceOffset, host.sourceLength)) {
        if (tag.code >= 1000)
            break;
        if (!inside) {
            inside = tag.code == 100 && tag.name() == "AcDbXrecord";
            continue;
        }
        // The first flag says how the record is copied and is none of the items.
        if (first && tag.code == 280) {
            first = false;
            continue;
        }
        first = false;
        if (tag.code == kContinuationCode) {
            begun += tag.text();
            continue;
        }
        if (!begun.empty() && valueKindOf(tag.code) == ValueKind::Text) {
            items.push_back({tag.code, file.codec.decode(begun + std::string(tag.text()))});
            begun.clear();
            continue;
        }
        items.push_back(itemOf(tag, file.codec));
    }
    return items;
}

std::vector<DictionaryEntry> readDictionary(const FileText &file, const RawObject &dictionary)
{
    std::vector<DictionaryEntry> entries;
    const auto &host = ObjectAccess::host(dictionary);
    const auto tags = tagsOf(file, host.sourceOffset, host.sourceLength);
    for (std::size_t i = 0; i + 1 < tags.size(); ++i)
        if (tags[i].code == 3 && (tags[i + 1].code == 350 || tags[i + 1].code == 360 || tags[i + 1].code == 340))
            entries.push_back({toUtf8(file.codec.decode(tags[i].text())), parseHandle(tags[i + 1].text())});
    return entries;
}

std::vector<ExtendedSlice> readExtendedData(std::span<const Tag> tags, const TextCodec &codec)
{
    std::vector<ExtendedSlice> slices;
    std::size_t i = 0;
    const auto textAt = [&](std::size_t k) { return toUtf8(codec.decode(tags[k].text())); };
    while (i < tags.size() && tags[i].code != 1001 && tags[i].code >= 1000) {
        ExtendedSlice slice;
        // Whose slice this is comes before the braces of a point of the data block.
        if (tags[i].code == 1000 && i + 2 < tags.size() && tags[i + 1].code == 1071) {
            slice.target = textAt(i);
            slice.part = tags[i + 1].integer();
            i += 2;
        }
        if (tags[i].code != 1002 || tags[i].name() != "{" || i + 1 >= tags.size() || tags[i + 1].code != 1000) {
            ++i;
            continue;
        }
        slice.key = textAt(i + 1);
        for (i += 2; i < tags.size() && tags[i].code != 1002 && tags[i].code != 1001; ++i)
            slice.tags.push_back(tags[i]);
        i += i < tags.size() && tags[i].code == 1002;
        slices.push_back(std::move(slice));
    }
    return slices;
}

DataItems readItems(std::span<const Tag> tags, const TextCodec &codec)
{
    DataItems items;
    for (std::size_t i = 0; i < tags.size();) {
        if (tags[i].code != 1070) {
            ++i;
            continue;
        }
        DataItem item;
        item.code = tags[i].integer();
        const ValueKind kind = valueKindOf(item.code);
        std::string bytes;
        bool hasValue = false;
        for (++i; i < tags.size() && tags[i].code != 1070; ++i) {
            hasValue = true;
            double real = 0.0;
            if (tags[i].code == 1000)
                bytes += tags[i].text();
            else if (tags[i].code == 1040 && tags[i].real(real))
                item.value = real;
            else if (tags[i].code == 1071)
                item.value = parseInteger(tags[i].text()).value_or(0);
        }
        if (!hasValue)
            continue;
        // Whole numbers of more than 32 bits stand as text.
        if (kind == ValueKind::Integer && !bytes.empty())
            item.value = parseInteger(bytes).value_or(0);
        else if (kind != ValueKind::Integer && kind != ValueKind::Real)
            item.value = codec.decode(bytes);
        items.push_back(std::move(item));
    }
    return items;
}

} // namespace velmor::dxf
