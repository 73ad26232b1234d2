// Per-drawing settings: one value, or a chain of values, under a key of a named dictionary.
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/drawing/Utf8.h"
#include "host/drawing/contract/ChainKinds.h"

#include <algorithm>
#include <limits>

using velmor::ChainKind;
using velmor::chainKindOf;
using velmor::DataItem;
using velmor::DataItems;
using velmor::Drawing;
using velmor::journal;
using velmor::toUtf8;
using velmor::workingDrawing;

namespace {

std::optional<DataItems> itemsAt(const wchar_t *dictionary, const wchar_t *key)
{
    const Drawing *drawing = workingDrawing();
    return drawing && dictionary && key ? drawing->dictionaryEntry(toUtf8(dictionary), toUtf8(key)) : std::nullopt;
}

/// Writes a read into the journal, with its outcome, and gives the outcome back.
bool readEntry(const wchar_t *dictionary, const wchar_t *key, bool found)
{
    journal("CZEMCDictionaryPtr::dctRead", dictionary, key, found);
    return found;
}

/// The one value under a key when it is of that type.
template <class Value>
std::optional<Value> valueAt(const wchar_t *dictionary, const wchar_t *key)
{
    const auto items = itemsAt(dictionary, key);
    if (!items || items->size() != 1)
        return std::nullopt;
    const Value *value = std::get_if<Value>(&items->front().value);
    return value ? std::optional(*value) : std::nullopt;
}

bool isWhole(ChainKind kind)
{
    return kind == ChainKind::Short || kind == ChainKind::Long;
}

/// The group code under which a chain's item is kept.
int codeOf(short type)
{
    switch (type) {
    case RTSTR:
        return 1;
    case RTREAL:
        return 38;
    case RTSHORT:
        return 60;
    case RTLONG:
        return 90;
    case RTPOINT:
    case RT3DPOINT:
        return 10;
    default:
        return type;
    }
}

/// None when the chain holds something that a dictionary can't keep.
std::optional<DataItems> itemsOf(const resbuf *chain)
{
    DataItems items;
    for (; chain; chain = chain->rbnext) {
        const int code = codeOf(chain->restype);
        switch (chainKindOf(chain->restype)) {
        case ChainKind::Text:
            items.push_back({code, std::wstring(chain->resval.rstring ? chain->resval.rstring : L"")});
            break;
        case ChainKind::Real:
            items.push_back({code, chain->resval.rreal});
            break;
        case ChainKind::Short:
            items.push_back({code, std::int64_t{chain->resval.rint}});
            break;
        case ChainKind::Long:
            items.push_back({code, std::int64_t{chain->resval.rlong}});
            break;
        case ChainKind::Point: {
            const int count = chain->restype == RTPOINT ? 2 : 3;
            for (int i = 0; i < 3; ++i)
                items.push_back({code + 10 * i, i < count ? chain->resval.rpoint[i] : 0.0});
            break;
        }
        case ChainKind::Name:
        case ChainKind::None:
        case ChainKind::Unknown:
            return std::nullopt;
        }
    }
    return items;
}

/// The coordinates of a point that starts at an item; false when the items are none.
bool takePoint(const DataItems &items, std::size_t at, double (&point)[3])
{
    for (int i = 0; i < 3; ++i) {
        const std::size_t index = at + static_cast<std::size_t>(i);
        if (index >= items.size() || items[index].code != items[at].code + 10 * i)
            return false;
        const double *coordinate = std::get_if<double>(&items[index].value);
        if (!coordinate)
            return false;
        point[i] = *coordinate;
    }
    return true;
}

/// Fills a chain's item from items[at]; how many items were used, 0 when the value doesn't fit its code.
std::size_t fill(resbuf &to, const DataItems &items, std::size_t at)
{
    const DataItem &item = items[at];
    const auto *text = std::get_if<std::wstring>(&item.value);
    const auto *real = std::get_if<double>(&item.value);
    const auto *whole = std::get_if<std::int64_t>(&item.value);
    switch (chainKindOf(item.code)) {
    case ChainKind::Text:
        if (text)
            to.resval.rstring = velmor::newChainText(text->c_str());
        return text ? 1 : 0;
    case ChainKind::Real:
        if (real)
            to.resval.rreal = *real;
        return real ? 1 : 0;
    case ChainKind::Short:
        if (!whole || *whole != static_cast<short>(*whole))
            return 0;
        to.resval.rint = static_cast<short>(*whole);
        return 1;
    case ChainKind::Long:
        if (!whole || *whole != static_cast<std::int32_t>(*whole))
            return 0;
        to.resval.rlong = static_cast<std::int32_t>(*whole);
        return 1;
    case ChainKind::Point:
        return takePoint(items, at, to.resval.rpoint) ? 3 : 0;
    case ChainKind::Name:
    case ChainKind::None:
    case ChainKind::Unknown:
        break;
    }
    return 0;
}

bool writeItems(AcDb::OpenMode mode, const wchar_t *dictionary, const wchar_t *key, bool create, const DataItems &items)
{
    Drawing *drawing = workingDrawing();
    if (mode != AcDb::kForWrite || !drawing || !dictionary || !*dictionary || !key || !*key)
        return false;
    const std::string name = toUtf8(dictionary);
    if (!create && drawing->dictionaryKeys(name).empty())
        return false;
    drawing->setDictionaryEntry(name, toUtf8(key), items);
    return true;
}

} // namespace

