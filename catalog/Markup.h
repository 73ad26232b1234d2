// A small XML document that keeps its text.
//
// The document is one flat wide text with an index of its elements beside it. Reading takes a piece of the text, an
// edit splices it; so what was loaded is written back byte for byte except where it was edited: formatting, comments
// and declaration survive. Offsets and lengths count wide characters.
//
// Positions. Three of them move through the document: the parent, whose children are walked (none: the document
// itself); the main element among them; the child, an element below the main one. They persist between calls; a new
// walk starts with Rewind.
//
// Damage. A damaged text never throws and never stops a load: GetErrorText tells of it with its offset, IsWellFormed is
// false, and every element that could be recognised can be found. Of several errors one is told: that there is not
// exactly one root; else the later of the last end tag without start tag and the first element that is not ended; else
// the first fault of a single token. Only the machine failing throws (std::bad_alloc; Load and Save report that, too).
//
// Names. A given name matches a tag or attribute name when the two agree over the whole of the latter and the given
// one ends there or goes on with one of " ", "=", "/", "[" or "]". White space is space, tab, LF and CR.
//
// One object is used by one thread.
#pragma once

#include "catalog/MarkupArgument.h"
#include "catalog/MarkupIndex.h"
#include "catalog/MarkupText.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct CMarkupBuild;
namespace MarkupScan {
struct Token;
}
class CMarkupSavedPositions;

class CMarkup {
public:
    /// Kinds of nodes; a set of them is their sum.
    enum NodeType : int {
        kNoNode = 0,
        kElement = 0x1,
        kText = 0x2,
        kWhiteSpace = 0x4, ///< nothing else up to the next "<"
        kCDataSection = 0x8,
        kProcessingInstruction = 0x10, ///< the XML declaration, too
        kComment = 0x20,
        kDocumentType = 0x40,
        kStrayEndTag = 0x80,
        kErrorToken = 0x8000,
    };
    /// Flags of calls that write an element's text.
    enum TextFlags : int {
        kEscaped = 0,
        kAsCData = 1, ///< in a CDATA section instead of escaped
    };
    /// Document flags.
    enum DocumentFlags : int {
        kIgnoreCase = 8, ///< names compare without regard to case
    };

    /// An empty document without an error.
    CMarkup();
    ~CMarkup();
    /// A copy has text, index, positions and named positions of its own.
    CMarkup(const CMarkup &other);
    CMarkup &operator=(const CMarkup &other);

    // --- Whole documents -------------------------------------------------------------------------------------------

    /// Reads a UTF-8 file and parses it; true when it is well-formed. The error text is
    /// "N bytes to M wide chars", with ", " and the parse error behind it if there is one. A byte order mark becomes
    /// the first character; no other encoding is tried. A byte that is not UTF-8 is kept as the character
    /// 0xDC00 + byte, which Save writes as that byte again.
    /// A file that can't be read (error text: the system's), or that is longer than kLongestFile bytes, leaves the
    /// document as it was.
    bool Load(CMarkupArgument path);
    /// Writes the text as UTF-8 without a byte order mark; an empty document makes an empty file. The error text is
    /// "M wide chars to N bytes", or the system's on failure. A new file is written beside the old one, synced and
    /// renamed over it, so that the name holds the old or the new file at every moment; links are followed, permissions
    /// kept. Where no file can be made beside it, and for devices, it is written in place.
    bool Save(CMarkupArgument path);
    /// Replaces the document and parses; true when it is well-formed. Null makes an empty document without an error, an
    /// empty text one with the error "Empty document". A text longer than kLongestText is refused and leaves the
    /// document as it was.
    bool SetText(CMarkupArgument text);
    /// Stays valid until the next change; ends with a null character behind its size.
    std::wstring_view GetText() const { return m_text.View(); }
    /// Result of the last load, save or parse; empty after a clean parse of a text set directly.
    const std::wstring &GetErrorText() const { return m_strError; }
    /// There is one root element, and nothing was damaged at the last parse or put in damaged since.
    bool IsWellFormed() const;
    int GetDocumentFlags() const { return m_nDocFlags; }
    /// Counts from the next search on, for end tags from the next parse on.
    void SetDocumentFlags(int flags) { m_nDocFlags = flags; }

    static constexpr std::size_t kLongestText = CMarkupText::kLongest;
    static constexpr std::size_t kLongestFile = kLongestText;

    // --- Walking ---------------------------------------------------------------------------------------------------

