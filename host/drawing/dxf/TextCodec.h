// Text of a drawing file, to wide text and back.
//
// Up to AC1018 a file's text stands in the code page that $DWGCODEPAGE names, from AC1021 on in UTF-8. In both,
// "\U+XXXX" stands for a character by number, "\M+nXXXX" for one of a double-byte page (n: 1 Shift-JIS, 2 Big5,
// 3 Wansung, 4 Johab, 5 GBK), and "^" before a letter for a control character ("^J" is a line feed, "^ " a caret).
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace velmor {

class TextCodec {
public:
    /// The codec of a drawing. version as "AC1015", empty counts as old. codePage as $DWGCODEPAGE has it, in upper or
    /// lower case ("ANSI_1250", "DOS852", "ISO8859-2", "BIG5"); empty or unknown is taken as ANSI_1252.
    static TextCodec forDrawing(std::string_view version, std::string_view codePage);

    /// Never throws on bad text. A byte that means nothing in the page becomes U+DC00 plus the byte, so that encode
    /// gives the same byte back.
    std::wstring decode(std::string_view bytes) const;
    /// A character that the page lacks becomes "\U+XXXX" (two of them beyond U+FFFF).
    std::string encode(std::wstring_view text) const;

    /// "UTF-8", or the page's name in the form "ANSI_1250".
    const std::string &name() const { return m_name; }
    /// False when the code page named was not known and ANSI_1252 stands in for it.
    bool isKnown() const { return m_known; }
    bool isUtf8() const { return m_page == nullptr; }

    struct Page;

private:
    TextCodec() = default;
    std::shared_ptr<const Page> m_page; ///< null: UTF-8
    std::string m_name;
    bool m_known = true;
};

} // namespace velmor
