// The element records of a markup document: a segmented array of 32-byte records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

/// One element. Indexes are record numbers; 0 is none, or the document itself as a parent.
struct CMarkupRecord {
    static constexpr std::uint32_t kStartTagMask = 0x2FFFFF; ///< of tagLengths
    static constexpr unsigned kEndTagShift = 22;
    static constexpr std::uint32_t kLevelMask = 0xFFFF; ///< of levelAndFlags; deeper levels count as the deepest

    static constexpr std::uint32_t kEmptyTag = 0x010000; ///< told by the scanner only
    static constexpr std::uint32_t kDeleted = 0x020000;
    static constexpr std::uint32_t kFirstChild = 0x080000;
    static constexpr std::uint32_t kNotEnded = 0x100000;     ///< no end tag: its length is that of its start tag
    static constexpr std::uint32_t kDamaged = 0x200000;      ///< the data around here
    static constexpr std::uint32_t kIllFormed = 0x800000;    ///< the document; on record 0
    static constexpr std::uint32_t kTagsBeside = 0x40000000; ///< tag lengths too long for their bits stand beside

    std::uint32_t start = 0;      ///< offset of the "<"
    std::uint32_t length = 0;     ///< characters to the end of the end tag
    std::uint32_t tagLengths = 0; ///< start tag in the mask, end tag in the top 10 bits (0: none)
    std::uint32_t levelAndFlags = 0;
    std::uint32_t parent = 0;
    std::uint32_t firstChild = 0;
    std::uint32_t next = 0;
    std::uint32_t previous = 0; ///< of a first child: the last sibling, so that appending needs no walk

    bool Has(std::uint32_t flag) const { return (levelAndFlags & flag) != 0; }
    void Set(std::uint32_t flag) { levelAndFlags |= flag; }
    void Drop(std::uint32_t flag) { levelAndFlags &= ~flag; }
    std::uint32_t Level() const { return levelAndFlags & kLevelMask; }
    void SetLevel(std::size_t level)
    {
        levelAndFlags = (levelAndFlags & ~kLevelMask) |
                        static_cast<std::uint32_t>(level < kLevelMask ? level : std::size_t{kLevelMask});
    }
};
static_assert(sizeof(CMarkupRecord) == 32);

/// Segments of 65,536 records each; only the last one grows, so that a full one never moves. References to records of
/// the last segment are good until the next Add.
class CMarkupIndex {
public:
    static constexpr std::uint32_t kSegmentShift = 16;
    static constexpr std::uint32_t kSegmentSize = 1U << kSegmentShift;

    CMarkupIndex() = default;
    CMarkupIndex(const CMarkupIndex &other);
    CMarkupIndex &operator=(const CMarkupIndex &other);
    CMarkupIndex(CMarkupIndex &&) noexcept = default;
    CMarkupIndex &operator=(CMarkupIndex &&) noexcept = default;

    /// Empties the index and sizes it for a text of that length: a 64th of it, plus 8 records. Record 0 is made.
    void Reset(std::size_t textLength);
    CMarkupRecord &operator[](std::uint32_t i) { return m_segments[i >> kSegmentShift].get()[i & (kSegmentSize - 1)]; }
    const CMarkupRecord &operator[](std::uint32_t i) const
    {
        return m_segments[i >> kSegmentShift].get()[i & (kSegmentSize - 1)];
    }
    /// Number of the next free record: all below it were handed out.
    std::uint32_t End() const { return m_free; }
    /// Hands out the next record, of undefined contents. At the end of the capacity this grows by half of that number,
    /// at most to the end of the next segment.
    std::uint32_t Add()
    {
        if (m_free == m_capacity)
            Grow();
        return m_free++;
    }
    /// Gives the records from there on back, as if they had never been handed out.
    void Truncate(std::uint32_t end);
    std::uint32_t Capacity() const { return m_capacity; }

    std::size_t StartTagLength(std::uint32_t i) const
    {
        const CMarkupRecord &record = (*this)[i];
        return record.Has(CMarkupRecord::kTagsBeside) ? m_beside.at(i).startTag
                                                      : record.tagLengths & CMarkupRecord::kStartTagMask;
    }
    std::size_t EndTagLength(std::uint32_t i) const
    {
        const CMarkupRecord &record = (*this)[i];
        return record.Has(CMarkupRecord::kTagsBeside) ? m_beside.at(i).endTag
                                                      : record.tagLengths >> CMarkupRecord::kEndTagShift;
    }
    void SetTagLengths(std::uint32_t i, std::size_t startTag, std::size_t endTag);

    /// Adds the difference, modulo 2^32, to the start of the records from first to before end.
    void ShiftStarts(std::uint32_t first, std::uint32_t end, std::uint32_t difference);

    std::size_t MemoryBytes() const;

private:
    struct Free {
        void operator()(CMarkupRecord *pRecords) const;
    };
    using Segment = std::unique_ptr<CMarkupRecord, Free>;
    struct TagLengths {
        std::uint32_t startTag, endTag;
    };

    void Grow();
    void SetCapacity(std::uint32_t capacity);

    std::vector<Segment> m_segments;
    std::uint32_t m_free = 0;
    std::uint32_t m_capacity = 0;
    std::unordered_map<std::uint32_t, TagLengths> m_beside;
};