    /// To no parent, no main element, no child.
    void Rewind();
    /// The next element behind the main position among the parent's children, of that name or (null) of any. The main
    /// position moves there, the child position is cleared. On a miss nothing moves.
    bool FindElement(CMarkupArgument name = nullptr);
    /// The next child of the main element behind the child position. Without a main position the next element is made
    /// main first. On a miss nothing moves.
    bool FindChildElement(CMarkupArgument name = nullptr);
    /// Parent becomes main, main becomes child. False without a main element.
    bool EnterChild();
    /// Main becomes the parent, child the main element, the parent goes up a level. False at the document's level.
    bool LeaveElement();

    // --- Attributes ------------------------------------------------------------------------------------------------
    // An attribute is a word, an optional "=" with white space around it, and a value: in quotes of either kind, or
    // (behind a "=" only) up to white space or ">". The scan ends at ">", "/" or "?" where a name should start. The
    // first of a name counts.

    /// Value, unescaped; empty when absent.
    std::wstring GetAttribute(CMarkupArgument name) const;
    std::wstring GetChildAttribute(CMarkupArgument name) const;
    /// Replaces the value (in double quotes afterwards), or adds the attribute behind the last one. False without the
    /// element, for a name that can't be one, and where the tag could not be read again as it was meant.
    bool SetAttribute(CMarkupArgument name, CMarkupArgument value);
    bool SetChildAttribute(CMarkupArgument name, CMarkupArgument value);

    // --- Adding and removing elements ------------------------------------------------------------------------------

    /// Adds "<name/>" (null text) or "<name>text</name>" and CR LF behind the child position, else behind all that the
    /// main element holds; the new element becomes the child. A main element without content gets a line end behind its
    /// start tag, one without an end tag gets one. False without a main element, for a name that can't be one, and when
    /// the document would get too long.
    bool AddChildElement(CMarkupArgument name, CMarkupArgument text = nullptr, int flags = kEscaped);
    /// The child's text with the white space behind it that stands before "<" or the end of the text; empty without
    /// one.
    std::wstring GetChildFragment() const;
    /// Inserts the text from its first element to its last before the child position, else at the very front of the
    /// main element, without line ends of its own; the first element becomes the child. A text that is not well-formed
    /// makes it false but is inserted anyway: several elements as they are, damaged text whole (the document then
    /// counts as damaged). Nothing changes, and it is false, without a main element, for an empty text and when the
    /// document would get too long.
    bool InsertChildFragment(CMarkupArgument text);
    /// Takes the child away with the white space behind it; the one before becomes the child. False without a child.
    bool RemoveChildElement();

    // --- Content ---------------------------------------------------------------------------------------------------

    /// Text and CDATA of the main element (of the child), together and unescaped; empty when it has child elements.
    std::wstring GetElementText() const;
    std::wstring GetChildText() const;
    /// Replaces all content of the main element (of the child) by the text; its child elements are gone.
    bool SetElementText(CMarkupArgument text, int flags = kEscaped);
    bool SetChildText(CMarkupArgument text, int flags = kEscaped);
    /// Replaces all content of the main element (of the child) by markup as it stands. False when the markup is
    /// damaged, though it is put in anyway.
    bool SetElementContent(CMarkupArgument markup);
    bool SetChildContent(CMarkupArgument markup);

    // --- Nodes of every kind ---------------------------------------------------------------------------------------

    /// The next node behind the main position (or behind the current node) among the parent's nodes, of one of the
    /// types, or of any with 0. An element becomes the main element; another node leaves no main element, and the next
    /// search goes on behind it. Returns the type found; kNoNode on a miss, and then nothing moves.
    int FindNode(int types = 0);
    int GetNodeType() const { return m_nNodeType; }
    /// Place of a current node that is no element; 0 otherwise.
    int GetNodeOffset() const { return m_nNodeOffset; }
    int GetNodeLength() const { return m_nNodeLength; }
    /// "#text", "#cdata-section", "#comment"; the target of a processing instruction; the name of a document type, an
    /// end tag or an element. Empty for no node and for errors.
    std::wstring GetNodeName() const;
    /// What the current node says: text unescaped, the inside of CDATA, comments and processing instructions; the whole
    /// of other kinds; of an element its text.
    std::wstring GetNodeText() const;
    /// Adds a node that is no element behind the current node or main element, else at the end of the parent's content;
    /// it becomes the current node. Text is escaped; CDATA, comment, processing instruction and document type get their
    /// wrapper, the last three CR LF behind it. False when the text would end its wrapper early.
    bool AddNode(int type, CMarkupArgument text);

    // --- Places ----------------------------------------------------------------------------------------------------

