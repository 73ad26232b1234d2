// What the catchment store reads from outside: the text of a polygon, and the items of a record in a drawing.
#include "host/sewage/AreaRecord.h"
#include "host/sewage/PolygonText.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

using velmor::DataItems;

/// What is read as a ring reads back the same from the text of its numbers.
void tryPolygon(std::string_view bytes)
{
    const auto ring = velmor::ringOfPolygonText(std::wstring(bytes.begin(), bytes.end()));
    if (!ring)
        return;
    std::wstring text = L"POLYGON ((";
    const auto add = [&](double value) {
        char digits[40];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        text.append(digits, end);
        text += L' ';
    };
    for (std::size_t i = 0; i <= ring->size(); ++i) {
        text += i ? L"," : L"";
        add((*ring)[i % ring->size()].x);
        add((*ring)[i % ring->size()].y);
    }
    text += L"))";
    if (velmor::ringOfPolygonText(text) != ring)
        std::abort();
}

/// Items as the bytes have it: a kind, then a length and letters, or the bytes of a number.
DataItems itemsOf(std::string_view bytes)
{
    DataItems items;
    while (!bytes.empty()) {
        const auto kind = static_cast<unsigned char>(bytes.front()) % 4;
        bytes.remove_prefix(1);
        if (kind == 0 && !bytes.empty()) {
            const std::size_t length =
                std::min<std::size_t>(static_cast<unsigned char>(bytes.front()), bytes.size() - 1);
            items.push_back({1, std::wstring(bytes.begin() + 1, bytes.begin() + 1 + static_cast<long>(length))});
            bytes.remove_prefix(1 + length);
        } else if (kind == 1 && bytes.size() >= sizeof(double)) {
            double value = 0.0;
            std::memcpy(&value, bytes.data(), sizeof value);
            items.push_back({40, velmor::storable(value)});
            bytes.remove_prefix(sizeof value);
        } else if (kind == 2 && bytes.size() >= sizeof(std::int64_t)) {
            std::int64_t value = 0;
            std::memcpy(&value, bytes.data(), sizeof value);
            items.push_back({90, value});
            bytes.remove_prefix(sizeof value);
        } else if (!bytes.empty()) {
            items.push_back({90, static_cast<std::int64_t>(static_cast<signed char>(bytes.front()))});
            bytes.remove_prefix(1);
        }
    }
    return items;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    tryPolygon(bytes);
    const auto record = velmor::recordFromItems(itemsOf(bytes));
    if (record && velmor::recordFromItems(velmor::toItems(*record)) != record)
        std::abort();
    return 0;
}
