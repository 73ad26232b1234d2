#include "controls/treelist/TreeListTipCtrl.h"

#include "controls/treelist/TreeListCtrl.h"

#include <QPainter>
#include <QScreen>
#include <QToolTip>

#include <algorithm>

namespace {

/// Between the tip's edge and its text: the frame and the margin of a cell.
constexpr int kEdge = 1 + kTreeListMargin;

} // namespace

Qt::Alignment TreeListAlignment(std::uint32_t format)
{
    if (format & kColumnLeft)
        return Qt::AlignLeft | Qt::AlignVCenter;
    if (format & kColumnRight)
        return Qt::AlignRight | Qt::AlignVCenter;
    return (format & kColumnCentred ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter;
}

CTreeListTipCtrl::CTreeListTipCtrl(CTreeListCtrl *list)
    : QWidget(list, Qt::ToolTip | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus)
{
    setObjectName(QLatin1String(CTreeListCtrl::kTipClassName));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
}

void CTreeListTipCtrl::Show(const CTreeListItem *item, int column, const QString &words, const QRect &text,
                            Qt::Alignment alignment)
{
    m_pItem = item;
    m_nColumn = column;
    m_strText = words;
    m_alignment = alignment;
    setFont(parentWidget()->font());
    setPalette(QToolTip::palette());
    const QScreen *at = parentWidget()->screen();
    const QRect screen = at->availableGeometry();

    QSize size(fontMetrics().horizontalAdvance(words), std::max(text.height(), fontMetrics().height()));
    m_bWrapped = size.width() + 2 * kEdge > screen.width();
    if (m_bWrapped) {
        const QRect most(0, 0, screen.width() - 2 * kEdge, screen.height());
        size = fontMetrics().boundingRect(most, Qt::TextWordWrap | Qt::TextWrapAnywhere, words).size() +
               QSize(0, 2 * kEdge);
    }
    size.rwidth() += 2 * kEdge;
    QRect place(QPoint(text.left() - kEdge, text.top()), size);
    if (alignment & Qt::AlignRight)
        place.moveRight(text.right() + kEdge);
    else if (alignment & Qt::AlignHCenter)
        place.moveLeft(text.left() + (text.width() - size.width()) / 2);
    place.moveLeft(std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() + 1 - size.width())));
    place.moveTop(std::clamp(place.top(), screen.top(), std::max(screen.top(), screen.bottom() + 1 - size.height())));
    setGeometry(place);
    show();
    update();
}

void CTreeListTipCtrl::Hide()
{
    m_pItem = nullptr;
    m_nColumn = -1;
    hide();
}

void CTreeListTipCtrl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::ToolTipBase));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setPen(palette().color(QPalette::ToolTipText));
    const int flags = m_bWrapped ? Qt::TextWordWrap | Qt::TextWrapAnywhere : Qt::TextSingleLine;
    painter.drawText(rect().adjusted(kEdge, 0, -kEdge, 0), static_cast<int>(m_alignment) | flags, m_strText);
}
