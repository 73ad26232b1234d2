#include "host/drawing/dxf/DxfReader.h"

#include "host/drawing/Texts.h"
#include "host/drawing/dxf/DataTags.h"

#include <algorithm>

namespace velmor::dxf {

namespace {

constexpr std::size_t kMostFindings = 1000;
constexpr std::size_t kBytesBetweenTold = 1 << 19;

} // namespace

std::string DxfReader::printable(std::string_view text)
{
    std::string result(text.substr(0, 40));
    for (char &c : result)
        if (static_cast<unsigned char>(c) < 32)
            c = '?';
    return result;
}

void DxfReader::count(Counts &counts, std::string_view kind)
{
    const auto found = counts.find(kind);
    ++(found != counts.end() ? found->second : counts[std::string(kind)]);
}

// --- Stepping
// ------------------------------------------------------------------------------------------------------------

void DxfReader::enter(const char *first, const char *last)
{
    m_cursor = TagCursor(first, last);
    m_more = false;
    Tag tag;
    const char *start = nullptr;
    while (m_cursor.next(tag, start)) {
        if (tag.code == 0) {
            m_zero = tag;
            m_zeroStart = start;
            m_more = true;
            break;
        }
        if (tag.code != 999)
            find(Severity::Damage, start, drawingText("dxf.groupBefore", {std::to_string(tag.code)}));
    }
    reportBadLines();
}

bool DxfReader::advance()
{
    if (!m_more)
        return false;
    m_type = m_zero.name();
    m_start = m_zeroStart;
    m_objectBad = false;
    if (m_tags.capacity() > 1 << 16) {
        // One huge object must not keep its tags in memory while the rest is read.
        m_tags = {};
        m_tags.reserve(256);
    }
    m_tags.clear();
    Tag tag;
    const char *start = nullptr;
    while (m_cursor.next(tag, start)) {
        if (tag.code == 0) {
            m_zero = tag;
            m_zeroStart = m_objectEnd = start;
            if (!m_cursor.badLines().empty()) [[unlikely]]
                reportBadLines();
            m_passed += objectLength();
            if (m_passed >= m_nextTold) [[unlikely]]
                tellProgress();
            return true;
        }
        if (tag.code != 999)
            m_tags.push_back(tag);
    }
    m_objectEnd = m_cursor.end();
    m_more = false;
    if (!m_cursor.badLines().empty())
        reportBadLines();
    return true;
}

void DxfReader::tellProgress()
{
    // Often enough for a bar that moves evenly, and for a cancel that is felt at once.
    m_nextTold = m_passed + kBytesBetweenTold;
    if (m_progress && !m_progress(std::min(1.0, static_cast<double>(m_passed) / static_cast<double>(f.text.size()))))
        throw ReadingCancelled();
}

void DxfReader::find(Severity severity, const char *where, std::string text)
{
    auto &findings = d.report.findings;
    if (findings.size() >= kMostFindings) {
        if (findings.size() == kMostFindings)
            findings.push_back({Severity::Damage, 0, drawingText("dxf.more")});
        return;
    }
    std::size_t line = 0;
    if (where) {
        if (!m_lineFrom || where < m_lineFrom) {
            m_lineFrom = f.text.data();
            m_line = 1;
        }
        m_line += static_cast<std::size_t>(std::count(m_lineFrom, where, '\n'));
        m_lineFrom = where;
        line = m_line;
    }
    findings.push_back({severity, line, std::move(text)});
}

void DxfReader::reportBadLines()
{
    for (const TagCursor::BadLine &bad : m_cursor.badLines()) {
        m_objectBad = true;
        if (bad.atEnd) {
            find(Severity::Damage, bad.where, drawingText("dxf.endBehindCode"));
            continue;
        }
        const char *end = static_cast<const char *>(
            std::memchr(bad.where, '\n', static_cast<std::size_t>(m_cursor.end() - bad.where)));
        const std::string_view line(bad.where, static_cast<std::size_t>((end ? end : m_cursor.end()) - bad.where));
        find(Severity::Damage, bad.where, drawingText("dxf.noCode", {printable(line)}));
    }
    m_cursor.clearBadLines();
}

// --- The whole file
// --------------------------------------------------------------------------------------------------------

std::string DxfReader::findHeaderValue(std::string_view name) const
{
    std::size_t at = f.text.find(name, f.start);
    while (at != std::string::npos) {
        const std::size_t end = at + name.size();
        const bool isLine = at > 0 && (f.text[at - 1] == '\n' || f.text[at - 1] == ' ') && end < f.text.size() &&
                            (f.text[end] == '\n' || f.text[end] == '\r' || f.text[end] == ' ');
        if (isLine) {
            const std::size_t lineEnd = f.text.find('\n', end);
            if (lineEnd == std::string::npos)
                return {};
            TagCursor cursor(f.text.data() + lineEnd + 1, f.text.data() + f.end);
            Tag tag;
            const char *start = nullptr;
            return cursor.next(tag, start) && (tag.code == 1 || tag.code == 3) ? std::string(tag.name())
                                                                               : std::string();
        }
        at = f.text.find(name, at + 1);
    }
    return {};
}

void DxfReader::readPrologue()
{
    if (f.text.starts_with("\xEF\xBB\xBF"))
        f.start = 3;
    f.end = f.text.size();
    while (f.end > f.start && (static_cast<unsigned char>(f.text[f.end - 1]) <= ' ' || f.text[f.end - 1] == '\x1A'))
        --f.end;
    // The last value keeps its line end.
    const std::size_t lineEnd = f.text.find('\n', f.end);
    f.end = lineEnd == std::string::npos ? f.text.size() : lineEnd + 1;

    const std::size_t firstEnd = f.text.find('\n', f.start);
    f.lineEnd = firstEnd != std::string::npos && firstEnd > 0 && f.text[firstEnd - 1] == '\r' ? "\r\n" : "\n";
    f.padCodes = f.text.compare(f.start, 1, " ") == 0;

    std::string version = findHeaderValue("$ACADVER");
    for (char &c : version)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    d.version = version.starts_with("AC") && version.size() == 6 ? version : "AC1009";
    const std::string codePage = findHeaderValue("$DWGCODEPAGE");
    f.codec = TextCodec::forDrawing(d.version, codePage);
    d.report.version = d.version;
    d.report.codePage = f.codec.name();
    if (!f.codec.isKnown() && !codePage.empty())
        find(Severity::Warning, nullptr, drawingText("dxf.codePage", {printable(codePage)}));
}

bool DxfReader::run()
{
    readPrologue();
    const char *text = f.text.data();
    readObjectsOf(text + f.start, text + f.end);
    if (!m_seenSection)
        return false;
    noteCut();
    if (m_cut.offset != kNowhere)
        return true;
    // What had to wait for the tables.
    m_deferring = false;
    const auto deferred = std::move(m_deferred);
    for (const auto &[first, last] : deferred) {
        readObjectsOf(first, last);
        m_start = last;
        closeOpenSection();
    }
    resolve();
    return true;
}

void DxfReader::readObjectsOf(const char *first, const char *last)
{
    enter(first, last);
    while (advance()) {
        if (isType("EOF")) {
            f.eof = startOffset();
            m_seenEof = true;
            if (m_more)
                find(Severity::Note, m_zeroStart, drawingText("dxf.afterEnd"));
            break;
        }
        readObject();
    }
}

void DxfReader::readObject()
{
    // A polyline or a reference that lacks its end is only in doubt when the file ends right behind it.
    if (m_more)
        m_compoundStart = nullptr;
    if (isType("SECTION")) {
        closeOpenSection();
        beginSection();
        return;
    }
    if (isType("ENDSEC")) {
        endSection();
        return;
    }
    switch (m_section) {
    case Section::Tables:
        readTables();
        break;
    case Section::Blocks:
        readBlocks();
        break;
    case Section::Entities:
        ensureSpaces();
        readEntity(nullptr);
        break;
    case Section::Objects:
        readRawObject();
        break;
    case Section::None:
        find(Severity::Damage, m_start, drawingText("dxf.outsideSection", {printable(m_type)}));
        break;
    case Section::Header:
    case Section::Other:
        break;
    }
}

bool DxfReader::deferSection()
{
    // Layers and block records have to be known before what uses them; files with another order are rare.
    // Once one waits, all others do, so that they keep their order: of two blocks of a name the first holds.
    if (!m_deferring || (m_seenTables && m_deferred.empty()))
        return false;
    const std::string_view rest(m_objectEnd, static_cast<std::size_t>(m_cursor.end() - m_objectEnd));
    bool tablesFollow = !m_deferred.empty();
    for (std::size_t at = rest.find("TABLES"); at != std::string_view::npos && !tablesFollow;
         at = rest.find("TABLES", at + 1))
        tablesFollow = at > 0 && (rest[at - 1] == '\n' || rest[at - 1] == ' ');
    if (!tablesFollow)
        return false;
    const char *first = m_start;
    while (m_more && m_zero.name() != "ENDSEC" && m_zero.name() != "SECTION" && m_zero.name() != "EOF")
        advance();
    if (m_more && m_zero.name() == "ENDSEC")
        advance();
    m_deferred.emplace_back(first, m_objectEnd);
    m_section = Section::None;
    return true;
}

void DxfReader::beginSection()
{
    m_seenSection = true;
    m_sectionName.clear();
    for (const Tag &tag : m_tags)
        if (tag.code == 2) {
            m_sectionName = tag.name();
            break;
        }
    if (m_sectionName.empty())
        find(Severity::Damage, m_start, drawingText("dxf.sectionNoName"));
    m_section = Section::Other;
    if (m_sectionName == "HEADER") {
        m_section = Section::Header;
        readHeader();
    } else if (m_sectionName == "TABLES") {
        m_section = Section::Tables;
        m_seenTables = f.hasTables = true;
    } else if (m_sectionName == "BLOCKS") {
        if (deferSection())
            return;
        m_section = Section::Blocks;
        f.blocksStart = std::min(f.blocksStart, startOffset());
    } else if (m_sectionName == "ENTITIES") {
        if (deferSection())
            return;
        m_section = Section::Entities;
        f.entitiesStart = std::min(f.entitiesStart, startOffset());
    } else if (m_sectionName == "OBJECTS") {
        m_section = Section::Objects;
        m_hadRoot = f.rootDictionary != nullptr;
        f.objectsStart = std::min(f.objectsStart, startOffset());
    } else {
        count(m_unreadSections, m_sectionName);
    }
}

/// The drawing can be written only with it.
void DxfReader::noteMissingEnd(EditRank rank, const char *type)
{
    f.missingEnds.push_back({startOffset(), rank, type});
}

void DxfReader::closeOpenSection()
{
    if (m_section == Section::None)
        return;
    find(Severity::Damage, m_start, drawingText("dxf.sectionOpen", {m_sectionName}));
    endSection(true);
}

void DxfReader::endSection(bool isMissing)
{
    const std::size_t end = startOffset();
    if (m_inTable) {
        find(Severity::Damage, m_start, drawingText("dxf.tableNoEnd", {m_tableName}));
        endTable();
        noteMissingEnd(EditRank::PartEnd, "ENDTAB");
    }
    if (m_inBlock) {
        find(Severity::Damage, m_start, drawingText("dxf.blockNoEnd"));
        endBlock(true);
    }
    if (isMissing)
        noteMissingEnd(EditRank::SectionEnd, "ENDSEC");
    // The first section of a kind takes what is new.
    const auto note = [end](std::size_t &place) {
        if (place == kNowhere)
            place = end;
    };
    switch (m_section) {
    case Section::Header:
        note(f.headerEnd);
        break;
    case Section::Tables:
        note(f.tablesEnd);
        break;
    case Section::Blocks:
        note(f.blocksEnd);
        break;
    case Section::Entities:
        note(f.entitiesEnd);
        break;
    case Section::Objects:
        // New objects go where the root dictionary stands, which is to stay the first of all dictionaries.
        if (!m_hadRoot)
            f.objectsEnd = end;
        break;
    case Section::None:
        find(Severity::Damage, m_start, drawingText("dxf.strayEndSection"));
        break;
    case Section::Other:
        break;
    }
    m_section = Section::None;
}

void DxfReader::readHeader()
{
    std::string name;
    for (std::size_t i = 0; i < m_tags.size(); ++i) {
        const Tag &tag = m_tags[i];
        if (tag.code == 9) {
            name = tag.name();
            continue;
        }
        if (name.empty() || (tag.code == 2 && i == 0))
            continue;
        if (d.header.try_emplace(name, HeaderVariable{tag.code, std::string(tag.name()), false}).second)
            f.header[name] = {offsetOf(tag.value), tag.length};
        name.clear();
    }
}

} // namespace velmor::dxf
