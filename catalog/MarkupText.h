// The flat text of a markup document: wide characters in one block, to be spliced.
//
// Behind the text stand kPadding null characters, so that a scan may read in blocks and needs no end test for the next
// character. Large texts ask the system for large pages, which makes the first touch of new memory several times
// cheaper. Throws std::bad_alloc without memory and is then as it was.
#pragma once

#include <cstddef>
#include <string_view>

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

    const wchar_t *Data() const { return m_pData; }
    std::size_t Size() const { return m_size; }
    std::wstring_view View() const { return {m_pData, m_size}; }

    /// REQUIRES: at most kLongest characters. They may be a part of this text.
    void Assign(std::wstring_view text);
    /// A block for up to size characters to be written by the caller, who then says with SetSize how many they are.
    wchar_t *Prepare(std::size_t size);
    void SetSize(std::size_t size);
    /// Puts other characters in the place of some. When the block must grow it grows by half of the needed size plus
    /// 128. REQUIRES: offset + removed <= Size(), the new size <= kLongest, inserted no part of this text.
    void Replace(std::size_t offset, std::size_t removed, std::wstring_view inserted);

private:
    void Free();

    static const wchar_t s_empty[kPadding];
    wchar_t *m_pData = const_cast<wchar_t *>(s_empty); ///< never written while m_capacity is 0
    std::size_t m_size = 0;
    std::size_t m_capacity = 0; ///< characters before the padding
};
