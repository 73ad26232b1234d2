#include "catalog/MarkupSaved.h"

#include <algorithm>

std::size_t CMarkupSavedPositions::BucketOf(std::wstring_view name)
{
    std::uint64_t sum = 0;
    for (const wchar_t c : name)
        sum += static_cast<std::uint32_t>(c);
    return sum % 7;
}

void CMarkupSavedPositions::Set(std::wstring_view name, const Positions &positions)
{
    if (const Positions *pKnown = Find(name)) {
        *const_cast<Positions *>(pKnown) = positions;
        return;
    }
    m_buckets[BucketOf(name)].push_back({std::wstring(name), positions});
}

const CMarkupSavedPositions::Positions *CMarkupSavedPositions::Find(std::wstring_view name) const
{
    const std::vector<Entry> &bucket = m_buckets[BucketOf(name)];
    const auto found = std::find_if(bucket.begin(), bucket.end(), [&](const Entry &e) { return e.name == name; });
    return found == bucket.end() ? nullptr : &found->positions;
}

std::size_t CMarkupSavedPositions::MemoryBytes() const
{
    std::size_t bytes = sizeof(*this);
    for (const std::vector<Entry> &bucket : m_buckets) {
        bytes += bucket.capacity() * sizeof(Entry);
        for (const Entry &entry : bucket)
            bytes += entry.name.capacity() * sizeof(wchar_t);
    }
    return bytes;
}