    /// "/list/item[2]": the path of the main element; "[n]" where siblings of its name stand before it. Empty without.
    std::wstring GetElementPath() const;
    /// Offset of the "<" of the main element (of the child); -1 without one.
    int GetElementOffset() const { return m_iMain != 0 ? static_cast<int>(m_index[m_iMain].start) : -1; }
    int GetChildOffset() const { return m_iChild != 0 ? static_cast<int>(m_index[m_iChild].start) : -1; }
    /// Keeps the three positions under a name until the next parse; an earlier one of that name is replaced.
    void SavePosition(CMarkupArgument name);
    /// False, and nothing moves, when there is none of that name or one of its elements was removed.
    bool RestorePosition(CMarkupArgument name);

    /// The element records, for checks of them.
    const CMarkupIndex &GetIndex() const { return m_index; }
    /// Bytes held beside the text: index and named positions.
    std::size_t GetMemoryBesideText() const;

private:
    bool Parse(const std::wstring &note);
    /// False, and told in the error text, for one longer than kLongestText; copy is then as it was.
    bool TakeCopy(const CMarkupArgument &text, CMarkupText &copy);
    void RefuseLength(std::size_t length);
    void MoveTo(std::uint32_t iParent, std::uint32_t iMain, std::uint32_t iChild);
    std::uint32_t FindAmong(std::uint32_t iFirst, const CMarkupArgument &name) const;
    std::uint32_t FirstBehindPosition() const;
    std::wstring_view StartTag(std::uint32_t i) const
    {
        return m_text.Part(m_index[i].start, m_index.StartTagLength(i));
    }
    std::wstring_view TagName(std::uint32_t i) const;
    bool IsName(std::wstring_view tagName, std::wstring_view given) const;

    std::uint32_t EndOf(std::uint32_t i) const { return m_index[i].start + m_index[i].length; }
    std::uint32_t ContentStart(std::uint32_t i) const;
    std::uint32_t ContentEnd(std::uint32_t i) const;
    std::uint32_t BehindWhiteSpace(std::uint32_t offset) const;
    bool IsEmptyTag(std::uint32_t i) const;

    std::wstring ReadAttribute(std::uint32_t i, const CMarkupArgument &name) const;
    bool WriteAttribute(std::uint32_t i, const CMarkupArgument &name, const CMarkupArgument &value);

    /// Where new nodes go: an offset in the content of a parent, before one of its elements (0: behind all).
    struct Place {
        std::uint32_t parent = 0, before = 0;
        std::uint32_t offset = 0;
    };
    Place BehindElement(std::uint32_t i) const;
    Place EndOfContent(std::uint32_t i) const { return {i, 0, ContentEnd(i)}; }
    Place FrontOfContent(std::uint32_t i) const;
    /// Puts text in and adapts the parent's tags; what stood behind is shifted. Gives the offset of the content, or
    /// kRefused when the document would get too long.
    std::uint32_t InsertAt(const Place &place, std::wstring_view content, bool withLineEnd);
    static constexpr std::uint32_t kRefused = 0xFFFFFFFF;

    bool Splice(std::uint32_t offset, std::size_t removed, std::wstring_view inserted);
    /// Adds the difference to the start of the elements from iFirst on, a child of iParent (0: none), and to the length
    /// of those around them.
    void Shift(std::uint32_t iParent, std::uint32_t iFirst, std::int64_t difference);
    void ShiftFrom(std::uint32_t iFirst, std::uint32_t difference);
    void Link(const Place &place, std::uint32_t iFirst, std::uint32_t iLast);
    void Unlink(std::uint32_t i);
    void GiveBack(std::uint32_t iFirst);
    /// Moves the records of a scanned piece to its place in the document.
    void TakeIn(const CMarkupBuild &build, const Place &place, std::int64_t offset);

    static std::wstring AsContent(std::wstring_view text, int flags);
    std::wstring TokenText(const MarkupScan::Token &token) const;
    std::wstring ContentText(std::uint32_t i) const;
    bool ReplaceContent(std::uint32_t i, std::wstring_view markup);
    bool ReplaceText(std::uint32_t i, const CMarkupArgument &text, int flags);
    bool SetContent(std::uint32_t i, const CMarkupArgument &markup);

    CMarkupText m_text;
    std::wstring m_strError;
    std::uint32_t m_iParent = 0;
    std::uint32_t m_iMain = 0;
    std::uint32_t m_iChild = 0;
    std::uint32_t m_iDeleted = 0; ///< head of the list of deleted records, chained by next; reused by no edit
    int m_nNodeType = kNoNode;
    int m_nNodeOffset = 0;
    int m_nNodeLength = 0;
    std::uint32_t m_iBehindNode = 0; ///< the parent's next element behind a current node that is no element
    int m_nDocFlags = 0;
    std::unique_ptr<CMarkupSavedPositions> m_pSaved;
    bool m_isInDocumentOrder = true; ///< records stand in the order of their elements; false after an insertion
    CMarkupIndex m_index;            ///< record 0 is the document; knows the next free record
};
