#include "catalog/MarkupIndex.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

// Records are moved and copied as bytes.
static_assert(std::is_trivially_copyable_v<CMarkupRecord>);

namespace {

constexpr std::size_t kSegmentBytes = CMarkupIndex::kSegmentSize * sizeof(CMarkupRecord);

/// A full segment is one large page where the system has such pages.
void *AllocateFull()
{
    void *pBlock = nullptr;
    if (::posix_memalign(&pBlock, kSegmentBytes, kSegmentBytes) != 0)
        throw std::bad_alloc();
    ::madvise(pBlock, kSegmentBytes, MADV_HUGEPAGE);
    return pBlock;
}

} // namespace

void CMarkupIndex::Free::operator()(CMarkupRecord *pRecords) const
{
    std::free(pRecords);
}

CMarkupIndex::CMarkupIndex(const CMarkupIndex &other)
{
    *this = other;
}

CMarkupIndex &CMarkupIndex::operator=(const CMarkupIndex &other)
{
    if (this == &other)
        return *this;
    CMarkupIndex copy;
    copy.SetCapacity(other.m_capacity);
    copy.m_free = other.m_free;
    copy.m_beside = other.m_beside;
    for (std::uint32_t first = 0; first < other.m_free; first += kSegmentSize) {
        const std::size_t count = std::min(kSegmentSize, other.m_free - first);
        std::memcpy(static_cast<void *>(&copy[first]), &other[first], count * sizeof(CMarkupRecord));
    }
    *this = std::move(copy);
    return *this;
}

void CMarkupIndex::Reset(std::size_t textLength)
{
    const std::size_t wanted = textLength / 64 + 8;
    if (m_capacity / 4 > wanted) {
        m_segments.clear();
        m_capacity = 0;
    }
    m_free = 0;
    m_beside.clear();
    SetCapacity(static_cast<std::uint32_t>(wanted));
    (*this)[Add()] = CMarkupRecord();
}

void CMarkupIndex::Grow()
{
    const std::uint32_t endOfNext = (((m_capacity - 1) >> kSegmentShift) + 2) << kSegmentShift;
    SetCapacity(std::min(m_free + m_free / 2, endOfNext));
}

void CMarkupIndex::SetCapacity(std::uint32_t capacity)
{
    while (m_capacity < capacity) {
        const std::uint32_t segment = m_capacity >> kSegmentShift, first = segment << kSegmentShift;
        const std::uint32_t count = std::min(capacity - first, kSegmentSize);
        if (segment == m_segments.size())
            m_segments.emplace_back();
        Segment &records = m_segments[segment];
        void *pBlock = nullptr;
        if (count == kSegmentSize) {
            pBlock = AllocateFull();
            if (records)
                std::memcpy(pBlock, records.get(), (m_capacity - first) * sizeof(CMarkupRecord));
            std::free(records.release());
        } else {
            pBlock = std::realloc(static_cast<void *>(records.get()), count * sizeof(CMarkupRecord));
            if (!pBlock)
                throw std::bad_alloc();
            (void)records.release();
        }
        records.reset(static_cast<CMarkupRecord *>(pBlock));
        m_capacity = first + count;
    }
}

void CMarkupIndex::Truncate(std::uint32_t end)
{
    std::erase_if(m_beside, [end](const auto &entry) { return entry.first >= end; });
    m_free = end;
}

void CMarkupIndex::SetTagLengths(std::uint32_t i, std::size_t startTag, std::size_t endTag)
{
    constexpr std::size_t kLongestEndTag = (1U << (32 - CMarkupRecord::kEndTagShift)) - 1;
    CMarkupRecord &record = (*this)[i];
    record.tagLengths = (static_cast<std::uint32_t>(startTag) & CMarkupRecord::kStartTagMask) |
                        static_cast<std::uint32_t>(std::min(endTag, kLongestEndTag)) << CMarkupRecord::kEndTagShift;
    if ((startTag & ~std::size_t{CMarkupRecord::kStartTagMask}) != 0 || endTag > kLongestEndTag) {
        m_beside[i] = {static_cast<std::uint32_t>(startTag), static_cast<std::uint32_t>(endTag)};
        record.Set(CMarkupRecord::kTagsBeside);
    } else if (record.Has(CMarkupRecord::kTagsBeside)) {
        m_beside.erase(i);
        record.Drop(CMarkupRecord::kTagsBeside);
    }
}

void CMarkupIndex::ShiftStarts(std::uint32_t first, std::uint32_t end, std::uint32_t difference)
{
    while (first < end) {
        const std::uint32_t stop = std::min(end, (first | (kSegmentSize - 1)) + 1);
        CMarkupRecord *pRecord = &(*this)[first];
        for (CMarkupRecord *pEnd = pRecord + (stop - first); pRecord != pEnd; ++pRecord)
            pRecord->start += difference;
        first = stop;
    }
}

std::size_t CMarkupIndex::MemoryBytes() const
{
    return std::size_t{m_capacity} * sizeof(CMarkupRecord) + m_segments.capacity() * sizeof(Segment) +
           m_beside.size() * (sizeof(std::uint32_t) * 4 + 2 * sizeof(void *));
}
