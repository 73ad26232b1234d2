#include "controls/XColorStatic.h"

#include "controls/MyToolTipCtrl.h"
#include "controls/ReadableColour.h"
#include "controls/WideText.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <string_view>

namespace {

constexpr std::size_t kLongestFaceName = 31;

} // namespace

CXColorStatic::CXColorStatic(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

CXColorStatic::CXColorStatic(const QString &text, QWidget *parent) : CXColorStatic(parent)
{
    setText(text);
}

void CXColorStatic::Redraw(bool redraw)
{
    if (redraw)
        repaint();
}

void CXColorStatic::SetTextColor(ColorRef colour, bool redraw)
{
    m_crText = colour;
    Redraw(redraw);
}

void CXColorStatic::SetBackgroundColor(ColorRef colour, bool redraw)
{
    m_crBackground = colour;
    Redraw(redraw);
}

void CXColorStatic::SetBold(bool bold, bool redraw)
{
    m_bBold = bold;
    if (!m_font && testAttribute(Qt::WA_SetFont))
        m_font = font();
    if (!m_font)
        m_font = QFont(); // nothing of its own yet: all but the weight stays the desktop's
    m_font->setWeight(bold ? QFont::Bold : QFont::Normal);
    setFont(*m_font);
    Redraw(redraw);
}

void CXColorStatic::SetFont(const QFont *font, bool redraw)
{
    if (!font)
        return;
    m_font = *font;
    m_font->setWeight(m_bBold ? QFont::Bold : QFont::Normal);
    setFont(*m_font);
    Redraw(redraw);
}

void CXColorStatic::SetFont(const wchar_t *faceName, int pointSize, bool redraw)
{
    QFont own = font();
    if (faceName) {
        const std::wstring_view name = std::wstring_view(faceName).substr(0, kLongestFaceName);
        own = QFont(QString::fromWCharArray(name.data(), static_cast<qsizetype>(name.size())));
    }
    if (pointSize > 0)
        own.setPointSize(pointSize);
    SetFont(&own, redraw);
}

void CXColorStatic::SetIcon(const QIcon &icon, bool redraw)
{
    m_icon = icon;
    updateGeometry();
    Redraw(redraw);
}

void CXColorStatic::SetMargins(int x, int y, bool redraw)
{
    m_nXMargin = x;
    m_nYMargin = y;
    updateGeometry();
    Redraw(redraw);
}

int CXColorStatic::IconSize() const
{
    return style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
}

QSize CXColorStatic::WithMargins(const QSize &ofText) const
{
    if (!m_icon.isNull())
        return {IconSize(), IconSize()};
    return {ofText.width() + m_nXMargin, ofText.height() + m_nYMargin};
}

QSize CXColorStatic::sizeHint() const
{
    return WithMargins(QLabel::sizeHint());
}

QSize CXColorStatic::minimumSizeHint() const
{
    if (!hasHeightForWidth())
        return WithMargins(QLabel::minimumSizeHint());
    const int longestWord = fontMetrics().boundingRect(QRect(0, 0, 1, 1), TextFlags(), text()).width();
    return WithMargins({longestWord, fontMetrics().height()});
}

bool CXColorStatic::hasHeightForWidth() const
{
    return m_icon.isNull() && (TextFlags() & Qt::TextWordWrap) != 0;
}

int CXColorStatic::heightForWidth(int width) const
{
    if (!hasHeightForWidth())
        return QLabel::heightForWidth(width);
    const QRect place(0, 0, std::max(width - m_nXMargin, 1), QWIDGETSIZE_MAX);
    return fontMetrics().boundingRect(place, TextFlags(), text()).height() + m_nYMargin;
}

int CXColorStatic::TextFlags() const
{
    const Qt::Alignment wanted = QStyle::visualAlignment(layoutDirection(), alignment());
    int flags = Qt::AlignLeft;
    if (wanted & Qt::AlignHCenter)
        flags = Qt::AlignHCenter;
    else if (wanted & Qt::AlignRight)
        flags = Qt::AlignRight;
    flags |= wanted & Qt::AlignVCenter ? Qt::AlignVCenter | Qt::TextSingleLine : Qt::AlignTop | Qt::TextWordWrap;
    return buddy() ? flags | Qt::TextShowMnemonic : flags;
}

QColor CXColorStatic::TextColour() const
{
    const QColor desktop = palette().color(foregroundRole());
    if (m_crBackground)
        return m_crText ? ColourOf(*m_crText) : ReadableText(desktop, ColourOf(*m_crBackground));
    return m_crText ? ReadableColour(ColourOf(*m_crText), palette().color(backgroundRole())) : desktop;
}

bool CXColorStatic::IsCutOff() const
{
    return m_icon.isNull() && (TextFlags() & Qt::TextSingleLine) != 0 &&
           fontMetrics().boundingRect(QRect(), TextFlags(), text()).width() > width() - m_nXMargin;
}

bool CXColorStatic::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        if (IsCutOff())
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), PlainTip(ToWide(text())), this);
        else
            event->ignore();
        return true;
    }
    return QLabel::event(event);
}

void CXColorStatic::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_crBackground)
        painter.fillRect(rect(), ColourOf(*m_crBackground));
    if (!m_icon.isNull()) {
        QRect place(0, 0, IconSize(), IconSize());
        place.moveCenter(rect().center());
        m_icon.paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    painter.setPen(TextColour());
    painter.drawText(rect().adjusted(m_nXMargin, m_nYMargin, 0, 0), TextFlags(), text());
}
