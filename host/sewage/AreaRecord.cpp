#include "host/sewage/AreaRecord.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmor {
namespace {

using ZEMGis::Data::CDataBox;

constexpr std::int64_t kFormat = 1;
/// A record never holds more parts than its items, so a count beyond this is damage.
constexpr std::int64_t kMostParts = 10'000'000;

/// What stands before a property's value: its kind, numbered as in the variant.
enum BoxKind : std::int64_t { kNothing = 0, kReal = 1, kWhole = 2, kText = 3, kList = 4 };

void put(DataItems &items, const std::wstring &text)
{
    items.push_back({1, text});
}
void put(DataItems &items, double number)
{
    items.push_back({40, number});
}
void put(DataItems &items, std::int64_t number)
{
    items.push_back({90, number});
}

void putBox(DataItems &items, const CDataBox &box)
{
    const auto &value = box.value();
    put(items, static_cast<std::int64_t>(value.index()));
    if (const auto *real = std::get_if<double>(&value)) {
        put(items, *real);
    } else if (const auto *whole = std::get_if<int>(&value)) {
        put(items, static_cast<std::int64_t>(*whole));
    } else if (const auto *text = std::get_if<std::wstring>(&value)) {
        put(items, *text);
    } else if (const auto *list = std::get_if<CStringArray>(&value)) {
        put(items, static_cast<std::int64_t>(list->size()));
        for (const std::wstring &entry : *list)
            put(items, entry);
    }
}

/// Takes items from front to back; after one of the wrong kind everything fails.
class ItemReader {
public:
    explicit ItemReader(const DataItems &items) : m_items(items) {}
    bool failed() const { return m_failed; }

    std::wstring text() { return take<std::wstring>(); }
    double real()
    {
        // Another program may write a number without a fraction as a whole one.
        if (m_next < m_items.size() && std::holds_alternative<std::int64_t>(m_items[m_next].value))
            return static_cast<double>(take<std::int64_t>());
        return take<double>();
    }
    std::int64_t whole() { return take<std::int64_t>(); }
    std::int64_t count()
    {
        const std::int64_t value = whole();
        if (value < 0 || value > kMostParts || static_cast<std::size_t>(value) > m_items.size() - m_next)
            m_failed = true;
        return m_failed ? 0 : value;
    }
    CDataBox box()
    {
        switch (whole()) {
        case kReal:
            return CDataBox(real());
        case kWhole:
            return CDataBox(static_cast<int>(whole()));
        case kText:
            return CDataBox(text());
        case kList: {
            CStringArray list;
            for (std::int64_t left = count(); left > 0 && !m_failed; --left)
                list.push_back(text());
            return CDataBox(std::move(list));
        }
        case kNothing:
            return {};
        default:
            m_failed = true;
            return {};
        }
    }

private:
    template <class T>
    T take()
    {
        if (m_failed || m_next >= m_items.size() || !std::holds_alternative<T>(m_items[m_next].value)) {
            m_failed = true;
            return {};
        }
        return std::get<T>(m_items[m_next++].value);
    }
    const DataItems &m_items;
    std::size_t m_next = 0;
    bool m_failed = false;
};

} // namespace

double storable(double value)
{
    return std::isfinite(value) ? value : ZEMGis::Topology::kUnknownValue;
}

const CDataBox *AreaRecord::property(std::wstring_view tag) const
{
    const auto found =
        std::find_if(properties.begin(), properties.end(), [&](const auto &p) { return p.first == tag; });
    return found == properties.end() ? nullptr : &found->second;
}

void AreaRecord::setProperty(const std::wstring &tag, const CDataBox &box)
{
    const auto *real = std::get_if<double>(&box.value());
    const CDataBox kept = real ? CDataBox(storable(*real)) : box;
    const auto found =
        std::find_if(properties.begin(), properties.end(), [&](const auto &p) { return p.first == tag; });
    if (!kept.IsNotNull()) {
        if (found != properties.end())
            properties.erase(found);
    } else if (found != properties.end()) {
        found->second = kept;
    } else {
        properties.emplace_back(tag, kept);
    }
}

double AreaRecord::number(std::wstring_view tag) const
{
    const CDataBox *box = property(tag);
    return box ? static_cast<double>(*box) : 0.0;
}

DataItems toItems(const AreaRecord &record)
{
    DataItems items;
    items.reserve(10 + 2 * record.shares.size() + 3 * record.properties.size());
    put(items, kFormat);
    put(items, record.order);
    put(items, record.guid);
    put(items, record.name);
    put(items, static_cast<std::int64_t>(record.type));
    put(items, static_cast<std::int64_t>(record.hidden));
    put(items, record.hiddenSquareMetres);
    put(items, static_cast<std::int64_t>(record.shares.size()));
    for (const AreaRecord::Share &share : record.shares) {
        put(items, share.sectionGuid);
        put(items, share.share);
    }
    put(items, static_cast<std::int64_t>(record.properties.size()));
    for (const auto &[tag, box] : record.properties) {
        put(items, tag);
        putBox(items, box);
    }
    return items;
}

std::optional<AreaRecord> recordFromItems(const DataItems &items)
{
    ItemReader reader(items);
    if (reader.whole() != kFormat)
        return std::nullopt;
    AreaRecord record;
    record.order = reader.whole();
    record.guid = reader.text();
    record.name = reader.text();
    record.type = static_cast<int>(reader.whole());
    record.hidden = reader.whole() != 0;
    record.hiddenSquareMetres = reader.real();
    const std::int64_t shares = reader.count();
    record.shares.reserve(static_cast<std::size_t>(shares));
    for (std::int64_t i = 0; i < shares && !reader.failed(); ++i) {
        std::wstring guid = reader.text();
        record.shares.push_back({std::move(guid), reader.real()});
    }
    const std::int64_t properties = reader.count();
    for (std::int64_t i = 0; i < properties && !reader.failed(); ++i) {
        std::wstring tag = reader.text();
        CDataBox box = reader.box();
        record.properties.emplace_back(std::move(tag), std::move(box));
    }
    if (reader.failed() || record.guid.empty())
        return std::nullopt;
    return record;
}

} // namespace velmor