CZEMCDictionaryPtr::CZEMCDictionaryPtr(AcDb::OpenMode mode) : m_mode(mode) {}

bool CZEMCDictionaryPtr::upgradeOpen()
{
    if (!workingDrawing())
        return false;
    m_mode = AcDb::kForWrite;
    return true;
}

bool CZEMCDictionaryPtr::dctRead(const wchar_t *dictionary, const wchar_t *key, std::wstring &value, bool) const
{
    const auto found = valueAt<std::wstring>(dictionary, key);
    if (found)
        value = *found;
    return readEntry(dictionary, key, found.has_value());
}

bool CZEMCDictionaryPtr::dctRead(const wchar_t *dictionary, const wchar_t *key, double &value, bool) const
{
    const auto found = valueAt<double>(dictionary, key);
    if (found)
        value = *found;
    return readEntry(dictionary, key, found.has_value());
}

bool CZEMCDictionaryPtr::dctRead(const wchar_t *dictionary, const wchar_t *key, int &value, bool) const
{
    const auto found = valueAt<std::int64_t>(dictionary, key);
    const bool fits = found && *found >= std::numeric_limits<int>::min() && *found <= std::numeric_limits<int>::max();
    if (fits)
        value = static_cast<int>(*found);
    return readEntry(dictionary, key, fits);
}

bool CZEMCDictionaryPtr::dctRead(const wchar_t *dictionary, const wchar_t *key, resbuf *&value, bool) const
{
    const auto items = itemsAt(dictionary, key);
    if (!items || items->empty())
        return readEntry(dictionary, key, false);
    resbuf *head = nullptr, **next = &head;
    for (std::size_t at = 0; at < items->size();) {
        resbuf *item = acutNewRb((*items)[at].code);
        *next = item;
        next = &item->rbnext;
        const std::size_t used = fill(*item, *items, at);
        if (used == 0) {
            acutRelRb(head);
            return readEntry(dictionary, key, false);
        }
        at += used;
    }
    value = head;
    return readEntry(dictionary, key, true);
}

bool CZEMCDictionaryPtr::dctWrite(const wchar_t *dictionary, const wchar_t *key, const std::wstring &value, bool,
                                  bool create, short code)
{
    journal("CZEMCDictionaryPtr::dctWrite", dictionary, key, std::wstring_view(value), code);
    return chainKindOf(code) == ChainKind::Text && writeItems(m_mode, dictionary, key, create, {{code, value}});
}

bool CZEMCDictionaryPtr::dctWrite(const wchar_t *dictionary, const wchar_t *key, double value, bool, bool create,
                                  short code)
{
    journal("CZEMCDictionaryPtr::dctWrite", dictionary, key, value, code);
    return chainKindOf(code) == ChainKind::Real && std::isfinite(value) &&
           writeItems(m_mode, dictionary, key, create, {{code, value}});
}

bool CZEMCDictionaryPtr::dctWrite(const wchar_t *dictionary, const wchar_t *key, int value, bool, bool create,
                                  short code)
{
    journal("CZEMCDictionaryPtr::dctWrite", dictionary, key, value, code);
    return isWhole(chainKindOf(code)) && writeItems(m_mode, dictionary, key, create, {{code, std::int64_t{value}}});
}

bool CZEMCDictionaryPtr::dctWrite(const wchar_t *dictionary, const wchar_t *key, const resbuf *value, bool, bool create)
{
    const auto items = itemsOf(value);
    journal("CZEMCDictionaryPtr::dctWrite", dictionary, key, items ? items->size() : std::size_t{0});
    return items && writeItems(m_mode, dictionary, key, create, *items);
}
