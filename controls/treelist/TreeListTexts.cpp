#include "controls/treelist/TreeListTexts.h"

#include <QFontMetrics>
#include <QPainter>

#include <cmath>

namespace {

constexpr std::size_t kYoungTexts = 2048; // several screens of cells

std::string_view bytesOf(const TreeListText &text)
{
    return {static_cast<const char *>(text.characters), std::size_t{text.length} * text.bytesEach};
}

char sizeMark(const TreeListText &text)
{
    return static_cast<char>(text.bytesEach);
}

} // namespace

QString OneLine(const TreeListText &text)
{
    QString line;
    switch (text.bytesEach) {
    case 1:
        line = QString::fromLatin1(static_cast<const char *>(text.characters), text.length);
        break;
    case 2:
        line = QString::fromUtf16(static_cast<const char16_t *>(text.characters), text.length);
        break;
    default:
        line = QString::fromUcs4(static_cast<const char32_t *>(text.characters), text.length);
    }
    for (QChar &character : line) {
        if (character < u' ' || character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return line;
}

std::size_t CTreeListTexts::Hash::operator()(const std::string &key) const
{
    return std::hash<std::string_view>()(std::string_view(key).substr(1));
}

std::size_t CTreeListTexts::Hash::operator()(const TreeListText &text) const
{
    return std::hash<std::string_view>()(bytesOf(text));
}

bool CTreeListTexts::Equal::operator()(const TreeListText &text, const std::string &key) const
{
    return key.front() == sizeMark(text) && std::string_view(key).substr(1) == bytesOf(text);
}

void CTreeListTexts::SetFont(const QFont &font)
{
    if (m_bFont && font == m_font)
        return;
    m_bFont = true;
    m_font = font;
    m_young.clear();
    m_old.clear();
}

QStaticText CTreeListTexts::LaidOut(const QString &text) const
{
    QStaticText laidOut(text);
    laidOut.setTextFormat(Qt::PlainText);
    laidOut.prepare({}, m_font);
    return laidOut;
}

CTreeListTexts::Entry &CTreeListTexts::Find(const TreeListText &text)
{
    if (const auto found = m_young.find(text); found != m_young.end())
        return found->second;
    if (m_young.size() >= kYoungTexts) {
        m_old = std::move(m_young);
        m_young.clear();
    }
    if (const auto found = m_old.find(text); found != m_old.end())
        return m_young.insert(m_old.extract(found)).position->second;
    Entry entry;
    entry.whole = LaidOut(OneLine(text));
    // Rounded as the widths of columns that are fitted to their texts.
    entry.width = qRound(entry.whole.size().width());
    entry.height = static_cast<int>(std::ceil(entry.whole.size().height()));
    std::string key(1, sizeMark(text));
    key += bytesOf(text);
    return m_young.emplace(std::move(key), std::move(entry)).first->second;
}

int CTreeListTexts::WidthOf(const TreeListText &text)
{
    return text.length == 0 ? 0 : Find(text).width;
}

void CTreeListTexts::Draw(QPainter &painter, const QRect &place, int margin, const TreeListText &text,
                          Qt::Alignment alignment)
{
    if (text.length == 0 || place.width() <= 0)
        return;
    Entry &entry = Find(text);
    const bool fits = entry.width <= place.width() + margin;
    if (!fits && entry.cutFor != place.width()) {
        entry.cut = LaidOut(QFontMetrics(m_font).elidedText(entry.whole.text(), Qt::ElideRight, place.width()));
        entry.cutFor = place.width();
        entry.cutWidth = static_cast<int>(std::ceil(entry.cut.size().width()));
    }
    const int spare = place.width() - (fits ? entry.width : entry.cutWidth);
    if (!fits && spare < 0)
        return; // not even the ellipsis has room
    int left = place.left();
    if (spare > 0 && alignment & Qt::AlignRight)
        left += spare;
    else if (spare > 0 && alignment & Qt::AlignHCenter)
        left += spare / 2;
    painter.drawStaticText(left, place.top() + (place.height() - entry.height) / 2, fits ? entry.whole : entry.cut);
}
