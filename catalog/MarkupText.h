// The flat text of a markup document: wide characters in one block, to be spliced.
//
// Behind the text stand kPadding null characters, so that a scan may read in blocks and needs no end test for the next
// character. Large texts ask the system for large pages, which makes the first touch of new memory several times
// cheaper.
//
// In a long text a splice far from the end would move megabytes for a few characters. So it is noted first, with the
// new characters beside, and a row of noted splices is done in one pass when somebody asks for the text as a whole
// (View). Size, At, Part and Replace know the noted ones: offsets are always those of the text as it would stand.
//
// Throws std::bad_alloc without memory and is then as it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CMarkupText {
public:
    /// Characters: offsets and lengths in 32 bits, and as the ints of messages, hold several times as much.
    static constexpr std::size_t kLongest = std::size_t{1} << 28;
    static constexpr std::size_t kPadding = 16;

    CMarkupText() = default;
    ~CMarkupText();
    CMarkupText(const CMarkupText &other);
    CMarkupText &operator=(const CMarkupText &other);
    CMarkupText(CMarkupText &&other) noexcept;
    CMarkupText &operator=(CMarkupText &&other) noexcept;

    std::size_t Size() const { return m_size; }
    /// The whole text. It stays valid until the next change.
    std::wstring_view View() const
    {
        if (!m_noted.empty())
            Settle();
        return {m_pData, m_size};
    }
    wchar_t At(std::size_t offset) const;
    /// A part of the text, without the padding, valid until the next change or call of View. Costs no pass over the
    /// text unless it holds a noted splice in part.
    std::wstring_view Part(std::size_t offset, std::size_t length) const
    {
        return m_noted.empty() ? std::wstring_view(m_pData + offset, length) : PartBesideNoted(offset, length);
    }

    /// REQUIRES: at most kLongest characters. They may be a part of this text.
    void Assign(std::wstring_view text);
    /// A block for up to size characters to be written by the caller, who then says with SetSize how many they are.
    wchar_t *Prepare(std::size_t size);
    void SetSize(std::size_t size);
    /// Puts other characters in the place of some. When the block must grow it grows by half of the needed size plus
    /// 128. REQUIRES: offset + removed <= Size(), the new size <= kLongest, inserted no part of this text.
    void Replace(std::size_t offset, std::size_t removed, std::wstring_view inserted);

private:
    /// Characters of the block that are replaced. Sorted by place; between two of them at least one character stays.
    struct Noted {
        std::uint32_t offset;               ///< in the text as it would stand
        std::uint32_t length;               ///< new characters
        std::uint32_t blockBegin, blockEnd; ///< replaced characters of the block
        std::size_t characters;             ///< place of the new ones in m_strNoted
        std::uint32_t End() const { return offset + length; }
    };

    /// Splices that move less than this are done at once.
    static constexpr std::size_t kWorthNoting = std::size_t{1} << 15;
    static constexpr std::size_t kMostNoted = 4096;
    static constexpr std::size_t kMostNotedCharacters = std::size_t{1} << 20;

    void Free();
    void Note(std::size_t offset, std::size_t removed, std::wstring_view inserted);
    std::size_t FirstNotedEndingFrom(std::size_t offset) const;
    std::size_t BlockOffset(std::size_t offset, std::size_t next) const;
    std::wstring_view PartBesideNoted(std::size_t offset, std::size_t length) const;
    void Settle() const;

    static const wchar_t s_empty[kPadding];
    // Doing noted splices changes no text that anybody can see, so a constant text may do them.
    mutable wchar_t *m_pData = const_cast<wchar_t *>(s_empty); ///< never written while m_capacity is 0
    std::size_t m_size = 0;                                    ///< with the noted splices done
    mutable std::size_t m_capacity = 0;                        ///< characters before the padding
    mutable std::vector<Noted> m_noted;
    mutable std::wstring m_strNoted; ///< new characters of the noted splices
};
