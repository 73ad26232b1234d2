// Nodes of every kind: walking over them, their names and texts, adding them.
#include "catalog/Markup.h"

#include "catalog/MarkupScan.h"

#include <algorithm>

using namespace MarkupScan;

namespace {

int NodeTypeOf(TokenKind kind)
{
    switch (kind) {
    case TokenKind::End:
        return CMarkup::kNoNode;
    case TokenKind::Text:
        return CMarkup::kText;
    case TokenKind::WhiteSpace:
        return CMarkup::kWhiteSpace;
    case TokenKind::CData:
        return CMarkup::kCDataSection;
    case TokenKind::ProcessingInstruction:
        return CMarkup::kProcessingInstruction;
    case TokenKind::Comment:
        return CMarkup::kComment;
    case TokenKind::DocumentType:
        return CMarkup::kDocumentType;
    case TokenKind::EndTag:
        return CMarkup::kStrayEndTag;
    case TokenKind::StartTag: // a tag that is no element of the index stands where damaged text was put in
    case TokenKind::Error:
        break;
    }
    return CMarkup::kErrorToken;
}

struct Wrapper {
    std::wstring_view open, close;
};

Wrapper WrapperOf(int type)
{
    switch (type) {
    case CMarkup::kCDataSection:
        return {L"<![CDATA[", L"]]>"};
    case CMarkup::kProcessingInstruction:
        return {L"<?", L"?>"};
    case CMarkup::kComment:
        return {L"<!--", L"-->"};
    case CMarkup::kDocumentType:
        return {L"<!DOCTYPE ", L">"};
    default:
        return {};
    }
}

} // namespace

int CMarkup::FindNode(int types)
{
    const std::uint32_t end = ContentEnd(m_iParent);
    std::uint32_t iNext = FirstBehindPosition();
    std::uint32_t at = ContentStart(m_iParent);
    if (m_iMain != 0)
        at = EndOf(m_iMain);
    else if (m_nNodeType != kNoNode)
        at = static_cast<std::uint32_t>(m_nNodeOffset + m_nNodeLength);
    while (at < end) {
        if (iNext != 0 && m_index[iNext].start == at) {
            if (types == 0 || (types & kElement) != 0) {
                MoveTo(m_iParent, iNext, 0);
                return kElement;
            }
            at = EndOf(iNext);
            iNext = m_index[iNext].next;
            continue;
        }
        const Token token = ScanToken(m_text.View().substr(0, end), at);
        const int type = NodeTypeOf(token.kind);
        if (types == 0 || (types & type) != 0) {
            MoveTo(m_iParent, 0, 0);
            m_nNodeType = type;
            m_nNodeOffset = static_cast<int>(token.start);
            m_nNodeLength = static_cast<int>(token.length);
            m_iBehindNode = iNext;
            return type;
        }
        at = token.End();
    }
    return kNoNode;
}

std::wstring CMarkup::GetNodeName() const
{
    switch (m_nNodeType) {
    case kElement:
        return std::wstring(TagName(m_iMain));
    case kText:
    case kWhiteSpace:
        return L"#text";
    case kCDataSection:
        return L"#cdata-section";
    case kComment:
        return L"#comment";
    case kProcessingInstruction:
    case kDocumentType:
    case kStrayEndTag: {
        const Token token = ScanToken(m_text.View(), static_cast<std::size_t>(m_nNodeOffset));
        return std::wstring(m_text.View().substr(token.nameStart, token.nameLength));
    }
    default:
        return {};
    }
}

std::wstring CMarkup::GetNodeText() const
{
    if (m_nNodeType == kElement)
        return GetElementText();
    if (m_nNodeType == kNoNode)
        return {};
    const auto offset = static_cast<std::size_t>(m_nNodeOffset), length = static_cast<std::size_t>(m_nNodeLength);
    const std::wstring_view whole = m_text.View().substr(offset, length);
    switch (m_nNodeType) {
    case kText:
    case kWhiteSpace: // an added text may have more of it behind
        return Unescape(whole);
    case kCDataSection:
        return TokenText(ScanToken(m_text.View(), offset));
    case kProcessingInstruction:
    case kComment: {
        const Wrapper wrapper = WrapperOf(m_nNodeType);
        return std::wstring(whole.substr(wrapper.open.size(), length - wrapper.open.size() - wrapper.close.size()));
    }
    default:
        return std::wstring(whole);
    }
}

bool CMarkup::AddNode(int type, CMarkupArgument text)
{
    const Wrapper wrapper = WrapperOf(type);
    std::wstring node(wrapper.open);
    node += type == kText ? Escape(text.View(), false) : std::wstring(text.View());
    node += wrapper.close;
    const std::size_t length = node.size();
    node.append(CMarkupText::kPadding, L'\0');
    const std::wstring_view whole(node.data(), length);
    const Token token = ScanToken(whole, 0);
    const int kind = NodeTypeOf(token.kind);
    if (length == 0 || token.length != length || (kind != type && !(type == kText && kind == kWhiteSpace)) ||
        (type & (kText | kWhiteSpace | kCDataSection | kProcessingInstruction | kComment | kDocumentType)) == 0)
        return false;

    Place place = m_iMain != 0 ? BehindElement(m_iMain) : EndOfContent(m_iParent);
    if (m_iMain == 0 && m_nNodeType != kNoNode)
        place = {m_iParent, FirstBehindPosition(),
                 BehindWhiteSpace(static_cast<std::uint32_t>(m_nNodeOffset + m_nNodeLength))};
    const std::uint32_t offset =
        InsertAt(place, whole, (type & (kProcessingInstruction | kComment | kDocumentType)) != 0);
    if (offset == kRefused)
        return false;
    MoveTo(m_iParent, 0, 0);
    m_nNodeType = kind;
    m_nNodeOffset = static_cast<int>(offset);
    m_nNodeLength = static_cast<int>(length);
    m_iBehindNode = place.before;
    return true;
}
