#include "controls/XHeaderCtrl.h"

#include "controls/ListPainting.h"
#include "controls/ReadableColour.h"
#include "controls/WideText.h"
#include "controls/rules/ListCells.h"

#include <QPainter>

#include <utility>

namespace {

constexpr int kMargin = 6;       // pixels beside a column's text
constexpr int kRounding = 2;     // a text's width is told in whole pixels
constexpr int kGrooveInset = 2;  // pixels above and below the lines between columns
constexpr int kPlatformEdge = 2; // the platform's width of one border

} // namespace

CXHeaderCtrl::CXHeaderCtrl(const CListCells &cells, QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent), m_cells(cells)
{
    setSectionResizeMode(QHeaderView::Interactive);
    setHighlightSections(false);
    setMinimumSectionSize(2 * kMargin);
}

void CXHeaderCtrl::SetSpacing(int pixels)
{
    m_nSpacing = pixels;
    viewport()->update();
}

void CXHeaderCtrl::SetImageSize(int pixels)
{
    m_nImageSize = pixels;
    viewport()->update();
}

void CXHeaderCtrl::SetWidened(bool widened)
{
    m_bWidened = widened;
}

bool CXHeaderCtrl::SetItemBitmap(int column, const QPixmap &bitmap)
{
    if (column < 0 || column >= static_cast<int>(m_bitmaps.size()))
        return false;
    m_bitmaps[static_cast<std::size_t>(column)] = bitmap;
    viewport()->update();
    return true;
}

void CXHeaderCtrl::SetDrawItem(DrawItem draw)
{
    m_draw = std::move(draw);
    viewport()->update();
}

void CXHeaderCtrl::OnColumnInserted(int column)
{
    m_bitmaps.emplace(m_bitmaps.begin() + column);
}

QSize CXHeaderCtrl::BitmapSize(int column) const
{
    const bool known = column >= 0 && column < static_cast<int>(m_bitmaps.size());
    return known ? m_bitmaps[static_cast<std::size_t>(column)].deviceIndependentSize().toSize() : QSize();
}

int CXHeaderCtrl::ImageSize() const
{
    return m_nImageSize > 0 ? m_nImageSize : fontMetrics().ascent() + 2;
}

QSize CXHeaderCtrl::sizeHint() const
{
    // As high with no column as with some.
    return {QHeaderView::sizeHint().width(), fontMetrics().height() + 2 * kMargin};
}

QSize CXHeaderCtrl::sectionSizeFromContents(int column) const
{
    int width = fontMetrics().horizontalAdvance(ToQString(m_cells.GetHeaderText(column))) + 2 * kMargin + 2 + kRounding;
    if (m_cells.GetHeaderCheckedState(column) != -1)
        width += ImageSize() + m_nSpacing;
    if (const int bitmap = BitmapSize(column).width(); bitmap > 0)
        width += bitmap + m_nSpacing;
    if (m_bWidened)
        width += 2 * kPlatformEdge;
    return {width, fontMetrics().height() + 2 * kMargin};
}

void CXHeaderCtrl::PaintItem(QPainter &painter, const QRect &rect, int column) const
{
    QRect place = rect.adjusted(kMargin, 0, -kMargin - 2, 0);
    if (const int state = m_cells.GetHeaderCheckedState(column); state == 0 || state == 1) {
        QRect box(0, 0, ImageSize(), ImageSize());
        box.moveLeft(place.left());
        box.moveTop(rect.center().y() - box.height() / 2);
        list_painting::CheckBox(painter, box, state == 1, palette(), isEnabled());
        place.setLeft(box.right() + 1 + m_nSpacing);
    }
    if (const QSize size = BitmapSize(column); !size.isEmpty()) {
        const QPoint corner(place.right() + 1 - size.width(), rect.center().y() - size.height() / 2);
        painter.drawPixmap(corner, m_bitmaps[static_cast<std::size_t>(column)]);
        place.setRight(corner.x() - 1 - m_nSpacing);
    }
    if (place.width() > 0) {
        const QString text = ToQString(m_cells.GetHeaderText(column));
        painter.setPen(ReadableText(palette().color(QPalette::ButtonText), palette().color(QPalette::Button)));
        painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(text, Qt::ElideRight, place.width()));
    }
}

void CXHeaderCtrl::paintSection(QPainter *painter, const QRect &rect, int column) const
{
    if (!rect.isValid())
        return;
    const QColor face = palette().color(QPalette::Button);
    painter->fillRect(rect, face);
    if (m_cells.GetColumnFormat(column) & kFormatOwnerDraw) {
        if (m_draw)
            m_draw(*painter, rect, column);
    } else {
        PaintItem(*painter, rect, column);
    }
    const int top = rect.top() + kGrooveInset, bottom = rect.bottom() - kGrooveInset;
    painter->setPen(palette().color(QPalette::Mid));
    painter->drawLine(rect.right() - 1, top, rect.right() - 1, bottom);
    painter->setPen(palette().color(QPalette::Light));
    painter->drawLine(rect.right(), top, rect.right(), bottom);
}

void CXHeaderCtrl::paintEvent(QPaintEvent *event)
{
    {
        QPainter ground(viewport());
        ground.fillRect(event->rect(), palette().color(QPalette::Button));
    }
    QHeaderView::paintEvent(event);
    if (length() == 0)
        return;
    QPainter edge(viewport());
    const QRect all = viewport()->rect().adjusted(0, 0, -1, -1);
    edge.setPen(palette().color(QPalette::Light));
    edge.drawLine(all.bottomLeft(), all.topLeft());
    edge.drawLine(all.topLeft(), all.topRight());
    edge.setPen(palette().color(QPalette::Mid));
    edge.drawLine(all.topRight(), all.bottomRight());
    edge.drawLine(all.bottomRight(), all.bottomLeft());
}
